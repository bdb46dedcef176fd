#include "battle/unit_figures.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "battle/battle_math.h"

namespace
{

constexpr double KNOT = 1852.0 / 3600; // metres a second
constexpr double MAX_KNOTS = 60;
constexpr int MAX_GUNS = 24; // of one battery
constexpr int MAX_LOAD = 60; // torpedoes, charges or bombs
constexpr int RELOADS = 2;   // torpedoes for each tube of a ship
constexpr double CLEAR_SIGHT = 15000;
constexpr double BEST_LEVEL = 6;
constexpr int MAX_CALIBRE = 460;

int Within(std::int32_t value, int most)
{
    return std::clamp(static_cast<int>(value), 0, most);
}

template <std::size_t SIZE>
std::string TextOf(const char (&text)[SIZE])
{
    return {text, strnlen(text, SIZE)};
}

double SpeedOf(std::int32_t knots)
{
    return std::clamp(static_cast<double>(knots), 0.0, MAX_KNOTS) * KNOT;
}

// Of training and the percent of gunnery or skill, half and half.
double SkillOf(std::int32_t level, std::int32_t percent)
{
    return (1 - Within(level, SCENARIO_MAX_LEVEL) / BEST_LEVEL) / 2 +
           Within(percent, SCENARIO_MAX_PERCENT) / (2.0 * SCENARIO_MAX_PERCENT);
}

GunBattery Battery(std::int32_t guns, std::int32_t calibre, int usual)
{
    return {Within(guns, MAX_GUNS), calibre > 0 ? Within(calibre, MAX_CALIBRE) : usual, 0};
}

void Equip(BattleUnit& unit, const ScenarioShip& item)
{
    constexpr double LENGTHS_IN_RADIUS = 2.5;
    constexpr double TONS_IN_POINT = 60;
    constexpr int HULL_RATING = 1;
    constexpr int GUNNERY_RATING = 3;
    const ShipFigures& figures = item.figures;
    unit.type = UnitType::SHIP;
    unit.length = figures.nLength > 0 ? std::clamp(figures.nLength * 1.0, 10.0, 350.0) : 60.0;
    unit.turnRadius = LENGTHS_IN_RADIUS * unit.length;
    unit.maxSpeed = SpeedOf(figures.nSpeed);
    double hull = 1.0 * figures.nHullBow + figures.nHullMiddle + figures.nHullStern;
    if (hull <= 0)
        hull = figures.nDisplacement / TONS_IN_POINT;
    unit.maxHull = std::clamp(hull, 4.0, 1000.0) * (0.5 + Within(item.nRatings[HULL_RATING], 100) / 200.0);
    // The belt is hit most often.
    unit.armour = (2 * Within(figures.nArmourBelt, 1000) + Within(figures.nArmourDeck, 1000) +
                   Within(figures.nArmourTurret, 1000)) /
                  4;
    unit.skill = SkillOf(item.nLevel, item.nRatings[GUNNERY_RATING]);
    unit.guns = {Battery(figures.nMainGuns, figures.nMainCalibre, 102),
                 Battery(figures.nSecondaryGuns, figures.nSecondaryCalibre, 102),
                 Battery(figures.nLightGuns, figures.nLightCalibre, 57),
                 Battery(figures.nHighAngleGuns, figures.nHighAngleCalibre, 57),
                 Battery(figures.nMachineGuns, figures.nMachineCalibre, 8)};
    unit.tubes = Within(figures.nTorpedoTubes, MAX_GUNS);
    unit.torpedoes = std::min(unit.tubes * RELOADS, MAX_LOAD);
    unit.depthCharges = Within(figures.nDepthCharges, MAX_LOAD);
}

void Equip(BattleUnit& unit, const ScenarioSubmarine& item)
{
    constexpr double TONS_IN_POINT = 30;
    const SubmarineFigures& figures = item.figures;
    unit.type = UnitType::SUBMARINE;
    const double tons = std::clamp(figures.nDisplacement * 1.0, 100.0, 3000.0);
    unit.length = 35 + tons / 30;
    unit.turnRadius = 3 * unit.length;
    unit.maxSpeed = SpeedOf(figures.nSpeed);
    unit.maxSpeedBelow = SpeedOf(figures.nSpeedBelow);
    unit.maxHull = tons / TONS_IN_POINT;
    unit.skill = SkillOf(item.nLevel, item.nSkill);
    unit.tubes = Within(figures.nTorpedoTubes, MAX_GUNS);
    unit.torpedoes = Within(figures.nTorpedoes, MAX_LOAD);
    if (unit.torpedoes > 0)
        unit.tubes = std::max(unit.tubes, 1);
    unit.submerged = item.place.nHeight > 0;
}

void Equip(BattleUnit& unit, const ScenarioBalloon& item)
{
    constexpr double HIGHEST = 1200; // metres; what is higher sees no farther
    const BalloonFigures& figures = item.figures;
    unit.type = UnitType::BALLOON;
    unit.length = 40 + std::clamp(figures.nVolume * 1.0, 0.0, 60000.0) / 500;
    unit.turnRadius = 3 * unit.length;
    unit.maxSpeed = SpeedOf(figures.nSpeed);
    unit.maxHull = 6;
    unit.skill = SkillOf(item.nLevel, item.nSkill);
    unit.guns[BattleUnit::BATTERIES - 1] = Battery(figures.nMachineGuns, 8, 8);
    unit.depthCharges = Within(figures.nBombs, MAX_LOAD);
    unit.sight *= 1.5 + std::clamp(item.place.nHeight * 1.0, 0.0, HIGHEST) / HIGHEST;
}

double ValueOf(const BattleUnit& unit)
{
    constexpr double TORPEDO = 4;
    constexpr double CHARGE = 0.5;
    constexpr double CALIBRE_IN_POINT = 60;
    double value = unit.maxHull + unit.torpedoes * TORPEDO + unit.depthCharges * CHARGE;
    for (const GunBattery& battery : unit.guns)
        value += battery.guns * battery.calibre / CALIBRE_IN_POINT;
    return std::max(std::floor(value), 1.0);
}

} // namespace

BattleUnit MakeUnit(const ScenarioItem& item, double light)
{
    BattleUnit unit;
    unit.sight = CLEAR_SIGHT * light;
    std::visit(
        [&unit](const auto& from) {
            unit.side = std::clamp(static_cast<int>(from.nSide), 0, BattleUnit::NEUTRAL);
            unit.name = TextOf(from.unit.szName);
            unit.code = TextOf(from.unit.szCode);
            unit.classText = from.figures.nClassText;
            constexpr double FAR = SCENARIO_MAX_DISTANCE;
            unit.place = {std::clamp(from.place.nX * 1.0, -FAR, FAR),
                          std::clamp(from.place.nY * 1.0, -FAR, FAR)};
            unit.heading = NormalHeading(from.place.nHeading);
            Equip(unit, from);
            // What is towed or drifts has no speed of its own in its figures.
            unit.maxSpeed = std::max(unit.maxSpeed, SpeedOf(from.place.nKnots));
            unit.speed = SpeedOf(from.place.nKnots);
        },
        item);
    if (unit.submerged)
        unit.speed = std::min(unit.speed, unit.maxSpeedBelow);
    unit.course = unit.heading;
    unit.value = ValueOf(unit);
    if (unit.side < BattleUnit::SIDES)
        unit.seen[static_cast<std::size_t>(unit.side)] = unit.known[static_cast<std::size_t>(unit.side)] =
            true;
    return unit;
}

double LightOf(const std::string& scene)
{
    constexpr std::pair<const char*, double> WEATHER[] = {{"night", 0.35}, {"fog", 0.25}, {"haze", 0.65},
                                                          {"sunset", 0.8}, {"dusk", 0.7}, {"overcast", 0.85}};
    for (const auto& [word, light] : WEATHER) {
        if (scene.find(word) != std::string::npos)
            return light;
    }
    return 1;
}
