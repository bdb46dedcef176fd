#pragma once
// A text resource as tokens, cut by the rules of the text parser, for readers that go on after a fault.

#include <string>
#include <vector>

#include "faults.h"

struct ResourceToken {
    enum class Kind {
        Text, ///< in quotes
        Word, ///< without
        Mark, ///< one of , { } =
        Broken,
        End,
    };
    Kind kind = Kind::End;
    std::string text; ///< of a broken one: what is wrong with it
    int line = 1;
    bool firstOnLine = false;

    bool IsMark(char mark) const { return kind == Kind::Mark && text[0] == mark; }
    /// In words, for what a fault says.
    std::string Describe() const;
};

/// The whole file, with an End behind its last token. A file that can't be read is a fault.
std::vector<ResourceToken> ReadTokens(const char* path, CFaults& faults);

struct NumberedRow {
    int number;
    int line;
};
/// Every number that begins a line and has a comma behind it.
std::vector<NumberedRow> NumberedRows(const std::vector<ResourceToken>& tokens);

/// A whole decimal number, or a hexadecimal one behind 0x. False when it isn't one or has no room in an int.
bool ParseNumber(const std::string& text, int& out);
