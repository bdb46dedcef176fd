#include "flow/dialog_contract.h"

#include <string>
#include <strings.h>

#include "flow/creditsdlg.h"
#include "flow/editboxdlg.h"
#include "flow/endgamedlg.h"
#include "flow/flow.h"
#include "flow/helpdlg.h"
#include "flow/maindlg.h"
#include "flow/text_numbers.h"
#include "flow/valuebox.h"
#include "platform/system.h"
#include "saves/filedlg.h"
#include "scenario/scenbriefdlg.h"
#include "scenario/scenseldlg.h"
#include "scenario/scstatusdlg.h"
#include "scenario/statisticsdlg.h"

namespace
{

constexpr bool REQUIRED = true;
constexpr int FILE_COLUMNS = 1;
constexpr int SHIP_COLUMNS = 3;

// What the code puts into controls.
constexpr int BOX_BUTTON_TEXTS[] = {TEXT_OTHER_BUTTON};
constexpr int BOX_CAPTION_TEXTS[] = {TEXT_MESSAGE_CAPTION, TEXT_ERROR_CAPTION, TEXT_LEAVE_CAPTION};
constexpr int FILE_TITLE_TEXTS[] = {TEXT_IMPORT_TITLE};
constexpr int DIFFICULTY_TEXTS[] = {TEXT_DIFFICULTY, TEXT_DIFFICULTY_NORMAL, TEXT_DIFFICULTY_HARD};
constexpr int GO_ON_TEXTS[] = {TEXT_TO_CAMPAIGN, TEXT_TO_LOBBY};
constexpr int RESULT_TEXTS[] = {TEXT_WON, TEXT_LOST};

constexpr ControlRule MAIN_CONTROLS[] = {
    {CMainDlg::IDC_MENU, KIND_MENU, REQUIRED},
    {MENU_SCENARIO, KIND_MENUITEM},
    {MENU_RESUME_SCENARIO, KIND_MENUITEM},
    {MENU_CAMPAIGN, KIND_MENUITEM},
    {MENU_RESUME_CAMPAIGN, KIND_MENUITEM},
    {MENU_MULTIPLAYER, KIND_MENUITEM},
    {MENU_OPTIONS, KIND_MENUITEM},
    {MENU_CREDITS, KIND_MENUITEM},
    {MENU_INTRO, KIND_MENUITEM},
    {MENU_QUIT, KIND_MENUITEM},
    {MENU_CHARACTERS, KIND_MENUITEM},
};

constexpr ControlRule MESSAGE_CONTROLS[] = {
    {CValueBox::IDC_FIRST, KIND_BUTTON, false, 0, BOX_BUTTON_TEXTS},
    {CValueBox::IDC_CAPTION, KIND_TEXTBOX, false, 0, BOX_CAPTION_TEXTS},
    {CValueBox::IDC_MESSAGE, KIND_TEXTBOX},
};

constexpr ControlRule QUESTION_CONTROLS[] = {
    {CValueBox::IDC_FIRST, KIND_BUTTON},
    {CValueBox::IDC_SECOND, KIND_BUTTON},
    {CValueBox::IDC_CAPTION, KIND_TEXTBOX, false, 0, BOX_CAPTION_TEXTS},
    {CValueBox::IDC_MESSAGE, KIND_TEXTBOX},
};

constexpr ControlRule EDIT_CONTROLS[] = {
    {CEditBoxDlg::IDC_PROMPT, KIND_TEXTBOX},
    {CEditBoxDlg::IDC_VALUE, KIND_EDITBOX},
    {CEditBoxDlg::IDC_CANCEL, KIND_BUTTON},
    {CEditBoxDlg::IDC_OK, KIND_BUTTON},
};

constexpr ControlRule FILE_CONTROLS[] = {
    {CFileDlg::IDC_CLOSE, KIND_BUTTON},   {CFileDlg::IDC_LIST, KIND_TABLE, false, FILE_COLUMNS},
    {CFileDlg::IDC_FOLDER, KIND_EDITBOX}, {CFileDlg::IDC_FILE, KIND_EDITBOX},
    {CFileDlg::IDC_ACCEPT, KIND_BUTTON},  {CFileDlg::IDC_TITLE, KIND_TEXTBOX, false, 0, FILE_TITLE_TEXTS},
    {CFileDlg::IDC_UP, KIND_BUTTON},
};

constexpr ControlRule SCENARIO_CONTROLS[] = {
    {CScenSelDlg::IDC_LIST, KIND_TABLE, false, CScenSelDlg::COLUMN_COUNT},
    {CScenSelDlg::IDC_TAKE, KIND_BUTTON},
    {CScenSelDlg::IDC_CLOSE, KIND_BUTTON},
    {CScenSelDlg::IDC_DESCRIPTION, KIND_TEXTBOX},
    {CScenSelDlg::IDC_TITLE, KIND_TEXTBOX},
    {CScenSelDlg::IDC_IMPORT, KIND_BUTTON},
};

constexpr ControlRule SCENARIO_BRIEF_CONTROLS[] = {
    {CScenBriefDlg::IDC_CLOSE, KIND_BUTTON, REQUIRED},
    {CScenBriefDlg::IDC_START, KIND_BUTTON, REQUIRED},
    {CScenBriefDlg::IDC_DESCRIPTION, KIND_TEXTBOX},
    {CScenBriefDlg::IDC_TITLE, KIND_TEXTBOX},
    {CScenBriefDlg::IDC_SHIPS_A, KIND_TABLE, false, SHIP_COLUMNS},
    {CScenBriefDlg::IDC_SHIPS_B, KIND_TABLE, false, SHIP_COLUMNS},
    {CScenBriefDlg::IDC_NAME_A, KIND_CHECKBOX},
    {CScenBriefDlg::IDC_TAKE_A, KIND_CHECKBOX},
    {CScenBriefDlg::IDC_TAKE_B, KIND_CHECKBOX},
    {CScenBriefDlg::IDC_NAME_B, KIND_CHECKBOX},
    {CScenBriefDlg::IDC_OPTION, KIND_CHECKBOX},
    {CScenBriefDlg::IDC_FLAG_A, KIND_FLAGBOX},
    {CScenBriefDlg::IDC_FLAG_B, KIND_FLAGBOX},
    {CScenBriefDlg::IDC_BACK, KIND_BUTTON, REQUIRED},
    {CScenBriefDlg::IDC_EASIER, KIND_BUTTON},
    {CScenBriefDlg::IDC_DIFFICULTY, KIND_TEXTBOX, false, 0, DIFFICULTY_TEXTS},
    {CScenBriefDlg::IDC_HARDER, KIND_BUTTON},
};

constexpr ControlRule HELP_CONTROLS[] = {
    {CHelpDlg::IDC_CLOSE, KIND_BUTTON},
    {CHelpDlg::IDC_FIRST_PAGE, KIND_CHECKBOX},
    {CHelpDlg::IDC_SECOND_PAGE, KIND_CHECKBOX},
};

constexpr ControlRule CREDITS_CONTROLS[] = {
    {CCreditsDlg::IDC_CLOSE, KIND_BUTTON},
    {CCreditsDlg::IDC_TEXT, KIND_ANY},
};

constexpr ControlRule END_GAME_CONTROLS[] = {
    {CEndGameDlg::IDC_LEAVE, KIND_BUTTON},   {CEndGameDlg::IDC_STATISTICS, KIND_BUTTON},
    {CEndGameDlg::IDC_AGAIN, KIND_BUTTON},   {CEndGameDlg::IDC_GO_ON, KIND_BUTTON, false, 0, GO_ON_TEXTS},
    {CEndGameDlg::IDC_LOOK_ON, KIND_BUTTON}, {CEndGameDlg::IDC_RESULT, KIND_TEXTBOX, false, 0, RESULT_TEXTS},
    {CEndGameDlg::IDC_ART, KIND_PICTUREBOX},
};

constexpr ControlRule STATISTICS_CONTROLS[] = {
    {CStatisticsDlg::IDC_TABLE, KIND_TABLE, false, CStatisticsDlg::COLUMN_COUNT},
    {CStatisticsDlg::IDC_CLOSE, KIND_BUTTON},
    {CStatisticsDlg::IDC_SCENARIO, KIND_TEXTBOX},
    {CStatisticsDlg::IDC_TIME, KIND_TEXTBOX},
};

constexpr ControlRule STATUS_CONTROLS[] = {
    {CScStatusDlg::IDC_CLOSE, KIND_BUTTON},      {CScStatusDlg::IDC_DESCRIPTION, KIND_TEXTBOX},
    {CScStatusDlg::IDC_TITLE, KIND_TEXTBOX},     {CScStatusDlg::IDC_NAME_A, KIND_ANY},
    {CScStatusDlg::IDC_PERCENT_A, KIND_TEXTBOX}, {CScStatusDlg::IDC_NAME_B, KIND_ANY},
    {CScStatusDlg::IDC_PERCENT_B, KIND_TEXTBOX}, {CScStatusDlg::IDC_FLAG_A, KIND_FLAGBOX},
    {CScStatusDlg::IDC_FLAG_B, KIND_FLAGBOX},
};

constexpr DialogRule CONTRACT[] = {
    {SECTION_MAIN, MAIN_CONTROLS},
    {SECTION_MESSAGE, MESSAGE_CONTROLS},
    {SECTION_QUESTION, QUESTION_CONTROLS},
    {SECTION_EDIT, EDIT_CONTROLS},
    {SECTION_FILE, FILE_CONTROLS},
    {SECTION_SCENARIOS, SCENARIO_CONTROLS},
    {SECTION_SCENARIO_BRIEF, SCENARIO_BRIEF_CONTROLS},
    {SECTION_HELP, HELP_CONTROLS},
    {SECTION_CREDITS, CREDITS_CONTROLS},
    {SECTION_END_GAME, END_GAME_CONTROLS},
    {SECTION_STATISTICS, STATISTICS_CONTROLS},
    {SECTION_STATUS, STATUS_CONTROLS},
};

} // namespace

std::span<const DialogRule> DialogContract()
{
    return CONTRACT;
}

const DialogRule* FindDialogRule(const char* section)
{
    for (const DialogRule& rule : CONTRACT) {
        if (strcasecmp(rule.section, section) == 0)
            return &rule;
    }
    return nullptr;
}

void CheckRequiredControls(const CItfDialog& dialog, const char* section)
{
    const DialogRule* rule = FindDialogRule(section);
    if (rule == nullptr)
        return;
    for (const ControlRule& control : rule->controls) {
        if (!control.required || dialog.HasControl(control.kind, control.id))
            continue;
        const std::string line = std::string(DIALOG_RESOURCE) + ": [" + section +
                                 "] lacks the required control " + std::to_string(control.id) + "\r\n";
        OutputDebugStringA(line.c_str());
        throw static_cast<int>(RESERR_SYNTAX);
    }
}
