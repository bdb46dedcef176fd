#pragma once
// Objects that the game logic hands out on request. The logic owns them all.

#include <cstddef>
#include <cstdint>

#include "keelworks/obj_guid.h"
#include "platform/types.h"

/// Background music. Operations stand in the order of the logic's table.
class IPlayList
{
  public:
    virtual ~IPlayList() = default;
    /// Starts a track; -1 goes on with what was stopped.
    virtual void Play(int track) = 0;
    /// Stops within `fade` milliseconds, 0 for at once.
    virtual void Stop(int fade) = 0;
    virtual void Skip() = 0;
    /// Chooses list `list` and switches it on (1) or off (0).
    virtual void Select(int list, int on) = 0;
    /// The track that plays, negative when none does.
    virtual int GetCurrent() = 0;
};

/// Every numbered text that the player reads, in code page 1252.
class ITextTable
{
  public:
    virtual ~ITextTable() = default;
    /// The text stays valid as long as the table; a number that it lacks gives a text that says so.
    virtual const char* GetText(int number) = 0;
};

/// Number of the store that holds the program's own entries, as the value of MSG_GET_PROFILE.
enum ProfileStore : int {
    PROFILE_PLAYER = 0,
    PROFILE_PROGRAM = 2,
};

/// Keys and values in sections. Formats: "l" a 32-bit number, "x" the same kept in hexadecimal, "s" a text.
class IProfileStore
{
  public:
    virtual ~IProfileStore() = default;
    /// value: std::int32_t for "l", std::uint32_t for "x", const char* for "s". False when it can't be kept.
    virtual bool Write(const char* key, const char* format, const void* value) = 0;
    /// Leaves `out` (int32, uint32, or char[260] for "s") as it was and gives false when there is no such
    /// key.
    virtual bool Read(const char* key, const char* format, void* out) = 0;
    /// Later calls mean this section; `create` 1 makes it when it doesn't exist.
    virtual bool SelectSection(const char* name, int create) = 0;
};

/// The nations that aren't the game's own. Indexes run from 0 and stay the same as long as the program runs.
class ICustomResources
{
  public:
    virtual ~ICustomResources() = default;
    /// The nation's index; negative when it isn't known or `guid` is null.
    virtual int Find(const CObjGUID* guid) = 0;
    /// The name in at most `size` bytes, its zero included. False, and nothing written, for an unknown index
    /// or a buffer that is null or too small.
    virtual bool GetName(int index, char* buffer, int size) = 0;
    /// The same for a file of the nation's flag: kind 0 is the flag that flies. False for any other kind.
    virtual bool GetFlagFile(int index, int kind, char* buffer, int size) = 0;
};

struct ItfCharacter;
struct GameHeader;
struct ScenarioInfo;
class IUnitList;

/// The leading record of a running game, as saves begin with it.
#pragma pack(push, 1)
struct GameHeader {
    std::uint8_t reserved0[0x18];
    std::uint32_t dwFlags; ///< bit 0: the commander's fleet may be managed
    std::uint8_t reserved1[0x14];
    std::uint8_t bCampaign; ///< non-zero in a campaign
    std::uint8_t reserved2[0x1b7 - 0x31];
};
struct ScenarioInfo {
    std::int32_t nPlayerSide;
    std::uint8_t reserved0[0x2a];
    char szPath[260]; ///< of the scenario file
    char szTitle[260];
};
#pragma pack(pop)
static_assert(sizeof(GameHeader) == 0x1b7);
static_assert(offsetof(GameHeader, dwFlags) == 0x18 && offsetof(GameHeader, bCampaign) == 0x30);
static_assert(offsetof(ScenarioInfo, szPath) == 0x2e && offsetof(ScenarioInfo, szTitle) == 0x132);

/// The running game or campaign. Operations stand in the order of the logic's table.
class IGameState
{
  public:
    virtual ~IGameState() = default;
    virtual ItfCharacter* GetCharacter() = 0;
    virtual IUnitList* GetUnits() = 0;
    /// Null when there is none.
    virtual GameHeader* GetHeader() = 0;
    virtual ScenarioInfo* GetScenarioInfo() = 0;
};

/// The network game, as far as the way out of a battle needs it.
class INetCore
{
  public:
    virtual ~INetCore() = default;
    virtual bool IsNetworkGame() = 0;
    virtual bool IsServer() = 0;
    virtual void EnterLobby() = 0;
    virtual void Disconnect(int reason) = 0;
    virtual void AbortGame() = 0;
};
