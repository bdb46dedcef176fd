#pragma once
// Folders as a player walks them with a file dialog: where to begin, what a folder holds, what a path is. All
// paths here are absolute real ones with the bytes of the disk, unlike those of files.h.

#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

enum class PlatformPathKind {
    None,   ///< nothing there, or nothing that may be looked at
    Folder, ///< also a link to one
    File,   ///< a regular file, also a link to one
    Other,  ///< a socket, a device
};
PlatformPathKind PlatformKindOf(const std::string& path);

struct PlatformFolderEntry {
    std::string name; ///< the bytes of the disk
    bool isFolder = false;
};
/// The folders and regular files of a folder in no order. Hidden ones (a leading dot), whatever is neither,
/// links to nowhere and names with a backslash, which no path of the program can hold, are left out. 0; or a
/// negative error number when the folder can't be read, and then nothing is written.
int PlatformListFolder(const std::string& path, std::vector<PlatformFolderEntry>* out);

/// What stands between a path of the program (either slash, any case, code page 1252, relative ones in the
/// two roots) and one of the disk. Empty when nothing exists there or the path is refused.
std::string PlatformFullPath(const char* path);
/// A path of the disk, such as a root, which may be relative to where the program was started: absolute, with
/// neither "." nor ".." nor a slash at its end. Empty for an empty one.
std::string PlatformAbsolutePath(const std::string& path);
/// The way back, part by part as PlatformFromFileName does it; files.h opens what this gives.
std::string PlatformFromFilePath(std::string_view path);

/// Where the devices and network folders that a player knows are mounted, sorted. They need not exist.
std::vector<std::string> PlatformMountPoints();
/// Empty when the player has none.
std::string PlatformHomeFolder();
