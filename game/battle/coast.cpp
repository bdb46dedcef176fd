#include "battle/coast.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>

#include "battle/battle_math.h"
#include "battle/battle_random.h"

namespace
{

constexpr double DEEP = -1;
constexpr double HIGH = 1;
/// Ways are looked for where the water is at least so deep.
constexpr double SAILABLE = -0.03;
/// Columns and rows to the points beside one.
constexpr std::pair<int, int> NEIGHBOURS[] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}};

// A number from -1 to 1 for each corner of the noise's lattice.
double CornerOf(std::uint64_t seed, int column, int row)
{
    CBattleRandom random(seed + static_cast<std::uint64_t>(column) * 0x632be59bd9b4e019ULL +
                         static_cast<std::uint64_t>(row) * 0x8cb92ba72f3d8dd7ULL);
    return random.Signed();
}

double Ease(double t)
{
    return t * t * (3 - 2 * t);
}

double NoiseAt(std::uint64_t seed, double u, double v)
{
    const int column = static_cast<int>(std::floor(u));
    const int row = static_cast<int>(std::floor(v));
    const double x = Ease(u - column);
    const double y = Ease(v - row);
    const double south = CornerOf(seed, column, row) * (1 - x) + CornerOf(seed, column + 1, row) * x;
    const double north = CornerOf(seed, column, row + 1) * (1 - x) + CornerOf(seed, column + 1, row + 1) * x;
    return south * (1 - y) + north * y;
}

double SquareToWay(SeaPoint place, SeaPoint from, SeaPoint to)
{
    const double length = SquareOf(from, to);
    double part = 0;
    if (length > 0)
        part = ((place.x - from.x) * (to.x - from.x) + (place.y - from.y) * (to.y - from.y)) / length;
    part = std::clamp(part, 0.0, 1.0);
    return SquareOf(place, {from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part});
}

} // namespace

CCoast::CCoast(const std::string& scene, const SeaRect& bounds, const std::vector<SeaPoint>& starts)
    : m_Bounds(bounds)
{
    if (scene.empty() || scene.find(OPEN_SEA) != std::string::npos)
        return;
    std::uint64_t seed = 0;
    for (const char letter : scene.substr(0, scene.rfind('_')))
        seed = seed * 131 + static_cast<unsigned char>(letter);
    Raise(seed);
    Carve(starts);
}

// Islands, and a shore along two sides that meet.
void CCoast::Raise(std::uint64_t seed)
{
    constexpr double COARSE = 5;
    constexpr double FINE = 17;
    constexpr double FINE_PART = 0.3;
    constexpr double SEA_LEVEL = 0.42;
    constexpr double SHORE_BEGINS = 0.62;
    constexpr double SHORE_SLOPE = 3;
    CBattleRandom random(seed);
    const bool east = random.Next() % 2 != 0;
    const bool north = random.Next() % 2 != 0;
    m_Heights.resize(static_cast<std::size_t>(POINTS) * POINTS);
    for (int row = 0; row < POINTS; ++row) {
        for (int column = 0; column < POINTS; ++column) {
            const double u = static_cast<double>(column) / CELLS;
            const double v = static_cast<double>(row) / CELLS;
            const double noise =
                NoiseAt(seed, u * COARSE, v * COARSE) + FINE_PART * NoiseAt(seed + 1, u * FINE, v * FINE);
            const double toEdge = std::max(east ? u : 1 - u, north ? v : 1 - v) * 2 - 1;
            const double shore = std::max((toEdge - SHORE_BEGINS) * SHORE_SLOPE, 0.0);
            m_Heights[static_cast<std::size_t>(row * POINTS + column)] =
                static_cast<float>(std::clamp(noise - SEA_LEVEL + shore, DEEP, HIGH));
        }
    }
}

// Water around the straight ways from the units' places to their middle.
void CCoast::Carve(const std::vector<SeaPoint>& starts)
{
    constexpr double LEAST_CLEARANCE = 1200; // metres
    constexpr double CLEAR_CELLS = 2.5;
    constexpr double SLOPE = 4;
    if (starts.empty())
        return;
    const double cell = std::max(m_Bounds.Width(), m_Bounds.Height()) / CELLS;
    const double clearance = std::max(LEAST_CLEARANCE, CLEAR_CELLS * cell);
    SeaPoint middle;
    for (const SeaPoint& start : starts) {
        middle.x += start.x / static_cast<double>(starts.size());
        middle.y += start.y / static_cast<double>(starts.size());
    }
    for (int row = 0; row < POINTS; ++row) {
        for (int column = 0; column < POINTS; ++column) {
            float& height = m_Heights[static_cast<std::size_t>(row * POINTS + column)];
            if (static_cast<double>(height) <= DEEP)
                continue;
            double nearest = std::numeric_limits<double>::max();
            for (const SeaPoint& start : starts)
                nearest = std::min(nearest, SquareToWay(PointPlace(column, row), start, middle));
            const double limit = (std::sqrt(nearest) - clearance) / (SLOPE * clearance);
            height = static_cast<float>(std::clamp(std::min(static_cast<double>(height), limit), DEEP, HIGH));
        }
    }
}

SeaPoint CCoast::PointPlace(int column, int row) const
{
    return {m_Bounds.west + m_Bounds.Width() * column / CELLS,
            m_Bounds.south + m_Bounds.Height() * row / CELLS};
}

double CCoast::Height(SeaPoint place) const
{
    if (!HasLand() || !m_Bounds.Contains(place))
        return DEEP;
    const double u = (place.x - m_Bounds.west) / m_Bounds.Width() * CELLS;
    const double v = (place.y - m_Bounds.south) / m_Bounds.Height() * CELLS;
    const int column = std::clamp(static_cast<int>(u), 0, CELLS - 1);
    const int row = std::clamp(static_cast<int>(v), 0, CELLS - 1);
    const double x = u - column;
    const double y = v - row;
    const double south = PointHeight(column, row) * (1 - x) + PointHeight(column + 1, row) * x;
    const double north = PointHeight(column, row + 1) * (1 - x) + PointHeight(column + 1, row + 1) * x;
    return south * (1 - y) + north * y;
}

bool CCoast::IsClear(SeaPoint from, SeaPoint to) const
{
    if (!HasLand())
        return true;
    const double cell = std::min(m_Bounds.Width(), m_Bounds.Height()) / CELLS;
    const int parts = 1 + static_cast<int>(std::min(DistanceOf(from, to) / cell * 2, 4.0 * CELLS));
    for (int i = 1; i <= parts; ++i) {
        const double part = static_cast<double>(i) / parts;
        if (Height({from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part}) > SAILABLE)
            return false;
    }
    return true;
}

int CCoast::NearestPoint(SeaPoint place) const
{
    const double u = (place.x - m_Bounds.west) / m_Bounds.Width() * CELLS;
    const double v = (place.y - m_Bounds.south) / m_Bounds.Height() * CELLS;
    return static_cast<int>(std::clamp(v + 0.5, 0.0, 1.0 * CELLS)) * POINTS +
           static_cast<int>(std::clamp(u + 0.5, 0.0, 1.0 * CELLS));
}

// Whether no land lies between a place and a point of the grid beside it, shallow though the water may be.
bool CCoast::IsWater(SeaPoint from, SeaPoint to) const
{
    constexpr int PARTS = 12;
    for (int i = 1; i <= PARTS; ++i) {
        const double part = static_cast<double>(i) / PARTS;
        if (IsLand({from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part}))
            return false;
    }
    return true;
}

// The nearest point to the place, then the eight around it: `visit` gets its index, and whether only water
// lies between.
template <class Visit>
void CCoast::ForPointsAround(SeaPoint place, Visit visit) const
{
    const int nearest = NearestPoint(place);
    const auto look = [&](int column, int row) {
        visit(row * POINTS + column, IsWater(place, PointPlace(column, row)));
    };
    look(nearest % POINTS, nearest / POINTS);
    for (int row = std::max(nearest / POINTS - 1, 0); row <= std::min(nearest / POINTS + 1, CELLS); ++row) {
        for (int column = std::max(nearest % POINTS - 1, 0); column <= std::min(nearest % POINTS + 1, CELLS);
             ++column) {
            if (row * POINTS + column != nearest)
                look(column, row);
        }
    }
}

// How many steps every sailable point of the grid is from those beside `goal`; -1 where no way leads.
std::vector<int> CCoast::StepsTo(SeaPoint goal) const
{
    std::vector<int> steps(m_Heights.size(), -1);
    std::vector<int> front;
    ForPointsAround(goal, [&](int point, bool water) {
        if (!water || PointHeight(point % POINTS, point / POINTS) > SAILABLE)
            return;
        steps[static_cast<std::size_t>(point)] = 0;
        front.push_back(point);
    });
    for (std::size_t next = 0; next < front.size(); ++next) {
        const int column = front[next] % POINTS;
        const int row = front[next] / POINTS;
        for (const auto& [x, y] : NEIGHBOURS) {
            if (column + x < 0 || column + x > CELLS || row + y < 0 || row + y > CELLS ||
                PointHeight(column + x, row + y) > SAILABLE)
                continue;
            const auto point = static_cast<std::size_t>((row + y) * POINTS + column + x);
            if (steps[point] >= 0)
                continue;
            steps[point] = steps[static_cast<std::size_t>(front[next])] + 1;
            front.push_back(static_cast<int>(point));
        }
    }
    return steps;
}

// The nearest point, or where no way leads from that over water the one around it with the fewest steps;
// rather one across a spur of land than none. -1 without any.
int CCoast::FirstOnWay(SeaPoint from, const std::vector<int>& steps) const
{
    const int nearest = NearestPoint(from);
    const auto stepsOf = [&steps](int point) { return steps[static_cast<std::size_t>(point)]; };
    int first = -1;
    bool overWater = false;
    ForPointsAround(from, [&](int point, bool water) {
        if (stepsOf(point) < 0 || (overWater && (!water || first == nearest)))
            return;
        if (first < 0 || (water && !overWater) || stepsOf(point) < stepsOf(first)) {
            first = point;
            overWater = water;
        }
    });
    return first;
}

bool CCoast::HasWay(SeaPoint from, SeaPoint to) const
{
    return !IsLand(to) && (IsClear(from, to) || FirstOnWay(from, StepsTo(to)) >= 0);
}

SeaPoint CCoast::NextOnWay(SeaPoint from, SeaPoint to) const
{
    if (IsClear(from, to))
        return to;
    const std::vector<int> steps = StepsTo(to);
    int at = FirstOnWay(from, steps);
    if (at < 0)
        return to;
    SeaPoint farthest = at == NearestPoint(from) ? to : PointPlace(at % POINTS, at / POINTS);
    // Down the steps, as far as can be seen from where it is.
    for (int left = steps[static_cast<std::size_t>(at)]; left > 0; --left) {
        const int column = at % POINTS;
        const int row = at / POINTS;
        for (const auto& [x, y] : NEIGHBOURS) {
            if (column + x < 0 || column + x > CELLS || row + y < 0 || row + y > CELLS)
                continue;
            const int next = (row + y) * POINTS + column + x;
            if (steps[static_cast<std::size_t>(next)] == left - 1) {
                at = next;
                break;
            }
        }
        const SeaPoint place = PointPlace(at % POINTS, at / POINTS);
        if (farthest.x != to.x || farthest.y != to.y) {
            if (!IsClear(from, place))
                break;
        }
        farthest = place;
    }
    return farthest;
}
