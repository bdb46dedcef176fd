#include "controls/glyphtint.h"

#include <algorithm>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

CGlyphTint::CGlyphTint(COLORREF colour)
    : m_nRed(colour & 0xffu), m_nGreen((colour >> 8) & 0xffu), m_nBlue((colour >> 16) & 0xffu)
{
}

void CGlyphTint::CopyPlain(std::uint16_t* target, std::ptrdiff_t targetPitch, const std::uint16_t* texels,
                           std::ptrdiff_t texelPitch, int width, int height) const
{
    for (int y = 0; y < height; ++y, target += targetPitch, texels += texelPitch)
        for (int x = 0; x < width; ++x)
            if (texels[x] != 0)
                target[x] = Tint(texels[x]);
}

#ifdef __SSE2__

namespace
{

constexpr int LANES = 8;

constexpr std::uint32_t RED_MASK = 0xf800;
constexpr std::uint32_t GREEN_MASK = 0x07e0;
constexpr std::uint32_t BLUE_MASK = 0x001f;

/// Eight pixels at a time, without a branch on what they hold or on how wide the block is: glyphs are small
/// and follow each other in no order, so that a branch guessed wrong costs more than a row.
///
/// A channel is multiplied by factor / 255 as a fraction of 2^15, rounded up. That is at most 63 / 2^15 too
/// much for a product, and a product that isn't whole is at least 1/255 below the next whole number.
template <bool WHITE>
class WideTint
{
  public:
    WideTint(std::uint32_t red, std::uint32_t green, std::uint32_t blue)
        : m_Red(Fraction(red)), m_Green(Fraction(green)), m_Blue(Fraction(blue))
    {
    }

    /// At least two rows, of pitches no shorter than the width rounded up to whole steps. The last step of a
    /// row reaches into the row below, which is there, and writes back what it found; the last row starts as
    /// much earlier instead, in the row above.
    void Copy(std::uint16_t* target, std::ptrdiff_t targetPitch, const std::uint16_t* texels,
              std::ptrdiff_t texelPitch, int width, int height) const
    {
        const int steps = (width + LANES - 1) / LANES;
        const int excess = steps * LANES - width;
        const __m128i all = Lanes(0xffff);
        const __m128i lane = _mm_setr_epi16(0, 1, 2, 3, 4, 5, 6, 7);
        const __m128i withoutEnd = _mm_cmpgt_epi16(Lanes(static_cast<std::uint32_t>(LANES - excess)), lane);
        const __m128i withoutBegin = _mm_cmpgt_epi16(lane, Lanes(static_cast<std::uint32_t>(excess - 1)));
        for (int y = 1; y < height; ++y, target += targetPitch, texels += texelPitch)
            Row(target, texels, steps, all, withoutEnd);
        Row(target - excess, texels - excess, steps, withoutBegin, all);
    }

  private:
    /// `first` and `last` are the lanes that count in the first and the last step.
    void Row(std::uint16_t* target, const std::uint16_t* texels, int steps, __m128i first, __m128i last) const
    {
        __m128i lanes = first;
        for (; steps > 1; --steps, target += LANES, texels += LANES) {
            Step(target, texels, lanes);
            lanes = Lanes(0xffff);
        }
        Step(target, texels, _mm_and_si128(lanes, last));
    }

    /// A transparent texel tints to 0, so that the pixel below can be joined in.
    void Step(std::uint16_t* target, const std::uint16_t* texels, __m128i lanes) const
    {
        auto* const wide = reinterpret_cast<__m128i*>(target);
        const __m128i source =
            _mm_and_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(texels)), lanes);
        const __m128i transparent = _mm_cmpeq_epi16(source, _mm_setzero_si128());
        _mm_storeu_si128(wide, _mm_or_si128(_mm_and_si128(transparent, _mm_loadu_si128(wide)), Tint(source)));
    }

    /// The upper half of a product is one bit lower than the channel's place: red and green are multiplied
    /// where they stand and moved back together, blue is moved up before.
    __m128i Tint(__m128i texels) const
    {
        if constexpr (WHITE)
            return texels;
        const __m128i red = _mm_mulhi_epu16(_mm_and_si128(texels, Lanes(RED_MASK)), m_Red);
        const __m128i green = _mm_mulhi_epu16(_mm_and_si128(texels, Lanes(GREEN_MASK)), m_Green);
        const __m128i blue =
            _mm_mulhi_epu16(_mm_and_si128(_mm_add_epi16(texels, texels), Lanes(BLUE_MASK << 1)), m_Blue);
        const __m128i upper = _mm_or_si128(_mm_and_si128(red, Lanes(RED_MASK >> 1)),
                                           _mm_and_si128(green, Lanes(GREEN_MASK >> 1)));
        return _mm_or_si128(_mm_add_epi16(upper, upper), blue);
    }

    static __m128i Lanes(std::uint32_t value) { return _mm_set1_epi16(static_cast<short>(value)); }
    static __m128i Fraction(std::uint32_t factor) { return Lanes(((factor << 15) + 254) / 255); }

    __m128i m_Red;
    __m128i m_Green;
    __m128i m_Blue;
};

} // namespace

void CGlyphTint::Copy(std::uint16_t* target, std::ptrdiff_t targetPitch, const std::uint16_t* texels,
                      std::ptrdiff_t texelPitch, int width, int height) const
{
    if (width <= 0 || height < 2 || std::min(targetPitch, texelPitch) < width + LANES - 1) {
        CopyPlain(target, targetPitch, texels, texelPitch, width, height);
        return;
    }
    if (m_nRed == CHANNEL_MAX && m_nGreen == CHANNEL_MAX && m_nBlue == CHANNEL_MAX)
        WideTint<true>(m_nRed, m_nGreen, m_nBlue)
            .Copy(target, targetPitch, texels, texelPitch, width, height);
    else
        WideTint<false>(m_nRed, m_nGreen, m_nBlue)
            .Copy(target, targetPitch, texels, texelPitch, width, height);
}

#else

void CGlyphTint::Copy(std::uint16_t* target, std::ptrdiff_t targetPitch, const std::uint16_t* texels,
                      std::ptrdiff_t texelPitch, int width, int height) const
{
    CopyPlain(target, targetPitch, texels, texelPitch, width, height);
}

#endif
