// Picture files: what becomes of their colours, and what happens to files that lie.

#include "render/picture.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <unistd.h>

#include <SDL.h>
#include <SDL_image.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/files.h"
#include "render/dither.h"
#include "render/pixel565.h"
#include "render/render2d.h"
#include "support/fakes.h"
#include "support/picture_compare.h"

namespace fs = std::filesystem;
using seawarden_test::FakeHost;
using seawarden_test::SameAsReference;
using seawarden_test::SamePicture;
using Bytes = std::vector<std::uint8_t>;

namespace
{

struct Rgba {
    std::uint8_t r, g, b, a;
};

/// The bytes that SDL writes for a picture; 4 bytes a pixel with alpha, 3 without.
Bytes Encode(const std::vector<Rgba>& pixels, int width, bool bAlpha, bool bPng)
{
    const int height = static_cast<int>(pixels.size()) / width;
    SDL_Surface* const surface = SDL_CreateRGBSurfaceWithFormat(
        0, width, height, bAlpha ? 32 : 24, bAlpha ? SDL_PIXELFORMAT_RGBA32 : SDL_PIXELFORMAT_RGB24);
    auto pixel = pixels.begin();
    for (int y = 0; y < height; ++y) {
        std::uint8_t* out = static_cast<std::uint8_t*>(surface->pixels) + std::ptrdiff_t{y} * surface->pitch;
        for (int x = 0; x < width; ++x, ++pixel) {
            for (const std::uint8_t channel : {pixel->r, pixel->g, pixel->b})
                *out++ = channel;
            if (bAlpha)
                *out++ = pixel->a;
        }
    }
    Bytes file(pixels.size() * 8 + 4096);
    SDL_RWops* const writer = SDL_RWFromMem(file.data(), static_cast<int>(file.size()));
    EXPECT_EQ(bPng ? IMG_SavePNG_RW(surface, writer, 0) : SDL_SaveBMP_RW(surface, writer, 0), 0);
    file.resize(static_cast<std::size_t>(SDL_RWtell(writer)));
    SDL_RWclose(writer);
    SDL_FreeSurface(surface);
    return file;
}

/// A TGA with its rows from the top; `body` follows the header.
Bytes Tga(int type, int width, int height, int depth, const Bytes& body, int paletteLength = 0)
{
    const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
    constexpr std::uint8_t FROM_TOP = 0x20;
    const std::uint8_t alphaBits = depth == 32 ? 8 : 0;
    Bytes file{0,
               byte(paletteLength != 0),
               byte(type),
               0,
               0,
               byte(paletteLength & 0xff),
               byte(paletteLength >> 8),
               byte(paletteLength != 0 ? 24 : 0),
               0,
               0,
               0,
               0,
               byte(width & 0xff),
               byte(width >> 8),
               byte(height & 0xff),
               byte(height >> 8),
               byte(depth),
               static_cast<std::uint8_t>(FROM_TOP | alphaBits)};
    file.insert(file.end(), body.begin(), body.end());
    return file;
}

std::string ReasonOf(const Bytes& file, const std::string& name)
{
    try {
        DecodePicture(file, name);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "";
}

/// Two roots of a test's own.
class PictureFiles : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        m_Folder = fs::temp_directory_path() / ("seawarden_pictures_" + std::to_string(getpid()));
        m_strOldUser = PlatformUserRoot();
        m_strOldGame = PlatformGameRoot();
        fs::create_directories(m_Folder / "game/resource/images/pic");
        fs::create_directories(m_Folder / "user");
        PlatformSetRoots((m_Folder / "user").string(), (m_Folder / "game").string());
    }
    void TearDown() override
    {
        PlatformSetRoots(m_strOldUser, m_strOldGame);
        fs::remove_all(m_Folder);
    }
    void Write(const std::string& path, const Bytes& file)
    {
        std::ofstream out(m_Folder / "game" / path, std::ios::binary);
        out.write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
    }

    fs::path m_Folder;
    std::string m_strOldUser;
    std::string m_strOldGame;
    FakeHost m_Host;
    CRender2D m_Render{4, 3};
};

TEST(Picture, AlphaCutsOutAndKeepsBlack)
{
    const std::vector<Rgba> pixels{{255, 0, 0, 255}, {255, 0, 0, 127}, {255, 0, 0, 128}, {0, 0, 0, 255},
                                   {0, 0, 0, 0},     {3, 1, 3, 255},   {4, 2, 4, 255},   {0, 255, 0, 200}};
    const std::vector<std::uint16_t> expected{0xf800, 0,           0xf800,      SOLID_BLACK,
                                              0,      SOLID_BLACK, SOLID_BLACK, 0x07e0};
    for (const bool bPng : {true, false}) {
        const Picture picture = DecodePicture(Encode(pixels, 4, true, bPng), "x");
        EXPECT_EQ(picture.m_nWidth, 4);
        EXPECT_EQ(picture.m_nHeight, 2);
        EXPECT_EQ(picture.m_aPixels, expected);
    }
    const Picture tga = DecodePicture(Tga(2, 2, 1, 32, {0, 0, 0, 255, 0, 0, 255, 9}), "x.tga");
    EXPECT_EQ(tga.m_aPixels, (std::vector<std::uint16_t>{SOLID_BLACK, 0}));
}

TEST(Picture, WithoutAlphaBlackIsTheKeyAndColoursOf565AreExact)
{
    // Every level of each channel, at every place of the dither pattern.
    for (int level = 0; level <= GREEN_MAX; ++level)
        for (int cell = 0; cell < 64; ++cell) {
            const int five = level & RED_MAX;
            EXPECT_EQ(DitheredPixel(Expand5(five), Expand6(level), Expand5(five), cell % 8, cell / 8),
                      PackPixel(five, level, five));
        }
    for (const bool bPng : {true, false})
        EXPECT_EQ(DecodePicture(Encode({{0, 0, 0, 0}, {255, 255, 255, 0}, {8, 4, 8, 0}}, 3, false, bPng), "x")
                      .m_aPixels,
                  (std::vector<std::uint16_t>{0, 0xffff, 0x0821}));
    const Picture tga = DecodePicture(Tga(10, 3, 1, 24, {0x82, 0, 0, 255}), "X.TGA");
    EXPECT_EQ(tga.m_aPixels, (std::vector<std::uint16_t>{0xf800, 0xf800, 0xf800}));
}

/// Over one pattern the mean of the dithered levels is the colour itself, to half a cell.
TEST(Picture, DitheringKeepsTheMeanColour)
{
    for (int channel = 0; channel < 256; ++channel) {
        double red = 0;
        double green = 0;
        for (int cell = 0; cell < 64; ++cell) {
            const COLORREF colour =
                ColourFromPixel(DitheredPixel(channel, channel, channel, cell % 8 + 16, cell / 8 + 8));
            red += colour & 0xff;
            green += (colour >> 8) & 0xff;
        }
        EXPECT_NEAR(red / 64, channel, 9.0 / 128 + 1e-9);
        EXPECT_NEAR(green / 64, channel, 5.0 / 128 + 1e-9);
    }
}

/// A colour halfway between two levels is a chequered pattern, neither stripes nor patches.
TEST(Picture, DitheringSpreadsTheTwoLevels)
{
    constexpr int HALFWAY = 4; // between the first two levels of red, 0 and 8
    for (int y = 1; y < 8; ++y)
        for (int x = 1; x < 8; ++x) {
            const std::uint16_t pixel = DitheredPixel(HALFWAY, 0, 0, x, y);
            EXPECT_NE(pixel, DitheredPixel(HALFWAY, 0, 0, x - 1, y));
            EXPECT_NE(pixel, DitheredPixel(HALFWAY, 0, 0, x, y - 1));
        }
}

TEST(Picture, PalettesAreLookedUp)
{
    // An 8-bit PNG of two pixels, red and green by its palette; then with palette entries made transparent.
    const Bytes start{0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49,
                      0x48, 0x44, 0x52, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x01, 0x08, 0x03,
                      0x00, 0x00, 0x00, 0xc3, 0xfc, 0x8f, 0xb8, 0x00, 0x00, 0x00, 0x06, 0x50, 0x4c,
                      0x54, 0x45, 0xff, 0x00, 0x00, 0x00, 0xff, 0x00, 0xd2, 0x87, 0xef, 0x71};
    const Bytes redClear{0x00, 0x00, 0x00, 0x01, 0x74, 0x52, 0x4e, 0x53, 0x00, 0x40, 0xe6, 0xd8, 0x66};
    const Bytes redFaint{0x00, 0x00, 0x00, 0x02, 0x74, 0x52, 0x4e, 0x53, 0x64, 0xc8, 0xe2, 0xbd, 0x29, 0x19};
    const Bytes end{0x00, 0x00, 0x00, 0x0b, 0x49, 0x44, 0x41, 0x54, 0x78, 0x9c, 0x63, 0x60,
                    0x60, 0x04, 0x00, 0x00, 0x04, 0x00, 0x02, 0xbf, 0x7a, 0x3f, 0x4a, 0x00,
                    0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82};
    struct Case {
        Bytes transparency;
        std::uint16_t red;
    };
    for (const Case& c : {Case{{}, 0xf800}, Case{redClear, 0}, Case{redFaint, 0}}) {
        Bytes file = start;
        file.insert(file.end(), c.transparency.begin(), c.transparency.end());
        file.insert(file.end(), end.begin(), end.end());
        EXPECT_EQ(DecodePicture(file, "x").m_aPixels, (std::vector<std::uint16_t>{c.red, 0x07e0}));
    }
    EXPECT_EQ(DecodePicture(Tga(1, 2, 1, 8, {0, 0, 255, 0, 255, 0, 1, 0}, 2), "x.tga").m_aPixels,
              (std::vector<std::uint16_t>{0x07e0, 0xf800}));
    EXPECT_EQ(DecodePicture(Tga(3, 2, 1, 8, {255, 0}), "x.tga").m_aPixels,
              (std::vector<std::uint16_t>{0xffff, 0}));
    EXPECT_NE(ReasonOf(start, "x.png"), ""); // no pixels follow
}

TEST(Picture, HeadersThatLieAreRefused)
{
    Bytes wide = Encode(std::vector<Rgba>(4, Rgba{1, 2, 3, 4}), 2, true, true);
    const auto patched = [&](std::size_t at, std::initializer_list<std::uint8_t> bytes) {
        Bytes file = wide;
        std::copy(bytes.begin(), bytes.end(), file.begin() + static_cast<std::ptrdiff_t>(at));
        return file;
    };
    Bytes bmp = Encode(std::vector<Rgba>(4, Rgba{1, 2, 3, 4}), 2, false, false);
    Bytes tallBmp = bmp;
    std::fill_n(tallBmp.begin() + 22, 4, std::uint8_t{0x80}); // a height far below 0
    Bytes flatBmp = bmp;
    std::fill_n(flatBmp.begin() + 18, 8, std::uint8_t{0});
    Bytes oddBmp = bmp;
    oddBmp[14] = 13;

    struct Case {
        const char* what;
        Bytes file;
        const char* name;
        const char* reason;
    };
    const Case cases[] = {
        {"empty", {}, "x.png", "the file is empty"},
        {"text", {'h', 'e', 'l', 'l', 'o'}, "x.png", "neither PNG nor BMP nor TGA"},
        {"no TGA by its name", Tga(2, 1, 1, 24, {1, 2, 3}), "x.tgax", "neither PNG nor BMP nor TGA"},
        {"PNG, mark alone",
         {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'},
         "x.png",
         "the PNG header is damaged"},
        {"PNG, another chunk first", patched(12, {'I', 'D', 'A', 'T'}), "x.png", "the PNG header is damaged"},
        {"PNG, giant", patched(16, {0x7f, 0xff, 0xff, 0xff, 0x7f, 0xff, 0xff, 0xff}), "x.png",
         "a size of 2147483647 by 2147483647, allowed is 1 to 4096"},
        {"PNG, one too wide", patched(16, {0, 0, 0x10, 0x01}), "x.png",
         "a size of 4097 by 2, allowed is 1 to 4096"},
        {"PNG, no height", patched(20, {0, 0, 0, 0}), "x.png", "a size of 2 by 0, allowed is 1 to 4096"},
        {"BMP, mark alone", {'B', 'M'}, "x.bmp", "the BMP header is cut off"},
        {"BMP, odd header", oddBmp, "x.bmp", "the BMP header is damaged"},
        {"BMP, tall", tallBmp, "x.bmp", "a size of 2 by 2139062144, allowed is 1 to 4096"},
        {"BMP, flat", flatBmp, "x.bmp", "a size of 0 by 0, allowed is 1 to 4096"},
        {"TGA, short", {0, 0, 2}, "x.tga", "the TGA header is cut off"},
        {"TGA, giant", Tga(2, 65535, 65535, 32, {}), "x.tga",
         "a size of 65535 by 65535, allowed is 1 to 4096"},
        {"TGA, unknown type", Tga(7, 1, 1, 24, {1, 2, 3}), "x.tga", "this kind of TGA isn't known"},
        {"TGA, palette too long", Tga(1, 1, 1, 8, Bytes(3000), 900), "x.tga", "this kind of TGA isn't known"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(ReasonOf(c.file, c.name), c.reason) << c.what;
}

/// Cut off at every length and with every byte wrong in turn: refused or decoded, never a crash, and never a
/// picture whose pixels don't match its size.
TEST(Picture, DamagedFilesAreRefusedOrDecoded)
{
    std::vector<Rgba> pixels;
    pixels.reserve(48);
    for (int i = 0; i < 48; ++i)
        pixels.push_back({static_cast<std::uint8_t>(i * 5), static_cast<std::uint8_t>(i), 77, 200});
    struct Case {
        const char* name;
        Bytes file;
    };
    const Case cases[] = {
        {"x.png", Encode(pixels, 8, true, true)},
        {"x.bmp", Encode(pixels, 8, false, false)},
        {"x.tga", Tga(2, 3, 2, 24, Bytes(18, 9))},
        {"x.tga",
         Tga(10, 4, 2, 32, {0x83, 1, 2, 3, 4, 0x03, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16})},
        {"x.tga", Tga(9, 4, 1, 8, {1, 2, 3, 4, 5, 6, 0x83, 1}, 2)},
    };
    const auto tryFile = [](const Bytes& file, const char* name) {
        try {
            const Picture picture = DecodePicture(file, name);
            EXPECT_EQ(picture.m_aPixels.size(), static_cast<std::size_t>(picture.m_nWidth) *
                                                    static_cast<std::size_t>(picture.m_nHeight));
        } catch (const std::runtime_error& error) {
            EXPECT_STRNE(error.what(), "");
        }
    };
    for (const Case& c : cases) {
        ASSERT_EQ(ReasonOf(c.file, c.name), "");
        for (std::size_t length = 0; length < c.file.size(); ++length)
            tryFile(Bytes(c.file.begin(), c.file.begin() + static_cast<std::ptrdiff_t>(length)), c.name);
        for (std::size_t at = 0; at < c.file.size(); ++at)
            for (const int value : {0x00, 0x01, 0x7f, 0x80, 0xff}) {
                Bytes file = c.file;
                file[at] = static_cast<std::uint8_t>(value);
                tryFile(file, c.name);
            }
    }
}

TEST_F(PictureFiles, AreLookedUpAsNamedThenAmongTheImages)
{
    const auto oneColour = [](std::uint8_t red) { return Encode({{red, 0, 0, 255}}, 1, true, true); };
    Write("resource/images/both.png", oneColour(8));
    Write("both.png", oneColour(16));
    Write("resource/images/pic/Only.PNG", oneColour(24));
    fs::create_directories(m_Folder / "game/folder.png");
    Write("resource/images/folder.png", oneColour(33));

    struct Case {
        const char* name;
        std::uint16_t pixel;
    };
    const Case cases[] = {{"both.png", PackPixel(2, 0, 0)},
                          {"resource\\images\\both.png", PackPixel(1, 0, 0)},
                          {"pic\\only.png", PackPixel(3, 0, 0)},
                          {"RESOURCE/IMAGES/PIC/only.png", PackPixel(3, 0, 0)},
                          {"folder.png", PackPixel(4, 0, 0)}};
    for (const Case& c : cases) {
        const int surface = m_Render.LoadSurface(c.name);
        ASSERT_GE(surface, 0) << c.name;
        EXPECT_EQ(seawarden_test::TakePicture(m_Render, surface).m_aPixels.at(0), c.pixel) << c.name;
    }
    EXPECT_TRUE(m_Host.debug.empty());
}

TEST_F(PictureFiles, FailuresAreToldAndTakeNoNumber)
{
    Write("empty.png", {});
    Write("resource/images/bad.bmp", {'B', 'M', 0});
    const std::string endless(100000, 'x');
    struct Case {
        const char* name;
        std::string line;
    };
    const Case cases[] = {
        {"none.png", "surface: none.png: there is no such file\r\n"},
        {"empty.png", "surface: empty.png: the file is empty\r\n"},
        {"bad.bmp", "surface: bad.bmp: the BMP header is cut off\r\n"},
        {"..\\user", "surface: ..\\user: there is no such file\r\n"},
        {"", "surface: : no name is given\r\n"},
        {nullptr, "surface: : no name is given\r\n"},
        {endless.c_str(), "surface: " + endless.substr(0, 260) + ": there is no such file\r\n"},
    };
    for (const Case& c : cases) {
        m_Host.debug.clear();
        EXPECT_LT(m_Render.LoadSurface(c.name), 0);
        EXPECT_EQ(m_Host.debug, std::vector<std::string>{c.line});
    }
    const RECT one{0, 0, 1, 1};
    EXPECT_EQ(m_Render.CreateSurface(&one), 0);
}

TEST_F(PictureFiles, ASavedPictureIsTheSameWhenItIsLoaded)
{
    Picture picture{256, 256, {}};
    for (int pixel = 0; pixel <= 0xffff; ++pixel)
        picture.m_aPixels.push_back(static_cast<std::uint16_t>(pixel));
    const std::string path = (m_Folder / "user/all.png").string();
    ASSERT_TRUE(SavePng(path, picture.m_aPixels.data(), picture.m_nWidth, picture.m_nHeight));
    EXPECT_TRUE(SamePicture("all pixels", LoadPicture("all.png"), picture));
    EXPECT_TRUE(SameAsReference("all pixels", picture, path));
    EXPECT_FALSE(SavePng((m_Folder / "nowhere/all.png").string(), picture.m_aPixels.data(), 256, 256));
}

/// The comparison that other tests lean on names the first wrong pixel and leaves what was drawn.
TEST_F(PictureFiles, ADifferenceIsNamed)
{
    const fs::path before = fs::current_path();
    fs::current_path(m_Folder);
    const Picture expected{3, 2, {1, 2, 3, 4, 5, 6}};
    const Picture actual{3, 2, {1, 2, 3, 4, 0xbeef, 7}};
    const ::testing::AssertionResult result = SamePicture("difference", actual, expected);
    const Picture left = LoadPicture((m_Folder / "failed_pictures/difference.png").string());
    const ::testing::AssertionResult missing = SameAsReference("missing", actual, "nowhere.png");
    fs::current_path(before);

    EXPECT_FALSE(result);
    EXPECT_THAT(result.message(),
                ::testing::HasSubstr("2 wrong pixels, the first at x 1, y 1: 0xbeef instead of 0x0005"));
    EXPECT_EQ(left.m_aPixels, actual.m_aPixels);
    EXPECT_FALSE(missing);
    EXPECT_FALSE(SamePicture("size", actual, Picture{2, 3, expected.m_aPixels}));
}

} // namespace
