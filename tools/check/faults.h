#pragma once
// What is wrong with the resources, collected until everything has been looked at.

#include <string>
#include <vector>

#include "platform/host.h"

struct Fault {
    std::string file; ///< path in the data folder
    int line = 0;     ///< counted from 1; 0 where the file has no lines
    std::string text;
};

class CFaults
{
  public:
    void Add(const std::string& file, int line, const std::string& text)
    {
        m_Faults.push_back({file, line, text});
    }
    /// A line of the debug output: "file(line): text" counts for that place, any other for the given one.
    void AddDebugLine(const std::string& debugLine, const std::string& file, int line);
    /// "file(line): text", by file and line.
    std::vector<std::string> Sorted() const;

  private:
    std::vector<Fault> m_Faults;
};

/// Takes the debug output as long as it lives.
class CDebugCapture : public PlatformHost
{
  public:
    CDebugCapture() : m_pBefore(SetPlatformHost(this)) {}
    ~CDebugCapture() override { SetPlatformHost(m_pBefore); }
    void DebugOutput(const char* text) override { m_Lines.emplace_back(text); }
    const std::vector<std::string>& Lines() const { return m_Lines; }

  private:
    PlatformHost* m_pBefore;
    std::vector<std::string> m_Lines;
};
