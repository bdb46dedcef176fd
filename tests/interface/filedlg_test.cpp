// The file dialog on the shipped data, driven by mouse and keys, and the walk under it.

#include <algorithm>
#include <filesystem>
#include <functional>

#include "controls/itfeditbox.h"
#include "controls/itfreportbox.h"
#include "flow/valuebox.h"
#include "platform/files.h"
#include "saves/filedlg.h"
#include "support/rows.h"
#include "support/toolkit_fixture.h"

using namespace seawarden_test;
namespace fs = std::filesystem;

namespace
{

using Texts = std::vector<std::string>;

class FileDlgTest : public ToolkitTest
{
  protected:
    void SetUp() override
    {
        for (const char* file : {"beta.EXP", "Alpha.exp", "alpha.txt", "noext", "exp", ".hidden.exp",
                                 "Zulu/inner.exp", "\xe6\xb5\xb7/deep.exp"})
            WriteFile(std::string("Scenarios/") + file, "x");
        fs::create_directories(userFolder / "home");
        host.homeFolder = (userFolder / "home").string();
        host.mountPoints = {(userFolder / "Scenarios/Zulu").string(), "/no/such/drive"};
        engine.textTable.texts = {{TEXT_DESKTOP, "Desktop"},
                                  {TEXT_COMPUTER, "Computer"},
                                  {TEXT_HOME, "Home"},
                                  {TEXT_PLAYER_FOLDER, "Mine"},
                                  {TEXT_GAME_FOLDER, "Game"}};
        engine.refused.insert("shader");
        Start(EVENT_MAIN_MENU);
        ASSERT_TRUE(parent.Create(nullptr, nullptr, nullptr, nullptr, 1, 0, &engine));
        parent.Show(true);
        parent.SetModal();
        parent.onMessage = [this](const RecordingWnd::Got& got) {
            if (got.msg == ITFM_NOTIFY)
                OnReport(static_cast<int>(got.wParam), got.lParam);
        };
    }
    void TearDown() override
    {
        dlg.reset();
        parent.Destroy();
        ToolkitTest::TearDown();
    }

    void Open() { Open(User("/Scenarios").c_str()); }
    void Open(const char* folder)
    {
        dlg = std::make_unique<CFileDlg>();
        ASSERT_TRUE(dlg->Create("Import", nullptr, nullptr, &parent, DIALOG_ID, 2, &engine, folder));
        dlg->AddFilter("f1", "exp");
        dlg->AddFilter("all", nullptr);
        dlg->Show(true);
        CItfWnd::RedrawAll();
    }
    void OnReport(int code, int id)
    {
        EXPECT_EQ(id, DIALOG_ID);
        reports.push_back(code);
        if (code == CFileDlg::RESULT_ACCEPTED)
            result = dlg->GetResult();
        onReport();
    }

    CItfReportBox& List() { return TableOf(dlg.get(), CFileDlg::IDC_LIST); }
    CItfEditBox& Edit(int id) { return *dlg->GetControlAs<CItfEditBox>(id); }
    std::string Folder() { return Edit(CFileDlg::IDC_FOLDER).GetText(); }
    std::string File() { return Edit(CFileDlg::IDC_FILE).GetText(); }
    Texts Listed()
    {
        Texts rows;
        for (int i = 0; i < List().GetCount(); ++i)
            rows.push_back(List().GetItem(i, 0).m_Text);
        return rows;
    }
    void ClickOn(int id) { ClickControl(dlg.get(), id); }
    void Press(const std::string& text)
    {
        const Texts rows = Listed();
        const auto row = std::find(rows.begin(), rows.end(), text) - rows.begin();
        const POINT at = RowPoint(List(), static_cast<int>(row));
        Click(at.x, at.y);
    }
    void Double(const std::string& text)
    {
        Press(text);
        Mouse(WM_LBUTTONDBLCLK, host.cursor.x, host.cursor.y);
    }
    void TypeInto(int id, const std::string& text)
    {
        Edit(id).SetText("");
        ClickOn(id);
        Type(text + "\r");
    }
    std::string User(const std::string& below = "") const { return userFolder.string() + below; }

    static constexpr int DIALOG_ID = 100;
    RecordingWnd parent;
    std::unique_ptr<CFileDlg> dlg;
    std::vector<int> reports;
    std::string result;
    std::function<void()> onReport = [] {};
};

TEST_F(FileDlgTest, ListFilterPressAndDoubleClick)
{
    const Texts all = {"Zulu", "\xe6\xb5\xb7", "Alpha.exp", "alpha.txt", "beta.EXP", "exp", "noext"};
    const Texts filtered = {"Zulu", "\xe6\xb5\xb7", "Alpha.exp", "beta.EXP"};
    Open();
    EXPECT_EQ(Folder(), User("/Scenarios"));
    EXPECT_EQ(Listed(), all);
    dlg->SetFilter(0);
    EXPECT_EQ(Listed(), filtered);
    for (int index : {2, -1})
        dlg->SetFilter(index);
    EXPECT_EQ(Listed(), filtered) << "there is no such filter";
    dlg->SetFilter(1);
    EXPECT_EQ(Listed(), all);

    Press("beta.EXP");
    EXPECT_EQ(File(), "beta.EXP");
    Press("Zulu");
    EXPECT_EQ(File(), "");
    Double("\xe6\xb5\xb7");
    EXPECT_EQ(Folder(), User("/Scenarios/\xe6\xb5\xb7")) << "a name that the code page lacks";
    Double("deep.exp");
    EXPECT_EQ(reports, std::vector<int>{CFileDlg::RESULT_ACCEPTED});
    EXPECT_EQ(result, User("/Scenarios/\xe6\xb5\xb7\\deep.exp"));
    EXPECT_EQ(PlatformResolveRead(result.c_str()), User("/Scenarios/\xe6\xb5\xb7/deep.exp"));
    ClickOn(CFileDlg::IDC_CLOSE);
    EXPECT_EQ(reports.back(), CFileDlg::RESULT_CLOSED);
}

TEST_F(FileDlgTest, AboveTheDesktopIsNothing)
{
    Open();
    for (int i = 0; i < 3; ++i)
        ClickOn(CFileDlg::IDC_UP);
    EXPECT_EQ(Folder(), "Desktop");
    const std::string drive = "drive (/no/such/drive)";
    const Texts places = {"Computer", drive,  "Game",
                          "Home",     "Mine", "Zulu (" + User("/Scenarios/Zulu") + ")"};
    EXPECT_EQ(Listed(), places);
    Double(drive);
    EXPECT_EQ(Folder(), "Desktop") << "out of reach";
    TypeInto(CFileDlg::IDC_FILE, "new.sav");
    EXPECT_EQ(result, "\\new.sav");
    Double(places.back());
    EXPECT_EQ(Listed(), Texts{"inner.exp"});
    ClickOn(CFileDlg::IDC_UP);
    EXPECT_EQ(Folder(), "Desktop") << "above a place";
}

TEST_F(FileDlgTest, ATypedPathIsEnteredAndATypedNameNeedNotExist)
{
    Open();
    const Rows<const char*, std::string> cases = {
        {"scenarios\\zulu", User("/Scenarios/Zulu")},
        {"~", User("/home")},
        {"/no/such/folder", User("/home")},
        {"scenarios/noext", User("/home")},
        {"", User("/home")},
        {"~/../Scenarios/", User("/Scenarios")},
        {"HOME", User("/home")},
        {"/", "/"},
        {"desktop", "Desktop"},
        {"mine", User()},
    };
    for (const auto& [typed, folder] : cases) {
        TypeInto(CFileDlg::IDC_FOLDER, typed);
        EXPECT_TRUE(Folder() == folder || Folder() == typed) << typed << " gave " << Folder();
        dlg->SetFilter(1); // fills anew, so that the edit box shows where the walk is
        EXPECT_EQ(Folder(), folder) << typed;
    }
    TypeInto(CFileDlg::IDC_FILE, "new.sav");
    EXPECT_EQ(result, User("\\new.sav"));
    ClickOn(CFileDlg::IDC_ACCEPT);
    EXPECT_EQ(reports, std::vector<int>(2, CFileDlg::RESULT_ACCEPTED));
}

TEST_F(FileDlgTest, WhereTheWalkBegins)
{
    const std::string tooLong = "/" + std::string(200, 'l') + "/" + std::string(100, 'l');
    fs::create_directories(User(tooLong));
    const std::string game = std::string(SEAWARDEN_SOURCE_DIR) + "/data";
    const Rows<std::string, std::string> cases = {
        {"", game},
        {".\\NOWHERE", game},
        {".\\SCENARIOS", game + "/scenarios"}, // the player has one too
        {"home", User("/home")},
        {User("/Scenarios/noext"), "Desktop"},
        {User(std::string(300, '/') + "Scenarios"), User("/Scenarios")},
        {User(tooLong), "Desktop"},
    };
    for (const auto& [start, folder] : cases) {
        Open(start.c_str());
        EXPECT_EQ(Folder(), folder) << start;
    }
}

TEST_F(FileDlgTest, FoldersThatVanishChangeNothing)
{
    Open();
    Double("Zulu");
    fs::remove_all(userFolder / "Scenarios/Zulu");
    dlg->SetFilter(0);
    EXPECT_EQ(Folder(), User("/Scenarios/Zulu"));
    EXPECT_EQ(Listed(), Texts());
    fs::remove_all(userFolder / "Scenarios");
    ClickOn(CFileDlg::IDC_UP);
    EXPECT_EQ(Folder(), User()) << "the nearest that is left";

    WriteFile("sub/file", "x");
    dlg->SetFilter(1);
    fs::remove_all(userFolder / "sub");
    Press("sub");
    EXPECT_EQ(File(), "");
}

TEST_F(FileDlgTest, AnErrorInTheReportOpensABox)
{
    Open();
    onReport = [] { throw 7; };
    const std::size_t before = Toolkit().windows.size();
    TypeInto(CFileDlg::IDC_FILE, "x");
    ClickControl(Find<CValueBox>(), CValueBox::IDC_FIRST);
    Frame(); // the box's answer
    EXPECT_EQ(Toolkit().windows.size(), before);
    EXPECT_EQ(CItfWnd::GetModalId(), parent.GetId());

    ClickOn(CFileDlg::IDC_ACCEPT);
    ASSERT_NE(Find<CValueBox>(), nullptr);
    dlg.reset();
    EXPECT_EQ(CItfWnd::GetModalId(), -1) << "an open box goes with its dialog";
}

TEST_F(FileDlgTest, TheParentMayDeleteTheDialogInItsHandler)
{
    onReport = [this] { dlg.reset(); };
    Open();
    const std::size_t without = Toolkit().windows.size();
    ClickOn(CFileDlg::IDC_CLOSE);
    Open();
    EXPECT_EQ(Toolkit().windows.size(), without) << "nothing of the first was left";
    Double("noext");
    Open();
    onReport = [this] {
        dlg.reset();
        throw 7;
    };
    EXPECT_THROW(TypeInto(CFileDlg::IDC_FILE, "typed"), int) << "nobody is left to show it";
    EXPECT_EQ(reports.size(), 3u);
}

} // namespace
