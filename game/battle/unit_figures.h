#pragma once
// From the figures of a scenario's item to a unit that sails and fights.

#include <string>

#include "battle/battle_unit.h"
#include "keelworks/scenario.h"

/// Figures that no ship can have are brought into what the battle's rules can work with. `light` is how far
/// one sees in this weather, 1 on a clear day.
BattleUnit MakeUnit(const ScenarioItem& item, double light);
/// How far one sees in the weather that a scene's name tells, as a part of a clear day.
double LightOf(const std::string& scene);
