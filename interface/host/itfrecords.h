#pragma once
// Records and message numbers between the front end, the game logic and the host's entities.

#include <cstddef>
#include <cstdint>

/// What MSG_LOGIC_STOPPED tells.
inline constexpr std::int32_t LOGIC_STOPPED_REASON = 90;

/// Messages of the entity frame.
enum ItfMessage : int {
    MSG_QUIT = 0x0b,        ///< to DEST_HOST: ends the program
    MSG_SHADE_START = 0x0d, ///< to the shader, "llllll": -1, 0, time, entity to tell, its message, -1
    MSG_ITF_START = 14,     ///< "l" ItfEvent*: the first start
    MSG_ENTITY_START = 14,  ///< to "logo", "ll": clip's path, mode
    MSG_CAMERA_UI_ON = 0x41e,
    MSG_CAMERA_UI_OFF = 0x41f,
    MSG_LOGIC_STOP = 0x100e, ///< to the scene's entity "logic"
    MSG_ITF_EVENT = 15000,   ///< "l" ItfEvent*
    MSG_ITF_SHADE_DONE = 15010,
    MSG_ITF_CLOSE_ALL = 15020,
    MSG_ITF_PROGRESS_OPEN = 15021,
    MSG_ITF_PROGRESS_SET = 15022,      ///< "ll": percent, unused
    MSG_GET_PROFILE = 11000,           ///< "l" ProfileStore; gives IProfileStore*
    MSG_ITF_COMMAND = 0x2b0c,          ///< "l" ItfCommand*, posted
    MSG_NO_LOGIC = 0x2b20,             ///< "l" -1, posted
    MSG_LOGIC_STOPPED = 0x2b3e,        ///< "l" std::int32_t[2]: LOGIC_STOPPED_REASON, 0
    MSG_GET_GAME_STATE = 0x2b70,       ///< gives IGameState* or null
    MSG_GET_TEXT_TABLE = 0x2ba2,       ///< gives ITextTable*
    MSG_GET_PLAYLIST = 0x2bb6,         ///< gives IPlayList*
    MSG_SET_DISPLAY_MODE = 0x2bc0,     ///< "ll": width, height
    MSG_GET_NET = 0x2bca,              ///< gives INetCore*
    MSG_GET_CUSTOM_RESOURCES = 0x2eea, ///< gives ICustomResources*
    /// "l" char[260]: a scenario file's path, rewritten with its new name below scenarios; 0 on failure
    MSG_IMPORT_SCENARIO = 0x5e2e,
    MSG_REFRESH = 0x5e1a, ///< settings have changed, or the battle goes on
    MSG_NET_DROP = 0x857a,
};

/// Codes of ItfEvent, from the logic.
enum ItfEventCode : int {
    EVENT_MAIN_MENU = 0,
    EVENT_STORY_BRIEF = 3,
    EVENT_VIDEO = 4,
    EVENT_CAMPAIGN_FINAL = 5,
    EVENT_SCENARIO_STATUS = 6,
    EVENT_HELP = 7,
    EVENT_MESSAGE = 8,
    EVENT_MISSION_BRIEF = 9,
    EVENT_CHARACTERS = 10,
    EVENT_CAMPAIGN_STATUS = 11,
    EVENT_SAVE = 12,
    EVENT_LOAD = 13,
    EVENT_SHIP_PREVIEW = 14,
    EVENT_OPTIONS = 15,
    EVENT_NET_SERVER = 16,
    EVENT_NET_CLIENT = 17,
    EVENT_LEAVE_BATTLE = 18,
    EVENT_MENU_WITH_MESSAGE = 20,
    EVENT_NET_START = 31,
    EVENT_END_GAME = 32,
    EVENT_MESSAGE_BOX = 33,
    EVENT_SUBMARINE_PREVIEW = 34,
    EVENT_BALLOON_PREVIEW = 35,
    EVENT_FULL_DISPLAY = 40,
    EVENT_LOBBY = 121,
};

/// Ids of boxes of EVENT_MESSAGE_BOX whose answers the front end acts on. Every answer to one of them leads
/// back to a running battle, or out of it.
enum ItfBoxId : int {
    BOX_LEAVE_BATTLE = 360,
    /// With its first button the player leaves the network, else he aborts the game; either is nothing where
    /// no network game runs.
    BOX_NET_LOST = 370,
};

/// The style of such a box whose button is hidden: there is nothing to answer it with.
inline constexpr std::uint32_t BOX_STYLE_NO_BUTTON = 0x20000000;

/// Codes of ItfCommand, to the logic.
enum ItfCommandCode : int {
    CMD_START_SCENARIO = 10,
    CMD_START_CAMPAIGN = 20,
    CMD_CONTINUE_CAMPAIGN = 30,
    CMD_SECRET = 40,
    CMD_RESUME = 60,
    CMD_MISSION_GO = 70,
    CMD_CHARACTERS_DONE = 80,
    CMD_STORY_DONE = 90,
    CMD_STATUS_DONE = 100,
    CMD_CAMPAIGN_DONE = 110,
    CMD_BACK_TO_LOBBY = 120,
};

/// What the front end tells the logic. Sent by address: unchanged until the logic has read it.
#pragma pack(push, 1)
struct ItfCommand {
    std::int32_t code = 0;
    std::int32_t nSide = 0;     ///< side that the player takes, 0 or 1
    std::int32_t nNotSideA = 0; ///< 1 when the player doesn't take the first side
    std::int32_t nNotSideB = 0;
    std::int32_t nDifficulty = 0;  ///< 0 to 2
    std::int32_t nOptionValue = 0; ///< 0, 1, 2, 4, 8, 16 or 32
    std::uint8_t bBriefFlag = 0;
    char szPath[263] = {}; ///< scenario or campaign file, NUL-terminated
};

/// What the logic tells the front end. The same size as a command, another layout.
struct ItfEvent {
    std::int32_t code = 0;
    std::int32_t value1 = 0;
    std::int32_t reserved0 = 0;
    std::int32_t value2 = 0;
    char text[260] = {}; ///< file or resource name, NUL-terminated
    void* object = nullptr;
    std::uint8_t reserved1[4] = {};
};
#pragma pack(pop)
static_assert(sizeof(ItfCommand) == 0x120 && sizeof(ItfEvent) == 0x120);
static_assert(offsetof(ItfCommand, bBriefFlag) == 24 && offsetof(ItfCommand, szPath) == 25);
static_assert(offsetof(ItfEvent, value2) == 12 && offsetof(ItfEvent, text) == 16);
static_assert(offsetof(ItfEvent, object) == 0x114);

/// What EVENT_SCENARIO_STATUS points to.
struct ItfScenarioStatus {
    char szPath[0x128];     ///< of the scenario file, NUL-terminated
    std::int32_t nPercentA; ///< how far the first side has come
    std::uint8_t reserved0[0x14];
    std::int32_t nPercentB;
};
static_assert(sizeof(ItfScenarioStatus) == 0x144);
static_assert(offsetof(ItfScenarioStatus, nPercentA) == 0x128);
static_assert(offsetof(ItfScenarioStatus, nPercentB) == 0x140);

/// The options record of the entity "graphics", 64 bytes.
struct ItfOptions {
    std::int32_t nWidth;
    std::int32_t nHeight;
    std::int32_t nOptionValue; ///< 0 or a power of two from 1 to 32
    std::int32_t nChoiceA;
    std::int32_t reserved0[2];
    std::int32_t nChoiceB;
    std::int32_t nChoiceC;
    std::int32_t nChoiceD;
    float fBrightness; ///< 0 to 2
    std::int32_t reserved1;
    float fRange;  ///< 10 to 50
    float fLevelA; ///< 0 to 1
    float fLevelB;
    float fLevelC;
    std::uint32_t nFlags;
};
static_assert(sizeof(ItfOptions) == 64 && offsetof(ItfOptions, nFlags) == 60);
