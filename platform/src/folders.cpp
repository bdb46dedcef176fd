#include "platform/folders.h"

#include <dirent.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>

#include "internal.h"
#include "platform/codepage.h"
#include "platform/files.h"
#include "platform/host.h"

namespace
{

constexpr char MOUNT_TABLE[] = "/proc/self/mounts";
constexpr char FOREIGN_SEPARATOR = '\\';

/// Where desktops and players mount; whatever stands there is of interest.
constexpr std::string_view PLAYER_TREES[] = {"/media", "/mnt", "/run/media"};
/// Where the system mounts what is its own.
constexpr std::string_view SYSTEM_TREES[] = {"/boot", "/dev", "/efi", "/etc", "/proc", "/run",
                                             "/snap", "/sys", "/tmp", "/usr", "/var"};
constexpr std::string_view NETWORK_TYPES[] = {"cifs", "fuse.sshfs", "nfs", "nfs4", "smb3", "smbfs"};

/// True also for the folder itself.
bool IsWithin(std::string_view path, std::string_view folder)
{
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

template <class Trees>
bool IsWithinAny(std::string_view path, const Trees& trees)
{
    return std::any_of(std::begin(trees), std::end(trees),
                       [&](std::string_view tree) { return IsWithin(path, tree); });
}

/// The mount table writes blanks, tabs, line ends and backslashes as three octal digits.
std::string Unescape(std::string_view text)
{
    constexpr std::size_t DIGITS = 3;
    const auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
    std::string out;
    while (!text.empty()) {
        const std::string_view digits = text.substr(1, DIGITS);
        if (text[0] == '\\' && digits.size() == DIGITS &&
            std::all_of(digits.begin(), digits.end(), isOctal)) {
            out += static_cast<char>((digits[0] - '0') * 64 + (digits[1] - '0') * 8 + (digits[2] - '0'));
            text.remove_prefix(1 + DIGITS);
        } else {
            out += text[0];
            text.remove_prefix(1);
        }
    }
    return out;
}

bool IsKnownMount(std::string_view source, std::string_view target, std::string_view type)
{
    if (!target.starts_with('/') || target == "/" || target.find("/.") != std::string_view::npos) {
        return false;
    }
    if (IsWithinAny(target, PLAYER_TREES)) {
        return true;
    }
    if (IsWithinAny(target, SYSTEM_TREES)) {
        return false;
    }
    const bool network =
        std::find(std::begin(NETWORK_TYPES), std::end(NETWORK_TYPES), type) != std::end(NETWORK_TYPES);
    return network || (source.starts_with("/dev/") && !source.starts_with("/dev/loop"));
}

PlatformPathKind ToKind(mode_t mode)
{
    return S_ISDIR(mode)   ? PlatformPathKind::Folder
           : S_ISREG(mode) ? PlatformPathKind::File
                           : PlatformPathKind::Other;
}

/// Most file systems tell an entry's kind with its name; links have to be followed.
PlatformPathKind KindOfEntry(const std::string& folder, const dirent& entry)
{
    switch (entry.d_type) {
    case DT_DIR:
        return PlatformPathKind::Folder;
    case DT_REG:
        return PlatformPathKind::File;
    case DT_LNK:
    case DT_UNKNOWN:
        return PlatformKindOf(folder + '/' + entry.d_name);
    default:
        return PlatformPathKind::Other;
    }
}

} // namespace

PlatformPathKind PlatformKindOf(const std::string& path)
{
    struct stat info {
    };
    return stat(path.c_str(), &info) == 0 ? ToKind(info.st_mode) : PlatformPathKind::None;
}

int PlatformListFolder(const std::string& path, std::vector<PlatformFolderEntry>* out)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> dir(opendir(path.c_str()), &closedir);
    if (!dir) {
        return -errno;
    }
    std::vector<PlatformFolderEntry> found;
    while (const dirent* entry = readdir(dir.get())) {
        const std::string_view name = entry->d_name;
        if (name.starts_with('.') || name.find(FOREIGN_SEPARATOR) != std::string_view::npos) {
            continue;
        }
        const PlatformPathKind kind = KindOfEntry(path, *entry);
        if (kind == PlatformPathKind::Folder || kind == PlatformPathKind::File) {
            found.push_back({std::string(name), kind == PlatformPathKind::Folder});
        }
    }
    *out = std::move(found);
    return 0;
}

std::string PlatformFullPath(const char* path)
{
    return PlatformAbsolutePath(PlatformResolveRead(path));
}

std::string PlatformAbsolutePath(const std::string& path)
{
    std::error_code error;
    std::string full = std::filesystem::absolute(path, error).lexically_normal().string();
    if (path.empty() || error) {
        return {};
    }
    while (full.size() > 1 && full.back() == '/') {
        full.pop_back();
    }
    return full;
}

std::string PlatformFromFilePath(std::string_view path)
{
    std::string out;
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        out += PlatformFromFileName(path.substr(begin, end - begin));
        if (end < path.size()) {
            out += '/';
        }
        begin = end + 1;
    }
    return out;
}

std::vector<std::string> PlatformMountPoints()
{
    return GetPlatformHost().MountPoints();
}

std::string PlatformHomeFolder()
{
    return GetPlatformHost().HomeFolder();
}

std::vector<std::string> PlatformKnownMounts(std::istream& table)
{
    std::vector<std::string> known;
    for (std::string line; std::getline(table, line);) {
        std::istringstream fields(line);
        std::string source;
        std::string target;
        std::string type;
        if (!(fields >> source >> target >> type)) {
            continue;
        }
        target = Unescape(target);
        if (IsKnownMount(source, target, type)) {
            known.push_back(std::move(target));
        }
    }
    std::sort(known.begin(), known.end());
    known.erase(std::unique(known.begin(), known.end()), known.end());
    return known;
}

std::vector<std::string> PlatformSystemMountPoints()
{
    std::ifstream table(MOUNT_TABLE);
    return PlatformKnownMounts(table);
}

std::string PlatformSystemHomeFolder()
{
    const char* home = std::getenv("HOME");
    if (home != nullptr && *home == '/') {
        return home;
    }
    const passwd* user = getpwuid(getuid());
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : std::string();
}
