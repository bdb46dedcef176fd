#include "resource_tokens.h"

#include <optional>
#include <string_view>

#include "keelworks/ds_file.h"
#include "keelworks/text_number.h"
#include "keelworks/text_parser.h"

namespace
{

constexpr std::string_view MARKS = ",{}=";
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
    parser.SkipLine();
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

namespace
{

/// The number at `pos` when a comma stands behind it.
std::optional<int> NumberAt(const std::vector<ResourceToken>& tokens, std::size_t pos)
{
    const bool has = tokens[pos].kind == ResourceToken::Kind::Word && tokens[pos + 1].IsMark(',');
    return has ? ParseTextInt(tokens[pos].text) : std::nullopt;
}

bool IsTextAt(const std::vector<ResourceToken>& tokens, std::size_t pos)
{
    return tokens[pos].kind == ResourceToken::Kind::Text ||
           (tokens[pos].kind == ResourceToken::Kind::Word && !NumberAt(tokens, pos));
}

} // namespace

std::vector<NumberedRow> NumberedRows(const std::vector<ResourceToken>& tokens, std::size_t numbers)
{
    std::vector<NumberedRow> rows;
    std::size_t pos = 0;
    while (tokens[pos].kind != ResourceToken::Kind::End) {
        const std::size_t begin = pos;
        std::size_t taken = 0;
        for (; taken < numbers && NumberAt(tokens, pos); ++taken)
            pos += 2;
        if (taken > 0)
            rows.push_back({*NumberAt(tokens, begin), tokens[begin].line, {}});
        if (taken == numbers && IsTextAt(tokens, pos)) {
            rows.back().text = tokens[pos].text;
            while (IsTextAt(tokens, pos))
                ++pos;
            pos += tokens[pos].IsMark(',') ? 1 : 0;
            continue;
        }
        pos += pos == begin ? 1 : 0;
        while (tokens[pos].kind != ResourceToken::Kind::End && !tokens[pos].firstOnLine)
            ++pos;
    }
    return rows;
}
