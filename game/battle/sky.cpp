#include "battle/sky.h"

#include <cmath>

namespace
{

constexpr int OCTAVES = 4;
constexpr float SUN_RADIUS = 0.022F; // of the sky's width
constexpr float CLOUD_SPREAD = 5.0F; // cloud cells across the picture
constexpr float STAR_SHARE = 0.9988F;

// Values between the corners of a square grid, smoothly joined.
float Noise(float x, float y)
{
    const float left = std::floor(x);
    const float top = std::floor(y);
    const int cellX = static_cast<int>(left);
    const int cellY = static_cast<int>(top);
    const float shareX = SmoothStep(0.0F, 1.0F, x - left);
    const float shareY = SmoothStep(0.0F, 1.0F, y - top);
    return Mix(Mix(HashAt(cellX, cellY), HashAt(cellX + 1, cellY), shareX),
               Mix(HashAt(cellX, cellY + 1), HashAt(cellX + 1, cellY + 1), shareX), shareY);
}

float Cloud(float x, float y)
{
    float sum = 0.0F;
    float weight = 0.5F;
    for (int octave = 0; octave < OCTAVES; ++octave) {
        sum += weight * Noise(x, y);
        x = x * 2.03F + 17.0F;
        y = y * 2.03F + 9.0F;
        weight /= 2.0F;
    }
    return sum;
}

Colour Add(const Colour& colour, const Colour& light, float share)
{
    return {colour.r + light.r * share, colour.g + light.g * share, colour.b + light.b * share};
}

} // namespace

CSky::CSky(const SeaLight& light, int width, int height)
    : m_Light(light), m_nWidth(width), m_nHeight(height),
      m_Pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
{
}

Colour CSky::ColourAt(int x, int y) const
{
    const auto width = static_cast<float>(m_nWidth);
    const float down = static_cast<float>(y) / static_cast<float>(m_nHeight); // 1 at the horizon
    const float across = static_cast<float>(x) / width;
    Colour colour = Mix(m_Light.skyTop, m_Light.skyLow, std::pow(down, 1.6F));

    const float dx = across - m_Light.sunX;
    const float dy = (down - m_Light.sunY) * static_cast<float>(m_nHeight) / width;
    const float distance = std::sqrt(dx * dx + dy * dy);
    const float day = 1.0F - m_Light.darkness;
    if (HashAt(x, y) > STAR_SHARE)
        colour = Add(colour, {200, 205, 220}, m_Light.darkness * (1.0F - down) * HashAt(y, x));
    colour = Add(colour, m_Light.glow, Mix(0.10F, 0.34F, day) * std::exp(-distance * 7.0F));
    colour = Mix(colour, m_Light.glow, SmoothStep(SUN_RADIUS, SUN_RADIUS * 0.8F, distance));

    // A layer of clouds overhead, which lies flatter the further away it is.
    const float away = 1.0F / (1.08F - down);
    const float cover = Cloud((across - 0.5F) * CLOUD_SPREAD * std::sqrt(away), away * 1.7F);
    const float density = SmoothStep(0.44F, 0.72F, cover) * Mix(0.8F, 0.35F, down);
    const Colour bright = Mix(m_Light.skyLow, {255, 255, 255}, 0.55F * day);
    const Colour grey = Mix(m_Light.skyTop, m_Light.skyLow, 0.45F);
    return Mix(colour, Mix(bright, grey, SmoothStep(0.52F, 0.85F, cover)), density);
}

void CSky::PaintRows(int first, int end)
{
    for (int y = first; y < std::min(end, m_nHeight); ++y) {
        std::uint16_t* row = m_Pixels.data() + static_cast<std::ptrdiff_t>(y) * m_nWidth;
        for (int x = 0; x < m_nWidth; ++x)
            row[x] = ToPixel(ColourAt(x, y), x, y);
    }
}
