#pragma once
// The entity "game" of a battle's scene.

#include <array>
#include <memory>
#include <string>

#include "battle/battle.h"
#include "ientities.h"

/// Two sides with one player each: the one at the screen and the computer, or the computer on both.
class CBattleGameEntity : public IGameEntity
{
  public:
    using Names = std::array<std::string, CBattleSim::SIDES>;

    CBattleGameEntity(std::shared_ptr<const CBattle> battle, Names names)
        : m_pBattle(std::move(battle)), m_Names(std::move(names))
    {
    }

    int GetWinner() override { return m_pBattle->Sim().Winner(); }
    void GetSideStats(int side, ItfSideStats* out) override;
    int GetSideCount() override { return CBattleSim::SIDES; }
    int GetPlayerCount(int side) override { return IsSide(side) ? 1 : 0; }
    /// With the figures of this moment.
    ItfPlayerStats* GetPlayer(int side, int index) override;
    void GetBattleTime(int* days, int* hours, int* minutes) override;

  private:
    static bool IsSide(int side) { return side >= 0 && side < CBattleSim::SIDES; }

    std::shared_ptr<const CBattle> m_pBattle;
    Names m_Names;
    std::array<ItfPlayerStats, CBattleSim::SIDES> m_Players{};
};
