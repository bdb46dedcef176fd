// Blits against a reference that does each target pixel by itself, with no thought for speed.

#include "render/blit.h"

#include <algorithm>
#include <climits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "support/picture_compare.h"

using seawarden_test::SamePicture;

namespace
{

using Random = std::mt19937;

int Between(Random& random, int low, int high)
{
    return std::uniform_int_distribution<int>(low, high)(random);
}

/// About a third of the pixels is the key.
Picture RandomPicture(Random& random, int width, int height)
{
    const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    Picture picture{width, height, std::vector<std::uint16_t>(count)};
    for (std::uint16_t& pixel : picture.m_aPixels)
        pixel = static_cast<std::uint16_t>(std::max(0, Between(random, -0x8000, 0xffff)));
    return picture;
}

PixelView ViewOf(Picture& picture)
{
    return {picture.m_aPixels.data(), picture.m_nWidth, picture.m_nHeight};
}

std::size_t PixelIndex(const Picture& picture, int x, int y)
{
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.m_nWidth) +
           static_cast<std::size_t>(x);
}

/// Wide enough that no product of 32-bit sizes overflows.
__extension__ using Wide = __int128;

/// Reads a copy of the source, so that it serves for blits within one picture too.
void NaiveBlit(Picture& target, const RECT& to, const Picture& source, const RECT& from, bool keyed)
{
    const std::vector<std::uint16_t> sourcePixels = source.m_aPixels;
    const Wide toWidth = Wide{to.right} - to.left;
    const Wide toHeight = Wide{to.bottom} - to.top;
    const Wide fromWidth = Wide{from.right} - from.left;
    const Wide fromHeight = Wide{from.bottom} - from.top;
    if (toWidth <= 0 || toHeight <= 0 || fromWidth <= 0 || fromHeight <= 0)
        return;
    for (int y = 0; y < target.m_nHeight; ++y)
        for (int x = 0; x < target.m_nWidth; ++x) {
            if (x < to.left || x >= to.right || y < to.top || y >= to.bottom)
                continue;
            const Wide sx = from.left + (Wide{x} - to.left) * fromWidth / toWidth;
            const Wide sy = from.top + (Wide{y} - to.top) * fromHeight / toHeight;
            if (sx < 0 || sx >= source.m_nWidth || sy < 0 || sy >= source.m_nHeight)
                continue;
            const std::uint16_t pixel =
                sourcePixels[PixelIndex(source, static_cast<int>(sx), static_cast<int>(sy))];
            if (!keyed || pixel != 0)
                target.m_aPixels[PixelIndex(target, x, y)] = pixel;
        }
}

/// Mostly a rectangle around the picture; some far larger, inverted, empty or at the ends of 32 bits.
RECT RandomRect(Random& random, const Picture& picture)
{
    const auto edge = [&](int size) {
        static constexpr int EXTREMES[] = {INT_MIN, INT_MIN + 1, -100000,     -1,
                                           0,       100000,      INT_MAX - 1, INT_MAX};
        return Between(random, 0, 9) == 0 ? EXTREMES[Between(random, 0, 7)]
                                          : Between(random, -size, 2 * size);
    };
    RECT rect{edge(picture.m_nWidth), edge(picture.m_nHeight), edge(picture.m_nWidth),
              edge(picture.m_nHeight)};
    if (Between(random, 0, 9) != 0)
        rect = {std::min(rect.left, rect.right), std::min(rect.top, rect.bottom),
                std::max(rect.left, rect.right), std::max(rect.top, rect.bottom)};
    return rect;
}

/// The same size as `like` where both fit into 32 bits.
void TakeSize(RECT& rect, const RECT& like)
{
    const std::int64_t right = std::int64_t{rect.left} + like.right - like.left;
    const std::int64_t bottom = std::int64_t{rect.top} + like.bottom - like.top;
    if (right == static_cast<LONG>(right) && bottom == static_cast<LONG>(bottom)) {
        rect.right = static_cast<LONG>(right);
        rect.bottom = static_cast<LONG>(bottom);
    }
}

void CompareBlit(Picture& actual, const RECT& to, Picture& source, const RECT& from, bool keyed)
{
    static BlitScratch scratch;
    Picture expected = actual;
    NaiveBlit(expected, to, source, from, keyed);
    BlitPixels(ViewOf(actual), to, ViewOf(source), from, keyed, scratch);
    ASSERT_TRUE(SamePicture("blit", actual, expected)) << testing::PrintToString(std::tie(to, from, keyed));
}

TEST(Blit, DrawsWhatTheReferenceDrawsAndReadsFirstWithinOneSurface)
{
    Random random(11);
    for (int round = 0; round < 40000 && !HasFailure(); ++round) {
        SCOPED_TRACE(round);
        const int widest = round % 500 < 2 ? 800 : 40;
        Picture actual = RandomPicture(random, Between(random, 1, widest), Between(random, 1, 12));
        Picture other = RandomPicture(random, Between(random, 1, widest), Between(random, 1, 12));
        Picture& source = round % 2 == 0 ? actual : other;
        RECT to = RandomRect(random, actual);
        const RECT from = RandomRect(random, source);
        if (Between(random, 0, 2) == 0)
            TakeSize(to, from);
        CompareBlit(actual, to, source, from, Between(random, 0, 1) != 0);
    }
}

} // namespace
