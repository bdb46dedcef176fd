#include "entities/flag_table.h"

#include <iterator>

#include "engine/names.h"
#include "keelworks/text_parser.h"
#include "platform/files.h"
#include "platform/system.h"

namespace
{

constexpr const char* FLAGS_FILE = "resource\\txt_res\\flags.ini";
constexpr const char* TEXTURE_FOLDER = "resource\\textures\\";
constexpr const char* TEXTURE_ENDING = ".tf";
constexpr const char* PICTURE_ENDING = ".png";

void DebugLine(const std::string& text)
{
    OutputDebugStringA((text + "\r\n").c_str());
}

std::string WithPictureEnding(const std::string& name)
{
    const std::size_t stem = name.size() - std::min(name.size(), std::string(TEXTURE_ENDING).size());
    return SameName(name.substr(stem), TEXTURE_ENDING) ? name.substr(0, stem) + PICTURE_ENDING : name;
}

} // namespace

std::string CFlagTable::FindFile(const std::string& name)
{
    const std::string picture = WithPictureEnding(name);
    for (const std::string& path : {picture, TEXTURE_FOLDER + picture}) {
        if (!name.empty() && PlatformIsInsideRoots(path.c_str()) &&
            !PlatformResolveRead(path.c_str()).empty())
            return path;
    }
    return {};
}

// What is wrong ends the reading; the rows up to there stay.
void CFlagTable::Load()
{
    ds_file_buffered file;
    try {
        file.open(FLAGS_FILE, false);
    } catch (const fopen_exception& exception) {
        DebugLine(std::string("Flags: ") + exception.what());
        return;
    }
    CTextParser parser(&file, false);
    for (std::size_t rows = 0; parser.SkipSpace(false) != '\0'; ++rows) {
        int flag = 0;
        int variant = 0;
        char texture[MAX_PATH];
        if (!parser.ReadIntElem(',', flag) || !parser.ReadIntElem(',', variant) ||
            !parser.ReadFileName(texture, sizeof(texture))) {
            DebugLine(parser.DescribeError());
            return;
        }
        if (rows >= MAX_ROWS) {
            DebugLine(std::string(FLAGS_FILE) + ": more than " + std::to_string(MAX_ROWS) + " rows");
            return;
        }
        if (!m_Flags[flag].try_emplace(variant, texture).second)
            DebugLine(std::string(FLAGS_FILE) + "(" + std::to_string(parser.GetLine()) + "): flag " +
                      std::to_string(flag) + " has a variant " + std::to_string(variant) + " already");
        if (parser.SkipSpace(false) == ',')
            parser.SkipSpace(true);
    }
}

std::string CFlagTable::FindTexture(int flag, int variant)
{
    if (!m_bLoaded)
        Load();
    m_bLoaded = true;
    const auto found = m_Flags.find(flag);
    if (found == m_Flags.end())
        return {};
    const std::map<int, std::string>& variants = found->second;
    const auto above = variants.upper_bound(variant);
    return above == variants.begin() ? above->second : std::prev(above)->second;
}
