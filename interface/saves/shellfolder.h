#pragma once
// The walk through the computer's folders under a file dialog.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// A way from the top of the walk, the desktop, as bytes of the disk: first a place that the desktop shows,
/// by its absolute path, then the names of folders and at last of the item. Empty for the desktop. A relative
/// list is names alone.
struct ItemIdList {
    std::vector<std::string> items;

    bool IsDesktop() const { return items.empty(); }
    /// The path on the disk; empty for the desktop.
    std::string GetPath() const;
    ItemIdList operator+(const ItemIdList& relative) const;
    friend bool operator==(const ItemIdList&, const ItemIdList&) = default;
};

/// What an item is good for, in ItfFileItem::attributes.
enum ShellAttribute : std::uint32_t {
    SHELL_FILESYSANCESTOR = 0x10000000, ///< folders lie below it
    SHELL_FOLDER = 0x20000000,
    SHELL_FILESYSTEM = 0x40000000, ///< has a path of its own
};

/// What one step of the enumeration gives.
struct ItfFileItem {
    ItemIdList pidl;  ///< relative to the folder that was enumerated
    std::string name; ///< to be shown, and to open a file by: code page 1252, or the bytes of the disk
    std::uint32_t attributes = 0; ///< ShellAttribute
};

/// Walks the computer as the player knows it. At the top lies the desktop, which isn't on the disk: it shows
/// the whole computer ("/"), the player's home, the folders of the game, and the drives and network folders
/// that are mounted. Below it come the folders of the disk. A path that is typed leads through the whole
/// computer, so that Up goes through all its folders.
///
/// On the desktop a drive or network folder is looked at when it is entered or typed, never to list or press
/// it: its server may be out of reach.
///
/// Hidden items, and what is neither a folder nor a regular file, are passed over. Names that the code page
/// lacks are shown by their bytes and can be entered all the same.
///
/// Init comes first. Invariant: a failed operation changes nothing.
class CShellFolder
{
  public:
    enum Result : int {
        SHELL_OK = 0,
        SHELL_FAILED = -1, ///< also other negative values
    };
    enum Kind : int {
        ITEM_FILE = 100,
        ITEM_FOLDER = 0x65,
        ITEM_UNKNOWN = 0x66, ///< gone, or not to be looked at
    };
    /// What the desktop and the places on it are called.
    struct Names {
        std::string desktop;
        std::string computer;
        std::string home;
        std::string player; ///< what the player's own files of the game lie in
        std::string game;
    };

    explicit CShellFolder(Names names = {"Desktop", "Computer", "Home", "Player", "Game"});

    /// Enters the desktop. Throws the integer 0 when that fails. Nothing when it is done already.
    void Init();
    /// Enters a folder, the desktop for null, and begins its enumeration. `relative` counts the list from the
    /// current folder. SHELL_OK, or a negative value for what is no folder or can't be read.
    int Enter(const ItemIdList* pidl, bool relative);
    /// One folder up; above a place lies the desktop. Folders that can't be read are climbed over. SHELL_OK
    /// except on the desktop.
    int Up();
    /// Begins the enumeration again. When the folder can't be read any more, the old one goes on.
    void Rewind();
    /// The next item in `out`, which it gives back; null at the end.
    ItfFileItem* Next(ItfFileItem* out);
    /// The list of what exists at a path of the program that was typed, through the whole computer. It may
    /// also begin with "~", be the name of the desktop or of a place, or be relative to the player's folder
    /// or else to the game's. SHELL_FAILED, and nothing written, when there is nothing.
    int ParsePath(const char* path, ItemIdList* out) const;
    /// The list of the folder to begin in, a path of the program. A relative one lies in the game's folder,
    /// or else in the player's. The list of what lies in one of these begins with that place, so that Up
    /// leads through it to the desktop. SHELL_FAILED, and nothing written, when there is nothing.
    int ParseStart(const char* path, ItemIdList* out) const;
    /// A Kind, of an item of the current folder. All that the desktop shows is a folder.
    int GetKind(const ItemIdList& relative) const;
    /// What to show as the place of a full list (null for the desktop), fit for ParsePath. False before Init.
    bool GetName(const ItemIdList* pidl, std::string* out) const;
    /// The current folder as a path that the file layer opens. False, and empty, on the desktop.
    bool GetPath(std::string* out) const;
    /// The extension, without its dot and in any case, of the files that Next gives; null for all. Folders
    /// always come. Counts from the next item on.
    void SetFilter(const char* extension);
    /// Empty for the desktop.
    const ItemIdList& GetCurrent() const { return m_Current; }

  private:
    struct Entry {
        ItemIdList pidl;
        std::string name;
        bool isFolder;
    };
    /// The places that don't change, whether or not they exist.
    std::vector<Entry> FixedPlaces() const;
    static std::vector<Entry> Drives();
    std::vector<Entry> ListDesktop() const;
    static int ListFolder(const std::string& path, std::vector<Entry>* out);
    bool PassesFilter(const Entry& entry) const;

    Names m_Names;
    bool m_bReady = false;
    ItemIdList m_Current;
    std::vector<Entry> m_Entries; ///< of m_Current
    std::size_t m_nNext = 0;      ///< the entry that Next looks at first
    std::string m_strFilter;
    bool m_bFilter = false;
};
