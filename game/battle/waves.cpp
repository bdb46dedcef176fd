#include "battle/waves.h"

#include <cmath>

namespace
{

constexpr float DESIGN_WIDTH = 800.0F;
constexpr float FAR_LENGTH = 34.0F; // of a wave, pixels of the design's width
constexpr float NEAR_LENGTH = 330.0F;
constexpr float FAR_HEIGHT = 0.6F;
constexpr float NEAR_HEIGHT = 13.0F;
constexpr float GLITTER_WIDTH = 0.10F; // of the picture's width, on either side of the sun
constexpr double GLITTERS_A_SECOND = 7.0;
constexpr double TWO_PI = 6.283185307179586;
constexpr float FOAM_ROWS = 0.45F; // nearness from which on crests break
constexpr float FOAM_HEIGHT = 0.80F;

// Turns, of any size, to the sine of the angle.
float Sine(double turns)
{
    return static_cast<float>(std::sin((turns - std::floor(turns)) * TWO_PI));
}

} // namespace

CWaves::CWaves(const SeaLight& light, int width, int height, int horizon)
    : m_nWidth(width), m_nHeight(height), m_nHorizon(horizon),
      m_fScale(static_cast<float>(width) / DESIGN_WIDTH), m_fSunX(light.sunX * static_cast<float>(width)),
      m_nGlow(ToPixel(Mix(light.seaFar, light.glow, 0.8F))),
      m_nFoam(ToPixel(Mix({236, 242, 242}, light.seaFar, 0.25F + 0.6F * light.darkness))),
      m_Crests(static_cast<std::size_t>(width)), m_Tilts(static_cast<std::size_t>(width))
{
    MakeColours(light);
}

float CWaves::Nearness(int row) const
{
    return static_cast<float>(row) / static_cast<float>(ROWS - 1);
}

float CWaves::Amplitude(int row) const
{
    return Mix(FAR_HEIGHT, NEAR_HEIGHT, std::pow(Nearness(row), 1.8F)) * m_fScale;
}

float CWaves::LineOf(int row) const
{
    const auto depth = static_cast<float>(m_nHeight - m_nHorizon);
    return static_cast<float>(m_nHorizon) + depth * std::pow(Nearness(row), 1.75F) * 0.97F;
}

void CWaves::MakeColours(const SeaLight& light)
{
    m_Colours.reserve(static_cast<std::size_t>(ROWS) * LEVELS * SIDE * SIDE);
    for (int row = 0; row < ROWS; ++row) {
        const Colour middle = Mix(light.seaFar, light.seaNear, std::pow(Nearness(row), 0.65F));
        const float contrast = Mix(0.10F, 0.34F, Nearness(row));
        const Colour crest = Mix(middle, Mix(light.skyLow, light.seaFar, 0.6F), contrast);
        const Colour trough =
            Mix(middle, {light.seaNear.r * 0.6F, light.seaNear.g * 0.6F, light.seaNear.b * 0.65F},
                contrast + 0.1F);
        for (int level = 0; level < LEVELS; ++level) {
            const Colour colour = Mix(crest, trough, static_cast<float>(level) / (LEVELS - 1));
            for (int y = 0; y < SIDE; ++y) {
                for (int x = 0; x < SIDE; ++x)
                    m_Colours.push_back(ToPixel(colour, x, y));
            }
        }
    }
}

// Three waves of different length run through each row; the higher the water, the narrower the crest.
void CWaves::MakeCrests(int row, double seconds)
{
    const float near = Nearness(row);
    const double length = static_cast<double>(Mix(FAR_LENGTH, NEAR_LENGTH, std::pow(near, 1.3F)) * m_fScale);
    const double phase = static_cast<double>(HashAt(row, 3)) + seconds * 0.11 * (row % 2 == 0 ? 1.0 : 0.8);
    const float amplitude = Amplitude(row);
    const float line = LineOf(row);
    float last = 0.0F;
    for (int x = 0; x < m_nWidth; ++x) {
        const double turns = x / length;
        const float swell = Sine(turns + phase);
        const float water = 0.62F * swell + 0.26F * Sine(turns * 2.31 - phase * 1.7) +
                            0.12F * Sine(turns * 6.7 + phase * 3.1) + 0.14F * swell * swell;
        const auto column = static_cast<std::size_t>(x);
        m_Crests[column] = static_cast<int>(std::lround(line - amplitude * water));
        const float slope = x == 0 ? 0.0F : (water - last) * static_cast<float>(length);
        m_Tilts[column] = static_cast<int>(slope * 1.1F - water * 6.0F);
        last = water;
    }
}

void CWaves::DrawRow(int row, const PixelView& picture, double seconds)
{
    MakeCrests(row, seconds);
    const float amplitude = Amplitude(row);
    const bool last = row == ROWS - 1;
    const float nextLine = last ? static_cast<float>(m_nHeight) : LineOf(row + 1) + Amplitude(row + 1) + 1.0F;
    const int end = last ? m_nHeight : std::min(m_nHeight, static_cast<int>(nextLine) + 1);
    const int first = std::max(0, static_cast<int>(LineOf(row) - amplitude * 1.2F) - 1);
    const float fall = std::max(2.0F, nextLine - LineOf(row) + amplitude);
    const int levelsAPixel = static_cast<int>(256.0F * LEVELS / fall); // in 256ths
    const std::uint16_t* colours = m_Colours.data() + static_cast<std::ptrdiff_t>(row) * LEVELS * SIDE * SIDE;
    for (int y = first; y < end; ++y) {
        std::uint16_t* line = picture.m_pPixels + static_cast<std::ptrdiff_t>(y) * m_nWidth;
        const std::uint16_t* dithered = colours + (y % SIDE) * SIDE;
        for (int x = 0; x < m_nWidth; ++x) {
            const int below = y - m_Crests[static_cast<std::size_t>(x)];
            if (below < 0)
                continue;
            const int level = 6 + below * levelsAPixel / 256 + m_Tilts[static_cast<std::size_t>(x)];
            line[x] = dithered[std::clamp(level, 0, LEVELS - 1) * SIDE * SIDE + x % SIDE];
        }
    }
    DrawGlitter(row, picture, seconds);
}

// Light on the crests under the sun, and foam where near waves break.
void CWaves::DrawGlitter(int row, const PixelView& picture, double seconds) const
{
    const float near = Nearness(row);
    const auto beat = static_cast<int>(static_cast<std::int64_t>(seconds * GLITTERS_A_SECOND) & 0xffff);
    const float line = LineOf(row);
    const float amplitude = Amplitude(row);
    const float reach = GLITTER_WIDTH * static_cast<float>(m_nWidth) * (0.4F + near);
    for (int x = 0; x < m_nWidth; ++x) {
        const int y = m_Crests[static_cast<std::size_t>(x)];
        if (y < 0 || y + 1 >= m_nHeight)
            continue;
        std::uint16_t* pixel = picture.m_pPixels + static_cast<std::ptrdiff_t>(y) * m_nWidth + x;
        const float light = 1.0F - std::abs(static_cast<float>(x) - m_fSunX) / reach;
        const int grain = x / (1 + static_cast<int>(near * 5.0F * m_fScale));
        if (light > 0.0F && HashAt(grain + row * 4096, beat + row) < light * 0.5F)
            *pixel = m_nGlow;
        const bool breaks = line - static_cast<float>(y) > amplitude * FOAM_HEIGHT;
        if (near > FOAM_ROWS && breaks && HashAt(x / 2, row) > 0.35F) {
            *pixel = m_nFoam;
            if (near > 0.75F)
                pixel[m_nWidth] = BlendPixel(pixel[m_nWidth], m_nFoam, 128);
        }
    }
}
