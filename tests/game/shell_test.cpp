// The command line, keys, the window's geometry and the picture that is shown.
#include <gtest/gtest.h>

#include <SDL.h>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/temp_roots.h"
#include "platform/types.h"
#include "shell/input.h"
#include "shell/keymap.h"
#include "shell/line_ends.h"
#include "shell/options.h"
#include "shell/presenter.h"
#include "shell/recorder.h"
#include "shell/view_fit.h"
#include "support/rows.h"

namespace
{

TEST(OptionsTest, EveryOptionIsTakenInBothForms)
{
    Options options;
    std::string error;
    ASSERT_TRUE(ParseOptions({"--data", "d", "--user=u", "--size", "1024x768", "--scale=whole", "--mute",
                              "--fullscreen", "--headless", "--script", "s", "--shots", "p", "--trace", "t",
                              "--record", "r", "--seed", "7"},
                             options, error))
        << error;
    EXPECT_EQ(options.dataFolder, "d");
    EXPECT_EQ(options.userFolder, "u");
    EXPECT_EQ(options.size, (SIZE{1024, 768}));
    EXPECT_EQ(options.scale, ViewScale::Whole);
    EXPECT_TRUE(options.mute && options.fullscreen && options.headless);
    EXPECT_EQ(options.script + options.shots + options.trace + options.record, "sptr");
    EXPECT_EQ(options.seed, 7U);
}

TEST(OptionsTest, AWrongOptionIsNamed)
{
    const std::vector<std::vector<std::string>> wrong = {
        {"--sized"},  {"file"},           {"--mute=1"},
        {"--size"},   {"--size", "800"},  {"--size=0x5"},
        {"--seed=x"}, {"--scale", "big"}, {"--size", "5000x600"},
        {"--data="},  {"--headless"}};
    for (const auto& arguments : wrong) {
        Options options;
        std::string error;
        EXPECT_FALSE(ParseOptions(arguments, options, error)) << arguments[0];
        const std::string name = arguments[0].substr(0, arguments[0].find('='));
        EXPECT_NE(error.find(name), std::string::npos) << error;
    }
}

TEST(KeymapTest, EveryCodeHasANameThatMeansIt)
{
    for (int key = 1; key <= 255; ++key)
        EXPECT_EQ(KeyFromName(KeyName(key)), key) << KeyName(key);
    for (const char* name : {"", "f0", "numpad10", "vk0x0", "vk0x100", "vk0xzz", "\xe9", "+"})
        EXPECT_EQ(KeyFromName(name), 0) << name;
    EXPECT_EQ(KeyFromName("ENTER"), VK_RETURN);
}

TEST(KeymapTest, EveryKeyOfEveryLayoutHasACode)
{
    const Rows<std::int32_t, SDL_Scancode, bool, int> cases = {
        {SDLK_KP_7, SDL_SCANCODE_KP_7, true, VK_NUMPAD0 + 7},
        {SDLK_KP_7, SDL_SCANCODE_KP_7, false, VK_HOME},
        {SDLK_KP_ENTER, SDL_SCANCODE_KP_ENTER, true, VK_RETURN},
        {SDLK_RSHIFT, SDL_SCANCODE_RSHIFT, true, VK_SHIFT},
        {SDLK_z, SDL_SCANCODE_Y, true, 'Z'},         // the letter counts before the place
        {0xf6, SDL_SCANCODE_SEMICOLON, true, 0xba},  // o with two dots
        {0x439, SDL_SCANCODE_Q, true, 'Q'},          // a Cyrillic letter
        {SDLK_AMPERSAND, SDL_SCANCODE_1, true, '1'}, // a row that has its digits behind Shift
        {SDLK_LESS, SDL_SCANCODE_NONUSBACKSLASH, true, 0xe2},
        {SDLK_UNKNOWN, SDL_SCANCODE_UNKNOWN, true, 0xff},
    };
    for (const auto& [keycode, scancode, numLock, key] : cases)
        EXPECT_EQ(KeyFromSdl(keycode, scancode, numLock), key) << SDL_GetKeyName(keycode);
}

TEST(InputTest, MotionIsOneMessageAndKeyStateGoesWithTheMessage)
{
    CInput input;
    for (int x = 1; x < 100; ++x)
        input.MoveTo({x, 5});
    input.Button(VK_LBUTTON, true, false);
    input.MoveTo({-3, 700});
    input.Button(VK_LBUTTON, false, false);
    EXPECT_FALSE(input.IsDownNow(VK_LBUTTON));
    const Rows<UINT, LONG, bool> expected = {{WM_MOUSEMOVE, 5 << 16 | 99, false},
                                             {WM_LBUTTONDOWN, 5 << 16 | 99, true},
                                             {WM_MOUSEMOVE, 700 << 16 | 0xfffd, true},
                                             {WM_LBUTTONUP, 700 << 16 | 0xfffd, false}};
    InputMessage message;
    for (const auto& [number, position, down] : expected) {
        ASSERT_TRUE(input.Take(message));
        EXPECT_EQ(message.message, number);
        EXPECT_EQ(message.lParam, position);
        EXPECT_EQ(input.IsDown(VK_LBUTTON), down) << "the state is the message's, not the present one";
    }
    EXPECT_FALSE(input.Take(message));
}

TEST(InputTest, LosingTheWindowReleasesWhatIsDown)
{
    CInput input;
    input.Key(VK_CONTROL, true);
    input.Button(VK_LBUTTON, true, false);
    input.Char('\t');
    input.ReleaseAll();
    std::vector<UINT> seen;
    for (InputMessage message; input.Take(message);) {
        seen.push_back(message.message);
        EXPECT_TRUE(message.message != WM_LBUTTONUP || message.lParam == -1) << "where nothing is clicked";
    }
    EXPECT_EQ(seen, (std::vector<UINT>{WM_KEYDOWN, WM_LBUTTONDOWN, WM_MOUSEMOVE, WM_LBUTTONUP, WM_KEYUP}));
    EXPECT_FALSE(input.IsDown(VK_CONTROL));
    input.PointerButton(VK_LBUTTON, false, 9);
    InputMessage late;
    EXPECT_FALSE(input.Take(late)) << "the button has gone up already";
}

TEST(InputTest, ADoubleClickIsTwoPressesAtOnePlaceWithinHalfASecond)
{
    constexpr int LEFT = VK_LBUTTON;
    constexpr UINT DOWN = WM_LBUTTONDOWN;
    constexpr UINT TWICE = WM_LBUTTONDBLCLK;
    const Rows<Rows<int, POINT, DWORD>, std::vector<UINT>> cases = {
        {{{LEFT, {50, 50}, 0}, {LEFT, {52, 48}, 500}}, {DOWN, TWICE}},
        {{{LEFT, {50, 50}, 9}, {LEFT, {50, 50}, 510}}, {DOWN, DOWN}},
        {{{LEFT, {50, 50}, 0}, {LEFT, {53, 50}, 90}}, {DOWN, DOWN}},
        {{{LEFT, {50, 50}, 0}, {LEFT, {50, 47}, 90}}, {DOWN, DOWN}},
        {{{LEFT, {5, 5}, 0}, {LEFT, {5, 5}, 90}, {LEFT, {5, 5}, 180}}, {DOWN, TWICE, DOWN}},
        {{{LEFT, {5, 5}, 0}, {VK_RBUTTON, {5, 5}, 90}, {LEFT, {5, 5}, 180}}, {DOWN, WM_RBUTTONDOWN, DOWN}},
    };
    for (const auto& [presses, messages] : cases) {
        CInput input;
        for (const auto& [button, at, time] : presses) {
            input.MoveTo(at);
            input.PointerButton(button, true, time);
            input.PointerButton(button, false, time + 20);
        }
        std::vector<UINT> seen;
        for (InputMessage message; input.Take(message);) {
            if (message.down)
                seen.push_back(message.message);
        }
        EXPECT_EQ(seen, messages);
    }
}

TEST(InputTest, KeysBringTheirControlCharacterAlong)
{
    const Rows<int, int, std::vector<DWORD>> cases = {
        {0, VK_BACK, {'\b'}},   {VK_CONTROL, VK_BACK, {}},       {VK_MENU, VK_BACK, {}},
        {0, VK_RETURN, {'\r'}}, {VK_CONTROL, 'V', {'V' - 0x40}}, {0, 'V', {}}};
    for (const auto& [held, key, expected] : cases) {
        CInput input;
        if (held != 0)
            input.Key(held, true);
        input.Key(key, true);
        std::vector<DWORD> characters;
        for (InputMessage message; input.Take(message);) {
            if (message.message == WM_CHAR)
                characters.push_back(message.wParam);
        }
        EXPECT_EQ(characters, expected) << held << " with " << key;
    }
}

TEST(LineEndsTest, TheDesktopHasLfAndTheGameCrLf)
{
    const Rows<const char*, const char*, const char*> cases = {
        {"", "", ""},
        {"one\ntwo\n", "one\r\ntwo\r\n", "one\ntwo\n"},
        {"one\rtwo\r", "one\rtwo\r", "one\rtwo\r"},
        {"\r\r\n", "\r\r\n", "\r\n"},
    };
    for (const auto& [desktop, game, back] : cases) {
        EXPECT_EQ(WithCrLf(desktop), game);
        EXPECT_EQ(WithLf(game), back);
    }
}

TEST(ViewFitTest, TheDisplayKeepsItsShapeAndThePointerIsMappedBack)
{
    const SIZE display = {800, 600};
    const Rows<SIZE, ViewScale, RECT> cases = {{{1000, 600}, ViewScale::Smooth, {100, 0, 900, 600}},
                                               {{800, 1000}, ViewScale::Smooth, {0, 200, 800, 800}},
                                               {{1920, 1300}, ViewScale::Whole, {160, 50, 1760, 1250}},
                                               {{400, 400}, ViewScale::Whole, {0, 50, 400, 350}},
                                               {{1, 1}, ViewScale::Smooth, {0, 0, 1, 1}}};
    for (const auto& [window, scale, view] : cases)
        EXPECT_EQ(FitView(display, window, scale), view) << window.cx << "x" << window.cy;
    // At a whole step every window pixel of a display pixel means that pixel.
    const RECT doubled = {50, 50, 1650, 1250};
    for (LONG x = 0; x < 1600; ++x)
        EXPECT_EQ(WindowToDisplay({doubled.left + x, doubled.top + 7}, doubled, display), (POINT{x / 2, 3}));
    EXPECT_EQ(WindowToDisplay({0, -5}, doubled, display), (POINT{0, 0}));
    EXPECT_EQ(WindowToDisplay({5000, 5000}, doubled, display), (POINT{799, 599}));
    // Shrunk, the middle of a window pixel counts.
    EXPECT_EQ(WindowToDisplay({0, 0}, {0, 0, 400, 300}, display), (POINT{1, 1}));
}

TEST(PresenterTest, TheDarkestFadeAndTheBrightnessChangeTheCopyOnly)
{
    CPresenter presenter;
    const std::uint16_t pixels[] = {0xffff, 0x8410, 0};
    EXPECT_EQ(presenter.Compose(pixels, 3, 1), pixels) << "nothing is copied while nothing changes it";
    presenter.SetFade(1, 0.25F);
    presenter.SetFade(2, 0.5F);
    EXPECT_EQ(presenter.Compose(pixels, 3, 1)[0], 15U << 11 | 30U << 5 | 15U);
    EXPECT_TRUE(presenter.TakeChanged());
    EXPECT_FALSE(presenter.TakeChanged());
    presenter.ClearFade(2);
    presenter.ClearFade(1);
    presenter.SetBrightness(9.0F);
    const std::uint16_t* shown = presenter.Compose(pixels, 3, 1);
    EXPECT_EQ(shown[0], 0xffff);
    EXPECT_EQ(shown[1], 0xffff);
    EXPECT_EQ(shown[2], 0);
}

TEST(PresenterTest, GreysStayGreyWhileTheyDarken)
{
    CPresenter presenter;
    for (int step = 1; step <= 64; ++step) {
        presenter.SetFade(1, static_cast<float>(step) / 64);
        for (unsigned level = 0; level < 32; ++level) {
            const auto grey = static_cast<std::uint16_t>(level << 11 | level << 6 | level);
            const int shown = *presenter.Compose(&grey, 1, 1);
            EXPECT_EQ(shown & 0xffdf, (shown >> 11) * 0x841) << step << ", level " << level;
        }
    }
}

TEST(RecorderTest, FramesWithoutInputReachTheFileNowAndThen)
{
    const TempRoots roots;
    CRecorder recorder;
    recorder.NextFrame();
    ASSERT_TRUE(recorder.Open((roots.folder / "user/r.script").string(), "x"));
    for (int i = 0; i < 120; ++i)
        recorder.NextFrame();
    EXPECT_EQ(roots.Get("user/r.script"), "# x\nframes 50\nframes 50\n") << "and a crash loses few";
    recorder.Note("up");
    recorder.Close(true);
    EXPECT_EQ(roots.Get("user/r.script"), "# x\nframes 50\nframes 50\nframes 20\nup\nquit\n");
}

} // namespace
