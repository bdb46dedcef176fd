#pragma once
// The inner loop of text drawing: a glyph's texels, tinted, onto a surface.

#include <cstddef>
#include <cstdint>

#include "platform/types.h"

/// What one text colour makes of 5-6-5 texels: each channel times the colour's channel (red with the low
/// byte, green with the second, blue with the third) divided by 255, fraction dropped. A texel of 0 is
/// transparent; any other replaces the pixel below, also when it tints to 0. White leaves texels as they are.
class CGlyphTint
{
  public:
    explicit CGlyphTint(COLORREF colour);

    /// A block of width by height pixels; pitches are row lengths in pixels. Source and target must not
    /// overlap. Does nothing when a side isn't above 0.
    void Copy(std::uint16_t* target, std::ptrdiff_t targetPitch, const std::uint16_t* texels,
              std::ptrdiff_t texelPitch, int width, int height) const;
    /// The same, pixel by pixel: for processors without vector instructions, and to check Copy against.
    void CopyPlain(std::uint16_t* target, std::ptrdiff_t targetPitch, const std::uint16_t* texels,
                   std::ptrdiff_t texelPitch, int width, int height) const;

    std::uint16_t Tint(std::uint16_t texel) const
    {
        const std::uint32_t red = (texel >> 11) * m_nRed / CHANNEL_MAX;
        const std::uint32_t green = ((texel >> 5) & 63u) * m_nGreen / CHANNEL_MAX;
        const std::uint32_t blue = (texel & 31u) * m_nBlue / CHANNEL_MAX;
        return static_cast<std::uint16_t>((red << 11) | (green << 5) | blue);
    }

  private:
    // Whole numbers give what a division by 255.0 gives with its fraction dropped: a quotient that isn't
    // whole is at least 1/255 away from the next whole number, far more than a double is off.
    static constexpr std::uint32_t CHANNEL_MAX = 255;

    std::uint32_t m_nRed;
    std::uint32_t m_nGreen;
    std::uint32_t m_nBlue;
};
