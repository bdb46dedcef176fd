#include "text_check.h"

#include <algorithm>
#include <map>
#include <set>
#include <variant>

#include "battle/battle_sim.h"
#include "battle/chart_texts.h"
#include "flow/text_numbers.h"
#include "keelworks/scenario_parser.h"
#include "logic/battle_stage.h"
#include "logic/logic.h"
#include "logic/text_table.h"
#include "platform/files.h"
#include "resource_tokens.h"

namespace
{

/// First and last of each group of the chart's texts.
constexpr int CHART_TEXTS[][2] = {
    {CHART_STOPPED, CHART_KEY_OVER},
    {CHART_HULL, CHART_SURFACED},
    {CHART_ORDER_NONE, CHART_ORDER_STOP},
    {CHART_SEA_MILE, CHART_NORTH},
    {CHART_KEYS, CHART_KEYS + CHART_KEY_COUNT - 1},
};
// Where scenarios lie, and how their files are named; the exported ones become the player's when he imports
// them.
constexpr struct {
    const char* folder;
    const char* pattern;
} SCENARIO_FOLDERS[] = {{"scenarios\\", "*.sc"}, {"exports\\", "*.exp"}};

class CTextCheck
{
  public:
    CTextCheck(CFaults& faults, CFlagCheck& flags) : m_Faults(faults), m_Flags(flags) {}

    void Run()
    {
        const std::vector<ResourceToken> tokens = ReadTable();
        const int end = tokens.back().line;
        for (const TextNumberRow& row : TextNumbers())
            Use(row.number, TEXT_RESOURCE, end, std::string("the program's ") + row.name);
        Use(CLogic::TEXT_SECRET, TEXT_RESOURCE, end, "the answer to the hidden code");
        Use(CLogic::TEXT_ATTENTION, TEXT_RESOURCE, end, "the heading of a message over a battle");
        Use(CBattleStage::TEXT_BROKEN_SCENARIO, TEXT_RESOURCE, end, "the message about a broken scenario");
        Use(CBattleStage::TEXT_NO_FIGHTER, TEXT_RESOURCE, end,
            "the message about a scenario without a battle");
        for (const auto& [first, last] : CHART_TEXTS) {
            for (int number = first; number <= last; ++number)
                Use(number, TEXT_RESOURCE, end, "a word of the battle's chart");
        }
        for (const NumberedRow& flag : m_Flags.Rows())
            Use(flag.number, CFlagCheck::FLAGS, flag.line, "the name of this flag's nation");
        for (const auto& scenarios : SCENARIO_FOLDERS)
            UseScenarios(scenarios.folder, scenarios.pattern);
        for (const auto& [number, line] : m_Lines) {
            if (!m_Used.contains(number))
                m_Faults.Add(TEXT_RESOURCE, line, "nothing uses text " + std::to_string(number));
        }
    }

  private:
    // The faults are those that the game's own table finds.
    std::vector<ResourceToken> ReadTable()
    {
        std::vector<ResourceToken> tokens = ReadTokens(TEXT_RESOURCE, m_Faults);
        for (const NumberedRow& row : NumberedRows(tokens, 1))
            m_Lines.try_emplace(row.number, row.line);
        if (tokens.size() > 1) {
            const CDebugCapture capture;
            CTextTable().Load(TEXT_RESOURCE);
            for (const std::string& line : capture.Lines())
                m_Faults.AddDebugLine(line, TEXT_RESOURCE, 0);
        }
        return tokens;
    }

    // A text that several things miss is one fault.
    void Use(int number, const std::string& file, int line, const std::string& purpose)
    {
        if (m_Used.insert(number).second && !m_Lines.contains(number))
            m_Faults.Add(file, line, "there is no text " + std::to_string(number) + ", " + purpose);
    }

    void UseScenarios(const std::string& folder, const std::string& pattern)
    {
        WIN32_FIND_DATAA found;
        const HANDLE search = FindFirstFileA((folder + pattern).c_str(), &found);
        if (search == INVALID_HANDLE_VALUE)
            return;
        do
            UseScenario(folder + found.cFileName);
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
        if (!CBattleSim::CanBeFought(parser.GetScenario()))
            m_Faults.Add(path, 0, "nobody in it can fight");
        const SCSETT_STRUCT& settings = *parser.GetScSettings();
        const CUSTOM_RESOURCE_DATA& custom = *parser.GetCustomResourceData();
        UseSide(path, "first", settings.nSideANation, custom.bCustomA != 0, custom.guidA);
        UseSide(path, "second", settings.nSideBNation, custom.bCustomB != 0, custom.guidB);
        for (const ScenarioItem& item : parser.GetScenario().items) {
            std::visit(
                [&](const auto& unit) {
                    if (unit.figures.nClassText != 0)
                        Use(unit.figures.nClassText, path, 0,
                            std::string("the class of \"") + unit.unit.szName + "\"");
                },
                item);
        }
    }

    void UseSide(const std::string& path, const std::string& side, int nation, bool custom,
                 const CObjGUID& guid)
    {
        if (custom) {
            if (!m_Flags.HasNation(guid))
                m_Faults.Add(path, 0, "there is no custom nation with the guid of its " + side + " side");
            return;
        }
        Use(nation, path, 0, "the name of its " + side + " side");
        if (std::ranges::find(m_Flags.Rows(), nation, &NumberedRow::number) == m_Flags.Rows().end())
            m_Faults.Add(path, 0,
                         "there is no flag " + std::to_string(nation) + " for its " + side + " side");
    }

    CFaults& m_Faults;
    CFlagCheck& m_Flags;
    std::map<int, int> m_Lines; ///< of each text, by its number
    std::set<int> m_Used;
};

} // namespace

void CheckTexts(CFaults& faults, CFlagCheck& flags)
{
    CTextCheck(faults, flags).Run();
}
