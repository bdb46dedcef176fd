#include "battle/chart_pen.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{

constexpr int SUBROWS = 4; // a polygon's edges are followed on so many lines in a pixel
constexpr double MIDDLE = 0.5;

} // namespace

CChartPen::CChartPen(const PixelView& target, const RECT& clip) : m_Target(target), m_rcClip(clip)
{
    m_rcClip.left = std::clamp<LONG>(clip.left, 0, target.m_nWidth);
    m_rcClip.top = std::clamp<LONG>(clip.top, 0, target.m_nHeight);
    m_rcClip.right = std::clamp<LONG>(clip.right, m_rcClip.left, target.m_nWidth);
    m_rcClip.bottom = std::clamp<LONG>(clip.bottom, m_rcClip.top, target.m_nHeight);
}

bool CChartPen::IsNear(ChartPoint at, double reach) const
{
    return at.x + reach >= m_rcClip.left && at.x - reach <= m_rcClip.right && at.y + reach >= m_rcClip.top &&
           at.y - reach <= m_rcClip.bottom;
}

/// The pixels that the area touches within the clip.
RECT CChartPen::Within(double left, double top, double right, double bottom) const
{
    const auto hold = [](double value, LONG low, LONG high) {
        return static_cast<LONG>(std::clamp(value, static_cast<double>(low), static_cast<double>(high)));
    };
    return {hold(std::floor(left), m_rcClip.left, m_rcClip.right),
            hold(std::floor(top), m_rcClip.top, m_rcClip.bottom),
            hold(std::ceil(right), m_rcClip.left, m_rcClip.right),
            hold(std::ceil(bottom), m_rcClip.top, m_rcClip.bottom)};
}

void CChartPen::Fill(const RECT& rect, std::uint16_t colour, int cover) const
{
    const RECT in = Within(rect.left, rect.top, rect.right, rect.bottom);
    for (int y = static_cast<int>(in.top); y < in.bottom; ++y) {
        for (int x = static_cast<int>(in.left); x < in.right; ++x)
            Blend(x, y, colour, cover);
    }
}

void CChartPen::Frame(const RECT& rect, std::uint16_t colour, int cover) const
{
    Fill({rect.left, rect.top, rect.right, rect.top + 1}, colour, cover);
    Fill({rect.left, rect.bottom - 1, rect.right, rect.bottom}, colour, cover);
    Fill({rect.left, rect.top + 1, rect.left + 1, rect.bottom - 1}, colour, cover);
    Fill({rect.right - 1, rect.top + 1, rect.right, rect.bottom - 1}, colour, cover);
}

/// Adds a line of a polygon to the row, which begins at pixel `first`.
void CChartPen::AddSpan(double left, double right, int first)
{
    const double end = first + static_cast<double>(m_Row.size());
    left = std::max(left, static_cast<double>(first));
    right = std::min(right, end);
    if (left >= right)
        return;
    const auto from = static_cast<int>(left);
    const auto to = static_cast<int>(std::ceil(right));
    m_nTouchedFrom = std::min(m_nTouchedFrom, from);
    m_nTouchedTo = std::max(m_nTouchedTo, to);
    for (int x = from; x < to; ++x) {
        const double share = std::min(right, x + 1.0) - std::max(left, static_cast<double>(x));
        m_Row[static_cast<std::size_t>(x - first)] += static_cast<float>(share / SUBROWS);
    }
}

/// Blends what the row has, and empties it.
void CChartPen::BlendRow(int y, int first, std::uint16_t colour, int cover)
{
    for (int x = m_nTouchedFrom; x < m_nTouchedTo; ++x) {
        float& share = m_Row[static_cast<std::size_t>(x - first)];
        Blend(x, y, colour, static_cast<int>(std::min(share, 1.0F) * static_cast<float>(cover)));
        share = 0.0F;
    }
}

void CChartPen::Polygon(std::span<const ChartPoint> points, std::uint16_t colour, int cover)
{
    if (points.empty())
        return;
    const auto [west, east] = std::ranges::minmax_element(points, {}, &ChartPoint::x);
    const auto [north, south] = std::ranges::minmax_element(points, {}, &ChartPoint::y);
    const RECT in = Within(west->x, north->y, east->x, south->y);
    const int first = static_cast<int>(in.left);
    m_Row.assign(static_cast<std::size_t>(in.right - in.left), 0.0F);
    for (int y = static_cast<int>(in.top); y < in.bottom; ++y) {
        m_nTouchedFrom = static_cast<int>(in.right);
        m_nTouchedTo = first;
        for (int part = 0; part < SUBROWS; ++part) {
            const double line = y + (part + MIDDLE) / SUBROWS;
            m_Crossings.clear();
            for (std::size_t i = 0; i < points.size(); ++i) {
                const ChartPoint& a = points[i];
                const ChartPoint& b = points[i + 1 < points.size() ? i + 1 : 0];
                if ((a.y <= line) != (b.y <= line))
                    m_Crossings.push_back(a.x + (b.x - a.x) * (line - a.y) / (b.y - a.y));
            }
            // Nearly always there are two.
            if (m_Crossings.size() > 2)
                std::ranges::sort(m_Crossings);
            else if (m_Crossings.size() == 2 && m_Crossings[0] > m_Crossings[1])
                std::swap(m_Crossings[0], m_Crossings[1]);
            for (std::size_t i = 0; i + 1 < m_Crossings.size(); i += 2)
                AddSpan(m_Crossings[i], m_Crossings[i + 1], first);
        }
        BlendRow(y, first, colour, cover);
    }
}

void CChartPen::Line(ChartPoint from, ChartPoint to, double width, std::uint16_t colour, int cover)
{
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    if (length <= 0)
        return;
    const double x = (to.y - from.y) / length * width * MIDDLE;
    const double y = (from.x - to.x) / length * width * MIDDLE;
    const ChartPoint corners[] = {
        {from.x + x, from.y + y}, {to.x + x, to.y + y}, {to.x - x, to.y - y}, {from.x - x, from.y - y}};
    Polygon(corners, colour, cover);
}

void CChartPen::Dashes(ChartPoint from, ChartPoint to, double width, double dash, std::uint16_t colour,
                       int cover)
{
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    constexpr double MOST = 4000; // pixels; a line that leads far off the chart has a direction and no end
    const auto at = [&](double way) {
        return ChartPoint{from.x + (to.x - from.x) * way / length, from.y + (to.y - from.y) * way / length};
    };
    for (double way = 0; way < std::min(length, MOST); way += 2 * dash)
        Line(at(way), at(std::min(way + dash, length)), width, colour, cover);
}

void CChartPen::Disc(ChartPoint middle, double radius, std::uint16_t colour, int cover) const
{
    Ring(middle, radius / 2, radius, colour, cover);
}

void CChartPen::Ring(ChartPoint middle, double radius, double width, std::uint16_t colour, int cover) const
{
    const double outer = radius + width / 2 + MIDDLE;
    const double inner = radius - width / 2 - MIDDLE; // nothing is drawn within
    const RECT in = Within(middle.x - outer, middle.y - outer, middle.x + outer, middle.y + outer);
    const auto draw = [&](int y, double dy, double from, double to) {
        const int last = std::min(static_cast<int>(in.right), static_cast<int>(std::ceil(to)));
        for (int x = std::max(static_cast<int>(in.left), static_cast<int>(from)); x < last; ++x) {
            const double dx = x + MIDDLE - middle.x;
            const double off = std::abs(std::sqrt(dx * dx + dy * dy) - radius);
            const double share = std::clamp(width / 2 - off + MIDDLE, 0.0, 1.0);
            if (share > 0)
                Blend(x, y, colour, static_cast<int>(share * cover));
        }
    };
    for (int y = static_cast<int>(in.top); y < in.bottom; ++y) {
        const double dy = y + MIDDLE - middle.y;
        const double reach = std::sqrt(std::max(0.0, outer * outer - dy * dy));
        const double hole = inner > std::abs(dy) ? std::sqrt(inner * inner - dy * dy) : 0;
        if (hole <= 1) {
            draw(y, dy, middle.x - reach, middle.x + reach);
            continue;
        }
        // A pixel more on either side: the same that the whole row would have given.
        draw(y, dy, middle.x - reach, middle.x - hole + 1);
        draw(y, dy, std::max(middle.x + hole - 1, middle.x - hole + 2), middle.x + reach);
    }
}
