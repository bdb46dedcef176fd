#pragma once
// A battle that runs: the simulation, how fast it goes, and what the logic tells others of it.

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "battle/battle_sim.h"
#include "ilogic.h"
#include "itfrecords.h"

/// Of a single scenario: there is no commander and no list of units to look into.
///
/// Shared by the stage and the entities "logic", "game" and "sea" of the scene; whoever goes last deletes it.
class CBattle : public IGameState
{
  public:
    static constexpr int SPEED_STOPPED = 0;
    static constexpr int SPEED_MAX = 16;
    static constexpr std::int64_t LONGEST_FRAME = 200; ///< milliseconds
    /// So long the player sees how it ended before he is told, milliseconds of his time.
    static constexpr std::int64_t LAST_SIGHT = 2'000;

    CBattle(const ItfCommand& command, const Scenario& scenario, std::uint64_t seed)
        : m_Sim(scenario, SetupOf(command, seed)), m_Settings(scenario.header.settings),
          m_Custom(scenario.custom), m_bBriefAtStart(command.bBriefFlag != 0)
    {
        m_Info.nPlayerSide = m_Sim.Setup().playerSide;
        const std::size_t length = strnlen(command.szPath, sizeof(m_Info.szPath) - 1);
        std::memcpy(m_Info.szPath, command.szPath, length);
        std::snprintf(m_Info.szTitle, sizeof(m_Info.szTitle), "%s", scenario.title.c_str());
    }

    ItfCharacter* GetCharacter() override { return nullptr; }
    IUnitList* GetUnits() override { return nullptr; }
    GameHeader* GetHeader() override { return &m_Header; }
    ScenarioInfo* GetScenarioInfo() override { return &m_Info; }

    CBattleSim& Sim() { return m_Sim; }
    const CBattleSim& Sim() const { return m_Sim; }
    /// Ends the battle at once: the player's side wins, or the other one.
    void DecideForPlayer(bool wins)
    {
        const int side = m_Sim.Setup().playerSide;
        m_Sim.Decide(wins ? side : CBattleSim::SIDES - 1 - side);
    }
    /// The side that the player orders, -1 when he only watches.
    int OrderingSide() const { return m_Sim.Setup().OrderingSide(); }
    /// The nations of the sides.
    const SCSETT_STRUCT& Settings() const { return m_Settings; }
    const CUSTOM_RESOURCE_DATA& Custom() const { return m_Custom; }
    /// The player wants to read the orders before the battle begins.
    bool IsBriefAtStart() const { return m_bBriefAtStart; }

    /// 0 (stopped), 1, 2, 4, 8 or 16.
    int Speed() const { return m_nSpeed; }
    /// Other values are brought to the next one below.
    void SetSpeed(int speed);
    /// While something covers the battle it stands still, whatever its speed.
    bool IsHeld() const { return m_bHeld; }
    void Hold(bool held) { m_bHeld = held; }
    /// The player's time passes, in milliseconds; of what a program that hung has missed, only LONGEST_FRAME.
    /// An end that comes by itself brings the speed back to 1.
    void Advance(std::int64_t milliseconds);
    /// The battle is over, and not only just now: one that was decided has nothing more to show.
    bool IsEndSeen() const { return m_Sim.IsOver() && m_nLastSight <= 0; }

  private:
    static BattleSetup SetupOf(const ItfCommand& command, std::uint64_t seed);

    CBattleSim m_Sim;
    SCSETT_STRUCT m_Settings;
    CUSTOM_RESOURCE_DATA m_Custom;
    GameHeader m_Header = {};
    ScenarioInfo m_Info = {};
    bool m_bBriefAtStart;
    int m_nSpeed = 1;
    bool m_bHeld = false;
    std::int64_t m_nLastSight = 0; ///< milliseconds that are left of LAST_SIGHT
};
