#include "platform/codepage.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace
{

constexpr unsigned char HIGH_TABLE_FIRST = 0x80;
constexpr unsigned char HIGH_TABLE_LAST = 0x9f;
constexpr char UNKNOWN = '?';

/// Code points of the bytes 0x80 to 0x9f; all others are their own number.
constexpr std::array<char32_t, 32> HIGH_TABLE = {
    0x20ac, 0x81,   0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8d,   0x017d, 0x8f,   0x90,   0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0x9d,   0x017e, 0x0178};

constexpr char32_t NARROW_NO_BREAK_SPACE = 0x202f;
constexpr unsigned char NO_BREAK_SPACE = 0xa0;

void AppendUtf8(std::string& out, char32_t c)
{
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xc0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3f));
    } else {
        out += static_cast<char>(0xe0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3f));
        out += static_cast<char>(0x80 | (c & 0x3f));
    }
}

/// Takes one character off the front of `text`. A broken sequence takes one byte and gives nothing.
std::optional<char32_t> TakeUtf8(std::string_view& text)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xc2 ? 0 : lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : 4;
    if (length == 0 || lead > 0xf4 || text.size() < length) {
        text.remove_prefix(1);
        return std::nullopt;
    }
    constexpr std::array<unsigned char, 5> leadMask = {0, 0x7f, 0x1f, 0x0f, 0x07};
    char32_t c = lead & leadMask[length];
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xc0) != 0x80) {
            text.remove_prefix(1);
            return std::nullopt;
        }
        c = (c << 6) | (byte(i) & 0x3fu);
    }
    constexpr std::array<char32_t, 5> smallest = {0, 0, 0x80, 0x800, 0x10000};
    if (c < smallest[length] || (c >= 0xd800 && c <= 0xdfff) || c > 0x10ffff) {
        text.remove_prefix(1);
        return std::nullopt;
    }
    text.remove_prefix(length);
    return c;
}

std::optional<unsigned char> ToCodePage(char32_t c)
{
    if (c < HIGH_TABLE_FIRST || (c > HIGH_TABLE_LAST && c <= 0xff)) {
        return static_cast<unsigned char>(c);
    }
    if (c == NARROW_NO_BREAK_SPACE) {
        return NO_BREAK_SPACE;
    }
    const auto* it = std::find(HIGH_TABLE.begin(), HIGH_TABLE.end(), c);
    if (it == HIGH_TABLE.end()) {
        return std::nullopt;
    }
    return static_cast<unsigned char>(HIGH_TABLE_FIRST + (it - HIGH_TABLE.begin()));
}

constexpr std::array<unsigned char, 256> MakeLowerTable()
{
    std::array<unsigned char, 256> table{};
    for (unsigned c = 0; c < 256; ++c) {
        const bool ascii = c >= 'A' && c <= 'Z';
        const bool latin = c >= 0xc0 && c <= 0xde && c != 0xd7;
        const bool high = c == 0x8a || c == 0x8c || c == 0x8e; // S caron, OE, Z caron
        table[c] = static_cast<unsigned char>(ascii || latin ? c + 0x20 : high ? c + 0x10 : c);
    }
    table[0x9f] = 0xff; // Y diaeresis
    return table;
}

constexpr std::array<unsigned char, 256> LOWER = MakeLowerTable();

} // namespace

std::string PlatformToUtf8(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (char ch : text) {
        const auto c = static_cast<unsigned char>(ch);
        const bool inTable = c >= HIGH_TABLE_FIRST && c <= HIGH_TABLE_LAST;
        AppendUtf8(out, inTable ? HIGH_TABLE[c - HIGH_TABLE_FIRST] : c);
    }
    return out;
}

std::string PlatformFromUtf8(std::string_view utf8)
{
    std::string out;
    out.reserve(utf8.size());
    while (!utf8.empty()) {
        const auto c = TakeUtf8(utf8);
        const auto byte = c ? ToCodePage(*c) : std::nullopt;
        out += byte ? static_cast<char>(*byte) : UNKNOWN;
    }
    return out;
}

bool PlatformIsUtf8(std::string_view text)
{
    while (!text.empty()) {
        if (!TakeUtf8(text)) {
            return false;
        }
    }
    return true;
}

std::string PlatformFromFileName(std::string_view name)
{
    std::string out;
    for (std::string_view rest = name; !rest.empty();) {
        const auto c = TakeUtf8(rest);
        const auto byte = c && *c != NARROW_NO_BREAK_SPACE ? ToCodePage(*c) : std::nullopt;
        if (!byte) {
            return std::string(name);
        }
        out += static_cast<char>(*byte);
    }
    return out;
}

std::string PlatformToFileName(std::string_view name)
{
    return PlatformIsUtf8(name) ? std::string(name) : PlatformToUtf8(name);
}

unsigned char PlatformLower(unsigned char c)
{
    return LOWER[c];
}

int PlatformCompareNoCase(std::string_view a, std::string_view b)
{
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const int difference =
            LOWER[static_cast<unsigned char>(a[i])] - LOWER[static_cast<unsigned char>(b[i])];
        if (difference != 0) {
            return difference;
        }
    }
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

bool PlatformEqualNoCase(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && PlatformCompareNoCase(a, b) == 0;
}
