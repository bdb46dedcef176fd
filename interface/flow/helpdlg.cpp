#include "flow/helpdlg.h"

#include "controls/itfbutton.h"
#include "flow/dialog_contract.h"
#include "flow/flow.h"
#include "kernel/own_names.h"

CHelpDlg::~CHelpDlg() = default;

bool CHelpDlg::Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                      std::uint32_t style, IEngine* core)
{
    if (!CreateFromResource(caption, sprite, rect, parent, ctrlId, style, core, SECTION_HELP))
        return false;
    SetSprite(SPRITE_HELP_BATTLE);
    return true;
}

const CItfWnd::Row* CHelpDlg::GetMessageTable() const
{
    static const Row rows[] = {
        On(ITFM_NOTIFY, &CHelpDlg::OnNotify),
        EndOfTable(),
    };
    return rows;
}

Word CHelpDlg::OnNotify(std::uint32_t code, std::int32_t id)
{
    if (code != NOTIFY_CLICKED)
        return 0;
    if (id == IDC_FIRST_PAGE)
        TurnTo(IDC_FIRST_PAGE, IDC_SECOND_PAGE, SPRITE_HELP_BATTLE);
    else if (id == IDC_SECOND_PAGE)
        TurnTo(IDC_SECOND_PAGE, IDC_FIRST_PAGE, SPRITE_HELP_DIALOGS);
    else if (id == IDC_CLOSE)
        Notify(RESULT_CLOSE);
    return 0;
}

// Nothing for the page that is up.
void CHelpDlg::TurnTo(int page, int other, const char* sprite)
{
    auto* box = GetControlAs<CItfButton>(page);
    if (box == nullptr || box->GetState() != BUTTON_UP)
        return;
    box->SetState(BUTTON_DOWN);
    if (auto* otherBox = GetControlAs<CItfButton>(other))
        otherBox->SetState(BUTTON_UP);
    SetSprite(sprite);
    Invalidate(nullptr);
}
