#pragma once
// Who fights a battle, as the statistics name him.

#include <string>

#include "battle/battle.h"
#include "ilogic.h"

/// The player by the name that he goes by among others, where he has given one; every other side by its
/// nation.
class CPlayerNames
{
  public:
    /// All must outlive the object.
    CPlayerNames(ITextTable& texts, ICustomResources& custom, IProfileStore& profile)
        : m_Texts(texts), m_Custom(custom), m_Profile(profile)
    {
    }

    /// For side 0 or 1.
    std::string NameOf(const CBattle& battle, int side) const;
    /// The side's nation alone; "?" for a custom one that isn't there.
    std::string NationOf(const CBattle& battle, int side) const;

  private:
    ITextTable& m_Texts;
    ICustomResources& m_Custom;
    IProfileStore& m_Profile;
};
