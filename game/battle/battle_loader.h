#pragma once
// Loads a battle a step at a time.

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "battle/battle.h"

/// The scenario is whole, but nobody in it can fight.
class no_fighter_exception : public std::runtime_error
{
  public:
    explicit no_fighter_exception(const std::string& path)
        : std::runtime_error(path + ": nobody in it can fight")
    {
    }
};

/// The first step reads the scenario, the second makes sea, coast and units of it.
class CBattleLoader
{
  public:
    CBattleLoader(const ItfCommand& command, std::uint64_t seed) : m_Command(command), m_nSeed(seed) {}

    /// False when no step was left. In the first step it throws no_fighter_exception, or another
    /// std::exception for a scenario that can't be read.
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
