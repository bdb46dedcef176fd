// The script language, its runner, and the places of controls.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/trace.h"
#include "platform/temp_roots.h"
#include "script/dialog_rects.h"
#include "script/runner.h"
#include "script/script.h"
#include "shell/input.h"

namespace
{

class ScriptHost : public IScriptHost
{
  public:
    bool SaveShot(const std::string& name) override
    {
        shots.push_back(name);
        return true;
    }
    void SendScriptEvent(const ScriptEvent& event) override { events.push_back(event); }
    POINT SurfaceOrigin() override { return origin; }

    std::vector<std::string> shots;
    std::vector<ScriptEvent> events;
    POINT origin;
};

std::vector<ScriptCommand> Parse(const std::string& text)
{
    std::vector<ScriptCommand> commands;
    std::string error;
    EXPECT_TRUE(ParseScript("t", text, commands, error)) << error;
    return commands;
}

/// The messages of the input, as "message:wParam".
std::string Messages(CInput& input)
{
    input.Flush();
    std::string all;
    char text[32];
    for (InputMessage message; input.Take(message);) {
        std::snprintf(text, sizeof(text), "%x:%x ", message.message, message.wParam);
        all += text;
    }
    return all;
}

TEST(ScriptTest, AWrongLineIsToldWithItsNumberAndReason)
{
    const std::pair<const char*, const char*> cases[] = {
        {"jump 5", "there is no command \"jump\""},
        {"frames", "expected a number of frames from 1 to 1000000"},
        {"frames 0", "expected a number of frames"},
        {"frames 1x", "expected a number of frames"},
        {"frames 1 2", "\"2\" is too much"},
        {"move 5", "expected y"},
        {"move 99999 5", "expected x"},
        {"click", "expected x"},
        {"control MainDlg", "expected a number behind the section"},
        {"control MainDlg 5 press", "expected click, double, down, up or move, found \"press\""},
        {"row", "expected a section"},
        {"key ctrl+hyper", "there is no key \"hyper\""},
        {"keydown ctrl+a", "expected the name of a key"},
        {"key", "expected the name of a key"},
        {"key ctrl+", "expected the name of a key behind +"},
        {"type \"\"", "expected a text to type"},
        {"wheel 0", "expected at least one notch"},
        {"shot a/b", "expected a name of letters"},
        {"shot ..", "expected a name of letters"},
        {"expect", "expected a text to look for"},
        {"event", "expected the number of an event"},
        {"event 8 value1", "expected a number behind value1="},
        {"event 8 colour=5", "expected value1=, value2=, style=, id= or text=, found \"colour\""},
        {"event 8 text=abc", "expected a text in double quotes"},
        {"event 8 text=\"abc", "expected a text in double quotes"},
        {"quit now", "\"now\" is too much"},
    };
    for (const auto& [line, reason] : cases) {
        std::vector<ScriptCommand> commands;
        std::string error;
        EXPECT_FALSE(ParseScript("a.script", std::string("# first\n\n") + line + "\n", commands, error))
            << line;
        EXPECT_TRUE(error.starts_with(std::string("a.script(3): ") + reason)) << line << ": " << error;
    }
}

TEST(ScriptTest, TextsKeepWhatTheyNeed)
{
    const auto commands = Parse("\xef\xbb\xbf"
                                "expect text=\"a # b\"   # comment\r\n"
                                "type \" caf\xc3\xa9 \"\n"
                                "type \"\n"
                                "event 4 text=\"video\\x.ani\" value2=-3 value1=0x10\n");
    ASSERT_EQ(commands.size(), 4U);
    EXPECT_EQ(commands[0].text, "text=\"a # b\"");
    EXPECT_EQ(commands[1].text, " caf\xe9 ");
    EXPECT_EQ(commands[2].text, "\"");
    EXPECT_EQ(commands[3].event.text, "video\\x.ani");
    EXPECT_EQ(commands[3].event.nValue1, 16);
    EXPECT_EQ(commands[3].event.nValue2, -3);
    EXPECT_EQ(commands[3].nLine, 4);
}

TEST(ScriptTest, InputComesWithTheMessagesAndFramesOfItsCommand)
{
    const struct {
        const char* script;
        std::vector<std::string> frames;
    } cases[] = {
        {"click 5 6", {"200:0 201:1 ", "202:0 "}},
        {"double 5 6", {"200:0 201:1 202:0 203:1 ", "202:0 "}},
        {"move 5 6\nwheel -1", {"200:0 20a:ff880000 "}},
        {"rdown\nrup", {"204:2 205:0 "}},
        {"key a", {"100:41 102:61 101:41 "}},
        {"key shift+a", {"100:10 100:41 102:41 ", "101:41 101:10 "}},
        {"key ctrl+v", {"100:11 100:56 102:16 ", "101:56 101:11 "}},
        {"key alt+f5", {"104:12 104:74 ", "105:74 101:12 "}},
        {"key enter", {"100:d 102:d 101:d "}},
        {"key add", {"100:6b 102:2b 101:6b "}},
        {"type Z\xc3\xa9", {"100:5a 102:5a 101:5a 102:e9 "}},
        {"keydown left\nframes 2\nkeyup left", {"100:25 ", "", "101:25 "}},
    };
    for (const auto& test : cases) {
        CInput input;
        CTrace trace;
        ScriptHost host;
        CScriptRunner runner("t", Parse(test.script), input, trace, host);
        for (const std::string& expected : test.frames) {
            const auto state = runner.Step();
            EXPECT_NE(state, CScriptRunner::State::Failed);
            EXPECT_EQ(Messages(input), expected) << test.script;
        }
        if (std::string(test.script).find("click") == std::string::npos)
            continue;
        EXPECT_EQ(runner.Step(), CScriptRunner::State::Ended) << test.script;
    }
}

TEST(ScriptTest, PlacesCountFromTheScreenSurface)
{
    CInput input;
    CTrace trace;
    ScriptHost host;
    host.origin = {112, 84};
    std::string recorded;
    input.onRecord = [&](const std::string& command) { recorded += command + ";"; };
    input.surfaceOrigin = [&] { return host.origin; };
    CScriptRunner runner("t", Parse("move 3 4\nkey x"), input, trace, host);
    runner.Step();
    EXPECT_EQ(input.Cursor(), (POINT{115, 88}));
    EXPECT_EQ(recorded, "move 3 4;keydown x;char \"x\";keyup x;") << "and a record is a script again";
    Parse("move 3 4\nkeydown x\nchar \"x\"\nkeyup x");
}

TEST(ScriptTest, LooksGoForwardThroughTheTrace)
{
    CInput input;
    CTrace trace;
    ScriptHost host;
    for (const char* line : {"one", "two", "three"})
        trace.Add(line);
    CScriptRunner good("t", Parse("expect one\nrefuse one\nexpect three\nrefuse two"), input, trace, host);
    EXPECT_EQ(good.Step(), CScriptRunner::State::Ended);
    CScriptRunner backwards("t", Parse("expect two\n\nexpect one"), input, trace, host);
    EXPECT_EQ(backwards.Step(), CScriptRunner::State::Failed);
    EXPECT_EQ(backwards.Error(), "t(3): the trace has not one");
    CScriptRunner refused("t", Parse("refuse thr"), input, trace, host);
    EXPECT_EQ(refused.Step(), CScriptRunner::State::Failed);
}

TEST(ScriptTest, UntilWaitsForALineAndGivesUp)
{
    CInput input;
    CTrace trace;
    ScriptHost host;
    CScriptRunner runner("t", Parse("until go\nshot a"), input, trace, host);
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(runner.Step(), CScriptRunner::State::Running);
    trace.Add("let us go");
    EXPECT_EQ(runner.Step(), CScriptRunner::State::Ended);
    EXPECT_EQ(host.shots, std::vector<std::string>{"a"});

    CScriptRunner never("t", Parse("until never"), input, trace, host);
    int frames = 0;
    while (never.Step() == CScriptRunner::State::Running)
        ++frames;
    EXPECT_EQ(frames, CScriptRunner::UNTIL_FRAMES);
}

TEST(ScriptTest, WhatIsLeftWhenTheProgramHasEnded)
{
    CInput input;
    CTrace trace;
    ScriptHost host;
    trace.Add("quit");
    CScriptRunner good("t", Parse("frames 5\nexpect quit\nrefuse failure\nshot end"), input, trace, host);
    EXPECT_EQ(good.Finish(), CScriptRunner::State::Ended);
    EXPECT_EQ(host.shots.size(), 1U);
    CScriptRunner late("t", Parse("key a"), input, trace, host);
    EXPECT_EQ(late.Finish(), CScriptRunner::State::Failed);
    EXPECT_EQ(late.Error(), "t(1): the program has ended");
}

TEST(ScriptTest, OnlyAnEventAtTheVeryBeginningIsTheFirstOne)
{
    CInput input;
    CTrace trace;
    ScriptHost host;
    CScriptRunner first("t", Parse("# x\nevent 7\nevent 8"), input, trace, host);
    EXPECT_EQ(first.TakeFirstEvent()->nCode, 7);
    first.Step();
    ASSERT_EQ(host.events.size(), 1U);
    EXPECT_EQ(host.events[0].nCode, 8);
    CScriptRunner later("t", Parse("frames 1\nevent 7"), input, trace, host);
    EXPECT_FALSE(later.TakeFirstEvent().has_value());
}

class DialogRectsTest : public ::testing::Test
{
  protected:
    DialogRectsTest()
    {
        roots.Put(
            "game/resource/txt_res/itfnames.ini",
            "SpriteMap { \"a\" \"a.png\" } FontMap { \"itfBig\" \"big.fnt\", \"itfListFont\" \"list.fnt\" }");
        roots.Put("game/resource/txt_res/list.fnt",
                  "texture \"x.png\" symbols { \"\"\", 0,0,1,9,0,1, \" \", 0, 5, 4, 15, 0, 4 }");
        roots.Put("game/resource/txt_res/big.fnt", "texture \"x.png\" symbols { \"a\", 0,0,1,9,0,1 }");
        roots.Put("game/resource/txt_res/itfdlg.ini", DIALOGS);
    }

    static constexpr const char* DIALOGS = R"(
Other { BUTTON, "MainDlg" "" "" "" "", 5, 0, 0, 2, 2, -1, 0, 0, 0 }
MainDlg {
  dialog, "back", 100, 50, 500, 450,
  BUTTON, "a, {b}" "f" "d" "u" "ITFBTSTYLE_MANUAL", 10, 20, 30, 60, 50, -1, -1, -1, -1,
  TABLE, "s" "" "h" "IWS_VSCROLL", 20, 10, 100, 210, 200, 5, 30, 190, 95,
  COLUMN, "Name" "RBCOL_RIGHT", 20, 0, 80, 0, 0, 80, 20,
  PICTUREBOX, "p" "s" "", 30, 8, 8, 2, 2, 1, 300, 10, 340, 30, 0, 0, 40, 20,
  FLAGBOX, "s" "FB_RIGHT", 40, 0, 0, 10, 20, 1.5, -2, .25, 0, 0, 1,
  MENU, "m" "" "", "", 50, 10, 210, 110, 310,
  MENUITEM, 50, "Go" "DISABLED", "x", 3, 0, 20, 100, 40
}
NoTable { TABLE, "" "itfBig" "" "", 1, 0, 0, 100, 100, -1, 0, 0, 0 }
Broken { DIALOG, "b", 1, 2, 3, 4,
  BUTTON, "a" "b" }
)";
    TempRoots roots;
    CDialogRects rects;
    POINT point;
    std::string error;
};

TEST_F(DialogRectsTest, EveryKindOfRecordIsPassedAndFound)
{
    ASSERT_TRUE(rects.Control("maindlg", 10, point, error)) << error;
    EXPECT_EQ(point, (POINT{140, 90}));
    ASSERT_TRUE(rects.Control("MainDlg", 30, point, error)) << error;
    EXPECT_EQ(point, (POINT{420, 70}));
    ASSERT_TRUE(rects.Control("MainDlg", 40, point, error)) << error;
    EXPECT_EQ(point, (POINT{105, 60}));
    ASSERT_TRUE(rects.Item("MainDlg", 50, 3, point, error)) << error;
    EXPECT_EQ(point, (POINT{160, 290}));
    // The list font's blank is 10 lines high: the second row of the inner rectangle, in the middle of the
    // column.
    ASSERT_TRUE(rects.Row("MainDlg", 20, 1, point, error)) << error;
    EXPECT_EQ(point, (POINT{155, 195}));
}

TEST_F(DialogRectsTest, WhatIsNotThereIsTold)
{
    EXPECT_FALSE(rects.Control("MainDlg", 99, point, error));
    EXPECT_EQ(error, "section MainDlg has no control 99");
    EXPECT_FALSE(rects.Item("MainDlg", 50, 9, point, error));
    EXPECT_FALSE(rects.Row("MainDlg", 10, 0, point, error));
    EXPECT_FALSE(rects.Row("MainDlg", 20, 6, point, error));
    EXPECT_EQ(error, "the table shows 6 lines");
    EXPECT_FALSE(rects.Row("NoTable", 1, 0, point, error)) << "a font without a blank";
    EXPECT_FALSE(rects.Control("Nowhere", 1, point, error));
    EXPECT_FALSE(rects.Control("Broken", 1, point, error));
    EXPECT_NE(error.find("itfdlg.ini(15)"), std::string::npos) << error;
}

} // namespace
