#include "logic/profile_store.h"

#include <charconv>
#include <cstdio>
#include <utility>

#include "engine/names.h"
#include "logic/text_file.h"
#include "platform/files.h"
#include "platform/system.h"

namespace
{

std::string Trimmed(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::string Escaped(const std::string& text)
{
    std::string out = "\"";
    for (const char c : text) {
        switch (c) {
        case '\\':
        case '"':
            out += '\\';
            out += c;
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        default:
            out += c;
            break;
        }
    }
    return out + '"';
}

/// False when the text isn't quoted as a whole or has an unknown escape.
bool Unescape(const std::string& quoted, std::string& out)
{
    if (quoted.size() < 2 || quoted.front() != '"' || quoted.back() != '"')
        return false;
    out.clear();
    const std::size_t end = quoted.size() - 1;
    for (std::size_t i = 1; i < end; ++i) {
        if (quoted[i] == '"')
            return false;
        if (quoted[i] != '\\') {
            out += quoted[i];
            continue;
        }
        if (++i == end)
            return false;
        switch (quoted[i]) {
        case 'n':
            out += '\n';
            break;
        case 'r':
            out += '\r';
            break;
        case '\\':
        case '"':
            out += quoted[i];
            break;
        default:
            return false;
        }
    }
    return true;
}

/// The low 32 bits of a decimal or 0x number. False when it isn't one or doesn't fit.
bool ParseNumber(const std::string& value, std::uint32_t& out)
{
    const bool hex = value.starts_with("0x");
    const char* first = value.data() + (hex ? 2 : 0);
    const char* last = value.data() + value.size();
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(first, last, number, hex ? 16 : 10);
    if (error != std::errc() || end != last || first == last || number < INT32_MIN || number > UINT32_MAX)
        return false;
    out = static_cast<std::uint32_t>(number);
    return true;
}

/// The name itself, or with the first number behind it that no file has; empty when all are taken.
std::string FreeName(const std::string& name)
{
    constexpr int LAST = 99;
    for (int number = 1; number <= LAST; ++number) {
        std::string numbered = number == 1 ? name : name + std::to_string(number);
        if (PlatformResolveRead(numbered.c_str()).empty())
            return numbered;
    }
    return {};
}

} // namespace

CProfileStore::CProfileStore(std::string path) : m_strPath(std::move(path))
{
    Load();
}

bool CProfileStore::IsName(const std::string& name)
{
    if (name.empty() || name.size() > MAX_NAME || Trimmed(name) != name || name.front() == ';' ||
        name.front() == '[')
        return false;
    for (const char c : name) {
        if (static_cast<unsigned char>(c) < ' ' || c == '=' || c == ']')
            return false;
    }
    return true;
}

bool CProfileStore::IsNumber(const std::string& value)
{
    std::uint32_t number = 0;
    return ParseNumber(value, number);
}

void CProfileStore::Load()
{
    if (PlatformResolveRead(m_strPath.c_str()).empty())
        return;
    const auto text = ReadTextFile(m_strPath.c_str());
    if (!text) {
        m_bLeftAlone = true;
        OutputDebugStringA(
            (m_strPath + " can't be read; it is left as it is, and nothing is kept\r\n").c_str());
        return;
    }
    bool good = true;
    int line = 0;
    for (std::size_t from = 0; good && from < text->size();) {
        const std::size_t end = std::min(text->find('\n', from), text->size());
        ++line;
        good = ParseLine(Trimmed(text->substr(from, end - from)));
        from = end + 1;
    }
    m_strSection.clear();
    if (good)
        return;
    m_Sections.clear();
    const std::string bad = FreeName(m_strPath + ".bad");
    m_bLeftAlone = bad.empty() || !PlatformRenameFile(m_strPath.c_str(), bad.c_str());
    OutputDebugStringA((m_strPath + "(" + std::to_string(line) +
                        "): a line that isn't [SECTION] or Key = value; the file " +
                        (m_bLeftAlone ? "can't be renamed, and nothing is kept" : "is now " + bad) + "\r\n")
                           .c_str());
}

bool CProfileStore::ParseLine(const std::string& line)
{
    if (line.empty() || line.front() == ';')
        return true;
    if (line.front() != '[')
        return ParseEntry(line);
    const std::string name = line.substr(1, line.size() - 2);
    return line.size() > 2 && line.back() == ']' && IsName(name) &&
           CProfileStore::SelectSection(name.c_str(), 1);
}

bool CProfileStore::ParseEntry(const std::string& line)
{
    const std::size_t equals = line.find('=');
    if (equals == std::string::npos || m_strSection.empty())
        return false;
    Entry entry{Trimmed(line.substr(0, equals)), Trimmed(line.substr(equals + 1)), false};
    const std::string raw = entry.value;
    entry.text = Unescape(raw, entry.value);
    if (!IsName(entry.name) || (!entry.text && !IsNumber(raw)) || CountEntries() >= MAX_ENTRIES)
        return false;
    m_Sections[m_strSection].entries[LowerCase(entry.name)] = entry;
    return true;
}

std::size_t CProfileStore::CountEntries() const
{
    std::size_t count = 0;
    for (const auto& [name, section] : m_Sections)
        count += section.entries.size() + 1;
    return count;
}

bool CProfileStore::Save() const
{
    if (m_bLeftAlone)
        return false;
    std::string text;
    for (const auto& [lower, section] : m_Sections) {
        text += "[" + section.name + "]\n";
        for (const auto& [key, entry] : section.entries)
            text += entry.name + " = " + (entry.text ? Escaped(entry.value) : entry.value) + "\n";
    }
    return WriteTextFile(m_strPath.c_str(), text);
}

bool CProfileStore::SelectSection(const char* name, int create)
{
    if (!IsName(name))
        return false;
    const std::string lower = LowerCase(name);
    if (m_Sections.count(lower) == 0) {
        if (create == 0 || m_strPath.empty() || CountEntries() >= MAX_ENTRIES)
            return false;
        m_Sections[lower].name = name;
    }
    m_strSection = lower;
    return true;
}

bool CProfileStore::Write(const char* key, const char* format, const void* value)
{
    if (m_strPath.empty() || m_strSection.empty() || !IsName(key))
        return false;
    Entry entry{key, {}, false};
    switch (*format) {
    case 'l':
        entry.value = std::to_string(*static_cast<const std::int32_t*>(value));
        break;
    case 'x': {
        char number[16];
        std::snprintf(number, sizeof(number), "0x%x", *static_cast<const std::uint32_t*>(value));
        entry.value = number;
        break;
    }
    case 's':
        entry.value = static_cast<const char*>(value);
        entry.text = true;
        break;
    default:
        return false;
    }
    auto& entries = m_Sections[m_strSection].entries;
    const auto found = entries.find(LowerCase(key));
    if (found == entries.end()) {
        if (CountEntries() >= MAX_ENTRIES || entry.value.size() >= TEXT_SIZE)
            return false;
        entries[LowerCase(key)] = entry;
        return Save();
    }
    if (entry.value.size() >= TEXT_SIZE)
        return false;
    entry.name = found->second.name;
    found->second = entry;
    return Save();
}

bool CProfileStore::Read(const char* key, const char* format, void* out)
{
    const auto section = m_Sections.find(m_strSection);
    if (section == m_Sections.end())
        return false;
    const auto found = section->second.entries.find(LowerCase(key));
    if (found == section->second.entries.end())
        return false;
    const Entry& entry = found->second;
    if (*format == 's') {
        if (entry.text)
            std::snprintf(static_cast<char*>(out), TEXT_SIZE, "%s", entry.value.c_str());
        return entry.text;
    }
    std::uint32_t number = 0;
    if (entry.text || (*format != 'l' && *format != 'x') || !ParseNumber(entry.value, number))
        return false;
    *static_cast<std::uint32_t*>(out) = number;
    return true;
}

void CProfileStore::Preset(const std::string& section, const std::string& key, std::uint32_t value)
{
    Section& target = m_Sections[LowerCase(section)];
    target.name = section;
    target.entries[LowerCase(key)] = {key, std::to_string(value), false};
}
