#pragma once
// What a battle is made of: units, what they fire, and the marks that this leaves on the sea.

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// A place on the sea in metres: x to the east, y to the north of the scene's middle.
struct SeaPoint {
    double x = 0;
    double y = 0;
};

struct SeaRect {
    double west = 0;
    double south = 0;
    double east = 0;
    double north = 0;

    double Width() const { return east - west; }
    double Height() const { return north - south; }
    bool Contains(SeaPoint p) const { return p.x >= west && p.x <= east && p.y >= south && p.y <= north; }
    /// The place of the rectangle that is nearest to `p`.
    SeaPoint Nearest(SeaPoint p) const
    {
        return {std::clamp(p.x, west, east), std::clamp(p.y, south, north)};
    }
};

enum class UnitType { SHIP, SUBMARINE, BALLOON };

enum class OrderKind {
    NONE, ///< the unit does what it thinks best
    MOVE,
    ATTACK,
    STOP,
};

struct UnitOrder {
    OrderKind kind = OrderKind::NONE;
    SeaPoint to;     ///< of MOVE
    int target = -1; ///< of ATTACK: index of a unit
};

/// The guns of one kind that a unit has.
struct GunBattery {
    int guns = 0;
    int calibre = 0;        ///< millimetres
    std::int64_t ready = 0; ///< battle time, milliseconds, from which on it may fire again
};

/// A unit's index in CBattleSim::Units stays the same as long as the battle lasts, sunk or not.
struct BattleUnit {
    static constexpr int SIDES = 2;
    static constexpr int NEUTRAL = 2;
    /// Main, secondary and light guns, high-angle guns, machine guns.
    static constexpr std::size_t BATTERIES = 5;
    static constexpr std::size_t HIGH_ANGLE = 3; ///< from this battery on guns reach balloons

    // What it is
    UnitType type = UnitType::SHIP;
    int side = 0; ///< 0, 1 or NEUTRAL
    std::string name;
    std::string code;    ///< pennant number
    int classText = 0;   ///< number of the class's name in the text table
    double length = 0;   ///< metres
    double maxSpeed = 0; ///< metres a second; a submarine's on the surface
    double maxSpeedBelow = 0;
    double turnRadius = 0; ///< metres
    double sight = 0;      ///< metres, as far as it sees a ship
    double maxHull = 0;    ///< points of damage that it stands
    int armour = 0;        ///< millimetres
    double skill = 0;      ///< 0 to 1
    std::array<GunBattery, BATTERIES> guns;
    int tubes = 0;
    int torpedoes = 0;             ///< left
    int depthCharges = 0;          ///< left; a balloon's are bombs
    double value = 0;              ///< its strength at the beginning: what its loss counts
    std::int64_t torpedoReady = 0; ///< battle times, milliseconds
    std::int64_t chargeReady = 0;

    // How it stands
    SeaPoint place;
    double heading = 0; ///< degrees below 360, 0 is north and 90 east
    double speed = 0;   ///< metres a second
    double damage = 0;  ///< of maxHull
    bool submerged = false;
    bool diveOrdered = false;        ///< the player has said whether to be below; the unit keeps to it
    bool gone = false;               ///< sunk or shot down; it doesn't move or fight any more
    std::array<bool, SIDES> seen{};  ///< which side sees it now; its own always does
    std::array<bool, SIDES> known{}; ///< which side has ever seen it
    UnitOrder order;                 ///< by its side
    int target = -1;                 ///< the unit that it fires at or closes now, -1 for none
    SeaPoint goal;                   ///< where it wants to be
    bool hasGoal = false;            ///< without one it keeps its course
    SeaPoint way;                    ///< where it sails to now, around land
    SeaPoint wayGoal;                ///< the goal to which that leads
    std::int64_t wayAt = -1;         ///< battle time when that was found, -1 for never
    double course = 0;               ///< degrees to which it turns now, around what lies in its way
    bool slows = false;              ///< it has no room to turn at full speed

    // What it did
    int rounds = 0;
    int hits = 0;
    int sunk = 0;
    int points = 0;

    /// 1 whole, 0 gone.
    double Hull() const
    {
        if (gone || maxHull <= 0)
            return 0;
        return damage >= maxHull ? 0 : 1 - damage / maxHull;
    }
    bool IsArmed() const
    {
        int weapons = torpedoes + depthCharges;
        for (const GunBattery& battery : guns)
            weapons += battery.guns;
        return weapons > 0;
    }
    bool IsEnemyOf(const BattleUnit& other) const
    {
        return side != other.side && side < SIDES && other.side < SIDES;
    }
};

/// A salvo in the air; shells fly straight over the chart.
struct Shell {
    int from = -1; ///< unit
    int target = -1;
    SeaPoint start;
    SeaPoint end;             ///< where it falls
    std::int64_t firedAt = 0; ///< battle times, milliseconds
    std::int64_t landsAt = 0;
    double damage = 0; ///< that it does on landing
    int hitRounds = 0; ///< 0 is a miss
    int calibre = 0;

    SeaPoint Place(std::int64_t now) const
    {
        const double part =
            landsAt > now ? static_cast<double>(now - firedAt) / static_cast<double>(landsAt - firedAt) : 1;
        return {start.x + (end.x - start.x) * part, start.y + (end.y - start.y) * part};
    }
};

struct Torpedo {
    static constexpr double SPEED = 18; ///< metres a second

    int from = -1;
    SeaPoint place;
    double heading = 0; ///< degrees
    double left = 0;    ///< metres that it still runs
};

enum class MarkKind { SPLASH, HIT, TORPEDO_HIT, DEPTH_CHARGE, SINKING };

/// Something that is seen on the sea for a while. Marks go LIFETIME after they were made.
struct SeaMark {
    static constexpr std::int64_t LIFETIME = 20'000; ///< of battle time, milliseconds

    MarkKind kind = MarkKind::SPLASH;
    SeaPoint place;
    std::int64_t at = 0; ///< battle time, milliseconds
    int calibre = 0;     ///< of SPLASH and HIT
};

/// What a side has done so far.
struct SideFigures {
    int points = 0;
    int units = 0; ///< with which it came
    int rounds = 0;
    int hits = 0;
    int sunk = 0;
    int lost = 0;
};
