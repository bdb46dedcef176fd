#pragma once
// The records of a scenario file. docs/formats.md tells the file as a whole.
//
// Every member lies at its natural alignment, so that the records have the bytes of the file without packing.
// Words that a record keeps free are zero.

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "keelworks/obj_guid.h"

/// The version that is written, and the first that has a block of custom nations.
inline constexpr std::uint32_t SCENARIO_VERSION_CUSTOM = 0x10008;
inline constexpr std::uint32_t SCENARIO_VERSION_CURRENT = SCENARIO_VERSION_CUSTOM;
inline constexpr std::uint32_t SCENARIO_VERSION_OLDEST = 0x10000;
inline constexpr char SCENARIO_SIGNATURE[4] = {'S', 'W', 'S', 'C'};
/// In nTimeFlags: before noon.
inline constexpr std::uint32_t SCENARIO_TIME_AM = 1U << 4;

/// Characters of the two texts, without the zero behind each.
inline constexpr std::size_t SCENARIO_MAX_TITLE = 150;
inline constexpr std::size_t SCENARIO_MAX_DESCRIPTION = 10241;
inline constexpr std::size_t SCENARIO_MAX_ITEMS = 1024;

/// Items are units; the format has no other category yet.
enum ScenarioCategory : int {
    SCENARIO_UNITS = 0,
};

/// Types of a unit, which are also the bits of an enumeration's mask.
enum ScenarioItemType : int {
    SCENARIO_SHIP = 1,
    SCENARIO_BALLOON = 2,
    SCENARIO_SUBMARINE = 4,
};

enum ScenarioSide : int {
    SCENARIO_SIDE_A = 0,
    SCENARIO_SIDE_B = 1,
    SCENARIO_NEUTRAL = 2, ///< ships only
};

/// The two sides. The numbers of the nations are those of their names in the text table, and of their flags.
struct SCSETT_STRUCT {
    std::uint32_t reserved0[2] = {};
    std::int32_t nSideANation = 0;
    std::int32_t nSideACount = 0; ///< its units
    std::uint32_t reserved1 = 0;
    std::int32_t nSideBNation = 0;
    std::int32_t nSideBCount = 0;
    std::uint32_t reserved2 = 0;
};
static_assert(sizeof(SCSETT_STRUCT) == 0x20);
static_assert(offsetof(SCSETT_STRUCT, nSideANation) == 8 && offsetof(SCSETT_STRUCT, nSideBNation) == 0x14);

struct SCENARIO_HEADER {
    char szSignature[4] = {};
    std::uint32_t dwChecksum = 0; ///< CRC-32 of the file, this word taken as zero
    std::uint8_t reserved0[0x71] = {};
    char szScene[260] = {}; ///< where and in what weather; one that contains "seabattle" is the open sea
    std::uint8_t reserved1[0x1b] = {};
    std::int32_t nHours = 0; ///< 0 to 12
    std::int32_t nMinutes = 0;
    std::uint32_t nTimeFlags = 0; ///< SCENARIO_TIME_AM or nothing
    SCSETT_STRUCT settings;
    std::uint32_t nVersion = 0;
    std::uint8_t reserved2[0x54] = {};
    std::int32_t nSideAExtra = 0; ///< guns and tubes of its ships
    std::int32_t nSideBExtra = 0;
    std::int32_t nFlagExtra = 0; ///< the year, which chooses among a nation's flags; 0 when it doesn't matter
    std::uint8_t reserved3[0x38] = {};
};
static_assert(sizeof(SCENARIO_HEADER) == 0x260);
static_assert(offsetof(SCENARIO_HEADER, szScene) == 0x79 && offsetof(SCENARIO_HEADER, nHours) == 0x198);
static_assert(offsetof(SCENARIO_HEADER, nMinutes) == 0x19c && offsetof(SCENARIO_HEADER, nTimeFlags) == 0x1a0);
static_assert(offsetof(SCENARIO_HEADER, settings.nSideANation) == 0x1ac);
static_assert(offsetof(SCENARIO_HEADER, settings.nSideACount) == 0x1b0);
static_assert(offsetof(SCENARIO_HEADER, settings.nSideBNation) == 0x1b8);
static_assert(offsetof(SCENARIO_HEADER, settings.nSideBCount) == 0x1bc);
static_assert(offsetof(SCENARIO_HEADER, nVersion) == 0x1c4 &&
              offsetof(SCENARIO_HEADER, nSideAExtra) == 0x21c);
static_assert(offsetof(SCENARIO_HEADER, nSideBExtra) == 0x220 &&
              offsetof(SCENARIO_HEADER, nFlagExtra) == 0x224);

/// Which sides fight under a nation that isn't one of the game's own.
struct CUSTOM_RESOURCE_DATA {
    std::uint8_t bCustomA = 0;
    std::uint8_t reserved0[3] = {};
    CObjGUID guidA;
    std::uint8_t bCustomB = 0;
    std::uint8_t reserved1[3] = {};
    CObjGUID guidB;
    std::uint8_t reserved2[0x14] = {};
};
static_assert(sizeof(CUSTOM_RESOURCE_DATA) == 0x3c);
static_assert(offsetof(CUSTOM_RESOURCE_DATA, guidA) == 4 && offsetof(CUSTOM_RESOURCE_DATA, bCustomB) == 0x14);
static_assert(offsetof(CUSTOM_RESOURCE_DATA, guidB) == 0x18);

/// What the numbers of an item may be. All figures share one range.
inline constexpr std::int32_t SCENARIO_MAX_FIGURE = 1'000'000;
inline constexpr std::int32_t SCENARIO_MAX_DISTANCE = 1'000'000;
inline constexpr std::int32_t SCENARIO_MAX_HEADING = 359;
inline constexpr std::int32_t SCENARIO_MAX_KNOTS = 1'000;
inline constexpr std::int32_t SCENARIO_MAX_HEIGHT = 10'000;
inline constexpr std::int32_t SCENARIO_MAX_LEVEL = 6;
inline constexpr std::int32_t SCENARIO_MAX_PERCENT = 100;

/// What every unit begins with, as its record in a running game does. Each text ends with a zero.
struct ScenarioUnit {
    char szFullName[101] = {};
    char szName[31] = {};  ///< in lists
    char szModel[32] = {}; ///< model file
    char szCode[8] = {};   ///< pennant number
};
static_assert(sizeof(ScenarioUnit) == 0xac && offsetof(ScenarioUnit, szName) == 0x65);
static_assert(offsetof(ScenarioUnit, szModel) == 0x84 && offsetof(ScenarioUnit, szCode) == 0xa4);

/// Where a unit stands when the battle begins.
struct ScenarioPlace {
    std::int32_t nX = 0;       ///< metres east of the scene's middle
    std::int32_t nY = 0;       ///< metres north
    std::int32_t nHeading = 0; ///< degrees, 0 is north and 90 east
    std::int32_t nKnots = 0;
    std::int32_t nHeight = 0; ///< metres above the sea; a submarine's is its depth
};

struct ShipFigures {
    std::int32_t nYear = 0;         ///< of launch
    std::int32_t nRate = 0;         ///< 0 is the first rate
    std::int32_t nLength = 0;       ///< metres
    std::int32_t nWireless = 0;     ///< range in miles, 0 without a set
    std::int32_t nDisplacement = 0; ///< tons
    std::int32_t nCrew = 0;
    std::int32_t nClassText = 0; ///< number of the class's name in the text table
    std::int32_t nHullBow = 0;   ///< strength of the three parts of the hull
    std::int32_t nHullMiddle = 0;
    std::int32_t nHullStern = 0;
    std::int32_t nMainGuns = 0; ///< numbers of weapons, and their calibres in millimetres
    std::int32_t nSecondaryGuns = 0;
    std::int32_t nMachineGuns = 0;
    std::int32_t nMainCalibre = 0;
    std::int32_t nTorpedoTubes = 0;
    std::int32_t nTorpedoCalibre = 0;
    std::int32_t nSecondaryCalibre = 0;
    std::int32_t nLightGuns = 0;
    std::int32_t nLightCalibre = 0;
    std::int32_t nHighAngleGuns = 0;
    std::int32_t nHighAngleCalibre = 0;
    std::int32_t nMachineCalibre = 0;
    std::int32_t nDepthCharges = 0;
    std::int32_t nDepthChargeWeight = 0; ///< kilograms
    std::int32_t nSpeed = 0;             ///< knots
    std::int32_t nArmourTurret = 0;      ///< millimetres
    std::int32_t nArmourDeck = 0;
    std::int32_t nArmourBelt = 0;
    std::int32_t nEndurance = 0; ///< sea miles

    /// Guns, tubes and throwers together.
    std::int64_t CountWeapons() const
    {
        return std::int64_t{nMainGuns} + nSecondaryGuns + nMachineGuns + nTorpedoTubes + nLightGuns +
               nHighAngleGuns + nDepthCharges;
    }
};
static_assert(sizeof(ShipFigures) == 116);

struct BalloonFigures {
    std::int32_t nYear = 0;
    std::int32_t nClassText = 0;
    std::int32_t nCrew = 0;
    std::int32_t nVolume = 0;    ///< cubic metres
    std::int32_t nSpeed = 0;     ///< knots
    std::int32_t nCeiling = 0;   ///< metres
    std::int32_t nEndurance = 0; ///< hours
    std::int32_t nBombs = 0;
    std::int32_t nMachineGuns = 0;
};
static_assert(sizeof(BalloonFigures) == 36);

struct SubmarineFigures {
    std::int32_t nYear = 0;
    std::int32_t nClassText = 0;
    std::int32_t nCrew = 0;
    std::int32_t nDisplacement = 0; ///< tons, on the surface
    std::int32_t nSpeed = 0;        ///< knots, on the surface
    std::int32_t nSpeedBelow = 0;
    std::int32_t nTorpedoTubes = 0;
    std::int32_t nTorpedoes = 0;
};
static_assert(sizeof(SubmarineFigures) == 32);

struct ScenarioShip {
    static constexpr ScenarioItemType TYPE = SCENARIO_SHIP;
    ScenarioUnit unit;
    ShipFigures figures;
    ScenarioPlace place;
    std::int32_t nLevel = 0;       ///< of training, 0 the best to 6
    std::int32_t nRatings[5] = {}; ///< percent: readiness, hull, crew, gunnery, wireless
    std::uint8_t reserved[0x64] = {};
    std::int32_t nSide = 0; ///< ScenarioSide
};

struct ScenarioBalloon {
    static constexpr ScenarioItemType TYPE = SCENARIO_BALLOON;
    ScenarioUnit unit;
    BalloonFigures figures;
    ScenarioPlace place;
    std::int32_t nLevel = 0;
    std::int32_t nSkill = 0; ///< percent
    std::uint8_t reserved[0x0c] = {};
    std::int32_t nSide = 0;
};

struct ScenarioSubmarine {
    static constexpr ScenarioItemType TYPE = SCENARIO_SUBMARINE;
    ScenarioUnit unit;
    SubmarineFigures figures;
    ScenarioPlace place;
    std::int32_t nLevel = 0;
    std::int32_t nSkill = 0; ///< percent
    std::uint8_t reserved[0x14] = {};
    std::int32_t nSide = 0;
};

template <class Item>
constexpr bool HasItemLayout(std::size_t figuresSize, std::size_t side)
{
    return offsetof(Item, unit) == 0 && offsetof(Item, figures) == 0xac &&
           offsetof(Item, place) == 0xac + figuresSize && offsetof(Item, nSide) == side &&
           sizeof(Item) == side + sizeof(std::int32_t);
}
static_assert(HasItemLayout<ScenarioShip>(116, 0x1b0) && HasItemLayout<ScenarioBalloon>(36, 0xf8) &&
              HasItemLayout<ScenarioSubmarine>(32, 0xfc));
static_assert(offsetof(ShipFigures, nRate) == 0xb0 - 0xac && offsetof(ShipFigures, nMainGuns) == 0xd4 - 0xac);
static_assert(offsetof(ShipFigures, nTorpedoTubes) == 0xe4 - 0xac);
static_assert(offsetof(ShipFigures, nLightGuns) == 0xf0 - 0xac);
static_assert(offsetof(ShipFigures, nHighAngleGuns) == 0xf8 - 0xac);
static_assert(offsetof(ShipFigures, nDepthCharges) == 0x104 - 0xac);

using ScenarioItem = std::variant<ScenarioShip, ScenarioBalloon, ScenarioSubmarine>;

/// All that a scenario file holds.
struct Scenario {
    SCENARIO_HEADER header;
    CUSTOM_RESOURCE_DATA custom; ///< all zero in versions without it
    std::string title;
    std::string description;
    std::vector<ScenarioItem> items;
};

/// The numbers of the head that follow from the items: the units of each side, and the weapons of its ships.
struct ScenarioStrength {
    std::int64_t units[2] = {};
    std::int64_t weapons[2] = {};

    explicit ScenarioStrength(const std::vector<ScenarioItem>& items);
};

/// A file isn't a scenario, or a scenario can't be made a file. what() names the file and what is wrong.
class scenario_exception : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};
