// The way of a battle: loading, the screens over it, its end, and what it tells others.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "engine/world.h"
#include "entities/battle_game.h"
#include "entities/battle_logic.h"
#include "game/battle_units.h"
#include "keelworks/scenario_writer.h"
#include "logic/logic.h"
#include "platform/input.h"
#include "platform/temp_roots.h"
#include "script/dialog_rects.h"
#include "sound/sound.h"
#include "support/fakes.h"
#include "support/rows.h"

namespace
{

using seawarden_test::FakeHost;

constexpr const char* PATH = "scenarios\\test.sc";
constexpr int FRAME = 125; ///< milliseconds: a whole number of steps
constexpr std::int64_t FRAME_TIME = std::int64_t{FRAME} * CBattleSim::TIME_SCALE;
static_assert(FRAME_TIME % CBattleSim::STEP == 0);

Scenario MakeScenario()
{
    Scenario scenario = ScenarioOf({ShipAt(0, -3000, -1000), ShipAt(1, 3000, 1000, 270)});
    scenario.title = "The Narrows";
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
        WriteScenario(MakeScenario());
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
    void Send(const ItfCommand& command)
    {
        world.Root().SendMessage(MSG_ITF_COMMAND, DEST_LOGIC, 0, "l", &command);
    }
    void Resume() { Send(Command(CMD_RESUME)); }
    IGameState* State()
    {
        return reinterpret_cast<IGameState*>(
            world.Root().SendMessage(MSG_GET_GAME_STATE, DEST_LOGIC, 0, nullptr));
    }
    int Find(const char* name) { return world.CurrentScene()->FindEntity(name, name); }
    /// Frames until the battle runs; the command is gone by then.
    int RunToBattle(ItfCommand command = Command())
    {
        Send(command);
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
    /// Whether the debug output has had a line that begins so since the last call.
    bool ToldDebug(const std::string& begin)
    {
        const bool told =
            std::ranges::any_of(host.debug, [&](const std::string& line) { return line.starts_with(begin); });
        host.debug.clear();
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
    EXPECT_GT(RunToBattle(), 2);
    ASSERT_NE(State(), nullptr);
    EXPECT_FALSE(IsFrontEndUp());
    EXPECT_STREQ(State()->GetScenarioInfo()->szTitle, "The Narrows");
    ASSERT_EQ(render.DisplayWidth(), 320);
    Frame();
    const std::uint16_t* pixels = render.DisplayPixels();
    EXPECT_LT(std::count(pixels, pixels + 320 * 240, 0), 320 * 40);
    world.SetDisplaySize(401, 300);
    Frame();
    EXPECT_TRUE(render.FrameRect() == (RECT{0, 0, 401, 300}));

    // Another start command ends this battle and begins anew.
    const int sea = Find("sea");
    ItfCommand again = Command();
    again.nNotSideA = again.nNotSideB = 1;
    Send(again);
    EXPECT_EQ(State(), nullptr);
    Frame();
    EXPECT_LT(Find("sea"), 0);
    RunToBattle(again);
    EXPECT_GT(Find("sea"), sea);
    EXPECT_EQ(Sim().Setup().OrderingSide(), -1) << "he takes neither side";

    WriteScenario(ScenarioOf({ShipAt(SCENARIO_NEUTRAL, 0, 0)}));
    Send(again);
    Frames(2);
    EXPECT_TRUE(ToldDebug("Battle: scenarios\\test.sc")) << "nobody fights";
    EXPECT_TRUE(Told("event code=20 value1=0 value2=71"));
}

TEST_F(BattleTest, WhatReachesAFrontEndThatIsLeavingIsShownByTheNextOne)
{
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

TEST_F(BattleTest, WhatHasHadItsEffectIsntSentAgain)
{
    const auto clip = [this](const char* name) {
        ItfEvent event;
        event.code = EVENT_VIDEO;
        std::snprintf(event.text, sizeof event.text, "%s", name);
        logic->PostEvent(event);
    };
    RunToBattle();
    clip("first");
    clip("second"); // behind what makes the front end anew
    Frames(10);
    PostEvent(EVENT_HELP);
    Frames(3);
    Click("HelpDlg", 10);
    clip("third"); // while the front end leaves
    Frames(10);
    for (const std::string name : {"\"first\"", "\"second\"", "\"third\""}) {
        const auto tells = [&name](const std::string& line) { return line.ends_with(name); };
        EXPECT_EQ(std::ranges::count_if(trace.Last(trace.Count()), tells), 1) << name;
    }
    EXPECT_FALSE(IsFrontEndUp());
}

TEST_F(BattleTest, TheEndIsToldOnceWithWhoHasWonAndTheGameAnswersUntilItIsStopped)
{
    for (const bool byKey : {true, false}) {
        const char* const end = byKey ? "event code=32 value1=0 value2=1" : "event code=32 value1=0 value2=0";
        RunToBattle();
        Frames(3);
        EXPECT_EQ(Game()->GetWinner(), -1);
        Told("");
        if (byKey)
            Key(VK_F1 + 8);
        else
            PostEvent(EVENT_END_GAME);
        Frames(5);
        EXPECT_TRUE(Told(end));
        EXPECT_EQ(Game()->GetWinner(), byKey ? 1 : 0);
        // To look on at it.
        Resume();
        Frames(10);
        EXPECT_FALSE(IsFrontEndUp() || Told("event code=32"));
        Key(VK_ESCAPE);
        Frames(3);
        EXPECT_TRUE(Told(end)) << "whoever wants to leave gets the end again";
        // What the dialogs ask for behind the stop is still there; a frame later it is gone.
        StopLogic();
        ASSERT_NE(State(), nullptr);
        EXPECT_STREQ(State()->GetScenarioInfo()->szPath, PATH);
        Frame();
        EXPECT_EQ(State(), nullptr);
        EXPECT_TRUE(Find("game") < 0 && IsFrontEndUp());
    }
    Resume();
    Frame();
    EXPECT_TRUE(Told("event code=0")) << "without a battle the main menu comes";
}

TEST_F(BattleTest, NoEventLeavesABattleThatStandsStillWithoutAnAnswer)
{
    std::vector<int> codes = {EVENT_LOBBY, 12345, -1};
    for (int code = 0; code <= 41; ++code)
        codes.push_back(code);
    const std::map<int, std::pair<const char*, int>> screens = {
        {EVENT_SCENARIO_STATUS, {"ScStatusDlg", 20}}, {EVENT_HELP, {"HelpDlg", 10}},
        {EVENT_MESSAGE, {"MessageBoxDlg", 10}},       {EVENT_LEAVE_BATTLE, {"MessageBoxYesNoDlg", 20}},
        {EVENT_MESSAGE_BOX, {"MessageBoxDlg", 10}},   {EVENT_END_GAME, {"EndGameDlg", 50}},
    };
    for (const int code : codes) {
        SCOPED_TRACE(code);
        if (State() == nullptr)
            RunToBattle();
        std::int64_t time = Sim().BattleTime();
        PostEvent(code, 1);
        Frames(12);
        if (code == EVENT_MAIN_MENU || code == EVENT_MENU_WITH_MESSAGE) {
            EXPECT_TRUE(State() == nullptr && IsFrontEndUp());
            continue;
        }
        ASSERT_NE(State(), nullptr);
        const auto screen = screens.find(code);
        EXPECT_EQ(IsFrontEndUp(), screen != screens.end());
        if (screen != screens.end()) {
            time = Sim().BattleTime();
            const std::uint64_t stood = Sim().Checksum();
            Frames(3);
            EXPECT_EQ(Sim().Checksum(), stood);
            Click(screen->second.first, screen->second.second);
            EXPECT_TRUE(IsFrontEndUp()) << "its own code may run now";
            Frames(5);
        }
        EXPECT_FALSE(IsFrontEndUp());
        EXPECT_EQ(render.DisplayWidth(), 320) << "the front end had its own display size";
        EXPECT_GT(Sim().BattleTime(), time);
    }
    // Neither a key nor the question brings another screen over one that is up.
    for (const int other : {EVENT_LEAVE_BATTLE, EVENT_HELP}) {
        PostEvent(other);
        Frames(3);
        Told("");
        Key(VK_F1);
        PostEvent(EVENT_LEAVE_BATTLE);
        Frames(3);
        EXPECT_FALSE(Told("event code="));
        Resume();
        const std::int64_t stood = Sim().BattleTime();
        Frame();
        EXPECT_EQ(Sim().BattleTime(), stood + FRAME_TIME) << "it goes on where it stood";
    }
}

TEST_F(BattleTest, EventsWhileABattleLoads)
{
    // What comes between the command and the battle's beginning; then what the front end is told, and whether
    // a battle runs.
    const Rows<std::vector<std::pair<int, int>>, const char*, bool> rows = {
        {{{EVENT_END_GAME, 1}, {EVENT_END_GAME, 0}}, "event code=32 value1=0 value2=0", true},
        {{{EVENT_MAIN_MENU, 0}}, "event code=0 ", false},
        {{{EVENT_MENU_WITH_MESSAGE, 83}, {EVENT_HELP, 0}}, "event code=20 value1=0 value2=83", false},
        {{{EVENT_LEAVE_BATTLE, 0}, {EVENT_VIDEO, 0}, {EVENT_MESSAGE, 0}, {EVENT_MESSAGE_BOX, 0}},
         nullptr,
         true},
    };
    for (const auto& [events, told, runs] : rows) {
        for (const int frames : {0, 1, 2}) {
            SCOPED_TRACE(frames);
            Send(Command());
            Frames(frames);
            Told("");
            for (const auto& [code, value2] : events)
                PostEvent(code, value2);
            Frames(8);
            EXPECT_EQ(State() != nullptr, runs);
            EXPECT_EQ(IsFrontEndUp(), told != nullptr);
            EXPECT_EQ(Told(told != nullptr ? told : "event code="), told != nullptr);
        }
    }
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
        const SideFigures wanted = Sim().Figures(side);
        EXPECT_GT(wanted.rounds, 0);
        ItfSideStats stats;
        Game()->GetSideStats(side, &stats);
        const ItfPlayerStats* player = Game()->GetPlayer(side, 0);
        ASSERT_NE(player, nullptr);
        const auto expectFigures = [&](const auto& got) {
            const std::vector<int> figures = {got.nUnits,  got.nLost, got.nSunk,
                                              got.nRounds, got.nHits, got.nPoints};
            EXPECT_EQ(figures, (std::vector<int>{wanted.units, wanted.lost, wanted.sunk, wanted.rounds,
                                                 wanted.hits, wanted.points}));
        };
        expectFigures(stats);
        expectFigures(*player);
    }
    EXPECT_STREQ(Game()->GetPlayer(0, 0)->szName, "Norrland");
    EXPECT_STREQ(Game()->GetPlayer(1, 0)->szName, "Beacon");
    for (const int side : {-1, 2, 1 << 30})
        EXPECT_TRUE(Game()->GetPlayerCount(side) == 0 && Game()->GetPlayer(side, 0) == nullptr) << side;
    int days = -1;
    int hours = -1;
    int minutes = -1;
    Game()->GetBattleTime(&days, &hours, &minutes);
    EXPECT_EQ((days * 24 + hours) * 60 + minutes, Sim().BattleTime() / 60'000);
}

TEST_F(BattleTest, AFrontEndThatFailsIsToldAndTheBattleGoesOnWithoutIt)
{
    RunToBattle();
    for (int i = 0; i < 3; ++i) {
        roots.Put("user/resource/txt_res/itfdlg.ini", "Nothing { DIALOG, \"\"");
        Key(VK_ESCAPE);
        Frames(4);
        EXPECT_FALSE(IsFrontEndUp());
        EXPECT_TRUE(ToldDebug("Front end: event code=18"));
        EXPECT_EQ(render.DisplayWidth(), 320);
        const std::int64_t time = Sim().BattleTime();
        Frame();
        EXPECT_EQ(Sim().BattleTime(), time + FRAME_TIME);
    }
    // What has no scenario file any more has nothing to show; else the next screen comes as ever.
    std::filesystem::remove(roots.folder / "user/resource/txt_res/itfdlg.ini");
    std::filesystem::remove(roots.folder / "user/scenarios/test.sc");
    Key(VK_F4);
    Frames(6);
    EXPECT_FALSE(IsFrontEndUp());
    Key(VK_ESCAPE);
    Frames(4);
    EXPECT_TRUE(IsFrontEndUp());
}

TEST_F(BattleTest, WhatTheFrontEndPostedGoesWithIt)
{
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

} // namespace
