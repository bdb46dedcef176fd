#pragma once
// Every logical name of a sprite, font or texture that the module draws with by itself, whatever its dialogs
// say.

#include <string_view>

// Once for both: what the code draws with can't be missing from the tables below.
// clang-format off
#define SEAWARDEN_OWN_SPRITES(SPRITE) \
    SPRITE(SPRITE_BUTTON_DOWN, "itfBtDown") \
    SPRITE(SPRITE_BUTTON_UP, "itfBtUp") \
    SPRITE(SPRITE_FADE, "itfFade") \
    SPRITE(SPRITE_FADE_QUESTION, "itfFade2") \
    SPRITE(SPRITE_LOGO, "itfScLogo") \
    SPRITE(SPRITE_BAR, "itfScBar") \
    SPRITE(SPRITE_BAR_UP, "itfScArrUp") \
    SPRITE(SPRITE_BAR_UP_ACTIVE, "itfScArrUpA") \
    SPRITE(SPRITE_BAR_DOWN, "itfScArrDown") \
    SPRITE(SPRITE_BAR_DOWN_ACTIVE, "itfScArrDownA") \
    SPRITE(SPRITE_HOR_BAR, "itfScHorBar") \
    SPRITE(SPRITE_HOR_BAR_UP, "itfScHorArrUp") \
    SPRITE(SPRITE_HOR_BAR_UP_ACTIVE, "itfScHorArrUpA") \
    SPRITE(SPRITE_HOR_BAR_DOWN, "itfScHorArrDown") \
    SPRITE(SPRITE_HOR_BAR_DOWN_ACTIVE, "itfScHorArrDownA") \
    SPRITE(SPRITE_HIGHLIGHT, "itfTrans137") \
    SPRITE(SPRITE_PROGRESS_EMPTY, "ItfProgressEmpty") \
    SPRITE(SPRITE_PROGRESS_FULL, "ItfProgressFull") \
    SPRITE(SPRITE_HELP_BATTLE, "itfHelpIcons") \
    SPRITE(SPRITE_HELP_DIALOGS, "itfHelpItf1") \
    SPRITE(SPRITE_DEFEAT, "itfLoseArt")

#define SEAWARDEN_OWN_FONTS(FONT) \
    FONT(FONT_BUTTON, "itfBtnFont") \
    FONT(FONT_BUTTON_ACTIVE, "itfBtnFontA") \
    FONT(FONT_BUTTON_DISABLED, "itfBtnFontDis") \
    FONT(FONT_LIST, "itfListFont") \
    FONT(FONT_NOTE, "itfListFont1") \
    FONT(FONT_MENU, "itfMenuFont") \
    FONT(FONT_MENU_ACTIVE, "itfMenuFontA") \
    FONT(FONT_MENU_DISABLED, "itfMenuFontDis") \
    FONT(FONT_MAIN, "itfMainFont")
// clang-format on

#define SEAWARDEN_NAME_CONSTANT(constant, name) inline constexpr char constant[] = name;
SEAWARDEN_OWN_SPRITES(SEAWARDEN_NAME_CONSTANT)
SEAWARDEN_OWN_FONTS(SEAWARDEN_NAME_CONSTANT)
#undef SEAWARDEN_NAME_CONSTANT

/// The flag of a custom nation that nobody knows.
inline constexpr char TEXTURE_WHITE_FLAG[] = "white_flg.tf";

/// A font's name with one of these behind it is the font of that state of a control.
inline constexpr char FONT_SUFFIX_ACTIVE[] = "A";
inline constexpr char FONT_SUFFIX_DISABLED[] = "Dis";

#define SEAWARDEN_NAME_ELEMENT(constant, name) constant,
inline constexpr const char* OWN_SPRITES[] = {SEAWARDEN_OWN_SPRITES(SEAWARDEN_NAME_ELEMENT)};
inline constexpr const char* OWN_FONTS[] = {SEAWARDEN_OWN_FONTS(SEAWARDEN_NAME_ELEMENT)};
#undef SEAWARDEN_NAME_ELEMENT
