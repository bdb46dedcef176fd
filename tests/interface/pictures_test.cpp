// What the player sees, pixel by pixel: each picture is compared with its reference in tests/pictures. After
// a wanted change of the looks, UPDATE_PICTURES=1 in the environment writes the references anew; look at them
// before they go in.

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

#include "controls/itfbutton.h"
#include "controls/itfeditbox.h"
#include "controls/itfmenu.h"
#include "flow/editboxdlg.h"
#include "flow/endgamedlg.h"
#include "flow/valuebox.h"
#include "logic/text_table.h"
#include "render/picture.h"
#include "saves/filedlg.h"
#include "scenario/scenbriefdlg.h"
#include "scenario/scenhead.h"
#include "support/picture_compare.h"
#include "support/toolkit_fixture.h"

using namespace seawarden_test;

namespace
{

class PicturesTest : public ToolkitTest
{
  protected:
    void SetUp() override
    {
        engine.profile.version = 0x00010000;
        engine.textTable.texts = {
            {116, "Version"}, {16, "Are you sure, Captain?"}, {13150, "Leaving the Bridge"}};
        engine.refused.insert("shader");
        Start(EVENT_MAIN_MENU);
        Frame();
    }
    void Check(const std::string& name)
    {
        const Picture picture = TakePicture(engine.render, Toolkit().screenSurface);
        const std::string path = std::string(SEAWARDEN_SOURCE_DIR) + "/tests/pictures/" + name + ".png";
        if (std::getenv("UPDATE_PICTURES") != nullptr)
            SavePng(path, picture.m_aPixels.data(), picture.m_nWidth, picture.m_nHeight);
        EXPECT_TRUE(SameAsReference(name, picture, path));
    }
    void UseShippedTexts()
    {
        ASSERT_TRUE(m_Texts.Load("resource\\txt_res\\texts.ini"));
        Toolkit().textTable = &m_Texts;
    }
    void Redraw()
    {
        CItfWnd::SetDrawing(true);
        CItfWnd::RedrawAll();
        Frame();
    }
    // Shows the dialog, and lets it go.
    void CheckDialog(CItfDialog& dialog, const std::string& name)
    {
        dialog.Show(true);
        Redraw();
        Check(name);
        dialog.Destroy();
    }
    CItfWnd& Top() { return *CItfWnd::FindWindow(0); }

  private:
    CTextTable m_Texts;
};

TEST_F(PicturesTest, MainMenu)
{
    Move(640, 470);
    Frame();
    Check("main_menu");
}

// An item is painted over its plain form alone: the lit letters must leave nothing behind.
TEST_F(PicturesTest, MenuItemsAreCleanAfterThePointerHasPassed)
{
    Move(5, 5);
    Redraw();
    const Picture before = TakePicture(engine.render, Toolkit().screenSurface);
    for (int y = 176; y < 496; y += 4) {
        Move(640, y);
        Frame();
    }
    auto* menu = Find<CItfMenu>();
    ASSERT_NE(menu, nullptr);
    menu->GetRoot().ClearItemState(-1, MENUITEM_HIGHLIGHTED);
    for (int i = 0; ItfMenuItem* item = menu->GetRoot().GetItem(i); ++i)
        menu->Invalidate(&item->m_rc);
    Frame();
    EXPECT_TRUE(SamePicture("menu_after", TakePicture(engine.render, Toolkit().screenSurface), before));
}

TEST_F(PicturesTest, Question)
{
    Choose(MENU_QUIT);
    Move(320, 412);
    Frame();
    Check("question");
}

TEST_F(PicturesTest, ALongMessageHasAScrollBar)
{
    std::string text = "To all captains of the squadron.\r\n\r\n";
    for (int i = 0; i < 6; ++i)
        text += "At first light the squadron weighs anchor and steers north by east. Keep station, keep "
                "silence on the "
                "wireless, and keep a sharp look-out for periscopes; the balloons report by lamp alone. ";
    Top().MessageBox(text.c_str(), "Standing Orders for the Night", nullptr, 0, 0);
    Wheel(400, 300, -1);
    Frame();
    Check("long_message");
}

TEST_F(PicturesTest, EditBox)
{
    CEditBoxDlg box;
    ASSERT_TRUE(box.Create("By what name shall the Admiralty know you?", &Top(), 1, 0, &engine));
    box.SetValue("Captain A. Hollis");
    auto* edit = box.GetControlAs<CItfEditBox>(CEditBoxDlg::IDC_VALUE);
    ASSERT_NE(edit, nullptr);
    edit->SetFocus();
    host.keysDown.insert(VK_SHIFT);
    Key(VK_END);
    for (int i = 0; i < 6; ++i)
        Key(VK_LEFT);
    host.keysDown.clear();
    CheckDialog(box, "edit_box");
}

// The list of the shipped scenarios, the choice of a file in a folder of the player's, and a briefing.
TEST_F(PicturesTest, TheWayToAScenario)
{
    UseShippedTexts();
    Choose(MENU_SCENARIO);
    Move(5, 5);
    Redraw();
    Check("scenarios");

    WriteFile("exports/A long night off the skerries.exp", "");
    WriteFile("exports/older/note.txt", "");
    CFileDlg files;
    ASSERT_TRUE(files.Create("Import a Scenario", nullptr, nullptr, &Top(), 1, 0, &engine,
                             (userFolder / "exports").string().c_str()));
    // The test's own folder has another name each time.
    files.GetControlAs<CItfEditBox>(CFileDlg::IDC_FOLDER)->SetText("/exports");
    CheckDialog(files, "files");

    CScenBriefDlg brief;
    ASSERT_TRUE(brief.Create("", nullptr, nullptr, &Top(), 1, 0, &engine, "scenarios\\grey_road.sc"));
    CheckDialog(brief, "briefing");
}

// Behind the shipped ones, scrolled to the end; the last one is chosen.
TEST_F(PicturesTest, TheEndOfALongListOfScenarios)
{
    UseShippedTexts();
    SCENARIO_HEADER header;
    for (int i = 1; i <= 300; ++i) {
        header.settings = {{}, 1001, i, 0, 1002, 301 - i, 0};
        header.nHours = i % 12;
        header.nFlagExtra = 1900 + i % 20;
        const std::string number = std::to_string(1000 + i).substr(1);
        WriteFile("scenarios/" + number + ".sc",
                  std::string(reinterpret_cast<char*>(&header), sizeof header) + "Watch " + number + '\0' +
                      "Nothing stirs." + '\0');
    }
    Choose(MENU_SCENARIO);
    Down(761, 141); // the knob
    Move(761, 280);
    Up(761, 280);
    Click(100, 243);
    Move(5, 5);
    Redraw();
    Check("many_scenarios");
}

// What comes over a battle and at its end, the statistics being those of a network game.
TEST_F(PicturesTest, TheWayOutOfABattle)
{
    UseShippedTexts();
    FakeEngine scene;
    FakeGame game;
    FakeGameState state;
    scene.AddEntity("game", "game", &game);
    engine.currentScene = &scene;
    engine.gameState = &state;
    std::strcpy(state.scenario.szTitle, "The Grey Road");
    ItfScenarioStatus status = {};
    std::strcpy(status.szPath, "scenarios\\grey_road.sc");
    status.nPercentA = 100;
    status.nPercentB = 37;
    const auto open = [&](int code, int value, void* object, const char* picture) {
        Send(MSG_ITF_CLOSE_ALL);
        ItfEvent event;
        event.code = code;
        event.value2 = value;
        event.object = object;
        SendEvent(event);
        Redraw();
        if (picture != nullptr)
            Check(picture);
    };
    open(EVENT_SCENARIO_STATUS, 0, &status, "status");
    open(EVENT_HELP, 0, nullptr, "help");
    game.winner = 1;
    open(EVENT_END_GAME, 0, nullptr, "defeat");
    game.winner = 0;
    game.players = {{"Captain Hollis", "Lady Annis"}, {"Commodore Aldersey"}, {}};
    std::copy_n(std::array{1, 4, 30}.data(), 3, game.time);
    open(EVENT_END_GAME, 1, nullptr, "victory");
    engine.net.networkGame = true;
    open(EVENT_END_GAME, 1, nullptr, nullptr);
    CItfWnd::SendTo(Find<CEndGameDlg>()->GetId(), ITFM_NOTIFY, NOTIFY_CLICKED, CEndGameDlg::IDC_STATISTICS);
    Redraw();
    Check("network_statistics");
    DropUi(); // before the scene
}

TEST_F(PicturesTest, DisabledAndPressedButtons)
{
    auto* box = Top().MessageBox("The wireless is silent.", "Signals", nullptr, 0, CValueBox::STYLE_YES_NO);
    box->GetControl(CValueBox::IDC_SECOND)->Enable(false);
    box->Invalidate(nullptr);
    Down(320, 412);
    Frame();
    Check("buttons");
    Up(5, 5);
}

} // namespace
