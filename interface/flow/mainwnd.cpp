#include "flow/mainwnd.h"

#include "flow/maindlg.h"
#include "flow/valuebox.h"
#include "iengine.h"
#include "isound.h"
#include "kernel/nameloader.h"
#include "keelworks/ds_file.h"
#include "platform/system.h"

namespace
{

constexpr char INTRO_CLIP[] = "video\\seawardenintro.ani";
/// How the entity "logo" is made and told to play.
constexpr int LOGO_KIND = 0x200;
constexpr int LOGO_MODE = 2;

constexpr OpeningRow OPEN_MAIN = {DLG_MAIN, "MainDlg", OPEN_SHADES | OPEN_TAKES_FOCUS, OpeningFailure::Nothing};

} // namespace

// id, result, what follows. A report without a row does nothing.
const CMainWnd::ReportRow CMainWnd::s_Reports[] = {
    {BOX_LEAVE_PROGRAM, RESULT_FIRST, &CMainWnd::LeaveProgram},
    {BOX_LEAVE_PROGRAM, RESULT_ANY, &CMainWnd::StayInProgram},
    {BOX_LEAVE_BATTLE, RESULT_FIRST, &CMainWnd::LeaveBattle},
    {BOX_LEAVE_BATTLE, RESULT_ANY, &CMainWnd::StayInBattle},
    {BOX_NET_LOST, RESULT_FIRST, &CMainWnd::LeaveNetwork},
    {BOX_NET_LOST, RESULT_ANY, &CMainWnd::AbortNetGame},
};

const CMainWnd::MenuRow CMainWnd::s_MenuItems[] = {
    {MENU_INTRO, &CMainWnd::PlayIntro},
    {MENU_QUIT, &CMainWnd::AskLeaveProgram},
    {MENU_SECRET, &CMainWnd::SendSecret},
};

CMainWnd::CMainWnd() = default;

CMainWnd::~CMainWnd()
{
    CloseAllDialogs();
    // The windows that held these are gone; each sprite gives back the reference that it kept for later windows.
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
    m_nBtnFont = AcquireFont("itfBtnFont");
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
        const std::string line = "Interface: first time init failed. Error code: " + std::to_string(code) + "\r\n";
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

IEngine* CMainWnd::Root() const { return m_pCore->GetScene(-1); }

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
    for (const ReportRow& row : s_Reports) {
        if (row.id == id && (row.result == RESULT_ANY || row.result == static_cast<int>(result))) {
            (this->*row.action)();
            break;
        }
    }
    return 0;
}

Word CMainWnd::OnKeyDown(std::uint32_t, std::int32_t)
{
    if (m_bExitPicture)
        Quit();
    return 0;
}

void CMainWnd::FinishOpening(CItfWnd& dialog, const OpeningRow& row)
{
    if ((row.steps & OPEN_SHADES) != 0)
        dialog.Shade();
    dialog.Show(true);
    if ((row.steps & OPEN_REDRAWS_TOP) != 0)
        Invalidate(nullptr);
    else
        dialog.Invalidate(nullptr);
    if ((row.steps & OPEN_TAKES_FOCUS) != 0)
        dialog.SetFocus();
}

void CMainWnd::FailOpening(const OpeningRow& row)
{
    switch (row.onFailure) {
    case OpeningFailure::Nothing:
        break;
    case OpeningFailure::SwitchOnMainDialog:
        SetDrawing(true);
        [[fallthrough]];
    case OpeningFailure::MainDialog:
        ShowMainDlg(true);
        break;
    case OpeningFailure::Resume:
        PostCommand(CMD_RESUME);
        break;
    }
}

void CMainWnd::ShowMainDlg(bool show)
{
    if (!show) {
        m_pMainDlg.reset();
        return;
    }
    if (m_pMainDlg != nullptr)
        return;
    Open(m_pMainDlg, OPEN_MAIN, [this](CMainDlg& dialog) {
        return dialog.Create(OPEN_MAIN.windowName, nullptr, nullptr, this, OPEN_MAIN.id, IWS_SHADE, m_pCore);
    });
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

void CMainWnd::CloseAllDialogs() { m_pMainDlg.reset(); }

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
    PaintFullScreen("itfFade2");
    MessageBox(GetResString(TEXT_LEAVE_QUESTION), GetResString(TEXT_LEAVE_CAPTION), this, BOX_LEAVE_PROGRAM,
               CValueBox::STYLE_YES_NO);
}

void CMainWnd::SendSecret()
{
    m_Command = ItfCommand();
    PostCommand(CMD_SECRET);
}

void CMainWnd::StayInProgram()
{
    Invalidate(nullptr);
    if (m_pMainDlg != nullptr)
        m_pMainDlg->SetFocus();
}
