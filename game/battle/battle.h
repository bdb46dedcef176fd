#pragma once
// A battle that runs: what the logic tells others of it.

#include <cstdio>
#include <cstring>
#include <string>

#include "ilogic.h"
#include "itfrecords.h"

/// Of a single scenario. There is no commander and, so far, no list of units to look into.
class CBattle : public IGameState
{
  public:
    CBattle(const ItfCommand& command, const std::string& title)
    {
        m_Info.nPlayerSide = command.nSide;
        const std::size_t length = strnlen(command.szPath, sizeof(m_Info.szPath) - 1);
        std::memcpy(m_Info.szPath, command.szPath, length);
        std::snprintf(m_Info.szTitle, sizeof(m_Info.szTitle), "%s", title.c_str());
    }

    ItfCharacter* GetCharacter() override { return nullptr; }
    IUnitList* GetUnits() override { return nullptr; }
    GameHeader* GetHeader() override { return &m_Header; }
    ScenarioInfo* GetScenarioInfo() override { return &m_Info; }

  private:
    GameHeader m_Header = {};
    ScenarioInfo m_Info = {};
};
