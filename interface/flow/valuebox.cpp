#include "flow/valuebox.h"

#include "controls/itfbutton.h"
#include "flow/dialog_contract.h"
#include "flow/flow.h"

namespace
{

/// The resource places the box; this is what it has before.
constexpr RECT BOX_RECT = {10, 10, 20, 20};

} // namespace

CValueBox::~CValueBox() = default;

bool CValueBox::Create(const char* first, const char* second, CItfWnd* parent, int id, std::uint32_t style,
                       IEngine* core)
{
    const char* section = (style & STYLE_YES_NO) != 0 ? SECTION_QUESTION : SECTION_MESSAGE;
    if (!CreateFromResource("ValueBox", nullptr, &BOX_RECT, parent, id, style, core, section))
        return false;
    m_nOldModal = GetModalId();
    SetBoxText(IDC_CAPTION, second);
    SetBoxText(IDC_MESSAGE, first);
    if (CItfWnd* button = GetControl(IDC_FIRST)) {
        if ((style & STYLE_OTHER_BUTTON) != 0)
            button->SetCaption(GetResString(TEXT_OTHER_BUTTON));
        if ((style & STYLE_NO_BUTTON) != 0)
            button->Hide(true);
    }
    SetModal(); // last: the handler of a lost focus may close this box
    return true;
}

void CValueBox::OnDestroy()
{
    CItfDialog::OnDestroy();
    delete this;
}

const CItfWnd::Row* CValueBox::GetMessageTable() const
{
    static const Row rows[] = {
        On(ITFM_NOTIFY, &CValueBox::OnNotify),
        EndOfTable(),
    };
    return rows;
}

// The window that was modal before; if it has gone meanwhile, the newest of the boxes that are left.
int CValueBox::ModalBehind() const
{
    if (FindWindow(m_nOldModal) != nullptr)
        return m_nOldModal;
    const std::vector<WindowEntry>& windows = Toolkit().windows;
    for (auto entry = windows.rbegin(); entry != windows.rend(); ++entry) {
        if (entry->wnd != this && dynamic_cast<CValueBox*>(entry->wnd) != nullptr)
            return entry->id;
    }
    return -1;
}

Word CValueBox::OnNotify(std::uint32_t code, std::int32_t id)
{
    if (code != NOTIFY_CLICKED)
        return 0;
    if (id == IDC_FIRST || id == IDC_SECOND) {
        const FlowResult answer = id == IDC_FIRST ? RESULT_FIRST : RESULT_SECOND;
        PostToParent(ITFM_NOTIFY, static_cast<std::uint32_t>(answer), m_nCtrlId);
    }
    SetModalId(ModalBehind());
    Destroy();
    RedrawAll();
    return 0;
}

CValueBox* CItfWnd::MessageBox(const char* first, const char* second, CItfWnd* parent, int id,
                               std::uint32_t style)
{
    auto* box = new CValueBox;
    const int boxId = Toolkit().nextWindowId;
    if (!box->Create(first, second, parent, id, style, m_pCore)) {
        delete box;
        return nullptr;
    }
    // Handlers that ran meanwhile may have closed it.
    if (FindWindow(boxId) == box) {
        box->Show(true);
        box->Invalidate(nullptr);
    }
    return FindWindow(boxId) == box ? box : nullptr;
}
