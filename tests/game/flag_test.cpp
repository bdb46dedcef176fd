// The flags of the front end: their table, their cloth, their entity.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "entities/flag.h"
#include "platform/rect.h"
#include "platform/temp_roots.h"
#include "render/render2d.h"
#include "support/fakes.h"
#include "support/rows.h"

namespace
{

using seawarden_test::FakeHost;

constexpr std::uint16_t RED = 0xf800;
constexpr std::uint16_t BLUE = 0x001f;
constexpr char FLAGS_FILE[] = "game/resource/txt_res/flags.ini";

TEST(FlagTableTest, AVariantIsTheGreatestThatIsNotAbove)
{
    const TempRoots roots;
    const FakeHost host;
    roots.Put(FLAGS_FILE, "; flags\n1, 1900, \"b\", 1, 0, \"a\" 1, 1910, \"c\"\n2, 5, \"d\", 2, 5, \"e\"");
    CFlagTable flags;
    for (const auto& [flag, variant, texture] : Rows<int, int, const char*>{{1, -5, "a"},
                                                                            {1, 1899, "a"},
                                                                            {1, 1900, "b"},
                                                                            {1, 2000, "c"},
                                                                            {2, 0, "d"},
                                                                            {2, 9, "d"},
                                                                            {3, 0, ""}})
        EXPECT_EQ(flags.FindTexture(flag, variant), texture) << flag << " " << variant;
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
    const Rows<const char*, const char*> cases = {
        {"a.png", "resource\\textures\\a.png"},
        {"A.TF", "resource\\textures\\A.png"},
        {"resource\\textures\\a.tf", "resource\\textures\\a.png"},
        {"b.tf", "b.png"},
        {"c.tf", ""},
        {"f", ""},
        {"..\\..\\..\\game\\b.png", ""},
        {"/etc/passwd", ""},
    };
    for (const auto& [name, path] : cases)
        EXPECT_EQ(CFlagTable::FindFile(name), path) << name;
}

class FlagEntityTest : public ::testing::Test
{
  protected:
    static constexpr int WIDTH = 1000;
    static constexpr int HEIGHT = 700;

    FlagEntityTest()
    {
        roots.Put(FLAGS_FILE, "1, 0, \"red.png\"");
        roots.Put("game/resource/textures/red.png");
        const std::vector<std::uint16_t> red(64, RED);
        SavePng((roots.folder / "game/resource/textures/red.png").string(), red.data(), 8, 8);
        const RECT size = {0, 0, 800, 600};
        screen = render.CreateSurface(&size);
        Present();
        seawarden_test::ClearHostWords(flag);
        flag.m_HostWords[Entity::HOSTWORD_ID] = 20;
        block.fX = 30.0F;
        block.fY = 40.0F;
        std::copy_n(std::begin({60.0F, 50.0F, 1.0F}), 3, block.fFurther);
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
    void AttachAndShow()
    {
        Send(MSG_FLAG_ATTACH, {reinterpret_cast<Word>(&block)});
        Send(MSG_FLAG_SHOW);
        flag.OnFrame(20, 0);
    }
    void Present() { render.Blit(0, DISPLAY_FRAME, screen, &place, nullptr, false); }
    /// The rectangle of the screen around all that is red.
    RECT Flown()
    {
        const std::uint16_t* picture = presenter.Compose(render.DisplayPixels(), WIDTH, HEIGHT);
        RECT flown;
        for (int at = 0; at < WIDTH * HEIGHT; ++at) {
            const int x = at % WIDTH - place.left;
            const int y = at / WIDTH - place.top;
            const RECT here = {x, y, x + 1, y + 1};
            if (picture[at] >> 11 > 10 && (picture[at] & 0x07ff) == 0)
                UnionRect(&flown, &flown, &here);
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
    Send(MSG_FLAG_ATTACH, {reinterpret_cast<Word>(&block)});
    flag.OnFrame(20, 0);
    EXPECT_FALSE(Flies()) << "hidden at first";
    Send(MSG_FLAG_SHOW);
    RECT all;
    std::set<LONG> tops;
    for (int frame = 0; frame < 60; ++frame) {
        flag.OnFrame(20, 0);
        const RECT flown = Flown();
        UnionRect(&all, &all, &flown);
        tops.insert(flown.top);
    }
    EXPECT_TRUE(all.left >= 30 && all.top >= 40 && all.right <= 90 && all.bottom <= 90);
    EXPECT_TRUE(all.right - all.left > 50 && all.bottom - all.top > 40);
    EXPECT_GT(tops.size(), 1U) << "it waves";
    EXPECT_EQ(render.DisplayPixels()[(50 + 60) * WIDTH + 100 + 50], 0) << "and is no part of the display";
    presenter.SetFade(1, 1.0F);
    EXPECT_FALSE(Flies()) << "a fade darkens it";
    presenter.ClearFade(1);
    EXPECT_TRUE(Flies());
    Send(MSG_FLAG_HIDE);
    EXPECT_FALSE(Flies());
}

TEST_F(FlagEntityTest, ItsEndTakesItAway)
{
    {
        CFlagEntity other{presenter, render, flags};
        seawarden_test::ClearHostWords(other);
        presenter.SetOverlay(0, other);
    }
    EXPECT_EQ(presenter.Compose(render.DisplayPixels(), WIDTH, HEIGHT), render.DisplayPixels());
}

TEST_F(FlagEntityTest, WhatIsPaintedOverItLaterHidesIt)
{
    AttachAndShow();
    const RECT before = Flown();
    // A box over the right half, whose inside is as black as what was there; then its text.
    std::uint16_t* pixels = render.LockSurface(screen);
    for (int at = 0; at < 400; ++at)
        pixels[at * 800 + 60] = pixels[at * 800 + 399] = pixels[60 + at % 340] =
            pixels[399 * 800 + 60 + at % 340] = BLUE;
    for (const int text : {64 * 800 + 88, 41 * 800 + 70, 89 * 800 + 70})
        pixels[text] = BLUE;
    render.UnlockSurface(screen, 0);
    Present();
    flag.OnFrame(20, 0);
    EXPECT_LE(Flown().right, 60);
    EXPECT_EQ(Flown().left, before.left);
    render.FillSurface(screen, 0);
    Present();
    flag.OnFrame(20, 0);
    EXPECT_GT(Flown().right, 80) << "whole again when the box has gone";
}

TEST_F(FlagEntityTest, MistakesLeaveAWhiteFlagAndAreTold)
{
    const auto missing = reinterpret_cast<Word>("none.tf");
    const Rows<int, std::vector<Word>, std::size_t, bool> cases = {
        {MSG_FLAG_CHANGE, {99, 0}, 1, false},
        {MSG_FLAG_CHANGE, {1, 0}, 0, true},
        {MSG_FLAG_TEXTURE, {8, missing}, 1, false},
        {MSG_FLAG_CHANGE, {1, 0}, 0, true},
        {MSG_FLAG_TEXTURE, {}, 0, true}, // no addresses
        {MSG_FLAG_ATTACH, {}, 0, true},
    };
    AttachAndShow();
    for (const auto& [message, words, told, red] : cases) {
        host.debug.clear();
        Send(message, words);
        flag.OnFrame(20, 0);
        EXPECT_EQ(host.debug.size(), told) << message;
        EXPECT_EQ(Flies(), red) << message;
    }
}

TEST_F(FlagEntityTest, WildNumbersStayOnTheDisplay)
{
    const float wild[] = {
        std::numeric_limits<float>::infinity(), -1e30F, std::nanf(""), 0.0F, 1e30F, -16000.0F};
    for (const int at : {0, 1, 2, 3, 4, 5}) {
        block.fX = block.fY = wild[at];
        std::fill_n(block.fFurther, 3, wild[(at + 2) % 6]);
        Send(MSG_FLAG_HIDE);
        AttachAndShow();
        flag.OnFrame(1000000, 0);
        Flown();
    }
    // The display has become smaller since the last frame.
    presenter.Compose(render.DisplayPixels(), 90, 60);
}

} // namespace
