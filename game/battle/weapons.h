#pragma once
// Guns, torpedoes, depth charges and bombs, and what they do.

#include <cstdint>
#include <vector>

#include "battle/battle_state.h"

/// Owns what is in the air and in the water, and the marks on the sea.
class CWeapons
{
  public:
    explicit CWeapons(BattleState& state) : m_State(state) {}

    /// The unit fires what is ready and reaches an enemy that its side sees.
    void Fight(int unit);
    /// One step of what has been fired.
    void Advance();
    /// What is in the air and in the water does no harm any more, and goes.
    void Cease();
    /// Old marks go.
    void DropMarks();

    const std::vector<Shell>& Shells() const { return m_Shells; }
    const std::vector<Torpedo>& Torpedoes() const { return m_Torpedoes; }
    const std::vector<SeaMark>& Marks() const { return m_Marks; }

    /// How far guns of a calibre in millimetres shoot, and how far torpedoes run, metres.
    static double GunRange(int calibre);
    static constexpr double TORPEDO_RANGE = 5000;
    /// The range of the unit's best guns that can be used against that target when it isn't below, metres; 0
    /// without any.
    static double ReachOf(const BattleUnit& unit, const BattleUnit& target);
    /// Whether the unit has anything left that could hit that target as it is now, however far it is.
    static bool CanHarm(const BattleUnit& unit, const BattleUnit& target)
    {
        return CanHarm(unit, target, target.submerged);
    }
    /// The same at any depth to which the target can go.
    static bool CanEverHarm(const BattleUnit& unit, const BattleUnit& target);

  private:
    static constexpr std::size_t MAX_MARKS = 2000;

    static bool CanHarm(const BattleUnit& unit, const BattleUnit& target, bool submerged);
    bool CanHit(const BattleUnit& unit, std::size_t battery, const BattleUnit& target) const;
    int TargetOf(const BattleUnit& unit, std::size_t battery) const;
    void FireGuns(int unit, std::size_t battery);
    void FireTorpedo(int unit);
    void DropCharge(int unit);
    double Luck(const BattleUnit& unit) const;
    void Land(const Shell& shell);
    void Run(Torpedo& torpedo);
    void Damage(int unit, double damage, int by);
    void Mark(MarkKind kind, SeaPoint place, int calibre = 0);

    BattleState& m_State;
    std::vector<Shell> m_Shells;
    std::vector<Torpedo> m_Torpedoes;
    std::vector<SeaMark> m_Marks;
};
