#pragma once

#include <string>

/// The game's folder: the given one, or else the first of these that holds `resource`: `data` beside the
/// program, `../../../data` from the program (a build folder of the project), `../share/seawarden/data` from
/// it (installed), `data` in the current folder. Empty, with a line for the user in `error`, when there is
/// none.
std::string FindDataFolder(const std::string& given, std::string& error);
/// The player's folder, made when it doesn't exist: the given one, or `$XDG_DATA_HOME/seawarden`, or
/// `~/.local/share/seawarden`. Empty, with a line for the user in `error`, when it can't be made.
std::string MakeUserFolder(const std::string& given, std::string& error);
/// Whether files of the folder can be read, written and made.
bool CanKeepFiles(const std::string& folder);
/// False when the folder isn't there and can't be made.
bool MakeFolder(const std::string& folder);
