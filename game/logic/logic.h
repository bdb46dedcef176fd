#pragma once
// The game logic: hands out its objects, sends the front end its events and answers the player's commands.

#include <cstdint>
#include <string>

#include "engine/world.h"
#include "itfrecords.h"
#include "logic/battle_stage.h"
#include "logic/custom_resources.h"
#include "logic/front_end.h"
#include "logic/no_network.h"
#include "logic/player_names.h"
#include "logic/playlist.h"
#include "logic/profile_store.h"
#include "logic/text_table.h"

/// Destination DEST_LOGIC. Owns everything that it hands out; must outlive the front end's entity.
///
/// Single scenarios are the only games so far: a command that asks to go on with another brings the main menu
/// back.
class CLogic : public IMessageTarget
{
  public:
    /// The message that answers the hidden code.
    static constexpr int TEXT_SECRET = 117;
    static constexpr int TEXT_ATTENTION = 83; ///< heads a message

    /// Reads the text table, the play lists and the player's profile.
    /// `seed` chooses the dice of the battles.
    CLogic(CWorld& world, CSound& sound, std::uint64_t seed = 0);
    CLogic(const CLogic&) = delete;
    CLogic& operator=(const CLogic&) = delete;

    /// Makes the front end's entity and gives it its first event. False when the entity can't be made. The
    /// display's size of this moment is that of the battles.
    bool Start(const ItfEvent& first);
    /// The event reaches the front end with the next frame's messages. During a battle it brings it up, if it
    /// has a way back to the battle.
    void PostEvent(const ItfEvent& event);
    /// Event 33 with its four words: second text, first text, style, id. The texts are given by number.
    void PostMessageBox(int secondText, int firstText, Word style, Word id);
    /// Called each frame before the posted messages are delivered. What was posted before the frame's
    /// delivery stays until the next frame's.
    void Update();

    Word OnMessage(const MessageRecord* record) override;

  private:
    /// An exception came out of the front end: it is told, and the battle, or else the main menu, comes back
    /// without it. False when the entity is another, or when the front end fails as soon as it is made.
    bool OnFailure(int entity, const std::string& what, const std::string& error);
    void OnCommand(const ItfCommand& command);
    IProfileStore* Profile(Word number);
    /// Replaces the path in the buffer of MAX_PATH bytes with the new file's name; false leaves it as it was.
    static bool OnImport(char* path);
    void OnDisplayMode(Word width, Word height);
    static std::uint32_t VersionWord();

    CWorld& m_World;
    CTextTable m_Texts;
    CPlayList m_PlayList;
    CProfileStore m_PlayerProfile;
    CProfileStore m_ProgramProfile;
    CCustomResources m_CustomResources;
    CNoNetwork m_Network;
    CFrontEnd m_FrontEnd;
    CPlayerNames m_Names{m_Texts, m_CustomResources, m_PlayerProfile};
    CBattleStage m_Battle;
    bool m_bFrontEndFailed = false;
};
