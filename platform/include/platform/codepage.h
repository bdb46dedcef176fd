#pragma once
// Text is bytes in code page 1252 everywhere in the program; the system's file names, clipboard and terminal
// are UTF-8. These convert, and compare as the game's names are compared.

#include <string>
#include <string_view>

/// Every byte has a character: the five that the code page leaves open stand for the control of that number.
std::string PlatformToUtf8(std::string_view text);
/// What the code page lacks becomes '?', as do broken sequences (one for each byte of them).
std::string PlatformFromUtf8(std::string_view utf8);
/// Whether all of the text is valid UTF-8.
bool PlatformIsUtf8(std::string_view text);
/// The name of a file as the program sees it: from UTF-8 where it is that and fits the code page, else the
/// bytes themselves, so that each file can be opened by the name that is shown.
std::string PlatformFromFileName(std::string_view name);
/// A new file's name on the disk: as it stands if it is valid UTF-8 already, else converted.
std::string PlatformToFileName(std::string_view name);

/// The lower-case letter of a capital of the code page, any other byte unchanged.
unsigned char PlatformLower(unsigned char c);
/// Below, equal to or above 0, ignoring case.
int PlatformCompareNoCase(std::string_view a, std::string_view b);
bool PlatformEqualNoCase(std::string_view a, std::string_view b);
