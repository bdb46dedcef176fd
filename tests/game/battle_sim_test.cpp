// The battle as a simulation: that it repeats itself, ends, obeys, keeps off the land and bears any figures.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "battle/battle_math.h"
#include "battle/battle_sim.h"
#include "keelworks/scenario_parser.h"
#include "platform/files.h"
#include "platform/temp_roots.h"

namespace
{

constexpr BattleSetup WATCHED = {0, true, true, 1, 5};

ScenarioShip Ship(int side, int x, int y, int heading = 90)
{
    ScenarioShip ship;
    ship.figures.nLength = 90;
    ship.figures.nSpeed = 24;
    ship.figures.nHullMiddle = 40;
    ship.figures.nMainGuns = 4;
    ship.figures.nMainCalibre = 120;
    ship.nRatings[1] = 100;
    ship.place = {x, y, heading, 12, 0};
    ship.nSide = side;
    return ship;
}

ScenarioSubmarine Submarine(int side, int x, int y)
{
    ScenarioSubmarine boat;
    boat.figures = {1912, 0, 30, 500, 15, 9, 4, 8};
    boat.place = {x, y, 0, 3, 12};
    boat.nSide = side;
    return boat;
}

Scenario Make(const std::vector<ScenarioItem>& items, const char* scene = "seabattle")
{
    Scenario scenario;
    std::snprintf(scenario.header.szScene, sizeof(scenario.header.szScene), "%s", scene);
    scenario.items = items;
    return scenario;
}

/// A duel some way apart.
Scenario Duel()
{
    return Make({Ship(0, -5000, 0, 90), Ship(1, 5000, 300, 270)});
}

void Steps(CBattleSim& sim, int steps)
{
    for (int i = 0; i < steps; ++i)
        sim.Step();
}

/// Every number is finite, everybody is on the sea, and the figures fit together.
void ExpectSound(const CBattleSim& sim, const std::string& where)
{
    SCOPED_TRACE(where);
    for (const BattleUnit& unit : sim.Units()) {
        ASSERT_TRUE(std::isfinite(unit.place.x) && std::isfinite(unit.place.y) && std::isfinite(unit.speed));
        ASSERT_TRUE(sim.Bounds().Contains(unit.place)) << unit.name;
        ASSERT_TRUE(unit.type == UnitType::BALLOON || !sim.Coast().IsLand(unit.place)) << unit.name;
        ASSERT_TRUE(unit.heading >= 0 && unit.heading < FULL_TURN);
        ASSERT_LE(unit.speed, 60 * 0.5145);
    }
    const SideFigures figures[] = {sim.Figures(0), sim.Figures(1)};
    for (const int side : {0, 1}) {
        const SideFigures& own = figures[side];
        EXPECT_EQ(own.sunk, figures[1 - side].lost);
        EXPECT_LE(own.hits, own.rounds);
        EXPECT_LE(own.lost, own.units);
        EXPECT_TRUE(sim.Percent(side) >= 0 && sim.Percent(side) <= 100);
        if (figures[1 - side].lost == figures[1 - side].units && own.sunk > 0) {
            EXPECT_EQ(sim.Percent(side), 100);
        }
    }
}

TEST(BattleSimTest, EveryShippedScenarioEndsInTimeAndRepeatsItself)
{
    TempRoots roots;
    PlatformSetRoots((roots.folder / "user").string(), SEAWARDEN_SOURCE_DIR "/data");
    int scenarios = 0;
    for (const auto& file : std::filesystem::directory_iterator(SEAWARDEN_SOURCE_DIR "/data/scenarios")) {
        const std::string name = file.path().filename().string();
        SCOPED_TRACE(name);
        CScenarioParser parser;
        parser.OpenScenario(("scenarios\\" + name).c_str());
        std::vector<std::uint64_t> ends;
        for (const std::uint64_t seed : {1, 1, 2}) {
            BattleSetup setup = WATCHED;
            setup.seed = seed;
            CBattleSim sim(parser.GetScenario(), setup);
            while (!sim.IsOver()) {
                sim.Step();
                if (sim.BattleTime() % 10'000 == 0)
                    ExpectSound(sim, "in the battle");
                ASSERT_LE(sim.BattleTime(), CBattleSim::TIME_LIMIT);
            }
            EXPECT_GT(sim.BattleTime(), 3 * 60 * 1000) << "there was something to watch";
            EXPECT_GT(sim.Figures(0).hits + sim.Figures(1).hits, 0);
            EXPECT_TRUE(sim.Winner() < 0 || sim.Percent(sim.Winner()) + 10 > sim.Percent(1 - sim.Winner()));
            // What goes on afterwards counts nothing any more.
            const int rounds = sim.Figures(0).rounds;
            const std::int64_t time = sim.BattleTime();
            Steps(sim, 200);
            ExpectSound(sim, "afterwards");
            EXPECT_EQ(sim.Figures(0).rounds, rounds);
            EXPECT_EQ(sim.BattleTime(), time + 200 * CBattleSim::STEP);
            ends.push_back(sim.Checksum());
        }
        EXPECT_EQ(ends[0], ends[1]);
        EXPECT_NE(ends[0], ends[2]);
        ++scenarios;
    }
    EXPECT_GE(scenarios, 6);
}

TEST(BattleSimTest, TheSameOrdersAtTheSameStepsGiveTheSameBattleOnEveryMachine)
{
    const auto play = [](int orderAt, int chunk) {
        CBattleSim sim(Duel(), {0, false, true, 1, 9});
        Steps(sim, orderAt);
        EXPECT_TRUE(sim.OrderMove(0, 0, {-2000, 4000}));
        // In the player's time, in pieces of any size.
        constexpr int TWO_STEPS = 2 * static_cast<int>(CBattleSim::STEP) / CBattleSim::TIME_SCALE;
        for (int time = orderAt / 2 * TWO_STEPS; time < 1'000 * TWO_STEPS; time += chunk)
            sim.Advance(chunk);
        return sim.Checksum();
    };
    const std::uint64_t once = play(100, 25);
    EXPECT_EQ(play(100, 25), once);
    EXPECT_EQ(play(100, 1), once);
    EXPECT_EQ(play(100, 125), once);
    EXPECT_NE(play(101, 25), once);
    // Of a build with other flags too. Whoever changes the rules finds the new number in the failure.
    EXPECT_EQ(once, 12588472069459052052ULL);
}

TEST(BattleSimTest, OrdersAreObeyedOrRefused)
{
    Scenario scenario =
        Make({Ship(0, -4000, 0), Ship(1, 4000, 0), Submarine(0, -4000, 3000), Ship(2, 0, 5000)});
    const auto fresh = [&] {
        return std::make_unique<CBattleSim>(scenario, BattleSetup{0, false, true, 1, 3});
    };
    auto sim = fresh();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double far = sim->Bounds().east + 1;
    const std::uint64_t before = sim->Checksum();
    EXPECT_FALSE(sim->OrderMove(0, 1, {0, 0}));
    EXPECT_FALSE(sim->OrderMove(1, 0, {0, 0}));
    EXPECT_FALSE(sim->OrderMove(2, 3, {0, 0})) << "neutral ships take orders from nobody";
    EXPECT_FALSE(sim->OrderMove(-1, 0, {0, 0}));
    EXPECT_FALSE(sim->OrderMove(0, 0, {nan, 0}));
    EXPECT_FALSE(sim->OrderMove(0, 0, {far, 0}));
    for (const int unit : {-1, 4, 1 << 20})
        EXPECT_FALSE(sim->OrderStop(0, unit) || sim->OrderAttack(0, 0, unit) || sim->OrderFree(0, unit))
            << unit;
    for (const int target : {0, 2, 3})
        EXPECT_FALSE(sim->OrderAttack(0, 0, target)) << "not the enemy " << target;
    EXPECT_FALSE(sim->OrderDive(0, 0, true)) << "a ship";
    EXPECT_EQ(sim->Checksum(), before);

    // There it goes and there it stays.
    ASSERT_TRUE(sim->OrderMove(0, 0, {-7000, -3000}));
    Steps(*sim, 2'000);
    const BattleUnit& ship = sim->Units()[0];
    EXPECT_LT(DistanceOf(ship.place, {-7000, -3000}), 2 * ship.turnRadius);
    EXPECT_EQ(ship.order.kind, OrderKind::STOP);
    EXPECT_LT(ship.speed, 0.5);
    // Where it is told to stop, it does; freed, it sails again.
    ASSERT_TRUE(sim->OrderMove(0, 0, {-2000, 3000}));
    Steps(*sim, 200);
    ASSERT_TRUE(sim->OrderStop(0, 0));
    Steps(*sim, 400);
    const SeaPoint stopped = ship.place;
    Steps(*sim, 400);
    EXPECT_EQ(DistanceOf(ship.place, stopped), 0);
    ASSERT_TRUE(sim->OrderFree(0, 0));
    Steps(*sim, 400);
    EXPECT_GT(DistanceOf(ship.place, stopped), 100);

    // A submarine keeps to the depth that it is told, whatever it would do itself.
    sim = fresh();
    for (const bool below : {false, true}) {
        ASSERT_TRUE(sim->OrderDive(0, 2, below));
        Steps(*sim, 600);
        EXPECT_EQ(sim->Units()[2].submerged, below);
    }
    // The one that is told to attack has that target, until it is gone.
    sim = fresh();
    ASSERT_TRUE(sim->OrderAttack(0, 0, 1));
    for (int i = 0; i < 40'000 && !sim->Units()[0].gone && !sim->Units()[1].gone; ++i) {
        ASSERT_EQ(sim->Units()[0].target, 1);
        sim->Step();
    }
    EXPECT_TRUE(sim->IsOver());
    EXPECT_FALSE(sim->OrderAttack(0, 0, 1));
}

TEST(BattleSimTest, AnyFiguresAreBorne)
{
    constexpr int MOST = SCENARIO_MAX_FIGURE;
    const auto fleet = [](int count, const std::function<void(int, ScenarioShip&)>& change) {
        std::vector<ScenarioItem> items;
        for (int i = 0; i < count; ++i) {
            ScenarioShip ship = Ship(i % 2, 0, 0);
            change(i, ship);
            items.emplace_back(ship);
        }
        return items;
    };
    ScenarioShip huge = Ship(1, 3000, 0);
    std::int32_t* figure = &huge.figures.nYear;
    for (std::size_t i = 0; i < sizeof(ShipFigures) / sizeof(std::int32_t); ++i)
        figure[i] = MOST;
    ScenarioBalloon balloon;
    balloon.figures = {MOST, MOST, MOST, MOST, MOST, MOST, MOST, MOST, MOST};
    balloon.place.nHeight = SCENARIO_MAX_HEIGHT;
    ScenarioShip still = Ship(1, 0, 0);
    still.figures = {};
    still.place = {};
    struct Case {
        const char* name;
        std::vector<ScenarioItem> items;
        int winner; ///< -2: it isn't over at the start
    };
    const Case cases[] = {
        {"no units", {}, -1},
        {"neutral ones alone", {Ship(2, 0, 0)}, -1},
        {"one side alone", {Ship(1, 0, 0), Ship(1, 500, 0)}, 1},
        {"balloons don't hold the sea", {Ship(0, 0, 0), balloon}, 0},
        {"nothing in any figure", {Ship(0, 900, 0), still}, 0},
        {"everything in every figure", {Ship(0, -3000, 0), huge, balloon}, -2},
        {"a length of nothing and the greatest speed",
         fleet(6,
               [](int i, ScenarioShip& ship) {
                   ship.figures.nLength = 0;
                   ship.figures.nSpeed = MOST;
                   ship.place.nKnots = SCENARIO_MAX_KNOTS;
                   ship.place.nX = i * 2000;
               }),
         -2},
        {"the ends of the world", {Ship(0, -1'000'000, -1'000'000), Ship(1, 1'000'000, 1'000'000)}, -2},
        {"two hundred on one place", fleet(200, [](int, ScenarioShip&) {}), -2},
    };
    for (const Case& one : cases) {
        for (const char* scene : {"seabattle", "ras_zahir_clear", ""}) {
            SCOPED_TRACE(std::string(one.name) + ", " + scene);
            CBattleSim sim(Make(one.items, scene), WATCHED);
            EXPECT_EQ(sim.IsOver(), one.winner != -2);
            EXPECT_EQ(sim.Winner(), std::max(one.winner, -1));
            ExpectSound(sim, "at the start");
            Steps(sim, 600);
            ExpectSound(sim, "later");
        }
    }
    // Whoever hasn't found room by then would stay where he is.
    CBattleSim crowd(Make(fleet(200, [](int, ScenarioShip& ship) { ship.nSide = 0; })), WATCHED);
    Steps(crowd, 2'000);
    int close = 0;
    for (const BattleUnit& unit : crowd.Units()) {
        for (const BattleUnit& other : crowd.Units())
            close += &unit < &other && DistanceOf(unit.place, other.place) < unit.length ? 1 : 0;
    }
    EXPECT_LT(close, 200);
}

TEST(BattleSimTest, WithoutAHitItEndsByTime)
{
    // Too far apart to meet.
    CBattleSim sim(Make({Ship(0, -900'000, 0), Ship(1, 900'000, 0)}), WATCHED);
    while (!sim.IsOver())
        sim.Step();
    EXPECT_EQ(sim.BattleTime(), CBattleSim::QUIET_LIMIT);
    EXPECT_EQ(sim.Winner(), -1);
    sim.Decide(1);
    EXPECT_EQ(sim.Winner(), -1) << "it is over";
}

TEST(BattleSimTest, TheGradeHelpsOrHindersThePlayer)
{
    int wins[3] = {};
    for (int grade = 0; grade < 3; ++grade) {
        for (std::uint64_t seed = 0; seed < 24; ++seed) {
            for (const int side : {0, 1}) {
                CBattleSim sim(Duel(), {side, side != 0, side == 0, grade, seed});
                while (!sim.IsOver())
                    sim.Step();
                wins[grade] += sim.Winner() == side ? 1 : 0;
            }
        }
    }
    EXPECT_GT(wins[0], wins[1] + 5);
    EXPECT_GT(wins[1], wins[2] + 5);
    EXPECT_GT(wins[2], 0);
}

TEST(BattleSimTest, AWayLeadsAroundTheLand)
{
    int ways = 0;
    for (const char* scene : {"pellan_roads_morning", "ketter_sound_night", "ras_zahir_clear"}) {
        CBattleSim sim(Make({Ship(0, -8000, 0), Ship(1, 8000, 3000)}, scene), {0, false, true, 1, 1});
        const CCoast& coast = sim.Coast();
        ASSERT_TRUE(coast.HasLand());
        SeaPoint behind;
        bool found = false;
        const SeaPoint start = sim.Units()[0].place;
        for (double y = sim.Bounds().south; y < sim.Bounds().north && !found; y += 500) {
            for (double x = sim.Bounds().west; x < sim.Bounds().east && !found; x += 500) {
                behind = {x, y};
                if (coast.IsLand(behind)) {
                    EXPECT_FALSE(sim.OrderMove(0, 0, behind));
                }
                const SeaPoint next = coast.NextOnWay(start, behind);
                found = coast.Height(behind) < -0.2 && !coast.IsClear(start, behind) &&
                        DistanceOf(next, behind) > 1;
            }
        }
        if (!found)
            continue;
        ++ways;
        ASSERT_TRUE(sim.OrderMove(0, 0, behind));
        sim.Decide(-1); // nobody disturbs it
        for (int i = 0; i < 14'000 && sim.Units()[0].order.kind == OrderKind::MOVE; ++i) {
            sim.Step();
            ASSERT_FALSE(coast.IsLand(sim.Units()[0].place));
        }
        EXPECT_EQ(sim.Units()[0].order.kind, OrderKind::STOP)
            << scene << ": " << sim.Units()[0].place.x << " " << sim.Units()[0].place.y << " for " << behind.x
            << " " << behind.y;
    }
    EXPECT_GT(ways, 0);
}

TEST(BattleSimTest, WhatIsBelowIsSafeFromGunsAndABalloonSeesFar)
{
    ScenarioBalloon balloon;
    balloon.place = {-20'000, 0, 0, 0, 1200};
    balloon.nSide = 0;
    CBattleSim sim(
        Make({Ship(0, 0, 0), Submarine(1, 1500, 0), balloon, Ship(1, 9'000, 0), Ship(0, -90'000, 0)}),
        {1, true, false, 1, 4});
    EXPECT_TRUE(sim.Units()[3].seen[0]) << "the balloon does";
    EXPECT_FALSE(sim.Units()[1].seen[0]) << "nobody listens for it";
    EXPECT_TRUE(sim.Units()[0].seen[1]);
    ASSERT_TRUE(sim.OrderDive(1, 1, true));
    ASSERT_TRUE(sim.OrderStop(1, 1));
    Steps(sim, 1'500);
    EXPECT_EQ(sim.Units()[1].damage, 0);
    EXPECT_GT(sim.Units()[1].rounds, 0) << "torpedoes";
}

} // namespace
