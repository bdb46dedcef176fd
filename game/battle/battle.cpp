#include "battle/battle.h"

#include <algorithm>

BattleSetup CBattle::SetupOf(const ItfCommand& command, std::uint64_t seed)
{
    BattleSetup setup;
    setup.playerSide = command.nSide == 1 ? 1 : 0;
    setup.notSideA = command.nNotSideA != 0;
    setup.notSideB = command.nNotSideB != 0;
    setup.difficulty = std::clamp(command.nDifficulty, 0, 2);
    setup.seed = seed;
    return setup;
}

void CBattle::SetSpeed(int speed)
{
    m_nSpeed = SPEED_STOPPED;
    for (int step = 1; step <= std::min(speed, SPEED_MAX); step *= 2)
        m_nSpeed = step;
}

void CBattle::Advance(std::int64_t milliseconds)
{
    if (m_bHeld)
        return;
    const std::int64_t passed = std::min(milliseconds, LONGEST_FRAME);
    const bool wasOver = m_Sim.IsOver();
    m_nLastSight -= passed;
    m_Sim.Advance(passed * m_nSpeed);
    if (!wasOver && m_Sim.IsOver()) {
        m_nLastSight = LAST_SIGHT;
        m_nSpeed = 1;
    }
}
