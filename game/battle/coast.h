#pragma once
// The land of a battle.

#include <cstdint>
#include <string>
#include <vector>

#include "battle/battle_unit.h"

/// A grid of heights over the sea's bounds. The open sea has none. Where units begin there is water, and from
/// each of these places a way over water leads to all others.
class CCoast
{
  public:
    static constexpr int CELLS = 96; ///< of the grid, in each direction
    /// A scene with this in its name has no land.
    static constexpr const char* OPEN_SEA = "seabattle";

    /// `scene` is the scenario's; what follows its last '_' tells the weather and doesn't count. The same
    /// arguments give the same land everywhere.
    CCoast(const std::string& scene, const SeaRect& bounds, const std::vector<SeaPoint>& starts);

    const SeaRect& Bounds() const { return m_Bounds; }
    bool HasLand() const { return !m_Heights.empty(); }
    /// Above 0 is land, 1 the highest; below 0 is water, -1 the deepest. Between the grid's points it is
    /// linear in both directions. Deep water outside the bounds.
    double Height(SeaPoint place) const;
    bool IsLand(SeaPoint place) const { return HasLand() && Height(place) > 0; }
    /// No land on the straight way.
    bool IsClear(SeaPoint from, SeaPoint to) const;
    /// `to` is water, and a ship gets there from `from`.
    bool HasWay(SeaPoint from, SeaPoint to) const;
    /// The place to sail to next on the way to `to`: `to` itself when nothing lies between, or when there is
    /// no way.
    SeaPoint NextOnWay(SeaPoint from, SeaPoint to) const;

  private:
    static constexpr int POINTS = CELLS + 1;

    void Raise(std::uint64_t seed);
    void Carve(const std::vector<SeaPoint>& starts);
    double PointHeight(int column, int row) const
    {
        return m_Heights[static_cast<std::size_t>(row * POINTS + column)];
    }
    SeaPoint PointPlace(int column, int row) const;
    int NearestPoint(SeaPoint place) const;
    bool IsWater(SeaPoint from, SeaPoint to) const;
    template <class Visit>
    void ForPointsAround(SeaPoint place, Visit visit) const;
    std::vector<int> StepsTo(SeaPoint goal) const;
    int FirstOnWay(SeaPoint from, const std::vector<int>& steps) const;

    SeaRect m_Bounds;
    std::vector<float> m_Heights; ///< rows from the south; empty without land
};
