// The way of a battle: loading, the screens over it, its end, and what it tells others.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "battle/battle_loader.h"
#include "engine/world.h"
#include "entities/battle_game.h"
#include "entities/battle_logic.h"
#include "keelworks/scenario_writer.h"
#include "logic/logic.h"
#include "platform/input.h"
#include "platform/temp_roots.h"
#include "script/dialog_rects.h"
#include "sound/sound.h"
#include "support/fakes.h"

namespace
{

using seawarden_test::FakeHost;

constexpr const char* PATH = "scenarios\\test.sc";
constexpr int FRAME = 125; ///< milliseconds: a whole number of steps
constexpr std::int64_t FRAME_TIME = std::int64_t{FRAME} * CBattleSim::TIME_SCALE;
static_assert(FRAME_TIME % CBattleSim::STEP == 0);

ScenarioShip Ship(int side, int x, int y, int heading = 90)
{
    ScenarioShip ship;
    std::snprintf(ship.unit.szName, sizeof(ship.unit.szName), "Ship");
    ship.figures.nLength = 120;
    ship.figures.nSpeed = 20;
    ship.figures.nHullMiddle = 60;
    ship.figures.nMainGuns = 4;
    ship.figures.nMainCalibre = 120;
    ship.place.nX = x;
    ship.place.nY = y;
    ship.place.nHeading = heading;
    ship.place.nKnots = 10;
    ship.nSide = side;
    return ship;
}

Scenario MakeScenario(int hours = 10, bool morning = true)
{
    Scenario scenario;
    scenario.title = "The Narrows";
    scenario.description = "Two ships.";
    std::snprintf(scenario.header.szScene, sizeof(scenario.header.szScene), "seabattle");
    scenario.header.nHours = hours;
    scenario.header.nTimeFlags = morning ? SCENARIO_TIME_AM : 0;
    scenario.items = {Ship(SCENARIO_SIDE_A, -3000, -1000), Ship(SCENARIO_SIDE_B, 3000, 1000, 270)};
    return scenario;
}

ItfCommand Command(int code = CMD_START_SCENARIO)
{
    ItfCommand command;
    command.code = code;
    command.nSide = 1;
    std::snprintf(command.szPath, sizeof(command.szPath), "%s", PATH);
    return command;
}

/// The logic with the real engine, front end and data, in the program's order of a frame.
class BattleTest : public ::testing::Test
{
  protected:
    BattleTest()
    {
        PlatformSetRoots((roots.folder / "user").string(), SEAWARDEN_SOURCE_DIR "/data");
        world.SetSubsystems({&render, nullptr, nullptr});
        world.onDisplaySize = [this](int width, int height) { render.SetDisplaySize(width, height); };
        world.SetDisplaySize(320, 240);
        logic = std::make_unique<CLogic>(world, sound);
        world.SetTargets(nullptr, logic.get());
        EXPECT_TRUE(logic->Start(ItfEvent()));
        EXPECT_EQ(render.DisplayWidth(), 800) << "the front end changes the display for its menu";
    }
    ~BattleTest() override
    {
        EXPECT_EQ(world.Failure(), "");
        world.Clear();
    }

    void WriteScenario(const Scenario& scenario) const
    {
        const std::vector<char> bytes = CScenarioWriter(scenario).GetBytes();
        roots.Put("user/scenarios/test.sc", std::string(bytes.begin(), bytes.end()));
    }
    void Frame()
    {
        logic->Update();
        world.DeliverPosted();
        world.RunFrame(FRAME);
    }
    void Frames(int count)
    {
        for (int i = 0; i < count; ++i)
            Frame();
    }
    void Key(int key) { world.SendInput(WM_KEYDOWN, static_cast<DWORD>(key), 0); }
    void PostEvent(int code, int value2 = 0)
    {
        ItfEvent event;
        event.code = code;
        event.value2 = value2;
        if (code == EVENT_MESSAGE_BOX)
            logic->PostMessageBox(16, 83, 0x20000000, 77); // a box that nobody could answer
        else
            logic->PostEvent(event);
    }
    /// Where the dialog's resource has that control.
    void Click(const char* section, int control)
    {
        POINT at;
        std::string error;
        ASSERT_TRUE(dialogs.Control(section, control, at, error)) << error;
        const auto packed = static_cast<std::int32_t>(at.y << 16 | at.x);
        world.SendInput(WM_MOUSEMOVE, 0, packed);
        world.SendInput(WM_LBUTTONDOWN, 0, packed);
        world.SendInput(WM_LBUTTONUP, 0, packed);
    }
    void StopLogic() { world.Root().SendMessage(MSG_LOGIC_STOP, Find("logic"), -1, nullptr); }
    IGameEntity* Game() { return dynamic_cast<IGameEntity*>(world.GetEntity(Find("game"))); }
    CBattleSim& Sim() { return static_cast<CBattle*>(State())->Sim(); }
    void Send(int number, const ItfCommand* command = nullptr)
    {
        if (command != nullptr)
            world.Root().SendMessage(number, DEST_LOGIC, 0, "l", command);
        else
            world.Root().SendMessage(number, DEST_LOGIC, 0, nullptr);
    }
    IGameState* State()
    {
        return reinterpret_cast<IGameState*>(
            world.Root().SendMessage(MSG_GET_GAME_STATE, DEST_LOGIC, 0, nullptr));
    }
    int Find(const char* name) { return world.CurrentScene()->FindEntity(name, name); }
    /// Frames until the battle runs; the command is gone by then.
    int RunToBattle()
    {
        ItfCommand command = Command();
        Send(MSG_ITF_COMMAND, &command);
        command = ItfCommand();
        int frames = 0;
        while (State() == nullptr && frames < 100) {
            EXPECT_LT(Find("logic"), 0) << "only the battle has one";
            Frame();
            ++frames;
        }
        return frames;
    }
    bool IsFrontEndUp() { return world.Root().FindEntity("interface", nullptr) >= 0; }
    /// Whether a line of the trace since the last call contains the text.
    bool Told(const char* text)
    {
        const bool told = trace.Find(m_nSeen, text).has_value();
        m_nSeen = trace.Count();
        return told;
    }

    TempRoots roots;
    FakeHost host;
    CDialogRects dialogs;
    CTrace trace;
    CEntityFactory factory;
    CRender2D render{320, 240};
    CSound sound;
    std::unique_ptr<CLogic> logic;
    CWorld world{trace, factory};

  private:
    std::size_t m_nSeen = 0;
};

TEST_F(BattleTest, LoadingTakesFramesAndEndsWithABattleOfItsOwnSize)
{
    WriteScenario(MakeScenario());
    EXPECT_GT(RunToBattle(), 2);
    ASSERT_NE(State(), nullptr);
    EXPECT_FALSE(IsFrontEndUp());
    const std::int32_t side = State()->GetScenarioInfo()->nPlayerSide; // the record is packed
    EXPECT_EQ(side, 1);
    EXPECT_STREQ(State()->GetScenarioInfo()->szPath, PATH);
    EXPECT_STREQ(State()->GetScenarioInfo()->szTitle, "The Narrows");
    EXPECT_EQ(State()->GetHeader()->bCampaign, 0);
    for (const char* name : {"game", "logic", "sea"})
        EXPECT_GE(Find(name), CWorld::FIRST_ENTITY_ID) << name;
    ASSERT_EQ(render.DisplayWidth(), 320);
    Frame();
    const std::uint16_t* pixels = render.DisplayPixels();
    EXPECT_GT(std::count_if(pixels, pixels + 320 * 240, [](std::uint16_t pixel) { return pixel != 0; }),
              320 * 200);
    // A display of another size is filled too.
    world.SetDisplaySize(401, 300);
    Frame();
    const RECT whole = {0, 0, 401, 300};
    EXPECT_TRUE(render.FrameRect() == whole);

    // Another start command ends this battle and begins anew.
    const int sea = Find("sea");
    const ItfCommand again = Command();
    Send(MSG_ITF_COMMAND, &again);
    EXPECT_EQ(State(), nullptr);
    Frame();
    EXPECT_LT(Find("sea"), 0);
    while (State() == nullptr)
        Frame();
    EXPECT_GT(Find("sea"), sea);
}

TEST_F(BattleTest, AKeyBringsItsScreenAndTheBattleGoesOnWhereItStood)
{
    WriteScenario(MakeScenario());
    RunToBattle();
    // Keys of screens that don't exist, and others.
    for (const int key : {VK_F1 + 1, VK_F1 + 2, VK_F1 + 4, int{VK_RETURN}, int{'Q'}}) {
        Key(key);
        Frames(3);
        EXPECT_FALSE(IsFrontEndUp()) << key;
    }
    const struct {
        int key;
        const char* event;
    } screens[] = {{VK_ESCAPE, "event code=18 "}, {VK_F1, "event code=7 "}, {VK_F4, "event code=6 "}};
    for (const auto& screen : screens) {
        SCOPED_TRACE(screen.event);
        Frames(5);
        const std::uint64_t before = Sim().Checksum();
        Frame();
        EXPECT_NE(Sim().Checksum(), before);
        Told("");
        Key(screen.key);
        Key(screen.key);
        Frame();
        const std::int64_t stood = Sim().BattleTime();
        const std::uint64_t sum = Sim().Checksum();
        Frames(4);
        EXPECT_TRUE(Told(screen.event));
        Key(screen.key);
        Frames(2);
        EXPECT_FALSE(Told(screen.event)) << "it is up already, or the front end had nothing to show";
        if (!IsFrontEndUp())
            continue;
        EXPECT_EQ(Sim().Checksum(), sum);
        const ItfCommand resume = Command(CMD_RESUME);
        Send(MSG_ITF_COMMAND, &resume);
        EXPECT_TRUE(IsFrontEndUp()) << "its own code may run now";
        EXPECT_EQ(Sim().Checksum(), sum);
        Frame();
        EXPECT_FALSE(IsFrontEndUp());
        EXPECT_EQ(render.DisplayWidth(), 320) << "the front end had its own display size";
        EXPECT_EQ(Sim().BattleTime(), stood + FRAME_TIME);
    }
}

TEST_F(BattleTest, WhatReachesAFrontEndThatIsLeavingIsShownByTheNextOne)
{
    WriteScenario(MakeScenario());
    RunToBattle();
    for (int i = 0; i < 2; ++i) {
        PostEvent(EVENT_HELP);
        Frames(3);
        Click("HelpDlg", 10);
        PostEvent(EVENT_SCENARIO_STATUS); // its delivery is that of the command
        Frames(2);
        EXPECT_FALSE(IsFrontEndUp());
        Told("");
        Frames(1);
        EXPECT_TRUE(Told("event code=6 ")) << "it comes back with the event";
        Frames(2);
        EXPECT_TRUE(IsFrontEndUp());
        Click("ScStatusDlg", 20);
        Frames(10);
        EXPECT_FALSE(IsFrontEndUp()) << "and it comes once";
    }
}

TEST_F(BattleTest, LeavingEndsTheBattleAtOnce)
{
    WriteScenario(MakeScenario());
    RunToBattle();
    PostEvent(EVENT_HELP);
    Frame();
    EXPECT_TRUE(IsFrontEndUp());
    Told("");
    StopLogic();
    Key(VK_ESCAPE);
    Send(MSG_LOGIC_STOPPED);
    EXPECT_EQ(State(), nullptr);
    Frame();
    for (const char* name : {"game", "logic", "sea"})
        EXPECT_LT(Find(name), 0) << name;
    EXPECT_TRUE(IsFrontEndUp());
    EXPECT_FALSE(Told("event code=18"));
    const ItfCommand resume = Command(CMD_RESUME);
    Send(MSG_ITF_COMMAND, &resume);
    Frame();
    EXPECT_TRUE(Told("event code=0")) << "without a battle the main menu comes";
}

TEST_F(BattleTest, TheEndIsToldOnceWithWhoHasWonAndTheGameAnswersUntilItIsStopped)
{
    for (const bool byKey : {true, false}) {
        WriteScenario(MakeScenario());
        RunToBattle();
        ASSERT_NE(State(), nullptr);
        Frames(3);
        EXPECT_EQ(Game()->GetWinner(), -1);
        Told("");
        ItfEvent lost;
        lost.code = EVENT_END_GAME;
        if (byKey)
            Key(VK_F1 + 8);
        else
            logic->PostEvent(lost);
        Frames(5);
        EXPECT_TRUE(Told(byKey ? "event code=32 value1=0 value2=1" : "event code=32 value1=0 value2=0"));
        EXPECT_EQ(Game()->GetWinner(), byKey ? 1 : 0);
        // To look on at it.
        const ItfCommand resume = Command(CMD_RESUME);
        Send(MSG_ITF_COMMAND, &resume);
        Frames(10);
        EXPECT_FALSE(IsFrontEndUp());
        EXPECT_FALSE(Told("event code=32"));
        Key(VK_ESCAPE);
        Frames(3);
        EXPECT_TRUE(Told(byKey ? "event code=32 value1=0 value2=1" : "event code=32 value1=0 value2=0"))
            << "whoever wants to leave gets the end again";
        // What the dialogs ask for behind the stop is still there; a frame later it is gone.
        StopLogic();
        ASSERT_NE(State(), nullptr);
        EXPECT_STREQ(State()->GetScenarioInfo()->szPath, PATH);
        Frame();
        EXPECT_EQ(State(), nullptr);
        EXPECT_LT(Find("game"), 0);
        EXPECT_TRUE(IsFrontEndUp());
    }
}

TEST_F(BattleTest, NoEventLeavesABattleThatStandsStillWithoutAnAnswer)
{
    WriteScenario(MakeScenario());
    std::vector<int> codes = {EVENT_LOBBY, 12345, -1};
    for (int code = 0; code <= 41; ++code)
        codes.push_back(code);
    const struct {
        int code;
        const char* section;
        int control;
    } screens[] = {
        {EVENT_SCENARIO_STATUS, "ScStatusDlg", 20}, {EVENT_HELP, "HelpDlg", 10},
        {EVENT_MESSAGE, "MessageBoxDlg", 10},       {EVENT_LEAVE_BATTLE, "MessageBoxYesNoDlg", 20},
        {EVENT_MESSAGE_BOX, "MessageBoxDlg", 10},   {EVENT_END_GAME, "EndGameDlg", 50},
    };
    for (const int code : codes) {
        for (const int value2 : {0, 1}) {
            SCOPED_TRACE(code);
            if (State() == nullptr)
                RunToBattle();
            std::int64_t time = Sim().BattleTime();
            PostEvent(code, value2);
            Frames(12);
            if (code == EVENT_MAIN_MENU || code == EVENT_MENU_WITH_MESSAGE) {
                EXPECT_TRUE(State() == nullptr && IsFrontEndUp());
                continue;
            }
            ASSERT_NE(State(), nullptr);
            const auto* screen = std::ranges::find(screens, code, [](const auto& row) { return row.code; });
            EXPECT_EQ(IsFrontEndUp(), screen != std::end(screens));
            if (screen != std::end(screens)) {
                time = Sim().BattleTime();
                Frames(3);
                EXPECT_EQ(Sim().BattleTime(), time);
                Click(screen->section, screen->control);
                Frames(5);
            }
            EXPECT_FALSE(IsFrontEndUp());
            EXPECT_EQ(render.DisplayWidth(), 320);
            EXPECT_GT(Sim().BattleTime(), time);
        }
    }
    // The question isn't put over another screen.
    PostEvent(EVENT_HELP);
    PostEvent(EVENT_LEAVE_BATTLE);
    Frames(3);
    Told("");
    PostEvent(EVENT_LEAVE_BATTLE);
    Frames(3);
    EXPECT_FALSE(Told("event code=18"));
}

TEST_F(BattleTest, EventsWhileABattleLoads)
{
    // What came, between the command and the battle's beginning; then what the front end is told, and whether
    // a battle runs.
    const struct {
        std::vector<std::pair<int, int>> events;
        const char* told;
        bool runs;
    } rows[] = {
        {{{EVENT_END_GAME, 1}}, "event code=32 value1=0 value2=1", true},
        {{{EVENT_END_GAME, 1}, {EVENT_END_GAME, 0}}, "event code=32 value1=0 value2=0", true},
        {{{EVENT_MAIN_MENU, 0}}, "event code=0 ", false},
        {{{EVENT_MENU_WITH_MESSAGE, 83}, {EVENT_HELP, 0}}, "event code=20 value1=0 value2=83", false},
        {{{EVENT_LEAVE_BATTLE, 0}, {EVENT_VIDEO, 0}, {EVENT_MESSAGE, 0}, {EVENT_MESSAGE_BOX, 0}},
         nullptr,
         true},
    };
    WriteScenario(MakeScenario());
    for (const auto& row : rows) {
        for (const int frames : {0, 1, 2}) {
            SCOPED_TRACE(frames);
            const ItfCommand command = Command();
            Send(MSG_ITF_COMMAND, &command);
            Frames(frames);
            ASSERT_EQ(State(), nullptr);
            Told("");
            for (const auto& [code, value2] : row.events)
                PostEvent(code, value2);
            Frames(8);
            EXPECT_EQ(State() != nullptr, row.runs);
            EXPECT_EQ(IsFrontEndUp(), row.told != nullptr);
            EXPECT_EQ(Told(row.told != nullptr ? row.told : "event code="), row.told != nullptr);
        }
    }
}

TEST_F(BattleTest, EachStatusEventHasItsOwnRecord)
{
    WriteScenario(MakeScenario());
    ItfEvent status;
    status.code = EVENT_SCENARIO_STATUS;
    for (const char* path : {PATH, "scenarios\\nowhere.sc"}) {
        std::snprintf(status.text, sizeof(status.text), "%s", path);
        logic->PostEvent(status);
    }
    Frames(3);
    // The first opens the window; with the second's file there is none.
    EXPECT_TRUE(std::ranges::none_of(host.debug,
                                     [](const std::string& line) { return line.starts_with("Status: "); }));
}

TEST_F(BattleTest, TheStatisticsAreTheBattles)
{
    Scenario scenario = MakeScenario();
    scenario.header.settings.nSideANation = 1001;
    WriteScenario(scenario);
    auto* profile = reinterpret_cast<IProfileStore*>(
        world.Root().SendMessage(MSG_GET_PROFILE, DEST_LOGIC, 0, "l", PROFILE_PLAYER));
    ASSERT_TRUE(profile->SelectSection("MULTIPLAYER", 1) && profile->Write("NickName", "s", "Beacon"));
    RunToBattle();
    ASSERT_NE(Game(), nullptr);
    Frames(2000);
    for (const int side : {0, 1}) {
        const SideFigures figures = Sim().Figures(side);
        EXPECT_GT(figures.rounds, 0);
        ItfSideStats stats;
        Game()->GetSideStats(side, &stats);
        const ItfPlayerStats* player = Game()->GetPlayer(side, 0);
        ASSERT_NE(player, nullptr);
        const std::vector<int> wanted = {figures.units,  figures.lost, figures.sunk,
                                         figures.rounds, figures.hits, figures.points};
        EXPECT_EQ((std::vector<int>{stats.nUnits, stats.nLost, stats.nSunk, stats.nRounds, stats.nHits,
                                    stats.nPoints}),
                  wanted);
        EXPECT_EQ((std::vector<int>{player->nUnits, player->nLost, player->nSunk, player->nRounds,
                                    player->nHits, player->nPoints}),
                  wanted);
    }
    EXPECT_STREQ(Game()->GetPlayer(0, 0)->szName, "Norrland");
    EXPECT_STREQ(Game()->GetPlayer(1, 0)->szName, "Beacon");
    for (const int side : {-1, 2, 1 << 30}) {
        ItfSideStats stats;
        std::memset(&stats, 0x55, sizeof(stats));
        Game()->GetSideStats(side, &stats);
        EXPECT_EQ(std::count(reinterpret_cast<char*>(&stats), reinterpret_cast<char*>(&stats + 1), 0),
                  static_cast<std::ptrdiff_t>(sizeof(stats)));
        EXPECT_EQ(Game()->GetPlayerCount(side), 0);
        EXPECT_EQ(Game()->GetPlayer(side, 0), nullptr);
    }
    EXPECT_EQ(Game()->GetPlayer(0, 1), nullptr);
    int days = -1;
    int hours = -1;
    int minutes = -1;
    Game()->GetBattleTime(&days, &hours, &minutes);
    EXPECT_EQ((std::vector<int>{days, hours, minutes}),
              (std::vector<int>{0, 0, static_cast<int>(Sim().BattleTime() / 60'000)}));
}

TEST_F(BattleTest, TheOrdersAreShownAtTheStartWhenThePlayerWants)
{
    WriteScenario(MakeScenario());
    ItfCommand command = Command();
    command.bBriefFlag = 1;
    command.nNotSideA = command.nNotSideB = 1;
    Send(MSG_ITF_COMMAND, &command);
    for (int i = 0; i < 20 && State() == nullptr; ++i)
        Frame();
    Frame();
    EXPECT_TRUE(Told("event code=6 value1=0 value2=0 text=\"\" object=ptr"));
    EXPECT_EQ(Sim().BattleTime() == 0, IsFrontEndUp());
    EXPECT_EQ(Sim().Setup().OrderingSide(), -1) << "he takes neither side";
}

TEST_F(BattleTest, AFrontEndThatFailsIsToldAndTheGameGoesOnWithoutIt)
{
    const auto toldOfFailure = [this](const std::string& what) {
        const bool told = std::ranges::any_of(host.debug, [&](const std::string& line) {
            return line.starts_with("Front end: " + what) && line.find(" failed: ") != std::string::npos;
        });
        host.debug.clear();
        return told;
    };
    const auto damage = [this] { roots.Put("user/resource/txt_res/itfdlg.ini", "Nothing { DIALOG, \"\""); };
    const auto mend = [this] { std::filesystem::remove(roots.folder / "user/resource/txt_res/itfdlg.ini"); };
    // In the menu: the menu comes again.
    Frames(3);
    damage();
    ItfEvent message;
    message.code = EVENT_MESSAGE;
    message.value1 = 16;
    logic->PostEvent(message);
    logic->PostEvent(message);
    logic->Update();
    world.DeliverPosted();
    EXPECT_FALSE(IsFrontEndUp());
    EXPECT_TRUE(toldOfFailure("event code=8 value1=16"));
    mend();
    Told("");
    Frames(2);
    EXPECT_TRUE(IsFrontEndUp());
    EXPECT_TRUE(Told("event code=0"));

    // Over a battle: the battle goes on, and the next screen comes as ever.
    WriteScenario(MakeScenario());
    RunToBattle();
    for (int i = 0; i < 3; ++i) {
        damage();
        Key(VK_ESCAPE);
        Frames(4);
        EXPECT_FALSE(IsFrontEndUp());
        EXPECT_TRUE(toldOfFailure("event code=18"));
        EXPECT_EQ(render.DisplayWidth(), 320);
        const std::int64_t time = Sim().BattleTime();
        Frame();
        EXPECT_EQ(Sim().BattleTime(), time + FRAME_TIME);
    }
    mend();
    Key(VK_ESCAPE);
    Frames(4);
    EXPECT_TRUE(IsFrontEndUp());
}

TEST_F(BattleTest, AScenarioThatIsDeletedDoesntHurtItsBattle)
{
    WriteScenario(MakeScenario());
    RunToBattle();
    std::filesystem::remove(roots.folder / "user/scenarios/test.sc");
    Key(VK_F4);
    Frames(6);
    EXPECT_TRUE(Told("event code=6"));
    EXPECT_FALSE(IsFrontEndUp()) << "it had nothing to show";
    const std::int64_t time = Sim().BattleTime();
    Frames(2);
    EXPECT_GT(Sim().BattleTime(), time);
}

TEST_F(BattleTest, AScenarioThatCannotBeReadLeadsBackWithABox)
{
    Scenario peaceful = MakeScenario();
    for (ScenarioItem& item : peaceful.items)
        std::get<ScenarioShip>(item).nSide = SCENARIO_NEUTRAL;
    const std::vector<char> bytes = CScenarioWriter(peaceful).GetBytes();
    const std::string nobodyFights(bytes.begin(), bytes.end());
    const std::optional<std::string> contents[] = {"", nobodyFights, "SWSC and nothing else", std::nullopt};
    for (const std::optional<std::string>& content : contents) {
        if (content.has_value())
            roots.Put("user/scenarios/test.sc", *content);
        else
            std::filesystem::remove(roots.folder / "user/scenarios/test.sc");
        host.debug.clear();
        const ItfCommand command = Command();
        Send(MSG_ITF_COMMAND, &command);
        Frame();
        Frame();
        EXPECT_TRUE(std::ranges::any_of(host.debug, [](const std::string& line) {
            return line.starts_with("Battle: ") && line.find("test.sc") != std::string::npos;
        }));
        EXPECT_FALSE(trace.Find(0, "send 0x3aad").has_value()) << "no loading bar stays behind";
        EXPECT_TRUE(Told(content == nobodyFights ? "event code=20 value1=0 value2=71"
                                                 : "event code=20 value1=0 value2=70"));
        EXPECT_EQ(State(), nullptr);
        EXPECT_LT(Find("sea"), 0);
    }
}

TEST_F(BattleTest, WhatTheFrontEndPostedGoesWithIt)
{
    WriteScenario(MakeScenario());
    RunToBattle();
    CFrontEnd frontEnd(world);
    ASSERT_TRUE(frontEnd.Start(ItfEvent()));
    // An answer that the entity gives later: its record is part of the entity.
    ItfEvent mission;
    mission.code = EVENT_MISSION_BRIEF;
    world.Root().SendMessage(MSG_ITF_EVENT, frontEnd.Id(), 0, "l", &mission);
    EXPECT_TRUE(Told("command code=70"));
    frontEnd.TakeAway();
    world.DeliverPosted();
    world.RunFrame(20);
    logic->Update();
    world.DeliverPosted();
    EXPECT_FALSE(Told("event code=0")) << "the command didn't reach the logic";
}

TEST(BattleLoaderTest, PercentsGoUpToAHundred)
{
    TempRoots roots;
    FakeHost host;
    Scenario scenario = MakeScenario();
    for (std::size_t i = scenario.items.size(); i < SCENARIO_MAX_ITEMS; ++i)
        scenario.items.emplace_back(Ship(static_cast<int>(i % 3), static_cast<int>(i) * 10, 0));
    CScenarioWriter(scenario).Write("test.sc");
    ItfCommand command = Command();
    std::snprintf(command.szPath, sizeof(command.szPath), "test.sc");
    CBattleLoader loader(command, 0);
    EXPECT_EQ(loader.Percent(), 0);
    int last = 0;
    while (loader.Step()) {
        EXPECT_GT(loader.Percent(), last);
        last = loader.Percent();
    }
    EXPECT_EQ(last, 100);
}

} // namespace
