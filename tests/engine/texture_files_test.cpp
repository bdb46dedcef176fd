#include "lib/textures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "../platform/temp_roots.h"
#include "../support/plain_image.h"
#include "../support/rows.h"
#include "bmp_builder.h"
#include "lib/tffile.h"

namespace
{

using Bytes = std::vector<std::uint8_t>;

Bytes BytesOf(const CTexImage& image)
{
    return {image.GetPixelData(), image.GetPixelData() + image.GetDataSize()};
}

Bytes PaletteOf(const CTexImage& image)
{
    return {image.GetPaletteData(), image.GetPaletteData() + CTexImage::PALETTE_BYTES};
}

/// Of pixels of two bytes.
Bytes HighBytesChanged(Bytes bytes, std::uint8_t mask)
{
    for (std::size_t i = 1; i < bytes.size(); i += 2)
        bytes[i] = static_cast<std::uint8_t>(bytes[i] ^ mask);
    return bytes;
}

std::string TfHead(std::uint32_t format, std::uint32_t count16, std::uint32_t count8, std::uint32_t width,
                   std::uint32_t height)
{
    return Le(0, 4) + Le(0, 1) + Le(format, 1) + Le(count16, 1) + Le(count8, 1) + Le(width, 4) +
           Le(height, 4);
}

class TextureFiles : public testing::Test
{
  protected:
    TextureFiles() { file.m_sName = "t.tf"; }
    bool LoadBmp(const std::string& content)
    {
        roots.Put("game/a.bmp", content);
        return picture.LoadBmp("a.bmp");
    }
    CTexImage Random(int w, int h, std::uint32_t format) { return plain::RandomImage(w, h, format, random); }

    TempRoots roots;
    std::mt19937 random{21};
    CTexImage picture;
    CTfFile file;
};

TEST_F(TextureFiles, BitmapsAreReadFromTheBottom)
{
    const BmpBuilder builder = {.width = 3};
    const BmpBuilder shorter = {.width = 3, .infoSize = 12};
    const std::string whole = builder.Bytes();
    // An info block of 40 bytes is looked for first, however short the file. The place of the pixels that the
    // header tells isn't asked for.
    for (const std::string& content :
         {whole, whole + "trailing", whole.substr(0, whole.size() - 3), whole.substr(14),
          shorter.Bytes() + "trailing", shorter.Bytes().substr(14) + "trailing",
          BmpBuilder{.width = 3, .offsetMore = 4}.Bytes()}) {
        ASSERT_TRUE(LoadBmp(content)) << content.size();
        EXPECT_EQ(picture.GetFormat(), TEX_RGB888 | TEX_VALID);
        EXPECT_EQ(BytesOf(picture), (Bytes{13, 14, 15, 16, 17, 18, 19, 20, 21, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
    }
    // More rows than are read at once, without the last padding.
    const BmpBuilder tall = {.width = 3, .height = 6000};
    ASSERT_TRUE(LoadBmp(tall.Bytes().substr(0, tall.Bytes().size() - 3)));
    for (int y = 0; y < 6000; ++y)
        ASSERT_EQ(plain::PixelAt(picture, 0, 5999 - y).blue,
                  tall.PixelByte(static_cast<std::uint32_t>(y), 0));
}

TEST_F(TextureFiles, BitmapsThatAreRefused)
{
    std::vector<std::string> contents = {"", BmpBuilder().Bytes().substr(0, 53),
                                         BmpBuilder().Bytes().substr(0, 67), BmpBuilder{.bits = 8}.Bytes(),
                                         BmpBuilder{.infoSize = 39}.Bytes()};
    for (const std::uint32_t side : {0U, 16385U, 0x40000001U, 0xfffffffeU}) {
        contents.push_back(BmpBuilder{.width = side, .height = 1}.Bytes());
        contents.push_back(BmpBuilder{.width = 1, .height = side}.Bytes());
    }
    for (const std::string& content : contents) {
        EXPECT_FALSE(LoadBmp(content)) << content.size();
        EXPECT_TRUE(picture.IsEmpty());
        EXPECT_FALSE(ConvertToTexture("a.bmp", "a.tf", 0, 0));
    }
    EXPECT_FALSE(picture.LoadBmp("missing.bmp") || picture.LoadBmp(nullptr));
    EXPECT_EQ(roots.Get("user/a.tf"), "(none)");
}

TEST_F(TextureFiles, APictureBecomesATexture)
{
    // Full blue and green below; full red above, which hands 3 on to its neighbour: 7, 3, 10.
    const std::string pixels("\xff\0\0\0\xff\0??\0\0\xff\x07\x03\x07??", 16);
    roots.Put("game/a.bmp", BmpBuilder().Bytes().replace(54, 16, pixels));
    ASSERT_TRUE(ConvertToTexture("a.bmp", "t.tf", 0, 0));
    EXPECT_EQ(roots.Get("user/t.tf"),
              TfHead(0, 1, 0, 2, 2) + std::string("\x00\xf8\x00\x08\x1f\x00\xe0\x07", 8));
    ASSERT_TRUE(ConvertToTexture("a.bmp", "t.tf", 1, 1));
    EXPECT_EQ(roots.Get("user/t.tf").substr(0, 16), TfHead(0, 1, 0, 1, 1));
    // Nothing is made that the reader wouldn't take.
    for (const auto& [w, h] : {std::pair(-1, 1), {16385, 1}, {1, 16385}})
        EXPECT_FALSE(ConvertToTexture("a.bmp", "c.tf", w, h));
    EXPECT_FALSE(SaveAsTexture(Random(16385, 1, TEX_PALETTE8), "c.tf") || SaveAsTexture(CTexImage(), "c.tf"));
    EXPECT_EQ(roots.Get("user/c.tf"), "(none)");
    EXPECT_TRUE(SaveAsTexture(Random(16384, 1, TEX_PALETTE8), "t.tf") && file.LoadHeader());
}

TEST_F(TextureFiles, EveryLevelComesFromTheFirst)
{
    for (const auto& [w, h, levels] : Rows<int, int, int>{{256, 128, 7}, {128, 16, 4}, {1, 1, 1}, {4, 9, 2}})
        EXPECT_EQ(LevelCount(Random(w, h, TEX_PALETTE8)), levels) << w;
    EXPECT_EQ(LevelCount(CTexImage()), 1);

    for (const std::uint32_t alpha : {std::uint32_t{0}, std::uint32_t{TEX_ALPHA}}) {
        picture = Random(64, 32, alpha != 0 ? TEX_ARGB8888 | TEX_ALPHA : std::uint32_t{TEX_RGB888});
        ASSERT_TRUE(SaveAsTexture(picture, "t.tf"));
        std::string expected = TfHead(alpha != 0 ? 2 : 0, 5, 0, 64, 32);
        CTexImage full;
        ASSERT_TRUE(full.Alloc(64, 32, TEX_ARGB8888 | alpha));
        ASSERT_TRUE(full.ConvertFrom(picture));
        for (int i = 0; i < 5; ++i) {
            CTexImage work;
            CTexImage level;
            ASSERT_TRUE(work.Alloc(64 >> i, 32 >> i, full.GetFormat()));
            ASSERT_TRUE(level.Alloc(64 >> i, 32 >> i, alpha | (alpha ? TEX_ARGB4444 : TEX_RGB565)));
            if (i > 0)
                plain::Shrink(work, full, i);
            plain::Diffuse(level, i > 0 ? work : full);
            level.ToggleAlpha();
            expected.append(reinterpret_cast<const char*>(level.GetPixelData()), level.GetDataSize());
        }
        EXPECT_TRUE(roots.Get("user/t.tf") == expected);
    }
}

TEST_F(TextureFiles, BothChainsAreWrittenAndRead)
{
    // The bits that Write inverts, in memory and in the file, and those that aren't as they were when they
    // have been written and loaded.
    const Rows<std::uint32_t, std::uint8_t, std::uint32_t, std::uint8_t, std::uint8_t> rows = {
        {TEX_RGB565, 0, 0, 0, 0},
        {TEX_ARGB1555 | TEX_ALPHA, 1, TEX_ALPHA, 0x80, 0},
        {TEX_ARGB4444 | TEX_ALPHA, 2, TEX_ALPHA, 0xf0, 0},
        {TEX_ARGB4444, 2, TEX_ALPHA, 0, 0xf0}};
    file.m_sName = "sub\\t.tf";
    for (const auto& [format16, fileFormat, alpha, written, loaded] : rows) {
        SCOPED_TRACE(format16);
        CTexImage levels16[2] = {Random(6, 5, format16), Random(3, 2, format16)};
        const CTexImage levels8[2] = {Random(6, 5, TEX_PALETTE8), Random(3, 2, TEX_PALETTE8)};
        const Bytes before[2] = {BytesOf(levels16[0]), BytesOf(levels16[1])};
        ASSERT_TRUE(file.Write(levels16, levels8, 2, 2));
        const std::string bytes = roots.Get("user/sub/t.tf");
        ASSERT_EQ(bytes.size(), 16u + 60 + 12 + 1024 + 30 + 6);
        EXPECT_EQ(bytes.substr(0, 16), TfHead(fileFormat, 2, 2, 6, 5));
        EXPECT_EQ(BytesOf(levels16[1]), HighBytesChanged(before[1], written));
        EXPECT_EQ(Bytes(bytes.begin() + 76, bytes.begin() + 88), BytesOf(levels16[1]));
        EXPECT_EQ(bytes[16 + 72], static_cast<char>(levels8[0].GetPaletteData()[2])) << "red first";
        ASSERT_TRUE(file.LoadHeader());
        for (file.m_nLevel = 0; file.m_nLevel < 2; ++file.m_nLevel) {
            file.m_b16Bit = true;
            ASSERT_TRUE(file.Load());
            EXPECT_EQ(BytesOf(file.m_Image), HighBytesChanged(before[file.m_nLevel], loaded));
            EXPECT_EQ(file.m_Image.GetFormat(), format16 | alpha | TEX_VALID);
            file.m_b16Bit = false;
            ASSERT_TRUE(file.Load());
            EXPECT_EQ(BytesOf(file.m_Image), BytesOf(levels8[file.m_nLevel]));
            EXPECT_EQ(file.m_Image.GetFormat(), TEX_PALETTE8 | alpha | TEX_VALID);
            EXPECT_EQ(PaletteOf(file.m_Image), PaletteOf(levels8[0]));
        }
        const std::unique_ptr<CTexFile> clone = file.Clone();
        file.m_Image.Free();
        EXPECT_EQ(BytesOf(clone->m_Image), BytesOf(levels8[1])) << "a clone keeps the pixels";

        // Shortened at every byte: what is left of the chains can be read, and no more.
        file.m_nLevel = 1;
        for (std::size_t size = bytes.size(); size-- > 0;) {
            std::filesystem::resize_file(roots.folder / "user/sub/t.tf", size);
            file.m_b16Bit = true;
            EXPECT_EQ(file.Load(), size >= 16 + 72) << size;
            file.m_b16Bit = false;
            EXPECT_FALSE(file.Load()) << size;
        }
    }
}

TEST_F(TextureFiles, TheSmallChainStandsAlone)
{
    const CTexImage level = Random(6, 5, TEX_PALETTE8 | TEX_ALPHA);
    ASSERT_TRUE(file.Write(nullptr, &level, 0, 1) && file.LoadHeader());
    EXPECT_EQ(roots.Get("user/t.tf").substr(0, 16), TfHead(0, 0, 1, 6, 5));
    EXPECT_FALSE(file.Load()) << "there is no other chain";
    file.m_b16Bit = false;
    ASSERT_TRUE(file.Load());
    EXPECT_EQ(BytesOf(file.m_Image), BytesOf(level));
    EXPECT_EQ(file.m_Image.GetFormat(), TEX_PALETTE8 | TEX_VALID);
}

TEST_F(TextureFiles, WhatIsRefused)
{
    CTexImage wide = Random(4, 4, TEX_RGB888);
    CTexImage good = Random(4, 4, TEX_RGB565);
    EXPECT_FALSE(file.Write(&wide, nullptr, 1, 0) || file.Write(&good, &good, 1, 1));
    for (const int count : {0, 256, -1})
        EXPECT_FALSE(file.Write(&good, nullptr, count, 0)) << count;
    EXPECT_FALSE(file.Exists() || file.LoadHeader() || file.Load());
    EXPECT_FALSE(SaveAsTexture(wide, "..\\t.tf") || SaveAsTexture(wide, nullptr));
    EXPECT_FALSE(SaveAsTexture(wide, "/dev/full")) << "no room";

    ASSERT_TRUE(file.Write(&good, nullptr, 1, 0) && file.LoadHeader());
    const std::string bytes = roots.Get("user/t.tf");
    for (const std::string& head : {TfHead(3, 1, 0, 4, 4), TfHead(0, 1, 0, 0, 4), TfHead(0, 1, 0, 16385, 4),
                                    TfHead(0, 1, 0, 4, 0x80000000)}) {
        roots.Put("user/t.tf", head + bytes.substr(16));
        EXPECT_FALSE(file.LoadHeader());
    }
    roots.Put("user/t.tf", bytes);
    EXPECT_TRUE(file.Load());
    // By a caller who has its numbers from somewhere else: side, level, levels.
    constexpr int most = 0x7fffffff;
    const Rows<int, int, int> numbers = {{4, -1, 1},   {4, 1, 2},     {4, 0, 0},          {0, 0, 1},
                                         {most, 0, 1}, {16384, 0, 1}, {4, most - 1, most}};
    for (const auto& [side, level, count] : numbers) {
        file.m_Image.Free();
        file.m_nWidth = file.m_nHeight = side;
        file.m_nLevel = level;
        file.m_nCount16 = file.m_nCount8 = count;
        EXPECT_FALSE(file.Load()) << side << ' ' << level << ' ' << count;
        EXPECT_TRUE(file.m_Image.IsEmpty());
    }
}

} // namespace
