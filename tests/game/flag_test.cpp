// The flags of the front end: their table, their cloth, their entity.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <set>

#include "entities/flag.h"
#include "logic/text_table.h"
#include "platform/files.h"
#include "platform/rect.h"
#include "platform/temp_roots.h"
#include "render/render2d.h"
#include "support/fakes.h"

namespace
{

using seawarden_test::FakeHost;

constexpr std::uint16_t RED = 0xf800;
constexpr std::uint16_t BLUE = 0x001f;
constexpr char FLAGS_FILE[] = "game/resource/txt_res/flags.ini";

bool IsReddish(std::uint16_t pixel)
{
    return (pixel >> 11) > 10 && (pixel & 0x07ff) == 0;
}

TEST(FlagTableTest, AVariantIsTheGreatestThatIsNotAbove)
{
    const TempRoots roots;
    const FakeHost host;
    roots.Put(FLAGS_FILE, "; flags\n1, 1900, \"b\", 1, 0, \"a\" 1, 1910, \"c\"\n2, 5, \"d\", 2, 5, \"e\"");
    CFlagTable flags;
    const struct {
        int flag, variant;
        const char* texture;
    } cases[] = {{1, 0, "a"},    {1, -5, "a"}, {1, 1899, "a"}, {1, 1900, "b"}, {1, 1909, "b"},
                 {1, 2000, "c"}, {2, 0, "d"},  {2, 9, "d"},    {3, 0, ""}};
    for (const auto& test : cases)
        EXPECT_EQ(flags.FindTexture(test.flag, test.variant), test.texture)
            << test.flag << " " << test.variant;
    EXPECT_EQ(host.debug.size(), 1U) << "the second row of one variant is told";
}

TEST(FlagTableTest, AMistakeIsToldWithItsLineAndLeavesTheRowsAboveIt)
{
    const TempRoots roots;
    for (const char* wrong : {"x", "2, \"a\"", "2, 0 \"a\"", "2, 0, ", "2, 0, \"a"}) {
        const FakeHost host;
        roots.Put(FLAGS_FILE, std::string("1, 0, \"a\"\n") + wrong);
        CFlagTable flags;
        EXPECT_EQ(flags.FindTexture(1, 0), "a") << wrong;
        EXPECT_EQ(flags.FindTexture(2, 0), "") << wrong;
        ASSERT_EQ(host.debug.size(), 1U) << wrong;
        EXPECT_NE(host.debug[0].find("flags.ini(2)"), std::string::npos) << host.debug[0];
    }
}

TEST(FlagTableTest, TexturesLieBelowTheirFolderAndTfStandsForPng)
{
    const TempRoots roots;
    roots.Put("game/resource/textures/a.png", "x");
    roots.Put("game/b.png", "x");
    const std::pair<const char*, const char*> cases[] = {
        {"a.png", "resource\\textures\\a.png"},
        {"A.TF", "resource\\textures\\A.png"},
        {"resource\\textures\\a.tf", "resource\\textures\\a.png"},
        {"b.tf", "b.png"},
        {"c.tf", ""},
        {"", ""},
        {"f", ""},
        {"..\\..\\..\\game\\b.png", ""},
        {"/etc/passwd", ""},
    };
    for (const auto& [name, path] : cases)
        EXPECT_EQ(CFlagTable::FindFile(name), path) << name;
}

// Every flag of the shipped game has its nation's name and a texture that loads.
TEST(FlagTableTest, TheShippedFlagsAreWhole)
{
    const FakeHost host;
    PlatformSetRoots("", SEAWARDEN_SOURCE_DIR "/data");
    CFlagTable flags;
    CTextTable texts;
    ASSERT_TRUE(texts.Load("resource\\txt_res\\texts.ini"));
    std::set<std::string> files;
    for (int flag = 1001; flag <= 1010; ++flag) {
        EXPECT_NE(texts.GetText(flag)[0], '?') << flag;
        for (const int variant : {0, 1914, 1918})
            files.insert(flags.FindTexture(flag, variant));
    }
    files.insert("white_flg.tf");
    EXPECT_EQ(files.size(), 12U);
    for (const std::string& file : files)
        EXPECT_NO_THROW(LoadPicture(CFlagTable::FindFile(file))) << file;
    EXPECT_TRUE(host.debug.empty());
}

class FlagEntityTest : public ::testing::Test
{
  protected:
    static constexpr int WIDTH = 1000;
    static constexpr int HEIGHT = 700;

    FlagEntityTest()
    {
        roots.Put(FLAGS_FILE, "1, 0, \"red.png\"");
        const std::vector<std::uint16_t> red(64, RED);
        std::filesystem::create_directories(roots.folder / "game/resource/textures");
        SavePng((roots.folder / "game/resource/textures/red.png").string(), red.data(), 8, 8);
        const RECT size = {0, 0, 800, 600};
        screen = render.CreateSurface(&size);
        Present();
        std::fill(std::begin(flag.m_HostWords), std::end(flag.m_HostWords), 0);
        flag.m_HostWords[Entity::HOSTWORD_ID] = 20;
        block.fX = 30.0F;
        block.fY = 40.0F;
        block.fFurther[0] = 60.0F;
        block.fFurther[1] = 50.0F;
        block.fFurther[2] = 1.0F;
        block.nFlag = 1;
    }
    Word Send(int number, std::vector<Word> words = {})
    {
        struct {
            MessageRecord record;
            Word words[8];
        } message = {{16, number, 20, 0}, {}};
        std::copy(words.begin(), words.end(), message.words);
        return flag.OnMessage(&message.record);
    }
    void Attach() { Send(MSG_FLAG_ATTACH, {reinterpret_cast<Word>(&block)}); }
    void Present() { render.Blit(0, DISPLAY_FRAME, screen, &place, nullptr, false); }
    /// The rectangle of the screen around all that isn't as the display is.
    RECT Flown()
    {
        const std::uint16_t* picture = presenter.Compose(render.DisplayPixels(), WIDTH, HEIGHT);
        RECT flown;
        for (int y = 0; y < HEIGHT; ++y) {
            for (int x = 0; x < WIDTH; ++x) {
                const RECT here = {x - place.left, y - place.top, x - place.left + 1, y - place.top + 1};
                if (IsReddish(picture[y * WIDTH + x]))
                    UnionRect(&flown, &flown, &here);
            }
        }
        return flown;
    }

    bool Flies()
    {
        const RECT flown = Flown();
        return IsRectEmpty(&flown) == FALSE;
    }

    TempRoots roots;
    FakeHost host;
    CPresenter presenter;
    CRender2D render{WIDTH, HEIGHT};
    CFlagTable flags;
    int screen = -1;
    RECT place = {100, 50, 900, 650};
    ItfFlagBlock block;
    CFlagEntity flag{presenter, render, flags};
};

TEST_F(FlagEntityTest, ItFliesWithinItsRectangleOfTheFrontEndsScreen)
{
    Attach();
    flag.OnFrame(20, 0);
    EXPECT_FALSE(Flies()) << "hidden at first";
    Send(MSG_FLAG_SHOW);
    RECT all;
    std::set<std::vector<std::uint16_t>> pictures;
    for (int frame = 0; frame < 60; ++frame) {
        flag.OnFrame(20, 0);
        const RECT flown = Flown();
        UnionRect(&all, &all, &flown);
        const std::uint16_t* row =
            presenter.Compose(render.DisplayPixels(), WIDTH, HEIGHT) + (50 + 46) * WIDTH + 130;
        pictures.insert(std::vector<std::uint16_t>(row, row + 60));
    }
    EXPECT_GE(all.left, 30);
    EXPECT_GE(all.top, 40);
    EXPECT_LE(all.right, 90);
    EXPECT_LE(all.bottom, 90);
    EXPECT_GT(all.right - all.left, 50);
    EXPECT_GT(all.bottom - all.top, 40);
    EXPECT_GT(pictures.size(), 20U) << "it waves";
    EXPECT_EQ(render.DisplayPixels()[(50 + 60) * WIDTH + 100 + 50], 0) << "and is no part of the display";
    Send(MSG_FLAG_HIDE);
    EXPECT_FALSE(Flies());
}

TEST_F(FlagEntityTest, WhatIsPaintedOverItLaterHidesIt)
{
    Attach();
    Send(MSG_FLAG_SHOW);
    flag.OnFrame(20, 0);
    const RECT before = Flown();
    // A box over the right half, whose inside is as black as what was there.
    const RECT box = {60, 0, 400, 400};
    const RECT inside = {61, 1, 399, 399};
    std::uint16_t* pixels = render.LockSurface(screen);
    for (LONG y = box.top; y < box.bottom; ++y) {
        for (LONG x = box.left; x < box.right; ++x) {
            const POINT point = {x, y};
            pixels[y * 800 + x] = PtInRect(&inside, point) ? 0 : BLUE;
        }
    }
    pixels[64 * 800 + 88] = BLUE; // and its text
    pixels[41 * 800 + 70] = BLUE;
    pixels[89 * 800 + 70] = BLUE;
    render.UnlockSurface(screen, 0);
    Present();
    flag.OnFrame(20, 0);
    const RECT half = Flown();
    EXPECT_LE(half.right, 60);
    EXPECT_EQ(half.left, before.left);
    render.FillSurface(screen, 0);
    Present();
    flag.OnFrame(20, 0);
    EXPECT_GT(Flown().right, 80) << "whole again when the box has gone";
}

TEST_F(FlagEntityTest, AFadeDarkensItAndItsEndTakesItAway)
{
    {
        CFlagEntity other{presenter, render, flags};
        std::fill(std::begin(other.m_HostWords), std::end(other.m_HostWords), 0);
        presenter.SetOverlay(0, other);
    }
    EXPECT_EQ(presenter.Compose(render.DisplayPixels(), WIDTH, HEIGHT), render.DisplayPixels());
    Attach();
    Send(MSG_FLAG_SHOW);
    flag.OnFrame(20, 0);
    presenter.SetFade(1, 1.0F);
    EXPECT_FALSE(Flies());
}

TEST_F(FlagEntityTest, MistakesLeaveAWhiteFlagAndAreTold)
{
    const std::string missing = "none.tf";
    const struct {
        const char* name;
        std::function<void()> act;
        std::size_t told;
        bool red;
    } cases[] = {
        {"unknown nation",
         [&] {
             Send(MSG_FLAG_CHANGE, {99, 0});
         },
         1, false},
        {"missing file",
         [&] {
             Send(MSG_FLAG_TEXTURE, {8, reinterpret_cast<Word>(missing.c_str())});
         },
         1, false},
        {"known again",
         [&] {
             Send(MSG_FLAG_CHANGE, {1, 0});
         },
         0, true},
        {"no address",
         [&] {
             Send(MSG_FLAG_TEXTURE);
             Send(MSG_FLAG_ATTACH);
         },
         0, true},
    };
    Attach();
    Send(MSG_FLAG_SHOW);
    for (const auto& test : cases) {
        host.debug.clear();
        test.act();
        flag.OnFrame(20, 0);
        EXPECT_EQ(host.debug.size(), test.told) << test.name;
        EXPECT_EQ(Flies(), test.red) << test.name;
    }
}

TEST_F(FlagEntityTest, WildNumbersStayOnTheDisplay)
{
    const float wild[] = {
        std::numeric_limits<float>::infinity(), -1e30F, std::nanf(""), 0.0F, 1e30F, -16000.0F};
    for (const float x : wild) {
        for (const float size : wild) {
            block.fX = x;
            block.fY = x;
            block.fFurther[0] = size;
            block.fFurther[1] = size;
            block.fFurther[2] = size;
            Send(MSG_FLAG_HIDE);
            Attach();
            Send(MSG_FLAG_SHOW);
            flag.OnFrame(1000000, 0);
            Flown();
        }
    }
    // The display has become smaller since the last frame.
    presenter.Compose(render.DisplayPixels(), 90, 60);
}

} // namespace
