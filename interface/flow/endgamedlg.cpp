#include "flow/endgamedlg.h"

#include "controls/itfbutton.h"
#include "controls/itfpicturebox.h"
#include "flow/dialog_contract.h"
#include "flow/flow.h"
#include "flow/logic_objects.h"
#include "kernel/own_names.h"
#include "scenario/statisticsdlg.h"

namespace
{

/// In milliseconds.
constexpr int MUSIC_FADE = 500;
/// Where the statistics button stands when its neighbours are hidden.
constexpr int STATISTICS_LEFT = 320;

} // namespace

CEndGameDlg::CEndGameDlg() = default;
CEndGameDlg::~CEndGameDlg() = default;

bool CEndGameDlg::Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent,
                         int ctrlId, std::uint32_t style, IEngine* core, bool won, bool networkGame)
{
    if (!CreateFromResource(caption, sprite, rect, parent, ctrlId, style, core, SECTION_END_GAME))
        return false;
    SetDrawing(true);
    if (IPlayList* music = GetPlayList(m_pCore))
        music->Stop(MUSIC_FADE);
    if (auto* art = GetControlAs<CItfPictureBox>(IDC_ART); art != nullptr && !won)
        art->SetPicture(SPRITE_DEFEAT);
    IGameState* state = GetGameState(m_pCore);
    if (state != nullptr)
        ArrangeButtons(IsCampaign(state), networkGame);
    ShowResult(ScenarioOf(state));
    return true;
}

const CItfWnd::Row* CEndGameDlg::GetMessageTable() const
{
    static const Row rows[] = {
        On(ITFM_NOTIFY, &CEndGameDlg::OnNotify),
        EndOfTable(),
    };
    return rows;
}

// A single battle has the buttons of the resource.
void CEndGameDlg::ArrangeButtons(bool campaign, bool networkGame)
{
    if (campaign) {
        SetCaptionOf(IDC_GO_ON, TEXT_TO_CAMPAIGN);
        HideControl(IDC_AGAIN);
        MoveStatisticsButton();
    } else if (networkGame) {
        SetCaptionOf(IDC_GO_ON, TEXT_TO_LOBBY);
        HideControl(IDC_AGAIN);
        HideControl(IDC_LOOK_ON);
        MoveStatisticsButton();
    }
}

void CEndGameDlg::SetCaptionOf(int control, int text)
{
    if (CItfWnd* wnd = GetControl(control))
        wnd->SetCaption(GetResString(text));
}

void CEndGameDlg::HideControl(int control)
{
    if (CItfWnd* wnd = GetControl(control))
        wnd->Hide(true);
}

void CEndGameDlg::MoveStatisticsButton()
{
    if (CItfWnd* button = GetControl(IDC_STATISTICS)) {
        const POINT pos = {STATISTICS_LEFT, button->GetPos().y};
        button->SetPos(&pos, true);
    }
}

void CEndGameDlg::ShowResult(const ScenarioInfo* scenario)
{
    IGameEntity* game = FindGameEntity(m_pCore);
    if (scenario == nullptr || game == nullptr)
        return;
    const bool won = scenario->nPlayerSide == game->GetWinner();
    SetBoxText(IDC_RESULT, GetResString(won ? TEXT_WON : TEXT_LOST));
}

Word CEndGameDlg::OnNotify(std::uint32_t code, std::int32_t id)
{
    if (id == CHILD_STATISTICS) {
        if (code != NOTIFY_CLICKED)
            CloseStatistics();
        return 0;
    }
    if (code != NOTIFY_CLICKED)
        return 0;
    switch (id) {
    case IDC_LEAVE:
        StopAndReport(RESULT_LEAVE);
        break;
    case IDC_STATISTICS:
        OpenStatistics();
        break;
    case IDC_AGAIN:
        StopAndReport(RESULT_DONE);
        break;
    case IDC_GO_ON:
        StopAndReport(RESULT_BACK);
        break;
    case IDC_LOOK_ON:
        Notify(RESULT_CLOSE);
        break;
    default:
        break;
    }
    return 0;
}

void CEndGameDlg::StopAndReport(int result)
{
    const int self = m_nId;
    StopBattleLogic(m_pCore);
    // The logic may close every dialog when it stops.
    if (IsStill(this, self))
        Notify(result);
}

void CEndGameDlg::OpenStatistics()
{
    if (m_pStatistics != nullptr)
        return;
    m_pStatistics = std::make_unique<CStatisticsDlg>();
    SetDrawing(false);
    Show(false);
    const auto giveUp = [this] {
        m_pStatistics.reset();
        SetDrawing(true);
        Show(true);
        Invalidate(nullptr);
    };
    try {
        if (!m_pStatistics->Create("Statistics", nullptr, nullptr, this, CHILD_STATISTICS, IWS_SHADE,
                                   m_pCore)) {
            giveUp();
            return;
        }
    } catch (...) {
        giveUp(); // a broken section: this dialog stays usable
        throw;
    }
    m_pStatistics->ShadeOrPaint();
    m_pStatistics->Show(true);
    m_pStatistics->Invalidate(nullptr);
}

void CEndGameDlg::CloseStatistics()
{
    if (m_pStatistics == nullptr)
        return;
    SetDrawing(false);
    m_pStatistics.reset();
    Show(true);
    ShadeOrPaint();
}
