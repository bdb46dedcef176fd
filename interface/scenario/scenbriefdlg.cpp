#include "scenario/scenbriefdlg.h"

#include <array>

#include "controls/itfbutton.h"
#include "controls/itfflagbox.h"
#include "controls/itfreportbox.h"
#include "controls/itftextbox.h"
#include "flow/dialog_contract.h"
#include "flow/flow.h"
#include "flow/valuebox.h"
#include "kernel/own_names.h"
#include "platform/system.h"
#include "scenario/scenhead.h"

namespace
{

constexpr int DIFFICULTIES = 3;
/// Which items the lists ask the parser for.
constexpr int LISTED_ITEMS = SCENARIO_SHIP;

} // namespace

CScenBriefDlg::~CScenBriefDlg() = default;

bool CScenBriefDlg::Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent,
                           int ctrlId, std::uint32_t style, IEngine* core, const char* path)
{
    if (!CreateFromResource(caption, sprite, rect, parent, ctrlId, style, core, SECTION_SCENARIO_BRIEF))
        return false;
    CheckRequiredControls(*this, SECTION_SCENARIO_BRIEF);
    m_strPath = path;
    try {
        OpenScenario(m_strPath.c_str());
        FillFromScenario();
        CloseScenario();
        return true;
    } catch (const std::exception& error) {
        OutputDebugStringA((std::string("Briefing: ") + error.what() + "\r\n").c_str());
    } catch (...) {
        OutputDebugStringA("Briefing: the scenario can't be shown\r\n");
    }
    MessageBox(GetResString(TEXT_BROKEN_SCENARIO), GetResString(TEXT_ERROR_CAPTION), nullptr, BOX_BROKEN,
               CValueBox::STYLE_OTHER_BUTTON);
    Destroy();
    return false;
}

const CItfWnd::Row* CScenBriefDlg::GetMessageTable() const
{
    static const Row rows[] = {
        On(ITFM_NOTIFY, &CScenBriefDlg::OnNotify),
        EndOfTable(),
    };
    return rows;
}

void CScenBriefDlg::FillFromScenario()
{
    if (auto* box = GetControlAs<CItfButton>(IDC_TAKE_A))
        box->SetState(BUTTON_DOWN);
    if (auto* box = GetControlAs<CItfButton>(IDC_TAKE_B))
        box->SetState(BUTTON_UP);
    m_pResources = GetCustomResources(m_pCore);
    const SCSETT_STRUCT& settings = *GetScSettings();
    const CUSTOM_RESOURCE_DATA& custom = *GetCustomResourceData();
    SetSideName(IDC_NAME_A, settings.nSideANation, custom.bCustomA != 0, custom.guidA);
    SetSideName(IDC_NAME_B, settings.nSideBNation, custom.bCustomB != 0, custom.guidB);
    SetFlags();
    auto* description = GetControlAs<CItfTextBox>(IDC_DESCRIPTION);
    auto* title = GetControlAs<CItfTextBox>(IDC_TITLE);
    if (description != nullptr && title != nullptr) {
        description->SetText(GetDescription());
        title->SetText(GetTitle());
    }
    FillShips();
    if (auto* option = GetControlAs<CItfButton>(IDC_OPTION))
        option->SetState(BUTTON_UP);
    ShowDifficulty();
}

void CScenBriefDlg::SetSideName(int control, int text, bool custom, const CObjGUID& guid)
{
    auto* box = GetControlAs<CItfButton>(control);
    if (box == nullptr)
        return;
    box->SetState(BUTTON_UP);
    box->SetCaption(ScenarioSideName(text, custom, guid, m_pResources).c_str());
}

void CScenBriefDlg::SetFlags()
{
    auto* flagA = GetControlAs<CItfFlagBox>(IDC_FLAG_A);
    auto* flagB = GetControlAs<CItfFlagBox>(IDC_FLAG_B);
    if (flagA == nullptr || flagB == nullptr)
        return;
    const CUSTOM_RESOURCE_DATA& custom = *GetCustomResourceData();
    const SCSETT_STRUCT& settings = *GetScSettings();
    const int year = GetHeader()->nFlagExtra;
    ShowScenarioFlag(*flagA, settings.nSideANation, custom.bCustomA != 0, custom.guidA, year, m_pResources);
    ShowScenarioFlag(*flagB, settings.nSideBNation, custom.bCustomB != 0, custom.guidB, year, m_pResources);
}

void CScenBriefDlg::FillShips()
{
    m_pListA = GetControlAs<CItfReportBox>(IDC_SHIPS_A);
    m_pListB = GetControlAs<CItfReportBox>(IDC_SHIPS_B);
    if (m_pListA == nullptr || m_pListB == nullptr)
        return;
    EnumScenarioItems(LISTED_ITEMS);
    m_pListA->Refresh(true);
    m_pListB->Refresh(true);
}

int CScenBriefDlg::OnScenarioItem(int category, int type, const void* item)
{
    if (category != SCENARIO_UNITS || m_pListA == nullptr || m_pListB == nullptr)
        return 1;
    if (type == SCENARIO_SHIP) {
        const auto& ship = *static_cast<const ScenarioShip*>(item);
        const std::string numbers[] = {std::to_string(ship.figures.nRate),
                                       std::to_string(ship.figures.CountWeapons())};
        if (ship.nSide == SCENARIO_SIDE_A || ship.nSide == SCENARIO_SIDE_B)
            AddShip(ship.nSide, ship.unit.szName, numbers);
    } else if (type == SCENARIO_BALLOON) {
        const auto& balloon = *static_cast<const ScenarioBalloon*>(item);
        AddShip(balloon.nSide, balloon.unit.szName, nullptr);
    } else if (type == SCENARIO_SUBMARINE) {
        const auto& submarine = *static_cast<const ScenarioSubmarine*>(item);
        AddShip(submarine.nSide, submarine.unit.szName, nullptr);
    }
    return 1;
}

// numbers: those of the two further columns, null to leave them empty.
void CScenBriefDlg::AddShip(int side, const char* name, const std::string* numbers)
{
    CItfReportBox* list = side == SCENARIO_SIDE_A ? m_pListA : m_pListB;
    const int row = list->AddRow(ItfListItem(0, name));
    for (int column = 1; numbers != nullptr && column <= 2; ++column)
        list->SetItem(row, column, ItfListItem(0, numbers[column - 1].c_str()));
}

Word CScenBriefDlg::OnNotify(std::uint32_t code, std::int32_t id)
{
    if (code != NOTIFY_CLICKED)
        return 0;
    switch (id) {
    case IDC_CLOSE:
        Notify(RESULT_CLOSE);
        break;
    case IDC_START:
        TakeChoices();
        Notify(RESULT_DONE);
        break;
    case IDC_BACK:
        Notify(RESULT_BACK);
        break;
    case IDC_TAKE_A:
    case IDC_TAKE_B:
        // A pair of which one is always checked.
        for (const int control : {IDC_TAKE_A, IDC_TAKE_B}) {
            if (auto* box = GetControlAs<CItfButton>(control))
                box->Toggle();
        }
        break;
    case IDC_EASIER:
        StepDifficulty(-1);
        break;
    case IDC_HARDER:
        StepDifficulty(1);
        break;
    default:
        break;
    }
    return 0;
}

void CScenBriefDlg::TakeChoices()
{
    const auto* sideA = GetControlAs<CItfButton>(IDC_TAKE_A);
    if (sideA == nullptr || GetControlAs<CItfButton>(IDC_TAKE_B) == nullptr)
        return;
    m_nNotSideA = sideA->GetState() == BUTTON_DOWN ? 0 : 1;
    m_nNotSideB = 1 - m_nNotSideA;
    const auto* option = GetControlAs<CItfButton>(IDC_OPTION);
    m_bFlag = option != nullptr && option->GetState() == BUTTON_DOWN;
    m_nSide = m_nNotSideA == 0 ? 0 : 1;
}

void CScenBriefDlg::StepDifficulty(int step)
{
    m_nDifficulty = (m_nDifficulty + step + DIFFICULTIES) % DIFFICULTIES;
    ShowDifficulty();
}

void CScenBriefDlg::ShowDifficulty()
{
    ShowBoxText(IDC_DIFFICULTY, GetResString(TEXT_DIFFICULTY + m_nDifficulty));
}
