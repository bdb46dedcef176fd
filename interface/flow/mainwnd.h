#pragma once
// The top window of the tree and the state machine of the front end.

#include <memory>
#include <span>

#include "flow/flow.h"
#include "ilogic.h"
#include "itfrecords.h"
#include "kernel/itfwnd.h"

class CCreditsDlg;
class CEndGameDlg;
class CHelpDlg;
class CMainDlg;
class CScenBriefDlg;
class CScenSelDlg;
class CScStatusDlg;

/// Shows nothing of its own: owns one member for each dialog, opens dialogs, is told how each ended, and
/// turns that into the next dialog or a command to the logic. Its state is the set of members that aren't
/// null.
///
/// A dialog reports with Notify (its object is deleted in the call) or, when it has more to do afterwards,
/// with PostToParent. The tables of mainwnd.cpp hold every id, result and action; docs/architecture.md tells
/// how a dialog joins them.
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
    void ShowScenSelDlg();
    /// `path` is the scenario's file. A broken one is told by the dialog, and the main dialog opens.
    void ShowScenBriefDlg(const char* path);
    /// The battle goes on at once when the scenario can't be read, or for null.
    void ShowScStatusDlg(const ItfScenarioStatus* info);
    void ShowCreditsDlg();
    void ShowHelpDlg();
    void ShowEndGame(bool won);
    /// Without a dialog (direct) the loading screen comes up and CMD_MISSION_GO goes out.
    void ShowMissionBrief(const char* path, bool direct);
    void ShowMessage(int number);
    /// A question of the running battle, with this window as parent. The battle goes on when it can't be
    /// asked: null, or what the box's resource throws.
    CValueBox* AskOverBattle(const char* first, const char* second, int id, std::uint32_t style);
    /// Nothing while the answer to an earlier question is awaited or on its way.
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

    /// Null while it isn't open.
    CMainDlg* GetMainDlg() const;
    const ItfCommand& GetCommand() const { return m_Command; }
    ItfOptions& GetOptions() { return m_Options; }

  protected:
    struct ReportRow;
    using ReportAction = void (CMainWnd::*)(const ReportRow& row);
    struct ReportRow {
        int id;
        int result;    ///< FlowResult; RESULT_ANY stands below the rows that name one
        SlotOf member; ///< the row applies while this dialog is open; null for boxes, which have no member
        ReportAction action;
        int argument = 0; ///< of the action: a command
        const CoverRule* cover = nullptr;
    };

    /// The common way to open a dialog: makes a Dialog and calls its Create with the row's name and id, this
    /// window as parent, and the further arguments. Gives the dialog when it has opened now; null when it was
    /// open already, can't be created, or this window itself has gone. A Create that throws is recovered from
    /// as one that fails, and what it threw goes on to the caller.
    template <class Dialog, class... Arguments>
    Dialog* Open(CDialogSlotOf<Dialog>& slot, const OpeningRow& row, Arguments... arguments)
    {
        return OpenMade(
            slot, row, [] { return std::make_unique<Dialog>(); }, arguments...);
    }
    /// The same for a dialog whose constructor has arguments: make() gives the object.
    template <class Dialog, class Make, class... Arguments>
    Dialog* OpenMade(CDialogSlotOf<Dialog>& slot, const OpeningRow& row, Make make, Arguments... arguments);

    /// Runs the first of the rows that names id and result and whose member is open.
    void RunReport(std::span<const ReportRow> rows, int result, int id);

    // Actions of reports, for any dialog.
    void Close(const ReportRow& row);
    void CloseToMain(const ReportRow& row);
    void CloseAndResume(const ReportRow& row) { CloseAndSend(row, CMD_RESUME); }
    void CloseAndPost(const ReportRow& row) { CloseAndSend(row, row.argument); }
    /// Brings back what the dialog covered.
    void Restore(const ReportRow& row);

  private:
    struct MenuRow {
        int item; ///< MainMenuItem
        void (CMainWnd::*action)();
    };
    /// How the tables name a member: Member<&CMainWnd::m_pHelpDlg>.
    template <auto Slot>
    static CDialogSlot& Member(CMainWnd& wnd)
    {
        return wnd.*Slot;
    }
    static const SlotOf s_Members[];
    static const ReportRow s_Reports[];
    static const MenuRow s_MenuItems[];

    Word OnMenuCommand(std::uint32_t control, std::int32_t item);
    Word OnDialogReport(std::uint32_t result, std::int32_t id);
    Word OnKeyDown(std::uint32_t key, std::int32_t data);

    void PlayIntro();
    void AskLeaveProgram();
    void SendSecret();
    void ChooseScenario(const ReportRow& row);
    void StartScenario(const ReportRow& row);
    void BackToScenarios(const ReportRow& row);
    void LeaveProgram(const ReportRow& row);
    void StayInProgram(const ReportRow& row);
    void LeaveBattle(const ReportRow& row);
    void StayInBattle(const ReportRow&) { GoOnWithBattle(); }
    void GoOnWithBattle();
    void LeaveNetwork(const ReportRow& row);
    void LeaveEndedGame(const ReportRow& row);
    void PlayAgain(const ReportRow& row);
    void GoOnAfterGame(const ReportRow& row);
    void LookOnAfterGame(const ReportRow& row);
    void AbortNetGame(const ReportRow& row);

    void FinishOpening(CItfDialog& dialog, const OpeningRow& row);
    void FailOpening(const OpeningRow& row);
    /// The same while an exception is on its way.
    void FailOpeningQuietly(const OpeningRow& row) noexcept;
    bool TakeCallersAway(const CoverRule& cover);
    CItfDialog* FirstCaller(const CoverRule& cover);
    void CloseAndSend(const ReportRow& row, int code);
    void Quit();
    IEngine* Root() const;

    CDialogSlotOf<CScenSelDlg> m_pScenSelDlg;
    CDialogSlotOf<CScenBriefDlg> m_pScenBriefDlg;
    CDialogSlotOf<CMainDlg> m_pMainDlg;
    CDialogSlotOf<CScStatusDlg> m_pScStatusDlg;
    CDialogSlotOf<CCreditsDlg> m_pCreditsDlg;
    CDialogSlotOf<CHelpDlg> m_pHelpDlg;
    CDialogSlotOf<CEndGameDlg> m_pEndGameDlg;
    ItfCommand m_Command;
    ItfOptions m_Options = {};
    int m_nBtnFont = -1;
    bool m_bExitPicture = false; ///< the closing picture is up: any key ends the program
};

template <class Dialog, class Make, class... Arguments>
Dialog* CMainWnd::OpenMade(CDialogSlotOf<Dialog>& slot, const OpeningRow& row, Make make,
                           Arguments... arguments)
{
    // What led here may have closed everything: a dialog without the top window would be dead.
    if (m_nId == -1)
        return nullptr;
    if ((row.start & START_CLOSES_MAIN) != 0)
        ShowMainDlg(false);
    if (slot.IsOpen())
        return nullptr;
    slot.Put(make());
    if ((row.start & START_SWITCH_OFF) != 0)
        SetDrawing(false);
    bool created = false;
    try {
        created =
            slot->Create(row.windowName, nullptr, nullptr, this, row.id, IWS_SHADE, m_pCore, arguments...);
    } catch (...) {
        slot.Close();
        FailOpeningQuietly(row);
        throw;
    }
    if (!created) {
        slot.Close();
        FailOpening(row);
        return nullptr;
    }
    FinishOpening(*slot.Get(), row);
    return slot.Get();
}
