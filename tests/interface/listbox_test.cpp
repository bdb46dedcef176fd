#include <functional>
#include <memory>
#include <string>

#include "control_harness.h"
#include "controls/itflistbox.h"
#include "controls/itfscrollbar.h"

using namespace control_test;

namespace
{

constexpr int WIDTH = 200;
// Room for five lines, and half of a sixth one.
constexpr int PAGE = 5;
constexpr int HEIGHT = PAGE * GLYPH_H + GLYPH_H / 2;
constexpr int BAR_SPACE = 20;
constexpr std::uint32_t VSCROLL = IWS_VSCROLL;
constexpr int WHEEL_AWAY = 120;

using Codes = std::vector<int>;

class ListBoxTest : public BoxTest<CItfListBox>
{
  protected:
    void SetUp() override
    {
        BoxTest::SetUp();
        AddSprite("back", WIDTH, HEIGHT, RED);
    }

    void Make(std::uint32_t style, int lines = 0, const char* sprite = nullptr)
    {
        MakeBox(WIDTH, HEIGHT, style, sprite);
        for (int i = 0; i < lines; ++i)
            box->AddItem({i, "x"});
    }
    bool HasBar() const { return box->GetScrollBar() != nullptr; }
    CItfWnd& Bar() { return *CItfWnd::FindWindow(box->GetScrollBar()->GetId()); }
    void Mouse(std::uint32_t msg, int x, int y) { box->Dispatch(msg, 0, At(*box, x, y)); }
    /// A point on the line that stands `line` lines below the top one.
    void Press(int line) { Mouse(WM_LBUTTONDOWN, 5, line * GLYPH_H + 5); }
};

TEST_F(ListBoxTest, EventsInNotificationsOut)
{
    enum Event { PRESS, DOUBLE, RELEASE, KEY, WHEEL, BAR };
    const struct {
        int count;
        int sel; // before; -1 for none
        int top;
        Event event;
        int operand; // y, key, or wheel delta
        int newSel;
        int newTop;
        Codes codes;
    } cases[] = {
        {20, -1, 0, PRESS, 0, 0, 0, {2, 1}},
        {20, 3, 0, PRESS, 29, 2, 0, {2, 1}},
        {20, 3, 0, PRESS, 30, 3, 0, {1}},
        {20, 3, 7, PRESS, 49, 11, 7, {2, 1}},
        {20, 3, 7, PRESS, 50, 3, 7, {}}, // half a line isn't shown
        {2, 1, 0, PRESS, 20, 1, 0, {}},
        {0, -1, 0, PRESS, 0, -1, 0, {}},
        {20, 3, 0, DOUBLE, 45, 3, 0, {3}}, // which selects nothing
        {20, 3, 0, DOUBLE, 50, 3, 0, {}},
        {20, 3, 0, RELEASE, 0, 3, 0, {}},
        {20, -1, 0, KEY, VK_UP, 0, 0, {2}},
        {20, -1, 0, KEY, VK_DOWN, 0, 0, {2}},
        {20, -1, 0, KEY, VK_PRIOR, 0, 0, {2}},
        {20, -1, 0, KEY, VK_NEXT, 4, 0, {2}},
        {20, 4, 0, KEY, VK_DOWN, 5, 1, {2}},
        {20, 4, 0, KEY, VK_NEXT, 9, 5, {2}},
        {20, 19, 15, KEY, VK_NEXT, 19, 15, {2}},
        {20, 10, 10, KEY, VK_UP, 9, 5, {2}}, // comes in at the bottom, from wherever it comes
        {20, 2, 0, KEY, VK_PRIOR, 0, 0, {2}},
        {20, 2, 0, KEY, VK_RETURN, 2, 0, {5, 2}},
        {20, 2, 0, KEY, VK_DELETE, 2, 0, {6, 2}},
        {20, 2, 0, KEY, VK_HOME, 2, 0, {}},
        {0, -1, 0, KEY, VK_DOWN, -1, 0, {2}},
        {0, -1, 0, KEY, VK_RETURN, -1, 0, {5, 2}},
        {0, -1, 0, KEY, VK_DELETE, -1, 0, {6, 2}},
        {20, 2, 0, WHEEL, -1, 2, 1, {4}}, // the sign alone counts
        {20, 2, 0, WHEEL, WHEEL_AWAY, 2, 0, {4}},
        {20, 2, 7, WHEEL, 360, 2, 6, {4}},
        {20, 2, 19, WHEEL, -WHEEL_AWAY, 2, 19, {4}},
        {3, 2, 0, WHEEL, -WHEEL_AWAY, 2, 0, {4}},
        {20, 2, 7, BAR, WHEEL_AWAY, 2, 6, {4}},
        {20, 2, 15, BAR, -WHEEL_AWAY, 2, 16, {4}},
        {20, 2, 16, BAR, -WHEEL_AWAY, 2, 16, {4}},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto& test = cases[i];
        SCOPED_TRACE(i);
        Make(0, test.count);
        if (test.sel >= 0)
            box->SetCurSel(test.sel);
        box->SetTopIndex(test.top);
        EXPECT_TRUE(TakeCodes().empty()) << "calls tell nothing";
        switch (test.event) {
        case PRESS:
            Mouse(WM_LBUTTONDOWN, 0, test.operand);
            break;
        case DOUBLE:
            Mouse(WM_LBUTTONDBLCLK, 0, test.operand);
            break;
        case RELEASE:
            Mouse(WM_LBUTTONUP, 0, test.operand);
            break;
        case KEY:
            Key(test.operand);
            break;
        case WHEEL:
            Wheel(test.operand);
            break;
        case BAR:
            Bar().Dispatch(WM_MOUSEWHEEL, WheelBy(test.operand), 0);
            break;
        }
        EXPECT_EQ(box->GetCurSel(), test.newSel);
        EXPECT_EQ(box->GetTopIndex(), test.newTop);
        if (HasBar()) {
            EXPECT_EQ(box->GetScrollBar()->GetPos(), test.newTop);
        }
        EXPECT_EQ(TakeCodes(), test.codes);
    }
    Make(LBSTYLE_NOWHEEL, 20);
    Wheel(-WHEEL_AWAY);
    EXPECT_EQ(box->GetTopIndex(), 0);
    EXPECT_TRUE(TakeCodes().empty());
    Mouse(WM_LBUTTONDOWN, WIDTH - BAR_SPACE, 5);
    EXPECT_TRUE(TakeCodes().empty()) << "the bar's place is beside the lines";
    box->Dispatch(ITFM_NOTIFY, SB_CHANGED, SCROLLBAR_CTRL_ID + 1);
    EXPECT_TRUE(TakeCodes().empty());
}

TEST_F(ListBoxTest, BarFollowsTheItems)
{
    const struct {
        std::uint32_t style;
        int count;
        bool bar;
        bool space;
    } cases[] = {
        {0, PAGE, false, false},
        {0, PAGE + 1, true, true},
        {VSCROLL, 0, true, true},
        {LBSTYLE_NOBAR, 50, false, false},
        {LBSTYLE_NOBAR | VSCROLL, 50, false, false},
        {LBSTYLE_BARSPACE, 1, false, true},
        {LBSTYLE_BARSPACE, 50, true, true},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(std::to_string(test.style) + ", " + std::to_string(test.count));
        Make(test.style);
        box->SetInnerRect({30, 3, 60, 40});
        EXPECT_EQ(box->GetPageSize(), 3);
        box->ResetContent();
        for (int i = 0; i < test.count; ++i)
            box->AddItem({i, "x"});
        EXPECT_EQ(box->GetInnerRect(), (RECT{0, 0, test.space ? WIDTH - BAR_SPACE : WIDTH, HEIGHT}));
        ASSERT_EQ(HasBar(), test.bar);
        if (!test.bar)
            continue;
        EXPECT_EQ(Bar().GetPos(), (POINT{WIDTH - BAR_SPACE, 0}));
        EXPECT_EQ(Bar().GetClientRect(), (RECT{0, 0, 18, HEIGHT}));
        EXPECT_TRUE(Bar().IsVisible());
        EXPECT_EQ(box->GetScrollBar()->GetMin(), 0);
        EXPECT_EQ(box->GetScrollBar()->GetMax(), test.count - PAGE + 1);
        EXPECT_EQ(box->GetScrollBar()->GetPage(), 1);
    }

    Make(0, PAGE + 1);
    const std::function<const ItfListItem&(std::size_t)> any = [](std::size_t) -> const ItfListItem& {
        static const ItfListItem item;
        return item;
    };
    box->Fill(PAGE + 3, any);
    EXPECT_EQ(box->GetScrollBar()->GetMax(), 4);
    box->Fill(PAGE, any);
    EXPECT_FALSE(HasBar()) << "filling begins with an empty box";
    box->Fill(PAGE + 1, any);
    box->ResetContent();
    EXPECT_FALSE(HasBar());
    EXPECT_EQ(box->GetCount(), 0);

    Toolkit().spriteMap.clear();
    Toolkit().sprites.clear();
    Make(0, 50);
    EXPECT_FALSE(HasBar()) << "without a thumb there is none";
    EXPECT_EQ(box->GetInnerRect(), (RECT{0, 0, WIDTH, HEIGHT}));
}

TEST_F(ListBoxTest, SelectionAndTopLineAreHeld)
{
    const struct {
        int count;
        int top;
        int sel;
        int newSel;
        int newTop;
    } cases[] = {
        {20, 0, -5, 0, 0},    {20, 0, 4, 4, 0},     {20, 0, 5, 5, 1},
        {20, 0, 100, 19, 15}, {20, 10, 9, 9, 5},    {20, 10, 2, 2, 0},
        {20, 10, 14, 14, 10}, {PAGE, 0, 100, 4, 0}, {0, 0, 3, -1, 0},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(std::to_string(test.count) + ", " + std::to_string(test.sel));
        Make(0, test.count);
        box->SetTopIndex(test.top);
        box->SetCurSel(test.sel);
        EXPECT_EQ(box->GetCurSel(), test.newSel);
        EXPECT_EQ(box->GetTopIndex(), test.newTop);
        EXPECT_EQ(box->GetCurData(), test.newSel);
        EXPECT_EQ(box->HasSelection(), test.newSel >= 0);
        EXPECT_EQ(box->GetItemData(test.count), -1);
    }
    Make(0, 20);
    box->SetTopIndex(100);
    EXPECT_EQ(box->GetTopIndex(), 19);
    box->SetTopIndex(-3);
    EXPECT_EQ(box->GetTopIndex(), 0);
    box->AddItem({3, "again"});
    box->SelectData(3);
    EXPECT_EQ(box->GetCurSel(), 20) << "the last match";
    box->SelectData(99);
    EXPECT_EQ(box->GetCurSel(), 20);
}

TEST_F(ListBoxTest, ItemsFindTheirPlace)
{
    const auto texts = [this] {
        std::string all;
        for (int i = 0; i < box->GetCount(); ++i)
            all += box->GetItem(i).m_Text + std::to_string(box->GetItemData(i)) + " ";
        return all;
    };
    Make(LBSTYLE_SORTED);
    const ItfListItem items[] = {{0, "b", 1}, {1, "\xe4", 1}, {2, "a", 2}, {3, "B", 1},
                                 {4, "b", 1}, {5, "z"},       {6, "b", 1}, {7, "z", -1}};
    const int places[] = {0, 1, 2, 0, 2, 0, 4, 0};
    for (std::size_t i = 0; i < std::size(items); ++i)
        EXPECT_EQ(box->AddItem(items[i]), places[i]) << i;
    const std::string sorted = texts();
    EXPECT_EQ(sorted, "z7 z5 B3 b0 b4 b6 \xe4"
                      "1 a2 ");
    box->Fill(std::size(items), [&](std::size_t i) -> const ItfListItem& { return items[i]; });
    EXPECT_EQ(texts(), sorted);

    Make(0);
    for (const int index : {5, -1, 1, 99})
        box->InsertItem(index, {index, ""});
    EXPECT_EQ(texts(), "-1 1 5 99 ");
}

TEST_F(ListBoxTest, LinesAreDrawnInTheirColoursAndPlaces)
{
    const int line = 2 * GLYPH_H;
    const struct {
        std::uint32_t style;
        int left;
        bool highlight;
    } cases[] = {
        {0, 2, true},
        {LBSTYLE_RIGHT, WIDTH - 3 * GLYPH_W, true},
        {LBSTYLE_CENTER, 2 + (WIDTH - 2 - 3 * GLYPH_W) / 2, true},
        {+LBSTYLE_CENTER | +LBSTYLE_RIGHT, 2 + (WIDTH - 2 - 3 * GLYPH_W) / 2, true},
        {LBSTYLE_NOSELECT, 2, false},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.style);
        Make(test.style);
        for (int i = 0; i < 3; ++i)
            box->AddItem(ItfListItem(i, i == 2 ? "xxx" : "", ToColour(YELLOW)));
        EXPECT_EQ(Shown(YELLOW), (RECT{test.left, line, test.left + 3 * GLYPH_W, line + GLYPH_H}));
        box->SetCurSel(1);
        EXPECT_EQ(Shown(BLUE), test.highlight ? (RECT{0, GLYPH_H, WIDTH, 2 * GLYPH_H}) : RECT());
    }
    Make(0, 20);
    EXPECT_EQ(Shown(WHITE), (RECT{2, 0, 2 + GLYPH_W, PAGE * GLYPH_H})) << "whole lines only";
    box->SetTopIndex(18);
    EXPECT_EQ(Shown(WHITE).bottom, 2 * GLYPH_H);
}

TEST_F(ListBoxTest, RepaintAfterInputDependsOnTheBackground)
{
    const auto input = [this] {
        ClearScreen(BLACK);
        parent.draws.clear();
        Press(1);
        Wheel(WHEEL_AWAY);
    };
    Make(0, 3, "back");
    input();
    EXPECT_TRUE(parent.draws.empty());
    EXPECT_EQ(Extent(RED), (RECT{LEFT, TOP, LEFT + WIDTH, TOP + HEIGHT}));

    Make(0, 3);
    input();
    EXPECT_EQ(parent.draws, (std::vector<RECT>(2, {LEFT, TOP, LEFT + WIDTH, TOP + HEIGHT})));
    const RECT nothing = Extent(WHITE);
    EXPECT_TRUE(IsRectEmpty(&nothing)) << "what lies behind the box, and no more";

    for (const char* sprite : {"back", ""}) {
        Make(LBSTYLE_PASSIVE, 3, sprite);
        input();
        EXPECT_TRUE(parent.draws.empty());
        const RECT all = Extent(RED);
        EXPECT_TRUE(IsRectEmpty(&all));
    }
    Make(0, 3, "back");
    ClearScreen(BLACK);
    Key(VK_DOWN);
    const RECT all = Extent(RED);
    EXPECT_TRUE(IsRectEmpty(&all)) << "keys leave it to the parent";
}

TEST_F(ListBoxTest, ParentMayDeleteOrRefillTheBoxInAnyNotification)
{
    const std::function<void()> events[] = {
        [this] { Press(0); },          [this] { Mouse(WM_LBUTTONDBLCLK, 5, 5); },
        [this] { Wheel(WHEEL_AWAY); }, [this] { Bar().Dispatch(WM_MOUSEWHEEL, WheelBy(-WHEEL_AWAY), 0); },
        [this] { Key(VK_RETURN); },    [this] { Key(VK_DELETE); },
        [this] { Key(VK_UP); },
    };
    parent.onMessage = [this](const RecordingWnd::Got& got) {
        if (got.msg == ITFM_NOTIFY)
            box.reset();
    };
    for (const auto& event : events) {
        Make(0, 20);
        event();
        EXPECT_EQ(TakeCodes().size(), 1u);
        EXPECT_EQ(box, nullptr);
        EXPECT_EQ(Toolkit().windows.size(), 1u);
    }
    // A bar that goes or comes while its own handler runs.
    for (const int lines : {0, 1, 50}) {
        parent.onMessage = [&](const RecordingWnd::Got& got) {
            if (got.msg != ITFM_NOTIFY)
                return;
            box->ResetContent();
            for (int i = 0; i < lines; ++i)
                box->AddItem({i, "y"});
        };
        for (const auto& event : events) {
            Make(0, 20);
            event();
            EXPECT_EQ(box->GetCount(), lines);
            EXPECT_LT(box->GetCurSel(), lines);
            EXPECT_EQ(HasBar(), lines > PAGE);
            EXPECT_EQ(Shown(WHITE).bottom, std::min(lines, PAGE) * GLYPH_H);
        }
    }
    parent.onMessage = nullptr;
}

TEST_F(ListBoxTest, FontAndHighlightAreCounted)
{
    AddColouredFont("other", GREEN);
    const int other = parent.AcquireFont("other");
    const int highlight = parent.AcquireSprite("itfScBar");
    const auto fontRefs = [&] { return Toolkit().fonts[static_cast<std::size_t>(other)].refs; };
    const auto spriteRefs = [&] { return Toolkit().sprites[static_cast<std::size_t>(highlight)].refs; };
    Make(0);
    EXPECT_TRUE(box->SetFont("other"));
    EXPECT_FALSE(box->SetFont("nothing"));
    EXPECT_EQ(box->GetFontHandle(), other);
    box->SetFontHandle(other);
    EXPECT_EQ(fontRefs(), 2);
    parent.AddSpriteRef(highlight);
    box->SetSelSprite(highlight);
    EXPECT_EQ(spriteRefs(), 2);
    EXPECT_LT(parent.AcquireSprite("nothing"), 0);
    box.reset();
    EXPECT_EQ(fontRefs(), 1);
    EXPECT_EQ(spriteRefs(), 1);
    parent.ReleaseFont(other);
    parent.ReleaseSprite(highlight);
    ExpectAllGivenBack();
}

// The bar's range has one position more than there are full pages: with an empty page that is past the end.
TEST_F(ListBoxTest, BoxOfLessThanALineScrollsPastItsEndUnharmed)
{
    MakeBox(WIDTH, GLYPH_H - 1, 0);
    for (int i = 0; i < 3; ++i)
        box->AddItem({i, "x"});
    ASSERT_TRUE(HasBar());
    for (int i = 0; i < 9; ++i)
        Bar().Dispatch(WM_MOUSEWHEEL, WheelBy(-WHEEL_AWAY), 0);
    EXPECT_EQ(box->GetTopIndex(), 4);
    const RECT nothing = Shown(WHITE);
    EXPECT_TRUE(IsRectEmpty(&nothing));
    TakeCodes();
    Press(0);
    EXPECT_TRUE(TakeCodes().empty());
    Key(VK_DOWN);
    EXPECT_EQ(box->GetTopIndex(), 1) << "a selection brings the lines back";
}

TEST_F(ListBoxTest, FontWithoutAHeightHoldsEveryLine)
{
    Toolkit().fontMap.clear();
    Make(0, 20);
    EXPECT_EQ(box->GetPageSize(), 20);
    EXPECT_FALSE(HasBar());
    Press(0);
    EXPECT_TRUE(TakeCodes().empty());
    Key(VK_NEXT);
    EXPECT_EQ(box->GetCurSel(), 19);
    box->Invalidate(nullptr);
}

} // namespace
