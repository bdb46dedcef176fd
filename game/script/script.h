#pragma once
// The script language: commands that play a session, one a line. docs/script.md tells what each does.

#include <string>
#include <vector>

#include "platform/types.h"

enum class EScript {
    Frames,
    Until,
    Move,
    Down,
    SecondDown,
    Up,
    RightDown,
    RightUp,
    Click,
    Double,
    Wheel,
    Control,
    Row,
    Item,
    Key,
    KeyDown,
    KeyUp,
    Type,
    Char,
    Shot,
    Expect,
    Refuse,
    Event,
    Quit,
};

/// What `control`, `row` and `item` do at the place that they find.
enum class EScriptAction { Click, Double, Down, Up, Move };

struct ScriptEvent {
    int nCode = 0;
    int nValue1 = 0;
    int nValue2 = 0;
    int nStyle = 0;
    int nId = 0;
    std::string text;
};

/// Only the fields of its kind have a meaning.
struct ScriptCommand {
    EScript kind = EScript::Quit;
    int nLine = 0;
    int nNumber = 0;       ///< of frames, notches
    POINT point;           ///< Move, Click, Double
    std::string text;      ///< what is looked for or typed (code page 1252), a shot's name, a section
    std::vector<int> ids;  ///< Control: id; Row: id, line; Item: menu, item
    std::vector<int> keys; ///< Key: modifiers, then the key; KeyDown, KeyUp: the key
    EScriptAction action = EScriptAction::Click;
    ScriptEvent event;
};

/// Parses a whole script (UTF-8). False, with `file(line): reason` in `error`, at the first line that is
/// wrong.
bool ParseScript(const std::string& file, const std::string& text, std::vector<ScriptCommand>& out,
                 std::string& error);
