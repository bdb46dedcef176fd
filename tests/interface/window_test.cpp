// CItfWnd: tree, painting order, messages, and walks over windows that go away on the way.

#include <utility>

#include "support/rows.h"
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
    engine.hasRender = false;
    EXPECT_FALSE(top.Create(nullptr, nullptr, nullptr, nullptr, 0, 0, &engine)) << "no 2-D layer";
    engine.hasRender = true;
    ASSERT_TRUE(top.Create(nullptr, "unknown", nullptr, nullptr, 0, 0, &engine))
        << "a missing sprite is no failure";
    EXPECT_EQ(top.GetClientRect(), (RECT{0, 0, 800, 600})) << "no rectangle: the whole screen";
    EXPECT_FALSE(top.IsVisible()) << "not shown yet";
    EXPECT_FALSE(top.Create(nullptr, nullptr, nullptr, nullptr, 0, 0, &engine)) << "it exists";

    std::vector<std::unique_ptr<RecordingWnd>> rest;
    while (Toolkit().windows.size() < MAX_WINDOWS)
        rest.push_back(Make({10, 20, 30, 50}, &top));
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
    EXPECT_TRUE(child->IsEnabled()) << "the window alone";

    // The dirty bit comes with the first Show alone.
    grandchild->Show(true);
    EXPECT_NE(grandchild->GetState() & IWF_DIRTY, 0u);
    grandchild->Draw();
    grandchild->Show(true);
    EXPECT_EQ(grandchild->GetState() & IWF_DIRTY, 0u);
}

TEST_F(WindowTest, InvalidatePaintsDescendantsInTheRectangle)
{
    auto top = Make({0, 0, 200, 200});
    auto left = Make({0, 0, 50, 50}, top.get());
    auto right = Make({100, 100, 150, 150}, top.get());
    auto stranger = Make({0, 0, 200, 200});
    const RECT rect = {40, 40, 120, 110};
    top->Invalidate(&rect);
    using Draws = std::vector<RECT>;
    EXPECT_EQ(top->draws, Draws{rect});
    EXPECT_EQ(left->draws, (Draws{{40, 40, 50, 50}}));
    EXPECT_EQ(right->draws, (Draws{{0, 0, 20, 10}}));
    EXPECT_TRUE(stranger->draws.empty());

    // Drawing off: only remembered. Hidden: not even that.
    CItfWnd::SetDrawing(false);
    top->Invalidate(nullptr);
    EXPECT_EQ(top->draws.size(), 1u);
    EXPECT_NE(top->GetState() & IWF_DIRTY, 0u);
    top->Show(false);
    top->Invalidate(&rect);
    EXPECT_EQ(top->GetUpdateRect(), top->GetClientRect());

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
    EXPECT_EQ(Pixel(109, 109), 0x07e0);
    EXPECT_EQ(Pixel(110, 100), 0);
    // An update rectangle that misses the window leaves the dirty bit.
    const RECT outside = {40, 40, 50, 50};
    wnd.Invalidate(&outside);
    EXPECT_NE(wnd.GetState() & IWF_DIRTY, 0u);
    wnd.Destroy();
    EXPECT_EQ(Toolkit().sprites.back().refs, 1) << "a later window finds the sprite loaded";
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

    top->got.clear();
    child->Notify(200);
    ASSERT_EQ(top->got.size(), 1u);
    EXPECT_EQ(top->got[0].wParam, 200u);
    EXPECT_EQ(top->got[0].lParam, 33);
    top->Notify(200); // no parent: nothing

    // WM_DESTROY needs no row, but a table.
    child->Dispatch(WM_DESTROY, 0, 0);
    EXPECT_EQ(child->GetId(), -1);
    CItfWnd plain;
    ASSERT_TRUE(plain.Create(nullptr, nullptr, nullptr, nullptr, 0, 0, &engine));
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

    // A handler that throws loses its own message, not those behind it.
    wnd->got.clear();
    wnd->onMessage = [](const RecordingWnd::Got& got) {
        if (got.wParam == 1)
            throw 1;
    };
    for (std::uint32_t i = 0; i < 3; ++i)
        CItfWnd::PostTo(id, ITFM_COMMAND, i, 0);
    EXPECT_THROW(CItfWnd::DeliverPosted(), int);
    CItfWnd::DeliverPosted();
    EXPECT_EQ(wnd->got.size(), 3u);

    // A handler that runs frames itself delivers nothing twice, and nothing out of order.
    wnd->got.clear();
    bool nested = false;
    wnd->onMessage = [&](const RecordingWnd::Got&) {
        if (!std::exchange(nested, true))
            CItfWnd::DeliverPosted();
    };
    for (std::uint32_t i = 0; i < 3; ++i)
        CItfWnd::PostTo(id, ITFM_COMMAND, i, 0);
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
    ASSERT_TRUE(back->Create(nullptr, nullptr, nullptr, nullptr, 0, 0, &engine));
    EXPECT_FALSE(back->IsVisible()) << "as new";
}

// Each walk goes on when a window deletes itself, its parent and all in it, or the window behind it.
TEST_F(WindowTest, WalksSurviveWindowsThatGoAway)
{
    enum Victim { SELF, NEXT, ALL };
    struct Scene {
        std::unique_ptr<RecordingWnd> parent, self, next, last;
    };
    const RECT all = {0, 0, 800, 600};
    // What a walk does, and how often it comes to the last window.
    const std::pair<std::function<void(Scene&)>, std::size_t> walks[] = {
        {[](Scene& scene) {
             for (const auto* wnd : {&scene.self, &scene.next, &scene.last})
                 CItfWnd::PostTo((*wnd)->GetId(), ITFM_COMMAND, 0, 0);
             CItfWnd::DeliverPosted();
         },
         1},
        {[](Scene&) { CItfWnd::TickAll(1); }, 1},
        {[](Scene&) { CItfWnd::RedrawAll(); }, 1},
        {[](Scene& scene) { scene.parent->Invalidate(nullptr); }, 0},
        {[&](Scene& scene) { scene.last->RedrawBehind(&all); }, 0},
    };
    for (const auto& [walk, reached] : walks) {
        for (const Victim victim : {SELF, NEXT, ALL}) {
            SCOPED_TRACE(victim);
            Scene scene;
            scene.parent = Make({0, 0, 100, 100});
            scene.self = Make({0, 0, 50, 50}, scene.parent.get());
            scene.next = Make({0, 0, 50, 50}, scene.parent.get());
            scene.last = Make({0, 0, 100, 100});
            bool acted = false;
            const auto act = [&] {
                if (std::exchange(acted, true))
                    return;
                if (victim != SELF)
                    scene.next.reset();
                if (victim == ALL)
                    scene.parent.reset();
                if (victim != NEXT)
                    scene.self.reset(); // last: this function goes with it
            };
            scene.self->onTick = scene.self->onDraw = act;
            scene.self->onMessage = [act](const RecordingWnd::Got&) { act(); };
            walk(scene);
            EXPECT_TRUE(acted);
            EXPECT_EQ(scene.last->got.size() + static_cast<std::size_t>(scene.last->ticks) +
                          scene.last->draws.size(),
                      reached);
        }
    }
}

} // namespace
