// Every dialog of the contract: with the shipped data, without each of its controls, and with more in it than
// it has room for. A new dialog gets a row in ROWS.

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

#include "controls/itflistbox.h"
#include "flow/dialog_contract.h"
#include "flow/editboxdlg.h"
#include "flow/endgamedlg.h"
#include "flow/flow.h"
#include "flow/valuebox.h"
#include "platform/files.h"
#include "saves/filedlg.h"
#include "scenario/scenseldlg.h"
#include "support/toolkit_fixture.h"

using namespace seawarden_test;

namespace
{

constexpr char RESOURCE[] = "resource/txt_res/itfdlg.ini";
constexpr char SCENARIO[] = "scenarios\\balloon_day.sc";

// Whether the line of the resource is the control's record, or one that belongs to it. The first number
// behind a record's texts is its id: of a column its table's.
bool IsRecordOf(const std::string& line, const ControlRule& control)
{
    const std::string keyword = line.substr(0, line.find(','));
    const std::size_t number = line.find_first_of("0123456789", line.rfind('"') + 1);
    if (number == std::string::npos || std::stoi(line.substr(number)) != control.id)
        return false;
    const bool item = keyword.ends_with("MENUITEM");
    return item == (control.kind == KIND_MENUITEM) &&
           (control.kind == KIND_TABLE || !keyword.ends_with("COLUMN"));
}

// The shipped resource without that control of the section.
std::string ResourceWithout(const std::string& section, const ControlRule& control)
{
    std::ifstream file(std::string(SEAWARDEN_SOURCE_DIR) + "/data/" + RESOURCE);
    std::string text;
    bool here = false;
    for (std::string line; std::getline(file, line);) {
        if (line.ends_with('\r'))
            line.pop_back();
        if (line.ends_with(" {"))
            here = line == section + " {";
        else if (here && line.find('"') != std::string::npos && IsRecordOf(line, control))
            continue;
        // The last record may be the one that went.
        if (line == "}" && text.ends_with(",\n"))
            text.erase(text.size() - 2, 1);
        text += line + "\n";
    }
    return text;
}

class EveryDialogTest : public ToolkitTest
{
  protected:
    struct RowOf {
        const char* section;
        /// Gives the dialog, which the test or the flow owns.
        CItfDialog* (EveryDialogTest::*open)();
        void (EveryDialogTest::*overfill)(); ///< null for a dialog that shows nothing of anybody
    };
    static const RowOf ROWS[];

    void SetUp() override
    {
        std::strcpy(status.szPath, SCENARIO);
        status.nPercentA = 50;
        game.players = {{"First"}, {"Second"}};
        scene.AddEntity("game", "game", &game);
        engine.currentScene = &scene;
        engine.gameState = &state;
        WriteFile("resource/txt_res/itfCredits.txt", "Some names\r\n");
    }
    CMainWnd& Top() { return dynamic_cast<CMainWnd&>(*Toolkit().windows.front().wnd); }
    CItfDialog* Newest()
    {
        for (auto entry = Toolkit().windows.rbegin(); entry != Toolkit().windows.rend(); ++entry) {
            if (auto* dialog = dynamic_cast<CItfDialog*>(entry->wnd))
                return dialog;
        }
        return nullptr;
    }
    CItfDialog* OpenByEvent(int code)
    {
        ItfEvent event;
        event.code = code;
        event.object = &status;
        SendEvent(event);
        return Newest();
    }
    CItfDialog* OpenByMenu(int item)
    {
        CItfWnd::PostTo(Top().GetId(), ITFM_COMMAND, DLG_MAIN, item);
        Frame();
        return Newest();
    }
    CItfDialog* OpenMain() { return OpenByEvent(EVENT_MAIN_MENU); }
    CItfDialog* OpenMessage() { return OpenByEvent(EVENT_MESSAGE); }
    CItfDialog* OpenQuestion() { return OpenByEvent(EVENT_LEAVE_BATTLE); }
    CItfDialog* OpenEdit()
    {
        edit = std::make_unique<CEditBoxDlg>();
        EXPECT_TRUE(edit->Create(engine.textTable.GetText(1), &Top(), 44, 0, &engine));
        edit->SetValue(engine.textTable.GetText(1));
        edit->Show(true);
        return edit.get();
    }
    CItfDialog* OpenFile()
    {
        file = std::make_unique<CFileDlg>();
        EXPECT_TRUE(file->Create(engine.textTable.GetText(TEXT_IMPORT_TITLE), nullptr, nullptr, &Top(), 100,
                                 0, &engine, ".\\scenarios"));
        file->AddFilter("f1", "exp");
        file->SetFilter(0);
        file->Show(true);
        return file.get();
    }
    CItfDialog* OpenScenarios() { return OpenByMenu(MENU_SCENARIO); }
    CItfDialog* OpenBriefing()
    {
        Top().ShowScenBriefDlg(SCENARIO);
        return Newest();
    }
    CItfDialog* OpenHelp() { return OpenByEvent(EVENT_HELP); }
    CItfDialog* OpenCredits() { return OpenByMenu(MENU_CREDITS); }
    CItfDialog* OpenEndGame() { return OpenByEvent(EVENT_END_GAME); }
    CItfDialog* OpenStatistics()
    {
        CItfWnd::SendTo(OpenEndGame()->GetId(), ITFM_NOTIFY, NOTIFY_CLICKED, CEndGameDlg::IDC_STATISTICS);
        return Newest();
    }
    CItfDialog* OpenStatus() { return OpenByEvent(EVENT_SCENARIO_STATUS); }

    void LongTexts()
    {
        std::string text;
        for (int word = 0; word < 5000; ++word)
            text += "overfull " + std::string(word % 50 == 0 ? "\r\n" : "");
        for (const TextNumberRow& row : TextNumbers())
            engine.textTable.texts[row.number] = text;
        for (const int number : {0, 1})
            engine.textTable.texts[number] = text;
        status.nPercentA = INT32_MIN;
        status.nPercentB = INT32_MAX;
    }
    void ManyFiles()
    {
        LongTexts();
        for (int n = 0; n < 300; ++n)
            WriteFile("scenarios/" + std::string(static_cast<std::size_t>(n % 100), 'w') + std::to_string(n) +
                          (n % 2 == 0 ? ".sc" : ".exp"),
                      std::string(0x400, 'W'));
    }
    void LongCredits()
    {
        std::string text;
        while (text.size() < (5u << 20))
            text += std::string(text.size() % 300, 'c') + (text.size() % 7 == 0 ? "\r\n" : " ");
        WriteFile("resource/txt_res/itfCredits.txt", text);
    }
    void ManyPlayers()
    {
        LongTexts();
        engine.net.networkGame = true;
        game.players.assign(8, std::vector<const char*>(25, engine.textTable.GetText(1)));
        std::fill(std::begin(game.time), std::end(game.time), INT32_MAX);
    }

    // Opens the row's dialog, presses all that it has, and closes everything.
    void Exercise(const RowOf& row, const ControlRule* missing = nullptr)
    {
        CItfDialog* dialog = (this->*row.open)();
        ASSERT_NE(dialog, nullptr);
        if (missing != nullptr && missing->kind != KIND_MENUITEM) {
            ASSERT_EQ(dialog->GetControl(missing->id), nullptr);
        }
        FinishShade();
        const int id = dialog->GetId();
        ASSERT_GT(id, Top().GetId());
        for (int frame = 0; frame < 3; ++frame)
            Frame(21);
        for (const ControlRule& control : FindDialogRule(row.section)->controls) {
            for (const int code : {static_cast<int>(NOTIFY_CLICKED), static_cast<int>(LIST_SELECTED)})
                CItfWnd::SendTo(id, ITFM_NOTIFY, static_cast<std::uint32_t>(code), control.id);
            CItfWnd::SetDrawing(true);
        }
        Frame(21);
        edit.reset();
        file.reset();
        CloseAll();
    }
    void ExpectRefused(const RowOf& row)
    {
        EXPECT_THROW((this->*row.open)(), int);
        EXPECT_FALSE(TakeDebug().empty()) << "which control it lacks";
        CloseAll();
    }
    void CloseAll()
    {
        Send(MSG_ITF_CLOSE_ALL);
        EXPECT_TRUE(Toolkit().windows.empty());
        Toolkit().posted.clear();
        SendEvent({.code = 9999}); // the top window once more
        CItfWnd::SetDrawing(true);
    }

    FakeEngine scene;
    FakeGame game;
    FakeGameState state;
    ItfScenarioStatus status = {};
    std::unique_ptr<CEditBoxDlg> edit;
    std::unique_ptr<CFileDlg> file;
};

const EveryDialogTest::RowOf EveryDialogTest::ROWS[] = {
    {SECTION_MAIN, &EveryDialogTest::OpenMain, nullptr},
    {SECTION_MESSAGE, &EveryDialogTest::OpenMessage, &EveryDialogTest::LongTexts},
    {SECTION_QUESTION, &EveryDialogTest::OpenQuestion, &EveryDialogTest::LongTexts},
    {SECTION_EDIT, &EveryDialogTest::OpenEdit, &EveryDialogTest::LongTexts},
    {SECTION_FILE, &EveryDialogTest::OpenFile, &EveryDialogTest::ManyFiles},
    {SECTION_SCENARIOS, &EveryDialogTest::OpenScenarios, &EveryDialogTest::ManyFiles},
    {SECTION_SCENARIO_BRIEF, &EveryDialogTest::OpenBriefing, &EveryDialogTest::LongTexts},
    {SECTION_HELP, &EveryDialogTest::OpenHelp, nullptr},
    {SECTION_CREDITS, &EveryDialogTest::OpenCredits, &EveryDialogTest::LongCredits},
    {SECTION_END_GAME, &EveryDialogTest::OpenEndGame, &EveryDialogTest::LongTexts},
    {SECTION_STATISTICS, &EveryDialogTest::OpenStatistics, &EveryDialogTest::ManyPlayers},
    {SECTION_STATUS, &EveryDialogTest::OpenStatus, &EveryDialogTest::LongTexts},
};

TEST_F(EveryDialogTest, OpensWithTheShippedDataAndWithoutWhatMayBeMissing)
{
    Start(9999);
    for (const DialogRule& rule : DialogContract()) {
        SCOPED_TRACE(rule.section);
        const auto row = std::find_if(std::begin(ROWS), std::end(ROWS), [&](const RowOf& known) {
            return std::strcmp(known.section, rule.section) == 0;
        });
        ASSERT_NE(row, std::end(ROWS)) << "a dialog without a row here";
        Exercise(*row);
        for (const ControlRule& control : rule.controls) {
            SCOPED_TRACE(control.id);
            WriteDialogs(ResourceWithout(rule.section, control));
            if (control.required)
                ExpectRefused(*row);
            else
                Exercise(*row, &control);
        }
        std::filesystem::remove(userFolder / RESOURCE);
    }
}

TEST_F(EveryDialogTest, OpensOverfull)
{
    Start(9999);
    for (const RowOf& row : ROWS) {
        if (row.overfill == nullptr)
            continue;
        SCOPED_TRACE(row.section);
        (this->*row.overfill)();
        Exercise(row);
    }
}

} // namespace
