// The scenario list and the briefing with the shipped data, and files that are broken on purpose.

#include <algorithm>
#include <cstring>
#include <utility>

#include "controls/itfbutton.h"
#include "controls/itfreportbox.h"
#include "controls/itftextbox.h"
#include "flow/flow.h"
#include "flow/maindlg.h"
#include "flow/valuebox.h"
#include "itfflag.h"
#include "keelworks/scenario_samples.h"
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
        const POINT at = Middle(*dialog->GetControl(id));
        Click(at.x, at.y);
        Frame();
        CItfWnd::SetDrawing(true);
    }
    POINT Middle(const CItfWnd& wnd)
    {
        RECT rect;
        wnd.GetScreenRect(&rect);
        return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
    }
    CItfReportBox& ListOf(CItfDialog* dialog, int id = CScenSelDlg::IDC_LIST)
    {
        return *dialog->GetControlAs<CItfReportBox>(id);
    }
    // A press or double click on a line of the list, and a click on the cell above a column.
    POINT RowPoint(CItfDialog* dialog, int row)
    {
        RECT rect;
        ListOf(dialog).GetColumn(0)->GetScreenRect(&rect);
        const int height = dialog->GetFontHeight(ListOf(dialog).GetColumn(0)->GetFontHandle());
        return {rect.left + 10, rect.top + row * height + height / 2};
    }
    void ClickHeader(CItfDialog* dialog, int column)
    {
        RECT rect;
        ListOf(dialog).GetColumn(column)->GetScreenRect(&rect);
        Click((rect.left + rect.right) / 2, rect.top - 10);
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
    // A file that has gone leaves what is shown.
    std::filesystem::remove(userFolder / "scenarios/b.sc");
    const POINT gone = RowPoint(dialog, 0);
    Click(gone.x, gone.y);
    EXPECT_STREQ(dialog->GetSelectedFile(), "b.sc");
    EXPECT_EQ(TextOf(dialog, CScenSelDlg::IDC_TITLE), std::string(150, 'T'));
    ClickControl(dialog, CScenSelDlg::IDC_CLOSE);
    EXPECT_EQ(Find<CScenSelDlg>(), nullptr);
    EXPECT_NE(Find<CMainDlg>(), nullptr);
}

// A header click leaves nothing selected, as in every table; what is chosen then is the file of its row.
TEST_F(ScenarioTest, AfterAHeaderClickEachRowIsStillItsOwnFile)
{
    UseOwnScenarios();
    Scenario scenario = SampleScenario();
    for (const auto& [name, year] : {std::pair{"Alpha", 1918}, {"Bravo", 1916}, {"Charlie", 1917}}) {
        scenario.title = name;
        scenario.header.nFlagExtra = year;
        const std::vector<char> bytes = CScenarioWriter(scenario).GetBytes();
        WriteScenario(std::string(name) + ".sc", std::string(bytes.begin(), bytes.end()));
    }
    Menu();
    Choose(MENU_SCENARIO);
    auto* dialog = Find<CScenSelDlg>();
    EXPECT_STREQ(dialog->GetSelectedFile(), "Alpha.sc");
    ClickHeader(dialog, CScenSelDlg::COLUMN_FLAG_EXTRA);
    EXPECT_EQ(Cells(ListOf(dialog), 0)[0], "Bravo");
    EXPECT_EQ(dialog->GetSelectedFile(), nullptr);
    ClickControl(dialog, CScenSelDlg::IDC_TAKE);
    ASSERT_EQ(Find<CScenSelDlg>(), dialog) << "nothing is selected";
    const POINT charlie = RowPoint(dialog, 1);
    Click(charlie.x, charlie.y);
    EXPECT_STREQ(dialog->GetSelectedFile(), "Charlie.sc");
    EXPECT_EQ(TextOf(dialog, CScenSelDlg::IDC_TITLE), "Charlie");
    Mouse(WM_LBUTTONDBLCLK, charlie.x, charlie.y);
    Frame();
    CItfWnd::SetDrawing(true);
    auto* brief = Find<CScenBriefDlg>();
    ASSERT_NE(brief, nullptr);
    EXPECT_EQ(TextOf(brief, CScenBriefDlg::IDC_TITLE), "Charlie");
    Up(charlie.x, charlie.y); // over what has come in the list's place
    EXPECT_EQ(Find<CScenBriefDlg>(), brief);
}

// Those of the given first words of their ids; a null name or flag can't be had.
class Nations : public ICustomResources
{
  public:
    struct Nation {
        std::uint32_t id;
        const char* name;
        const char* flag;
    };
    std::vector<Nation> nations;

    int Find(const CObjGUID* guid) override
    {
        const auto found = std::ranges::find(nations, guid->words[0], &Nation::id);
        return found != nations.end() ? static_cast<int>(found - nations.begin()) : -1;
    }
    bool GetName(int index, char* buffer, int size) override { return Put(At(index).name, buffer, size); }
    bool GetFlagFile(int index, int kind, char* buffer, int size) override
    {
        return kind == 0 && Put(At(index).flag, buffer, size);
    }

  private:
    const Nation& At(int index) { return nations.at(static_cast<std::size_t>(index)); }
    static bool Put(const char* text, char* buffer, int size)
    {
        EXPECT_EQ(size, 260);
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
    const std::vector<char> bytes = CScenarioWriter(scenario).GetBytes();
    WriteScenario("custom.sc", std::string(bytes.begin(), bytes.end()));
    const struct {
        const char* what;
        std::vector<Nations::Nation> nations; // the scenario's are 7 and 1
        std::vector<std::string> names;
        std::vector<std::string> flags;
    } cases[] = {
        {"both known", {{1, "Second", "b.tf"}, {7, "First", "a.tf"}}, {"First", "Second"}, {"a.tf", "b.tf"}},
        {"one unknown", {{7, "First", "a.tf"}}, {"First", "?"}, {"a.tf", "white_flg.tf"}},
        {"half known",
         {{7, nullptr, "a.tf"}, {1, "Second", nullptr}},
         {"?", "Second"},
         {"a.tf", "white_flg.tf"}},
        {"no list", {}, {"?", "?"}, {"white_flg.tf", "white_flg.tf"}},
    };
    Nations nations;
    std::vector<std::string> flags;
    engine.onMessage = [&](const Sent& sent) -> Word {
        if (sent.number == MSG_FLAG_TEXTURE)
            flags.push_back(sent.texts.at(0));
        if (sent.number != MSG_GET_CUSTOM_RESOURCES || nations.nations.empty())
            return 0;
        return reinterpret_cast<Word>(static_cast<ICustomResources*>(&nations));
    };
    Menu();
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        nations.nations = test.nations;
        flags.clear();
        Choose(MENU_SCENARIO);
        auto* dialog = Find<CScenSelDlg>();
        ASSERT_NE(dialog, nullptr);
        const std::vector<std::string> cells = Cells(ListOf(dialog), 0);
        EXPECT_EQ(cells[CScenSelDlg::COLUMN_SIDE_A], test.names[0]);
        EXPECT_EQ(cells[CScenSelDlg::COLUMN_SIDE_B], test.names[1]);
        ClickControl(dialog, CScenSelDlg::IDC_TAKE);
        auto* brief = Find<CScenBriefDlg>();
        ASSERT_NE(brief, nullptr);
        EXPECT_EQ(brief->GetControl(CScenBriefDlg::IDC_NAME_A)->GetCaption(), test.names[0]);
        EXPECT_EQ(brief->GetControl(CScenBriefDlg::IDC_NAME_B)->GetCaption(), test.names[1]);
        EXPECT_EQ(flags, test.flags);
        ClickControl(brief, CScenBriefDlg::IDC_CLOSE);
    }
}

TEST_F(ScenarioTest, ItemsOfEveryTypeComeToTheirSidesLists)
{
    UseOwnScenarios();
    const std::vector<char> bytes = SampleFile();
    WriteScenario("sample.sc", std::string(bytes.begin(), bytes.end()));
    Menu();
    Choose(MENU_SCENARIO);
    ClickControl(Find<CScenSelDlg>(), CScenSelDlg::IDC_TAKE);
    auto* brief = Find<CScenBriefDlg>();
    ASSERT_NE(brief, nullptr);
    CItfReportBox& a = ListOf(brief, CScenBriefDlg::IDC_SHIPS_A);
    CItfReportBox& b = ListOf(brief, CScenBriefDlg::IDC_SHIPS_B);
    using Row = std::vector<std::string>;
    EXPECT_EQ(a.GetCount(), 1) << "the file's submarine isn't listed, nor its neutral ship";
    EXPECT_EQ(b.GetCount(), 1);
    EXPECT_EQ(Cells(a, 0), (Row{"Wagtail", "3", "33324"}));

    // The bytes of an item, as the parser hands it over: every word of it counts if it is read by mistake.
    alignas(4) char item[sizeof(ScenarioShip)];
    std::memset(item, 0x11, sizeof item);
    const auto put = [&](std::size_t offset, std::int32_t value) {
        std::memcpy(item + offset, &value, sizeof value);
    };
    std::strcpy(item + 0x65, "Name");
    put(0xb0, 5);
    std::int32_t weapons = 1;
    for (const std::size_t offset : {0xd4, 0xd8, 0xdc, 0xe4, 0xf0, 0xf8, 0x104})
        put(offset, std::exchange(weapons, weapons * 10));
    const struct {
        int category;
        int type;
        std::size_t sideAt;
        std::int32_t side;
        CItfReportBox* list;
        Row row;
    } cases[] = {
        {0, 1, 0x1b0, 0, &a, {"Name", "5", "1111111"}},
        {0, 1, 0x1b0, 1, &b, {"Name", "5", "1111111"}},
        {0, 1, 0x1b0, 2, nullptr, {}},
        {0, 2, 0xf8, 0, &a, {"Name", "", ""}},
        {0, 2, 0xf8, 7, &b, {"Name", "", ""}},
        {0, 4, 0xfc, 0, &a, {"Name", "", ""}},
        {0, 4, 0xfc, 1, &b, {"Name", "", ""}},
        {0, 8, 0xfc, 0, nullptr, {}},
        {1, 1, 0x1b0, 0, nullptr, {}},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(std::to_string(test.type) + " of side " + std::to_string(test.side));
        a.Clear();
        b.Clear();
        const std::int32_t before = *reinterpret_cast<const std::int32_t*>(item + test.sideAt);
        put(test.sideAt, test.side);
        EXPECT_EQ(brief->OnScenarioItem(test.category, test.type, item), 1);
        put(test.sideAt, before);
        a.Refresh(false);
        b.Refresh(false);
        EXPECT_EQ(a.GetCount(), test.list == &a ? 1 : 0);
        EXPECT_EQ(b.GetCount(), test.list == &b ? 1 : 0);
        if (test.list != nullptr) {
            EXPECT_EQ(Cells(*test.list, 0), test.row);
        }
    }
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
    FakeGraphics graphics;
    graphics.options.nOptionValue = 16;
    engine.AddEntity("graphics", "graphics", &graphics);
    engine.currentScene = &engine;
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
    EXPECT_EQ(command.nOptionValue, 16);
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
    Menu();
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
        Choose(MENU_SCENARIO);
        ClickControl(Find<CScenSelDlg>(), CScenSelDlg::IDC_IMPORT);
        ClickControl(Find<CFileDlg>(), CFileDlg::IDC_ACCEPT);
        EXPECT_EQ(Find<CFileDlg>(), nullptr);
        EXPECT_EQ(Find<CScenSelDlg>(), nullptr);
        EXPECT_EQ(Find<CValueBox>(), nullptr) << "nobody is left to be told";
        EXPECT_EQ(Find<CMainDlg>() != nullptr, menu);
    }
}

TEST_F(ScenarioTest, AnImportWithoutItsFileDialogLeavesTheListUsable)
{
    Menu();
    Choose(MENU_SCENARIO);
    auto* dialog = Find<CScenSelDlg>();
    const POINT import = Middle(*dialog->GetControl(CScenSelDlg::IDC_IMPORT));
    for (const char* resource : {"Other { DIALOG, \"\", 0, 0, 9, 9 }", "FileDlg { DIALOG, \"\" 0 }"}) {
        WriteDialogs(resource);
        EXPECT_THROW(Click(import.x, import.y), int) << resource;
        EXPECT_EQ(TakeDebug().back(), "Interface dialog creation failed. Error code: 1\r\n");
        EXPECT_TRUE(CItfWnd::IsDrawing());
        EXPECT_TRUE(dialog->IsVisible());
        EXPECT_EQ(Find<CFileDlg>(), nullptr);
    }
    std::filesystem::remove(userFolder / "resource/txt_res/itfdlg.ini");
    ClickControl(dialog, CScenSelDlg::IDC_IMPORT);
    EXPECT_NE(Find<CFileDlg>(), nullptr);
    EXPECT_NE(dialog->GetSelectedFile(), nullptr);
}

} // namespace
