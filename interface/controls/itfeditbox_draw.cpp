// How an edit box looks: scrolling, drawing, and which character lies under a point.

#include "controls/itfeditbox.h"

#include <algorithm>
#include <limits>

#include "platform/input.h"

namespace
{

constexpr COLORREF CARET_COLOUR = RGB(0xb2, 0xbd, 0);
constexpr std::uint32_t TEXT_COLOUR = 0xffffff;
constexpr int CARET_WIDTH = 2;
/// Kept free at the right edge when the view follows the caret.
constexpr int RIGHT_MARGIN = 5;
/// Columns that a view jumps left of the caret, when the caret left it on that side.
constexpr int LEFT_JUMP = 10;
constexpr int SCREEN_SPRITE = -1;

// Widths of hostile lengths stay within a rectangle's range.
int ToPixels(std::int64_t width)
{
    constexpr int limit = std::numeric_limits<int>::max() / 4;
    return static_cast<int>(std::clamp<std::int64_t>(width, -limit, limit));
}

} // namespace

// Lines that the inner rectangle has room for; 0 when it is lower than one.
int CItfEditBox::GetPage() const
{
    const std::int64_t height = std::int64_t{m_rcInner.bottom} - m_rcInner.top;
    return static_cast<int>(
        std::clamp<std::int64_t>(height / m_nLineHeight, 0, std::numeric_limits<int>::max()));
}

void CItfEditBox::ScrollToCaret()
{
    ScrollSideways();
    const int count = m_Lines.GetCount();
    const int page = std::clamp(GetPage(), 1, count); // the caret's line shows in the lowest box too
    if (m_Caret.line == count - 1)
        m_nTopLine = count - page;
    m_nTopLine = std::clamp(m_nTopLine, m_Caret.line - page + 1, m_Caret.line);
    m_nTopLine = std::clamp(m_nTopLine, 0, count - 1);
}

void CItfEditBox::ScrollSideways()
{
    const std::string& text = m_Lines.GetLine(m_Caret.line);
    const int length = static_cast<int>(text.size());
    if (length == 0 || m_nLeftCol >= length)
        m_nLeftCol = 0;
    if (length == 0)
        return;
    if (m_Caret.col - 1 < m_nLeftCol)
        m_nLeftCol = std::max(m_Caret.col - LEFT_JUMP, 0);

    const int end = std::min(m_Caret.col, length);
    const int room = m_rcInner.right - RIGHT_MARGIN;
    std::int64_t width = WidthFromLeft(text, end);
    while (width > room && m_nLeftCol < m_Caret.col - 1 && m_nLeftCol < end) {
        // The first column goes, and the next one, as the first now, loses its overlap.
        width -= m_Widths.Advance(text[static_cast<std::size_t>(m_nLeftCol)]);
        ++m_nLeftCol;
        if (m_nLeftCol < end)
            width += m_Widths.Overlap(text[static_cast<std::size_t>(m_nLeftCol)]);
    }
}

// From the first column shown to a column; 0 when that isn't further right.
std::int64_t CItfEditBox::WidthFromLeft(const std::string& text, int col) const
{
    const auto begin = static_cast<std::size_t>(m_nLeftCol);
    const std::size_t end = std::min(static_cast<std::size_t>(std::max(col, 0)), text.size());
    return begin < end ? m_Widths.Width(std::string_view(text).substr(begin, end - begin)) : 0;
}

void CItfEditBox::Draw()
{
    CItfWnd::Draw();
    const bool focused = GetFocusId() == m_nId;
    if (focused)
        DrawCaret();
    const bool selected = focused && IsAnythingSelected();
    const int bottom = m_rcInner.bottom - m_nLineHeight;
    for (int line = m_nTopLine, y = 0; line < m_Lines.GetCount() && y <= bottom; ++line, y += m_nLineHeight) {
        const std::string& text = m_Lines.GetLine(line);
        if (static_cast<std::size_t>(m_nLeftCol) >= text.size())
            continue;
        DrawTextLine(m_nFont, m_rcInner.left, m_rcInner.top + y, text.c_str() + m_nLeftCol, SCREEN_SPRITE,
                     TEXT_COLOUR);
        if (selected)
            DrawSelection(line, text, m_rcInner.top + y);
    }
    // The release of a drag that left the screen never comes as a message.
    if (GetAsyncKeyState(VK_LBUTTON) >= 0)
        m_nFlags &= ~FLAG_DRAG;
}

void CItfEditBox::DrawCaret()
{
    const std::int64_t row = std::int64_t{m_Caret.line} - m_nTopLine;
    if (row < 0 || row > GetPage())
        return;
    RECT rect;
    rect.left = m_rcInner.left + ToPixels(WidthFromLeft(m_Lines.GetLine(m_Caret.line), m_Caret.col));
    rect.top = m_rcInner.top + ToPixels(row * m_nLineHeight);
    rect.right = rect.left + CARET_WIDTH;
    rect.bottom = std::min(rect.top + m_nLineHeight, m_rcInner.bottom);
    if (rect.top < rect.bottom)
        FillRectGdi(&rect, CARET_COLOUR);
}

void CItfEditBox::DrawSelection(int line, const std::string& text, int y)
{
    const EditPos first = std::min(m_Anchor, m_End);
    const EditPos last = std::max(m_Anchor, m_End);
    if (line < first.line || line > last.line)
        return;
    RECT rect;
    const int begin = line == first.line ? first.col : 0;
    const int end = line == last.line ? last.col : static_cast<int>(text.size());
    rect.left = m_rcInner.left + ToPixels(WidthFromLeft(text, begin));
    rect.top = y;
    rect.right = m_rcInner.left + ToPixels(WidthFromLeft(text, end));
    rect.bottom = y + m_nLineHeight;
    if (rect.left < rect.right)
        DrawSprite(m_nSelSprite, &rect, true);
}

// Lines and columns begin at the window's corner here, not at the inner rectangle's.
EditPos CItfEditBox::FindPosition(POINT point) const
{
    const int line = std::clamp(point.y / m_nLineHeight + m_nTopLine, 0, m_Lines.GetCount() - 1);
    return {line, FindColumn(m_Lines.GetLine(line), point.x)};
}

int CItfEditBox::FindColumn(const std::string& text, int x) const
{
    const auto length = static_cast<int>(text.size());
    if (m_nLeftCol >= length)
        return length;
    std::int64_t before = 0;
    std::int64_t width = 0;
    int col = m_nLeftCol;
    do {
        const char character = text[static_cast<std::size_t>(col)];
        before = width;
        width += m_Widths.Advance(character) - (col > m_nLeftCol ? m_Widths.Overlap(character) : 0);
        ++col;
    } while (width < x && col < length);
    return 2 * std::int64_t{x} < before + width ? col - 1 : col;
}
