#pragma once
// One search for files, and the entry that it stands at. The search sees both roots of the file layer. The
// queries but GetFileName expect a running search; anything else is a programming error.

#include <cstdint>

#include "platform/files.h"

class CFindFile
{
  public:
    CFindFile() = default;
    ~CFindFile();
    CFindFile(const CFindFile&) = delete;
    CFindFile& operator=(const CFindFile&) = delete;

    /// Ends a running search and begins another at its first entry; null means "*.*". False when nothing
    /// matches.
    bool FindFirst(const char* pattern);
    /// False at the end, where the search closes, and when none runs.
    bool FindNext();
    void Close();

    /// The entry's name without a path.
    const char* GetFileName() const { return m_Data.cFileName; }
    /// The low 32 bits of the size in bytes.
    std::uint32_t GetLength() const;
    bool IsDirectory() const;
    bool IsFile() const;
    /// A directory other than "." and "..".
    bool IsSubdirectory() const;

  private:
    HANDLE m_hFind = nullptr; ///< null when no search runs
    WIN32_FIND_DATA m_Data;
};
