#pragma once
// One column of lines with a selected line, a top line and a scroll bar: alone, or as a column of a report
// box.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "controls/itflistitem.h"
#include "kernel/itfwnd.h"

class CItfScrollBar;

/// The resource knows only the first three by name; the others are set by code.
enum ItfListBoxStyle : std::uint32_t {
    LBSTYLE_RIGHT = 0x80000000,
    LBSTYLE_CENTER = 0x40000000,   ///< wins over LBSTYLE_RIGHT
    LBSTYLE_NOSELECT = 0x10000000, ///< the highlight isn't drawn; the selection goes on working
    LBSTYLE_SORTED = 0x8000000,    ///< AddItem keeps the items sorted by group, then by text
    LBSTYLE_NOBAR = 0x4000000,     ///< makes no scroll bar, whatever the number of lines
    LBSTYLE_NOWHEEL = 0x2000000,
    LBSTYLE_PASSIVE = 0x1000000, ///< doesn't repaint itself after mouse input: its parent does
    LBSTYLE_BARSPACE = 0x100000, ///< keeps the scroll bar's place free even without a bar
};

/// What list and report boxes tell their parents.
enum ItfListNotify : int {
    LIST_PRESSED = 1,       ///< a press landed on a line
    LIST_SELECTED = 2,      ///< the mouse changed the selection, or the box took a key
    LIST_DOUBLECLICKED = 3, ///< a double click landed on a line
    LIST_SCROLLED = 4,      ///< the wheel or the bar moved the top line; a report box keeps it to itself
    LIST_ENTER = 5,
    LIST_DELETE = 6,
};

/// The lines stand below each other in the inner rectangle, one font height each. A page is as many as fit
/// there as a whole; with a font that has no height all of them count as fitting. The resource's inner
/// rectangle lasts until the first change of the items: from then on the inner rectangle is the client
/// rectangle, less the place of the bar.
///
/// A press on a line sends LIST_SELECTED, unless the line is selected, then LIST_PRESSED. Enter and Delete
/// send their own code and then LIST_SELECTED, as do the keys that move the selection.
///
/// Owns its bar, a reference to its font and one to its highlight sprite. Invariant: the selection is -1 or
/// the index of an item.
class CItfListBox : public CItfWnd
{
  public:
    CItfListBox();
    ~CItfListBox() override;

    bool Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                std::uint32_t style, IEngine* core) override;
    void Draw() override;
    const Row* GetMessageTable() const override;

    /// At the end; with LBSTYLE_SORTED before the first item that sorts after it. Gives the item's index.
    /// Like all changes of items, selection and top line it neither repaints the lines nor tells the parent.
    int AddItem(const ItfListItem& item);
    /// An index below 0 is the first place, one at or past the end the last.
    void InsertItem(int index, const ItfListItem& item);
    /// The same as ResetContent and then AddItem of itemOf(0) to itemOf(count - 1), in linear time.
    void Fill(std::size_t count, const std::function<const ItfListItem&(std::size_t)>& itemOf);
    /// No items, no selection, the top line 0.
    void ResetContent();

    /// False when there is no such font, and nothing changes. Doesn't lay out.
    bool SetFont(const char* name);
    /// Takes a reference of its own to a font that is loaded.
    void SetFontHandle(int font);
    /// Takes over the caller's reference to the highlight; -1 for none.
    void SetSelSprite(int sprite);

    int GetCount() const { return static_cast<int>(m_Items.size()); }
    /// An empty item for an index that doesn't exist.
    const ItfListItem& GetItem(int index) const;
    /// -1 for an index that doesn't exist.
    int GetItemData(int index) const;
    int GetCurSel() const { return m_nCurSel; }
    /// -1 with no selection.
    int GetCurData() const { return GetItemData(m_nCurSel); }
    bool HasSelection() const { return m_nCurSel >= 0; }
    /// Held within the items, so that nothing but ResetContent takes the selection from a filled box. A line
    /// that isn't shown comes to the bottom of the page.
    void SetCurSel(int index);
    /// SetCurSel for each item with this data: the last one stays selected.
    void SelectData(int data);
    /// Held within the items; 0 when all of them fit.
    void SetTopIndex(int index);
    int GetTopIndex() const { return m_nTopIndex; }
    int GetPageSize() const;

    /// From now on with LBSTYLE_NOBAR and without LBSTYLE_BARSPACE; a bar that it has goes.
    void GiveUpScrollBar();
    /// Null while the box has none.
    const CItfScrollBar* GetScrollBar() const { return m_pScrollBar.get(); }
    int GetFontHandle() const { return m_nFont; }
    int GetSelSprite() const { return m_nSelSprite; }

  private:
    std::vector<ItfListItem> m_Items;
    int m_nCurSel = -1; ///< -1 for none
    int m_nTopIndex = 0;
    int m_nFont = -1;
    int m_nSelSprite = -1;
    std::unique_ptr<CItfScrollBar> m_pScrollBar;

    bool IsItem(int index) const { return index >= 0 && index < GetCount(); }
    /// The line under a point of the window, -1 for none.
    int LineAt(const POINT& point) const;
    void MoveSelection(int index);
    // Each of these may paint, and so end with this window deleted.
    void Layout();
    void MakeScrollBar();
    void RepaintAfterInput();

    Word OnLButtonDown(std::uint32_t wParam, std::int32_t lParam);
    Word OnLButtonUp(std::uint32_t wParam, std::int32_t lParam);
    Word OnLButtonDblClk(std::uint32_t wParam, std::int32_t lParam);
    Word OnMouseWheel(std::uint32_t wParam, std::int32_t lParam);
    Word OnKeyDown(std::uint32_t wParam, std::int32_t lParam);
    Word OnNotify(std::uint32_t wParam, std::int32_t lParam);
};
