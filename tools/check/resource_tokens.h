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
    int number; ///< its first
    int line;
    std::string text; ///< its first; empty when the row is wrong there
};
/// The rows of a file of numbers, each with a comma behind it, and a text, with a comma between rows or not.
/// A row that is wrong behind its first number counts all the same, and reading goes on with the next line.
std::vector<NumberedRow> NumberedRows(const std::vector<ResourceToken>& tokens, std::size_t numbers);
