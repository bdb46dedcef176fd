#pragma once
// What the chart and the strips above and below it say.

#include <array>
#include <string>

#include "ilogic.h"

/// Numbers in the text table.
enum ChartText : int {
    CHART_STOPPED = 14000,
    CHART_SPEED,
    CHART_OVER,
    CHART_UNITS_OF, ///< "of", between the units that are left and those that came
    CHART_WATCHING,
    CHART_NOTHING_CHOSEN,
    CHART_UNITS_CHOSEN,
    CHART_KEY_OVER, ///< takes the place of the first key once the battle is over
    CHART_HULL = 14010,
    CHART_KNOTS,
    CHART_HEADING,
    CHART_GUNS,
    CHART_TORPEDOES,
    CHART_SUBMERGED,
    CHART_SURFACED,
    CHART_ORDER_NONE = 14020,
    CHART_ORDER_MOVE,
    CHART_ORDER_ATTACK,
    CHART_ORDER_STOP,
    CHART_SEA_MILE = 14030,
    CHART_SEA_MILES,
    CHART_CABLE,
    CHART_CABLES,
    CHART_NORTH,
    CHART_KEYS = 14040, ///< the first of CHART_KEY_COUNT: a key, a tab, what it does
};
inline constexpr int CHART_KEY_COUNT = 14;

/// The words of one battle.
struct ChartWords {
    ITextTable* table = nullptr; ///< null: every text is empty; must outlive the words
    std::array<std::string, 2> sides;

    std::string Text(int number) const { return table != nullptr ? table->GetText(number) : ""; }
};
