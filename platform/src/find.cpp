// File searches over the union of the two roots.

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "internal.h"
#include "platform/codepage.h"
#include "platform/files.h"

namespace
{

/// Between 1601, where FILETIME begins, and 1970.
constexpr std::uint64_t SECONDS_BEFORE_1970 = 11'644'473'600;
constexpr std::uint64_t FILETIME_PER_SECOND = 10'000'000;

struct Search {
    std::vector<WIN32_FIND_DATAA> found;
    std::size_t next = 0;
};

/// `*` is any run of characters, `?` any one. Linear in the text for each `*`.
bool Matches(std::string_view pattern, std::string_view name)
{
    std::size_t p = 0;
    std::size_t n = 0;
    std::size_t star = std::string_view::npos;
    std::size_t starName = 0;
    const auto same = [](char a, char b) {
        return PlatformLower(static_cast<unsigned char>(a)) == PlatformLower(static_cast<unsigned char>(b));
    };
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            starName = n;
        } else if (p < pattern.size() && (pattern[p] == '?' || same(pattern[p], name[n]))) {
            ++p;
            ++n;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            n = ++starName;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

FILETIME ToFileTime(const timespec& time)
{
    const std::uint64_t seconds = static_cast<std::uint64_t>(time.tv_sec) + SECONDS_BEFORE_1970;
    const std::uint64_t value =
        seconds * FILETIME_PER_SECOND + static_cast<std::uint64_t>(time.tv_nsec) / 100;
    FILETIME out;
    out.dwLowDateTime = static_cast<DWORD>(value);
    out.dwHighDateTime = static_cast<DWORD>(value >> 32);
    return out;
}

DWORD ToAttributes(const struct stat& info, bool hidden)
{
    DWORD attributes = S_ISDIR(info.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : 0;
    attributes |= (info.st_mode & S_IWUSR) ? 0 : FILE_ATTRIBUTE_READONLY;
    attributes |= hidden ? FILE_ATTRIBUTE_HIDDEN : 0;
    return attributes ? attributes : FILE_ATTRIBUTE_NORMAL;
}

bool IsDots(std::string_view name)
{
    return name == "." || name == "..";
}

/// False for what is neither a file nor a folder, for a link to nowhere, and for a name that doesn't fit.
bool Describe(const std::string& path, const std::string& name, WIN32_FIND_DATAA& out)
{
    struct stat info {
    };
    if (name.size() >= sizeof out.cFileName || stat(path.c_str(), &info) != 0 ||
        (!S_ISREG(info.st_mode) && !S_ISDIR(info.st_mode))) {
        return false;
    }
    out.dwFileAttributes = ToAttributes(info, name.starts_with('.') && !IsDots(name));
    out.ftCreationTime = ToFileTime(info.st_ctim);
    out.ftLastAccessTime = ToFileTime(info.st_atim);
    out.ftLastWriteTime = ToFileTime(info.st_mtim);
    const std::uint64_t size = S_ISREG(info.st_mode) ? static_cast<std::uint64_t>(info.st_size) : 0;
    out.nFileSizeLow = static_cast<DWORD>(size);
    out.nFileSizeHigh = static_cast<DWORD>(size >> 32);
    std::memcpy(out.cFileName, name.c_str(), name.size() + 1);
    return true;
}

bool Less(const WIN32_FIND_DATAA& a, const WIN32_FIND_DATAA& b)
{
    if (IsDots(a.cFileName) != IsDots(b.cFileName)) {
        return IsDots(a.cFileName);
    }
    return PlatformCompareNoCase(a.cFileName, b.cFileName) < 0;
}

bool SameName(const WIN32_FIND_DATAA& a, const WIN32_FIND_DATAA& b)
{
    return PlatformEqualNoCase(a.cFileName, b.cFileName);
}

void AddFolder(const std::string& folder, std::string_view mask, std::vector<WIN32_FIND_DATAA>& found)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> dir(opendir(folder.c_str()), &closedir);
    if (!dir) {
        return;
    }
    std::vector<WIN32_FIND_DATAA> own;
    while (const dirent* entry = readdir(dir.get())) {
        const std::string name = PlatformFromFileName(entry->d_name);
        WIN32_FIND_DATAA data;
        if (Matches(mask, name) && Describe(folder + '/' + entry->d_name, name, data)) {
            own.push_back(data);
        }
    }
    // Of names that differ in case alone the first in byte order is the one that a lookup finds.
    std::sort(own.begin(), own.end(), [](const WIN32_FIND_DATAA& a, const WIN32_FIND_DATAA& b) {
        return std::strcmp(a.cFileName, b.cFileName) < 0;
    });
    found.insert(found.end(), own.begin(), own.end());
}

} // namespace

HANDLE FindFirstFileA(const char* pattern, WIN32_FIND_DATAA* out)
{
    if (!pattern || !out) {
        return INVALID_HANDLE_VALUE;
    }
    // The mask is cut off first, so that ".." or "." as the last part is a mask and not a way up.
    const std::string_view text = pattern;
    const std::size_t slash = text.find_last_of("/\\");
    std::string_view mask = slash == std::string_view::npos ? text : text.substr(slash + 1);
    const std::string folder =
        slash == std::string_view::npos ? std::string("./") : std::string(text.substr(0, slash + 1));
    const auto split = PlatformSplitPath(folder.c_str());
    if (!split || mask.empty() || (mask.size() > 1 && mask[1] == ':')) {
        return INVALID_HANDLE_VALUE;
    }
    if (mask == "*.*") {
        mask = "*";
    }
    auto search = std::make_unique<Search>();
    for (const std::string& root : split->absolute
                                       ? std::vector<std::string>{"/"}
                                       : std::vector<std::string>{PlatformUserRoot(), PlatformGameRoot()}) {
        const std::string real = PlatformResolveBelow(root, split->parts);
        if (!real.empty()) {
            AddFolder(real, mask, search->found);
        }
    }
    std::stable_sort(search->found.begin(), search->found.end(), Less);
    search->found.erase(std::unique(search->found.begin(), search->found.end(), SameName),
                        search->found.end());
    if (search->found.empty()) {
        return INVALID_HANDLE_VALUE;
    }
    *out = search->found[search->next++];
    return search.release();
}

BOOL FindNextFileA(HANDLE handle, WIN32_FIND_DATAA* out)
{
    if (!handle || handle == INVALID_HANDLE_VALUE || !out) {
        return FALSE;
    }
    auto* search = static_cast<Search*>(handle);
    if (search->next == search->found.size()) {
        return FALSE;
    }
    *out = search->found[search->next++];
    return TRUE;
}

BOOL FindClose(HANDLE handle)
{
    if (!handle || handle == INVALID_HANDLE_VALUE) {
        return FALSE;
    }
    delete static_cast<Search*>(handle);
    return TRUE;
}
