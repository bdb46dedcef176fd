#include "flow/maindlg.h"

#include <cstdio>
#include <strings.h>

#include "controls/itfmenu.h"
#include "flow/dialog_contract.h"
#include "flow/flow.h"
#include "iengine.h"
#include "ilogic.h"
#include "itfrecords.h"
#include "kernel/own_names.h"
#include "platform/system.h"

namespace
{

constexpr char HIDDEN_CODE[] = "qiru";
constexpr std::size_t HIDDEN_CODE_LENGTH = sizeof HIDDEN_CODE - 1;

constexpr RECT VERSION_RECT = {71, 560, 229, 578};
constexpr RECT VERSION_INNER_RECT = {-1, -1, -1, -1};
constexpr std::uint32_t VERSION_STYLE = TBSTYLE_CENTERED | TBSTYLE_NOVSCROLL | TBSTYLE_HASCAPTION;
static_assert(VERSION_STYLE == 0xf0000);

// Major number in the top byte, minor number in the next, build in the low half; 0 without a store.
std::uint32_t ReadVersionWord(IEngine* core)
{
    std::uint32_t version = 0;
    IEngine* root = core->GetScene(-1);
    auto* profile = reinterpret_cast<IProfileStore*>(
        root->SendMessage(MSG_GET_PROFILE, DEST_LOGIC, 0, "l", static_cast<int>(PROFILE_PROGRAM)));
    if (profile != nullptr) {
        profile->SelectSection("VERSION", 1);
        profile->Read("Version", "x", &version);
    }
    return version;
}

} // namespace

CMainDlg::~CMainDlg() = default;

bool CMainDlg::Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent, int ctrlId,
                      std::uint32_t style, IEngine* core)
{
    if (!CreateFromResource(caption, sprite, rect, parent, ctrlId, style, core, SECTION_MAIN))
        return false;
    if (!AddVersionText())
        return false;
    CheckRequiredControls(*this, SECTION_MAIN);
    m_pMenu = GetControlAs<CItfMenu>(IDC_MENU);
    return true;
}

const CItfWnd::Row* CMainDlg::GetMessageTable() const
{
    static const Row rows[] = {
        On(ITFM_NOTIFY, &CMainDlg::OnNotify),
        On(ITFM_COMMAND, &CMainDlg::OnCommand),
        On(WM_CHAR, &CMainDlg::OnChar),
        EndOfTable(),
    };
    return rows;
}

std::string CMainDlg::FormatVersion() const
{
    const std::uint32_t version = ReadVersionWord(m_pCore);
    char number[32];
    std::snprintf(number, sizeof number, ": %u.%2.2u.%u", version >> 24, (version >> 16) & 0xffu,
                  version & 0xffffu);
    return std::string(GetResString(TEXT_VERSION)) + number;
}

bool CMainDlg::AddVersionText()
{
    auto text = std::make_unique<CVersionText>();
    if (!text->Create("TextBox", nullptr, &VERSION_RECT, this, IDC_VERSION, VERSION_STYLE, m_pCore))
        return false;
    text->SetInnerRect(VERSION_INNER_RECT);
    text->SetFont(FONT_NOTE);
    text->SetCaptionFont(FONT_NOTE);
    text->SetCaption(FormatVersion().c_str());
    AddControl(KIND_TEXTBOX, IDC_VERSION, std::move(text));
    return true;
}

// A press gives the focus to the menu, a box takes it with it when it goes.
void CMainDlg::OnTick(int)
{
    if (GetFocusId() != GetId())
        SetFocus();
}

Word CMainDlg::OnNotify(std::uint32_t, std::int32_t)
{
    return 0;
}

Word CMainDlg::OnCommand(std::uint32_t first, std::int32_t second)
{
    PostToParent(ITFM_COMMAND, first, second);
    return 0;
}

Word CMainDlg::OnChar(std::uint32_t character, std::int32_t)
{
    if (m_strKeys.size() >= HIDDEN_CODE_LENGTH)
        m_strKeys.erase(0, 1);
    m_strKeys += static_cast<char>(character & 0xffu);
    if (strcasecmp(m_strKeys.c_str(), HIDDEN_CODE) == 0)
        PostToParent(ITFM_COMMAND, DLG_MAIN, MENU_SECRET);
    return 0;
}
