#include "keelworks/text_parser.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "platform/codepage.h"

namespace
{

constexpr std::size_t LINE_BLOCK = 4096;
constexpr std::size_t LONGEST_QUOTE_IN_ERROR = 40;
constexpr std::string_view BYTE_ORDER_MARK = "\xef\xbb\xbf";
constexpr unsigned char LAST_SPACE = ' ';

constexpr bool IsSpace(unsigned char c)
{
    return c <= LAST_SPACE;
}

/// Marks the bytes that end an unquoted token.
constexpr std::array<bool, 256> MakeTokenEnds()
{
    std::array<bool, 256> ends{};
    for (unsigned c = 0; c <= LAST_SPACE; ++c) {
        ends[c] = true;
    }
    for (char c : {',', '{', '}', '=', '"', ';'}) {
        ends[static_cast<unsigned char>(c)] = true;
    }
    return ends;
}

constexpr std::array<bool, 256> TOKEN_ENDS = MakeTokenEnds();

std::string Quote(std::string_view text)
{
    const bool cut = text.size() > LONGEST_QUOTE_IN_ERROR;
    std::string out = "\"";
    for (char c : text.substr(0, LONGEST_QUOTE_IN_ERROR)) {
        out += static_cast<unsigned char>(c) < LAST_SPACE ? '?' : c;
    }
    return out + (cut ? "...\"" : "\"");
}

std::string QuoteEach(std::string_view characters)
{
    std::string out = Quote(characters.substr(0, 1));
    for (char c : characters.substr(1)) {
        out += " or " + Quote(std::string_view(&c, 1));
    }
    return out;
}

/// Line ends among the text's bytes from `begin` to before `end`. CR LF counts at its LF.
std::uint32_t CountLineEnds(std::string_view text, std::size_t begin, std::size_t end)
{
    std::uint32_t count = 0;
    for (std::size_t i = begin; i < end; ++i) {
        const bool lonelyCr = text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n');
        count += text[i] == '\n' || lonelyCr;
    }
    return count;
}

} // namespace

CTextParser::CTextParser(ds_file* file, bool)
    : m_pFile(file), m_pBuffered(dynamic_cast<ds_file_buffered*>(file)),
      m_nGeneration(file ? file->get_generation() - 1 : 0)
{
}

/// Looks at the file as it is now: its bytes, and the position that others may have moved.
void CTextParser::Begin()
{
    m_Text = {};
    m_nPos = 0;
    if (!m_pFile || !m_pFile->is_open()) {
        return;
    }
    const std::size_t pos = m_pFile->get_cur_pos();
    if (m_nGeneration != m_pFile->get_generation()) {
        m_nGeneration = m_pFile->get_generation();
        m_LineCounts.clear();
        m_Copy.clear();
        const std::size_t size = m_pFile->get_size();
        if (!m_pBuffered && size <= ds_file_buffered::MAX_SIZE && m_pFile->set_pos(0)) {
            m_Copy.resize(size);
            m_Copy.resize(m_pFile->read(m_Copy.data(), size));
            m_pFile->set_pos(pos);
        }
    }
    m_Text = m_pBuffered ? std::string_view(m_pBuffered->data(), m_pBuffered->get_size())
                         : std::string_view(m_Copy.data(), m_Copy.size());
    m_nPos = std::min(pos, m_Text.size());
}

/// Leaves the file where the parser stands. Gives `done`.
bool CTextParser::End(bool done)
{
    if (m_pFile && m_pFile->is_open()) {
        m_pFile->set_pos(m_nPos);
    }
    return done;
}

/// Notes an error at `pos`, where the parser stands from now on.
bool CTextParser::Fail(std::size_t pos, const std::string& expected)
{
    m_nPos = pos;
    m_nTokenPos = pos;
    m_strError = "expected " + expected + ", found " + DescribeFound(pos);
    m_strErrorFile = m_pFile ? m_pFile->get_name() : "";
    m_nErrorLine = LineAt(pos);
    return false;
}

std::string CTextParser::DescribeFound(std::size_t pos) const
{
    if (pos >= m_Text.size()) {
        return "the end of the file";
    }
    if (At(pos) == '"') {
        const std::size_t close = ClosingQuote(pos);
        if (close == std::string_view::npos) {
            return "a text without its closing quote: " +
                   Quote(m_Text.substr(pos + 1, LineEnd(pos) - pos - 1));
        }
        return "the text " + Quote(m_Text.substr(pos + 1, close - pos - 1));
    }
    return Quote(m_Text.substr(pos, std::max(TokenEnd(pos), pos + 1) - pos));
}

/// The byte at `pos`, 0 behind the end.
unsigned char CTextParser::At(std::size_t pos) const
{
    return pos < m_Text.size() ? static_cast<unsigned char>(m_Text[pos]) : '\0';
}

std::size_t CTextParser::LineEnd(std::size_t pos) const
{
    return std::min(m_Text.find_first_of("\r\n", pos), m_Text.size());
}

std::size_t CTextParser::TokenEnd(std::size_t pos) const
{
    while (pos < m_Text.size() && !TOKEN_ENDS[static_cast<unsigned char>(m_Text[pos])]) {
        ++pos;
    }
    return pos;
}

/// Where the closing quote of the text that opens at `pos` stands; npos when its line has none.
std::size_t CTextParser::ClosingQuote(std::size_t pos) const
{
    const std::size_t found = m_Text.find_first_of("\"\r\n", pos + 1);
    return found != std::string_view::npos && m_Text[found] == '"' ? found : std::string_view::npos;
}

/// Behind the text that opens at `pos`. One that isn't closed ends with its line.
std::size_t CTextParser::QuotedEnd(std::size_t pos) const
{
    const std::size_t close = ClosingQuote(pos);
    return close == std::string_view::npos ? LineEnd(pos) : close + 1;
}

bool CTextParser::IsComment(std::size_t pos) const
{
    return At(pos) == ';' || (At(pos) == '/' && At(pos + 1) == '/');
}

/// Passes white space and comments, but none of the characters in `stops`.
void CTextParser::SkipBlank(std::string_view stops)
{
    if (m_nPos == 0 && m_Text.starts_with(BYTE_ORDER_MARK)) {
        m_nPos = BYTE_ORDER_MARK.size();
    }
    while (m_nPos < m_Text.size() && stops.find(m_Text[m_nPos]) == std::string_view::npos) {
        if (IsSpace(At(m_nPos))) {
            ++m_nPos;
        } else if (IsComment(m_nPos)) {
            m_nPos = LineEnd(m_nPos);
        } else {
            return;
        }
    }
}

bool CTextParser::SeekToToken(const char* token)
{
    Begin();
    return End(SeekTo(token));
}

bool CTextParser::SeekTo(const char* token)
{
    const std::string_view wanted = token ? token : "";
    for (;;) {
        SkipBlank();
        if (m_nPos >= m_Text.size()) {
            return Fail(m_Text.size(), "the token " + Quote(wanted));
        }
        const std::size_t begin = m_nPos;
        if (At(begin) == '"') {
            m_nPos = QuotedEnd(begin);
            continue;
        }
        m_nPos = std::max(TokenEnd(begin), begin + 1);
        if (PlatformEqualNoCase(m_Text.substr(begin, m_nPos - begin), wanted)) {
            m_nTokenPos = begin;
            return true;
        }
    }
}

bool CTextParser::SkipTillChar(char c)
{
    Begin();
    const std::string_view stop(&c, 1);
    for (;;) {
        SkipBlank(stop);
        if (m_nPos >= m_Text.size()) {
            return End(Fail(m_Text.size(), Quote(stop)));
        }
        if (m_Text[m_nPos] == c) {
            m_nTokenPos = m_nPos++;
            return End(true);
        }
        if (At(m_nPos) == '"') {
            m_nPos = QuotedEnd(m_nPos);
            continue;
        }
        // Within an unquoted token `//` is no comment.
        const std::size_t tokenEnd = std::max(TokenEnd(m_nPos), m_nPos + 1);
        const std::size_t found = m_Text.substr(0, tokenEnd).find(c, m_nPos);
        m_nPos = std::min(found, tokenEnd);
    }
}

void CTextParser::SkipLine()
{
    Begin();
    m_nPos = LineEnd(m_nPos);
    End(true);
}

char CTextParser::SkipSpace(bool take)
{
    Begin();
    SkipBlank();
    m_nTokenPos = m_nPos;
    const char c = static_cast<char>(At(m_nPos));
    if (take && m_nPos < m_Text.size()) {
        ++m_nPos;
    }
    End(true);
    return c;
}

bool CTextParser::ReadFileName(char* buffer, std::size_t size)
{
    Begin();
    return End(TakeString(buffer, size));
}

bool CTextParser::TakeString(char* buffer, std::size_t size)
{
    SkipBlank();
    if (At(m_nPos) == ',') {
        ++m_nPos;
        SkipBlank();
    }
    const std::size_t start = m_nPos;
    const bool quoted = At(start) == '"';
    const std::size_t begin = quoted ? start + 1 : start;
    const std::size_t end = quoted ? ClosingQuote(start) : TokenEnd(start);
    if (end == std::string_view::npos || (!quoted && end == begin)) {
        return Fail(start, "a text");
    }
    const std::string_view token = m_Text.substr(begin, end - begin);
    if (token.find('\0') != std::string_view::npos) {
        return Fail(start, "a text without a zero byte");
    }
    if (!buffer || token.size() >= size) {
        return Fail(start, "a text of at most " + std::to_string(size > 0 ? size - 1 : 0) + " characters");
    }
    token.copy(buffer, token.size());
    buffer[token.size()] = '\0';
    m_nTokenPos = start;
    m_nPos = quoted ? end + 1 : end;
    return true;
}

/// The character behind a number; `last` tells that it was the last of `allowed`.
bool CTextParser::TakeSeparator(std::string_view allowed, bool& last)
{
    SkipBlank(allowed);
    if (m_nPos >= m_Text.size() || allowed.find(m_Text[m_nPos]) == std::string_view::npos) {
        return Fail(m_nPos, QuoteEach(allowed) + " behind the number");
    }
    last = m_Text[m_nPos] == allowed.back();
    ++m_nPos;
    return true;
}

template <class T>
bool CTextParser::TakeNumber(const ScannedNumber<T>& number, T& out)
{
    if (number.length == 0) {
        return Fail(m_nPos, number.expected);
    }
    out = number.value;
    m_nPos += number.length;
    return true;
}

bool CTextParser::TakeInt(bool hex, std::string_view allowed, int& out, bool& last)
{
    SkipBlank();
    const std::size_t start = m_nPos;
    int value = 0;
    if (!TakeNumber(ScanTextInt(m_Text.substr(start), hex), value)) {
        return false;
    }
    if (!TakeSeparator(allowed, last)) {
        m_nPos = start;
        return false;
    }
    m_nTokenPos = start;
    out = value;
    return true;
}

bool CTextParser::ReadIntElem(char separator, char end, int& out, bool& ended, bool hex)
{
    Begin();
    const char allowed[] = {separator, end};
    bool last = false;
    if (!End(TakeInt(hex, {allowed, separator == end ? 1u : 2u}, out, last))) {
        return false;
    }
    ended = last;
    return true;
}

bool CTextParser::ReadIntElem(char separator, int& out, bool hex)
{
    Begin();
    bool last = false;
    return End(TakeInt(hex, {&separator, 1}, out, last));
}

bool CTextParser::ReadFloatElem(char separator, char end, float& out, bool& ended)
{
    Begin();
    SkipBlank();
    const std::size_t start = m_nPos;
    float value = 0;
    if (!TakeNumber(ScanTextFloat(m_Text.substr(start)), value)) {
        return End(false);
    }
    const char allowed[] = {separator, end};
    bool last = false;
    if (!TakeSeparator({allowed, separator == end ? 1u : 2u}, last)) {
        m_nPos = start;
        return End(false);
    }
    m_nTokenPos = start;
    out = value;
    ended = last;
    return End(true);
}

bool CTextParser::ReadNamedVal(const char* name, char* buffer, std::size_t size, bool fromStart)
{
    Begin();
    if (fromStart) {
        m_nPos = 0;
    }
    if (!SeekTo(name)) {
        return End(false);
    }
    SkipBlank();
    if (At(m_nPos) == '=') {
        ++m_nPos;
    }
    return End(TakeString(buffer, size));
}

/// The line of a place in the text. The line ends are counted once for each block of the text, so that asking
/// for many lines, in any order, stays cheap.
int CTextParser::LineAt(std::size_t pos) const
{
    if (m_LineCounts.empty()) {
        std::uint32_t count = 0;
        for (std::size_t begin = 0; begin <= m_Text.size(); begin += LINE_BLOCK) {
            m_LineCounts.push_back(count);
            count += CountLineEnds(m_Text, begin, std::min(begin + LINE_BLOCK, m_Text.size()));
        }
    }
    const std::size_t block = std::min(pos, m_Text.size()) / LINE_BLOCK;
    const std::uint32_t ends = m_LineCounts[block] + CountLineEnds(m_Text, block * LINE_BLOCK, pos);
    return static_cast<int>(ends) + 1;
}

int CTextParser::GetLine() const
{
    // A file that was closed or opened anew keeps the line that was told last.
    if (m_pFile && m_pFile->is_open() && m_nGeneration == m_pFile->get_generation()) {
        m_nLine = LineAt(std::min(m_nTokenPos, m_Text.size()));
    }
    return m_nLine;
}

const std::string& CTextParser::GetError() const
{
    return m_strError;
}

std::string CTextParser::DescribeError() const
{
    if (m_strError.empty()) {
        return {};
    }
    return m_strErrorFile + '(' + std::to_string(m_nErrorLine) + "): " + m_strError;
}
