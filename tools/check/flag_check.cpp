#include "flag_check.h"

#include <stdexcept>

#include "entities/flag_table.h"
#include "kernel/own_names.h"
#include "platform/files.h"
#include "render/picture.h"

namespace
{

constexpr char NATIONS[] = "resource\\custom\\";
constexpr char TEXTURES[] = "resource\\textures\\";
constexpr std::size_t NUMBERS_IN_ROW = 2; // the flag's and the variant
constexpr int FLAG_FLYING = 0;

} // namespace

void CFlagCheck::Run()
{
    CheckTable();
    CheckNations();
    CheckTexture(TEXTURE_WHITE_FLAG, TEXTURES, 0);
}

// What is wrong with the rows is what the game's own table finds.
void CFlagCheck::CheckTable()
{
    const std::vector<ResourceToken> tokens = ReadTokens(FLAGS, m_Faults);
    m_Rows = NumberedRows(tokens, NUMBERS_IN_ROW);
    if (tokens.size() > 1) {
        const CDebugCapture capture;
        CFlagTable().FindTexture(0, 0);
        for (const std::string& line : capture.Lines())
            m_Faults.AddDebugLine(line, FLAGS, 0);
    }
    for (const NumberedRow& row : m_Rows) {
        if (!row.text.empty())
            CheckTexture(row.text, FLAGS, row.line);
    }
}

void CFlagCheck::CheckNations()
{
    {
        const CDebugCapture capture;
        m_Nations.Load(NATIONS);
        for (const std::string& line : capture.Lines())
            m_Faults.AddDebugLine(line, NATIONS, 0);
    }
    char texture[MAX_PATH];
    for (int i = 0; m_Nations.GetFlagFile(i, FLAG_FLYING, texture, sizeof texture); ++i)
        CheckTexture(texture, m_Nations.FileOf(i), 0);
}

void CFlagCheck::CheckTexture(const std::string& texture, const std::string& file, int line)
try {
    const std::string path = CFlagTable::FindFile(texture);
    if (path.empty())
        throw std::runtime_error("there is no such file");
    LoadPicture(path);
} catch (const std::exception& error) {
    m_Faults.Add(file, line, "the texture \"" + texture + "\" can't be loaded: " + error.what());
}
