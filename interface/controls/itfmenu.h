#pragma once
// A flat list of texts over a background, of which the one under the pointer lights up.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "kernel/itfwnd.h"

enum ItfMenuItemFlags : std::uint32_t {
    MENUITEM_POPUP = 0x4,     ///< kept; no behaviour hangs on it
    MENUITEM_DISABLED = 0x20, ///< drawn in the disabled font; a press does nothing
};

enum ItfMenuItemState : std::uint32_t {
    MENUITEM_HIGHLIGHTED = 1,
};

/// An item, or the root, whose items are the menu's.
struct ItfMenuItem {
    static constexpr std::size_t NAME_SIZE = 32;
    static constexpr int ALL_ITEMS = -1;

    char m_szName[NAME_SIZE] = {}; ///< NUL-terminated
    int m_nId = -1;                ///< what the parent is told
    std::uint32_t m_nFlags = 0;
    std::uint32_t m_nState = 0;
    bool m_bHasItems = false;
    RECT m_rc; ///< in the menu's window coordinates
    std::vector<ItfMenuItem> m_Items;
    std::string m_Extra; ///< kept for the owner, not used here

    /// Cuts a text that is too long; null empties it.
    void SetName(const char* name);
    /// The flags whose names occur anywhere in the text; null is none.
    static std::uint32_t ParseFlags(const char* styleText);

    /// Appends a copy.
    void AddItem(const ItfMenuItem& item);
    /// Null out of range. Valid until the next AddItem.
    ItfMenuItem* GetItem(int index);
    const ItfMenuItem* GetItem(int index) const;
    /// This item itself or, depth first, the first one below it; null when there is none.
    ItfMenuItem* FindItem(int id);
    /// Of the item at index, or of ALL_ITEMS; nothing for another index that is out of range. Highlighting
    /// one item takes the highlight off all others.
    void SetItemState(int index, std::uint32_t bits);
    void ClearItemState(int index, std::uint32_t bits);
    /// The index of the first item whose rectangle holds the point, or -1.
    int HitTestItems(const POINT& point) const;
};

/// A press on an item that isn't disabled posts ITFM_COMMAND to the parent, with MENU_COMMAND and the item's
/// id, which arrives with the next frame. Has no styles of its own.
///
/// When the pointer goes from item to item, only the new one's background is repainted, while all texts are
/// drawn over: the lit font's glyphs must not reach beyond those of the plain one.
class CItfMenu : public CItfWnd
{
  public:
    /// First word of what a press posts.
    static constexpr std::uint32_t MENU_COMMAND = 10;

    CItfMenu() = default;
    ~CItfMenu() override;

    bool Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                std::uint32_t style, IEngine* core) override;
    void Draw() override;
    /// Draws the lit item once more.
    void OnTick(int elapsed) override;
    /// Drops the items too.
    void OnDestroy() override;
    const Row* GetMessageTable() const override;

    /// text, styleText and extra may be null.
    void AddItem(const char* text, int id, const char* styleText, const RECT& rect, const char* extra);
    ItfMenuItem& GetRoot() { return m_Root; }
    const ItfMenuItem& GetRoot() const { return m_Root; }
    /// The item that the pointer was last seen over, -1 for none.
    int GetHotItem() const { return m_nHotItem; }

  private:
    int m_nFont = -1;
    int m_nFontActive = -1;
    int m_nFontDisabled = -1;
    int m_nHotItem = -1;
    ItfMenuItem m_Root;

    void ReleaseFonts();
    void DrawItem(const ItfMenuItem& item);
    Word OnMouseMove(std::uint32_t wParam, std::int32_t lParam);
    Word OnLButtonDown(std::uint32_t wParam, std::int32_t lParam);
};
