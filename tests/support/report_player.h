#pragma once
// Operations in any order on a report box and on a plain model of it, which does everything one step at a
// time. For the unit tests and the fuzzer, which bring engine, fonts and sprites.

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
constexpr int HEADER_HEIGHT = 15;
constexpr int HEADER_WIDTH = 30;

/// A list box as it would be without any care for speed.
struct ModelColumn {
    bool mayHaveBar = true;
    bool alwaysBar = false;
    bool highlight = true;
    bool bar = false;
    int sel = -1;
    int top = 0;
    std::vector<ItfListItem> items;

    int Count() const { return static_cast<int>(items.size()); }
    void Layout()
    {
        if (!bar && mayHaveBar && (Count() > PAGE || alwaysBar))
            bar = true;
        if (bar && mayHaveBar && !alwaysBar && Count() < PAGE)
            bar = false;
    }
    void Reset()
    {
        items.clear();
        sel = -1;
        top = 0;
        Layout();
    }
    void Add(const ItfListItem& item)
    {
        items.push_back(item);
        Layout();
    }
    void Select(int index)
    {
        sel = index < 0 ? 0 : index;
        if (sel >= Count())
            sel = Count() - 1;
        if (sel != -1 && (sel < top || sel >= top + PAGE)) {
            top = std::max(0, std::min(sel - PAGE + 1, Count() - 1));
            if (Count() <= PAGE)
                top = 0;
        }
        Layout();
    }
    void SelectData(int data)
    {
        for (int i = 0; i < Count(); ++i) {
            if (items[static_cast<std::size_t>(i)].m_nData == data)
                Select(i);
        }
    }
    void Scroll(int index)
    {
        top = Count() <= PAGE ? 0 : std::max(0, std::min(index, Count() - 1));
        Layout();
    }
};

/// Reads an input: a style byte, then steps of an operation byte and its operands. 0 stands past the end.
class ReportPlayer : public CItfWnd
{
  public:
    ReportPlayer(IEngine& engine, std::vector<std::uint8_t> input) : m_Input(std::move(input))
    {
        CItfWnd::Create(nullptr, nullptr, nullptr, nullptr, 1, 0, &engine);
        Show(true);
        CItfWnd::SetDrawing(true);
        const int style = Byte();
        m_bAlwaysBar = (style & 1) != 0;
        m_bHighlight = (style & 2) == 0;
        m_bSorts = (style & 12) != 12;
        const std::uint32_t bits = (m_bAlwaysBar ? std::uint32_t{IWS_VSCROLL} : 0) |
                                   (m_bHighlight ? 0 : std::uint32_t{RBSTYLE_NOSELECT}) |
                                   (m_bSorts ? 0 : std::uint32_t{RBSTYLE_NOSORT});
        const RECT rect = {10, 20, 210, 120};
        m_Box.Create(nullptr, nullptr, &rect, this, 7, bits, &engine);
        m_Box.SetInnerRect({0, HEADER_HEIGHT, 200, HEADER_HEIGHT + PAGE * LINE_HEIGHT + 5});
        m_Box.Show(true);
        for (int i = 0; i < 5; ++i)
            m_Box.AddHeader("x", HEADERS[i].column, HEADERS[i].style,
                            {i * HEADER_WIDTH, 0, (i + 1) * HEADER_WIDTH, HEADER_HEIGHT});
    }

    /// Empty, or the first thing in which box and model differ.
    std::string Run()
    {
        constexpr int MOST_STEPS = 400;
        std::string fault = Compare();
        for (int step = 0; fault.empty() && !IsAtEnd() && step < MOST_STEPS; ++step) {
            const int operation = Byte() % 17;
            m_Expected.clear();
            m_Got.clear();
            Step(operation);
            fault = Compare();
            if (!fault.empty())
                fault += " after step " + std::to_string(step) + ", operation " + std::to_string(operation);
        }
        CItfWnd::ReleaseCapture();
        return fault;
    }

  private:
    struct Header {
        int column;
        std::uint32_t style;
    };
    static constexpr Header HEADERS[5] = {{0, 0},
                                          {1, RBCOL_NUMBER},
                                          {0, RBCOL_FILEDIR},
                                          {-1, RBCOL_NUMBER},
                                          {9, 0}}; ///< the last one names no column

    const Row* GetMessageTable() const override
    {
        static const Row rows[] = {On(ITFM_NOTIFY, &ReportPlayer::OnNotify), EndOfTable()};
        return rows;
    }
    Word OnNotify(std::uint32_t code, std::int32_t control)
    {
        m_Got.push_back(control == 7 ? static_cast<int>(code) : -1);
        return 0;
    }

    // The input.
    bool IsAtEnd() const { return m_nNext >= m_Input.size(); }
    int Byte() { return IsAtEnd() ? 0 : m_Input[m_nNext++]; }
    std::string Text()
    {
        static const char* const texts[] = {
            "",
            "a",
            "B",
            "b",
            "10",
            "9",
            "-3",
            "+4 ships",
            "abcdefg",
            "abcdefgh",
            "ABCDEFGH",
            "a long text 1",
            "a long text 2",
            "a long text",
            "\xc4",
            "\xe4",
            "12abc",
            "007",
            "-",
            "\x80",
            "abcdefg\x01",
            "99999999999",
            "-99999999999",
            "z",
        };
        return texts[static_cast<std::size_t>(Byte()) % std::size(texts)];
    }
    ItfListItem Item()
    {
        const int data = Byte() % 8;
        const std::string text = Text();
        const int order = Byte() % 3 - 1;
        return ItfListItem(data, text, order, static_cast<std::uint32_t>(order + 5));
    }

    // The windows.
    CItfListBox* List(int column)
    {
        const CItfListBox* list = m_Box.GetColumn(column);
        return list != nullptr ? dynamic_cast<CItfListBox*>(FindWindow(list->GetId())) : nullptr;
    }
    int AnyColumn()
    {
        const int byte = Byte();
        return m_Columns.empty() ? -1 : byte % static_cast<int>(m_Columns.size());
    }
    static std::int32_t PointIn(const CItfWnd& wnd, int x, int y)
    {
        POINT point = {x, y};
        wnd.ClientToScreen(&point);
        return static_cast<std::int32_t>(point.y * 0x10000 + point.x);
    }
    static void Wheel(CItfWnd& wnd, int delta)
    {
        wnd.Dispatch(WM_MOUSEWHEEL, static_cast<std::uint32_t>(delta) << 16, 0);
    }

    // The model.
    template <class Act>
    void ForAll(Act act)
    {
        std::for_each(m_Columns.begin(), m_Columns.end(), act);
    }
    ModelColumn& Model(int column) { return m_Columns[static_cast<std::size_t>(column)]; }
    void TellSelection(int column)
    {
        const int sel = Model(column).sel;
        ForAll([sel](ModelColumn& all) { all.Select(sel); });
        m_Expected.push_back(LIST_SELECTED);
    }
    void TellTop(int column)
    {
        const int top = Model(column).top;
        ForAll([top](ModelColumn& all) { all.Scroll(top); });
    }
    void RefreshModel()
    {
        for (std::size_t c = 0; c < m_Columns.size(); ++c) {
            m_Columns[c].Reset();
            for (const auto& row : m_Rows)
                m_Columns[c].Add(row[c]);
        }
    }
    static std::string Lower(std::string text)
    {
        for (char& c : text)
            c = c == '\xc4' ? '\xe4' : (c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c);
        return text;
    }
    void SortModel(int column, int type)
    {
        if (column < 0 || column >= static_cast<int>(m_Columns.size()))
            return;
        const auto at = static_cast<std::size_t>(column);
        std::stable_sort(m_Rows.begin(), m_Rows.end(), [&](const auto& a, const auto& b) {
            if (type == SORT_NUMBER)
                return std::atoll(a[at].m_Text.c_str()) < std::atoll(b[at].m_Text.c_str());
            if (type == SORT_TEXT)
                return a[at].m_Text < b[at].m_Text;
            if (a[0].m_nOrder != b[0].m_nOrder)
                return a[0].m_nOrder < b[0].m_nOrder;
            return Lower(a[0].m_Text) < Lower(b[0].m_Text);
        });
    }

    void AddColumn()
    {
        constexpr std::size_t MOST_COLUMNS = 4;
        if (m_Columns.size() >= MOST_COLUMNS)
            return;
        static constexpr std::uint32_t styles[] = {0, RBCOL_CENTER, RBCOL_NUMBER, RBCOL_FILEDIR, RBCOL_RIGHT};
        m_Box.AddColumn(45, styles[static_cast<std::size_t>(Byte()) % std::size(styles)]);
        ForAll([this](ModelColumn& earlier) {
            earlier.mayHaveBar = false;
            earlier.bar = false;
            earlier.highlight = earlier.highlight && m_bHighlight;
        });
        ModelColumn column;
        column.alwaysBar = m_bAlwaysBar;
        column.highlight = m_bHighlight;
        m_Columns.push_back(column);
        for (auto& row : m_Rows)
            row.push_back(row.empty() ? ItfListItem()
                                      : ItfListItem(row[0].m_nData, std::string(), row[0].m_nOrder));
    }
    void AddRow()
    {
        constexpr std::size_t MOST_ROWS = 40;
        const ItfListItem item = Item();
        if (m_Rows.size() >= MOST_ROWS)
            return;
        const int index = m_Box.AddRow(item);
        ItfListItem other = item;
        other.m_Text.clear();
        m_Rows.emplace_back(m_Columns.size(), other);
        if (!m_Columns.empty())
            m_Rows.back()[0] = item;
        if (index + 1 != static_cast<int>(m_Rows.size()))
            m_Got.push_back(-2);
    }
    void SetItem()
    {
        const int row = Byte() % 44 - 2;
        const int column = Byte() % 7 - 1;
        const ItfListItem item = Item();
        m_Box.SetItem(row, column, item);
        if (row >= 0 && row < static_cast<int>(m_Rows.size()) && column >= 0 &&
            column < static_cast<int>(m_Columns.size()))
            m_Rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] = item;
    }
    void PressLine(std::uint32_t msg)
    {
        const int column = AnyColumn();
        const int y = Byte() % 50;
        if (column < 0)
            return;
        ModelColumn& model = Model(column);
        const int line = y / LINE_HEIGHT < PAGE && model.top + y / LINE_HEIGHT < model.Count()
                             ? model.top + y / LINE_HEIGHT
                             : -1;
        List(column)->Dispatch(msg, 0, PointIn(*List(column), 2, y));
        if (line < 0)
            return;
        if (msg == WM_LBUTTONDBLCLK) {
            m_Expected.push_back(LIST_DOUBLECLICKED);
            return;
        }
        if (line != model.sel) {
            model.Select(line);
            TellSelection(column);
        }
        m_Expected.push_back(LIST_PRESSED);
    }
    static int Moved(int key, int sel)
    {
        switch (key) {
        case VK_PRIOR:
            return sel - PAGE;
        case VK_NEXT:
            return sel + PAGE;
        case VK_UP:
            return sel - 1;
        default:
            return sel + 1;
        }
    }
    void Key(bool toColumn)
    {
        static const int keys[] = {VK_RETURN, VK_DELETE, VK_PRIOR, VK_NEXT, VK_UP, VK_DOWN, VK_HOME};
        const int key = keys[static_cast<std::size_t>(Byte()) % std::size(keys)];
        const int column = AnyColumn();
        CItfWnd& wnd = toColumn && column >= 0 ? static_cast<CItfWnd&>(*List(column)) : m_Box;
        wnd.Dispatch(WM_KEYDOWN, static_cast<std::uint32_t>(key), 0);
        if (column < 0 || key == VK_HOME)
            return;
        const bool moves = key != VK_RETURN && key != VK_DELETE;
        if (!moves)
            m_Expected.push_back(key == VK_RETURN ? LIST_ENTER : LIST_DELETE);
        if (toColumn) {
            if (moves)
                Model(column).Select(Moved(key, Model(column).sel));
            TellSelection(column);
        } else {
            const int sel = moves ? Moved(key, m_Columns[0].sel) : m_Columns[0].sel;
            ForAll([sel](ModelColumn& all) { all.Select(sel); });
        }
    }
    void TurnWheel()
    {
        const int delta = Byte() % 2 != 0 ? WHEEL_DELTA : -WHEEL_DELTA;
        const int step = delta < 0 ? 1 : -1;
        const int column = AnyColumn();
        switch (Byte() % 3) {
        case 0: // over the header cells
            Wheel(m_Box, delta);
            if (column >= 0) {
                const int sel = m_Columns[0].sel + step;
                ForAll([sel](ModelColumn& all) { all.Select(sel); });
            }
            break;
        case 1:
            if (column < 0)
                break;
            Wheel(*List(column), delta);
            Model(column).Scroll(Model(column).top + step);
            TellTop(column);
            break;
        default: // over the bar
            if (column < 0 || !m_Columns.back().bar)
                break;
            const int last = static_cast<int>(m_Columns.size()) - 1;
            if (List(last)->GetScrollBar() == nullptr)
                break; // which the comparison finds
            Wheel(*FindWindow(List(last)->GetScrollBar()->GetId()), delta);
            const int highest = Model(last).Count() - PAGE + 1;
            Model(last).top = std::max(0, std::min(Model(last).top + step, highest));
            TellTop(last);
        }
    }
    void Header(std::uint32_t msg)
    {
        const int x = Byte();
        const int y = Byte() % (HEADER_HEIGHT + 2);
        const int cell = y < HEADER_HEIGHT && x < 5 * HEADER_WIDTH ? x / HEADER_WIDTH : -1;
        m_Box.Dispatch(msg, 0, PointIn(m_Box, x, y));
        if (msg == WM_LBUTTONDOWN) {
            if (!m_bSorts)
                return;
            m_nActive = cell;
            m_bDown = m_bDown || cell >= 0;
            return;
        }
        if (m_bDown && cell >= 0 && cell == m_nActive && HEADERS[cell].column >= 0) {
            static constexpr int types[] = {SORT_TEXT, SORT_NUMBER, SORT_FILEDIR, SORT_NUMBER, SORT_TEXT};
            SortModel(HEADERS[cell].column, types[cell]);
            RefreshModel();
        }
        m_bDown = false;
    }

    void Step(int operation)
    {
        switch (operation) {
        case 0:
        case 1:
            AddRow();
            break;
        case 2:
            SetItem();
            break;
        case 3:
            m_Box.Refresh(Byte() % 2 != 0);
            RefreshModel();
            break;
        case 4:
            m_Box.Clear();
            m_Rows.clear();
            ForAll([](ModelColumn& all) { all.Reset(); });
            break;
        case 5: {
            const int column = Byte() % 7 - 2;
            const int type = Byte() % 3;
            m_Box.Sort(column, type);
            SortModel(column, type);
            break;
        }
        case 6: {
            const int index = Byte() % 44 - 2;
            m_Box.SetCurSel(index);
            ForAll([index](ModelColumn& all) { all.Select(index); });
            break;
        }
        case 7: {
            const int data = Byte() % 10;
            m_Box.SelectData(data);
            ForAll([data](ModelColumn& all) { all.SelectData(data); });
            break;
        }
        case 8:
        case 9:
            PressLine(operation == 8 ? WM_LBUTTONDOWN : WM_LBUTTONDBLCLK);
            break;
        case 10:
        case 11:
            Key(operation == 10);
            break;
        case 12:
            TurnWheel();
            break;
        case 13:
        case 14:
            Header(operation == 13 ? WM_LBUTTONDOWN : WM_LBUTTONUP);
            break;
        case 15: {
            const bool on = Byte() % 2 != 0;
            m_Box.EnableSelect(on);
            ForAll([on](ModelColumn& all) { all.highlight = on; });
            break;
        }
        default:
            AddColumn();
        }
    }

    static bool Same(const ItfListItem& a, const ItfListItem& b)
    {
        return a.m_nOrder == b.m_nOrder && a.m_Text == b.m_Text && a.m_nData == b.m_nData &&
               a.m_nColour == b.m_nColour;
    }
    std::string Compare()
    {
        if (m_Got != m_Expected)
            return "notifications";
        if (m_Box.GetColumnCount() != static_cast<int>(m_Columns.size()))
            return "number of columns";
        if (m_Box.GetActiveHeader() != m_nActive || (GetCaptureId() == m_Box.GetId()) != m_bDown)
            return "header press";
        for (int c = 0; c < m_Box.GetColumnCount(); ++c) {
            const std::string fault = CompareColumn(*List(c), Model(c), c);
            if (!fault.empty())
                return fault + " of column " + std::to_string(c);
        }
        const ModelColumn none;
        const ModelColumn& first = m_Columns.empty() ? none : m_Columns[0];
        const int data = first.sel < 0 ? -1 : first.items[static_cast<std::size_t>(first.sel)].m_nData;
        if (m_Box.GetCount() != first.Count() || m_Box.GetCurSel() != first.sel ||
            m_Box.GetCurData() != data || m_Box.HasSelection() != (first.sel >= 0))
            return "what the box says of its first column";
        return "";
    }
    std::string CompareColumn(const CItfListBox& list, const ModelColumn& model, int column)
    {
        if (list.GetCount() != model.Count())
            return "number of items";
        if (list.GetCurSel() != model.sel)
            return "selection";
        if (list.GetTopIndex() != model.top)
            return "top line";
        if ((list.GetScrollBar() != nullptr) != model.bar)
            return "scroll bar";
        if (model.bar && (list.GetScrollBar()->GetPos() != model.top || !list.GetScrollBar()->IsVisible()))
            return "scroll bar's position";
        if (((list.GetStyle() & LBSTYLE_NOSELECT) == 0) != model.highlight)
            return "highlight";
        for (int i = 0; i < model.Count(); ++i) {
            if (!Same(list.GetItem(i), model.items[static_cast<std::size_t>(i)]))
                return "item";
        }
        for (std::size_t row = 0; row < m_Rows.size(); ++row) {
            if (!Same(m_Box.GetItem(static_cast<int>(row), column),
                      m_Rows[row][static_cast<std::size_t>(column)]))
                return "row";
        }
        return "";
    }

    std::vector<std::uint8_t> m_Input;
    std::size_t m_nNext = 0;
    CItfReportBox m_Box;
    bool m_bAlwaysBar = false;
    bool m_bHighlight = true;
    bool m_bSorts = true;
    std::vector<ModelColumn> m_Columns;
    std::vector<std::vector<ItfListItem>> m_Rows;
    int m_nActive = -1;
    bool m_bDown = false;
    std::vector<int> m_Expected;
    std::vector<int> m_Got;
};

} // namespace report_test
