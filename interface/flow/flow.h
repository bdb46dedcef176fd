#pragma once
// The vocabulary of the front end's flow: dialog ids, result codes, menu items, and how dialogs open. Ids of
// boxes and dialogs are what they report to CMainWnd with.

#include <cstdint>

enum FlowDialogId : int {
    DLG_MAIN = 10,
    BOX_LEAVE_PROGRAM = 140,
    BOX_LEAVE_BATTLE = 360,
    BOX_NET_LOST = 370, ///< the logic's own box: with 10 the player leaves the network, else he aborts the game
};

enum FlowResult : int {
    RESULT_ANY = -1, ///< in a table: whatever no row above names
    RESULT_FIRST = 10,  ///< message box: first button (yes)
    RESULT_SECOND = 20, ///< message box: second button (no)
    RESULT_CLOSE = 200, ///< back to where the dialog came from
    RESULT_DONE = 210,  ///< go on
    RESULT_BACK = 220,  ///< back to the previous step
};

/// Items of the main menu, as the dialog resource numbers them. 100 comes from the hidden code alone.
enum MainMenuItem : int {
    MENU_SCENARIO = 1,
    MENU_RESUME_SCENARIO = 2,
    MENU_CAMPAIGN = 3,
    MENU_RESUME_CAMPAIGN = 4,
    MENU_MULTIPLAYER = 5,
    MENU_OPTIONS = 6,
    MENU_CREDITS = 7,
    MENU_INTRO = 8,
    MENU_QUIT = 10,
    MENU_SECRET = 100,
    MENU_CHARACTERS = 150,
};

/// Numbers in the logic's text table.
enum FlowText : int {
    TEXT_LEAVE_QUESTION = 16,
    TEXT_MESSAGE_CAPTION = 83,
    TEXT_VERSION = 116,
    TEXT_OTHER_BUTTON = 128,
    TEXT_LEAVE_CAPTION = 13150,
};

/// What happens on the way to a new dialog.
enum OpeningStep : unsigned {
    OPEN_CLOSES_MAIN = 1,  ///< the main dialog goes first
    OPEN_SWITCH_OFF = 2,   ///< drawing goes off before Create
    OPEN_SHADES = 4,       ///< the shade effect runs
    OPEN_REDRAWS_TOP = 8,  ///< the top window is invalidated, not the dialog alone
    OPEN_TAKES_FOCUS = 16,
};

/// What follows when Create fails; the dialog's object is deleted in each case.
enum class OpeningFailure {
    Nothing,
    MainDialog,         ///< the main dialog opens
    SwitchOnMainDialog, ///< the same with drawing on
    Resume,             ///< CMD_RESUME goes out
};

struct OpeningRow {
    int id;
    const char* windowName;
    unsigned steps; ///< OpeningStep
    OpeningFailure onFailure;
};
