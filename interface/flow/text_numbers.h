#pragma once
// Every number of the logic's text table that the module asks for by itself.

#include <span>

// Once for both: what the code names can't be missing from the table.
// clang-format off
#define SEAWARDEN_TEXT_NUMBERS(TEXT) \
    TEXT(TEXT_WATERS_OTHER, 11) \
    TEXT(TEXT_WATERS_SEA, 12) \
    TEXT(TEXT_WON, 13) \
    TEXT(TEXT_LOST, 14) \
    TEXT(TEXT_LEAVE_QUESTION, 16) \
    TEXT(TEXT_DIFFICULTY, 25) /* the easiest; the two others follow */ \
    TEXT(TEXT_DIFFICULTY_NORMAL, 26) \
    TEXT(TEXT_DIFFICULTY_HARD, 27) \
    TEXT(TEXT_BROKEN_SCENARIO, 70) \
    TEXT(TEXT_MESSAGE_CAPTION, 83) \
    TEXT(TEXT_VERSION, 116) \
    TEXT(TEXT_OTHER_BUTTON, 128) \
    TEXT(TEXT_ERROR_CAPTION, 12201) \
    TEXT(TEXT_FILE_NOT_TAKEN, 12203) \
    TEXT(TEXT_IMPORT_FAILED, 12204) \
    TEXT(TEXT_DESKTOP, 12210) \
    TEXT(TEXT_COMPUTER, 12211) \
    TEXT(TEXT_HOME, 12212) \
    TEXT(TEXT_PLAYER_FOLDER, 12213) \
    TEXT(TEXT_GAME_FOLDER, 12214) \
    TEXT(TEXT_TIME_DAYS, 12250) /* with a %d for the days, one for the hours and one for the minutes */ \
    TEXT(TEXT_TIME_HOURS, 12251) /* hours and minutes */ \
    TEXT(TEXT_TIME_MINUTES, 12252) \
    TEXT(TEXT_IMPORT_TITLE, 12302) \
    TEXT(TEXT_TO_CAMPAIGN, 13112) \
    TEXT(TEXT_TO_LOBBY, 13113) \
    TEXT(TEXT_LEAVE_CAPTION, 13150)
// clang-format on

enum TextNumber : int {
#define SEAWARDEN_TEXT_ENUMERATOR(name, number) name = (number),
    SEAWARDEN_TEXT_NUMBERS(SEAWARDEN_TEXT_ENUMERATOR)
#undef SEAWARDEN_TEXT_ENUMERATOR
};

struct TextNumberRow {
    int number;
    const char* name;
};
/// All of them, ascending.
std::span<const TextNumberRow> TextNumbers();
