#pragma once
// Colours that chart and strips share.

#include "battle/battle_unit.h"
#include "battle/colour.h"

inline constexpr Colour CHART_SIDES[] = {{30, 78, 178}, {192, 36, 32}, {92, 94, 82}};
inline constexpr Colour CHART_INK = {44, 34, 26};
inline constexpr Colour CHART_PAPER = {244, 238, 218};
inline constexpr Colour CHART_BRASS = {201, 164, 86};
inline constexpr Colour CHART_NAVY = {20, 28, 44};
inline constexpr Colour CHART_CREAM = {232, 222, 192};
inline constexpr Colour CHART_BLACK = {0, 0, 0};

inline Colour SideColour(int side)
{
    return CHART_SIDES[std::clamp(side, 0, BattleUnit::NEUTRAL)];
}
