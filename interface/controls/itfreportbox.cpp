#include "controls/itfreportbox.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "controls/itffont.h"
#include "controls/itfroworder.h"
#include "kernel/own_names.h"
#include "platform/rect.h"

namespace
{

constexpr std::uint32_t HEADER_COLOUR = 0xffffff;

} // namespace

CItfReportBox::~CItfReportBox()
{
    m_Columns.clear();
    ReleaseResources();
}

void CItfReportBox::ReleaseResources()
{
    for (int* font : {&m_nHeaderFont, &m_nHeaderFontActive, &m_nListFont})
        ReplaceFont(*font, -1);
    ReleaseSprite(std::exchange(m_nSelSprite, -1));
}

bool CItfReportBox::Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent,
                           int ctrlId, std::uint32_t style, IEngine* core)
{
    if (!CItfWnd::Create(caption, sprite, rect, parent, ctrlId, style, core))
        return false;
    m_Columns.clear();
    m_Headers.clear();
    m_Rows.clear();
    m_nActiveHeader = -1;
    m_bHeaderDown = false;
    ReleaseResources();
    m_nHeaderFont = AcquireFont(FONT_BUTTON);
    m_nHeaderFontActive = AcquireFont(FONT_BUTTON);
    m_nListFont = AcquireFont(FONT_LIST);
    return true;
}

bool CItfReportBox::SetListFont(const char* name)
{
    if (!ReplaceFontByName(m_nListFont, name))
        return false;
    for (const Column& column : m_Columns)
        column.list->SetFontHandle(m_nListFont);
    return true;
}

bool CItfReportBox::SetHeaderFont(const char* name)
{
    if (!ReplaceFontByName(m_nHeaderFont, name))
        return false;
    if (!ReplaceFontByName(m_nHeaderFontActive, (std::string(name) + FONT_SUFFIX_ACTIVE).c_str())) {
        AddFontRef(m_nHeaderFont);
        ReplaceFont(m_nHeaderFontActive, m_nHeaderFont);
    }
    return true;
}

bool CItfReportBox::SetSelSprite(const char* name)
{
    const int sprite = AcquireSprite(name);
    if (sprite < 0)
        return false;
    for (const Column& column : m_Columns) {
        AddSpriteRef(sprite); // each column gives its own back
        column.list->SetSelSprite(sprite);
    }
    ReleaseSprite(std::exchange(m_nSelSprite, sprite));
    return true;
}

std::uint32_t CItfReportBox::BaseColumnStyle() const
{
    std::uint32_t style = m_dwStyle & IWS_VSCROLL;
    if ((m_dwStyle & RBSTYLE_NOSELECT) != 0)
        style |= LBSTYLE_NOSELECT;
    return style;
}

bool CItfReportBox::AddColumn(int width, std::uint32_t style)
{
    // The sort rules, whose bits mean something else to a list box.
    constexpr std::uint32_t sortRules =
        static_cast<std::uint32_t>(RBCOL_FILEDIR) | static_cast<std::uint32_t>(RBCOL_NUMBER);
    constexpr std::uint32_t always = static_cast<std::uint32_t>(LBSTYLE_PASSIVE) | LBSTYLE_BARSPACE |
                                     static_cast<std::uint32_t>(IWS_ALONE);
    const std::uint32_t base = BaseColumnStyle();
    int left = m_rcInner.left;
    for (const Column& column : m_Columns)
        left += column.width;
    const RECT rect = {left, m_rcInner.top, left + width, m_rcInner.bottom};

    auto list = std::make_unique<CItfListBox>();
    if (!list->Create(nullptr, nullptr, &rect, this, GetColumnCount(), base | (style & ~sortRules) | always,
                      m_pCore))
        return false;
    list->SetFontHandle(m_nListFont);
    list->Show(true);
    for (const Column& column : m_Columns) {
        column.list->SetStyle(column.list->GetStyle() | base);
        column.list->GiveUpScrollBar();
    }
    m_Columns.push_back({width, std::move(list)});
    for (ReportRow& row : m_Rows) {
        ItfListItem item;
        if (!row.empty())
            item = ItfListItem(row.front().m_nData, "", row.front().m_nOrder);
        row.push_back(std::move(item));
    }
    return true;
}

void CItfReportBox::AddHeader(const char* text, int column, std::uint32_t style, const RECT& rect)
{
    m_Headers.push_back({rect, column, style, text != nullptr ? text : ""});
}

int CItfReportBox::AddRow(const ItfListItem& item)
{
    ItfListItem other = item;
    other.m_Text.clear();
    ReportRow row(m_Columns.size(), other);
    if (!row.empty())
        row.front().m_Text = item.m_Text;
    m_Rows.push_back(std::move(row));
    return static_cast<int>(m_Rows.size()) - 1;
}

const ItfListItem& CItfReportBox::GetItem(int row, int column) const
{
    static const ItfListItem none;
    if (row < 0 || static_cast<std::size_t>(row) >= m_Rows.size() || !IsColumn(column))
        return none;
    return m_Rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
}

void CItfReportBox::SetItem(int row, int column, const ItfListItem& item)
{
    if (row >= 0 && static_cast<std::size_t>(row) < m_Rows.size() && IsColumn(column))
        m_Rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] = item;
}

template <class Act>
bool CItfReportBox::ForEachColumn(Act act)
{
    // A column that lays itself out may paint, and what is painted may delete this box.
    const int self = m_nId;
    for (std::size_t i = 0; i < m_Columns.size(); ++i) {
        act(*m_Columns[i].list, i);
        if (!IsStill(this, self))
            return false;
    }
    return true;
}

void CItfReportBox::Refresh(bool redraw)
{
    const bool still = ForEachColumn([this](CItfListBox& list, std::size_t column) {
        list.Fill(m_Rows.size(), [&](std::size_t row) -> const ItfListItem& { return m_Rows[row][column]; });
    });
    if (still && redraw)
        Invalidate(nullptr);
}

void CItfReportBox::Clear()
{
    m_Rows.clear();
    ForEachColumn([](CItfListBox& list, std::size_t) { list.ResetContent(); });
}

void CItfReportBox::Sort(int column, int type)
{
    if (!IsColumn(column))
        return;
    const auto sorted = static_cast<std::size_t>(type == SORT_FILEDIR ? 0 : column);
    std::vector<std::string_view> texts;
    texts.reserve(m_Rows.size());
    for (const ReportRow& row : m_Rows)
        texts.emplace_back(row[sorted].m_Text);
    RowOrder order;
    if (type == SORT_FILEDIR) {
        std::vector<int> groups;
        groups.reserve(m_Rows.size());
        for (const ReportRow& row : m_Rows)
            groups.push_back(row.front().m_nOrder);
        order = OrderByGroup(groups, texts);
    } else {
        order = type == SORT_NUMBER ? OrderByNumber(texts) : OrderByText(texts);
    }
    std::vector<ReportRow> rows;
    rows.reserve(m_Rows.size());
    for (const std::uint32_t row : order)
        rows.push_back(std::move(m_Rows[row]));
    m_Rows = std::move(rows);
}

void CItfReportBox::EnableSelect(bool on)
{
    constexpr std::uint32_t none = LBSTYLE_NOSELECT;
    for (const Column& column : m_Columns) {
        const std::uint32_t style = column.list->GetStyle();
        column.list->SetStyle(on ? style & ~none : style | none);
    }
}

const CItfListBox* CItfReportBox::GetColumn(int column) const
{
    return IsColumn(column) ? m_Columns[static_cast<std::size_t>(column)].list.get() : nullptr;
}

bool CItfReportBox::HasSelection() const
{
    return !m_Columns.empty() && m_Columns.front().list->HasSelection();
}

int CItfReportBox::GetCurSel() const
{
    return m_Columns.empty() ? -1 : m_Columns.front().list->GetCurSel();
}

int CItfReportBox::GetCurData() const
{
    return m_Columns.empty() ? -1 : m_Columns.front().list->GetCurData();
}

int CItfReportBox::GetCount() const
{
    return m_Columns.empty() ? 0 : m_Columns.front().list->GetCount();
}

void CItfReportBox::SetCurSel(int index)
{
    if (ForEachColumn([index](CItfListBox& list, std::size_t) { list.SetCurSel(index); }))
        Invalidate(nullptr);
}

void CItfReportBox::SelectData(int data)
{
    ForEachColumn([data](CItfListBox& list, std::size_t) { list.SelectData(data); });
}

int CItfReportBox::FindRow(int data) const
{
    const auto found = std::find_if(m_Rows.begin(), m_Rows.end(), [data](const ReportRow& row) {
        return !row.empty() && row.front().m_nData == data;
    });
    return found != m_Rows.end() ? static_cast<int>(found - m_Rows.begin()) : -1;
}

void CItfReportBox::Draw()
{
    CItfWnd::Draw();
    constexpr std::uint32_t flags = FONT_CENTER_HOR | FONT_CENTER_VERT;
    for (std::size_t i = 0; i < m_Headers.size(); ++i) {
        const ItfReportHeader& header = m_Headers[i];
        const int font = static_cast<int>(i) == m_nActiveHeader ? m_nHeaderFontActive : m_nHeaderFont;
        DrawTextBox(font, &header.rect, header.caption.c_str(), flags, -1, HEADER_COLOUR, nullptr);
    }
}

const CItfWnd::Row* CItfReportBox::GetMessageTable() const
{
    static const Row rows[] = {
        On(WM_MOUSEWHEEL, &CItfReportBox::OnMouseWheel),   On(WM_KEYDOWN, &CItfReportBox::OnKeyDown),
        On(WM_LBUTTONDOWN, &CItfReportBox::OnLButtonDown), On(WM_LBUTTONUP, &CItfReportBox::OnLButtonUp),
        On(ITFM_NOTIFY, &CItfReportBox::OnNotify),         EndOfTable(),
    };
    return rows;
}

Word CItfReportBox::OnNotify(std::uint32_t wParam, std::int32_t lParam)
{
    if (!IsColumn(lParam))
        return 0;
    const CItfListBox& list = *m_Columns[static_cast<std::size_t>(lParam)].list;
    const int self = m_nId;
    switch (wParam) {
    case LIST_SELECTED:
        SetCurSel(list.GetCurSel());
        if (IsStill(this, self))
            Notify(LIST_SELECTED);
        break;
    case LIST_SCROLLED: {
        const int top = list.GetTopIndex();
        if (ForEachColumn([top](CItfListBox& other, std::size_t) { other.SetTopIndex(top); }))
            Invalidate(nullptr);
        break;
    }
    case LIST_PRESSED:
    case LIST_DOUBLECLICKED:
    case LIST_ENTER:
    case LIST_DELETE:
        Notify(static_cast<int>(wParam));
        break;
    default:
        break;
    }
    return 0;
}

int CItfReportBox::HeaderAt(const POINT& point) const
{
    for (std::size_t i = 0; i < m_Headers.size(); ++i) {
        if (PtInRect(&m_Headers[i].rect, point))
            return static_cast<int>(i);
    }
    return -1;
}

// Repaints nothing: the cell shows as the active one with the next repaint.
Word CItfReportBox::OnLButtonDown(std::uint32_t, std::int32_t lParam)
{
    if ((m_dwStyle & RBSTYLE_NOSORT) != 0)
        return 0;
    m_nActiveHeader = HeaderAt(MousePoint(lParam));
    if (m_nActiveHeader >= 0) {
        SetCapture();
        m_bHeaderDown = true;
    }
    return 0;
}

Word CItfReportBox::OnLButtonUp(std::uint32_t, std::int32_t lParam)
{
    if (!m_bHeaderDown)
        return 0;
    m_bHeaderDown = false;
    ReleaseCapture();
    const int header = HeaderAt(MousePoint(lParam));
    if (header >= 0 && header == m_nActiveHeader)
        SortByHeader(m_Headers[static_cast<std::size_t>(header)]);
    return 0;
}

void CItfReportBox::SortByHeader(const ItfReportHeader& header)
{
    if (header.column == -1)
        return;
    ItfReportSort type = SORT_TEXT;
    if ((header.style & RBCOL_NUMBER) != 0)
        type = SORT_NUMBER;
    else if ((header.style & RBCOL_FILEDIR) != 0)
        type = SORT_FILEDIR;
    Sort(header.column, type);
    Refresh(true);
}

// Comes here when the box itself has the focus.
Word CItfReportBox::OnKeyDown(std::uint32_t wParam, std::int32_t)
{
    if (m_Columns.empty())
        return 0;
    const int self = m_nId;
    const int page = m_Columns.front().list->GetPageSize();
    int selection = GetCurSel();
    switch (wParam) {
    case VK_RETURN:
        Notify(LIST_ENTER);
        break;
    case VK_DELETE:
        Notify(LIST_DELETE);
        break;
    case VK_PRIOR:
        selection -= page;
        break;
    case VK_NEXT:
        selection += page;
        break;
    case VK_UP:
        --selection;
        break;
    case VK_DOWN:
        ++selection;
        break;
    default:
        return 0;
    }
    if (IsStill(this, self))
        SetCurSel(selection); // which holds it within the rows
    return 0;
}

Word CItfReportBox::OnMouseWheel(std::uint32_t wParam, std::int32_t lParam)
{
    const bool down = static_cast<SHORT>(HIWORD(wParam)) < 1;
    return OnKeyDown(static_cast<std::uint32_t>(down ? VK_DOWN : VK_UP), lParam);
}
