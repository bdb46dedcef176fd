#include "entities/battle_game.h"

namespace
{

// The figures that the records of a side and of a player have in common.
template <class Record>
void Fill(Record& out, const SideFigures& figures)
{
    out.nPoints = figures.points;
    out.nUnits = figures.units;
    out.nRounds = figures.rounds;
    out.nSunk = figures.sunk;
    out.nLost = figures.lost;
    out.nHits = figures.hits;
}

} // namespace

void CBattleGameEntity::GetSideStats(int side, ItfSideStats* out)
{
    *out = {};
    Fill(*out, m_pBattle->Sim().Figures(side));
}

ItfPlayerStats* CBattleGameEntity::GetPlayer(int side, int index)
{
    if (!IsSide(side) || index != 0)
        return nullptr;
    ItfPlayerStats& player = m_Players[static_cast<std::size_t>(side)];
    Fill(player, m_pBattle->Sim().Figures(side));
    player.szName = m_Names[static_cast<std::size_t>(side)].c_str();
    return &player;
}

void CBattleGameEntity::GetBattleTime(int* days, int* hours, int* minutes)
{
    constexpr int MINUTE = 60'000; // milliseconds
    constexpr int HOUR = 60;
    constexpr int DAY = 24 * HOUR;
    const auto all = static_cast<int>(m_pBattle->Sim().BattleTime() / MINUTE);
    *days = all / DAY;
    *hours = all % DAY / HOUR;
    *minutes = all % HOUR;
}
