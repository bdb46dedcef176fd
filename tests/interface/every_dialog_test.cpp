// Every dialog of the contract: with the shipped data, without each of its controls, and with more in it than
// it has room for. A new dialog gets an opener.

#include <cstring>
#include <fstream>
#include <functional>
#include <map>

#include "controls/itflistbox.h"
#include "flow/dialog_contract.h"
#include "flow/editboxdlg.h"
#include "flow/endgamedlg.h"
#include "saves/filedlg.h"
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
    void SetUp() override
    {
        std::strcpy(status.szPath, SCENARIO);
        status.nPercentA = 50;
        game.players = {{"First"}, {"Second"}};
        scene.AddEntity("game", "game", &game);
        engine.currentScene = &scene;
        engine.gameState = &state;
        WriteFile("resource/txt_res/itfCredits.txt", "Some names\r\n");
        Start(9999);
    }
    // Each gives the dialog, which the test or the flow owns.
    std::map<std::string, std::function<CItfDialog*()>> Openers()
    {
        const auto byEvent = [this](int code) { return [=, this] { return OpenByEvent(code); }; };
        const auto byMenu = [this](int item) { return [=, this] { return OpenByMenu(item); }; };
        return {
            {SECTION_MAIN, byEvent(EVENT_MAIN_MENU)},
            {SECTION_MESSAGE, byEvent(EVENT_MESSAGE)},
            {SECTION_QUESTION, byEvent(EVENT_LEAVE_BATTLE)},
            {SECTION_EDIT, [this] { return OpenEdit(); }},
            {SECTION_FILE, [this] { return OpenFile(); }},
            {SECTION_SCENARIOS, byMenu(MENU_SCENARIO)},
            {SECTION_SCENARIO_BRIEF, [this] { return OpenBriefing(); }},
            {SECTION_HELP, byEvent(EVENT_HELP)},
            {SECTION_CREDITS, byMenu(MENU_CREDITS)},
            {SECTION_END_GAME, byEvent(EVENT_END_GAME)},
            {SECTION_STATISTICS, [this] { return OpenStatistics(); }},
            {SECTION_STATUS, byEvent(EVENT_SCENARIO_STATUS)},
        };
    }
    CMainWnd& Top() { return dynamic_cast<CMainWnd&>(*Toolkit().windows.front().wnd); }
    CItfDialog* OpenByEvent(int code)
    {
        ItfEvent event;
        event.code = code;
        event.object = &status;
        SendEvent(event);
        return Find<CItfDialog>();
    }
    CItfDialog* OpenByMenu(int item)
    {
        CItfWnd::PostTo(Top().GetId(), ITFM_COMMAND, DLG_MAIN, item);
        Frame();
        return Find<CItfDialog>();
    }
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
        file->Show(true);
        return file.get();
    }
    CItfDialog* OpenBriefing()
    {
        Top().ShowScenBriefDlg(SCENARIO);
        return Find<CItfDialog>();
    }
    CItfDialog* OpenStatistics()
    {
        const int id = OpenByEvent(EVENT_END_GAME)->GetId();
        CItfWnd::SendTo(id, ITFM_NOTIFY, NOTIFY_CLICKED, CEndGameDlg::IDC_STATISTICS);
        return Find<CItfDialog>();
    }

    // More of everything than any dialog has room for.
    void Overfill()
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
        for (int n = 0; n < 300; ++n) {
            const std::string name = std::string(static_cast<std::size_t>(n % 100), 'w') + std::to_string(n);
            WriteFile("scenarios/" + name + (n % 2 == 0 ? ".sc" : ".exp"), std::string(0x400, 'W'));
        }
        std::string credits;
        while (credits.size() < (5u << 20))
            credits += std::string(credits.size() % 300, 'c') + (credits.size() % 7 == 0 ? "\r\n" : " ");
        WriteFile("resource/txt_res/itfCredits.txt", credits);
        engine.net.networkGame = true;
        game.players.assign(8, std::vector<const char*>(25, engine.textTable.GetText(1)));
        std::fill(std::begin(game.time), std::end(game.time), INT32_MAX);
    }

    // Opens the dialog, presses all that it has, and closes everything.
    void Exercise(const DialogRule& rule, const ControlRule* missing = nullptr)
    {
        CItfDialog* dialog = Openers().at(rule.section)();
        ASSERT_NE(dialog, nullptr);
        if (missing != nullptr && missing->kind != KIND_MENUITEM) {
            ASSERT_EQ(dialog->GetControl(missing->id), nullptr);
        }
        FinishShade();
        const int id = dialog->GetId();
        ASSERT_GT(id, Top().GetId());
        for (int frame = 0; frame < 3; ++frame)
            Frame(21);
        for (const ControlRule& control : rule.controls) {
            CItfWnd::SendTo(id, ITFM_NOTIFY, NOTIFY_CLICKED, control.id);
            CItfWnd::SendTo(id, ITFM_NOTIFY, LIST_SELECTED, control.id);
            CItfWnd::SetDrawing(true);
        }
        Frame(21);
        edit.reset();
        file.reset();
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

TEST_F(EveryDialogTest, OpensWithTheShippedDataAndWithoutWhatMayBeMissing)
{
    for (const DialogRule& rule : DialogContract()) {
        SCOPED_TRACE(rule.section);
        Exercise(rule);
        for (const ControlRule& control : rule.controls) {
            SCOPED_TRACE(control.id);
            WriteDialogs(ResourceWithout(rule.section, control));
            if (!control.required) {
                Exercise(rule, &control);
                continue;
            }
            EXPECT_THROW(Openers().at(rule.section)(), int);
            EXPECT_FALSE(TakeDebug().empty()) << "which control it lacks";
            CloseAll();
        }
        std::filesystem::remove(userFolder / RESOURCE);
    }
}

TEST_F(EveryDialogTest, OpensOverfull)
{
    Overfill();
    for (const DialogRule& rule : DialogContract()) {
        SCOPED_TRACE(rule.section);
        Exercise(rule);
    }
}

} // namespace
