#include "kernel/itfwnd.h"

#include <algorithm>

#include "iengine.h"
#include "ilogic.h"
#include "irender2d.h"
#include "isound.h"
#include "itfrecords.h"
#include "platform/rect.h"

namespace
{

// Calls visit(window) for each window in table order, until it gives false. Ids ascend along the table and
// are never used twice, so the walk goes on behind the id it had last: a visit may destroy any window, itself
// included, and what it creates is visited too.
template <class Visit>
void WalkWindows(Visit visit)
{
    int last = -1;
    for (;;) {
        const std::vector<WindowEntry>& windows = Toolkit().windows;
        const auto next = std::upper_bound(windows.begin(), windows.end(), last,
                                           [](int id, const WindowEntry& entry) { return id < entry.id; });
        if (next == windows.end())
            return;
        last = next->id;
        if (!visit(*next->wnd))
            return;
    }
}

// The modal window, null when none is or it has gone.
CItfWnd* ModalWindow()
{
    return CItfWnd::FindWindow(Toolkit().modalId);
}

bool IsInside(const CItfWnd& wnd, int id)
{
    return wnd.GetId() == id || wnd.IsDescendantOf(id);
}

} // namespace

CItfWnd::CItfWnd() = default;

CItfWnd::~CItfWnd()
{
    if (FindWindow(m_nId) == this)
        CItfWnd::OnDestroy();
}

bool CItfWnd::Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                     std::uint32_t style, IEngine* core)
{
    if (m_nId != -1 || core == nullptr)
        return false;
    m_pCore = core;
    m_nCtrlId = ctrlId;
    m_pRender2D = ::GetRender2D(core);
    if (m_pRender2D == nullptr)
        return false;
    m_pSound = ::GetSound(core);

    ToolkitState& toolkit = Toolkit();
    if (toolkit.screenSurface < 0) {
        const RECT screen = {0, 0, SCREEN_WIDTH, SCREEN_HEIGHT};
        toolkit.screenSurface = m_pRender2D->CreateSurface(&screen);
        if (toolkit.screenSurface < 0)
            return false;
    }
    if (toolkit.windows.size() >= MAX_WINDOWS)
        return false;
    m_nId = toolkit.nextWindowId++;
    toolkit.windows.push_back({m_nId, this});
    m_dwStyle = style;
    m_dwState = 0;
    m_pParent = parent;
    SetCaption(caption);

    const RECT place = rect != nullptr ? *rect : RECT{0, 0, SCREEN_WIDTH, SCREEN_HEIGHT};
    const POINT pos = {place.left, place.top};
    const SIZE size = {place.right - place.left, place.bottom - place.top};
    SetPos(&pos, false);
    m_rcClient.left = 0;
    m_rcClient.top = 0;
    SetSize(&size, false);

    m_nSprite = sprite != nullptr && *sprite != '\0' ? AcquireSprite(sprite) : -1;
    OnCreate();
    return true;
}

void CItfWnd::Show(bool on)
{
    if (on && (m_dwState & IWF_SHOWN) == 0)
        m_dwState |= IWF_DIRTY;
    m_dwState = on ? m_dwState | IWF_SHOWN : m_dwState & ~static_cast<std::uint32_t>(IWF_SHOWN);
    WalkWindows([&](CItfWnd& wnd) {
        if (wnd.m_pParent == this) // and its own children in turn
            wnd.Show(on);
        return true;
    });
}

void CItfWnd::Hide(bool on)
{
    m_dwState = on ? m_dwState | IWF_HIDDEN : m_dwState & ~static_cast<std::uint32_t>(IWF_HIDDEN);
    WalkWindows([&](CItfWnd& wnd) {
        if (wnd.m_pParent == this) // and its own children in turn
            wnd.Hide(on);
        return true;
    });
}

void CItfWnd::Enable(bool on)
{
    m_dwState = on ? m_dwState & ~static_cast<std::uint32_t>(IWF_DISABLED) : m_dwState | IWF_DISABLED;
}

void CItfWnd::Invalidate(const RECT* rect)
{
    if (!IsVisible() || m_nId == -1)
        return;
    m_rcUpdate = rect != nullptr ? *rect : m_rcClient;
    m_dwState |= IWF_DIRTY;
    if (!Toolkit().drawing)
        return;

    const int self = m_nId;
    const RECT update = m_rcUpdate;
    Draw();
    if (FindWindow(self) != this || (m_dwStyle & IWS_ALONE) != 0)
        return;

    bool modalSeen = false;
    WalkWindows([&](CItfWnd& wnd) {
        if (wnd.IsDescendantOf(self) && wnd.IsVisible()) {
            RECT inner = update;
            OffsetRect(&inner, -wnd.m_ptPos.x, -wnd.m_ptPos.y);
            wnd.DrawWithin(inner);
        } else if (wnd.m_nId == Toolkit().modalId) {
            modalSeen = true;
        }
        return FindWindow(self) == this;
    });
    if (!modalSeen || FindWindow(self) != this)
        return;
    // What was painted may lie under a modal box, which stays on top.
    CItfWnd* modal = ModalWindow();
    if (modal != nullptr && !IsInside(*this, modal->m_nId) && modal->IsVisible())
        modal->Invalidate(nullptr);
}

// Draws what of `update` (own coordinates) lies in the window.
void CItfWnd::DrawWithin(const RECT& update)
{
    RECT part;
    if (!IntersectRect(&part, &update, &m_rcClient))
        return;
    m_rcUpdate = part;
    Draw();
}

void CItfWnd::Destroy()
{
    OnDestroy();
}

bool CItfWnd::HitTest(const POINT* screenPoint) const
{
    RECT rect;
    GetScreenRect(&rect);
    return PtInRect(&rect, *screenPoint) != FALSE;
}

void CItfWnd::OnCreate() {}

void CItfWnd::Draw()
{
    if (m_nSprite >= 0) {
        RECT part;
        if (!IntersectRect(&part, &m_rcClient, &m_rcUpdate))
            return;
        POINT origin;
        GetScreenOrigin(&origin);
        OffsetRect(&part, origin.x, origin.y);
        const RECT screen = {0, 0, SCREEN_WIDTH, SCREEN_HEIGHT};
        if (IntersectRect(&part, &part, &screen)) {
            RECT source = part;
            OffsetRect(&source, -origin.x, -origin.y);
            BlitToScreen(m_nSprite, part, &source, (m_dwStyle & IWS_BK_KEYCOLOR) != 0);
        }
    }
    m_dwState &= ~static_cast<std::uint32_t>(IWF_DIRTY);
}

void CItfWnd::OnTick(int) {}

void CItfWnd::OnMove(int, int, bool redraw)
{
    if (!redraw)
        return;
    RECT rect;
    GetScreenRect(&rect);
    RedrawBehind(&rect);
}

void CItfWnd::OnSize(int cx, int cy, bool redraw)
{
    CItfWnd::OnMove(cx, cy, redraw);
}

void CItfWnd::OnDestroy()
{
    if (m_nId == -1)
        return;
    ToolkitState& toolkit = Toolkit();
    std::erase_if(toolkit.windows, [this](const WindowEntry& entry) { return entry.id == m_nId; });
    for (;;) {
        const auto child =
            std::find_if(toolkit.windows.begin(), toolkit.windows.end(),
                         [this](const WindowEntry& entry) { return entry.wnd->IsDescendantOf(m_nId); });
        if (child == toolkit.windows.end())
            break;
        child->wnd->Destroy();
    }
    // The reference stays with the table, so that a later window finds the sprite loaded.
    m_nSprite = -1;
    if (toolkit.modalId == m_nId)
        toolkit.modalId = -1;
    m_nId = -1;
    m_pParent = nullptr; // which may go before this object does
}

const CItfWnd::Row* CItfWnd::GetMessageTable() const
{
    return nullptr;
}

void CItfWnd::GetScreenOrigin(POINT* out) const
{
    *out = {0, 0};
    ClientToScreen(out);
}

void CItfWnd::GetScreenRect(RECT* out) const
{
    POINT origin;
    GetScreenOrigin(&origin);
    *out = {origin.x, origin.y, origin.x + m_rcClient.right, origin.y + m_rcClient.bottom};
}

void CItfWnd::ClientToScreen(POINT* point) const
{
    for (const CItfWnd* wnd = this; wnd != nullptr; wnd = wnd->m_pParent) {
        point->x += wnd->m_ptPos.x;
        point->y += wnd->m_ptPos.y;
    }
}

void CItfWnd::ScreenToClient(POINT* point) const
{
    POINT origin;
    GetScreenOrigin(&origin);
    point->x -= origin.x;
    point->y -= origin.y;
}

void CItfWnd::SetPos(const POINT* pos, bool redraw)
{
    const POINT to = *pos;
    const int self = m_nId;
    OnMove(to.x, to.y, redraw);
    if (IsStill(this, self))
        m_ptPos = to;
}

void CItfWnd::SetSize(const SIZE* size, bool redraw)
{
    const SIZE to = *size;
    const int self = m_nId;
    OnSize(to.cx, to.cy, redraw);
    if (!IsStill(this, self))
        return;
    m_rcClient.right = to.cx;
    m_rcClient.bottom = to.cy;
    m_rcInner = m_rcClient;
}

bool CItfWnd::IsDescendantOf(int id) const
{
    if (id < 0)
        return false;
    for (const CItfWnd* wnd = m_pParent; wnd != nullptr; wnd = wnd->m_pParent) {
        if (wnd->m_nId == id)
            return true;
    }
    return false;
}

bool CItfWnd::IsAncestorOf(int id) const
{
    const CItfWnd* wnd = FindWindow(id);
    return wnd != nullptr && wnd->IsDescendantOf(m_nId);
}

bool CItfWnd::IsStill(const CItfWnd* wnd, int id)
{
    return id == -1 || FindWindow(id) == wnd;
}

CItfWnd* CItfWnd::FindWindow(int id)
{
    for (const WindowEntry& entry : Toolkit().windows) {
        if (entry.id == id)
            return entry.wnd;
    }
    return nullptr;
}

void CItfWnd::SetCaption(const char* caption)
{
    m_Caption = caption != nullptr ? caption : "";
}

void CItfWnd::SetFocus()
{
    const int old = Toolkit().focusId;
    Toolkit().focusId = m_nId;
    if (old != -1 && old != m_nId)
        SendTo(old, ITFM_LOSTFOCUS, 0, 0);
}

int CItfWnd::GetFocusId()
{
    return Toolkit().focusId;
}
void CItfWnd::SetCapture()
{
    Toolkit().captureId = m_nId;
}
void CItfWnd::ReleaseCapture()
{
    Toolkit().captureId = -1;
}
int CItfWnd::GetCaptureId()
{
    return Toolkit().captureId;
}

void CItfWnd::SetModal()
{
    Toolkit().modalId = m_nId;
    SetFocus();
}

void CItfWnd::SetModalId(int id)
{
    Toolkit().modalId = id;
}
int CItfWnd::GetModalId()
{
    return Toolkit().modalId;
}

Word CItfWnd::SendTo(int id, std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam)
{
    CItfWnd* wnd = FindWindow(id);
    return wnd != nullptr ? wnd->Dispatch(msg, wParam, lParam) : 0;
}

bool CItfWnd::PostTo(int id, std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam)
{
    std::vector<PostedMessage>& posted = Toolkit().posted;
    if (posted.size() >= MAX_POSTED)
        return false;
    posted.push_back({id, msg, wParam, lParam});
    return true;
}

Word CItfWnd::SendToParent(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam)
{
    return m_pParent != nullptr ? SendTo(m_pParent->m_nId, msg, wParam, lParam) : 0;
}

void CItfWnd::PostToParent(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam)
{
    if (m_pParent != nullptr)
        PostTo(m_pParent->m_nId, msg, wParam, lParam);
}

void CItfWnd::Notify(int code)
{
    SendToParent(ITFM_NOTIFY, static_cast<std::uint32_t>(code), m_nCtrlId);
}

Word CItfWnd::Dispatch(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam)
{
    const Row* row = GetMessageTable();
    if (row == nullptr)
        return 0;
    if (msg == WM_DESTROY) {
        OnDestroy();
        return 0;
    }
    for (; row->handler != nullptr; ++row) {
        if (row->id == msg)
            return (this->*row->handler)(wParam, lParam);
    }
    return 0;
}

void CItfWnd::DeliverPosted()
{
    ToolkitState& toolkit = Toolkit();
    // Empties the queue at the end of the outermost delivery. Also when a handler throws, what had its turn
    // must not come a second time.
    struct Delivery {
        ToolkitState& toolkit;
        explicit Delivery(ToolkitState& state) : toolkit(state) { ++toolkit.deliveryDepth; }
        ~Delivery()
        {
            if (--toolkit.deliveryDepth > 0)
                return;
            const std::size_t done = std::min(toolkit.delivered, toolkit.posted.size());
            toolkit.posted.erase(toolkit.posted.begin(),
                                 toolkit.posted.begin() + static_cast<std::ptrdiff_t>(done));
            toolkit.delivered = 0;
        }
    } delivery(toolkit);
    while (toolkit.delivered < toolkit.posted.size()) {
        const PostedMessage message = toolkit.posted[toolkit.delivered++];
        SendTo(message.wnd, message.msg, message.wParam, message.lParam);
    }
}

void CItfWnd::TickAll(int elapsed)
{
    if (!Toolkit().drawing)
        return;
    WalkWindows([&](CItfWnd& wnd) {
        const int modal = Toolkit().modalId;
        if (wnd.IsVisible() && (modal == -1 || IsInside(wnd, modal)))
            wnd.OnTick(elapsed);
        return true;
    });
}

void CItfWnd::Present(bool now)
{
    if (m_pRender2D == nullptr)
        return;
    const ToolkitState& toolkit = Toolkit();
    m_pRender2D->Blit(0, now ? DISPLAY_NOW : DISPLAY_FRAME, toolkit.screenSurface, &toolkit.virtualScreen,
                      nullptr, false);
}

void CItfWnd::SetDrawing(bool on)
{
    Toolkit().drawing = on;
}
bool CItfWnd::IsDrawing()
{
    return Toolkit().drawing;
}

void CItfWnd::RedrawAll()
{
    if (!Toolkit().drawing)
        return;
    WalkWindows([](CItfWnd& wnd) {
        const int modal = Toolkit().modalId;
        if (wnd.IsVisible() && (modal == -1 || !IsInside(wnd, modal))) {
            wnd.m_rcUpdate = wnd.m_rcClient;
            wnd.Draw();
        }
        return true;
    });
    if (CItfWnd* modal = ModalWindow())
        modal->Invalidate(nullptr);
}

void CItfWnd::RedrawBehind(const RECT* screenRect)
{
    if (!Toolkit().drawing)
        return;
    const RECT area = *screenRect;
    const int self = m_nId;
    WalkWindows([&](CItfWnd& wnd) {
        const int modal = Toolkit().modalId;
        if (wnd.m_nId == self || !wnd.IsVisible() || (modal != -1 && IsInside(wnd, modal)))
            return true;
        POINT origin;
        wnd.GetScreenOrigin(&origin);
        RECT own = area;
        OffsetRect(&own, -origin.x, -origin.y);
        wnd.DrawWithin(own);
        return true;
    });
    if (CItfWnd* modal = ModalWindow())
        modal->Invalidate(nullptr);
}

void CItfWnd::Repaint(const RECT* rect)
{
    const int self = m_nId;
    if (m_nSprite < 0) {
        RECT screen;
        GetScreenRect(&screen);
        RedrawBehind(&screen);
    }
    if (IsStill(this, self))
        Invalidate(rect);
}

void CItfWnd::SetLargeDisplay(bool large)
{
    RECT& screen = Toolkit().virtualScreen;
    if (large) {
        SIZE size;
        m_pCore->GetScreenSize(&size);
        screen.left = (size.cx - SCREEN_WIDTH) / 2;
        screen.top = (size.cy - SCREEN_HEIGHT) / 2;
        screen.right = screen.left + SCREEN_WIDTH;
        screen.bottom = screen.top + SCREEN_HEIGHT;
    }
    if (ViewportRecord* viewport = m_pCore->GetViewport(0)) {
        viewport->rc = screen;
        viewport->fNear = 0.1f;
    }
}

void CItfWnd::GetVirtualScreen(RECT* out)
{
    *out = Toolkit().virtualScreen;
}

void CItfWnd::SetFullDisplay()
{
    if (Toolkit().screenSurface < 0 || m_pRender2D == nullptr)
        return;
    SIZE size;
    m_pCore->GetScreenSize(&size);
    Toolkit().virtualScreen = {0, 0, size.cx, size.cy};
    Present(true);
}

bool CItfWnd::Shade()
{
    PlaySound("itfShade");
    if ((m_dwStyle & IWS_SHADE) == 0)
        return false;
    // In the shader's own units of time.
    constexpr int shadeTime = 1000;
    const int shader = m_pCore->CreateEntity("shader", 3, 0);
    if (shader < 0)
        return false;
    SetDrawing(false);
    KeepLastFrame();
    const int interfaceId = m_pCore->FindEntity("interface", nullptr);
    m_pCore->SendMessage(MSG_SHADE_START, shader, 0, "llllll", -1, 0, shadeTime, interfaceId,
                         static_cast<int>(MSG_ITF_SHADE_DONE), -1);
    return true;
}

void CItfWnd::ShadeOrPaint()
{
    if (Shade())
        return;
    SetDrawing(true);
    Invalidate(nullptr);
}

void CItfWnd::KeepLastFrame()
{
    m_pRender2D->Blit(0, Toolkit().screenSurface, DISPLAY_NOW, nullptr, &Toolkit().virtualScreen, false);
}

void CItfWnd::PaintFullScreen(const char* sprite)
{
    const int index = AcquireSprite(sprite);
    const RECT screen = {0, 0, SCREEN_WIDTH, SCREEN_HEIGHT};
    DrawSpriteStretched(index, &screen, false);
    ReleaseSprite(index);
}

const char* CItfWnd::GetResString(int number)
{
    const char* text = FindResString(number);
    return text != nullptr ? text : "";
}

const char* CItfWnd::FindResString(int number)
{
    return Toolkit().textTable != nullptr ? Toolkit().textTable->GetText(number) : "default";
}

void CItfWnd::PlaySound(const char* name)
{
    if (m_pSound != nullptr)
        m_pSound->Play(name, 0, 0);
}

POINT CItfWnd::MousePoint(std::int32_t lParam) const
{
    const auto packed = static_cast<DWORD>(lParam);
    POINT point = {static_cast<std::int16_t>(LOWORD(packed)), static_cast<std::int16_t>(HIWORD(packed))};
    ScreenToClient(&point);
    return point;
}
