#include "lib/textures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "../platform/temp_roots.h"
#include "../support/plain_image.h"
#include "lib/tffile.h"

namespace
{

std::string Little(std::uint64_t value, int bytes)
{
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>(value >> (8 * i) & 0xff);
    return text;
}

/// What can be wrong with a bitmap file.
struct BmpShape {
    std::int32_t width = 3;
    std::int32_t height = 2;
    unsigned bits = 24;
    unsigned infoBytes = 40;
    bool fileHeader = true;
};

/// The two rows of a picture of three pixels, the lower one first, each padded with three bytes.
const std::string ROWS = std::string("\x01\x02\x03\x04\x05\x06\x07\x08\x09\xee\xee\xee", 12) +
                         std::string("\x11\x12\x13\x14\x15\x16\x17\x18\x19\xee\xee\xee", 12);

std::string MakeBmp(const BmpShape& shape, const std::string& rows = ROWS)
{
    std::string info = Little(shape.infoBytes, 4);
    const int side = shape.infoBytes == 12 ? 2 : 4;
    info += Little(static_cast<std::uint32_t>(shape.width), side);
    info += Little(static_cast<std::uint32_t>(shape.height), side);
    info += Little(1, 2) + Little(shape.bits, 2);
    info.resize(shape.infoBytes);
    const std::size_t size = 14 + info.size() + rows.size();
    const std::string header = "BM" + Little(size, 4) + Little(0, 4) + Little(14 + info.size(), 4);
    return (shape.fileHeader ? header : "") + info + rows;
}

std::vector<std::uint8_t> BytesOf(const CTexImage& image)
{
    return {image.GetPixelData(), image.GetPixelData() + image.GetDataSize()};
}

/// Of pixels of two bytes.
std::vector<std::uint8_t> HighBytesChanged(std::vector<std::uint8_t> bytes, std::uint8_t mask)
{
    for (std::size_t i = 1; i < bytes.size(); i += 2)
        bytes[i] = static_cast<std::uint8_t>(bytes[i] ^ mask);
    return bytes;
}

class TextureFiles : public testing::Test
{
  protected:
    CTfFile Open(const char* name)
    {
        CTfFile file;
        file.m_sName = name;
        EXPECT_TRUE(file.LoadHeader()) << name;
        return file;
    }
    TempRoots roots;
    std::mt19937 random{21};
};

TEST_F(TextureFiles, BitmapsAreReadFromTheBottom)
{
    const std::vector<std::uint8_t> pixels = {0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0x19,
                                              1,    2,    3,    4,    5,    6,    7,    8,    9};
    // An info block of 40 bytes is looked for first, however short the file.
    const std::string files[] = {MakeBmp({}),
                                 MakeBmp({}) + "trailing",
                                 MakeBmp({}, ROWS.substr(0, 21)),
                                 MakeBmp({3, 2, 24, 12, true}) + "trailing",
                                 MakeBmp({3, 2, 24, 12, false}) + "trailing",
                                 MakeBmp({3, 2, 24, 40, false})};
    for (const std::string& file : files) {
        roots.Put("game/a.bmp", file);
        CTexImage image;
        ASSERT_TRUE(image.LoadBmp("a.bmp")) << file.size();
        EXPECT_EQ(image.GetFormat(), TEX_RGB888 | TEX_VALID);
        EXPECT_EQ(BytesOf(image), pixels) << file.size();
    }
    // The place of the pixels that the header tells isn't asked for.
    std::string gap = MakeBmp({}, "gap!" + ROWS);
    gap.replace(10, 4, Little(58, 4));
    roots.Put("game/a.bmp", gap);
    CTexImage image;
    ASSERT_TRUE(image.LoadBmp("a.bmp"));
    EXPECT_EQ(plain::PixelAt(image, 0, 1), (TexPixel{'g', 'a', 'p', 0xff}));
    // More rows than are read at once, without the last padding.
    std::string rows;
    for (int y = 0; y < 6000; ++y)
        rows += Little(static_cast<std::uint64_t>(y), 8) + "-pad";
    roots.Put("game/a.bmp", MakeBmp({3, 6000}, rows.substr(0, rows.size() - 3)));
    ASSERT_TRUE(image.LoadBmp("a.bmp"));
    for (int y = 0; y < 6000; ++y) {
        const TexPixel pixel = plain::PixelAt(image, 0, 5999 - y);
        ASSERT_EQ(pixel.blue + 256 * pixel.green, y);
    }
}

TEST_F(TextureFiles, BitmapsThatAreRefused)
{
    const std::string whole = MakeBmp({});
    std::vector<std::string> files = {MakeBmp({3, -2}),
                                      MakeBmp({-3, 2}),
                                      MakeBmp({0, 2}),
                                      MakeBmp({3, 0}),
                                      MakeBmp({3, 2, 8}),
                                      MakeBmp({3, 2, 32}),
                                      MakeBmp({3, 2, 24, 124}),
                                      MakeBmp({3, 2, 24, 39}),
                                      MakeBmp({16385, 1}, std::string(49156, 'x')),
                                      MakeBmp({16384, 16384}),
                                      MakeBmp({0x7fffffff, 0x7fffffff}),
                                      MakeBmp({0x40000001, 4})};
    for (std::size_t size = 0; size < whole.size() - 3; ++size)
        files.push_back(whole.substr(0, size));
    for (const std::string& bytes : files) {
        roots.Put("game/a.bmp", bytes);
        CTexImage image;
        EXPECT_FALSE(image.LoadBmp("a.bmp")) << bytes.size();
        EXPECT_TRUE(image.IsEmpty());
        EXPECT_FALSE(ConvertToTexture("a.bmp", "a.tf", 0, 0));
    }
    CTexImage image;
    EXPECT_FALSE(image.LoadBmp("missing.bmp"));
    EXPECT_FALSE(image.LoadBmp(nullptr));
    EXPECT_EQ(roots.Get("user/a.tf"), "(none)");
}

TEST_F(TextureFiles, APictureBecomesATexture)
{
    // Full blue and green below; full red above, which hands 3 on to its neighbour: 7, 3, 10.
    roots.Put("game/a.bmp", MakeBmp({2, 2}, std::string("\xff\0\0\0\xff\0??\0\0\xff\x07\x03\x07??", 16)));
    ASSERT_TRUE(ConvertToTexture("a.bmp", "b.tf", 0, 0));
    const std::string header = std::string(5, '\0') + std::string("\0\1\0", 3) + Little(2, 4) + Little(2, 4);
    EXPECT_EQ(roots.Get("user/b.tf"), header + std::string("\x00\xf8\x00\x08\x1f\x00\xe0\x07", 8));
    ASSERT_TRUE(ConvertToTexture("a.bmp", "b.tf", 1, 1));
    EXPECT_EQ(Open("b.tf").m_nWidth, 1);
    EXPECT_FALSE(ConvertToTexture("a.bmp", "b.tf", -1, 1));
    // Nothing is made that the reader wouldn't take.
    EXPECT_FALSE(ConvertToTexture("a.bmp", "c.tf", 16385, 1));
    EXPECT_FALSE(ConvertToTexture("a.bmp", "c.tf", 1, 16385));
    EXPECT_FALSE(SaveAsTexture(plain::RandomImage(16385, 1, TEX_PALETTE8, random), "c.tf"));
    EXPECT_EQ(roots.Get("user/c.tf"), "(none)");
    EXPECT_TRUE(SaveAsTexture(plain::RandomImage(16384, 1, TEX_PALETTE8, random), "c.tf"));
    EXPECT_EQ(Open("c.tf").m_nWidth, 16384);
    EXPECT_FALSE(ConvertToTexture("missing.bmp", "b.tf", 1, 1));
    EXPECT_FALSE(SaveAsTexture(CTexImage(), "b.tf"));
}

TEST_F(TextureFiles, EveryLevelComesFromTheFirst)
{
    for (const std::uint32_t format : {std::uint32_t{TEX_RGB888}, TEX_ARGB8888 | TEX_ALPHA}) {
        const CTexImage picture = plain::RandomImage(64, 32, format, random);
        ASSERT_TRUE(SaveAsTexture(picture, "p.tf"));
        const bool alpha = picture.HasAlpha();
        CTfFile file = Open("p.tf");
        EXPECT_EQ(file.m_nCount16, 5);
        EXPECT_EQ(file.m_nCount8, 0);
        std::string expected =
            Little(0, 5) + Little(alpha ? 2 : 0, 1) + Little(5, 2) + Little(64, 4) + Little(32, 4);
        CTexImage full;
        ASSERT_TRUE(full.Alloc(64, 32, TEX_ARGB8888 | (format & TEX_ALPHA)));
        ASSERT_TRUE(full.ConvertFrom(picture));
        for (int i = 0; i < 5; ++i) {
            CTexImage level;
            CTexImage work;
            ASSERT_TRUE(work.Alloc(64 >> i, 32 >> i, full.GetFormat()));
            ASSERT_TRUE(
                level.Alloc(64 >> i, 32 >> i, alpha ? TEX_ARGB4444 | TEX_ALPHA : std::uint32_t{TEX_RGB565}));
            if (i > 0)
                plain::Shrink(work, full, i);
            plain::Diffuse(level, i > 0 ? work : full);
            file.m_nLevel = i;
            ASSERT_TRUE(file.Load());
            EXPECT_EQ(BytesOf(file.m_Image), BytesOf(level)) << i;
            EXPECT_EQ(file.m_Image.GetFormat(), level.GetFormat() | TEX_VALID);
            for (std::uint8_t* p = level.GetPixelData() + 1;
                 alpha && p < level.GetPixelData() + level.GetDataSize(); p += 2)
                *p ^= 0xf0;
            expected.append(reinterpret_cast<const char*>(level.GetPixelData()), level.GetDataSize());
        }
        EXPECT_TRUE(roots.Get("user/p.tf") == expected);
    }
}

TEST_F(TextureFiles, BothChainsAreWrittenAndRead)
{
    const struct {
        std::uint32_t format16;
        std::uint8_t fileFormat;
        std::uint32_t alpha;  // of what is loaded
        std::uint8_t written; // the bits that Write inverts, in memory and in the file
        std::uint8_t loaded;  // those that aren't as they were when they have been written and loaded
    } rows[] = {{TEX_RGB565, 0, 0, 0, 0},
                {TEX_ARGB1555 | TEX_ALPHA, 1, TEX_ALPHA, 0x80, 0},
                {TEX_ARGB4444 | TEX_ALPHA, 2, TEX_ALPHA, 0xf0, 0},
                {TEX_ARGB4444, 2, TEX_ALPHA, 0, 0xf0}};
    for (const auto& row : rows) {
        CTexImage levels16[2] = {plain::RandomImage(6, 5, row.format16, random),
                                 plain::RandomImage(3, 2, row.format16, random)};
        const CTexImage levels8[2] = {plain::RandomImage(6, 5, TEX_PALETTE8, random),
                                      plain::RandomImage(3, 2, TEX_PALETTE8, random)};
        const std::vector<std::uint8_t> before[2] = {BytesOf(levels16[0]), BytesOf(levels16[1])};
        CTfFile file;
        file.m_sName = "sub\\t.tf";
        std::filesystem::remove(roots.folder / "user/sub/t.tf");
        EXPECT_FALSE(file.Exists() || file.LoadHeader() || file.Load());
        ASSERT_TRUE(file.Write(levels16, levels8, 2, 2));
        EXPECT_TRUE(file.Exists());
        const std::string bytes = roots.Get("user/sub/t.tf");
        ASSERT_EQ(bytes.size(), 16u + 60 + 12 + 1024 + 30 + 6);
        EXPECT_EQ(BytesOf(levels16[1]), HighBytesChanged(before[1], row.written));
        EXPECT_TRUE(std::equal(levels16[1].GetPixelData(), levels16[1].GetPixelData() + 12,
                               reinterpret_cast<const std::uint8_t*>(bytes.data()) + 76));
        EXPECT_EQ(bytes[16 + 72], static_cast<char>(levels8[0].GetPaletteData()[2])) << "red first";
        std::uint8_t format = 99;
        ASSERT_TRUE(file.LoadHeader(&format));
        EXPECT_EQ(format, row.fileFormat);
        for (int level = 0; level < 2; ++level) {
            file.m_nLevel = level;
            file.m_b16Bit = true;
            ASSERT_TRUE(file.Load());
            EXPECT_EQ(BytesOf(file.m_Image), HighBytesChanged(before[level], row.loaded));
            EXPECT_EQ(file.m_Image.GetFormat(), row.format16 | row.alpha | TEX_VALID);
            file.m_b16Bit = false;
            ASSERT_TRUE(file.Load());
            EXPECT_EQ(BytesOf(file.m_Image), BytesOf(levels8[level]));
            EXPECT_EQ(file.m_Image.GetFormat(), TEX_PALETTE8 | row.alpha | TEX_VALID);
            EXPECT_TRUE(std::equal(file.m_Image.GetPaletteData(),
                                   file.m_Image.GetPaletteData() + CTexImage::PALETTE_BYTES,
                                   levels8[0].GetPaletteData()));
        }
        const std::unique_ptr<CTexFile> clone = file.Clone();
        EXPECT_EQ(clone->m_Image.GetPixelData(), file.m_Image.GetPixelData());
        const std::vector<std::uint8_t> kept = BytesOf(file.m_Image);
        file.m_Image.Free();
        EXPECT_EQ(BytesOf(clone->m_Image), kept);

        // Shortened at every byte: what is left of the chains can be read, and no more.
        for (std::size_t size = bytes.size(); size-- > 0;) {
            std::filesystem::resize_file(roots.folder / "user/sub/t.tf", size);
            file.m_nLevel = 1;
            file.m_b16Bit = true;
            EXPECT_EQ(file.Load(), size >= 16 + 72) << size;
            file.m_b16Bit = false;
            EXPECT_FALSE(file.Load()) << size;
        }
    }
}

TEST_F(TextureFiles, TheSmallChainStandsAlone)
{
    const CTexImage levels[2] = {plain::RandomImage(6, 5, TEX_PALETTE8 | TEX_ALPHA, random),
                                 plain::RandomImage(3, 2, TEX_PALETTE8 | TEX_ALPHA, random)};
    CTfFile file;
    file.m_sName = "t.tf";
    ASSERT_TRUE(file.Write(nullptr, levels, 0, 2));
    EXPECT_EQ(roots.Get("user/t.tf").substr(0, 16),
              std::string(5, '\0') + std::string("\0\0\2", 3) + Little(6, 4) + Little(5, 4));
    ASSERT_TRUE(file.LoadHeader());
    file.m_nLevel = 1;
    EXPECT_FALSE(file.Load()) << "there is no other chain";
    file.m_b16Bit = false;
    ASSERT_TRUE(file.Load());
    EXPECT_EQ(BytesOf(file.m_Image), BytesOf(levels[1]));
    EXPECT_EQ(file.m_Image.GetFormat(), TEX_PALETTE8 | TEX_VALID);
}

TEST_F(TextureFiles, HeadersAndLevelsThatAreRefused)
{
    CTexImage level = plain::RandomImage(4, 4, TEX_RGB565, random);
    CTfFile written;
    written.m_sName = "t.tf";
    ASSERT_TRUE(written.Write(&level, nullptr, 1, 0));
    ASSERT_TRUE(written.LoadHeader());
    const std::string bytes = roots.Get("user/t.tf");
    const struct {
        std::size_t at;
        std::uint32_t value;
    } headers[] = {{5, 3}, {5, 255}, {8, 0}, {8, 16385}, {8, 0xffffffff}, {12, 0}, {12, 0x80000000}};
    for (const auto& row : headers) {
        std::string broken = bytes;
        broken.replace(row.at, row.at == 5 ? 1 : 4, Little(row.value, row.at == 5 ? 1 : 4));
        roots.Put("user/t.tf", broken);
        EXPECT_FALSE(written.LoadHeader()) << row.at << " " << row.value;
    }
    roots.Put("user/t.tf", bytes);
    constexpr int most = 0x7fffffff;
    const struct {
        int width, height, level, count16, count8;
        bool b16Bit;
    } members[] = {{4, 4, -1, 1, 0, true},
                   {4, 4, 1, 1, 0, true},
                   {4, 4, 1, 2, 0, true},
                   {4, 4, 0, 0, 0, true},
                   {4, 4, 0, 1, 0, false},
                   {4, 4, 0, 1, 1, false},
                   {0, 4, 0, 1, 0, true},
                   {4, -4, 0, 1, 0, true},
                   {most, most, 0, 1, 0, true},
                   {16384, 16384, 0, 1, 0, true},
                   {4, 4, most - 1, most, most, true},
                   {4, 4, 0, -most, most, false}};
    for (const auto& row : members) {
        CTfFile file;
        file.m_sName = "t.tf";
        file.m_nWidth = row.width;
        file.m_nHeight = row.height;
        file.m_nLevel = row.level;
        file.m_nCount16 = row.count16;
        file.m_nCount8 = row.count8;
        file.m_b16Bit = row.b16Bit;
        EXPECT_FALSE(file.Load()) << row.width << " " << row.level << " " << row.count16;
        EXPECT_TRUE(file.m_Image.IsEmpty());
    }
    EXPECT_TRUE(written.Load());
}

TEST_F(TextureFiles, WhatCantBeWritten)
{
    CTexImage wide = plain::RandomImage(4, 4, TEX_RGB888, random);
    CTexImage good = plain::RandomImage(4, 4, TEX_RGB565, random);
    CTfFile file;
    file.m_sName = "t.tf";
    EXPECT_FALSE(file.Write(&wide, nullptr, 1, 0));
    EXPECT_FALSE(file.Write(&good, &good, 1, 1));
    EXPECT_FALSE(file.Write(&good, nullptr, 0, 0));
    EXPECT_FALSE(file.Write(nullptr, nullptr, 1, 0));
    EXPECT_FALSE(file.Write(&good, nullptr, 256, 0));
    EXPECT_FALSE(file.Write(&good, nullptr, -1, 0));
    EXPECT_FALSE(file.Exists());
    file.m_sName = "..\\t.tf";
    EXPECT_FALSE(file.Write(&good, nullptr, 1, 0));
    EXPECT_FALSE(SaveAsTexture(wide, "/"));
    EXPECT_FALSE(SaveAsTexture(wide, nullptr));
    if (std::filesystem::exists("/dev/full")) {
        EXPECT_FALSE(SaveAsTexture(wide, "/dev/full")) << "no room";
    }
    CTexFile none;
    EXPECT_FALSE(none.Load());
    EXPECT_EQ(none.Clone(), nullptr);
}

} // namespace
