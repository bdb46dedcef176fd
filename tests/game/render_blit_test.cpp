// Blits against a reference that does each target pixel by itself, with no thought for speed.

#include "render/blit.h"

#include <array>
#include <climits>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "render/blit_rows.h"
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
std::uint16_t RandomPixel(Random& random)
{
    return Between(random, 0, 2) == 0 ? std::uint16_t{0}
                                      : static_cast<std::uint16_t>(Between(random, 0, 0xffff));
}

Picture RandomPicture(Random& random, int width, int height)
{
    Picture picture{
        width, height,
        std::vector<std::uint16_t>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))};
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
    const std::vector<std::uint16_t> sourcePixels(source.m_aPixels.begin(), source.m_aPixels.end());
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

std::string RectText(const RECT& rect)
{
    return std::to_string(rect.left) + ", " + std::to_string(rect.top) + ", " + std::to_string(rect.right) +
           ", " + std::to_string(rect.bottom);
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

void CompareBlits(bool bWithinOne, unsigned seed)
{
    constexpr int ROUNDS = 20000;
    Random random(seed);
    BlitScratch scratch;
    for (int round = 0; round < ROUNDS; ++round) {
        Picture actual = RandomPicture(random, Between(random, 1, 40), Between(random, 1, 12));
        Picture other = RandomPicture(random, Between(random, 1, 40), Between(random, 1, 12));
        Picture& source = bWithinOne ? actual : other;
        RECT to = RandomRect(random, actual);
        const RECT from = RandomRect(random, source);
        if (Between(random, 0, 2) == 0)
            TakeSize(to, from);
        const bool bKeyed = Between(random, 0, 1) != 0;

        Picture expected = actual;
        NaiveBlit(expected, to, source, from, bKeyed);
        BlitPixels(ViewOf(actual), to, ViewOf(source), from, bKeyed, scratch);
        ASSERT_TRUE(SamePicture("blit", actual, expected))
            << "round " << round << ", to " << RectText(to) << " of " << actual.m_nWidth << " by "
            << actual.m_nHeight << ", from " << RectText(from) << " of " << source.m_nWidth << " by "
            << source.m_nHeight << (bKeyed ? ", keyed" : "");
    }
}

TEST(Blit, DrawsWhatTheReferenceDraws)
{
    CompareBlits(false, 11);
}

TEST(Blit, ReadsTheSourceFirstWithinOneSurface)
{
    CompareBlits(true, 12);
}

/// At full size, where whole rows are joined and rows are wider than any register.
TEST(Blit, DrawsWholeScreens)
{
    constexpr int WIDTH = 800;
    constexpr int HEIGHT = 600;
    struct Case {
        const char* name;
        int sourceWidth, sourceHeight;
        RECT to, from;
    };
    const Case cases[] = {
        {"whole", WIDTH, HEIGHT, {0, 0, WIDTH, HEIGHT}, {0, 0, WIDTH, HEIGHT}},
        {"some rows", WIDTH, HEIGHT, {0, 100, WIDTH, 300}, {0, 5, WIDTH, 205}},
        {"odd part", WIDTH, HEIGHT, {3, 1, 790, 599}, {7, 0, 794, 598}},
        {"larger", 256, 256, {0, 0, WIDTH, HEIGHT}, {0, 0, 256, 256}},
        {"much larger", 3, 2, {-50, -60, WIDTH + 50, HEIGHT}, {0, 0, 3, 2}},
        {"smaller", 1024, 768, {0, 0, WIDTH, HEIGHT}, {0, 0, 1024, 768}},
        {"taller", WIDTH, 100, {0, 0, WIDTH, HEIGHT}, {0, 0, WIDTH, 100}},
    };
    Random random(13);
    BlitScratch scratch;
    for (const Case& c : cases)
        for (const bool bKeyed : {false, true}) {
            Picture actual = RandomPicture(random, WIDTH, HEIGHT);
            Picture source = RandomPicture(random, c.sourceWidth, c.sourceHeight);
            Picture expected = actual;
            NaiveBlit(expected, c.to, source, c.from, bKeyed);
            BlitPixels(ViewOf(actual), c.to, ViewOf(source), c.from, bKeyed, scratch);
            EXPECT_TRUE(SamePicture(std::string("screen ") + c.name, actual, expected));
        }
}

/// Every length around the register's width, at every alignment, with guards on both sides.
TEST(BlitRows, RegistersAndPlainLoopAgree)
{
    constexpr std::size_t GUARD = 8;
    constexpr std::uint16_t MARK = 0x5aa5;
    Random random(14);
    for (std::size_t count = 0; count <= 70; ++count)
        for (std::size_t offset = 0; offset < 8; ++offset) {
            std::vector<std::uint16_t> source(offset + count);
            for (std::uint16_t& pixel : source)
                pixel = RandomPixel(random);
            std::vector<std::uint16_t> fast(GUARD + count + GUARD, MARK);
            for (std::size_t i = 0; i < count; ++i)
                fast[GUARD + i] = RandomPixel(random);
            std::vector<std::uint16_t> plain = fast;
            KeyedRow(fast.data() + GUARD, source.data() + offset, count);
            KeyedRowPlain(plain.data() + GUARD, source.data() + offset, count);
            ASSERT_EQ(fast, plain) << count << " pixels at " << offset;
            for (std::size_t i = 0; i < GUARD; ++i)
                ASSERT_TRUE(fast[i] == MARK && fast[GUARD + count + i] == MARK);
        }
}

TEST(BlitRows, SpreadingAgreesWithThePlainLoop)
{
    Random random(15);
    for (int round = 0; round < 2000; ++round) {
        const int count = Between(random, 1, 40);
        const int widest = Between(random, 1, 30);
        std::vector<std::uint32_t> starts{0};
        std::vector<std::uint16_t> source;
        for (int i = 0; i < count; ++i) {
            starts.push_back(starts.back() + static_cast<std::uint32_t>(Between(random, 1, widest)));
            source.push_back(RandomPixel(random));
        }
        std::vector<std::uint16_t> fast(starts.back() + SPREAD_SLACK);
        std::vector<std::uint16_t> plain = fast;
        SpreadRow(fast.data(), source.data(), starts.data(), source.size());
        SpreadRowPlain(plain.data(), source.data(), starts.data(), source.size());
        fast.resize(starts.back());
        plain.resize(starts.back());
        ASSERT_EQ(fast, plain);
    }
}

} // namespace
