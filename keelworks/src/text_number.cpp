#include "keelworks/text_number.h"

#include <charconv>
#include <cstdint>

namespace
{

constexpr int DECIMAL = 10;
constexpr int HEX = 16;
constexpr std::size_t HEX_PREFIX = 2; ///< characters of 0x

constexpr bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

constexpr bool IsHexDigit(char c)
{
    return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// The character at `pos`, 0 behind the end.
char At(std::string_view text, std::size_t pos)
{
    return pos < text.size() ? text[pos] : '\0';
}

/// Reads behind `skipped` characters. `tooLarge` is what was expected of a number without room in T.
template <class T, class... Base>
ScannedNumber<T> Scan(std::string_view text, std::size_t skipped, const char* tooLarge, Base... base)
{
    T value = {};
    const auto [end, error] =
        std::from_chars(text.data() + skipped, text.data() + text.size(), value, base...);
    if (error != std::errc())
        return {{}, 0, tooLarge};
    return {value, static_cast<std::size_t>(end - text.data()), nullptr};
}

template <class T>
std::optional<T> Whole(const ScannedNumber<T>& number, std::string_view text)
{
    return number.length > 0 && number.length == text.size() ? std::optional(number.value) : std::nullopt;
}

} // namespace

ScannedNumber<int> ScanTextInt(std::string_view text, bool hex)
{
    const bool prefixed =
        At(text, 0) == '0' && (At(text, 1) | 0x20) == 'x' && IsHexDigit(At(text, HEX_PREFIX));
    const std::size_t skipped = prefixed ? HEX_PREFIX : 0;
    if (hex || prefixed) {
        if (!IsHexDigit(At(text, skipped)))
            return {0, 0, "a hexadecimal number"};
        const auto bits = Scan<std::uint32_t>(text, skipped, "a hexadecimal number of at most 32 bits", HEX);
        return {static_cast<int>(bits.value), bits.length, bits.expected};
    }
    const std::size_t sign = At(text, 0) == '+' || At(text, 0) == '-' ? 1 : 0;
    if (!IsDigit(At(text, sign)))
        return {0, 0, "a number"};
    return Scan<int>(text, At(text, 0) == '+' ? 1 : 0, "a number from -2147483648 to 2147483647", DECIMAL);
}

ScannedNumber<float> ScanTextFloat(std::string_view text)
{
    const std::size_t sign = At(text, 0) == '+' || At(text, 0) == '-' ? 1 : 0;
    if (!IsDigit(At(text, sign)) && !(At(text, sign) == '.' && IsDigit(At(text, sign + 1))))
        return {0.0F, 0, "a number"};
    return Scan<float>(text, At(text, 0) == '+' ? 1 : 0, "a number within the range of a 32-bit float");
}

std::optional<int> ParseTextInt(std::string_view text)
{
    return Whole(ScanTextInt(text), text);
}

std::optional<float> ParseTextFloat(std::string_view text)
{
    return Whole(ScanTextFloat(text), text);
}
