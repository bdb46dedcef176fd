#pragma once
// Every numbered text that the player reads.

#include <map>
#include <string>

#include "ilogic.h"

/// Texts of a file with rows `number, "text"`; several texts in quotes behind a number are joined. In a text
/// `\n` is CR LF, `\t` a tab, `\\` a backslash and `\q` a double quote. A later row for the same number is an
/// error and doesn't count.
class CTextTable : public ITextTable
{
  public:
    static constexpr std::size_t MAX_TEXT = std::size_t{64} * 1024;

    /// A row that is wrong is told with file and line in the debug output and left out. False when there is
    /// no such file, which is told too.
    bool Load(const char* path);
    /// "?NNN" for a number that the file lacks.
    const char* GetText(int number) override;
    std::size_t Count() const { return m_Texts.size(); }

  private:
    std::map<int, std::string> m_Texts;
    std::map<int, std::string> m_Missing;
};
