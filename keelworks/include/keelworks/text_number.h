#pragma once
// The number forms of every text resource, once for all who read them. docs/formats.md tells them.

#include <cstddef>
#include <optional>
#include <string_view>

/// A number that a text begins with, or why there is none.
template <class T>
struct ScannedNumber {
    T value = {};
    std::size_t length = 0;         ///< its characters; 0 when there is no number
    const char* expected = nullptr; ///< what was looked for then; null when there is a number
};

/// Decimal with a sign or without, or 0x and hexadecimal digits, which set all 32 bits and take no sign. With
/// `hex` every number is hexadecimal, the 0x being optional.
ScannedNumber<int> ScanTextInt(std::string_view text, bool hex = false);
/// Decimal with fraction and exponent, the point being '.' in every locale.
ScannedNumber<float> ScanTextFloat(std::string_view text);

/// The same for a text that is a number from its first character to its last; nothing when it isn't one.
std::optional<int> ParseTextInt(std::string_view text);
std::optional<float> ParseTextFloat(std::string_view text);
