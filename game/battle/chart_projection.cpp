#include "battle/chart_projection.h"

#include <algorithm>

void CChartProjection::SetArea(const RECT& area)
{
    m_rcArea = area;
    m_rcArea.right = std::max(m_rcArea.right, m_rcArea.left + 1);
    m_rcArea.bottom = std::max(m_rcArea.bottom, m_rcArea.top + 1);
    Limit();
}

ChartPoint CChartProjection::Middle() const
{
    return {static_cast<double>(m_rcArea.left + m_rcArea.right) / 2,
            static_cast<double>(m_rcArea.top + m_rcArea.bottom) / 2};
}

double CChartProjection::Furthest() const
{
    const double across = m_Limits.Width() / static_cast<double>(m_rcArea.right - m_rcArea.left);
    const double down = m_Limits.Height() / static_cast<double>(m_rcArea.bottom - m_rcArea.top);
    return std::max(std::max(across, down) * LIMITS_SHARE, CLOSEST);
}

void CChartProjection::Limit()
{
    m_fScale = std::clamp(m_fScale, CLOSEST, Furthest());
    const auto hold = [](double centre, double low, double high, double view) {
        const double slack = (high - low) * (LIMITS_SHARE - 1) / 2;
        const double least = low - slack + view / 2;
        const double most = high + slack - view / 2;
        return least >= most ? (low + high) / 2 : std::clamp(centre, least, most);
    };
    m_Centre.x = hold(m_Centre.x, m_Limits.west, m_Limits.east,
                      m_fScale * static_cast<double>(m_rcArea.right - m_rcArea.left));
    m_Centre.y = hold(m_Centre.y, m_Limits.south, m_Limits.north,
                      m_fScale * static_cast<double>(m_rcArea.bottom - m_rcArea.top));
}

void CChartProjection::Fit(const SeaRect& rect)
{
    m_Centre = {(rect.west + rect.east) / 2, (rect.south + rect.north) / 2};
    m_fScale = std::max(rect.Width() / static_cast<double>(m_rcArea.right - m_rcArea.left),
                        rect.Height() / static_cast<double>(m_rcArea.bottom - m_rcArea.top));
    Limit();
}

void CChartProjection::Zoom(double factor, ChartPoint at)
{
    const SeaPoint held = ToSea(at);
    m_fScale /= factor;
    Limit();
    const SeaPoint now = ToSea(at);
    m_Centre.x += held.x - now.x;
    m_Centre.y += held.y - now.y;
    Limit();
}

void CChartProjection::Scroll(double right, double down)
{
    m_Centre.x += right * m_fScale;
    m_Centre.y -= down * m_fScale;
    Limit();
}

void CChartProjection::CentreOn(SeaPoint place)
{
    m_Centre = place;
    Limit();
}

ChartPoint CChartProjection::ToChart(SeaPoint place) const
{
    const ChartPoint middle = Middle();
    return {middle.x + (place.x - m_Centre.x) / m_fScale, middle.y - (place.y - m_Centre.y) / m_fScale};
}

SeaPoint CChartProjection::ToSea(ChartPoint at) const
{
    const ChartPoint middle = Middle();
    return {m_Centre.x + (at.x - middle.x) * m_fScale, m_Centre.y - (at.y - middle.y) * m_fScale};
}

bool CChartProjection::IsInArea(ChartPoint at) const
{
    return at.x >= m_rcArea.left && at.x < m_rcArea.right && at.y >= m_rcArea.top && at.y < m_rcArea.bottom;
}
