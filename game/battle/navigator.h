#pragma once
// How units sail.

#include "battle/battle_state.h"

/// Turns a unit towards its goal within its turning circle, off land, off the sea's bounds and off its
/// neighbours, and moves it. Balloons fly over land.
class CNavigator
{
  public:
    explicit CNavigator(BattleState& state) : m_State(state) {}

    /// Chooses the course to steer; seldom enough to be thorough.
    void Steer(int unit);
    /// One step.
    void Sail(BattleUnit& unit) const;
    /// The fastest that the unit can go now, metres a second.
    static double SpeedLimit(const BattleUnit& unit);

  private:
    bool IsOpen(const BattleUnit& unit, SeaPoint place) const;
    bool IsFree(const BattleUnit& unit, SeaPoint from, double heading, double metres) const;
    bool IsTurnFree(const BattleUnit& unit, double heading, SeaPoint& end) const;
    void ChooseCourse(BattleUnit& unit, double wanted) const;
    void FindWay(BattleUnit& unit) const;
    void KeepOff(int unit, double& wanted) const;

    BattleState& m_State;
};
