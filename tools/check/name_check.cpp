#include "name_check.h"

#include "engine/names.h"
#include "kernel/nameloader.h"
#include "render/picture.h"

namespace
{

// What the module draws with whatever the dialogs say.
constexpr const char* OWN_SPRITES[] = {
    "itfBtDown",   "itfBtUp",          "itfFade",         "itfFade2",        "itfScLogo",
    "itfScBar",    "itfScArrUp",       "itfScArrUpA",     "itfScArrDown",    "itfScArrDownA",
    "itfScHorBar", "itfScHorArrUp",    "itfScHorArrUpA",  "itfScHorArrDown", "itfScHorArrDownA",
    "itfTrans137", "ItfProgressEmpty", "ItfProgressFull",
};
constexpr const char* OWN_FONTS[] = {"itfBtnFont",   "itfBtnFontA", "itfBtnFontDis", "itfListFont",
                                     "itfListFont1", "itfMenuFont", "itfMenuFontA",  "itfMenuFontDis"};

} // namespace

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

// Stands behind the section's brace afterwards, or where the section ends too early.
std::vector<CNameCheck::NameRowPlace> CNameCheck::ReadSection(const char* section)
{
    std::vector<NameRowPlace> rows;
    for (m_nPos = 0; m_nPos + 1 < m_Tokens.size(); ++m_nPos) {
        if (m_Tokens[m_nPos].kind == ResourceToken::Kind::Word && SameName(m_Tokens[m_nPos].text, section) &&
            m_Tokens[m_nPos + 1].IsMark('{'))
            break;
    }
    if (m_nPos + 1 >= m_Tokens.size()) {
        Fail(m_Tokens.back(), std::string("there is no section ") + section);
        return rows;
    }
    std::set<std::string> known;
    for (m_nPos += 2; !m_Tokens[m_nPos].IsMark('}');) {
        if (m_Tokens[m_nPos].kind == ResourceToken::Kind::End || m_Tokens[m_nPos + 1].IsMark('{')) {
            Fail(m_Tokens[m_nPos], std::string("the section ") + section + " isn't closed");
            break;
        }
        NameRowPlace row;
        if (!ReadRow(row))
            continue;
        if (!known.insert(LowerCase(row.name)).second)
            m_Faults.Add(NAME_RESOURCE, row.line, "the name \"" + row.name + "\" has a row already");
        else
            rows.push_back(row);
    }
    return rows;
}

// After a fault at the beginning of a line, or at what may be a section's end.
bool CNameCheck::ReadRow(NameRowPlace& out)
{
    out.line = m_Tokens[m_nPos].line;
    for (std::string* field : {&out.name, &out.file}) {
        const ResourceToken& token = m_Tokens[m_nPos];
        if (token.kind == ResourceToken::Kind::Text) {
            *field = token.text;
            ++m_nPos;
            continue;
        }
        Fail(token, token.kind == ResourceToken::Kind::Broken
                        ? token.text
                        : std::string("expected a ") + (field == &out.name ? "name" : "file") +
                              " in quotes, found " + token.Describe());
        do
            ++m_nPos;
        while (m_nPos + 1 < m_Tokens.size() && !m_Tokens[m_nPos].firstOnLine &&
               !m_Tokens[m_nPos].IsMark('}'));
        return false;
    }
    if (m_Tokens[m_nPos].IsMark(','))
        ++m_nPos;
    if (out.name.size() > MAX_LOGICAL_NAME)
        m_Faults.Add(NAME_RESOURCE, out.line,
                     "the name \"" + out.name + "\" has more than " + std::to_string(MAX_LOGICAL_NAME) +
                         " characters");
    return true;
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
