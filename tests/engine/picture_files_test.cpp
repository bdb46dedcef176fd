// BMP files read, TGA files made of them, and what comes from unknown hands.

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <csignal>
#include <stdexcept>
#include <string>
#include <vector>

#include "../platform/temp_roots.h"
#include "bmp_builder.h"
#include "lib/bmpfile.h"
#include "lib/tgafile.h"

namespace
{

using Bytes = std::vector<std::uint8_t>;

class PictureFiles : public testing::Test
{
  protected:
    bool LoadBmp(CBmpFile& bmp, const std::string& content)
    {
        roots.Put("user/in.bmp", content);
        return bmp.Load("in.bmp");
    }
    bool LoadTga(CTgaFile& tga, const std::string& content)
    {
        roots.Put("user/in.tga", content);
        return tga.Load("in.tga");
    }
    TempRoots roots;
};

/// Nothing can be written past a file's first `bytes` bytes while this lives: a full disk.
class FullDisk
{
  public:
    explicit FullDisk(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &m_Old);
        const rlimit now = {bytes, m_Old.rlim_max};
        m_OldHandler = std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &now);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_Old);
        std::signal(SIGXFSZ, m_OldHandler);
    }

  private:
    rlimit m_Old = {};
    void (*m_OldHandler)(int) = nullptr;
};

TEST_F(PictureFiles, BmpRowsOfAllWidthsAndDepths)
{
    for (const std::uint32_t bits : {4U, 8U, 24U}) {
        for (const std::uint32_t width : {0U, 1U, 2U, 3U, 4U, 7U, 8U, 9U, 10U, 17U}) {
            SCOPED_TRACE(testing::Message() << bits << " bits, width " << width);
            BmpBuilder builder;
            builder.width = width;
            builder.height = 5;
            builder.bits = bits;
            builder.colours = bits == 24 ? 0 : 3;
            builder.infoSize = width % 2 == 0 ? 40 : 124;
            CBmpFile bmp;
            ASSERT_TRUE(LoadBmp(bmp, builder.Bytes()));
            EXPECT_EQ(bmp.GetWidth(), static_cast<int>(width));
            EXPECT_EQ(bmp.GetHeight(), 5);
            EXPECT_EQ(bmp.GetBits(), static_cast<int>(bits));
            EXPECT_EQ(bmp.GetColorCount(), static_cast<int>(builder.colours));
            if (bits != 24) {
                EXPECT_EQ(bmp.GetPaletteEntry(2), (CBmpFile::Colour{2, 3, 4}));
            }
            EXPECT_EQ(bmp.GetPaletteEntry(3), CBmpFile::Colour());
            Bytes all;
            for (const int y : {4, 0, 3, 1, 2}) {
                Bytes row(width * (bits == 24 ? 3 : 1));
                bits == 4   ? bmp.ReadRow4(y, row.data())
                : bits == 8 ? bmp.ReadRow8(y, row.data())
                            : bmp.ReadRow24(y, row.data());
                for (std::uint32_t i = 0; i < row.size(); ++i) {
                    const std::uint8_t byte =
                        builder.PixelByte(static_cast<std::uint32_t>(y), bits == 4 ? i / 2 : i);
                    EXPECT_EQ(row[i], bits != 4 ? byte : i % 2 == 0 ? byte >> 4 : byte & 15) << y << ' ' << i;
                }
                if (all.empty())
                    all.resize(row.size() * 5);
                std::copy(row.begin(), row.end(), all.begin() + static_cast<std::ptrdiff_t>(row.size()) * y);
            }
            Bytes atOnce(all.size());
            if (bits == 24)
                bmp.ReadAll24(atOnce.data());
            if (bits == 8)
                bmp.ReadAll8(atOnce.data());
            EXPECT_TRUE(bits == 4 || atOnce == all);
        }
    }
    // More rows than are read in one go, and the last without its padding.
    BmpBuilder tall;
    tall.width = 1;
    tall.height = 16384;
    std::string content = tall.Bytes();
    content.pop_back();
    content.replace(2, 4, Le(static_cast<std::uint32_t>(content.size()), 4));
    CBmpFile bmp;
    ASSERT_TRUE(LoadBmp(bmp, content));
    Bytes pixels(3 * 16384);
    bmp.ReadAll24(pixels.data());
    EXPECT_EQ(pixels[3 * 16383 + 2], tall.PixelByte(16383, 2));
    EXPECT_EQ(pixels[3 * 9999], tall.PixelByte(9999, 0));
}

TEST_F(PictureFiles, BmpsThatAreRefused)
{
    const auto with = [](auto change) {
        BmpBuilder builder;
        change(builder);
        return builder;
    };
    const struct {
        const char* name;
        BmpBuilder builder;
    } rows[] = {
        {"magic", with([](auto& b) { b.magic = "MB"; })},
        {"longer than told", with([](auto& b) { b.lengthMore = 0xffffffff; })},
        {"shorter than told", with([](auto& b) { b.lengthMore = 1; })},
        {"no plane", with([](auto& b) { b.planes = 0; })},
        {"two planes", with([](auto& b) { b.planes = 2; })},
        {"packed", with([](auto& b) { b.compression = 1; })},
        {"masks", with([](auto& b) { b.compression = 3; })},
        {"wide", with([](auto& b) { b.width = 16385, b.height = 0; })},
        {"widest", with([](auto& b) { b.width = 0x80000000, b.height = 0; })},
        {"high", with([](auto& b) { b.height = 16385; })},
        {"from the top", with([](auto& b) { b.height = 0xfffffffe; })},
        {"pixels within the headers", with([](auto& b) { b.offsetMore = 0xffffffff; })},
        {"pixels at 0", with([](auto& b) { b.offsetMore = 0xffffffff - 53; })},
        {"pixels past the end", with([](auto& b) { b.offsetMore = 17; })},
        {"pixels far past the end", with([](auto& b) { b.offsetMore = 0xfffffff0; })},
        {"257 colours", with([](auto& b) { b.bits = 8, b.colours = 257; })},
        {"gap like 257 colours", with([](auto& b) { b.height = 400, b.offsetMore = 257 * 4; })},
    };
    for (const auto& row : rows) {
        CBmpFile bmp;
        ASSERT_TRUE(LoadBmp(bmp, BmpBuilder().Bytes()));
        EXPECT_FALSE(LoadBmp(bmp, row.builder.Bytes())) << row.name;
        EXPECT_FALSE(bmp.IsOpen() || bmp.IsLoaded()) << row.name;
    }
    for (const std::uint32_t size : {0x7fffffffU, 0xfffffff2U, 0xffffffffU}) {
        CBmpFile bmp;
        EXPECT_FALSE(LoadBmp(bmp, BmpBuilder().Bytes().replace(14, 4, Le(size, 4)))) << size;
    }
    for (const std::uint32_t size : {0U, 12U, 36U}) {
        CBmpFile bmp; // what follows such a header counts as the palette
        EXPECT_TRUE(LoadBmp(bmp, BmpBuilder().Bytes().replace(14, 4, Le(size, 4)))) << size;
        EXPECT_EQ(bmp.GetColorCount(), static_cast<int>(40 - size) / 4);
    }
    BmpBuilder most;
    most.bits = 8;
    most.colours = 256;
    CBmpFile bmp;
    EXPECT_TRUE(LoadBmp(bmp, most.Bytes()));
    EXPECT_EQ(bmp.GetPaletteEntry(255), (CBmpFile::Colour{255, 0, 1}));
    EXPECT_EQ(bmp.GetPaletteEntry(256), CBmpFile::Colour());
    EXPECT_EQ(bmp.GetPaletteEntry(-1), CBmpFile::Colour());
    EXPECT_FALSE(bmp.Load("none"));
    std::filesystem::resize_file(roots.folder / "user/in.bmp", 0x100000000); // a hole, which takes no room
    EXPECT_THROW(bmp.Load("in.bmp"), CFileIO::FileException);
    EXPECT_FALSE(bmp.IsOpen() || bmp.IsLoaded());
}

TEST_F(PictureFiles, AFileCutAnywhereIsRefusedOrTold)
{
    BmpBuilder builder;
    builder.bits = 8;
    builder.colours = 2;
    const std::string whole = builder.Bytes();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        std::string cut = whole.substr(0, length);
        CBmpFile bmp;
        EXPECT_FALSE(LoadBmp(bmp, cut)) << length;
        if (length < 6)
            continue;
        cut.replace(2, 4, Le(static_cast<std::uint32_t>(length), 4)); // the header lies along
        ASSERT_EQ(LoadBmp(bmp, cut), length >= builder.Offset()) << length;
        if (!bmp.IsLoaded() || length >= whole.size() - 2)
            continue; // the padding isn't read
        Bytes pixels(4);
        EXPECT_THROW(bmp.ReadRow8(1, pixels.data()), CFileIO::FileException) << length;
        EXPECT_THROW(bmp.ReadAll8(pixels.data()), CFileIO::FileException) << length;
        EXPECT_THROW(CTgaFile().FromBmp(bmp, "out.tga"), CFileIO::FileException) << length;
        EXPECT_EQ(roots.Get("user/out.tga"), "(none)");
    }
    // The largest picture, of which nothing is there: told before any of it is read.
    BmpBuilder empty;
    empty.height = 0;
    const std::string lie = empty.Bytes().replace(18, 8, Le(16384, 4) + Le(16384, 4));
    CBmpFile bmp;
    ASSERT_TRUE(LoadBmp(bmp, lie));
    Bytes row(16384 * 3);
    EXPECT_THROW(bmp.ReadRow24(16383, row.data()), CFileIO::FileException);

    const std::string tga = Le(0x010100, 3) + Le(0, 2) + Le(2, 2) + Le(24, 1) + Le(0, 4) + Le(1, 2) +
                            Le(1, 2) + Le(8, 2) + "paletta";
    CTgaFile file;
    for (std::size_t length = 0; length <= tga.size(); ++length)
        EXPECT_EQ(LoadTga(file, tga.substr(0, length)), length >= 24) << length;
}

TEST_F(PictureFiles, RowsThatAProgramMustNotAskFor)
{
    CBmpFile bmp;
    Bytes row(16);
    EXPECT_DEATH(bmp.ReadRow24(0, row.data()), "Assertion failed: m_IsLoad, file bmpfile");
    EXPECT_DEATH(bmp.ReadAll8(row.data()), "m_IsLoad");
    ASSERT_TRUE(LoadBmp(bmp, BmpBuilder().Bytes()));
    EXPECT_DEATH(bmp.ReadRow24(2, row.data()), "index < m_InfoHeader.dwHeight");
    EXPECT_DEATH(bmp.ReadRow4(-1, row.data()), "index < m_InfoHeader.dwHeight");
    bmp.Close();
    EXPECT_TRUE(bmp.IsLoaded());
    EXPECT_DEATH(bmp.ReadRow24(0, row.data()), "m_hFile != NULL");
    EXPECT_DEATH(CTgaFile().FromBmp(bmp, "out.tga"), "m_hFile != NULL");
    EXPECT_DEATH(CTgaFile().FromBmp32(bmp, "out.tga"), "m_hFile != NULL");
    EXPECT_EQ(roots.Get("user/out.tga"), "(none)");

    for (const std::uint32_t bits : {0U, 1U, 16U, 32U, 0xffffU}) {
        BmpBuilder builder;
        builder.bits = bits;
        builder.width = 1;
        ASSERT_TRUE(LoadBmp(bmp, builder.Bytes())) << bits;
        EXPECT_THROW(bmp.ReadRow8(0, row.data()), CFileIO::FileException) << bits;
        EXPECT_FALSE(CTgaFile().FromBmp32(bmp, "out.tga"));
        try {
            CTgaFile().FromBmp(bmp, "out.tga");
            ADD_FAILURE() << bits;
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "error bpp");
        }
        EXPECT_EQ(roots.Get("user/out.tga"), "(none)");
    }
}

TEST_F(PictureFiles, TgasOfBmps)
{
    CBmpFile bmp;
    CTgaFile tga;
    EXPECT_FALSE(tga.FromBmp(bmp, "out.tga")) << "not loaded";
    EXPECT_FALSE(tga.FromBmp32(bmp, "out.tga"));

    // Three pixels in each of two rows: the bytes 1 to 9 and 13 to 21.
    BmpBuilder builder;
    builder.width = 3;
    ASSERT_TRUE(LoadBmp(bmp, builder.Bytes()));
    ASSERT_TRUE(tga.FromBmp(bmp, ""));
    const std::string sizes = Le(3, 2) + Le(2, 2);
    EXPECT_EQ(roots.Get("user/in.tga"), Le(0x020000, 3) + Le(0, 4) + Le(24, 1) + Le(0, 4) + sizes +
                                            Le(24, 2) + "\1\2\3\4\5\6\7\10\11\15\16\17\20\21\22\23\24\25");
    EXPECT_EQ(tga.GetWidth(), 3);
    EXPECT_EQ(tga.GetHeight(), 2);
    EXPECT_EQ(tga.GetPixelDepth(), 24);
    ASSERT_TRUE(tga.FromBmp32(bmp, "folder.x\\out"));
    EXPECT_EQ(roots.Get("user/folder.x/out"),
              Le(0x020000, 3) + Le(0, 4) + Le(32, 1) + Le(0, 4) + sizes + Le(32, 2) +
                  "\1\2\3\xff\4\5\6\xff\7\10\11\xff\15\16\17\xff\20\21\22\xff\23\24\25\xff");

    // The header goes by the palette, the rows by the depth.
    const std::string rows = roots.Get("user/in.tga").substr(18);
    builder.colours = 1;
    ASSERT_TRUE(LoadBmp(bmp, builder.Bytes()));
    ASSERT_TRUE(tga.FromBmp(bmp, "out.tga"));
    EXPECT_EQ(roots.Get("user/out.tga"), Le(0x010100, 3) + Le(0, 2) + Le(1, 2) + Le(24, 1) + Le(0, 4) +
                                             sizes + Le(8, 2) + Le(0x020100, 3) + rows);
    ASSERT_TRUE(tga.FromBmp32(bmp, "out.tga"));
    EXPECT_EQ(roots.Get("user/out.tga"), roots.Get("user/folder.x/out"));

    for (const std::uint32_t bits : {4U, 8U}) {
        builder.bits = bits;
        builder.colours = 2;
        ASSERT_TRUE(LoadBmp(bmp, builder.Bytes()));
        EXPECT_FALSE(tga.FromBmp32(bmp, "out.tga"));
        ASSERT_TRUE(tga.FromBmp(bmp, "out.tga"));
        const std::string pixels = bits == 4 ? std::string("\0\1\0\0\5\0", 6) : "\1\2\3\5\6\7";
        EXPECT_EQ(roots.Get("user/out.tga"), Le(0x010100, 3) + Le(0, 2) + Le(2, 2) + Le(24, 1) + Le(0, 4) +
                                                 sizes + Le(8, 2) + Le(0x020100, 3) + Le(0x030201, 3) +
                                                 pixels);
        builder.colours = 0;
        ASSERT_TRUE(LoadBmp(bmp, builder.Bytes()));
        ASSERT_TRUE(tga.FromBmp(bmp, "out.tga"));
        EXPECT_EQ(roots.Get("user/out.tga"),
                  Le(0x020000, 3) + Le(0, 4) + Le(24, 1) + Le(0, 4) + sizes + Le(24, 2) + pixels);
    }
}

/// The head of a TGA of 2 by 1 pixels.
std::string TgaHead(std::uint32_t mapType, std::uint32_t mapFirst, std::uint32_t mapLength,
                    std::uint32_t mapDepth, std::uint32_t pixelDepth)
{
    return Le(0, 1) + Le(mapType, 1) + Le(mapType != 0 ? 1 : 2, 1) + Le(mapFirst, 2) + Le(mapLength, 2) +
           Le(mapDepth, 1) + Le(0, 4) + Le(2, 2) + Le(1, 2) + Le(pixelDepth, 1) + '\x08';
}

TEST_F(PictureFiles, TgaHeads)
{
    CTgaFile tga;
    char at = 0;
    ASSERT_TRUE(LoadTga(tga, TgaHead(1, 4, 2, 24, 8) + "skip" + "abcdef" + "!"));
    EXPECT_EQ(tga.Read(&at, 1), 1u);
    EXPECT_EQ(at, '!') << "it stands at the pixels";
    ASSERT_TRUE(LoadTga(tga, TgaHead(0, 4, 2, 32, 24) + "!"));
    EXPECT_EQ(tga.Read(&at, 1), 1u);
    EXPECT_EQ(at, '!');
    EXPECT_TRUE(LoadTga(tga, TgaHead(1, 0, 256, 24, 8) + std::string(768, 'x')));
    EXPECT_FALSE(LoadTga(tga, TgaHead(1, 0, 257, 24, 8) + std::string(771, 'x')));
    EXPECT_FALSE(LoadTga(tga, TgaHead(1, 0xffff, 1, 24, 8) + "abc"));
    EXPECT_FALSE(LoadTga(tga, TgaHead(2, 0, 1, 24, 8) + "abc"));
    EXPECT_FALSE(LoadTga(tga, TgaHead(0, 0, 0, 0, 24).replace(12, 2, Le(16385, 2))));
    EXPECT_FALSE(LoadTga(tga, TgaHead(0, 0, 0, 0, 24).replace(14, 2, Le(0xffff, 2))));
    EXPECT_FALSE(tga.IsOpen());
    try {
        LoadTga(tga, TgaHead(1, 0, 1, 32, 8) + "abcd");
        ADD_FAILURE();
    } catch (const std::exception& error) {
        EXPECT_STREQ(error.what(), "глубина цвета в палитре != 24");
    }
    EXPECT_FALSE(tga.IsOpen());
}

TEST_F(PictureFiles, WideTgasOfNarrowOnes)
{
    CTgaFile source;
    CTgaFile out;
    EXPECT_FALSE(out.From24To32(source, "out.tga")) << "not open";
    ASSERT_TRUE(LoadTga(source, TgaHead(0, 0, 0, 24, 24) + "abcdef"));
    ASSERT_TRUE(out.From24To32(source, "out.tga"));
    EXPECT_EQ(roots.Get("user/out.tga"), TgaHead(0, 0, 0, 32, 32) + std::string("abc\0def\0", 8));
    ASSERT_TRUE(LoadTga(source, TgaHead(1, 0, 1, 24, 24) + "pqrabcdef"));
    ASSERT_TRUE(out.From24To32(source, "out.tga"));
    EXPECT_EQ(roots.Get("user/out.tga"), TgaHead(1, 0, 1, 32, 32) + std::string("abc\0def\0", 8));

    const std::string plain = TgaHead(0, 0, 0, 24, 24);
    for (const std::string& head : {TgaHead(0, 0, 0, 24, 32), std::string(plain).replace(0, 1, "\1"),
                                    std::string(plain).replace(2, 1, "\12")}) {
        ASSERT_TRUE(LoadTga(source, head + "abcdefgh"));
        EXPECT_FALSE(out.From24To32(source, "out.tga"));
    }
    ASSERT_TRUE(LoadTga(source, plain + "abcde"));
    EXPECT_THROW(out.From24To32(source, "out.tga"), CFileIO::FileException);
    EXPECT_EQ(roots.Get("user/out.tga"), "(none)");
}

TEST_F(PictureFiles, PicturesAreImportedInTheRightSizeAlone)
{
    const auto bmp = [](std::uint32_t bits, std::uint32_t width = 2, std::uint32_t height = 1) {
        BmpBuilder builder;
        builder.bits = bits;
        builder.width = width;
        builder.height = height;
        builder.colours = bits <= 8 ? 2 : 0;
        return builder.Bytes();
    };
    const std::string deep = TgaHead(0, 0, 0, 0, 32) + "abcdefgh";
    const std::string mapped = TgaHead(1, 0, 1, 24, 8) + "abc" + "xy" + "and a tail";
    const std::string bmpHead = Le(0, 4) + Le(2, 2) + Le(1, 2);
    const struct {
        const char* name;
        std::string source;
        std::string target; ///< empty: refused
    } rows[] = {
        {"8 bits", bmp(8),
         Le(0x010100, 3) + Le(0, 2) + Le(2, 2) + Le(24, 1) + bmpHead + Le(8, 2) + Le(0x020100, 3) +
             Le(0x030201, 3) + "\1\2"},
        {"4 bits", bmp(4),
         Le(0x010100, 3) + Le(0, 2) + Le(2, 2) + Le(24, 1) + bmpHead + Le(8, 2) + Le(0x020100, 3) +
             Le(0x030201, 3) + std::string("\0\1", 2)},
        {"24 bits", bmp(24),
         Le(0x020000, 3) + Le(0, 4) + Le(32, 1) + bmpHead + Le(32, 2) + "\1\2\3\xff\4\5\6\xff"},
        {"1 bit", bmp(1), ""},
        {"32 bits", bmp(32), ""},
        {"wider", bmp(24, 3), ""},
        {"higher", bmp(24, 2, 2), ""},
        {"TGA of 32 bits", deep, deep},
        {"TGA with a palette", mapped, mapped},
        {"TGA of 24 bits", TgaHead(0, 0, 0, 24, 24) + "abcdef",
         TgaHead(0, 0, 0, 32, 32) + std::string("abc\0def\0", 8)},
        {"TGA of 16 bits", TgaHead(0, 0, 0, 0, 16) + "abcd", ""},
        {"TGA, wider", std::string(deep).replace(12, 1, "\3"), ""},
        {"nothing", "", ""},
    };
    roots.Put("user/t/out.tga.tmp", "another's");
    for (const auto& row : rows) {
        roots.Put("game/faces/a.bmp", row.source);
        roots.Put("user/t/out.tga", "old");
        EXPECT_EQ(CTgaFile::ImportPicture("faces\\a.bmp", "t\\out.tga", 2, 1), !row.target.empty())
            << row.name;
        EXPECT_EQ(roots.Get("user/t/out.tga"), row.target.empty() ? "old" : row.target) << row.name;
        EXPECT_EQ(roots.Get("user/t/out.tga.tmp"), "another's");
        EXPECT_EQ(roots.Get("user/t/out.tga.tmp2"), "(none)") << row.name;
    }
    roots.Put("user/own.tga", deep);
    EXPECT_FALSE(CTgaFile::ImportPicture("own.tga", "OWN.tga", 2, 1)) << "onto itself";
    EXPECT_FALSE(CTgaFile::ImportPicture("none", "t\\out.tga", 2, 1));
    EXPECT_FALSE(CTgaFile::ImportPicture("own.tga", "own.tga\\out.tga", 2, 1)) << "a folder that can't be";
    EXPECT_EQ(roots.Get("user/own.tga"), deep);
}

TEST_F(PictureFiles, AFullDiskLeavesWhatWasThere)
{
    BmpBuilder builder;
    builder.width = 100;
    builder.height = 150;
    roots.Put("user/in.bmp", builder.Bytes());
    const std::string tga = TgaHead(0, 0, 0, 0, 32) + std::string(20000, 'x');
    roots.Put("user/in.tga", tga);
    roots.Put("user/old.tga", "old");
    CBmpFile bmp;
    ASSERT_TRUE(bmp.Load("in.bmp"));
    {
        const FullDisk full(10000);
        EXPECT_THROW(CTgaFile().FromBmp(bmp, "out.tga"), CFileIO::FileException);
        EXPECT_THROW(CTgaFile::ImportPicture("in.bmp", "old.tga", 100, 150), CFileIO::FileException);
        EXPECT_FALSE(CTgaFile::ImportPicture("in.tga", "old.tga", 2, 1));
    }
    EXPECT_EQ(roots.Get("user/out.tga"), "(none)");
    EXPECT_EQ(roots.Get("user/old.tga"), "old");
    EXPECT_EQ(roots.Get("user/old.tga.tmp"), "(none)");
    EXPECT_TRUE(CTgaFile::ImportPicture("in.bmp", "old.tga", 100, 150));
}

} // namespace
