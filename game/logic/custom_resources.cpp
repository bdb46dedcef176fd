#include "logic/custom_resources.h"

#include <cstring>

#include "keelworks/text_parser.h"
#include "platform/files.h"
#include "platform/system.h"

namespace
{

constexpr int FLAG_FLYING = 0;

void DebugLine(const std::string& text)
{
    OutputDebugStringA((text + "\r\n").c_str());
}

bool CopyText(const std::string& text, char* buffer, int size)
{
    if (buffer == nullptr || size <= 0 || text.size() >= static_cast<std::size_t>(size))
        return false;
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return true;
}

/// `guid { w, w, w, w }`
bool ReadGuid(CTextParser& parser, CObjGUID& out)
{
    if (!parser.SeekToToken("guid") || parser.SkipSpace(false) != '{')
        return false;
    parser.SkipSpace(true);
    bool ended = false;
    for (std::size_t i = 0; i < std::size(out.words); ++i) {
        int word = 0;
        if (ended || !parser.ReadIntElem(',', '}', word, ended))
            return false;
        out.words[i] = static_cast<std::uint32_t>(word);
    }
    return ended;
}

} // namespace

bool CCustomResources::Read(CTextParser& parser, Nation& out)
{
    char name[MAX_NAME + 1];
    char flag[MAX_PATH];
    if (!ReadGuid(parser, out.guid) || !parser.ReadNamedVal("name", name, sizeof(name), true) ||
        !parser.ReadNamedVal("flag", flag, sizeof(flag), true))
        return false;
    out.name = name;
    out.flag = flag;
    return true;
}

void CCustomResources::Add(const std::string& path)
{
    ds_file_buffered file;
    try {
        file.open(path.c_str(), false);
    } catch (const fopen_exception& exception) {
        DebugLine(std::string("Custom nation: ") + exception.what());
        return;
    }
    CTextParser parser(&file, false);
    Nation nation;
    nation.file = path;
    const auto tell = [&](const std::string& why) {
        DebugLine(path + "(" + std::to_string(parser.GetLine()) + "): " + why);
    };
    if (!Read(parser, nation)) {
        const std::string error = parser.DescribeError();
        if (error.empty())
            tell("expected guid { and four numbers with commas between }");
        else
            DebugLine(error);
        return;
    }
    if (nation.guid == CObjGUID() || nation.name.empty() || !PlatformIsInsideRoots(nation.flag.c_str()))
        tell("expected a guid that isn't zero, a name, and a flag's file within the game's folder");
    else if (Find(&nation.guid) >= 0)
        tell("another custom nation has this guid");
    else
        m_Nations.push_back(nation);
}

void CCustomResources::Load(const std::string& folder)
{
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA((folder + "*.ini").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return;
    do {
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
            continue;
        if (m_Nations.size() == MAX_NATIONS) {
            DebugLine(folder + ": more than " + std::to_string(MAX_NATIONS) + " custom nations");
            break;
        }
        Add(folder + found.cFileName);
    } while (FindNextFileA(search, &found) != FALSE);
    FindClose(search);
}

const CCustomResources::Nation* CCustomResources::At(int index) const
{
    const auto place = static_cast<std::size_t>(index);
    return index >= 0 && place < m_Nations.size() ? &m_Nations[place] : nullptr;
}

int CCustomResources::Find(const CObjGUID* guid)
{
    for (std::size_t i = 0; guid != nullptr && i < m_Nations.size(); ++i) {
        if (m_Nations[i].guid == *guid)
            return static_cast<int>(i);
    }
    return -1;
}

bool CCustomResources::GetName(int index, char* buffer, int size)
{
    const Nation* nation = At(index);
    return nation != nullptr && CopyText(nation->name, buffer, size);
}

bool CCustomResources::GetFlagFile(int index, int kind, char* buffer, int size)
{
    const Nation* nation = At(index);
    return nation != nullptr && kind == FLAG_FLYING && CopyText(nation->flag, buffer, size);
}
