#pragma once
// A folder for the files of one fuzzer, removed at its end.

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/files.h"

inline void Require(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}

class FuzzFolder
{
  public:
    /// The one of this process, which is the player's folder then.
    static const FuzzFolder& Get()
    {
        static const FuzzFolder folder;
        return folder;
    }
    FuzzFolder(const FuzzFolder&) = delete;
    FuzzFolder& operator=(const FuzzFolder&) = delete;

    void Put(const char* name, const std::uint8_t* data, std::size_t size) const
    {
        std::FILE* file = std::fopen((m_Path / name).c_str(), "wb");
        Require(file != nullptr && std::fwrite(data, 1, size, file) == size, "the fuzzer's own file");
        std::fclose(file);
    }
    std::vector<std::uint8_t> Get(const char* name) const
    {
        std::vector<std::uint8_t> bytes;
        if (std::FILE* file = std::fopen((m_Path / name).c_str(), "rb")) {
            for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file))
                bytes.push_back(static_cast<std::uint8_t>(c));
            std::fclose(file);
        }
        return bytes;
    }

  private:
    FuzzFolder()
    {
        // In memory where there is such a place: a fuzzer writes thousands of files a second.
        const std::filesystem::path memory = "/dev/shm";
        const std::filesystem::path base =
            std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
        std::string pattern = (base / "fuzzXXXXXX").string();
        Require(mkdtemp(pattern.data()) != nullptr, "the fuzzer's folder");
        m_Path = pattern;
        PlatformSetRoots(m_Path.string(), "");
    }
    ~FuzzFolder()
    {
        std::error_code error;
        std::filesystem::remove_all(m_Path, error);
    }

    std::filesystem::path m_Path;
};
