#include "scenario/scenseldlg.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

#include "controls/itfreportbox.h"
#include "flow/dialog_contract.h"
#include "flow/flow.h"
#include "flow/valuebox.h"
#include "iengine.h"
#include "itfrecords.h"
#include "platform/codepage.h"
#include "platform/files.h"
#include "platform/system.h"
#include "saves/filedlg.h"
#include "scenario/scenhead.h"

namespace
{

constexpr char PATTERN[] = "scenarios\\*.sc";
constexpr char IMPORT_FOLDER[] = ".\\SCENARIOS";
constexpr char IMPORT_EXTENSION[] = "exp";
constexpr char BATTLE_AT_SEA[] = "seabattle"; ///< in the name of the scene
constexpr int LAST_CONTROL_CHARACTER = 0x20;
constexpr int PATH_BUFFER = 260;
/// A longer name, with its folder, has no room in the command to the logic.
constexpr std::size_t MAX_FILE_NAME = sizeof(ItfCommand::szPath) - sizeof SCENARIO_FOLDER;

std::string PositiveOrUnknown(int value)
{
    return value > 0 ? std::to_string(value) : "?";
}

bool HasVisibleCharacter(const std::string& text)
{
    return std::any_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) > LAST_CONTROL_CHARACTER; });
}

std::string TimeOfDay(const SCENARIO_HEADER& header)
{
    char text[48];
    const bool morning = (header.nTimeFlags & SCENARIO_TIME_AM) != 0;
    std::snprintf(text, sizeof text, "%02d:%02d%s", header.nHours, header.nMinutes, morning ? "am" : "pm");
    return text;
}

bool IsAtSea(const SCENARIO_HEADER& header)
{
    const std::string scene(header.szScene, strnlen(header.szScene, sizeof header.szScene));
    return scene.find(BATTLE_AT_SEA) != std::string::npos;
}

} // namespace

CScenSelDlg::CScenSelDlg() = default;
CScenSelDlg::~CScenSelDlg() = default;

bool CScenSelDlg::Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent,
                         int ctrlId, std::uint32_t style, IEngine* core)
{
    if (!CreateFromResource(caption, sprite, rect, parent, ctrlId, style, core, SECTION_SCENARIOS))
        return false;
    if (CItfReportBox* list = List()) {
        FillList();
        list->Refresh(true);
        list->SetCurSel(0);
        if (GetControl(IDC_DESCRIPTION) != nullptr)
            ShowDetails(list->GetCurData());
    }
    return true;
}

const CItfWnd::Row* CScenSelDlg::GetMessageTable() const
{
    static const Row rows[] = {
        On(ITFM_NOTIFY, &CScenSelDlg::OnNotify),
        EndOfTable(),
    };
    return rows;
}

CItfReportBox* CScenSelDlg::List() const
{
    return GetControlAs<CItfReportBox>(IDC_LIST);
}

const char* CScenSelDlg::GetSelectedFile() const
{
    const CItfReportBox* list = List();
    const int file = list != nullptr ? list->GetCurData() : -1;
    if (file < 0 || static_cast<std::size_t>(file) >= m_Files.size())
        return nullptr;
    return m_Files[static_cast<std::size_t>(file)].c_str();
}

void CScenSelDlg::FillList()
{
    m_Files.clear();
    CItfReportBox* list = List();
    list->Clear();
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA(PATTERN, &found);
    if (search == INVALID_HANDLE_VALUE)
        return;
    const std::unique_ptr<void, decltype(&FindClose)> closer(search, &FindClose);
    ICustomResources* resources = GetCustomResources(m_pCore);
    ScenarioHead head;
    do {
        const std::string name = found.cFileName;
        if (name.size() <= MAX_FILE_NAME && ReadScenarioHead((SCENARIO_FOLDER + name).c_str(), false, head))
            AddScenario(name, head, resources);
    } while (FindNextFileA(search, &found));
    list->Sort(COLUMN_TITLE, 0);
}

void CScenSelDlg::AddScenario(const std::string& name, const ScenarioHead& head, ICustomResources* resources)
{
    const SCENARIO_HEADER& header = head.header;
    const CUSTOM_RESOURCE_DATA& custom = head.custom;
    const std::array<std::string, COLUMN_COUNT> texts = {
        HasVisibleCharacter(head.title) ? head.title : name,
        PositiveOrUnknown(header.nFlagExtra),
        ScenarioSideName(header.settings.nSideANation, custom.bCustomA != 0, custom.guidA, resources),
        std::to_string(header.settings.nSideACount),
        PositiveOrUnknown(header.nSideAExtra),
        ScenarioSideName(header.settings.nSideBNation, custom.bCustomB != 0, custom.guidB, resources),
        std::to_string(header.settings.nSideBCount),
        PositiveOrUnknown(header.nSideBExtra),
        GetResString(IsAtSea(header) ? TEXT_WATERS_SEA : TEXT_WATERS_OTHER),
        TimeOfDay(header),
    };
    const int file = static_cast<int>(m_Files.size());
    CItfReportBox* list = List();
    const int row = list->AddRow(ItfListItem(file, texts[COLUMN_TITLE].c_str()));
    for (int column = COLUMN_TITLE + 1; column < COLUMN_COUNT; ++column)
        list->SetItem(row, column, ItfListItem(file, texts[static_cast<std::size_t>(column)].c_str()));
    m_Files.push_back(name);
}

void CScenSelDlg::ShowDetails(int file)
{
    ScenarioHead head;
    if (file >= 0 && static_cast<std::size_t>(file) < m_Files.size() &&
        !ReadScenarioHead((SCENARIO_FOLDER + m_Files[static_cast<std::size_t>(file)]).c_str(), true, head))
        return; // it has gone meanwhile: what is shown stays
    ShowBoxText(IDC_DESCRIPTION, head.description.c_str());
    ShowBoxText(IDC_TITLE, head.title.c_str());
}

Word CScenSelDlg::OnNotify(std::uint32_t code, std::int32_t id)
{
    if (id == CHILD_FILE_DIALOG) {
        OnFileDialog(static_cast<int>(code));
    } else if (id == IDC_LIST) {
        OnListNotify(static_cast<int>(code));
    } else if (code == NOTIFY_CLICKED) {
        if (id == IDC_IMPORT)
            OpenImport();
        else if (id == IDC_CLOSE)
            Notify(RESULT_CLOSE);
        else if (id == IDC_TAKE && List() != nullptr && List()->GetCurData() >= 0)
            Notify(RESULT_SCENARIO);
    }
    return 0;
}

void CScenSelDlg::OnListNotify(int code)
{
    if (List() == nullptr)
        return;
    if (code == LIST_SELECTED)
        ShowDetails(List()->GetCurData());
    else if (code == LIST_DOUBLECLICKED)
        Notify(RESULT_SCENARIO);
}

void CScenSelDlg::OpenImport()
{
    if (m_pFileDlg != nullptr)
        return;
    SetDrawing(false);
    Show(false);
    m_pFileDlg = std::make_unique<CFileDlg>();
    const auto giveUp = [this] {
        m_pFileDlg.reset();
        SetDrawing(true);
        Show(true);
    };
    try {
        if (m_pFileDlg->Create(GetResString(TEXT_IMPORT_TITLE), nullptr, nullptr, this, CHILD_FILE_DIALOG,
                               IWS_SHADE, m_pCore, IMPORT_FOLDER)) {
            m_pFileDlg->AddFilter("f1", IMPORT_EXTENSION);
            m_pFileDlg->SetFilter(0);
            m_pFileDlg->Show(true);
            m_pFileDlg->ShadeOrPaint();
        } else {
            giveUp();
        }
    } catch (...) {
        giveUp(); // a broken section: the list stays usable
        throw;
    }
    Invalidate(nullptr);
}

void CScenSelDlg::OnFileDialog(int result)
{
    if (m_pFileDlg == nullptr)
        return;
    const int self = m_nId;
    if (result == CFileDlg::RESULT_ACCEPTED)
        Import(m_pFileDlg->GetResult());
    if (!IsStill(this, self))
        return;
    SetDrawing(false);
    m_pFileDlg.reset();
    Show(true);
    ShadeOrPaint();
}

void CScenSelDlg::Import(const char* path)
{
    // The logic leaves the new file's name here.
    char buffer[PATH_BUFFER] = {};
    const std::size_t length = std::strlen(path);
    const bool fits = length < sizeof buffer;
    if (fits)
        std::memcpy(buffer, path, length); // which ends in a zero already
    else
        OutputDebugStringA((std::string("Import: ") + path + ": longer than " +
                            std::to_string(sizeof buffer - 1) + " bytes\r\n")
                               .c_str());
    const int self = m_nId;
    const bool imported =
        fits && m_pCore->GetScene(-1)->SendMessage(MSG_IMPORT_SCENARIO, DEST_LOGIC, 0, "l", buffer) != 0;
    if (!IsStill(this, self))
        return; // the logic closed every dialog meanwhile
    if (!imported) {
        MessageBox(GetResString(TEXT_IMPORT_FAILED), GetResString(TEXT_ERROR_CAPTION), this,
                   CHILD_IMPORT_ERROR, CValueBox::STYLE_OTHER_BUTTON);
        return;
    }
    buffer[sizeof buffer - 1] = '\0';
    const std::string name = buffer;
    CItfReportBox* list = List();
    if (list == nullptr || !HasWholeScenarioHead((SCENARIO_FOLDER + name).c_str()))
        return;
    FillList();
    list->Refresh(true);
    const auto file = std::find_if(m_Files.begin(), m_Files.end(), [&name](const std::string& known) {
        return PlatformEqualNoCase(known, name);
    });
    if (file == m_Files.end())
        return;
    const int index = static_cast<int>(file - m_Files.begin());
    list->SetCurSel(list->FindRow(index));
    ShowDetails(index);
}
