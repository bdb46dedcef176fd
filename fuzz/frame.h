#pragma once
// What every fuzzer stands on.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/temp_roots.h"

/// Ends the run as a find when `holds` is false.
inline void Require(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}

/// The roots of this process; in memory where that can be, as a fuzzer writes thousands of files a second.
inline const TempRoots& Roots()
{
    static const TempRoots roots = [] {
        if (std::filesystem::is_directory("/dev/shm"))
            setenv("TMPDIR", "/dev/shm", 0);
        return TempRoots();
    }();
    return roots;
}

/// Puts the bytes into the player's folder.
inline void PutFile(const std::string& name, const std::uint8_t* data, std::size_t size)
{
    Roots().Put("user/" + name, std::string(data, data + size));
}
