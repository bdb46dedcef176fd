#include "battle/chart_relief.h"

#include <array>
#include <cmath>

#include "battle/colour.h"

namespace
{

constexpr int BANK_CELLS = 11; // of the grid, from one bank to the next
constexpr float OPEN_SEA = -0.9F;
constexpr float LEAST_DEPTH = 0.28F; // of the water's, where a bank rises
constexpr float SHOAL = 0.02F;       // depth up to which the grid alone counts
constexpr float OPEN_WATER = 0.2F;   // depth from which on the banks count fully

// Between the two middle ones of four values; `t` 0 to 1.
std::array<float, 4> Weights(float t)
{
    const float t2 = t * t;
    const float t3 = t2 * t;
    return {0.5F * (-t + 2 * t2 - t3), 0.5F * (2 - 5 * t2 + 3 * t3), 0.5F * (t + 4 * t2 - 3 * t3),
            0.5F * (t3 - t2)};
}

float Noise(int x, int y, int cells)
{
    const int column = x / cells;
    const int row = y / cells;
    const float across = SmoothStep(0, static_cast<float>(cells), static_cast<float>(x % cells));
    const float up = SmoothStep(0, static_cast<float>(cells), static_cast<float>(y % cells));
    return Mix(Mix(HashAt(column, row), HashAt(column + 1, row), across),
               Mix(HashAt(column, row + 1), HashAt(column + 1, row + 1), across), up);
}

/// Where a place lies between points of the grid, held on it.
struct GridPlace {
    int point;
    float rest;

    GridPlace(double at, int points)
    {
        const double held = std::clamp(at, 0.0, static_cast<double>(points - 1));
        point = std::min(static_cast<int>(held), points - 2);
        rest = static_cast<float>(held - point);
    }
};

} // namespace

CChartRelief::CChartRelief(const CCoast& coast)
    : m_Bounds(coast.Bounds()), m_bLand(coast.HasLand()),
      m_Heights(static_cast<std::size_t>(POINTS) * static_cast<std::size_t>(POINTS))
{
    for (int row = 0; row < POINTS; ++row) {
        for (int column = 0; column < POINTS; ++column) {
            const SeaPoint place = {m_Bounds.west + m_Bounds.Width() * column / CCoast::CELLS,
                                    m_Bounds.south + m_Bounds.Height() * row / CCoast::CELLS};
            float height = m_bLand ? static_cast<float>(coast.Height(place)) : OPEN_SEA;
            constexpr float FINE = 0.3F; // share of the smaller banks
            const float bank = Mix(Noise(column, row, BANK_CELLS), Noise(column, row, BANK_CELLS / 3), FINE);
            const float share = SmoothStep(SHOAL, OPEN_WATER, -height);
            height *= Mix(1.0F, Mix(LEAST_DEPTH, 1.0F, bank), share);
            m_Heights[static_cast<std::size_t>(row * POINTS + column)] = height;
        }
    }
}

void CChartRelief::Along(double north, Column& out) const
{
    const GridPlace place((north - m_Bounds.south) / m_Bounds.Height() * CCoast::CELLS, POINTS);
    const std::array<float, 4> weights = Weights(place.rest);
    out.assign(POINTS, 0.0F);
    for (int i = 0; i < 4; ++i) {
        const int row = std::clamp(place.point + i - 1, 0, POINTS - 1);
        const float* source = m_Heights.data() + static_cast<std::ptrdiff_t>(row) * POINTS;
        for (std::size_t column = 0; column < POINTS; ++column)
            out[column] += source[column] * weights[static_cast<std::size_t>(i)];
    }
}

float CChartRelief::Curve(const Column& row, double at)
{
    const GridPlace place(at, POINTS);
    const std::array<float, 4> weights = Weights(place.rest);
    float height = 0;
    for (int i = 0; i < 4; ++i)
        height += row[static_cast<std::size_t>(std::clamp(place.point + i - 1, 0, POINTS - 1))] *
                  weights[static_cast<std::size_t>(i)];
    return height;
}

float CChartRelief::Height(SeaPoint place) const
{
    Column row;
    Along(place.y, row);
    return Curve(row, (place.x - m_Bounds.west) / CellSize());
}

void CChartRelief::Row(double north, double west, double step, int count, std::vector<float>& out) const
{
    Column row;
    Along(north, row);
    out.resize(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        out[static_cast<std::size_t>(i)] = Curve(row, (west + step * i - m_Bounds.west) / CellSize());
}
