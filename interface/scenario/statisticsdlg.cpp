#include "scenario/statisticsdlg.h"

#include <cstring>
#include <initializer_list>
#include <string>

#include "controls/itfbutton.h"
#include "controls/itfreportbox.h"
#include "flow/dialog_contract.h"
#include "flow/flow.h"
#include "flow/logic_objects.h"
#include "kernel/textformat.h"

namespace
{

/// A single game has two, and the sums of a network game are for these.
constexpr int SIDES = 2;
constexpr char DIVIDER[] = "=================";

std::string SideLetter(int side)
{
    return {static_cast<char>('A' + side)};
}

// The row's first cells, each of which carries the row's index.
void AddCells(CItfReportBox& table, int row, std::initializer_list<std::string> cells)
{
    int column = 0;
    for (const std::string& cell : cells) {
        if (column == 0)
            table.AddRow(ItfListItem(row, cell));
        else
            table.SetItem(row, column, ItfListItem(row, cell));
        ++column;
    }
}

// The figures of the record, which sides and players call alike.
template <class Stats>
void AddFigures(CItfReportBox& table, int row, int side, const std::string& name, const Stats& stats)
{
    AddCells(table, row,
             {SideLetter(side), name, std::to_string(stats.nUnits), std::to_string(stats.nLost),
              std::to_string(stats.nSunk), std::to_string(stats.nRounds), std::to_string(stats.nHits),
              std::to_string(stats.nPoints)});
}

std::string NameOf(const ItfPlayerStats& player)
{
    return player.szName != nullptr ? player.szName : "";
}

ItfSideStats StatsOf(IGameEntity& game, int side)
{
    ItfSideStats stats = {};
    game.GetSideStats(side, &stats);
    return stats;
}

} // namespace

CStatisticsDlg::~CStatisticsDlg() = default;

bool CStatisticsDlg::Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent,
                            int ctrlId, std::uint32_t style, IEngine* core)
{
    if (!CreateFromResource(caption, sprite, rect, parent, ctrlId, style, core, SECTION_STATISTICS))
        return false;
    SetDrawing(true);
    IGameEntity* game = FindGameEntity(m_pCore);
    if (game == nullptr)
        return false;
    if (auto* table = GetControlAs<CItfReportBox>(IDC_TABLE)) {
        table->Clear();
        if (IsNetworkGame(m_pCore))
            FillPlayers(*game, *table);
        else
            FillSides(*game, *table);
        table->Refresh(true);
        table->SetCurSel(0);
    }
    ShowTime(*game);
    ShowScenario();
    return true;
}

const CItfWnd::Row* CStatisticsDlg::GetMessageTable() const
{
    static const Row rows[] = {
        On(ITFM_NOTIFY, &CStatisticsDlg::OnNotify),
        EndOfTable(),
    };
    return rows;
}

// A side without a player has no row.
void CStatisticsDlg::FillSides(IGameEntity& game, CItfReportBox& table)
{
    int row = 0;
    for (int side = 0; side < SIDES; ++side) {
        const ItfSideStats stats = StatsOf(game, side);
        if (const ItfPlayerStats* player = game.GetPlayer(side, 0))
            AddFigures(table, row++, side, NameOf(*player), stats);
    }
}

// Every player, and below a line the sums of both sides.
void CStatisticsDlg::FillPlayers(IGameEntity& game, CItfReportBox& table)
{
    int row = 0;
    for (int side = 0; side < game.GetSideCount(); ++side) {
        for (int index = 0; index < game.GetPlayerCount(side); ++index) {
            if (const ItfPlayerStats* player = game.GetPlayer(side, index))
                AddFigures(table, row++, side, NameOf(*player), *player);
        }
    }
    AddCells(table, row++, {"", DIVIDER});
    for (int side = 0; side < SIDES; ++side)
        AddFigures(table, row++, side, "Side " + SideLetter(side), StatsOf(game, side));
}

void CStatisticsDlg::ShowTime(IGameEntity& game)
{
    int days = 0;
    int hours = 0;
    int minutes = 0;
    game.GetBattleTime(&days, &hours, &minutes);
    std::string text;
    if (days >= 1)
        text = FormatNumbers(GetResString(TEXT_TIME_DAYS), {days, hours, minutes});
    else if (hours >= 1)
        text = FormatNumbers(GetResString(TEXT_TIME_HOURS), {hours, minutes});
    else
        text = FormatNumbers(GetResString(TEXT_TIME_MINUTES), {minutes});
    SetBoxText(IDC_TIME, text.c_str());
}

void CStatisticsDlg::ShowScenario()
{
    const ScenarioInfo* scenario = ScenarioOf(GetGameState(m_pCore));
    if (scenario == nullptr)
        return;
    const std::string title(scenario->szTitle, strnlen(scenario->szTitle, sizeof scenario->szTitle));
    SetBoxText(IDC_SCENARIO, ("Scenario: \"" + title + "\"").c_str());
}

Word CStatisticsDlg::OnNotify(std::uint32_t code, std::int32_t id)
{
    if (code == NOTIFY_CLICKED && id == IDC_CLOSE)
        Notify(RESULT_CLOSE);
    return 0;
}
