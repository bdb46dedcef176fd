#pragma once
// Names of keys in scripts, and the window system's keys as virtual key codes.

#include <cstdint>
#include <string>

/// The code of a key's name ("enter", "left", "a", "f5", "vk0x5b"), ignoring case; 0 for an unknown one.
int KeyFromName(const std::string& name);
/// The name of a code; every code from 1 to 255 has one that KeyFromName understands.
std::string KeyName(int key);
/// The code of an SDL keycode, or else of what the American layout has at the scancode's place; 0xff when
/// there is none. Without `numLock` the keypad's digits are the keys that are printed below them.
int KeyFromSdl(std::int32_t keycode, std::int32_t scancode, bool numLock);
