#pragma once
// The units as they are seen from above.

#include <span>

#include "battle/battle_controls.h"
#include "battle/chart_pen.h"

/// Draws for one frame. Small units are drawn larger than they are, as far as SymbolLength says. With more of
/// them in view than CROWD their wakes, turrets and the bars under them are left out.
class CChartUnits
{
  public:
    static constexpr int CROWD = 200;

    /// Both must outlive the object.
    CChartUnits(CChartPen& pen, const CBattleControls& controls);

    /// What lies under the units: wrecks, wakes, shadows, and the chosen units' rings and ways.
    void DrawBelow();
    /// The units, balloons on top, with their damage.
    void Draw();

  private:
    /// A unit's own directions on the chart; places are in parts of its length ahead and to starboard.
    struct Frame {
        ChartPoint middle;
        double length; ///< pixels
        double ahead[2];
        double starboard[2];

        ChartPoint At(double forward, double right) const
        {
            return {middle.x + length * (forward * ahead[0] + right * starboard[0]),
                    middle.y + length * (forward * ahead[1] + right * starboard[1])};
        }
    };

    Frame FrameOf(const BattleUnit& unit) const;
    bool IsShown(const BattleUnit& unit) const;
    void DrawWreck(const BattleUnit& unit);
    void DrawWake(const BattleUnit& unit);
    void DrawWay(int index);
    void DrawShip(const BattleUnit& unit);
    void DrawDeck(const BattleUnit& unit, const Frame& frame);
    void DrawSubmarine(const BattleUnit& unit);
    void DrawBalloon(const BattleUnit& unit);
    void DrawDamage(const BattleUnit& unit);
    /// An outline given for the starboard side, from the bow aft, mirrored to port.
    void FillOutline(const Frame& frame, std::span<const ChartPoint> half, double grow, std::uint16_t colour,
                     int cover = CChartPen::FULL);

    CChartPen& m_Pen;
    const CBattleControls& m_Controls;
    const CBattleSim& m_Sim;
    bool m_bCrowded;
};
