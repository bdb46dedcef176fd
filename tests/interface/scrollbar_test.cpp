#include <limits>
#include <memory>
#include <sstream>

#include "control_harness.h"
#include "controls/itfscrollbar.h"

using namespace control_test;

namespace
{

constexpr int LEFT = 100;
constexpr int TOP = 50;
constexpr int ID = 10;
constexpr int ARROW = BAR_WIDTH;
// Of the vertical bar: its thumb's track has 152 pixels, from place 18 on.
constexpr int LENGTH = 2 * ARROW + THUMB + 152;
// Of the slider, which has a thumb of 30 by 20: without arrows its track has 300 pixels.
constexpr int SLIDER_LENGTH = 330;
constexpr int SLIDER_HEIGHT = 20;
constexpr int LOWEST = std::numeric_limits<int>::min();
constexpr int HIGHEST = std::numeric_limits<int>::max();

class ScrollBarTest : public ControlTest
{
  protected:
    std::unique_ptr<CItfScrollBar> bar;

    void SetUp() override
    {
        ControlTest::SetUp();
        AddBarSprites();
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
    /// Two pixels for each position; the thumb of position p begins at 18 + 2p.
    void MakeVertical()
    {
        Make(std::make_unique<CItfScrollBar>(), ARROW, LENGTH, 0);
        bar->SetRange(0, 76, 10);
    }
    /// Without arrows, whose sprites don't exist here.
    void MakeSlider(std::uint32_t style = SBSTYLE_NOARROWS)
    {
        Make(std::make_unique<CItfSlider>(), SLIDER_LENGTH, SLIDER_HEIGHT, SBSTYLE_HORIZONTAL | style);
    }

    void Send(std::uint32_t msg, int place, int across = 5)
    {
        const bool level = (bar->GetStyle() & SBSTYLE_HORIZONTAL) != 0;
        bar->Dispatch(msg, 0, level ? At(*bar, place, across) : At(*bar, across, place));
    }
    void Press(int place) { Send(WM_LBUTTONDOWN, place); }
    void Move(int place, int across = 5) { Send(WM_MOUSEMOVE, place, across); }
    void Release() { Send(WM_LBUTTONUP, 0); }
    void TickAfter(int milliseconds)
    {
        host.now += static_cast<DWORD>(milliseconds);
        bar->OnTick(milliseconds);
    }
    void Wheel(int delta) { bar->Dispatch(WM_MOUSEWHEEL, WheelBy(delta), 0); }

    /// Press, move, beside (move there), drag (the same, and it's told), wheel, tick, release or set.
    /// value: place, delta, milliseconds or position; pos: where the bar then stands.
    void Step(char what, int value, int pos)
    {
        SCOPED_TRACE(what + std::to_string(value));
        const int before = bar->GetPos();
        TakeCodes();
        bool told = what == 'p' || what == 'd' || what == 'w';
        if (what == 'p') {
            Press(value);
            EXPECT_EQ(CItfWnd::GetCaptureId(), bar->GetId());
        } else if (what == 'm' || what == 'b') {
            Move(value, what == 'b' ? 50 : 5);
            TakeCodes();
        } else if (what == 'd') {
            Move(value, 300);
        } else if (what == 'w') {
            Wheel(value);
        } else if (what == 't') {
            TickAfter(value);
            told = pos != before;
        } else if (what == 'r') {
            Release();
            EXPECT_EQ(CItfWnd::GetCaptureId(), -1);
        } else {
            bar->SetPos(value);
        }
        EXPECT_EQ(bar->GetPos(), pos);
        EXPECT_EQ(TakeGot(ITFM_NOTIFY), (std::vector<Words>(told ? 1 : 0, {SB_CHANGED, ID})));
    }
    /// Steps, each as "what value pos".
    void Play(const char* steps)
    {
        std::istringstream in(steps);
        char what;
        for (int value, pos; in >> what >> value >> pos;)
            Step(what, value, pos);
    }
};

TEST_F(ScrollBarTest, PressMovesByWhereItLands)
{
    // Held in the range at 5 and 217; the thumb is taken at 18, 97, 98 and 127.
    Play("s 10 10  p 17 9  r 0 9  s 0 0  p 5 0  r 0 0  s 76 76  p 217 76  r 0 76  s 10 10  p 18 0  r 0 0 "
         "s 40 40  p 97 30  r 0 30  s 40 40  p 98 40  r 0 40  p 127 40  r 0 40  p 128 50  r 0 50 "
         "s 70 70  p 199 76  r 0 76  s 40 40  p 200 50  r 0 50  s 40 40  p 201 41  r 0 41");
}

TEST_F(ScrollBarTest, ThumbFollowsThePointerAndRounds)
{
    bar->SetRange(0, 50, 10); // 3.04 pixels for each position; a drag doesn't repeat
    Play("p 25 0  d 25 0  d 26 0  d 27 1  d 29 1  d 30 2  d 101 25  d 177 50  d 500 50  d -300 0  d 177 50 "
         "t 1000 50  r 0 50  m 50 50");
}

TEST_F(ScrollBarTest, HeldArrowRepeatsAfterTheLongDelay)
{
    Play("s 40 40  p 5 39  t 200 39  t 49 39  t 1 38  t 59 38  t 1 37  t 500 36  t 20 36  t 40 35  r 0 35 "
         "t 1000 35  p 210 36  t 249 36  t 1 37  t 60 38  r 0 38");
    // The near arrow alone doesn't begin the long delay anew.
    Play("s 40 40  p 210 41  t 250 42  p 5 41  t 60 40  p 210 41  t 60 41");
}

TEST_F(ScrollBarTest, PointerThatMovesOnAHeldArrow)
{
    Play("s 40 40  p 5 39");
    EXPECT_EQ(Pixel(LEFT, TOP), YELLOW);
    // Each move on the arrow is a step; in the trough it stays pressed, beside the bar it is let go.
    Play("m 6 38  m 100 38  t 250 37  b 100 37  t 250 37");
    EXPECT_EQ(Pixel(LEFT, TOP), BLUE);
    host.now += 300;
    Play("m 210 38"); // and taken up by the other one
    EXPECT_EQ(Pixel(LEFT, TOP + LENGTH - 1), RED);
    Play("t 59 38  t 1 39"); // the time of the step was stamped
}

TEST_F(ScrollBarTest, PagingStopsUnderThePointer)
{
    // The thumb of position 36 to 51 covers place 120. The paging goes towards the maximum only; a move
    // starts the wait anew.
    Play("p 120 10  t 249 10  t 1 20  t 60 30  t 60 40  t 60 40  t 600 40  m 30 40  t 600 40  m 190 40 "
         "t 59 40  t 1 50  t 60 60  t 60 70  t 60 76  t 600 76  r 0 76  p 25 66  t 250 56");
}

TEST_F(ScrollBarTest, WheelStepsByWholeNotchesAndNothingMovesADisabledBar)
{
    Play("s 50 50  w 120 49  w -120 50  w 360 47  w 119 47  w -239 48  w 32767 0  w -32768 76");
    bar->SetPos(20);
    bar->Enable(false);
    for (const int place : {5, 30, 60, 150, 210})
        Press(place);
    Wheel(120);
    Move(5);
    TickAfter(1000);
    EXPECT_EQ(bar->GetPos(), 20);
    EXPECT_TRUE(TakeCodes().empty());
    EXPECT_EQ(CItfWnd::GetCaptureId(), -1);
}

TEST_F(ScrollBarTest, SliderThumbJumpsToThePress)
{
    MakeSlider();
    bar->SetRange(0, 100, 10);
    // To a whole number of thumbs; on the thumb itself nothing is told.
    const Rows<int, int, int, std::size_t> cases = {{0, 155, 50, 1},  {0, 179, 50, 1}, {0, 180, 60, 1},
                                                    {0, 329, 100, 1}, {90, 3, 0, 1},   {50, 150, 50, 0},
                                                    {50, 179, 50, 0}};
    for (const auto& [pos, place, expected, told] : cases) {
        SCOPED_TRACE(place);
        bar->SetPos(pos);
        Press(place);
        EXPECT_EQ(bar->GetPos(), expected);
        EXPECT_EQ(TakeCodes().size(), told);
        EXPECT_EQ(CItfWnd::GetCaptureId(), -1) << "the press is over at once";
        Step('m', 100, expected);
        Step('t', 1000, expected);
    }
}

TEST_F(ScrollBarTest, ThumbIsDrawnAtItsPlace)
{
    const Rows<int, int, int, int> cases = {{0, 100, 33, 68}, {0, 100, 500, 170},   {5, 5, 5, 18},
                                            {0, -4, 0, 18},   {0, 1, HIGHEST, 170}, {0, 1, LOWEST, LOWEST}};
    for (const auto& [min, max, pos, place] : cases) {
        bar->SetRange(min, max, 1);
        ClearScreen(BLACK);
        bar->SetPos(pos);
        const RECT thumb = {LEFT, TOP + std::max(place, 0), LEFT + ARROW, TOP + std::max(place, 0) + THUMB};
        EXPECT_EQ(Extent(WHITE), place < 0 ? RECT() : thumb) << pos;
        EXPECT_EQ(Extent(GREEN), (RECT{LEFT, TOP + LENGTH - ARROW, LEFT + ARROW, TOP + LENGTH}));
    }
    // Without a background the parent paints first.
    parent.draws.clear();
    bar->SetPos(5);
    EXPECT_EQ(parent.draws, (std::vector<RECT>{{LEFT, TOP, LEFT + ARROW, TOP + LENGTH}}));
}

TEST_F(ScrollBarTest, PositionsAreHeldInTheRange)
{
    Play("s 2147483647 2147483647  p 5 76  r 0 76"); // a position past the range comes back into it
    bar->SetRange(0, 100, HIGHEST);
    Play("s 50 50  p 190 100  r 0 100  s 50 50  p 20 0  r 0 0");
    // A range without a choice holds its minimum.
    for (const auto& [min, max] : Rows<int, int>{{7, 7}, {0, -3}}) {
        bar->SetRange(min, max, max);
        bar->SetPos(min);
        for (const int place : {5, 30, 100, 150, 210}) {
            Press(place);
            Move(place + 60, 40);
            TickAfter(300);
            Release();
            Wheel(-120);
            EXPECT_EQ(bar->GetPos(), min) << place;
        }
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
                EXPECT_TRUE(bar->GetPos() >= 0 && bar->GetPos() <= 10) << bar->GetPos();
            }
        }
    }
    // A thumb that fills its track can't be moved.
    Make(std::make_unique<CItfScrollBar>(), ARROW, 2 * ARROW + THUMB, 0);
    bar->SetRange(0, 10, 3);
    Play("s 4 4  p 30 4  d 60 4  d 0 4");
}

TEST_F(ScrollBarTest, ParentMayDeleteTheBarThatReports)
{
    // Arrows, paging, drag, the same again by move, tick and wheel, and the slider's jump.
    const Rows<int, char, int> cases = {{5, ' ', 1}, {150, ' ', 1}, {20, ' ', 1}, {20, 'm', 2}, {5, 'm', 2},
                                        {5, 't', 2}, {190, 't', 2}, {20, 'w', 2}, {200, 's', 1}};
    for (const auto& [place, then, reports] : cases) {
        SCOPED_TRACE(std::to_string(place) + then);
        then == 's' ? MakeSlider() : MakeVertical();
        int left = reports;
        parent.onMessage = [&](const RecordingWnd::Got&) {
            if (--left == 0)
                bar.reset();
        };
        Press(place);
        if (then == 'm')
            Move(6);
        else if (then == 't')
            TickAfter(300);
        else if (then == 'w')
            Wheel(120);
        EXPECT_EQ(bar, nullptr);
        parent.onMessage = nullptr;
    }
}

} // namespace
