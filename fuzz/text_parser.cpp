// Drives the text parser with a list of operations over a text. The input's first byte is the number of
// operations, one byte each; the rest is the text. Every failure must be told,
// positions and lines must stay within the text.

#include <algorithm>
#include <cmath>
#include <vector>

#include "frame.h"
#include "keelworks/text_parser.h"

namespace
{

constexpr char CHARACTERS[] = {',', '}', '{', '"', ';', '/', ' ', '\n', 'x', '\0'};
constexpr const char* TOKENS[] = {"symbols", "texture", "MainDlg", "{", "", "a"};
constexpr std::size_t BUFFER_SIZES[] = {0, 1, 2, 32, 260};
/// Of a byte's argument when its operation is the last one.
constexpr std::size_t MOST_ARGUMENT = 24;

/// Each operation's argument is the high part of its byte.
bool Step(CTextParser& parser, ds_file_buffered& file, std::uint8_t operation)
{
    const unsigned argument = operation / 10u;
    const bool flag = argument % 2 != 0;
    const char c = CHARACTERS[argument % std::size(CHARACTERS)];
    const char* token = TOKENS[argument % std::size(TOKENS)];
    // Exactly as large as is said, so that a write behind it is seen.
    std::vector<char> buffer(BUFFER_SIZES[argument % std::size(BUFFER_SIZES)]);
    int number = 0;
    float fraction = 0;
    bool ended = false;
    bool done = true;
    switch (operation % 10) {
    case 0:
        return parser.SeekToToken(token);
    case 1:
        return parser.SkipTillChar(c);
    case 2:
        parser.SkipSpace(flag);
        break;
    case 3:
        done = parser.ReadFileName(buffer.data(), buffer.size());
        Require(!done || std::find(buffer.begin(), buffer.end(), '\0') != buffer.end(), "a name ends");
        break;
    case 4:
        return parser.ReadIntElem(',', c, number, ended, flag);
    case 5:
        return parser.ReadIntElem(c, number);
    case 6:
        done = parser.ReadFloatElem(',', '}', fraction, ended);
        Require(!done || std::isfinite(fraction), "a fraction");
        break;
    case 7:
        return parser.ReadNamedVal(token, buffer.data(), buffer.size(), flag);
    case 8:
        file.read(buffer.data(), buffer.size());
        break;
    default:
        file.set_pos(file.get_size() * argument / MOST_ARGUMENT);
    }
    return done;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::size_t count = size > 0 ? std::min<std::size_t>(data[0], size - 1) : 0;
    const std::uint8_t* text = size > 0 ? data + 1 + count : data;
    ds_file_buffered file;
    file.open_memory("fuzz.ini", std::vector<char>(text, data + size));
    const auto ends = std::count_if(text, data + size, [](std::uint8_t c) { return c == '\n' || c == '\r'; });
    CTextParser parser(&file, false);
    for (std::size_t i = 0; i < count; ++i) {
        const bool done = Step(parser, file, data[1 + i]);
        Require(done || !parser.GetError().empty(), "a failure is told");
        Require(file.get_cur_pos() <= file.get_size(), "the position");
        Require(parser.GetLine() >= 1 && parser.GetLine() <= 1 + ends, "the line");
    }
    file.close();
    parser.DescribeError();
    return 0;
}
