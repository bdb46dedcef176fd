#include <memory>
#include <string>

#include "control_harness.h"
#include "controls/itfscrollbar.h"
#include "controls/itftextbox.h"

using namespace control_test;

namespace
{

// Room for 25 characters and 10 lines.
constexpr int WIDTH = 25 * GLYPH_W;
constexpr int HEIGHT = 10 * GLYPH_H;
constexpr int PAGE = 10;

std::string Lines(int count, const std::string& line = "x")
{
    std::string text = line;
    for (int i = 1; i < count; ++i)
        text += "\r\n" + line;
    return text;
}

class TextBoxTest : public BoxTest<CItfTextBox>
{
  protected:
    void SetUp() override
    {
        BoxTest::SetUp();
        Make(0);
    }

    void Make(std::uint32_t style, const std::string& text = "", const char* caption = nullptr)
    {
        MakeBox(WIDTH, HEIGHT, style, nullptr, caption);
        box->SetText(text.c_str());
        ClearScreen(BLACK);
    }

    bool HasBar() const { return box->GetScrollBar() != nullptr; }
    /// The bar, which is the newest window.
    CItfScrollBar& Bar() { return static_cast<CItfScrollBar&>(*Toolkit().windows.back().wnd); }
};

TEST_F(TextBoxTest, BarComesAndGoesWithTheText)
{
    const Rows<std::uint32_t, int, bool> cases = {{0, PAGE, false},
                                                  {0, PAGE + 1, true},
                                                  {+TBSTYLE_NOVSCROLL | +IWS_VSCROLL, 50, false},
                                                  {IWS_VSCROLL, 1, true}};
    for (const auto& [style, lines, hasBar] : cases) {
        SCOPED_TRACE(std::to_string(style) + ", " + std::to_string(lines));
        Make(style, Lines(lines));
        EXPECT_EQ(box->GetLineCount(), lines);
        ASSERT_EQ(HasBar(), hasBar);
        if (!hasBar) {
            Key(VK_DOWN);
            Wheel(-120);
            EXPECT_EQ(box->GetTopLine(), 0);
            continue;
        }
        const CItfScrollBar& bar = *box->GetScrollBar();
        EXPECT_EQ((std::vector<int>{bar.GetPos(), bar.GetMin(), bar.GetMax(), bar.GetPage()}),
                  (std::vector<int>{0, 0, lines - PAGE, PAGE}));
        box->SetText(nullptr);
        EXPECT_FALSE(HasBar()) << "an empty box has none whatever its style";
        Key(VK_DOWN);
        EXPECT_EQ(box->GetTopLine(), 0) << "a text without lines";
    }
    // The range for a text that fits holds at the start.
    Make(IWS_VSCROLL, "x");
    Bar().Dispatch(WM_MOUSEWHEEL, WheelBy(-120), 0);
    Key(VK_DOWN);
    EXPECT_EQ(box->GetTopLine(), 0);
    EXPECT_EQ(Bar().GetPos(), 0);
}

TEST_F(TextBoxTest, BarStandsBesideTheInnerRectangleAndNarrowsTheText)
{
    // Lines of 25 characters, which 16 pixels less break in two.
    const std::string line = "xxxxxxxxxxxx xxxxxxxxxxxx";
    box->SetInnerRect({0, 5, WIDTH, 5 + HEIGHT});
    box->SetText(Lines(PAGE, line).c_str());
    EXPECT_EQ(box->GetLineCount(), PAGE);
    box->SetText(Lines(PAGE + 1, line).c_str());
    ASSERT_TRUE(HasBar());
    EXPECT_EQ(box->GetLineCount(), 2 * (PAGE + 1));
    EXPECT_EQ(Bar().GetMax(), 2 * (PAGE + 1) - PAGE);
    RECT rect;
    Bar().GetScreenRect(&rect);
    EXPECT_EQ(rect, (RECT{LEFT + WIDTH, TOP + 5, LEFT + WIDTH + BAR_WIDTH, TOP + 5 + HEIGHT}));
    // With the bar already there the text has the whole width again.
    box->AddText(("\r\n" + line).c_str(), nullptr);
    EXPECT_EQ(box->GetLineCount(), PAGE + 2);
    EXPECT_EQ(Bar().GetMax(), 2);
}

TEST_F(TextBoxTest, KeysWheelAndBarScrollByLines)
{
    // A key, or else the wheel by delta; the top line, and whether the last time painted. The range ends at
    // 2, and the text at 11.
    const Rows<int, int, int, int, bool> cases = {
        {VK_UP, 0, 1, 0, false},    {VK_DOWN, 0, 2, 2, true},   {VK_NEXT, 0, 1, 2, false},
        {0, 0, 1, 3, true},         {0, 1, 1, 2, true},         {0, 240, 1, 1, true},
        {VK_DOWN, 0, 10, 11, true}, {VK_DOWN, 0, 1, 11, false}, {VK_UP, 0, 1, 10, true}};
    box->SetText(Lines(12).c_str());
    for (const auto& [key, delta, times, top, redrawn] : cases) {
        SCOPED_TRACE(testing::Message() << key << " " << delta << " to " << top);
        for (int time = 0; time < times; ++time) {
            parent.draws.clear();
            key != 0 ? Key(key) : Wheel(delta);
        }
        EXPECT_EQ(box->GetTopLine(), top);
        EXPECT_EQ(Bar().GetPos(), top);
        EXPECT_EQ(!parent.draws.empty(), redrawn);
    }
    box->SetText(Lines(30).c_str());
    for (const auto& [pos, top] : Rows<int, int>{{0, 1}, {18, 19}, {100, 20}}) {
        Bar().SetPos(pos); // where the wheel of one notch down goes out from
        Bar().Dispatch(WM_MOUSEWHEEL, WheelBy(-120), 0);
        EXPECT_EQ(box->GetTopLine(), top);
    }
    // What isn't the bar's report changes nothing, and neither does a position outside the text.
    for (const auto& [pos, code, control] :
         Rows<int, std::uint32_t, int>{{3, 1, SCROLLBAR_CTRL_ID},
                                       {3, SB_CHANGED, SCROLLBAR_CTRL_ID + 1},
                                       {-1, SB_CHANGED, SCROLLBAR_CTRL_ID},
                                       {30, SB_CHANGED, SCROLLBAR_CTRL_ID}}) {
        Bar().SetPos(pos);
        box->Dispatch(ITFM_NOTIFY, code, control);
        EXPECT_EQ(box->GetTopLine(), 20) << pos;
    }
    EXPECT_TRUE(TakeCodes().empty()) << "the box tells its parent nothing";
}

TEST_F(TextBoxTest, ScrollToEndAndWhatLaterTextsKeepOfIt)
{
    box->SetText(Lines(5).c_str());
    box->ScrollToEnd();
    EXPECT_EQ(box->GetTopLine(), 0);
    box->SetText(Lines(30).c_str());
    box->ScrollToEnd();
    EXPECT_EQ(box->GetTopLine(), 20);
    EXPECT_EQ(Bar().GetPos(), 20);
    box->AddText("\r\ny", nullptr);
    EXPECT_EQ(box->GetTopLine(), 20);
    EXPECT_EQ(Bar().GetPos(), 0);
    box->SetText(Lines(30).c_str());
    EXPECT_EQ(box->GetTopLine(), 0);
}

TEST_F(TextBoxTest, TextsAndNumbers)
{
    EXPECT_FALSE(box->AddText(nullptr, nullptr));
    for (const char* text : {"ab", "", "cd"})
        EXPECT_TRUE(box->AddText(text, nullptr));
    box->AddText(box->GetText(), nullptr);
    box->SetText(box->GetText() + 2); // from its own text
    EXPECT_STREQ(box->GetText(), "cdabcd");

    for (const auto& [value, text] : Rows<float, const char*>{{0.f, "0"},
                                                              {-2.25f, "-2.25"},
                                                              {99999.6f, "1e+05"},
                                                              {0.00001f, "1e-05"},
                                                              {3.14159265f, "3.1416"}}) {
        EXPECT_TRUE(box->SetFloat(value));
        EXPECT_STREQ(box->GetText(), text);
    }
}

TEST_F(TextBoxTest, ColourMarksStayWithTheirTextAsItGrows)
{
    const std::uint32_t red = 0x0000ff;
    const std::uint32_t blue = 0xff0000;
    Make(IWS_VSCROLL, "a a\r\n");
    box->AddText("b b\r\n", &red);
    box->AddText("c c\r\n", &blue);
    for (int i = 0; i < 3000; ++i)
        box->AddText(" ", nullptr); // several blocks further on
    for (const auto& [pixel, line] : Rows<std::uint16_t, int>{{WHITE, 0}, {RED, 1}, {BLUE, 2}})
        EXPECT_EQ(Shown(pixel), (RECT{0, line * GLYPH_H, 3 * GLYPH_W, (line + 1) * GLYPH_H}));
    // A mark above the first line shown still has its effect.
    Key(VK_DOWN);
    Key(VK_DOWN);
    EXPECT_EQ(Shown(BLUE), (RECT{0, 0, 3 * GLYPH_W, GLYPH_H}));
    EXPECT_EQ(Shown(RED), RECT());
    box->SetText("aa\r\nbb");
    EXPECT_EQ(Shown(WHITE), (RECT{0, 0, 16, 20})) << "a new text has no marks";
}

TEST_F(TextBoxTest, StylesPlaceTextAndCaption)
{
    // Two lines of three letters in a rectangle of 100 by 60.
    for (const auto& [style, shown] : Rows<std::uint32_t, RECT>{{0, {20, 10, 44, 30}},
                                                                {TBSTYLE_CENTER_HOR, {58, 10, 82, 30}},
                                                                {TBSTYLE_CENTERED, {58, 30, 82, 50}}}) {
        Make(style);
        box->SetInnerRect({20, 10, 120, 70});
        box->SetText("xxx\r\nxxx");
        EXPECT_EQ(Shown(WHITE), shown) << style;
    }
    constexpr std::uint32_t CAPTION = TBSTYLE_HASCAPTION;
    AddColouredFont("caption", YELLOW);
    AddColouredFont("captionDis", RED);
    // The last one is wider than what is left of the rectangle.
    const Rows<std::uint32_t, std::string, RECT> captions = {
        {0, "xxx", {}},
        {CAPTION, "xxx", {2, 45, 26, 55}},
        {CAPTION | TBSTYLE_ALIGNRIGHT, "xxx", {36, 45, 60, 55}},
        {CAPTION | TBSTYLE_CAPTIONRIGHT | TBSTYLE_ALIGNRIGHT, "xxx", {122, 45, 146, 55}},
        {CAPTION | TBSTYLE_ALIGNRIGHT, "xxxxxxxxx", {0, 45, 72, 55}},
    };
    for (const auto& [style, caption, shown] : captions) {
        SCOPED_TRACE(std::to_string(style) + " " + caption);
        Make(style, "", caption.c_str());
        box->SetInnerRect({60, 0, 120, 60});
        EXPECT_TRUE(box->SetCaptionFont("caption"));
        EXPECT_FALSE(box->SetCaptionFont("missing"));
        box->Enable(false); // which the caption doesn't mind
        EXPECT_EQ(Shown(YELLOW), shown);
    }
    box.reset();
    EXPECT_EQ(Refs(), 0);
}

} // namespace
