#pragma once
// Files by handle, without a buffer of their own. Paths are looked up as platform/files.h tells.
//
// Sharing binds whoever opens files through these calls, in this process and in others; other ways to a file
// aren't held back.

#include <string>

#include "platform/files.h"

constexpr DWORD GENERIC_READ = 0x80000000;
constexpr DWORD GENERIC_WRITE = 0x40000000;
constexpr DWORD FILE_SHARE_READ = 0x1;
constexpr DWORD FILE_SHARE_WRITE = 0x2;
constexpr DWORD CREATE_NEW = 1;    ///< fails when either root has the file
constexpr DWORD CREATE_ALWAYS = 2; ///< empties the file
constexpr DWORD OPEN_EXISTING = 3;
constexpr DWORD OPEN_ALWAYS = 4;
constexpr DWORD FILE_BEGIN = 0;
constexpr DWORD FILE_CURRENT = 1;
constexpr DWORD FILE_END = 2;
constexpr DWORD INVALID_SET_FILE_POINTER = 0xffffffff;

/// INVALID_HANDLE_VALUE on failure, for a folder, and when another handle's sharing forbids the access or has
/// an access that `share` forbids; the file is unchanged then. `security`, `attributes` and `model` aren't
/// read. A file of the game that is opened to be changed is first copied to the player's folder.
HANDLE CreateFileA(const char* path, DWORD access, DWORD share, void* security, DWORD creation,
                   DWORD attributes, HANDLE model);
BOOL CloseHandle(HANDLE file);
/// Fewer bytes at the end of the file, which is no failure. FALSE without GENERIC_READ. `overlapped` must be
/// null, here and below.
BOOL ReadFile(HANDLE file, void* buffer, DWORD bytes, DWORD* read, void* overlapped);
/// FALSE without GENERIC_WRITE and when not all bytes fit on the disk; `written` tells how many did.
BOOL WriteFile(HANDLE file, const void* buffer, DWORD bytes, DWORD* written, void* overlapped);
/// The low half of the new position, and the high one in `high`, which holds the distance's high half before
/// (null: the distance has 32 bits, and so must the position). INVALID_SET_FILE_POINTER, with the position
/// unchanged, on failure and before the file's begin.
DWORD SetFilePointer(HANDLE file, LONG distance, LONG* high, DWORD origin);
/// Cuts or lengthens the file (with zeros) to its current position.
BOOL SetEndOfFile(HANDLE file);
/// Brings what was written to the disk. FALSE without GENERIC_WRITE.
BOOL FlushFileBuffers(HANDLE file);

/// Makes an empty file beside `path`, named after it, where nothing was, and gives its path: for what is
/// written first and then renamed. Empty when there can be none.
std::string PlatformMakeTemporary(const char* path);
/// The copy is made in such a file and then renamed, so that a failure leaves what was there.
/// FALSE when both are one file, and when `to` is something else than a file.
BOOL CopyFileA(const char* from, const char* to, BOOL failIfExists);
/// FALSE when `to` exists, also as a link that leads nowhere or as `from` in other letters' case, for a file
/// of the game, and from one file system to another.
BOOL MoveFileA(const char* from, const char* to);
BOOL DeleteFileA(const char* path);
