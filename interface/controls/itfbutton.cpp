#include "controls/itfbutton.h"

#include <string>
#include <utility>

#include "controls/itffont.h"
#include "kernel/own_names.h"
#include "platform/input.h"
#include "platform/rect.h"

namespace
{

constexpr char CLICK_SOUND[] = "itfButtonClick";
constexpr std::uint32_t CAPTION_COLOUR = 0xffffff;

} // namespace

CItfButton::~CItfButton()
{
    ReleaseResources();
}

void CItfButton::ReleaseResources()
{
    for (int* font : {&m_nFont, &m_nFontHot, &m_nFontDisabled})
        ReleaseFont(std::exchange(*font, -1));
    for (int* sprite : {&m_nSpriteUp, &m_nSpriteDown})
        ReleaseSprite(std::exchange(*sprite, -1));
}

bool CItfButton::Create(const char* caption, const RECT* rect, CItfWnd* parent, int ctrlId,
                        std::uint32_t style, IEngine* core, const char* downSprite, const char* upSprite)
{
    if (!CItfWnd::Create(caption, nullptr, rect, parent, ctrlId, style, core))
        return false;
    ReleaseResources();
    m_nSpriteDown = AcquireSprite(downSprite != nullptr ? downSprite : SPRITE_BUTTON_DOWN);
    m_nSpriteUp = AcquireSprite(upSprite != nullptr ? upSprite : SPRITE_BUTTON_UP);
    if (m_nSpriteDown < 0 || m_nSpriteUp < 0) {
        Destroy();
        return false;
    }
    m_nFont = AcquireFont(FONT_BUTTON);
    m_nFontHot = AcquireFont(FONT_BUTTON_ACTIVE);
    m_nFontDisabled = AcquireFont(FONT_BUTTON_DISABLED);
    return true;
}

void CItfButton::SetState(int state)
{
    m_nState = state;
    Invalidate(nullptr);
}

void CItfButton::Toggle()
{
    SetState(m_nState == BUTTON_DOWN ? BUTTON_UP : BUTTON_DOWN);
}

bool CItfButton::SetFont(const char* name)
{
    if (!ReplaceFontByName(m_nFont, name))
        return false;
    const std::string base = name;
    if (ReplaceFontByName(m_nFontHot, (base + FONT_SUFFIX_ACTIVE).c_str()))
        ReplaceFontByName(m_nFontDisabled, (base + FONT_SUFFIX_DISABLED).c_str());
    return true;
}

void CItfButton::Draw()
{
    CItfWnd::Draw();
    const bool keyed = !IsCheckBox() || (m_dwStyle & IWS_BK_KEYCOLOR) != 0;
    DrawSprite(m_nState == BUTTON_UP ? m_nSpriteUp : m_nSpriteDown, &m_rcClient, keyed);

    // The font centres in what this leaves: the caption stands a little below the middle, where capitals look
    // right.
    RECT text = m_rcInner;
    text.top += (m_rcInner.bottom - m_rcInner.top - GetFontHeight(m_nFont)) / 2;
    const int font = !IsEnabled() ? m_nFontDisabled : m_bHot ? m_nFontHot : m_nFont;
    DrawTextBox(font, &text, m_Caption.c_str(), FONT_CENTER_HOR | FONT_CENTER_VERT, -1, CAPTION_COLOUR,
                nullptr);
}

void CItfButton::OnTick(int)
{
    if (!IsEnabled())
        return;
    POINT cursor;
    bool hot = false;
    if (GetCursorPos(&cursor)) {
        RECT screen;
        RECT own;
        GetVirtualScreen(&screen);
        GetScreenRect(&own);
        cursor.x -= screen.left;
        cursor.y -= screen.top;
        hot = PtInRect(&own, cursor) != FALSE;
    }
    if (hot != m_bHot) {
        m_bHot = hot;
        Invalidate(nullptr);
    }
}

const CItfWnd::Row* CItfButton::GetMessageTable() const
{
    static const Row rows[] = {
        On(WM_MOUSEMOVE, &CItfButton::OnMouseMove),
        On(WM_LBUTTONDOWN, &CItfButton::OnLButtonDown),
        On(WM_LBUTTONUP, &CItfButton::OnLButtonUp),
        EndOfTable(),
    };
    return rows;
}

Word CItfButton::OnMouseMove(std::uint32_t, std::int32_t lParam)
{
    const int self = m_nId;
    if (!m_bHot) {
        m_bHot = true;
        Invalidate(nullptr);
    }
    if (IsStill(this, self) && m_bPressed && !IsCheckBox()) {
        const int state = PtInRect(&m_rcClient, MousePoint(lParam)) ? BUTTON_DOWN : BUTTON_UP;
        if (state != m_nState)
            SetState(state);
    }
    return 0;
}

Word CItfButton::OnLButtonDown(std::uint32_t, std::int32_t)
{
    if (!IsEnabled())
        return 0;
    const int self = m_nId;
    const bool checkBox = IsCheckBox();
    SetCapture();
    m_bPressed = true;
    if (!checkBox)
        SetState(BUTTON_DOWN);
    else if (!IsManual())
        Toggle();
    if (IsStill(this, self))
        Notify(checkBox ? NOTIFY_CLICKED : NOTIFY_PRESSED);
    return 0;
}

Word CItfButton::OnLButtonUp(std::uint32_t, std::int32_t lParam)
{
    if (!m_bPressed)
        return 0;
    const bool inside = PtInRect(&m_rcClient, MousePoint(lParam)) != FALSE;
    ReleaseCapture();
    m_bPressed = false;
    if (IsCheckBox())
        return 0;
    const int self = m_nId;
    SetState(inside && IsManual() ? BUTTON_DOWN : BUTTON_UP);
    if (inside && IsStill(this, self)) {
        PlaySound(CLICK_SOUND);
        Notify(NOTIFY_CLICKED);
    }
    return 0;
}

bool CItfCheckBox::Create(const char* caption, const RECT* rect, CItfWnd* parent, int ctrlId,
                          std::uint32_t style, IEngine* core, const char* downSprite, const char* upSprite)
{
    return CItfButton::Create(caption, rect, parent, ctrlId, style | BTSTYLE_CHECKBOX, core, downSprite,
                              upSprite);
}
