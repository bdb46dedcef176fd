#include "controls/itfmenu.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "controls/itffont.h"
#include "kernel/own_names.h"
#include "platform/rect.h"

namespace
{

constexpr char CLICK_SOUND[] = "itfMenuClick";
constexpr std::uint32_t ITEM_COLOUR = 0xffffff;
constexpr std::uint32_t ITEM_TEXT_FLAGS = FONT_MULTILINE | FONT_CENTER_HOR | FONT_CENTER_VERT;

constexpr std::pair<const char*, std::uint32_t> FLAG_NAMES[] = {
    {"POPUP", MENUITEM_POPUP},
    {"DISABLED", MENUITEM_DISABLED},
};

} // namespace

void ItfMenuItem::SetName(const char* name)
{
    const std::size_t length = name != nullptr ? strnlen(name, NAME_SIZE - 1) : 0;
    if (length > 0)
        std::memcpy(m_szName, name, length);
    m_szName[length] = '\0';
}

std::uint32_t ItfMenuItem::ParseFlags(const char* styleText)
{
    std::uint32_t flags = 0;
    if (styleText != nullptr) {
        for (const auto& [name, flag] : FLAG_NAMES) {
            if (std::strstr(styleText, name) != nullptr)
                flags |= flag;
        }
    }
    return flags;
}

void ItfMenuItem::AddItem(const ItfMenuItem& item)
{
    m_Items.push_back(item);
    m_bHasItems = true;
}

const ItfMenuItem* ItfMenuItem::GetItem(int index) const
{
    return index >= 0 && static_cast<std::size_t>(index) < m_Items.size()
               ? &m_Items[static_cast<std::size_t>(index)]
               : nullptr;
}

ItfMenuItem* ItfMenuItem::GetItem(int index)
{
    return const_cast<ItfMenuItem*>(std::as_const(*this).GetItem(index));
}

ItfMenuItem* ItfMenuItem::FindItem(int id)
{
    if (m_nId == id)
        return this;
    for (ItfMenuItem& item : m_Items) {
        if (ItfMenuItem* found = item.FindItem(id))
            return found;
    }
    return nullptr;
}

void ItfMenuItem::SetItemState(int index, std::uint32_t bits)
{
    if (index == ALL_ITEMS) {
        for (ItfMenuItem& item : m_Items)
            item.m_nState |= bits;
        return;
    }
    ItfMenuItem* item = GetItem(index);
    if (item == nullptr)
        return;
    if ((bits & MENUITEM_HIGHLIGHTED) != 0)
        ClearItemState(ALL_ITEMS, MENUITEM_HIGHLIGHTED);
    item->m_nState |= bits;
}

void ItfMenuItem::ClearItemState(int index, std::uint32_t bits)
{
    if (index == ALL_ITEMS) {
        for (ItfMenuItem& item : m_Items)
            item.m_nState &= ~bits;
    } else if (ItfMenuItem* item = GetItem(index)) {
        item->m_nState &= ~bits;
    }
}

int ItfMenuItem::HitTestItems(const POINT& point) const
{
    const auto hit = std::find_if(m_Items.begin(), m_Items.end(), [&](const ItfMenuItem& item) {
        return PtInRect(&item.m_rc, point) != FALSE;
    });
    return hit != m_Items.end() ? static_cast<int>(hit - m_Items.begin()) : -1;
}

CItfMenu::~CItfMenu()
{
    ReleaseFonts();
}

void CItfMenu::ReleaseFonts()
{
    for (int* font : {&m_nFont, &m_nFontActive, &m_nFontDisabled})
        ReleaseFont(std::exchange(*font, -1));
}

bool CItfMenu::Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                      std::uint32_t style, IEngine* core)
{
    if (!CItfWnd::Create(caption, sprite, rect, parent, ctrlId, style, core))
        return false;
    m_nHotItem = -1;
    ReleaseFonts();
    m_nFont = AcquireFont(FONT_MENU);
    m_nFontActive = AcquireFont(FONT_MENU_ACTIVE);
    m_nFontDisabled = AcquireFont(FONT_MENU_DISABLED);
    return true;
}

void CItfMenu::OnDestroy()
{
    CItfWnd::OnDestroy();
    m_Root = ItfMenuItem();
}

void CItfMenu::AddItem(const char* text, int id, const char* styleText, const RECT& rect, const char* extra)
{
    ItfMenuItem item;
    item.SetName(text);
    item.m_nId = id;
    item.m_nFlags = ItfMenuItem::ParseFlags(styleText);
    item.m_rc = rect;
    if (extra != nullptr)
        item.m_Extra = extra;
    m_Root.AddItem(item);
}

void CItfMenu::DrawItem(const ItfMenuItem& item)
{
    int font = m_nFont;
    if ((item.m_nState & MENUITEM_HIGHLIGHTED) != 0)
        font = m_nFontActive;
    if ((item.m_nFlags & MENUITEM_DISABLED) != 0)
        font = m_nFontDisabled;
    DrawTextBox(font, &item.m_rc, item.m_szName, ITEM_TEXT_FLAGS, -1, ITEM_COLOUR, nullptr);
}

void CItfMenu::Draw()
{
    CItfWnd::Draw();
    for (const ItfMenuItem& item : m_Root.m_Items)
        DrawItem(item);
}

void CItfMenu::OnTick(int)
{
    for (const ItfMenuItem& item : m_Root.m_Items) {
        if ((item.m_nState & MENUITEM_HIGHLIGHTED) != 0 && (item.m_nFlags & MENUITEM_DISABLED) == 0) {
            DrawItem(item);
            return;
        }
    }
}

const CItfWnd::Row* CItfMenu::GetMessageTable() const
{
    static const Row rows[] = {
        On(WM_MOUSEMOVE, &CItfMenu::OnMouseMove),
        On(WM_LBUTTONDOWN, &CItfMenu::OnLButtonDown),
        EndOfTable(),
    };
    return rows;
}

Word CItfMenu::OnMouseMove(std::uint32_t, std::int32_t lParam)
{
    const int index = m_Root.HitTestItems(MousePoint(lParam));
    const bool entered = index >= 0 && index != m_nHotItem;
    m_nHotItem = index;
    if (index >= 0)
        m_Root.SetItemState(index, MENUITEM_HIGHLIGHTED);
    if (entered)
        Invalidate(&m_Root.GetItem(index)->m_rc);
    return 0;
}

Word CItfMenu::OnLButtonDown(std::uint32_t, std::int32_t lParam)
{
    const int index = m_Root.HitTestItems(MousePoint(lParam));
    if (index < 0)
        return 0;
    m_Root.SetItemState(index, MENUITEM_HIGHLIGHTED);
    const ItfMenuItem& item = *m_Root.GetItem(index);
    if ((item.m_nFlags & MENUITEM_DISABLED) == 0) {
        PlaySound(CLICK_SOUND);
        PostToParent(ITFM_COMMAND, MENU_COMMAND, item.m_nId);
    }
    Invalidate(&item.m_rc);
    return 0;
}
