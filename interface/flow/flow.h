#pragma once
// The vocabulary of the front end's flow: dialog ids, result codes, menu items, and the rules by which
// dialogs open and close. Ids of boxes and dialogs are what they report to CMainWnd with.

#include <cstdint>
#include <memory>
#include <utility>

#include "flow/text_numbers.h"
#include "itfrecords.h"
#include "kernel/itfdialog.h"

class CMainWnd;

enum FlowDialogId : int {
    DLG_MAIN = 10,
    DLG_SCENARIOS = 100,
    DLG_SCENARIO_BRIEF = 110,
    BOX_LEAVE_PROGRAM = 140,
    DLG_SCENARIO_STATUS = 150,
    DLG_CREDITS = 180,
    DLG_HELP = 190,
    DLG_END_GAME = 350,
};

enum FlowResult : int {
    RESULT_ANY = -1,       ///< in a table: whatever no row above names
    RESULT_FIRST = 10,     ///< message box: first button (yes)
    RESULT_SECOND = 20,    ///< message box: second button (no)
    RESULT_CLOSE = 200,    ///< back to where the dialog came from
    RESULT_DONE = 210,     ///< go on
    RESULT_BACK = 220,     ///< back to the previous step
    RESULT_SCENARIO = 230, ///< a scenario was chosen
    RESULT_LEAVE = 300,    ///< from the end of a battle to the main menu
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

/// The owner of one dialog; empty while it isn't open.
class CDialogSlot
{
  public:
    CItfDialog* Get() const { return m_pDialog.get(); }
    bool IsOpen() const { return m_pDialog != nullptr; }
    void Put(std::unique_ptr<CItfDialog> dialog) { m_pDialog = std::move(dialog); }
    /// Deletes the dialog; the slot is empty from then on, also for what its destructor calls.
    void Close() { std::unique_ptr<CItfDialog> gone = std::move(m_pDialog); }

  private:
    std::unique_ptr<CItfDialog> m_pDialog;
};

template <class Dialog>
class CDialogSlotOf : public CDialogSlot
{
  public:
    Dialog* Get() const { return static_cast<Dialog*>(CDialogSlot::Get()); }
    Dialog* operator->() const { return Get(); }
};

/// How a table names a member of CMainWnd.
using SlotOf = CDialogSlot& (*)(CMainWnd&);

/// What happens before a dialog's Create.
enum OpeningStart : unsigned {
    START_CLOSES_MAIN = 1, ///< the main dialog goes, also when the new one is open already
    START_SWITCH_OFF = 2,  ///< drawing goes off
};

/// What happens after it, in the order of the row.
enum class OpeningStep : std::uint8_t {
    End,
    Shade, ///< the shade effect of the new dialog, without a shader drawing on
    Show,
    RedrawTop, ///< the top window, and so everything
    RedrawDialog,
    Focus,
    SwitchOn,      ///< drawing goes on
    Cover,         ///< the callers of the row's cover rule are taken away
    ShadeIfCovers, ///< with a caller taken away the shade, without one drawing on
};

/// What follows when Create fails or throws; the dialog's object is deleted first.
enum class OpeningFailure : std::uint8_t {
    MainDialog,         ///< the main dialog opens
    SwitchOnMainDialog, ///< drawing goes on, and the main dialog opens
    SwitchOn,           ///< drawing goes on
    SwitchOnCaller,     ///< drawing goes on, and the first caller shows again
    SwitchOnResume,     ///< drawing goes on, and CMD_RESUME goes out
};

/// What closing a covering dialog does when no caller is open.
enum class AloneAtClosing : std::uint8_t {
    SwitchOnResume, ///< drawing goes on, CMD_RESUME goes out
    SwitchOn,
    Nothing,
};

/// For a dialog that covers another: its callers stay open and hidden under it.
struct CoverRule {
    static constexpr int MAX_CALLERS = 3;
    SlotOf callers[MAX_CALLERS]; ///< in the order of the search, null behind the last
    bool hidesAll;               ///< every open caller is taken away, else the first alone
    AloneAtClosing alone;
};

struct OpeningRow {
    static constexpr int MAX_STEPS = 6;
    int id;
    const char* windowName;
    unsigned start;               ///< OpeningStart
    OpeningStep steps[MAX_STEPS]; ///< End behind the last
    OpeningFailure onFailure;
    const CoverRule* cover = nullptr; ///< for Cover, ShadeIfCovers and SwitchOnCaller
};
