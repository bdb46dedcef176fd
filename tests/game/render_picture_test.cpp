// Picture files: what becomes of their colours, and what happens to files that lie.

#include "render/picture.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <unistd.h>

#include <SDL.h>
#include <SDL_image.h>
#include <gtest/gtest.h>

#include "platform/files.h"
#include "render/dither.h"
#include "render/pixel565.h"
#include "render/render2d.h"
#include "support/fakes.h"
#include "support/picture_compare.h"
#include "support/rows.h"

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
    constexpr int FROM_TOP = 0x20;
    const int descriptor = FROM_TOP | (depth == 32 ? 8 : 0);
    Bytes file;
    // Words, their low bytes first.
    for (const int word : {(paletteLength != 0) << 8, type, paletteLength << 8,
                           paletteLength >> 8 | (paletteLength != 0 ? 24 << 8 : 0), 0, 0, width, height,
                           depth | descriptor << 8})
        file.insert(file.end(), {static_cast<std::uint8_t>(word), static_cast<std::uint8_t>(word >> 8)});
    for (const std::uint8_t byte : body)
        file.push_back(byte);
    return file;
}

/// From two digits for each byte.
Bytes Hex(const std::string& digits)
{
    Bytes bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(digits.substr(i, 2), nullptr, 16)));
    return bytes;
}

/// Why a file is refused. One that is decoded has as many pixels as its size says.
std::string ReasonOf(const Bytes& file, const std::string& name)
{
    try {
        const Picture picture = DecodePicture(file, name);
        EXPECT_EQ(picture.m_aPixels.size(),
                  static_cast<std::size_t>(picture.m_nWidth) * static_cast<std::size_t>(picture.m_nHeight));
    } catch (const std::runtime_error& error) {
        EXPECT_STRNE(error.what(), "");
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

/// Over one pattern the mean of the dithered levels is the colour itself, to half a cell; a colour halfway
/// between two levels is a chequered pattern, neither stripes nor patches.
TEST(Picture, DitheringKeepsTheMeanColourAndSpreads)
{
    for (int channel = 0; channel < 256; ++channel) {
        double red = 0;
        double green = 0;
        for (int cell = 0; cell < 64; ++cell) {
            const auto pixel = DitheredPixel(channel, channel, channel, cell % 8 + 16, cell / 8 + 8);
            red += ColourFromPixel(pixel) & 0xff;
            green += (ColourFromPixel(pixel) >> 8) & 0xff;
        }
        EXPECT_NEAR(red / 64, channel, 9.0 / 128 + 1e-9);
        EXPECT_NEAR(green / 64, channel, 5.0 / 128 + 1e-9);
    }
    const auto halfway = [](int x, int y) { return DitheredPixel(4, 0, 0, x, y); }; // red levels are 8 apart
    for (int at = 9; at < 72; ++at)
        EXPECT_TRUE(at % 8 == 0 || (halfway(at % 8, at / 8) != halfway(at % 8 - 1, at / 8) &&
                                    halfway(at % 8, at / 8) != halfway(at % 8, at / 8 - 1)));
}

TEST(Picture, PalettesAreLookedUp)
{
    // An 8-bit PNG of two pixels, red and green by its palette; then with palette entries made transparent.
    const std::string start = "89504e470d0a1a0a0000000d4948445200000002000000010803000000c3fc8fb8"
                              "00000006504c5445ff000000ff00d287ef71";
    const std::string end = "0000000b49444154789c6360600400000400"
                            "02bf7a3f4a0000000049454e44ae426082";
    for (const auto& [transparency, red] : Rows<std::string, std::uint16_t>{
             {"", 0xf800}, {"0000000174524e530040e6d866", 0}, {"0000000274524e5364c8e2bd2919", 0}})
        EXPECT_EQ(DecodePicture(Hex(start + transparency + end), "x").m_aPixels,
                  (std::vector<std::uint16_t>{red, 0x07e0}));
    EXPECT_EQ(DecodePicture(Tga(1, 2, 1, 8, {0, 0, 255, 0, 255, 0, 1, 0}, 2), "x.tga").m_aPixels,
              (std::vector<std::uint16_t>{0x07e0, 0xf800}));
    EXPECT_EQ(DecodePicture(Tga(3, 2, 1, 8, {255, 0}), "x.tga").m_aPixels,
              (std::vector<std::uint16_t>{0xffff, 0}));
    EXPECT_NE(ReasonOf(Hex(start), "x.png"), ""); // no pixels follow
}

TEST(Picture, HeadersThatLieAreRefused)
{
    const Bytes png = Encode(std::vector<Rgba>(4, Rgba{1, 2, 3, 4}), 2, true, true);
    const Bytes bmp = Encode(std::vector<Rgba>(4, Rgba{1, 2, 3, 4}), 2, false, false);
    const auto patched = [](Bytes file, std::size_t at, const char* digits) {
        std::ranges::copy(Hex(digits), file.begin() + static_cast<std::ptrdiff_t>(at));
        return file;
    };
    const Rows<const char*, Bytes, const char*> cases = {
        {"x.png", {}, "the file is empty"},
        {"x.png", {'h', 'e', 'l', 'l', 'o'}, "neither PNG nor BMP nor TGA"},
        {"x.tgax", Tga(2, 1, 1, 24, {1, 2, 3}), "neither PNG nor BMP nor TGA"},
        {"x.png", Hex("89504e470d0a1a0a"), "the PNG header is damaged"},
        {"x.png", patched(png, 12, "49444154"), "the PNG header is damaged"}, // another chunk first
        {"x.png", patched(png, 16, "7fffffff7fffffff"),
         "a size of 2147483647 by 2147483647, allowed is 1 to 4096"},
        {"x.png", patched(png, 16, "00001001"), "a size of 4097 by 2, allowed is 1 to 4096"},
        {"x.png", patched(png, 20, "00000000"), "a size of 2 by 0, allowed is 1 to 4096"},
        {"x.bmp", {'B', 'M'}, "the BMP header is cut off"},
        {"x.bmp", patched(bmp, 14, "0d"), "the BMP header is damaged"},
        // A height far below 0.
        {"x.bmp", patched(bmp, 22, "80808080"), "a size of 2 by 2139062144, allowed is 1 to 4096"},
        {"x.bmp", patched(bmp, 18, "0000000000000000"), "a size of 0 by 0, allowed is 1 to 4096"},
        {"x.tga", {0, 0, 2}, "the TGA header is cut off"},
        {"x.tga", Tga(2, 65535, 65535, 32, {}), "a size of 65535 by 65535, allowed is 1 to 4096"},
        {"x.tga", Tga(7, 1, 1, 24, {1, 2, 3}), "this kind of TGA isn't known"},
        {"x.tga", Tga(1, 1, 1, 8, Bytes(3000), 900),
         "this kind of TGA isn't known"}, // its palette is too long
    };
    for (const auto& [name, file, reason] : cases)
        EXPECT_EQ(ReasonOf(file, name), reason);
}

/// Cut off at every length and with every byte wrong in turn: refused or decoded, never a crash, and never a
/// picture whose pixels don't match its size.
TEST(Picture, DamagedFilesAreRefusedOrDecoded)
{
    const std::vector<Rgba> pixels(48, Rgba{5, 1, 77, 200});
    const Rows<const char*, Bytes> cases = {
        {"x.png", Encode(pixels, 8, true, true)},
        {"x.bmp", Encode(pixels, 8, false, false)},
        {"x.tga", Tga(2, 3, 2, 24, Bytes(18, 9))},
        {"x.tga", Tga(10, 4, 2, 32, Hex("83010203040301020304050607080910111213141516"))},
        {"x.tga", Tga(9, 4, 1, 8, {1, 2, 3, 4, 5, 6, 0x83, 1}, 2)},
    };
    for (const auto& [name, whole] : cases) {
        ASSERT_EQ(ReasonOf(whole, name), "");
        for (std::size_t at = 0; at < whole.size(); ++at) {
            std::vector<Bytes> damaged{Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(at))};
            for (const int value : {0x00, 0x01, 0x7f, 0x80, 0xff}) {
                damaged.push_back(whole);
                damaged.back()[at] = static_cast<std::uint8_t>(value);
            }
            for (const Bytes& file : damaged)
                ReasonOf(file, name);
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

    for (const auto& [name, red] : Rows<const char*, unsigned>{{"both.png", 2},
                                                               {"resource\\images\\both.png", 1},
                                                               {"pic\\only.png", 3},
                                                               {"RESOURCE/IMAGES/PIC/only.png", 3},
                                                               {"folder.png", 4}}) {
        const int surface = m_Render.LoadSurface(name);
        ASSERT_GE(surface, 0) << name;
        EXPECT_EQ(seawarden_test::TakePicture(m_Render, surface).m_aPixels.at(0), PackPixel(red, 0, 0))
            << name;
    }
    EXPECT_TRUE(m_Host.debug.empty());
}

TEST_F(PictureFiles, FailuresAreToldAndTakeNoNumber)
{
    Write("empty.png", {});
    Write("resource/images/bad.bmp", {'B', 'M', 0});
    const std::string endless(100000, 'x');
    const Rows<const char*, std::string> cases = {
        {"none.png", "none.png: there is no such file"},
        {"empty.png", "empty.png: the file is empty"},
        {"bad.bmp", "bad.bmp: the BMP header is cut off"},
        {"..\\user", "..\\user: there is no such file"},
        {"", ": no name is given"},
        {nullptr, ": no name is given"},
        {endless.c_str(), endless.substr(0, 260) + ": there is no such file"},
    };
    for (const auto& [name, told] : cases) {
        m_Host.debug.clear();
        EXPECT_LT(m_Render.LoadSurface(name), 0);
        EXPECT_EQ(m_Host.debug, std::vector<std::string>{"surface: " + told + "\r\n"});
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

} // namespace
