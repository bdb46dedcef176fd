#pragma once
// Operations in any order on a report box, with its rows kept beside it. After each one the columns must
// stand alike and show the rows of the last Refresh. For the unit tests and the fuzzer, which bring engine,
// fonts and sprites.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "controls/itfreportbox.h"
#include "controls/itfscrollbar.h"

namespace report_test
{

constexpr int LINE_HEIGHT = 10; ///< of the font that the caller brings
constexpr int PAGE = 4;
constexpr int CELL_HEIGHT = 15;
constexpr int CELL_WIDTH = 30;

/// Reads an input: a style byte, then steps of an operation byte and its operands. 0 stands past the end.
class ReportPlayer : public CItfWnd
{
  public:
    ReportPlayer(IEngine& engine, std::vector<std::uint8_t> input) : m_Input(std::move(input))
    {
        static constexpr std::uint32_t styles[] = {0, IWS_VSCROLL, RBSTYLE_NOSELECT, RBSTYLE_NOSORT};
        CItfWnd::Create(nullptr, nullptr, nullptr, nullptr, 1, 0, &engine);
        Show(true);
        CItfWnd::SetDrawing(true);
        const RECT rect = {10, 20, 210, 120};
        m_Box.Create(nullptr, nullptr, &rect, this, 7, styles[Byte() % 4], &engine);
        m_Box.SetInnerRect({0, CELL_HEIGHT, 200, CELL_HEIGHT + PAGE * LINE_HEIGHT + LINE_HEIGHT / 2});
        m_Box.Show(true);
        for (int i = 0; i < CELLS; ++i)
            m_Box.AddHeader("x", SORTS[i].column, SORTS[i].style,
                            {i * CELL_WIDTH, 0, (i + 1) * CELL_WIDTH, CELL_HEIGHT});
        AddColumn();
    }

    /// Empty, or the first fault.
    std::string Run()
    {
        constexpr int MOST_STEPS = 400;
        std::string fault = Check();
        for (int step = 0; fault.empty() && m_nNext < m_Input.size() && step < MOST_STEPS; ++step) {
            const int operation = Byte() % 12;
            Step(operation);
            fault = Check();
            if (!fault.empty())
                fault += " after step " + std::to_string(step) + ", operation " + std::to_string(operation);
        }
        return fault;
    }

  private:
    using Items = std::vector<ItfListItem>;
    struct CellSort {
        int column;
        std::uint32_t style;
        int type;
    };
    static constexpr int CELLS = 5;
    /// Of the header cells. The last one names no column.
    static constexpr CellSort SORTS[CELLS] = {{0, 0, SORT_TEXT},
                                              {1, RBCOL_NUMBER, SORT_NUMBER},
                                              {0, RBCOL_FILEDIR, SORT_FILEDIR},
                                              {-1, RBCOL_NUMBER, SORT_NUMBER},
                                              {9, 0, SORT_TEXT}};

    int Byte() { return m_nNext < m_Input.size() ? m_Input[m_nNext++] : 0; }
    ItfListItem Item(int data)
    {
        static const char* const texts[] = {"",       "a",          "B",    "b",   "10",           "9",
                                            "-3",     "+4 ships",   "\xc4", "007", "99999999999",  "-",
                                            "a long", "a long one", "\xe4", "z",   "a long other", "\x80"};
        const char* const text = texts[static_cast<std::size_t>(Byte()) % std::size(texts)];
        return ItfListItem(data, text, Byte() % 3 - 1);
    }
    CItfWnd& Column(int column) { return *FindWindow(m_Box.GetColumn(column)->GetId()); }
    int AnyColumn() { return Byte() % m_Box.GetColumnCount(); }
    /// The box, any of its columns, or its bar where it has one.
    CItfWnd& AnyWindow()
    {
        const CItfScrollBar* bar = m_Box.GetColumn(m_Box.GetColumnCount() - 1)->GetScrollBar();
        const int which = Byte() % 3;
        if (which == 2 && bar != nullptr)
            return *FindWindow(bar->GetId());
        return which == 0 ? static_cast<CItfWnd&>(m_Box) : Column(AnyColumn());
    }
    static void Mouse(CItfWnd& wnd, std::uint32_t msg, int x, int y)
    {
        POINT point = {x, y};
        wnd.ClientToScreen(&point);
        wnd.Dispatch(msg, 0, static_cast<std::int32_t>(point.y * 0x10000 + point.x));
    }

    void AddColumn()
    {
        static constexpr std::uint32_t styles[] = {0, RBCOL_CENTER, RBCOL_NUMBER, RBCOL_RIGHT};
        m_Box.AddColumn(45, styles[Byte() % 4]);
        for (Items& row : m_Rows)
            row.emplace_back(row[0].m_nData, "", row[0].m_nOrder);
        Refresh();
    }
    void AddRows()
    {
        constexpr std::size_t MOST_ROWS = 40;
        for (int left = Byte() % 6; left >= 0 && m_Rows.size() < MOST_ROWS; --left) {
            const ItfListItem item = Item(Byte() % 8);
            m_bWrongIndex = m_Box.AddRow(item) != static_cast<int>(m_Rows.size()) || m_bWrongIndex;
            ItfListItem other = item;
            other.m_Text.clear();
            m_Rows.emplace_back(static_cast<std::size_t>(m_Box.GetColumnCount()), other)[0] = item;
        }
    }
    /// Keeps the row's data, by which all columns select alike.
    void SetItem()
    {
        const int row = Byte() % 44 - 2;
        const int column = Byte() % 5 - 1;
        const bool exists = row >= 0 && row < static_cast<int>(m_Rows.size()) && column >= 0 &&
                            column < m_Box.GetColumnCount();
        const ItfListItem item = Item(exists ? m_Rows[static_cast<std::size_t>(row)][0].m_nData : 0);
        m_Box.SetItem(row, column, item);
        if (exists)
            m_Rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] = item;
    }
    void Refresh()
    {
        m_Box.Refresh(true);
        m_Shown = m_Rows;
    }
    void SortRows(int column, int type)
    {
        if (column < 0 || column >= m_Box.GetColumnCount())
            return;
        const auto text = [](const ItfListItem& item) {
            std::string lower = item.m_Text;
            for (char& c : lower)
                c = c == '\xc4' ? '\xe4' : (c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c);
            return lower;
        };
        const auto at = static_cast<std::size_t>(column);
        std::stable_sort(m_Rows.begin(), m_Rows.end(), [&](const Items& a, const Items& b) {
            if (type == SORT_NUMBER)
                return std::atoll(a[at].m_Text.c_str()) < std::atoll(b[at].m_Text.c_str());
            if (type == SORT_TEXT)
                return a[at].m_Text < b[at].m_Text;
            return a[0].m_nOrder != b[0].m_nOrder ? a[0].m_nOrder < b[0].m_nOrder : text(a[0]) < text(b[0]);
        });
    }
    void ClickHeader()
    {
        const int down = Byte() % (CELLS + 1);
        const int up = Byte() % 2 != 0 ? down : Byte() % CELLS;
        Mouse(m_Box, WM_LBUTTONDOWN, down * CELL_WIDTH, 5);
        Mouse(m_Box, WM_LBUTTONUP, up * CELL_WIDTH, 5);
        if ((m_Box.GetStyle() & RBSTYLE_NOSORT) != 0 || down != up || down == CELLS || SORTS[down].column < 0)
            return;
        SortRows(SORTS[down].column, SORTS[down].type);
        m_Shown = m_Rows;
    }

    void Step(int operation)
    {
        static constexpr std::uint32_t keys[] = {VK_RETURN, VK_DELETE, VK_PRIOR, VK_NEXT, VK_UP, VK_DOWN};
        if (operation == 0) {
            AddRows();
        } else if (operation == 1) {
            SetItem();
        } else if (operation == 2) {
            Refresh();
        } else if (operation == 3) {
            m_Box.Clear();
            m_Rows.clear();
            m_Shown.clear();
        } else if (operation == 4) {
            const int column = Byte() % 5 - 1;
            const int type = Byte() % 3;
            m_Box.Sort(column, type);
            SortRows(column, type);
        } else if (operation == 5) {
            m_Box.SetCurSel(Byte() % 44 - 2);
        } else if (operation == 6) {
            m_Box.SelectData(Byte() % 10);
        } else if (operation == 7) {
            CItfWnd& list = Column(AnyColumn());
            Mouse(list, Byte() % 4 == 0 ? WM_LBUTTONDBLCLK : WM_LBUTTONDOWN, 2, Byte() % 50);
        } else if (operation == 8) {
            AnyWindow().Dispatch(WM_KEYDOWN, keys[Byte() % 6], 0);
        } else if (operation == 9) {
            const int delta = Byte() % 2 != 0 ? WHEEL_DELTA : -WHEEL_DELTA;
            AnyWindow().Dispatch(WM_MOUSEWHEEL, static_cast<std::uint32_t>(delta) << 16, 0);
        } else if (operation == 10) {
            ClickHeader();
        } else if (m_Box.GetColumnCount() < 4) {
            AddColumn();
        }
    }

    static bool Same(const ItfListItem& a, const ItfListItem& b)
    {
        return a.m_nOrder == b.m_nOrder && a.m_Text == b.m_Text && a.m_nData == b.m_nData;
    }
    std::string Check() const
    {
        const int count = static_cast<int>(m_Shown.size());
        const int sel = m_Box.GetCurSel();
        const int top = m_Box.GetColumn(0)->GetTopIndex();
        if (m_bWrongIndex || sel < -1 || sel >= count || top < 0 || top > std::max(count - 1, 0))
            return "an index out of range";
        const int last = m_Box.GetColumnCount() - 1;
        for (int c = 0; c <= last; ++c) {
            const CItfListBox& list = *m_Box.GetColumn(c);
            if (list.GetCount() != count || list.GetCurSel() != sel || list.GetTopIndex() != top)
                return "columns out of step";
            const CItfScrollBar* bar = list.GetScrollBar();
            const bool needsBar = c == last && ((m_Box.GetStyle() & IWS_VSCROLL) != 0 || count > PAGE);
            if ((bar != nullptr) != needsBar || (bar != nullptr && bar->GetPos() != top))
                return "scroll bar";
            const auto column = static_cast<std::size_t>(c);
            for (std::size_t row = 0; row < m_Rows.size(); ++row) {
                if (!Same(m_Box.GetItem(static_cast<int>(row), c), m_Rows[row][column]))
                    return "row";
            }
            for (std::size_t row = 0; row < m_Shown.size(); ++row) {
                if (!Same(list.GetItem(static_cast<int>(row)), m_Shown[row][column]))
                    return "shown row";
            }
        }
        return "";
    }

    std::vector<std::uint8_t> m_Input;
    std::size_t m_nNext = 0;
    CItfReportBox m_Box;
    std::vector<Items> m_Rows;
    std::vector<Items> m_Shown;
    bool m_bWrongIndex = false;
};

} // namespace report_test
