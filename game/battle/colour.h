#pragma once
// Colours as the sea is painted with them.

#include <algorithm>
#include <cstdint>

#include "render/dither.h"
#include "render/pixel565.h"

/// Channels from 0 to 255, and beyond while a colour is worked out.
struct Colour {
    float r = 0.0F;
    float g = 0.0F;
    float b = 0.0F;
};

inline float Mix(float from, float to, float share)
{
    return from + (to - from) * share;
}
/// `share` 0 gives the first colour, 1 the second.
inline Colour Mix(const Colour& from, const Colour& to, float share)
{
    return {Mix(from.r, to.r, share), Mix(from.g, to.g, share), Mix(from.b, to.b, share)};
}
inline float SmoothStep(float low, float high, float value)
{
    const float share = std::clamp((value - low) / (high - low), 0.0F, 1.0F);
    return share * share * (3.0F - 2.0F * share);
}

inline int Channel(float value)
{
    return static_cast<int>(std::clamp(value, 0.0F, 255.0F));
}
inline std::uint16_t ToPixel(const Colour& colour, int x, int y)
{
    return DitheredPixel(Channel(colour.r), Channel(colour.g), Channel(colour.b), x, y);
}
inline std::uint16_t ToPixel(const Colour& colour)
{
    return NearestPixel(Channel(colour.r), Channel(colour.g), Channel(colour.b));
}

/// `over` laid on `under`; cover 0 to 255.
inline std::uint16_t BlendPixel(std::uint16_t under, std::uint16_t over, int cover)
{
    constexpr int GREEN_SHIFT = 5;
    constexpr int RED_SHIFT = 11;
    constexpr int FULL = 255;
    // Rounded to the nearest level, so that a thin layer doesn't shift the hue.
    const auto blend = [cover](int from, int to) {
        return (from * (FULL - cover) + to * cover + FULL / 2) / FULL;
    };
    return PackPixel(blend(under >> RED_SHIFT, over >> RED_SHIFT),
                     blend((under >> GREEN_SHIFT) & GREEN_MAX, (over >> GREEN_SHIFT) & GREEN_MAX),
                     blend(under & BLUE_MAX, over & BLUE_MAX));
}

/// A number that looks random, 0 to 1, the same for the same place.
inline float HashAt(int x, int y)
{
    auto bits = static_cast<std::uint32_t>(x) * 0x8da6b343U ^ static_cast<std::uint32_t>(y) * 0xd8163841U;
    bits = (bits ^ (bits >> 15)) * 0x2c1b3c6dU;
    bits = (bits ^ (bits >> 12)) * 0x297a2d39U;
    bits ^= bits >> 15;
    constexpr float STEPS = 16777216.0F;
    return static_cast<float>(bits >> 8) / STEPS;
}
