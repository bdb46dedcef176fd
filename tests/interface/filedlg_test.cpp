// The file dialog on the shipped data, driven by mouse and keys, and the walk under it.

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "controls/itfeditbox.h"
#include "controls/itfreportbox.h"
#include "controls/itftextbox.h"
#include "flow/text_numbers.h"
#include "flow/valuebox.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "saves/filedlg.h"
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
        DropUi();
        ToolkitTest::TearDown();
    }

    void Open(const char* folder = ".\\SCENARIOS")
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
        if (throws)
            throw 7;
        if (deletes)
            dlg.reset();
    }

    CItfReportBox& List() { return *dlg->GetControlAs<CItfReportBox>(CFileDlg::IDC_LIST); }
    CItfEditBox& Edit(int id) { return *dlg->GetControlAs<CItfEditBox>(id); }
    std::string Folder() { return Edit(CFileDlg::IDC_FOLDER).GetText(); }
    std::string File() { return Edit(CFileDlg::IDC_FILE).GetText(); }
    Texts Rows()
    {
        Texts rows;
        for (int i = 0; i < List().GetCount(); ++i)
            rows.push_back(List().GetItem(i, 0).m_Text);
        return rows;
    }
    static POINT Middle(const CItfWnd& wnd)
    {
        RECT rect;
        wnd.GetScreenRect(&rect);
        return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
    }
    void ClickControl(int id)
    {
        const POINT at = Middle(*dlg->GetControl(id));
        Click(at.x, at.y);
    }
    POINT RowPoint(const std::string& text)
    {
        const Texts rows = Rows();
        const auto row = static_cast<int>(std::find(rows.begin(), rows.end(), text) - rows.begin());
        EXPECT_LT(row, List().GetCount()) << text;
        RECT rect;
        List().GetColumn(0)->GetScreenRect(&rect);
        return {rect.left + 10, rect.top + 20 * row + 10};
    }
    void Press(const std::string& text) { Click(RowPoint(text).x, RowPoint(text).y); }
    void Double(const std::string& text)
    {
        const POINT at = RowPoint(text);
        Click(at.x, at.y);
        Mouse(WM_LBUTTONDBLCLK, at.x, at.y);
    }
    void TypeInto(int id, const std::string& text)
    {
        Edit(id).SetText("");
        ClickControl(id);
        Type(text + "\r");
    }
    std::string User(const std::string& below = "") const { return userFolder.string() + below; }

    static constexpr int DIALOG_ID = 100;
    RecordingWnd parent;
    std::unique_ptr<CFileDlg> dlg;
    std::vector<int> reports;
    std::string result;
    bool throws = false;
    bool deletes = false;
};

TEST_F(FileDlgTest, FoldersComeFirstAndTheFilterHoldsForFilesAlone)
{
    const Texts all = {"Zulu", "\xe6\xb5\xb7", "Alpha.exp", "alpha.txt", "beta.EXP", "exp", "noext"};
    const Texts filtered = {"Zulu", "\xe6\xb5\xb7", "Alpha.exp", "beta.EXP"};
    Open();
    EXPECT_EQ(Folder(), User("/Scenarios"));
    EXPECT_EQ(Rows(), all);
    dlg->SetFilter(0);
    EXPECT_EQ(Rows(), filtered);
    for (int index : {2, -1})
        dlg->SetFilter(index);
    EXPECT_EQ(Rows(), filtered) << "there is no such filter";
    dlg->SetFilter(1);
    EXPECT_EQ(Rows(), all);
    EXPECT_EQ(List().GetCurSel(), 0);
    EXPECT_EQ(List().GetItem(2, 0).m_nColour, 0xc8c8c8u);
    EXPECT_TRUE(dlg->GetCaption().empty());
}

TEST_F(FileDlgTest, APressNamesAFileAndADoubleClickTakesItOrEnters)
{
    Open();
    Press("beta.EXP");
    EXPECT_EQ(File(), "beta.EXP");
    Press("Zulu");
    EXPECT_EQ(File(), "");
    Double("\xe6\xb5\xb7");
    EXPECT_EQ(Folder(), User("/Scenarios/\xe6\xb5\xb7")) << "a name that the code page lacks";
    EXPECT_EQ(Rows(), Texts{"deep.exp"});
    Double("deep.exp");
    EXPECT_EQ(reports, std::vector<int>{CFileDlg::RESULT_ACCEPTED});
    EXPECT_EQ(result, User("/Scenarios/\xe6\xb5\xb7\\deep.exp"));
    EXPECT_EQ(PlatformResolveRead(result.c_str()), User("/Scenarios/\xe6\xb5\xb7/deep.exp"));
    ClickControl(CFileDlg::IDC_UP);
    EXPECT_EQ(Folder(), User("/Scenarios"));
    ClickControl(CFileDlg::IDC_CLOSE);
    EXPECT_EQ(reports.back(), CFileDlg::RESULT_CLOSED);
}

TEST_F(FileDlgTest, AboveTheDesktopIsNothing)
{
    Open(User("/Scenarios").c_str());
    for (std::ptrdiff_t i = 0; i < std::distance(userFolder.begin(), userFolder.end()) + 3; ++i)
        ClickControl(CFileDlg::IDC_UP);
    EXPECT_EQ(Folder(), "Desktop");
    const Texts places = {"Computer", "Game", "Home", "Mine", "Zulu (" + User("/Scenarios/Zulu") + ")"};
    EXPECT_EQ(Rows(), places) << "a drive that is gone isn't shown";
    TypeInto(CFileDlg::IDC_FILE, "new.sav");
    EXPECT_EQ(result, "\\new.sav");
    Double(places.back());
    EXPECT_EQ(Rows(), Texts{"inner.exp"});
    ClickControl(CFileDlg::IDC_UP);
    EXPECT_EQ(Folder(), "Desktop") << "above a place";
    Double("Computer");
    EXPECT_EQ(Folder(), "/");
}

TEST_F(FileDlgTest, ATypedPathIsEnteredAndATypedNameNeedNotExist)
{
    Open();
    const struct {
        const char* typed;
        std::string folder;
    } cases[] = {
        {"scenarios\\zulu", User("/Scenarios/Zulu")},
        {"~", User("/home")},
        {"/no/such/folder", User("/home")},
        {"scenarios/noext", User("/home")},
        {"..", User("/home")},
        {"", User("/home")},
        {"~/../Scenarios/", User("/Scenarios")},
        {"HOME", User("/home")},
        {"/", "/"},
        {"desktop", "Desktop"},
        {"mine", User()},
    };
    for (const auto& c : cases) {
        TypeInto(CFileDlg::IDC_FOLDER, c.typed);
        CItfReportBox& list = List();
        const bool entered = Folder() == c.folder;
        EXPECT_TRUE(entered || Folder() == c.typed) << c.typed << " gave " << Folder();
        dlg->SetFilter(1); // fills anew, so that the edit box shows where the walk is
        EXPECT_EQ(Folder(), c.folder) << c.typed;
        EXPECT_EQ(&list, &List());
    }
    TypeInto(CFileDlg::IDC_FILE, "new.sav");
    EXPECT_EQ(result, User("\\new.sav"));
    ClickControl(CFileDlg::IDC_ACCEPT);
    EXPECT_EQ(reports, std::vector<int>(2, CFileDlg::RESULT_ACCEPTED));
}

TEST_F(FileDlgTest, WhereTheWalkBegins)
{
    const std::pair<std::string, std::string> cases[] = {
        {"", User()},
        {".\\NOWHERE", User()},
        {"resource\\txt_res", std::string(SEAWARDEN_SOURCE_DIR) + "/data/resource/txt_res"},
        {User("/Scenarios/noext"), "Desktop"},
        {User(std::string(300, '/') + "Scenarios"), User("/Scenarios")},
        {User("/" + std::string(200, 'l') + "/" + std::string(100, 'l')), "Desktop"},
    };
    fs::create_directories(userFolder / std::string(200, 'l') / std::string(100, 'l'));
    for (const auto& [start, folder] : cases) {
        Open(start.c_str());
        EXPECT_EQ(Folder(), folder) << start;
        dlg.reset();
    }
}

TEST_F(FileDlgTest, FoldersThatVanishChangeNothing)
{
    Open();
    Double("Zulu");
    fs::remove_all(userFolder / "Scenarios/Zulu");
    dlg->SetFilter(0);
    EXPECT_EQ(Folder(), User("/Scenarios/Zulu"));
    EXPECT_EQ(Rows(), Texts());
    fs::remove_all(userFolder / "Scenarios");
    ClickControl(CFileDlg::IDC_UP);
    EXPECT_EQ(Folder(), User()) << "the nearest that is left";

    WriteFile("sub/file", "x");
    dlg->SetFilter(1);
    fs::remove_all(userFolder / "sub");
    Press("sub");
    EXPECT_EQ(File(), "");
    EXPECT_EQ(reports, std::vector<int>());
}

TEST_F(FileDlgTest, AnUnreadableFolderIsNotEntered)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "everything is readable to root";
    Open();
    ASSERT_EQ(chmod(User("/Scenarios/Zulu").c_str(), 0), 0);
    Double("Zulu");
    EXPECT_EQ(Folder(), User("/Scenarios"));
    chmod(User("/Scenarios/Zulu").c_str(), 0700);
}

TEST_F(FileDlgTest, AnErrorInTheReportOpensABox)
{
    Open();
    throws = true;
    const std::size_t before = Toolkit().windows.size();
    TypeInto(CFileDlg::IDC_FILE, "x");
    auto* box = dynamic_cast<CValueBox*>(CItfWnd::FindWindow(CItfWnd::GetModalId()));
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->GetParent(), dlg.get());
    const POINT ok = Middle(*box->GetControl(CValueBox::IDC_FIRST));
    Click(ok.x, ok.y);
    Frame(); // the box's answer
    EXPECT_EQ(Toolkit().windows.size(), before);
    EXPECT_EQ(CItfWnd::GetModalId(), parent.GetId());

    ClickControl(CFileDlg::IDC_ACCEPT);
    ASSERT_NE(dynamic_cast<CValueBox*>(CItfWnd::FindWindow(CItfWnd::GetModalId())), nullptr);
    dlg.reset();
    EXPECT_EQ(CItfWnd::GetModalId(), -1) << "an open box goes with its dialog";
}

TEST_F(FileDlgTest, TheParentMayDeleteTheDialogInItsHandler)
{
    deletes = true;
    Open();
    const std::size_t without = Toolkit().windows.size();
    ClickControl(CFileDlg::IDC_CLOSE);
    Open();
    EXPECT_EQ(Toolkit().windows.size(), without) << "nothing of the first was left";
    Double("noext");
    Open();
    TypeInto(CFileDlg::IDC_FILE, "typed");
    Open();
    ClickControl(CFileDlg::IDC_ACCEPT);
    EXPECT_EQ(dlg, nullptr);
    EXPECT_EQ(reports.size(), 4u);
}

/// Its mount table can't be had.
class BrokenHost : public FakeHost
{
  public:
    std::vector<std::string> MountPoints() override { throw std::runtime_error("no table"); }
};

TEST_F(FileDlgTest, WithoutADesktopCreateThrowsZero)
{
    BrokenHost broken;
    dlg = std::make_unique<CFileDlg>();
    try {
        dlg->Create("Import", nullptr, nullptr, &parent, DIALOG_ID, 0, &engine, "");
        ADD_FAILURE() << "nothing was thrown";
    } catch (int code) {
        EXPECT_EQ(code, 0);
    }
    EXPECT_EQ(broken.debug, Texts());
}

} // namespace
