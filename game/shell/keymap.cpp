#include "shell/keymap.h"

#include <SDL.h>
#include <charconv>
#include <cstdio>

#include "engine/names.h"
#include "platform/types.h"

namespace
{

constexpr int LAST_KEY = 255;
constexpr const char* CODE_PREFIX = "vk0x";

// Codes that no dialog asks for, but that the game hears of all the same.
constexpr int VK_CLEAR = 0x0c;
constexpr int VK_SNAPSHOT = 0x2c;
constexpr int VK_LWIN = 0x5b;
constexpr int VK_RWIN = 0x5c;
constexpr int VK_APPS = 0x5d;
constexpr int VK_F13 = 0x7c;
constexpr int VK_NUMLOCK = 0x90;
constexpr int VK_SCROLL = 0x91;
constexpr int VK_OEM_102 = 0xe2; // between the left Shift and the letters
constexpr int VK_UNKNOWN = 0xff;

struct NamedKey {
    const char* name;
    int key;
};
// The first name of a code is the one that KeyName gives.
constexpr NamedKey NAMED_KEYS[] = {
    {"backspace", VK_BACK},    {"tab", VK_TAB},         {"enter", VK_RETURN},      {"return", VK_RETURN},
    {"shift", VK_SHIFT},       {"ctrl", VK_CONTROL},    {"alt", VK_MENU},          {"pause", VK_PAUSE},
    {"capslock", VK_CAPITAL},  {"escape", VK_ESCAPE},   {"esc", VK_ESCAPE},        {"space", VK_SPACE},
    {"pageup", VK_PRIOR},      {"pagedown", VK_NEXT},   {"end", VK_END},           {"home", VK_HOME},
    {"left", VK_LEFT},         {"up", VK_UP},           {"right", VK_RIGHT},       {"down", VK_DOWN},
    {"insert", VK_INSERT},     {"delete", VK_DELETE},   {"multiply", VK_MULTIPLY}, {"add", VK_ADD},
    {"subtract", VK_SUBTRACT}, {"decimal", VK_DECIMAL}, {"divide", VK_DIVIDE},
};

struct SdlKey {
    std::int32_t keycode;
    int key;
};
constexpr SdlKey SDL_KEYS[] = {
    {SDLK_BACKSPACE, VK_BACK},
    {SDLK_TAB, VK_TAB},
    {SDLK_RETURN, VK_RETURN},
    {SDLK_KP_ENTER, VK_RETURN},
    {SDLK_LSHIFT, VK_SHIFT},
    {SDLK_RSHIFT, VK_SHIFT},
    {SDLK_LCTRL, VK_CONTROL},
    {SDLK_RCTRL, VK_CONTROL},
    {SDLK_LALT, VK_MENU},
    {SDLK_RALT, VK_MENU},
    {SDLK_PAUSE, VK_PAUSE},
    {SDLK_CAPSLOCK, VK_CAPITAL},
    {SDLK_ESCAPE, VK_ESCAPE},
    {SDLK_SPACE, VK_SPACE},
    {SDLK_CLEAR, VK_CLEAR},
    {SDLK_PRINTSCREEN, VK_SNAPSHOT},
    {SDLK_SCROLLLOCK, VK_SCROLL},
    {SDLK_NUMLOCKCLEAR, VK_NUMLOCK},
    {SDLK_LGUI, VK_LWIN},
    {SDLK_RGUI, VK_RWIN},
    {SDLK_APPLICATION, VK_APPS},
    {SDLK_PAGEUP, VK_PRIOR},
    {SDLK_PAGEDOWN, VK_NEXT},
    {SDLK_END, VK_END},
    {SDLK_HOME, VK_HOME},
    {SDLK_LEFT, VK_LEFT},
    {SDLK_UP, VK_UP},
    {SDLK_RIGHT, VK_RIGHT},
    {SDLK_DOWN, VK_DOWN},
    {SDLK_INSERT, VK_INSERT},
    {SDLK_DELETE, VK_DELETE},
    {SDLK_KP_MULTIPLY, VK_MULTIPLY},
    {SDLK_KP_PLUS, VK_ADD},
    {SDLK_KP_MINUS, VK_SUBTRACT},
    {SDLK_KP_DIVIDE, VK_DIVIDE},
    // The punctuation keys of the American layout.
    {SDLK_SEMICOLON, 0xba},
    {SDLK_EQUALS, 0xbb},
    {SDLK_COMMA, 0xbc},
    {SDLK_MINUS, 0xbd},
    {SDLK_PERIOD, 0xbe},
    {SDLK_SLASH, 0xbf},
    {SDLK_BACKQUOTE, 0xc0},
    {SDLK_LEFTBRACKET, 0xdb},
    {SDLK_BACKSLASH, 0xdc},
    {SDLK_RIGHTBRACKET, 0xdd},
    {SDLK_QUOTE, 0xde},
};

struct KeypadKey {
    std::int32_t keycode;
    int withNumLock;
    int without;
};
constexpr KeypadKey KEYPAD_KEYS[] = {
    {SDLK_KP_0, VK_NUMPAD0, VK_INSERT},      {SDLK_KP_1, VK_NUMPAD0 + 1, VK_END},
    {SDLK_KP_2, VK_NUMPAD0 + 2, VK_DOWN},    {SDLK_KP_3, VK_NUMPAD0 + 3, VK_NEXT},
    {SDLK_KP_4, VK_NUMPAD0 + 4, VK_LEFT},    {SDLK_KP_5, VK_NUMPAD0 + 5, VK_CLEAR},
    {SDLK_KP_6, VK_NUMPAD0 + 6, VK_RIGHT},   {SDLK_KP_7, VK_NUMPAD0 + 7, VK_HOME},
    {SDLK_KP_8, VK_NUMPAD0 + 8, VK_UP},      {SDLK_KP_9, VK_NUMPAD0 + 9, VK_PRIOR},
    {SDLK_KP_PERIOD, VK_DECIMAL, VK_DELETE},
};

struct PlacedKey {
    std::int32_t scancode;
    int key;
};
// What stands there on the American layout; letters and digits follow by counting.
constexpr PlacedKey PLACED_KEYS[] = {
    {SDL_SCANCODE_0, '0'},
    {SDL_SCANCODE_SEMICOLON, 0xba},
    {SDL_SCANCODE_EQUALS, 0xbb},
    {SDL_SCANCODE_COMMA, 0xbc},
    {SDL_SCANCODE_MINUS, 0xbd},
    {SDL_SCANCODE_PERIOD, 0xbe},
    {SDL_SCANCODE_SLASH, 0xbf},
    {SDL_SCANCODE_GRAVE, 0xc0},
    {SDL_SCANCODE_LEFTBRACKET, 0xdb},
    {SDL_SCANCODE_BACKSLASH, 0xdc},
    {SDL_SCANCODE_NONUSHASH, 0xdc},
    {SDL_SCANCODE_RIGHTBRACKET, 0xdd},
    {SDL_SCANCODE_APOSTROPHE, 0xde},
    {SDL_SCANCODE_NONUSBACKSLASH, VK_OEM_102},
};

/// For a key whose letter has no code.
int KeyFromPlace(std::int32_t scancode)
{
    if (scancode >= SDL_SCANCODE_A && scancode <= SDL_SCANCODE_Z)
        return scancode - SDL_SCANCODE_A + 'A';
    if (scancode >= SDL_SCANCODE_1 && scancode <= SDL_SCANCODE_9)
        return scancode - SDL_SCANCODE_1 + '1';
    for (const PlacedKey& key : PLACED_KEYS) {
        if (key.scancode == scancode)
            return key.key;
    }
    return VK_UNKNOWN;
}

bool IsLetterOrDigit(int key)
{
    return (key >= 'A' && key <= 'Z') || (key >= '0' && key <= '9');
}

/// A number behind a prefix, -1 when the name doesn't have that form.
int NumberBehind(const std::string& name, const std::string& prefix, int base)
{
    int value = -1;
    if (!name.starts_with(prefix))
        return -1;
    const char* end = name.data() + name.size();
    const auto result = std::from_chars(name.data() + prefix.size(), end, value, base);
    return result.ec == std::errc() && result.ptr == end ? value : -1;
}

} // namespace

int KeyFromName(const std::string& spelled)
{
    const std::string name = LowerCase(spelled);
    for (const NamedKey& key : NAMED_KEYS) {
        if (name == key.name)
            return key.key;
    }
    if (name.size() == 1) {
        const int key = name[0] >= 'a' && name[0] <= 'z' ? name[0] - 'a' + 'A' : name[0];
        return IsLetterOrDigit(key) ? key : 0;
    }
    if (const int number = NumberBehind(name, "f", 10); number >= 1 && number <= VK_F12 - VK_F1 + 1)
        return VK_F1 + number - 1;
    if (const int number = NumberBehind(name, "numpad", 10); number >= 0 && number <= 9)
        return VK_NUMPAD0 + number;
    const int code = NumberBehind(name, CODE_PREFIX, 16);
    return code >= 1 && code <= LAST_KEY ? code : 0;
}

std::string KeyName(int key)
{
    for (const NamedKey& named : NAMED_KEYS) {
        if (named.key == key)
            return named.name;
    }
    if (IsLetterOrDigit(key))
        return LowerCase(std::string(1, static_cast<char>(key)));
    if (key >= VK_F1 && key <= VK_F12)
        return "f" + std::to_string(key - VK_F1 + 1);
    if (key >= VK_NUMPAD0 && key <= VK_NUMPAD0 + 9)
        return "numpad" + std::to_string(key - VK_NUMPAD0);
    char text[16];
    std::snprintf(text, sizeof(text), "%s%02x", CODE_PREFIX, static_cast<unsigned>(key));
    return text;
}

int KeyFromSdl(std::int32_t keycode, std::int32_t scancode, bool numLock)
{
    if (keycode >= SDLK_a && keycode <= SDLK_z)
        return keycode - SDLK_a + 'A';
    if (keycode >= SDLK_0 && keycode <= SDLK_9)
        return keycode;
    if (keycode >= SDLK_F1 && keycode <= SDLK_F12)
        return VK_F1 + (keycode - SDLK_F1);
    if (keycode >= SDLK_F13 && keycode <= SDLK_F24)
        return VK_F13 + (keycode - SDLK_F13);
    for (const KeypadKey& key : KEYPAD_KEYS) {
        if (key.keycode == keycode)
            return numLock ? key.withNumLock : key.without;
    }
    for (const SdlKey& key : SDL_KEYS) {
        if (key.keycode == keycode)
            return key.key;
    }
    return KeyFromPlace(scancode);
}
