#pragma once
// The file layer under every class that opens files. Paths may use either slash and any case. A relative
// path is looked up in two roots: the player's folder first, then the game's. Everything written goes to the
// player's folder. A relative path that would leave its root, a drive letter and a leading backslash are
// refused as not found. A path that starts with '/' is absolute and is taken as it is, for what the player
// picked himself: a name out of a file or from the network must pass PlatformIsInsideRoots first.
//
// Names are bytes in code page 1252; on the disk they are UTF-8. A name that the code page can't hold is
// given and taken as its UTF-8 bytes.

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "platform/types.h"

/// An empty user root makes everything read-only; with both empty no relative path is found. The user root is
/// made when the first file is written to it.
void PlatformSetRoots(const std::string& userRoot, const std::string& gameRoot);
const std::string& PlatformUserRoot();
const std::string& PlatformGameRoot();

/// True for a relative path that stays below its root, whether or not it exists.
bool PlatformIsInsideRoots(const char* path);

/// The real path of an existing file or folder, empty when there is none or the path is refused.
std::string PlatformResolveRead(const char* path);
/// The real path to write to, in the player's folder; the folders on the way are made. An absolute path is
/// given back when its folder exists. Empty when refused or when the folders can't be made.
std::string PlatformResolveWrite(const char* path);
/// fopen on the resolved path; null on failure and for a folder. mode is fopen's. A file of the game that is
/// opened to be changed ("r+", "a") is first copied to the player's folder.
std::FILE* PlatformOpenFile(const char* path, const char* mode);
/// Removes a file of the player's folder, or one at an absolute path. False when there is none.
bool PlatformDeleteFile(const char* path);
enum class PlatformPut {
    Done,
    Taken, ///< something stands under the name, which was to be a new one
    Failed,
};
/// Makes a whole file at a real path: it is written beside it under a name that nothing has, flushed to the
/// disk, and only then takes its place. With `replace` a file or link there goes, without it nothing that
/// stands there is touched, a link that leads nowhere included. Unless Done, nothing is left of it.
PlatformPut PlatformPutFile(const std::string& realPath, std::string_view content, bool replace);
/// Moves within the player's folder; with `replace` what is there goes, without it that is a failure. False
/// on failure.
bool PlatformRenameFile(const char* from, const char* to, bool replace = true);

constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x1;
constexpr DWORD FILE_ATTRIBUTE_HIDDEN = 0x2;
constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
constexpr int MAX_PATH = 260;

struct WIN32_FIND_DATAA {
    DWORD dwFileAttributes = 0;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh = 0;
    DWORD nFileSizeLow = 0;
    char cFileName[MAX_PATH] = {};
};
using WIN32_FIND_DATA = WIN32_FIND_DATAA;

// The number that the operating system gives for "none".
// NOLINTNEXTLINE(performance-no-int-to-ptr)
inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(-1));

/// Pattern match (`*`, `?`, "*.*" is everything) in the last part of the path, over the union of both roots:
/// the player's file hides the game's of the same name. Entries come sorted by name without regard to case,
/// "." and ".." first where the pattern matches them. INVALID_HANDLE_VALUE when nothing matches.
HANDLE FindFirstFileA(const char* pattern, WIN32_FIND_DATAA* out);
BOOL FindNextFileA(HANDLE search, WIN32_FIND_DATAA* out);
BOOL FindClose(HANDLE search);
