#pragma once
// The text entry control: a caret, a selection, the clipboard and, with a style, several lines.

#include <cstdint>
#include <string>

#include "controls/itfeditlines.h"
#include "controls/itfglyphwidths.h"
#include "kernel/itfwnd.h"

/// Styles of the edit box. A resource writes the last two with the names that other classes have for these
/// bits. A dialog may change them at any time with SetStyle.
enum ItfEditStyle : std::uint32_t {
    EDS_READONLY = 0x20000,  ///< the player can move, select and copy, but not change the text
    EDS_DIGITS = 0x40000,    ///< only digits, "." and "-" can be typed; TBSTYLE_NOVSCROLL
    EDS_MULTILINE = 0x80000, ///< TBSTYLE_HASCAPTION
};

/// What an edit box reports to its parent.
enum ItfEditNotify : int {
    EDIT_ENTER = 10, ///< Enter was typed in a box of one line that isn't read-only
};

/// Reports EDIT_ENTER and nothing else: there is no report of a change, its parent reads the text when it
/// needs it.
///
/// The box takes mouse and keys through its message table; it has the keyboard while it is the focus window.
/// Lines aren't wrapped: a long one scrolls sideways. All text is in code page 1252, a byte a character. The
/// caret's column may lie beyond the end of its line after a move up or down, and counts as the end of the
/// line then.
///
/// Invariant: the caret's line exists. The font and the selection's sprite are held from Create to the end.
class CItfEditBox : public CItfWnd
{
  public:
    CItfEditBox() = default;
    ~CItfEditBox() override;

    bool Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                std::uint32_t style, IEngine* core) override;
    void Draw() override;
    const Row* GetMessageTable() const override;

    /// Replaces the whole text, also of a read-only box. Lines end in CR LF; a box of one line takes the
    /// first. The length limit applies. Caret, scrolling and selection go to the start. Null empties the box.
    void SetText(const char* text);
    /// The lines with CR LF between them. Valid until the next GetText, GetLine or copy. Never null.
    const char* GetText();
    /// Bytes that GetText needs, the terminating zero counted.
    int GetTextLength() const;
    /// As GetText; null for a line that doesn't exist. Lines count from 0.
    const char* GetLine(int line);
    int GetLineCount() const { return m_Lines.GetCount(); }

    /// Line and column are brought into range at their low end, the line also at its high end. The line isn't
    /// made the current one yet, and nothing repaints or scrolls.
    void SetCaret(int line, int col);
    void GetCaret(int& line, int& col) const;

    /// The most bytes a line takes by typing, and each line of an inserted text; below 1 for no limit, which
    /// is the state of a new box. A text that is longer already stays.
    void SetMaxLength(int bytes);
    void SetModified(bool modified);
    /// Set by every edit and by SetText.
    bool IsModified() const { return (m_nFlags & FLAG_MODIFIED) != 0; }

    /// A logical font name. False when there is no such font, and then nothing changes. Doesn't repaint.
    bool SetFont(const char* name);
    int GetFont() const { return m_nFont; }
    using CItfWnd::GetFont;

  private:
    enum Flag : std::uint32_t {
        FLAG_DRAG = 1,       ///< the left button went down here and is still down
        FLAG_SELECTION = 2,  ///< a selection exists
        FLAG_KEY_SCROLL = 4, ///< the key handler wants a scroll and a repaint
        FLAG_LIMIT = 8,      ///< m_nMaxLen counts
        FLAG_MODIFIED = 0x10,
    };
    struct Range {
        EditPos first;
        EditPos last;
    };

    // Messages.
    Word OnMouseMove(std::uint32_t wParam, std::int32_t lParam);
    Word OnLButtonDown(std::uint32_t wParam, std::int32_t lParam);
    Word OnLButtonUp(std::uint32_t wParam, std::int32_t lParam);
    Word OnLButtonDblClk(std::uint32_t wParam, std::int32_t lParam);
    Word OnChar(std::uint32_t wParam, std::int32_t lParam);
    Word OnKeyDown(std::uint32_t wParam, std::int32_t lParam);
    Word OnLostFocus(std::uint32_t wParam, std::int32_t lParam);

    // Keys.
    void ControlKey(int key);
    bool MovementKey(int key, bool shift);
    void MoveLeft(bool shift);
    void MoveRight(bool shift);
    void MoveLines(int by, bool shift);
    void MovePage(int direction, bool shift);
    void MoveSelectionEnd(int lines);
    void DeleteAtCaret();
    void DeleteBeforeCaret();
    bool EditWith(unsigned char character);
    void TypeCharacter(char character);

    // Text, caret and selection.
    bool HasStyle(std::uint32_t style) const { return (m_dwStyle & style) != 0; }
    void ClearText();
    void InsertText(EditPos at, std::string_view text);
    void CutCaretToLine();
    void SwapToCaretLine();
    void UpdateSelection();
    void CollapseSelection();
    void DeleteSelection();
    bool IsAnythingSelected() const { return (m_nFlags & FLAG_SELECTION) != 0 || m_Anchor != m_End; }
    Range GetSelection() const;

    // Clipboard.
    bool Copy();
    void Paste();
    bool PasteText();
    void ShowChange();
    void Cut();

    // View.
    int GetPage() const;
    void ScrollToCaret();
    void ScrollSideways();
    void DrawCaret();
    void DrawSelection(int line, const std::string& text, int y);
    std::int64_t WidthFromLeft(const std::string& text, int col) const;
    EditPos FindPosition(POINT point) const;
    int FindColumn(const std::string& text, int x) const;

    static constexpr int DEFAULT_LINE_HEIGHT = 25;
    static constexpr int DEFAULT_MAX_LENGTH = 255;

    CItfEditLines m_Lines;
    std::string m_Scratch; ///< what GetText, GetLine and the copy hand out
    int m_nLeftCol = 0;    ///< first column shown
    int m_nTopLine = 0;    ///< first line shown
    EditPos m_Caret;
    EditPos m_Anchor; ///< where the selection began
    EditPos m_End;    ///< where it ends now, before or behind the anchor
    std::uint32_t m_nFlags = 0;
    int m_nFont = -1;
    int m_nLineHeight = DEFAULT_LINE_HEIGHT; ///< pixels, above 0
    CItfGlyphWidths m_Widths;                ///< of m_nFont
    int m_nSelSprite = -1;
    int m_nMaxLen = DEFAULT_MAX_LENGTH;
};
