#pragma once
// The table of the toolkit: a row of header cells above columns that scroll and select together.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "controls/itflistbox.h"

enum ItfReportBoxStyle : std::uint32_t {
    RBSTYLE_NOSELECT = 0x1000000, ///< the columns show no highlight
    RBSTYLE_NOSORT = 0x4000000,   ///< header clicks do nothing
};

/// Of a column, and of the header cell that sorts it.
enum ItfReportColumnStyle : std::uint32_t {
    RBCOL_RIGHT = 0x80000000,
    RBCOL_CENTER = 0x40000000, ///< wins over RBCOL_RIGHT
    RBCOL_FILEDIR = 0x8000000, ///< the cell sorts with SORT_FILEDIR
    RBCOL_NUMBER = 0x2000000,  ///< the cell sorts with SORT_NUMBER; wins over RBCOL_FILEDIR
};

enum ItfReportSort : int {
    SORT_TEXT = 0,    ///< the column's text, in byte order
    SORT_NUMBER = 1,  ///< the decimal integer that the column's text begins with
    SORT_FILEDIR = 2, ///< the first column's group, then its text without regard to case
};

struct ItfReportHeader {
    RECT rect;           ///< in the report box
    int column;          ///< -1 sorts nothing
    std::uint32_t style; ///< RBCOL_…
    std::string caption;
};

/// Holds the rows; its columns are list boxes, one field of all rows each, which show what the rows were at
/// the last Refresh. The last column alone has the scroll bar. All columns of a row share its data and group.
/// A list is filled by Clear, AddRow and SetItem for each row, Sort where wanted, Refresh, then SetCurSel or
/// SelectData. A click on a header cell sorts ascending by its column; the cell pressed last shows in the
/// active font.
///
/// Tells its parent the codes of ItfListNotify but LIST_SCROLLED: a press on a line LIST_SELECTED, unless the
/// line is selected, then LIST_PRESSED; Enter and Delete their code and then LIST_SELECTED. With the focus on
/// the box itself, as after a press on a header, keys and wheel move the selection without LIST_SELECTED.
/// Styles: RBSTYLE_…, IWS_VSCROLL for a bar even when all rows fit.
///
/// Owns its columns, a reference to each of its three fonts and to its highlight.
class CItfReportBox : public CItfWnd
{
  public:
    ~CItfReportBox() override;

    /// Without columns, headers and rows.
    bool Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                std::uint32_t style, IEngine* core) override;
    void Draw() override;
    const Row* GetMessageTable() const override;

    /// For all columns, also later ones. False when there is no such font, and nothing changes.
    bool SetListFont(const char* name);
    /// The name with "A" behind it becomes the font of the active cell where that exists, else the same font.
    /// False when there is no such font, and nothing changes.
    bool SetHeaderFont(const char* name);
    /// The highlight of the columns that there are. False when there is no such sprite, and nothing changes.
    bool SetSelSprite(const char* name);

    /// Right of the earlier columns, which aren't held within the inner rectangle. `width` in pixels. Each
    /// row gets an item without a text for it. False, and nothing changes, when there are too many windows.
    bool AddColumn(int width, std::uint32_t style);
    /// Null text is an empty one; `column` needn't exist.
    void AddHeader(const char* text, int column, std::uint32_t style, const RECT& rect);

    /// The first column gets the item, the others a copy of it without its text. Gives the row's index.
    int AddRow(const ItfListItem& item);
    /// An empty item for a place that doesn't exist.
    const ItfListItem& GetItem(int row, int column) const;
    /// Nothing for a place that doesn't exist.
    void SetItem(int row, int column, const ItfListItem& item);
    /// Shows the rows in their order, without a selection, from the first one on.
    void Refresh(bool redraw);
    /// Drops all rows, also from the columns. Doesn't repaint.
    void Clear();
    /// Ascending; equal rows keep their order. Nothing for a column that doesn't exist. The columns show the
    /// new order after Refresh. type: SORT_…
    void Sort(int column, int type);
    /// Whether the columns show a highlight. Doesn't repaint.
    void EnableSelect(bool on);

    // Those of the first column, and so as of the last Refresh.
    bool HasSelection() const;
    int GetCurSel() const;  ///< -1 for none
    int GetCurData() const; ///< -1 for none
    int GetCount() const;
    /// Held within the rows. Repaints.
    void SetCurSel(int index);
    /// The last row with this data; nothing when there is none. Doesn't repaint.
    void SelectData(int data);
    /// The first row whose first item has this data, -1 for none.
    int FindRow(int data) const;

    int GetColumnCount() const { return static_cast<int>(m_Columns.size()); }
    /// Null for a column that doesn't exist. The box owns it.
    const CItfListBox* GetColumn(int column) const;
    int GetHeaderCount() const { return static_cast<int>(m_Headers.size()); }
    /// The header cell pressed last, -1 for none.
    int GetActiveHeader() const { return m_nActiveHeader; }

  private:
    struct Column {
        int width;
        std::unique_ptr<CItfListBox> list;
    };
    using ReportRow = std::vector<ItfListItem>; ///< an item for each column

    std::vector<Column> m_Columns;
    std::vector<ItfReportHeader> m_Headers; ///< in the resource's order
    std::vector<ReportRow> m_Rows;
    int m_nHeaderFont = -1;
    int m_nHeaderFontActive = -1;
    int m_nListFont = -1;
    int m_nSelSprite = -1; ///< -1 until SetSelSprite: the columns have their own default
    int m_nActiveHeader = -1;
    bool m_bHeaderDown = false; ///< a press on a header cell is under way

    std::uint32_t BaseColumnStyle() const;
    bool IsColumn(int column) const { return column >= 0 && column < GetColumnCount(); }
    int HeaderAt(const POINT& point) const;
    /// For each column, as long as this box exists; whether it still does.
    template <class Act>
    bool ForEachColumn(Act act);
    void SortByHeader(const ItfReportHeader& header);
    void ReleaseResources();

    Word OnNotify(std::uint32_t wParam, std::int32_t lParam);
    Word OnLButtonDown(std::uint32_t wParam, std::int32_t lParam);
    Word OnLButtonUp(std::uint32_t wParam, std::int32_t lParam);
    Word OnKeyDown(std::uint32_t wParam, std::int32_t lParam);
    Word OnMouseWheel(std::uint32_t wParam, std::int32_t lParam);
};
