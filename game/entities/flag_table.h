#pragma once
// Which texture a flag has. The file's form stands in docs/formats.md.

#include <map>
#include <string>

/// The rows of `resource\txt_res\flags.ini`, read when the first one is asked for; and where textures lie.
class CFlagTable
{
  public:
    static constexpr std::size_t MAX_ROWS = 4096;

    /// The texture's name for a flag number: of its variants the greatest that isn't above `variant`, else
    /// the least. Empty for a number without a row.
    std::string FindTexture(int flag, int variant);
    /// The path under which the file layer has a texture: `name` as given, or below `resource\textures\`; a
    /// `.tf` stands for the `.png` of its name. Empty when there is none or when the name leaves the game's
    /// folders.
    static std::string FindFile(const std::string& name);

  private:
    void Load();

    bool m_bLoaded = false;
    std::map<int, std::map<int, std::string>> m_Flags; ///< by number, then by variant
};
