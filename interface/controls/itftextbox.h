#pragma once
// Read-only text: a label, a number, or a long text that scrolls by whole lines.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "controls/bytebuffer.h"
#include "kernel/itfwnd.h"

class CItfScrollBar;

/// Pixels between a caption and the box's left edge, or the inner rectangle's right one.
constexpr int CAPTION_GAP = 2;

enum ItfTextBoxStyle : std::uint32_t {
    TBSTYLE_CENTER_HOR = 0x10000,
    TBSTYLE_CENTER_VERT = 0x20000,
    TBSTYLE_CENTERED = TBSTYLE_CENTER_HOR | TBSTYLE_CENTER_VERT,
    TBSTYLE_NOVSCROLL = 0x40000,     ///< never a scroll bar; what doesn't fit is cut off
    TBSTYLE_HASCAPTION = 0x80000,    ///< draws the caption beside the text
    TBSTYLE_CAPTIONRIGHT = 0x100000, ///< caption to the right of the inner rectangle; wins over the next
    TBSTYLE_ALIGNRIGHT = 0x200000,   ///< caption ends at the inner rectangle's left edge
};

/// The text lies wrapped in the inner rectangle. When it has more lines than fit, or with IWS_VSCROLL, the
/// box makes a scroll bar for itself, to the right of the inner rectangle. Reacts to the wheel, to the up and
/// down keys, and to its bar; tells its parent nothing.
///
/// Owns its bar and a reference to each of its fonts. A font that doesn't exist shows no text.
class CItfTextBox : public CItfWnd
{
  public:
    CItfTextBox();
    ~CItfTextBox() override;

    bool Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                std::uint32_t style, IEngine* core) override;
    void Draw() override;
    const Row* GetMessageTable() const override;

    /// A copy of the text, from its first line on, without colour marks; null for no text. Always true.
    bool SetText(const char* text);
    /// Appends a copy, which has `colour` (0x00BBGGRR) unless that is null. False for a null text.
    bool AddText(const char* text, const std::uint32_t* colour);
    bool SetInt(int value);
    /// With 5 significant digits, and an exponent where plain notation doesn't fit.
    bool SetFloat(float value);
    /// Never null; valid until the text changes.
    const char* GetText() const { return m_Text.IsEmpty() ? "" : m_Text.GetData(); }

    /// False when there is no such font, and nothing changes. The name with "Dis" behind it becomes the font
    /// of a disabled box where that exists. Neither lays the text out nor repaints.
    bool SetFont(const char* name);
    bool SetCaptionFont(const char* name);

    /// The last line comes to the bottom. Moves the bar; repaints nothing else.
    void ScrollToEnd();
    /// Repaints the text, with what lies behind a box without a background.
    void Redraw();

    int GetTopLine() const { return m_nTopLine; }
    int GetLineCount() const { return m_nLines; }
    /// Null while the box has none.
    const CItfScrollBar* GetScrollBar() const { return m_pScrollBar.get(); }

  private:
    /// A place in the text rather than a pointer: the block of the text moves as it grows.
    struct Mark {
        std::size_t offset;
        std::uint32_t colour;
    };

    CByteBuffer m_Text; ///< with a terminating zero unless empty
    std::unique_ptr<CItfScrollBar> m_pScrollBar;
    int m_nFont = -1;
    int m_nCaptionFont = -1;
    int m_nDisabledFont = -1;
    int m_nLines = 0;   ///< of the whole text, wrapped
    int m_nTopLine = 0; ///< the first line shown
    RECT m_rcText;      ///< where the text is laid out
    std::vector<Mark> m_Colours;

    void Layout();
    int CountLines(const RECT& rect) const;
    /// How many lines fit in the rectangle; all of them with a font that has no height.
    int LinesThatFit(const RECT& rect) const;
    /// False when there is no bar afterwards.
    bool MakeScrollBar();
    void DrawCaption();
    void DrawContent();
    void ScrollTo(int line);
    Word OnNotify(std::uint32_t wParam, std::int32_t lParam);
    Word OnMouseWheel(std::uint32_t wParam, std::int32_t lParam);
    Word OnKeyDown(std::uint32_t wParam, std::int32_t lParam);
};
