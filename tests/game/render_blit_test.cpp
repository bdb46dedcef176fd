// Blits against a reference that does each target pixel by itself, with no thought for speed.

#include "render/blit.h"

#include <array>
#include <climits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "render/blit_rows.h"
#include "support/picture_compare.h"
#include "support/rows.h"

using seawarden_test::SamePicture;

namespace
{

using Random = std::mt19937;

int Between(Random& random, int low, int high)
{
    return std::uniform_int_distribution<int>(low, high)(random);
}

/// About a third of the pixels is the key.
std::uint16_t RandomPixel(Random& random)
{
    return Between(random, 0, 2) == 0 ? std::uint16_t{0}
                                      : static_cast<std::uint16_t>(Between(random, 0, 0xffff));
}

Picture RandomPicture(Random& random, int width, int height)
{
    const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    Picture picture{width, height, std::vector<std::uint16_t>(count)};
    for (std::uint16_t& pixel : picture.m_aPixels)
        pixel = RandomPixel(random);
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

/// Mostly rectangles around the picture; some far larger, inverted, empty or at the ends of 32 bits.
RECT RandomRect(Random& random, const Picture& picture)
{
    const auto edge = [&](int size) {
        static constexpr std::array<int, 8> EXTREMES{INT_MIN, INT_MIN + 1, -100000,     -1,
                                                     0,       100000,      INT_MAX - 1, INT_MAX};
        if (Between(random, 0, 9) == 0)
            return EXTREMES[static_cast<std::size_t>(Between(random, 0, 7))];
        return Between(random, -size, 2 * size);
    };
    RECT rect{edge(picture.m_nWidth), edge(picture.m_nHeight), edge(picture.m_nWidth),
              edge(picture.m_nHeight)};
    if (rect.left > rect.right && Between(random, 0, 9) != 0)
        std::swap(rect.left, rect.right);
    if (rect.top > rect.bottom && Between(random, 0, 9) != 0)
        std::swap(rect.top, rect.bottom);
    return rect;
}

/// The same size as `like` where both fit into 32 bits.
void TakeSize(RECT& rect, const RECT& like)
{
    const std::int64_t right = std::int64_t{rect.left} + like.right - like.left;
    const std::int64_t bottom = std::int64_t{rect.top} + like.bottom - like.top;
    if (right >= INT_MIN && right <= INT_MAX)
        rect.right = static_cast<LONG>(right);
    if (bottom >= INT_MIN && bottom <= INT_MAX)
        rect.bottom = static_cast<LONG>(bottom);
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
        Picture actual = RandomPicture(random, Between(random, 1, 40), Between(random, 1, 12));
        Picture other = RandomPicture(random, Between(random, 1, 40), Between(random, 1, 12));
        Picture& source = round % 2 == 0 ? actual : other;
        RECT to = RandomRect(random, actual);
        const RECT from = RandomRect(random, source);
        if (Between(random, 0, 2) == 0)
            TakeSize(to, from);
        CompareBlit(actual, to, source, from, Between(random, 0, 1) != 0);
    }
}

/// At full size, where whole rows are joined and rows are wider than any register.
TEST(Blit, DrawsWholeScreens)
{
    constexpr int WIDTH = 800;
    constexpr int HEIGHT = 600;
    const Rows<int, int, RECT, RECT> cases = {
        {WIDTH, HEIGHT, {0, 0, WIDTH, HEIGHT}, {0, 0, WIDTH, HEIGHT}},
        {WIDTH, HEIGHT, {0, 100, WIDTH, 300}, {0, 5, WIDTH, 205}},
        {WIDTH, HEIGHT, {3, 1, 790, 599}, {7, 0, 794, 598}},
        {3, 2, {-50, -60, WIDTH + 50, HEIGHT}, {0, 0, 3, 2}},
        {1024, 768, {0, 0, WIDTH, HEIGHT}, {0, 0, 1024, 768}},
        {WIDTH, 100, {0, 0, WIDTH, HEIGHT}, {0, 0, WIDTH, 100}},
    };
    Random random(13);
    for (const auto& [width, height, to, from] : cases)
        for (const bool keyed : {false, true}) {
            Picture actual = RandomPicture(random, WIDTH, HEIGHT);
            Picture source = RandomPicture(random, width, height);
            CompareBlit(actual, to, source, from, keyed);
        }
}

/// Every length around the register's width, at every alignment, with guards on both sides.
TEST(BlitRows, RegistersAndPlainLoopsAgree)
{
    constexpr std::size_t GUARD = 8;
    Random random(14);
    for (std::size_t count = 1; count <= 70; ++count)
        for (std::size_t offset = 0; offset < 8; ++offset) {
            Picture source = RandomPicture(random, 80, 1);
            std::vector<std::uint16_t> fast(GUARD + count + GUARD, 0x5aa5);
            std::vector<std::uint16_t> plain = fast;
            KeyedRow(fast.data() + GUARD, source.m_aPixels.data() + offset, count);
            KeyedRowPlain(plain.data() + GUARD, source.m_aPixels.data() + offset, count);
            ASSERT_EQ(fast, plain) << count << " pixels at " << offset;

            std::vector<std::uint32_t> starts{0};
            for (std::size_t i = 0; i < count; ++i)
                starts.push_back(starts.back() +
                                 static_cast<std::uint32_t>(Between(random, 1, 4 << offset / 2)));
            fast.assign(starts.back() + SPREAD_SLACK, 0);
            plain = fast;
            SpreadRow(fast.data(), source.m_aPixels.data(), starts.data(), count);
            SpreadRowPlain(plain.data(), source.m_aPixels.data(), starts.data(), count);
            ASSERT_TRUE(std::equal(fast.begin(), fast.end() - SPREAD_SLACK, plain.begin())) << count;
        }
}

} // namespace
