#include "battle/navigator.h"

#include <algorithm>

#include "battle/battle_math.h"

namespace
{

constexpr double STEP_SECONDS = static_cast<double>(BATTLE_STEP) / 1000;
constexpr double DEGREES = 57.29577951308232; // of a radian
/// Shorter than half of the narrowest water, so that a unit always finds a way to turn.
constexpr double SHORT_LOOK = 150;

/// Degrees a second that the unit turns at its speed; ships that lie still do it with the engines against
/// each other.
double TurnRate(const BattleUnit& unit)
{
    constexpr double SLOWEST_TURN = 1;
    return std::max(unit.speed / unit.turnRadius * DEGREES, SLOWEST_TURN);
}

} // namespace

// Damage takes up to half of the speed.
double CNavigator::SpeedLimit(const BattleUnit& unit)
{
    const double limit = unit.submerged ? unit.maxSpeedBelow : unit.maxSpeed;
    return limit * (0.5 + unit.Hull() / 2);
}

bool CNavigator::IsOpen(const BattleUnit& unit, SeaPoint place) const
{
    return m_State.coast.Bounds().Contains(place) &&
           (unit.type == UnitType::BALLOON || !m_State.coast.IsLand(place));
}

bool CNavigator::IsFree(const BattleUnit& unit, SeaPoint from, double heading, double metres) const
{
    constexpr int LOOKS = 4;
    // Metres: a spur of land may be thinner than a look is long.
    constexpr double CLOSE_BY[] = {2, 10, 25, 50};
    for (const double close : CLOSE_BY) {
        if (!IsOpen(unit, Ahead(from, heading, close)))
            return false;
    }
    for (int i = 1; i <= LOOKS; ++i) {
        if (!IsOpen(unit, Ahead(from, heading, metres * i / LOOKS)))
            return false;
    }
    return true;
}

// `end` is where the unit has turned to the heading, at the speed that it has.
bool CNavigator::IsTurnFree(const BattleUnit& unit, double heading, SeaPoint& end) const
{
    constexpr double PART = 30;         // degrees
    constexpr double SMALL_CIRCLE = 25; // metres
    end = unit.place;
    const double radius = unit.speed / TurnRate(unit) * DEGREES;
    if (radius < SMALL_CIRCLE)
        return true;
    const double turn = TurnBetween(unit.heading, heading);
    const double side = turn >= 0 ? 90 : -90;
    const SeaPoint centre = Ahead(unit.place, unit.heading + side, radius);
    const int parts = static_cast<int>(turn / (turn >= 0 ? PART : -PART)) + 1;
    for (int i = 1; i <= parts; ++i) {
        end = Ahead(centre, unit.heading + turn * i / parts - side, radius);
        if (!IsOpen(unit, end))
            return false;
    }
    return true;
}

// The free course nearest to the wanted one, to the right at even odds first. Where no turn at full speed
// leads to any, the unit slows down and turns in a smaller circle.
void CNavigator::ChooseCourse(BattleUnit& unit, double wanted) const
{
    constexpr double SECONDS_AHEAD = 30;
    constexpr double POINT = 20; // degrees
    constexpr int POINTS = 9;
    double look = 2 * unit.turnRadius + unit.speed * SECONDS_AHEAD;
    // What lies behind the place where it is to stay is in nobody's way.
    if (unit.hasGoal && unit.order.kind == OrderKind::MOVE)
        look = std::min(look, std::max(DistanceOf(unit.place, unit.goal), SHORT_LOOK));
    const struct {
        double metres;
        bool slow;
    } ways[] = {{look, false}, {SHORT_LOOK, false}, {SHORT_LOOK, true}};
    for (const auto& [metres, slow] : ways) {
        unit.slows = slow;
        for (int i = 0; i <= POINTS; ++i) {
            for (const double turn : {i * POINT, -i * POINT}) {
                SeaPoint end = unit.place;
                if ((slow || IsTurnFree(unit, wanted + turn, end)) &&
                    IsFree(unit, end, wanted + turn, metres)) {
                    unit.course = NormalHeading(wanted + turn);
                    return;
                }
            }
        }
    }
    unit.course = wanted;
}

// Bears away from what is close; what lies on the same place is left behind by turning with one's own number.
void CNavigator::KeepOff(int index, double& wanted) const
{
    constexpr double LENGTHS = 3;
    constexpr double BEAR_AWAY = 50;
    constexpr double GOLDEN_ANGLE = 137.5;
    const BattleUnit& unit = m_State.units[static_cast<std::size_t>(index)];
    if (unit.type == UnitType::BALLOON)
        return;
    const BattleUnit* nearest = nullptr;
    double least = 0;
    for (const BattleUnit& other : m_State.units) {
        if (&other == &unit || other.gone || other.type == UnitType::BALLOON ||
            other.submerged != unit.submerged)
            continue;
        const double square = SquareOf(unit.place, other.place);
        const double room = (unit.length + other.length) / 2 * LENGTHS;
        if (square < room * room && (nearest == nullptr || square < least)) {
            nearest = &other;
            least = square;
        }
    }
    if (nearest == nullptr)
        return;
    if (least < 1) {
        wanted = NormalHeading(index * GOLDEN_ANGLE);
        return;
    }
    const double side = TurnBetween(wanted, BearingOf(unit.place, nearest->place));
    if (side > -90 && side < 90)
        wanted = NormalHeading(wanted + (side >= 0 ? -BEAR_AWAY : BEAR_AWAY));
}

void CNavigator::FindWay(BattleUnit& unit) const
{
    constexpr std::int64_t KEEPS = 30'000; // milliseconds
    constexpr double REACHED = 300;
    if (unit.type == UnitType::BALLOON || !m_State.coast.HasLand()) {
        unit.way = unit.goal;
        return;
    }
    if (unit.wayAt >= 0 && m_State.time - unit.wayAt < KEEPS &&
        SquareOf(unit.place, unit.way) > REACHED * REACHED &&
        SquareOf(unit.goal, unit.wayGoal) < REACHED * REACHED)
        return;
    unit.way = m_State.coast.NextOnWay(unit.place, unit.goal);
    unit.wayGoal = unit.goal;
    unit.wayAt = m_State.time;
}

void CNavigator::Steer(int index)
{
    BattleUnit& unit = m_State.units[static_cast<std::size_t>(index)];
    // Whoever has run up against land turns away first, wherever he would like to go by now.
    const bool turns = unit.speed <= 0 && TurnBetween(unit.heading, unit.course) != 0;
    if (turns && IsFree(unit, unit.place, unit.course, SHORT_LOOK))
        return;
    double wanted = unit.course;
    if (unit.hasGoal) {
        FindWay(unit);
        wanted = BearingOf(unit.place, unit.way);
    }
    KeepOff(index, wanted);
    ChooseCourse(unit, wanted);
}

void CNavigator::Sail(BattleUnit& unit) const
{
    constexpr double SECONDS_TO_FULL_SPEED = 90;
    constexpr double SLOW = 1; // metres a second
    const double limit = SpeedLimit(unit);
    const double arrived = std::max(unit.turnRadius, 100.0);
    // Ships lie to only where they are told to: what a captain steers for himself is often at the sea's edge.
    const bool lies = unit.order.kind == OrderKind::MOVE || unit.type == UnitType::BALLOON;
    const bool stays = lies && unit.hasGoal && SquareOf(unit.place, unit.goal) < arrived * arrived;
    const bool stops = stays || unit.order.kind == OrderKind::STOP;
    const double wanted = stops ? 0 : unit.slows ? std::min(limit, SLOW) : limit;
    const double change = std::max(unit.maxSpeed, unit.maxSpeedBelow) / SECONDS_TO_FULL_SPEED * STEP_SECONDS;
    unit.speed = std::clamp(wanted, unit.speed - 2 * change, unit.speed + change);
    if (limit <= 0)
        return;
    if (wanted > 0) {
        const double rate = TurnRate(unit) * STEP_SECONDS;
        unit.heading =
            NormalHeading(unit.heading + std::clamp(TurnBetween(unit.heading, unit.course), -rate, rate));
    }
    const SeaPoint next = Ahead(unit.place, unit.heading, unit.speed * STEP_SECONDS);
    if (IsOpen(unit, next))
        unit.place = next;
    else
        unit.speed = 0;
}
