#include <limits>
#include <memory>

#include "control_harness.h"
#include "controls/itfscrollbar.h"

using namespace control_test;

namespace
{

constexpr int LEFT = 100;
constexpr int TOP = 50;
constexpr int ID = 10;
constexpr int ARROW = 18;
constexpr int THUMB = 30;
// Of the vertical bar: its thumb's track has 152 pixels, from place 18 on.
constexpr int LENGTH = 2 * ARROW + THUMB + 152;
// Of the slider, which has a thumb of 30 by 20: without arrows its track has 300 pixels.
constexpr int SLIDER_LENGTH = 330;
constexpr int SLIDER_HEIGHT = 20;
constexpr int INT_LOWEST = std::numeric_limits<int>::min();
constexpr int INT_HIGHEST = std::numeric_limits<int>::max();

using Codes = std::vector<int>;

class ScrollBarTest : public ControlTest
{
  protected:
    std::unique_ptr<CItfScrollBar> bar;

    void SetUp() override
    {
        ControlTest::SetUp();
        AddSprite("itfScBar", ARROW, THUMB, WHITE);
        AddSprite("itfScArrUp", ARROW, ARROW, BLUE);
        AddSprite("itfScArrUpA", ARROW, ARROW, YELLOW);
        AddSprite("itfScArrDown", ARROW, ARROW, GREEN);
        AddSprite("itfScArrDownA", ARROW, ARROW, RED);
        AddSprite("itfScHorBar", THUMB, SLIDER_HEIGHT, WHITE);
        MakeVertical();
    }
    void TearDown() override
    {
        bar.reset();
        ControlTest::TearDown();
    }

    void Make(std::unique_ptr<CItfScrollBar> made, int width, int height, std::uint32_t style)
    {
        bar = std::move(made);
        const RECT rect = {LEFT, TOP, LEFT + width, TOP + height};
        ASSERT_TRUE(bar->Create(nullptr, nullptr, &rect, &parent, ID, style, &engine));
        bar->Show(true);
    }
    void MakeVertical() { Make(std::make_unique<CItfScrollBar>(), ARROW, LENGTH, 0); }
    /// Without arrows, whose sprites don't exist here.
    void MakeSlider(std::uint32_t style = SBSTYLE_NOARROWS)
    {
        Make(std::make_unique<CItfSlider>(), SLIDER_LENGTH, SLIDER_HEIGHT, SBSTYLE_HORIZONTAL | style);
    }

    bool IsSlider() const { return (bar->GetStyle() & SBSTYLE_HORIZONTAL) != 0; }
    void Send(std::uint32_t msg, int place, int across = 5)
    {
        bar->Dispatch(msg, 0, IsSlider() ? At(*bar, place, across) : At(*bar, across, place));
    }
    void Press(int place) { Send(WM_LBUTTONDOWN, place); }
    void Move(int place, int across = 5) { Send(WM_MOUSEMOVE, place, across); }
    void Release() { Send(WM_LBUTTONUP, 0); }
    void TickAfter(DWORD milliseconds)
    {
        host.now += milliseconds;
        bar->OnTick(static_cast<int>(milliseconds));
    }
};

TEST_F(ScrollBarTest, PressMovesByWhereItLands)
{
    // Range 0 to 76: two pixels for each position; the thumb of position p begins at 18 + 2p.
    const struct {
        int pos;
        int place;
        int expected;
        std::size_t told;
    } cases[] = {
        {10, 0, 9, 1},    {10, 17, 9, 1},   {0, 5, 0, 1},    // held in the range, and told all the same
        {10, 18, 0, 1},   {40, 97, 30, 1},  {40, 98, 40, 1}, // the thumb, which was taken where it stands
        {40, 127, 40, 1}, {40, 128, 50, 1}, {70, 199, 76, 1},
        {40, 200, 50, 1}, {40, 201, 41, 1}, {76, 217, 76, 1},
    };
    bar->SetRange(0, 76, 10);
    for (const auto& test : cases) {
        SCOPED_TRACE(test.place);
        bar->SetPos(test.pos);
        EXPECT_TRUE(TakeCodes().empty());
        Press(test.place);
        EXPECT_EQ(bar->GetPos(), test.expected);
        EXPECT_EQ(TakeGot(ITFM_NOTIFY), (std::vector<Words>(test.told, {SB_CHANGED, ID})));
        EXPECT_EQ(CItfWnd::GetCaptureId(), bar->GetId());
        Release();
        EXPECT_EQ(CItfWnd::GetCaptureId(), -1);
        EXPECT_TRUE(TakeCodes().empty());
    }
}

TEST_F(ScrollBarTest, ThumbFollowsThePointerAndRounds)
{
    // Range 0 to 50 on 152 pixels: 3.04 pixels for each position.
    const struct {
        int place; // of the pointer, which took the thumb 7 pixels from its edge
        int expected;
    } cases[] = {
        {18 + 7, 0},  {19 + 7, 0},        {20 + 7, 1}, // 0.66 of a position
        {22 + 7, 1},  {23 + 7, 2},                     // 1.32, 1.64
        {94 + 7, 25}, {18 + 152 + 7, 50}, {500, 50},   {-300, 0}, {170 + 7, 50},
    };
    bar->SetRange(0, 50, 10);
    Press(18 + 7);
    for (const auto& test : cases) {
        TakeCodes();
        Move(test.place, 300); // far beside the bar
        EXPECT_EQ(bar->GetPos(), test.expected) << test.place;
        EXPECT_EQ(TakeCodes(), Codes{SB_CHANGED});
    }
    TickAfter(1000); // a drag doesn't repeat
    EXPECT_TRUE(TakeCodes().empty());
    Release();
    Move(50);
    EXPECT_EQ(bar->GetPos(), 50);
}

TEST_F(ScrollBarTest, HeldArrowRepeatsAfterTheLongDelay)
{
    bar->SetRange(0, 76, 10);
    bar->SetPos(40);
    for (const bool up : {true, false}) {
        const int step = up ? -1 : 1;
        const struct {
            DWORD wait;
            int steps; // since the press, which is one itself
        } cases[] = {{0, 1}, {200, 1}, {49, 1}, {1, 2}, {59, 2}, {1, 3}, {500, 4}, {20, 4}, {40, 5}};
        const int start = bar->GetPos();
        Press(up ? 5 : 210);
        for (const auto& test : cases) {
            TickAfter(test.wait);
            EXPECT_EQ(bar->GetPos(), start + step * test.steps) << test.wait;
        }
        Release();
        TickAfter(1000);
        EXPECT_EQ(bar->GetPos(), start + step * 5);
    }

    // The near arrow alone doesn't begin the long delay anew.
    bar->SetPos(40);
    Press(210);
    TickAfter(250);
    EXPECT_EQ(bar->GetPos(), 42);
    Press(5);
    TickAfter(60);
    EXPECT_EQ(bar->GetPos(), 40);
    Press(210);
    TickAfter(60);
    EXPECT_EQ(bar->GetPos(), 41);
}

TEST_F(ScrollBarTest, PointerThatMovesOnAHeldArrow)
{
    bar->SetRange(0, 76, 10);
    bar->SetPos(40);
    Press(5);
    EXPECT_EQ(Pixel(LEFT, TOP), YELLOW);
    Move(6); // each move on the arrow is a step
    EXPECT_EQ(bar->GetPos(), 38);
    Move(100, 5); // in the trough the arrow stays pressed
    TickAfter(250);
    EXPECT_EQ(bar->GetPos(), 37);
    Move(100, 50); // beside the bar it is let go
    TickAfter(250);
    EXPECT_EQ(bar->GetPos(), 37);
    EXPECT_EQ(Pixel(LEFT, TOP), BLUE);
    host.now += 300;
    Move(210); // and taken up by the other one
    EXPECT_EQ(bar->GetPos(), 38);
    EXPECT_EQ(Pixel(LEFT, TOP + LENGTH - 1), RED);
    TickAfter(59);
    EXPECT_EQ(bar->GetPos(), 38) << "the time of the step was stamped";
    TickAfter(1);
    EXPECT_EQ(bar->GetPos(), 39);
}

TEST_F(ScrollBarTest, PagingStopsUnderThePointer)
{
    bar->SetRange(0, 76, 10);
    Press(120); // the thumb of position 36 to 51 covers it
    const struct {
        int moveTo; // -1 for no move
        DWORD wait;
        int expected;
    } steps[] = {
        {-1, 0, 10},   {-1, 249, 10}, {-1, 1, 20},   {-1, 60, 30}, {-1, 60, 40},
        {-1, 60, 40},  {-1, 600, 40}, {30, 600, 40}, // the paging goes towards the maximum only
        {190, 59, 40},                               // a move starts the wait anew
        {-1, 1, 50},   {-1, 60, 60},  {-1, 60, 70},  {-1, 60, 76}, {-1, 600, 76},
    };
    for (std::size_t i = 0; i < std::size(steps); ++i) {
        SCOPED_TRACE(i);
        if (steps[i].moveTo >= 0)
            Move(steps[i].moveTo);
        TakeCodes();
        const int before = bar->GetPos();
        TickAfter(steps[i].wait);
        EXPECT_EQ(bar->GetPos(), steps[i].expected);
        EXPECT_EQ(TakeCodes().size(), before == steps[i].expected ? 0u : 1u);
    }
    Release();
    Press(25);
    EXPECT_EQ(bar->GetPos(), 66);
    TickAfter(250);
    EXPECT_EQ(bar->GetPos(), 56);
}

TEST_F(ScrollBarTest, WheelStepsByWholeNotches)
{
    const struct {
        int delta;
        int expected;
    } cases[] = {{120, 49}, {-120, 51}, {360, 47}, {119, 50}, {-239, 51}, {32767, 0}, {-32768, 76}};
    bar->SetRange(0, 76, 10);
    for (const auto& test : cases) {
        bar->SetPos(50);
        if (test.expected == 0)
            bar->SetPos(200); // 273 notches; held at the minimum
        bar->Dispatch(WM_MOUSEWHEEL, WheelBy(test.delta), 0);
        EXPECT_EQ(bar->GetPos(), test.expected) << test.delta;
        EXPECT_EQ(TakeCodes(), Codes{SB_CHANGED});
    }
}

TEST_F(ScrollBarTest, DisabledBarDoesNothing)
{
    bar->SetRange(0, 76, 10);
    bar->SetPos(20);
    bar->Enable(false);
    for (const int place : {5, 30, 60, 150, 210})
        Press(place);
    bar->Dispatch(WM_MOUSEWHEEL, WheelBy(120), 0);
    Move(5);
    TickAfter(1000);
    EXPECT_EQ(bar->GetPos(), 20);
    EXPECT_TRUE(TakeCodes().empty());
    EXPECT_EQ(CItfWnd::GetCaptureId(), -1);
}

TEST_F(ScrollBarTest, SliderThumbJumpsToThePress)
{
    const struct {
        int pos;
        int place;
        int expected;
        bool told;
    } cases[] = {
        {0, 155, 50, true}, // thumb's edge at 150, a whole number of thumbs
        {0, 179, 50, true},   {0, 180, 60, true},   {0, 329, 100, true},
        {90, 3, 0, true},     {50, 150, 50, false}, // on the thumb
        {50, 179, 50, false},
    };
    MakeSlider();
    bar->SetRange(0, 100, 10);
    for (const auto& test : cases) {
        SCOPED_TRACE(test.place);
        bar->SetPos(test.pos);
        Press(test.place);
        EXPECT_EQ(bar->GetPos(), test.expected);
        EXPECT_EQ(TakeCodes().size(), test.told ? 1u : 0u);
        EXPECT_EQ(CItfWnd::GetCaptureId(), -1) << "the press is over at once";
        Move(100);
        TickAfter(1000);
        EXPECT_EQ(bar->GetPos(), test.expected);
    }
}

TEST_F(ScrollBarTest, SliderWithArrowsPagesAndDrags)
{
    AddSprite("itfScHorArrUp", ARROW, ARROW, BLUE);
    AddSprite("itfScHorArrDown", ARROW, ARROW, GREEN);
    MakeSlider(0); // a track of 264 pixels from 18 on
    bar->SetRange(0, 132, 20);
    Press(100);
    EXPECT_EQ(bar->GetPos(), 20);
    Release();
    Press(5);
    EXPECT_EQ(bar->GetPos(), 19);
    Release();
    Press(18 + 38 + 4);
    ClearScreen(BLACK);
    Move(18 + 100 + 4);
    EXPECT_EQ(bar->GetPos(), 50);
    EXPECT_EQ(Extent(WHITE), (RECT{LEFT + 118, TOP, LEFT + 148, TOP + SLIDER_HEIGHT}));
    // The thumb's height is the arrows' too.
    EXPECT_EQ(Extent(BLUE), (RECT{LEFT, TOP, LEFT + ARROW, TOP + SLIDER_HEIGHT}));
    EXPECT_EQ(Extent(GREEN),
              (RECT{LEFT + SLIDER_LENGTH - ARROW, TOP, LEFT + SLIDER_LENGTH, TOP + SLIDER_HEIGHT}));
}

TEST_F(ScrollBarTest, ThumbIsDrawnAtItsPlace)
{
    const struct {
        int min, max, pos;
        int place;
    } cases[] = {
        {0, 100, 0, 18}, {0, 100, 33, 18 + 50}, {0, 100, 100, 170},       {0, 100, 500, 170},
        {5, 5, 5, 18},   {0, -4, 0, 18},        {0, 1, INT_HIGHEST, 170}, {0, 1, INT_LOWEST, INT_LOWEST},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.pos);
        bar->SetRange(test.min, test.max, 1);
        ClearScreen(BLACK);
        bar->SetPos(test.pos);
        const RECT thumb =
            test.place < 0 ? RECT() : RECT{LEFT, TOP + test.place, LEFT + ARROW, TOP + test.place + THUMB};
        EXPECT_EQ(Extent(WHITE), thumb);
        EXPECT_EQ(Extent(BLUE), (RECT{LEFT, TOP, LEFT + ARROW, TOP + ARROW}));
        EXPECT_EQ(Extent(GREEN), (RECT{LEFT, TOP + LENGTH - ARROW, LEFT + ARROW, TOP + LENGTH}));
    }
}

TEST_F(ScrollBarTest, BarWithoutBackgroundLetsTheParentPaintFirst)
{
    parent.draws.clear();
    bar->SetPos(5);
    ASSERT_EQ(parent.draws.size(), 1u);
    EXPECT_EQ(parent.draws[0], (RECT{LEFT, TOP, LEFT + ARROW, TOP + LENGTH}));
    AddSprite("trough", ARROW, LENGTH, RED);
    bar->SetSprite("trough");
    bar->SetPos(6);
    EXPECT_EQ(parent.draws.size(), 1u);
}

TEST_F(ScrollBarTest, RangesWithoutAChoiceHoldTheirMinimum)
{
    const struct {
        int min, max, page;
    } ranges[] = {{0, 0, 10}, {7, 7, 10}, {0, -3, 10}, {INT_HIGHEST, INT_LOWEST, INT_LOWEST}};
    for (const auto& range : ranges) {
        bar->SetRange(range.min, range.max, range.page);
        for (const int place : {5, 30, 100, 150, 210}) {
            bar->SetPos(range.min);
            Press(place);
            Move(place + 60, 40);
            TickAfter(300);
            Release();
            bar->Dispatch(WM_MOUSEWHEEL, WheelBy(-120), 0);
            bar->Dispatch(WM_MOUSEWHEEL, WheelBy(240), 0);
            EXPECT_EQ(bar->GetPos(), range.min) << place;
        }
    }
}

TEST_F(ScrollBarTest, ExtremeNumbersAreHeldInTheRange)
{
    const struct {
        int min, max, page, pos, place, expected;
    } cases[] = {
        {0, 100, INT_HIGHEST, 50, 190, 100},
        {0, 100, INT_LOWEST, 50, 190, 0},
        {0, 100, INT_LOWEST, 50, 20, 100},
        {0, INT_HIGHEST, 1, INT_HIGHEST, 210, INT_HIGHEST},
        {INT_LOWEST, INT_HIGHEST, 1, INT_LOWEST, 5, INT_LOWEST},
        {0, 100, 10, INT_HIGHEST, 5, 100}, // a position past the range comes back into it
    };
    for (const auto& test : cases) {
        bar->SetRange(test.min, test.max, test.page);
        bar->SetPos(test.pos);
        Press(test.place);
        EXPECT_EQ(bar->GetPos(), test.expected) << test.place;
        Release();
    }
}

TEST_F(ScrollBarTest, BarsTooSmallForTheirPartsSurviveEveryGesture)
{
    for (const std::uint32_t style : {0u, +SBSTYLE_NOARROWS, +SBSTYLE_HORIZONTAL | SBSTYLE_NOARROWS}) {
        for (const int length : {0, 10, THUMB, 2 * ARROW + THUMB, 2 * ARROW + THUMB + 1}) {
            SCOPED_TRACE(std::to_string(style) + " " + std::to_string(length));
            Make(std::make_unique<CItfScrollBar>(), length, length, style);
            bar->SetRange(0, 10, 3);
            for (int place = -5; place < length + 5; place += 5) {
                Press(place);
                Move(place + 3);
                TickAfter(300);
                Release();
                EXPECT_GE(bar->GetPos(), 0);
                EXPECT_LE(bar->GetPos(), 10);
            }
        }
    }
}

TEST_F(ScrollBarTest, ThumbThatFillsItsTrackCannotBeMoved)
{
    Make(std::make_unique<CItfScrollBar>(), ARROW, 2 * ARROW + THUMB, 0);
    bar->SetRange(0, 10, 3);
    bar->SetPos(4);
    for (const int place : {30, 60, 0}) {
        Press(30);
        Move(place);
        EXPECT_EQ(bar->GetPos(), 4) << place;
        Release();
    }
}

TEST_F(ScrollBarTest, CreateNeedsTheThumbAlone)
{
    const auto refs = [] {
        int sum = 0;
        for (const SpriteEntry& entry : Toolkit().sprites)
            sum += entry.refs;
        return sum;
    };
    bar.reset();
    EXPECT_EQ(refs(), 0);
    std::erase_if(Toolkit().spriteMap, [](const NameRow& row) { return row.name != "itfScBar"; });
    MakeVertical();
    Press(0);
    EXPECT_EQ(TakeCodes().size(), 1u);
    bar.reset();

    CItfScrollBar other;
    const RECT rect = {0, 0, 18, 100};
    EXPECT_FALSE(other.Create(nullptr, nullptr, &rect, &parent, ID, SBSTYLE_HORIZONTAL, &engine));
    EXPECT_FALSE(IsInTable(other));
    EXPECT_EQ(refs(), 0);
}

TEST_F(ScrollBarTest, ParentMayDeleteTheBarThatReports)
{
    const struct {
        const char* what;
        bool slider;
        int press;   // place
        int then;    // 0 nothing, 1 a move, 2 a tick
        int reports; // the one that ends it
    } cases[] = {
        {"arrow", false, 5, 0, 1},       {"far arrow", false, 210, 0, 1},  {"page", false, 150, 0, 1},
        {"thumb", false, 20, 0, 1},      {"drag", false, 20, 1, 2},        {"arrow move", false, 5, 1, 2},
        {"arrow again", false, 5, 2, 2}, {"page again", false, 190, 2, 2}, {"jump", true, 200, 0, 1},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        if (test.slider)
            MakeSlider();
        else
            MakeVertical();
        int left = test.reports;
        parent.onMessage = [&](const RecordingWnd::Got&) {
            if (--left == 0)
                bar.reset();
        };
        Press(test.press);
        if (test.then == 1)
            Move(6);
        else if (test.then == 2)
            TickAfter(300);
        EXPECT_EQ(bar, nullptr);
        parent.onMessage = nullptr;
    }
    MakeVertical();
    parent.onMessage = [&](const RecordingWnd::Got&) { bar.reset(); };
    bar->Dispatch(WM_MOUSEWHEEL, WheelBy(120), 0);
    EXPECT_EQ(bar, nullptr);
    parent.onMessage = nullptr;
}

} // namespace
