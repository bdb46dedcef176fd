#pragma once
// What the sources of this library share.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

/// The parts of a path that was let in: relative to both roots, or absolute.
struct PlatformPathParts {
    bool absolute = false;
    std::vector<std::string> parts;
};

/// Splits at both slashes and works off "." and "..". Nothing for a null or empty path, a drive letter, a
/// leading backslash, or a path that climbs above its root.
std::optional<PlatformPathParts> PlatformSplitPath(const char* path);
/// The real path of `parts` below `root`, each resolved without regard to case; empty when one is missing.
std::string PlatformResolveBelow(const std::string& root, const std::vector<std::string>& parts);

/// The system's own answers, behind the defaults of PlatformHost.
std::optional<std::string> PlatformSystemLocaleText(DWORD item);
bool PlatformSystemStartProcess(const std::string& commandLine, const std::string& directory);
