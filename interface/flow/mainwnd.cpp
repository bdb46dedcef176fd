#include "flow/mainwnd.h"

#include <cstdio>

#include "flow/creditsdlg.h"
#include "flow/endgamedlg.h"
#include "flow/helpdlg.h"
#include "flow/logic_objects.h"
#include "flow/maindlg.h"
#include "flow/valuebox.h"
#include "iengine.h"
#include "isound.h"
#include "keelworks/ds_file.h"
#include "kernel/nameloader.h"
#include "kernel/own_names.h"
#include "platform/system.h"
#include "scenario/scenbriefdlg.h"
#include "scenario/scenhead.h"
#include "scenario/scenseldlg.h"
#include "scenario/scstatusdlg.h"

namespace
{

constexpr char INTRO_CLIP[] = "video\\seawardenintro.ani";
/// How the entity "logo" is made and told to play.
constexpr int LOGO_KIND = 0x200;
constexpr int LOGO_MODE = 2;

constexpr OpeningRow OPEN_SCENARIOS = {
    DLG_SCENARIOS,
    "SingleScDlg",
    START_CLOSES_MAIN | START_SWITCH_OFF,
    {OpeningStep::Shade, OpeningStep::Show, OpeningStep::RedrawTop},
    OpeningFailure::SwitchOnMainDialog,
};
constexpr OpeningRow OPEN_SCENARIO_BRIEF = {
    DLG_SCENARIO_BRIEF,         "ScBriefing",
    START_SWITCH_OFF,           {OpeningStep::Shade, OpeningStep::Show, OpeningStep::RedrawTop},
    OpeningFailure::MainDialog,
};
constexpr OpeningRow OPEN_MAIN = {
    DLG_MAIN,
    "MainDlg",
    0,
    {OpeningStep::Shade, OpeningStep::Show, OpeningStep::RedrawDialog, OpeningStep::Focus},
    OpeningFailure::SwitchOn,
};
constexpr OpeningRow OPEN_CREDITS = {
    DLG_CREDITS,
    "CreditsDlg",
    START_CLOSES_MAIN | START_SWITCH_OFF,
    {OpeningStep::Shade, OpeningStep::Show, OpeningStep::RedrawTop},
    OpeningFailure::SwitchOnMainDialog,
};
// Over a running battle; the loading screen may have left drawing off.
constexpr OpeningRow OPEN_SCENARIO_STATUS = {
    DLG_SCENARIO_STATUS,
    "ScStatusDlg",
    0,
    {OpeningStep::Show, OpeningStep::SwitchOn, OpeningStep::RedrawTop},
    OpeningFailure::SwitchOnResume,
};
constexpr OpeningRow OPEN_HELP = {
    DLG_HELP,
    "HelpDlg",
    0,
    {OpeningStep::Show, OpeningStep::SwitchOn, OpeningStep::RedrawTop},
    OpeningFailure::SwitchOnResume,
};
// Without it the player looks on at the finished battle, which he can leave.
constexpr OpeningRow OPEN_END_GAME = {
    DLG_END_GAME,
    "Final",
    START_SWITCH_OFF,
    {OpeningStep::Shade, OpeningStep::Show, OpeningStep::RedrawTop},
    OpeningFailure::SwitchOnResume,
};

} // namespace

const SlotOf CMainWnd::s_Members[] = {
    Member<&CMainWnd::m_pScenSelDlg>,  Member<&CMainWnd::m_pScenBriefDlg>, Member<&CMainWnd::m_pMainDlg>,
    Member<&CMainWnd::m_pScStatusDlg>, Member<&CMainWnd::m_pCreditsDlg>,   Member<&CMainWnd::m_pHelpDlg>,
    Member<&CMainWnd::m_pEndGameDlg>,
};

// id, result, member, what follows. A report without a row does nothing.
const CMainWnd::ReportRow CMainWnd::s_Reports[] = {
    {DLG_SCENARIOS, RESULT_CLOSE, Member<&CMainWnd::m_pScenSelDlg>, &CMainWnd::CloseToMain},
    {DLG_SCENARIOS, RESULT_SCENARIO, Member<&CMainWnd::m_pScenSelDlg>, &CMainWnd::ChooseScenario},
    {DLG_SCENARIO_BRIEF, RESULT_CLOSE, Member<&CMainWnd::m_pScenBriefDlg>, &CMainWnd::CloseToMain},
    {DLG_SCENARIO_BRIEF, RESULT_DONE, Member<&CMainWnd::m_pScenBriefDlg>, &CMainWnd::StartScenario},
    {DLG_SCENARIO_BRIEF, RESULT_BACK, Member<&CMainWnd::m_pScenBriefDlg>, &CMainWnd::BackToScenarios},
    {BOX_LEAVE_PROGRAM, RESULT_FIRST, nullptr, &CMainWnd::LeaveProgram},
    {BOX_LEAVE_PROGRAM, RESULT_ANY, nullptr, &CMainWnd::StayInProgram},
    {DLG_SCENARIO_STATUS, RESULT_CLOSE, Member<&CMainWnd::m_pScStatusDlg>, &CMainWnd::CloseAndResume},
    {DLG_CREDITS, RESULT_CLOSE, Member<&CMainWnd::m_pCreditsDlg>, &CMainWnd::CloseToMain},
    {DLG_HELP, RESULT_CLOSE, Member<&CMainWnd::m_pHelpDlg>, &CMainWnd::CloseAndResume},
    {DLG_END_GAME, RESULT_CLOSE, Member<&CMainWnd::m_pEndGameDlg>, &CMainWnd::LookOnAfterGame},
    {DLG_END_GAME, RESULT_DONE, Member<&CMainWnd::m_pEndGameDlg>, &CMainWnd::PlayAgain},
    {DLG_END_GAME, RESULT_BACK, Member<&CMainWnd::m_pEndGameDlg>, &CMainWnd::GoOnAfterGame},
    {DLG_END_GAME, RESULT_LEAVE, Member<&CMainWnd::m_pEndGameDlg>, &CMainWnd::LeaveEndedGame},
    {BOX_LEAVE_BATTLE, RESULT_FIRST, nullptr, &CMainWnd::LeaveBattle},
    {BOX_LEAVE_BATTLE, RESULT_ANY, nullptr, &CMainWnd::StayInBattle},
    {BOX_NET_LOST, RESULT_FIRST, nullptr, &CMainWnd::LeaveNetwork},
    {BOX_NET_LOST, RESULT_ANY, nullptr, &CMainWnd::AbortNetGame},
};

const CMainWnd::MenuRow CMainWnd::s_MenuItems[] = {
    {MENU_SCENARIO, &CMainWnd::ShowScenSelDlg}, {MENU_CREDITS, &CMainWnd::ShowCreditsDlg},
    {MENU_INTRO, &CMainWnd::PlayIntro},         {MENU_QUIT, &CMainWnd::AskLeaveProgram},
    {MENU_SECRET, &CMainWnd::SendSecret},
};

CMainWnd::CMainWnd() = default;

CMainWnd::~CMainWnd()
{
    CloseAllDialogs();
    if (m_pRender2D == nullptr)
        return;
    // The windows that held these are gone; each sprite gives back the reference that it kept for later
    // windows.
    for (std::size_t i = 0; i < Toolkit().sprites.size(); ++i)
        ReleaseSprite(static_cast<int>(i));
    ReleaseFont(m_nBtnFont);
}

const CItfWnd::Row* CMainWnd::GetMessageTable() const
{
    static const Row rows[] = {
        On(ITFM_COMMAND, &CMainWnd::OnMenuCommand),
        On(ITFM_NOTIFY, &CMainWnd::OnDialogReport),
        On(WM_KEYDOWN, &CMainWnd::OnKeyDown),
        EndOfTable(),
    };
    return rows;
}

void CMainWnd::OnCreate()
{
    ReleaseFont(m_nBtnFont);
    m_nBtnFont = AcquireFont(FONT_BUTTON);
    ReadOptions();
}

void CMainWnd::InitFirstTime()
{
    try {
        ds_file_buffered file(NAME_RESOURCE, false);
        NameMaps maps = ReadNameMaps(&file);
        file.close();
        ToolkitState& toolkit = Toolkit();
        toolkit.spriteMap.insert(toolkit.spriteMap.end(), maps.sprites.begin(), maps.sprites.end());
        toolkit.fontMap.insert(toolkit.fontMap.end(), maps.fonts.begin(), maps.fonts.end());
        toolkit.textTable =
            reinterpret_cast<ITextTable*>(Root()->SendMessage(MSG_GET_TEXT_TABLE, DEST_LOGIC, 0, nullptr));
        toolkit.virtualScreen = {0, 0, SCREEN_WIDTH, SCREEN_HEIGHT};
    } catch (int code) {
        const std::string line =
            "Interface: first time init failed. Error code: " + std::to_string(code) + "\r\n";
        OutputDebugStringA(line.c_str());
        throw;
    } catch (const std::exception& error) {
        OutputDebugStringA((std::string(NAME_RESOURCE) + ": " + error.what() + "\r\n").c_str());
        OutputDebugStringA("Interface: first time init failed. Unknown error.\r\n");
        throw;
    } catch (...) {
        OutputDebugStringA("Interface: first time init failed. Unknown error.\r\n");
        throw;
    }
}

IEngine* CMainWnd::Root() const
{
    return m_pCore->GetScene(-1);
}

Word CMainWnd::OnMenuCommand(std::uint32_t control, std::int32_t item)
{
    if (control != DLG_MAIN)
        return 0;
    for (const MenuRow& row : s_MenuItems) {
        if (row.item == item) {
            (this->*row.action)();
            break;
        }
    }
    return 0;
}

Word CMainWnd::OnDialogReport(std::uint32_t result, std::int32_t id)
{
    RunReport(s_Reports, static_cast<int>(result), id);
    return 0;
}

void CMainWnd::RunReport(std::span<const ReportRow> rows, int result, int id)
{
    for (const ReportRow& row : rows) {
        if (row.id == id && (row.result == RESULT_ANY || row.result == result) &&
            (row.member == nullptr || row.member(*this).IsOpen())) {
            (this->*row.action)(row);
            return;
        }
    }
}

Word CMainWnd::OnKeyDown(std::uint32_t, std::int32_t)
{
    if (m_bExitPicture)
        Quit();
    return 0;
}

void CMainWnd::FinishOpening(CItfDialog& dialog, const OpeningRow& row)
{
    bool covers = false;
    for (const OpeningStep step : row.steps) {
        switch (step) {
        case OpeningStep::End:
            return;
        case OpeningStep::Shade:
            dialog.ShadeOrPaint();
            break;
        case OpeningStep::Show:
            dialog.Show(true);
            break;
        case OpeningStep::RedrawTop:
            Invalidate(nullptr);
            break;
        case OpeningStep::RedrawDialog:
            dialog.Invalidate(nullptr);
            break;
        case OpeningStep::Focus:
            dialog.SetFocus();
            break;
        case OpeningStep::SwitchOn:
            SetDrawing(true);
            break;
        case OpeningStep::Cover:
            covers = TakeCallersAway(*row.cover);
            break;
        case OpeningStep::ShadeIfCovers:
            if (covers)
                dialog.ShadeOrPaint();
            else
                SetDrawing(true);
            break;
        }
    }
}

void CMainWnd::FailOpening(const OpeningRow& row)
{
    if (row.onFailure != OpeningFailure::MainDialog)
        SetDrawing(true);
    switch (row.onFailure) {
    case OpeningFailure::MainDialog:
    case OpeningFailure::SwitchOnMainDialog:
        ShowMainDlg(true);
        break;
    case OpeningFailure::SwitchOnCaller:
        if (CItfDialog* caller = FirstCaller(*row.cover))
            caller->Show(true);
        break;
    case OpeningFailure::SwitchOnResume:
        PostCommand(CMD_RESUME);
        break;
    case OpeningFailure::SwitchOn:
        break;
    }
}

void CMainWnd::FailOpeningQuietly(const OpeningRow& row) noexcept
try {
    FailOpening(row);
} catch (...) {
    // The dialog to go back to can't be opened either; the caller hears of the first failure.
}

// True when there was a caller to take away.
bool CMainWnd::TakeCallersAway(const CoverRule& cover)
{
    bool found = false;
    for (const SlotOf caller : cover.callers) {
        if (caller == nullptr || !caller(*this).IsOpen())
            continue;
        caller(*this).Get()->Show(false);
        found = true;
        if (!cover.hidesAll)
            break;
    }
    return found;
}

CItfDialog* CMainWnd::FirstCaller(const CoverRule& cover)
{
    for (const SlotOf caller : cover.callers) {
        if (caller != nullptr && caller(*this).IsOpen())
            return caller(*this).Get();
    }
    return nullptr;
}

void CMainWnd::Close(const ReportRow& row)
{
    row.member(*this).Close();
}

void CMainWnd::CloseToMain(const ReportRow& row)
{
    Close(row);
    ShowMainDlg(true);
    Invalidate(nullptr);
}

void CMainWnd::CloseAndSend(const ReportRow& row, int code)
{
    Close(row);
    PostCommand(code);
}

void CMainWnd::Restore(const ReportRow& row)
{
    CItfDialog* caller = FirstCaller(*row.cover);
    if (caller != nullptr)
        SetDrawing(false);
    Close(row);
    if (caller != nullptr) {
        caller->Show(true);
        caller->ShadeOrPaint();
        return;
    }
    if (row.cover->alone != AloneAtClosing::Nothing)
        SetDrawing(true);
    if (row.cover->alone == AloneAtClosing::SwitchOnResume)
        PostCommand(CMD_RESUME);
}

CMainDlg* CMainWnd::GetMainDlg() const
{
    return m_pMainDlg.Get();
}

void CMainWnd::ShowMainDlg(bool show)
{
    if (show)
        Open(m_pMainDlg, OPEN_MAIN);
    else
        m_pMainDlg.Close();
}

void CMainWnd::ShowScenSelDlg()
{
    Open(m_pScenSelDlg, OPEN_SCENARIOS);
}

void CMainWnd::ShowScenBriefDlg(const char* path)
{
    Open(m_pScenBriefDlg, OPEN_SCENARIO_BRIEF, path);
}

void CMainWnd::ShowScStatusDlg(const ItfScenarioStatus* info)
{
    Open(m_pScStatusDlg, OPEN_SCENARIO_STATUS, info);
}

void CMainWnd::ShowCreditsDlg()
{
    Open(m_pCreditsDlg, OPEN_CREDITS);
}

void CMainWnd::ShowHelpDlg()
{
    Open(m_pHelpDlg, OPEN_HELP);
}

void CMainWnd::ShowEndGame(bool won)
{
    Open(m_pEndGameDlg, OPEN_END_GAME, won, IsNetworkGame(m_pCore));
}

void CMainWnd::ChooseScenario(const ReportRow&)
{
    const char* file = m_pScenSelDlg->GetSelectedFile();
    if (file == nullptr)
        return;
    m_Command = ItfCommand();
    std::snprintf(m_Command.szPath, sizeof m_Command.szPath, "%s%s", SCENARIO_FOLDER, file);
    m_pScenSelDlg.Close();
    ShowMainDlg(false);
    ShowScenBriefDlg(m_Command.szPath);
}

// The path stays as the choice of the scenario set it.
void CMainWnd::StartScenario(const ReportRow&)
{
    m_Command.nSide = m_pScenBriefDlg->GetSide();
    m_Command.nNotSideA = m_pScenBriefDlg->GetNotSideA();
    m_Command.nNotSideB = m_pScenBriefDlg->GetNotSideB();
    m_Command.bBriefFlag = m_pScenBriefDlg->GetFlag() ? 1 : 0;
    m_Command.nDifficulty = m_pScenBriefDlg->GetDifficulty();
    m_Command.nOptionValue = m_Options.nOptionValue;
    m_pScenBriefDlg.Close();
    FadeAndPostCommand(CMD_START_SCENARIO);
}

void CMainWnd::BackToScenarios(const ReportRow& row)
{
    Close(row);
    ShowScenSelDlg();
}

void CMainWnd::ShowMissionBrief(const char*, bool direct)
{
    if (direct)
        FadeAndPostCommand(CMD_MISSION_GO);
}

void CMainWnd::ShowMessage(int number)
{
    MessageBox(GetResString(number), GetResString(TEXT_MESSAGE_CAPTION), nullptr, 0, 0);
}

void CMainWnd::CloseAllDialogs()
{
    for (const SlotOf member : s_Members)
        member(*this).Close();
}

void CMainWnd::PlayIntro()
{
    if (m_pSound != nullptr)
        m_pSound->Stop(0);
    const int logo = m_pCore->CreateEntity("logo", LOGO_KIND, 0);
    if (logo >= 0)
        m_pCore->SendMessage(MSG_ENTITY_START, logo, 0, "ll", INTRO_CLIP, LOGO_MODE);
}

void CMainWnd::AskLeaveProgram()
{
    // Two presses in one frame come here twice.
    if (FindWindow(GetModalId()) != nullptr)
        return;
    PaintFullScreen(SPRITE_FADE_QUESTION);
    MessageBox(GetResString(TEXT_LEAVE_QUESTION), GetResString(TEXT_LEAVE_CAPTION), this, BOX_LEAVE_PROGRAM,
               CValueBox::STYLE_YES_NO);
}

void CMainWnd::SendSecret()
{
    m_Command = ItfCommand();
    PostCommand(CMD_SECRET);
}

void CMainWnd::StayInProgram(const ReportRow&)
{
    Invalidate(nullptr);
    if (m_pMainDlg.IsOpen())
        m_pMainDlg->SetFocus();
}
