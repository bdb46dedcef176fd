#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "internal.h"
#include "platform/files.h"

namespace
{

/// Opens a file beside `path` that wasn't there; -1 on failure.
int MakeTemporary(const std::string& path, std::string& name)
{
    for (int number = 1; number <= PLATFORM_MOST_TEMPORARIES; ++number) {
        name = PlatformTemporaryName(path, number);
        const int file = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                              PLATFORM_NEW_FILE_RIGHTS);
        if (file >= 0 || errno != EEXIST) {
            return file;
        }
    }
    return -1;
}

bool WriteAll(int file, std::string_view content)
{
    while (!content.empty()) {
        const ssize_t written = write(file, content.data(), content.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    return PlatformFlushToDisk(file);
}

PlatformPut Place(const char* temporary, const char* path, bool replace)
{
    if (!replace) {
        return PlatformPlaceNew(temporary, path);
    }
    return std::rename(temporary, path) == 0 ? PlatformPut::Done : PlatformPut::Failed;
}

} // namespace

std::string PlatformTemporaryName(const std::string& path, int number)
{
    return path + ".tmp" + (number == 1 ? "" : std::to_string(number));
}

PlatformPut PlatformPlaceNew(const char* from, const char* path)
{
    if (renameat2(AT_FDCWD, from, AT_FDCWD, path, RENAME_NOREPLACE) == 0) {
        return PlatformPut::Done;
    }
    if (errno == EEXIST) {
        return PlatformPut::Taken;
    }
    if (link(from, path) == 0) {
        unlink(from);
        return PlatformPut::Done;
    }
    return errno == EEXIST ? PlatformPut::Taken : PlatformPut::Failed;
}

PlatformPut PlatformPutFile(const std::string& realPath, std::string_view content, bool replace)
{
    std::string temporary;
    const int file = MakeTemporary(realPath, temporary);
    if (file < 0) {
        return PlatformPut::Failed;
    }
    bool whole = WriteAll(file, content);
    whole = close(file) == 0 && whole;
    const PlatformPut put = whole ? Place(temporary.c_str(), realPath.c_str(), replace) : PlatformPut::Failed;
    if (put != PlatformPut::Done) {
        unlink(temporary.c_str());
    }
    return put;
}
