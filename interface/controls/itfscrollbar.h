#pragma once
// The vertical scroll bar of text and list boxes, and the horizontal slider of dialogs.

#include <cstdint>

#include "kernel/itfwnd.h"

enum ItfScrollBarStyle : std::uint32_t {
    SBSTYLE_HORIZONTAL = 0x10000,
    SBSTYLE_NOARROWS = 0x20000, ///< all of it is trough; in the horizontal form the thumb jumps to a press
};

enum ItfScrollBarNotify : int {
    SB_CHANGED = 0, ///< the user moved the position, or tried to at the end of the range
};

/// Control id of the bar that a text or list box makes for itself.
inline constexpr int SCROLLBAR_CTRL_ID = 10;

/// A thumb between two arrows: steps on the arrows, pages in the trough, both repeated while the button is
/// held, dragging and the wheel. Tells its parent SB_CHANGED with each of them, as the last thing it does.
///
/// A range whose maximum isn't above its minimum holds the position at the minimum.
class CItfScrollBar : public CItfWnd
{
  public:
    CItfScrollBar() = default;
    ~CItfScrollBar() override;

    /// False when the window can't be created or its thumb doesn't exist; the window is out of the table
    /// then. A missing arrow isn't drawn and has no length.
    bool Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                std::uint32_t style, IEngine* core) override;
    void Draw() override;
    void OnTick(int elapsed) override;
    const Row* GetMessageTable() const override;

    /// Neither repaints nor tells. `page` is what a press in the trough moves by.
    void SetRange(int min, int max, int page);
    /// Repaints, tells nothing. Any value is kept as it comes.
    void SetPos(int pos);
    int GetPos() const { return m_nPos; }
    int GetMin() const { return m_nMin; }
    int GetMax() const { return m_nMax; }
    int GetPage() const { return m_nPage; }

  private:
    /// A position along the bar, from the origin of the inner rectangle. Wide, so that no rectangle or range
    /// can make it overflow.
    using Place = std::int64_t;

    enum Side : int {
        SIDE_NONE = -1,
        SIDE_MIN = 0, ///< up or left
        SIDE_MAX = 1, ///< down or right
    };

    static constexpr int DEFAULT_THUMB = 30;
    static constexpr int DEFAULT_ARROW = 18;

    bool m_bButtonDown = false; ///< pressed on the bar and not up yet
    bool m_bThumbDrag = false;
    bool m_bPageRepeat = false; ///< a press in the trough is paging
    bool m_bPageArmed = false;  ///< the paging may act on m_nTrackPoint
    bool m_bFirstDelay = true;  ///< the long delay before the first repeat is running
    bool m_bPageUp = false;     ///< the paging goes towards the minimum
    int m_nArrowUp = -1;
    int m_nArrowDown = -1;
    int m_nArrowUpActive = -1;
    int m_nArrowDownActive = -1;
    int m_nThumb = -1;
    int m_nMin = 0;
    int m_nMax = 100;
    int m_nPage = 10;
    int m_nPos = 0;
    int m_nThumbSize = DEFAULT_THUMB; ///< pixels along the bar
    Place m_nGrab = 0;                ///< where in the thumb the drag took hold
    Side m_nArrowPressed = SIDE_NONE;
    Place m_nTrackPoint = 0; ///< the pointer's place while paging
    int m_nArrowW = DEFAULT_ARROW;
    int m_nArrowH = DEFAULT_ARROW;
    std::uint32_t m_nLastTime = 0; ///< of the last step, milliseconds

    bool IsHorizontal() const { return (m_dwStyle & SBSTYLE_HORIZONTAL) != 0; }
    bool HasArrows() const { return (m_dwStyle & SBSTYLE_NOARROWS) == 0; }
    /// Whether the thumb jumps to a press, instead of being dragged and paged.
    bool IsJumping() const { return IsHorizontal() && !HasArrows(); }

    void LoadSprites();
    void ReleaseSprites();

    Place ArrowLength() const { return IsHorizontal() ? m_nArrowW : m_nArrowH; }
    Place FarEnd() const { return IsHorizontal() ? m_rcInner.right : m_rcInner.bottom; }
    Place Track() const;
    Place PlaceOf(const POINT& point) const;
    Place ThumbPlace() const;
    /// The arrow at that place.
    Side ArrowAt(Place place) const;
    /// Which side of the thumb the place lies on, SIDE_NONE for on it.
    Side SideOfThumb(Place place) const;
    int HoldInRange(std::int64_t pos) const;

    // Each of these may end with this window deleted.
    void ArrowStep(Side side);
    void PageStep(Side side);
    void MoveThumb(Place place);
    void ChangePos(std::int64_t pos);
    void ShowChange();

    void EndPress();
    void StampTime();
    void DrawPart(int sprite, Place left, Place top, int width, int height);
    Word OnMouseMove(std::uint32_t wParam, std::int32_t lParam);
    Word OnLButtonDown(std::uint32_t wParam, std::int32_t lParam);
    Word OnLButtonUp(std::uint32_t wParam, std::int32_t lParam);
    Word OnMouseWheel(std::uint32_t wParam, std::int32_t lParam);
    void PressTrough(Place place, Side side);
};

/// The horizontal form, as the dialog resource makes it with SBSTYLE_HORIZONTAL.
class CItfSlider : public CItfScrollBar
{
};
