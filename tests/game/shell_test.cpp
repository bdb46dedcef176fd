// The command line, keys, the window's geometry and the picture that is shown.
#include <gtest/gtest.h>

#include <SDL.h>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/temp_roots.h"
#include "platform/types.h"
#include "shell/clock.h"
#include "shell/input.h"
#include "shell/keymap.h"
#include "shell/line_ends.h"
#include "shell/options.h"
#include "shell/presenter.h"
#include "shell/recorder.h"
#include "shell/view_fit.h"

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
        {"--sized"},       {"-h"},         {"file"},       {"--mute=1"},       {"--size"},
        {"--size", "800"}, {"--size=0x5"}, {"--seed=x"},   {"--scale", "big"}, {"--size", "5000x600"},
        {"--data"},        {"--data="},    {"--headless"},
    };
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
    for (const char* name : {"", "f0", "f13", "numpad10", "vk0x0", "vk0x100", "vk0xzz", "\xe9", "+"})
        EXPECT_EQ(KeyFromName(name), 0) << name;
    EXPECT_EQ(KeyFromName("ENTER"), VK_RETURN);
    EXPECT_EQ(KeyFromName("q"), 'Q');
}

TEST(KeymapTest, TheKeypadFollowsNumLock)
{
    EXPECT_EQ(KeyFromSdl(SDLK_KP_7, SDL_SCANCODE_KP_7, true), VK_NUMPAD0 + 7);
    EXPECT_EQ(KeyFromSdl(SDLK_KP_7, SDL_SCANCODE_KP_7, false), VK_HOME);
    EXPECT_EQ(KeyFromSdl(SDLK_KP_5, SDL_SCANCODE_KP_5, false), 0x0c);
}

TEST(KeymapTest, EveryKeyOfEveryLayoutHasACode)
{
    const struct {
        std::int32_t keycode;
        SDL_Scancode scancode;
        int key;
    } cases[] = {
        {SDLK_KP_ENTER, SDL_SCANCODE_KP_ENTER, VK_RETURN},
        {SDLK_F12, SDL_SCANCODE_F12, VK_F12},
        {SDLK_F24, SDL_SCANCODE_F24, 0x87},
        {SDLK_RSHIFT, SDL_SCANCODE_RSHIFT, VK_SHIFT},
        {SDLK_z, SDL_SCANCODE_Y, 'Z'},         // the letter counts before the place
        {0xf6, SDL_SCANCODE_SEMICOLON, 0xba},  // o with two dots
        {0x439, SDL_SCANCODE_Q, 'Q'},          // a Cyrillic letter
        {SDLK_AMPERSAND, SDL_SCANCODE_1, '1'}, // a row that has its digits behind Shift
        {0xe0, SDL_SCANCODE_0, '0'},
        {SDLK_LESS, SDL_SCANCODE_NONUSBACKSLASH, 0xe2},
        {SDLK_PRINTSCREEN, SDL_SCANCODE_PRINTSCREEN, 0x2c},
        {SDLK_SCROLLLOCK, SDL_SCANCODE_SCROLLLOCK, 0x91},
        {SDLK_NUMLOCKCLEAR, SDL_SCANCODE_NUMLOCKCLEAR, 0x90},
        {SDLK_APPLICATION, SDL_SCANCODE_APPLICATION, 0x5d},
        {SDLK_LGUI, SDL_SCANCODE_LGUI, 0x5b},
        {SDLK_RGUI, SDL_SCANCODE_RGUI, 0x5c},
        {SDLK_VOLUMEUP, SDL_SCANCODE_VOLUMEUP, 0xff},
        {SDLK_UNKNOWN, SDL_SCANCODE_UNKNOWN, 0xff},
    };
    for (const auto& test : cases)
        EXPECT_EQ(KeyFromSdl(test.keycode, test.scancode, true), test.key) << SDL_GetKeyName(test.keycode);
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
    const struct {
        UINT message;
        LONG position;
        bool down;
    } expected[] = {{WM_MOUSEMOVE, 5 << 16 | 99, false},
                    {WM_LBUTTONDOWN, 5 << 16 | 99, true},
                    {WM_MOUSEMOVE, 700 << 16 | 0xfffd, true},
                    {WM_LBUTTONUP, 700 << 16 | 0xfffd, false}};
    InputMessage message;
    for (const auto& test : expected) {
        ASSERT_TRUE(input.Take(message));
        EXPECT_EQ(message.message, test.message);
        EXPECT_EQ(message.lParam, test.position);
        EXPECT_EQ(input.IsDown(VK_LBUTTON), test.down) << "the state is the message's, not the present one";
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
        if (message.message == WM_LBUTTONUP) {
            EXPECT_EQ(message.lParam, -1) << "off the display, where nothing is clicked";
        }
    }
    EXPECT_EQ(seen, (std::vector<UINT>{WM_KEYDOWN, WM_LBUTTONDOWN, WM_MOUSEMOVE, WM_LBUTTONUP, WM_KEYUP}));
    EXPECT_FALSE(input.IsDown(VK_CONTROL));
    input.PointerButton(VK_LBUTTON, false, 9);
    InputMessage late;
    EXPECT_FALSE(input.Take(late)) << "the button has gone up already";
}

TEST(InputTest, ADoubleClickIsTwoPressesAtOnePlaceWithinHalfASecond)
{
    struct Press {
        int button;
        POINT at;
        DWORD time;
    };
    const struct {
        std::vector<Press> presses;
        std::vector<UINT> messages;
    } cases[] = {
        {{{VK_LBUTTON, {50, 50}, 0}, {VK_LBUTTON, {52, 48}, 500}}, {WM_LBUTTONDOWN, WM_LBUTTONDBLCLK}},
        {{{VK_LBUTTON, {50, 50}, 9}, {VK_LBUTTON, {50, 50}, 510}}, {WM_LBUTTONDOWN, WM_LBUTTONDOWN}},
        {{{VK_LBUTTON, {50, 50}, 0}, {VK_LBUTTON, {53, 50}, 90}}, {WM_LBUTTONDOWN, WM_LBUTTONDOWN}},
        {{{VK_LBUTTON, {50, 50}, 0}, {VK_LBUTTON, {50, 47}, 90}}, {WM_LBUTTONDOWN, WM_LBUTTONDOWN}},
        {{{VK_LBUTTON, {5, 5}, 0},
          {VK_LBUTTON, {5, 5}, 90},
          {VK_LBUTTON, {5, 5}, 180},
          {VK_LBUTTON, {5, 5}, 270}},
         {WM_LBUTTONDOWN, WM_LBUTTONDBLCLK, WM_LBUTTONDOWN, WM_LBUTTONDBLCLK}},
        {{{VK_LBUTTON, {5, 5}, 0}, {VK_RBUTTON, {5, 5}, 90}, {VK_LBUTTON, {5, 5}, 180}},
         {WM_LBUTTONDOWN, WM_RBUTTONDOWN, WM_LBUTTONDOWN}},
    };
    for (const auto& test : cases) {
        CInput input;
        for (const Press& press : test.presses) {
            input.MoveTo(press.at);
            input.PointerButton(press.button, true, press.time);
            input.PointerButton(press.button, false, press.time + 20);
        }
        std::vector<UINT> seen;
        for (InputMessage message; input.Take(message);) {
            if (message.down)
                seen.push_back(message.message);
        }
        EXPECT_EQ(seen, test.messages) << test.presses[1].at.x << " " << test.presses[1].time;
    }
}

TEST(InputTest, OnlyAFreshPressCounts)
{
    CInput input;
    input.Button(VK_LBUTTON, true, false);
    input.Button(VK_LBUTTON, false, false);
    input.Button(VK_LBUTTON, true, true);
    input.Button(VK_RBUTTON, true, false);
    input.Key(VK_MENU, true);
    input.Key(VK_F1, true); // with Alt, a system key
    input.Key(VK_F1, true);
    input.Char('a');
    std::vector<bool> fresh;
    for (InputMessage message; input.Take(message);)
        fresh.push_back(IsFreshPress(message));
    EXPECT_EQ(fresh, (std::vector<bool>{true, false, false, true, false, true, false, false}));
}

TEST(InputTest, KeysBringTheirControlCharacterAlong)
{
    const struct {
        int held, key;
        std::vector<DWORD> characters;
    } cases[] = {
        {0, VK_BACK, {'\b'}},   {VK_CONTROL, VK_BACK, {}},       {VK_MENU, VK_BACK, {}},
        {0, VK_RETURN, {'\r'}}, {VK_CONTROL, 'V', {'V' - 0x40}}, {0, 'V', {}},
    };
    for (const auto& test : cases) {
        CInput input;
        if (test.held != 0)
            input.Key(test.held, true);
        input.Key(test.key, true);
        std::vector<DWORD> characters;
        for (InputMessage message; input.Take(message);) {
            if (message.message == WM_CHAR)
                characters.push_back(message.wParam);
        }
        EXPECT_EQ(characters, test.characters) << test.held << " with " << test.key;
    }
}

TEST(LineEndsTest, TheDesktopHasLfAndTheGameCrLf)
{
    const struct {
        const char *desktop, *game, *back;
    } cases[] = {
        {"", "", ""},
        {"one", "one", "one"},
        {"one\ntwo\n", "one\r\ntwo\r\n", "one\ntwo\n"},
        {"one\r\ntwo", "one\r\ntwo", "one\ntwo"},
        {"\n\n\r\n", "\r\n\r\n\r\n", "\n\n\n"},
        {"one\rtwo\r", "one\rtwo\r", "one\rtwo\r"},
        {"\r\r\n", "\r\r\n", "\r\n"},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(WithCrLf(test.desktop), test.game);
        EXPECT_EQ(WithLf(test.game), test.back);
    }
}

TEST(ViewFitTest, TheDisplayKeepsItsShapeInTheMiddle)
{
    const struct {
        SIZE display, window;
        ViewScale scale;
        RECT view;
    } cases[] = {
        {{800, 600}, {800, 600}, ViewScale::Smooth, {0, 0, 800, 600}},
        {{800, 600}, {1000, 600}, ViewScale::Smooth, {100, 0, 900, 600}},
        {{800, 600}, {800, 1000}, ViewScale::Smooth, {0, 200, 800, 800}},
        {{800, 600}, {1920, 1300}, ViewScale::Whole, {160, 50, 1760, 1250}},
        {{800, 600}, {400, 400}, ViewScale::Whole, {0, 50, 400, 350}},
        {{800, 600}, {1, 1}, ViewScale::Smooth, {0, 0, 1, 1}},
    };
    for (const auto& test : cases)
        EXPECT_EQ(FitView(test.display, test.window, test.scale), test.view)
            << test.window.cx << "x" << test.window.cy;
}

TEST(ViewFitTest, ThePointerIsMappedBackExactly)
{
    const SIZE display = {800, 600};
    // At a whole step every window pixel of a display pixel means that pixel.
    const RECT doubled = FitView(display, {1700, 1300}, ViewScale::Whole);
    for (LONG x = 0; x < 1600; ++x)
        EXPECT_EQ(WindowToDisplay({doubled.left + x, doubled.top + 7}, doubled, display), (POINT{x / 2, 3}));
    const RECT view = {100, 0, 900, 600};
    EXPECT_EQ(WindowToDisplay({0, -5}, view, display), (POINT{0, 0}));
    EXPECT_EQ(WindowToDisplay({5000, 5000}, view, display), (POINT{799, 599}));
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
    const std::uint16_t* shown = presenter.Compose(pixels, 3, 1);
    EXPECT_EQ(shown[0], 15U << 11 | 30U << 5 | 15U);
    EXPECT_EQ(shown[2], 0);
    EXPECT_TRUE(presenter.TakeChanged());
    EXPECT_FALSE(presenter.TakeChanged());
    presenter.ClearFade(2);
    presenter.ClearFade(1);
    presenter.SetBrightness(9.0F);
    shown = presenter.Compose(pixels, 3, 1);
    EXPECT_EQ(shown[0], 0xffff);
    EXPECT_EQ(shown[1], 0xffff);
}

TEST(PresenterTest, GreysStayGreyWhileTheyDarken)
{
    std::vector<std::uint16_t> greys;
    for (unsigned level = 0; level < 32; ++level)
        greys.push_back(static_cast<std::uint16_t>(level << 11 | level << 6 | level));
    CPresenter presenter;
    for (int step = 1; step <= 64; ++step) {
        presenter.SetFade(1, static_cast<float>(step) / 64);
        const std::uint16_t* shown = presenter.Compose(greys.data(), static_cast<int>(greys.size()), 1);
        for (std::size_t i = 0; i < greys.size(); ++i) {
            const int red = shown[i] >> 11;
            EXPECT_EQ(shown[i] & 0x1f, red) << step << ", level " << i;
            EXPECT_EQ((shown[i] >> 6) & 0x1f, red) << step << ", level " << i;
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

TEST(ClockTest, AFixedClockGoesByTheFrameAndTheSeedPicksTheTime)
{
    CClock clock(true, 0);
    EXPECT_EQ(clock.NextFrame(), 20);
    EXPECT_EQ(clock.NextFrame(), 20);
    EXPECT_EQ(clock.Milliseconds(), 40U);
    EXPECT_EQ(clock.SeededTime().wHour, 12);
    const SYSTEMTIME other = CClock(true, 4000000000U).SeededTime();
    EXPECT_LT(other.wHour, 24);
    EXPECT_LT(other.wMilliseconds, 1000);
    EXPECT_NE(other.wMinute * 60000 + other.wSecond * 1000 + other.wMilliseconds, 0);
}

} // namespace
