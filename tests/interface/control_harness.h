#pragma once
// What the tests of controls share: a parent that notes what its controls tell it, fonts of one colour, and
// rectangles of the screen surface.

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "kernel/itfwnd.h"
#include "platform/rect.h"
#include "render/picture.h"
#include "support/rows.h"
#include "support/toolkit_fixture.h"

namespace control_test
{

using seawarden_test::RecordingWnd;

// Pixels, of which 16 bits keep every one as it is.
constexpr std::uint16_t RED = 0xf800;
constexpr std::uint16_t GREEN = 0x07e0;
constexpr std::uint16_t BLUE = 0x001f;
constexpr std::uint16_t YELLOW = 0xffe0;
constexpr std::uint16_t WHITE = 0xffff;
constexpr std::uint16_t BLACK = 0;

constexpr int GLYPH_W = 8;
constexpr int GLYPH_H = 10;
constexpr int BAR_WIDTH = 18;
constexpr int THUMB = 30;

class ControlTest : public seawarden_test::ToolkitTest
{
  protected:
    using Words = std::pair<int, int>;

    RecordingWnd parent; ///< over the whole screen

    void SetUp() override
    {
        ASSERT_TRUE(parent.Create(nullptr, nullptr, nullptr, nullptr, 1, 0, &engine));
        parent.Show(true);
        CItfWnd::SetDrawing(true);
        ClearScreen(BLACK);
    }

    void TearDown() override
    {
        parent.Destroy();
        ToolkitTest::TearDown();
    }

    /// Both words of each message with that number that the parent got, which are then forgotten.
    std::vector<Words> TakeGot(std::uint32_t msg)
    {
        std::vector<Words> words;
        for (const RecordingWnd::Got& got : std::exchange(parent.got, {})) {
            if (got.msg == msg)
                words.emplace_back(static_cast<int>(got.wParam), got.lParam);
        }
        return words;
    }
    /// The codes of the notifications.
    std::vector<int> TakeCodes()
    {
        std::vector<int> codes;
        for (const Words& words : TakeGot(ITFM_NOTIFY))
            codes.push_back(words.first);
        return codes;
    }

    /// A font whose characters are all solid blocks of GLYPH_W by GLYPH_H, except for the blank.
    void AddColouredFont(const std::string& name, std::uint16_t pixel)
    {
        const std::vector<std::uint16_t> pixels(GLYPH_W * GLYPH_H, pixel);
        SavePng((userFolder / (name + ".png")).string(), pixels.data(), GLYPH_W, GLYPH_H);
        std::string text = "texture = \"" + name + ".png\"\nsymbols\n{\n";
        for (char c = '!'; c <= '~'; ++c)
            text += std::string("\"") + c + "\", 0, 0, 8, 10, 0, 8,\n";
        WriteFile("resource/txt_res/" + name + ".fnt", text + "\" \", 0, 0, 0, 10, 0, 8}\n");
        Toolkit().fontMap.push_back({name, name + ".fnt"});
    }
    /// Of a vertical scroll bar, a colour for each.
    void AddBarSprites()
    {
        AddSprite("itfScBar", BAR_WIDTH, THUMB, WHITE);
        AddSprite("itfScArrUp", BAR_WIDTH, BAR_WIDTH, BLUE);
        AddSprite("itfScArrUpA", BAR_WIDTH, BAR_WIDTH, YELLOW);
        AddSprite("itfScArrDown", BAR_WIDTH, BAR_WIDTH, GREEN);
        AddSprite("itfScArrDownA", BAR_WIDTH, BAR_WIDTH, RED);
    }
    /// How often the sprites and fonts are in use.
    static int Refs()
    {
        int sum = 0;
        for (const SpriteEntry& entry : Toolkit().sprites)
            sum += entry.refs;
        for (const FontEntry& entry : Toolkit().fonts)
            sum += entry.refs;
        return sum;
    }

    static COLORREF ToColour(std::uint16_t pixel)
    {
        return RGB((pixel >> 11) * 255u / 31, ((pixel >> 5) & 63u) * 255u / 63, (pixel & 31u) * 255u / 31);
    }
    void ClearScreen(std::uint16_t pixel)
    {
        engine.render.FillSurface(Toolkit().screenSurface, ToColour(pixel));
    }
    /// All of a sprite that is loaded, for as long as the test runs.
    void Fill(const char* sprite, std::uint16_t pixel)
    {
        parent.FillSprite(parent.AcquireSprite(sprite), ToColour(pixel));
    }

    /// The smallest rectangle of the screen around all pixels of a colour.
    RECT Extent(std::uint16_t pixel)
    {
        RECT all;
        const std::uint16_t* pixels = engine.render.LockSurface(Toolkit().screenSurface);
        for (int y = 0; y < SCREEN_HEIGHT; ++y) {
            for (int x = 0; x < SCREEN_WIDTH; ++x) {
                const RECT own = {x, y, x + 1, y + 1};
                if (pixels[y * SCREEN_WIDTH + x] == pixel)
                    UnionRect(&all, &all, &own);
            }
        }
        engine.render.UnlockSurface(Toolkit().screenSurface, 0);
        return all;
    }

    /// lParam of a mouse message at a point of the window.
    static std::int32_t At(const CItfWnd& wnd, int x, int y)
    {
        POINT point = {x, y};
        wnd.ClientToScreen(&point);
        const std::uint32_t low = static_cast<std::uint16_t>(point.x);
        return static_cast<std::int32_t>(low | static_cast<std::uint32_t>(point.y) << 16);
    }
    static std::uint32_t WheelBy(int delta) { return static_cast<std::uint32_t>(delta) << 16; }
};

/// For the boxes that scroll: one of them at LEFT, TOP, with what all of them draw with.
template <class Box>
class BoxTest : public ControlTest
{
  protected:
    static constexpr int LEFT = 10;
    static constexpr int TOP = 20;
    static constexpr int ID = 5;

    std::unique_ptr<Box> box;

    void SetUp() override
    {
        ControlTest::SetUp();
        AddColouredFont("itfListFont", WHITE);
        AddSprite("itfTrans137", 4, 4, BLUE);
        for (const char* name : {"itfScBar", "itfScArrUp", "itfScArrUpA", "itfScArrDown", "itfScArrDownA"})
            AddSprite(name, BAR_WIDTH, BAR_WIDTH, GREEN);
    }
    void TearDown() override
    {
        box.reset();
        ControlTest::TearDown();
    }

    void MakeBox(int width, int height, std::uint32_t style, const char* sprite = nullptr,
                 const char* caption = nullptr)
    {
        box = std::make_unique<Box>();
        const RECT rect = {LEFT, TOP, LEFT + width, TOP + height};
        ASSERT_TRUE(box->Create(caption, sprite, &rect, &parent, ID, style, &engine));
        box->Show(true);
    }
    void Key(int key) { box->Dispatch(WM_KEYDOWN, static_cast<std::uint32_t>(key), 0); }
    void Wheel(int delta) { box->Dispatch(WM_MOUSEWHEEL, WheelBy(delta), 0); }
    /// What a repaint of the box shows in a colour, in its own coordinates.
    RECT Shown(std::uint16_t pixel)
    {
        ClearScreen(BLACK);
        box->Invalidate(nullptr);
        RECT shown = Extent(pixel);
        if (!IsRectEmpty(&shown))
            OffsetRect(&shown, -LEFT, -TOP);
        return shown;
    }
};

} // namespace control_test
