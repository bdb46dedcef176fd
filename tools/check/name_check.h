#pragma once
// The file that maps logical names: reads it, and loads every picture and font that it names.

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "controls/itffont.h"
#include "faults.h"
#include "render/render2d.h"
#include "resource_tokens.h"

class CNameCheck
{
  public:
    explicit CNameCheck(CFaults& faults) : m_Faults(faults) {}

    /// Once, before the questions below.
    void Run();
    // Whether a row gives the name, in any case.
    bool HasSprite(const std::string& name) const;
    bool HasFont(const std::string& name) const;
    /// Null for a name without a row, and for a font that can't be loaded.
    const CItfFont* Font(const std::string& name) const;

  private:
    /// By name in lower case.
    using Sprites = std::set<std::string>;
    using Fonts = std::map<std::string, std::unique_ptr<CItfFont>>;

    struct NameRowPlace {
        std::string name;
        std::string file;
        int line;
    };
    std::vector<NameRowPlace> ReadSection(const char* section);
    bool FindSection(const char* section);
    bool ReadRow(NameRowPlace& out);
    bool ReadName(const char* what, std::string& out);
    const ResourceToken& Now() const { return m_Tokens[m_nPos]; }
    const ResourceToken& Next() const { return m_Tokens[std::min(m_nPos + 1, m_Tokens.size() - 1)]; }
    bool AtSection() const { return Now().kind == ResourceToken::Kind::Word && Next().IsMark('{'); }
    void Fail(const ResourceToken& token, const std::string& text);
    void LoadSprite(const NameRowPlace& row);
    void LoadFont(const NameRowPlace& row);
    void CheckOwnNames();

    CFaults& m_Faults;
    CRender2D m_Render; ///< outlives the fonts, which have textures in it
    std::vector<ResourceToken> m_Tokens;
    std::size_t m_nPos = 0;
    Sprites m_Sprites;
    Fonts m_Fonts;
};
