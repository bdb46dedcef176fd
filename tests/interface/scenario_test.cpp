// The scenario list and the briefing with the shipped data, and files that are broken on purpose.

#include <cstring>

#include "controls/itfbutton.h"
#include "controls/itfreportbox.h"
#include "flow/maindlg.h"
#include "flow/valuebox.h"
#include "itfflag.h"
#include "keelworks/scenario_samples.h"
#include "platform/files.h"
#include "saves/filedlg.h"
#include "scenario/scenbriefdlg.h"
#include "scenario/scenhead.h"
#include "scenario/scenseldlg.h"
#include "support/rows.h"
#include "support/toolkit_fixture.h"

using namespace seawarden_test;

namespace
{

using Texts = std::vector<std::string>;

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
    // The list of the shipped scenarios.
    CScenSelDlg* OpenList()
    {
        engine.refused.insert("shader");
        Start(EVENT_MAIN_MENU);
        Choose(MENU_SCENARIO);
        return Find<CScenSelDlg>();
    }
    void Press(CItfDialog* dialog, int id)
    {
        ClickControl(dialog, id);
        Frame();
    }
    static CItfReportBox& ListOf(CItfDialog* dialog) { return TableOf(dialog, CScenSelDlg::IDC_LIST); }
    void ClickRow(CItfDialog* dialog, int row)
    {
        const POINT at = RowPoint(ListOf(dialog), row);
        Click(at.x, at.y);
    }
    // The shipped resources below a root that has no scenarios.
    void UseOwnScenarios()
    {
        const std::filesystem::path root = userFolder / "game";
        std::filesystem::create_directories(root);
        std::filesystem::create_directory_symlink(std::string(SEAWARDEN_SOURCE_DIR) + "/data/resource",
                                                  root / "resource");
        PlatformSetRoots(userFolder.string(), root.string());
    }
    void WriteScenario(const std::string& name, const std::string& bytes)
    {
        WriteFile("scenarios/" + name, bytes);
    }
    void WriteScenario(const std::string& name, const Scenario& scenario)
    {
        const std::vector<char> bytes = CScenarioWriter(scenario).GetBytes();
        WriteScenario(name, std::string(bytes.begin(), bytes.end()));
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

    CScenSelDlg* dialog = OpenList();
    const CItfReportBox& list = ListOf(dialog);
    ASSERT_EQ(list.GetCount(), 4) << "an empty file and one that ends in its block have no row";
    EXPECT_EQ(Cells(list, 0),
              (Texts{"Bravo", "1914", "text 1001", "12", "3", "text 1002", "7", "?", "text 12", "09:05am"}));
    EXPECT_EQ(Cells(list, 1)[0], std::string(150, 'T'));
    EXPECT_EQ(Cells(list, 2),
              (Texts{"a.sc", "1914", "text 1001", "12", "3", "?", "7", "?", "text 12", "09:05am"}));
    EXPECT_EQ(Cells(list, 3),
              (Texts{"ten.sc", "?", "text 0", "0", "?", "text 0", "0", "?", "text 11", "00:00pm"}));
    EXPECT_EQ(TextOf(dialog, CScenSelDlg::IDC_TITLE), "Bravo");
    EXPECT_EQ(TextOf(dialog, CScenSelDlg::IDC_DESCRIPTION), "The text.");
    ClickRow(dialog, 1);
    EXPECT_EQ(TextOf(dialog, CScenSelDlg::IDC_DESCRIPTION), "Behind it") << "behind the title's own end";
    EXPECT_STREQ(dialog->GetSelectedFile(), "long.sc");
    // A file that has gone leaves what is shown.
    std::filesystem::remove(userFolder / "scenarios/b.sc");
    ClickRow(dialog, 0);
    EXPECT_EQ(TextOf(dialog, CScenSelDlg::IDC_TITLE), std::string(150, 'T'));
}

// A header click leaves nothing selected, as in every table; what is chosen then is the file of its row.
TEST_F(ScenarioTest, AfterAHeaderClickEachRowIsStillItsOwnFile)
{
    UseOwnScenarios();
    Scenario scenario = SampleScenario();
    for (const auto& [name, year] : {std::pair{"Alpha", 1918}, {"Bravo", 1916}, {"Charlie", 1917}}) {
        scenario.title = name;
        scenario.header.nFlagExtra = year;
        WriteScenario(std::string(name) + ".sc", scenario);
    }
    CScenSelDlg* dialog = OpenList();
    EXPECT_STREQ(dialog->GetSelectedFile(), "Alpha.sc");
    const CItfWnd* years = ListOf(dialog).GetColumn(CScenSelDlg::COLUMN_FLAG_EXTRA);
    RECT rect;
    years->GetScreenRect(&rect);
    Click(Middle(*years).x, rect.top - 10);
    EXPECT_EQ(Cells(ListOf(dialog), 0)[0], "Bravo");
    EXPECT_EQ(dialog->GetSelectedFile(), nullptr);
    Press(dialog, CScenSelDlg::IDC_TAKE);
    ASSERT_EQ(Find<CScenSelDlg>(), dialog) << "nothing is selected";
    ClickRow(dialog, 1);
    const POINT charlie = host.cursor;
    Mouse(WM_LBUTTONDBLCLK, charlie.x, charlie.y);
    Frame();
    auto* brief = Find<CScenBriefDlg>();
    EXPECT_EQ(TextOf(brief, CScenBriefDlg::IDC_TITLE), "Charlie");
    Up(charlie.x, charlie.y); // over what has come in the list's place
    EXPECT_EQ(Find<CScenBriefDlg>(), brief);
}

class Nations : public ICustomResources
{
  public:
    using NameAndFlag = std::pair<const char*, const char*>; ///< null for what can't be had
    std::map<int, NameAndFlag> nations;                      ///< by the first words of their ids

    int Find(const CObjGUID* guid) override
    {
        const auto id = static_cast<int>(guid->words[0]);
        return nations.count(id) != 0 ? id : -1;
    }
    bool GetName(int id, char* buffer, int) override { return Put(nations.at(id).first, buffer); }
    bool GetFlagFile(int id, int, char* buffer, int) override { return Put(nations.at(id).second, buffer); }

  private:
    static bool Put(const char* text, char* buffer)
    {
        if (text != nullptr)
            std::strcpy(buffer, text);
        return text != nullptr;
    }
};

TEST_F(ScenarioTest, CustomNationsShowTheirNamesAndFlags)
{
    UseOwnScenarios();
    Scenario scenario = SampleScenario();
    scenario.custom.bCustomA = 1;
    scenario.custom.guidA = {{7, 0, 0, 0}};
    WriteScenario("custom.sc", scenario);
    const Rows<std::map<int, Nations::NameAndFlag>, Texts, Texts> cases = {
        // the scenario's nations are 7 and 1
        {{{1, {"Second", "b.tf"}}, {7, {"First", "a.tf"}}}, {"First", "Second"}, {"a.tf", "b.tf"}},
        {{{7, {"First", "a.tf"}}}, {"First", "?"}, {"a.tf", "white_flg.tf"}},
        {{{7, {nullptr, "a.tf"}}, {1, {"Second", nullptr}}}, {"?", "Second"}, {"a.tf", "white_flg.tf"}},
        {{}, {"?", "?"}, {"white_flg.tf", "white_flg.tf"}},
    };
    Nations known;
    Texts shown;
    engine.onMessage = [&](const Sent& sent) -> Word {
        if (sent.number == MSG_FLAG_TEXTURE)
            shown.push_back(sent.texts.at(0));
        if (sent.number != MSG_GET_CUSTOM_RESOURCES || known.nations.empty())
            return 0;
        return reinterpret_cast<Word>(static_cast<ICustomResources*>(&known));
    };
    for (const auto& [nations, names, flags] : cases) {
        SCOPED_TRACE(names[0] + " and " + names[1]);
        known.nations = nations;
        shown.clear();
        CScenSelDlg* dialog = OpenList();
        const Texts cells = Cells(ListOf(dialog), 0);
        EXPECT_EQ((Texts{cells[CScenSelDlg::COLUMN_SIDE_A], cells[CScenSelDlg::COLUMN_SIDE_B]}), names);
        Press(dialog, CScenSelDlg::IDC_TAKE);
        auto* brief = Find<CScenBriefDlg>();
        ASSERT_NE(brief, nullptr);
        EXPECT_EQ(brief->GetControl(CScenBriefDlg::IDC_NAME_A)->GetCaption(), names[0]);
        EXPECT_EQ(brief->GetControl(CScenBriefDlg::IDC_NAME_B)->GetCaption(), names[1]);
        EXPECT_EQ(shown, flags);
    }
}

TEST_F(ScenarioTest, ItemsOfEveryTypeComeToTheirSidesLists)
{
    UseOwnScenarios();
    WriteScenario("sample.sc", SampleScenario());
    Press(OpenList(), CScenSelDlg::IDC_TAKE);
    auto* brief = Find<CScenBriefDlg>();
    ASSERT_NE(brief, nullptr);
    CItfReportBox& a = TableOf(brief, CScenBriefDlg::IDC_SHIPS_A);
    CItfReportBox& b = TableOf(brief, CScenBriefDlg::IDC_SHIPS_B);
    EXPECT_EQ(a.GetCount(), 1) << "the file's submarine isn't listed, nor its neutral ship";
    EXPECT_EQ(Cells(a, 0), (Texts{"Wagtail", "3", "33324"}));
    // What the parser would hand over if it were asked.
    ScenarioBalloon balloon;
    balloon.nSide = 7;
    ScenarioSubmarine submarine;
    EXPECT_EQ(brief->OnScenarioItem(SCENARIO_UNITS, SCENARIO_BALLOON, &balloon), 1);
    EXPECT_EQ(brief->OnScenarioItem(SCENARIO_UNITS, SCENARIO_SUBMARINE, &submarine), 1);
    EXPECT_EQ(brief->OnScenarioItem(SCENARIO_UNITS + 1, SCENARIO_SUBMARINE, &submarine), 1);
    for (CItfReportBox* list : {&a, &b}) {
        list->Refresh(false);
        ASSERT_EQ(list->GetCount(), 2);
        EXPECT_EQ(Cells(*list, 0)[1] + Cells(*list, 1)[1], "3") << "a ship alone has figures";
    }
}

TEST_F(ScenarioTest, WithoutAnyAndWithABrokenScenario)
{
    UseOwnScenarios();
    CScenSelDlg* dialog = OpenList();
    EXPECT_EQ(dialog->GetSelectedFile(), nullptr);
    Press(dialog, CScenSelDlg::IDC_TAKE);
    dialog->GetControl(CScenSelDlg::IDC_LIST)->Notify(LIST_DOUBLECLICKED);
    EXPECT_EQ(Find<CScenSelDlg>(), dialog) << "nothing was chosen";
    Press(dialog, CScenSelDlg::IDC_CLOSE);
    EXPECT_NE(Find<CMainDlg>(), nullptr);

    WriteScenario("broken.sc", HeadFile(SCENARIO_HEADER(), "Broken", ""));
    Press(OpenList(), CScenSelDlg::IDC_TAKE);
    EXPECT_EQ(Find<CScenBriefDlg>(), nullptr);
    EXPECT_NE(Find<CMainDlg>(), nullptr) << "under the message";
    EXPECT_EQ(TextOf(Find<CValueBox>(), CValueBox::IDC_MESSAGE), "text 70");
    EXPECT_EQ(TakeDebug().size(), 1u) << "which file, and what is wrong with it";
}

TEST_F(ScenarioTest, FromTheListOverTheBriefingToTheCommand)
{
    FakeGraphics graphics;
    graphics.options.nOptionValue = 16;
    engine.AddEntity("graphics", "graphics", &graphics);
    engine.currentScene = &engine;
    Press(OpenList(), CScenSelDlg::IDC_TAKE);
    Press(Find<CScenBriefDlg>(), CScenBriefDlg::IDC_CLOSE);
    EXPECT_NE(Find<CMainDlg>(), nullptr);
    Press(OpenList(), CScenSelDlg::IDC_TAKE);
    Press(Find<CScenBriefDlg>(), CScenBriefDlg::IDC_BACK);
    auto* dialog = Find<CScenSelDlg>();
    ASSERT_NE(dialog, nullptr);
    const std::string file = dialog->GetSelectedFile();
    Press(dialog, CScenSelDlg::IDC_TAKE);
    auto* brief = Find<CScenBriefDlg>();
    ASSERT_NE(brief, nullptr);
    Press(brief, CScenBriefDlg::IDC_TAKE_A); // a click on either takes the other side
    EXPECT_EQ(brief->GetControlAs<CItfButton>(CScenBriefDlg::IDC_TAKE_B)->GetState(), BUTTON_DOWN);
    EXPECT_EQ(TextOf(brief, CScenBriefDlg::IDC_DIFFICULTY), "text 26");
    for (const auto& [control, text] : {std::pair{CScenBriefDlg::IDC_HARDER, "text 27"},
                                        {CScenBriefDlg::IDC_HARDER, "text 25"},
                                        {CScenBriefDlg::IDC_EASIER, "text 27"}}) {
        Press(brief, control);
        EXPECT_EQ(TextOf(brief, CScenBriefDlg::IDC_DIFFICULTY), text);
    }
    Press(brief, CScenBriefDlg::IDC_OPTION);
    Press(brief, CScenBriefDlg::IDC_START);
    EXPECT_EQ(Find<CScenBriefDlg>(), nullptr);
    ASSERT_EQ(Commands(), std::vector<int>{CMD_START_SCENARIO});
    const auto& command = *reinterpret_cast<const ItfCommand*>(engine.SentWith(MSG_ITF_COMMAND)[0].words[0]);
    EXPECT_EQ(command.nSide, 1);
    EXPECT_EQ(command.nNotSideA, 1);
    EXPECT_EQ(command.nNotSideB, 0);
    EXPECT_EQ(command.nDifficulty, 2);
    EXPECT_EQ(command.bBriefFlag, 1);
    EXPECT_EQ(command.nOptionValue, 16);
    EXPECT_EQ(command.szPath, SCENARIO_FOLDER + file);
}

TEST_F(ScenarioTest, Import)
{
    UseOwnScenarios();
    CScenSelDlg* dialog = OpenList();
    std::string asked;
    std::string given = "new.sc";
    Word answer = 0;
    engine.onMessage = [&](const Sent& sent) -> Word {
        if (sent.number != MSG_IMPORT_SCENARIO)
            return 0;
        auto* buffer = reinterpret_cast<char*>(sent.words.at(0));
        asked = buffer;
        std::strcpy(buffer, given.c_str());
        return answer;
    };
    const auto report = [&](int result) {
        Press(dialog, CScenSelDlg::IDC_IMPORT);
        ASSERT_NE(Find<CFileDlg>(), nullptr);
        EXPECT_FALSE(dialog->IsVisible());
        Find<CFileDlg>()->Notify(result);
        EXPECT_EQ(Find<CFileDlg>(), nullptr);
        EXPECT_TRUE(dialog->IsVisible());
    };
    report(CFileDlg::RESULT_CLOSED);
    EXPECT_EQ(asked, "");
    report(CFileDlg::RESULT_ACCEPTED);
    EXPECT_EQ(TextOf(Find<CValueBox>(), CValueBox::IDC_MESSAGE), "text 12204");
    Press(Find<CValueBox>(), CValueBox::IDC_FIRST);
    ASSERT_EQ(Find<CScenSelDlg>(), dialog);

    answer = 1;
    SCENARIO_HEADER header;
    WriteScenario("other.sc", HeadFile(header, "Other", ""));
    WriteScenario("new.sc", HeadFile(header, "Zulu", "Brought in."));
    for (const char* name : {"new.sc", "NEW.Sc"}) {
        given = name;
        ListOf(dialog).SetCurSel(0);
        report(CFileDlg::RESULT_ACCEPTED);
        EXPECT_STREQ(dialog->GetSelectedFile(), "new.sc") << name;
        EXPECT_EQ(TextOf(dialog, CScenSelDlg::IDC_DESCRIPTION), "Brought in.");
    }
    given = "short.sc";
    WriteScenario(given, std::string(sizeof header - 1, '\0'));
    report(CFileDlg::RESULT_ACCEPTED);
    EXPECT_EQ(ListOf(dialog).GetCount(), 2) << "without a whole head nothing changes";
    EXPECT_STREQ(dialog->GetSelectedFile(), "new.sc");
}

TEST_F(ScenarioTest, TheLogicMayCloseEveryDialogDuringAnImport)
{
    for (const bool menu : {true, false}) {
        engine.onMessage = [&](const Sent& sent) -> Word {
            if (sent.number != MSG_IMPORT_SCENARIO)
                return 0;
            if (menu)
                SendEvent({.code = EVENT_MAIN_MENU});
            else
                Send(MSG_ITF_CLOSE_ALL);
            return menu ? 1 : 0;
        };
        Press(OpenList(), CScenSelDlg::IDC_IMPORT);
        Press(Find<CFileDlg>(), CFileDlg::IDC_ACCEPT);
        EXPECT_EQ(Find<CFileDlg>(), nullptr);
        EXPECT_EQ(Find<CScenSelDlg>(), nullptr);
        EXPECT_EQ(Find<CValueBox>(), nullptr) << "nobody is left to be told";
        EXPECT_EQ(Find<CMainDlg>() != nullptr, menu);
    }
}

TEST_F(ScenarioTest, AnImportWithoutItsFileDialogLeavesTheListUsable)
{
    CScenSelDlg* dialog = OpenList();
    WriteDialogs("FileDlg { DIALOG, \"\" 0 }");
    EXPECT_THROW(ClickControl(dialog, CScenSelDlg::IDC_IMPORT), int);
    EXPECT_FALSE(TakeDebug().empty());
    EXPECT_TRUE(CItfWnd::IsDrawing() && dialog->IsVisible());
    std::filesystem::remove(userFolder / "resource/txt_res/itfdlg.ini");
    Press(dialog, CScenSelDlg::IDC_IMPORT);
    EXPECT_NE(Find<CFileDlg>(), nullptr);
    EXPECT_NE(dialog->GetSelectedFile(), nullptr);
}

} // namespace
