#include "video/blend.h"

namespace
{

// The three channels of a pixel, spread so that each can be multiplied by up to 32 without touching the next.
constexpr std::uint32_t SPREAD = 0x07e0f81f;
constexpr int STEPS = 32;
constexpr int FULL_WEIGHT = 256;

constexpr std::uint32_t Spread(std::uint16_t pixel)
{
    return (pixel | static_cast<std::uint32_t>(pixel) << 16) & SPREAD;
}

} // namespace

void BlendPixels(std::uint16_t* target, const std::uint16_t* source, std::size_t count, int weight)
{
    const auto in = static_cast<std::uint32_t>(weight * STEPS / FULL_WEIGHT);
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t mixed =
            (Spread(source[i]) * in + Spread(target[i]) * (STEPS - in)) / STEPS & SPREAD;
        target[i] = static_cast<std::uint16_t>(mixed | mixed >> 16);
    }
}
