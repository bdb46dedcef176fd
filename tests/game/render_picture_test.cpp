// Picture files: what becomes of their colours, and what happens to files that lie.

#include "render/picture.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <SDL.h>
#include <SDL_image.h>
#include <gtest/gtest.h>

#include "platform/temp_roots.h"
#include "render/dither.h"
#include "render/pixel565.h"
#include "render/render2d.h"
#include "support/fakes.h"
#include "support/picture_compare.h"
#include "support/rows.h"

using seawarden_test::FakeHost;
using seawarden_test::SamePicture;
using Bytes = std::vector<std::uint8_t>;

namespace
{

using Rgba = std::array<std::uint8_t, 4>;

/// The bytes that SDL writes for a picture; 4 bytes a pixel with alpha, 3 without.
Bytes Encode(const std::vector<Rgba>& pixels, int width, bool bAlpha, bool bPng)
{
    const int height = static_cast<int>(pixels.size()) / width;
    SDL_Surface* const surface = SDL_CreateRGBSurfaceWithFormat(
        0, width, height, bAlpha ? 32 : 24, bAlpha ? SDL_PIXELFORMAT_RGBA32 : SDL_PIXELFORMAT_RGB24);
    for (int i = 0; i < width * height; ++i) {
        const Rgba& pixel = pixels[static_cast<std::size_t>(i)];
        auto* const out = static_cast<std::uint8_t*>(surface->pixels) + i / width * surface->pitch;
        std::copy_n(pixel.begin(), bAlpha ? 4 : 3, out + i % width * (bAlpha ? 4 : 3));
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
    file.insert(file.end(), body.begin(), body.end());
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

class PictureFiles : public ::testing::Test
{
  protected:
    void Put(const std::string& path, const Bytes& file)
    {
        roots.Put("game/" + path, {file.begin(), file.end()});
    }

    TempRoots roots;
    FakeHost host;
    CRender2D render{4, 3};
};

TEST(Picture, AlphaCutsOutAndKeepsBlack)
{
    const std::vector<Rgba> pixels{{255, 0, 0, 255}, {255, 0, 0, 127}, {255, 0, 0, 128}, {0, 0, 0, 255},
                                   {0, 0, 0, 0},     {3, 1, 3, 255},   {4, 2, 4, 255},   {0, 255, 0, 200}};
    const std::vector<std::uint16_t> expected{0xf800, 0,           0xf800,      SOLID_BLACK,
                                              0,      SOLID_BLACK, SOLID_BLACK, 0x07e0};
    for (const bool bPng : {true, false}) {
        const Picture picture = DecodePicture(Encode(pixels, 4, true, bPng), "x");
        EXPECT_TRUE(picture.m_nWidth == 4 && picture.m_nHeight == 2);
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
    for (int at = 0; at < 63; ++at) {
        EXPECT_NE(halfway(at % 9, at / 9), halfway(at % 9 + 1, at / 9));
        EXPECT_NE(halfway(at % 9, at / 9), halfway(at % 9, at / 9 + 1));
    }
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
    const Rows<const char*, Bytes, std::string> cases = {
        {"x.png", {}, "the file is empty"},
        {"x.tgax", Tga(2, 1, 1, 24, {1, 2, 3}), "neither PNG nor BMP nor TGA"},
        {"x.png", Hex("89504e470d0a1a0a"), "the PNG header is damaged"},
        {"x.png", patched(png, 12, "49444154"), "the PNG header is damaged"}, // another chunk first
        {"x.png", patched(png, 16, "00001001"), "a size of 4097 by 2, allowed is 1 to 4096"},
        {"x.png", patched(png, 20, "00000000"), "a size of 2 by 0, allowed is 1 to 4096"},
        {"x.bmp", {'B', 'M'}, "the BMP header is cut off"},
        // A height far below 0.
        {"x.bmp", patched(bmp, 22, "80808080"), "a size of 2 by 2139062144, allowed is 1 to 4096"},
        {"x.tga", {0, 0, 2}, "the TGA header is cut off"},
        {"x.tga", Tga(2, 65535, 65535, 32, {}), "a size of 65535 by 65535, allowed is 1 to 4096"},
        {"x.tga", Tga(7, 1, 1, 24, {1, 2, 3}), "this kind of TGA isn't known"},
        {"x.tga", Tga(1, 1, 1, 8, Bytes(3000), 900), "this kind of TGA isn't known"}, // too long a palette
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
    Put("resource/images/both.png", oneColour(8));
    Put("both.png", oneColour(16));
    Put("resource/images/pic/Only.PNG", oneColour(24));
    Put("resource/images/folder.png", oneColour(33));
    std::filesystem::create_directories(roots.folder / "game/folder.png");
    for (const auto& [name, red] : Rows<const char*, unsigned>{
             {"both.png", 2}, {"resource\\images\\both.png", 1}, {"PIC\\only.png", 3}, {"folder.png", 4}}) {
        const int surface = render.LoadSurface(name);
        ASSERT_GE(surface, 0) << name;
        EXPECT_EQ(seawarden_test::TakePicture(render, surface).m_aPixels.at(0), PackPixel(red, 0, 0)) << name;
    }
    EXPECT_TRUE(host.debug.empty());
}

TEST_F(PictureFiles, FailuresAreToldAndTakeNoNumber)
{
    const std::string endless(100000, 'x');
    const Rows<const char*, std::string> cases = {
        {"none.png", "none.png: there is no such file"},
        {"..\\user", "..\\user: there is no such file"},
        {nullptr, ": no name is given"},
        {endless.c_str(), endless.substr(0, 260) + ": there is no such file"},
    };
    for (const auto& [name, told] : cases) {
        host.debug.clear();
        EXPECT_LT(render.LoadSurface(name), 0);
        EXPECT_EQ(host.debug, std::vector<std::string>{"surface: " + told + "\r\n"});
    }
    const RECT one{0, 0, 1, 1};
    EXPECT_EQ(render.CreateSurface(&one), 0);
}

TEST_F(PictureFiles, ASavedPictureIsTheSameWhenItIsLoaded)
{
    Picture picture{256, 256, {}};
    for (int pixel = 0; pixel <= 0xffff; ++pixel)
        picture.m_aPixels.push_back(static_cast<std::uint16_t>(pixel));
    const std::string path = (roots.folder / "user/all.png").string();
    ASSERT_TRUE(SavePng(path, picture.m_aPixels.data(), picture.m_nWidth, picture.m_nHeight));
    EXPECT_TRUE(SamePicture("all pixels", LoadPicture("all.png"), picture));
    EXPECT_FALSE(SavePng((roots.folder / "nowhere/all.png").string(), picture.m_aPixels.data(), 256, 256));
}

} // namespace
