#include "shell/folders.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "engine/module.h"

namespace fs = std::filesystem;

namespace
{

bool IsDataFolder(const fs::path& folder)
{
    std::error_code ignored;
    return fs::is_directory(folder / "resource", ignored);
}

std::string WithoutTrailingSlash(std::string folder)
{
    while (folder.size() > 1 && folder.back() == '/')
        folder.pop_back();
    return folder;
}

} // namespace

std::string FindDataFolder(const std::string& given, std::string& error)
{
    if (!given.empty()) {
        if (IsDataFolder(given))
            return WithoutTrailingSlash(given);
        error = "there is no game data in " + given + " (it has no folder \"resource\")";
        return {};
    }
    const fs::path program = ProgramFolder();
    const std::vector<fs::path> places = {program / "data", program / "../../../data",
                                          program / "../share/seawarden/data", "data"};
    for (const fs::path& place : places) {
        if (IsDataFolder(place))
            return place.lexically_normal().string();
    }
    error = "there is no game data; name its folder with --data";
    return {};
}

bool MakeFolder(const std::string& folder)
{
    std::error_code failure;
    fs::create_directories(folder, failure);
    return fs::is_directory(folder, failure);
}

std::string MakeUserFolder(const std::string& given, std::string& error)
{
    std::string folder = given;
    const char* dataHome = std::getenv("XDG_DATA_HOME");
    const char* home = std::getenv("HOME");
    if (folder.empty() && dataHome != nullptr && *dataHome == '/')
        folder = std::string(dataHome) + "/seawarden";
    else if (folder.empty() && home != nullptr && *home != '\0')
        folder = std::string(home) + "/.local/share/seawarden";
    if (folder.empty()) {
        error = "there is no home folder; name the player's folder with --user";
        return {};
    }
    folder = WithoutTrailingSlash(folder);
    if (MakeFolder(folder))
        return folder;
    error = "the player's folder " + folder + " can't be made; name one with --user";
    return {};
}

bool CanKeepFiles(const std::string& folder)
{
    return access(folder.c_str(), R_OK | W_OK | X_OK) == 0;
}
