#pragma once
// The battle as the player sees it: chart, units, names, strips.

#include <memory>
#include <vector>

#include "battle/battle_controls.h"
#include "battle/battle_strips.h"
#include "battle/chart_sheet.h"

/// Draws the whole display from the battle, the controls and the words alone.
class CChartView
{
  public:
    /// Loads its fonts. The words' table must outlive the view.
    CChartView(std::shared_ptr<const CBattleControls> controls, ChartWords words);

    /// `target` is the size that the controls were told last.
    void Draw(const PixelView& target);

  private:
    void DrawBorder(CChartPen& pen) const;
    void DrawScale(CChartPen& pen) const;
    void DrawRose(CChartPen& pen) const;
    void DrawBox(CChartPen& pen) const;
    void DrawNames(const CChartPen& pen) const;
    bool PlaceName(const CChartPen& pen, int unit, bool forced, std::vector<RECT>& taken) const;
    void WriteName(const CChartPen& pen, POINT at, const BattleUnit& unit) const;
    RECT SymbolRect(const BattleUnit& unit) const;
    std::string LengthText(double metres) const;

    std::shared_ptr<const CBattleControls> m_pControls;
    ChartWords m_Words;
    CChartSheet m_Sheet;
    CCaptionFont m_Head;
    CCaptionFont m_Small;
};
