#include "battle/chart_units.h"

#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "battle/chart_colours.h"

namespace
{

// Half outlines: ahead and to starboard, in parts of the length.
constexpr ChartPoint WARSHIP[] = {{0.50, 0.0},   {0.40, 0.045},  {0.25, 0.085},  {0.05, 0.105},
                                  {-0.2, 0.105}, {-0.38, 0.085}, {-0.47, 0.055}, {-0.50, 0.02}};
constexpr ChartPoint SLIM[] = {{0.50, 0.0},   {0.38, 0.045},  {0.2, 0.075},  {0.0, 0.085},
                               {-0.3, 0.075}, {-0.46, 0.055}, {-0.50, 0.035}};
constexpr ChartPoint TRADER[] = {{0.50, 0.0},   {0.44, 0.06},   {0.34, 0.11}, {0.1, 0.125},
                                 {-0.3, 0.125}, {-0.44, 0.095}, {-0.5, 0.03}};
constexpr ChartPoint SUBMARINE[] = {{0.50, 0.0}, {0.42, 0.045}, {0.25, 0.07}, {-0.15, 0.07}, {-0.5, 0.005}};
constexpr ChartPoint ENVELOPE[] = {{0.50, 0.0},   {0.46, 0.09}, {0.34, 0.17},  {0.15, 0.21},
                                   {-0.1, 0.195}, {-0.3, 0.13}, {-0.45, 0.05}, {-0.5, 0.0}};
constexpr double CAPITAL_LENGTH = 125; // metres; from here on a warship has turrets to be seen
constexpr int CAPITAL_CALIBRE = 180;   // millimetres
constexpr double SLIM_LENGTH = 95;

constexpr double HULL_EDGE = 1.0;  // pixels of dark around a hull
constexpr double SHADOW_RIGHT = 9; // pixels from a balloon to its shadow
constexpr double SHADOW_DOWN = 13;
constexpr int SHADOW_COVER = 70;
constexpr int SUBMERGED_COVER = 96;
constexpr double FULL_WAKE_SPEED = 15; // metres a second
constexpr int WAKE_PARTS = 6;
constexpr double RING_GAP = 5; // pixels between a unit and the ring around it
constexpr double GOAL_RADIUS = 4;
constexpr double DAMAGE_WIDTH = 22; // pixels of the bar that shows the hull
constexpr double BURNING = 0.45;    // hull from which on smoke is seen
constexpr std::int64_t MILLISECONDS = 1000;

constexpr Colour WAKE = {250, 252, 250};
constexpr Colour FIRE_SMOKE = {52, 48, 46};
constexpr Colour ATTACK = {176, 28, 24};
constexpr Colour HULL_GOOD = {58, 134, 62};
constexpr Colour HULL_FAIR = {214, 160, 32};
constexpr Colour HULL_POOR = {200, 44, 34};

} // namespace

CChartUnits::CChartUnits(CChartPen& pen, const CBattleControls& controls)
    : m_Pen(pen), m_Controls(controls), m_Sim(controls.Battle().Sim()),
      m_bCrowded(std::ranges::count_if(m_Sim.Units(), [this](const BattleUnit& unit) {
                     return !unit.gone && IsShown(unit);
                 }) > CROWD)
{
}

CChartUnits::Frame CChartUnits::FrameOf(const BattleUnit& unit) const
{
    const double angle = unit.heading * std::numbers::pi / 180;
    const double east = std::sin(angle);
    const double north = std::cos(angle);
    return {m_Controls.View().ToChart(m_Sim.ShownPlace(unit)),
            CBattleControls::SymbolLength(unit, m_Controls.View().MetresPerPixel()),
            {east, -north},
            {north, east}};
}

bool CChartUnits::IsShown(const BattleUnit& unit) const
{
    const Frame frame = FrameOf(unit);
    constexpr double REACH = 4; // lengths, the wake counted in
    return m_Controls.IsSeen(unit) && m_Pen.IsNear(frame.middle, frame.length * REACH);
}

void CChartUnits::FillOutline(const Frame& frame, std::span<const ChartPoint> half, double grow,
                              std::uint16_t colour, int cover)
{
    std::vector<ChartPoint> outline;
    const double more = grow / frame.length;
    const auto add = [&](const ChartPoint& p, double side) {
        const double forward = p.x + (p.x > 0 ? more : -more) * std::min(1.0, std::abs(p.x) * 2);
        outline.push_back(frame.At(forward, side * (p.y + more)));
    };
    for (const ChartPoint& p : half)
        add(p, 1);
    for (std::size_t i = half.size(); i-- > 0;)
        add(half[i], -1);
    m_Pen.Polygon(outline, colour, cover);
}

void CChartUnits::DrawBelow()
{
    const std::vector<BattleUnit>& units = m_Sim.Units();
    for (const BattleUnit& unit : units) {
        if (unit.gone && IsShown(unit))
            DrawWreck(unit);
    }
    for (const BattleUnit& unit : units) {
        if (!m_bCrowded && !unit.gone && IsShown(unit))
            DrawWake(unit);
    }
    for (const int index : m_Controls.Selected())
        DrawWay(index);
}

void CChartUnits::Draw()
{
    for (const bool aloft : {false, true}) {
        for (const BattleUnit& unit : m_Sim.Units()) {
            if (unit.gone || (unit.type == UnitType::BALLOON) != aloft || !IsShown(unit))
                continue;
            if (aloft)
                DrawBalloon(unit);
            else if (unit.type == UnitType::SUBMARINE)
                DrawSubmarine(unit);
            else
                DrawShip(unit);
            DrawDamage(unit);
        }
    }
}

/// A cross in a ring of dots, in the side's colour.
void CChartUnits::DrawWreck(const BattleUnit& unit)
{
    constexpr double ARM = 4.5;
    constexpr double RADIUS = 8;
    constexpr int DOTS = 12;
    constexpr int COVER = 190;
    const ChartPoint at = m_Controls.View().ToChart(unit.place);
    const std::uint16_t colour = ToPixel(Mix(SideColour(unit.side), CHART_BLACK, 0.35F));
    m_Pen.Line({at.x - ARM, at.y - ARM}, {at.x + ARM, at.y + ARM}, 2, colour, COVER);
    m_Pen.Line({at.x - ARM, at.y + ARM}, {at.x + ARM, at.y - ARM}, 2, colour, COVER);
    for (int i = 0; i < DOTS; ++i) {
        const double angle = i * 2 * std::numbers::pi / DOTS;
        m_Pen.Disc({at.x + RADIUS * std::cos(angle), at.y + RADIUS * std::sin(angle)}, 1, colour, COVER);
    }
}

/// Two waves that part from the bow, and the foam of the screws.
void CChartUnits::DrawWake(const BattleUnit& unit)
{
    Frame frame = FrameOf(unit);
    if (unit.type == UnitType::BALLOON) {
        frame.middle.x += SHADOW_RIGHT;
        frame.middle.y += SHADOW_DOWN;
        FillOutline(frame, ENVELOPE, 0, ToPixel(CHART_BLACK), SHADOW_COVER);
        return;
    }
    const double share = std::min(1.0, unit.speed / FULL_WAKE_SPEED);
    constexpr double LEAST = 0.02;
    if (unit.submerged || share < LEAST)
        return;
    const std::uint16_t foam = ToPixel(WAKE);
    const double longest = 0.5 + 1.9 * share;
    constexpr double SPREAD = 0.24;
    constexpr double WIDTH = 0.075;
    constexpr double MOST_COVER = 235;
    for (int i = 0; i < WAKE_PARTS; ++i) {
        const double from = longest * i / WAKE_PARTS;
        const double to = longest * (i + 1) / WAKE_PARTS;
        const auto cover = static_cast<int>(MOST_COVER * (WAKE_PARTS - i) / WAKE_PARTS);
        const double width = std::max(1.0, frame.length * WIDTH);
        for (const double side : {-1.0, 1.0})
            m_Pen.Line(frame.At(0.3 - from, side * (0.05 + SPREAD * from)),
                       frame.At(0.3 - to, side * (0.05 + SPREAD * to)), width, foam, cover);
        m_Pen.Line(frame.At(-0.45 - from, 0), frame.At(-0.45 - to, 0), width * 2, foam, cover * 2 / 3);
    }
}

/// The ring of a chosen unit, and where its order leads it.
void CChartUnits::DrawWay(int index)
{
    const BattleUnit& unit = m_Sim.Units()[static_cast<std::size_t>(index)];
    const Frame frame = FrameOf(unit);
    const std::uint16_t brass = ToPixel(CHART_BRASS);
    const std::uint16_t ink = ToPixel(CHART_INK);
    const double radius = frame.length / 2 + RING_GAP;
    m_Pen.Ring(frame.middle, radius, 4, ink, 120);
    m_Pen.Ring(frame.middle, radius, 2, brass);
    const UnitOrder& order = unit.order;
    const bool own =
        unit.side == m_Controls.Battle().OrderingSide() || m_Controls.Battle().OrderingSide() < 0;
    const bool attack = order.kind == OrderKind::ATTACK && order.target >= 0;
    if (!own || (order.kind != OrderKind::MOVE && !attack))
        return;
    const BattleUnit* target = attack ? &m_Sim.Units()[static_cast<std::size_t>(order.target)] : nullptr;
    if (attack && !m_Controls.IsSeen(*target))
        return;
    const ChartPoint goal = m_Controls.View().ToChart(attack ? m_Sim.ShownPlace(*target) : order.to);
    const std::uint16_t colour = attack ? ToPixel(ATTACK) : ink;
    const double way = std::hypot(goal.x - frame.middle.x, goal.y - frame.middle.y);
    if (way <= radius)
        return;
    const ChartPoint from = {frame.middle.x + (goal.x - frame.middle.x) * radius / way,
                             frame.middle.y + (goal.y - frame.middle.y) * radius / way};
    constexpr double DASH = 6;
    constexpr std::size_t MANY = 6;
    m_Pen.Dashes(from, goal, 1.4, DASH, colour, m_Controls.Selected().size() > MANY ? 110 : 200);
    if (attack)
        m_Pen.Ring(goal,
                   CBattleControls::SymbolLength(*target, m_Controls.View().MetresPerPixel()) / 2 + RING_GAP,
                   1.6, colour);
    else
        m_Pen.Disc(goal, GOAL_RADIUS, colour);
}

void CChartUnits::DrawShip(const BattleUnit& unit)
{
    const Frame frame = FrameOf(unit);
    const bool armed = unit.guns[0].guns > 0 || unit.tubes > 0;
    std::span<const ChartPoint> outline = WARSHIP;
    if (!armed)
        outline = TRADER;
    else if (unit.length < SLIM_LENGTH)
        outline = SLIM;
    const Colour side = SideColour(unit.side);
    FillOutline(frame, outline, HULL_EDGE, ToPixel(Mix(side, CHART_BLACK, 0.62F)));
    FillOutline(frame, outline, 0, ToPixel(side));
    DrawDeck(unit, frame);
    if (unit.Hull() >= BURNING)
        return;
    // Smoke drifts off the same way from all of them.
    for (int i = 0; i < 4; ++i) {
        const double puff = i + static_cast<double>(m_Sim.ShownTime() % (8 * MILLISECONDS)) / 8000;
        m_Pen.Disc({frame.middle.x + puff * 5, frame.middle.y - puff * 3}, 2.5 + puff * 1.3,
                   ToPixel(FIRE_SMOKE), static_cast<int>(150 - puff * 34));
    }
}

void CChartUnits::DrawDeck(const BattleUnit& unit, const Frame& frame)
{
    const Colour side = SideColour(unit.side);
    const std::uint16_t light = ToPixel(Mix(side, CHART_PAPER, 0.72F));
    const std::uint16_t dark = ToPixel(Mix(side, CHART_BLACK, 0.75F));
    const double width = frame.length;
    // The deck's light strip, bridge and funnels.
    m_Pen.Line(frame.At(0.12, 0), frame.At(-0.2, 0), width * 0.085, light);
    m_Pen.Disc(frame.At(0.04, 0), width * 0.03, dark);
    m_Pen.Disc(frame.At(-0.1, 0), width * 0.03, dark);
    if (m_bCrowded || unit.length < CAPITAL_LENGTH || unit.guns[0].calibre < CAPITAL_CALIBRE)
        return;
    for (const double turret : {0.32, 0.21, -0.27, -0.38}) {
        m_Pen.Disc(frame.At(turret, 0), width * 0.05, light);
        const double muzzle = turret + (turret > 0 ? 0.1 : -0.1);
        m_Pen.Line(frame.At(turret, 0), frame.At(muzzle, 0), width * 0.028, dark);
    }
}

void CChartUnits::DrawSubmarine(const BattleUnit& unit)
{
    const Frame frame = FrameOf(unit);
    const Colour side = SideColour(unit.side);
    const std::uint16_t dark = ToPixel(Mix(side, CHART_BLACK, 0.6F));
    if (!unit.submerged) {
        FillOutline(frame, SUBMARINE, HULL_EDGE, dark);
        FillOutline(frame, SUBMARINE, 0, ToPixel(side));
        m_Pen.Disc(frame.At(0.05, 0), std::max(1.4, frame.length * 0.055),
                   ToPixel(Mix(side, CHART_PAPER, 0.72F)));
        return;
    }
    FillOutline(frame, SUBMARINE, HULL_EDGE, ToPixel(side), SUBMERGED_COVER);
    constexpr double OFF = 0.2; // of the length, of the broken lines beside a boat below the surface
    for (const double right : {-OFF, OFF})
        m_Pen.Dashes(frame.At(0.5, right), frame.At(-0.5, right), 1.2, 3, dark, 200);
}

void CChartUnits::DrawBalloon(const BattleUnit& unit)
{
    const Frame frame = FrameOf(unit);
    const Colour side = SideColour(unit.side);
    const std::uint16_t dark = ToPixel(Mix(side, CHART_BLACK, 0.5F));
    for (const double right : {-0.16, 0.16})
        m_Pen.Line(frame.At(-0.26, right / 3), frame.At(-0.5, right), std::max(2.0, frame.length * 0.1),
                   dark);
    FillOutline(frame, ENVELOPE, HULL_EDGE, dark);
    FillOutline(frame, ENVELOPE, 0, ToPixel(Mix(side, CHART_PAPER, 0.45F)));
    m_Pen.Line(frame.At(0.36, -0.06), frame.At(-0.2, -0.06), frame.length * 0.09,
               ToPixel(Mix(side, CHART_PAPER, 0.85F)), 200);
    m_Pen.Line(frame.At(0.45, 0.03), frame.At(-0.42, 0.03), std::max(1.2, frame.length * 0.06),
               ToPixel(side));
}

/// A small bar under what is damaged, chosen alone, or under the pointer.
void CChartUnits::DrawDamage(const BattleUnit& unit)
{
    const auto index = static_cast<int>(&unit - m_Sim.Units().data());
    const double hull = unit.Hull();
    const bool chosen = m_Controls.IsSelected(index) && m_Controls.Selected().size() == 1;
    if ((hull >= 1 || m_bCrowded) && !chosen && m_Controls.Hovered() != index)
        return;
    constexpr double FAIR = 0.66;
    constexpr double POOR = 0.33;
    constexpr LONG HEIGHT = 4;
    const Frame frame = FrameOf(unit);
    const auto left = static_cast<LONG>(frame.middle.x - DAMAGE_WIDTH / 2);
    // Clear of the hull, whichever way it points.
    const auto top =
        static_cast<LONG>(frame.middle.y + frame.length * std::max(0.14, std::abs(frame.ahead[1]) / 2) + 3);
    const auto right = left + static_cast<LONG>(DAMAGE_WIDTH);
    m_Pen.Fill({left, top, right, top + HEIGHT}, ToPixel(CHART_NAVY), 200);
    const Colour colour = hull > FAIR ? HULL_GOOD : hull > POOR ? HULL_FAIR : HULL_POOR;
    const auto full = static_cast<LONG>((DAMAGE_WIDTH - 2) * hull + 0.5);
    m_Pen.Fill({left + 1, top + 1, left + 1 + full, top + HEIGHT - 1}, ToPixel(colour));
}
