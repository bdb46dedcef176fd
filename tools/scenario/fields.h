#pragma once
// What the text form calls the fields of a unit.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "keelworks/scenario.h"

/// A text, or up to five numbers in a row, with one keyword in front.
struct ScenarioField {
    static constexpr std::size_t MAX_NUMBERS = 5;

    const char* keyword;
    std::size_t textSize;                         ///< bytes of a text with its zero; 0 for numbers
    std::size_t count;                            ///< of numbers
    std::array<std::size_t, MAX_NUMBERS> offsets; ///< in the item's record; of a text the first
    std::int32_t low;
    std::int32_t high;
};

/// A type of unit: its keyword, an item of it with nothing set, and its fields in the order they are written.
struct ScenarioUnitKind {
    const char* keyword;
    ScenarioItem empty;
    std::vector<ScenarioField> fields;

    /// Null for an unknown keyword; case doesn't matter.
    const ScenarioField* Find(std::string_view fieldKeyword) const;
};

/// One for each alternative of ScenarioItem, in that order.
const std::array<ScenarioUnitKind, std::variant_size_v<ScenarioItem>>& ScenarioUnitKinds();

/// The bytes of the item's record.
char* ScenarioRecord(ScenarioItem& item);
const char* ScenarioRecord(const ScenarioItem& item);

std::int32_t GetNumber(const ScenarioItem& item, std::size_t offset);
void SetNumber(ScenarioItem& item, std::size_t offset, std::int32_t value);
