#include "battle/sea_picture.h"

#include <cmath>
#include <utility>

namespace
{

constexpr const char* CAPTION_FONT = "resource\\txt_res\\head.fnt";
constexpr float HORIZON = 0.42F;    // of the picture's height
constexpr float NEAREST = 0.80F;    // where the nearest unit stands, of the sea's height
constexpr float PERSPECTIVE = 1.3F; // how much further away the furthest unit is than the nearest
constexpr float SPREAD = 0.76F;     // of the picture's width, for the nearest units
constexpr float SHIP_WIDTH = 0.24F; // of the picture's width, for SHIP_LENGTH metres near by
constexpr float SHIP_LENGTH = 150.0F;
constexpr float RISE = 0.012F; // of its length, by which a hull stands out of the waves before it
constexpr float CROWD = 14.0F; // more units than these are drawn smaller
constexpr float SMALLEST = 0.5F;
constexpr float METRES_TO_TOP = 1600.0F; // height at which a near balloon would reach the sky's top
constexpr float MOST_SKY = 0.86F;        // of the way to the top, for balloons however high
constexpr float LEAST_SKY = 0.25F;
constexpr int PUFFS = 7;
constexpr float SMOKE_COVER = 190.0F; // of 255, in the middle of a fresh puff
constexpr double PUFFS_A_SECOND = 0.10;
constexpr double WASHES_A_SECOND = 5.0;
constexpr float WASH_COVER = 170.0F; // of 255
constexpr double MILLISECONDS = 1000.0;
constexpr int CAPTION_MARGIN = 8;
constexpr int CAPTION_SHADE = 120; // cover of the black under the caption

constexpr Colour ENSIGNS[] = {{40, 84, 190}, {198, 44, 40}, {222, 222, 210}};
constexpr Colour HULL = {26, 30, 38};
constexpr Colour ENVELOPE = {92, 84, 72};

double Wave(double turns)
{
    constexpr double TWO_PI = 6.283185307179586;
    return std::sin((turns - std::floor(turns)) * TWO_PI);
}

void BlendAt(const PixelView& picture, int x, int y, std::uint16_t colour, int cover)
{
    if (x < 0 || y < 0 || x >= picture.m_nWidth || y >= picture.m_nHeight)
        return;
    std::uint16_t& pixel = picture.m_pPixels[static_cast<std::ptrdiff_t>(y) * picture.m_nWidth + x];
    pixel = BlendPixel(pixel, colour, cover);
}

} // namespace

CSeaPicture::CSeaPicture(SeaScene scene, SIZE size)
    : m_Scene(std::move(scene)), m_Size(size), m_Light(LightOfHour(m_Scene.hour)),
      m_nHorizon(std::max(1, static_cast<int>(static_cast<float>(size.cy) * HORIZON))),
      m_Sky(m_Light, size.cx, m_nHorizon), m_Waves(m_Light, size.cx, size.cy, m_nHorizon)
{
    m_Units.reserve(m_Scene.units.size());
}

int CSeaPicture::StepCount() const
{
    return UNIT_STEPS + SKY_STEPS + 1;
}

bool CSeaPicture::PrepareStep()
{
    const int step = m_nStep;
    if (step >= StepCount())
        return false;
    ++m_nStep;
    if (step < UNIT_STEPS) {
        const std::size_t count = m_Scene.units.size();
        const auto part = [count](int n) { return count * static_cast<std::size_t>(n) / UNIT_STEPS; };
        PlaceUnits(part(step), part(step + 1));
    } else if (step < UNIT_STEPS + SKY_STEPS) {
        const int slice = step - UNIT_STEPS;
        m_Sky.PaintRows(m_nHorizon * slice / SKY_STEPS, m_nHorizon * (slice + 1) / SKY_STEPS);
    } else {
        m_Font.Load(CAPTION_FONT);
        std::ranges::stable_sort(m_Units, {}, &Placed::line);
    }
    return true;
}

void CSeaPicture::PlaceUnits(std::size_t first, std::size_t end)
{
    for (std::size_t i = first; i < end; ++i)
        m_Units.push_back(Place(m_Scene.units[i], i));
}

CSeaPicture::Placed CSeaPicture::Place(const SeaUnit& unit, std::size_t number) const
{
    const auto width = static_cast<float>(m_Size.cx);
    const float scale = 1.0F / (1.0F + PERSPECTIVE * unit.depth);
    const float furthest = 1.0F / (1.0F + PERSPECTIVE * 1.15F);
    const float crowd = std::sqrt(CROWD / std::max(CROWD, static_cast<float>(m_Scene.units.size())));
    Placed placed;
    placed.side = std::clamp(unit.side, 0, static_cast<int>(std::size(ENSIGNS)) - 1);
    placed.floats = unit.type != SCENARIO_BALLOON;
    placed.length =
        unit.length / SHIP_LENGTH * SHIP_WIDTH * width * std::sqrt(scale) * std::max(SMALLEST, crowd);
    placed.phase = HashAt(static_cast<int>(number), 11);
    const float sea = static_cast<float>(m_Size.cy - m_nHorizon) * NEAREST;
    placed.line =
        static_cast<float>(m_nHorizon) + sea * std::max(0.02F, (scale - furthest) / (1.0F - furthest));
    placed.x = width / 2.0F + unit.across * SPREAD * width * std::sqrt(scale);
    placed.y = placed.line - placed.length * RISE;
    if (!placed.floats) {
        const float up =
            std::clamp(unit.height / METRES_TO_TOP * std::sqrt(scale) + LEAST_SKY, LEAST_SKY, MOST_SKY);
        placed.y = static_cast<float>(m_nHorizon) * (1.0F - up);
    }
    placed.shape = MakeSilhouette(unit, placed.length);
    const Colour own = Mix(placed.floats ? HULL : ENVELOPE, ENSIGNS[placed.side], 0.10F);
    const Colour lit = Mix(own, {own.r * 0.3F, own.g * 0.3F, own.b * 0.4F}, m_Light.darkness);
    placed.colour = ToPixel(Mix(lit, m_Light.skyLow, 0.02F + 0.30F * (1.0F - scale)));
    return placed;
}

void CSeaPicture::Draw(const PixelView& picture, std::int64_t milliseconds)
{
    const double seconds = static_cast<double>(milliseconds) / MILLISECONDS;
    for (int y = 0; y < m_nHorizon; ++y)
        std::copy_n(m_Sky.Row(y), m_Size.cx, picture.m_pPixels + static_cast<std::ptrdiff_t>(y) * m_Size.cx);
    // Between the sky and the crests of the furthest row.
    const int low = std::min(static_cast<int>(m_Size.cy), static_cast<int>(m_Waves.LineOf(1)) + 1);
    for (int y = m_nHorizon; y < low; ++y)
        std::fill_n(picture.m_pPixels + static_cast<std::ptrdiff_t>(y) * m_Size.cx, m_Size.cx,
                    ToPixel(m_Light.seaFar));
    // A row of waves hides the foot of what stands behind it.
    std::size_t next = 0;
    for (int row = 0; row < CWaves::ROWS; ++row) {
        for (; next < m_Units.size() && m_Units[next].line < m_Waves.LineOf(row); ++next)
            DrawUnit(picture, m_Units[next], seconds);
        m_Waves.DrawRow(row, picture, seconds);
    }
    for (; next < m_Units.size(); ++next)
        DrawUnit(picture, m_Units[next], seconds);
    DrawCaption(picture);
}

void CSeaPicture::DrawUnit(const PixelView& picture, const Placed& unit, double seconds) const
{
    const auto phase = static_cast<double>(unit.phase);
    const auto bob = static_cast<float>(Wave(seconds * 0.13 + phase)) * unit.length * 0.010F;
    const float x = unit.x + (unit.floats ? 0.0F : bob * 2.0F);
    const float y = unit.y + bob;
    DrawSmoke(picture, unit, x, y, seconds);
    const Silhouette& shape = unit.shape;
    const int left = static_cast<int>(std::lround(x)) - shape.m_ptOrigin.x;
    const int top = static_cast<int>(std::lround(y)) - shape.m_ptOrigin.y;
    for (int row = 0; row < shape.m_nHeight; ++row) {
        for (int column = 0; column < shape.m_nWidth; ++column) {
            const int cover = shape.m_Cover[static_cast<std::size_t>(row * shape.m_nWidth + column)];
            if (cover != 0)
                BlendAt(picture, left + column, top + row, unit.colour, cover);
        }
    }
    if (shape.m_bFlag)
        DrawFlag(picture, unit, x, y, seconds);
    if (unit.floats)
        DrawWash(picture, unit, x, seconds);
}

// White water along the hull.
void CSeaPicture::DrawWash(const PixelView& picture, const Placed& unit, float x, double seconds) const
{
    const std::uint16_t colour =
        ToPixel(Mix({230, 238, 240}, m_Light.seaFar, 0.3F + 0.5F * m_Light.darkness));
    const auto beat = static_cast<int>(static_cast<std::int64_t>(seconds * WASHES_A_SECOND) & 0xffff);
    const int half = unit.shape.m_nWidth / 2;
    const int middle = static_cast<int>(std::lround(x));
    const int line = static_cast<int>(std::lround(unit.line));
    for (int column = -half; column <= half; ++column) {
        const float chance = HashAt((middle + column) / 2 + beat, static_cast<int>(unit.phase * 1000.0F));
        BlendAt(picture, middle + column, line + (chance > 0.8F ? 1 : 0), colour,
                static_cast<int>(WASH_COVER * chance));
    }
}

// Puffs that rise from each funnel, drift off with the wind and thin out.
void CSeaPicture::DrawSmoke(const PixelView& picture, const Placed& unit, float x, float y,
                            double seconds) const
{
    const std::uint16_t colour = ToPixel(Mix({62, 60, 64}, m_Light.skyLow, 0.30F));
    for (std::size_t funnel = 0; funnel < unit.shape.m_aFunnels.size(); ++funnel) {
        const POINT mouth = unit.shape.m_aFunnels[funnel];
        for (int puff = 0; puff < PUFFS; ++puff) {
            const double turns = seconds * PUFFS_A_SECOND + static_cast<double>(unit.phase) +
                                 static_cast<double>(funnel) * 0.31 + static_cast<double>(puff) / PUFFS;
            const auto age = static_cast<float>(turns - std::floor(turns));
            const float radius = unit.length * (0.016F + 0.060F * age);
            const int middleX = static_cast<int>(x + static_cast<float>(mouth.x) - age * unit.length * 0.42F);
            const int middleY =
                static_cast<int>(y + static_cast<float>(mouth.y) - std::sqrt(age) * unit.length * 0.11F);
            const int reach = static_cast<int>(radius) + 1;
            for (int dy = -reach; dy <= reach; ++dy) {
                for (int dx = -reach; dx <= reach; ++dx) {
                    const float away = static_cast<float>(dx * dx + dy * dy) / (radius * radius);
                    if (away < 1.0F)
                        BlendAt(picture, middleX + dx, middleY + dy, colour,
                                static_cast<int>(SMOKE_COVER * (1.0F - age) * (1.0F - away)));
                }
            }
        }
    }
}

void CSeaPicture::DrawFlag(const PixelView& picture, const Placed& unit, float x, float y,
                           double seconds) const
{
    const int width = std::max(3, static_cast<int>(unit.length * 0.075F));
    const int height = std::max(2, width * 3 / 5);
    const Colour ensign =
        Mix(ENSIGNS[unit.side],
            {ENSIGNS[unit.side].r * 0.35F, ENSIGNS[unit.side].g * 0.35F, ENSIGNS[unit.side].b * 0.4F},
            m_Light.darkness * 0.8F);
    const std::uint16_t colour = ToPixel(ensign);
    const int left = static_cast<int>(std::lround(x)) + unit.shape.m_ptFlag.x;
    const int top = static_cast<int>(std::lround(y)) + unit.shape.m_ptFlag.y;
    for (int column = 0; column < width; ++column) {
        const float along = static_cast<float>(column) / static_cast<float>(width);
        const double wave = Wave(seconds * 1.3 + static_cast<double>(unit.phase + along * 0.8F));
        const int lift = static_cast<int>(std::lround(wave * static_cast<double>(along) * height * 0.3));
        for (int row = 0; row < height; ++row)
            BlendAt(picture, left - column, top + row + lift, colour, 255);
    }
}

void CSeaPicture::DrawCaption(const PixelView& picture) const
{
    const int height = m_Font.Height();
    if (height <= 0 || m_Scene.title.empty())
        return;
    const int top = std::max(0, static_cast<int>(m_Size.cy) - height - 2 * CAPTION_MARGIN);
    for (int y = top; y < m_Size.cy; ++y) {
        for (int x = 0; x < m_Size.cx; ++x)
            BlendAt(picture, x, y, SOLID_BLACK, CAPTION_SHADE);
    }
    const int left =
        std::max(CAPTION_MARGIN, (static_cast<int>(m_Size.cx) - m_Font.Width(m_Scene.title)) / 2);
    m_Font.Draw(picture, left, top + CAPTION_MARGIN, m_Scene.title);
}
