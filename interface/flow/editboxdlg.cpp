#include "flow/editboxdlg.h"

#include "controls/itfeditbox.h"
#include "flow/dialog_contract.h"
#include "flow/flow.h"

namespace
{

/// The resource places the box; this is what it has before.
constexpr RECT BOX_RECT = {10, 10, 20, 20};

} // namespace

CEditBoxDlg::~CEditBoxDlg() = default;

bool CEditBoxDlg::Create(const char* prompt, CItfWnd* parent, int id, std::uint32_t style, IEngine* core)
{
    if (!CreateFromResource("MsgBox", nullptr, &BOX_RECT, parent, id, style, core, SECTION_EDIT))
        return false;
    SetModal();
    SetBoxText(IDC_PROMPT, prompt);
    return true;
}

const CItfWnd::Row* CEditBoxDlg::GetMessageTable() const
{
    static const Row rows[] = {
        On(ITFM_NOTIFY, &CEditBoxDlg::OnNotify),
        EndOfTable(),
    };
    return rows;
}

const char* CEditBoxDlg::GetValue()
{
    auto* edit = GetControlAs<CItfEditBox>(IDC_VALUE);
    return edit != nullptr ? edit->GetText() : nullptr;
}

void CEditBoxDlg::SetValue(const char* text)
{
    if (auto* edit = GetControlAs<CItfEditBox>(IDC_VALUE)) {
        edit->SetText(text);
        edit->Invalidate(nullptr);
    }
}

Word CEditBoxDlg::OnNotify(std::uint32_t code, std::int32_t id)
{
    if (code != NOTIFY_CLICKED)
        return 0;
    if (id == IDC_OK)
        PostToParent(ITFM_NOTIFY, RESULT_FIRST, m_nCtrlId);
    else if (id == IDC_CANCEL)
        PostToParent(ITFM_NOTIFY, RESULT_SECOND, m_nCtrlId);
    return 0;
}
