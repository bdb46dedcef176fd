#pragma once
// Land and depths as the chart shows them.

#include <vector>

#include "battle/coast.h"

/// The coast's grid made smooth, with banks and deeps in the open water, which are there for the eye alone.
class CChartRelief
{
  public:
    explicit CChartRelief(const CCoast& coast);

    bool HasLand() const { return m_bLand; }
    const SeaRect& Bounds() const { return m_Bounds; }
    /// As CCoast::Height, but curved. Beyond the bounds it goes on as at their edge.
    float Height(SeaPoint place) const;
    /// Heights along a parallel: `count` of them from `west`, `step` metres apart.
    void Row(double north, double west, double step, int count, std::vector<float>& out) const;
    /// Metres between two points of the grid, eastwards.
    double CellSize() const { return m_Bounds.Width() / CCoast::CELLS; }

  private:
    static constexpr int POINTS = CCoast::CELLS + 1;
    using Column = std::vector<float>;

    /// The grid's row at a parallel.
    void Along(double north, Column& out) const;
    static float Curve(const Column& row, double at);

    SeaRect m_Bounds;
    bool m_bLand;
    std::vector<float> m_Heights; ///< rows from the south
};
