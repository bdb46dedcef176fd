#pragma once
// What units do without orders, and how they carry out the ones that they have.

#include "battle/battle_state.h"

/// Looks around for a unit, and chooses its target, its goal and whether it dives.
class CCaptain
{
  public:
    explicit CCaptain(BattleState& state) : m_State(state) {}

    /// Which sides see the unit now.
    void Look(int unit);
    /// With `fighting` false the battle is over: units carry out orders to sail and keep their course
    /// otherwise.
    void Think(int unit, bool fighting);
    /// The submarine goes below or comes up.
    void Dive(BattleUnit& unit, bool below) const;

  private:
    bool Sees(const BattleUnit& watcher, const BattleUnit& unit) const;
    int ChooseTarget(int unit) const;
    void ChooseGoal(BattleUnit& unit);
    void CloseIn(BattleUnit& unit, const BattleUnit& target);
    void Search(BattleUnit& unit);
    void Shun(BattleUnit& unit, const BattleUnit& threat, double distance);
    void FlyBalloon(BattleUnit& unit);
    void ChooseDepth(BattleUnit& unit) const;
    const BattleUnit* Nearest(const BattleUnit& unit, bool enemies, bool seen) const;
    void SetGoal(BattleUnit& unit, SeaPoint goal) const;

    BattleState& m_State;
};
