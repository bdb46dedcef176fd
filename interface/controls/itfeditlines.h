#pragma once
// The text of an edit box: its lines, one of which is being edited.

#include <compare>
#include <list>
#include <memory>
#include <string>
#include <string_view>

/// A place between two characters, counted from 0. Ordered as the text is.
struct EditPos {
    int line = 0;
    int col = 0;
    friend auto operator<=>(const EditPos&, const EditPos&) = default; // NOLINT(modernize-use-nullptr)
};

/// A doubly linked list of lines. The line that is being edited lies in one string of its own, the others
/// each in a string that their node owns; making another line current exchanges the two strings.
///
/// Lines are named by number. The list remembers the node it was at last, so that going to a line near the
/// last one, which is what a box does, costs a step for each line between. A line number must exist (0 to
/// GetCount() - 1) in every operation; a column beyond the end of its line counts as the end.
///
/// Invariant: there is at least one line, and exactly one node, m_itCurrent, owns no string: its line is
/// m_CurLine.
class CItfEditLines
{
  public:
    /// Room that a line gets when somebody is about to type in it.
    static constexpr std::size_t LINE_RESERVE = 256;

    CItfEditLines();
    CItfEditLines(const CItfEditLines&) = delete;
    CItfEditLines& operator=(const CItfEditLines&) = delete;

    /// Leaves one empty line.
    void Clear();
    int GetCount() const { return static_cast<int>(m_Lines.size()); }
    /// Valid until the lines change.
    const std::string& GetLine(int line) const;
    int GetLength(int line) const { return static_cast<int>(GetLine(line).size()); }
    /// Bytes of the whole text with a CR LF between lines and a terminating zero.
    std::size_t GetTextSize() const;
    /// Appends the text between two places, first <= last, with a CR LF between lines.
    void AppendTo(std::string* out, EditPos first, EditPos last) const;

    /// Moves the line into m_CurLine.
    void MakeCurrent(int line);
    void InsertCharacter(EditPos at, char character);
    /// Cuts the text at each CR LF and each piece to `pieceLimit` bytes. The first piece goes in at `at`; the
    /// others, when `multiLine`, become new lines, and what stood behind `at` follows the last one. Linear in
    /// the text; when memory runs out it throws and nothing has changed.
    void InsertText(EditPos at, std::string_view text, std::size_t pieceLimit, bool multiLine);
    /// Removes what lies between two places, first <= last, and joins their lines into the first.
    void Erase(EditPos first, EditPos last);
    /// What stands before the place becomes a line of its own before the line, which keeps the rest.
    void Split(EditPos at);

  private:
    /// Null: the line is m_CurLine.
    using Node = std::unique_ptr<std::string>;
    using List = std::list<Node>;

    List::const_iterator At(int line) const;
    List::iterator Mutable(List::const_iterator it) { return m_Lines.erase(it, it); }
    std::string& TextOf(List::const_iterator it) { return *it ? **it : m_CurLine; }
    const std::string& TextOf(List::const_iterator it) const { return *it ? **it : m_CurLine; }

    List m_Lines;
    std::string m_CurLine;
    List::iterator m_itCurrent;
    mutable List::const_iterator m_itLast; ///< node of m_nLast
    mutable int m_nLast = 0;
};
