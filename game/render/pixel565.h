#pragma once
// The pixel format of every surface: 16 bits, red in the top 5, green in the middle 6, blue in the low 5.

#include <cstdint>

#include "platform/types.h"

/// The value that a keyed blit leaves out, and that a font texture leaves transparent. It is black.
constexpr std::uint16_t KEY_PIXEL = 0;

/// What stands for black where black must survive a keyed blit: the darkest blue, which of all values but 0
/// is the least bright.
constexpr std::uint16_t SOLID_BLACK = 0x0001;

constexpr int RED_MAX = 31;
constexpr int GREEN_MAX = 63;
constexpr int BLUE_MAX = 31;

/// A pixel from its channels: red and blue 0 to 31, green 0 to 63.
constexpr std::uint16_t PackPixel(int red, int green, int blue)
{
    return static_cast<std::uint16_t>((red << 11) | (green << 5) | blue);
}

/// The nearest of `max` + 1 levels to an 8-bit channel.
constexpr int NearestLevel(int channel, int max)
{
    return (channel * max + 127) / 255;
}

/// The nearest pixel to 8-bit channels.
constexpr std::uint16_t NearestPixel(int red, int green, int blue)
{
    return PackPixel(NearestLevel(red, RED_MAX), NearestLevel(green, GREEN_MAX),
                     NearestLevel(blue, BLUE_MAX));
}

/// The pixel of a fill: low bits are dropped, as a device context does, so that both fills of a colour match.
constexpr std::uint16_t PixelFromColour(COLORREF colour)
{
    return PackPixel(static_cast<int>((colour >> 3) & RED_MAX), static_cast<int>((colour >> 10) & GREEN_MAX),
                     static_cast<int>((colour >> 19) & BLUE_MAX));
}

// A channel widened to 8 bits: its own top bits repeated below, so that both ends stay 0 and 255.
constexpr std::uint8_t Expand5(int level)
{
    return static_cast<std::uint8_t>((level << 3) | (level >> 2));
}
constexpr std::uint8_t Expand6(int level)
{
    return static_cast<std::uint8_t>((level << 2) | (level >> 4));
}

constexpr COLORREF ColourFromPixel(std::uint16_t pixel)
{
    return RGB(Expand5(pixel >> 11), Expand6((pixel >> 5) & GREEN_MAX), Expand5(pixel & BLUE_MAX));
}
