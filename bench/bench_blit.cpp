// The blits that a frame is made of, through the operations that the module calls. The reference is a memcpy
// of as many bytes as the target rectangle holds.

#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "ratio.h"
#include "render/render2d.h"

namespace
{

constexpr int SCREEN_WIDTH = 800;
constexpr int SCREEN_HEIGHT = 600;
constexpr int SPRITE_SIDE = 256;
constexpr std::size_t SCREEN_PIXELS = std::size_t{SCREEN_WIDTH} * SCREEN_HEIGHT;

constexpr double AIM_OPAQUE = 1.4;
constexpr double AIM_KEYED = 2.2;
constexpr double AIM_KEYED_SCALED = 7.0;

/// Where the transparent pixels of a source lie.
enum KeyPattern : int { KEY_NOWHERE, KEY_EVERYWHERE, KEY_RANDOM, KEY_STRIPES, KEY_EVERY_OTHER };
constexpr const char* KEY_PATTERN_NAMES[] = {"no key", "all key", "random", "stripes", "every other"};

bool IsKey(KeyPattern pattern, int x, std::mt19937& random)
{
    constexpr int STRIPE = 16;
    switch (pattern) {
    case KEY_EVERYWHERE:
        return true;
    case KEY_RANDOM:
        return (random() & 1u) != 0;
    case KEY_STRIPES:
        return x / STRIPE % 2 != 0;
    case KEY_EVERY_OTHER:
        return x % 2 != 0;
    case KEY_NOWHERE:
        break;
    }
    return false;
}

int MakeSurface(CRender2D& render, int width, int height, KeyPattern pattern)
{
    const RECT rect{0, 0, width, height};
    const int surface = render.CreateSurface(&rect);
    std::uint16_t* pixels = render.LockSurface(surface);
    std::mt19937 random(1);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            *pixels++ = IsKey(pattern, x, random) ? std::uint16_t{0}
                                                  : static_cast<std::uint16_t>(1u + random() % 0xffffu);
    render.UnlockSurface(surface, 0);
    return surface;
}

/// A blit onto a whole screen of pixels beside a memcpy of a screen of pixels.
void MeasureBlit(benchmark::State& state, double aim, int sourceWidth, int sourceHeight, bool keyed,
                 KeyPattern pattern, const RECT* targetRect = nullptr, const RECT* sourceRect = nullptr)
{
    CRender2D render(SCREEN_WIDTH, SCREEN_HEIGHT);
    const int source = MakeSurface(render, sourceWidth, sourceHeight, pattern);
    const int target = MakeSurface(render, SCREEN_WIDTH, SCREEN_HEIGHT, KEY_NOWHERE);
    const std::vector<std::uint16_t> from(SCREEN_PIXELS, 0x1234);
    std::vector<std::uint16_t> to(SCREEN_PIXELS, 0x4321);
    const std::size_t pixels = targetRect == nullptr
                                   ? SCREEN_PIXELS
                                   : static_cast<std::size_t>(targetRect->right - targetRect->left) *
                                         static_cast<std::size_t>(targetRect->bottom - targetRect->top);
    state.SetLabel(keyed ? KEY_PATTERN_NAMES[pattern] : "opaque");
    ratio::Measure(
        state, aim, [&] { render.Blit(0, target, source, targetRect, sourceRect, keyed); },
        [&] {
            std::memcpy(to.data(), from.data(), pixels * sizeof(std::uint16_t));
            benchmark::DoNotOptimize(to.data());
        });
}

void OpaqueScreen(benchmark::State& state)
{
    MeasureBlit(state, AIM_OPAQUE, SCREEN_WIDTH, SCREEN_HEIGHT, false, KEY_NOWHERE);
}

/// Rows that aren't whole, as nearly every sprite's.
void OpaquePart(benchmark::State& state)
{
    const RECT targetRect{3, 2, SCREEN_WIDTH - 4, SCREEN_HEIGHT - 3};
    const RECT sourceRect{6, 4, SCREEN_WIDTH - 1, SCREEN_HEIGHT - 1};
    MeasureBlit(state, AIM_OPAQUE, SCREEN_WIDTH, SCREEN_HEIGHT, false, KEY_NOWHERE, &targetRect, &sourceRect);
}

void KeyedScreen(benchmark::State& state)
{
    MeasureBlit(state, AIM_KEYED, SCREEN_WIDTH, SCREEN_HEIGHT, true, static_cast<KeyPattern>(state.range(0)));
}

void KeyedScaled(benchmark::State& state)
{
    MeasureBlit(state, AIM_KEYED_SCALED, SPRITE_SIDE, SPRITE_SIDE, true,
                static_cast<KeyPattern>(state.range(0)));
}

void OpaqueScaled(benchmark::State& state)
{
    MeasureBlit(state, AIM_KEYED_SCALED, SPRITE_SIDE, SPRITE_SIDE, false, KEY_NOWHERE);
}

} // namespace

BENCHMARK(OpaqueScreen)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(OpaquePart)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(KeyedScreen)
    ->DenseRange(KEY_NOWHERE, KEY_EVERY_OTHER)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(KeyedScaled)
    ->DenseRange(KEY_NOWHERE, KEY_EVERY_OTHER)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(OpaqueScaled)->UseManualTime()->Unit(benchmark::kMicrosecond);
