#include "lib/findfile.h"

#include <string_view>

#include "assertion.h"

namespace
{

constexpr char NO_SEARCH[] = "m_hFind != NULL";

} // namespace

CFindFile::~CFindFile()
{
    Close();
}

bool CFindFile::FindFirst(const char* pattern)
{
    Close();
    const HANDLE search = FindFirstFileA(pattern ? pattern : "*.*", &m_Data);
    m_hFind = search == INVALID_HANDLE_VALUE ? nullptr : search;
    return m_hFind != nullptr;
}

bool CFindFile::FindNext()
{
    if (m_hFind == nullptr)
        return false;
    const bool found = FindNextFileA(m_hFind, &m_Data);
    if (!found)
        Close();
    return found;
}

void CFindFile::Close()
{
    if (m_hFind != nullptr)
        FindClose(m_hFind);
    m_hFind = nullptr;
}

std::uint32_t CFindFile::GetLength() const
{
    Assert(m_hFind != nullptr, NO_SEARCH);
    return m_Data.nFileSizeLow;
}

bool CFindFile::IsDirectory() const
{
    Assert(m_hFind != nullptr, NO_SEARCH);
    return (m_Data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool CFindFile::IsFile() const
{
    return !IsDirectory();
}

bool CFindFile::IsSubdirectory() const
{
    const std::string_view name = m_Data.cFileName;
    return IsDirectory() && name != "." && name != "..";
}
