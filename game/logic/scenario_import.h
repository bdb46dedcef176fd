#pragma once
// Brings a scenario that the player picked anywhere into his scenarios folder.

#include <string>

/// The new file's name below "scenarios\", of letters a to z, digits, '-' and '_', and at most 48 characters.
/// A file that stands there already with the same bytes, the player's or the game's, is that name; one with
/// other bytes is left alone, and the new one gets a number. Only what CScenarioParser takes is brought in,
/// byte for byte, under a name that appears when the file is whole. Empty on failure, which the debug output
/// tells.
std::string ImportScenario(const std::string& path);
