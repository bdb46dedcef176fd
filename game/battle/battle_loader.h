#pragma once
// Loads a battle a step at a time.

#include <memory>
#include <string>

#include "battle/battle.h"
#include "battle/sea_picture.h"

/// The first step reads the scenario, the others prepare the sea for it.
class CBattleLoader
{
  public:
    /// `display` is the size in pixels that the battle will be shown in.
    CBattleLoader(const ItfCommand& command, SIZE display) : m_Command(command), m_Display(display) {}

    /// False when no step was left. Throws std::exception, in the first step, for a scenario that can't be
    /// read.
    bool Step();
    /// How much is done, 0 to 100.
    int Percent() const;

    // Once no step is left; each is handed over once.
    std::unique_ptr<CBattle> TakeBattle() { return std::move(m_pBattle); }
    std::unique_ptr<CSeaPicture> TakeSea() { return std::move(m_pSea); }

  private:
    void ReadScenario();

    ItfCommand m_Command;
    SIZE m_Display;
    std::unique_ptr<CBattle> m_pBattle;
    std::unique_ptr<CSeaPicture> m_pSea;
    int m_nDone = 0;
};
