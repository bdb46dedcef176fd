// Whole frames of the main menu with the shipped data, through the calls that the host makes. The reference
// is a memcpy of a screen of pixels.

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "itfrecords.h"
#include "kernel/interface_entity.h"
#include "kernel/itfwnd.h"
#include "platform/files.h"
#include "ratio.h"
#include "support/fakes.h"

namespace
{

constexpr std::size_t SCREEN_PIXELS = std::size_t{SCREEN_WIDTH} * SCREEN_HEIGHT;
constexpr int FRAME_MILLISECONDS = 20;
/// A point of the menu's item "Introduction".
constexpr POINT LIT_ITEM = {640, 435};

/// The screen goes to the display: an opaque blit. Beside it, an item's text counts for little.
constexpr double AIM_FRAME = 1.4;
/// The background and the display: two blits, and a few hundred glyphs.
constexpr double AIM_REDRAWN_FRAME = 3.2;

/// The module with its main menu open.
class Menu
{
  public:
    Menu()
    {
        Toolkit() = ToolkitState();
        PlatformSetRoots(std::string(SEAWARDEN_SOURCE_DIR) + "/data", "");
        std::fill(std::begin(ui.m_HostWords), std::end(ui.m_HostWords), 0);
        ui.m_HostWords[Entity::HOSTWORD_ID] = engine.AddEntity("interface", "interface");
        if (ui.Init(&engine) == 0)
            return;
        ItfEvent event;
        event.code = EVENT_MAIN_MENU;
        Send(MSG_ITF_START, reinterpret_cast<Word>(&event));
        Send(MSG_ITF_SHADE_DONE, 0);
    }

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

template <class Subject>
void MeasureFrame(benchmark::State& state, double aim, Menu& menu, Subject&& subject)
{
    if (!menu.IsOpen()) {
        state.SkipWithError("the main menu can't be opened");
        return;
    }
    const std::vector<std::uint16_t> from(SCREEN_PIXELS, 0x1234);
    std::vector<std::uint16_t> to(SCREEN_PIXELS, 0x4321);
    ratio::Measure(state, aim, subject, [&] {
        std::memcpy(to.data(), from.data(), SCREEN_PIXELS * sizeof(std::uint16_t));
        benchmark::DoNotOptimize(to.data());
    });
}

void MenuFrame(benchmark::State& state)
{
    Menu menu;
    MeasureFrame(state, AIM_FRAME, menu, [&] { menu.Frame(); });
}

void MenuFrameWithLitItem(benchmark::State& state)
{
    Menu menu;
    menu.PointAt(LIT_ITEM);
    MeasureFrame(state, AIM_FRAME, menu, [&] { menu.Frame(); });
}

void MenuFrameRedrawn(benchmark::State& state)
{
    Menu menu;
    MeasureFrame(state, AIM_REDRAWN_FRAME, menu, [&] {
        CItfWnd::RedrawAll();
        menu.Frame();
    });
}

} // namespace

BENCHMARK(MenuFrame)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(MenuFrameWithLitItem)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(MenuFrameRedrawn)->UseManualTime()->Unit(benchmark::kMicrosecond);
