// CItfWnd: tree, painting order, messages, and walks over windows that go away on the way.

#include <utility>

#include "support/toolkit_fixture.h"

using namespace seawarden_test;

namespace
{

class WindowTest : public ToolkitTest
{
  protected:
    // A shown recording window; ids count from 0 in the order of creation.
    std::unique_ptr<RecordingWnd> Make(RECT rect, CItfWnd* parent = nullptr, std::uint32_t style = 0)
    {
        auto wnd = std::make_unique<RecordingWnd>();
        EXPECT_TRUE(wnd->Create("w", nullptr, &rect, parent, 33, style, &engine));
        wnd->Show(true);
        return wnd;
    }
    void SetUp() override { CItfWnd::SetDrawing(true); }
};

TEST_F(WindowTest, CreateEntersTheTableOnceAndUpToItsLimit)
{
    RecordingWnd top;
    EXPECT_EQ(top.GetId(), -1);
    engine.hasRender = false;
    EXPECT_FALSE(top.Create(nullptr, nullptr, nullptr, nullptr, 0, 0, &engine)) << "no 2-D layer";
    engine.hasRender = true;
    EXPECT_FALSE(top.Create(nullptr, nullptr, nullptr, nullptr, 0, 0, nullptr)) << "no host";
    ASSERT_TRUE(top.Create(nullptr, "unknown", nullptr, nullptr, 0, 0, &engine))
        << "a missing sprite is no failure";
    EXPECT_EQ(top.GetId(), 0);
    EXPECT_EQ(top.GetSprite(), -1);
    EXPECT_EQ(top.GetClientRect(), (RECT{0, 0, 800, 600})) << "no rectangle: the whole screen";
    EXPECT_FALSE(top.IsVisible()) << "not shown yet";
    EXPECT_FALSE(top.Create(nullptr, nullptr, nullptr, nullptr, 0, 0, &engine)) << "it exists";

    std::vector<std::unique_ptr<RecordingWnd>> rest;
    while (Toolkit().windows.size() < MAX_WINDOWS)
        rest.push_back(Make({10, 20, 30, 50}, &top));
    EXPECT_EQ(rest[0]->GetInnerRect(), (RECT{0, 0, 20, 30}));
    const int next = Toolkit().nextWindowId;
    RecordingWnd late;
    EXPECT_FALSE(late.Create(nullptr, nullptr, nullptr, nullptr, 0, 0, &engine));
    EXPECT_EQ(late.GetId(), -1);
    EXPECT_EQ(Toolkit().nextWindowId, next) << "the counter doesn't advance";
}

TEST_F(WindowTest, VisibilityHasTwoSwitchesThatGoDownTheTree)
{
    auto top = Make({0, 0, 100, 100});
    auto child = Make({0, 0, 50, 50}, top.get());
    auto grandchild = Make({0, 0, 20, 20}, child.get());
    top->Hide(true);
    EXPECT_FALSE(top->IsVisible() || child->IsVisible() || grandchild->IsVisible());
    top->Hide(false);
    EXPECT_TRUE(top->IsVisible() && grandchild->IsVisible()) << "without a Show call";
    child->Show(false);
    EXPECT_TRUE(top->IsVisible());
    EXPECT_FALSE(child->IsVisible() || grandchild->IsVisible());
    top->Enable(false);
    EXPECT_FALSE(top->IsEnabled());
    EXPECT_TRUE(child->IsEnabled()) << "this window alone";

    // The dirty bit comes with the first Show alone.
    grandchild->Show(true);
    EXPECT_NE(grandchild->GetState() & IWF_DIRTY, 0u);
    grandchild->Draw();
    grandchild->Show(true);
    EXPECT_EQ(grandchild->GetState() & IWF_DIRTY, 0u);
}

TEST_F(WindowTest, TreeQueriesAndCoordinates)
{
    auto top = Make({10, 20, 110, 120});
    auto child = Make({5, 6, 55, 56}, top.get());
    auto grandchild = Make({1, 2, 11, 12}, child.get());
    EXPECT_TRUE(grandchild->IsDescendantOf(top->GetId()));
    EXPECT_FALSE(top->IsDescendantOf(top->GetId())) << "a window isn't inside itself";
    EXPECT_TRUE(top->IsAncestorOf(grandchild->GetId()));
    EXPECT_FALSE(top->IsAncestorOf(999));
    RECT screen;
    grandchild->GetScreenRect(&screen);
    EXPECT_EQ(screen, (RECT{16, 28, 26, 38}));
    POINT point = {16, 28};
    grandchild->ScreenToClient(&point);
    EXPECT_EQ(point, (POINT{0, 0}));
    for (const auto& [x, y, hit] :
         {std::tuple{16, 28, true}, {25, 37, true}, {26, 37, false}, {25, 38, false}}) {
        const POINT at = {x, y};
        EXPECT_EQ(grandchild->HitTest(&at), hit) << x << "," << y;
    }
    const SIZE size = {7, 8};
    grandchild->SetInnerRect({1, 1, 2, 2});
    grandchild->SetSize(&size, false);
    EXPECT_EQ(grandchild->GetInnerRect(), (RECT{0, 0, 7, 8})) << "SetSize resets the inner rectangle";
}

TEST_F(WindowTest, InvalidatePaintsDescendantsInTheRectangleInTableOrder)
{
    auto top = Make({0, 0, 200, 200});
    auto left = Make({0, 0, 50, 50}, top.get());
    auto right = Make({100, 100, 150, 150}, top.get());
    auto stranger = Make({0, 0, 200, 200});
    const RECT rect = {40, 40, 120, 110};
    top->Invalidate(&rect);
    ASSERT_EQ(top->draws.size(), 1u);
    EXPECT_EQ(top->draws[0], rect);
    ASSERT_EQ(left->draws.size(), 1u);
    EXPECT_EQ(left->draws[0], (RECT{40, 40, 50, 50}));
    ASSERT_EQ(right->draws.size(), 1u);
    EXPECT_EQ(right->draws[0], (RECT{0, 0, 20, 10}));
    EXPECT_TRUE(stranger->draws.empty());

    // Drawing off: only remembered. Hidden: not even that.
    CItfWnd::SetDrawing(false);
    top->Invalidate(nullptr);
    EXPECT_EQ(top->draws.size(), 1u);
    EXPECT_EQ(top->GetUpdateRect(), top->GetClientRect());
    EXPECT_NE(top->GetState() & IWF_DIRTY, 0u);
    top->Show(false);
    top->Invalidate(&rect);
    EXPECT_EQ(top->GetUpdateRect(), top->GetClientRect());

    // The style bit for one window alone.
    CItfWnd::SetDrawing(true);
    top->Show(true);
    top->SetStyle(IWS_ALONE);
    top->Invalidate(nullptr);
    EXPECT_EQ(top->draws.size(), 2u);
    EXPECT_EQ(left->draws.size(), 1u);
}

TEST_F(WindowTest, AModalWindowStaysOnTop)
{
    auto top = Make({0, 0, 200, 200});
    auto box = Make({50, 50, 150, 150});
    auto button = Make({0, 0, 20, 20}, box.get());
    box->SetModal();
    EXPECT_EQ(CItfWnd::GetFocusId(), box->GetId());
    top->Invalidate(nullptr);
    EXPECT_EQ(box->draws.size(), 1u) << "painted again over what was painted under it";
    EXPECT_EQ(button->draws.size(), 1u);
    button->Invalidate(nullptr);
    EXPECT_EQ(box->draws.size(), 1u) << "not for a window inside it";

    const RECT area = {0, 0, 10, 10};
    top->draws.clear();
    button->draws.clear();
    CItfWnd::RedrawAll();
    EXPECT_EQ(top->draws.size(), 1u);
    EXPECT_EQ(button->draws.size(), 1u);
    top->RedrawBehind(&area);
    EXPECT_EQ(top->draws.size(), 1u) << "RedrawBehind skips its own window";
    EXPECT_EQ(box->draws.size(), 3u);

    CItfWnd::TickAll(20);
    EXPECT_EQ(top->ticks, 0) << "outside the modal window nothing ticks";
    EXPECT_EQ(box->ticks + button->ticks, 2);
    box->Destroy();
    EXPECT_EQ(CItfWnd::GetModalId(), -1);
    EXPECT_EQ(button->GetId(), -1) << "descendants leave the table with their parent";
}

TEST_F(WindowTest, BackgroundSpriteIsCutNotStretched)
{
    AddSprite("green", 10, 10, 0x07e0);
    RecordingWnd wnd;
    const RECT rect = {100, 100, 130, 130};
    ASSERT_TRUE(wnd.Create(nullptr, "GREEN", &rect, nullptr, 0, 0, &engine)) << "case doesn't matter";
    wnd.Show(true);
    wnd.Invalidate(nullptr);
    EXPECT_EQ(Pixel(100, 100), 0x07e0);
    EXPECT_EQ(Pixel(109, 109), 0x07e0);
    EXPECT_EQ(Pixel(110, 100), 0);
    EXPECT_EQ(Pixel(99, 100), 0);
    // An update rectangle that misses the window leaves the dirty bit.
    const RECT outside = {40, 40, 50, 50};
    wnd.Invalidate(&outside);
    EXPECT_NE(wnd.GetState() & IWF_DIRTY, 0u);
}

TEST_F(WindowTest, FocusAndMessages)
{
    auto top = Make({0, 0, 100, 100});
    auto child = Make({0, 0, 50, 50}, top.get());
    child->SetFocus();
    child->SetFocus();
    EXPECT_TRUE(child->got.empty()) << "nothing to a window that has the focus already";
    int focusInHandler = 99;
    child->onMessage = [&](const RecordingWnd::Got&) { focusInHandler = CItfWnd::GetFocusId(); };
    top->SetFocus();
    ASSERT_EQ(child->got.size(), 1u);
    EXPECT_EQ(child->got[0].msg, static_cast<std::uint32_t>(ITFM_LOSTFOCUS));
    EXPECT_EQ(focusInHandler, top->GetId()) << "after the focus has changed";

    child->Notify(200);
    ASSERT_EQ(top->got.size(), 1u);
    EXPECT_EQ(top->got[0].wParam, 200u);
    EXPECT_EQ(top->got[0].lParam, 33);
    top->Notify(200); // no parent: nothing
    top->PostToParent(ITFM_NOTIFY, 1, 2);
    EXPECT_TRUE(Toolkit().posted.empty());
    EXPECT_EQ(CItfWnd::SendTo(999, ITFM_NOTIFY, 0, 0), 0);

    // WM_DESTROY needs no row, but a table.
    child->Dispatch(WM_DESTROY, 0, 0);
    EXPECT_EQ(child->GetId(), -1);
    CItfWnd plain;
    const RECT rect = {0, 0, 10, 10};
    ASSERT_TRUE(plain.Create(nullptr, nullptr, &rect, nullptr, 0, 0, &engine));
    plain.Dispatch(WM_DESTROY, 0, 0);
    EXPECT_NE(plain.GetId(), -1);
}

TEST_F(WindowTest, PostedQueueDeliversWhatIsPostedOnTheWayUpToItsLimit)
{
    auto wnd = Make({0, 0, 100, 100});
    const int id = wnd->GetId();
    // Every delivery posts again: the queue's limit ends the pass.
    wnd->onMessage = [&](const RecordingWnd::Got&) { CItfWnd::PostTo(id, ITFM_COMMAND, 1, 2); };
    EXPECT_TRUE(CItfWnd::PostTo(id, ITFM_COMMAND, 1, 2));
    CItfWnd::DeliverPosted();
    EXPECT_EQ(wnd->got.size(), MAX_POSTED);
    EXPECT_TRUE(Toolkit().posted.empty());

    wnd->onMessage = nullptr;
    for (std::size_t i = 0; i < MAX_POSTED; ++i)
        EXPECT_TRUE(CItfWnd::PostTo(id, ITFM_COMMAND, 0, 0));
    EXPECT_FALSE(CItfWnd::PostTo(id, ITFM_COMMAND, 0, 0));
    Toolkit().posted.clear();

    // A handler that throws loses its own message, not those behind it.
    wnd->got.clear();
    wnd->onMessage = [](const RecordingWnd::Got& got) {
        if (got.wParam == 1)
            throw 1;
    };
    for (std::uint32_t i = 0; i < 3; ++i)
        CItfWnd::PostTo(id, ITFM_COMMAND, i, 0);
    EXPECT_THROW(CItfWnd::DeliverPosted(), int);
    EXPECT_EQ(Toolkit().posted.size(), 1u);
    CItfWnd::DeliverPosted();
    EXPECT_EQ(wnd->got.size(), 3u);
}

TEST_F(WindowTest, AHandlerThatRunsFramesItselfDeliversNothingTwice)
{
    auto wnd = Make({0, 0, 100, 100});
    bool nested = false;
    wnd->onMessage = [&](const RecordingWnd::Got&) {
        if (!std::exchange(nested, true))
            CItfWnd::DeliverPosted();
    };
    for (std::uint32_t i = 0; i < 3; ++i)
        CItfWnd::PostTo(wnd->GetId(), ITFM_COMMAND, i, 0);
    CItfWnd::DeliverPosted();
    std::vector<std::uint32_t> order;
    for (const RecordingWnd::Got& got : wnd->got)
        order.push_back(got.wParam);
    EXPECT_EQ(order, (std::vector<std::uint32_t>{0, 1, 2}));
    EXPECT_TRUE(Toolkit().posted.empty());
}

TEST_F(WindowTest, MovingPaintsTheOldPlaceAndAWindowMayBeMadeAgain)
{
    auto back = Make({0, 0, 200, 200});
    auto wnd = Make({10, 20, 30, 50});
    const POINT pos = {100, 100};
    wnd->SetPos(&pos, true);
    const SIZE size = {5, 5};
    wnd->SetSize(&size, true);
    ASSERT_EQ(back->draws.size(), 2u);
    EXPECT_EQ(back->draws[0], (RECT{10, 20, 30, 50}));
    EXPECT_EQ(back->draws[1], (RECT{100, 100, 120, 130})) << "with the size before";
    EXPECT_TRUE(wnd->draws.empty());
    // The walk under a move may delete the window that moves.
    RecordingWnd* mover = wnd.get();
    back->onDraw = [&] { wnd.reset(); };
    mover->SetPos(&pos, true);
    EXPECT_EQ(wnd, nullptr);

    back->Destroy();
    const RECT rect = {0, 0, 10, 10};
    ASSERT_TRUE(back->Create(nullptr, nullptr, &rect, nullptr, 0, 0, &engine));
    EXPECT_FALSE(back->IsVisible()) << "as new";
    EXPECT_EQ(back->GetCaption(), "");
}

// Each walk goes on when a window destroys and deletes itself, its parent, or the window behind it.
TEST_F(WindowTest, WalksSurviveWindowsThatGoAway)
{
    enum class Walk { Dispatch, Deliver, Tick, Invalidate, RedrawAll, RedrawBehind };
    enum class Victim { Self, Parent, Next };
    for (const Walk walk :
         {Walk::Dispatch, Walk::Deliver, Walk::Tick, Walk::Invalidate, Walk::RedrawAll, Walk::RedrawBehind}) {
        for (const Victim victim : {Victim::Self, Victim::Parent, Victim::Next}) {
            SCOPED_TRACE(static_cast<int>(walk) * 10 + static_cast<int>(victim));
            auto parent = Make({0, 0, 100, 100});
            auto self = Make({0, 0, 50, 50}, parent.get());
            auto next = Make({0, 0, 50, 50}, parent.get());
            auto last = Make({0, 0, 100, 100});
            RecordingWnd* lastSeen = last.get();
            bool acted = false;
            // As a dialog does: the object of the victim goes, with its controls where it has them.
            auto act = [&] {
                if (acted)
                    return;
                acted = true;
                if (victim == Victim::Self)
                    self.reset();
                else if (victim == Victim::Next)
                    next.reset();
                else {
                    self.reset();
                    next.reset();
                    parent.reset();
                }
            };
            RecordingWnd* actor = self.get();
            actor->onMessage = [&](const RecordingWnd::Got&) { act(); };
            actor->onTick = actor->onDraw = [&, act] {
                auto run = act;
                run();
            };
            const RECT all = {0, 0, 800, 600};
            switch (walk) {
            case Walk::Dispatch:
                EXPECT_EQ(CItfWnd::SendTo(actor->GetId(), ITFM_COMMAND, 0, 0), 0);
                break;
            case Walk::Deliver:
                CItfWnd::PostTo(self->GetId(), ITFM_COMMAND, 0, 0);
                CItfWnd::PostTo(next->GetId(), ITFM_COMMAND, 0, 0);
                CItfWnd::PostTo(last->GetId(), ITFM_COMMAND, 0, 0);
                CItfWnd::DeliverPosted();
                EXPECT_EQ(lastSeen->got.size(), 1u);
                break;
            case Walk::Tick:
                CItfWnd::TickAll(1);
                EXPECT_EQ(lastSeen->ticks, 1);
                break;
            case Walk::Invalidate:
                parent->Invalidate(nullptr);
                break;
            case Walk::RedrawAll:
                CItfWnd::RedrawAll();
                EXPECT_EQ(lastSeen->draws.size(), 1u);
                break;
            case Walk::RedrawBehind:
                lastSeen->RedrawBehind(&all);
                break;
            }
            EXPECT_TRUE(acted);
        }
    }
}

} // namespace
