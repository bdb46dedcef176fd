#pragma once
// What the dialogs' code and their sections of the dialog resource have to agree on. The code looks its
// controls up by these ids; whoever changes a section may move and paint them, and leave out what isn't
// required.

#include <span>

#include "kernel/itfdialog.h"

// The sections.
inline constexpr char SECTION_MAIN[] = "MainDlg";
inline constexpr char SECTION_MESSAGE[] = "MessageBoxDlg";
inline constexpr char SECTION_QUESTION[] = "MessageBoxYesNoDlg";
inline constexpr char SECTION_EDIT[] = "EditBoxDlg";
inline constexpr char SECTION_FILE[] = "FileDlg";
inline constexpr char SECTION_SCENARIOS[] = "ScenSelDlg";
inline constexpr char SECTION_SCENARIO_BRIEF[] = "ScenBriefDlg";

inline constexpr char SECTION_HELP[] = "HelpDlg";
inline constexpr char SECTION_CREDITS[] = "CreditsDlg";
inline constexpr char SECTION_END_GAME[] = "EndGameDlg";
inline constexpr char SECTION_STATISTICS[] = "StatisticsDlg";
inline constexpr char SECTION_STATUS[] = "ScStatusDlg";

/// In a rule: the code needs no more of the control than a window has, so it may be of any kind. Never for a
/// required one.
constexpr auto KIND_ANY = static_cast<ItfControlKind>(-1);

/// The id of labels and frames, which no code looks for. Any section may hold any number of text boxes with
/// it.
constexpr int CONTROL_ID_NONE = 0;

struct ControlRule {
    int id; ///< of a menu item: what the menu sends
    ItfControlKind kind;
    bool required = false; ///< the dialog can't be opened without it
    int columns = 0;       ///< of a table: those that the code fills
    /// Of the text table: what the code may put there in place of its caption.
    std::span<const int> texts = {};
};

struct DialogRule {
    const char* section;
    std::span<const ControlRule> controls;
};

/// A row for each section that a class of the module reads.
std::span<const DialogRule> DialogContract();
/// Ignores case; null for a section that no class reads.
const DialogRule* FindDialogRule(const char* section);
/// Throws RESERR_SYNTAX, after a line for the debug output, when the dialog lacks a required control of its
/// section, or has one of another class there.
void CheckRequiredControls(const CItfDialog& dialog, const char* section);
