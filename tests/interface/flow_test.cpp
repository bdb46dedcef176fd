// The main window's flow with the shipped data: main menu, boxes, events of the logic, the way out.

#include <algorithm>
#include <cstring>

#include "controls/itfmenu.h"
#include "flow/editboxdlg.h"
#include "flow/maindlg.h"
#include "flow/valuebox.h"
#include "platform/files.h"
#include "support/toolkit_fixture.h"

using namespace seawarden_test;

namespace
{

class FlowTest : public ToolkitTest
{
  protected:
    void Menu()
    {
        Start(EVENT_MAIN_MENU);
        FinishShade();
    }
    std::ptrdiff_t CountBoxes()
    {
        return std::ranges::count_if(Toolkit().windows, [](const WindowEntry& entry) {
            return dynamic_cast<CValueBox*>(entry.wnd) != nullptr;
        });
    }
    void Answer(int control)
    {
        ClickControl(Find<CValueBox>(), control);
        Frame();
    }
};

TEST_F(FlowTest, EventZeroOpensTheMenu)
{
    engine.profile.version = 0x01020003;
    Start(EVENT_MAIN_MENU);
    EXPECT_FALSE(CItfWnd::IsDrawing()) << "until the shade ends";
    SendEvent({.code = EVENT_MAIN_MENU});
    EXPECT_EQ(Find<CVersionText>()->GetCaption(), "text 116: 1.02.3");
    EXPECT_EQ(Toolkit().windows.size(), 4u) << "the old dialog, its menu and its version line are gone";
}

TEST_F(FlowTest, TheHiddenCodeIsASlidingWindow)
{
    Menu();
    std::size_t commands = 0;
    const auto type = [&](const char* text, std::size_t more) {
        Type(text);
        Frame();
        commands += more;
        EXPECT_EQ(Commands(), std::vector<int>(commands, CMD_SECRET)) << text;
    };
    type("qir", 0);
    type("u", 1);
    type("xxQiRu", 1);
    type("qiruqiru", 2);
    type("qqiirruu", 0);
    type("qiqiru", 1);
    // A box takes the focus with it when it goes.
    SendEvent({.code = EVENT_MESSAGE});
    Answer(CValueBox::IDC_FIRST);
    Frame();
    type("qiru", 1);
}

TEST_F(FlowTest, LeavingTheProgram)
{
    Menu();
    CItfWnd::PostTo(0, ITFM_COMMAND, DLG_MAIN, MENU_QUIT);
    Choose(MENU_QUIT);
    EXPECT_EQ(CountBoxes(), 1) << "two presses in one frame ask once";
    Answer(CValueBox::IDC_SECOND);
    EXPECT_EQ(CItfWnd::GetModalId(), -1);
    EXPECT_EQ(CItfWnd::GetFocusId(), Find<CMainDlg>()->GetId());

    // With nothing but a broken picture for its end the program ends at once.
    Choose(MENU_QUIT);
    PlatformSetRoots(userFolder.string(), (userFolder / "nowhere").string());
    WriteFile("resource/images/pic/broken.tga", "no picture");
    Answer(CValueBox::IDC_FIRST);
    EXPECT_EQ(engine.SentWith(MSG_QUIT).size(), 1u);
    EXPECT_EQ(TakeDebug().size(), 1u);
}

TEST_F(FlowTest, MessageBoxesNestAndHaveTheirStyles)
{
    Menu();
    SendEvent({.code = EVENT_MESSAGE, .value1 = 500});
    auto* lower = Find<CValueBox>();
    EXPECT_EQ(TextOf(lower, CValueBox::IDC_MESSAGE), "text 500");
    EXPECT_EQ(TextOf(lower, CValueBox::IDC_CAPTION), "text 83");

    const char first[] = "the message";
    const char second[] = "the caption";
    const Word words[] = {reinterpret_cast<Word>(second), reinterpret_cast<Word>(first),
                          static_cast<Word>(CValueBox::STYLE_YES_NO | CValueBox::STYLE_OTHER_BUTTON),
                          BOX_NET_LOST};
    ItfEvent event;
    event.code = EVENT_MESSAGE_BOX;
    event.object = const_cast<Word*>(words);
    auto* upper = reinterpret_cast<CValueBox*>(SendEvent(event));
    ASSERT_EQ(upper, Find<CValueBox>());
    EXPECT_EQ(TextOf(upper, CValueBox::IDC_MESSAGE), first);
    EXPECT_EQ(TextOf(upper, CValueBox::IDC_CAPTION), second);
    EXPECT_EQ(upper->GetControl(CValueBox::IDC_FIRST)->GetCaption(), "text 128");

    Answer(CValueBox::IDC_SECOND);
    EXPECT_EQ(engine.net.calls, std::vector<std::string>{"AbortGame"});
    EXPECT_EQ(Commands(), std::vector<int>{CMD_RESUME});
    EXPECT_EQ(CItfWnd::GetModalId(), lower->GetId()) << "the lower box is modal again";
    Answer(CValueBox::IDC_FIRST);
    EXPECT_EQ(Commands().size(), 1u) << "a box without a parent only closes";
    SendEvent(event);
    Answer(CValueBox::IDC_FIRST);
    EXPECT_EQ(engine.SentWith(MSG_NET_DROP).size(), 1u);

    auto* hidden = Find<CMainDlg>()->MessageBox("a", "b", nullptr, 0, CValueBox::STYLE_NO_BUTTON);
    EXPECT_FALSE(hidden->GetControl(CValueBox::IDC_FIRST)->IsVisible());
    // The window that was modal before may go first.
    Find<CMainDlg>()->MessageBox("c", "d", nullptr, 0, 0);
    hidden->Destroy();
    Answer(CValueBox::IDC_FIRST);
    EXPECT_EQ(CItfWnd::GetModalId(), -1) << "a window that has gone doesn't hold the input";
}

TEST_F(FlowTest, ABoxMayGoInTheHandlerOfTheFocusItTakes)
{
    Menu();
    RecordingWnd parent;
    ASSERT_TRUE(parent.Create(nullptr, nullptr, nullptr, nullptr, 0, 0, &engine));
    parent.SetFocus();
    parent.onMessage = [&](const RecordingWnd::Got&) { parent.Destroy(); };
    EXPECT_EQ(parent.MessageBox("a", "b", &parent, 1, 0), nullptr);
    EXPECT_EQ(CountBoxes(), 0);
    EXPECT_EQ(CItfWnd::GetModalId(), -1);
}

TEST_F(FlowTest, LeavingTheBattle)
{
    FakeEngine scene;
    engine.currentScene = &scene;
    const int logic = scene.AddEntity("logic", "logic");
    scene.AddEntity("logic", "other");
    Start(99);
    SendEvent({.code = EVENT_LEAVE_BATTLE});
    Answer(CValueBox::IDC_FIRST);
    ASSERT_EQ(scene.SentWith(MSG_LOGIC_STOP).size(), 1u);
    EXPECT_EQ(scene.SentWith(MSG_LOGIC_STOP)[0].destination, logic);
    ASSERT_EQ(engine.SentWith(MSG_LOGIC_STOPPED).size(), 1u);
    const Word stopped = engine.SentWith(MSG_LOGIC_STOPPED)[0].words.at(0);
    EXPECT_EQ(*reinterpret_cast<const std::int32_t*>(stopped), 90);
    EXPECT_TRUE(engine.SentWith(MSG_NO_LOGIC).empty());

    engine.currentScene = nullptr; // the logic is told so instead
    FinishShade();
    SendEvent({.code = EVENT_LEAVE_BATTLE});
    Answer(CValueBox::IDC_FIRST);
    EXPECT_EQ(engine.SentWith(MSG_NO_LOGIC).size(), 1u);
}

TEST_F(FlowTest, EventsAfterEverythingWasClosed)
{
    Menu();
    Send(MSG_ITF_CLOSE_ALL);
    CItfWnd::SetDrawing(false);
    SendEvent({.code = EVENT_VIDEO});
    EXPECT_TRUE(CItfWnd::IsDrawing()) << "as after a start";
    SendEvent({.code = EVENT_MISSION_BRIEF});
    EXPECT_EQ(Commands().size(), 2u) << "the logic waits for neither";
    SendEvent({.code = EVENT_MAIN_MENU});
    EXPECT_NE(Find<CMainDlg>(), nullptr);
    DropUi();
    for (const FontEntry& font : Toolkit().fonts)
        EXPECT_EQ(font.refs, 0) << font.name;
}

TEST_F(FlowTest, Videos)
{
    Menu();
    engine.playList.calls.clear();
    ItfEvent event;
    event.code = EVENT_VIDEO;
    std::strcpy(event.text, "video\\story.ani");
    SendEvent(event);
    EXPECT_EQ(engine.video.calls,
              (std::vector<std::string>{"OpenVideo video\\story.ani 6", "SetVideoTarget 1 -1 0 0 800 600",
                                        "PlayVideo 1 0", "StopVideo 1", "CloseVideo 1"}));
    EXPECT_EQ(engine.playList.calls, (std::vector<std::string>{"Stop 0", "Play -1"}));
    EXPECT_TRUE(host.cursorVisible);

    // A missing clip, an unterminated name, a host without videos: the story goes on all the same.
    engine.video.missing.insert("video\\story.ani");
    SendEvent(event);
    std::memset(event.text, 'x', sizeof event.text);
    engine.hasVideo = false;
    SendEvent(event);
    EXPECT_EQ(Commands(), std::vector<int>(3, CMD_STORY_DONE));
    EXPECT_EQ(engine.playList.calls.size(), 2u);
}

TEST_F(FlowTest, OptionsGoToTheSceneAndItsEntities)
{
    FakeEngine scene;
    FakeGraphics graphics;
    graphics.options.nOptionValue = 16;
    std::map<int, std::string> names = {{scene.AddEntity("graphics", "graphics", &graphics), "graphics"},
                                        {scene.AddEntity("sea", "sky"), "sky sea"}};
    for (const char* name : {"Game", "camera", "ship", "fire", "tree", "fire"})
        names[scene.AddEntity(name, name)] = name;
    engine.currentScene = &scene;

    CMainWnd wnd;
    ASSERT_TRUE(wnd.Create(nullptr, nullptr, nullptr, nullptr, 0, 0, &engine));
    EXPECT_EQ(wnd.GetOptions().nOptionValue, 16) << "read when the window is made";
    wnd.GetOptions().nOptionValue = 4;
    wnd.ApplyOptions();
    EXPECT_EQ(graphics.options.nOptionValue, 4);
    std::vector<std::string> told;
    for (const Sent& sent : scene.SentWith(MSG_REFRESH))
        told.push_back(names[sent.destination]);
    EXPECT_EQ(told, (std::vector<std::string>{"camera", "graphics", "sky sea", "ship", "Game", "fire", "fire",
                                              "sky sea"}));
    engine.currentScene = nullptr;
    wnd.ReadOptions();
    EXPECT_EQ(wnd.GetOptions().nOptionValue, 4) << "without a scene they stay";
    wnd.ApplyOptions();
    EXPECT_EQ(engine.SentWith(MSG_REFRESH).size(), 2u);
}

TEST_F(FlowTest, EditBoxAnswersAndStays)
{
    Menu();
    RecordingWnd parent;
    ASSERT_TRUE(parent.Create(nullptr, nullptr, nullptr, nullptr, 0, 0, &engine));
    CEditBoxDlg box;
    ASSERT_TRUE(box.Create("A name, please", &parent, 44, 0, &engine));
    box.Show(true);
    EXPECT_EQ(CItfWnd::GetModalId(), box.GetId());
    box.SetValue("old");
    EXPECT_STREQ(box.GetValue(), "old");
    for (const auto& [control, code] :
         {std::pair{CEditBoxDlg::IDC_OK, 10u}, {CEditBoxDlg::IDC_CANCEL, 20u}}) {
        ClickControl(&box, control);
        Frame();
        ASSERT_FALSE(parent.got.empty());
        EXPECT_EQ(parent.got.back().wParam, code);
        EXPECT_EQ(parent.got.back().lParam, 44);
    }
}

// Dialogs of its own for the rules that rows can give.
class TestDialog : public CItfDialog
{
  public:
    static inline bool s_bSucceeds = true;
    using CItfWnd::Create;
    bool Create(const char* caption, const char*, const RECT* rect, CItfWnd* parent, int id,
                std::uint32_t style, IEngine* core, int)
    {
        return s_bSucceeds && CItfWnd::Create(caption, nullptr, rect, parent, id, style, core);
    }
};

class FlowWnd : public CMainWnd
{
  public:
    using CMainWnd::CloseAndPost;
    using CMainWnd::CloseToMain;
    using CMainWnd::Open;
    using CMainWnd::ReportRow;
    using CMainWnd::Restore;
    using CMainWnd::RunReport;
    template <int Index>
    static CDialogSlot& Slot(CMainWnd& wnd)
    {
        return static_cast<FlowWnd&>(wnd).slots[Index];
    }
    static constexpr auto TO_MAIN = &FlowWnd::CloseToMain;
    CDialogSlotOf<TestDialog> slots[3];
};

class OpeningTest : public FlowTest
{
  protected:
    void SetUp() override
    {
        UseShippedNames();
        ASSERT_TRUE(wnd.Create(nullptr, nullptr, nullptr, nullptr, 0, 0, &engine));
        wnd.Show(true);
        CItfWnd::SetDrawing(true);
        TestDialog::s_bSucceeds = true;
    }
    void TearDown() override
    {
        for (CDialogSlot& slot : wnd.slots)
            slot.Close();
        wnd.CloseAllDialogs();
        wnd.Destroy();
        FlowTest::TearDown();
    }
    FlowWnd wnd;
    CDialogSlotOf<TestDialog>& first = wnd.slots[0];
    CDialogSlotOf<TestDialog>& second = wnd.slots[1];
    CDialogSlotOf<TestDialog>& top = wnd.slots[2];
    const OpeningRow plain = {901, "Plain", START_CLOSES_MAIN, {OpeningStep::Show}, OpeningFailure::SwitchOn};
};

TEST_F(OpeningTest, CoveringDialogsHideTheirCallersAndBringThemBack)
{
    const CoverRule cover = {{FlowWnd::Slot<0>, FlowWnd::Slot<1>}, false, AloneAtClosing::SwitchOnResume};
    const CoverRule coverAll = {{FlowWnd::Slot<0>, FlowWnd::Slot<1>}, true, AloneAtClosing::SwitchOn};
    const OpeningRow preview = {902,
                                "Preview",
                                START_SWITCH_OFF,
                                {OpeningStep::Show, OpeningStep::Cover, OpeningStep::ShadeIfCovers},
                                OpeningFailure::SwitchOnCaller,
                                &cover};
    OpeningRow all = preview;
    all.cover = &coverAll;
    const FlowWnd::ReportRow close = {902, RESULT_DONE, FlowWnd::Slot<2>, nullptr, 0, &cover};

    // No caller: no shade, drawing on; at its end the battle goes on.
    ASSERT_NE(wnd.Open(top, preview, 0), nullptr);
    EXPECT_TRUE(CItfWnd::IsDrawing());
    wnd.Restore(close);
    EXPECT_FALSE(top.IsOpen());
    EXPECT_EQ(Commands(), std::vector<int>{CMD_RESUME});
    EXPECT_TRUE(engine.SentWith(MSG_SHADE_START).empty());

    wnd.Open(first, plain, 0);
    wnd.Open(second, plain, 0);
    ASSERT_NE(wnd.Open(top, preview, 0), nullptr);
    EXPECT_FALSE(first->IsVisible());
    EXPECT_TRUE(second->IsVisible()) << "the first caller alone";
    wnd.Restore(close);
    EXPECT_TRUE(first->IsVisible());
    EXPECT_EQ(engine.SentWith(MSG_SHADE_START).size(), 2u) << "the caller's return is shaded too";
    EXPECT_EQ(Commands().size(), 1u);

    ASSERT_NE(wnd.Open(top, all, 0), nullptr);
    EXPECT_FALSE(first->IsVisible() || second->IsVisible());
    top.Close();
    TestDialog::s_bSucceeds = false;
    EXPECT_EQ(wnd.Open(top, preview, 0), nullptr);
    EXPECT_TRUE(first->IsVisible() && CItfWnd::IsDrawing());
}

TEST_F(OpeningTest, ReportsRunTheFirstRowWhoseMemberIsOpen)
{
    const FlowWnd::ReportRow rows[] = {
        {901, RESULT_CLOSE, FlowWnd::Slot<0>, FlowWnd::TO_MAIN},
        {901, RESULT_ANY, FlowWnd::Slot<1>, FlowWnd::TO_MAIN},
    };
    wnd.RunReport(rows, RESULT_CLOSE, 901);
    EXPECT_EQ(wnd.GetMainDlg(), nullptr) << "neither dialog is open";
    ASSERT_NE(wnd.Open(first, plain, 0), nullptr);
    wnd.RunReport(rows, RESULT_DONE, 901);
    wnd.RunReport(rows, RESULT_CLOSE, 902);
    EXPECT_TRUE(first.IsOpen());
    wnd.ShowMainDlg(true);
    EXPECT_EQ(wnd.Open(first, plain, 0), nullptr) << "never twice";
    EXPECT_EQ(wnd.GetMainDlg(), nullptr) << "but the main dialog goes";
    wnd.RunReport(rows, RESULT_CLOSE, 901);
    EXPECT_FALSE(first.IsOpen());
    EXPECT_NE(wnd.GetMainDlg(), nullptr);
    ASSERT_NE(wnd.Open(second, plain, 0), nullptr);
    wnd.RunReport(rows, 77, 901);
    EXPECT_FALSE(second.IsOpen());

    ASSERT_NE(wnd.Open(first, plain, 0), nullptr);
    wnd.CloseAndPost({901, RESULT_DONE, FlowWnd::Slot<0>, nullptr, CMD_STATUS_DONE});
    EXPECT_EQ(Commands(), std::vector<int>{CMD_STATUS_DONE});
}

} // namespace
