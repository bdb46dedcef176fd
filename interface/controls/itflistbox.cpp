#include "controls/itflistbox.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "controls/itffont.h"
#include "controls/itfscrollbar.h"
#include "kernel/own_names.h"
#include "platform/rect.h"

namespace
{

/// What the bar takes from the lines, and what stays free of it at the right.
constexpr int BAR_SPACE = 20;
constexpr int BAR_MARGIN = 2;
constexpr int TEXT_INDENT = 2;

bool SortsBefore(const ItfListItem& a, const ItfListItem& b)
{
    return std::tie(a.m_nOrder, a.m_Text) < std::tie(b.m_nOrder, b.m_Text);
}

} // namespace

CItfListBox::CItfListBox() = default;

CItfListBox::~CItfListBox()
{
    ReplaceFont(m_nFont, -1);
    ReleaseSprite(std::exchange(m_nSelSprite, -1));
}

bool CItfListBox::Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent,
                         int ctrlId, std::uint32_t style, IEngine* core)
{
    if (!CItfWnd::Create(caption, sprite, rect, parent, ctrlId, style, core))
        return false;
    m_pScrollBar.reset();
    m_nCurSel = -1;
    m_nTopIndex = 0;
    ReplaceFont(m_nFont, AcquireFont(FONT_LIST));
    SetSelSprite(AcquireSprite(SPRITE_HIGHLIGHT));
    return true;
}

int CItfListBox::AddItem(const ItfListItem& item)
{
    auto place = m_Items.end();
    if ((m_dwStyle & LBSTYLE_SORTED) != 0)
        place = std::find_if(m_Items.begin(), m_Items.end(),
                             [&](const ItfListItem& other) { return SortsBefore(item, other); });
    const auto index = static_cast<int>(place - m_Items.begin());
    m_Items.insert(place, item);
    Layout();
    return index;
}

void CItfListBox::InsertItem(int index, const ItfListItem& item)
{
    m_Items.insert(m_Items.begin() + std::clamp(index, 0, GetCount()), item);
    Layout();
}

void CItfListBox::Fill(std::size_t count, const std::function<const ItfListItem&(std::size_t)>& itemOf)
{
    // First, since what the layouts paint may change what the items come from.
    std::vector<ItfListItem> items;
    items.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        items.push_back(itemOf(i));
    if ((m_dwStyle & LBSTYLE_SORTED) != 0)
        std::stable_sort(items.begin(), items.end(), SortsBefore);
    const int self = m_nId;
    ResetContent();
    if (!IsStill(this, self) || count == 0)
        return;
    m_Items = std::move(items);
    Layout();
}

void CItfListBox::ResetContent()
{
    m_Items.clear();
    m_nCurSel = -1;
    m_nTopIndex = 0;
    Layout();
}

bool CItfListBox::SetFont(const char* name)
{
    return ReplaceFontByName(m_nFont, name);
}

void CItfListBox::SetFontHandle(int font)
{
    AddFontRef(font); // first, in case it is the one that is released
    ReplaceFont(m_nFont, font);
}

void CItfListBox::SetSelSprite(int sprite)
{
    ReleaseSprite(std::exchange(m_nSelSprite, sprite));
}

const ItfListItem& CItfListBox::GetItem(int index) const
{
    static const ItfListItem none;
    return IsItem(index) ? m_Items[static_cast<std::size_t>(index)] : none;
}

int CItfListBox::GetItemData(int index) const
{
    return IsItem(index) ? m_Items[static_cast<std::size_t>(index)].m_nData : -1;
}

int CItfListBox::GetPageSize() const
{
    const int height = GetFontHeight(m_nFont);
    return height > 0 ? std::max(0, m_rcInner.bottom - m_rcInner.top) / height : GetCount();
}

void CItfListBox::MoveSelection(int index)
{
    const int last = GetCount() - 1;
    m_nCurSel = std::min(std::max(index, 0), last);
    const int page = GetPageSize();
    if (m_nCurSel < 0 || (m_nCurSel >= m_nTopIndex && m_nCurSel - m_nTopIndex < page))
        return;
    m_nTopIndex = GetCount() <= page ? 0 : std::clamp(m_nCurSel - page + 1, 0, last);
}

void CItfListBox::SetCurSel(int index)
{
    MoveSelection(index);
    Layout();
}

void CItfListBox::SelectData(int data)
{
    // Each match may scroll, so all of them count; one layout shows where they led.
    bool found = false;
    for (int i = 0; i < GetCount(); ++i) {
        if (m_Items[static_cast<std::size_t>(i)].m_nData == data) {
            MoveSelection(i);
            found = true;
        }
    }
    if (found)
        Layout();
}

void CItfListBox::SetTopIndex(int index)
{
    m_nTopIndex = GetCount() <= GetPageSize() ? 0 : std::clamp(index, 0, GetCount() - 1);
    Layout();
}

void CItfListBox::GiveUpScrollBar()
{
    m_dwStyle = (m_dwStyle & ~static_cast<std::uint32_t>(LBSTYLE_BARSPACE)) | LBSTYLE_NOBAR;
    if (m_pScrollBar == nullptr)
        return;
    m_pScrollBar.reset();
    Layout();
}

// Runs after each change of the items, the selection or the top line.
void CItfListBox::Layout()
{
    const bool mayChange = (m_dwStyle & LBSTYLE_NOBAR) == 0;
    const bool always = (m_dwStyle & IWS_VSCROLL) != 0;
    const int count = GetCount();
    if (m_pScrollBar == nullptr && mayChange && (always || count > GetPageSize()))
        MakeScrollBar();
    // A bar stays where exactly a page is left.
    if (mayChange && !always && count < GetPageSize())
        m_pScrollBar.reset();
    if (m_pScrollBar == nullptr) {
        m_rcInner = m_rcClient;
        if ((m_dwStyle & LBSTYLE_BARSPACE) != 0)
            m_rcInner.right -= BAR_SPACE;
        return;
    }
    // One position more than there are full pages: the last one leaves a line's room below the end.
    m_pScrollBar->SetRange(0, count - GetPageSize() + 1, 1);
    m_pScrollBar->SetPos(m_nTopIndex);
}

void CItfListBox::MakeScrollBar()
{
    if (m_nId < 0)
        return; // without a place in the table there is no parent for it to stand behind
    m_rcInner = m_rcClient;
    const RECT rect = {m_rcInner.right - BAR_SPACE, m_rcInner.top, m_rcInner.right - BAR_MARGIN,
                       m_rcInner.bottom};
    auto bar = std::make_unique<CItfScrollBar>();
    if (!bar->Create(nullptr, nullptr, &rect, this, SCROLLBAR_CTRL_ID, 0, m_pCore))
        return;
    m_pScrollBar = std::move(bar);
    // As the box itself, which may be filled while it isn't on the screen.
    m_pScrollBar->Show((m_dwState & IWF_SHOWN) != 0);
    m_pScrollBar->Hide((m_dwState & IWF_HIDDEN) != 0);
    m_rcInner.right -= BAR_SPACE;
}

void CItfListBox::Draw()
{
    CItfWnd::Draw();
    const int height = GetFontHeight(m_nFont);
    RECT part;
    if (height <= 0 || !IntersectRect(&part, &m_rcUpdate, &m_rcInner))
        return;
    std::uint32_t flags = 0;
    if ((m_dwStyle & LBSTYLE_CENTER) != 0)
        flags = FONT_CENTER_HOR;
    else if ((m_dwStyle & LBSTYLE_RIGHT) != 0)
        flags = FONT_RIGHT;
    RECT line = m_rcInner;
    const int lines = std::min(GetPageSize(), GetCount() - m_nTopIndex);
    for (int i = 0; i < lines; ++i) {
        const int index = m_nTopIndex + i;
        const ItfListItem& item = m_Items[static_cast<std::size_t>(index)];
        line.top = m_rcInner.top + i * height;
        line.bottom = line.top + height;
        if (index == m_nCurSel && (m_dwStyle & LBSTYLE_NOSELECT) == 0)
            DrawSprite(m_nSelSprite, &line, true);
        RECT text = line;
        text.left += TEXT_INDENT;
        DrawTextBox(m_nFont, &text, item.m_Text.c_str(), flags, -1, item.m_nColour, nullptr);
    }
}

const CItfWnd::Row* CItfListBox::GetMessageTable() const
{
    static const Row rows[] = {
        On(WM_LBUTTONDOWN, &CItfListBox::OnLButtonDown),
        On(WM_LBUTTONUP, &CItfListBox::OnLButtonUp),
        On(WM_LBUTTONDBLCLK, &CItfListBox::OnLButtonDblClk),
        On(WM_MOUSEWHEEL, &CItfListBox::OnMouseWheel),
        On(WM_KEYDOWN, &CItfListBox::OnKeyDown),
        On(ITFM_NOTIFY, &CItfListBox::OnNotify),
        EndOfTable(),
    };
    return rows;
}

int CItfListBox::LineAt(const POINT& point) const
{
    const int height = GetFontHeight(m_nFont);
    if (height <= 0 || !PtInRect(&m_rcInner, point))
        return -1;
    const int line = (point.y - m_rcInner.top) / height;
    return line < GetPageSize() && IsItem(m_nTopIndex + line) ? m_nTopIndex + line : -1;
}

// A box without a background leaves its lines to whoever is painted next: what lies behind it comes, and no
// more.
void CItfListBox::RepaintAfterInput()
{
    if ((m_dwStyle & LBSTYLE_PASSIVE) != 0)
        return;
    if (m_nSprite >= 0) {
        Invalidate(nullptr);
        return;
    }
    RECT screen;
    GetScreenRect(&screen);
    RedrawBehind(&screen);
}

Word CItfListBox::OnLButtonDown(std::uint32_t, std::int32_t lParam)
{
    const int self = m_nId;
    const int line = LineAt(MousePoint(lParam));
    if (line >= 0 && line != m_nCurSel) {
        SetCurSel(line);
        if (IsStill(this, self))
            Notify(LIST_SELECTED);
    }
    if (line >= 0 && IsStill(this, self))
        Notify(LIST_PRESSED);
    if (IsStill(this, self))
        RepaintAfterInput();
    return 0;
}

Word CItfListBox::OnLButtonUp(std::uint32_t, std::int32_t)
{
    return 0;
}

Word CItfListBox::OnLButtonDblClk(std::uint32_t, std::int32_t lParam)
{
    if (LineAt(MousePoint(lParam)) >= 0)
        Notify(LIST_DOUBLECLICKED);
    return 0;
}

Word CItfListBox::OnMouseWheel(std::uint32_t wParam, std::int32_t)
{
    const int self = m_nId;
    if ((m_dwStyle & LBSTYLE_NOWHEEL) == 0) {
        SetTopIndex(m_nTopIndex + (static_cast<std::int32_t>(wParam) < 0 ? 1 : -1));
        if (IsStill(this, self))
            Notify(LIST_SCROLLED);
    }
    if (IsStill(this, self))
        RepaintAfterInput();
    return 0;
}

Word CItfListBox::OnKeyDown(std::uint32_t wParam, std::int32_t)
{
    const int self = m_nId;
    switch (wParam) {
    case VK_RETURN:
        Notify(LIST_ENTER);
        break;
    case VK_DELETE:
        Notify(LIST_DELETE);
        break;
    case VK_PRIOR:
        SetCurSel(m_nCurSel - GetPageSize());
        break;
    case VK_NEXT:
        SetCurSel(m_nCurSel + GetPageSize());
        break;
    case VK_UP:
        SetCurSel(m_nCurSel - 1);
        break;
    case VK_DOWN:
        SetCurSel(m_nCurSel + 1);
        break;
    default:
        return 0;
    }
    if (IsStill(this, self))
        Notify(LIST_SELECTED);
    return 0;
}

Word CItfListBox::OnNotify(std::uint32_t wParam, std::int32_t lParam)
{
    if (m_pScrollBar == nullptr || wParam != SB_CHANGED || lParam != SCROLLBAR_CTRL_ID)
        return 0;
    const int self = m_nId;
    m_nTopIndex = m_pScrollBar->GetPos();
    Layout();
    if (IsStill(this, self))
        Notify(LIST_SCROLLED);
    if (IsStill(this, self))
        RepaintAfterInput();
    return 0;
}
