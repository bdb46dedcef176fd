#pragma once
// Loads a battle a step at a time.

#include <cstdint>
#include <memory>
#include <optional>

#include "battle/battle.h"

/// The first step reads the scenario, the second makes sea, coast and units of it.
class CBattleLoader
{
  public:
    CBattleLoader(const ItfCommand& command, std::uint64_t seed) : m_Command(command), m_nSeed(seed) {}

    /// False when no step was left. Throws std::exception, in the first step, for a scenario that can't be
    /// read or fought.
    bool Step();
    /// How much is done, 0 to 100.
    int Percent() const;
    /// Once no step is left.
    std::shared_ptr<CBattle> TakeBattle() { return std::move(m_pBattle); }

  private:
    static constexpr int STEPS = 2;

    void ReadScenario();

    ItfCommand m_Command;
    std::uint64_t m_nSeed;
    std::optional<Scenario> m_Scenario;
    std::shared_ptr<CBattle> m_pBattle;
    int m_nDone = 0;
};
