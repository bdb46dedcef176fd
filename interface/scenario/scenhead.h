#pragma once
// The head of a scenario file, as the scenario list reads it: without parsing, for every file of the folder.

#include <string>

#include "ilogic.h"
#include "keelworks/scenario.h"

class CItfFlagBox;
class IEngine;

inline constexpr char SCENARIO_FOLDER[] = "scenarios\\";

struct ScenarioHead {
    SCENARIO_HEADER header;      ///< zero where the file is too short
    CUSTOM_RESOURCE_DATA custom; ///< all zero in versions without the block
    std::string title;           ///< at most SCENARIO_MAX_TITLE characters
    std::string description;     ///< only when asked for, at most SCENARIO_MAX_DESCRIPTION characters
};

/// False for a file that can't be opened, is empty, or ends within its block of custom nations. A head that
/// is cut short is no failure.
bool ReadScenarioHead(const char* path, bool withDescription, ScenarioHead& out);

/// Whether the file opens and holds all of a head.
bool HasWholeScenarioHead(const char* path);

/// The name of a side: the text of that number, or a custom nation's name; "?" when there is none. resources
/// may be null.
std::string ScenarioSideName(int nation, bool custom, const CObjGUID& guid, ICustomResources* resources);

/// The side's flag: that of its number, with the year where the caller has one (0 leaves the box's own), or
/// a custom nation's. A custom nation that isn't known has the white flag. resources may be null.
void ShowScenarioFlag(CItfFlagBox& box, int nation, bool custom, const CObjGUID& guid, int extra,
                      ICustomResources* resources);

/// What the logic hands out; null when it has none.
ICustomResources* GetCustomResources(IEngine* core);
