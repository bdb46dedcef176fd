#pragma once
// A scenario with everything in it, and a way to make its file lie.

#include <cstring>
#include <string>
#include <vector>

#include "keelworks/crc32.h"
#include "keelworks/scenario.h"
#include "keelworks/scenario_writer.h"

template <std::size_t N>
void SetText(char (&field)[N], const std::string& text)
{
    std::memcpy(field, text.c_str(), text.size() + 1);
}

/// A ship and a submarine against a ship and a balloon, a neutral ship between them, a custom second nation.
inline Scenario SampleScenario()
{
    Scenario scenario;
    scenario.header.nHours = 5;
    scenario.header.nMinutes = 40;
    scenario.header.nTimeFlags = SCENARIO_TIME_AM;
    scenario.header.nFlagExtra = 1915;
    scenario.header.settings.nSideANation = 1001;
    SetText(scenario.header.szScene, "seabattle_haze");
    scenario.custom.bCustomB = 1;
    scenario.custom.guidB = {{1, 2, 3, 0xfedcba98}};
    scenario.title = "Off the bar";
    scenario.description = "Two lines,\r\n\"quoted\".";
    ScenarioShip ship;
    SetText(ship.unit.szFullName, "HS Wagtail");
    SetText(ship.unit.szName, "Wagtail");
    SetText(ship.unit.szModel, "gunboat.ini");
    SetText(ship.unit.szCode, "G07");
    ship.figures.nRate = 3;
    ship.figures.nMainGuns = 4;
    ship.figures.nSecondaryGuns = 20;
    ship.figures.nMachineGuns = 300;
    ship.figures.nTorpedoTubes = 1000;
    ship.figures.nLightGuns = 2000;
    ship.figures.nHighAngleGuns = 10000;
    ship.figures.nDepthCharges = 20000;
    ship.place = {-500, 700, 359, 12, 0};
    ship.nLevel = 2;
    ship.nRatings[4] = 100;
    ScenarioShip enemy = ship;
    enemy.nSide = SCENARIO_SIDE_B;
    ScenarioShip neutral = ship;
    neutral.nSide = SCENARIO_NEUTRAL;
    ScenarioSubmarine submarine;
    submarine.figures.nTorpedoes = 6;
    submarine.nSkill = 70;
    ScenarioBalloon balloon;
    balloon.figures.nMachineGuns = 2;
    balloon.place.nHeight = 800;
    balloon.nSide = SCENARIO_SIDE_B;
    scenario.items = {ship, enemy, neutral, submarine, balloon};
    return scenario;
}

inline std::vector<char> SampleFile()
{
    return CScenarioWriter(SampleScenario()).GetBytes();
}

/// Makes the checksum right again, so that what else is wrong is found.
inline void Reseal(std::vector<char>& bytes)
{
    constexpr std::size_t CHECKSUM = 4;
    std::memset(bytes.data() + CHECKSUM, 0, sizeof(std::uint32_t));
    const std::uint32_t sum = Crc32(bytes.data(), bytes.size());
    std::memcpy(bytes.data() + CHECKSUM, &sum, sizeof sum);
}

inline std::uint32_t WordAt(const std::vector<char>& bytes, std::size_t offset)
{
    std::uint32_t value = 0;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}
