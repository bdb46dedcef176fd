// Rules of the battle that a player would miss: nobody runs aground or bobs up and down, orders mean
// something, and the end is seen.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "battle/battle_math.h"
#include "battle/chart_view.h"
#include "battle_units.h"
#include "platform/files.h"
#include "platform/input.h"
#include "platform/temp_roots.h"

namespace
{

constexpr BattleSetup ORDERED = {0, false, true, 1, 1};

TEST(BattleRulesTest, WhoeverIsSentThroughTheSoundGetsThere)
{
    TempRoots roots;
    PlatformSetRoots((roots.folder / "user").string(), SEAWARDEN_SOURCE_DIR "/data");
    CScenarioParser parser;
    parser.OpenScenario("scenarios\\ketter_sound.sc");
    const struct {
        SeaPoint to;
        bool way;
    } rows[] = {{{-4000, 9000}, true},  {{2000, 5000}, true}, {{3000, 5000}, true},
                {{-6000, 10000}, true}, {{-881, 4995}, true}, // close to the shore
                {{6000, -9000}, false}};                      // a lake
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.to.x) + ", " + std::to_string(row.to.y));
        CBattleSim sim(parser.GetScenario(), ORDERED);
        sim.Decide(0); // nobody fires
        ASSERT_FALSE(sim.Coast().IsLand(row.to));
        for (int i = 0; i < std::ssize(sim.Units()); ++i) {
            const bool own = sim.Units()[static_cast<std::size_t>(i)].side == ORDERED.playerSide;
            EXPECT_EQ(sim.OrderMove(ORDERED.playerSide, i, row.to), own && row.way) << i;
        }
        for (int minutes = 0; minutes < 90; minutes += 10) {
            const std::vector<BattleUnit> before = sim.Units();
            for (int step = 0; step < 1'200; ++step)
                sim.Step();
            for (std::size_t i = 0; i < before.size(); ++i) {
                const BattleUnit& unit = sim.Units()[i];
                EXPECT_FALSE(unit.order.kind == OrderKind::MOVE &&
                             DistanceOf(unit.place, before[i].place) < 50)
                    << unit.name << " at " << unit.place.x << ", " << unit.place.y;
            }
        }
        for (const BattleUnit& unit : sim.Units())
            EXPECT_NE(unit.order.kind, OrderKind::MOVE) << unit.name << " hasn't got there";
    }
}

TEST(BattleRulesTest, NobodyLiesAtTheShore)
{
    constexpr int LONGEST = 80; // steps
    TempRoots roots;
    PlatformSetRoots((roots.folder / "user").string(), SEAWARDEN_SOURCE_DIR "/data");
    CScenarioParser parser;
    parser.OpenScenario("scenarios\\ketter_sound.sc");
    for (std::uint64_t seed = 1; seed <= 16; ++seed) {
        CBattleSim sim(parser.GetScenario(), {0, false, false, 1, seed});
        std::vector<int> still(sim.Units().size());
        while (!sim.IsOver()) {
            sim.Step();
            for (std::size_t i = 0; i < still.size(); ++i) {
                const BattleUnit& unit = sim.Units()[i];
                still[i] = unit.gone || unit.maxSpeed <= 0 || unit.speed > 0 ? 0 : still[i] + 1;
                ASSERT_LE(still[i], LONGEST) << unit.name << ", seed " << seed;
            }
        }
    }
}

TEST(BattleRulesTest, ASubmarineStaysBelowAsLongAsAShipIsNear)
{
    CBattleSim sim(ScenarioOf({SubmarineAt(0, 0, 0), ShipAt(1, 0, 6'300)}), ORDERED);
    ASSERT_TRUE(sim.OrderStop(0, 0));
    for (int step = 0; step < 240; ++step) {
        ASSERT_TRUE(sim.Units()[0].submerged) << step;
        sim.Step();
    }
    EXPECT_FALSE(sim.Units()[1].seen[0]) << "it is heard";

    // Without torpedoes it leaves what it hears.
    ScenarioSubmarine spent = SubmarineAt(0, 0, 0);
    spent.figures.nTorpedoes = 0;
    CBattleSim other(ScenarioOf({spent, ShipAt(1, 0, 6'300), ShipAt(0, 90'000, 0)}), ORDERED);
    for (int step = 0; step < 40; ++step)
        other.Step();
    EXPECT_FALSE(other.Units()[1].seen[0]);
    EXPECT_TRUE(other.Units()[0].hasGoal && other.Units()[0].goal.y < 0);
}

TEST(BattleRulesTest, OnlyWhatCanBeHarmedIsAttacked)
{
    ScenarioShip charges = UnitAt<ScenarioShip>(0, -3'000, 0);
    charges.figures.nDepthCharges = 10;
    ScenarioShip highAngle = ShipAt(0, -3'000, 600);
    highAngle.figures.nHighAngleGuns = 2;
    highAngle.figures.nHighAngleCalibre = 76;
    ScenarioBalloon balloon = UnitAt<ScenarioBalloon>(1, 0, 0);
    CBattleSim sim(ScenarioOf({ShipAt(0, -3'000, -600), charges, highAngle, balloon, ShipAt(1, 0, 500)}),
                   ORDERED);
    const struct {
        int unit, target;
        bool taken;
    } rows[] = {{0, 3, false}, {0, 4, true}, {1, 3, false}, {1, 4, false}, {2, 3, true}, {2, 4, true}};
    for (const auto& row : rows)
        EXPECT_EQ(sim.OrderAttack(0, row.unit, row.target), row.taken) << row.unit << " " << row.target;
}

TEST(BattleRulesTest, AnAttackIsGivenUpWhenNothingIsLeftForIt)
{
    ScenarioShip charges = UnitAt<ScenarioShip>(0, 0, -20'000);
    charges.figures.nLength = 90;
    charges.figures.nSpeed = 24;
    charges.figures.nDepthCharges = 3;
    ScenarioShip strong = ShipAt(1, 4'000, 0);
    strong.figures.nHullMiddle = 1'000;
    strong.figures.nSpeed = 0;
    strong.place.nKnots = 0;
    ScenarioSubmarine hunted = SubmarineAt(1, 500, -20'000);
    hunted.figures.nDisplacement = 30'000;
    hunted.figures.nTorpedoes = 0;
    const Scenario scenario =
        ScenarioOf({SubmarineAt(0, 0, 0), strong, charges, hunted, ShipAt(0, -90'000, 0)});
    for (const auto& [unit, target] : {std::pair{0, 1}, {2, 3}}) {
        CBattleSim sim(scenario, ORDERED);
        ASSERT_TRUE(sim.OrderAttack(0, unit, target)) << unit;
        const BattleUnit& ordered = sim.Units()[static_cast<std::size_t>(unit)];
        for (int step = 0; step < 6'000 && ordered.IsArmed(); ++step) {
            ASSERT_EQ(ordered.order.kind, OrderKind::ATTACK) << unit;
            sim.Step();
        }
        EXPECT_FALSE(ordered.IsArmed() || ordered.gone || sim.IsOver()) << unit;
        for (int step = 0; step < 20; ++step)
            sim.Step();
        EXPECT_EQ(ordered.order.kind, OrderKind::NONE) << unit;
    }
}

TEST(BattleRulesTest, AnOrderBesideTheSeaLeadsToItsEdge)
{
    Scenario scenario = ScenarioOf({ShipAt(0, 0, 0), ShipAt(1, 3'000, 0)});
    const auto battle = std::make_shared<CBattle>(ItfCommand(), scenario, 1);
    CBattleControls controls(battle);
    const SIZE display = {800, 600};
    controls.OnFrame(0, display);
    controls.OnWindowMessage(WM_KEYDOWN, VK_TAB, 0, display);
    for (int i = 0; i < 20; ++i)
        controls.OnWindowMessage(WM_MOUSEWHEEL, static_cast<std::uint32_t>(-WHEEL_DELTA) << 16, 0, display);
    constexpr std::int32_t CORNER = 40 << 16 | 2;
    ASSERT_FALSE(battle->Sim().Bounds().Contains(controls.View().ToSea({2, 40})));
    controls.OnWindowMessage(WM_RBUTTONDOWN, 0, CORNER, display);
    controls.OnWindowMessage(WM_RBUTTONUP, 0, CORNER, display);
    EXPECT_EQ(controls.Sign().kind, OrderSign::Kind::MOVE);
    EXPECT_TRUE(battle->Sim().Bounds().Contains(controls.Sign().place));
}

TEST(BattleRulesTest, TheEndIsSeenBeforeItIsTold)
{
    CBattle battle(ItfCommand(), ScenarioOf({ShipAt(0, -2'000, 0), ShipAt(1, 2'000, 0)}), 1);
    battle.SetSpeed(CBattle::SPEED_MAX);
    for (int frame = 0; frame < 100'000 && !battle.Sim().IsOver(); ++frame)
        battle.Advance(20);
    ASSERT_TRUE(battle.Sim().IsOver());
    EXPECT_EQ(battle.Speed(), 1);
    for (std::int64_t passed = 0; passed < CBattle::LAST_SIGHT; passed += 20) {
        ASSERT_FALSE(battle.IsEndSeen()) << passed;
        battle.Advance(20);
    }
    EXPECT_TRUE(battle.IsEndSeen());
    CBattle decided(ItfCommand(), ScenarioOf({ShipAt(0, -2'000, 0), ShipAt(1, 2'000, 0)}), 1);
    decided.Sim().Decide(0);
    EXPECT_TRUE(decided.IsEndSeen());
}

} // namespace
