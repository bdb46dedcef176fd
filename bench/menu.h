#pragma once
// The module with the shipped data and its main menu open, beside a fake engine and platform.

#include <algorithm>
#include <cstdint>
#include <string>

#include "itfrecords.h"
#include "kernel/interface_entity.h"
#include "kernel/itfwnd.h"
#include "platform/files.h"
#include "support/fakes.h"

constexpr int FRAME_MILLISECONDS = 20;

/// The module with its main menu open.
class Menu
{
  public:
    /// `userFolder` hides the shipped files; empty for none.
    explicit Menu(const std::string& userFolder = "")
    {
        Toolkit() = ToolkitState();
        PlatformSetRoots(std::string(SEAWARDEN_SOURCE_DIR) + "/data", userFolder);
        std::fill(std::begin(ui.m_HostWords), std::end(ui.m_HostWords), 0);
        ui.m_HostWords[Entity::HOSTWORD_ID] = engine.AddEntity("interface", "interface");
        if (ui.Init(&engine) == 0)
            return;
        ItfEvent event;
        event.code = EVENT_MAIN_MENU;
        Send(MSG_ITF_START, reinterpret_cast<Word>(&event));
        Send(MSG_ITF_SHADE_DONE, 0);
    }

    /// Below it dialogs can be opened.
    CItfWnd* Top() const { return CItfWnd::FindWindow(0); }
    IEngine* Engine() { return &engine; }
    bool IsOpen() const { return CItfWnd::IsDrawing() && Toolkit().windows.size() > 2; }
    void PointAt(const POINT& point)
    {
        host.cursor = point;
        ui.OnWindowMessage(WM_MOUSEMOVE, 0, static_cast<std::int32_t>(point.y * 0x10000 + point.x));
    }
    void Frame() { ui.OnFrame(FRAME_MILLISECONDS, 0); }

  private:
    void Send(int number, Word word)
    {
        struct {
            MessageRecord record;
            Word words[1];
        } message = {{-1, number, ui.GetEntityId(), 0}, {word}};
        ui.OnMessage(&message.record);
    }

    seawarden_test::FakeHost host;
    seawarden_test::FakeEngine engine;
    CInterface ui;
};
