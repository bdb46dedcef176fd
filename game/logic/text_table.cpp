#include "logic/text_table.h"

#include <algorithm>
#include <vector>

#include "keelworks/text_parser.h"
#include "platform/system.h"

namespace
{

void DebugLine(const std::string& text)
{
    OutputDebugStringA((text + "\r\n").c_str());
}

/// Appends the text with its escapes resolved; a text for the debug output when one is unknown, else empty.
std::string AppendText(const char* raw, std::string& out)
{
    for (const char* c = raw; *c != '\0'; ++c) {
        if (*c != '\\') {
            out += *c;
            continue;
        }
        switch (*++c) {
        case 'n':
            out += "\r\n";
            break;
        case 't':
            out += '\t';
            break;
        case '\\':
            out += '\\';
            break;
        case 'q':
            out += '"';
            break;
        default:
            return "expected \\n, \\t, \\q or \\\\ in a text";
        }
    }
    return {};
}

/// One row. Gives what is wrong with it, empty when nothing is; `line` is the line of the last text in
/// quotes.
std::string ReadRow(CTextParser& parser, std::vector<char>& buffer, int& number, std::string& text, int& line)
{
    if (!parser.ReadIntElem(',', number))
        return parser.GetError();
    if (parser.SkipSpace(false) != '"')
        return "expected a text in quotes behind the number";
    text.clear();
    while (parser.SkipSpace(false) == '"') {
        line = parser.GetLine();
        if (!parser.ReadFileName(buffer.data(), buffer.size()))
            return parser.GetError();
        const std::string error = AppendText(buffer.data(), text);
        if (!error.empty())
            return error;
        if (text.size() > CTextTable::MAX_TEXT)
            return "expected a text of at most " + std::to_string(CTextTable::MAX_TEXT) + " characters";
    }
    if (parser.SkipSpace(false) == ',')
        parser.SkipSpace(true);
    return {};
}

} // namespace

bool CTextTable::Load(const char* path)
{
    ds_file_buffered file;
    try {
        file.open(path, false);
    } catch (const fopen_exception& exception) {
        DebugLine(std::string("Texts: ") + exception.what());
        return false;
    }
    CTextParser parser(&file, false);
    std::vector<char> buffer(MAX_TEXT + 1);
    while (parser.SkipSpace(false) != '\0') {
        const int firstLine = parser.GetLine();
        int number = 0;
        int textLine = 0;
        std::string text;
        std::string error = ReadRow(parser, buffer, number, text, textLine);
        if (error.empty() && !m_Texts.try_emplace(number, text).second) {
            DebugLine(std::string(path) + "(" + std::to_string(firstLine) + "): text " +
                      std::to_string(number) + " stands in the file already");
            continue;
        }
        if (error.empty())
            continue;
        // What is wrong may be that the row's text is missing, and then the next row stands here already.
        const char next = parser.SkipSpace(false);
        const int line = std::max(parser.GetLine(), firstLine);
        DebugLine(std::string(path) + "(" + std::to_string(textLine > 0 ? textLine : line) + "): " + error);
        const bool nextRow = line > firstLine && ((next >= '0' && next <= '9') || next == '-');
        if (!nextRow)
            parser.SkipLine();
    }
    return true;
}

const char* CTextTable::GetText(int number)
{
    const auto found = m_Texts.find(number);
    if (found != m_Texts.end())
        return found->second.c_str();
    return m_Missing.try_emplace(number, "?" + std::to_string(number)).first->second.c_str();
}
