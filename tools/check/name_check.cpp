#include "name_check.h"

#include "engine/names.h"
#include "kernel/nameloader.h"
#include "kernel/own_names.h"
#include "platform/files.h"
#include "render/picture.h"

void CNameCheck::Run()
{
    m_Tokens = ReadTokens(NAME_RESOURCE, m_Faults);
    for (const NameRowPlace& row : ReadSection("SpriteMap"))
        LoadSprite(row);
    for (const NameRowPlace& row : ReadSection("FontMap"))
        LoadFont(row);
    CheckOwnNames();
}

void CNameCheck::Fail(const ResourceToken& token, const std::string& text)
{
    m_Faults.Add(NAME_RESOURCE, token.line, text);
}

// Goes on behind the section's brace. The game looks for the second section behind the first; one that stands
// above it is told, and read all the same.
bool CNameCheck::FindSection(const char* section)
{
    const auto isName = [section](const ResourceToken& token) {
        return token.kind == ResourceToken::Kind::Word && SameName(token.text, section);
    };
    const auto from = m_Tokens.begin() + static_cast<std::ptrdiff_t>(m_nPos);
    auto found = std::find_if(from, m_Tokens.end(), isName);
    if (found == m_Tokens.end()) {
        found = std::find_if(m_Tokens.begin(), from, isName);
        if (found == from) {
            Fail(m_Tokens.back(), std::string("there is no section ") + section);
            return false;
        }
        Fail(*found, std::string("the section ") + section + " has to be the last one");
    }
    const auto brace =
        std::find_if(found, m_Tokens.end(), [](const auto& token) { return token.IsMark('{'); });
    if (brace == m_Tokens.end()) {
        Fail(*found, std::string("expected a { behind ") + section);
        return false;
    }
    m_nPos = static_cast<std::size_t>(brace - m_Tokens.begin()) + 1;
    return true;
}

// Stands behind the section afterwards, or where it ends too early.
std::vector<CNameCheck::NameRowPlace> CNameCheck::ReadSection(const char* section)
{
    std::vector<NameRowPlace> rows;
    if (!FindSection(section))
        return rows;
    if (Now().IsMark('}'))
        Fail(Now(), "expected a row in front of the }");
    std::set<std::string> known;
    while (!Now().IsMark('}')) {
        if (Now().kind == ResourceToken::Kind::End || AtSection()) {
            Fail(Now(), std::string("the section ") + section + " isn't closed");
            return rows;
        }
        NameRowPlace row;
        if (!ReadRow(row))
            continue;
        if (!known.insert(LowerCase(row.name)).second)
            m_Faults.Add(NAME_RESOURCE, row.line, "the name \"" + row.name + "\" has a row already");
        else
            rows.push_back(row);
    }
    ++m_nPos;
    return rows;
}

// After a fault at the beginning of a line, or at what may be a section's end.
bool CNameCheck::ReadRow(NameRowPlace& out)
{
    const std::size_t begin = m_nPos;
    out.line = (Now().IsMark(',') ? Next() : Now()).line;
    if (!ReadName("name", out.name) || !ReadName("file", out.file)) {
        m_nPos += m_nPos == begin ? 1 : 0;
        while (Now().kind != ResourceToken::Kind::End && !Now().firstOnLine && !Now().IsMark('}') &&
               !AtSection())
            ++m_nPos;
        return false;
    }
    if (Now().IsMark(','))
        ++m_nPos;
    if (out.name.size() > MAX_LOGICAL_NAME)
        m_Faults.Add(NAME_RESOURCE, out.line,
                     "the name \"" + out.name + "\" has more than " + std::to_string(MAX_LOGICAL_NAME) +
                         " characters");
    return true;
}

// A comma in front and quotes may be there or not.
bool CNameCheck::ReadName(const char* what, std::string& out)
{
    if (Now().IsMark(','))
        ++m_nPos;
    const ResourceToken& token = Now();
    const bool isText = token.kind == ResourceToken::Kind::Text || token.kind == ResourceToken::Kind::Word;
    if (token.kind == ResourceToken::Kind::Broken)
        Fail(token, token.text);
    else if (!isText || AtSection())
        Fail(token, std::string("expected a ") + what + ", found " + token.Describe());
    else if (token.text.size() >= MAX_PATH)
        Fail(token, token.Describe() + " has more than " + std::to_string(MAX_PATH - 1) + " characters");
    else {
        out = token.text;
        ++m_nPos;
        return true;
    }
    return false;
}

void CNameCheck::LoadSprite(const NameRowPlace& row)
{
    m_Sprites.insert(LowerCase(row.name));
    try {
        LoadPicture(row.file);
    } catch (const std::exception& error) {
        m_Faults.Add(NAME_RESOURCE, row.line,
                     "the picture \"" + row.file + "\" of \"" + row.name +
                         "\" can't be loaded: " + error.what());
    }
}

void CNameCheck::LoadFont(const NameRowPlace& row)
{
    const CDebugCapture capture;
    auto font = std::make_unique<CItfFont>();
    const bool loaded = font->Load(row.file.c_str(), &m_Render);
    for (const std::string& line : capture.Lines())
        m_Faults.AddDebugLine(line, NAME_RESOURCE, row.line);
    if (!loaded)
        m_Faults.Add(NAME_RESOURCE, row.line,
                     "the font \"" + row.file + "\" of \"" + row.name + "\" can't be loaded");
    m_Fonts[LowerCase(row.name)] = loaded ? std::move(font) : nullptr;
}

void CNameCheck::CheckOwnNames()
{
    const int line = m_Tokens.back().line;
    for (const char* name : OWN_SPRITES) {
        if (!HasSprite(name))
            m_Faults.Add(NAME_RESOURCE, line, std::string("there is no sprite \"") + name + "\"");
    }
    for (const char* name : OWN_FONTS) {
        if (!HasFont(name))
            m_Faults.Add(NAME_RESOURCE, line, std::string("there is no font \"") + name + "\"");
    }
}

bool CNameCheck::HasSprite(const std::string& name) const
{
    return m_Sprites.contains(LowerCase(name));
}

bool CNameCheck::HasFont(const std::string& name) const
{
    return m_Fonts.contains(LowerCase(name));
}

const CItfFont* CNameCheck::Font(const std::string& name) const
{
    const auto found = m_Fonts.find(LowerCase(name));
    return found != m_Fonts.end() ? found->second.get() : nullptr;
}
