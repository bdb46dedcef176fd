// CInterface: the host's calls in, window messages out.

#include <algorithm>

#include "itfrecords.h"
#include "support/rows.h"
#include "support/toolkit_fixture.h"

using namespace seawarden_test;

namespace
{

class InterfaceTest : public ToolkitTest
{
  protected:
    std::unique_ptr<RecordingWnd> Make(RECT rect, CItfWnd* parent = nullptr)
    {
        auto wnd = std::make_unique<RecordingWnd>();
        EXPECT_TRUE(wnd->Create("w", nullptr, &rect, parent, 33, 0, &engine));
        wnd->Show(true);
        CItfWnd::SetDrawing(true);
        return wnd;
    }
};

TEST_F(InterfaceTest, InitConnectsTheHost)
{
    FakeEngine scene;
    FakeMarker marker;
    const int camera = scene.AddEntity("camera", "camera");
    scene.AddEntity("marker", "marker", &marker);
    engine.currentScene = &scene;
    Ui();
    EXPECT_EQ(engine.playList.calls, (std::vector<std::string>{"Select 0 1", "Play 0"}));
    ASSERT_EQ(scene.SentWith(MSG_CAMERA_UI_ON).size(), 1u);
    EXPECT_EQ(scene.SentWith(MSG_CAMERA_UI_ON)[0].destination, camera);
    const std::string input = Call("RegisterInput", {1, Ui().GetEntityId(), 1});
    EXPECT_NE(std::ranges::find(engine.calls, input), engine.calls.end());
    EXPECT_EQ(Ui().m_HostWords[Entity::HOSTWORD_FLAGS], 1);

    engine.playList.calls.clear();
    DropUi();
    EXPECT_EQ(engine.playList.calls, (std::vector<std::string>{"Select 0 0", "Select 0 0"}));
    EXPECT_EQ(marker.modes, (std::vector<int>{1, 0}));
    EXPECT_EQ(scene.SentWith(MSG_CAMERA_UI_OFF).size(), 1u);
    EXPECT_EQ(engine.calls.back(), "SetTimerRate 100");

    engine.currentScene = nullptr;
    engine.playList.calls.clear();
    engine.playList.current = 3;
    Ui();
    EXPECT_TRUE(engine.playList.calls.empty()) << "music that plays goes on";
    CInterface bad;
    EXPECT_EQ(bad.Init(nullptr), 0);
    engine.hasRender = false;
    EXPECT_EQ(bad.Init(&engine), 0);
    EXPECT_EQ(bad.OnFrame(20, 0), 0) << "a frame before the start does no harm";
}

TEST_F(InterfaceTest, StartChoosesTheDisplayModeByHeightAndCode)
{
    // width, height, code; whether the logic is asked for 800 by 600; large when it leaves the display alone
    const Rows<int, int, int, bool, bool> cases = {
        {800, 600, 99, false, false}, {640, 480, 99, true, false},  {1024, 768, 99, true, true},
        {1024, 768, 7, false, true},  {1024, 768, 35, false, true}, {640, 480, 7, true, false},
    };
    for (const auto& [width, height, code, changes, large] : cases) {
        SCOPED_TRACE(std::to_string(height) + "/" + std::to_string(code));
        engine.messages.clear();
        engine.SetDisplaySize(width, height);
        Start(code);
        EXPECT_EQ(engine.SentWith(MSG_SET_DISPLAY_MODE).size(), changes ? 1u : 0u);
        EXPECT_EQ(Ui().IsLargeDisplay(), large);
        RECT screen;
        CItfWnd::GetVirtualScreen(&screen);
        EXPECT_EQ(screen, large ? (RECT{112, 84, 912, 684}) : (RECT{0, 0, 800, 600}));
        const RECT placed = engine.viewport.rc;
        EXPECT_EQ(placed, screen);
        DropUi();
        Toolkit() = ToolkitState();
    }
    // The logic answers by changing the display, which the record then tells.
    engine.SetDisplaySize(1024, 768);
    engine.onMessage = [this](const Sent& sent) -> Word {
        if (sent.number == MSG_SET_DISPLAY_MODE)
            engine.SetDisplaySize(static_cast<int>(sent.words[0]), static_cast<int>(sent.words[1]));
        return 0;
    };
    Start(99);
    EXPECT_FALSE(Ui().IsLargeDisplay());
}

TEST_F(InterfaceTest, MouseGoesToTheNewestVisibleWindowThatIsHit)
{
    auto back = Make({0, 0, 200, 200});
    auto front = Make({50, 50, 100, 100});
    front->answer = 77;
    EXPECT_EQ(Down(60, 60), 77);
    EXPECT_EQ(CItfWnd::GetFocusId(), front->GetId());
    EXPECT_EQ(back->got.size(), 0u);
    Move(10, 10);
    EXPECT_EQ(back->got.size(), 1u);
    EXPECT_EQ(CItfWnd::GetFocusId(), front->GetId()) << "only a press moves the focus";
    front->Hide(true);
    Down(60, 60);
    EXPECT_EQ(back->got.size(), 2u);

    CItfWnd::SetDrawing(false);
    Down(10, 10);
    EXPECT_EQ(back->got.size(), 2u) << "with drawing off nothing happens at all";

    CItfWnd::SetDrawing(true);
    Toolkit().virtualScreen = {112, 84, 912, 684};
    back->SetCapture();
    Move(100, 80);
    const std::int32_t at = back->got.back().lParam;
    EXPECT_EQ(static_cast<std::int16_t>(at), -12) << "coordinates keep their sign";
    EXPECT_EQ(at >> 16, -4);
}

TEST_F(InterfaceTest, CaptureAndModalWindows)
{
    auto back = Make({0, 0, 400, 400});
    auto box = Make({100, 100, 200, 200});
    auto button = Make({10, 10, 20, 20}, box.get());
    box->SetCapture();
    Move(5, 5);
    EXPECT_EQ(box->got.size(), 1u);
    box->Show(false);
    Move(5, 5);
    EXPECT_EQ(CItfWnd::GetCaptureId(), -1) << "a holder that isn't visible is released";
    EXPECT_EQ(back->got.size(), 1u) << "and the same message goes on";
    box->Show(true);
    Toolkit().captureId = 12345;
    Move(6, 6);
    EXPECT_EQ(CItfWnd::GetCaptureId(), -1);
    EXPECT_EQ(back->got.size(), 2u);

    box->SetModal();
    Down(5, 5);
    EXPECT_EQ(back->got.size(), 2u) << "outside the modal window nothing gets the mouse";
    EXPECT_EQ(CItfWnd::GetFocusId(), box->GetId());
    Down(115, 115);
    EXPECT_EQ(button->got.back().msg, static_cast<std::uint32_t>(WM_LBUTTONDOWN));
    // Keys go to the focus window alone, modal or not, drawing or not.
    back->SetFocus();
    CItfWnd::SetDrawing(false);
    back->answer = 5;
    EXPECT_EQ(Key(VK_RETURN), 5);
    back->Hide(true);
    EXPECT_EQ(Key(VK_RETURN), 0);
}

TEST_F(InterfaceTest, APressMaySurviveTheOldFocusHoldersHandler)
{
    auto old = Make({0, 0, 50, 50});
    auto hit = Make({100, 100, 200, 200});
    old->SetFocus();
    old->onMessage = [&](const RecordingWnd::Got& got) {
        if (got.msg == ITFM_LOSTFOCUS)
            hit.reset();
    };
    EXPECT_EQ(Down(150, 150), 0);
    EXPECT_EQ(hit, nullptr);
}

TEST_F(InterfaceTest, FrameDeliversTicksAndPresents)
{
    auto wnd = Make({0, 0, 50, 50});
    Start(99);
    std::vector<std::string> order;
    wnd->onMessage = [&](const RecordingWnd::Got&) { order.push_back("message"); };
    wnd->onTick = [&] { order.push_back("tick"); };
    CItfWnd::PostTo(wnd->GetId(), ITFM_COMMAND, 0, 0);
    const RECT fill = {0, 0, 50, 50};
    wnd->FillRectGdi(&fill, RGB(255, 0, 0));
    Frame();
    EXPECT_EQ(order, (std::vector<std::string>{"message", "tick"}));
    EXPECT_EQ(engine.render.DisplayPixels()[0], 0xf800);
    CItfWnd::SetDrawing(false);
    Frame();
    EXPECT_EQ(wnd->ticks, 1) << "no ticks while drawing is off";
}

TEST_F(InterfaceTest, LoadingBar)
{
    UseShippedNames();
    Send(MSG_ITF_PROGRESS_SET, {50, 0}); // without a bar
    Send(MSG_ITF_PROGRESS_OPEN);
    ASSERT_EQ(Toolkit().windows.size(), 1u);
    RECT rect;
    Toolkit().windows[0].wnd->GetScreenRect(&rect);
    EXPECT_EQ(rect, (RECT{265, 486, 536, 509}));
    const auto shown = [this](int x) { return engine.render.DisplayPixels()[497 * 800 + x]; };
    const std::uint16_t empty = shown(300);
    Send(MSG_ITF_PROGRESS_SET, {50, 0});
    EXPECT_NE(shown(300), empty) << "presented at once, filled on the left";
    Send(MSG_ITF_PROGRESS_OPEN);
    EXPECT_EQ(Toolkit().windows.size(), 1u) << "the old bar has gone";
}

TEST_F(InterfaceTest, ABrokenNameFileIsReadAgainByTheNextEvent)
{
    WriteFile("resource/txt_res/itfnames.ini", "SpriteMap {\n itfA \"a.png\n}");
    EXPECT_THROW(Start(0), int);
    EXPECT_EQ(TakeDebug().back(), "Interface: first time init failed. Error code: 1\r\n");
    EXPECT_TRUE(Toolkit().spriteMap.empty()) << "nothing half read";
    EXPECT_TRUE(Toolkit().windows.empty());
    std::filesystem::remove(userFolder / "resource/txt_res/itfnames.ini");
    SendEvent({.code = 99});
    EXPECT_FALSE(Toolkit().spriteMap.empty());
    EXPECT_TRUE(CItfWnd::IsDrawing() && Toolkit().windows.at(0).wnd->IsVisible());
}

} // namespace
