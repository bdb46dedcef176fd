#include "text_check.h"

#include <map>
#include <set>

#include "flow/text_numbers.h"
#include "keelworks/scenario_parser.h"
#include "logic/battle_stage.h"
#include "logic/logic.h"
#include "logic/text_table.h"
#include "platform/files.h"
#include "resource_tokens.h"

namespace
{

constexpr char TEXTS[] = "resource\\txt_res\\texts.ini";
constexpr char FLAGS[] = "resource\\txt_res\\flags.ini";
constexpr char SCENARIO_FOLDER_PATH[] = "scenarios\\";
constexpr char SCENARIO_PATTERN[] = "scenarios\\*.sc";

class CTextCheck
{
  public:
    explicit CTextCheck(CFaults& faults) : m_Faults(faults) {}

    void Run()
    {
        const std::vector<ResourceToken> tokens = ReadTable();
        const int end = tokens.back().line;
        for (const TextNumberRow& row : TextNumbers())
            Use(row.number, TEXTS, end, std::string("the program's ") + row.name);
        Use(CLogic::TEXT_SECRET, TEXTS, end, "the answer to the hidden code");
        Use(CBattleStage::TEXT_BROKEN_SCENARIO, TEXTS, end, "the message about a broken scenario");
        for (const NumberedRow& flag : NumberedRows(ReadTokens(FLAGS, m_Faults)))
            Use(flag.number, FLAGS, flag.line, "the name of this flag's nation");
        UseScenarios();
        for (const auto& [number, line] : m_Lines) {
            if (!m_Used.contains(number))
                m_Faults.Add(TEXTS, line, "nothing uses text " + std::to_string(number));
        }
    }

  private:
    // The faults are those that the game's own table finds.
    std::vector<ResourceToken> ReadTable()
    {
        std::vector<ResourceToken> tokens = ReadTokens(TEXTS, m_Faults);
        for (const NumberedRow& row : NumberedRows(tokens))
            m_Lines.try_emplace(row.number, row.line);
        if (tokens.size() > 1) {
            const CDebugCapture capture;
            CTextTable().Load(TEXTS);
            for (const std::string& line : capture.Lines())
                m_Faults.AddDebugLine(line, TEXTS, 0);
        }
        return tokens;
    }

    // A text that several things miss is one fault.
    void Use(int number, const std::string& file, int line, const std::string& purpose)
    {
        if (m_Used.insert(number).second && !m_Lines.contains(number))
            m_Faults.Add(file, line, "there is no text " + std::to_string(number) + ", " + purpose);
    }

    void UseScenarios()
    {
        WIN32_FIND_DATAA found;
        const HANDLE search = FindFirstFileA(SCENARIO_PATTERN, &found);
        if (search == INVALID_HANDLE_VALUE)
            return;
        do
            UseScenario(std::string(SCENARIO_FOLDER_PATH) + found.cFileName);
        while (FindNextFileA(search, &found) != FALSE);
        FindClose(search);
    }

    void UseScenario(const std::string& path)
    {
        CScenarioParser parser;
        try {
            parser.OpenScenario(path.c_str());
        } catch (const std::exception& error) {
            const std::string told = error.what();
            const std::string prefix = path + ": ";
            m_Faults.Add(path, 0, told.starts_with(prefix) ? told.substr(prefix.size()) : told);
            return;
        }
        const SCSETT_STRUCT& settings = *parser.GetScSettings();
        const CUSTOM_RESOURCE_DATA& custom = *parser.GetCustomResourceData();
        if (custom.bCustomA == 0)
            Use(settings.nSideANation, path, 0, "the name of its first side");
        if (custom.bCustomB == 0)
            Use(settings.nSideBNation, path, 0, "the name of its second side");
    }

    CFaults& m_Faults;
    std::map<int, int> m_Lines; ///< of each text, by its number
    std::set<int> m_Used;
};

} // namespace

void CheckTexts(CFaults& faults)
{
    CTextCheck(faults).Run();
}
