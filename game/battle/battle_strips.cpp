#include "battle/battle_strips.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "battle/chart_colours.h"

namespace
{

constexpr int MARGIN = 10;   // pixels at the display's edges
constexpr int GAP = 8;       // between parts of a block
constexpr int WIDE_GAP = 16; // between blocks
constexpr int SWATCH = 12;
constexpr int BAR_WIDTH = 84;
constexpr int BAR_HEIGHT = 10;
constexpr int UNIT_TOP = 5; // lines of the lower strip, from its top
constexpr int KEYS_TOP = 25;
constexpr int KEY_LINE = 16;
constexpr double METRES_A_SECOND = 0.514444; // of a knot
constexpr int PERCENT = 100;
constexpr int MINUTES = 60;
constexpr Colour NAVY_LOW = {32, 42, 62};
constexpr Colour DIM = {158, 154, 138};
constexpr Colour WARNING = {255, 200, 96};
constexpr const char* TIMES = "\xd7";

int Knots(double speed)
{
    return static_cast<int>(std::lround(speed / METRES_A_SECOND));
}

std::string Padded(const char* format, int a, int b = 0)
{
    char text[32];
    std::snprintf(text, sizeof(text), format, a, b);
    return text;
}

} // namespace

void CBattleStrips::Draw(const PixelView& target) const
{
    const RECT whole = {0, 0, target.m_nWidth, target.m_nHeight};
    const CChartPen pen(target, whole);
    const LONG low = whole.bottom - CBattleControls::BOTTOM_STRIP;
    DrawBack(pen, {0, 0, whole.right, CBattleControls::TOP_STRIP});
    DrawBack(pen, {0, low, whole.right, whole.bottom});
    const std::vector<ClockPart> clock = ClockParts();
    const int room = (target.m_nWidth - WidthOf(clock)) / 2 - MARGIN - GAP;
    DrawSide(pen, 0, false, room);
    DrawSide(pen, 1, true, room);
    DrawClock(target, clock);
    DrawChosen(pen, {MARGIN, static_cast<int>(low) + UNIT_TOP, target.m_nWidth - MARGIN});
    DrawKeys(target, static_cast<int>(low) + KEYS_TOP);
}

void CBattleStrips::DrawBack(const CChartPen& pen, const RECT& strip) const
{
    const auto height = static_cast<float>(strip.bottom - strip.top);
    for (LONG y = strip.top; y < strip.bottom; ++y) {
        const float share = static_cast<float>(y - strip.top) / height;
        pen.Fill({strip.left, y, strip.right, y + 1}, ToPixel(Mix(NAVY_LOW, CHART_NAVY, share)));
    }
    const LONG edge = strip.top == 0 ? strip.bottom - 2 : strip.top;
    pen.Fill({strip.left, edge, strip.right, edge + 2}, ToPixel(CHART_BRASS));
}

/// With dots for what there is no room for; nothing where there is hardly any.
std::string CBattleStrips::Shortened(const std::string& name, int room) const
{
    std::string shown = name;
    for (std::size_t letters = name.size(); m_Head.Width(shown) > room; --letters) {
        if (letters == 0)
            return "";
        shown = name.substr(0, letters - 1) + "...";
    }
    return shown;
}

/// Name, how far the side has come, and what it has left: this goes first where there is too little room, and
/// then the end of the name.
void CBattleStrips::DrawSide(const CChartPen& pen, int side, bool right, int room) const
{
    const PixelView& target = pen.Target();
    const CBattleSim& sim = m_Controls.Battle().Sim();
    const SideFigures figures = sim.Figures(side);
    const std::string percent = std::to_string(sim.Percent(side)) + "%";
    const int percentWidth = m_Head.Width(Padded("%d%%", PERCENT));
    const int least = SWATCH + GAP + BAR_WIDTH + GAP + percentWidth;
    if (least > room)
        return;
    std::string left = std::to_string(figures.units - figures.lost) + " " + m_Words.Text(CHART_UNITS_OF) +
                       " " + std::to_string(figures.units);
    std::string name = m_Words.sides[static_cast<std::size_t>(side)];
    if (least + m_Head.Width(name) + GAP + GAP + m_Small.Width(left) > room) {
        left.clear();
        name = Shortened(name, room - least - GAP);
    }
    const int nameWidth = name.empty() ? 0 : m_Head.Width(name) + GAP;
    const int width = least + nameWidth + (left.empty() ? 0 : GAP + m_Small.Width(left));
    const LONG middle = (CBattleControls::TOP_STRIP - 2) / 2;
    const auto head = static_cast<int>(middle - m_Head.Height() / 2);
    LONG at = right ? target.m_nWidth - MARGIN - width : MARGIN;
    pen.Fill({at, middle - SWATCH / 2, at + SWATCH, middle + SWATCH / 2}, ToPixel(SideColour(side)));
    pen.Frame({at, middle - SWATCH / 2, at + SWATCH, middle + SWATCH / 2}, ToPixel(CHART_CREAM));
    at += SWATCH + GAP;
    m_Head.DrawInk(target, static_cast<int>(at), head, name, ToPixel(CHART_CREAM));
    at += nameWidth;
    const RECT bar = {at, middle - BAR_HEIGHT / 2, at + BAR_WIDTH, middle + BAR_HEIGHT / 2};
    pen.Fill(bar, ToPixel(CHART_BLACK));
    pen.Fill({bar.left, bar.top, bar.left + BAR_WIDTH * sim.Percent(side) / PERCENT, bar.bottom},
             ToPixel(Mix(SideColour(side), CHART_PAPER, 0.2F)));
    pen.Frame(bar, ToPixel(CHART_BRASS));
    at += BAR_WIDTH + GAP;
    m_Head.DrawInk(target, static_cast<int>(at), head, percent, ToPixel(CHART_CREAM));
    at += percentWidth + GAP;
    m_Small.DrawInk(target, static_cast<int>(at), static_cast<int>(middle) - m_Small.Height() / 2, left,
                    ToPixel(DIM));
}

std::vector<CBattleStrips::ClockPart> CBattleStrips::ClockParts() const
{
    const CBattle& battle = m_Controls.Battle();
    const int minutes = battle.Sim().ClockMinutes();
    std::vector<ClockPart> parts = {{Padded("%d:%02d", minutes / MINUTES, minutes % MINUTES), CHART_PAPER}};
    if (battle.Sim().IsOver())
        parts.push_back({m_Words.Text(CHART_OVER), WARNING});
    if (battle.Speed() == CBattle::SPEED_STOPPED)
        parts.push_back({m_Words.Text(CHART_STOPPED), WARNING});
    else
        parts.push_back(
            {m_Words.Text(CHART_SPEED) + " " + TIMES + std::to_string(battle.Speed()), CHART_BRASS});
    return parts;
}

int CBattleStrips::WidthOf(const std::vector<ClockPart>& parts) const
{
    int width = -GAP;
    for (const ClockPart& part : parts)
        width += m_Head.Width(part.text) + GAP;
    return width;
}

void CBattleStrips::DrawClock(const PixelView& target, const std::vector<ClockPart>& parts) const
{
    const int top = (CBattleControls::TOP_STRIP - 2 - m_Head.Height()) / 2;
    int at = (target.m_nWidth - WidthOf(parts)) / 2;
    for (const ClockPart& part : parts) {
        m_Head.DrawInk(target, at, top, part.text, ToPixel(part.colour));
        at += m_Head.Width(part.text) + GAP;
    }
}

void CBattleStrips::Write(const PixelView& target, Line& line, const std::string& text,
                          const Colour& colour) const
{
    const int width = m_Small.Width(text);
    line.full = line.full || line.pen + width > line.right;
    if (line.full || text.empty())
        return;
    m_Small.DrawInk(target, line.pen, line.top, text, ToPixel(colour));
    line.pen += width + GAP / 2;
}

void CBattleStrips::DrawChosen(const CChartPen& pen, Line line) const
{
    const PixelView& target = pen.Target();
    const std::vector<BattleUnit>& units = m_Controls.Battle().Sim().Units();
    const std::vector<int>& chosen = m_Controls.Selected();
    if (chosen.size() == 1 || (chosen.empty() && m_Controls.Hovered() >= 0)) {
        DrawUnit(pen, units[static_cast<std::size_t>(chosen.empty() ? m_Controls.Hovered() : chosen[0])],
                 line);
    } else if (chosen.empty()) {
        Write(target, line,
              m_Words.Text(m_Controls.Battle().OrderingSide() < 0 ? CHART_WATCHING : CHART_NOTHING_CHOSEN),
              DIM);
    } else {
        Write(target, line, std::to_string(chosen.size()), CHART_PAPER);
        Write(target, line, m_Words.Text(CHART_UNITS_CHOSEN), DIM);
        for (const int unit : chosen)
            Write(target, line,
                  units[static_cast<std::size_t>(unit)].name + (unit == chosen.back() ? "" : ","),
                  CHART_CREAM);
    }
}

std::vector<CBattleStrips::Part> CBattleStrips::PartsOf(const BattleUnit& unit) const
{
    enum Rank { STAYS, TUBES, COURSE, DEPTH, GUNS, CLASS, CODE };
    std::vector<Part> parts;
    const auto add = [&parts](const std::string& text, const Colour& colour, int gap, int rank) {
        if (!text.empty())
            parts.push_back({text, colour, parts.empty() ? 0 : gap, rank});
    };
    const auto figure = [&](int text, const std::string& value, int rank) {
        add(m_Words.Text(text), DIM, WIDE_GAP, rank);
        add(value, CHART_CREAM, GAP / 2, rank);
    };
    add(unit.name, CHART_PAPER, 0, STAYS);
    add(unit.code, DIM, GAP / 2, CODE);
    if (unit.classText != 0)
        add(m_Words.Text(unit.classText), CHART_BRASS, GAP / 2, CLASS);
    figure(CHART_HULL, std::to_string(std::lround(unit.Hull() * PERCENT)) + "%", STAYS);
    const double most = unit.submerged ? unit.maxSpeedBelow : unit.maxSpeed;
    figure(CHART_KNOTS, std::to_string(Knots(unit.speed)) + "/" + std::to_string(Knots(most)), STAYS);
    figure(CHART_HEADING, Padded("%03d", static_cast<int>(unit.heading)), COURSE);
    if (unit.type == UnitType::SUBMARINE)
        add(m_Words.Text(unit.submerged ? CHART_SUBMERGED : CHART_SURFACED), CHART_CREAM, WIDE_GAP, DEPTH);
    // What an enemy means to do, and what he has left, is his own affair.
    const int side = m_Controls.Battle().OrderingSide();
    if (side >= 0 && unit.side != side)
        return parts;
    add(OrderOf(unit), CHART_BRASS, WIDE_GAP, STAYS);
    if (const std::string guns = GunsOf(unit); !guns.empty())
        figure(CHART_GUNS, guns, GUNS);
    if (unit.tubes > 0)
        figure(CHART_TORPEDOES, std::to_string(unit.torpedoes), TUBES);
    return parts;
}

int CBattleStrips::WidthOf(const std::vector<Part>& parts) const
{
    int width = 0;
    for (const Part& part : parts)
        width += part.gap + m_Small.Width(part.text);
    return width;
}

void CBattleStrips::DrawUnit(const CChartPen& pen, const BattleUnit& unit, Line line) const
{
    const LONG middle = line.top + m_Small.Height() / 2;
    pen.Fill({line.pen, middle - SWATCH / 2, line.pen + SWATCH, middle + SWATCH / 2},
             ToPixel(SideColour(unit.side)));
    line.pen += SWATCH + GAP;
    std::vector<Part> parts = PartsOf(unit);
    while (WidthOf(parts) > line.right - line.pen) {
        const int least = std::ranges::max(parts, {}, &Part::rank).rank;
        if (least == 0)
            break;
        std::erase_if(parts, [least](const Part& part) { return part.rank == least; });
    }
    for (const Part& part : parts) {
        line.pen += part.gap;
        Write(pen.Target(), line, part.text, part.colour);
        line.pen -= GAP / 2; // that Write leaves behind each text
    }
}

std::string CBattleStrips::OrderOf(const BattleUnit& unit) const
{
    switch (unit.order.kind) {
    case OrderKind::MOVE:
        return m_Words.Text(CHART_ORDER_MOVE);
    case OrderKind::ATTACK: {
        const std::vector<BattleUnit>& units = m_Controls.Battle().Sim().Units();
        const bool known =
            unit.order.target >= 0 && m_Controls.IsSeen(units[static_cast<std::size_t>(unit.order.target)]);
        return m_Words.Text(CHART_ORDER_ATTACK) +
               (known ? " " + units[static_cast<std::size_t>(unit.order.target)].name : "");
    }
    case OrderKind::STOP:
        return m_Words.Text(CHART_ORDER_STOP);
    case OrderKind::NONE:
        break;
    }
    return m_Words.Text(CHART_ORDER_NONE);
}

std::string CBattleStrips::GunsOf(const BattleUnit& unit) const
{
    std::string guns;
    for (const GunBattery& battery : unit.guns) {
        if (battery.guns > 0)
            guns += (guns.empty() ? "" : ", ") + std::to_string(battery.guns) + TIMES +
                    std::to_string(battery.calibre);
    }
    return guns;
}

/// Those that there are texts for, in their order.
std::vector<std::string> CBattleStrips::Keys() const
{
    std::vector<std::string> keys;
    for (int i = 0; i < CHART_KEY_COUNT; ++i) {
        const bool end = i == 0 && m_Controls.Battle().Sim().IsOver();
        const std::string text = m_Words.Text(end ? CHART_KEY_OVER : CHART_KEYS + i);
        if (text.find('\t') != std::string::npos)
            keys.push_back(text);
    }
    return keys;
}

/// With the gap behind it.
int CBattleStrips::WidthOfKey(const std::string& key) const
{
    const std::size_t tab = key.find('\t');
    return m_Small.Width(key.substr(0, tab)) + GAP / 2 + m_Small.Width(key.substr(tab + 1)) + WIDE_GAP;
}

/// In one line, in two of about the same length, or, where they are too many for that, as far as there is
/// room.
void CBattleStrips::DrawKeys(const PixelView& target, int top) const
{
    const std::vector<std::string> keys = Keys();
    int all = 0;
    for (const std::string& key : keys)
        all += WidthOfKey(key);
    Line line = {MARGIN, top, target.m_nWidth - MARGIN};
    const int room = line.right - MARGIN + WIDE_GAP;
    const bool even = all > room && all < 2 * room;
    int done = 0;
    for (const std::string& key : keys) {
        const int width = WidthOfKey(key);
        const bool half = even && line.top == top && done + width / 2 > all / 2;
        if (half || line.pen - MARGIN + width > room) {
            line.pen = MARGIN;
            line.top += KEY_LINE;
        }
        if (line.top + m_Small.Height() > target.m_nHeight)
            return;
        const std::size_t tab = key.find('\t');
        Write(target, line, key.substr(0, tab), CHART_BRASS);
        Write(target, line, key.substr(tab + 1), CHART_CREAM);
        line.pen += WIDE_GAP - GAP / 2;
        done += width;
    }
}
