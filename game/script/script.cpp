#include "script/script.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <utility>

#include "engine/names.h"
#include "platform/codepage.h"
#include "shell/keymap.h"

namespace
{

constexpr int MAX_FRAMES = 1000000;
constexpr int MAX_NOTCHES = 100;
constexpr const char* BLANKS = " \t\r";
constexpr std::string_view UTF8_MARK = "\xef\xbb\xbf"; // editors put it at a file's beginning

struct CommandName {
    const char* name;
    EScript kind;
};
constexpr CommandName COMMANDS[] = {
    {"frames", EScript::Frames},   {"until", EScript::Until},      {"move", EScript::Move},
    {"down", EScript::Down},       {"down2", EScript::SecondDown}, {"up", EScript::Up},
    {"rdown", EScript::RightDown}, {"rup", EScript::RightUp},      {"click", EScript::Click},
    {"double", EScript::Double},   {"wheel", EScript::Wheel},      {"control", EScript::Control},
    {"row", EScript::Row},         {"item", EScript::Item},        {"key", EScript::Key},
    {"keydown", EScript::KeyDown}, {"keyup", EScript::KeyUp},      {"type", EScript::Type},
    {"char", EScript::Char},       {"shot", EScript::Shot},        {"expect", EScript::Expect},
    {"refuse", EScript::Refuse},   {"event", EScript::Event},      {"quit", EScript::Quit},
};

struct ActionName {
    const char* name;
    EScriptAction action;
};
constexpr ActionName ACTIONS[] = {
    {"click", EScriptAction::Click}, {"double", EScriptAction::Double}, {"down", EScriptAction::Down},
    {"up", EScriptAction::Up},       {"move", EScriptAction::Move},
};

std::string Trimmed(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(BLANKS);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
}

/// A `#` at the line's beginning or behind a blank, outside double quotes, begins a comment.
std::string WithoutComment(const std::string& line)
{
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"')
            quoted = !quoted;
        if (line[i] == '#' && !quoted && (i == 0 || line[i - 1] == ' ' || line[i - 1] == '\t'))
            return line.substr(0, i);
    }
    return line;
}

/// Takes one word off the front of `rest`; empty when there is none.
std::string TakeWord(std::string& rest)
{
    const std::string trimmed = Trimmed(rest);
    const std::size_t end = std::min(trimmed.find_first_of(BLANKS), trimmed.size());
    rest = Trimmed(trimmed.substr(end));
    return trimmed.substr(0, end);
}

bool ParseInt(const std::string& word, int& out)
{
    const bool hex = word.starts_with("0x");
    const char* end = word.data() + word.size();
    std::int64_t value = 0;
    const auto result = std::from_chars(word.data() + (hex ? 2 : 0), end, value, hex ? 16 : 10);
    if (result.ec != std::errc() || result.ptr != end || value < INT32_MIN || value > UINT32_MAX)
        return false;
    out = static_cast<int>(static_cast<std::uint32_t>(value));
    return true;
}

/// One line; every function gives what is wrong, empty when nothing is.
class CLineParser
{
  public:
    CLineParser(std::string rest, ScriptCommand& command) : m_strRest(std::move(rest)), m_Command(command) {}

    std::string Parse()
    {
        const std::string error = ParseFields();
        if (!error.empty())
            return error;
        return m_strRest.empty() ? "" : "\"" + m_strRest + "\" is too much";
    }

  private:
    std::string ParseFields()
    {
        switch (m_Command.kind) {
        case EScript::Frames:
            return Number("a number of frames", 1, MAX_FRAMES, m_Command.nNumber);
        case EScript::Wheel:
            return Notches();
        case EScript::Move:
        case EScript::Click:
        case EScript::Double:
            return Point();
        case EScript::Until:
        case EScript::Expect:
        case EScript::Refuse:
            return Rest("a text to look for");
        case EScript::Type:
        case EScript::Char:
            return Typed();
        case EScript::Control:
            return Place(1);
        case EScript::Row:
        case EScript::Item:
            return Place(2);
        case EScript::Key:
        case EScript::KeyDown:
        case EScript::KeyUp:
            return Keys();
        case EScript::Shot:
            return ShotName();
        case EScript::Event:
            return Event();
        default:
            return {};
        }
    }

    std::string Number(const char* what, int low, int high, int& out)
    {
        if (ParseInt(TakeWord(m_strRest), out) && out >= low && out <= high)
            return {};
        return std::string("expected ") + what + " from " + std::to_string(low) + " to " +
               std::to_string(high);
    }

    std::string Notches()
    {
        const std::string error = Number("a number of notches", -MAX_NOTCHES, MAX_NOTCHES, m_Command.nNumber);
        return error.empty() && m_Command.nNumber == 0 ? "expected at least one notch" : error;
    }

    std::string Point()
    {
        std::string error = Number("x", INT16_MIN, INT16_MAX, m_Command.point.x);
        return error.empty() ? Number("y", INT16_MIN, INT16_MAX, m_Command.point.y) : error;
    }

    std::string Rest(const char* what)
    {
        if (m_strRest.empty())
            return std::string("expected ") + what;
        m_Command.text = PlatformFromUtf8(m_strRest);
        m_strRest.clear();
        return {};
    }

    /// Quotes around the whole text keep its blanks.
    std::string Typed()
    {
        const bool quoted = m_strRest.size() >= 2 && m_strRest.front() == '"' && m_strRest.back() == '"';
        if (quoted)
            m_strRest = m_strRest.substr(1, m_strRest.size() - 2);
        return Rest("a text to type");
    }

    std::string Place(std::size_t ids)
    {
        m_Command.text = TakeWord(m_strRest);
        if (m_Command.text.empty())
            return "expected a section";
        m_Command.ids.resize(ids);
        for (int& id : m_Command.ids) {
            if (!ParseInt(TakeWord(m_strRest), id))
                return "expected a number behind the section";
        }
        const std::string word = TakeWord(m_strRest);
        if (word.empty())
            return {};
        for (const ActionName& action : ACTIONS) {
            if (word == action.name) {
                m_Command.action = action.action;
                return {};
            }
        }
        return "expected click, double, down, up or move, found \"" + word + "\"";
    }

    std::string Keys()
    {
        std::string names = TakeWord(m_strRest);
        while (!names.empty()) {
            const std::size_t plus = std::min(names.find('+'), names.size());
            const std::string name = names.substr(0, plus);
            const int key = KeyFromName(name);
            if (key == 0)
                return "there is no key \"" + name + "\"";
            m_Command.keys.push_back(key);
            if (plus + 1 == names.size())
                return "expected the name of a key behind +";
            names = names.substr(std::min(plus + 1, names.size()));
        }
        if (m_Command.keys.empty() || (m_Command.kind != EScript::Key && m_Command.keys.size() != 1))
            return "expected the name of a key";
        return {};
    }

    std::string ShotName()
    {
        m_Command.text = TakeWord(m_strRest);
        const bool good = !m_Command.text.empty() && std::ranges::all_of(m_Command.text, [](char c) {
            return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
                   c == '_';
        });
        return good ? "" : "expected a name of letters, digits, - and _";
    }

    std::string Event()
    {
        ScriptEvent& event = m_Command.event;
        if (!ParseInt(TakeWord(m_strRest), event.nCode))
            return "expected the number of an event";
        while (!m_strRest.empty()) {
            const std::string error = EventField(event);
            if (!error.empty())
                return error;
        }
        return {};
    }

    std::string EventField(ScriptEvent& event)
    {
        const std::size_t equals = std::min(m_strRest.find('='), m_strRest.size());
        const std::string name = m_strRest.substr(0, equals);
        m_strRest = m_strRest.substr(std::min(equals + 1, m_strRest.size()));
        if (name == "text")
            return EventText(event);
        int* field = name == "value1"   ? &event.nValue1
                     : name == "value2" ? &event.nValue2
                     : name == "style"  ? &event.nStyle
                     : name == "id"     ? &event.nId
                                        : nullptr;
        if (field == nullptr)
            return "expected value1=, value2=, style=, id= or text=, found \"" + name + "\"";
        return ParseInt(TakeWord(m_strRest), *field) ? "" : "expected a number behind " + name + "=";
    }

    std::string EventText(ScriptEvent& event)
    {
        const std::size_t end = m_strRest.size() < 2 ? std::string::npos : m_strRest.find('"', 1);
        if (end == std::string::npos || m_strRest.front() != '"')
            return "expected a text in double quotes behind text=";
        event.text = PlatformFromUtf8(m_strRest.substr(1, end - 1));
        m_strRest = Trimmed(m_strRest.substr(end + 1));
        return {};
    }

    std::string m_strRest;
    ScriptCommand& m_Command;
};

std::string ParseLine(std::string line, ScriptCommand& command)
{
    const std::string name = TakeWord(line);
    for (const CommandName& known : COMMANDS) {
        if (name == known.name) {
            command.kind = known.kind;
            return CLineParser(line, command).Parse();
        }
    }
    return "there is no command \"" + name + "\"";
}

} // namespace

bool ParseScript(const std::string& file, const std::string& text, std::vector<ScriptCommand>& out,
                 std::string& error)
{
    int number = 0;
    for (std::size_t from = text.starts_with(UTF8_MARK) ? UTF8_MARK.size() : 0; from < text.size();) {
        const std::size_t end = std::min(text.find('\n', from), text.size());
        const std::string line = Trimmed(WithoutComment(text.substr(from, end - from)));
        from = end + 1;
        ++number;
        if (line.empty())
            continue;
        ScriptCommand command;
        command.nLine = number;
        error = ParseLine(line, command);
        if (!error.empty()) {
            error = file + "(" + std::to_string(number) + "): " + error;
            return false;
        }
        out.push_back(command);
    }
    return true;
}
