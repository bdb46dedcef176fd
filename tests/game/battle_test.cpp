// The way of a battle: loading, what it tells others, what Escape does in it, and what the sea looks like.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "battle/battle_loader.h"
#include "engine/world.h"
#include "entities/battle_logic.h"
#include "keelworks/scenario_writer.h"
#include "logic/logic.h"
#include "platform/input.h"
#include "platform/temp_roots.h"
#include "sound/sound.h"
#include "support/fakes.h"

namespace
{

using seawarden_test::FakeHost;

constexpr const char* PATH = "scenarios\\test.sc";

ScenarioShip Ship(int side, int x, int y, int heading = 90)
{
    ScenarioShip ship;
    std::snprintf(ship.unit.szName, sizeof(ship.unit.szName), "Ship");
    ship.figures.nLength = 120;
    ship.place.nX = x;
    ship.place.nY = y;
    ship.place.nHeading = heading;
    ship.nSide = side;
    return ship;
}

Scenario MakeScenario(int hours = 10, bool morning = true)
{
    Scenario scenario;
    scenario.title = "The Narrows";
    scenario.description = "Two ships.";
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
        world.RunFrame(20);
    }
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
    CTrace trace;
    CEntityFactory factory;
    CRender2D render{320, 240};
    CSound sound;
    std::unique_ptr<CLogic> logic;
    CWorld world{trace, factory};

  private:
    std::size_t m_nSeen = 0;
};

TEST_F(BattleTest, LoadingTakesFramesAndEndsWithASeaOfTheBattlesSize)
{
    WriteScenario(MakeScenario());
    EXPECT_GT(RunToBattle(), 5);
    ASSERT_NE(State(), nullptr);
    EXPECT_FALSE(IsFrontEndUp());
    const std::int32_t side = State()->GetScenarioInfo()->nPlayerSide; // the record is packed
    EXPECT_EQ(side, 1);
    EXPECT_STREQ(State()->GetScenarioInfo()->szPath, PATH);
    EXPECT_STREQ(State()->GetScenarioInfo()->szTitle, "The Narrows");
    EXPECT_EQ(State()->GetHeader()->bCampaign, 0);
    EXPECT_GE(Find("logic"), CWorld::FIRST_ENTITY_ID);
    EXPECT_GE(Find("sea"), CWorld::FIRST_ENTITY_ID);
    ASSERT_EQ(render.DisplayWidth(), 320);
    const auto picture = [this] {
        Frame();
        return std::vector<std::uint16_t>(render.DisplayPixels(), render.DisplayPixels() + 320 * 240);
    };
    const std::vector<std::uint16_t> first = picture();
    EXPECT_GT(std::ranges::count_if(first, [](std::uint16_t pixel) { return pixel != 0; }), 320 * 200);
    EXPECT_NE(picture(), first) << "the waves run";
    // A display of another size gets a picture of its own.
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

TEST_F(BattleTest, EscapeAsksAndTheAnswerGoesOnOrEndsTheBattle)
{
    WriteScenario(MakeScenario());
    RunToBattle();
    for (const int key : {VK_SPACE, VK_RETURN, int{'A'}}) {
        world.SendInput(WM_KEYDOWN, static_cast<DWORD>(key), 0);
        Frame();
        Frame();
        EXPECT_FALSE(IsFrontEndUp()) << key;
    }
    world.SendInput(WM_KEYDOWN, VK_ESCAPE, 0);
    world.SendInput(WM_KEYDOWN, VK_ESCAPE, 0);
    Frame();
    Frame();
    EXPECT_TRUE(IsFrontEndUp());
    EXPECT_TRUE(Told("event code=18"));
    world.SendInput(WM_KEYDOWN, VK_ESCAPE, 0);
    Frame();
    Frame();
    EXPECT_FALSE(Told("event code=18")) << "it is asked already";

    // No: the front end had its own display size.
    EXPECT_EQ(render.DisplayWidth(), 800);
    const ItfCommand resume = Command(CMD_RESUME);
    Send(MSG_ITF_COMMAND, &resume);
    EXPECT_TRUE(IsFrontEndUp()) << "its own code may run now";
    Frame();
    EXPECT_FALSE(IsFrontEndUp());
    EXPECT_EQ(render.DisplayWidth(), 320);
    EXPECT_NE(State(), nullptr);

    // Yes: nothing is asked any more, and the entities go with the next frame; the front end stays.
    logic->PostEvent(ItfEvent());
    Frame();
    EXPECT_TRUE(IsFrontEndUp()) << "any event brings it up";
    world.Root().SendMessage(MSG_LOGIC_STOP, Find("logic"), -1, nullptr);
    world.SendInput(WM_KEYDOWN, VK_ESCAPE, 0);
    Send(MSG_LOGIC_STOPPED);
    EXPECT_EQ(State(), nullptr);
    Frame();
    EXPECT_LT(Find("logic"), 0);
    EXPECT_LT(Find("sea"), 0);
    EXPECT_TRUE(IsFrontEndUp());
    EXPECT_FALSE(Told("event code=18"));
    Send(MSG_ITF_COMMAND, &resume);
    Frame();
    EXPECT_TRUE(Told("event code=0")) << "without a battle the main menu comes";
}

TEST_F(BattleTest, AScenarioThatCannotBeReadLeadsBackWithABox)
{
    for (const char* content : {"", "SWSC and nothing else", static_cast<const char*>(nullptr)}) {
        if (content != nullptr)
            roots.Put("user/scenarios/test.sc", content);
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
        EXPECT_TRUE(Told("event code=20 value1=0 value2=70"));
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
    CBattleLoader loader(command, {64, 48});
    EXPECT_EQ(loader.Percent(), 0);
    int last = 0;
    while (loader.Step()) {
        EXPECT_GT(loader.Percent(), last);
        last = loader.Percent();
    }
    EXPECT_EQ(last, 100);
}

TEST(SeaSceneTest, UnitsKeepTheirPlacesInProportion)
{
    Scenario scenario = MakeScenario(12, false);
    ScenarioBalloon balloon;
    balloon.place.nHeight = 400;
    scenario.items.emplace_back(balloon);
    const SeaScene scene = MakeSeaScene(scenario);
    ASSERT_EQ(scene.units.size(), 3U);
    EXPECT_FLOAT_EQ(scene.hour, 12.0F) << "12 pm is noon";
    EXPECT_FLOAT_EQ(scene.units[0].across, -0.5F);
    EXPECT_FLOAT_EQ(scene.units[1].across, 0.5F);
    EXPECT_FLOAT_EQ(scene.units[1].depth - scene.units[0].depth, 2000.0F / 6000.0F);
    EXPECT_GT(scene.units[0].turn, 0.9F);
    EXPECT_LT(scene.units[1].turn, -0.9F);
    EXPECT_EQ(scene.units[2].type, SCENARIO_BALLOON);
    EXPECT_FLOAT_EQ(MakeSeaScene(MakeScenario(12, true)).hour, 0.0F) << "12 am is midnight";
    EXPECT_FLOAT_EQ(MakeSeaScene(MakeScenario(0, true)).hour, 0.0F);
    EXPECT_FLOAT_EQ(MakeSeaScene(MakeScenario(9, false)).hour, 21.0F);
    EXPECT_TRUE(MakeSeaScene(Scenario()).units.empty());
}

TEST(SeaPictureTest, TheSameMomentIsTheSamePictureAtAnyDisplaySize)
{
    FakeHost host;
    TempRoots roots; // without a font: no caption
    for (const SIZE size : {SIZE{1, 1}, SIZE{320, 200}, SIZE{97, 301}}) {
        std::vector<std::vector<std::uint16_t>> pictures;
        for (const std::int64_t time : {0, 0, 90000000}) {
            CSeaPicture picture(MakeSeaScene(MakeScenario(1, true)), size);
            while (picture.PrepareStep())
                ;
            // What lay there before doesn't show through.
            pictures.emplace_back(static_cast<std::size_t>(size.cx * size.cy),
                                  static_cast<std::uint16_t>(pictures.size() * 0x1357U));
            picture.Draw({pictures.back().data(), static_cast<int>(size.cx), static_cast<int>(size.cy)},
                         time);
        }
        EXPECT_EQ(pictures[0], pictures[1]);
        EXPECT_TRUE(size.cx == 1 || pictures[0] != pictures[2]);
    }
}

} // namespace
