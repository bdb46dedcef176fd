// The numbers, locks and display of the 2-D layer.

#include "render/render2d.h"

#include <climits>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "platform/gdi.h"
#include "support/picture_compare.h"
#include "support/rows.h"

using seawarden_test::TakePicture;

namespace
{

constexpr RECT SMALL{0, 0, 4, 3};
constexpr COLORREF WHITE = RGB(255, 255, 255);
constexpr std::uint16_t WHITE_PIXEL = 0xffff;

std::vector<std::uint16_t> PixelsOf(CRender2D& render, int surface)
{
    return TakePicture(render, surface).m_aPixels;
}

TEST(Surfaces, SizesThatCanBeMade)
{
    const Rows<RECT, RECT> cases = {
        {{-10, 5, 20, 9}, {0, 0, 30, 4}},
        {{0, 0, SURFACE_MAX_SIDE, 1}, {0, 0, SURFACE_MAX_SIDE, 1}},
        {{0, 0, 1, SURFACE_MAX_SIDE + 1}, {}},
        {{9, 0, 3, 5}, {}},
        {{INT_MIN, INT_MIN, INT_MAX, INT_MAX}, {}},
    };
    CRender2D render;
    for (const auto& [rect, expected] : cases) {
        RECT size;
        if (const int surface = render.CreateSurface(&rect); surface >= 0)
            render.GetSurfaceRect(surface, &size);
        EXPECT_EQ(size, expected);
    }
    EXPECT_LT(render.CreateSurface(nullptr), 0);
}

TEST(Surfaces, NumbersAreReusedOnlyAfterTheyAreFreed)
{
    CRender2D render;
    std::set<int> numbers;
    for (std::size_t i = 0; i < CRender2D::MAX_SURFACES; ++i)
        ASSERT_TRUE(numbers.insert(render.CreateSurface(&SMALL)).second);
    EXPECT_LT(render.CreateSurface(&SMALL), 0) << "too many";
    render.FreeSurface(7);
    EXPECT_EQ(render.CreateSurface(&SMALL), 7);
}

TEST(Surfaces, UnknownNumbersDoNothing)
{
    CRender2D render;
    const int known = render.CreateSurface(&SMALL);
    render.FillSurface(known, WHITE);
    for (const int number : {known + 1, 4711, -3, INT_MIN, INT_MAX}) {
        RECT size{1, 2, 3, 4};
        render.GetSurfaceRect(number, &size);
        EXPECT_EQ(size, RECT{});
        render.FillSurface(number, WHITE);
        render.Blit(0, number, known, nullptr, nullptr, false);
        render.Blit(0, known, number, nullptr, nullptr, false);
        EXPECT_EQ(render.LockSurface(number), nullptr);
        render.UnlockSurface(number, 0);
        EXPECT_EQ(render.GetSurfaceDC(number), nullptr);
        render.ReleaseSurfaceDC(number, nullptr);
        render.FreeSurface(number);
    }
    EXPECT_EQ(PixelsOf(render, known), std::vector<std::uint16_t>(12, WHITE_PIXEL));
    render.UnlockSurface(known, 0); // never locked
    render.LockSurface(known);
    render.FreeSurface(known);
    EXPECT_NE(render.CreateSurface(&SMALL), known) << "the one lock counts";
}

TEST(Surfaces, WhoeverHoldsASurfaceKeepsItFromItsFreeing)
{
    CRender2D render;
    const int surface = render.CreateSurface(&SMALL);
    std::uint16_t* const pixels = render.LockSurface(surface);
    EXPECT_EQ(render.LockSurface(surface), pixels);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pixels) % 16, 0u);
    const HDC dc = render.GetSurfaceDC(surface);
    render.FreeSurface(surface);
    render.FreeSurface(surface);
    EXPECT_EQ(render.LockSurface(surface), nullptr);
    EXPECT_EQ(render.GetSurfaceDC(surface), nullptr);

    const HBRUSH brush = CreateSolidBrush(WHITE);
    FillRect(dc, &SMALL, brush);
    DeleteObject(brush);
    EXPECT_EQ(pixels[11], WHITE_PIXEL);
    render.ReleaseSurfaceDC(surface, dc);
    render.UnlockSurface(surface, 0);
    const int other = render.CreateSurface(&SMALL);
    EXPECT_NE(other, surface) << "one lock is left";
    render.UnlockSurface(surface, 0);
    EXPECT_EQ(render.CreateSurface(&SMALL), surface);

    const HDC last = render.GetSurfaceDC(surface);
    render.FreeSurface(surface);
    render.ReleaseSurfaceDC(other, last);
    EXPECT_NE(render.CreateSurface(&SMALL), surface);
    render.ReleaseSurfaceDC(surface, last);
    EXPECT_EQ(render.CreateSurface(&SMALL), surface);
}

TEST(Surfaces, FillsAsADeviceContextDoes)
{
    CRender2D render;
    const int surface = render.CreateSurface(&SMALL);
    for (const auto& [colour, pixel] : Rows<COLORREF, std::uint16_t>{
             {RGB(255, 0, 0), 0xf800}, {RGB(7, 3, 7), 0}, {0xff000000, 0}, {RGB(123, 45, 201), 0x7979}}) {
        render.FillSurface(surface, colour);
        EXPECT_EQ(PixelsOf(render, surface), std::vector(12, pixel)) << colour;
        render.FillSurface(surface, ~colour);
        const HDC dc = render.GetSurfaceDC(surface);
        const HBRUSH brush = CreateSolidBrush(colour);
        FillRect(dc, &SMALL, brush);
        DeleteObject(brush);
        render.ReleaseSurfaceDC(surface, dc);
        EXPECT_EQ(PixelsOf(render, surface), std::vector(12, pixel)) << colour;
    }
}

TEST(Display, TakesBlitsAndIsReadBack)
{
    CRender2D render(4, 3);
    const int surface = render.CreateSurface(&SMALL);
    std::vector<std::uint16_t> shown;
    render.SetOnPresentNow([&] { shown.push_back(render.DisplayPixels()[0]); });
    render.TakeDisplayChanged();

    render.FillSurface(surface, WHITE);
    EXPECT_FALSE(render.TakeDisplayChanged());
    render.Blit(0, DISPLAY_FRAME, surface, nullptr, nullptr, false);
    EXPECT_EQ(render.DisplayPixels()[11], WHITE_PIXEL);
    EXPECT_TRUE(render.TakeDisplayChanged());
    EXPECT_FALSE(render.TakeDisplayChanged());

    render.FillSurface(surface, RGB(255, 0, 0));
    render.Blit(0, DISPLAY_NOW, surface, nullptr, nullptr, false);
    EXPECT_EQ(shown, std::vector<std::uint16_t>{0xf800});
    for (const int display : {DISPLAY_NOW, DISPLAY_FRAME}) {
        render.FillSurface(surface, 0);
        render.Blit(0, surface, display, nullptr, nullptr, false);
        EXPECT_EQ(PixelsOf(render, surface), std::vector<std::uint16_t>(12, 0xf800));
    }
    EXPECT_EQ(render.LockSurface(DISPLAY_NOW), nullptr);
    EXPECT_EQ(render.GetSurfaceDC(DISPLAY_FRAME), nullptr);
}

TEST(Display, TellsWhereTheFrameStandsAndChangesItsSize)
{
    CRender2D render(40, 30);
    const int surface = render.CreateSurface(&SMALL);
    const RECT centred{18, 13, 22, 16};
    EXPECT_EQ(render.FrameRect(), RECT{});
    render.Blit(0, DISPLAY_FRAME, surface, &centred, nullptr, false);
    // Neither what is shown in between nor a picture of the display moves it.
    render.Blit(0, DISPLAY_NOW, surface, nullptr, nullptr, false);
    render.Blit(0, surface, DISPLAY_FRAME, &SMALL, nullptr, false);
    render.Blit(0, DISPLAY_FRAME, surface + 1, nullptr, nullptr, false);
    EXPECT_EQ(render.FrameRect(), centred);
    render.FillSurface(surface, WHITE);
    render.Blit(0, DISPLAY_FRAME, surface, nullptr, nullptr, false);
    EXPECT_EQ(render.FrameRect(), (RECT{0, 0, 40, 30}));

    for (const SIZE bad : {SIZE{0, 5}, SIZE{5, -1}, SIZE{SURFACE_MAX_SIDE + 1, 5}, SIZE{INT_MAX, INT_MAX}})
        EXPECT_FALSE(render.SetDisplaySize(bad.cx, bad.cy));
    EXPECT_TRUE(render.SetDisplaySize(40, 30));
    EXPECT_EQ(render.DisplayPixels()[11], WHITE_PIXEL);
    render.TakeDisplayChanged();
    EXPECT_TRUE(render.SetDisplaySize(7, 5));
    EXPECT_TRUE(render.TakeDisplayChanged());
    EXPECT_EQ(render.DisplayPixels()[34], WHITE_PIXEL) << "the old picture, larger";
    EXPECT_THROW(CRender2D(0, 0), std::runtime_error);
}

} // namespace
