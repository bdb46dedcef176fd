#pragma once
// The ascending orders of a report box's rows. Keys are taken from the texts once, before the sort: no
// comparison looks at a text.

#include <cstdint>
#include <string_view>
#include <vector>

/// For each place the index of the row that comes there. Equal rows keep their order.
using RowOrder = std::vector<std::uint32_t>;

/// In byte order.
RowOrder OrderByText(const std::vector<std::string_view>& texts);
/// By the decimal integer, with an optional sign, that a text begins with, as far as it goes; 0 where it
/// doesn't begin with one. Held within 64 bits.
RowOrder OrderByNumber(const std::vector<std::string_view>& texts);
/// By group, then by text without regard to the case of the letters of code page 1252. Both have one element
/// for each row.
RowOrder OrderByGroup(const std::vector<int>& groups, const std::vector<std::string_view>& texts);
