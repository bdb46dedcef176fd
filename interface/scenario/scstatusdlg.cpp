#include "scenario/scstatusdlg.h"

#include <cstring>
#include <string>

#include "controls/itfbutton.h"
#include "controls/itfflagbox.h"
#include "controls/itftextbox.h"
#include "flow/dialog_contract.h"
#include "flow/flow.h"
#include "itfrecords.h"
#include "keelworks/scenario_parser.h"
#include "platform/system.h"
#include "scenario/scenhead.h"

CScStatusDlg::~CScStatusDlg() = default;

bool CScStatusDlg::Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent,
                          int ctrlId, std::uint32_t style, IEngine* core, const ItfScenarioStatus* status)
{
    if (status == nullptr ||
        !CreateFromResource(caption, sprite, rect, parent, ctrlId, style, core, SECTION_STATUS))
        return false;
    try {
        CScenarioParser scenario;
        scenario.OpenScenario(
            std::string(status->szPath, strnlen(status->szPath, sizeof status->szPath)).c_str());
        ShowScenario(scenario);
        ShowPercentages(*status);
        return true;
    } catch (const std::exception& error) {
        OutputDebugStringA((std::string("Status: ") + error.what() + "\r\n").c_str());
    } catch (...) {
        OutputDebugStringA("Status: the scenario can't be shown\r\n");
    }
    Destroy();
    return false;
}

const CItfWnd::Row* CScStatusDlg::GetMessageTable() const
{
    static const Row rows[] = {
        On(ITFM_NOTIFY, &CScStatusDlg::OnNotify),
        EndOfTable(),
    };
    return rows;
}

void CScStatusDlg::ShowScenario(CScenarioParser& scenario)
{
    struct Side {
        int flag;
        int name;
        int nation;
        bool custom;
        const CObjGUID& guid;
    };
    const SCSETT_STRUCT& settings = *scenario.GetScSettings();
    const CUSTOM_RESOURCE_DATA& custom = *scenario.GetCustomResourceData();
    ICustomResources* resources = GetCustomResources(m_pCore);
    const Side sides[] = {
        {IDC_FLAG_A, IDC_NAME_A, settings.nSideANation, custom.bCustomA != 0, custom.guidA},
        {IDC_FLAG_B, IDC_NAME_B, settings.nSideBNation, custom.bCustomB != 0, custom.guidB},
    };
    for (const Side& side : sides) {
        if (auto* flag = GetControlAs<CItfFlagBox>(side.flag))
            ShowScenarioFlag(*flag, side.nation, side.custom, side.guid, 0, resources);
        if (CItfWnd* name = GetControl(side.name))
            name->SetCaption(ScenarioSideName(side.nation, side.custom, side.guid, resources).c_str());
    }
    if (GetControlAs<CItfTextBox>(IDC_DESCRIPTION) != nullptr &&
        GetControlAs<CItfTextBox>(IDC_TITLE) != nullptr) {
        SetBoxText(IDC_DESCRIPTION, scenario.GetDescription());
        SetBoxText(IDC_TITLE, scenario.GetTitle());
    }
}

// As the logic gives them, also below 0 and above 100.
void CScStatusDlg::ShowPercentages(const ItfScenarioStatus& status)
{
    if (GetControlAs<CItfTextBox>(IDC_PERCENT_A) == nullptr ||
        GetControlAs<CItfTextBox>(IDC_PERCENT_B) == nullptr)
        return;
    SetBoxText(IDC_PERCENT_A, (std::to_string(status.nPercentA) + "%").c_str());
    SetBoxText(IDC_PERCENT_B, (std::to_string(status.nPercentB) + "%").c_str());
}

Word CScStatusDlg::OnNotify(std::uint32_t code, std::int32_t id)
{
    if (code == NOTIFY_CLICKED && id == IDC_CLOSE)
        Notify(RESULT_CLOSE);
    return 0;
}
