#include "battle/battle_sim.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

#include "battle/battle_math.h"
#include "battle/unit_figures.h"

namespace
{

// How many steps lie between the times that a unit does something; units take turns.
constexpr std::int64_t LOOKS_EVERY = 10;
constexpr std::int64_t THINKS_EVERY = 20;
constexpr std::int64_t STEERS_EVERY = 4;
constexpr int NOON = 12;
constexpr int HOUR = 60;
constexpr int DAY = 24 * HOUR;

std::string SceneOf(const Scenario& scenario)
{
    const auto& name = scenario.header.szScene;
    return {name, strnlen(name, sizeof(name))};
}

int StartMinutesOf(const SCENARIO_HEADER& header)
{
    const bool morning = (header.nTimeFlags & SCENARIO_TIME_AM) != 0;
    const int hours = std::clamp(header.nHours, 0, NOON) % NOON + (morning ? 0 : NOON);
    return hours * HOUR + std::clamp(header.nMinutes, 0, HOUR - 1);
}

std::vector<BattleUnit> UnitsOf(const Scenario& scenario)
{
    const double light = LightOf(SceneOf(scenario));
    std::vector<BattleUnit> units;
    units.reserve(scenario.items.size());
    for (const ScenarioItem& item : scenario.items)
        units.push_back(MakeUnit(item, light));
    return units;
}

std::vector<SeaPoint> StartsOf(const std::vector<BattleUnit>& units)
{
    std::vector<SeaPoint> starts;
    for (const BattleUnit& unit : units)
        starts.push_back(unit.place);
    return starts;
}

// All places with room around them, four wide to three high at most on either side.
SeaRect BoundsOf(const std::vector<BattleUnit>& units)
{
    constexpr double LEAST_MARGIN = 6000; // metres
    constexpr double MARGIN = 0.3;        // of the extent
    constexpr double ASPECT = 4.0 / 3;
    SeaRect rect;
    if (!units.empty())
        rect = {units[0].place.x, units[0].place.y, units[0].place.x, units[0].place.y};
    for (const BattleUnit& unit : units) {
        rect.west = std::min(rect.west, unit.place.x);
        rect.east = std::max(rect.east, unit.place.x);
        rect.south = std::min(rect.south, unit.place.y);
        rect.north = std::max(rect.north, unit.place.y);
    }
    const double margin = std::max(LEAST_MARGIN, MARGIN * std::max(rect.Width(), rect.Height()));
    const double width = std::max(rect.Width() + 2 * margin, (rect.Height() + 2 * margin) / ASPECT);
    const double height = std::max(rect.Height() + 2 * margin, width / ASPECT);
    const SeaPoint middle = {(rect.west + rect.east) / 2, (rect.south + rect.north) / 2};
    return {middle.x - width / 2, middle.y - height / 2, middle.x + width / 2, middle.y + height / 2};
}

BattleState StateOf(const Scenario& scenario, const BattleSetup& setup)
{
    std::vector<BattleUnit> units = UnitsOf(scenario);
    CCoast coast(SceneOf(scenario), BoundsOf(units), StartsOf(units));
    return {setup, std::move(units), std::move(coast), CBattleRandom(setup.seed), 0, 0};
}

double RestSeconds(std::int64_t milliseconds)
{
    return static_cast<double>(milliseconds) / 1000;
}

class CDigest
{
  public:
    void Add(std::uint64_t value)
    {
        m_nValue = (m_nValue ^ value) * 0x100000001b3ULL;
        m_nValue ^= m_nValue >> 29;
    }
    void Add(double value) { Add(std::bit_cast<std::uint64_t>(value)); }
    void Add(SeaPoint place)
    {
        Add(place.x);
        Add(place.y);
    }
    std::uint64_t Value() const { return m_nValue; }

  private:
    std::uint64_t m_nValue = 0xcbf29ce484222325ULL;
};

} // namespace

CBattleSim::CBattleSim(const Scenario& scenario, const BattleSetup& setup)
    : m_State(StateOf(scenario, setup)), m_strScene(SceneOf(scenario)),
      m_nStartMinutes(StartMinutesOf(scenario.header))
{
    for (int i = 0; i < static_cast<int>(m_State.units.size()); ++i)
        m_Captain.Look(i);
    CheckEnd();
}

bool CBattleSim::CanBeFought(const Scenario& scenario)
{
    return std::ranges::any_of(UnitsOf(scenario), [](const BattleUnit& unit) {
        return unit.side < SIDES && unit.type != UnitType::BALLOON && unit.IsArmed();
    });
}

// The course of time

void CBattleSim::Advance(std::int64_t milliseconds)
{
    m_nRest += std::max<std::int64_t>(milliseconds, 0) * TIME_SCALE;
    for (; m_nRest >= STEP; m_nRest -= STEP)
        Step();
}

void CBattleSim::Step()
{
    m_State.time += STEP;
    const auto count = static_cast<int>(m_State.units.size());
    for (int i = 0; i < count; ++i) {
        if (m_State.units[static_cast<std::size_t>(i)].gone)
            continue;
        const std::int64_t turn = m_nSteps + i;
        if (turn % LOOKS_EVERY == 0)
            m_Captain.Look(i);
        if (turn % THINKS_EVERY == 0)
            m_Captain.Think(i, !m_bOver);
        if (turn % STEERS_EVERY == 0)
            m_Navigator.Steer(i);
        m_Navigator.Sail(m_State.units[static_cast<std::size_t>(i)]);
    }
    for (int i = 0; i < count && !m_bOver; ++i)
        m_Weapons.Fight(i);
    if (m_bOver)
        m_Weapons.DropMarks();
    else
        m_Weapons.Advance();
    ++m_nSteps;
    CheckEnd();
}

SeaPoint CBattleSim::ShownPlace(const BattleUnit& unit) const
{
    return unit.gone ? unit.place : Ahead(unit.place, unit.heading, unit.speed * RestSeconds(m_nRest));
}

SeaPoint CBattleSim::ShownPlace(const Torpedo& torpedo) const
{
    return Ahead(torpedo.place, torpedo.heading, Torpedo::SPEED * RestSeconds(m_nRest));
}

int CBattleSim::ClockMinutes() const
{
    constexpr std::int64_t MINUTE = 60'000;
    return static_cast<int>((m_nStartMinutes + m_State.time / MINUTE) % DAY);
}

std::uint64_t CBattleSim::Checksum() const
{
    CDigest digest;
    digest.Add(static_cast<std::uint64_t>(m_State.time));
    digest.Add(m_State.random.State());
    digest.Add(static_cast<std::uint64_t>(m_nWinner));
    for (const BattleUnit& unit : m_State.units) {
        digest.Add(unit.place);
        digest.Add(unit.goal);
        for (const double value : {unit.heading, unit.speed, unit.damage, unit.course})
            digest.Add(value);
        for (const int value :
             {unit.rounds, unit.hits, unit.sunk, unit.points, unit.torpedoes, unit.depthCharges, unit.target,
              static_cast<int>(unit.order.kind), unit.submerged ? 1 : 0})
            digest.Add(static_cast<std::uint64_t>(value));
    }
    for (const Torpedo& torpedo : Torpedoes())
        digest.Add(torpedo.place);
    for (const Shell& shell : Shells())
        digest.Add(shell.end);
    return digest.Value();
}

// Orders

BattleUnit* CBattleSim::OrderedUnit(int side, int unit)
{
    if (side < 0 || side >= SIDES || unit < 0 || static_cast<std::size_t>(unit) >= m_State.units.size())
        return nullptr;
    BattleUnit& ordered = m_State.units[static_cast<std::size_t>(unit)];
    return ordered.side == side && !ordered.gone ? &ordered : nullptr;
}

bool CBattleSim::OrderMove(int side, int unit, SeaPoint to)
{
    BattleUnit* ordered = OrderedUnit(side, unit);
    if (ordered == nullptr || !std::isfinite(to.x) || !std::isfinite(to.y) || !Bounds().Contains(to) ||
        (ordered->type != UnitType::BALLOON && !Coast().HasWay(ordered->place, to)))
        return false;
    ordered->order = {OrderKind::MOVE, to, -1};
    ordered->wayAt = -1;
    m_Captain.Think(unit, !m_bOver);
    return true;
}

bool CBattleSim::OrderAttack(int side, int unit, int target)
{
    BattleUnit* ordered = OrderedUnit(side, unit);
    if (ordered == nullptr || m_bOver || target < 0 ||
        static_cast<std::size_t>(target) >= m_State.units.size())
        return false;
    const BattleUnit& other = m_State.units[static_cast<std::size_t>(target)];
    if (other.gone || !ordered->IsEnemyOf(other) || !other.seen[static_cast<std::size_t>(side)] ||
        !CWeapons::CanHarm(*ordered, other))
        return false;
    ordered->order = {OrderKind::ATTACK, {}, target};
    ordered->wayAt = -1;
    m_Captain.Think(unit, true);
    return true;
}

bool CBattleSim::OrderStop(int side, int unit)
{
    BattleUnit* ordered = OrderedUnit(side, unit);
    if (ordered == nullptr)
        return false;
    ordered->order = {OrderKind::STOP, {}, -1};
    m_Captain.Think(unit, !m_bOver);
    return true;
}

bool CBattleSim::OrderDive(int side, int unit, bool below)
{
    BattleUnit* ordered = OrderedUnit(side, unit);
    if (ordered == nullptr || ordered->type != UnitType::SUBMARINE)
        return false;
    ordered->diveOrdered = true;
    m_Captain.Dive(*ordered, below);
    return true;
}

bool CBattleSim::OrderFree(int side, int unit)
{
    BattleUnit* ordered = OrderedUnit(side, unit);
    if (ordered == nullptr)
        return false;
    ordered->order = {};
    ordered->diveOrdered = false;
    ordered->wayAt = -1;
    m_Captain.Think(unit, !m_bOver);
    return true;
}

// The outcome

void CBattleSim::Decide(int winner)
{
    if (!m_bOver)
        End(winner >= 0 && winner < SIDES ? winner : -1);
}

void CBattleSim::End(int winner)
{
    m_bOver = true;
    m_nWinner = winner;
    m_Weapons.Cease();
}

// Balloons alone don't hold the sea.
bool CBattleSim::HasAny(int side, bool armed) const
{
    return std::ranges::any_of(m_State.units, [side, armed](const BattleUnit& unit) {
        return unit.side == side && !unit.gone && unit.type != UnitType::BALLOON &&
               (!armed || unit.IsArmed());
    });
}

void CBattleSim::CheckEnd()
{
    if (m_bOver)
        return;
    const bool fights[] = {HasAny(0, true), HasAny(1, true)};
    const bool inTime = m_State.time < TIME_LIMIT && m_State.time - m_State.lastHit < QUIET_LIMIT;
    if (fights[0] && fights[1] && inTime)
        return;
    const bool afloat[] = {HasAny(0, false), HasAny(1, false)};
    const int lead = Percent(0) - Percent(1);
    if (afloat[0] != afloat[1])
        End(afloat[0] ? 0 : 1);
    else if (lead >= CLEAR_LEAD || lead <= -CLEAR_LEAD)
        End(lead > 0 ? 0 : 1);
    else if (fights[0] != fights[1])
        End(fights[0] ? 0 : 1);
    else
        End(-1);
}

SideFigures CBattleSim::Figures(int side) const
{
    SideFigures figures;
    if (side < 0 || side >= SIDES)
        return figures;
    for (const BattleUnit& unit : m_State.units) {
        if (unit.side != side)
            continue;
        ++figures.units;
        figures.points += unit.points;
        figures.rounds += unit.rounds;
        figures.hits += unit.hits;
        figures.sunk += unit.sunk;
        figures.lost += unit.gone ? 1 : 0;
    }
    return figures;
}

int CBattleSim::Percent(int side) const
{
    constexpr double ALL = 100;
    if (side < 0 || side >= SIDES)
        return 0;
    double strength = 0;
    double destroyed = 0;
    for (const BattleUnit& unit : m_State.units) {
        if (unit.side != 1 - side)
            continue;
        strength += unit.value;
        destroyed += unit.value * (1 - unit.Hull());
    }
    return strength > 0 ? static_cast<int>(destroyed / strength * ALL) : 0;
}
