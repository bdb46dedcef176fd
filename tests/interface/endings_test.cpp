// Help, credits, the end of a battle, its statistics, and how it stands.

#include <array>
#include <cstring>

#include "controls/itfbutton.h"
#include "flow/creditsdlg.h"
#include "flow/endgamedlg.h"
#include "flow/helpdlg.h"
#include "flow/maindlg.h"
#include "flow/valuebox.h"
#include "kernel/textformat.h"
#include "scenario/scenbriefdlg.h"
#include "scenario/scenseldlg.h"
#include "scenario/scstatusdlg.h"
#include "scenario/statisticsdlg.h"
#include "support/picture_compare.h"
#include "support/rows.h"
#include "support/toolkit_fixture.h"

using namespace seawarden_test;

namespace
{

constexpr char SCENARIO[] = "scenarios\\balloon_day.sc";
constexpr char CREDITS[] = "resource/txt_res/itfCredits.txt";

class EndingsTest : public ToolkitTest
{
  protected:
    void SetUp() override
    {
        scene.AddEntity("logic", "logic");
        scene.AddEntity("Game", "battle", &game);
        engine.currentScene = &scene;
        std::strcpy(state.scenario.szPath, SCENARIO);
        std::strcpy(state.scenario.szTitle, "Balloons");
        engine.gameState = &state;
    }
    template <class T>
    void Press(int control)
    {
        ASSERT_NE(Find<T>(), nullptr);
        CItfWnd::SendTo(Find<T>()->GetId(), ITFM_NOTIFY, NOTIFY_CLICKED, control);
    }
    template <class T>
    std::string Text(int control)
    {
        return TextOf(Find<T>(), control);
    }
    CEndGameDlg* EndGame(bool won = true)
    {
        SendEvent({.code = EVENT_END_GAME, .value2 = won});
        FinishShade();
        return Find<CEndGameDlg>();
    }
    // What opens a dialog; whether the battle goes on when it can't.
    static inline const Rows<int, bool> DIALOG_EVENTS = {
        {EVENT_MAIN_MENU, false}, {EVENT_SCENARIO_STATUS, true}, {EVENT_HELP, true},
        {EVENT_MESSAGE, false},   {EVENT_LEAVE_BATTLE, true},    {EVENT_MENU_WITH_MESSAGE, false},
        {EVENT_END_GAME, true},   {EVENT_MESSAGE_BOX, true},
    };
    void SendDialogEvent(int code)
    {
        ItfScenarioStatus status = {};
        std::strcpy(status.szPath, SCENARIO);
        const char text[] = "text";
        const Word box[] = {reinterpret_cast<Word>(text), reinterpret_cast<Word>(text), 0, BOX_NET_LOST};
        ItfEvent event;
        event.code = code;
        event.object = code == EVENT_MESSAGE_BOX ? static_cast<void*>(const_cast<Word*>(box)) : &status;
        SendEvent(event);
    }

    FakeEngine scene;
    FakeGame game;
    FakeGameState state;
};

TEST_F(EndingsTest, HelpTurnsItsPages)
{
    Start(EVENT_HELP);
    auto* help = Find<CHelpDlg>();
    ASSERT_NE(help, nullptr);
    EXPECT_TRUE(CItfWnd::IsDrawing()) << "over a battle nothing shades";
    const auto page = [&] {
        std::vector<std::uint16_t> pixels = TakePicture(engine.render, Toolkit().screenSurface).m_aPixels;
        pixels.resize(800 * 500); // above the tabs
        return pixels;
    };
    const auto first = page();
    for (const int id : {60, 70, 70, 60}) {
        ClickControl(help, id);
        EXPECT_EQ(help->GetControlAs<CItfButton>(id)->GetState(), BUTTON_DOWN) << id;
        EXPECT_EQ(help->GetControlAs<CItfButton>(130 - id)->GetState(), BUTTON_UP) << id;
        EXPECT_EQ(page() == first, id == CHelpDlg::IDC_FIRST_PAGE);
    }
    SendEvent({.code = EVENT_HELP});
    EXPECT_EQ(Find<CHelpDlg>(), help) << "never twice";
}

TEST_F(EndingsTest, CreditsScrollInBlocks)
{
    std::string text; // every other of 24 lines is empty
    for (int line = 0; line < 12; ++line)
        text += "X\r\n\r\n";
    WriteFile(CREDITS, text);
    WriteDialogs(R"(MainDlg { DIALOG, "", 0, 0, 800, 600, MENU, "" "" "", "", 10, 0, 0, 9, 9 }
CreditsDlg { DIALOG, "back", 100, 50, 400, 250, TEXTBOX, "" "" "" "" "", 20, 10, 20, 210, 120, -1, 0, 0, 0 })");
    AddFont("itfMainFont");
    AddSprite("back", 300, 200, 0x001f);
    Start(99);
    Choose(MENU_CREDITS);
    FinishShade();
    auto* credits = Find<CCreditsDlg>();
    ASSERT_NE(credits, nullptr);
    // A repaint shows the whole canvas, 180 lines of pixels in the place of 100, until the next step.
    const auto check = [&](const char* when, bool whole = false) {
        for (const int y : {0, 9, 15, 50, 89, 99}) {
            const int line =
                credits->GetFirstLine() + (whole ? y * 180 / 100 : credits->GetOffset() + y) / 10;
            EXPECT_EQ(Pixel(100 + 110, 50 + 20 + y), line % 2 == 0 && line < 24 ? 0xffff : 0x001f)
                << when << ": " << credits->GetFirstLine() << ", " << credits->GetOffset() << ", " << y;
        }
    };
    check("at first", true);
    const Rows<int, int> ticks = {{20, 0},   {1, 1},  {10, 1},        {10, 1},       {1, 2},
                                  {5000, 3}, {20, 3}, {INT32_MIN, 3}, {INT32_MAX, 4}};
    for (const auto& [elapsed, offset] : ticks) {
        Frame(elapsed);
        EXPECT_EQ(credits->GetOffset(), offset) << elapsed;
    }
    check("after the ticks");
    credits->Invalidate(nullptr);
    check("painted anew", true);
    // A block of 8 lines of 10 pixels, and again from the beginning behind the last line.
    std::vector<int> firstLines;
    for (int step = 0; step < 81 * 4; ++step) {
        Frame(21);
        if (credits->GetOffset() == 0)
            firstLines.push_back(credits->GetFirstLine());
        if (step % 27 == 0)
            check("on the way");
    }
    EXPECT_EQ(firstLines, (std::vector<int>{8, 16, 0, 8}));
    Press<CCreditsDlg>(CCreditsDlg::IDC_CLOSE);
    EXPECT_NE(Find<CMainDlg>(), nullptr);
}

TEST_F(EndingsTest, CreditsOfEveryKind)
{
    Start(99);
    const Rows<std::string, int> cases = {
        {"", 0}, {std::string("\0hidden", 7), 0}, {"a line feed alone\nends nothing", 1}};
    for (const auto& [text, count] : cases) {
        WriteFile(CREDITS, text);
        Choose(MENU_CREDITS);
        ASSERT_NE(Find<CCreditsDlg>(), nullptr);
        EXPECT_EQ(Find<CCreditsDlg>()->GetLineCount(), count) << text;
        SendEvent({.code = EVENT_MAIN_MENU});
    }
}

// The three forms of the dialog, and what a host may lack.
TEST_F(EndingsTest, TheEndOfABattle)
{
    // campaign, network, winner; result, the button that goes on, again, look on, left of the statistics
    const Rows<bool, bool, int, const char*, const char*, bool, bool, int> cases = {
        {false, false, 0, "text 13", "Scenarios", true, true, 172},
        {true, false, 0, "text 13", "text 13112", false, true, 320},
        {false, true, 1, "text 14", "text 13113", false, false, 320},
        {true, true, 0, "text 13", "text 13112", false, true, 320},
    };
    for (const auto& [campaign, network, winner, result, goOn, again, lookOn, left] : cases) {
        SCOPED_TRACE(std::string(campaign ? "campaign " : "") + (network ? "network " : "") + result);
        state.header.bCampaign = campaign;
        engine.net.networkGame = network;
        game.winner = winner;
        Start(99);
        engine.playList.calls.clear();
        CEndGameDlg* dialog = EndGame();
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(engine.playList.calls, std::vector<std::string>{"Stop 500"});
        EXPECT_EQ(Text<CEndGameDlg>(CEndGameDlg::IDC_RESULT), result);
        EXPECT_EQ(dialog->GetControl(CEndGameDlg::IDC_GO_ON)->GetCaption(), goOn);
        EXPECT_EQ(dialog->GetControl(CEndGameDlg::IDC_AGAIN)->IsVisible(), again);
        EXPECT_EQ(dialog->GetControl(CEndGameDlg::IDC_LOOK_ON)->IsVisible(), lookOn);
        EXPECT_EQ(dialog->GetControl(CEndGameDlg::IDC_STATISTICS)->GetPos().x, left);
        // The statistics bring the same dialog back.
        Press<CEndGameDlg>(CEndGameDlg::IDC_STATISTICS);
        FinishShade();
        Start(99);
        EXPECT_FALSE(dialog->IsVisible()) << "nor does a second start show it";
        Press<CStatisticsDlg>(CStatisticsDlg::IDC_CLOSE);
        FinishShade();
        EXPECT_EQ(dialog->GetControl(CEndGameDlg::IDC_AGAIN)->IsVisible(), again);
        Send(MSG_ITF_CLOSE_ALL);
    }
    engine.net.networkGame = false;
    state.header.bCampaign = 0;
    const Rows<const char*, std::function<void()>> lacks = {
        {"no header", [&] { state.hasHeader = false; }},
        {"no entity", [&] { engine.currentScene = nullptr; }},
        {"no scenario", [&] { state.hasScenario = false; }},
        {"no game", [&] { engine.gameState = nullptr; }},
        {"no network", [&] { engine.hasNet = false; }},
    };
    for (const auto& [name, takeAway] : lacks) {
        takeAway();
        ASSERT_NE(EndGame(), nullptr) << name;
        const bool shown = std::string(name) == "no header";
        EXPECT_EQ(Text<CEndGameDlg>(CEndGameDlg::IDC_RESULT), shown ? "text 13" : "") << name;
        Press<CEndGameDlg>(CEndGameDlg::IDC_STATISTICS);
        EXPECT_EQ(Find<CStatisticsDlg>() != nullptr, shown) << name;
        EXPECT_TRUE(shown || (Find<CEndGameDlg>()->IsVisible() && CItfWnd::IsDrawing())) << name;
        Send(MSG_ITF_CLOSE_ALL);
    }
}

TEST_F(EndingsTest, TheWaysOn)
{
    // In a network game that counts, whatever else it is.
    Start(99);
    for (const auto& [network, code] : {std::pair{false, CMD_CONTINUE_CAMPAIGN}, {true, CMD_BACK_TO_LOBBY}}) {
        state.header.bCampaign = 1;
        engine.net.networkGame = network;
        engine.messages.clear();
        EndGame();
        Press<CEndGameDlg>(CEndGameDlg::IDC_GO_ON);
        EXPECT_EQ(Find<CItfDialog>(), nullptr);
        EXPECT_EQ(Commands(), std::vector<int>{code});
    }
    EXPECT_EQ(scene.SentWith(MSG_LOGIC_STOP).size(), 2u);
    EndGame();
    Press<CEndGameDlg>(CEndGameDlg::IDC_LEAVE);
    EXPECT_EQ(engine.net.calls, std::vector<std::string>{"Disconnect 1"});
    EndGame();
    Press<CEndGameDlg>(CEndGameDlg::IDC_AGAIN);
    ASSERT_NE(Find<CScenBriefDlg>(), nullptr);
    EXPECT_STREQ(Find<CMainWnd>()->GetCommand().szPath, SCENARIO);
    // Without a game nobody knows the scenario: the list.
    engine.gameState = nullptr;
    EndGame();
    Press<CEndGameDlg>(CEndGameDlg::IDC_AGAIN);
    EXPECT_NE(Find<CScenSelDlg>(), nullptr);
    // The logic may close everything as it stops.
    Send(MSG_ITF_CLOSE_ALL);
    scene.onMessage = [&](const Sent& sent) -> Word {
        if (sent.number == MSG_LOGIC_STOP)
            SendEvent({.code = EVENT_MAIN_MENU});
        return 0;
    };
    EndGame();
    Press<CEndGameDlg>(CEndGameDlg::IDC_AGAIN);
    EXPECT_EQ(Find<CScenSelDlg>(), nullptr);
}

TEST_F(EndingsTest, Statistics)
{
    using Lines = std::vector<std::string>;
    const auto open = [&] {
        Send(MSG_ITF_CLOSE_ALL);
        EndGame();
        Press<CEndGameDlg>(CEndGameDlg::IDC_STATISTICS);
        Lines rows;
        const CItfReportBox& table = TableOf(Find<CStatisticsDlg>(), CStatisticsDlg::IDC_TABLE);
        for (int row = 0; row < table.GetCount(); ++row) {
            rows.emplace_back();
            for (const std::string& cell : Cells(table, row))
                rows.back() += cell + "|";
        }
        return rows;
    };
    Start(99);
    game.players = {{nullptr}, {"Captain \"Q\"", "second"}};
    EXPECT_EQ(open(), Lines{"B|Captain \"Q\"|20|40|60|80|100|120|"});
    EXPECT_EQ(Text<CStatisticsDlg>(CStatisticsDlg::IDC_SCENARIO), "Scenario: \"Balloons\"");

    engine.net.networkGame = true;
    game.players = {{"one", nullptr, "three"}, {}, {"a guest"}};
    EXPECT_EQ(open(), (Lines{"A|one|1|2|3|4|5|6|", "A|three|3|6|9|12|15|18|", "C|a guest|1|2|3|4|5|6|",
                             "|=================|||||||", "A|Side A|10|20|30|40|50|60|",
                             "B|Side B|20|40|60|80|100|120|"}));
    std::memset(state.scenario.szTitle, 'x', sizeof state.scenario.szTitle);
    engine.textTable.texts = {{12250, "%d d %d h %d m"}, {12251, "%d h %d m"}, {12252, "%d m"}};
    const Rows<std::array<int, 3>, const char*> times = {
        {{0, 0, 59}, "59 m"}, {{0, 1, 0}, "1 h 0 m"}, {{1, 0, 7}, "1 d 0 h 7 m"}};
    for (const auto& [time, text] : times) {
        std::copy(time.begin(), time.end(), game.time);
        open();
        EXPECT_EQ(Text<CStatisticsDlg>(CStatisticsDlg::IDC_TIME), text);
    }
    EXPECT_EQ(Text<CStatisticsDlg>(CStatisticsDlg::IDC_SCENARIO).size(), 260u + 12u);
}

// A changed text may ask for more, for less, or for something else.
TEST(TextFormatTest, TakesNumbersAlone)
{
    const Rows<const char*, const char*> cases = {{"%d:%d", "3:-4"},
                                                  {"%d of %d and %d", "3 of -4 and %d"},
                                                  {"100%% %s%n%", "100% %s%n%"},
                                                  {nullptr, ""}};
    for (const auto& [format, text] : cases)
        EXPECT_EQ(FormatNumbers(format, {3, -4}), text);
}

TEST_F(EndingsTest, Status)
{
    ItfScenarioStatus status = {};
    std::strcpy(status.szPath, SCENARIO);
    status.nPercentA = -7;
    status.nPercentB = 250;
    ItfEvent event;
    event.code = EVENT_SCENARIO_STATUS;
    event.object = &status;
    Start(99);
    SendEvent(event);
    EXPECT_EQ(Text<CScStatusDlg>(CScStatusDlg::IDC_PERCENT_A), "-7%");
    EXPECT_EQ(Text<CScStatusDlg>(CScStatusDlg::IDC_PERCENT_B), "250%");
    Press<CScStatusDlg>(CScStatusDlg::IDC_CLOSE);

    // What can't be shown lets the battle go on at once.
    WriteFile("scenarios/broken.sc", "no scenario");
    for (const char* path : {"scenarios\\nowhere.sc", "scenarios\\broken.sc", "", "no record"}) {
        engine.messages.clear();
        const bool record = std::strcmp(path, "no record") != 0;
        event.object = record ? &status : nullptr;
        std::strcpy(status.szPath, path);
        SendEvent(event);
        EXPECT_EQ(Find<CScStatusDlg>(), nullptr);
        EXPECT_EQ(Commands(), std::vector<int>{CMD_RESUME});
        EXPECT_EQ(TakeDebug().size(), record ? 1u : 0u);
    }
}

// Without its section, with a broken one, or with too little room in the window table: nothing is left of the
// dialog, and the battle goes on.
TEST_F(EndingsTest, DialogsThatCannotOpen)
{
    // the resource, empty for the shipped one; room in the window table
    Rows<std::string, std::size_t> lacks = {
        {"Other { DIALOG, \"\", 0, 0, 9, 9 }", MAX_WINDOWS},
        {"MainDlg { oops } ScStatusDlg { oops } HelpDlg { oops } MessageBoxDlg { oops }"
         " MessageBoxYesNoDlg { oops } EndGameDlg { oops }",
         MAX_WINDOWS}};
    for (std::size_t room = 0; room < 8; ++room)
        lacks.emplace_back("", room);
    for (const auto& [dialogs, room] : lacks) {
        if (dialogs.empty())
            std::filesystem::remove(userFolder / "resource/txt_res/itfdlg.ini");
        else
            WriteDialogs(dialogs);
        for (const auto& [code, resumes] : DIALOG_EVENTS) {
            SCOPED_TRACE(std::to_string(code) + ", room for " + std::to_string(room));
            Start(99);
            std::vector<std::unique_ptr<RecordingWnd>> others;
            while (Toolkit().windows.size() + room < MAX_WINDOWS) {
                others.push_back(std::make_unique<RecordingWnd>());
                ASSERT_TRUE(others.back()->Create(nullptr, nullptr, nullptr, nullptr, 0, 0, &engine));
            }
            const std::size_t windows = Toolkit().windows.size();
            engine.messages.clear();
            CItfWnd::SetDrawing(false);
            bool threw = false;
            try {
                SendDialogEvent(code);
            } catch (int) {
                threw = true;
            }
            FinishShade();
            EXPECT_EQ(threw, !TakeDebug().empty()) << "what is wrong is told";
            EXPECT_TRUE(threw || dialogs.empty());
            const bool opened = Find<CItfDialog>() != nullptr;
            EXPECT_EQ(Commands().size(), resumes && !opened ? 1u : 0u);
            if (!opened) {
                EXPECT_EQ(Toolkit().windows.size(), windows);
                EXPECT_EQ(CItfWnd::GetModalId(), -1);
            }
            Send(MSG_ITF_CLOSE_ALL);
        }
    }
    // The message of the menu's event reaches the player without the menu.
    WriteDialogs("MessageBoxDlg { TEXTBOX, \"\" \"\" \"\" \"\" \"\", 40, 0, 0, 9, 9, -1, 0, 0, 0 }");
    Start(99);
    EXPECT_THROW(SendEvent({.code = EVENT_MENU_WITH_MESSAGE, .value2 = 77}), int);
    EXPECT_EQ(Text<CValueBox>(CValueBox::IDC_MESSAGE), "text 77");
    EXPECT_TRUE(CItfWnd::IsDrawing());
    TakeDebug();
}

// The loading screen leaves drawing off, until the next event shows something.
TEST_F(EndingsTest, WhatOpensAfterTheLoadingScreenIsSeen)
{
    const auto isSeen = [&] {
        auto* dialog = Find<CItfDialog>();
        return dialog != nullptr && CItfWnd::IsDrawing() && dialog->IsVisible() &&
               (dialog->GetState() & IWF_DIRTY) == 0;
    };
    WriteFile(CREDITS, "Some names");
    for (const auto& [code, resumes] : DIALOG_EVENTS) {
        SCOPED_TRACE(code);
        Start(99);
        SendEvent({.code = EVENT_MISSION_BRIEF, .value2 = 0});
        ASSERT_FALSE(CItfWnd::IsDrawing());
        EXPECT_NE(engine.render.DisplayPixels()[300 * 800 + 400], 0) << "the screen is shown at once";
        SendDialogEvent(code);
        FinishShade();
        EXPECT_TRUE(isSeen());
        Send(MSG_ITF_CLOSE_ALL);
    }
    // The same where nothing shades.
    engine.refused.insert("shader");
    for (const int item : {MENU_SCENARIO, MENU_CREDITS}) {
        Start();
        Choose(item);
        EXPECT_TRUE(isSeen()) << item;
        Send(MSG_ITF_CLOSE_ALL);
    }
    Start(EVENT_END_GAME);
    Press<CEndGameDlg>(CEndGameDlg::IDC_STATISTICS);
    EXPECT_TRUE(isSeen());
    Press<CStatisticsDlg>(CStatisticsDlg::IDC_CLOSE);
    EXPECT_TRUE(isSeen());
}

TEST_F(EndingsTest, LeavingIsAskedOnce)
{
    Start(EVENT_LEAVE_BATTLE);
    const std::size_t windows = Toolkit().windows.size();
    SendEvent({.code = EVENT_LEAVE_BATTLE});
    EXPECT_EQ(Toolkit().windows.size(), windows);
    Press<CValueBox>(CValueBox::IDC_SECOND);
    SendEvent({.code = EVENT_LEAVE_BATTLE});
    EXPECT_EQ(Find<CValueBox>(), nullptr) << "the answer is on its way";
    Frame();
    // With yes the dialogs below go too.
    SendEvent({.code = EVENT_HELP});
    SendEvent({.code = EVENT_LEAVE_BATTLE});
    Press<CValueBox>(CValueBox::IDC_FIRST);
    Frame();
    EXPECT_EQ(Find<CHelpDlg>(), nullptr);
    EXPECT_NE(Find<CMainDlg>(), nullptr);
    FinishShade();
    // The logic may close everything as it hears of it.
    engine.onMessage = [&](const Sent& sent) -> Word {
        if (sent.number == MSG_LOGIC_STOPPED)
            Send(MSG_ITF_CLOSE_ALL);
        return 0;
    };
    SendEvent({.code = EVENT_LEAVE_BATTLE});
    Press<CValueBox>(CValueBox::IDC_FIRST);
    Frame();
    EXPECT_TRUE(Toolkit().windows.empty());
}

} // namespace
