// The main window's flow with the shipped data: main menu, boxes, events of the logic, the way out.

#include <cstring>

#include "controls/itfbutton.h"
#include "controls/itfeditbox.h"
#include "controls/itfmenu.h"
#include "controls/itftextbox.h"
#include "flow/editboxdlg.h"
#include "flow/flow.h"
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
    // The newest window of the class, null when there is none.
    template <class T>
    T* Find()
    {
        for (auto entry = Toolkit().windows.rbegin(); entry != Toolkit().windows.rend(); ++entry) {
            if (auto* wnd = dynamic_cast<T*>(entry->wnd))
                return wnd;
        }
        return nullptr;
    }
    std::size_t CountBoxes()
    {
        std::size_t n = 0;
        for (const WindowEntry& entry : Toolkit().windows)
            n += dynamic_cast<CValueBox*>(entry.wnd) != nullptr;
        return n;
    }
    void ClickControl(const CItfWnd* wnd)
    {
        ASSERT_NE(wnd, nullptr);
        RECT rect;
        wnd->GetScreenRect(&rect);
        Click((rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2);
    }
    void Answer(int control)
    {
        auto* box = Find<CValueBox>();
        ASSERT_NE(box, nullptr);
        ClickControl(box->GetControl(control));
        Frame();
    }
    // What the main dialog does when an item is chosen.
    void Choose(int item)
    {
        CItfWnd::PostTo(0, ITFM_COMMAND, DLG_MAIN, item);
        Frame();
    }
    static std::string TextOf(CItfDialog* dialog, int id)
    {
        auto* box = dialog != nullptr ? dialog->GetControlAs<CItfTextBox>(id) : nullptr;
        return box != nullptr ? std::string(box->GetText()) : std::string();
    }
};

TEST_F(FlowTest, EventZeroOpensTheMenuWithTheShade)
{
    std::uint32_t version = 0x01020003;
    engine.profile.SelectSection("VERSION", 1);
    engine.profile.Write("Version", "x", &version);
    engine.textTable.texts[TEXT_VERSION] = "Version";
    Start(EVENT_MAIN_MENU);
    auto* menu = Find<CMainDlg>();
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->GetCtrlId(), DLG_MAIN);
    EXPECT_EQ(CItfWnd::GetFocusId(), menu->GetId());
    EXPECT_FALSE(CItfWnd::IsDrawing()) << "until the shade ends";
    EXPECT_EQ(engine.sound.played, std::vector<std::string>{"itfShade"});
    const std::vector<Sent> shades = engine.SentWith(MSG_SHADE_START);
    ASSERT_EQ(shades.size(), 1u);
    EXPECT_EQ(shades[0].words, (std::vector<Word>{-1, 0, 1000, Ui().GetEntityId(), MSG_ITF_SHADE_DONE, -1}));
    EXPECT_EQ(Find<CVersionText>()->GetCaption(), "Version: 1.02.3");
    EXPECT_EQ(Pixel(400, 300), 0) << "nothing is painted under the shade";
    FinishShade();
    EXPECT_TRUE(CItfWnd::IsDrawing());
    EXPECT_NE(Pixel(400, 20), 0);

    SendEvent({.code = EVENT_MAIN_MENU});
    EXPECT_NE(Find<CMainDlg>(), nullptr);
    EXPECT_EQ(Toolkit().windows.size(), 4u) << "the old dialog, its menu and its version line are gone";
}

TEST_F(FlowTest, TheHiddenCodeIsASlidingWindow)
{
    Menu();
    const std::pair<const char*, std::size_t> cases[] = {
        {"qir", 0}, {"u", 1}, {"xxQiRu", 1}, {"qiruqiru", 2}, {"qqiirruu", 0}, {"qiqiru", 1},
    };
    std::size_t commands = 0;
    for (const auto& [text, more] : cases) {
        Type(text);
        Frame();
        commands += more;
        EXPECT_EQ(Commands(), std::vector<int>(commands, CMD_SECRET)) << text;
    }
}

TEST_F(FlowTest, TheHiddenCodeWorksAfterClicksAndBoxes)
{
    Menu();
    auto* menu = Find<CItfMenu>();
    RECT rect;
    menu->GetScreenRect(&rect);
    Click(rect.left + 20, rect.top + 50); // an item that isn't there yet
    EXPECT_EQ(CItfWnd::GetFocusId(), menu->GetId());
    Frame();
    Type("qiru");
    Frame();
    EXPECT_EQ(Commands().size(), 1u);
    SendEvent({.code = EVENT_MESSAGE});
    Answer(CValueBox::IDC_FIRST);
    Frame();
    Type("qiru");
    Frame();
    EXPECT_EQ(Commands().size(), 2u);
}

TEST_F(FlowTest, LeavingTheProgram)
{
    Menu();
    CItfWnd::PostTo(0, ITFM_COMMAND, DLG_MAIN, MENU_QUIT);
    Choose(MENU_QUIT);
    EXPECT_EQ(CountBoxes(), 1u) << "two presses in one frame ask once";
    auto* box = Find<CValueBox>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->GetCtrlId(), BOX_LEAVE_PROGRAM);
    EXPECT_EQ(CItfWnd::GetModalId(), box->GetId());
    EXPECT_EQ(TextOf(box, CValueBox::IDC_MESSAGE), "text 16");
    EXPECT_EQ(TextOf(box, CValueBox::IDC_CAPTION), "text 13150");
    Click(5, 5);
    EXPECT_EQ(CountBoxes(), 1u) << "a click beside the box does nothing";

    Answer(CValueBox::IDC_SECOND);
    EXPECT_EQ(CountBoxes(), 0u);
    EXPECT_EQ(CItfWnd::GetModalId(), -1);
    EXPECT_EQ(CItfWnd::GetFocusId(), Find<CMainDlg>()->GetId());
    Key(VK_RETURN);
    EXPECT_TRUE(engine.SentWith(MSG_QUIT).empty());

    Choose(MENU_QUIT);
    Answer(CValueBox::IDC_FIRST);
    EXPECT_EQ(Find<CMainDlg>(), nullptr);
    EXPECT_TRUE(engine.SentWith(MSG_QUIT).empty()) << "the closing picture stays";
    Click(400, 300);
    EXPECT_TRUE(engine.SentWith(MSG_QUIT).empty()) << "a click doesn't end it";
    Key(VK_SPACE);
    ASSERT_EQ(engine.SentWith(MSG_QUIT).size(), 1u);
    EXPECT_EQ(engine.SentWith(MSG_QUIT)[0].destination, DEST_HOST);
    EXPECT_EQ(engine.SentWith(MSG_QUIT)[0].extra, -1);
}

TEST_F(FlowTest, WithoutAClosingPictureTheProgramEndsAtOnce)
{
    Menu();
    Choose(MENU_QUIT);
    // From here on the folder of pictures holds a broken one alone, then nothing.
    PlatformSetRoots(userFolder.string(), (userFolder / "nowhere").string());
    WriteFile("resource/images/pic/broken.tga", "no picture");
    Answer(CValueBox::IDC_FIRST);
    EXPECT_EQ(engine.SentWith(MSG_QUIT).size(), 1u);
    EXPECT_EQ(TakeDebug().size(), 1u) << "the 2-D layer tells which picture is broken";
    EXPECT_NE(Find<CMainDlg>(), nullptr);
    std::filesystem::remove(userFolder / "resource/images/pic/broken.tga");
    CItfWnd::PostTo(0, ITFM_NOTIFY, RESULT_FIRST, BOX_LEAVE_PROGRAM);
    Frame();
    EXPECT_EQ(engine.SentWith(MSG_QUIT).size(), 2u);
}

TEST_F(FlowTest, IntroGoesToTheLogoEntity)
{
    Menu();
    Choose(MENU_INTRO);
    EXPECT_EQ(engine.sound.stops, std::vector<int>{0});
    const int logo = engine.FindEntity("logo", nullptr);
    ASSERT_GE(logo, 0);
    const Sent& sent = engine.messages.back();
    EXPECT_EQ(sent.number, MSG_ENTITY_START);
    EXPECT_EQ(sent.destination, logo);
    EXPECT_STREQ(reinterpret_cast<const char*>(sent.words.at(0)), "video\\seawardenintro.ani");
    EXPECT_EQ(sent.words.at(1), 2);
    Choose(MENU_SCENARIO + 90); // no such item
    CItfWnd::PostTo(0, ITFM_COMMAND, 11, MENU_QUIT);
    Frame();
    EXPECT_EQ(CountBoxes(), 0u) << "only the main menu's control counts";
}

TEST_F(FlowTest, MessageBoxesNestAndHaveTheirStyles)
{
    Menu();
    SendEvent({.code = EVENT_MESSAGE, .value1 = 500});
    auto* lower = Find<CValueBox>();
    EXPECT_EQ(TextOf(lower, CValueBox::IDC_MESSAGE), "text 500");
    EXPECT_EQ(TextOf(lower, CValueBox::IDC_CAPTION), "text 83");
    EXPECT_EQ(lower->GetParent(), nullptr);
    EXPECT_EQ(lower->GetControl(CValueBox::IDC_SECOND), nullptr) << "one button";

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
    EXPECT_EQ(CItfWnd::GetModalId(), upper->GetId());

    Answer(CValueBox::IDC_SECOND);
    EXPECT_EQ(engine.net.calls, std::vector<std::string>{"AbortGame"});
    EXPECT_EQ(Commands(), std::vector<int>{CMD_RESUME});
    EXPECT_EQ(CItfWnd::GetModalId(), lower->GetId()) << "the lower box is modal again";
    Answer(CValueBox::IDC_FIRST);
    EXPECT_EQ(CountBoxes(), 0u);
    EXPECT_EQ(Commands().size(), 1u) << "a box without a parent only closes";

    SendEvent(event);
    Answer(CValueBox::IDC_FIRST);
    EXPECT_EQ(engine.SentWith(MSG_NET_DROP).size(), 1u);

    auto* hidden = Find<CMainDlg>()->MessageBox("a", "b", nullptr, 0, CValueBox::STYLE_NO_BUTTON);
    EXPECT_FALSE(hidden->GetControl(CValueBox::IDC_FIRST)->IsVisible());
    // The window that was modal before may go first.
    auto* over = Find<CMainDlg>()->MessageBox("c", "d", nullptr, 0, 0);
    hidden->Destroy();
    ClickControl(over->GetControl(CValueBox::IDC_FIRST));
    EXPECT_EQ(CItfWnd::GetModalId(), -1) << "a window that has gone doesn't hold the input";
}

TEST_F(FlowTest, MenuWithMessageClosesWhatWasOpen)
{
    Menu();
    SendEvent({.code = EVENT_MENU_WITH_MESSAGE, .value1 = 1, .value2 = 77});
    EXPECT_EQ(TextOf(Find<CValueBox>(), CValueBox::IDC_MESSAGE), "text 77");
    EXPECT_NE(Find<CMainDlg>(), nullptr);
    FinishShade();
    SendEvent({.code = 12345});
    EXPECT_EQ(CountBoxes(), 1u) << "an unknown event does nothing";
}

TEST_F(FlowTest, LeavingTheBattle)
{
    FakeEngine scene;
    engine.currentScene = &scene;
    const int logic = scene.AddEntity("logic", "logic");
    scene.AddEntity("logic", "other");
    Start(99);
    SendEvent({.code = EVENT_LEAVE_BATTLE});
    ASSERT_EQ(Find<CValueBox>()->GetCtrlId(), BOX_LEAVE_BATTLE);
    Answer(CValueBox::IDC_SECOND);
    EXPECT_EQ(Commands(), std::vector<int>{CMD_RESUME});
    EXPECT_EQ(engine.SentWith(MSG_REFRESH).size(), 1u);
    EXPECT_FALSE(engine.SentWith(MSG_REFRESH)[0].post);
    EXPECT_EQ(Find<CMainDlg>(), nullptr);

    SendEvent({.code = EVENT_LEAVE_BATTLE});
    Answer(CValueBox::IDC_FIRST);
    ASSERT_EQ(scene.SentWith(MSG_LOGIC_STOP).size(), 1u);
    EXPECT_EQ(scene.SentWith(MSG_LOGIC_STOP)[0].destination, logic);
    ASSERT_EQ(engine.SentWith(MSG_LOGIC_STOPPED).size(), 1u);
    const auto* words =
        reinterpret_cast<const std::int32_t*>(engine.SentWith(MSG_LOGIC_STOPPED)[0].words.at(0));
    EXPECT_EQ(words[0], 90);
    EXPECT_EQ(words[1], 0);
    EXPECT_NE(Find<CMainDlg>(), nullptr);
    EXPECT_TRUE(engine.SentWith(MSG_NO_LOGIC).empty());

    // Without a scene the logic is told so instead.
    engine.currentScene = nullptr;
    FinishShade();
    SendEvent({.code = EVENT_LEAVE_BATTLE});
    Answer(CValueBox::IDC_FIRST);
    ASSERT_EQ(engine.SentWith(MSG_NO_LOGIC).size(), 1u);
    EXPECT_EQ(engine.SentWith(MSG_NO_LOGIC)[0].words, std::vector<Word>{-1});
}

TEST_F(FlowTest, EventsAfterEverythingWasClosed)
{
    Menu();
    Send(MSG_ITF_CLOSE_ALL);
    ASSERT_TRUE(Toolkit().windows.empty());
    CItfWnd::SetDrawing(false);
    SendEvent({.code = EVENT_VIDEO});
    EXPECT_TRUE(CItfWnd::IsDrawing()) << "as after a start";
    SendEvent({.code = EVENT_MISSION_BRIEF});
    EXPECT_EQ(Commands().size(), 2u) << "the logic waits for neither";
    SendEvent({.code = EVENT_MAIN_MENU});
    EXPECT_NE(Find<CMainDlg>(), nullptr);
    Send(MSG_ITF_CLOSE_ALL);
    Start(EVENT_LEAVE_BATTLE);
    Answer(CValueBox::IDC_FIRST);
    EXPECT_NE(Find<CMainDlg>(), nullptr);
    DropUi();
    for (const FontEntry& font : Toolkit().fonts)
        EXPECT_EQ(font.refs, 0) << font.name;
}

TEST_F(FlowTest, ABoxMayGoInTheHandlerOfTheFocusItTakes)
{
    Menu();
    RecordingWnd parent;
    const RECT rect = {0, 0, 10, 10};
    ASSERT_TRUE(parent.Create(nullptr, nullptr, &rect, nullptr, 0, 0, &engine));
    parent.SetFocus();
    parent.onMessage = [&](const RecordingWnd::Got&) { parent.Destroy(); };
    EXPECT_EQ(parent.MessageBox("a", "b", &parent, 1, 0), nullptr);
    EXPECT_EQ(CountBoxes(), 0u);
    EXPECT_EQ(CItfWnd::GetModalId(), -1);
}

TEST_F(FlowTest, MissionWithoutBriefingShowsTheLoadingScreen)
{
    Menu();
    SendEvent({.code = EVENT_MISSION_BRIEF, .value2 = 0});
    EXPECT_EQ(Commands(), std::vector<int>{CMD_MISSION_GO});
    EXPECT_FALSE(CItfWnd::IsDrawing()) << "until the battle is there";
    EXPECT_NE(engine.render.DisplayPixels()[300 * 800 + 400], 0) << "shown at once";
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
    EXPECT_EQ(Commands(), std::vector<int>{CMD_STORY_DONE});
    EXPECT_TRUE(host.cursorVisible);

    // A missing clip, an unterminated name, a host without videos: the story goes on all the same.
    engine.video.missing.insert("video\\story.ani");
    SendEvent(event);
    std::memset(event.text, 'x', sizeof event.text);
    engine.hasVideo = false;
    SendEvent(event);
    EXPECT_EQ(Commands().size(), 3u);
    EXPECT_EQ(engine.playList.calls.size(), 2u);
}

TEST_F(FlowTest, OptionsGoToTheSceneAndItsEntities)
{
    FakeEngine scene;
    FakeGraphics graphics;
    graphics.options.nOptionValue = 16;
    std::map<int, std::string> names;
    for (const char* name : {"graphics", "Game", "camera", "ship", "fire", "tree", "fire"})
        names[scene.AddEntity(name, name, std::string(name) == "graphics" ? &graphics : nullptr)] = name;
    names[scene.AddEntity("sea", "sky")] = "sky sea";
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
    ASSERT_EQ(engine.SentWith(MSG_REFRESH).size(), 1u);
    EXPECT_TRUE(engine.SentWith(MSG_REFRESH)[0].post);

    engine.currentScene = nullptr;
    wnd.ReadOptions();
    EXPECT_EQ(wnd.GetOptions().nOptionValue, 4) << "without a scene they stay";
    wnd.ApplyOptions();
    EXPECT_EQ(engine.SentWith(MSG_REFRESH).size(), 2u);
    EXPECT_EQ(scene.SentWith(MSG_REFRESH).size(), told.size());
}

TEST_F(FlowTest, FullDisplay)
{
    engine.SetDisplaySize(1024, 768);
    Start(EVENT_HELP);
    SendEvent({.code = EVENT_FULL_DISPLAY});
    RECT screen;
    CItfWnd::GetVirtualScreen(&screen);
    EXPECT_EQ(screen, (RECT{0, 0, 1024, 768}));
}

TEST_F(FlowTest, EditBoxAnswersAndStays)
{
    Menu();
    RecordingWnd parent;
    const RECT rect = {0, 0, 10, 10};
    ASSERT_TRUE(parent.Create(nullptr, nullptr, &rect, nullptr, 0, 0, &engine));
    auto box = std::make_unique<CEditBoxDlg>();
    ASSERT_TRUE(box->Create("A name, please", &parent, 44, 0, &engine));
    box->Show(true);
    EXPECT_EQ(CItfWnd::GetModalId(), box->GetId());
    EXPECT_EQ(TextOf(box.get(), CEditBoxDlg::IDC_PROMPT), "A name, please");
    box->SetValue("old");
    ClickControl(box->GetControl(CEditBoxDlg::IDC_VALUE));
    Key(VK_END);
    Type("er");
    EXPECT_STREQ(box->GetValue(), "older");
    for (const auto& [control, code] :
         {std::pair<int, std::uint32_t>{CEditBoxDlg::IDC_OK, 10}, {CEditBoxDlg::IDC_CANCEL, 20}}) {
        ClickControl(box->GetControl(control));
        Frame();
        ASSERT_FALSE(parent.got.empty());
        EXPECT_EQ(parent.got.back().wParam, code);
        EXPECT_EQ(parent.got.back().lParam, 44);
    }
    box.reset();
    EXPECT_EQ(CItfWnd::GetModalId(), -1);
}

// Dialogs of its own for the rules that rows can give.
class TestDialog : public CItfDialog
{
  public:
    static inline bool s_bSucceeds = true;
    static inline bool s_bDrawingAtCreate = false;
    using CItfWnd::Create;
    bool Create(const char* caption, const char*, const RECT* rect, CItfWnd* parent, int id,
                std::uint32_t style, IEngine* core, int argument)
    {
        s_bDrawingAtCreate = IsDrawing();
        value = argument;
        return s_bSucceeds && CItfWnd::Create(caption, nullptr, rect, parent, id, style, core);
    }
    int value = 0;
};

class FlowWnd : public CMainWnd
{
  public:
    using CMainWnd::CloseAndPost;
    using CMainWnd::CloseAndResume;
    using CMainWnd::CloseToMain;
    using CMainWnd::Open;
    using CMainWnd::ReportRow;
    using CMainWnd::Restore;
    using CMainWnd::RunReport;
    static CDialogSlot& First(CMainWnd& wnd) { return static_cast<FlowWnd&>(wnd).first; }
    static CDialogSlot& Second(CMainWnd& wnd) { return static_cast<FlowWnd&>(wnd).second; }
    static CDialogSlot& Top(CMainWnd& wnd) { return static_cast<FlowWnd&>(wnd).top; }
    // The actions as rows name them.
    static constexpr auto ACTION_MAIN = &FlowWnd::CloseToMain;
    CDialogSlotOf<TestDialog> first;
    CDialogSlotOf<TestDialog> second;
    CDialogSlotOf<TestDialog> top;
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
        for (CDialogSlot* slot :
             {static_cast<CDialogSlot*>(&wnd.first), static_cast<CDialogSlot*>(&wnd.second),
              static_cast<CDialogSlot*>(&wnd.top)})
            slot->Close();
        wnd.CloseAllDialogs();
        wnd.Destroy();
        FlowTest::TearDown();
    }
    FlowWnd wnd;
};

TEST_F(OpeningTest, OpensOnceWithItsRowsRules)
{
    const OpeningRow full = {900,
                             "Full",
                             START_CLOSES_MAIN | START_SWITCH_OFF,
                             {OpeningStep::Shade, OpeningStep::Show, OpeningStep::RedrawTop},
                             OpeningFailure::SwitchOnMainDialog};
    wnd.ShowMainDlg(true);
    CItfWnd::SetDrawing(true);
    TestDialog::s_bSucceeds = false;
    EXPECT_EQ(wnd.Open(wnd.first, full, 5), nullptr);
    EXPECT_FALSE(TestDialog::s_bDrawingAtCreate);
    EXPECT_FALSE(wnd.first.IsOpen());
    EXPECT_NE(wnd.GetMainDlg(), nullptr) << "back to the menu";

    TestDialog::s_bSucceeds = true;
    CItfWnd::SetDrawing(true);
    TestDialog* dialog = wnd.Open(wnd.first, full, 5);
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->value, 5);
    EXPECT_EQ(dialog->GetCaption(), "Full");
    EXPECT_EQ(dialog->GetCtrlId(), 900);
    EXPECT_EQ(dialog->GetStyle(), static_cast<std::uint32_t>(IWS_SHADE));
    EXPECT_EQ(wnd.GetMainDlg(), nullptr);
    EXPECT_FALSE(CItfWnd::IsDrawing());
    EXPECT_TRUE(dialog->IsVisible());
    wnd.ShowMainDlg(true);
    EXPECT_EQ(wnd.Open(wnd.first, full, 6), nullptr) << "never twice";
    EXPECT_EQ(wnd.first.Get(), dialog);
    EXPECT_EQ(wnd.GetMainDlg(), nullptr) << "but the main dialog goes";

    CItfWnd::SetDrawing(true);
    const OpeningRow plain = {
        901, "Plain", 0, {OpeningStep::Show, OpeningStep::RedrawTop}, OpeningFailure::SwitchOnResume};
    TestDialog::s_bSucceeds = false;
    EXPECT_EQ(wnd.Open(wnd.second, plain, 0), nullptr);
    EXPECT_EQ(Commands(), std::vector<int>{CMD_RESUME});
    EXPECT_TRUE(TestDialog::s_bDrawingAtCreate && CItfWnd::IsDrawing());
    EXPECT_EQ(wnd.GetMainDlg(), nullptr);
}

TEST_F(OpeningTest, CoveringDialogsHideTheirCallersAndBringThemBack)
{
    const CoverRule cover = {{FlowWnd::First, FlowWnd::Second}, false, AloneAtClosing::SwitchOnResume};
    const CoverRule coverAll = {{FlowWnd::First, FlowWnd::Second}, true, AloneAtClosing::SwitchOn};
    const OpeningRow plain = {901, "Plain", 0, {OpeningStep::Show}, OpeningFailure::SwitchOn};
    const OpeningRow preview = {902,
                                "Preview",
                                START_SWITCH_OFF,
                                {OpeningStep::Show, OpeningStep::Cover, OpeningStep::ShadeIfCovers},
                                OpeningFailure::SwitchOnCaller,
                                &cover};
    OpeningRow all = preview;
    all.cover = &coverAll;
    const FlowWnd::ReportRow close = {902, RESULT_DONE, FlowWnd::Top, nullptr, 0, &cover};
    const FlowWnd::ReportRow closeAll = {902, RESULT_DONE, FlowWnd::Top, nullptr, 0, &coverAll};

    // No caller: no shade, drawing on; at its end the battle goes on.
    ASSERT_NE(wnd.Open(wnd.top, preview, 0), nullptr);
    EXPECT_TRUE(CItfWnd::IsDrawing());
    EXPECT_TRUE(engine.SentWith(MSG_SHADE_START).empty());
    CItfWnd::SetDrawing(false);
    wnd.Restore(close);
    EXPECT_FALSE(wnd.top.IsOpen());
    EXPECT_TRUE(CItfWnd::IsDrawing());
    EXPECT_EQ(Commands(), std::vector<int>{CMD_RESUME});

    ASSERT_NE(wnd.Open(wnd.first, plain, 0), nullptr);
    ASSERT_NE(wnd.Open(wnd.second, plain, 0), nullptr);
    ASSERT_NE(wnd.Open(wnd.top, preview, 0), nullptr);
    EXPECT_FALSE(wnd.first->IsVisible());
    EXPECT_TRUE(wnd.second->IsVisible()) << "the first caller alone";
    EXPECT_FALSE(CItfWnd::IsDrawing());
    wnd.Restore(close);
    EXPECT_TRUE(wnd.first->IsVisible());
    EXPECT_EQ(engine.SentWith(MSG_SHADE_START).size(), 2u) << "the caller's return is shaded too";
    EXPECT_EQ(Commands().size(), 1u);

    ASSERT_NE(wnd.Open(wnd.top, all, 0), nullptr);
    EXPECT_FALSE(wnd.first->IsVisible() || wnd.second->IsVisible());
    wnd.first.Close();
    wnd.Restore(closeAll);
    EXPECT_TRUE(wnd.second->IsVisible());

    TestDialog::s_bSucceeds = false;
    wnd.second->Show(false);
    EXPECT_EQ(wnd.Open(wnd.top, preview, 0), nullptr);
    EXPECT_TRUE(wnd.second->IsVisible() && CItfWnd::IsDrawing());
}

TEST_F(OpeningTest, ReportsRunTheFirstRowWhoseMemberIsOpen)
{
    const OpeningRow plain = {901, "Plain", 0, {OpeningStep::Show}, OpeningFailure::SwitchOn};
    const FlowWnd::ReportRow rows[] = {
        {901, RESULT_CLOSE, FlowWnd::First, FlowWnd::ACTION_MAIN},
        {901, RESULT_ANY, FlowWnd::Second, FlowWnd::ACTION_MAIN},
    };
    wnd.RunReport(rows, RESULT_CLOSE, 901);
    EXPECT_EQ(wnd.GetMainDlg(), nullptr) << "neither dialog is open";
    ASSERT_NE(wnd.Open(wnd.first, plain, 0), nullptr);
    wnd.RunReport(rows, RESULT_DONE, 901);
    wnd.RunReport(rows, RESULT_CLOSE, 902);
    EXPECT_TRUE(wnd.first.IsOpen());
    wnd.RunReport(rows, RESULT_CLOSE, 901);
    EXPECT_FALSE(wnd.first.IsOpen());
    EXPECT_NE(wnd.GetMainDlg(), nullptr);
    wnd.ShowMainDlg(false);
    ASSERT_NE(wnd.Open(wnd.second, plain, 0), nullptr);
    wnd.RunReport(rows, 77, 901);
    EXPECT_FALSE(wnd.second.IsOpen());

    ASSERT_NE(wnd.Open(wnd.first, plain, 0), nullptr);
    wnd.CloseAndPost({901, RESULT_DONE, FlowWnd::First, nullptr, CMD_STATUS_DONE});
    ASSERT_NE(wnd.Open(wnd.first, plain, 0), nullptr);
    wnd.CloseAndResume({901, RESULT_DONE, FlowWnd::First, nullptr});
    EXPECT_EQ(Commands().size(), 2u);
    EXPECT_EQ(wnd.GetCommand().code, CMD_RESUME);
    EXPECT_FALSE(wnd.first.IsOpen());
}

} // namespace
