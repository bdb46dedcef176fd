#include "battle/chart_view.h"

#include <cmath>
#include <numbers>
#include <utility>

#include "battle/chart_colours.h"
#include "battle/chart_shots.h"
#include "battle/chart_units.h"

namespace
{

constexpr const char* HEAD_FONT = "resource\\txt_res\\table.fnt";
constexpr const char* SMALL_FONT = "resource\\txt_res\\small.fnt";

constexpr LONG BORDER = 6;         // pixels of the chart's black and white edge
constexpr double BORDER_STEP = 48; // at least, of one of its parts
constexpr double SCALE_LEAST = 64; // pixels of the scale
constexpr int SCALE_PARTS = 4;
constexpr LONG CORNER = 18; // pixels between the chart's edge and scale or rose
constexpr double ROSE_RADIUS = 46;
constexpr LONG ROSE_ROOM = 320;         // pixels of the chart's height that a rose asks for
constexpr std::size_t FORCED_NAMES = 3; // chosen units, of which more are named only where there is room
constexpr LONG NAME_GAP = 3;            // pixels between a unit and its name
constexpr double DEGREE = std::numbers::pi / 180;

ChartPoint Towards(ChartPoint from, double degrees, double way)
{
    return {from.x + std::sin(degrees * DEGREE) * way, from.y - std::cos(degrees * DEGREE) * way};
}

} // namespace

CChartView::CChartView(std::shared_ptr<const CBattleControls> controls, ChartWords words)
    : m_pControls(std::move(controls)), m_Words(std::move(words)),
      m_Sheet(m_pControls->Battle().Sim().Coast())
{
    m_Head.Load(HEAD_FONT);
    m_Small.Load(SMALL_FONT);
}

void CChartView::Draw(const PixelView& target)
{
    const CChartProjection& view = m_pControls->View();
    m_Sheet.Draw(target, view, m_Small);
    CChartPen pen(target, view.Area());
    DrawRose(pen);
    CChartUnits units(pen, *m_pControls);
    CChartShots shots(pen, *m_pControls);
    units.DrawBelow();
    shots.DrawBelow();
    units.Draw();
    shots.DrawAbove();
    DrawNames(pen);
    DrawScale(pen);
    DrawBorder(pen);
    DrawBox(pen);
    CBattleStrips(*m_pControls, m_Words, m_Head, m_Small).Draw(target);
}

/// Black and white in turn, in steps of the sea.
void CChartView::DrawBorder(CChartPen& pen) const
{
    const CChartProjection& view = m_pControls->View();
    const RECT& area = view.Area();
    const std::uint16_t ink = ToPixel(CHART_INK);
    const double step = CChartSheet::RoundLength(BORDER_STEP * view.MetresPerPixel());
    const double pixels = step / view.MetresPerPixel();
    const ChartPoint zero = view.ToChart({0, 0});
    pen.Fill({area.left, area.top, area.right, area.top + BORDER}, ToPixel(CHART_PAPER));
    pen.Fill({area.left, area.bottom - BORDER, area.right, area.bottom}, ToPixel(CHART_PAPER));
    pen.Fill({area.left, area.top, area.left + BORDER, area.bottom}, ToPixel(CHART_PAPER));
    pen.Fill({area.right - BORDER, area.top, area.right, area.bottom}, ToPixel(CHART_PAPER));
    const auto stripes = [pixels](double from, LONG low, LONG high, auto fill) {
        for (auto i = static_cast<int>(std::floor((low - from) / pixels)); from + i * pixels < high; ++i) {
            if (i % 2 == 0)
                fill(static_cast<LONG>(from + i * pixels), static_cast<LONG>(from + (i + 1) * pixels));
        }
    };
    stripes(zero.x, area.left, area.right, [&](LONG from, LONG to) {
        pen.Fill({from, area.top + 1, to, area.top + BORDER - 1}, ink);
        pen.Fill({from, area.bottom - BORDER + 1, to, area.bottom - 1}, ink);
    });
    stripes(zero.y, area.top, area.bottom, [&](LONG from, LONG to) {
        pen.Fill({area.left + 1, from, area.left + BORDER - 1, to}, ink);
        pen.Fill({area.right - BORDER + 1, from, area.right - 1, to}, ink);
    });
    pen.Frame(
        {area.left + BORDER - 1, area.top + BORDER - 1, area.right - BORDER + 1, area.bottom - BORDER + 1},
        ink);
}

std::string CChartView::LengthText(double metres) const
{
    const auto miles = std::lround(metres / CChartSheet::SEA_MILE);
    const auto cables = std::lround(metres / CChartSheet::SEA_MILE * 10);
    if (miles >= 1)
        return std::to_string(miles) + " " + m_Words.Text(miles == 1 ? CHART_SEA_MILE : CHART_SEA_MILES);
    return std::to_string(cables) + " " + m_Words.Text(cables == 1 ? CHART_CABLE : CHART_CABLES);
}

void CChartView::DrawScale(CChartPen& pen) const
{
    const CChartProjection& view = m_pControls->View();
    const double metres = CChartSheet::RoundLength(SCALE_LEAST * view.MetresPerPixel());
    const auto width = static_cast<LONG>(metres / view.MetresPerPixel());
    constexpr LONG PAD = 8;
    constexpr LONG BAR = 6;
    const std::string text = LengthText(metres);
    const LONG left = view.Area().left + CORNER;
    const LONG bottom = view.Area().bottom - CORNER;
    const RECT panel = {left, bottom - m_Small.Height() - BAR - 2 * PAD + 2,
                        left + std::max<LONG>(width, m_Small.Width(text)) + 2 * PAD, bottom};
    pen.Fill(panel, ToPixel(CHART_PAPER), 200);
    pen.Frame(panel, ToPixel(CHART_INK));
    const RECT bar = {left + PAD, bottom - PAD - BAR, left + PAD + width, bottom - PAD};
    for (int i = 0; i < SCALE_PARTS; i += 2)
        pen.Fill({bar.left + width * i / SCALE_PARTS, bar.top, bar.left + width * (i + 1) / SCALE_PARTS,
                  bar.bottom},
                 ToPixel(CHART_INK));
    pen.Frame(bar, ToPixel(CHART_INK));
    if (pen.IsNear({static_cast<double>(panel.left), static_cast<double>(panel.top)}, 0))
        m_Small.DrawInk(pen.Target(), static_cast<int>(bar.left), static_cast<int>(panel.top + PAD / 2), text,
                        ToPixel(CHART_INK));
}

void CChartView::DrawRose(CChartPen& pen) const
{
    const RECT& area = m_pControls->View().Area();
    if (area.bottom - area.top < ROSE_ROOM)
        return;
    const ChartPoint middle = {static_cast<double>(area.right - CORNER) - ROSE_RADIUS,
                               static_cast<double>(area.top + CORNER + m_Small.Height()) + ROSE_RADIUS};
    const std::uint16_t ink = ToPixel(CHART_INK);
    const std::uint16_t paper = ToPixel(CHART_PAPER);
    constexpr int COVER = 205;
    pen.Ring(middle, ROSE_RADIUS * 0.78, 1.2, ink, COVER);
    pen.Ring(middle, ROSE_RADIUS * 0.66, 1, ink, COVER);
    for (int degree = 0; degree < 360; degree += 10)
        pen.Line(Towards(middle, degree, ROSE_RADIUS * 0.66), Towards(middle, degree, ROSE_RADIUS * 0.78), 1,
                 ink, COVER);
    // Four short points under four long ones, each half light and half dark.
    for (const bool main : {false, true}) {
        for (int i = 0; i < 4; ++i) {
            const double angle = i * 90.0 + (main ? 0 : 45);
            const ChartPoint tip = Towards(middle, angle, ROSE_RADIUS * (main ? 1.0 : 0.6));
            for (const double side : {-45.0, 45.0}) {
                const ChartPoint half[] = {middle, tip, Towards(middle, angle + side, ROSE_RADIUS * 0.17)};
                pen.Polygon(half, side > 0 ? ink : paper, COVER);
                pen.Line(tip, half[2], 1, ink, COVER);
            }
        }
    }
    const std::string north = m_Words.Text(CHART_NORTH);
    m_Small.DrawInk(pen.Target(), static_cast<int>(middle.x) - m_Small.Width(north) / 2,
                    static_cast<int>(middle.y - ROSE_RADIUS) - m_Small.Height(), north, ink);
}

void CChartView::DrawBox(CChartPen& pen) const
{
    RECT box;
    if (!m_pControls->GetBox(box))
        return;
    constexpr int TINT = 40;
    pen.Fill(box, ToPixel(CHART_BRASS), TINT);
    pen.Frame(box, ToPixel(CHART_INK));
}

// Names

RECT CChartView::SymbolRect(const BattleUnit& unit) const
{
    const CChartProjection& view = m_pControls->View();
    const double half = CBattleControls::SymbolLength(unit, view.MetresPerPixel()) / 2;
    const double across = half * std::max(0.25, std::abs(std::sin(unit.heading * DEGREE))) + 2;
    const double down = half * std::max(0.25, std::abs(std::cos(unit.heading * DEGREE))) + 2;
    const ChartPoint at = view.ToChart(m_pControls->Battle().Sim().ShownPlace(unit));
    return {static_cast<LONG>(at.x - across), static_cast<LONG>(at.y - down),
            static_cast<LONG>(at.x + across), static_cast<LONG>(at.y + down)};
}

/// The unit under the pointer and a few chosen ones have their names in any case, all others where there is
/// room.
void CChartView::DrawNames(const CChartPen& pen) const
{
    const std::vector<BattleUnit>& units = m_pControls->Battle().Sim().Units();
    std::vector<RECT> taken;
    std::vector<int> shown;
    for (int i = 0; i < static_cast<int>(units.size()); ++i) {
        const BattleUnit& unit = units[static_cast<std::size_t>(i)];
        if (unit.gone || !m_pControls->IsSeen(unit) ||
            !m_pControls->View().IsInArea(m_pControls->View().ToChart(unit.place)))
            continue;
        shown.push_back(i);
        taken.push_back(SymbolRect(unit));
    }
    std::vector<int> forced;
    if (m_pControls->Hovered() >= 0)
        forced.push_back(m_pControls->Hovered());
    if (m_pControls->Selected().size() <= FORCED_NAMES) {
        for (const int unit : m_pControls->Selected()) {
            if (unit != m_pControls->Hovered())
                forced.push_back(unit);
        }
    }
    for (const int unit : forced)
        PlaceName(pen, unit, true, taken);
    if (shown.size() > CChartUnits::CROWD)
        return;
    for (const int unit : shown) {
        if (std::ranges::find(forced, unit) == forced.end())
            PlaceName(pen, unit, false, taken);
    }
}

bool CChartView::PlaceName(const CChartPen& pen, int index, bool forced, std::vector<RECT>& taken) const
{
    const BattleUnit& unit = m_pControls->Battle().Sim().Units()[static_cast<std::size_t>(index)];
    const RECT symbol = SymbolRect(unit);
    const LONG width = m_Small.Width(unit.name);
    const LONG height = m_Small.Height();
    const LONG middle = (symbol.top + symbol.bottom - height) / 2;
    const LONG centre = (symbol.left + symbol.right - width) / 2;
    const POINT places[] = {{symbol.right + NAME_GAP, middle},
                            {symbol.left - NAME_GAP - width, middle},
                            {centre, symbol.top - height},
                            {centre, symbol.bottom + 2 * NAME_GAP}};
    for (const POINT& place : places) {
        const RECT name = {place.x, place.y, place.x + width, place.y + height};
        const bool free = std::ranges::none_of(taken, [&name](const RECT& other) {
            return name.left < other.right && other.left < name.right && name.top < other.bottom &&
                   other.top < name.bottom;
        });
        const RECT& clip = pen.Clip();
        const bool inside = name.left >= clip.left + BORDER && name.right <= clip.right - BORDER &&
                            name.top >= clip.top + BORDER && name.bottom <= clip.bottom - BORDER;
        if (!free || !inside)
            continue;
        taken.push_back(name);
        WriteName(pen, place, unit);
        return true;
    }
    if (forced)
        WriteName(pen, places[0], unit);
    return forced;
}

void CChartView::WriteName(const CChartPen& pen, POINT at, const BattleUnit& unit) const
{
    constexpr int HALO = 170;
    const auto write = [&](LONG right, LONG down, const Colour& colour, int cover) {
        m_Small.DrawInk(pen.Target(), static_cast<int>(at.x + right), static_cast<int>(at.y + down),
                        unit.name, ToPixel(colour), cover);
    };
    for (const LONG off : {-1, 1}) {
        write(off, 0, CHART_PAPER, HALO);
        write(0, off, CHART_PAPER, HALO);
    }
    write(0, 0, Mix(SideColour(unit.side), CHART_BLACK, 0.5F), CChartPen::FULL);
}
