// CInterface: the host's calls in, window messages out.

#include "itfrecords.h"
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
        return wnd;
    }
    std::vector<Sent> DisplayModes() const { return engine.SentWith(MSG_SET_DISPLAY_MODE); }
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
    EXPECT_EQ(engine.inputEntities, std::vector<int>{Ui().GetEntityId()});
    EXPECT_EQ(Ui().m_HostWords[Entity::HOSTWORD_FLAGS], 1);

    engine.playList.calls.clear();
    DropUi();
    EXPECT_EQ(engine.playList.calls, (std::vector<std::string>{"Select 0 0", "Select 0 0"}));
    EXPECT_EQ(marker.modes, (std::vector<int>{1, 0}));
    EXPECT_EQ(scene.SentWith(MSG_CAMERA_UI_OFF).size(), 1u);
    EXPECT_EQ(engine.calls.back(), "SetTimerRate 100");
}

TEST_F(InterfaceTest, InitKeepsMusicThatPlaysAndRefusesAHostWithoutLayers)
{
    engine.playList.current = 3;
    Ui();
    EXPECT_TRUE(engine.playList.calls.empty());
    CInterface bad;
    EXPECT_EQ(bad.Init(nullptr), 0);
    engine.hasRender = false;
    EXPECT_EQ(bad.Init(&engine), 0);
    EXPECT_EQ(bad.OnFrame(20, 0), 0) << "a frame before the start does no harm";
}

TEST_F(InterfaceTest, StartChoosesTheDisplayModeByHeightAndCode)
{
    struct Case {
        int width, height, code;
        bool changes; ///< the logic is asked for 800 by 600
        bool large;   ///< when the logic leaves the display as it is
    };
    const Case cases[] = {
        {800, 600, 99, false, false}, {640, 480, 99, true, false},  {1024, 768, 99, true, true},
        {1024, 768, 7, false, true},  {1024, 768, 35, false, true}, {1024, 768, 8000, true, true},
        {640, 480, 7, true, false},   {1024, 601, 13, false, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.height) + "/" + std::to_string(c.code));
        engine.messages.clear();
        engine.SetDisplaySize(c.width, c.height);
        Start(c.code);
        EXPECT_EQ(DisplayModes().size(), c.changes ? 1u : 0u);
        EXPECT_EQ(Ui().IsLargeDisplay(), c.large);
        RECT screen;
        CItfWnd::GetVirtualScreen(&screen);
        const RECT centred = {(c.width - 800) / 2, (c.height - 600) / 2, (c.width + 800) / 2,
                              (c.height + 600) / 2};
        EXPECT_EQ(screen, c.large ? centred : (RECT{0, 0, 800, 600}));
        const RECT placed = engine.viewport.rc;
        EXPECT_EQ(placed, screen);
        EXPECT_FLOAT_EQ(engine.viewport.fNear, 0.1f);
        DropUi();
        Toolkit() = ToolkitState();
        TakeDebug();
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
    CItfWnd::SetDrawing(true);
    front->answer = 77;
    EXPECT_EQ(Down(60, 60), 77);
    EXPECT_EQ(CItfWnd::GetFocusId(), front->GetId());
    EXPECT_EQ(back->got.size(), 0u);
    Move(10, 10);
    EXPECT_EQ(back->got.size(), 1u);
    EXPECT_EQ(CItfWnd::GetFocusId(), front->GetId()) << "only a press moves the focus";
    EXPECT_EQ(Move(300, 300), 0);
    front->Hide(true);
    Down(60, 60);
    EXPECT_EQ(back->got.back().msg, static_cast<std::uint32_t>(WM_LBUTTONDOWN));

    // Drawing off: nothing happens at all.
    CItfWnd::SetDrawing(false);
    const std::size_t seen = back->got.size() + front->got.size();
    EXPECT_EQ(Down(10, 10), 0);
    EXPECT_EQ(back->got.size() + front->got.size(), seen + 0u);
    EXPECT_EQ(Ui().OnWindowMessage(0x20b, 0, 0), 0);
}

TEST_F(InterfaceTest, CoordinatesAreShiftedIntoTheVirtualScreenWithTheirSign)
{
    auto wnd = Make({0, 0, 800, 600});
    CItfWnd::SetDrawing(true);
    Toolkit().virtualScreen = {112, 84, 912, 684};
    Move(112, 84);
    ASSERT_EQ(wnd->got.size(), 1u);
    EXPECT_EQ(wnd->got[0].lParam, 0);
    wnd->SetCapture();
    Move(100, 80);
    EXPECT_EQ(static_cast<std::int16_t>(wnd->got[1].lParam & 0xffff), -12);
    EXPECT_EQ(static_cast<std::int16_t>(static_cast<std::uint32_t>(wnd->got[1].lParam) >> 16), -4);
}

TEST_F(InterfaceTest, CaptureAndModalWindows)
{
    auto back = Make({0, 0, 400, 400});
    auto box = Make({100, 100, 200, 200});
    auto button = Make({10, 10, 20, 20}, box.get());
    CItfWnd::SetDrawing(true);
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
    Toolkit().focusId = -1;
    EXPECT_EQ(Key(VK_RETURN), 0);
    back->SetFocus();
    back->Hide(true);
    EXPECT_EQ(Key(VK_RETURN), 0);
}

TEST_F(InterfaceTest, APressMaySurviveTheOldFocusHoldersHandler)
{
    auto old = Make({0, 0, 50, 50});
    auto hit = Make({100, 100, 200, 200});
    CItfWnd::SetDrawing(true);
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
    EXPECT_TRUE(CItfWnd::IsDrawing());
    RECT rect;
    Toolkit().windows[0].wnd->GetScreenRect(&rect);
    EXPECT_EQ(rect, (RECT{265, 486, 536, 509}));
    const auto shown = [this](int x) { return engine.render.DisplayPixels()[497 * 800 + x]; };
    const std::uint16_t empty = shown(300);
    Send(MSG_ITF_PROGRESS_SET, {50, 0});
    EXPECT_NE(shown(300), empty) << "presented at once, filled on the left";
    Send(MSG_ITF_PROGRESS_OPEN);
    EXPECT_EQ(Toolkit().windows.size(), 1u) << "the old bar has gone";

    Toolkit().spriteMap.clear();
    Toolkit().sprites.clear();
    Send(MSG_ITF_PROGRESS_OPEN);
    EXPECT_TRUE(Toolkit().windows.empty()) << "without its sprite there is no bar";
}

TEST_F(InterfaceTest, CloseAllEmptiesTheTable)
{
    auto first = Make({0, 0, 50, 50});
    auto second = Make({0, 0, 50, 50}, first.get());
    engine.playList.calls.clear();
    Ui();
    Send(MSG_ITF_CLOSE_ALL);
    EXPECT_TRUE(Toolkit().windows.empty());
    EXPECT_EQ(second->GetId(), -1);
    EXPECT_EQ(engine.playList.calls.back(), "Select 0 0");
    engine.playList.calls.clear();
    Send(MSG_ITF_CLOSE_ALL);
    EXPECT_EQ(engine.playList.calls, std::vector<std::string>{"Select 0 0"});
}

TEST_F(InterfaceTest, BrokenNameFileLeavesTheHandlerAsTheIntegerOne)
{
    WriteFile("resource/txt_res/itfnames.ini", "SpriteMap {\n itfA \"a.png\n}");
    EXPECT_THROW(Start(0), int);
    const std::vector<std::string> debug = TakeDebug();
    ASSERT_EQ(debug.size(), 2u);
    EXPECT_NE(debug[0].find("itfnames.ini(2)"), std::string::npos) << debug[0];
    EXPECT_EQ(debug[1], "Interface: first time init failed. Error code: 1\r\n");
    EXPECT_TRUE(Toolkit().spriteMap.empty()) << "nothing half read";
    EXPECT_TRUE(Toolkit().windows.empty());
    // The next event finds everything as the first start should have left it.
    std::filesystem::remove(userFolder / "resource/txt_res/itfnames.ini");
    SendEvent({.code = 99});
    EXPECT_FALSE(Toolkit().spriteMap.empty());
    EXPECT_TRUE(CItfWnd::IsDrawing() && Toolkit().windows.at(0).wnd->IsVisible());
}

} // namespace
