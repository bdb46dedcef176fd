#pragma once
// A battle as it runs. docs/battle.md tells its rules.

#include <cstdint>
#include <string>
#include <vector>

#include "battle/battle_state.h"
#include "battle/captain.h"
#include "battle/navigator.h"
#include "battle/weapons.h"
#include "keelworks/scenario.h"

/// The same scenario, setup, and orders at the same steps give the same battle on every machine: nothing here
/// reads a clock, and directions are computed by its own arithmetic.
class CBattleSim
{
  public:
    static constexpr int SIDES = BattleUnit::SIDES;
    /// Of battle time, milliseconds.
    static constexpr std::int64_t STEP = BATTLE_STEP;
    /// Battle time that passes in a unit of the player's time at speed 1.
    static constexpr int TIME_SCALE = 8;
    /// The battle ends by then, milliseconds of battle time.
    static constexpr std::int64_t TIME_LIMIT = 4LL * 60 * 60 * 1000;
    /// It also ends when nobody has been hit for so long.
    static constexpr std::int64_t QUIET_LIMIT = 90LL * 60 * 1000;
    /// By how many percent a side must be ahead to win when the battle ends with both afloat.
    static constexpr int CLEAR_LEAD = 10;

    /// Figures out of their range are brought into it; a battle may have no units at all, and is over at
    /// once.
    CBattleSim(const Scenario& scenario, const BattleSetup& setup);

    /// A side has a ship or submarine that can fire anything at the beginning. Without one a scenario is no
    /// battle.
    static bool CanBeFought(const Scenario& scenario);

    /// The player's time passes, in milliseconds (already multiplied by the speed). Steps once for every
    /// whole STEP; what is left counts next time. A battle that is over goes on: ships still sail, nobody
    /// fires.
    void Advance(std::int64_t milliseconds);
    void Step();
    CBattleSim(const CBattleSim&) = delete;
    CBattleSim& operator=(const CBattleSim&) = delete;

    // How it stands
    const std::vector<BattleUnit>& Units() const { return m_State.units; }
    const std::vector<Shell>& Shells() const { return m_Weapons.Shells(); }
    const std::vector<Torpedo>& Torpedoes() const { return m_Weapons.Torpedoes(); }
    const std::vector<SeaMark>& Marks() const { return m_Weapons.Marks(); }
    const CCoast& Coast() const { return m_State.coast; }
    /// All units are and stay within.
    const SeaRect& Bounds() const { return m_State.coast.Bounds(); }
    const BattleSetup& Setup() const { return m_State.setup; }
    const std::string& Scene() const { return m_strScene; }
    /// Since the beginning, milliseconds.
    std::int64_t BattleTime() const { return m_State.time; }
    // What is seen between two steps: the time with what is left of it, and where things are by then.
    std::int64_t ShownTime() const { return m_State.time + m_nRest; }
    SeaPoint ShownPlace(const BattleUnit& unit) const;
    SeaPoint ShownPlace(const Torpedo& torpedo) const;
    /// Minutes of the scenario's day, 0 to 1439, as it is now.
    int ClockMinutes() const;
    /// Of time, chance, the units' movements, losses and orders, and what is fired: the same for the same
    /// state.
    std::uint64_t Checksum() const;

    // Orders. False, and nothing is changed, unless `side` is the side of the unit, the unit is there and not
    // gone, and the order means something to it.
    bool OrderMove(int side, int unit, SeaPoint to);
    bool OrderAttack(int side, int unit, int target);
    bool OrderStop(int side, int unit);
    /// Submarines only. The unit stays so until the next such order or OrderFree.
    bool OrderDive(int side, int unit, bool below);
    /// The unit does what it thinks best again.
    bool OrderFree(int side, int unit);

    // Its outcome
    bool IsOver() const { return m_bOver; }
    /// 0 or 1; -1 while the battle isn't over, and when nobody has won.
    int Winner() const { return m_nWinner; }
    /// Ends the battle now with that winner, -1 for none; no effect when it is over.
    void Decide(int winner);
    /// Zeros for a side that isn't 0 or 1.
    SideFigures Figures(int side) const;
    /// How far the side has come: the part of the enemy's strength that it has destroyed, 0 to 100.
    int Percent(int side) const;

  private:
    BattleUnit* OrderedUnit(int side, int unit);
    /// A ship or submarine that is afloat and, if asked for, still has anything to fire.
    bool HasAny(int side, bool armed) const;
    void CheckEnd();
    void End(int winner);

    BattleState m_State;
    CWeapons m_Weapons{m_State};
    CCaptain m_Captain{m_State};
    CNavigator m_Navigator{m_State};
    std::string m_strScene;
    int m_nStartMinutes = 0;
    std::int64_t m_nSteps = 0;
    std::int64_t m_nRest = 0; ///< of battle time, less than STEP
    bool m_bOver = false;
    int m_nWinner = -1;
};
