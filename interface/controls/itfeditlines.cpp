#include "controls/itfeditlines.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace
{

constexpr std::string_view LINE_END = "\r\n";

std::size_t Column(const std::string& line, int col)
{
    return std::min(static_cast<std::size_t>(std::max(col, 0)), line.size());
}

} // namespace

CItfEditLines::CItfEditLines()
{
    Clear();
}

void CItfEditLines::Clear()
{
    m_Lines.clear();
    m_Lines.emplace_back();
    m_CurLine = std::string(); // gives a large text's memory back
    m_CurLine.reserve(LINE_RESERVE);
    m_itCurrent = m_Lines.begin();
    m_itLast = m_itCurrent;
    m_nLast = 0;
}

// Walks from the nearest of both ends and the node it was at last.
CItfEditLines::List::const_iterator CItfEditLines::At(int line) const
{
    const int fromLast = std::abs(line - m_nLast);
    if (line < fromLast) {
        m_itLast = m_Lines.begin();
        m_nLast = 0;
    } else if (GetCount() - 1 - line < fromLast) {
        m_itLast = std::prev(m_Lines.end());
        m_nLast = GetCount() - 1;
    }
    std::advance(m_itLast, line - m_nLast);
    m_nLast = line;
    return m_itLast;
}

const std::string& CItfEditLines::GetLine(int line) const
{
    return TextOf(At(line));
}

std::size_t CItfEditLines::GetTextSize() const
{
    std::size_t size = 0;
    for (auto it = m_Lines.begin(); it != m_Lines.end(); ++it)
        size += TextOf(it).size() + LINE_END.size();
    return size - LINE_END.size() + 1;
}

void CItfEditLines::AppendTo(std::string* out, EditPos first, EditPos last) const
{
    auto it = At(first.line);
    std::size_t begin = Column(TextOf(it), first.col);
    for (int line = first.line; line < last.line; ++line, ++it) {
        out->append(TextOf(it), begin).append(LINE_END);
        begin = 0;
    }
    out->append(TextOf(it), begin, Column(TextOf(it), last.col) - begin);
}

void CItfEditLines::MakeCurrent(int line)
{
    const List::iterator target = Mutable(At(line));
    if (target == m_itCurrent)
        return;
    (*target)->swap(m_CurLine);
    *m_itCurrent = std::move(*target);
    m_itCurrent = target;
    m_CurLine.reserve(LINE_RESERVE);
}

void CItfEditLines::InsertCharacter(EditPos at, char character)
{
    std::string& text = TextOf(At(at.line));
    text.insert(Column(text, at.col), 1, character);
}

void CItfEditLines::InsertText(EditPos at, std::string_view text, std::size_t pieceLimit, bool multiLine)
{
    const List::const_iterator place = At(at.line);
    std::string& line = TextOf(place);
    const std::size_t col = Column(line, at.col);
    std::size_t end = text.find(LINE_END);
    const std::string_view first = text.substr(0, std::min(end, pieceLimit));
    if (!multiLine || end == std::string_view::npos) {
        line.insert(col, first);
        return;
    }
    // Beside the list first: what fails here leaves the text as it was. No room is reserved, since a pasted
    // text can bring millions of short lines.
    List further;
    while (end != std::string_view::npos) {
        text.remove_prefix(end + LINE_END.size());
        end = text.find(LINE_END);
        further.push_back(std::make_unique<std::string>(text.substr(0, std::min(end, pieceLimit))));
    }
    further.back()->append(line, col);
    line.replace(col, std::string::npos, first);
    m_Lines.splice(std::next(place), further);
}

void CItfEditLines::Erase(EditPos first, EditPos last)
{
    const List::const_iterator stop = std::next(At(last.line));
    const List::iterator kept = Mutable(At(first.line));
    std::string& text = TextOf(kept);
    const std::size_t begin = Column(text, first.col);
    if (first.line == last.line) {
        text.erase(begin, Column(text, last.col) - begin);
        return;
    }
    const std::string& tail = TextOf(std::prev(stop));
    text.replace(begin, std::string::npos, tail, Column(tail, last.col), std::string::npos);
    for (auto it = std::next(kept); it != stop;) {
        if (it == m_itCurrent) { // its line goes, so that the joined one becomes current
            m_CurLine = std::move(**kept);
            kept->reset();
            m_itCurrent = kept;
        }
        it = m_Lines.erase(it);
    }
}

void CItfEditLines::Split(EditPos at)
{
    const List::const_iterator place = At(at.line);
    std::string& text = TextOf(place);
    const std::size_t col = Column(text, at.col);
    auto head = std::make_unique<std::string>();
    head->reserve(std::max(LINE_RESERVE, col));
    head->append(text, 0, col);
    m_Lines.insert(place, std::move(head));
    text.erase(0, col);
    m_nLast = at.line + 1; // the place has moved down
}
