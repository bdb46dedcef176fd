#include <algorithm>
#include <charconv>
#include <cstring>
#include <map>
#include <optional>
#include <set>

#include "fields.h"
#include "keelworks/text_parser.h"
#include "platform/codepage.h"
#include "scenario_text.h"

namespace
{

constexpr std::size_t MAX_PIECE = 4096; ///< of a text, between two quotes

class CTextReader
{
  public:
    explicit CTextReader(ds_file_buffered& file) : m_Parser(&file, false), m_strPath(file.get_name()) {}

    Scenario Read();

  private:
    using Fields = std::set<std::string>;

    [[noreturn]] void Fail(const std::string& why, int line = 0) const
    {
        throw scenario_exception(m_strPath + '(' + std::to_string(line > 0 ? line : m_Parser.GetLine()) +
                                 "): " + why);
    }

    /// The next character, behind at most one comma; 0 at the end.
    char Peek()
    {
        if (m_Parser.SkipSpace(false) == ',')
            m_Parser.SkipSpace(true);
        return m_Parser.SkipSpace(false);
    }

    void Take(char wanted)
    {
        if (Peek() != wanted)
            Fail(std::string("expected ") + wanted);
        m_Parser.SkipSpace(true);
    }

    std::string Word(const char* expected);
    std::string Text(std::size_t limit);
    void AppendUnescaped(const char* raw, std::string& out) const;
    std::int32_t Number(std::int32_t low, std::int32_t high);
    CObjGUID Guid();

    /// The next field's keyword in lower case, which mustn't have come before; empty behind the block's end.
    std::string NextField(Fields& seen);
    void Demand(const Fields& seen, std::initializer_list<const char*> keywords, int line) const;
    const ScenarioUnitKind& Kind(const std::string& keyword) const;

    void ReadHead();
    void ReadHeadField(const std::string& keyword);
    void ReadTime();
    void ReadSide();
    void ReadClass();
    void ReadItem(const std::string& keyword);
    Fields ReadUnitFields(const ScenarioUnitKind& kind, ScenarioItem& item);

    struct Class {
        ScenarioItem item;
        Fields fields;
    };

    CTextParser m_Parser;
    std::string m_strPath;
    Scenario m_Scenario;
    int m_nSides = 0;
    std::map<std::string, Class> m_Classes; ///< by keyword of the type and name
};

std::string CTextReader::Word(const char* expected)
{
    char word[64];
    if (std::strchr("\"{}=", Peek()) != nullptr) // the end of the text is strchr's zero
        Fail(std::string("expected ") + expected);
    if (!m_Parser.ReadFileName(word, sizeof word))
        Fail(m_Parser.GetError());
    std::string out = word;
    std::transform(out.begin(), out.end(), out.begin(),
                   [](char c) { return static_cast<char>(PlatformLower(static_cast<unsigned char>(c))); });
    return out;
}

void CTextReader::AppendUnescaped(const char* raw, std::string& out) const
{
    for (const char* c = raw; *c != '\0'; ++c) {
        if (*c != '\\') {
            out += *c;
            continue;
        }
        unsigned byte = 0;
        switch (*++c) {
        case 'n':
            out += "\r\n";
            break;
        case 't':
            out += '\t';
            break;
        case 'q':
            out += '"';
            break;
        case '\\':
            out += '\\';
            break;
        case 'x':
            if (std::strlen(c) < 3 || std::from_chars(c + 1, c + 3, byte, 16).ptr != c + 3 || byte == 0)
                Fail("expected \\x and two hexadecimal digits, not both 0");
            out += static_cast<char>(byte);
            c += 2;
            break;
        default:
            Fail("expected \\n, \\t, \\q, \\\\ or \\x in a text");
        }
    }
}

/// All the quoted pieces that stand here, as one text.
std::string CTextReader::Text(std::size_t limit)
{
    if (Peek() != '"')
        Fail("expected a text in quotes");
    std::string text;
    std::vector<char> piece(MAX_PIECE + 1);
    while (m_Parser.SkipSpace(false) == '"') {
        if (!m_Parser.ReadFileName(piece.data(), piece.size()))
            Fail(m_Parser.GetError());
        AppendUnescaped(piece.data(), text);
        if (text.size() > limit)
            Fail("expected a text of at most " + std::to_string(limit) + " characters");
    }
    return text;
}

std::int32_t CTextReader::Number(std::int32_t low, std::int32_t high)
{
    const std::string word = Word("a number");
    const std::optional<int> value = ParseTextInt(word);
    if (!value || *value < low || *value > high)
        Fail("expected a number from " + std::to_string(low) + " to " + std::to_string(high) + ", found \"" +
             word + "\"");
    return *value;
}

CObjGUID CTextReader::Guid()
{
    CObjGUID guid;
    for (std::uint32_t& word : guid.words)
        word = static_cast<std::uint32_t>(Number(INT32_MIN, INT32_MAX));
    if (guid == CObjGUID())
        Fail("expected a guid that isn't zero");
    return guid;
}

std::string CTextReader::NextField(Fields& seen)
{
    if (Peek() == '}') {
        m_Parser.SkipSpace(true);
        return {};
    }
    std::string keyword = Word("a field or }");
    if (!seen.insert(keyword).second)
        Fail("\"" + keyword + "\" stands twice");
    return keyword;
}

void CTextReader::Demand(const Fields& seen, std::initializer_list<const char*> keywords, int line) const
{
    for (const char* keyword : keywords) {
        if (!seen.contains(keyword))
            Fail(std::string("\"") + keyword + "\" is missing", line);
    }
}

const ScenarioUnitKind& CTextReader::Kind(const std::string& keyword) const
{
    for (const ScenarioUnitKind& kind : ScenarioUnitKinds()) {
        if (keyword == kind.keyword)
            return kind;
    }
    Fail("expected side, class, ship, balloon or submarine, found \"" + keyword + "\"");
}

/// `5 40 pm`
void CTextReader::ReadTime()
{
    SCENARIO_HEADER& header = m_Scenario.header;
    header.nHours = Number(0, 12);
    header.nMinutes = Number(0, 59);
    const std::string half = Word("am or pm");
    if (half != "am" && half != "pm")
        Fail("expected am or pm, found \"" + half + "\"");
    header.nTimeFlags = half == "am" ? SCENARIO_TIME_AM : 0;
}

void CTextReader::ReadHeadField(const std::string& keyword)
{
    SCENARIO_HEADER& header = m_Scenario.header;
    if (keyword == "title")
        m_Scenario.title = Text(SCENARIO_MAX_TITLE);
    else if (keyword == "description")
        m_Scenario.description = Text(SCENARIO_MAX_DESCRIPTION);
    else if (keyword == "scene")
        Text(sizeof header.szScene - 1).copy(header.szScene, sizeof header.szScene);
    else if (keyword == "time")
        ReadTime();
    else if (keyword == "year")
        header.nFlagExtra = Number(0, SCENARIO_MAX_FIGURE);
    else if (keyword == "version")
        header.nVersion =
            static_cast<std::uint32_t>(Number(SCENARIO_VERSION_OLDEST, SCENARIO_VERSION_CURRENT));
    else
        Fail("unknown field \"" + keyword + "\"");
}

void CTextReader::ReadHead()
{
    if (Word("scenario") != "scenario")
        Fail("expected scenario");
    Take('{');
    const int line = m_Parser.GetLine();
    Fields seen;
    for (std::string keyword = NextField(seen); !keyword.empty(); keyword = NextField(seen))
        ReadHeadField(keyword);
    Demand(seen, {"title", "description", "scene", "time"}, line);
    if (m_Scenario.header.nVersion == 0)
        m_Scenario.header.nVersion = SCENARIO_VERSION_CURRENT;
}

void CTextReader::ReadSide()
{
    SCSETT_STRUCT& settings = m_Scenario.header.settings;
    CUSTOM_RESOURCE_DATA& custom = m_Scenario.custom;
    const int line = m_Parser.GetLine();
    if (m_nSides == 2)
        Fail("a third side");
    const bool first = m_nSides++ == 0;
    Take('{');
    Fields seen;
    for (std::string keyword = NextField(seen); !keyword.empty(); keyword = NextField(seen)) {
        if (keyword == "nation") {
            (first ? settings.nSideANation : settings.nSideBNation) = Number(INT32_MIN, INT32_MAX);
        } else if (keyword == "custom") {
            (first ? custom.bCustomA : custom.bCustomB) = 1;
            (first ? custom.guidA : custom.guidB) = Guid();
        } else {
            Fail("unknown field \"" + keyword + "\"");
        }
    }
    Demand(seen, {"nation"}, line);
    if (seen.contains("custom") && m_Scenario.header.nVersion < SCENARIO_VERSION_CUSTOM)
        Fail("the scenario's version has no custom nations", line);
}

CTextReader::Fields CTextReader::ReadUnitFields(const ScenarioUnitKind& kind, ScenarioItem& item)
{
    Take('{');
    Fields seen;
    for (std::string keyword = NextField(seen); !keyword.empty(); keyword = NextField(seen)) {
        const ScenarioField* field = kind.Find(keyword);
        if (field == nullptr)
            Fail("a " + std::string(kind.keyword) + " has no field \"" + keyword + "\"");
        if (field->textSize > 0) {
            const std::string text = Text(field->textSize - 1);
            char* target = ScenarioRecord(item) + field->offsets[0];
            std::memset(target, 0, field->textSize);
            text.copy(target, text.size());
        }
        for (std::size_t i = 0; i < field->count; ++i)
            SetNumber(item, field->offsets[i], Number(field->low, field->high));
    }
    return seen;
}

void CTextReader::ReadClass()
{
    const std::string keyword = Word("ship, balloon or submarine");
    const ScenarioUnitKind& kind = Kind(keyword);
    const std::string name = Text(sizeof ScenarioUnit::szFullName);
    Class made = {kind.empty, {}};
    if (m_Classes.contains(keyword + ' ' + name))
        Fail("class \"" + name + "\" stands twice");
    made.fields = ReadUnitFields(kind, made.item);
    m_Classes[keyword + ' ' + name] = made;
}

void CTextReader::ReadItem(const std::string& keyword)
{
    const ScenarioUnitKind& kind = Kind(keyword);
    const int line = m_Parser.GetLine();
    if (m_Scenario.items.size() == SCENARIO_MAX_ITEMS)
        Fail("more than " + std::to_string(SCENARIO_MAX_ITEMS) + " units");
    Class base = {kind.empty, {}};
    if (Peek() == '"') {
        const std::string name = Text(sizeof ScenarioUnit::szFullName);
        const auto found = m_Classes.find(keyword + ' ' + name);
        if (found == m_Classes.end())
            Fail("no class of that type is named \"" + name + "\"");
        base = found->second;
    }
    base.fields.merge(ReadUnitFields(kind, base.item));
    Demand(base.fields, {"name", "side"}, line);
    m_Scenario.items.push_back(base.item);
}

Scenario CTextReader::Read()
{
    ReadHead();
    while (Peek() != '\0') {
        const std::string keyword = Word("side, class, ship, balloon or submarine");
        if (keyword == "side")
            ReadSide();
        else if (keyword == "class")
            ReadClass();
        else
            ReadItem(keyword);
    }
    if (m_nSides != 2)
        Fail("expected two sides");
    return m_Scenario;
}

} // namespace

Scenario ReadScenarioText(ds_file_buffered& file)
{
    return CTextReader(file).Read();
}
