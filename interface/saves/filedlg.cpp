#include "saves/filedlg.h"

#include <cstring>

#include "controls/itfeditbox.h"
#include "controls/itfreportbox.h"
#include "flow/dialog_contract.h"
#include "flow/text_numbers.h"
#include "flow/valuebox.h"
#include "platform/files.h"

namespace
{

/// In the list of filters: all files.
constexpr char NO_FILTER[] = "\x0d";
constexpr int ERROR_BOX_ID = 100;
constexpr COLORREF ITEM_COLOUR = RGB(0xc8, 0xc8, 0xc8);

/// Sort groups of the list.
constexpr int ORDER_FOLDER = 0;
constexpr int ORDER_FILE = 1;

/// The list of items grows by this much when fewer than LOW_ROOM places are free.
constexpr std::size_t LOW_ROOM = 10;
constexpr std::size_t MORE_ROOM = 1000;

CShellFolder::Names PlaceNames()
{
    const auto text = [](TextNumber number) { return std::string(CItfWnd::GetResString(number)); };
    return {text(TEXT_DESKTOP), text(TEXT_COMPUTER), text(TEXT_HOME), text(TEXT_PLAYER_FOLDER),
            text(TEXT_GAME_FOLDER)};
}

} // namespace

CFileDlg::CFileDlg() : m_Shell(PlaceNames()) {}

CFileDlg::~CFileDlg()
{
    CFileDlg::OnDestroy();
}

bool CFileDlg::Create(const char* title, const char* sprite, const RECT* rect, CItfWnd* parent, int id,
                      std::uint32_t style, IEngine* core, const char* startFolder)
{
    if (!CreateFromResource(nullptr, sprite, rect, parent, id, style, core, SECTION_FILE))
        return false;
    m_pList = GetControlAs<CItfReportBox>(IDC_LIST);
    m_pFolderEdit = GetControlAs<CItfEditBox>(IDC_FOLDER);
    m_pFileEdit = GetControlAs<CItfEditBox>(IDC_FILE);
    SetBoxText(IDC_TITLE, title);
    m_Shell.Init();
    EnterStart(startFolder);
    FillList();
    return true;
}

void CFileDlg::OnDestroy()
{
    if (CItfWnd* box = FindWindow(m_nErrorBox))
        box->Destroy();
    m_nErrorBox = -1;
    CItfDialog::OnDestroy();
}

const CItfWnd::Row* CFileDlg::GetMessageTable() const
{
    static const Row rows[] = {
        On(ITFM_NOTIFY, &CFileDlg::OnNotify),
        EndOfTable(),
    };
    return rows;
}

void CFileDlg::AddFilter(const char*, const char* extension)
{
    m_Filters.emplace_back(extension != nullptr ? extension : NO_FILTER);
}

void CFileDlg::SetFilter(int index)
{
    if (index < 0 || static_cast<std::size_t>(index) >= m_Filters.size())
        return;
    const std::string& filter = m_Filters[static_cast<std::size_t>(index)];
    m_Shell.SetFilter(filter == NO_FILTER ? nullptr : filter.c_str());
    FillList();
}

// What fails here leaves the walk on the desktop.
void CFileDlg::EnterStart(const char* startFolder)
{
    constexpr char GAME_FOLDER[] = ".";
    ItemIdList start;
    if (m_Shell.ParseStart(startFolder, &start) != CShellFolder::SHELL_OK &&
        m_Shell.ParseStart(GAME_FOLDER, &start) != CShellFolder::SHELL_OK)
        return;
    if (start.GetPath().size() < MAX_PATH)
        m_Shell.Enter(&start, false);
}

Word CFileDlg::OnNotify(std::uint32_t code, std::int32_t id)
{
    switch (id) {
    case IDC_CLOSE:
        Notify(RESULT_CLOSED);
        break;
    case IDC_LIST:
        OnListNotify(code);
        break;
    case IDC_FOLDER:
        if (code == EDIT_ENTER)
            GoToTypedFolder();
        break;
    case IDC_FILE:
        if (code == EDIT_ENTER)
            Accept();
        break;
    case IDC_ACCEPT:
        if (code == NOTIFY_CLICKED)
            Accept();
        break;
    case IDC_UP:
        if (code == NOTIFY_CLICKED && m_Shell.Up() == CShellFolder::SHELL_OK)
            FillList();
        break;
    case ERROR_BOX_ID:
        m_nErrorBox = -1;
        break;
    default:
        break;
    }
    RedrawAll(); // needs no dialog: it may be gone
    return 0;
}

void CFileDlg::OnListNotify(std::uint32_t code)
{
    const ItemIdList* item = GetSelected();
    if (item == nullptr)
        return;
    const int kind = m_Shell.GetKind(*item);
    if (code == LIST_DOUBLECLICKED && kind == CShellFolder::ITEM_FOLDER) {
        m_Shell.Enter(item, true);
        FillList();
    } else if (code == LIST_DOUBLECLICKED) {
        Accept();
    } else if (code == LIST_PRESSED && m_pFileEdit != nullptr) {
        const bool file = kind == CShellFolder::ITEM_FILE;
        m_pFileEdit->SetText(file ? m_pList->GetItem(m_pList->GetCurSel(), 0).m_Text.c_str() : "");
    }
}

const ItemIdList* CFileDlg::GetSelected() const
{
    if (m_pList == nullptr || !m_pList->HasSelection())
        return nullptr;
    const auto index = static_cast<std::size_t>(m_pList->GetCurData());
    return index < m_Items.size() ? &m_Items[index] : nullptr;
}

void CFileDlg::GoToTypedFolder()
{
    ItemIdList folder;
    if (m_pFolderEdit != nullptr &&
        m_Shell.ParsePath(m_pFolderEdit->GetText(), &folder) == CShellFolder::SHELL_OK &&
        m_Shell.Enter(&folder, false) == CShellFolder::SHELL_OK)
        FillList();
}

void CFileDlg::Accept()
{
    const int self = m_nId;
    try {
        std::string path;
        m_Shell.GetPath(&path);
        m_strResult = path + '\\' + (m_pFileEdit != nullptr ? m_pFileEdit->GetText() : "");
        Notify(RESULT_ACCEPTED);
    } catch (...) {
        if (!IsStill(this, self))
            throw; // nobody is left to show it
        CValueBox* box = MessageBox(GetResString(TEXT_FILE_NOT_TAKEN), GetResString(TEXT_ERROR_CAPTION), this,
                                    ERROR_BOX_ID, CValueBox::STYLE_OTHER_BUTTON);
        if (IsStill(this, self))
            m_nErrorBox = box != nullptr ? box->GetId() : -1;
    }
}

void CFileDlg::FillList()
{
    try {
        ReadFolder();
    } catch (...) {
        m_Shell.Enter(nullptr, false);
        ClearList();
    }
    RedrawAll();
}

void CFileDlg::ReadFolder()
{
    m_Shell.Rewind();
    ClearList();
    ItfFileItem item;
    while (m_Shell.Next(&item) != nullptr) {
        if (m_Items.capacity() - m_Items.size() < LOW_ROOM)
            m_Items.reserve(m_Items.size() + MORE_ROOM);
        const int order = (item.attributes & SHELL_FOLDER) != 0 ? ORDER_FOLDER : ORDER_FILE;
        if (m_pList != nullptr)
            m_pList->AddRow(ItfListItem(static_cast<int>(m_Items.size()), item.name, order, ITEM_COLOUR));
        m_Items.push_back(std::move(item.pidl));
    }
    if (m_pList != nullptr) {
        m_pList->Sort(0, SORT_FILEDIR);
        m_pList->Refresh(true);
        m_pList->SetCurSel(0);
    }
    std::string name;
    if (m_pFolderEdit != nullptr && m_Shell.GetName(&m_Shell.GetCurrent(), &name))
        m_pFolderEdit->SetText(name.c_str());
}

void CFileDlg::ClearList()
{
    m_Items.clear();
    if (m_pList != nullptr)
        m_pList->Clear();
}
