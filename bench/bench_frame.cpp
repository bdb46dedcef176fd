// Whole frames of the main menu with the shipped data, through the calls that the host makes. The reference
// is a memcpy of a screen of pixels.

#include <cstring>
#include <vector>

#include <benchmark/benchmark.h>

#include "kernel/itfwnd.h"
#include "menu.h"
#include "ratio.h"

namespace
{

constexpr std::size_t SCREEN_PIXELS = std::size_t{SCREEN_WIDTH} * SCREEN_HEIGHT;
/// A point of the menu's item "Introduction".
constexpr POINT LIT_ITEM = {640, 435};

/// The screen goes to the display: an opaque blit. Beside it, an item's text counts for little.
constexpr double AIM_FRAME = 1.4;
/// The background and the display: two blits, and a few hundred glyphs.
constexpr double AIM_REDRAWN_FRAME = 3.2;

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
