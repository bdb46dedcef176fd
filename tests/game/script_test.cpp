// The script language, its runner, and the places of controls.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "engine/trace.h"
#include "platform/temp_roots.h"
#include "script/dialog_rects.h"
#include "script/runner.h"
#include "script/script.h"
#include "shell/input.h"
#include "support/rows.h"

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

class ScriptTest : public ::testing::Test
{
  protected:
    using State = CScriptRunner::State;
    static std::vector<ScriptCommand> Parse(const std::string& text)
    {
        std::vector<ScriptCommand> commands;
        std::string error;
        EXPECT_TRUE(ParseScript("t", text, commands, error)) << error;
        return commands;
    }
    CScriptRunner Runner(const std::string& script) { return {"t", Parse(script), input, trace, host}; }
    /// The messages of the input, as "message:wParam".
    std::string Messages()
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

    CInput input;
    CTrace trace;
    ScriptHost host;
};

TEST_F(ScriptTest, AWrongLineIsToldWithItsNumberAndReason)
{
    const Rows<std::string, std::string> cases = {
        {"jump 5", "there is no command \"jump\""},
        {"frames", "expected a number of frames from 1 to 1000000"},
        {"frames 1 2", "\"2\" is too much"},
        {"move 99999 5", "expected x"},
        {"control MainDlg 5 press", "expected click, double, down, up or move, found \"press\""},
        {"key ctrl+hyper", "there is no key \"hyper\""},
        {"wheel 0", "expected at least one notch"},
        {"shot ..", "expected a name of letters"},
        {"event 8 colour=5", "expected value1=, value2=, style=, id= or text=, found \"colour\""},
        {"event 8 text=\"abc", "expected a text in double quotes"},
    };
    for (const auto& [line, reason] : cases) {
        std::vector<ScriptCommand> commands;
        std::string error;
        EXPECT_FALSE(ParseScript("a.script", "# first\n\n" + line + "\n", commands, error)) << line;
        EXPECT_TRUE(error.starts_with("a.script(3): " + reason)) << line << ": " << error;
    }
}

TEST_F(ScriptTest, TextsKeepWhatTheyNeed)
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
}

TEST_F(ScriptTest, InputComesWithTheMessagesAndFramesOfItsCommand)
{
    const Rows<const char*, std::vector<std::string>> cases = {
        {"click 5 6", {"200:0 201:1 ", "202:0 "}},
        {"double 7 8", {"200:0 201:1 202:0 203:1 ", "202:0 "}},
        {"wheel -1", {"20a:ff880000 "}},
        {"key shift+a", {"100:10 100:41 102:41 ", "101:41 101:10 "}},
        {"key ctrl+v", {"100:11 100:56 102:16 ", "101:56 101:11 "}},
        {"key alt+f5", {"104:12 104:74 ", "105:74 101:12 "}},
        {"key add", {"100:6b 102:2b 101:6b "}},
        {"key numpad7", {"100:67 102:37 101:67 "}},
        {"type Z\xc3\xa9", {"100:5a 102:5a 101:5a 102:e9 "}},
        {"keydown left\nframes 2\nkeyup left", {"100:25 ", "", "101:25 "}},
    };
    for (const auto& [script, frames] : cases) {
        CScriptRunner runner = Runner(script);
        for (const std::string& expected : frames) {
            EXPECT_NE(runner.Step(), State::Failed);
            EXPECT_EQ(Messages(), expected) << script;
        }
        EXPECT_EQ(runner.Step(), State::Ended) << script;
    }
}

TEST_F(ScriptTest, PlacesCountFromTheScreenSurfaceAndARecordIsAScriptAgain)
{
    host.origin = {112, 84};
    std::string recorded;
    input.onRecord = [&](const std::string& command) { recorded += command + "\n"; };
    input.surfaceOrigin = [&] { return host.origin; };
    Runner("move 3 4\nkey x").Step();
    EXPECT_EQ(input.Cursor(), (POINT{115, 88}));
    EXPECT_EQ(recorded, "move 3 4\nkeydown x\nchar \"x\"\nkeyup x\n");
    Parse(recorded);
}

TEST_F(ScriptTest, LooksGoForwardThroughTheTrace)
{
    for (const char* line : {"one", "two", "three"})
        trace.Add(line);
    EXPECT_EQ(Runner("expect one\nrefuse one\nexpect three\nrefuse two").Step(), State::Ended);
    CScriptRunner backwards = Runner("expect two\n\nexpect one");
    EXPECT_EQ(backwards.Step(), State::Failed);
    EXPECT_EQ(backwards.Error(), "t(3): the trace has not one");
    EXPECT_EQ(Runner("refuse thr").Step(), State::Failed);

    CScriptRunner waits = Runner("until go\nshot a");
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(waits.Step(), State::Running);
    trace.Add("let us go");
    EXPECT_EQ(waits.Step(), State::Ended);
    EXPECT_EQ(host.shots, std::vector<std::string>{"a"});
    CScriptRunner never = Runner("until never");
    int frames = 0;
    while (never.Step() == State::Running)
        ++frames;
    EXPECT_EQ(frames, CScriptRunner::UNTIL_FRAMES);
}

TEST_F(ScriptTest, WhatIsLeftWhenTheProgramHasEnded)
{
    trace.Add("quit");
    EXPECT_EQ(Runner("frames 5\nexpect quit\nrefuse failure\nshot end").Finish(), State::Ended);
    EXPECT_EQ(host.shots.size(), 1U);
    CScriptRunner late = Runner("key a");
    EXPECT_EQ(late.Finish(), State::Failed);
    EXPECT_EQ(late.Error(), "t(1): the program has ended");
}

TEST(DialogRectsTest, WhatIsNotThereIsTold)
{
    const TempRoots roots;
    PlatformSetRoots((roots.folder / "user").string(), SEAWARDEN_SOURCE_DIR "/data");
    CDialogRects rects;
    POINT point;
    std::string error;
    EXPECT_FALSE(rects.Control("MainDlg", 99, point, error));
    EXPECT_EQ(error, "section MainDlg has no control 99");
    EXPECT_FALSE(rects.Item("MainDlg", 10, 99, point, error));
    EXPECT_FALSE(rects.Row("MainDlg", 10, 0, point, error)) << "no table";
    EXPECT_TRUE(rects.Row("scenseldlg", 10, 0, point, error)) << error;
    EXPECT_FALSE(rects.Row("ScenSelDlg", 10, 1000, point, error));
    EXPECT_FALSE(rects.Control("Nowhere", 1, point, error));
    roots.Put("user/resource/txt_res/itfdlg.ini",
              "Broken { DIALOG, \"b\", 1, 2, 3, 4,\n  BUTTON, \"a\" \"b\" }");
    EXPECT_FALSE(CDialogRects().Control("Broken", 1, point, error));
    EXPECT_NE(error.find("itfdlg.ini(2)"), std::string::npos) << error;
}

} // namespace
