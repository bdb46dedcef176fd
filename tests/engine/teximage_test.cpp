#include "lib/teximage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "../support/plain_image.h"
#include "lib/reducecolours.h"
#include "lib/textures.h"

namespace
{

using plain::PixelAt;

constexpr std::uint32_t ALL_FORMATS[] = {
    TEX_PALETTE8, TEX_PALETTE8 | TEX_ALPHA, TEX_ARGB4444, TEX_ARGB4444 | TEX_ALPHA, TEX_ARGB1555,
    TEX_ARGB1555 | TEX_ALPHA, TEX_RGB565, TEX_RGB888, TEX_ARGB8888, TEX_ARGB8888 | TEX_ALPHA,
    // Flags that these formats have no use for.
    TEX_RGB565 | TEX_ALPHA, TEX_RGB888 | TEX_ALPHA, TEX_PALETTE8 | TEX_PADDED};

std::vector<std::uint8_t> BytesOf(const CTexImage& image)
{
    return {image.GetPixelData(), image.GetPixelData() + image.GetDataSize()};
}

CTexImage MakeImage(int w, int h, std::uint32_t format, const std::vector<TexPixel>& pixels)
{
    CTexImage image;
    EXPECT_TRUE(image.Alloc(w, h, format));
    for (std::size_t i = 0; i < pixels.size(); ++i)
        image.SetPixel(static_cast<int>(i) % w, static_cast<int>(i) / w, pixels[i]);
    return image;
}

TEST(TexImage, EveryFormatKeepsItsHighBits)
{
    // Blue 0x9c, green 0x5f, red 0xe7.
    const struct {
        std::uint32_t format;
        std::uint8_t alpha;
        std::vector<std::uint8_t> bytes;
        TexPixel read;
    } rows[] = {
        {TEX_ARGB4444 | TEX_ALPHA, 0x7f, {0x59, 0x7e}, {0x90, 0x50, 0xe0, 0x70}},
        {TEX_ARGB4444, 0x7f, {0x59, 0x7e}, {0x90, 0x50, 0xe0, 0xff}},
        {TEX_ARGB1555 | TEX_ALPHA, 0x40, {0x73, 0x71}, {0x98, 0x58, 0xe0, 0x00}},
        {TEX_ARGB1555 | TEX_ALPHA, 0x41, {0x73, 0xf1}, {0x98, 0x58, 0xe0, 0xff}},
        {TEX_ARGB1555, 0x40, {0x73, 0x71}, {0x98, 0x58, 0xe0, 0xff}},
        {TEX_RGB565, 0x00, {0xf3, 0xe2}, {0x98, 0x5c, 0xe0, 0xff}},
        {TEX_RGB888, 0x00, {0x9c, 0x5f, 0xe7}, {0x9c, 0x5f, 0xe7, 0xff}},
        {TEX_ARGB8888, 0x12, {0x9c, 0x5f, 0xe7, 0x12}, {0x9c, 0x5f, 0xe7, 0x12}},
    };
    for (const auto& row : rows) {
        const CTexImage image = MakeImage(1, 1, row.format, {{0x9c, 0x5f, 0xe7, row.alpha}});
        EXPECT_EQ(BytesOf(image), row.bytes) << row.format;
        EXPECT_EQ(PixelAt(image, 0, 0), row.read) << row.format;
    }
}

TEST(TexImage, PalettePicturesTakeTheNearestEntry)
{
    CTexImage image;
    std::vector<std::uint8_t> palette(CTexImage::PALETTE_BYTES, 200);
    const auto put = [&](std::size_t index, std::initializer_list<std::uint8_t> entry) {
        std::copy(entry.begin(), entry.end(), palette.begin() + static_cast<std::ptrdiff_t>(3 * index));
        image.SetPalette(palette.data());
    };
    const auto take = [&](TexPixel pixel) {
        image.SetPixel(0, 0, pixel);
        return image.GetPixelData()[0];
    };
    ASSERT_TRUE(image.Alloc(1, 1, TEX_PALETTE8 | TEX_ALPHA));
    put(0, {10, 10, 10});
    put(9, {10, 12, 10}); // 3 * 4
    EXPECT_EQ(take({10, 10, 10, 0x40}), 9) << "index 0 is the transparent one";
    put(8, {13, 10, 10}); // 9
    EXPECT_EQ(take({10, 10, 10, 0xff}), 8);
    put(255, {10, 10, 12}); // 2 * 4
    EXPECT_EQ(take({10, 10, 10, 0xff}), 255);
    put(254, {12, 10, 8}); // 4 + 8
    put(253, {10, 10, 8}); // 8 too, and first
    EXPECT_EQ(take({10, 10, 10, 0xff}), 253);
    EXPECT_EQ(PixelAt(image, 0, 0), (TexPixel{10, 10, 8, 0xff}));
    EXPECT_EQ(take({200, 200, 200, 0x3f}), 0);
    EXPECT_EQ(PixelAt(image, 0, 0), (TexPixel{10, 10, 10, 0}));
    ASSERT_TRUE(image.Alloc(1, 1, TEX_PALETTE8));
    EXPECT_EQ(take({10, 10, 10, 0}), 0);
    EXPECT_EQ(PixelAt(image, 0, 0), (TexPixel{10, 10, 10, 0xff}));
}

TEST(TexImage, WhatCantBeAllocatedLeavesItEmpty)
{
    constexpr int most = std::numeric_limits<int>::max();
    const struct {
        int w, h;
        std::uint32_t format;
    } rows[] = {{0, 1, 24}, {1, 0, 24},       {-1, -1, 24},     {1, 1, 0},
                {1, 1, 23}, {most, most, 32}, {65536, 65536, 8}};
    for (const auto& row : rows) {
        CTexImage image;
        ASSERT_TRUE(image.Alloc(3, 5, TEX_RGB888 | TEX_VALID | TEX_PADDED));
        EXPECT_EQ(image.GetFormat(), TEX_RGB888 | TEX_PADDED);
        EXPECT_EQ(image.GetDataSize(), 45u);
        EXPECT_FALSE(image.Alloc(row.w, row.h, row.format));
        EXPECT_TRUE(image.IsEmpty() && image.GetFormat() == 0 && image.GetWidth() == 0 &&
                    image.GetDataSize() == 0);
    }
    CTexImage image;
    ASSERT_TRUE(image.Alloc(2, 2, TEX_ARGB8888));
    std::fill_n(image.GetPixelData(), image.GetDataSize(), std::uint8_t{9});
    const std::vector<std::uint8_t> before = BytesOf(image);
    CTexImage moved = std::move(image);
    EXPECT_TRUE(image.IsEmpty() && image.GetFormat() == 0 && image.GetDataSize() == 0);
    image = std::move(moved);
    for (const auto& [x, y] : {std::pair(-1, 0), {0, -1}, {2, 0}, {0, 2}}) {
        image.SetPixel(x, y, {1, 2, 3, 4});
        EXPECT_EQ(PixelAt(image, x, y), TexPixel());
    }
    EXPECT_EQ(BytesOf(image), before);
    EXPECT_EQ(PixelAt(CTexImage(), 0, 0), TexPixel());
}

TEST(TexImage, AlphaEdgesAndWords)
{
    const struct {
        std::uint32_t format;
        std::vector<std::uint8_t> toggled;
    } rows[] = {{TEX_ARGB4444 | TEX_ALPHA, {0x00, 0xf0}},
                {TEX_ARGB4444, {0, 0}},
                {TEX_RGB565 | TEX_ALPHA, {0, 0}},
                {TEX_ARGB1555 | TEX_ALPHA, {0x00, 0x80}},
                {TEX_ARGB8888 | TEX_ALPHA, {0, 0, 0, 0xff}}};
    for (const auto& row : rows) {
        CTexImage image = MakeImage(1, 1, row.format, {{}});
        image.ToggleAlpha();
        EXPECT_EQ(BytesOf(image), row.toggled) << row.format;
    }

    const std::vector<std::uint8_t> nine = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    const struct {
        std::uint32_t mask;
        std::vector<std::uint8_t> pixels;
    } edges[] = {{0, nine},
                 {1, {1, 2, 3, 4, 5, 6, 1, 2, 3}},
                 {2, {7, 8, 9, 4, 5, 6, 7, 8, 9}},
                 {3, {1, 2, 3, 4, 5, 6, 1, 2, 3}},
                 {4, {1, 2, 1, 4, 5, 4, 7, 8, 7}},
                 {8, {3, 2, 3, 6, 5, 6, 9, 8, 9}},
                 {5, {1, 2, 1, 4, 5, 4, 1, 2, 1}}};
    for (const auto& edge : edges) {
        CTexImage image;
        image.CopyEdges(edge.mask);
        ASSERT_TRUE(image.Alloc(3, 3, TEX_PALETTE8));
        std::copy(nine.begin(), nine.end(), image.GetPixelData());
        image.CopyEdges(edge.mask);
        EXPECT_EQ(BytesOf(image), edge.pixels) << edge.mask;
    }

    std::uint32_t words[2] = {};
    MakeImage(2, 1, TEX_ARGB8888, {{1, 2, 3, 4}, {5, 6, 7, 8}}).GetPixels(words);
    EXPECT_EQ(words[0], 0x04030201u);
    EXPECT_EQ(words[1], 0x08070605u);
}

TEST(TexImage, StretchDividesByTheAreaAndShrinkRounds)
{
    CTexImage white =
        MakeImage(256, 128, TEX_ARGB8888, std::vector<TexPixel>(256 * 128, {200, 100, 50, 255}));
    const struct {
        int w, h;
        TexPixel pixel;
    } rows[] = {{64, 32, {200, 100, 50, 255}},
                {20, 10, {175, 87, 43, 224}}, // 144 pixels over 163.84
                {512, 32, {0, 0, 0, 0}}};     // no whole pixel in a block
    CTexImage out;
    for (const auto& row : rows) {
        ASSERT_TRUE(out.StretchFrom(row.w, row.h, white));
        EXPECT_EQ(out.GetFormat(), TEX_ARGB8888 | TEX_VALID);
        EXPECT_EQ(PixelAt(out, row.w - 1, row.h - 1), row.pixel) << row.w;
    }
    EXPECT_FALSE(white.StretchFrom(1, 1, white));
    EXPECT_FALSE(out.StretchFrom(1, 1, CTexImage()));
    EXPECT_FALSE(out.StretchFrom(-1, 1, white));

    // Sums 10, 2, 1, 1020.
    const CTexImage four = MakeImage(
        3, 2, TEX_ARGB8888, {{1, 0, 1, 255}, {2, 0, 0, 255}, {}, {3, 1, 0, 255}, {4, 1, 0, 255}, {}});
    ASSERT_TRUE(out.ShrinkFrom(four, 1));
    EXPECT_EQ(out.GetWidth(), 1);
    EXPECT_EQ(PixelAt(out, 0, 0), (TexPixel{3, 1, 0, 255}));
    for (const int shift : {2, 31, 64}) {
        EXPECT_TRUE(out.ShrinkFrom(four, shift));
        EXPECT_TRUE(out.IsEmpty());
    }
    EXPECT_FALSE(out.ShrinkFrom(four, -1));
    EXPECT_FALSE(white.ShrinkFrom(white, 1));
    ASSERT_TRUE(out.ShrinkFrom(four, 0));
    EXPECT_EQ(BytesOf(out), BytesOf(four));
}

TEST(TexImage, DiffusionHandsErrorsOn)
{
    CTexImage out;
    // 7 leaves 3 to the right and 2 below; that 3 leaves 1 below left and 1 below.
    CTexImage blue = MakeImage(2, 2, TEX_RGB888, {{7, 255, 0}, {0, 255, 0}, {5, 255, 0}, {7, 255, 0}});
    ASSERT_TRUE(out.Alloc(2, 2, TEX_RGB565));
    ASSERT_TRUE(out.ConvertFrom(blue));
    EXPECT_EQ(BytesOf(out), (std::vector<std::uint8_t>{0xe0, 0x07, 0xe0, 0x07, 0xe1, 0x07, 0xe1, 0x07}));

    // Three errors of 255 add up to 144 in the cell below the middle one, which wraps to -112.
    const TexPixel clear = {255, 255, 255, 0};
    CTexImage src = MakeImage(3, 2, TEX_ARGB8888 | TEX_ALPHA,
                              {clear, clear, clear, {0, 0, 0, 0}, {128, 128, 128, 255}, {}});
    std::vector<std::uint8_t> palette(CTexImage::PALETTE_BYTES, 0);
    std::fill_n(palette.begin() + 6, 3, std::uint8_t{255});
    ASSERT_TRUE(out.Alloc(3, 2, TEX_PALETTE8 | TEX_ALPHA));
    out.SetPalette(palette.data());
    ASSERT_TRUE(out.ConvertFrom(src));
    EXPECT_EQ(BytesOf(out), (std::vector<std::uint8_t>{0, 0, 0, 0, 1, 0}));

    EXPECT_FALSE(out.ConvertFrom(out));
    EXPECT_FALSE(out.ConvertFrom(CTexImage()));
}

TEST(TexImage, ConversionWithinAFormatFillsAlpha)
{
    const struct {
        std::uint32_t bits;
        std::vector<std::uint8_t> bytes;
    } rows[] = {{TEX_ARGB4444, {0x00, 0xf0}}, {TEX_ARGB1555, {0x00, 0x80}}, {TEX_ARGB8888, {0, 0, 0, 0xff}}};
    for (const auto& row : rows) {
        CTexImage src = MakeImage(1, 1, row.bits, {{}});
        CTexImage out = MakeImage(1, 1, row.bits | TEX_ALPHA, {{1, 1, 1, 1}});
        ASSERT_TRUE(out.ConvertFrom(src));
        EXPECT_EQ(BytesOf(out), row.bytes);
        CTexImage empty;
        ASSERT_TRUE(empty.ConvertFrom(src));
        EXPECT_EQ(BytesOf(empty), BytesOf(src));
        EXPECT_EQ(empty.GetFormat(), row.bits | TEX_VALID);
    }
}

/// The same size, another format.
void ExpectPlainDiffusion(const CTexImage& src, std::uint32_t to, std::mt19937& random)
{
    CTexImage fast = plain::RandomImage(src.GetWidth(), src.GetHeight(), to, random);
    CTexImage expected = MakeImage(src.GetWidth(), src.GetHeight(), to, {});
    expected.SetPalette(fast.GetPaletteData());
    plain::Diffuse(expected, src);
    ASSERT_TRUE(fast.ConvertFrom(src));
    ASSERT_EQ(BytesOf(fast), BytesOf(expected)) << src.GetFormat() << " to " << to;
}

TEST(TexImage, FastFormsEqualThePlainOnes)
{
    std::mt19937 random(11);
    for (const std::uint32_t from : ALL_FORMATS) {
        const CTexImage src = plain::RandomImage(53, 38, from, random);
        const CTexImage column = plain::RandomImage(1, 9, from, random);
        for (const auto& [w, h] : {std::pair(53, 38), {26, 19}, {20, 10}, {7, 38}, {1, 1}, {60, 3}}) {
            CTexImage fast = plain::RandomImage(w, h, from, random);
            CTexImage expected = MakeImage(w, h, from, {});
            expected.SetPalette(fast.GetPaletteData());
            plain::Stretch(expected, src);
            ASSERT_TRUE(fast.StretchFrom(w, h, src));
            ASSERT_EQ(BytesOf(fast), BytesOf(expected)) << from << " to " << w << " by " << h;
        }
        for (const int shift : {0, 1, 2, 3, 5}) {
            CTexImage fast = plain::RandomImage(1, 1, from, random);
            CTexImage expected = MakeImage(53 >> shift, 38 >> shift, from, {});
            expected.SetPalette(fast.GetPaletteData());
            plain::Shrink(expected, src, shift);
            ASSERT_TRUE(fast.ShrinkFrom(src, shift));
            ASSERT_EQ(BytesOf(fast), BytesOf(expected)) << from << " by " << shift;
        }
        for (const std::uint32_t to : ALL_FORMATS) {
            if ((to & TEX_BITS) == (from & TEX_BITS))
                continue;
            ExpectPlainDiffusion(src, to, random);
            ExpectPlainDiffusion(column, to, random);

            // Another size: by way of a picture that has the one's size and the other's format.
            CTexImage small = plain::RandomImage(13, 9, to, random);
            const bool fewerBits = (to & TEX_BITS) < (from & TEX_BITS);
            CTexImage between = MakeImage(fewerBits ? 53 : 13, fewerBits ? 38 : 9, fewerBits ? to : from, {});
            between.SetPalette(fewerBits ? small.GetPaletteData() : src.GetPaletteData());
            CTexImage expected = MakeImage(13, 9, to, {});
            expected.SetPalette(small.GetPaletteData());
            fewerBits ? plain::Diffuse(between, src) : plain::Stretch(between, src);
            fewerBits ? plain::Stretch(expected, between) : plain::Diffuse(expected, between);
            ASSERT_TRUE(small.ConvertFrom(src));
            ASSERT_EQ(BytesOf(small), BytesOf(expected)) << from << " to " << to;
        }
    }
}

TEST(TexImage, LargeBlocksAreSummedAsFloatsAre)
{
    // 251 is added as 248 where floats are 8 apart, and the last case sums up to there.
    for (const int side : {256, 257, 1024}) {
        const CTexImage src =
            MakeImage(side, side, TEX_ARGB8888,
                      std::vector<TexPixel>(static_cast<std::size_t>(side) * static_cast<std::size_t>(side),
                                            {251, 253, 255, 1}));
        CTexImage fast;
        CTexImage expected = MakeImage(1, 1, TEX_ARGB8888, {});
        plain::Stretch(expected, src);
        ASSERT_TRUE(fast.StretchFrom(1, 1, src));
        EXPECT_EQ(PixelAt(fast, 0, 0), PixelAt(expected, 0, 0)) << side;
        EXPECT_EQ(PixelAt(fast, 0, 0).blue == 251, side < 1024);
    }
    // As integers whose mean is made as a float: 512 by 512 times 255, less 1.
    CTexImage src = MakeImage(512, 512, TEX_ARGB8888, std::vector<TexPixel>(512 * 512, {255, 127, 63, 31}));
    src.SetPixel(0, 0, {254, 126, 62, 30});
    CTexImage fast;
    CTexImage expected = MakeImage(1, 1, TEX_ARGB8888, {});
    plain::Shrink(expected, src, 9);
    ASSERT_TRUE(fast.ShrinkFrom(src, 9));
    EXPECT_EQ(PixelAt(fast, 0, 0), PixelAt(expected, 0, 0));
}

TEST(ReduceColours, CutsTheColoursAtTheirMeans)
{
    std::uint8_t palette[4 * 4] = {};
    const std::uint32_t two[] = {0x00204060, 0x00204060, 0x00204060, 0x0060a0e0};
    EXPECT_EQ(ReduceColours(nullptr, 4, palette, 4), 0);
    EXPECT_EQ(ReduceColours(two, 0, palette, 4), 0);
    EXPECT_EQ(ReduceColours(two, 4, nullptr, 4), 0);
    EXPECT_EQ(ReduceColours(two, 4, palette, 0), 0);
    // The mean of all; the three of one colour (191 of 255), which are cut once more and so weigh twice; the
    // fourth (63), which is one pixel and isn't cut.
    EXPECT_EQ(ReduceColours(two, 4, palette, 3), 3);
    const std::uint8_t entries[] = {0x80, 0x58, 0x30, 255, 0x60, 0x40, 0x20, 255, 0xe0, 0xa0, 0x60, 63};
    EXPECT_TRUE(std::equal(std::begin(entries), std::end(entries), palette));
}

TEST(ReduceColours, EqualsThePlainForm)
{
    std::mt19937 random(13);
    for (int run = 0; run < 60; ++run) {
        // From all colours to a few, among them those at the ends of the boxes.
        const std::uint32_t masks[] = {0xffffffff, 0x001f1f1f, 0x00ff0101,
                                       0x000303ff, 0x00f00000, 0x00c0c0c0};
        const std::uint32_t mask = masks[run % 6];
        const std::uint32_t ones = run % 12 < 6 ? 0 : 0x00fff8f8;
        std::vector<std::uint32_t> pixels(1 + random() % 3000);
        std::generate(pixels.begin(), pixels.end(),
                      [&] { return (static_cast<std::uint32_t>(random()) & mask) ^ ones; });
        const int most = 1 + static_cast<int>(random() % (run % 2 ? 300 : 20));
        std::vector<std::uint8_t> fast(4 * static_cast<std::size_t>(most));
        std::vector<std::uint8_t> expected(fast.size());
        const int count = static_cast<int>(pixels.size());
        ASSERT_EQ(ReduceColours(pixels.data(), count, fast.data(), most),
                  plain::Reducer(pixels.data(), count).Reduce(expected.data(), most));
        ASSERT_EQ(fast, expected) << run;
    }
}

TEST(Textures, LevelCountLeavesTwoPixels)
{
    const struct {
        int w, h, levels;
    } rows[] = {{256, 128, 7}, {128, 16, 4}, {64, 32, 5}, {32, 16, 4}, {1, 1, 1}, {2, 2, 1}, {4, 9, 2}};
    for (const auto& row : rows) {
        CTexImage image;
        ASSERT_TRUE(image.Alloc(row.w, row.h, TEX_PALETTE8));
        EXPECT_EQ(LevelCount(image), row.levels) << row.w;
    }
    EXPECT_EQ(LevelCount(CTexImage()), 1);
}

} // namespace
