#include "platform/files.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <memory>

#include "internal.h"
#include "platform/codepage.h"

namespace
{

struct Roots {
    std::string user;
    std::string game;
};

Roots& CurrentRoots()
{
    static Roots roots;
    return roots;
}

std::string WithoutEndSlash(std::string path)
{
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

std::string Join(const std::string& folder, const std::string& name)
{
    return folder.ends_with('/') ? folder + name : folder + '/' + name;
}

bool Exists(const std::string& path)
{
    struct stat info {
    };
    return stat(path.c_str(), &info) == 0;
}

bool IsFolder(const std::string& path)
{
    struct stat info {
    };
    return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

/// The path of the entry `name` of a folder. An exact match wins; of several others the first in byte order.
/// Empty when there is none.
std::string FindEntry(const std::string& folder, const std::string& name)
{
    for (const std::string& exact : {name, PlatformToFileName(name)}) {
        std::string path = Join(folder, exact);
        if (Exists(path)) {
            return path;
        }
    }
    const std::unique_ptr<DIR, int (*)(DIR*)> dir(opendir(folder.c_str()), &closedir);
    if (!dir) {
        return {};
    }
    std::string best;
    while (const dirent* entry = readdir(dir.get())) {
        const std::string found = entry->d_name;
        const bool same =
            PlatformEqualNoCase(PlatformFromFileName(found), name) || PlatformEqualNoCase(found, name);
        if (same && (best.empty() || found < best)) {
            best = found;
        }
    }
    return best.empty() ? std::string() : Join(folder, best);
}

/// The path to write to below a root: existing parts in their own case, the others as they are named.
/// Missing folders on the way are made when `makeFolders` is set; without that they must exist.
std::string ResolveForWrite(const std::string& root, const std::vector<std::string>& parts, bool makeFolders)
{
    if (parts.empty()) {
        return {};
    }
    std::string path = root;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const bool last = i + 1 == parts.size();
        std::string next = FindEntry(path, parts[i]);
        const bool exists = !next.empty();
        if (!exists) {
            next = Join(path, PlatformToFileName(parts[i]));
        }
        if (!last && !exists && (!makeFolders || mkdir(next.c_str(), 0777) != 0)) {
            return {};
        }
        if (!last && exists && !IsFolder(next)) {
            return {};
        }
        path = std::move(next);
    }
    return path;
}

/// The existing path that may be changed: in the player's folder, or absolute. Empty when there is none.
std::string ResolveOwn(const char* path)
{
    const auto split = PlatformSplitPath(path);
    if (!split) {
        return {};
    }
    return PlatformResolveBelow(split->absolute ? "/" : CurrentRoots().user, split->parts);
}

/// A file of the game that is changed in place is first copied to the player's folder. False when the copy
/// can't be made.
bool CopyToPlayer(const char* path, const std::string& target)
{
    if (target.empty()) {
        return false;
    }
    const std::string source = PlatformResolveRead(path);
    if (source.empty() || source == target) {
        return true;
    }
    std::error_code error;
    if (!std::filesystem::copy_file(source, target, error)) {
        return false;
    }
    // The game's files may be read-only; the player's own may not.
    std::filesystem::permissions(target, std::filesystem::perms::owner_write,
                                 std::filesystem::perm_options::add, error);
    return !error;
}

} // namespace

std::optional<PlatformPathParts> PlatformSplitPath(const char* path)
{
    if (!path || !*path || *path == '\\' || path[1] == ':') {
        return std::nullopt;
    }
    PlatformPathParts out;
    out.absolute = *path == '/';
    const std::string_view text = path;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find_first_of("/\\", begin), text.size());
        const std::string_view part = text.substr(begin, end - begin);
        if (part == "..") {
            if (out.parts.empty()) {
                return std::nullopt;
            }
            out.parts.pop_back();
        } else if (!part.empty() && part != ".") {
            out.parts.emplace_back(part);
        }
        begin = end + 1;
    }
    return out;
}

std::string PlatformResolveBelow(const std::string& root, const std::vector<std::string>& parts)
{
    if (root.empty()) {
        return {};
    }
    std::string path = root;
    for (const std::string& part : parts) {
        path = FindEntry(path, part);
        if (path.empty()) {
            return {};
        }
    }
    return Exists(path) ? path : std::string();
}

void PlatformSetRoots(const std::string& userRoot, const std::string& gameRoot)
{
    CurrentRoots() = {WithoutEndSlash(userRoot), WithoutEndSlash(gameRoot)};
}

const std::string& PlatformUserRoot()
{
    return CurrentRoots().user;
}

const std::string& PlatformGameRoot()
{
    return CurrentRoots().game;
}

bool PlatformIsInsideRoots(const char* path)
{
    const auto split = PlatformSplitPath(path);
    return split && !split->absolute;
}

std::string PlatformResolveRead(const char* path)
{
    const auto split = PlatformSplitPath(path);
    if (!split) {
        return {};
    }
    if (split->absolute) {
        return PlatformResolveBelow("/", split->parts);
    }
    std::string found = PlatformResolveBelow(CurrentRoots().user, split->parts);
    return found.empty() ? PlatformResolveBelow(CurrentRoots().game, split->parts) : found;
}

std::string PlatformResolveWrite(const char* path)
{
    const auto split = PlatformSplitPath(path);
    if (!split) {
        return {};
    }
    if (split->absolute) {
        return ResolveForWrite("/", split->parts, false);
    }
    const std::string& root = CurrentRoots().user;
    if (root.empty()) {
        return {};
    }
    std::error_code error;
    std::filesystem::create_directories(root, error);
    return IsFolder(root) ? ResolveForWrite(root, split->parts, true) : std::string();
}

std::string PlatformResolveChange(const char* path)
{
    if (PlatformResolveRead(path).empty()) {
        return {};
    }
    std::string real = PlatformResolveWrite(path);
    return real.empty() || IsFolder(real) || !CopyToPlayer(path, real) ? std::string() : real;
}

std::FILE* PlatformOpenFile(const char* path, const char* mode)
{
    if (!mode || !*mode) {
        return nullptr;
    }
    const bool changes = *mode == 'a' || (*mode == 'r' && std::strchr(mode, '+'));
    std::string real;
    if (*mode == 'r' && !changes) {
        real = PlatformResolveRead(path);
    } else if (*mode == 'r' && PlatformResolveRead(path).empty()) {
        return nullptr;
    } else {
        real = PlatformResolveWrite(path);
    }
    if (real.empty() || IsFolder(real) || (changes && !CopyToPlayer(path, real))) {
        return nullptr;
    }
    return std::fopen(real.c_str(), mode);
}

bool PlatformDeleteFile(const char* path)
{
    const std::string real = ResolveOwn(path);
    return !real.empty() && unlink(real.c_str()) == 0;
}

bool PlatformRenameFile(const char* from, const char* to, bool replace)
{
    const std::string source = ResolveOwn(from);
    if (source.empty()) {
        return false;
    }
    const std::string target = PlatformResolveWrite(to);
    if (!target.empty() && !replace) {
        return PlatformPlaceNew(source.c_str(), target.c_str()) == PlatformPut::Done;
    }
    return !target.empty() && std::rename(source.c_str(), target.c_str()) == 0;
}
