// BMP files read, TGA files made of them, and what comes from unknown hands.

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "../platform/temp_roots.h"
#include "../support/full_disk.h"
#include "../support/rows.h"
#include "bmp_builder.h"
#include "lib/bmpfile.h"
#include "lib/tgafile.h"

namespace
{

using Bytes = std::vector<std::uint8_t>;

class PictureFiles : public testing::Test
{
  protected:
    bool LoadBmp(CBmpFile& file, const std::string& content)
    {
        roots.Put("user/in.bmp", content);
        return file.Load("in.bmp");
    }
    bool LoadTga(CTgaFile& file, const std::string& content)
    {
        roots.Put("user/in.tga", content);
        return file.Load("in.tga");
    }
    std::string Out() const { return roots.Get("user/out.tga"); }

    TempRoots roots;
    CBmpFile bmp;
    CTgaFile tga;
};

std::string TgaHead(std::uint32_t mapType, std::uint32_t mapFirst, std::uint32_t mapLength,
                    std::uint32_t mapDepth, std::uint32_t pixelDepth, std::uint32_t width = 2,
                    std::uint32_t height = 1, std::uint32_t descriptor = 8)
{
    return Le(0, 1) + Le(mapType, 1) + Le(mapType != 0 ? 1 : 2, 1) + Le(mapFirst, 2) + Le(mapLength, 2) +
           Le(mapDepth, 1) + Le(0, 4) + Le(width, 2) + Le(height, 2) + Le(pixelDepth, 1) + Le(descriptor, 1);
}

/// The head and palette of a TGA made of a BMP.
std::string MadeHead(std::uint32_t colours, std::uint32_t depth, std::uint32_t width, std::uint32_t height)
{
    std::string head =
        TgaHead(colours != 0 ? 1 : 0, 0, colours, depth == 32 ? 32 : 24, depth, width, height, 0);
    for (std::uint32_t i = 0; i < colours; ++i)
        head += Le(i, 1) + Le(i + 1, 1) + Le(i + 2, 1);
    return head;
}

TEST_F(PictureFiles, BmpRowsOfAllWidthsAndDepths)
{
    for (const std::uint32_t bits : {4U, 8U, 24U}) {
        for (const std::uint32_t width : {0U, 1U, 3U, 4U, 7U, 8U}) {
            SCOPED_TRACE(testing::Message() << bits << " bits, width " << width);
            const BmpBuilder builder = {.width = width,
                                        .height = 5,
                                        .bits = bits,
                                        .colours = bits == 24 ? 0U : 3U,
                                        .infoSize = width % 2 == 0 ? 40U : 124U};
            ASSERT_TRUE(LoadBmp(bmp, builder.Bytes()));
            EXPECT_EQ(bmp.GetColorCount(), static_cast<int>(builder.colours));
            EXPECT_EQ(bmp.GetPaletteEntry(2), bits == 24 ? CBmpFile::Colour() : (CBmpFile::Colour{2, 3, 4}));
            Bytes row(width * (bits == 24 ? 3 : 1));
            Bytes all(row.size() * 5);
            bits == 8 ? bmp.ReadAll8(all.data()) : bits == 24 ? bmp.ReadAll24(all.data()) : void();
            for (const std::uint32_t y : {4U, 0U, 3U, 1U, 2U}) {
                bits == 4   ? bmp.ReadRow4(static_cast<int>(y), row.data())
                : bits == 8 ? bmp.ReadRow8(static_cast<int>(y), row.data())
                            : bmp.ReadRow24(static_cast<int>(y), row.data());
                for (std::uint32_t i = 0; i < row.size(); ++i) {
                    const std::uint8_t byte = builder.PixelByte(y, bits == 4 ? i / 2 : i);
                    EXPECT_EQ(row[i], bits != 4 ? byte : i % 2 == 0 ? byte >> 4 : byte & 15) << y << ' ' << i;
                    EXPECT_TRUE(bits == 4 || all[row.size() * y + i] == row[i]) << y << ' ' << i;
                }
            }
        }
    }
}

TEST_F(PictureFiles, BmpsThatAreRefused)
{
    for (const BmpBuilder& builder :
         {BmpBuilder{.magic = "MB"}, BmpBuilder{.lengthMore = 0xffffffff}, BmpBuilder{.planes = 2},
          BmpBuilder{.compression = 1}, BmpBuilder{.width = 16385}, BmpBuilder{.height = 0xfffffffe},
          BmpBuilder{.offsetMore = 17}, BmpBuilder{.offsetMore = 0xffffffff},
          BmpBuilder{.offsetMore = 0xffffffff - 53}, BmpBuilder{.bits = 8, .colours = 257}}) {
        ASSERT_TRUE(LoadBmp(bmp, BmpBuilder().Bytes()));
        EXPECT_FALSE(LoadBmp(bmp, builder.Bytes())) << testing::PrintToString(builder.Bytes());
        EXPECT_FALSE(bmp.IsOpen() || bmp.IsLoaded());
    }
    EXPECT_FALSE(LoadBmp(bmp, BmpBuilder().Bytes().replace(14, 4, Le(0xfffffff2, 4)))) << "the header's size";
    // What follows a short header counts as the palette.
    EXPECT_TRUE(LoadBmp(bmp, BmpBuilder().Bytes().replace(14, 4, Le(12, 4))));
    EXPECT_EQ(bmp.GetColorCount(), 7);
    EXPECT_TRUE(LoadBmp(bmp, BmpBuilder{.bits = 8, .colours = 256}.Bytes()));
    EXPECT_EQ(bmp.GetPaletteEntry(255), (CBmpFile::Colour{255, 0, 1}));
    EXPECT_EQ(bmp.GetPaletteEntry(256), CBmpFile::Colour());
    std::filesystem::resize_file(roots.folder / "user/in.bmp", 0x100000000); // a hole, which takes no room
    EXPECT_THROW(bmp.Load("in.bmp"), CFileIO::FileException);
    EXPECT_FALSE(bmp.IsOpen() || bmp.IsLoaded());
}

TEST_F(PictureFiles, AFileCutAnywhereIsRefusedOrTold)
{
    const BmpBuilder builder = {.bits = 8, .colours = 2};
    const std::string whole = builder.Bytes();
    Bytes pixels(4);
    for (std::size_t length = 6; length < whole.size(); ++length) {
        SCOPED_TRACE(length);
        std::string cut = whole.substr(0, length);
        EXPECT_FALSE(LoadBmp(bmp, cut));
        cut.replace(2, 4, Le(static_cast<std::uint32_t>(length), 4)); // the header lies along
        ASSERT_EQ(LoadBmp(bmp, cut), length >= builder.Offset());
        if (!bmp.IsLoaded() || length >= whole.size() - 2)
            continue; // the padding isn't read
        EXPECT_THROW(bmp.ReadRow8(1, pixels.data()), CFileIO::FileException);
        EXPECT_THROW(bmp.ReadAll8(pixels.data()), CFileIO::FileException);
        EXPECT_THROW(tga.FromBmp(bmp, "out.tga"), CFileIO::FileException);
        EXPECT_EQ(Out(), "(none)");
    }
    ASSERT_TRUE(LoadBmp(bmp, BmpBuilder{.width = 1, .bits = 32}.Bytes()));
    EXPECT_THROW(bmp.ReadRow8(0, pixels.data()), CFileIO::FileException) << "a depth without rows";
    EXPECT_THROW(tga.FromBmp(bmp, "out.tga"), std::runtime_error);
    EXPECT_EQ(Out(), "(none)");
    EXPECT_DEATH(bmp.ReadRow24(2, pixels.data()),
                 "Assertion failed: index < m_InfoHeader.dwHeight, file bmpfile");
    bmp.Close();
    EXPECT_DEATH(tga.FromBmp(bmp, "out.tga"), "m_hFile != NULL");
    EXPECT_DEATH(CBmpFile().ReadAll8(pixels.data()), "m_IsLoad");
}

TEST_F(PictureFiles, TgasOfBmps)
{
    // Three pixels in each of two rows: the bytes 1 to 9 and 13 to 21.
    const std::string rows = "\1\2\3\4\5\6\7\10\11\15\16\17\20\21\22\23\24\25";
    ASSERT_TRUE(LoadBmp(bmp, BmpBuilder{.width = 3}.Bytes()));
    ASSERT_TRUE(tga.FromBmp(bmp, ""));
    EXPECT_EQ(roots.Get("user/in.tga"), MadeHead(0, 24, 3, 2) + rows);
    ASSERT_TRUE(tga.FromBmp32(bmp, "folder.x\\out"));
    EXPECT_EQ(roots.Get("user/folder.x/out"),
              MadeHead(0, 32, 3, 2) +
                  "\1\2\3\xff\4\5\6\xff\7\10\11\xff\15\16\17\xff\20\21\22\xff\23\24\25\xff");
    // The header goes by the palette, the rows by the depth.
    ASSERT_TRUE(LoadBmp(bmp, BmpBuilder{.width = 3, .colours = 1}.Bytes()));
    ASSERT_TRUE(tga.FromBmp(bmp, "out.tga") && tga.FromBmp32(bmp, "wide.tga"));
    EXPECT_EQ(Out(), MadeHead(1, 8, 3, 2) + rows);
    EXPECT_EQ(roots.Get("user/wide.tga"), roots.Get("user/folder.x/out")) << "no palette";
    ASSERT_TRUE(LoadBmp(bmp, BmpBuilder{.width = 3, .bits = 8}.Bytes()));
    ASSERT_TRUE(tga.FromBmp(bmp, "out.tga"));
    EXPECT_EQ(Out(), MadeHead(0, 24, 3, 2) + "\1\2\3\5\6\7");
}

TEST_F(PictureFiles, TgasAreTakenUpToTheirPixelsAndWidened)
{
    char at = 0;
    for (const std::string& head : {TgaHead(1, 4, 2, 24, 8) + "skip" + "abcdef", TgaHead(0, 4, 2, 32, 24)}) {
        ASSERT_TRUE(LoadTga(tga, head + "!"));
        EXPECT_EQ(tga.Read(&at, 1), 1u);
        EXPECT_EQ(at, '!') << "it stands at the pixels";
    }
    const std::string palette(768, 'x');
    EXPECT_TRUE(LoadTga(tga, TgaHead(1, 0, 256, 24, 8) + palette));
    EXPECT_FALSE(LoadTga(tga, TgaHead(1, 0, 256, 24, 8) + palette.substr(1)));
    for (const std::string& head :
         {TgaHead(1, 0, 257, 24, 8), TgaHead(2, 0, 1, 24, 8), TgaHead(0, 0, 0, 0, 24, 16385)})
        EXPECT_FALSE(LoadTga(tga, head + palette + palette));
    try {
        LoadTga(tga, TgaHead(1, 0, 1, 32, 8) + "abcd");
        ADD_FAILURE();
    } catch (const std::exception& error) {
        EXPECT_STREQ(error.what(), "глубина цвета в палитре != 24");
    }
    EXPECT_FALSE(tga.IsOpen());

    CTgaFile source;
    ASSERT_TRUE(LoadTga(source, TgaHead(1, 0, 1, 24, 24) + "pqrabcdef"));
    ASSERT_TRUE(tga.From24To32(source, "out.tga"));
    EXPECT_EQ(Out(), TgaHead(1, 0, 1, 32, 32) + std::string("abc\0def\0", 8))
        << "its palette is told, but gone";
    const std::string narrow = TgaHead(0, 0, 0, 24, 24) + "abcde";
    for (const std::string& other : {"\1" + narrow.substr(1), narrow.substr(0, 2) + "\12" + narrow.substr(3)})
        EXPECT_FALSE(LoadTga(source, other + "f") && tga.From24To32(source, "out.tga"));
    ASSERT_TRUE(LoadTga(source, narrow));
    EXPECT_THROW(tga.From24To32(source, "out.tga"), CFileIO::FileException);
    EXPECT_EQ(Out(), "(none)");
}

TEST_F(PictureFiles, PicturesAreImportedInTheRightSizeAlone)
{
    const auto made = [](std::uint32_t bits, std::uint32_t width = 2, std::uint32_t height = 1) {
        return BmpBuilder{.width = width, .height = height, .bits = bits, .colours = bits <= 8 ? 2U : 0}
            .Bytes();
    };
    const std::string deep = TgaHead(0, 0, 0, 0, 32) + "abcdefgh";
    const std::string mapped = TgaHead(1, 0, 1, 24, 8) + "abc" + "xy" + "and a tail";
    const std::string narrow = TgaHead(0, 0, 0, 24, 24) + "abcdef";
    // No target: refused.
    const Rows<const char*, std::string, std::string> rows = {
        {"8 bits", made(8), MadeHead(2, 8, 2, 1) + "\1\2"},
        {"4 bits", made(4), MadeHead(2, 8, 2, 1) + std::string("\0\1", 2)},
        {"24 bits", made(24), MadeHead(0, 32, 2, 1) + "\1\2\3\xff\4\5\6\xff"},
        {"32 bits", made(32), ""},
        {"wider", made(24, 3), ""},
        {"higher", made(24, 2, 2), ""},
        {"TGA of 32 bits", deep, deep},
        {"TGA with a palette", mapped, mapped},
        {"TGA of 24 bits", narrow, TgaHead(0, 0, 0, 32, 32) + std::string("abc\0def\0", 8)},
        {"TGA of 16 bits", TgaHead(0, 0, 0, 0, 16) + "abcd", ""},
        {"TGA, wider", std::string(deep).replace(12, 1, "\3"), ""},
        {"nothing", "", ""},
    };
    roots.Put("user/out.tga.tmp", "another's");
    for (const auto& [name, source, target] : rows) {
        SCOPED_TRACE(name);
        roots.Put("game/faces/a.bmp", source);
        roots.Put("user/out.tga", "old");
        EXPECT_EQ(CTgaFile::ImportPicture("faces\\a.bmp", "out.tga", 2, 1), !target.empty());
        EXPECT_EQ(Out(), target.empty() ? "old" : target);
        EXPECT_EQ(roots.Get("user/out.tga.tmp"), "another's");
        EXPECT_EQ(roots.Get("user/out.tga.tmp2"), "(none)");
    }
    roots.Put("user/own.tga", deep);
    EXPECT_FALSE(CTgaFile::ImportPicture("own.tga", "OWN.tga", 2, 1)) << "onto itself";
    EXPECT_FALSE(CTgaFile::ImportPicture("own.tga", "own.tga\\out.tga", 2, 1)) << "a folder that can't be";
    EXPECT_EQ(roots.Get("user/own.tga"), deep);
}

TEST_F(PictureFiles, AFullDiskLeavesWhatWasThere)
{
    roots.Put("user/in.tga", TgaHead(0, 0, 0, 0, 32) + std::string(20000, 'x'));
    roots.Put("user/old.tga", "old");
    ASSERT_TRUE(LoadBmp(bmp, BmpBuilder{.width = 100, .height = 150}.Bytes()));
    {
        const seawarden_test::FullDisk full(10000);
        EXPECT_THROW(tga.FromBmp(bmp, "out.tga"), CFileIO::FileException);
        EXPECT_THROW(CTgaFile::ImportPicture("in.bmp", "old.tga", 100, 150), CFileIO::FileException);
        EXPECT_FALSE(CTgaFile::ImportPicture("in.tga", "old.tga", 2, 1));
    }
    EXPECT_EQ(Out(), "(none)");
    EXPECT_EQ(roots.Get("user/old.tga"), "old");
    EXPECT_EQ(roots.Get("user/old.tga.tmp"), "(none)");
    EXPECT_TRUE(CTgaFile::ImportPicture("in.bmp", "old.tga", 100, 150));
}

} // namespace
