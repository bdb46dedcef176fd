#include "battle/captain.h"

#include <algorithm>

#include "battle/battle_math.h"
#include "battle/weapons.h"

namespace
{

// Metres
constexpr double LISTENING = 900;     // ships with depth charges hear what is below
constexpr double SHALLOW_LOOK = 2000; // balloons see what is below
constexpr double PERISCOPE = 5000;
constexpr double TORPEDO_SHOT = 1800;
constexpr double SHUNS_AT = 7000;
constexpr double DIVES_AT = 6500;
constexpr double RISES_AT = 9500;
constexpr double SHORT_LEG = 4000;
constexpr double EDGE = 200; // kept off the sea's bounds

// How far off a unit is seen, as a part of the watcher's sight.
double Prominence(const BattleUnit& unit)
{
    switch (unit.type) {
    case UnitType::BALLOON:
        return 1.2;
    case UnitType::SUBMARINE:
        return 0.4;
    default:
        return std::clamp(0.5 + unit.length / 200, 0.6, 1.3);
    }
}

// Merchantmen and the like: they don't look for a fight.
bool IsPeaceful(const BattleUnit& unit)
{
    return unit.guns[0].guns == 0 && unit.guns[1].guns == 0 && unit.torpedoes == 0 && unit.depthCharges == 0;
}

// Whether it is worth sailing after that one: ships leave balloons to the guns that reach them by the way.
bool CanFight(const BattleUnit& unit, const BattleUnit& target)
{
    return CWeapons::CanHarm(unit, target) &&
           (target.type != UnitType::BALLOON || unit.type == UnitType::BALLOON);
}

// Its side sees that one, or it is below and hears the screws of a ship that its periscope doesn't show.
bool Notices(const BattleUnit& unit, const BattleUnit& other)
{
    return other.seen[static_cast<std::size_t>(unit.side)] ||
           (unit.submerged && other.type == UnitType::SHIP &&
            SquareOf(unit.place, other.place) < RISES_AT * RISES_AT);
}

} // namespace

bool CCaptain::Sees(const BattleUnit& watcher, const BattleUnit& unit) const
{
    double range = watcher.sight * Prominence(unit);
    if (watcher.submerged)
        range = std::min(range, PERISCOPE);
    if (unit.submerged)
        range = watcher.type == UnitType::BALLOON                            ? SHALLOW_LOOK
                : watcher.type == UnitType::SHIP && watcher.depthCharges > 0 ? LISTENING
                                                                             : 0;
    return SquareOf(watcher.place, unit.place) <= range * range;
}

void CCaptain::Look(int index)
{
    BattleUnit& unit = m_State.units[static_cast<std::size_t>(index)];
    for (std::size_t side = 0; side < BattleUnit::SIDES; ++side) {
        if (unit.side == static_cast<int>(side))
            continue;
        unit.seen[side] = std::ranges::any_of(m_State.units, [&](const BattleUnit& watcher) {
            return watcher.side == static_cast<int>(side) && !watcher.gone && Sees(watcher, unit);
        });
        unit.known[side] = unit.known[side] || unit.seen[side];
    }
}

const BattleUnit* CCaptain::Nearest(const BattleUnit& unit, bool enemies, bool seen) const
{
    const BattleUnit* nearest = nullptr;
    double least = 0;
    for (const BattleUnit& other : m_State.units) {
        if (&other == &unit || other.gone || other.type == UnitType::BALLOON ||
            (enemies ? !unit.IsEnemyOf(other) : unit.side != other.side) || (seen && !Notices(unit, other)))
            continue;
        const double square = SquareOf(unit.place, other.place);
        if (nearest == nullptr || square < least) {
            nearest = &other;
            least = square;
        }
    }
    return nearest;
}

int CCaptain::ChooseTarget(int index) const
{
    const BattleUnit& unit = m_State.units[static_cast<std::size_t>(index)];
    if (unit.order.kind == OrderKind::ATTACK)
        return unit.order.target;
    int best = -1;
    double least = 0;
    for (std::size_t i = 0; i < m_State.units.size(); ++i) {
        const BattleUnit& other = m_State.units[i];
        if (other.gone || !unit.IsEnemyOf(other) || !other.seen[static_cast<std::size_t>(unit.side)] ||
            !CanFight(unit, other))
            continue;
        const double square = SquareOf(unit.place, other.place);
        if (best < 0 || square < least) {
            best = static_cast<int>(i);
            least = square;
        }
    }
    return best;
}

void CCaptain::SetGoal(BattleUnit& unit, SeaPoint goal) const
{
    const SeaRect& bounds = m_State.coast.Bounds();
    unit.goal = {std::clamp(goal.x, bounds.west + EDGE, bounds.east - EDGE),
                 std::clamp(goal.y, bounds.south + EDGE, bounds.north - EDGE)};
    unit.hasGoal = true;
}

void CCaptain::Shun(BattleUnit& unit, const BattleUnit& threat, double distance)
{
    SetGoal(unit, Ahead(unit.place, BearingOf(threat.place, unit.place), distance));
}

// To the range that suits its weapons, and then along with the broadside bearing.
void CCaptain::CloseIn(BattleUnit& unit, const BattleUnit& target)
{
    constexpr double BOAT = 150; // metres long: shorter ones attack with torpedoes
    const double distance = DistanceOf(unit.place, target.place);
    if ((target.submerged && unit.depthCharges > 0) || unit.type == UnitType::BALLOON) {
        SetGoal(unit, target.place);
        return;
    }
    double range = CWeapons::ReachOf(unit, target) / 2;
    if (unit.torpedoes > 0 && target.type != UnitType::BALLOON &&
        (unit.type == UnitType::SUBMARINE || unit.length < BOAT || range <= 0))
        range = TORPEDO_SHOT;
    // With charges alone it waits nearby until a submarine dives.
    if (range <= 0)
        range = LISTENING;
    if (distance > range) {
        SetGoal(unit, target.place);
    } else if (distance < range / 2) {
        Shun(unit, target, SHORT_LEG);
    } else {
        const double bearing = BearingOf(unit.place, target.place);
        const double turn = TurnBetween(bearing, unit.heading) >= 0 ? 90 : -90;
        SetGoal(unit, Ahead(unit.place, bearing + turn, SHORT_LEG));
    }
}

// The wireless leads it to the nearest of the enemy that it can fight, or to any.
void CCaptain::Search(BattleUnit& unit)
{
    const BattleUnit* nearest = nullptr;
    double least = 0;
    for (const BattleUnit& other : m_State.units) {
        if (other.gone || !unit.IsEnemyOf(other) || other.type == UnitType::BALLOON || !CanFight(unit, other))
            continue;
        const double square = SquareOf(unit.place, other.place);
        if (nearest == nullptr || square < least) {
            nearest = &other;
            least = square;
        }
    }
    if (nearest == nullptr)
        nearest = Nearest(unit, true, false);
    if (nearest != nullptr)
        SetGoal(unit, nearest->place);
    else
        unit.hasGoal = false;
}

// With bombs it attacks; without it watches from a distance, or stays with its own ships.
void CCaptain::FlyBalloon(BattleUnit& unit)
{
    constexpr double LEAVES_ALONE = 0.6; // of the sight
    if (unit.depthCharges > 0 && unit.target >= 0) {
        CloseIn(unit, m_State.units[static_cast<std::size_t>(unit.target)]);
        return;
    }
    const BattleUnit* enemy = Nearest(unit, true, true);
    const BattleUnit* own = Nearest(unit, false, true);
    const double away = LEAVES_ALONE * unit.sight;
    if (enemy != nullptr && SquareOf(unit.place, enemy->place) < away * away)
        Shun(unit, *enemy, SHORT_LEG);
    else if (own != nullptr)
        SetGoal(unit, own->place);
    else
        unit.hasGoal = false;
}

void CCaptain::ChooseGoal(BattleUnit& unit)
{
    if (unit.type == UnitType::BALLOON && unit.order.kind == OrderKind::NONE) {
        FlyBalloon(unit);
        return;
    }
    const BattleUnit* target =
        unit.target >= 0 ? &m_State.units[static_cast<std::size_t>(unit.target)] : nullptr;
    const bool spent = IsPeaceful(unit) || (unit.type == UnitType::SUBMARINE && unit.torpedoes == 0);
    if (spent && unit.order.kind == OrderKind::NONE) {
        const BattleUnit* threat = Nearest(unit, true, true);
        if (threat != nullptr && SquareOf(unit.place, threat->place) < SHUNS_AT * SHUNS_AT)
            Shun(unit, *threat, SHORT_LEG);
        else
            unit.hasGoal = false;
    } else if (target != nullptr) {
        CloseIn(unit, *target);
    } else {
        Search(unit);
    }
}

void CCaptain::Dive(BattleUnit& unit, bool below) const
{
    if (unit.submerged == below)
        return;
    unit.submerged = below;
    unit.speed = std::min(unit.speed, below ? unit.maxSpeedBelow : unit.maxSpeed);
}

void CCaptain::ChooseDepth(BattleUnit& unit) const
{
    if (unit.diveOrdered)
        return;
    // Submarines fight each other on the surface.
    const double limit = unit.submerged ? RISES_AT : DIVES_AT;
    Dive(unit, std::ranges::any_of(m_State.units, [&](const BattleUnit& other) {
             return other.type == UnitType::SHIP && !other.gone && unit.IsEnemyOf(other) &&
                    Notices(unit, other) && SquareOf(unit.place, other.place) < limit * limit;
         }));
}

void CCaptain::Think(int index, bool fighting)
{
    BattleUnit& unit = m_State.units[static_cast<std::size_t>(index)];
    if (unit.gone)
        return;
    if (unit.order.kind == OrderKind::ATTACK) {
        const BattleUnit& ordered = m_State.units[static_cast<std::size_t>(unit.order.target)];
        if (!fighting || ordered.gone || !CWeapons::CanEverHarm(unit, ordered))
            unit.order = {};
    }
    const bool fights = fighting && unit.side < BattleUnit::SIDES;
    unit.target = fights ? ChooseTarget(index) : -1;
    if (fights && unit.type == UnitType::SUBMARINE)
        ChooseDepth(unit);
    constexpr double ARRIVED = 100;
    switch (unit.order.kind) {
    case OrderKind::MOVE: {
        SetGoal(unit, unit.order.to);
        const double close = std::max(unit.turnRadius, ARRIVED);
        if (SquareOf(unit.place, unit.goal) < close * close)
            unit.order.kind = OrderKind::STOP;
        break;
    }
    case OrderKind::STOP:
        unit.hasGoal = false;
        break;
    default:
        if (fights)
            ChooseGoal(unit);
        else
            unit.hasGoal = false;
    }
}
