#pragma once
// What the sources of this library share.

#include <sys/types.h>

#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
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

/// The real path of a file that exists in either root, to change it in place: a file of the game is first
/// copied to the player's folder. Empty when there is none and when it can't be copied.
std::string PlatformResolveChange(const char* path);

/// The rights of a new file, less what the user's mask takes away.
constexpr mode_t PLATFORM_NEW_FILE_RIGHTS = 0666;
/// Waits until the file's content is on the disk. True also where there is none to bring it to.
bool PlatformFlushToDisk(int fd);

/// How many names for a temporary file are tried: some may be left from a crash.
constexpr int PLATFORM_MOST_TEMPORARIES = 100;
/// The name of a temporary file beside `path`; `number` counts from 1.
std::string PlatformTemporaryName(const std::string& path, int number);

/// Renames a file, both paths being real ones, to a name that nothing has, not even a link that leads
/// nowhere. Not every file system knows both ways of not replacing anything.
PlatformPut PlatformPlaceNew(const char* from, const char* path);

/// A strftime format in the letters of a date or time picture, without blanks around it; fields that pictures
/// lack are left out.
std::string PlatformPictureOf(const std::string& format);
/// What stands behind the first run of letters of a picture.
std::string PlatformPictureSeparator(const std::string& picture, const char* fallback);
/// "0" when the month comes first in a date picture, "1" for the day, "2" for the year. A weekday doesn't
/// count.
std::string PlatformPictureOrder(const std::string& picture);

/// The system's own answers, behind the defaults of PlatformHost.
std::optional<std::string> PlatformSystemLocaleText(DWORD item);
bool PlatformSystemStartProcess(const std::string& commandLine, const std::string& directory);
std::vector<std::string> PlatformSystemMountPoints();
std::string PlatformSystemHomeFolder();

/// The mount points of a mount table that a player would look for: devices and network folders, and whatever
/// is mounted where players mount; not the system's own. Sorted, each once.
std::vector<std::string> PlatformKnownMounts(std::istream& table);
