// Help, credits, the end of a battle, its statistics, and how it stands: with small resources of their own.

#include <algorithm>
#include <array>
#include <cstring>
#include <typeinfo>

#include "controls/itfbutton.h"
#include "controls/itfpicturebox.h"
#include "controls/itfreportbox.h"
#include "controls/itftextbox.h"
#include "flow/creditsdlg.h"
#include "flow/endgamedlg.h"
#include "flow/flow.h"
#include "flow/helpdlg.h"
#include "flow/maindlg.h"
#include "flow/valuebox.h"
#include "keelworks/ds_file.h"
#include "kernel/textformat.h"
#include "platform/files.h"
#include "scenario/scenbriefdlg.h"
#include "scenario/scenseldlg.h"
#include "scenario/scstatusdlg.h"
#include "scenario/statisticsdlg.h"
#include "support/toolkit_fixture.h"

using namespace seawarden_test;

namespace
{

constexpr char SCENARIO[] = "scenarios\\balloon_day.sc";

constexpr char DIALOGS[] = R"(
MainDlg { DIALOG, "", 0, 0, 800, 600, MENU, "" "" "", "", 10, 0, 0, 9, 9 }
ScenSelDlg { DIALOG, "", 0, 0, 9, 9 }
ScenBriefDlg { DIALOG, "", 0, 0, 9, 9, BUTTON, "" "" "" "" "", 20, 0, 0, 9, 9, -1, 0, 0, 0,
  BUTTON, "" "" "" "" "", 30, 0, 0, 9, 9, -1, 0, 0, 0, BUTTON, "" "" "" "" "", 170, 0, 0, 9, 9, -1, 0, 0, 0 }
MessageBoxDlg { DIALOG, "", 0, 0, 9, 9, TEXTBOX, "" "" "" "" "", 40, 0, 0, 9, 9, -1, 0, 0, 0 }
MessageBoxYesNoDlg { DIALOG, "", 0, 0, 9, 9 }
HelpDlg { DIALOG, "", 0, 0, 400, 300,
  CHECKBOX, "" "" "" "" "ITFBTSTYLE_MANUAL", 60, 0, 0, 9, 9, -1, 0, 0, 0,
  CHECKBOX, "" "" "" "" "ITFBTSTYLE_MANUAL", 70, 0, 20, 9, 29, -1, 0, 0, 0 }
CreditsDlg { DIALOG, "back", 100, 50, 400, 250,
  TEXTBOX, "" "" "" "" "", 20, 10, 20, 210, 120, -1, 0, 0, 0 }
EndGameDlg { DIALOG, "", 0, 0, 800, 600,
  BUTTON, "leave" "" "" "" "", 10, 0, 0, 9, 9, -1, 0, 0, 0,
  BUTTON, "figures" "" "" "" "", 20, 11, 33, 20, 42, -1, 0, 0, 0,
  BUTTON, "again" "" "" "" "", 30, 0, 0, 9, 9, -1, 0, 0, 0,
  BUTTON, "list" "" "" "" "", 40, 0, 0, 9, 9, -1, 0, 0, 0,
  BUTTON, "look on" "" "" "" "", 50, 0, 0, 9, 9, -1, 0, 0, 0,
  TEXTBOX, "" "" "" "" "", 60, 0, 0, 200, 30, -1, 0, 0, 0,
  PICTUREBOX, "won" "" "", 70, 10, 10, 1, 1, 1, 100, 100, 110, 110, -1, 0, 0, 0 }
StatisticsDlg { DIALOG, "", 0, 0, 800, 600,
  TABLE, "" "" "" "", 10, 0, 0, 800, 500, -1, 0, 0, 0,
  COLUMN, "" "", 10, 0, 50, 0, 0, 9, 9, COLUMN, "" "", 10, 1, 50, 0, 0, 9, 9, COLUMN, "" "", 10, 2, 50, 0, 0, 9, 9,
  COLUMN, "" "", 10, 3, 50, 0, 0, 9, 9, COLUMN, "" "", 10, 4, 50, 0, 0, 9, 9, COLUMN, "" "", 10, 5, 50, 0, 0, 9, 9,
  COLUMN, "" "", 10, 6, 50, 0, 0, 9, 9, COLUMN, "" "", 10, 7, 50, 0, 0, 9, 9,
  TEXTBOX, "" "" "" "" "", 30, 0, 0, 9, 9, -1, 0, 0, 0, TEXTBOX, "" "" "" "" "", 40, 0, 0, 9, 9, -1, 0, 0, 0 }
ScStatusDlg { DIALOG, "", 0, 0, 400, 300,
  TEXTBOX, "" "" "" "" "", 30, 0, 0, 9, 9, -1, 0, 0, 0, TEXTBOX, "" "" "" "" "", 40, 0, 0, 9, 9, -1, 0, 0, 0,
  TEXTBOX, "" "" "" "" "", 60, 0, 0, 9, 9, -1, 0, 0, 0, TEXTBOX, "" "" "" "" "", 100, 0, 0, 9, 9, -1, 0, 0, 0,
  TEXTBOX, "" "" "" "" "", 80, 0, 0, 9, 9, -1, 0, 0, 0, TEXTBOX, "" "" "" "" "", 120, 0, 0, 9, 9, -1, 0, 0, 0,
  FLAGBOX, "" "", 150, 0, 0, 9, 9, 0.0, 0.0, 0.0, 9.0, 9.0, 1.0 }
)";

class EndingsTest : public ToolkitTest
{
  protected:
    void SetUp() override
    {
        WriteDialogs(DIALOGS);
        for (const char* name :
             {"itfMainFont", "itfListFont", "itfListFontDis", "itfBtnFont", "itfBtnFontA", "itfBtnFontDis",
              "itfMenuFont", "itfMenuFontA", "itfMenuFontDis", "itfListFont1", "itfListFont1Dis"})
            AddFont(name);
        AddSprite("back", 300, 200, 0x001f);
        AddSprite("won", 10, 10, 0x07e0);
        AddSprite("itfLoseArt", 10, 10, 0xf800);
        AddSprite("itfHelpIcons", 400, 300, 0x1111);
        AddSprite("itfHelpItf1", 400, 300, 0x2222);
        scene.AddEntity("logic", "logic");
        scene.AddEntity("Game", "battle", &game);
        engine.currentScene = &scene;
        std::strcpy(state.scenario.szPath, SCENARIO);
        std::strcpy(state.scenario.szTitle, "Balloons");
        engine.gameState = &state;
    }
    // The newest window of the class, null when there is none.
    template <class T>
    T* Find()
    {
        for (auto entry = Toolkit().windows.rbegin(); entry != Toolkit().windows.rend(); ++entry) {
            if (auto* wnd = dynamic_cast<T*>(entry->wnd))
                return wnd;
        }
        return nullptr;
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
        auto* box = Find<T>()->template GetControlAs<CItfTextBox>(control);
        return box != nullptr ? box->GetText() : "none";
    }
    CEndGameDlg* EndGame(bool won = true)
    {
        SendEvent({.code = EVENT_END_GAME, .value2 = won});
        FinishShade();
        return Find<CEndGameDlg>();
    }
    std::vector<std::string> Rows()
    {
        auto* table = Find<CStatisticsDlg>()->GetControlAs<CItfReportBox>(CStatisticsDlg::IDC_TABLE);
        std::vector<std::string> rows;
        for (int row = 0; row < table->GetCount(); ++row) {
            std::string line;
            for (int column = 0; column < table->GetColumnCount(); ++column) {
                EXPECT_EQ(table->GetItem(row, column).m_nData, row);
                line += (column > 0 ? "|" : "") + table->GetItem(row, column).m_Text;
            }
            rows.push_back(line);
        }
        return rows;
    }
    // What an event opens, and what goes out when it can't.
    struct DialogEvent {
        int code;
        std::vector<int> commands;
    };
    static std::vector<DialogEvent> DialogEvents()
    {
        return {
            {EVENT_MAIN_MENU, {}},
            {EVENT_SCENARIO_STATUS, {CMD_RESUME}},
            {EVENT_HELP, {CMD_RESUME}},
            {EVENT_MESSAGE, {}},
            {EVENT_LEAVE_BATTLE, {CMD_RESUME}},
            {EVENT_MENU_WITH_MESSAGE, {}},
            {EVENT_END_GAME, {CMD_RESUME}},
            {EVENT_MESSAGE_BOX, {CMD_RESUME}},
        };
    }
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
    std::size_t LogicStops() { return scene.SentWith(MSG_LOGIC_STOP).size(); }

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
    const auto checked = [&](int id) {
        return help->GetControlAs<CItfButton>(id)->GetState() == BUTTON_DOWN;
    };
    const std::pair<int, std::uint16_t> clicks[] = {{60, 0x1111}, {70, 0x2222}, {70, 0x2222}, {60, 0x1111}};
    EXPECT_EQ(Pixel(200, 200), 0x1111);
    for (const auto& [id, pixel] : clicks) {
        Click(4, id == 60 ? 4 : 24);
        EXPECT_TRUE(checked(id) && !checked(id == 60 ? 70 : 60)) << id;
        EXPECT_EQ(Pixel(200, 200), pixel) << id;
    }
    SendEvent({.code = EVENT_HELP});
    EXPECT_EQ(Find<CHelpDlg>(), help) << "never twice";
    Press<CHelpDlg>(CHelpDlg::IDC_CLOSE);
    EXPECT_EQ(Find<CHelpDlg>(), nullptr);
    EXPECT_EQ(Commands(), std::vector<int>{CMD_RESUME});
}

TEST_F(EndingsTest, CreditsScrollInBlocks)
{
    std::string text; // every other of 20 lines is empty
    for (int line = 0; line < 20; ++line)
        text += line % 2 == 0 ? "X\r\n" : "\r\n";
    WriteFile("resource/txt_res/itfCredits.txt", text);
    Start();
    FinishShade();
    CItfWnd::PostTo(0, ITFM_COMMAND, DLG_MAIN, MENU_CREDITS);
    Frame();
    EXPECT_EQ(Find<CMainDlg>(), nullptr);
    FinishShade();
    auto* credits = Find<CCreditsDlg>();
    ASSERT_NE(credits, nullptr);
    EXPECT_EQ(credits->GetLineCount(), 20);

    const auto shows = [&](int line) { return line % 2 == 0 && line < 20; };
    // A repaint shows the whole canvas, 180 lines of pixels in the place of 100, until the next step.
    const auto check = [&](const char* when, bool whole = false) {
        for (const int y : {0, 9, 15, 50, 89, 99}) {
            const int line =
                credits->GetFirstLine() + (whole ? y * 180 / 100 : credits->GetOffset() + y) / 10;
            EXPECT_EQ(Pixel(100 + 110, 50 + 20 + y), shows(line) ? 0xffff : 0x001f)
                << when << ": " << credits->GetFirstLine() << ", " << credits->GetOffset() << ", " << y;
        }
    };
    check("at first", true);
    const std::pair<int, int> ticks[] = {{20, 0},   {1, 1},  {10, 1},        {10, 1},       {1, 2},
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
    constexpr std::size_t large = 5u << 20;
    std::string words;
    while (words.size() < large)
        words += "a few words ";
    std::string lines;
    while (lines.size() < large)
        lines += "line\r\n";
    const std::pair<std::string, int> cases[] = {
        {"", 0},
        {std::string("\0hidden", 7), 0},
        {"one line\nstill the same", 1}, // a line feed alone ends nothing
        {std::string(large, 'x'), 1},
        {words, static_cast<int>((words.size() + 23) / 24)},
        {lines, static_cast<int>(lines.size() / 6)},
    };
    Start();
    for (const auto& [text, count] : cases) {
        WriteFile("resource/txt_res/itfCredits.txt", text);
        CItfWnd::PostTo(0, ITFM_COMMAND, DLG_MAIN, MENU_CREDITS);
        Frame();
        FinishShade();
        ASSERT_NE(Find<CCreditsDlg>(), nullptr);
        EXPECT_EQ(Find<CCreditsDlg>()->GetLineCount(), count) << text.substr(0, 20);
        for (int step = 0; step < 82; ++step)
            Frame(21);
        EXPECT_EQ(Find<CCreditsDlg>()->GetFirstLine(), count > 8 ? 8 : 0);
        SendEvent({.code = EVENT_MAIN_MENU});
    }
    // Without the file the host hears why, and the menu is there again.
    std::filesystem::remove(userFolder / "resource/txt_res/itfCredits.txt");
    PlatformSetRoots(userFolder.string(), (userFolder / "nowhere").string());
    FinishShade();
    CItfWnd::PostTo(0, ITFM_COMMAND, DLG_MAIN, MENU_CREDITS);
    EXPECT_THROW(Frame(), fopen_exception);
    EXPECT_EQ(Find<CCreditsDlg>(), nullptr);
    EXPECT_NE(Find<CMainDlg>(), nullptr);
    FinishShade();
    WriteFile("resource/txt_res/itfCredits.txt", "back");
    CItfWnd::PostTo(0, ITFM_COMMAND, DLG_MAIN, MENU_CREDITS);
    Frame();
    EXPECT_NE(Find<CCreditsDlg>(), nullptr);
}

// The three forms of the dialog, and what a host may lack.
TEST_F(EndingsTest, TheEndOfABattle)
{
    struct Case {
        const char* name;
        bool won;
        bool campaign;
        bool network;
        int winner;
        const char* result;
        const char* goOn;
        bool again;
        bool lookOn;
        int statisticsLeft;
        std::uint16_t art;
    };
    const Case cases[] = {
        {"single, won", true, false, false, 0, "text 13", "list", true, true, 11, 0x07e0},
        {"single, lost", false, false, false, 1, "text 14", "list", true, true, 11, 0xf800},
        {"campaign", true, true, false, 0, "text 13", "text 13112", false, true, 320, 0x07e0},
        {"network", false, false, true, 1, "text 14", "text 13113", false, false, 320, 0xf800},
        {"campaign in a network", true, true, true, 0, "text 13", "text 13112", false, true, 320, 0x07e0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        state.header.bCampaign = c.campaign;
        engine.net.networkGame = c.network;
        game.winner = c.winner;
        Start(99);
        engine.playList.calls.clear();
        CEndGameDlg* dialog = EndGame(c.won);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(engine.playList.calls, std::vector<std::string>{"Stop 500"});
        EXPECT_EQ(Text<CEndGameDlg>(CEndGameDlg::IDC_RESULT), c.result);
        EXPECT_EQ(dialog->GetControl(CEndGameDlg::IDC_GO_ON)->GetCaption(), c.goOn);
        EXPECT_EQ(dialog->GetControl(CEndGameDlg::IDC_AGAIN)->IsVisible(), c.again);
        EXPECT_EQ(dialog->GetControl(CEndGameDlg::IDC_LOOK_ON)->IsVisible(), c.lookOn);
        EXPECT_EQ(dialog->GetControl(CEndGameDlg::IDC_STATISTICS)->GetPos(), (POINT{c.statisticsLeft, 33}));
        EXPECT_EQ(Pixel(105, 105), c.art);
        // The statistics bring the same dialog back.
        Press<CEndGameDlg>(CEndGameDlg::IDC_STATISTICS);
        FinishShade();
        ASSERT_NE(Find<CStatisticsDlg>(), nullptr);
        Start(99);
        EXPECT_FALSE(dialog->IsVisible()) << "nor does a second start show it";
        Press<CEndGameDlg>(CEndGameDlg::IDC_STATISTICS);
        Press<CStatisticsDlg>(CStatisticsDlg::IDC_CLOSE);
        EXPECT_EQ(Find<CStatisticsDlg>(), nullptr);
        FinishShade();
        EXPECT_TRUE(dialog->IsVisible());
        EXPECT_EQ(dialog->GetControl(CEndGameDlg::IDC_AGAIN)->IsVisible(), c.again);
        EXPECT_EQ(Text<CEndGameDlg>(CEndGameDlg::IDC_RESULT), c.result);
        Send(MSG_ITF_CLOSE_ALL);
    }
    engine.net.networkGame = false;
    state.header.bCampaign = 0;
    const std::pair<const char*, std::function<void()>> lacks[] = {
        {"no header", [&] { state.hasHeader = false; }},
        {"no entity", [&] { engine.currentScene = nullptr; }},
        {"no scenario", [&] { state.hasScenario = false; }},
        {"no game, though in a network",
         [&] {
             engine.gameState = nullptr;
             engine.net.networkGame = true;
         }},
        {"no network", [&] { engine.hasNet = false; }},
    };
    for (const auto& [name, takeAway] : lacks) {
        takeAway();
        ASSERT_NE(EndGame(), nullptr) << name;
        const bool shown = std::string(name) == "no header";
        EXPECT_EQ(Text<CEndGameDlg>(CEndGameDlg::IDC_RESULT), shown ? "text 13" : "") << name;
        EXPECT_TRUE(Find<CEndGameDlg>()->GetControl(CEndGameDlg::IDC_AGAIN)->IsVisible()) << name;
        Press<CEndGameDlg>(CEndGameDlg::IDC_STATISTICS);
        EXPECT_EQ(Find<CStatisticsDlg>() != nullptr, shown) << name;
        EXPECT_TRUE(shown || (Find<CEndGameDlg>()->IsVisible() && CItfWnd::IsDrawing())) << name;
        Send(MSG_ITF_CLOSE_ALL);
    }
}

TEST_F(EndingsTest, TheWaysOn)
{
    struct Case {
        int button;
        bool campaign;
        bool network;
        std::size_t stops;
        const std::type_info* opens; ///< null for none
        std::vector<int> commands;
        std::vector<std::string> net;
    };
    const Case cases[] = {
        {CEndGameDlg::IDC_LEAVE, false, false, 1, &typeid(CMainDlg), {}, {"Disconnect 1"}},
        {CEndGameDlg::IDC_AGAIN, false, false, 1, &typeid(CScenBriefDlg), {}, {}},
        {CEndGameDlg::IDC_GO_ON, false, false, 1, &typeid(CScenSelDlg), {}, {}},
        {CEndGameDlg::IDC_GO_ON, true, false, 1, nullptr, {CMD_CONTINUE_CAMPAIGN}, {}},
        {CEndGameDlg::IDC_GO_ON, true, true, 1, nullptr, {CMD_BACK_TO_LOBBY}, {}},
        {CEndGameDlg::IDC_LOOK_ON, false, false, 0, nullptr, {CMD_RESUME}, {}},
    };
    FakeGraphics graphics;
    graphics.options.nOptionValue = 8;
    scene.AddEntity("graphics", "graphics", &graphics);
    Start(99);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.button);
        state.header.bCampaign = c.campaign;
        engine.net.networkGame = c.network;
        scene.messages.clear();
        engine.messages.clear();
        engine.net.calls.clear();
        ASSERT_NE(EndGame(), nullptr);
        Press<CEndGameDlg>(c.button);
        EXPECT_EQ(Find<CEndGameDlg>(), nullptr);
        EXPECT_EQ(LogicStops(), c.stops);
        auto* opened = Find<CItfDialog>();
        EXPECT_EQ(opened != nullptr ? &typeid(*opened) : nullptr, c.opens);
        EXPECT_EQ(Commands(), c.commands);
        EXPECT_EQ(engine.net.calls, c.net);
        EXPECT_EQ(engine.SentWith(MSG_REFRESH).size(), c.button == CEndGameDlg::IDC_LOOK_ON ? 1u : 0u);
        const ItfCommand& command = Find<CMainWnd>()->GetCommand();
        if (c.button == CEndGameDlg::IDC_AGAIN) {
            EXPECT_STREQ(command.szPath, SCENARIO);
        }
        if (c.commands == std::vector<int>{CMD_CONTINUE_CAMPAIGN}) {
            EXPECT_EQ(command.nOptionValue, 8);
        }
        FinishShade();
        Find<CMainWnd>()->CloseAllDialogs();
    }
    // Without a game nobody knows the scenario: the list.
    engine.gameState = nullptr;
    EndGame();
    Press<CEndGameDlg>(CEndGameDlg::IDC_AGAIN);
    EXPECT_NE(Find<CScenSelDlg>(), nullptr);
    FinishShade();
    // The logic may close everything as it stops.
    scene.onMessage = [&](const Sent& sent) -> Word {
        if (sent.number == MSG_LOGIC_STOP)
            SendEvent({.code = EVENT_MAIN_MENU});
        return 0;
    };
    EndGame();
    Press<CEndGameDlg>(CEndGameDlg::IDC_AGAIN);
    EXPECT_EQ(Find<CScenBriefDlg>(), nullptr);
    EXPECT_NE(Find<CMainDlg>(), nullptr);
}

TEST_F(EndingsTest, Statistics)
{
    const auto open = [&] {
        Send(MSG_ITF_CLOSE_ALL);
        ASSERT_NE(EndGame(), nullptr);
        Press<CEndGameDlg>(CEndGameDlg::IDC_STATISTICS);
        ASSERT_NE(Find<CStatisticsDlg>(), nullptr);
    };
    using Lines = std::vector<std::string>;
    Start(99);
    game.players = {{nullptr}, {"Captain \"Q\"", "second"}};
    open();
    EXPECT_EQ(Rows(), Lines{"B|Captain \"Q\"|20|40|60|80|100|120"});
    EXPECT_EQ(Text<CStatisticsDlg>(CStatisticsDlg::IDC_SCENARIO), "Scenario: \"Balloons\"");

    engine.net.networkGame = true;
    game.players = {{"one", nullptr, "three"}, {}, {"a guest"}};
    open();
    EXPECT_EQ(Rows(), (Lines{"A|one|1|2|3|4|5|6", "A|three|3|6|9|12|15|18", "C|a guest|1|2|3|4|5|6",
                             "|=================||||||", "A|Side A|10|20|30|40|50|60",
                             "B|Side B|20|40|60|80|100|120"}));
    game.players.assign(8, std::vector<const char*>(25, "sailor"));
    std::memset(state.scenario.szTitle, 'x', sizeof state.scenario.szTitle);
    open();
    EXPECT_EQ(Rows().size(), 203u);
    EXPECT_EQ(Text<CStatisticsDlg>(CStatisticsDlg::IDC_SCENARIO).size(), 260u + 12u);

    engine.textTable.texts = {{12250, "%d d %d h %d m"}, {12251, "%d h %d m"}, {12252, "%d m"}};
    const std::pair<std::array<int, 3>, const char*> times[] = {
        {{0, 0, 59}, "59 m"}, {{0, 1, 0}, "1 h 0 m"}, {{1, 0, 7}, "1 d 0 h 7 m"}};
    for (const auto& [time, text] : times) {
        std::copy(time.begin(), time.end(), game.time);
        open();
        EXPECT_EQ(Text<CStatisticsDlg>(CStatisticsDlg::IDC_TIME), text);
    }
}

// A changed text may ask for more, for less, or for something else.
TEST(TextFormatTest, TakesNumbersAlone)
{
    const std::pair<const char*, const char*> cases[] = {{"%d:%d", "3:-4"},
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
    auto* dialog = Find<CScStatusDlg>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(CItfWnd::IsDrawing() && dialog->IsVisible());
    EXPECT_EQ(Text<CScStatusDlg>(CScStatusDlg::IDC_PERCENT_A), "-7%");
    EXPECT_EQ(Text<CScStatusDlg>(CScStatusDlg::IDC_PERCENT_B), "250%");
    EXPECT_GT(Text<CScStatusDlg>(CScStatusDlg::IDC_TITLE).size(), 3u);
    EXPECT_GT(Text<CScStatusDlg>(CScStatusDlg::IDC_DESCRIPTION).size(), 100u);
    const std::string nameA = dialog->GetControl(CScStatusDlg::IDC_NAME_A)->GetCaption();
    const std::string nameB = dialog->GetControl(CScStatusDlg::IDC_NAME_B)->GetCaption();
    EXPECT_EQ(nameA.substr(0, 5), "text ");
    EXPECT_EQ(nameB.substr(0, 5), "text ");
    EXPECT_NE(nameA, nameB);
    EXPECT_GE(engine.FindEntity("itf_flag", nullptr), 0) << "one flag, though the other has no box";
    SendEvent(event);
    EXPECT_EQ(Find<CScStatusDlg>(), dialog);
    EXPECT_TRUE(Commands().empty());
    Press<CScStatusDlg>(CScStatusDlg::IDC_CLOSE);
    EXPECT_EQ(Commands(), std::vector<int>{CMD_RESUME});

    // What can't be shown lets the battle go on at once.
    WriteFile("scenarios/broken.sc", "no scenario");
    const std::pair<const char*, std::size_t> broken[] = {
        {"scenarios\\nowhere.sc", 1}, {"scenarios\\broken.sc", 1}, {"", 1}, {nullptr, 0}};
    for (const auto& [path, lines] : broken) {
        engine.messages.clear();
        event.object = path != nullptr ? &status : nullptr;
        if (path != nullptr)
            std::strcpy(status.szPath, path);
        SendEvent(event);
        EXPECT_EQ(Find<CScStatusDlg>(), nullptr);
        EXPECT_EQ(Commands(), std::vector<int>{CMD_RESUME});
        EXPECT_EQ(TakeDebug().size(), lines);
    }
}

// Without its section, with a broken one, or with too little room in the window table: nothing is left of the
// dialog, and the battle goes on.
TEST_F(EndingsTest, DialogsThatCannotOpen)
{
    const std::string broken = "MainDlg { oops } ScStatusDlg { oops } HelpDlg { oops } MessageBoxDlg { oops }"
                               " MessageBoxYesNoDlg { oops } EndGameDlg { oops }";
    struct Lack {
        const char* dialogs; ///< null for those of this file
        std::size_t room;    ///< in the window table
    };
    std::vector<Lack> lacks = {{"Other { DIALOG, \"\", 0, 0, 9, 9 }", MAX_WINDOWS},
                               {broken.c_str(), MAX_WINDOWS}};
    for (std::size_t room = 0; room < 10; ++room)
        lacks.push_back({nullptr, room});
    for (const Lack& lack : lacks) {
        WriteDialogs(lack.dialogs != nullptr ? lack.dialogs : DIALOGS);
        for (const bool drawing : {true, false}) {
            for (const DialogEvent& c : DialogEvents()) {
                SCOPED_TRACE(std::to_string(c.code) + ", room for " + std::to_string(lack.room));
                Start(99);
                std::vector<std::unique_ptr<RecordingWnd>> others;
                while (Toolkit().windows.size() + lack.room < MAX_WINDOWS) {
                    others.push_back(std::make_unique<RecordingWnd>());
                    ASSERT_TRUE(others.back()->Create(nullptr, nullptr, nullptr, nullptr, 0, 0, &engine));
                }
                const std::size_t windows = Toolkit().windows.size();
                engine.messages.clear();
                CItfWnd::SetDrawing(drawing);
                bool threw = false;
                try {
                    SendDialogEvent(c.code);
                } catch (int) {
                    threw = true;
                }
                FinishShade();
                EXPECT_EQ(threw, !TakeDebug().empty()) << "what is wrong is told";
                EXPECT_TRUE(threw || lack.dialogs == nullptr);
                if (Find<CItfDialog>() == nullptr) {
                    EXPECT_EQ(Toolkit().windows.size(), windows);
                    EXPECT_EQ(CItfWnd::GetModalId(), -1);
                    EXPECT_EQ(Commands(), c.commands);
                } else {
                    EXPECT_GT(lack.room, 0u);
                    EXPECT_TRUE(Commands().empty());
                }
                EXPECT_TRUE(CItfWnd::IsDrawing());
                Send(MSG_ITF_CLOSE_ALL);
            }
        }
    }
    // The message of the menu's event reaches the player without the menu.
    WriteDialogs(std::string(DIALOGS).replace(0, 8, "NoMenuDlg"));
    Start(99);
    EXPECT_THROW(SendEvent({.code = EVENT_MENU_WITH_MESSAGE, .value2 = 77}), int);
    ASSERT_NE(Find<CValueBox>(), nullptr);
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
    for (const bool shader : {true, false}) {
        if (!shader)
            engine.refused.insert("shader");
        const auto end = [&] {
            if (shader)
                FinishShade();
        };
        for (const DialogEvent& c : DialogEvents()) {
            SCOPED_TRACE(c.code);
            Start(99);
            SendEvent({.code = EVENT_MISSION_BRIEF, .value2 = 0});
            ASSERT_FALSE(CItfWnd::IsDrawing());
            SendDialogEvent(c.code);
            end();
            EXPECT_TRUE(isSeen());
            Send(MSG_ITF_CLOSE_ALL);
        }
        for (const int item : {MENU_SCENARIO, MENU_CREDITS}) {
            WriteFile("resource/txt_res/itfCredits.txt", "Some names");
            Start();
            end();
            CItfWnd::PostTo(Find<CMainWnd>()->GetId(), ITFM_COMMAND, DLG_MAIN, item);
            Frame();
            end();
            EXPECT_TRUE(isSeen()) << item;
            Send(MSG_ITF_CLOSE_ALL);
        }
        Start(EVENT_END_GAME);
        end();
        Press<CEndGameDlg>(CEndGameDlg::IDC_STATISTICS);
        end();
        EXPECT_TRUE(isSeen());
        Press<CStatisticsDlg>(CStatisticsDlg::IDC_CLOSE);
        end();
        EXPECT_TRUE(isSeen());
        Send(MSG_ITF_CLOSE_ALL);
    }
}

TEST_F(EndingsTest, LeavingIsAskedOnce)
{
    const auto answer = [&](int control) {
        CItfWnd::SendTo(Find<CValueBox>()->GetId(), ITFM_NOTIFY, NOTIFY_CLICKED, control);
    };
    Start(EVENT_LEAVE_BATTLE);
    auto* box = Find<CValueBox>();
    const std::size_t windows = Toolkit().windows.size();
    SendEvent({.code = EVENT_LEAVE_BATTLE});
    EXPECT_EQ(Toolkit().windows.size(), windows);
    EXPECT_EQ(Find<CValueBox>(), box);
    answer(CValueBox::IDC_SECOND);
    SendEvent({.code = EVENT_LEAVE_BATTLE});
    EXPECT_EQ(Find<CValueBox>(), nullptr) << "the answer is on its way";
    Frame();
    // With yes the dialogs below go too.
    SendEvent({.code = EVENT_HELP});
    SendEvent({.code = EVENT_LEAVE_BATTLE});
    answer(CValueBox::IDC_FIRST);
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
    answer(CValueBox::IDC_FIRST);
    Frame();
    EXPECT_TRUE(Toolkit().windows.empty());
}

} // namespace
