// File searches over the union of the two roots.

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

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

bool IsDots(std::string_view name)
{
    return name == "." || name == "..";
}

/// One character of a mask.
struct MaskPart {
    enum Kind {
        LITERAL,
        RUN,      ///< any characters, none as well
        RUN_STEM, ///< the same, but not the last dot of the name
        ONE,      ///< one character that is no dot; none in front of a dot and at the name's end
        DOT,      ///< a dot, or the name's end
    };
    Kind kind = LITERAL;
    char c = '\0'; ///< of LITERAL
};
using Mask = std::vector<MaskPart>;

/// The parts of a mask. A dot between a name and a wildcard need not be there; dots at the end mean that the
/// name has no extension.
Mask ParseMask(std::string_view text)
{
    Mask mask;
    const std::size_t end = text.find_last_not_of('.') + 1;
    const bool noExtension = end > 0 && end < text.size();
    if (noExtension) {
        text = text.substr(0, end);
    }
    if (text == "*.*") {
        text = "*";
    }
    for (const char c : text) {
        const bool wild = c == '*' || c == '?';
        if (wild && !mask.empty() && mask.back().c == '.') {
            mask.back() = {MaskPart::DOT, '\0'};
        }
        if (c == '.' && !mask.empty() && mask.back().kind == MaskPart::RUN) {
            mask.back().kind = MaskPart::RUN_STEM;
        }
        mask.push_back(c == '*'   ? MaskPart{MaskPart::RUN, '\0'}
                       : c == '?' ? MaskPart{MaskPart::ONE, '\0'}
                                  : MaskPart{MaskPart::LITERAL, c});
    }
    if (noExtension && mask.back().kind == MaskPart::RUN) {
        mask.back().kind = MaskPart::RUN_STEM;
    }
    return mask;
}

bool SameLetter(char a, char b)
{
    return PlatformLower(static_cast<unsigned char>(a)) == PlatformLower(static_cast<unsigned char>(b));
}

/// Follows every way through the mask at once, so the work is at most the product of both lengths.
bool Matches(const Mask& mask, std::string_view name)
{
    const std::size_t lastDot = IsDots(name) ? std::string_view::npos : name.rfind('.');
    std::vector<bool> reached(mask.size() + 1);
    reached[0] = true;
    for (std::size_t n = 0; n <= name.size(); ++n) {
        const bool ended = n == name.size();
        std::vector<bool> next(mask.size() + 1);
        for (std::size_t p = 0; p < mask.size(); ++p) {
            if (!reached[p]) {
                continue;
            }
            const auto [kind, c] = mask[p];
            const bool dot = !ended && name[n] == '.';
            const bool run = kind == MaskPart::RUN || kind == MaskPart::RUN_STEM;
            if (run || (ended && kind != MaskPart::LITERAL) || (dot && kind == MaskPart::ONE)) {
                reached[p + 1] = true;
            }
            if (ended) {
                continue;
            }
            if (run) {
                next[p] = kind == MaskPart::RUN || n != lastDot || next[p];
            } else if (kind == MaskPart::ONE ? !dot : kind == MaskPart::DOT ? dot : SameLetter(c, name[n])) {
                next[p + 1] = true;
            }
        }
        if (ended) {
            return reached[mask.size()];
        }
        reached = std::move(next);
    }
    return false;
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

void AddFolder(const std::string& folder, const Mask& mask, std::vector<WIN32_FIND_DATAA>& found)
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
    const std::string_view mask = slash == std::string_view::npos ? text : text.substr(slash + 1);
    const std::string folder =
        slash == std::string_view::npos ? std::string("./") : std::string(text.substr(0, slash + 1));
    const auto split = PlatformSplitPath(folder.c_str());
    if (!split || mask.empty() || (mask.size() > 1 && mask[1] == ':')) {
        return INVALID_HANDLE_VALUE;
    }
    const Mask parts = ParseMask(mask);
    auto search = std::make_unique<Search>();
    for (const std::string& root : split->absolute
                                       ? std::vector<std::string>{"/"}
                                       : std::vector<std::string>{PlatformUserRoot(), PlatformGameRoot()}) {
        const std::string real = PlatformResolveBelow(root, split->parts);
        if (!real.empty()) {
            AddFolder(real, parts, search->found);
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
