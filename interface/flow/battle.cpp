// CMainWnd: the handover to the battle and back, the options record, and the way out of the program.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <vector>

#include "flow/logic_objects.h"
#include "flow/maindlg.h"
#include "flow/mainwnd.h"
#include "flow/valuebox.h"
#include "iengine.h"
#include "ientities.h"
#include "irender2d.h"
#include "kernel/own_names.h"
#include "platform/files.h"

namespace
{

constexpr char EXIT_PICTURES[] = "resource\\images\\pic\\*.tga";
constexpr char EXIT_PICTURE_FOLDER[] = "pic\\";

/// Entities of a scene that are told of new options, in this order.
constexpr const char* REFRESHED_ENTITIES[] = {"camera", "graphics", "sea",   "meteo",     "ship",
                                              "marker", "effects",  "smoke", "Particles", "Game"};

void Refresh(IEngine* scene, int entity)
{
    if (entity >= 0)
        scene->SendMessage(MSG_REFRESH, entity, 0, nullptr);
}

// The entity that keeps the options of the current scene; null when there is no scene or no such entity.
IGraphicsEntity* FindGraphics(IEngine* scene)
{
    const int id = scene != nullptr ? scene->FindEntity("graphics", nullptr) : -1;
    return id >= 0 ? dynamic_cast<IGraphicsEntity*>(scene->GetEntity(id)) : nullptr;
}

// Whether a box of that id is up for the parent, or has been answered and the answer still waits.
bool IsAsking(const CItfWnd& parent, int id)
{
    const ToolkitState& toolkit = Toolkit();
    const auto isBox = [&](const WindowEntry& entry) {
        return entry.wnd->GetParent() == &parent && entry.wnd->GetCtrlId() == id &&
               dynamic_cast<const CValueBox*>(entry.wnd) != nullptr;
    };
    const auto isAnswer = [&](const PostedMessage& message) {
        return message.wnd == parent.GetId() && message.msg == ITFM_NOTIFY && message.lParam == id;
    };
    const auto done = static_cast<std::ptrdiff_t>(toolkit.delivered);
    return std::any_of(toolkit.windows.begin(), toolkit.windows.end(), isBox) ||
           std::any_of(toolkit.posted.begin() + done, toolkit.posted.end(), isAnswer);
}

std::vector<std::string> FindExitPictures()
{
    std::vector<std::string> names;
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA(EXIT_PICTURES, &found);
    if (search == INVALID_HANDLE_VALUE)
        return names;
    do {
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
            names.emplace_back(found.cFileName);
    } while (FindNextFileA(search, &found));
    FindClose(search);
    return names;
}

} // namespace

void CMainWnd::PostCommand(int code)
{
    m_Command.code = code;
    Root()->PostMessage(MSG_ITF_COMMAND, DEST_LOGIC, 0, "l", &m_Command);
}

void CMainWnd::FadeAndPostCommand(int code)
{
    ShowLoadingScreen();
    PostCommand(code);
}

void CMainWnd::ShowLoadingScreen()
{
    // What the player saw last lies under what follows.
    m_pRender2D->Blit(0, Toolkit().screenSurface, DISPLAY_NOW, &Toolkit().virtualScreen, nullptr, false);
    PaintFullScreen(SPRITE_FADE);
    const int logo = AcquireSprite(SPRITE_LOGO);
    RECT size;
    GetSpriteRect(logo, &size);
    const LONG left = (m_rcClient.right - size.right) / 2;
    const LONG top = (m_rcClient.bottom - size.bottom) / 2;
    const RECT place = {left, top, left + size.right, top + size.bottom};
    DrawSprite(logo, &place, true);
    ReleaseSprite(logo);
    Present(true);
    SetDrawing(false);
}

void CMainWnd::ReadOptions()
{
    if (IGraphicsEntity* graphics = FindGraphics(GetCurrentScene(m_pCore)))
        graphics->GetOptions(&m_Options);
}

void CMainWnd::ApplyOptions()
{
    if (IEngine* scene = GetCurrentScene(m_pCore)) {
        if (IGraphicsEntity* graphics = FindGraphics(scene))
            graphics->SetOptions(&m_Options);
        for (const char* name : REFRESHED_ENTITIES)
            Refresh(scene, scene->FindEntity(name, nullptr));
        // All ids before the first message: a receiver's own search would end this one.
        std::vector<int> fires;
        for (int id = scene->FindEntity("fire", nullptr); id != -1; id = scene->FindNextEntity())
            fires.push_back(id);
        for (const int id : fires)
            Refresh(scene, id);
        Refresh(scene, scene->FindEntity("sea", "sky"));
    }
    Root()->PostMessage(MSG_REFRESH, DEST_LOGIC, 0, nullptr);
}

bool CMainWnd::ShowExitPicture()
{
    const std::vector<std::string> names = FindExitPictures();
    if (names.empty())
        return false;
    const double last = static_cast<double>(names.size() - 1);
    const auto index = static_cast<std::size_t>(std::floor(last * ItfRand() / 32767.0 + 0.5));
    const int picture =
        LoadSpriteFile((EXIT_PICTURE_FOLDER + names[std::min(index, names.size() - 1)]).c_str());
    if (picture < 0)
        return false;
    DrawSprite(picture, &m_rcClient, false);
    ReleaseSprite(picture);
    m_pCore->SetInputMode(INPUT_FULLSCREEN_PICTURE);
    m_bExitPicture = true;
    return true;
}

void CMainWnd::Quit()
{
    GetRootScene(m_pCore)->SendMessage(MSG_QUIT, DEST_HOST, -1, "");
}

void CMainWnd::LeaveProgram(const ReportRow&)
{
    if (!ShowExitPicture()) {
        Quit();
        return;
    }
    ShowMainDlg(false);
    SetFocus();
}

CValueBox* CMainWnd::AskOverBattle(const char* first, const char* second, int id, std::uint32_t style)
{
    SetDrawing(true); // it has to be seen and answered, whatever turned drawing off
    try {
        CValueBox* box = MessageBox(first, second, this, id, style);
        if (box == nullptr)
            GoOnWithBattle();
        return box;
    } catch (...) {
        GoOnWithBattle();
        throw;
    }
}

void CMainWnd::AskLeaveBattle()
{
    if (IsAsking(*this, BOX_LEAVE_BATTLE))
        return;
    PaintFullScreen(SPRITE_FADE);
    AskOverBattle(GetResString(TEXT_LEAVE_QUESTION), GetResString(TEXT_LEAVE_CAPTION), BOX_LEAVE_BATTLE,
                  CValueBox::STYLE_YES_NO);
}

void CMainWnd::LeaveBattle(const ReportRow&)
{
    // Read by the logic during the call.
    static const std::int32_t stopped[2] = {LOGIC_STOPPED_REASON, 0};

    if (StopBattleLogic(m_pCore))
        Root()->SendMessage(MSG_LOGIC_STOPPED, DEST_LOGIC, 0, "l", stopped);
    else
        Root()->PostMessage(MSG_NO_LOGIC, DEST_LOGIC, 0, "l", -1);
    CloseAllDialogs(); // what lay under the question belongs to the battle
    ShowMainDlg(true);
    Invalidate(nullptr);
}

void CMainWnd::GoOnWithBattle()
{
    SetDrawing(true);
    Root()->SendMessage(MSG_REFRESH, DEST_LOGIC, 0, nullptr);
    PostCommand(CMD_RESUME);
}

void CMainWnd::LeaveNetwork(const ReportRow&)
{
    SetDrawing(true);
    PostCommand(CMD_RESUME);
    GetRootScene(m_pCore)->PostMessage(MSG_NET_DROP, DEST_LOGIC, 0, nullptr);
}

void CMainWnd::AbortNetGame(const ReportRow&)
{
    SetDrawing(true);
    PostCommand(CMD_RESUME);
    if (INetCore* net = GetNetCore(m_pCore))
        net->AbortGame();
}

void CMainWnd::LeaveEndedGame(const ReportRow& row)
{
    constexpr int REASON_LEFT = 1;
    if (INetCore* net = GetNetCore(m_pCore))
        net->Disconnect(REASON_LEFT);
    CloseToMain(row);
}

void CMainWnd::PlayAgain(const ReportRow& row)
{
    Close(row);
    const ScenarioInfo* scenario = ScenarioOf(GetGameState(m_pCore));
    if (scenario == nullptr) {
        ShowScenSelDlg(); // nobody knows which it was
        return;
    }
    const std::string path(scenario->szPath, strnlen(scenario->szPath, sizeof scenario->szPath));
    std::snprintf(m_Command.szPath, sizeof m_Command.szPath, "%s", path.c_str());
    ShowScenBriefDlg(m_Command.szPath);
}

void CMainWnd::GoOnAfterGame(const ReportRow& row)
{
    Close(row);
    if (IsNetworkGame(m_pCore)) {
        PostCommand(CMD_BACK_TO_LOBBY);
    } else if (IsCampaign(GetGameState(m_pCore))) {
        m_Command.nOptionValue = m_Options.nOptionValue;
        PostCommand(CMD_CONTINUE_CAMPAIGN);
    } else {
        ShowScenSelDlg();
    }
}

void CMainWnd::LookOnAfterGame(const ReportRow& row)
{
    Close(row);
    GoOnWithBattle();
}
