#include "battle/weapons.h"

#include <algorithm>

#include "battle/battle_math.h"

namespace
{

constexpr double STEP_SECONDS = static_cast<double>(BATTLE_STEP) / 1000;
constexpr double SHELL_SPEED = 450;             // metres a second, over the chart
constexpr std::int64_t TORPEDO_RELOAD = 45'000; // milliseconds
constexpr std::int64_t CHARGE_RELOAD = 20'000;
constexpr std::int64_t LOOK_AGAIN = 5'000;
constexpr int LARGEST_MACHINE_GUN = 20; // millimetres

std::int64_t ReloadOf(int calibre)
{
    constexpr std::int64_t LEAST = 8'000;
    constexpr std::int64_t OF_A_MILLIMETRE = 100;
    return LEAST + OF_A_MILLIMETRE * calibre;
}

// Of one round, at that part of the range.
double ChanceOf(const BattleUnit& unit, const BattleUnit& target, double partOfRange)
{
    constexpr double CLOSE = 0.15;
    constexpr double STRAY = 0.004;
    const double away = 1 - partOfRange;
    const double size = target.type == UnitType::BALLOON ? 0.6 : std::clamp(target.length / 120, 0.4, 1.6);
    return (CLOSE * away * away + STRAY) * (0.5 + unit.skill) * size;
}

double ShellDamage(int calibre, double partOfRange, int armour)
{
    constexpr double CALIBRE_SQUARE_IN_POINT = 4500;
    constexpr double LEAST = 0.15;
    constexpr double BOUNCED = 0.1;
    const double damage = std::max(1.0 * calibre * calibre / CALIBRE_SQUARE_IN_POINT, LEAST);
    const double pierces = calibre * (1.25 - 0.75 * partOfRange);
    if (pierces >= armour)
        return damage;
    return damage * std::max(pierces * pierces / (1.0 * armour * armour), BOUNCED);
}

// The unit has such guns, and they reach up or down to that target as long as it isn't below.
bool IsFor(const BattleUnit& unit, std::size_t battery, const BattleUnit& target)
{
    return unit.guns[battery].guns > 0 &&
           (target.type != UnitType::BALLOON || battery >= BattleUnit::HIGH_ANGLE);
}

} // namespace

double CWeapons::GunRange(int calibre)
{
    constexpr double MACHINE_GUN = 1500;
    constexpr double LEAST = 4000;
    constexpr double OF_A_MILLIMETRE = 45;
    return calibre <= LARGEST_MACHINE_GUN ? MACHINE_GUN : LEAST + OF_A_MILLIMETRE * calibre;
}

double CWeapons::ReachOf(const BattleUnit& unit, const BattleUnit& target)
{
    double reach = 0;
    for (std::size_t i = 0; i < BattleUnit::BATTERIES; ++i) {
        if (IsFor(unit, i, target))
            reach = std::max(reach, GunRange(unit.guns[i].calibre));
    }
    return reach;
}

bool CWeapons::CanHarm(const BattleUnit& unit, const BattleUnit& target, bool submerged)
{
    const bool balloon = target.type == UnitType::BALLOON;
    const bool bombs = unit.type == UnitType::BALLOON;
    return (!submerged && (ReachOf(unit, target) > 0 || (unit.torpedoes > 0 && !balloon))) ||
           (unit.depthCharges > 0 && submerged != bombs && !balloon);
}

bool CWeapons::CanEverHarm(const BattleUnit& unit, const BattleUnit& target)
{
    return CanHarm(unit, target, false) ||
           (target.type == UnitType::SUBMARINE && CanHarm(unit, target, true));
}

// The player's luck in the grade that he chose.
double CWeapons::Luck(const BattleUnit& unit) const
{
    constexpr double PLAYER[] = {1.3, 1, 0.9};
    constexpr double ENEMY[] = {0.75, 1, 1.12};
    const int player = m_State.setup.OrderingSide();
    if (player < 0)
        return 1;
    const int grade = std::clamp(m_State.setup.difficulty, 0, 2);
    return unit.side == player ? PLAYER[grade] : ENEMY[grade];
}

bool CWeapons::CanHit(const BattleUnit& unit, std::size_t battery, const BattleUnit& target) const
{
    if (target.gone || target.submerged || !unit.IsEnemyOf(target) || !IsFor(unit, battery, target) ||
        !target.seen[static_cast<std::size_t>(unit.side)])
        return false;
    const double range = GunRange(unit.guns[battery].calibre);
    return SquareOf(unit.place, target.place) <= range * range;
}

int CWeapons::TargetOf(const BattleUnit& unit, std::size_t battery) const
{
    if (unit.target >= 0 && CanHit(unit, battery, m_State.units[static_cast<std::size_t>(unit.target)]))
        return unit.target;
    int nearest = -1;
    double least = 0;
    for (std::size_t i = 0; i < m_State.units.size(); ++i) {
        if (!CanHit(unit, battery, m_State.units[i]))
            continue;
        const double square = SquareOf(unit.place, m_State.units[i].place);
        if (nearest < 0 || square < least) {
            nearest = static_cast<int>(i);
            least = square;
        }
    }
    return nearest;
}

void CWeapons::Fight(int index)
{
    const BattleUnit& unit = m_State.units[static_cast<std::size_t>(index)];
    if (unit.gone || unit.side >= BattleUnit::SIDES)
        return;
    for (std::size_t battery = 0; battery < BattleUnit::BATTERIES && !unit.submerged; ++battery) {
        if (unit.guns[battery].guns > 0 && unit.guns[battery].ready <= m_State.time)
            FireGuns(index, battery);
    }
    if (unit.torpedoes > 0 && unit.torpedoReady <= m_State.time)
        FireTorpedo(index);
    if (unit.depthCharges > 0 && unit.chargeReady <= m_State.time)
        DropCharge(index);
}

void CWeapons::FireGuns(int index, std::size_t number)
{
    BattleUnit& unit = m_State.units[static_cast<std::size_t>(index)];
    GunBattery& battery = unit.guns[number];
    const int found = TargetOf(unit, number);
    if (found < 0) {
        battery.ready = m_State.time + LOOK_AGAIN;
        return;
    }
    const BattleUnit& target = m_State.units[static_cast<std::size_t>(found)];
    const double distance = DistanceOf(unit.place, target.place);
    const double part = distance / GunRange(battery.calibre);
    const double chance = ChanceOf(unit, target, part) * Luck(unit);
    Shell shell;
    shell.from = index;
    shell.target = found;
    shell.calibre = battery.calibre;
    for (int i = 0; i < battery.guns; ++i)
        shell.hitRounds += m_State.random.Unit() < chance ? 1 : 0;
    shell.damage = shell.hitRounds * ShellDamage(battery.calibre, part, target.armour);
    shell.firedAt = m_State.time;
    const double seconds = distance / SHELL_SPEED;
    shell.landsAt = m_State.time + 1 + static_cast<std::int64_t>(seconds * 1000);
    shell.start = unit.place;
    shell.end = Ahead(target.place, target.heading, target.speed * seconds);
    if (shell.hitRounds == 0) {
        constexpr double SPREAD = 0.03; // of the distance
        shell.end.x += m_State.random.Signed() * distance * SPREAD;
        shell.end.y += m_State.random.Signed() * distance * SPREAD;
    }
    unit.rounds += battery.guns;
    // Crews aren't machines: a tenth more or less.
    const auto reload = static_cast<double>(ReloadOf(battery.calibre));
    battery.ready = m_State.time + static_cast<std::int64_t>(reload * (1 + m_State.random.Signed() / 10));
    m_Shells.push_back(shell);
}

// Where the target will be when the torpedo gets there, as well as the crew can tell.
void CWeapons::FireTorpedo(int index)
{
    constexpr double OPENS_FIRE = 0.55 * TORPEDO_RANGE;
    constexpr double WORST_ERROR = 9; // degrees
    constexpr int REFINEMENTS = 3;
    BattleUnit& unit = m_State.units[static_cast<std::size_t>(index)];
    if (unit.target < 0)
        return;
    const BattleUnit& target = m_State.units[static_cast<std::size_t>(unit.target)];
    if (target.gone || target.submerged || target.type == UnitType::BALLOON || !unit.IsEnemyOf(target) ||
        !target.seen[static_cast<std::size_t>(unit.side)] ||
        SquareOf(unit.place, target.place) > OPENS_FIRE * OPENS_FIRE)
        return;
    SeaPoint aim = target.place;
    for (int i = 0; i < REFINEMENTS; ++i)
        aim =
            Ahead(target.place, target.heading, target.speed * DistanceOf(unit.place, aim) / Torpedo::SPEED);
    const double error = m_State.random.Signed() * WORST_ERROR * (1.2 - unit.skill) / Luck(unit);
    m_Torpedoes.push_back(
        {index, unit.place, NormalHeading(BearingOf(unit.place, aim) + error), TORPEDO_RANGE});
    --unit.torpedoes;
    ++unit.rounds;
    unit.torpedoReady = m_State.time + TORPEDO_RELOAD;
}

// Ships drop charges over what is below, balloons bombs on what is not.
void CWeapons::DropCharge(int index)
{
    constexpr double CLOSE = 260; // metres
    constexpr double CHANCE = 0.3;
    constexpr double LEAST_DAMAGE = 6;
    constexpr double MORE_DAMAGE = 10;
    BattleUnit& unit = m_State.units[static_cast<std::size_t>(index)];
    if (unit.target < 0)
        return;
    const BattleUnit& target = m_State.units[static_cast<std::size_t>(unit.target)];
    const bool bomb = unit.type == UnitType::BALLOON;
    if (target.gone || target.submerged == bomb || target.type == UnitType::BALLOON ||
        !unit.IsEnemyOf(target) || !target.seen[static_cast<std::size_t>(unit.side)] ||
        SquareOf(unit.place, target.place) > CLOSE * CLOSE)
        return;
    --unit.depthCharges;
    ++unit.rounds;
    unit.chargeReady = m_State.time + CHARGE_RELOAD;
    Mark(MarkKind::DEPTH_CHARGE, target.place);
    if (m_State.random.Unit() >= CHANCE * (0.5 + unit.skill) * Luck(unit))
        return;
    ++unit.hits;
    Damage(unit.target, LEAST_DAMAGE + MORE_DAMAGE * m_State.random.Unit(), index);
}

void CWeapons::Advance()
{
    for (const Shell& shell : m_Shells) {
        if (shell.landsAt <= m_State.time)
            Land(shell);
    }
    std::erase_if(m_Shells, [this](const Shell& shell) { return shell.landsAt <= m_State.time; });
    for (Torpedo& torpedo : m_Torpedoes)
        Run(torpedo);
    std::erase_if(m_Torpedoes, [](const Torpedo& torpedo) { return torpedo.left <= 0; });
    DropMarks();
}

void CWeapons::Cease()
{
    m_Shells.clear();
    m_Torpedoes.clear();
}

void CWeapons::DropMarks()
{
    std::erase_if(m_Marks,
                  [this](const SeaMark& mark) { return m_State.time - mark.at >= SeaMark::LIFETIME; });
}

void CWeapons::Land(const Shell& shell)
{
    const BattleUnit& target = m_State.units[static_cast<std::size_t>(shell.target)];
    if (shell.hitRounds == 0 || target.gone || target.submerged) {
        Mark(MarkKind::SPLASH, shell.end, shell.calibre);
        return;
    }
    m_State.units[static_cast<std::size_t>(shell.from)].hits += shell.hitRounds;
    Mark(MarkKind::HIT, target.place, shell.calibre);
    Damage(shell.target, shell.damage, shell.from);
}

// Nothing is left of its way when it has run aground or hit.
void CWeapons::Run(Torpedo& torpedo)
{
    constexpr double LENGTHS = 0.35;
    constexpr double LEAST_DAMAGE = 30;
    constexpr double MORE_DAMAGE = 30;
    torpedo.place = Ahead(torpedo.place, torpedo.heading, Torpedo::SPEED * STEP_SECONDS);
    torpedo.left -= Torpedo::SPEED * STEP_SECONDS;
    const BattleUnit& from = m_State.units[static_cast<std::size_t>(torpedo.from)];
    for (std::size_t i = 0; i < m_State.units.size(); ++i) {
        const BattleUnit& unit = m_State.units[i];
        const double close = unit.length * LENGTHS;
        if (unit.gone || unit.submerged || unit.type == UnitType::BALLOON || !from.IsEnemyOf(unit) ||
            SquareOf(unit.place, torpedo.place) > close * close)
            continue;
        ++m_State.units[static_cast<std::size_t>(torpedo.from)].hits;
        Mark(MarkKind::TORPEDO_HIT, torpedo.place);
        Damage(static_cast<int>(i), LEAST_DAMAGE + MORE_DAMAGE * m_State.random.Unit(), torpedo.from);
        torpedo.left = 0;
        return;
    }
    if (m_State.coast.IsLand(torpedo.place))
        torpedo.left = 0;
}

void CWeapons::Damage(int index, double damage, int by)
{
    BattleUnit& unit = m_State.units[static_cast<std::size_t>(index)];
    BattleUnit& from = m_State.units[static_cast<std::size_t>(by)];
    m_State.lastHit = m_State.time;
    ++from.points;
    unit.damage += damage;
    if (unit.damage < unit.maxHull)
        return;
    unit.damage = unit.maxHull;
    unit.gone = true;
    unit.speed = 0;
    unit.hasGoal = false;
    unit.order = {};
    unit.target = -1;
    ++from.sunk;
    from.points += static_cast<int>(unit.value);
    Mark(MarkKind::SINKING, unit.place);
}

void CWeapons::Mark(MarkKind kind, SeaPoint place, int calibre)
{
    if (m_Marks.size() < MAX_MARKS)
        m_Marks.push_back({kind, place, m_State.time, calibre});
}
