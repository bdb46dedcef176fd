#pragma once
// Units of the battles that the tests fight.

#include <cstdio>
#include <vector>

#include "keelworks/scenario_parser.h"

template <class Item>
Item UnitAt(int side, int x, int y, int heading = 90)
{
    Item item;
    std::snprintf(item.unit.szName, sizeof(item.unit.szName), "Unit");
    item.place = {x, y, heading, 12, 0};
    item.nSide = side;
    return item;
}

inline ScenarioShip ShipAt(int side, int x, int y, int heading = 90)
{
    auto ship = UnitAt<ScenarioShip>(side, x, y, heading);
    ship.figures.nLength = 90;
    ship.figures.nSpeed = 24;
    ship.figures.nHullMiddle = 40;
    ship.figures.nMainGuns = 4;
    ship.figures.nMainCalibre = 120;
    ship.nRatings[1] = 100;
    return ship;
}

inline ScenarioSubmarine SubmarineAt(int side, int x, int y)
{
    auto boat = UnitAt<ScenarioSubmarine>(side, x, y, 0);
    boat.figures = {1912, 0, 30, 500, 15, 9, 4, 8};
    boat.place.nKnots = 3;
    boat.place.nHeight = 12;
    return boat;
}

inline Scenario ScenarioOf(const std::vector<ScenarioItem>& items, const char* scene = "seabattle")
{
    Scenario scenario;
    std::snprintf(scenario.header.szScene, sizeof(scenario.header.szScene), "%s", scene);
    scenario.items = items;
    return scenario;
}
