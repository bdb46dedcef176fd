#include "keelworks/scenario.h"

ScenarioStrength::ScenarioStrength(const std::vector<ScenarioItem>& items)
{
    for (const ScenarioItem& item : items) {
        const std::int32_t side = std::visit([](const auto& unit) { return unit.nSide; }, item);
        if (side != SCENARIO_SIDE_A && side != SCENARIO_SIDE_B) {
            continue;
        }
        ++units[side];
        if (const auto* ship = std::get_if<ScenarioShip>(&item)) {
            weapons[side] += ship->figures.CountWeapons();
        }
    }
}
