#include "controls/itfbutton.h"

#include <string>
#include <utility>

#include "controls/itffont.h"
#include "platform/input.h"
#include "platform/rect.h"

namespace
{

constexpr char DEFAULT_DOWN_SPRITE[] = "itfBtDown";
constexpr char DEFAULT_UP_SPRITE[] = "itfBtUp";
constexpr char DEFAULT_FONT[] = "itfBtnFont";
constexpr char HOT_SUFFIX[] = "A";
constexpr char DISABLED_SUFFIX[] = "Dis";
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
    m_nSpriteDown = AcquireSprite(downSprite != nullptr ? downSprite : DEFAULT_DOWN_SPRITE);
    m_nSpriteUp = AcquireSprite(upSprite != nullptr ? upSprite : DEFAULT_UP_SPRITE);
    if (m_nSpriteDown < 0 || m_nSpriteUp < 0) {
        Destroy();
        return false;
    }
    const std::string font = DEFAULT_FONT;
    m_nFont = AcquireFont(font.c_str());
    m_nFontHot = AcquireFont((font + HOT_SUFFIX).c_str());
    m_nFontDisabled = AcquireFont((font + DISABLED_SUFFIX).c_str());
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

void CItfButton::ReplaceFont(int& slot, int font)
{
    ReleaseFont(std::exchange(slot, font));
}

bool CItfButton::SetFont(const char* name)
{
    if (name == nullptr)
        return false;
    const int font = AcquireFont(name);
    if (font < 0)
        return false;
    ReplaceFont(m_nFont, font);
    const int hot = AcquireFont((std::string(name) + HOT_SUFFIX).c_str());
    if (hot < 0)
        return true;
    ReplaceFont(m_nFontHot, hot);
    const int disabled = AcquireFont((std::string(name) + DISABLED_SUFFIX).c_str());
    if (disabled >= 0)
        ReplaceFont(m_nFontDisabled, disabled);
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
