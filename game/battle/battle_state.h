#pragma once
// What the parts of a battle share.

#include <cstdint>
#include <vector>

#include "battle/battle_random.h"
#include "battle/battle_unit.h"
#include "battle/coast.h"

/// Battle time of a step, milliseconds.
inline constexpr std::int64_t BATTLE_STEP = 500;

/// How the player takes part.
struct BattleSetup {
    int playerSide = 0; ///< 0 or 1
    bool notSideA = false;
    bool notSideB = false; ///< both: the player only watches
    int difficulty = 1;    ///< 0 easy to 2 hard
    std::uint64_t seed = 0;

    /// -1 when the player only watches.
    int OrderingSide() const { return notSideA && notSideB ? -1 : playerSide; }
};

/// One battle has one, and hands a reference to its parts.
struct BattleState {
    BattleSetup setup;
    std::vector<BattleUnit> units;
    CCoast coast;
    CBattleRandom random;
    std::int64_t time = 0;    ///< since the beginning, milliseconds
    std::int64_t lastHit = 0; ///< battle time of the last damage
};
