#pragma once

#include <vector>

#include "keelworks/scenario.h"

/// Makes scenario files, which CScenarioParser reads back as they were given.
class CScenarioWriter
{
  public:
    /// Sets signature, checksum, and each side's counts; a version of 0 becomes the current one, an older one
    /// leaves the block of custom nations out. Throws scenario_exception for what the format can't hold.
    explicit CScenarioWriter(const Scenario& scenario);

    const std::vector<char>& GetBytes() const { return m_Bytes; }
    /// Throws fopen_exception when the file can't be made, scenario_exception when not all of it could be
    /// written.
    void Write(const char* path) const;

  private:
    std::vector<char> m_Bytes;
};
