// The chart of a battle: where places are on the display, what mouse and keys do, what is drawn.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "battle/chart_colours.h"
#include "battle/chart_view.h"
#include "game/battle_units.h"
#include "platform/input.h"
#include "platform/temp_roots.h"
#include "support/fakes.h"

namespace
{

using seawarden_test::FakeHost;

constexpr SIZE DISPLAY = {800, 600};

enum { SHIP, BOAT, ENEMY, FAR_ENEMY };

std::shared_ptr<CBattle> MakeBattle()
{
    ScenarioShip ship = ShipAt(0, -1500, 0);
    ScenarioShip enemy = ShipAt(1, 1500, 0);
    for (ShipFigures* figures : {&ship.figures, &enemy.figures}) {
        figures->nLength = 160;
        figures->nMainCalibre = 305;
    }
    const Scenario scenario =
        ScenarioOf({ship, UnitAt<ScenarioSubmarine>(0, -1500, -1000), enemy, ShipAt(1, 90000, 0)});
    return std::make_shared<CBattle>(ItfCommand(), scenario, 1);
}

class BattleViewTest : public ::testing::Test
{
  protected:
    BattleViewTest() { controls->OnFrame(0, DISPLAY); }

    ChartPoint At(int unit) const
    {
        return controls->View().ToChart(battle->Sim().Units()[static_cast<std::size_t>(unit)].place);
    }
    void Mouse(std::uint32_t message, ChartPoint at, std::uint32_t wParam = 0)
    {
        const auto x = static_cast<std::uint16_t>(std::lround(at.x));
        const auto y = static_cast<std::uint16_t>(std::lround(at.y));
        controls->OnWindowMessage(message, wParam, static_cast<std::int32_t>(y << 16 | x), DISPLAY);
    }
    void Drag(std::uint32_t press, ChartPoint from, ChartPoint to, std::uint32_t keys = 0)
    {
        Mouse(press, from, keys);
        Mouse(WM_MOUSEMOVE, to, keys);
        Mouse(press + 1, to, keys);
    }
    void Key(int code)
    {
        controls->OnWindowMessage(WM_KEYDOWN, static_cast<std::uint32_t>(code), 0, DISPLAY);
        controls->OnWindowMessage(WM_KEYUP, static_cast<std::uint32_t>(code), 0, DISPLAY);
    }
    /// A word for each input, as the table below spells them.
    void Do(const std::string& input)
    {
        const ChartPoint water = {400, 150};
        const bool shift = input.starts_with("shift-");
        const std::uint32_t keys = shift ? 4 : 0;
        const std::string what = input.substr(shift ? 6 : 0);
        const int unit = what.back() - '0';
        if (what.starts_with("click"))
            Drag(WM_LBUTTONDOWN, At(unit), At(unit), keys);
        else if (what.starts_with("order"))
            Drag(WM_RBUTTONDOWN, At(unit), At(unit));
        else if (what == "water")
            Drag(WM_LBUTTONDOWN, water, water, keys);
        else if (what == "sail")
            Drag(WM_RBUTTONDOWN, water, water);
        else if (what == "scroll")
            Drag(WM_RBUTTONDOWN, water, {water.x + 60, water.y});
        else if (what == "box")
            Drag(WM_LBUTTONDOWN, {9, 40}, {790, 530});
        else if (what == "+" || what == "-")
            controls->OnWindowMessage(WM_CHAR, static_cast<std::uint32_t>(what[0]), 0, DISPLAY);
        else
            Key(what == "pause" ? VK_SPACE : what[0]);
        controls->OnFrame(0, DISPLAY);
    }
    std::string State() const
    {
        std::string state;
        for (const int unit : controls->Selected())
            state += std::to_string(unit);
        state += " ";
        for (const BattleUnit& unit : battle->Sim().Units())
            state += "-mas"[static_cast<int>(unit.order.kind)];
        return state + " " + std::to_string(battle->Speed());
    }

    FakeHost host;
    std::shared_ptr<CBattle> battle = MakeBattle();
    std::shared_ptr<CBattleControls> controls = std::make_shared<CBattleControls>(battle);
};

TEST_F(BattleViewTest, MouseAndKeysChooseOrderAndSetTheSpeed)
{
    // Chosen units, orders (move, attack, stop) of all units, speed.
    const std::pair<std::string, const char*> rows[] = {
        {"click0 water", " ---- 1"},
        {"click0 shift-click1 shift-water", "01 ---- 1"},
        {"click0 shift-click1 shift-click0", "1 ---- 1"},
        {"click2 shift-click0", "0 ---- 1"}, // no mixed selection
        {"click2 sail", "2 ---- 1"},         // an enemy takes no orders
        {"sail", " ---- 1"},
        {"click0 sail", "0 m--- 1"},
        {"click0 scroll", "0 ---- 1"},
        {"box order2", "01 a--- 1"},   // the boat has nothing to fire
        {"click0 order1", "0 m--- 1"}, // towards a friend
        {"box sail S", "01 ss-- 1"},
        {"box sail O", "01 ---- 1"},
        {"+ + pause pause", " ---- 4"},
        {"+ + + + + +", " ---- 16"},
        {"pause -", " ---- 0"},
        {"+ + pause +", " ---- 4"}, // as it was
    };
    for (const auto& [inputs, state] : rows) {
        battle = MakeBattle();
        controls = std::make_shared<CBattleControls>(battle);
        controls->OnFrame(0, DISPLAY);
        std::istringstream words(inputs);
        for (std::string input; words >> input;)
            Do(input);
        EXPECT_EQ(State(), state) << inputs;
    }
}

TEST_F(BattleViewTest, OrdersLeaveTheirSignsAndGroupsKeepTheirPlaces)
{
    const auto& units = battle->Sim().Units();
    Do("box");
    Do("sail");
    EXPECT_EQ(controls->Sign().kind, OrderSign::Kind::MOVE);
    EXPECT_NEAR(units[SHIP].order.to.y - units[BOAT].order.to.y, 1000, 1);
    controls->OnFrame(OrderSign::LIFETIME, DISPLAY);
    EXPECT_FALSE(controls->Sign().IsShown());
    Do("click2");
    Do("sail");
    EXPECT_EQ(controls->Sign().kind, OrderSign::Kind::REFUSED);
    Do("click1");
    Do("D");
    EXPECT_TRUE(units[BOAT].diveOrdered);
    // What is covered by a dialog lets go of keys and buttons.
    controls->OnWindowMessage(WM_KEYDOWN, VK_RIGHT, 0, DISPLAY);
    Mouse(WM_LBUTTONDOWN, {100, 100});
    Mouse(WM_MOUSEMOVE, {200, 200});
    RECT box;
    EXPECT_TRUE(controls->GetBox(box));
    battle->Hold(true);
    const SeaPoint before = controls->View().Centre();
    controls->OnFrame(1000, DISPLAY);
    EXPECT_FALSE(controls->GetBox(box));
    EXPECT_DOUBLE_EQ(controls->View().Centre().x, before.x);
}

TEST(ChartProjectionTest, PlacesAndPixelsAgreeWithinTheLimits)
{
    const SeaRect limits = {-20000, -10000, 20000, 10000};
    CChartProjection view(limits);
    view.SetArea({0, 28, 800, 540});
    view.Fit({-1000, -1000, 3000, 500});
    EXPECT_NEAR(view.ToChart({-1000, 0}).x, 0, 0.01);
    EXPECT_NEAR(view.ToChart({3000, 0}).x, 800, 0.01);
    EXPECT_LT(view.ToChart({0, 100}).y, view.ToChart({0, -100}).y) << "north is up";
    const ChartPoint held = {120, 90};
    const SeaPoint place = view.ToSea(held);
    view.Zoom(1.7, held);
    EXPECT_NEAR(view.ToChart(place).x, held.x, 0.01);
    EXPECT_NEAR(view.ToChart(place).y, held.y, 0.01);
    view.Scroll(1e9, -1e9);
    EXPECT_NEAR(view.ToSea({800, 28}).x, limits.east, 0.05 * limits.Width());
    EXPECT_NEAR(view.ToSea({800, 28}).y, limits.north, 0.05 * limits.Height());
    view.Zoom(1e-30, held);
    EXPECT_NEAR(view.Centre().x, 0, 0.01);
    EXPECT_NEAR(800 * view.MetresPerPixel(), limits.Width() * CChartProjection::LIMITS_SHARE, 1);
    view.SetArea({0, 28, 0, -32}); // a display without room for a chart
    EXPECT_TRUE(std::isfinite(view.ToChart(place).x));
}

TEST_F(BattleViewTest, UnitsAreDrawnWhereTheyAreInTheirSidesColours)
{
    const TempRoots roots; // without fonts
    CChartView view(controls, {});
    std::vector<std::uint16_t> pixels(static_cast<std::size_t>(DISPLAY.cx * DISPLAY.cy), 0);
    const PixelView target = {pixels.data(), static_cast<int>(DISPLAY.cx), static_cast<int>(DISPLAY.cy)};
    // Pixels of the side's colour around the unit.
    const auto count = [&](int unit, int side) {
        const auto x = static_cast<int>(At(unit).x);
        const auto y = static_cast<int>(At(unit).y);
        std::ptrdiff_t found = 0;
        for (int row = y - 12; row < y + 12 && controls->View().IsInArea(At(unit)); ++row) {
            const auto* from = &pixels[static_cast<std::size_t>(row * target.m_nWidth + x - 12)];
            found += std::count(from, from + 24, ToPixel(SideColour(side)));
        }
        return found;
    };
    view.Draw(target);
    EXPECT_GT(count(SHIP, 0), 20);
    EXPECT_EQ(count(SHIP, 1), 0);
    EXPECT_GT(count(BOAT, 0), 5);
    EXPECT_GT(count(ENEMY, 1), 20);
    const std::vector<std::uint16_t> once = pixels;
    pixels.assign(pixels.size(), 0x1357);
    view.Draw(target);
    EXPECT_EQ(pixels, once) << "what lay there before doesn't show through";
    // An enemy that nobody has seen yet is no secret once the battle is over.
    while (!controls->View().IsInArea(At(FAR_ENEMY)) && controls->View().Centre().x < 90000)
        Key(VK_RIGHT);
    view.Draw(target);
    EXPECT_EQ(count(FAR_ENEMY, 1), 0);
    battle->Sim().Decide(0);
    view.Draw(target);
    EXPECT_GT(count(FAR_ENEMY, 1), 20);
    for (const SIZE size : {SIZE{1, 1}, SIZE{97, 61}, SIZE{64, 200}}) {
        controls->OnFrame(0, size);
        view.Draw({pixels.data(), static_cast<int>(size.cx), static_cast<int>(size.cy)});
    }
}

} // namespace
