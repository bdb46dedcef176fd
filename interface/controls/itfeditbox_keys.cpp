// What keys, characters and the mouse do in an edit box.

#include "controls/itfeditbox.h"

#include <algorithm>
#include <limits>

#include "platform/input.h"

namespace
{

constexpr int KEY_COPY = 'C';
constexpr int KEY_PASTE = 'V';
constexpr int KEY_CUT = 'X';

constexpr unsigned char FIRST_PRINTABLE = 0x20;
constexpr std::uint32_t LAST_CHARACTER = 0xff;

// A key whose character follows and replaces the selection, so that the key itself must not drop it.
bool KeepsSelection(int key)
{
    return (key >= 'A' && key <= 'Z') || (key >= '0' && key <= '9') || key == VK_SPACE || key == VK_BACK ||
           key == VK_RETURN;
}

bool IsNumberCharacter(char character)
{
    return (character >= '0' && character <= '9') || character == '.' || character == '-';
}

} // namespace

const CItfWnd::Row* CItfEditBox::GetMessageTable() const
{
    static const Row rows[] = {
        On(WM_MOUSEMOVE, &CItfEditBox::OnMouseMove),
        On(WM_LBUTTONDOWN, &CItfEditBox::OnLButtonDown),
        On(WM_LBUTTONUP, &CItfEditBox::OnLButtonUp),
        On(WM_LBUTTONDBLCLK, &CItfEditBox::OnLButtonDblClk),
        On(WM_CHAR, &CItfEditBox::OnChar),
        On(WM_KEYDOWN, &CItfEditBox::OnKeyDown),
        On(ITFM_LOSTFOCUS, &CItfEditBox::OnLostFocus),
        EndOfTable(),
    };
    return rows;
}

Word CItfEditBox::OnKeyDown(std::uint32_t wParam, std::int32_t)
{
    const int key = static_cast<int>(wParam);
    m_nFlags |= FLAG_KEY_SCROLL;
    const bool shift = GetAsyncKeyState(VK_SHIFT) != 0;
    UpdateSelection();
    if (GetKeyState(VK_CONTROL) < 0) {
        m_nFlags &= ~FLAG_KEY_SCROLL;
        ControlKey(key);
        return 0;
    }
    if (key == VK_INSERT) {
        if (shift)
            PasteText();
        m_nFlags &= ~FLAG_KEY_SCROLL;
        ShowChange();
        return 0;
    }
    if (key == VK_DELETE) {
        if (HasStyle(EDS_READONLY))
            return 0;
        DeleteAtCaret();
        SetModified(true);
    } else if (!MovementKey(key, shift)) {
        m_nFlags &= ~FLAG_KEY_SCROLL;
    }
    if (!shift && !KeepsSelection(key))
        CollapseSelection();
    if ((m_nFlags & FLAG_KEY_SCROLL) != 0) {
        ScrollToCaret();
        Repaint(nullptr);
    }
    return 0;
}

void CItfEditBox::ControlKey(int key)
{
    switch (key) {
    case KEY_COPY:
    case VK_INSERT:
        Copy();
        break;
    case KEY_PASTE:
        Paste();
        break;
    case KEY_CUT:
        Cut();
        break;
    default:
        break;
    }
}

// False for a key that doesn't move the caret.
bool CItfEditBox::MovementKey(int key, bool shift)
{
    switch (key) {
    case VK_PRIOR:
        MovePage(-1, shift);
        return true;
    case VK_NEXT:
        MovePage(1, shift);
        return true;
    case VK_UP:
        MoveLines(-1, shift);
        return true;
    case VK_DOWN:
        MoveLines(1, shift);
        return true;
    case VK_LEFT:
        MoveLeft(shift);
        return true;
    case VK_RIGHT:
        MoveRight(shift);
        return true;
    case VK_END:
    case VK_HOME:
        m_Caret.col = key == VK_END ? m_Lines.GetLength(m_Caret.line) : 0;
        if (shift)
            m_End.col = m_Caret.col;
        return true;
    default:
        return false;
    }
}

void CItfEditBox::MovePage(int direction, bool shift)
{
    const int last = m_Lines.GetCount() - 1;
    const int room = direction < 0 ? m_Caret.line : last - m_Caret.line;
    m_Caret.line += direction * std::min(GetPage(), room);
    if (shift)
        m_End = m_Caret;
    SwapToCaretLine();
}

void CItfEditBox::MoveLines(int by, bool shift)
{
    m_Caret.line = std::clamp(m_Caret.line + by, 0, m_Lines.GetCount() - 1);
    if (shift)
        MoveSelectionEnd(by);
    SwapToCaretLine();
}

// The selection's end goes to the caret's column in another line, if there is one.
void CItfEditBox::MoveSelectionEnd(int lines)
{
    const int line = m_End.line + lines;
    if (line >= 0 && line < m_Lines.GetCount())
        m_End = {line, m_Caret.col};
}

void CItfEditBox::MoveLeft(bool shift)
{
    CutCaretToLine();
    if (m_Caret.col == 0 && m_Caret.line > 0) {
        --m_Caret.line;
        m_Caret.col = m_Lines.GetLength(m_Caret.line);
        if (shift)
            MoveSelectionEnd(-1);
        SwapToCaretLine();
        return;
    }
    m_Caret.col = std::max(m_Caret.col - 1, 0);
    if (shift)
        m_End.col = m_Caret.col;
}

void CItfEditBox::MoveRight(bool shift)
{
    if (m_Caret.col < m_Lines.GetLength(m_Caret.line)) {
        ++m_Caret.col;
        if (shift)
            m_End.col = m_Caret.col;
    } else if (m_Caret.line < m_Lines.GetCount() - 1) {
        m_Caret = {m_Caret.line + 1, 0};
        if (shift)
            MoveSelectionEnd(1);
        SwapToCaretLine();
    }
}

void CItfEditBox::DeleteAtCaret()
{
    if ((m_nFlags & FLAG_SELECTION) != 0) {
        DeleteSelection();
        return;
    }
    CutCaretToLine();
    if (m_Caret.col < m_Lines.GetLength(m_Caret.line))
        m_Lines.Erase(m_Caret, {m_Caret.line, m_Caret.col + 1});
    else if (m_Caret.line < m_Lines.GetCount() - 1)
        m_Lines.Erase(m_Caret, {m_Caret.line + 1, 0});
}

void CItfEditBox::DeleteBeforeCaret()
{
    CutCaretToLine();
    EditPos before = m_Caret;
    if (m_Caret.col > 0)
        --before.col;
    else if (m_Caret.line > 0)
        before = {m_Caret.line - 1, m_Lines.GetLength(m_Caret.line - 1)};
    m_Lines.Erase(before, m_Caret);
    m_Caret = before;
    SwapToCaretLine();
}

Word CItfEditBox::OnChar(std::uint32_t wParam, std::int32_t)
{
    if (wParam > LAST_CHARACTER || HasStyle(EDS_READONLY))
        return 0;
    const auto character = static_cast<unsigned char>(wParam);
    if (character == VK_RETURN && !HasStyle(EDS_MULTILINE)) {
        Notify(EDIT_ENTER); // the parent may have deleted the box
        return 0;
    }
    if (!EditWith(character))
        return 0;
    if ((m_nFlags & FLAG_KEY_SCROLL) == 0)
        ScrollToCaret();
    ShowChange();
    return 0;
}

// False for a character that isn't accepted.
bool CItfEditBox::EditWith(unsigned char character)
{
    switch (character) {
    case VK_BACK:
        UpdateSelection();
        if ((m_nFlags & FLAG_SELECTION) != 0)
            DeleteSelection();
        else
            DeleteBeforeCaret();
        return true;
    case VK_RETURN:
        DeleteSelection();
        m_Lines.Split(m_Caret);
        m_Caret = {m_Caret.line + 1, 0};
        SwapToCaretLine();
        return true;
    case VK_ESCAPE:
        DeleteSelection();
        return true;
    default:
        break;
    }
    const char typed = static_cast<char>(character);
    if (character < FIRST_PRINTABLE || (HasStyle(EDS_DIGITS) && !IsNumberCharacter(typed)))
        return false;
    DeleteSelection();
    if ((m_nFlags & FLAG_LIMIT) != 0 && m_Lines.GetLength(m_Caret.line) >= m_nMaxLen) {
        ShowChange();
        return false;
    }
    TypeCharacter(typed);
    return true;
}

void CItfEditBox::TypeCharacter(char character)
{
    m_Lines.InsertCharacter(m_Caret, character);
    if (m_Caret.col < std::numeric_limits<int>::max())
        ++m_Caret.col;
}

Word CItfEditBox::OnLButtonDown(std::uint32_t, std::int32_t lParam)
{
    m_Caret = FindPosition(MousePoint(lParam));
    SwapToCaretLine();
    CollapseSelection();
    if ((m_nFlags & FLAG_DRAG) == 0) {
        SetCapture();
        m_nFlags |= FLAG_DRAG;
    }
    Repaint(nullptr);
    return 0;
}

Word CItfEditBox::OnMouseMove(std::uint32_t, std::int32_t lParam)
{
    if ((m_nFlags & FLAG_DRAG) == 0)
        return 0;
    m_Caret = m_End = FindPosition(MousePoint(lParam));
    SwapToCaretLine();
    ScrollToCaret();
    if (m_Anchor != m_End)
        m_nFlags |= FLAG_SELECTION;
    Repaint(nullptr);
    return 0;
}

Word CItfEditBox::OnLButtonUp(std::uint32_t, std::int32_t)
{
    m_nFlags &= ~FLAG_DRAG;
    ReleaseCapture();
    return 0;
}

Word CItfEditBox::OnLButtonDblClk(std::uint32_t, std::int32_t)
{
    m_Anchor = {m_Caret.line, 0};
    m_End = {m_Caret.line, m_Lines.GetLength(m_Caret.line)};
    m_nFlags |= FLAG_SELECTION;
    Repaint(nullptr);
    return 0;
}

Word CItfEditBox::OnLostFocus(std::uint32_t, std::int32_t)
{
    Repaint(nullptr);
    return 0;
}
