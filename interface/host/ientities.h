#pragma once
// Entities of the host that the module calls beyond sending them messages.

#include <cstddef>
#include <cstdint>

#include "entity.h"

struct ItfOptions;

/// The entity "marker": what is drawn over the scene.
class IMarkerEntity : public Entity
{
  public:
    /// 1 while the front end is up, 0 during the battle.
    virtual void SetInterfaceMode(int on) = 0;
};

/// The entity "graphics": keeper of the options record.
class IGraphicsEntity : public Entity
{
  public:
    virtual void GetOptions(ItfOptions* out) = 0;
    virtual void SetOptions(const ItfOptions* options) = 0;
};

/// What a side did in a battle. The bytes between belong to the entity.
#pragma pack(push, 1)
struct ItfSideStats {
    std::int32_t reserved0;
    std::int32_t nPoints; ///< what the side has won by all that it did
    std::int32_t nUnits;  ///< sent into the battle
    std::int32_t nRounds; ///< shells and torpedoes fired
    std::int32_t reserved1[3];
    std::int32_t nSunk; ///< units of the enemy destroyed
    std::int32_t reserved2[5];
    std::int32_t nLost; ///< units of its own destroyed
    std::int32_t nHits; ///< of its rounds
};
/// The same for one player.
struct ItfPlayerStats {
    const char* szName; ///< NUL-terminated, never null; the entity's
    std::int32_t reserved0[2];
    std::int32_t nPoints;
    std::int32_t nUnits;
    std::int32_t nRounds;
    std::int32_t reserved1[3];
    std::int32_t nSunk;
    std::int32_t reserved2[4];
    std::int32_t nLost;
    std::int32_t nHits;
};
#pragma pack(pop)
static_assert(sizeof(ItfSideStats) == 0x3c && sizeof(ItfPlayerStats) == 0x44);
static_assert(offsetof(ItfSideStats, nPoints) == 4 && offsetof(ItfSideStats, nUnits) == 8 &&
              offsetof(ItfSideStats, nRounds) == 0xc && offsetof(ItfSideStats, nSunk) == 0x1c &&
              offsetof(ItfSideStats, nLost) == 0x34 && offsetof(ItfSideStats, nHits) == 0x38);
static_assert(offsetof(ItfPlayerStats, nPoints) == 0x10 && offsetof(ItfPlayerStats, nUnits) == 0x14 &&
              offsetof(ItfPlayerStats, nRounds) == 0x18 && offsetof(ItfPlayerStats, nSunk) == 0x28 &&
              offsetof(ItfPlayerStats, nLost) == 0x3c && offsetof(ItfPlayerStats, nHits) == 0x40);

/// The entity "game" of a battle's scene: how the battle stands, and what each side and player did in it.
class IGameEntity : public Entity
{
  public:
    /// The number of the side that has won; negative while nobody has.
    virtual int GetWinner() = 0;
    /// Fills `out` with zeros for a side that the battle doesn't have.
    virtual void GetSideStats(int side, ItfSideStats* out) = 0;
    virtual int GetSideCount() = 0;
    /// 0 for a side that the battle doesn't have.
    virtual int GetPlayerCount(int side) = 0;
    /// The record stays the entity's. Null for a side or index that the battle doesn't have.
    virtual ItfPlayerStats* GetPlayer(int side, int index) = 0;
    /// Time since the battle's beginning: days, hours below 24, minutes below 60.
    virtual void GetBattleTime(int* days, int* hours, int* minutes) = 0;
};
