#pragma once
// Two fresh roots for a test, removed behind it.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/files.h"

class TempRoots
{
  public:
    TempRoots() : m_User(PlatformUserRoot()), m_Game(PlatformGameRoot())
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "rootsXXXXXX").string();
        folder = mkdtemp(pattern.data());
        std::filesystem::create_directories(folder / "user");
        std::filesystem::create_directories(folder / "game");
        PlatformSetRoots((folder / "user").string(), (folder / "game").string());
    }

    ~TempRoots()
    {
        PlatformSetRoots(m_User, m_Game);
        std::error_code error;
        std::filesystem::remove_all(folder, error);
    }

    TempRoots(const TempRoots&) = delete;
    TempRoots& operator=(const TempRoots&) = delete;

    /// Makes a file with its folders; `path` begins with "user/" or "game/".
    void Put(const std::string& path, const std::string& content = "x") const
    {
        std::filesystem::create_directories((folder / path).parent_path());
        std::ofstream(folder / path, std::ios::binary) << content;
    }

    /// "(none)" for a file that isn't there.
    std::string Get(const std::string& path) const
    {
        std::ifstream in(folder / path, std::ios::binary);
        return in ? std::string(std::istreambuf_iterator<char>(in), {}) : std::string("(none)");
    }

    std::filesystem::path folder;

  private:
    std::string m_User;
    std::string m_Game;
};
