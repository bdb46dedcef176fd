#include "controls/itfroworder.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <span>
#include <string>

namespace
{

/// Two words, so that most texts differ in their first key.
struct Key {
    std::uint64_t high = 0;
    std::uint64_t low = 0;

    bool operator==(const Key& other) const { return high == other.high && low == other.low; }
};

struct Entry {
    Key key;
    std::uint32_t row;

    bool operator<(const Entry& other) const
    {
        if (key.high != other.key.high)
            return key.high < other.key.high;
        return key.low != other.key.low ? key.low < other.key.low : row < other.row;
    }
};

/// Bytes of a text that a key holds, the first one uppermost. The lowest byte tells how many of them the text
/// has, or TEXT_GOES_ON. So a text comes before those that it begins, and equal keys mean equal texts unless
/// they go on.
constexpr std::size_t KEY_BYTES = 15;
constexpr std::uint64_t TEXT_GOES_ON = KEY_BYTES + 1;
constexpr std::uint64_t LENGTH_MASK = 0xff;

std::uint64_t FirstByteUppermost(const unsigned char (&bytes)[8])
{
    std::uint64_t word = 0;
    for (const unsigned char byte : bytes)
        word = word << 8 | byte;
    return word;
}

Key KeyAt(std::string_view text, std::size_t offset)
{
    unsigned char bytes[2][8] = {};
    const std::size_t left = text.size() > offset ? text.size() - offset : 0;
    if (left > KEY_BYTES)
        std::memcpy(bytes, text.data() + offset, KEY_BYTES);
    else if (left > 0)
        std::memcpy(bytes, text.data() + offset, left);
    const std::uint64_t count = left > KEY_BYTES ? TEXT_GOES_ON : left;
    return {FirstByteUppermost(bytes[0]), FirstByteUppermost(bytes[1]) | count};
}

/// A signed value as a key that sorts the same.
Key KeyOf(std::int64_t value)
{
    return {static_cast<std::uint64_t>(value) ^ (std::uint64_t{1} << 63), 0};
}

std::int64_t LeadingNumber(std::string_view text)
{
    constexpr std::int64_t HIGHEST = std::numeric_limits<std::int64_t>::max();
    const bool negative = !text.empty() && text.front() == '-';
    if (negative || (!text.empty() && text.front() == '+'))
        text.remove_prefix(1);
    std::int64_t value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9')
            break;
        const int digit = c - '0';
        if (value > (HIGHEST - digit) / 10) {
            value = HIGHEST;
            break;
        }
        value = value * 10 + digit;
    }
    return negative ? -value : value;
}

/// Calls act(begin, end) for each stretch of at least two entries with one key.
template <class Act>
void ForEachTie(std::span<const Entry> entries, Act act)
{
    for (std::size_t begin = 0; begin < entries.size();) {
        std::size_t end = begin + 1;
        while (end < entries.size() && entries[end].key == entries[begin].key)
            ++end;
        if (end - begin > 1)
            act(begin, end);
        begin = end;
    }
}

// The entries come in ascending order of rows. Sorts by the first bytes, then each tie by the next ones: a
// beginning that all texts share costs one pass.
void SortByText(std::span<Entry> entries, const std::vector<std::string_view>& texts)
{
    struct Tie {
        std::size_t begin;
        std::size_t end;
        std::size_t offset;
    };
    std::vector<Tie> open{{0, entries.size(), 0}};
    while (!open.empty()) {
        const Tie tie = open.back();
        open.pop_back();
        const std::span<Entry> part = entries.subspan(tie.begin, tie.end - tie.begin);
        bool differ = false;
        for (Entry& entry : part) {
            entry.key = KeyAt(texts[entry.row], tie.offset);
            differ |= !(entry.key == part.front().key);
        }
        if (differ)
            std::sort(part.begin(), part.end());
        ForEachTie(part, [&](std::size_t begin, std::size_t end) {
            if ((part[begin].key.low & LENGTH_MASK) == TEXT_GOES_ON)
                open.push_back({tie.begin + begin, tie.begin + end, tie.offset + KEY_BYTES});
        });
    }
}

std::vector<Entry> Entries(std::size_t count)
{
    std::vector<Entry> entries(count);
    for (std::size_t i = 0; i < count; ++i)
        entries[i] = {Key(), static_cast<std::uint32_t>(i)};
    return entries;
}

RowOrder RowsOf(const std::vector<Entry>& entries)
{
    RowOrder order;
    order.reserve(entries.size());
    for (const Entry& entry : entries)
        order.push_back(entry.row);
    return order;
}

char ToLower(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    const bool latin = byte >= 0xc0 && byte <= 0xde && byte != 0xd7;
    if ((byte >= 'A' && byte <= 'Z') || latin)
        return static_cast<char>(byte + 0x20);
    if (byte == 0x8a || byte == 0x8c || byte == 0x8e) // S and Z with a hook, OE
        return static_cast<char>(byte + 0x10);
    return byte == 0x9f ? static_cast<char>(0xff) : c; // Y with two dots
}

} // namespace

RowOrder OrderByText(const std::vector<std::string_view>& texts)
{
    std::vector<Entry> entries = Entries(texts.size());
    SortByText(entries, texts);
    return RowsOf(entries);
}

RowOrder OrderByNumber(const std::vector<std::string_view>& texts)
{
    std::vector<Entry> entries = Entries(texts.size());
    for (Entry& entry : entries)
        entry.key = KeyOf(LeadingNumber(texts[entry.row]));
    std::sort(entries.begin(), entries.end());
    return RowsOf(entries);
}

RowOrder OrderByGroup(const std::vector<int>& groups, const std::vector<std::string_view>& texts)
{
    std::vector<std::string> lower;
    lower.reserve(texts.size());
    for (const std::string_view text : texts) {
        lower.emplace_back(text);
        std::transform(text.begin(), text.end(), lower.back().begin(), ToLower);
    }
    const std::vector<std::string_view> folded(lower.begin(), lower.end());

    std::vector<Entry> entries = Entries(texts.size());
    for (Entry& entry : entries)
        entry.key = KeyOf(groups[entry.row]);
    std::sort(entries.begin(), entries.end());
    const std::span<Entry> all = entries;
    ForEachTie(all, [&](std::size_t begin, std::size_t end) {
        SortByText(all.subspan(begin, end - begin), folded);
    });
    return RowsOf(entries);
}
