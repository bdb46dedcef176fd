// The scenario list and the briefing with the shipped data, and files that are broken on purpose.

#include <cstring>

#include "controls/itfbutton.h"
#include "controls/itfreportbox.h"
#include "controls/itftextbox.h"
#include "flow/flow.h"
#include "flow/maindlg.h"
#include "flow/valuebox.h"
#include "platform/files.h"
#include "saves/filedlg.h"
#include "scenario/scenbriefdlg.h"
#include "scenario/scenhead.h"
#include "scenario/scenseldlg.h"
#include "support/toolkit_fixture.h"

using namespace seawarden_test;

namespace
{

// Bytes of a scenario file as the list reads it.
std::string HeadFile(const SCENARIO_HEADER& header, const std::string& title, const std::string& description,
                     const CUSTOM_RESOURCE_DATA* custom = nullptr)
{
    std::string bytes(reinterpret_cast<const char*>(&header), sizeof header);
    if (custom != nullptr)
        bytes.append(reinterpret_cast<const char*>(custom), sizeof *custom);
    return bytes + title + '\0' + description + '\0';
}

class ScenarioTest : public ToolkitTest
{
  protected:
    void Menu()
    {
        engine.refused.insert("shader");
        Start(EVENT_MAIN_MENU);
    }
    template <class T>
    T* Find()
    {
        for (const WindowEntry& entry : Toolkit().windows) {
            if (auto* wnd = dynamic_cast<T*>(entry.wnd))
                return wnd;
        }
        return nullptr;
    }
    void Choose(int item)
    {
        CItfWnd::PostTo(0, ITFM_COMMAND, DLG_MAIN, item);
        Frame();
        CItfWnd::SetDrawing(true);
    }
    void ClickControl(CItfDialog* dialog, int id)
    {
        ASSERT_NE(dialog, nullptr);
        ASSERT_NE(dialog->GetControl(id), nullptr) << id;
        RECT rect;
        dialog->GetControl(id)->GetScreenRect(&rect);
        Click((rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2);
        Frame();
        CItfWnd::SetDrawing(true);
    }
    // A folder of scenarios without the shipped ones.
    void UseOwnScenarios() { PlatformSetRoots(userFolder.string(), ShippedCopy()); }
    // The shipped resources below a root that has no scenarios.
    std::string ShippedCopy()
    {
        const std::filesystem::path root = userFolder / "game";
        std::filesystem::create_directories(root);
        std::filesystem::create_directory_symlink(std::string(SEAWARDEN_SOURCE_DIR) + "/data/resource",
                                                  root / "resource");
        return root.string();
    }
    void WriteScenario(const std::string& name, const std::string& bytes)
    {
        WriteFile("scenarios/" + name, bytes);
    }
    std::vector<std::string> Cells(const CItfReportBox& list, int row)
    {
        std::vector<std::string> cells;
        for (int column = 0; column < list.GetColumnCount(); ++column)
            cells.push_back(list.GetItem(row, column).m_Text);
        return cells;
    }
    std::string TextOf(CItfDialog* dialog, int id)
    {
        return dialog->GetControlAs<CItfTextBox>(id)->GetText();
    }
};

TEST_F(ScenarioTest, EveryKindOfHeadHasItsRow)
{
    UseOwnScenarios();
    SCENARIO_HEADER header;
    header.settings = {{}, 1001, 12, 0, 1002, 7, 0};
    header.nHours = 9;
    header.nMinutes = 5;
    header.nTimeFlags = SCENARIO_TIME_AM;
    header.nVersion = 0x10007;
    header.nSideAExtra = 3;
    header.nFlagExtra = 1914;
    std::strcpy(header.szScene, "big seabattle at dawn");
    WriteScenario("b.sc", HeadFile(header, "Bravo", "The text."));
    header.nVersion = SCENARIO_VERSION_CUSTOM;
    CUSTOM_RESOURCE_DATA custom;
    custom.bCustomB = 1;
    WriteScenario("a.sc", HeadFile(header, " \t ", "", &custom));
    WriteScenario("c.sc", HeadFile(header, "short of its block", "").substr(0, 0x270));
    WriteScenario("ten.sc", std::string(10, '\0'));
    WriteScenario("empty.sc", "");
    WriteScenario("long.sc", HeadFile(header, std::string(151, 'T'), "Behind it", &custom));

    Menu();
    Choose(MENU_SCENARIO);
    auto* dialog = Find<CScenSelDlg>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(Find<CMainDlg>(), nullptr);
    auto* list = dialog->GetControlAs<CItfReportBox>(CScenSelDlg::IDC_LIST);
    ASSERT_EQ(list->GetColumnCount(), CScenSelDlg::COLUMN_COUNT);
    ASSERT_EQ(list->GetCount(), 4) << "an empty file and one that ends in its block have no row";
    using Row = std::vector<std::string>;
    EXPECT_EQ(Cells(*list, 0),
              (Row{"Bravo", "1914", "text 1001", "12", "3", "text 1002", "7", "?", "text 12", "09:05am"}));
    EXPECT_EQ(Cells(*list, 1)[0], std::string(150, 'T'));
    EXPECT_EQ(Cells(*list, 2),
              (Row{"a.sc", "1914", "text 1001", "12", "3", "?", "7", "?", "text 12", "09:05am"}));
    EXPECT_EQ(Cells(*list, 3),
              (Row{"ten.sc", "?", "text 0", "0", "?", "text 0", "0", "?", "text 11", "00:00pm"}));
    EXPECT_EQ(TextOf(dialog, CScenSelDlg::IDC_TITLE), "Bravo");
    EXPECT_EQ(TextOf(dialog, CScenSelDlg::IDC_DESCRIPTION), "The text.");
    list->SetCurSel(1);
    list->Notify(LIST_SELECTED);
    EXPECT_EQ(TextOf(dialog, CScenSelDlg::IDC_DESCRIPTION), "Behind it") << "behind the title's own end";
    EXPECT_STREQ(dialog->GetSelectedFile(), "long.sc");
    // The row's data goes with it when the table is sorted the other way.
    list->Sort(CScenSelDlg::COLUMN_WATERS, SORT_TEXT);
    list->Refresh(true);
    list->SetCurSel(0);
    EXPECT_STREQ(dialog->GetSelectedFile(), "ten.sc");
    // A file that has gone leaves what is shown.
    std::filesystem::remove(userFolder / "scenarios/b.sc");
    list->SelectData(1);
    list->Notify(LIST_SELECTED);
    EXPECT_EQ(TextOf(dialog, CScenSelDlg::IDC_TITLE), std::string(150, 'T'));
    ClickControl(dialog, CScenSelDlg::IDC_CLOSE);
    EXPECT_EQ(Find<CScenSelDlg>(), nullptr);
    EXPECT_NE(Find<CMainDlg>(), nullptr);
}

TEST_F(ScenarioTest, WithoutScenariosOnlyTheWayBackWorks)
{
    UseOwnScenarios();
    Menu();
    Choose(MENU_SCENARIO);
    auto* dialog = Find<CScenSelDlg>();
    EXPECT_EQ(dialog->GetSelectedFile(), nullptr);
    ClickControl(dialog, CScenSelDlg::IDC_TAKE);
    EXPECT_EQ(Find<CScenSelDlg>(), dialog);
    dialog->GetControl(CScenSelDlg::IDC_LIST)->Notify(LIST_DOUBLECLICKED);
    EXPECT_EQ(Find<CScenSelDlg>(), dialog) << "nothing was chosen";
    ClickControl(dialog, CScenSelDlg::IDC_CLOSE);
    EXPECT_NE(Find<CMainDlg>(), nullptr);
}

TEST_F(ScenarioTest, FromTheListOverTheBriefingToTheCommand)
{
    Menu();
    Choose(MENU_SCENARIO);
    auto* dialog = Find<CScenSelDlg>();
    const std::string file = dialog->GetSelectedFile();
    ClickControl(dialog, CScenSelDlg::IDC_TAKE);
    auto* brief = Find<CScenBriefDlg>();
    ASSERT_NE(brief, nullptr);
    EXPECT_EQ(Find<CScenSelDlg>(), nullptr);
    EXPECT_EQ(TextOf(brief, CScenBriefDlg::IDC_DIFFICULTY), "text 26");
    EXPECT_GT(brief->GetControlAs<CItfReportBox>(CScenBriefDlg::IDC_SHIPS_A)->GetCount(), 0);
    const auto state = [&](int id) { return brief->GetControlAs<CItfButton>(id)->GetState(); };
    EXPECT_EQ(state(CScenBriefDlg::IDC_TAKE_A), 1);
    EXPECT_EQ(state(CScenBriefDlg::IDC_TAKE_B), 0);
    ClickControl(brief, CScenBriefDlg::IDC_TAKE_A);
    EXPECT_EQ(state(CScenBriefDlg::IDC_TAKE_A), 0) << "a click on either takes the other side";
    EXPECT_EQ(state(CScenBriefDlg::IDC_TAKE_B), 1);
    for (const auto& [control, text] : {std::pair{CScenBriefDlg::IDC_HARDER, 27},
                                        {CScenBriefDlg::IDC_HARDER, 25},
                                        {CScenBriefDlg::IDC_EASIER, 27},
                                        {CScenBriefDlg::IDC_HARDER, 25}}) {
        ClickControl(brief, control);
        EXPECT_EQ(TextOf(brief, CScenBriefDlg::IDC_DIFFICULTY), "text " + std::to_string(text));
    }
    ClickControl(brief, CScenBriefDlg::IDC_OPTION);
    EXPECT_EQ(brief->GetDifficulty(), 0);
    ClickControl(brief, CScenBriefDlg::IDC_START);
    EXPECT_EQ(Find<CScenBriefDlg>(), nullptr);
    ASSERT_EQ(Commands(), std::vector<int>{CMD_START_SCENARIO});
    const auto& command = *reinterpret_cast<const ItfCommand*>(engine.SentWith(MSG_ITF_COMMAND)[0].words[0]);
    EXPECT_EQ(command.nSide, 1);
    EXPECT_EQ(command.nNotSideA, 1);
    EXPECT_EQ(command.nNotSideB, 0);
    EXPECT_EQ(command.nDifficulty, 0);
    EXPECT_EQ(command.bBriefFlag, 1);
    EXPECT_EQ(command.szPath, SCENARIO_FOLDER + file);
}

TEST_F(ScenarioTest, TheBriefingsOtherEnds)
{
    Menu();
    Choose(MENU_SCENARIO);
    Find<CScenSelDlg>()->GetControl(CScenSelDlg::IDC_LIST)->Notify(LIST_DOUBLECLICKED);
    CItfWnd::SetDrawing(true);
    ClickControl(Find<CScenBriefDlg>(), CScenBriefDlg::IDC_BACK);
    ASSERT_NE(Find<CScenSelDlg>(), nullptr);
    ClickControl(Find<CScenSelDlg>(), CScenSelDlg::IDC_TAKE);
    ClickControl(Find<CScenBriefDlg>(), CScenBriefDlg::IDC_CLOSE);
    EXPECT_NE(Find<CMainDlg>(), nullptr);
    EXPECT_TRUE(Commands().empty());
}

TEST_F(ScenarioTest, ABrokenScenarioIsToldOverTheMenu)
{
    UseOwnScenarios();
    WriteScenario("broken.sc", HeadFile(SCENARIO_HEADER(), "Broken", ""));
    Menu();
    Choose(MENU_SCENARIO);
    ClickControl(Find<CScenSelDlg>(), CScenSelDlg::IDC_TAKE);
    EXPECT_EQ(Find<CScenBriefDlg>(), nullptr);
    EXPECT_NE(Find<CMainDlg>(), nullptr);
    auto* box = Find<CValueBox>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->GetControlAs<CItfTextBox>(CValueBox::IDC_MESSAGE)->GetText(), std::string("text 70"));
    ClickControl(box, CValueBox::IDC_FIRST);
    EXPECT_EQ(Find<CValueBox>(), nullptr);
    EXPECT_EQ(TakeDebug().size(), 1u) << "which file, and what is wrong with it";
}

TEST_F(ScenarioTest, Import)
{
    UseOwnScenarios();
    Menu();
    Choose(MENU_SCENARIO);
    auto* dialog = Find<CScenSelDlg>();
    std::string asked;
    Word answer = 0;
    engine.onMessage = [&](const Sent& sent) -> Word {
        if (sent.number != MSG_IMPORT_SCENARIO)
            return 0;
        auto* buffer = reinterpret_cast<char*>(sent.words.at(0));
        asked = buffer;
        std::strcpy(buffer, "new.sc");
        return answer;
    };
    const auto report = [&](int result) {
        ClickControl(dialog, CScenSelDlg::IDC_IMPORT);
        ASSERT_NE(Find<CFileDlg>(), nullptr);
        EXPECT_FALSE(dialog->IsVisible());
        Find<CFileDlg>()->Notify(result);
        CItfWnd::SetDrawing(true);
        EXPECT_EQ(Find<CFileDlg>(), nullptr);
        EXPECT_TRUE(dialog->IsVisible());
    };
    report(CFileDlg::RESULT_CLOSED);
    EXPECT_EQ(asked, "");
    report(CFileDlg::RESULT_ACCEPTED);
    auto* box = Find<CValueBox>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->GetControlAs<CItfTextBox>(CValueBox::IDC_MESSAGE)->GetText(), std::string("text 12204"));
    ClickControl(box, CValueBox::IDC_FIRST);
    ASSERT_EQ(Find<CScenSelDlg>(), dialog);

    answer = 1;
    SCENARIO_HEADER header;
    WriteScenario("other.sc", HeadFile(header, "Other", ""));
    WriteScenario("new.sc", HeadFile(header, "Zulu", "Brought in."));
    report(CFileDlg::RESULT_ACCEPTED);
    EXPECT_STREQ(dialog->GetSelectedFile(), "new.sc");
    EXPECT_EQ(TextOf(dialog, CScenSelDlg::IDC_DESCRIPTION), "Brought in.");
}

// Both dialogs without any of their controls.
TEST_F(ScenarioTest, MissingControls)
{
    WriteDialogs("MainDlg { DIALOG, \"\", 0, 0, 9, 9, MENU, \"\" \"\" \"\", \"\", 10, 0, 0, 9, 9 }"
                 " ScenSelDlg { DIALOG, \"\", 0, 0, 9, 9 } ScenBriefDlg { DIALOG, \"\", 0, 0, 9, 9 }");
    Menu();
    Choose(MENU_SCENARIO);
    auto* dialog = Find<CScenSelDlg>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->GetSelectedFile(), nullptr);
    CItfWnd::SendTo(dialog->GetId(), ITFM_NOTIFY, NOTIFY_CLICKED, CScenSelDlg::IDC_TAKE);
    CItfWnd::SendTo(dialog->GetId(), ITFM_NOTIFY, NOTIFY_CLICKED, CScenSelDlg::IDC_CLOSE);
    EXPECT_EQ(Find<CScenSelDlg>(), nullptr);

    CMainWnd& top = *Find<CMainWnd>();
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA("scenarios\\*.sc", &found);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    FindClose(search);
    top.ShowScenBriefDlg((std::string(SCENARIO_FOLDER) + found.cFileName).c_str());
    auto* brief = Find<CScenBriefDlg>();
    ASSERT_NE(brief, nullptr);
    for (const int id : {90, 100, 180, 200, 140})
        CItfWnd::SendTo(brief->GetId(), ITFM_NOTIFY, NOTIFY_CLICKED, id);
    CItfWnd::SendTo(brief->GetId(), ITFM_NOTIFY, NOTIFY_CLICKED, CScenBriefDlg::IDC_START);
    EXPECT_EQ(top.GetCommand().nNotSideA + top.GetCommand().nNotSideB + top.GetCommand().nSide, 0);
    EXPECT_EQ(top.GetCommand().nDifficulty, 1) << "one down and one up";
}

} // namespace
