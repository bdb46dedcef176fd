#pragma once
// What the sea shows of a scenario, apart from the display that it is painted for.

#include <string>
#include <vector>

#include "battle/colour.h"
#include "keelworks/scenario.h"

struct SeaUnit {
    ScenarioItemType type = SCENARIO_SHIP;
    int side = SCENARIO_NEUTRAL;
    float across = 0.0F; ///< -0.5 at the western edge to 0.5 at the eastern
    float depth = 0.0F;  ///< 0 nearest (south) to 1 furthest (north)
    float turn = 1.0F;   ///< sine of the heading: 1 sails east, -1 west, 0 is seen end on
    float length = 0.0F; ///< metres
    float height = 0.0F; ///< metres above the sea, of a submarine below it
};

/// The colours of a time of day.
struct SeaLight {
    Colour skyTop;
    Colour skyLow;
    Colour seaFar;
    Colour seaNear;
    Colour glow;    ///< of sun or moon
    float sunX;     ///< where it stands, 0 to 1 across the picture
    float sunY;     ///< 0 at the top to 1 at the horizon, more when it is below
    float darkness; ///< 0 by day to 1 at night
};

struct SeaScene {
    std::string title;
    float hour = 12.0F; ///< 0 to 24
    std::vector<SeaUnit> units;
};

/// East and north keep their proportion, whatever the scene's extent.
SeaScene MakeSeaScene(const Scenario& scenario);
SeaLight LightOfHour(float hour);
