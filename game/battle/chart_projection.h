#pragma once
// Which part of the sea the chart shows, and how large.

#include "battle/battle_unit.h"
#include "platform/types.h"

/// A place on the display in pixels, between them where it isn't whole; y goes down.
struct ChartPoint {
    double x = 0;
    double y = 0;

    bool operator==(const ChartPoint&) const = default;
};

/// North is up. The view stays within the limits and a narrow margin around them; it is in their middle where
/// it is larger.
class CChartProjection
{
  public:
    /// Metres to a pixel in the closest view.
    static constexpr double CLOSEST = 1.5;
    /// What a view of all of the limits shows of them at most, per part of their width or height.
    static constexpr double LIMITS_SHARE = 1.08;

    /// `limits` are the sea's bounds.
    explicit CChartProjection(const SeaRect& limits) : m_Limits(limits) {}

    /// The part of the display that the chart has, never empty. Scale and middle stay, within the limits.
    void SetArea(const RECT& area);
    const RECT& Area() const { return m_rcArea; }
    /// As large as it goes with all of `rect` in the view.
    void Fit(const SeaRect& rect);
    /// `factor` above 1 goes closer. What lies under `at` stays there, but for the limits.
    void Zoom(double factor, ChartPoint at);
    /// Moves the view that many pixels to the right and down.
    void Scroll(double right, double down);
    void CentreOn(SeaPoint place);

    ChartPoint ToChart(SeaPoint place) const;
    SeaPoint ToSea(ChartPoint at) const;
    SeaPoint Centre() const { return m_Centre; }
    double MetresPerPixel() const { return m_fScale; }
    bool IsInArea(ChartPoint at) const;

  private:
    double Furthest() const;
    ChartPoint Middle() const;
    void Limit();

    SeaRect m_Limits;
    RECT m_rcArea = {0, 0, 1, 1};
    SeaPoint m_Centre;
    double m_fScale = CLOSEST; ///< metres to a pixel
};
