#include "logic/player_names.h"

#include "platform/files.h"

namespace
{

constexpr const char* SECTION = "MULTIPLAYER";
constexpr const char* NAME_KEY = "NickName";

} // namespace

std::string CPlayerNames::NationOf(const CBattle& battle, int side) const
{
    const CUSTOM_RESOURCE_DATA& custom = battle.Custom();
    if ((side == 0 ? custom.bCustomA : custom.bCustomB) == 0)
        return m_Texts.GetText(side == 0 ? battle.Settings().nSideANation : battle.Settings().nSideBNation);
    char name[MAX_PATH] = {};
    const int index = m_Custom.Find(side == 0 ? &custom.guidA : &custom.guidB);
    return m_Custom.GetName(index, name, MAX_PATH) ? name : "?";
}

std::string CPlayerNames::NameOf(const CBattle& battle, int side) const
{
    char name[MAX_PATH] = {};
    if (side == battle.OrderingSide() && m_Profile.SelectSection(SECTION, 0))
        m_Profile.Read(NAME_KEY, "s", name);
    return name[0] != '\0' ? name : NationOf(battle, side);
}
