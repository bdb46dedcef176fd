#include "saves/shellfolder.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

#include "platform/codepage.h"
#include "platform/files.h"
#include "platform/folders.h"

namespace
{

constexpr char ROOT[] = "/";

/// The list of an absolute path of the disk: `place`, which leads to it, and what comes below.
ItemIdList FromDiskPath(const std::string& path, const std::string& place = ROOT)
{
    ItemIdList list;
    list.items.push_back(place);
    for (std::size_t begin = place == ROOT ? 1 : place.size() + 1; begin < path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        list.items.push_back(path.substr(begin, end - begin));
        begin = end + 1;
    }
    return list;
}

/// True also for the place itself.
bool LiesIn(const std::string& path, const std::string& place)
{
    return !place.empty() && (path == place || path.starts_with(place + '/'));
}

bool IsFolder(const ItemIdList& list)
{
    return PlatformKindOf(list.GetPath()) == PlatformPathKind::Folder;
}

/// "Backup (/media/jellicoe/Backup)": two drives may have one name.
std::string MountName(const std::string& path)
{
    const std::string shown = PlatformFromFilePath(path);
    return shown.substr(shown.rfind('/') + 1) + " (" + shown + ")";
}

} // namespace

std::string ItemIdList::GetPath() const
{
    std::string path;
    for (const std::string& item : items) {
        if (!path.empty() && path.back() != '/')
            path += '/';
        path += item;
    }
    return path;
}

ItemIdList ItemIdList::operator+(const ItemIdList& relative) const
{
    ItemIdList both = *this;
    both.items.insert(both.items.end(), relative.items.begin(), relative.items.end());
    return both;
}

CShellFolder::CShellFolder(Names names) : m_Names(std::move(names)) {}

void CShellFolder::Init()
{
    if (m_bReady)
        return;
    try {
        Enter(nullptr, false);
    } catch (const std::exception&) {
        throw 0;
    }
    m_bReady = true;
}

int CShellFolder::Enter(const ItemIdList* pidl, bool relative)
{
    ItemIdList target;
    if (pidl != nullptr)
        target = relative ? m_Current + *pidl : *pidl;
    std::vector<Entry> entries;
    if (target.IsDesktop()) {
        entries = ListDesktop();
    } else {
        if (!target.items.front().starts_with('/') || !IsFolder(target))
            return SHELL_FAILED;
        const int result = ListFolder(target.GetPath(), &entries);
        if (result < 0)
            return result;
    }
    m_Current = std::move(target);
    m_Entries = std::move(entries);
    m_nNext = 0;
    return SHELL_OK;
}

int CShellFolder::Up()
{
    if (!m_bReady || m_Current.IsDesktop())
        return SHELL_FAILED;
    ItemIdList above = m_Current;
    do {
        above.items.pop_back();
    } while (Enter(&above, false) != SHELL_OK);
    return SHELL_OK;
}

void CShellFolder::Rewind()
{
    const ItemIdList current = m_Current;
    Enter(&current, false);
}

ItfFileItem* CShellFolder::Next(ItfFileItem* out)
{
    while (m_nNext < m_Entries.size()) {
        const Entry& entry = m_Entries[m_nNext++];
        if (!PassesFilter(entry))
            continue;
        out->pidl = entry.pidl;
        out->name = entry.name;
        out->attributes = SHELL_FILESYSTEM | (entry.isFolder ? SHELL_FOLDER | SHELL_FILESYSANCESTOR : 0u);
        return out;
    }
    return nullptr;
}

bool CShellFolder::PassesFilter(const Entry& entry) const
{
    if (entry.isFolder || !m_bFilter)
        return true;
    const std::size_t dot = entry.name.rfind('.');
    const std::string extension = dot == std::string::npos ? std::string() : entry.name.substr(dot + 1);
    return PlatformEqualNoCase(extension, m_strFilter);
}

int CShellFolder::ParsePath(const char* path, ItemIdList* out) const
{
    if (!m_bReady || path == nullptr || *path == '\0')
        return SHELL_FAILED;
    if (PlatformEqualNoCase(path, m_Names.desktop)) {
        *out = {};
        return SHELL_OK;
    }
    for (const std::vector<Entry>& places : {FixedPlaces(), Drives()}) {
        for (const Entry& place : places) {
            if (PlatformEqualNoCase(path, place.name) && IsFolder(place.pidl)) {
                *out = place.pidl;
                return SHELL_OK;
            }
        }
    }
    std::string text = path;
    if (text == "~" || text.starts_with("~/"))
        text.replace(0, 1, PlatformFromFilePath(PlatformHomeFolder()));
    const std::string full = PlatformFullPath(text.c_str());
    if (full.empty())
        return SHELL_FAILED;
    *out = FromDiskPath(full);
    return SHELL_OK;
}

int CShellFolder::ParseStart(const char* path, ItemIdList* out) const
{
    if (!m_bReady)
        return SHELL_FAILED;
    const std::string game = PlatformAbsolutePath(PlatformGameRoot());
    std::string full;
    if (!game.empty() && PlatformIsInsideRoots(path))
        full = PlatformFullPath((PlatformFromFilePath(game) + '/' + path).c_str());
    if (full.empty())
        full = PlatformFullPath(path);
    if (full.empty())
        return SHELL_FAILED;
    const std::string player = PlatformAbsolutePath(PlatformUserRoot());
    *out = LiesIn(full, game)     ? FromDiskPath(full, game)
           : LiesIn(full, player) ? FromDiskPath(full, player)
                                  : FromDiskPath(full);
    return SHELL_OK;
}

// What the desktop shows is a folder until it is entered: the server of a network folder may be out of reach,
// and looking at it would keep the player waiting.
int CShellFolder::GetKind(const ItemIdList& relative) const
{
    if (!m_bReady)
        return ITEM_UNKNOWN;
    if (m_Current.IsDesktop())
        return ITEM_FOLDER;
    switch (PlatformKindOf((m_Current + relative).GetPath())) {
    case PlatformPathKind::Folder:
        return ITEM_FOLDER;
    case PlatformPathKind::None:
        return ITEM_UNKNOWN;
    default:
        return ITEM_FILE;
    }
}

bool CShellFolder::GetName(const ItemIdList* pidl, std::string* out) const
{
    if (!m_bReady)
        return false;
    *out = pidl == nullptr || pidl->IsDesktop() ? m_Names.desktop : PlatformFromFilePath(pidl->GetPath());
    return true;
}

bool CShellFolder::GetPath(std::string* out) const
{
    *out = PlatformFromFilePath(m_Current.GetPath());
    return !m_Current.IsDesktop();
}

void CShellFolder::SetFilter(const char* extension)
{
    m_bFilter = extension != nullptr;
    m_strFilter = m_bFilter ? extension : "";
}

std::vector<CShellFolder::Entry> CShellFolder::FixedPlaces() const
{
    std::vector<Entry> places;
    const auto add = [&](std::string path, const std::string& name) {
        if (!path.empty())
            places.push_back({{{std::move(path)}}, name, true});
    };
    add(ROOT, m_Names.computer);
    add(PlatformHomeFolder(), m_Names.home);
    // Both folders of the game hold the same kinds of files; the player's hides what has the same name.
    add(PlatformAbsolutePath(PlatformUserRoot()), m_Names.player);
    add(PlatformAbsolutePath(PlatformGameRoot()), m_Names.game);
    return places;
}

std::vector<CShellFolder::Entry> CShellFolder::Drives()
{
    std::vector<Entry> drives;
    for (const std::string& path : PlatformMountPoints())
        drives.push_back({{{path}}, MountName(path), true});
    return drives;
}

// Drives come and go, so they are looked up each time. Nothing looks at what is mounted there.
std::vector<CShellFolder::Entry> CShellFolder::ListDesktop() const
{
    std::vector<Entry> places = FixedPlaces();
    std::erase_if(places, [](const Entry& place) { return !IsFolder(place.pidl); });
    std::vector<Entry> drives = Drives();
    std::move(drives.begin(), drives.end(), std::back_inserter(places));
    return places;
}

int CShellFolder::ListFolder(const std::string& path, std::vector<Entry>* out)
{
    std::vector<PlatformFolderEntry> found;
    const int result = PlatformListFolder(path, &found);
    if (result < 0)
        return result;
    out->reserve(found.size());
    for (PlatformFolderEntry& entry : found) {
        std::string name = PlatformFromFileName(entry.name);
        out->push_back({{{std::move(entry.name)}}, std::move(name), entry.isFolder});
    }
    return SHELL_OK;
}
