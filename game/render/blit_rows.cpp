#include "render/blit_rows.h"

#include <algorithm>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

void KeyedRowPlain(std::uint16_t* target, const std::uint16_t* source, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint16_t pixel = source[i];
        const auto keep = static_cast<std::uint16_t>(pixel == 0 ? 0xffffu : 0u);
        target[i] = static_cast<std::uint16_t>(pixel | (target[i] & keep));
    }
}

void SpreadRowPlain(std::uint16_t* target, const std::uint16_t* source, const std::uint32_t* starts,
                    std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        std::fill(target + starts[i], target + starts[i + 1], source[i]);
}

void GatherRow(std::uint16_t* target, const std::uint16_t* source, const std::uint32_t* columns,
               std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        target[i] = source[columns[i]];
}

#if defined(__SSE2__)

namespace
{
constexpr std::size_t LANES = 8; // pixels in a register

/// A source pixel that is left out is 0, so that it can be joined with the kept target by "or" alone.
inline void KeyedLanes(std::uint16_t* target, const std::uint16_t* source)
{
    const __m128i pixels = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source));
    const __m128i under = _mm_loadu_si128(reinterpret_cast<const __m128i*>(target));
    const __m128i keep = _mm_cmpeq_epi16(pixels, _mm_setzero_si128());
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target), _mm_or_si128(pixels, _mm_and_si128(under, keep)));
}
} // namespace

void KeyedRow(std::uint16_t* target, const std::uint16_t* source, std::size_t count)
{
    if (count < LANES) {
        KeyedRowPlain(target, source, count);
        return;
    }
    const std::size_t last = count - LANES;
    std::size_t i = 0;
    for (; i + 4 * LANES <= last; i += 4 * LANES) {
        KeyedLanes(target + i, source + i);
        KeyedLanes(target + i + LANES, source + i + LANES);
        KeyedLanes(target + i + 2 * LANES, source + i + 2 * LANES);
        KeyedLanes(target + i + 3 * LANES, source + i + 3 * LANES);
    }
    for (; i < last; i += LANES)
        KeyedLanes(target + i, source + i);
    // The last register reaches back over pixels already done, which a second time leaves as they are.
    KeyedLanes(target + last, source + last);
}

void SpreadRow(std::uint16_t* target, const std::uint16_t* source, const std::uint32_t* starts,
               std::size_t count)
{
    static_assert(SPREAD_SLACK >= LANES);
    for (std::size_t i = 0; i < count; ++i) {
        const __m128i pixels = _mm_set1_epi16(static_cast<short>(source[i]));
        std::uint32_t x = starts[i];
        const std::uint32_t end = starts[i + 1];
        // A register reaches over the pixels of the next run, which come after it.
        do {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(target + x), pixels);
            x += LANES;
        } while (x < end);
    }
}

#else

void KeyedRow(std::uint16_t* target, const std::uint16_t* source, std::size_t count)
{
    KeyedRowPlain(target, source, count);
}

void SpreadRow(std::uint16_t* target, const std::uint16_t* source, const std::uint32_t* starts,
               std::size_t count)
{
    SpreadRowPlain(target, source, starts, count);
}

#endif
