// soak_player SEED INPUTS: writes a script in which a player who knows the way, but not what he wants, uses
// the whole program: walks from dialog to dialog, clicks beside and on the controls of dialogs that are open
// or not, keys, the wheel, and events of the logic at any time. The same seed gives the same script. INPUTS
// counts moves, presses, clicks, keys and events.

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <iterator>
#include <random>
#include <string>

#include "flow/dialog_contract.h"
#include "flow/flow.h"
#include "itfrecords.h"

namespace
{

constexpr int WIDTH = 800;
constexpr int HEIGHT = 600;
constexpr int SHADE = 54; ///< frames that a dialog's shade takes, and some more

class CSoakPlayer
{
  public:
    CSoakPlayer(std::uint32_t seed, int inputs) : m_Random(seed), m_nInputs(inputs) {}

    void Play()
    {
        Wait(SHADE);
        while (m_nDone < m_nInputs) {
            switch (Below(12)) {
            case 0:
                WalkToBattle();
                break;
            case 1:
                SendEvent();
                break;
            case 2:
                CloseWhatIsOpen();
                Input("item MainDlg 10 %d",
                      OneOf({MENU_SCENARIO, MENU_CREDITS, MENU_CAMPAIGN, MENU_OPTIONS}));
                WaitForDialog();
                break;
            default:
                Fidget();
            }
        }
        // Whatever is up goes, and the menu must come.
        std::puts("event 0");
        Wait(SHADE);
        std::puts("quit");
    }

  private:
    /// Of the Mersenne Twister itself: the distributions differ between libraries.
    int Below(int limit) { return static_cast<int>(m_Random() % static_cast<std::uint32_t>(limit)); }
    template <class Range>
    const auto& Pick(const Range& range)
    {
        return std::data(range)[Below(static_cast<int>(std::size(range)))];
    }
    int OneOf(std::initializer_list<int> values) { return Pick(values); }

    [[gnu::format(printf, 2, 3)]] void Input(const char* format, ...)
    {
        std::va_list arguments;
        va_start(arguments, format);
        std::vprintf(format, arguments);
        va_end(arguments);
        std::putchar('\n');
        ++m_nDone;
    }
    // Arguments of a call are made in the compiler's order; the same seed has to give the same script.
    void InputAnywhere(const char* what)
    {
        const int x = Below(WIDTH);
        const int y = Below(HEIGHT);
        Input("%s %d %d", what, x, y);
    }
    void InputBox()
    {
        const int first = OneOf({13150, 16, -1});
        const int second = OneOf({16, 83, 117, 0});
        const int style = OneOf({0, 0x8000000, 2, 1});
        const int id = OneOf({0, 140, 360, 370, 380, 77});
        Input("event %d value1=%d value2=%d style=%d id=%d", EVENT_MESSAGE_BOX, first, second, style, id);
    }
    void InputEvent(int code)
    {
        const int value1 = Below(3) - 1;
        const int value2 = Below(2);
        Input("event %d value1=%d value2=%d", code, value1, value2);
    }
    static void Wait(int frames) { std::printf("frames %d\n", frames); }
    void Frames(int most) { Wait(1 + Below(most)); }
    /// A patient player, mostly: until the shade has ended nothing can be clicked.
    void WaitForDialog()
    {
        if (Below(5) == 0)
            Frames(SHADE);
        else
            Wait(SHADE);
    }

    /// The pointer goes somewhere as a hand moves it.
    void Glide()
    {
        const int x = Below(WIDTH + 20) - 10;
        const int y = Below(HEIGHT + 20) - 10;
        const int steps = 2 + Below(8);
        for (int step = 1; step <= steps; ++step) {
            Input("move %d %d", m_nX + (x - m_nX) * step / steps, m_nY + (y - m_nY) * step / steps);
            if (step % 4 == 0)
                Wait(1);
        }
        m_nX = x;
        m_nY = y;
    }

    /// Each click meets a button only where its dialog is open, and something else or nothing elsewhere.
    void CloseWhatIsOpen()
    {
        static const char* const buttons[] = {"MessageBoxYesNoDlg 20", "MessageBoxDlg 10", "ScStatusDlg 20",
                                              "StatisticsDlg 20",      "HelpDlg 10",       "FileDlg 10",
                                              "CreditsDlg 10",         "EndGameDlg 10",    "ScenBriefDlg 20",
                                              "ScenSelDlg 50"};
        for (const char* button : buttons) {
            Input("control %s", button);
            if (Below(12) == 0)
                WaitForDialog();
        }
    }

    void WalkToBattle()
    {
        CloseWhatIsOpen();
        Input("item MainDlg 10 %d", MENU_SCENARIO);
        WaitForDialog();
        const int row = Below(9);
        Input("row ScenSelDlg 10 %d%s", row, Below(2) == 0 ? " double" : "");
        if (Below(2) == 0)
            Input("control ScenSelDlg 40");
        WaitForDialog();
        for (int i = Below(4); i > 0; --i)
            Input("control ScenBriefDlg %d", OneOf({90, 100, 140, 180, 200}));
        Input("control ScenBriefDlg 30");
        Frames(30);
        for (int i = 1 + Below(3); i > 0; --i)
            PlayBattle();
        if (Below(3) == 0)
            EndBattle();
    }

    void EndBattle()
    {
        Input("event %d value2=%d", EVENT_END_GAME, Below(2));
        WaitForDialog();
        if (Below(2) == 0) {
            Input("control EndGameDlg 20");
            WaitForDialog();
            Input("control StatisticsDlg %d", OneOf({10, 20}));
            WaitForDialog();
        }
        Input("control EndGameDlg %d", OneOf({10, 20, 30, 40, 50}));
        WaitForDialog();
    }

    void PlayBattle()
    {
        static const char* const keys[] = {"escape", "f1",  "f2", "f3",    "f4",       "f5",   "space",
                                           "add",    "tab", "s",  "d",     "subtract", "home", "f",
                                           "left",   "up",  "o",  "right", "down",     "enter"};
        for (int i = 5 + Below(20); i > 0; --i) {
            switch (Below(6)) {
            case 0:
                Input("key %s", Pick(keys));
                break;
            case 1:
                InputAnywhere("click");
                break;
            case 2:
                InputAnywhere("move");
                Input("rdown\nframes 1\nrup");
                break;
            case 3:
                // A notch paints the whole chart anew.
                if (Below(4) == 0)
                    Input("wheel %d", OneOf({-3, -1, 1, 4}));
                break;
            case 4:
                Glide();
                break;
            default:
                Frames(6);
            }
        }
        if (Below(4) == 0)
            CloseWhatIsOpen();
    }

    void SendEvent()
    {
        switch (Below(8)) {
        case 0:
            // Also ids that mean something to the front end, and styles that don't.
            InputBox();
            break;
        case 1:
            Input("event %d value1=%d", EVENT_MESSAGE, OneOf({117, 0, -5}));
            break;
        case 2:
            Input("event %d value2=%d", EVENT_MENU_WITH_MESSAGE, OneOf({70, 117}));
            break;
        case 3:
            Input("event %d value2=%d", EVENT_MISSION_BRIEF, Below(2));
            break;
        case 4:
            Input("event %d", OneOf({EVENT_MAIN_MENU, EVENT_LEAVE_BATTLE, EVENT_FULL_DISPLAY, EVENT_LOBBY}));
            break;
        case 5:
            Input("event %d text=\"video\\seawardenintro.ani\"", EVENT_VIDEO);
            Frames(20);
            Input("key space");
            break;
        default:
            // Any other code, also those that mean nothing yet.
            InputEvent(EVENT_VIDEO + 1 + Below(40));
        }
        Frames(15);
    }

    void ClickControl()
    {
        const DialogRule& dialog = Pick(DialogContract());
        if (dialog.controls.empty())
            return;
        const ControlRule& control = Pick(dialog.controls);
        // The way out of the program ends the run: it is left to chance.
        if (control.kind == KIND_MENUITEM || control.kind == KIND_COLUMN)
            return;
        static const char* const actions[] = {"", " double", " down", " up", " move"};
        Input("control %s %d%s", dialog.section, control.id, actions[OneOf({0, 0, 0, 0, 1, 2, 3, 4})]);
        Frames(2);
    }

    void Fidget()
    {
        static const char* const keys[] = {
            "enter",  "escape",     "space", "tab",  "backspace", "delete",   "home",   "end",
            "left",   "right",      "up",    "down", "pageup",    "pagedown", "ctrl+a", "ctrl+v",
            "ctrl+c", "shift+left", "q",     "i",    "r",         "u"};
        for (int i = 4 + Below(12); i > 0; --i) {
            switch (Below(9)) {
            case 0:
            case 1:
            case 2:
                ClickControl();
                break;
            case 3:
                InputAnywhere("click");
                break;
            case 4:
                Glide();
                break;
            case 5:
                Input("key %s", Pick(keys));
                break;
            case 6:
                Input(Below(2) == 0 ? "down" : "up");
                break;
            case 7:
                Input("wheel %d", OneOf({-2, -1, 1, 2}));
                break;
            default:
                InputAnywhere("double");
            }
        }
        Frames(3);
    }

    std::mt19937 m_Random;
    int m_nInputs;
    int m_nDone = 0;
    int m_nX = 0; ///< where the pointer went last
    int m_nY = 0;
};

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "soak_player SEED INPUTS\n");
        return 2;
    }
    CSoakPlayer(static_cast<std::uint32_t>(std::atoi(argv[1])), std::atoi(argv[2])).Play();
    return 0;
}
