#include "kernel/interface_entity.h"

#include <algorithm>
#include <new>
#include <string>

#include "controls/itfprogress.h"
#include "flow/valuebox.h"
#include "iengine.h"
#include "ientities.h"
#include "ilogic.h"
#include "irender2d.h"
#include "platform/system.h"

namespace
{

/// Where the loading bar stands on the screen surface.
constexpr RECT PROGRESS_RECT = {265, 486, 536, 509};
/// Values of IEngine::SetTimerRate while the front end is up, and afterwards.
constexpr int TIMER_RATE_INTERFACE = 2;
constexpr int TIMER_RATE_DEFAULT = 100;

/// However long the host was away, a frame is no longer than this for the windows, in milliseconds.
constexpr Word LONGEST_FRAME = 60'000;

/// Dialogs over a running battle: they leave its display mode alone.
constexpr int BATTLE_EVENTS[] = {
    EVENT_SCENARIO_STATUS,   EVENT_HELP,           EVENT_SAVE, EVENT_LOAD, EVENT_SHIP_PREVIEW, EVENT_OPTIONS,
    EVENT_SUBMARINE_PREVIEW, EVENT_BALLOON_PREVIEW};

bool IsBattleEvent(int code)
{
    return std::find(std::begin(BATTLE_EVENTS), std::end(BATTLE_EVENTS), code) != std::end(BATTLE_EVENTS);
}

const ItfEvent* EventOf(const void* data)
{
    return reinterpret_cast<const ItfEvent*>(*static_cast<const Word*>(data));
}

std::int32_t PackPoint(const POINT& point)
{
    const DWORD x = static_cast<std::uint16_t>(point.x);
    const DWORD y = static_cast<std::uint16_t>(point.y);
    return static_cast<std::int32_t>(x | (y << 16));
}

// The last window of the table that the point hits and the modal window lets through; null when there is
// none.
CItfWnd* WindowAt(const POINT& point)
{
    const std::vector<WindowEntry>& windows = Toolkit().windows;
    const int modal = CItfWnd::GetModalId();
    for (auto entry = windows.rbegin(); entry != windows.rend(); ++entry) {
        CItfWnd* wnd = entry->wnd;
        if (wnd->HitTest(&point) && wnd->IsVisible() &&
            (modal == -1 || wnd->GetId() == modal || wnd->IsDescendantOf(modal)))
            return wnd;
    }
    return nullptr;
}

} // namespace

extern "C" Entity* CreateEntity(char*)
{
    return new (std::nothrow) CInterface;
}

CInterface::CInterface() = default;

CInterface::~CInterface()
{
    m_mainWnd.CloseAllDialogs();
    TellLeftWindows();
    OnCloseAll(nullptr, 0, 0);
    if (m_pCore != nullptr)
        m_pCore->SetTimerRate(TIMER_RATE_DEFAULT);
    if (m_pPlayList != nullptr)
        m_pPlayList->Select(0, 0);
    TellScene(false);
    m_pProgress.reset();
}

const Entity::MessageMap* CInterface::GetMessageMap() const
{
    static const MessageRow rows[] = {
        {MSG_ITF_START, static_cast<MessageHandler>(&CInterface::OnStart)},
        {MSG_ITF_EVENT, static_cast<MessageHandler>(&CInterface::OnEvent)},
        {MSG_ITF_SHADE_DONE, static_cast<MessageHandler>(&CInterface::OnShadeDone)},
        {MSG_ITF_CLOSE_ALL, static_cast<MessageHandler>(&CInterface::OnCloseAll)},
        {MSG_ITF_PROGRESS_OPEN, static_cast<MessageHandler>(&CInterface::OnProgressOpen)},
        {MSG_ITF_PROGRESS_SET, static_cast<MessageHandler>(&CInterface::OnProgressSet)},
        {0, nullptr},
    };
    static const MessageMap map = {&s_MessageMap, rows};
    return &map;
}

Word CInterface::Init(IEngine* core)
{
    m_pCore = core;
    if (core == nullptr)
        return 0;
    m_pRender2D = ::GetRender2D(core);
    if (m_pRender2D == nullptr)
        return 0;
    m_pPlayList = reinterpret_cast<IPlayList*>(
        core->GetScene(-1)->SendMessage(MSG_GET_PLAYLIST, DEST_LOGIC, 0, nullptr));
    if (m_pPlayList != nullptr && m_pPlayList->GetCurrent() < 0) {
        m_pPlayList->Select(0, 1);
        m_pPlayList->Play(0);
    }
    core->SetInputMode(INPUT_NORMAL);
    core->RegisterInput(1, GetEntityId(), 1);
    core->SetTimerRate(TIMER_RATE_INTERFACE);
    m_HostWords[HOSTWORD_FLAGS] = 1;
    TellScene(true);

    SYSTEMTIME now;
    GetLocalTime(&now);
    Toolkit().randomSeed = static_cast<std::uint32_t>(
        ((now.wHour * 60 + now.wMinute) * 60 + now.wSecond) * 1000 + now.wMilliseconds);
    return 1;
}

// Camera and marker of the current scene go into interface mode, or out of it.
void CInterface::TellScene(bool interfaceUp)
{
    IEngine* scene = m_pCore != nullptr ? GetCurrentScene(m_pCore) : nullptr;
    if (scene == nullptr)
        return;
    const int camera = scene->FindEntity("camera", nullptr);
    if (camera >= 0)
        scene->SendMessage(interfaceUp ? MSG_CAMERA_UI_ON : MSG_CAMERA_UI_OFF, camera, 0, nullptr);
    const int markerId = scene->FindEntity("marker", nullptr);
    Entity* marker = markerId >= 0 ? scene->GetEntity(markerId) : nullptr;
    if (auto* interfaceMarker = dynamic_cast<IMarkerEntity*>(marker))
        interfaceMarker->SetInterfaceMode(interfaceUp ? 1 : 0);
}

Word CInterface::OnFrame(Word elapsed, Word)
{
    CItfWnd::DeliverPosted();
    CItfWnd::TickAll(static_cast<int>(std::clamp<Word>(elapsed, 0, LONGEST_FRAME)));
    m_mainWnd.Present(false);
    return 0;
}

Word CInterface::OnWindowMessage(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam)
{
    if (msg >= WM_MOUSEFIRST && msg <= WM_MOUSELAST)
        return OnMouse(msg, wParam, lParam);
    if (msg < WM_KEYFIRST || msg > WM_KEYLAST)
        return 0;
    CItfWnd* focus = CItfWnd::FindWindow(CItfWnd::GetFocusId());
    if (focus == nullptr || !focus->IsVisible())
        return 0;
    return focus->Dispatch(msg, wParam, lParam);
}

Word CInterface::OnMouse(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam)
{
    if (!CItfWnd::IsDrawing())
        return 0;
    RECT screen;
    CItfWnd::GetVirtualScreen(&screen);
    const auto packed = static_cast<DWORD>(lParam);
    const POINT point = {static_cast<std::int16_t>(LOWORD(packed)) - screen.left,
                         static_cast<std::int16_t>(HIWORD(packed)) - screen.top};
    lParam = PackPoint(point);

    if (CItfWnd::GetCaptureId() != -1) {
        CItfWnd* holder = CItfWnd::FindWindow(CItfWnd::GetCaptureId());
        if (holder != nullptr && holder->IsVisible())
            return holder->Dispatch(msg, wParam, lParam);
        CItfWnd::ReleaseCapture();
    }
    CItfWnd* wnd = WindowAt(point);
    if (wnd == nullptr)
        return 0;
    const int id = wnd->GetId();
    if (msg == WM_LBUTTONDOWN)
        wnd->SetFocus(); // the old holder's handler may close what was hit
    return CItfWnd::SendTo(id, msg, wParam, lParam);
}

// The front end is made for 600 lines; over a running battle the display stays as it is.
void CInterface::ChooseDisplayMode(int code)
{
    const DisplayInfo* display = m_pCore->GetDisplayInfo();
    if (display == nullptr)
        return;
    const bool change =
        display->nHeight < SCREEN_HEIGHT || (display->nHeight > SCREEN_HEIGHT && !IsBattleEvent(code));
    if (change)
        m_pCore->GetScene(-1)->SendMessage(MSG_SET_DISPLAY_MODE, DEST_LOGIC, 0, "ll", SCREEN_WIDTH,
                                           SCREEN_HEIGHT);
    if (display->nHeight > SCREEN_HEIGHT)
        m_bLargeDisplay = true;
}

Word CInterface::OnStart(const void* data, int, int)
{
    const ItfEvent* event = EventOf(data);
    if (m_pCore == nullptr || event == nullptr)
        return 0;
    ChooseDisplayMode(event->code);
    if (OpenMainWnd(true))
        RunEvent(*event);
    return 0;
}

// For a start, and for an event that comes after everything was closed. A second start finds the window there
// already, with dialogs that may be hidden under others and stay so.
bool CInterface::OpenMainWnd(bool readNames)
{
    const bool made = m_mainWnd.GetId() == -1;
    if (made && (m_pCore == nullptr || !m_mainWnd.Create(nullptr, nullptr, nullptr, nullptr, 0, 0, m_pCore)))
        return false;
    try {
        if (readNames || Toolkit().textTable == nullptr)
            m_mainWnd.InitFirstTime();
    } catch (...) {
        // Without names it would be there and show nothing; the next event tries again.
        if (made)
            m_mainWnd.Destroy();
        throw;
    }
    m_mainWnd.SetLargeDisplay(m_bLargeDisplay);
    m_mainWnd.KeepLastFrame(); // the battle stays to be seen beside a small dialog
    CItfWnd::SetDrawing(true);
    if (made)
        m_mainWnd.Show(true);
    m_mainWnd.Invalidate(nullptr);
    return true;
}

Word CInterface::OnEvent(const void* data, int, int)
{
    const ItfEvent* event = EventOf(data);
    return event != nullptr ? RunEvent(*event) : 0;
}

Word CInterface::OnShadeDone(const void*, int, int)
{
    CItfWnd::SetDrawing(true);
    const RECT all = m_mainWnd.GetClientRect();
    m_mainWnd.RedrawBehind(&all);
    return 0;
}

Word CInterface::OnCloseAll(const void*, int, int)
{
    if (m_pPlayList != nullptr)
        m_pPlayList->Select(0, 0);
    const std::vector<WindowEntry>& windows = Toolkit().windows;
    for (std::size_t n = windows.size(); n > 0 && !windows.empty(); --n)
        windows.back().wnd->Destroy();
    // Dialogs without a window would look open to what comes next.
    m_mainWnd.CloseAllDialogs();
    return 0;
}

// Behind the closing of all dialogs only boxes, which nobody owns, are still there below the top window. Any
// other window is one that its owner has forgotten.
void CInterface::TellLeftWindows() const
{
    for (const WindowEntry& entry : Toolkit().windows) {
        const CItfWnd* wnd = entry.wnd;
        while (wnd->GetParent() != nullptr && wnd->GetParent() != &m_mainWnd)
            wnd = wnd->GetParent();
        if (wnd->GetParent() == &m_mainWnd && dynamic_cast<const CValueBox*>(wnd) == nullptr)
            OutputDebugStringA(
                ("Interface: window " + std::to_string(entry.id) + " is left over\r\n").c_str());
    }
}

Word CInterface::OnProgressOpen(const void*, int, int)
{
    m_pProgress = std::make_unique<CItfProgress>();
    if (!m_pProgress->Create(&PROGRESS_RECT, nullptr, 0, 0, m_pCore)) {
        m_pProgress.reset();
        return 0;
    }
    CItfWnd::SetDrawing(true);
    m_pProgress->Show(true);
    m_pProgress->Invalidate(nullptr);
    m_pProgress->Present(true);
    return 0;
}

Word CInterface::OnProgressSet(const void* data, int, int)
{
    if (m_pProgress == nullptr)
        return 0;
    m_pProgress->SetPercent(static_cast<int>(*static_cast<const Word*>(data)));
    m_pProgress->Present(true);
    return 0;
}
