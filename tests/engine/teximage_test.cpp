#include "lib/teximage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <numeric>
#include <vector>

#include "../support/plain_image.h"
#include "../support/rows.h"
#include "lib/reducecolours.h"

namespace
{

using plain::PixelAt;
using Bytes = std::vector<std::uint8_t>;
using Pixels = std::vector<TexPixel>;

constexpr std::uint32_t ALL_FORMATS[] = {
    TEX_PALETTE8, TEX_PALETTE8 | TEX_ALPHA, TEX_ARGB4444, TEX_ARGB4444 | TEX_ALPHA, TEX_ARGB1555,
    TEX_ARGB1555 | TEX_ALPHA, TEX_RGB565, TEX_RGB888, TEX_ARGB8888, TEX_ARGB8888 | TEX_ALPHA,
    // Flags that these formats have no use for.
    TEX_RGB565 | TEX_ALPHA, TEX_RGB888 | TEX_ALPHA, TEX_PALETTE8 | TEX_PADDED};

Bytes BytesOf(const CTexImage& image)
{
    return {image.GetPixelData(), image.GetPixelData() + image.GetDataSize()};
}

CTexImage MakeImage(int w, int h, std::uint32_t format, const Pixels& pixels,
                    const std::uint8_t* palette = nullptr)
{
    CTexImage image;
    EXPECT_TRUE(image.Alloc(w, h, format));
    image.SetPalette(palette);
    for (std::size_t i = 0; i < pixels.size(); ++i)
        image.SetPixel(static_cast<int>(i) % w, static_cast<int>(i) / w, pixels[i]);
    return image;
}

TEST(TexImage, EveryFormatKeepsItsHighBits)
{
    // Blue 0x9c, green 0x5f, red 0xe7.
    const Rows<std::uint32_t, std::uint8_t, Bytes, TexPixel> rows = {
        {TEX_ARGB4444 | TEX_ALPHA, 0x7f, {0x59, 0x7e}, {0x90, 0x50, 0xe0, 0x70}},
        {TEX_ARGB4444, 0x7f, {0x59, 0x7e}, {0x90, 0x50, 0xe0, 0xff}},
        {TEX_ARGB1555 | TEX_ALPHA, 0x40, {0x73, 0x71}, {0x98, 0x58, 0xe0, 0x00}},
        {TEX_ARGB1555 | TEX_ALPHA, 0x41, {0x73, 0xf1}, {0x98, 0x58, 0xe0, 0xff}},
        {TEX_ARGB1555, 0x40, {0x73, 0x71}, {0x98, 0x58, 0xe0, 0xff}},
        {TEX_RGB565, 0x00, {0xf3, 0xe2}, {0x98, 0x5c, 0xe0, 0xff}},
        {TEX_RGB888, 0x00, {0x9c, 0x5f, 0xe7}, {0x9c, 0x5f, 0xe7, 0xff}},
        {TEX_ARGB8888, 0x12, {0x9c, 0x5f, 0xe7, 0x12}, {0x9c, 0x5f, 0xe7, 0x12}},
    };
    for (const auto& [format, alpha, bytes, read] : rows) {
        const CTexImage image = MakeImage(1, 1, format, {{0x9c, 0x5f, 0xe7, alpha}});
        EXPECT_EQ(BytesOf(image), bytes) << format;
        EXPECT_EQ(PixelAt(image, 0, 0), read) << format;
    }
    std::uint32_t word = 0;
    MakeImage(1, 1, TEX_ARGB8888, {{1, 2, 3, 4}}).GetPixels(&word);
    EXPECT_EQ(word, 0x04030201u);
}

TEST(TexImage, PalettePicturesTakeTheNearestEntry)
{
    CTexImage image = MakeImage(1, 1, TEX_PALETTE8 | TEX_ALPHA, {});
    Bytes palette(CTexImage::PALETTE_BYTES, 200);
    const auto put = [&](std::ptrdiff_t index, std::initializer_list<std::uint8_t> entry) {
        std::copy(entry.begin(), entry.end(), palette.begin() + 3 * index);
        image.SetPalette(palette.data());
    };
    const auto take = [&](TexPixel pixel) {
        image.SetPixel(0, 0, pixel);
        return image.GetPixelData()[0];
    };
    put(0, {10, 10, 10});
    put(9, {10, 12, 10}); // 3 * 4
    EXPECT_EQ(take({10, 10, 10, 0x40}), 9) << "index 0 is the transparent one";
    put(8, {13, 10, 10}); // 9
    EXPECT_EQ(take({10, 10, 10, 0xff}), 8);
    put(255, {10, 10, 12}); // 2 * 4
    EXPECT_EQ(take({10, 10, 10, 0xff}), 255);
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
    for (const auto& [w, h, format] : Rows<int, int, std::uint32_t>{
             {0, 1, 24}, {-1, -1, 24}, {1, 1, 23}, {most, most, 32}, {65536, 65536, 8}}) {
        CTexImage image = MakeImage(3, 5, TEX_RGB888, {});
        EXPECT_FALSE(image.Alloc(w, h, format));
        EXPECT_TRUE(image.IsEmpty() && image.GetFormat() == 0 && image.GetDataSize() == 0);
        EXPECT_FALSE(image.StretchFrom(1, 1, CTexImage()) || image.ConvertFrom(CTexImage()));
    }
    CTexImage image = MakeImage(2, 2, TEX_ARGB8888, Pixels(4, {9, 9, 9, 9}));
    CTexImage small;
    EXPECT_FALSE(small.ShrinkFrom(image, -1));
    for (const int shift : {2, 64})
        EXPECT_TRUE(small.ShrinkFrom(image, shift) && small.IsEmpty()) << shift;
    EXPECT_FALSE(image.StretchFrom(1, 1, image) || image.ShrinkFrom(image, 1) || image.ConvertFrom(image));
    for (const auto& [x, y] : {std::pair(-1, 0), {0, -1}, {2, 0}, {0, 2}}) {
        image.SetPixel(x, y, {1, 2, 3, 4});
        EXPECT_EQ(PixelAt(image, x, y), TexPixel());
    }
    const CTexImage moved = std::move(image);
    EXPECT_TRUE(image.IsEmpty() && image.GetFormat() == 0 && image.GetDataSize() == 0);
    EXPECT_EQ(BytesOf(moved), Bytes(16, 9));
}

TEST(TexImage, AlphaAndEdges)
{
    // Filled where the source of a conversion has none.
    for (const auto& [bits, filled] : Rows<std::uint32_t, Bytes>{
             {TEX_ARGB4444, {0, 0xf0}}, {TEX_ARGB1555, {0, 0x80}}, {32, {0, 0, 0, 0xff}}}) {
        const CTexImage src = MakeImage(1, 1, bits, {{}});
        CTexImage image = MakeImage(1, 1, bits | TEX_ALPHA, {{1, 1, 1, 1}});
        ASSERT_TRUE(image.ConvertFrom(src));
        EXPECT_EQ(BytesOf(image), filled);
    }
    CTexImage image = MakeImage(3, 3, TEX_PALETTE8, {});
    std::iota(image.GetPixelData(), image.GetPixelData() + 9, std::uint8_t{1});
    image.CopyEdges(1);
    EXPECT_EQ(BytesOf(image), (Bytes{1, 2, 3, 4, 5, 6, 1, 2, 3})) << "first row to last";
    image.CopyEdges(8);
    EXPECT_EQ(BytesOf(image), (Bytes{3, 2, 3, 6, 5, 6, 3, 2, 3})) << "last column to first";
}

TEST(TexImage, FastFormsEqualThePlainOnes)
{
    std::mt19937 random(11);
    // Something that a fast form has to overwrite, and what it must become, still blank.
    CTexImage fast;
    CTexImage expected;
    const auto begin = [&](int w, int h, std::uint32_t format) {
        fast = plain::RandomImage(w, h, format, random);
        expected = MakeImage(w, h, format, {}, fast.GetPaletteData());
    };
    for (const std::uint32_t from : ALL_FORMATS) {
        const CTexImage src = plain::RandomImage(53, 38, from, random);
        const CTexImage column = plain::RandomImage(1, 9, from, random);
        for (const auto& [w, h] : {std::pair(53, 38), {26, 19}, {20, 10}, {1, 1}, {60, 3}}) {
            begin(w, h, from);
            plain::Stretch(expected, src);
            ASSERT_TRUE(fast.StretchFrom(w, h, src));
            ASSERT_EQ(BytesOf(fast), BytesOf(expected)) << from << " to " << w << " by " << h;
        }
        for (const int shift : {0, 1, 2, 5}) {
            begin(53 >> shift, 38 >> shift, from);
            plain::Shrink(expected, src, shift);
            ASSERT_TRUE(fast.ShrinkFrom(src, shift));
            ASSERT_EQ(BytesOf(fast), BytesOf(expected)) << from << " by " << shift;
        }
        for (const std::uint32_t to : ALL_FORMATS) {
            SCOPED_TRACE(testing::Message() << from << " to " << to);
            if ((to & TEX_BITS) == (from & TEX_BITS))
                continue;
            for (const CTexImage* same : {&src, &column}) {
                begin(same->GetWidth(), same->GetHeight(), to);
                plain::Diffuse(expected, *same);
                ASSERT_TRUE(fast.ConvertFrom(*same));
                ASSERT_EQ(BytesOf(fast), BytesOf(expected));
            }
            // Another size: by way of a picture that has the one's size and the other's format.
            begin(13, 9, to);
            if ((to & TEX_BITS) < (from & TEX_BITS)) {
                CTexImage between = MakeImage(53, 38, to, {}, fast.GetPaletteData());
                plain::Diffuse(between, src);
                plain::Stretch(expected, between);
            } else {
                CTexImage between = MakeImage(13, 9, from, {}, src.GetPaletteData());
                plain::Stretch(between, src);
                plain::Diffuse(expected, between);
            }
            ASSERT_TRUE(fast.ConvertFrom(src));
            ASSERT_EQ(BytesOf(fast), BytesOf(expected));
        }
    }
}

TEST(TexImage, ErrorsWrapInDiffusion)
{
    // Three errors of 255 add up to 144 in the cell below the middle one, which wraps to -112.
    const TexPixel clear = {255, 255, 255, 0};
    Bytes palette(CTexImage::PALETTE_BYTES, 0);
    std::fill_n(palette.begin() + 6, 3, std::uint8_t{255});
    CTexImage out = MakeImage(3, 2, TEX_PALETTE8 | TEX_ALPHA, {}, palette.data());
    ASSERT_TRUE(out.ConvertFrom(
        MakeImage(3, 2, TEX_ARGB8888 | TEX_ALPHA, {clear, clear, clear, {}, {128, 128, 128, 255}, {}})));
    EXPECT_EQ(BytesOf(out), (Bytes{0, 0, 0, 0, 1, 0}));
}

TEST(TexImage, LargeBlocksAreSummedAsFloatsAre)
{
    // 251 is added as 248 where floats are 8 apart, and the last case sums up to there.
    for (const int side : {256, 257, 1024}) {
        const Pixels pixels(static_cast<std::size_t>(side * side), {251, 253, 255, 1});
        const CTexImage src = MakeImage(side, side, TEX_ARGB8888, pixels);
        CTexImage fast;
        CTexImage expected = MakeImage(1, 1, TEX_ARGB8888, {});
        plain::Stretch(expected, src);
        ASSERT_TRUE(fast.StretchFrom(1, 1, src));
        EXPECT_EQ(BytesOf(fast), BytesOf(expected)) << side;
        EXPECT_EQ(PixelAt(fast, 0, 0).blue == 251, side < 1024);
    }
}

TEST(ReduceColours, EqualsThePlainForm)
{
    std::mt19937 random(13);
    // From all colours to a few, among them those at the ends of the boxes.
    constexpr std::uint32_t masks[] = {0xffffffff, 0x001f1f1f, 0x00ff0101,
                                       0x000303ff, 0x00f00000, 0x00c0c0c0};
    for (int run = 0; run < 60; ++run) {
        const std::uint32_t ones = run % 12 < 6 ? 0 : 0x00fff8f8;
        std::vector<std::uint32_t> pixels(1 + random() % 3000);
        for (std::uint32_t& pixel : pixels)
            pixel = (static_cast<std::uint32_t>(random()) & masks[run % 6]) ^ ones;
        const int most = 1 + static_cast<int>(random() % (run % 2 ? 300 : 20));
        Bytes fast(4 * static_cast<std::size_t>(most));
        Bytes expected(fast.size());
        const int count = static_cast<int>(pixels.size());
        ASSERT_EQ(ReduceColours(pixels.data(), count, fast.data(), most),
                  plain::Reducer(pixels.data(), count).Reduce(expected.data(), most));
        ASSERT_EQ(fast, expected) << run;
    }
}

} // namespace
