#include "resource_tokens.h"

#include <charconv>
#include <string_view>

#include "keelworks/ds_file.h"
#include "keelworks/text_parser.h"

namespace
{

constexpr std::string_view MARKS = ",{}=";
constexpr std::string_view HEX_PREFIX = "0x";
constexpr std::size_t DESCRIBED = 40;

ResourceToken ReadToken(CTextParser& parser, std::vector<char>& buffer)
{
    ResourceToken token;
    const char next = parser.SkipSpace(false);
    token.line = parser.GetLine();
    if (next == '\0')
        return token;
    if (MARKS.find(next) != std::string_view::npos) {
        token.kind = ResourceToken::Kind::Mark;
        token.text = next;
        parser.SkipSpace(true);
        return token;
    }
    if (parser.ReadFileName(buffer.data(), buffer.size())) {
        token.kind = next == '"' ? ResourceToken::Kind::Text : ResourceToken::Kind::Word;
        token.text = buffer.data();
        return token;
    }
    token.kind = ResourceToken::Kind::Broken;
    token.text = parser.GetError();
    parser.SkipTillChar('\n');
    return token;
}

} // namespace

std::string ResourceToken::Describe() const
{
    switch (kind) {
    case Kind::End:
        return "the end of the file";
    case Kind::Broken:
        return "a broken text";
    case Kind::Text:
        return "the text \"" + text.substr(0, DESCRIBED) + "\"";
    default:
        return text.substr(0, DESCRIBED);
    }
}

std::vector<ResourceToken> ReadTokens(const char* path, CFaults& faults)
{
    std::vector<ResourceToken> tokens;
    ds_file_buffered file;
    try {
        file.open(path, false);
    } catch (const fopen_exception& error) {
        faults.Add(path, 0, error.what());
        return {ResourceToken()};
    }
    CTextParser parser(&file, false);
    std::vector<char> buffer(file.get_size() + 1);
    int line = 0;
    do {
        tokens.push_back(ReadToken(parser, buffer));
        tokens.back().firstOnLine = tokens.back().line != line;
        line = tokens.back().line;
    } while (tokens.back().kind != ResourceToken::Kind::End);
    return tokens;
}

std::vector<NumberedRow> NumberedRows(const std::vector<ResourceToken>& tokens)
{
    std::vector<NumberedRow> rows;
    for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
        const ResourceToken& token = tokens[i];
        int number = 0;
        if (token.kind == ResourceToken::Kind::Word && token.firstOnLine && tokens[i + 1].IsMark(',') &&
            ParseNumber(token.text, number))
            rows.push_back({number, token.line});
    }
    return rows;
}

bool ParseNumber(const std::string& text, int& out)
{
    const bool hex = text.starts_with(HEX_PREFIX);
    const char* begin = text.data() + (hex ? HEX_PREFIX.size() : 0);
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(begin, end, out, hex ? 16 : 10);
    return error == std::errc() && stop == end;
}
