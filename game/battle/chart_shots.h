#pragma once
// What is fired, and what this leaves on the sea.

#include "battle/battle_controls.h"
#include "battle/chart_pen.h"

/// Draws for one frame.
class CChartShots
{
  public:
    /// Both must outlive the object.
    CChartShots(CChartPen& pen, const CBattleControls& controls);

    /// What lies on the water: tracks of torpedoes, splashes, eddies.
    void DrawBelow();
    /// What is seen over the units: hits, shells in the air, the sign of the last order.
    void DrawAbove();

  private:
    ChartPoint At(SeaPoint place) const { return m_Controls.View().ToChart(place); }
    bool IsFromSeen(int unit) const;
    bool IsNearOwn(SeaPoint place) const;
    void DrawTorpedo(const Torpedo& torpedo);
    void DrawShell(const Shell& shell);
    void DrawMark(const SeaMark& mark, bool above);
    void DrawSign(const OrderSign& sign);

    CChartPen& m_Pen;
    const CBattleControls& m_Controls;
    const CBattleSim& m_Sim;
};
