#pragma once
// Plays a script, frame by frame.

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "engine/trace.h"
#include "script/dialog_rects.h"
#include "script/script.h"

class CInput;

/// What a script does beyond the player's input.
class IScriptHost
{
  public:
    virtual ~IScriptHost() = default;
    /// A picture of what the display shows. False when it can't be written.
    virtual bool SaveShot(const std::string& name) = 0;
    virtual void SendScriptEvent(const ScriptEvent& event) = 0;
    /// Where the screen surface stands on the display.
    virtual POINT SurfaceOrigin() = 0;
};

class CScriptRunner
{
  public:
    /// An `until` fails behind this many frames.
    static constexpr int UNTIL_FRAMES = 500;
    enum class State { Running, Ended, Failed };

    /// The references must outlive the runner.
    CScriptRunner(std::string file, std::vector<ScriptCommand> commands, CInput& input, const CTrace& trace,
                  IScriptHost& host);

    /// An event as the script's very first command is the program's first event; it is taken off here.
    std::optional<ScriptEvent> TakeFirstEvent();
    /// Runs commands up to the one that needs a frame. Called at the beginning of each frame.
    State Step();
    /// Runs the rest without frames, when the program has ended by itself: what looks at the trace still
    /// counts, and input is a failure.
    State Finish();
    /// `file(line): reason` of a failure.
    const std::string& Error() const { return m_strError; }

  private:
    // One input, or the wait for a frame, that a command is made of.
    struct Op {
        EScript kind = EScript::Frames;
        POINT point;
        int nNumber = 0;
    };

    State RunCommand(const ScriptCommand& command);
    State RunAtPlace(const ScriptCommand& command);
    State RunLook(const ScriptCommand& command);
    void QueueKeys(const std::vector<int>& keys);
    void QueueTyped(const std::string& text);
    void QueueClick(POINT point, bool twice);
    void Queue(EScript kind, int number = 0, POINT point = {});
    void RunOp(const Op& op);
    bool Look(const ScriptCommand& command);
    State Fail(const ScriptCommand& command, const std::string& reason);

    std::string m_strFile;
    std::vector<ScriptCommand> m_Commands;
    CInput& m_Input;
    const CTrace& m_Trace;
    IScriptHost& m_Host;
    CDialogRects m_Rects;

    std::size_t m_nNext = 0;   // the next command
    std::deque<Op> m_Ops;      // what is left of the last one
    int m_nWait = 0;           // frames before anything goes on
    int m_nUntil = 0;          // frames that the current `until` has waited
    std::size_t m_nLooked = 0; // trace lines before this one have been passed by `expect` and `until`
    std::string m_strError;
};
