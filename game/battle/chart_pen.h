#pragma once
// Lines, discs and polygons with smooth edges.

#include <cstdint>
#include <span>
#include <vector>

#include "battle/chart_projection.h"
#include "battle/colour.h"
#include "render/blit.h"

/// Draws on pixels that somebody else owns, within a clip. A cover is 0 (nothing) to 255 (all). Shapes may
/// lie anywhere: what is outside isn't drawn.
class CChartPen
{
  public:
    static constexpr int FULL = 255;

    /// `clip` is brought within the target.
    CChartPen(const PixelView& target, const RECT& clip);

    const PixelView& Target() const { return m_Target; }
    const RECT& Clip() const { return m_rcClip; }
    bool IsNear(ChartPoint at, double reach) const;

    void Fill(const RECT& rect, std::uint16_t colour, int cover = FULL) const;
    /// The edge of it, a pixel wide, inside.
    void Frame(const RECT& rect, std::uint16_t colour, int cover = FULL) const;
    /// Points in either order around; where the outline crosses itself every second area is filled.
    void Polygon(std::span<const ChartPoint> points, std::uint16_t colour, int cover = FULL);
    void Line(ChartPoint from, ChartPoint to, double width, std::uint16_t colour, int cover = FULL);
    void Dashes(ChartPoint from, ChartPoint to, double width, double dash, std::uint16_t colour,
                int cover = FULL);
    void Disc(ChartPoint middle, double radius, std::uint16_t colour, int cover = FULL) const;
    void Ring(ChartPoint middle, double radius, double width, std::uint16_t colour, int cover = FULL) const;

  private:
    void Blend(int x, int y, std::uint16_t colour, int cover) const
    {
        std::uint16_t& pixel = m_Target.m_pPixels[static_cast<std::ptrdiff_t>(y) * m_Target.m_nWidth + x];
        pixel = cover >= FULL ? colour : BlendPixel(pixel, colour, cover);
    }
    RECT Within(double left, double top, double right, double bottom) const;
    void AddSpan(double left, double right, int first);
    void BlendRow(int y, int first, std::uint16_t colour, int cover);

    PixelView m_Target;
    RECT m_rcClip;
    std::vector<float> m_Row; ///< how much of each pixel of a row is covered
    int m_nTouchedFrom = 0;   ///< the pixels of the row that a polygon has touched
    int m_nTouchedTo = 0;
    std::vector<double> m_Crossings;
};
