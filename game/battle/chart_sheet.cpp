#include "battle/chart_sheet.h"

#include <cmath>
#include <string>

#include "battle/chart_colours.h"

namespace
{

constexpr double CABLE = CChartSheet::SEA_MILE / 10;
constexpr double GRID_PIXELS = 110;    // at least, from line to line
constexpr double SOUNDING_PIXELS = 90; // at least, from one to the next
constexpr double HACHURE_PIXELS = 7;
constexpr float FATHOMS = 70.0F; // of the deepest water

constexpr Colour DEEP = {205, 219, 217};
constexpr Colour DEPTHS[] = {{150, 190, 201}, {169, 203, 209}, {188, 212, 213}};
constexpr float DEPTH_LINES[] = {0.09F, 0.24F, 0.42F};
constexpr Colour LOWLAND = {226, 207, 160};
constexpr Colour HIGHLAND = {191, 158, 108};
constexpr Colour SEA_INK = {64, 104, 128};
constexpr float GRAIN = 5.0F; // of 255
constexpr float RELIEF_LIGHT = 95.0F;
constexpr float MOST_LIGHT = 26.0F;

constexpr int GRID_COVER = 46;
constexpr int SOUNDING_COVER = 130;
constexpr int HACHURE_COVER = 105;

/// The least power of two of metres that is at least so many.
double PowerOfTwo(double least)
{
    return std::exp2(std::ceil(std::log2(least)));
}

/// Calls `at(place)` for the scattered places of the sheet, which stay where they are on the sea.
template <class Function>
void Scatter(double spacing, const SeaPoint& northWest, const SeaPoint& southEast, Function at)
{
    constexpr float SPREAD = 0.8F;
    for (auto row = static_cast<int>(std::floor(southEast.y / spacing)); row * spacing <= northWest.y;
         ++row) {
        for (auto column = static_cast<int>(std::floor(northWest.x / spacing));
             column * spacing <= southEast.x; ++column) {
            const float x = HashAt(column, row) * SPREAD;
            const float y = HashAt(row, column + 77) * SPREAD;
            at(SeaPoint{(column + static_cast<double>(x)) * spacing,
                        (row + static_cast<double>(y)) * spacing});
        }
    }
}

/// Waves drawn along the shore: how much ink at so many pixels from it.
float ShoreInk(float pixels)
{
    constexpr float LINES[] = {4.0F, 9.0F, 15.0F};
    constexpr float INKS[] = {0.42F, 0.30F, 0.18F};
    for (std::size_t i = 0; i < std::size(LINES); ++i) {
        const float off = std::abs(pixels - LINES[i]);
        if (off < 1.0F)
            return INKS[i] * (1.0F - off);
    }
    return 0;
}

Colour WaterAt(float depth, float slope)
{
    Colour colour = DEEP;
    for (std::size_t i = std::size(DEPTHS); i-- > 0;) {
        const float edge = std::max(slope, 0.002F);
        colour = Mix(DEPTHS[i], colour, SmoothStep(DEPTH_LINES[i] - edge, DEPTH_LINES[i] + edge, depth));
        if (slope > 0 && std::abs(depth - DEPTH_LINES[i]) < slope)
            colour = Mix(colour, SEA_INK, 0.18F);
    }
    return colour;
}

} // namespace

double CChartSheet::RoundLength(double least)
{
    constexpr double STEPS[] = {1, 2, 5};
    for (double unit = CABLE;; unit *= 10) {
        for (const double step : STEPS) {
            if (unit * step >= least)
                return unit * step;
        }
    }
}

bool CChartSheet::Holds(const CChartProjection& view) const
{
    const RECT& area = view.Area();
    if (m_fScale != view.MetresPerPixel() || m_nWidth != area.right - area.left + 2 * MARGIN ||
        m_nHeight != area.bottom - area.top + 2 * MARGIN)
        return false;
    const SeaPoint corner = view.ToSea({static_cast<double>(area.left), static_cast<double>(area.top)});
    const double right = (corner.x - m_fWest) / m_fScale;
    const double down = (m_fNorth - corner.y) / m_fScale;
    constexpr double MOST = 2 * MARGIN;
    return right >= 0 && right <= MOST && down >= 0 && down <= MOST;
}

void CChartSheet::Draw(const PixelView& target, const CChartProjection& view, const CCaptionFont& digits)
{
    if (!Holds(view))
        Paint(view, digits);
    const RECT& area = view.Area();
    const SeaPoint corner = view.ToSea({static_cast<double>(area.left), static_cast<double>(area.top)});
    const auto right = static_cast<LONG>(std::lround((corner.x - m_fWest) / m_fScale));
    const auto down = static_cast<LONG>(std::lround((m_fNorth - corner.y) / m_fScale));
    BlitScratch scratch;
    BlitPixels(target, area, Sheet(),
               {right, down, right + area.right - area.left, down + area.bottom - area.top}, false, scratch);
}

void CChartSheet::Paint(const CChartProjection& view, const CCaptionFont& digits)
{
    const RECT& area = view.Area();
    m_nWidth = static_cast<int>(area.right - area.left) + 2 * MARGIN;
    m_nHeight = static_cast<int>(area.bottom - area.top) + 2 * MARGIN;
    m_fScale = view.MetresPerPixel();
    const SeaPoint corner =
        view.ToSea({static_cast<double>(area.left - MARGIN), static_cast<double>(area.top - MARGIN)});
    m_fWest = corner.x;
    m_fNorth = corner.y;
    m_fCell = static_cast<float>(m_Relief.CellSize() / m_fScale);
    m_Pixels.resize(static_cast<std::size_t>(m_nWidth) * static_cast<std::size_t>(m_nHeight));
    std::vector<float> above;
    std::vector<float> heights;
    m_Relief.Row(m_fNorth + m_fScale / 2, m_fWest, m_fScale, m_nWidth + 1, above);
    for (int y = 0; y < m_nHeight; ++y) {
        m_Relief.Row(m_fNorth - m_fScale * (y + 0.5), m_fWest, m_fScale, m_nWidth + 1, heights);
        PaintRow(y, heights, above);
        std::swap(above, heights);
    }
    CChartPen pen(Sheet(), {0, 0, m_nWidth, m_nHeight});
    PaintHachures(pen);
    PaintGrid(pen);
    PaintSoundings(digits);
    PaintEdge(pen);
}

void CChartSheet::PaintRow(int y, const std::vector<float>& heights, const std::vector<float>& above)
{
    std::uint16_t* row = m_Pixels.data() + static_cast<std::ptrdiff_t>(y) * m_nWidth;
    for (int x = 0; x < m_nWidth; ++x) {
        const auto i = static_cast<std::size_t>(x);
        row[x] = PixelAt(x, y, heights[i], heights[i + 1] - heights[i], heights[i] - above[i]);
    }
}

/// `across` and `down` are the changes of height from pixel to pixel.
std::uint16_t CChartSheet::PixelAt(int x, int y, float height, float across, float down) const
{
    const float slope = std::sqrt(across * across + down * down);
    Colour colour;
    if (height > 0 && m_Relief.HasLand()) {
        constexpr float PEAK = 0.8F;
        colour = Mix(LOWLAND, HIGHLAND, std::min(1.0F, height / PEAK));
        const float light = std::clamp((across + down) * m_fCell * RELIEF_LIGHT, -MOST_LIGHT, MOST_LIGHT);
        colour = {colour.r + light, colour.g + light, colour.b + light};
    } else {
        colour = WaterAt(-height, slope);
    }
    if (m_Relief.HasLand() && slope > 0) {
        constexpr float LINE = 1.5F; // pixels from the shore, on both sides
        const float off = std::abs(height) / slope;
        if (off < LINE)
            colour = Mix(colour, CHART_INK, std::min(1.0F, LINE - off));
        else if (height < 0)
            colour = Mix(colour, SEA_INK, ShoreInk(off));
    }
    const float grain = (HashAt(x, y) + HashAt(x / 3, y / 3) - 1.0F) * GRAIN;
    return ToPixel({colour.r + grain, colour.g + grain, colour.b + grain}, x, y);
}

void CChartSheet::PaintHachures(CChartPen& pen) const
{
    if (!m_Relief.HasLand())
        return;
    constexpr float LOWEST = 0.03F;
    constexpr double STEEP = 0.02; // height in a cell, from which on strokes are drawn
    constexpr double LONGEST = 11; // pixels
    constexpr double REACH = 130;  // pixels for a slope of 1 in a cell
    const std::uint16_t ink = ToPixel(CHART_INK);
    const SeaPoint northWest = PlaceOf(0, 0);
    const SeaPoint southEast = PlaceOf(m_nWidth, m_nHeight);
    const double cell = m_Relief.CellSize() / 4;
    Scatter(PowerOfTwo(HACHURE_PIXELS * m_fScale), northWest, southEast, [&](SeaPoint place) {
        const float height = m_Relief.Height(place);
        if (height < LOWEST)
            return;
        const double east = 4.0 * (m_Relief.Height({place.x + cell, place.y}) - height);
        const double north = 4.0 * (m_Relief.Height({place.x, place.y + cell}) - height);
        const double slope = std::hypot(east, north);
        if (slope < STEEP)
            return;
        const ChartPoint from = {(place.x - m_fWest) / m_fScale, (m_fNorth - place.y) / m_fScale};
        const double length = std::min(LONGEST, 3 + REACH * slope);
        pen.Line(from, {from.x - east / slope * length, from.y + north / slope * length}, 1.0, ink,
                 HACHURE_COVER);
    });
}

void CChartSheet::PaintGrid(CChartPen& pen) const
{
    const double step = RoundLength(GRID_PIXELS * m_fScale);
    const std::uint16_t ink = ToPixel(CHART_INK);
    for (double east = std::ceil(m_fWest / step) * step; east < m_fWest + m_nWidth * m_fScale; east += step) {
        const auto x = static_cast<LONG>((east - m_fWest) / m_fScale);
        pen.Fill({x, 0, x + 1, m_nHeight}, ink, GRID_COVER);
    }
    for (double north = std::floor(m_fNorth / step) * step; north > m_fNorth - m_nHeight * m_fScale;
         north -= step) {
        const auto y = static_cast<LONG>((m_fNorth - north) / m_fScale);
        pen.Fill({0, y, m_nWidth, y + 1}, ink, GRID_COVER);
    }
}

/// Bare paper beyond the bounds.
void CChartSheet::PaintEdge(const CChartPen& pen) const
{
    const SeaRect& bounds = m_Relief.Bounds();
    const auto column = [this](double east) {
        return static_cast<LONG>(std::lround((east - m_fWest) / m_fScale));
    };
    const auto row = [this](double north) {
        return static_cast<LONG>(std::lround((m_fNorth - north) / m_fScale));
    };
    const RECT sea = {column(bounds.west), row(bounds.north), column(bounds.east), row(bounds.south)};
    const std::uint16_t paper = ToPixel(CHART_PAPER);
    pen.Fill({0, 0, sea.left, m_nHeight}, paper);
    pen.Fill({sea.right, 0, m_nWidth, m_nHeight}, paper);
    pen.Fill({sea.left, 0, sea.right, sea.top}, paper);
    pen.Fill({sea.left, sea.bottom, sea.right, m_nHeight}, paper);
    pen.Frame(sea, ToPixel(CHART_INK));
    constexpr LONG GAP = 4; // pixels between the two lines of the edge
    pen.Frame({sea.left - GAP, sea.top - GAP, sea.right + GAP, sea.bottom + GAP}, ToPixel(CHART_INK));
}

void CChartSheet::PaintSoundings(const CCaptionFont& digits)
{
    const std::uint16_t ink = ToPixel(SEA_INK);
    const SeaPoint northWest = PlaceOf(0, 0);
    const SeaPoint southEast = PlaceOf(m_nWidth, m_nHeight);
    Scatter(PowerOfTwo(SOUNDING_PIXELS * m_fScale), northWest, southEast, [&](SeaPoint place) {
        const int fathoms = static_cast<int>(-m_Relief.Height(place) * FATHOMS);
        if (fathoms < 1)
            return;
        digits.DrawInk(Sheet(), static_cast<int>((place.x - m_fWest) / m_fScale),
                       static_cast<int>((m_fNorth - place.y) / m_fScale), std::to_string(fathoms), ink,
                       SOUNDING_COVER);
    });
}
