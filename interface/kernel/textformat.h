#pragma once
// Numbers in texts that a translator may have changed.

#include <initializer_list>
#include <string>

/// The format with a number in place of each %d, in their order, and % for %%. What it asks for beyond the
/// numbers given, or by any other letter, stays as it is written. Null gives an empty text.
std::string FormatNumbers(const char* format, std::initializer_list<int> numbers);
