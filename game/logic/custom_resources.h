#pragma once
// The nations that players add to the game, one text file each.

#include <string>
#include <vector>

#include "ilogic.h"

class CTextParser;

/// Each file of the folder names one nation:
///     guid { 0x5eaf0001, 0x19120407, 0x00c0ffee, 0x7d3a11b2 }
///     name "Skerrymark"
///     flag "custom\skerrymark.png"
/// A file that is wrong, or whose guid another one has, is told in the debug output with its line and left
/// out.
class CCustomResources : public ICustomResources
{
  public:
    static constexpr std::size_t MAX_NATIONS = 256;
    static constexpr std::size_t MAX_NAME = 63;

    /// Reads every "*.ini" of the folder, in the order of the names. Called once.
    void Load(const std::string& folder);

    int Find(const CObjGUID* guid) override;
    bool GetName(int index, char* buffer, int size) override;
    bool GetFlagFile(int index, int kind, char* buffer, int size) override;

    /// The file that names the nation; `index` is one of theirs.
    const std::string& FileOf(int index) const { return m_Nations[static_cast<std::size_t>(index)].file; }

  private:
    struct Nation {
        std::string file;
        CObjGUID guid;
        std::string name;
        std::string flag;
    };

    static bool Read(CTextParser& parser, Nation& out);
    void Add(const std::string& path);
    const Nation* At(int index) const;

    std::vector<Nation> m_Nations;
};
