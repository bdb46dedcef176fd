#include "logic/scenario_import.h"

#include <filesystem>
#include <vector>

#include "keelworks/ds_file.h"
#include "keelworks/scenario_parser.h"
#include "platform/codepage.h"
#include "platform/files.h"
#include "platform/system.h"

namespace
{

constexpr const char* FOLDER = "scenarios\\";
constexpr const char* EXTENSION = ".sc";
constexpr const char* EXTENSIONS[] = {".exp", EXTENSION};
constexpr const char* NAMELESS = "imported";
constexpr std::size_t MAX_STEM = 40;
constexpr int MOST_COPIES = 999;

std::string LastPart(const std::string& path)
{
    return path.substr(path.find_last_of("/\\") + 1);
}

bool HasExtension(const std::string& name)
{
    for (const std::string extension : EXTENSIONS) {
        if (name.size() > extension.size() &&
            PlatformEqualNoCase(std::string_view(name).substr(name.size() - extension.size()), extension))
            return true;
    }
    return false;
}

/// What is left of a file's name of the characters that a scenario's name may have.
std::string LocalStem(const std::string& name)
{
    std::string stem;
    for (const char c : name.substr(0, name.rfind('.'))) {
        const char lower = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        if ((lower >= 'a' && lower <= 'z') || (lower >= '0' && lower <= '9') || lower == '-' || lower == '_')
            stem += lower;
        else if (lower == ' ')
            stem += '_';
    }
    stem.resize(std::min(stem.size(), MAX_STEM));
    return stem.empty() ? NAMELESS : stem;
}

/// The whole file. Throws fopen_exception or scenario_exception; a pipe or a device is neither opened nor
/// read.
std::vector<char> ReadScenarioBytes(const std::string& path)
{
    std::error_code error;
    const std::string real = PlatformResolveRead(path.c_str());
    if (real.empty() || !std::filesystem::is_regular_file(real, error))
        throw fopen_exception(path);
    ds_file file(path.c_str(), ds_file::MODE_READ);
    if (file.get_size() > CScenarioParser::MAX_FILE_SIZE)
        throw scenario_exception(path + ": a file of " + std::to_string(file.get_size()) + " bytes");
    std::vector<char> bytes(file.get_size());
    bytes.resize(file.read(bytes.data(), bytes.size()));
    return bytes;
}

bool HoldsTheSame(const std::string& path, const std::vector<char>& bytes)
try {
    return ReadScenarioBytes(path) == bytes;
} catch (const std::runtime_error&) {
    return false;
}

/// Writes the bytes under the first name that is free or has them already.
std::string Store(const std::string& stem, const std::vector<char>& bytes)
{
    for (int copy = 1; copy <= MOST_COPIES; ++copy) {
        const std::string name = stem + (copy == 1 ? "" : "-" + std::to_string(copy)) + EXTENSION;
        const std::string path = FOLDER + name;
        if (!PlatformResolveRead(path.c_str()).empty()) {
            if (HoldsTheSame(path, bytes))
                return name;
            continue;
        }
        const std::string real = PlatformResolveWrite(path.c_str());
        const PlatformPut put =
            real.empty() ? PlatformPut::Failed : PlatformPutFile(real, {bytes.data(), bytes.size()}, false);
        if (put == PlatformPut::Failed)
            throw scenario_exception(path + ": can't be written");
        if (put == PlatformPut::Done)
            return name;
    }
    throw scenario_exception(stem + ": every name is taken");
}

} // namespace

std::string ImportScenario(const std::string& path)
try {
    const std::string name = LastPart(path);
    if (!HasExtension(name))
        throw scenario_exception(path + ": not named as a scenario");
    const std::vector<char> bytes = ReadScenarioBytes(path);
    CScenarioParser().OpenScenario(path, bytes);
    return Store(LocalStem(name), bytes);
} catch (const std::runtime_error& error) {
    OutputDebugStringA((std::string("Import: ") + error.what() + "\r\n").c_str());
    return {};
}
