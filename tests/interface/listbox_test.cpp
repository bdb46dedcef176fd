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
    enum Event { PRESS, DOUBLE, KEY, WHEEL, BAR };
    // How many items, the selection (-1 for none) and the top line before; the event and its y, key or wheel
    // delta; selection, top line and what is told.
    const Rows<int, int, int, Event, int, int, int, Codes> cases = {
        {20, -1, 0, PRESS, 0, 0, 0, {2, 1}},       {20, 3, 0, PRESS, 30, 3, 0, {1}},
        {20, 3, 7, PRESS, 49, 11, 7, {2, 1}},      {20, 3, 7, PRESS, 50, 3, 7, {}}, // half a line isn't shown
        {20, 3, 0, DOUBLE, 45, 3, 0, {3}},                                          // which selects nothing
        {20, -1, 0, KEY, VK_UP, 0, 0, {2}},        {20, 4, 0, KEY, VK_DOWN, 5, 1, {2}},
        {20, 4, 0, KEY, VK_NEXT, 9, 5, {2}},       {20, 19, 15, KEY, VK_NEXT, 19, 15, {2}},
        {20, 10, 10, KEY, VK_UP, 9, 5, {2}}, // comes in at the bottom, from wherever it comes
        {20, 2, 0, KEY, VK_RETURN, 2, 0, {5, 2}},  {0, -1, 0, KEY, VK_DOWN, -1, 0, {2}},
        {0, -1, 0, KEY, VK_DELETE, -1, 0, {6, 2}}, {20, 2, 0, WHEEL, -1, 2, 1, {4}}, // the sign alone counts
        {20, 2, 7, WHEEL, 360, 2, 6, {4}},         {20, 2, 19, WHEEL, -WHEEL_AWAY, 2, 19, {4}},
        {3, 2, 0, WHEEL, -WHEEL_AWAY, 2, 0, {4}},  {20, 2, 7, BAR, WHEEL_AWAY, 2, 6, {4}},
        {20, 2, 16, BAR, -WHEEL_AWAY, 2, 16, {4}},
    };
    for (const auto& [count, sel, top, event, operand, newSel, newTop, codes] : cases) {
        SCOPED_TRACE(testing::Message() << count << ' ' << sel << ' ' << event << ' ' << operand);
        Make(0, count);
        if (sel >= 0)
            box->SetCurSel(sel);
        box->SetTopIndex(top);
        EXPECT_TRUE(TakeCodes().empty()) << "calls tell nothing";
        if (event == KEY)
            Key(operand);
        else if (event == WHEEL)
            Wheel(operand);
        else if (event == BAR)
            Bar().Dispatch(WM_MOUSEWHEEL, WheelBy(operand), 0);
        else
            Mouse(event == PRESS ? WM_LBUTTONDOWN : WM_LBUTTONDBLCLK, 0, operand);
        EXPECT_EQ(box->GetCurSel(), newSel);
        EXPECT_EQ(box->GetTopIndex(), newTop);
        EXPECT_TRUE(!HasBar() || box->GetScrollBar()->GetPos() == newTop);
        EXPECT_EQ(TakeCodes(), codes);
    }
    Make(LBSTYLE_NOWHEEL, 20);
    Wheel(-WHEEL_AWAY);
    EXPECT_EQ(box->GetTopIndex(), 0);
    Mouse(WM_LBUTTONDOWN, WIDTH - BAR_SPACE, 5); // the bar's place is beside the lines
    box->Dispatch(ITFM_NOTIFY, SB_CHANGED, SCROLLBAR_CTRL_ID + 1);
    EXPECT_TRUE(TakeCodes().empty());
}

TEST_F(ListBoxTest, BarFollowsTheItems)
{
    // Whether there is a bar, and room for it.
    const Rows<std::uint32_t, int, bool, bool> cases = {{0, PAGE, false, false},
                                                        {0, PAGE + 1, true, true},
                                                        {VSCROLL, 0, true, true},
                                                        {LBSTYLE_NOBAR | VSCROLL, 50, false, false},
                                                        {LBSTYLE_BARSPACE, 1, false, true}};
    for (const auto& [style, count, bar, space] : cases) {
        SCOPED_TRACE(std::to_string(style) + ", " + std::to_string(count));
        Make(style);
        box->SetInnerRect({30, 3, 60, 40});
        EXPECT_EQ(box->GetPageSize(), 3);
        box->ResetContent();
        for (int i = 0; i < count; ++i)
            box->AddItem({i, "x"});
        EXPECT_EQ(box->GetInnerRect(), (RECT{0, 0, space ? WIDTH - BAR_SPACE : WIDTH, HEIGHT}));
        ASSERT_EQ(HasBar(), bar);
        if (!bar)
            continue;
        EXPECT_EQ(Bar().GetPos(), (POINT{WIDTH - BAR_SPACE, 0}));
        EXPECT_EQ(box->GetScrollBar()->GetMax(), count - PAGE + 1);
        EXPECT_EQ(box->GetScrollBar()->GetPage(), 1);
    }
    Make(0, PAGE + 1);
    const ItfListItem item;
    for (const int count : {PAGE + 3, PAGE, PAGE + 1}) {
        box->Fill(static_cast<std::size_t>(count), [&](std::size_t) -> const ItfListItem& { return item; });
        EXPECT_EQ(HasBar(), count > PAGE) << "filling begins with an empty box";
    }
    box->ResetContent();
    EXPECT_FALSE(HasBar());
}

TEST_F(ListBoxTest, SelectionAndTopLineAreHeld)
{
    for (const auto& [count, index, sel, top] : Rows<int, int, int, int>{
             {20, -5, 0, 0}, {20, 5, 5, 1}, {20, 100, 19, 15}, {PAGE, 100, 4, 0}, {0, 3, -1, 0}}) {
        Make(0, count);
        box->SetCurSel(index);
        EXPECT_EQ(box->GetCurSel(), sel) << index;
        EXPECT_EQ(box->GetTopIndex(), top) << index;
        EXPECT_EQ(box->GetCurData(), sel) << index;
    }
    EXPECT_EQ(box->GetItemData(0), -1);
    Make(0, 20);
    box->SetTopIndex(100);
    EXPECT_EQ(box->GetTopIndex(), 19);
    box->AddItem({3, "again"});
    for (const int data : {3, 99}) {
        box->SelectData(data);
        EXPECT_EQ(box->GetCurSel(), 20) << "the last match, which stays where there is none";
    }
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
    const int centred = 2 + (WIDTH - 2 - 3 * GLYPH_W) / 2;
    const Rows<std::uint32_t, int, bool> cases = {{0, 2, true},
                                                  {LBSTYLE_RIGHT, WIDTH - 3 * GLYPH_W, true},
                                                  {+LBSTYLE_CENTER | +LBSTYLE_RIGHT, centred, true},
                                                  {LBSTYLE_NOSELECT, 2, false}};
    for (const auto& [style, left, highlight] : cases) {
        SCOPED_TRACE(style);
        Make(style);
        for (int i = 0; i < 3; ++i)
            box->AddItem(ItfListItem(i, i == 2 ? "xxx" : "", ToColour(YELLOW)));
        EXPECT_EQ(Shown(YELLOW), (RECT{left, line, left + 3 * GLYPH_W, line + GLYPH_H}));
        box->SetCurSel(1);
        EXPECT_EQ(Shown(BLUE), highlight ? (RECT{0, GLYPH_H, WIDTH, 2 * GLYPH_H}) : RECT());
    }
    Make(0, 20);
    EXPECT_EQ(Shown(WHITE), (RECT{2, 0, 2 + GLYPH_W, PAGE * GLYPH_H})) << "whole lines only";
    box->SetTopIndex(18);
    EXPECT_EQ(Shown(WHITE).bottom, 2 * GLYPH_H);
}

TEST_F(ListBoxTest, RepaintAfterInputDependsOnTheBackground)
{
    const auto input = [this](std::uint32_t style, const char* sprite) {
        Make(style, 3, sprite);
        ClearScreen(BLACK);
        parent.draws.clear();
        Press(1);
        Wheel(WHEEL_AWAY);
    };
    const RECT whole = {LEFT, TOP, LEFT + WIDTH, TOP + HEIGHT};
    input(0, "back");
    EXPECT_TRUE(parent.draws.empty());
    EXPECT_EQ(Extent(RED), whole);
    input(0, nullptr);
    EXPECT_EQ(parent.draws, (std::vector<RECT>(2, whole)));
    EXPECT_EQ(Extent(WHITE), RECT()) << "what lies behind the box, and no more";
    input(LBSTYLE_PASSIVE, "back");
    EXPECT_EQ(Extent(RED), RECT());
    Make(0, 3, "back");
    ClearScreen(BLACK);
    Key(VK_DOWN);
    EXPECT_EQ(Extent(RED), RECT()) << "keys leave it to the parent";
}

TEST_F(ListBoxTest, ParentMayDeleteOrRefillTheBoxInAnyNotification)
{
    const std::function<void()> events[] = {
        [this] { Press(0); },          [this] { Mouse(WM_LBUTTONDBLCLK, 5, 5); },
        [this] { Wheel(WHEEL_AWAY); }, [this] { Bar().Dispatch(WM_MOUSEWHEEL, WheelBy(-WHEEL_AWAY), 0); },
        [this] { Key(VK_RETURN); },    [this] { Key(VK_DELETE); },
        [this] { Key(VK_UP); },
    };
    constexpr int DELETE = -1;
    // Or a bar goes or comes while its own handler runs.
    for (const int lines : {DELETE, 0, 1, 50}) {
        parent.onMessage = [&](const RecordingWnd::Got& got) {
            if (got.msg != ITFM_NOTIFY)
                return;
            if (lines == DELETE)
                return box.reset();
            box->ResetContent();
            for (int i = 0; i < lines; ++i)
                box->AddItem({i, "y"});
        };
        for (const auto& event : events) {
            Make(0, 20);
            event();
            if (lines == DELETE) {
                EXPECT_EQ(TakeCodes().size(), 1u);
                EXPECT_EQ(box, nullptr);
                EXPECT_EQ(Toolkit().windows.size(), 1u);
                continue;
            }
            EXPECT_EQ(box->GetCount(), lines);
            EXPECT_LT(box->GetCurSel(), lines);
            EXPECT_EQ(HasBar(), lines > PAGE);
            EXPECT_EQ(Shown(WHITE).bottom, std::min(lines, PAGE) * GLYPH_H);
        }
    }
    parent.onMessage = nullptr;
}

} // namespace
