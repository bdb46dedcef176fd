#include "entities/flag_cloth.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/rect.h"
#include "render/dither.h"
#include "render/pixel565.h"

namespace
{

constexpr float TURN = 2.0F * std::numbers::pi_v<float>;

// The cloth leaves so much of its rectangle's height free above and below for the waves.
constexpr float MARGIN = 0.11F;
constexpr float CLOTH_HEIGHT = 1.0F - 2.0F * MARGIN;
// Two waves run along the cloth, of which the second goes round twice while the first does once.
constexpr float LONG_WAVES = 1.15F; // in the length of the cloth
constexpr float SHORT_WAVES = 2.3F;
constexpr float SHORT_SHARE = 0.28F;  // of the height of both
constexpr float LEAN = 0.10F;         // turns by which the lower edge is behind the upper one
constexpr float FREE_AT = 0.35F;      // distance from the pole at which the cloth moves freely
constexpr float FREEDOM_NEAR = 0.55F; // of the free cloth's movement, at the pole's end of it
constexpr float SHORT_AHEAD = 0.25F;  // turns
// How far the waves draw the free end back, and by how much that changes.
constexpr float DRAWN_BACK = 0.035F;
constexpr float DRAWN_CHANGE = 0.02F;
// Light on the cloth, and how much the folds take from it or give.
constexpr float LIGHT = 0.90F;
constexpr float FOLD_LIGHT = 0.21F;
constexpr float FULL_CHANNEL = 255.0F;

float Smooth(float x)
{
    const float t = std::clamp(x, 0.0F, 1.0F);
    return t * t * (3.0F - 2.0F * t);
}

int ToChannel(float value)
{
    return static_cast<int>(std::clamp(value + 0.5F, 0.0F, FULL_CHANNEL));
}

// What of pixel `index` lies in [begin, end).
float Overlap(int index, float begin, float end)
{
    const auto at = static_cast<float>(index);
    return std::max(std::min(end, at + 1.0F) - std::max(begin, at), 0.0F);
}

} // namespace

/// By its sine and cosine, so that the many angles of a picture are sums of few.
struct CFlagCloth::Angle {
    float sine = 0.0F;
    float cosine = 1.0F;

    static Angle OfTurns(float turns) { return {std::sin(TURN * turns), std::cos(TURN * turns)}; }
    Angle Plus(const Angle& other) const
    {
        return {sine * other.cosine + cosine * other.sine, cosine * other.cosine - sine * other.sine};
    }
    Angle Less(const Angle& other) const { return Plus({-other.sine, other.cosine}); }
};

/// What all pixels of a column share: the wave there, before the lean.
struct CFlagCloth::Column {
    float u = 0.0F;       ///< along the cloth, 0 at the pole, beyond 1 outside
    float share = 0.0F;   ///< of the column that lies on the cloth
    float freedom = 0.0F; ///< how far the cloth moves, 0 to 1
    Angle wave;
    Angle ripple;
};

/// What is seen at a point of the cloth's rectangle.
struct CFlagCloth::Spot {
    float v = 0.0F;     ///< down the cloth
    float light = 1.0F; ///< 1 leaves the colour
    float share = 0.0F; ///< 0 to 1, of a pixel there that lies on the cloth
};

CFlagCloth::CFlagCloth() : m_Picture(1, Colour{FULL_CHANNEL, FULL_CHANNEL, FULL_CHANNEL}) {}

void CFlagCloth::SetPicture(const Picture& picture)
{
    m_nPictureWidth = picture.m_nWidth;
    m_nPictureHeight = picture.m_nHeight;
    m_Picture.clear();
    for (const std::uint16_t pixel : picture.m_aPixels)
        m_Picture.push_back({static_cast<float>(Expand5(pixel >> 11)),
                             static_cast<float>(Expand6((pixel >> 5) & GREEN_MAX)),
                             static_cast<float>(Expand5(pixel & BLUE_MAX))});
    m_nWidth = 0;
    m_nHeight = 0;
}

// A picture that is larger than the cloth is averaged down, so that its details don't flicker in the waves.
void CFlagCloth::FitTo(int width, int height)
{
    const int fitWidth = std::min(width, m_nPictureWidth);
    const int fitHeight = std::min(height, m_nPictureHeight);
    if (fitWidth == m_nWidth && fitHeight == m_nHeight)
        return;
    m_nWidth = fitWidth;
    m_nHeight = fitHeight;
    const float stepX = static_cast<float>(m_nPictureWidth) / static_cast<float>(m_nWidth);
    const float stepY = static_cast<float>(m_nPictureHeight) / static_cast<float>(m_nHeight);
    m_Texels.clear();
    for (int y = 0; y < m_nHeight; ++y) {
        for (int x = 0; x < m_nWidth; ++x)
            m_Texels.push_back(
                Average(static_cast<float>(x) * stepX, static_cast<float>(y) * stepY, stepX, stepY));
    }
}

CFlagCloth::Colour CFlagCloth::Average(float left, float top, float width, float height) const
{
    const int bottom = std::min(m_nPictureHeight, static_cast<int>(std::ceil(top + height)));
    const int right = std::min(m_nPictureWidth, static_cast<int>(std::ceil(left + width)));
    Colour sum;
    float total = 0.0F;
    for (int row = static_cast<int>(top); row < bottom; ++row) {
        for (int col = static_cast<int>(left); col < right; ++col) {
            const float weight = Overlap(row, top, top + height) * Overlap(col, left, left + width);
            const Colour& from = m_Picture[static_cast<std::size_t>(row * m_nPictureWidth + col)];
            sum.red += from.red * weight;
            sum.green += from.green * weight;
            sum.blue += from.blue * weight;
            total += weight;
        }
    }
    return {sum.red / total, sum.green / total, sum.blue / total};
}

CFlagCloth::Colour CFlagCloth::Sample(float u, float v) const
{
    const float x =
        std::clamp(u * static_cast<float>(m_nWidth) - 0.5F, 0.0F, static_cast<float>(m_nWidth - 1));
    const float y =
        std::clamp(v * static_cast<float>(m_nHeight) - 0.5F, 0.0F, static_cast<float>(m_nHeight - 1));
    const auto col = static_cast<std::size_t>(x);
    const auto row = static_cast<std::size_t>(y);
    const float right = x - static_cast<float>(col);
    const float down = y - static_cast<float>(row);
    const auto width = static_cast<std::size_t>(m_nWidth);
    const std::size_t nextCol = std::min(col + 1, width - 1);
    const std::size_t nextRow = std::min(row + 1, static_cast<std::size_t>(m_nHeight) - 1);
    const std::pair<const Colour*, float> parts[] = {
        {&m_Texels[row * width + col], (1.0F - right) * (1.0F - down)},
        {&m_Texels[row * width + nextCol], right * (1.0F - down)},
        {&m_Texels[nextRow * width + col], (1.0F - right) * down},
        {&m_Texels[nextRow * width + nextCol], right * down},
    };
    Colour mixed;
    for (const auto& [from, weight] : parts) {
        mixed.red += from->red * weight;
        mixed.green += from->green * weight;
        mixed.blue += from->blue * weight;
    }
    return mixed;
}

CFlagCloth::Column CFlagCloth::ColumnAt(float across, float width, float turns)
{
    Column column;
    column.u = across / (1.0F - DRAWN_BACK - DRAWN_CHANGE * std::sin(TURN * turns));
    column.share = std::clamp((1.0F - column.u) * width + 0.5F, 0.0F, 1.0F);
    column.freedom = Smooth(column.u / FREE_AT) * (FREEDOM_NEAR + (1.0F - FREEDOM_NEAR) * column.u);
    column.wave = Angle::OfTurns(LONG_WAVES * column.u - turns);
    column.ripple = Angle::OfTurns(SHORT_WAVES * column.u - 2.0F * turns + SHORT_AHEAD);
    return column;
}

CFlagCloth::Spot CFlagCloth::SpotAt(const Column& column, float v, const Angle& lean, float height)
{
    const Angle wave = column.wave.Less(lean);
    const Angle ripple = column.ripple.Plus(lean);
    const float lift = (1.0F - SHORT_SHARE) * wave.sine + SHORT_SHARE * ripple.sine;
    const float slope = (1.0F - SHORT_SHARE) * wave.cosine + SHORT_SHARE * 2.0F * ripple.cosine;
    Spot spot;
    spot.v = (v - MARGIN - MARGIN * column.freedom * lift) / CLOTH_HEIGHT;
    spot.light = LIGHT - FOLD_LIGHT * column.freedom * slope;
    const float edge = std::min(spot.v, 1.0F - spot.v) * height * CLOTH_HEIGHT;
    spot.share = std::clamp(edge + 0.5F, 0.0F, 1.0F) * column.share;
    return spot;
}

void CFlagCloth::DrawPixel(std::uint16_t& pixel, const Column& column, const Spot& spot, POINT at) const
{
    const Colour cloth = Sample(column.u, spot.v);
    const auto mix = [&](float colour, int behind) {
        const float lit = std::min(colour * spot.light, FULL_CHANNEL);
        return ToChannel(lit * spot.share + static_cast<float>(behind) * (1.0F - spot.share));
    };
    pixel = DitheredPixel(mix(cloth.red, Expand5(pixel >> 11)),
                          mix(cloth.green, Expand6((pixel >> 5) & GREEN_MAX)),
                          mix(cloth.blue, Expand5(pixel & BLUE_MAX)), at.x, at.y);
}

void CFlagCloth::Draw(const PixelView& view, const Placing& placing)
{
    const RECT whole = {0, 0, view.m_nWidth, view.m_nHeight};
    const RECT& rect = placing.rc;
    RECT part;
    if (!IntersectRect(&part, &rect, &whole))
        return;
    const auto width = static_cast<float>(rect.right - rect.left);
    const auto height = static_cast<float>(rect.bottom - rect.top);
    FitTo(rect.right - rect.left, std::max(1, static_cast<int>(height * CLOTH_HEIGHT)));
    std::vector<Column> columns;
    for (LONG x = part.left; x < part.right; ++x) {
        const float across = (static_cast<float>(x - rect.left) + 0.5F) / width;
        columns.push_back(ColumnAt(placing.bRight ? 1.0F - across : across, width, placing.fTurns));
    }
    for (LONG y = part.top; y < part.bottom; ++y) {
        const float v = (static_cast<float>(y - rect.top) + 0.5F) / height;
        const Angle lean = Angle::OfTurns(LEAN * v);
        std::uint16_t* row = view.m_pPixels + static_cast<std::ptrdiff_t>(y) * view.m_nWidth;
        for (LONG x = part.left; x < part.right; ++x) {
            const POINT at = {x, y};
            const Column& column = columns[static_cast<std::size_t>(x - part.left)];
            const Spot spot = SpotAt(column, v, lean, height);
            if (spot.share > 0.0F && !PtInRect(&placing.rcCovered, at))
                DrawPixel(row[x], column, spot, at);
        }
    }
}
