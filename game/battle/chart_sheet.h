#pragma once
// The chart itself: paper, depths, land, grid and soundings.

#include <cstdint>
#include <vector>

#include "battle/caption_font.h"
#include "battle/chart_pen.h"
#include "battle/chart_relief.h"

/// Paints a sheet somewhat larger than the view and keeps it, so that a view that scrolls is mostly a copy.
class CChartSheet
{
  public:
    static constexpr double SEA_MILE = 1852; ///< metres

    explicit CChartSheet(const CCoast& coast) : m_Relief(coast) {}

    /// Fills the view's area on the target.
    void Draw(const PixelView& target, const CChartProjection& view, const CCaptionFont& digits);
    /// The smallest of 1, 2, 5, 10, ... cables that is at least so many metres; in metres.
    static double RoundLength(double least);

  private:
    static constexpr int MARGIN = 96; ///< pixels beyond the view, on each side

    bool Holds(const CChartProjection& view) const;
    void Paint(const CChartProjection& view, const CCaptionFont& digits);
    void PaintRow(int y, const std::vector<float>& heights, const std::vector<float>& above);
    std::uint16_t PixelAt(int x, int y, float height, float across, float down) const;
    void PaintHachures(CChartPen& pen) const;
    void PaintGrid(CChartPen& pen) const;
    void PaintEdge(const CChartPen& pen) const;
    void PaintSoundings(const CCaptionFont& digits);
    PixelView Sheet() { return {m_Pixels.data(), m_nWidth, m_nHeight}; }
    SeaPoint PlaceOf(double x, double y) const { return {m_fWest + x * m_fScale, m_fNorth - y * m_fScale}; }

    CChartRelief m_Relief;
    std::vector<std::uint16_t> m_Pixels;
    int m_nWidth = 0;
    int m_nHeight = 0;
    double m_fScale = 0; ///< metres to a pixel
    double m_fWest = 0;  ///< the sheet's left and upper edge, metres
    double m_fNorth = 0;
    float m_fCell = 1; ///< pixels of a cell of the relief
};
