#pragma once
// The record of everything that crosses the module's edge, one line for each, in order. Scripts look for
// lines in it, and two runs of the same input have the same one.

#include <cstddef>
#include <cstdio>
#include <deque>
#include <optional>
#include <string>
#include <vector>

/// Lines are counted from the start of the run; only the last LINES_KEPT of them stay in memory.
class CTrace
{
  public:
    static constexpr std::size_t LINES_KEPT = 100000;

    CTrace() = default;
    ~CTrace();
    CTrace(const CTrace&) = delete;
    CTrace& operator=(const CTrace&) = delete;

    /// From now on every line also goes to this file, in UTF-8; it is truncated. False when it can't be
    /// opened.
    bool OpenFile(const std::string& path);
    /// Line ends and other control characters inside the line become blanks.
    void Add(std::string line);
    /// The number of lines so far.
    std::size_t Count() const { return m_nDropped + m_Lines.size(); }
    /// The number of the first line from `from` on that contains `text`.
    std::optional<std::size_t> Find(std::size_t from, const std::string& text) const;
    /// The last `count` lines, oldest first.
    std::vector<std::string> Last(std::size_t count) const;

  private:
    std::deque<std::string> m_Lines;
    std::size_t m_nDropped = 0;
    std::FILE* m_pFile = nullptr;
};
