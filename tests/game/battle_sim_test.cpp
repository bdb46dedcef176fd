// The battle as a simulation: that it repeats itself, ends, obeys, keeps off the land and bears any figures.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "battle/battle_math.h"
#include "battle/battle_sim.h"
#include "game/battle_units.h"
#include "platform/files.h"
#include "platform/temp_roots.h"

namespace
{

constexpr BattleSetup WATCHED = {0, true, true, 1, 5};
constexpr BattleSetup ORDERED = {0, false, true, 1, 3};

/// A duel some way apart.
Scenario Duel()
{
    return ScenarioOf({ShipAt(0, -5000, 0, 90), ShipAt(1, 5000, 300, 270)});
}

void Steps(CBattleSim& sim, int steps)
{
    for (int i = 0; i < steps; ++i)
        sim.Step();
}

/// Every number is finite, everybody is on the sea, and the figures fit together.
void ExpectSound(const CBattleSim& sim)
{
    for (const BattleUnit& unit : sim.Units()) {
        ASSERT_TRUE(std::isfinite(unit.speed) && sim.Bounds().Contains(unit.place)) << unit.name;
        ASSERT_TRUE(unit.type == UnitType::BALLOON || !sim.Coast().IsLand(unit.place)) << unit.name;
        ASSERT_TRUE(unit.heading >= 0 && unit.heading < FULL_TURN && unit.speed <= 60 * 0.5145);
    }
    for (const int side : {0, 1}) {
        const SideFigures own = sim.Figures(side);
        const SideFigures enemy = sim.Figures(1 - side);
        EXPECT_EQ(own.sunk, enemy.lost);
        EXPECT_TRUE(own.hits <= own.rounds && own.lost <= own.units);
        EXPECT_TRUE(sim.Percent(side) >= 0 && sim.Percent(side) <= 100);
        EXPECT_TRUE(enemy.lost < enemy.units || own.sunk == 0 || sim.Percent(side) == 100);
    }
}

TEST(BattleSimTest, EveryShippedScenarioEndsInTimeAndRepeatsItself)
{
    const TempRoots roots;
    PlatformSetRoots((roots.folder / "user").string(), SEAWARDEN_SOURCE_DIR "/data");
    for (const auto& file : std::filesystem::directory_iterator(SEAWARDEN_SOURCE_DIR "/data/scenarios")) {
        SCOPED_TRACE(file.path().filename());
        CScenarioParser parser;
        parser.OpenScenario(("scenarios\\" + file.path().filename().string()).c_str());
        std::vector<std::uint64_t> ends;
        for (const std::uint64_t seed : {1, 1, 2}) {
            BattleSetup setup = WATCHED;
            setup.seed = seed;
            CBattleSim sim(parser.GetScenario(), setup);
            while (!sim.IsOver()) {
                sim.Step();
                if (sim.BattleTime() % 10'000 == 0)
                    ExpectSound(sim);
                ASSERT_LE(sim.BattleTime(), CBattleSim::TIME_LIMIT);
            }
            EXPECT_GT(sim.BattleTime(), 3 * 60 * 1000) << "there was something to watch";
            EXPECT_GT(sim.Figures(0).hits + sim.Figures(1).hits, 0);
            EXPECT_TRUE(sim.Winner() < 0 || sim.Percent(sim.Winner()) + 10 > sim.Percent(1 - sim.Winner()));
            // What goes on afterwards counts nothing any more.
            const int rounds = sim.Figures(0).rounds;
            const std::int64_t time = sim.BattleTime();
            Steps(sim, 200);
            ExpectSound(sim);
            EXPECT_EQ(sim.Figures(0).rounds, rounds);
            EXPECT_EQ(sim.BattleTime(), time + 200 * CBattleSim::STEP);
            ends.push_back(sim.Checksum());
        }
        EXPECT_EQ(ends[0], ends[1]);
        EXPECT_NE(ends[0], ends[2]);
    }
}

TEST(BattleSimTest, TheSameOrdersAtTheSameStepsGiveTheSameBattleOnEveryMachine)
{
    const auto play = [](int chunk) {
        CBattleSim sim(Duel(), {0, false, true, 1, 9});
        Steps(sim, 100);
        EXPECT_TRUE(sim.OrderMove(0, 0, {-2000, 4000}));
        // In the player's time, in pieces of any size.
        constexpr int TWO_STEPS = 2 * static_cast<int>(CBattleSim::STEP) / CBattleSim::TIME_SCALE;
        for (int time = 50 * TWO_STEPS; time < 1'000 * TWO_STEPS; time += chunk)
            sim.Advance(chunk);
        return sim.Checksum();
    };
    // Of a build with other flags too. Whoever changes the rules finds the new number in the failure.
    for (const int chunk : {1, 25, 125})
        EXPECT_EQ(play(chunk), 12588472069459052052ULL) << chunk;
}

TEST(BattleSimTest, OrdersAreObeyedOrRefused)
{
    const Scenario scenario = ScenarioOf(
        {ShipAt(0, -4000, 0), ShipAt(1, 4000, 0), SubmarineAt(0, -4000, 3000), ShipAt(2, 0, 5000)});
    CBattleSim sim(scenario, ORDERED);
    const std::uint64_t before = sim.Checksum();
    for (const auto& [side, unit] : {std::pair{0, 1}, {1, 0}, {2, 3}, {-1, 0}})
        EXPECT_FALSE(sim.OrderMove(side, unit, {})) << side << ": another's or neutral " << unit;
    for (const double x : {std::numeric_limits<double>::quiet_NaN(), sim.Bounds().east + 1})
        EXPECT_FALSE(sim.OrderMove(0, 0, {x, 0}));
    for (const int unit : {-1, 4, 1 << 20})
        EXPECT_FALSE(sim.OrderStop(0, unit) || sim.OrderAttack(0, 0, unit) || sim.OrderFree(0, unit)) << unit;
    for (const int target : {0, 2, 3})
        EXPECT_FALSE(sim.OrderAttack(0, 0, target)) << "not the enemy " << target;
    EXPECT_FALSE(sim.OrderDive(0, 0, true)) << "a ship";
    EXPECT_EQ(sim.Checksum(), before);

    // There it goes and there it stays; freed, it sails again.
    ASSERT_TRUE(sim.OrderMove(0, 0, {-7000, -3000}));
    Steps(sim, 2'000);
    const BattleUnit& ship = sim.Units()[0];
    EXPECT_LT(DistanceOf(ship.place, {-7000, -3000}), 2 * ship.turnRadius);
    EXPECT_EQ(ship.order.kind, OrderKind::STOP);
    ASSERT_TRUE(sim.OrderStop(0, 0));
    const SeaPoint stopped = ship.place;
    Steps(sim, 400);
    EXPECT_EQ(DistanceOf(ship.place, stopped), 0);
    ASSERT_TRUE(sim.OrderFree(0, 0));
    Steps(sim, 400);
    EXPECT_GT(DistanceOf(ship.place, stopped), 100);

    // A submarine keeps to the depth that it is told, whatever it would do itself. The one that is told to
    // attack has that target, until it is gone.
    CBattleSim other(scenario, ORDERED);
    for (const bool below : {false, true}) {
        ASSERT_TRUE(other.OrderDive(0, 2, below));
        Steps(other, 600);
        EXPECT_EQ(other.Units()[2].submerged, below);
    }
    ASSERT_TRUE(other.OrderAttack(0, 0, 1));
    for (int i = 0; i < 40'000 && !other.Units()[0].gone && !other.Units()[1].gone; ++i) {
        ASSERT_EQ(other.Units()[0].target, 1);
        other.Step();
    }
    EXPECT_TRUE(other.IsOver());
    EXPECT_FALSE(other.OrderAttack(0, 0, 1));
}

TEST(BattleSimTest, AnyFiguresAreBorne)
{
    constexpr int MOST = SCENARIO_MAX_FIGURE;
    ScenarioShip huge = ShipAt(1, 3000, 0);
    static_assert(sizeof(ShipFigures) % sizeof(std::int32_t) == 0);
    std::fill_n(&huge.figures.nYear, sizeof(ShipFigures) / sizeof(std::int32_t), MOST);
    ScenarioBalloon balloon;
    balloon.figures = {MOST, MOST, MOST, MOST, MOST, MOST, MOST, MOST, MOST};
    balloon.place.nHeight = SCENARIO_MAX_HEIGHT;
    ScenarioShip still = ShipAt(1, 0, 0);
    still.figures = {};
    still.place = {};
    std::vector<ScenarioItem> crowd;
    for (int i = 0; i < 200; ++i)
        crowd.emplace_back(ShipAt(0, 0, 0));
    const struct {
        const char* name;
        std::vector<ScenarioItem> items;
        int winner; ///< -2: it isn't over at the start
    } cases[] = {
        {"no units", {}, -1},
        {"neutral ones alone", {ShipAt(2, 0, 0)}, -1},
        {"balloons don't hold the sea", {ShipAt(0, 0, 0), balloon}, 0},
        {"nothing in any figure", {ShipAt(0, 900, 0), still}, 0},
        {"everything in every figure", {ShipAt(0, -3000, 0), huge, balloon}, -2},
        {"the ends of the world", {ShipAt(0, -1'000'000, -1'000'000), ShipAt(1, 1'000'000, 1'000'000)}, -2},
        {"two hundred on one place", crowd, 0},
    };
    for (const auto& test : cases) {
        for (const char* scene : {"seabattle", "ras_zahir_clear", ""}) {
            SCOPED_TRACE(std::string(test.name) + ", " + scene);
            CBattleSim sim(ScenarioOf(test.items, scene), WATCHED);
            EXPECT_EQ(sim.IsOver(), test.winner != -2);
            EXPECT_EQ(sim.Winner(), std::max(test.winner, -1));
            ExpectSound(sim);
            Steps(sim, 600);
            ExpectSound(sim);
        }
    }
    // Whoever hasn't found room by then would stay where he is.
    CBattleSim sim(ScenarioOf(crowd), WATCHED);
    Steps(sim, 2'000);
    int close = 0;
    for (const BattleUnit& unit : sim.Units()) {
        for (const BattleUnit& other : sim.Units())
            close += &unit < &other && DistanceOf(unit.place, other.place) < unit.length ? 1 : 0;
    }
    EXPECT_LT(close, 200);
}

TEST(BattleSimTest, WithoutAHitItEndsByTime)
{
    CBattleSim sim(ScenarioOf({ShipAt(0, -900'000, 0), ShipAt(1, 900'000, 0)}), WATCHED);
    while (!sim.IsOver())
        sim.Step();
    EXPECT_EQ(sim.BattleTime(), CBattleSim::QUIET_LIMIT);
    sim.Decide(1);
    EXPECT_EQ(sim.Winner(), -1) << "it is over";
}

TEST(BattleSimTest, TheGradeHelpsOrHindersThePlayer)
{
    int wins[3] = {};
    for (int battle = 0; battle < 3 * 48; ++battle) {
        const int grade = battle / 48;
        const int side = battle % 2;
        CBattleSim sim(Duel(),
                       {side, side != 0, side == 0, grade, static_cast<std::uint64_t>(battle % 48 / 2)});
        while (!sim.IsOver())
            sim.Step();
        wins[grade] += sim.Winner() == side ? 1 : 0;
    }
    EXPECT_GT(wins[0], wins[1] + 5);
    EXPECT_GT(wins[1], wins[2] + 5);
    EXPECT_GT(wins[2], 0);
}

TEST(BattleSimTest, AWayLeadsAroundTheLand)
{
    CBattleSim sim(ScenarioOf({ShipAt(0, -8000, 0), ShipAt(1, 8000, 3000)}, "pellan_roads_morning"), ORDERED);
    const CCoast& coast = sim.Coast();
    const BattleUnit& ship = sim.Units()[0];
    SeaPoint behind;
    bool found = false;
    for (double y = sim.Bounds().south; y < sim.Bounds().north && !found; y += 500) {
        for (double x = sim.Bounds().west; x < sim.Bounds().east && !found; x += 500) {
            behind = {x, y};
            EXPECT_FALSE(coast.IsLand(behind) && sim.OrderMove(0, 0, behind));
            found = coast.Height(behind) < -0.2 && !coast.IsClear(ship.place, behind) &&
                    DistanceOf(coast.NextOnWay(ship.place, behind), behind) > 1;
        }
    }
    ASSERT_TRUE(found && sim.OrderMove(0, 0, behind));
    sim.Decide(-1); // nobody disturbs it
    for (int i = 0; i < 14'000 && ship.order.kind == OrderKind::MOVE; ++i) {
        sim.Step();
        ASSERT_FALSE(coast.IsLand(ship.place));
    }
    EXPECT_EQ(ship.order.kind, OrderKind::STOP) << ship.place.x << " " << ship.place.y;
}

TEST(BattleSimTest, WhatIsBelowIsSafeFromGunsAndABalloonSeesFar)
{
    auto balloon = UnitAt<ScenarioBalloon>(0, -20'000, 0);
    balloon.place.nHeight = 1200;
    CBattleSim sim(ScenarioOf({ShipAt(0, 0, 0), SubmarineAt(1, 1500, 0), balloon, ShipAt(1, 9'000, 0),
                               ShipAt(0, -90'000, 0)}),
                   {1, true, false, 1, 4});
    EXPECT_TRUE(sim.Units()[3].seen[0]) << "the balloon does";
    EXPECT_FALSE(sim.Units()[1].seen[0]) << "nobody listens for it";
    ASSERT_TRUE(sim.OrderDive(1, 1, true) && sim.OrderStop(1, 1));
    Steps(sim, 1'500);
    EXPECT_EQ(sim.Units()[1].damage, 0);
    EXPECT_GT(sim.Units()[1].rounds, 0) << "torpedoes";
}

} // namespace
