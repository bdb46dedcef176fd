#pragma once
// The top window of the tree and the state machine of the front end.

#include <memory>
#include <string>

#include "flow/flow.h"
#include "ilogic.h"
#include "itfrecords.h"
#include "kernel/itfwnd.h"

class CMainDlg;

/// Shows nothing of its own: owns one member for each dialog, opens dialogs, is told how each ended, and turns
/// that into the next dialog or a command to the logic. Its state is the set of members that aren't null.
///
/// A dialog reports with Notify (its object is deleted in the call) or, when it has more to do afterwards, with
/// PostToParent. The tables of mainwnd.cpp hold every id, result and action; docs/architecture.md tells how a
/// dialog joins them.
class CMainWnd : public CItfWnd
{
  public:
    CMainWnd();
    ~CMainWnd() override;

    void OnCreate() override;
    const Row* GetMessageTable() const override;

    /// Reads itfnames.ini and fetches the text table. Throws what the reader throws, after a debug line.
    void InitFirstTime();

    void ShowMainDlg(bool show);
    /// Without a dialog (direct) the loading screen comes up and CMD_MISSION_GO goes out.
    void ShowMissionBrief(const char* path, bool direct);
    void ShowMessage(int number);
    void AskLeaveBattle();
    void CloseAllDialogs();

    /// Every command leaves this way. The message carries the record's address: it stays as it is until the
    /// logic has read it.
    void PostCommand(int code);
    /// The loading screen, then the command.
    void FadeAndPostCommand(int code);
    /// Drawing is off from here until the next event.
    void ShowLoadingScreen();
    /// Leaves the options as they are when there is no scene or no entity "graphics".
    void ReadOptions();
    void ApplyOptions();
    /// False when there is no picture to show.
    bool ShowExitPicture();

    CMainDlg* GetMainDlg() const { return m_pMainDlg.get(); }
    const ItfCommand& GetCommand() const { return m_Command; }
    ItfOptions& GetOptions() { return m_Options; }

  protected:
    /// The common way to open a dialog. Nothing when the slot holds one; otherwise makes a Dialog, and calls
    /// create(dialog) for its Create. Gives the dialog, null when it isn't there afterwards.
    template <class Dialog, class CreateDialog>
    Dialog* Open(std::unique_ptr<Dialog>& slot, const OpeningRow& row, CreateDialog create);

  private:
    using ReportAction = void (CMainWnd::*)();
    struct ReportRow {
        int id;
        int result; ///< FlowResult; RESULT_ANY stands below the rows that name one
        ReportAction action;
    };
    struct MenuRow {
        int item; ///< MainMenuItem
        ReportAction action;
    };
    static const ReportRow s_Reports[];
    static const MenuRow s_MenuItems[];

    Word OnMenuCommand(std::uint32_t control, std::int32_t item);
    Word OnDialogReport(std::uint32_t result, std::int32_t id);
    Word OnKeyDown(std::uint32_t key, std::int32_t data);

    void PlayIntro();
    void AskLeaveProgram();
    void SendSecret();
    void LeaveProgram();
    void StayInProgram();
    void LeaveBattle();
    void StayInBattle();
    void LeaveNetwork();
    void AbortNetGame();

    void FinishOpening(CItfWnd& dialog, const OpeningRow& row);
    void FailOpening(const OpeningRow& row);
    void Quit();
    void ResumeBattle();
    IEngine* Root() const;

    std::unique_ptr<CMainDlg> m_pMainDlg;
    ItfCommand m_Command;
    ItfOptions m_Options = {};
    int m_nBtnFont = -1;
    bool m_bExitPicture = false; ///< the closing picture is up: any key ends the program
};

template <class Dialog, class CreateDialog>
Dialog* CMainWnd::Open(std::unique_ptr<Dialog>& slot, const OpeningRow& row, CreateDialog create)
{
    if ((row.steps & OPEN_CLOSES_MAIN) != 0)
        ShowMainDlg(false);
    if (slot != nullptr)
        return slot.get();
    slot = std::make_unique<Dialog>();
    if ((row.steps & OPEN_SWITCH_OFF) != 0)
        SetDrawing(false);
    if (!create(*slot)) {
        slot.reset();
        FailOpening(row);
        return nullptr;
    }
    FinishOpening(*slot, row);
    return slot.get();
}
