#include <memory>
#include <string>

#include "control_harness.h"
#include "controls/itfscrollbar.h"
#include "controls/itftextbox.h"

using namespace control_test;

namespace
{

constexpr int LEFT = 10;
constexpr int TOP = 20;
// Room for 25 characters and 10 lines.
constexpr int WIDTH = 25 * GLYPH_W;
constexpr int HEIGHT = 10 * GLYPH_H;
constexpr int PAGE = 10;

std::string Lines(int count, const std::string& line = "x")
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += i == 0 ? line : "\r\n" + line;
    return text;
}

class TextBoxTest : public ControlTest
{
  protected:
    std::unique_ptr<CItfTextBox> box;

    void SetUp() override
    {
        ControlTest::SetUp();
        AddColouredFont("itfListFont", WHITE);
        AddSprite("itfScBar", 18, 30, GREEN);
        AddSprite("itfScArrUp", 18, 18, GREEN);
        AddSprite("itfScArrUpA", 18, 18, GREEN);
        AddSprite("itfScArrDown", 18, 18, GREEN);
        AddSprite("itfScArrDownA", 18, 18, GREEN);
        Make(0);
    }
    void TearDown() override
    {
        box.reset();
        ControlTest::TearDown();
    }

    void Make(std::uint32_t style, const char* caption = nullptr)
    {
        box = std::make_unique<CItfTextBox>();
        const RECT rect = {LEFT, TOP, LEFT + WIDTH, TOP + HEIGHT};
        ASSERT_TRUE(box->Create(caption, nullptr, &rect, &parent, 5, style, &engine));
        box->Show(true);
        ClearScreen(BLACK);
    }

    bool HasBar() const { return box->GetScrollBar() != nullptr; }
    /// The bar, which is the newest window.
    CItfWnd& Bar() { return *Toolkit().windows.back().wnd; }
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

TEST_F(TextBoxTest, BarComesAndGoesWithTheText)
{
    const struct {
        std::uint32_t style;
        int lines;
        bool bar;
    } cases[] = {
        {0, PAGE, false},
        {0, PAGE + 1, true},
        {TBSTYLE_NOVSCROLL, 50, false},
        {+TBSTYLE_NOVSCROLL | +IWS_VSCROLL, 50, false},
        {IWS_VSCROLL, 1, true},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(std::to_string(test.style) + ", " + std::to_string(test.lines));
        Make(test.style);
        const std::size_t windows = Toolkit().windows.size();
        EXPECT_TRUE(box->SetText(Lines(test.lines).c_str()));
        EXPECT_EQ(box->GetLineCount(), test.lines);
        ASSERT_EQ(HasBar(), test.bar);
        EXPECT_EQ(Toolkit().windows.size(), windows + (test.bar ? 1 : 0));
        if (!test.bar)
            continue;
        const CItfScrollBar& bar = *box->GetScrollBar();
        EXPECT_EQ(bar.GetCtrlId(), SCROLLBAR_CTRL_ID);
        EXPECT_EQ(bar.GetPos(), 0);
        EXPECT_EQ(bar.GetMin(), 0);
        EXPECT_EQ(bar.GetMax(), test.lines - PAGE);
        EXPECT_EQ(bar.GetPage(), PAGE);
        EXPECT_TRUE(bar.IsVisible());
        box->SetText(nullptr);
        EXPECT_FALSE(HasBar()) << "an empty box has none whatever its style";
        EXPECT_EQ(box->GetLineCount(), 0);
        EXPECT_STREQ(box->GetText(), "");
    }
    Make(0);
    box->SetText(Lines(PAGE + 1).c_str());
    box->SetText("x");
    EXPECT_FALSE(HasBar());
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
    EXPECT_EQ(box->GetScrollBar()->GetMax(), 2 * (PAGE + 1) - PAGE);
    RECT rect;
    box->GetScrollBar()->GetScreenRect(&rect);
    EXPECT_EQ(rect, (RECT{LEFT + WIDTH, TOP + 5, LEFT + WIDTH + 18, TOP + 5 + HEIGHT}));
    // With the bar already there the text has the whole width again.
    box->AddText(("\r\n" + line).c_str(), nullptr);
    EXPECT_EQ(box->GetLineCount(), PAGE + 2);
    EXPECT_EQ(box->GetScrollBar()->GetMax(), 2);
    // 16 pixels less leave room for 23 characters.
    box->SetText(nullptr);
    box->SetText(Lines(PAGE + 1, "xxxxxxxxxxx xxxxxxxxxxx").c_str());
    EXPECT_EQ(box->GetLineCount(), PAGE + 1);
}

TEST_F(TextBoxTest, KeysAndWheelScrollByLines)
{
    const struct {
        int key; // or else the wheel
        int delta;
        int times;
        int top;
        bool redrawn; // the last time
    } steps[] = {
        {VK_UP, 0, 1, 0, false},   {VK_DOWN, 0, 2, 2, true},
        {VK_UP, 0, 1, 1, true},    {VK_NEXT, 0, 1, 1, false},
        {0, -120, 1, 2, true},     {0, 0, 1, 3, true},
        {0, 1, 1, 2, true},        {0, 240, 1, 1, true},
        {VK_DOWN, 0, 3, 4, true}, // the range ends at 2
        {VK_DOWN, 0, 7, 11, true}, {VK_DOWN, 0, 1, 11, false},
        {VK_UP, 0, 1, 10, true},
    };
    box->SetText(Lines(12).c_str());
    for (std::size_t i = 0; i < std::size(steps); ++i) {
        SCOPED_TRACE(i);
        for (int time = 0; time < steps[i].times; ++time) {
            parent.draws.clear();
            if (steps[i].key != 0)
                Key(steps[i].key);
            else
                Wheel(steps[i].delta);
        }
        EXPECT_EQ(box->GetTopLine(), steps[i].top);
        EXPECT_EQ(box->GetScrollBar()->GetPos(), steps[i].top);
        EXPECT_EQ(!parent.draws.empty(), steps[i].redrawn);
    }
    EXPECT_TRUE(TakeCodes().empty()) << "the box tells its parent nothing";

    Make(TBSTYLE_NOVSCROLL);
    box->SetText(Lines(30).c_str());
    Key(VK_DOWN);
    Wheel(-120);
    EXPECT_EQ(box->GetTopLine(), 0);
}

TEST_F(TextBoxTest, BarMovesTheText)
{
    box->SetText(Lines(30).c_str());
    const struct {
        int pos; // where the wheel of one notch down goes out from
        int top;
    } cases[] = {{0, 1}, {18, 19}, {100, 20}};
    for (const auto& test : cases) {
        static_cast<CItfScrollBar&>(Bar()).SetPos(test.pos);
        Bar().Dispatch(WM_MOUSEWHEEL, WheelBy(-120), 0);
        EXPECT_EQ(box->GetTopLine(), test.top);
    }
    // What isn't the bar's report changes nothing, and neither does a position outside the text.
    static_cast<CItfScrollBar&>(Bar()).SetPos(3);
    box->Dispatch(ITFM_NOTIFY, 1, SCROLLBAR_CTRL_ID);
    box->Dispatch(ITFM_NOTIFY, SB_CHANGED, SCROLLBAR_CTRL_ID + 1);
    EXPECT_EQ(box->GetTopLine(), 20);
    for (const int pos : {-1, 30}) {
        static_cast<CItfScrollBar&>(Bar()).SetPos(pos);
        box->Dispatch(ITFM_NOTIFY, SB_CHANGED, SCROLLBAR_CTRL_ID);
        EXPECT_EQ(box->GetTopLine(), 20) << pos;
    }
}

TEST_F(TextBoxTest, RangeOfABarForATextThatFitsHoldsAtTheStart)
{
    Make(IWS_VSCROLL);
    box->SetText("x");
    EXPECT_EQ(box->GetScrollBar()->GetMax(), 1 - PAGE);
    for (const int delta : {-120, 120})
        Bar().Dispatch(WM_MOUSEWHEEL, WheelBy(delta), 0);
    Key(VK_DOWN);
    Key(VK_UP);
    EXPECT_EQ(box->GetTopLine(), 0);
    EXPECT_EQ(box->GetScrollBar()->GetPos(), 0);
    box->SetText("");
    Key(VK_DOWN);
    EXPECT_EQ(box->GetTopLine(), 0) << "a text without lines";
}

TEST_F(TextBoxTest, ScrollToEndAndWhatLaterTextsKeepOfIt)
{
    box->SetText(Lines(5).c_str());
    box->ScrollToEnd();
    EXPECT_EQ(box->GetTopLine(), 0);
    box->SetText(Lines(30).c_str());
    box->ScrollToEnd();
    EXPECT_EQ(box->GetTopLine(), 20);
    EXPECT_EQ(box->GetScrollBar()->GetPos(), 20);
    box->AddText("\r\ny", nullptr);
    EXPECT_EQ(box->GetTopLine(), 20);
    EXPECT_EQ(box->GetScrollBar()->GetPos(), 0);
    box->SetText(Lines(30).c_str());
    EXPECT_EQ(box->GetTopLine(), 0);
}

TEST_F(TextBoxTest, TextsAndNumbers)
{
    EXPECT_FALSE(box->AddText(nullptr, nullptr));
    EXPECT_TRUE(box->AddText("ab", nullptr));
    EXPECT_TRUE(box->AddText("", nullptr));
    EXPECT_TRUE(box->AddText("cd", nullptr));
    EXPECT_STREQ(box->GetText(), "abcd");
    box->AddText(box->GetText(), nullptr);
    EXPECT_STREQ(box->GetText(), "abcdabcd");
    box->SetText(box->GetText() + 2);
    EXPECT_STREQ(box->GetText(), "cdabcd");

    box->SetInt(-2147483647 - 1);
    EXPECT_STREQ(box->GetText(), "-2147483648");
    const struct {
        float value;
        const char* text;
    } floats[] = {{0.f, "0"},          {1.5f, "1.5"},          {-2.25f, "-2.25"},        {0.1f, "0.1"},
                  {99999.4f, "99999"}, {99999.6f, "1e+05"},    {123456.f, "1.2346e+05"}, {0.0001f, "0.0001"},
                  {0.00001f, "1e-05"}, {3.14159265f, "3.1416"}};
    for (const auto& test : floats) {
        EXPECT_TRUE(box->SetFloat(test.value));
        EXPECT_STREQ(box->GetText(), test.text);
    }
}

TEST_F(TextBoxTest, ColourMarksStayWithTheirTextAsItGrows)
{
    const std::uint32_t red = 0x0000ff;
    const std::uint32_t blue = 0xff0000;
    Make(IWS_VSCROLL);
    box->AddText("a a\r\n", nullptr);
    box->AddText("b b\r\n", &red);
    box->AddText("c c\r\n", &blue);
    for (int i = 0; i < 3000; ++i)
        box->AddText(" ", nullptr); // several blocks further on
    const auto line = [](int n, int characters) {
        return RECT{0, n * 10, characters * GLYPH_W, n * 10 + 10};
    };
    EXPECT_EQ(Shown(WHITE), line(0, 3));
    EXPECT_EQ(Shown(RED), line(1, 3));
    EXPECT_EQ(Shown(BLUE), line(2, 3));
    // A mark above the first line shown still has its effect.
    Key(VK_DOWN);
    Key(VK_DOWN);
    EXPECT_EQ(Shown(BLUE), line(0, 3));
    EXPECT_TRUE(Shown(RED) == RECT());
    box->SetText("aa\r\nbb");
    EXPECT_EQ(Shown(WHITE), (RECT{0, 0, 16, 20})) << "a new text has no marks";
}

TEST_F(TextBoxTest, StylesPlaceTheText)
{
    const struct {
        std::uint32_t style;
        RECT shown; // of two lines of three letters in a rectangle of 100 by 60
    } cases[] = {
        {0, {20, 10, 44, 30}},
        {TBSTYLE_CENTER_HOR, {58, 10, 82, 30}},
        {TBSTYLE_CENTER_VERT, {20, 30, 44, 50}},
        {TBSTYLE_CENTERED, {58, 30, 82, 50}},
    };
    for (const auto& test : cases) {
        Make(test.style);
        box->SetInnerRect({20, 10, 120, 70});
        box->SetText("xxx\r\nxxx");
        EXPECT_EQ(Shown(WHITE), test.shown) << test.style;
    }
}

TEST_F(TextBoxTest, CaptionStandsWhereTheStyleSays)
{
    constexpr std::uint32_t CAPTION = TBSTYLE_HASCAPTION;
    const struct {
        std::uint32_t style;
        const char* caption;
        int left; // of what is drawn; -1 for nothing
    } cases[] = {
        {0, "xxx", -1},
        {CAPTION, "xxx", 2},
        {CAPTION | TBSTYLE_CAPTIONRIGHT, "xxx", 122},
        {CAPTION | TBSTYLE_ALIGNRIGHT, "xxx", 36},
        {CAPTION | TBSTYLE_ALIGNRIGHT, "xxxxxxxxx", 0}, // wider than what is left of the rectangle
        {CAPTION | TBSTYLE_CAPTIONRIGHT | TBSTYLE_ALIGNRIGHT, "xxx", 122},
    };
    AddColouredFont("caption", YELLOW);
    AddColouredFont("captionDis", RED);
    for (const auto& test : cases) {
        SCOPED_TRACE(std::to_string(test.style) + " " + test.caption);
        Make(test.style, test.caption);
        box->SetInnerRect({60, 0, 120, 60});
        EXPECT_TRUE(box->SetCaptionFont("caption"));
        EXPECT_FALSE(box->SetCaptionFont("missing"));
        box->Enable(false); // which the caption doesn't mind
        const RECT shown = Shown(YELLOW);
        const int width = GLYPH_W * static_cast<int>(std::string(test.caption).size());
        EXPECT_EQ(shown, test.left < 0 ? RECT() : (RECT{test.left, 45, test.left + width, 55}));
    }
}

TEST_F(TextBoxTest, FontBringsTheDisabledOneIfItExists)
{
    AddColouredFont("one", YELLOW);
    AddColouredFont("two", YELLOW);
    AddColouredFont("twoDis", RED);
    const struct {
        const char* font;
        bool result;
        std::uint16_t enabled, disabled;
    } cases[] = {{"missing", false, WHITE, WHITE}, {"one", true, YELLOW, WHITE}, {"two", true, YELLOW, RED}};
    for (const auto& test : cases) {
        Make(0);
        EXPECT_EQ(box->SetFont(test.font), test.result);
        box->SetText("x");
        const RECT glyph = {0, 0, GLYPH_W, GLYPH_H};
        EXPECT_EQ(Shown(test.enabled), glyph) << test.font;
        box->Enable(false);
        EXPECT_EQ(Shown(test.disabled), glyph) << test.font;
    }
    box.reset();
    for (const FontEntry& entry : Toolkit().fonts)
        EXPECT_EQ(entry.refs, 0);
}

TEST_F(TextBoxTest, TransparentBoxLetsWhatLiesBehindPaintFirst)
{
    box->SetText("x");
    parent.draws.clear();
    box->Redraw();
    ASSERT_EQ(parent.draws.size(), 1u);
    EXPECT_EQ(parent.draws[0], (RECT{LEFT, TOP, LEFT + WIDTH, TOP + HEIGHT}));
    EXPECT_EQ(box->GetUpdateRect(), box->GetInnerRect());
    AddSprite("back", WIDTH, HEIGHT, BLUE);
    box->SetSprite("back");
    box->Redraw();
    EXPECT_EQ(parent.draws.size(), 1u);
    EXPECT_EQ(Pixel(LEFT + WIDTH - 1, TOP), BLUE);
}

TEST_F(TextBoxTest, WithoutAFontNothingIsDrawnOrScrolled)
{
    Toolkit().fontMap.clear();
    box.reset();
    for (const std::uint32_t style : {0u, +IWS_VSCROLL, +TBSTYLE_HASCAPTION}) {
        Make(style, "caption");
        box->SetText(Lines(50).c_str());
        box->AddText("more", nullptr);
        EXPECT_EQ(HasBar(), style == IWS_VSCROLL);
        Key(VK_DOWN);
        Wheel(-120);
        box->ScrollToEnd();
        EXPECT_EQ(box->GetTopLine(), 0);
        EXPECT_TRUE(Shown(WHITE) == RECT());
    }
}

TEST_F(TextBoxTest, BarThatCannotBeMadeLeavesTheText)
{
    Toolkit().spriteMap.clear();
    box->SetText(Lines(30).c_str());
    EXPECT_FALSE(HasBar());
    EXPECT_EQ(Toolkit().windows.size(), 2u);
    EXPECT_EQ(Shown(WHITE), (RECT{0, 0, GLYPH_W, HEIGHT}));
}

TEST_F(TextBoxTest, BoxMayGoWithItsBarPressedAndItsTableEmpty)
{
    box->SetText(Lines(30).c_str());
    Bar().Dispatch(WM_LBUTTONDOWN, 0, At(Bar(), 5, 5));
    box->Destroy();
    EXPECT_EQ(Toolkit().windows.size(), 1u);
    box->SetText(Lines(40).c_str());
    box->SetText("x");
    box->SetText(Lines(40).c_str());
    EXPECT_EQ(Toolkit().windows.size(), 1u) << "a box outside the table makes no bar";
}

TEST_F(TextBoxTest, MegabyteOfTextScrollsToItsEnd)
{
    const std::string text = Lines(1 << 17, "line x") + "\r\nend";
    box->SetText(text.c_str());
    EXPECT_EQ(box->GetLineCount(), (1 << 17) + 1);
    box->ScrollToEnd();
    EXPECT_EQ(box->GetTopLine(), (1 << 17) + 1 - PAGE);
    EXPECT_EQ(Shown(WHITE).bottom, HEIGHT);
}

TEST(ByteBufferTest, GrowsByItsStepOrByTheShortfall)
{
    const struct {
        std::size_t appended;
        std::size_t capacity;
    } cases[] = {
        {3, 3},            // the first block is exact
        {1, 13},           // short by less than the step
        {9, 13}, {10, 23}, // short by the step
        {9, 33}, {13, 45}, {100, 145}, {0, 145},
    };
    CByteBuffer buffer;
    std::string expected;
    for (const auto& test : cases) {
        const std::string bytes(test.appended, static_cast<char>('a' + expected.size() % 26));
        buffer.Append(bytes.data(), bytes.size());
        expected += bytes;
        EXPECT_EQ(buffer.GetCapacity(), test.capacity) << test.appended;
        EXPECT_EQ(std::string(buffer.GetData(), buffer.GetSize()), expected);
    }
    buffer.Append(buffer.GetData(), buffer.GetSize()); // its own bytes, which move
    EXPECT_EQ(std::string(buffer.GetData(), buffer.GetSize()), expected + expected);
}

} // namespace
