#pragma once

#include <string>

/// The name under which the file layer has `path`: as given, or else below `resource\`. Empty when there is
/// neither.
std::string FindGameFile(const std::string& path);
