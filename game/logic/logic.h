#pragma once
// The game logic: hands out its objects, sends the front end its events and answers the player's commands.

#include <memory>

#include "engine/world.h"
#include "itfrecords.h"
#include "logic/no_network.h"
#include "logic/playlist.h"
#include "logic/profile_store.h"
#include "logic/text_table.h"

/// Destination DEST_LOGIC. Owns everything that it hands out; must outlive the front end's entity.
///
/// No game runs yet when a command asks to go on with one: the logic then brings the main menu back.
class CLogic : public IMessageTarget
{
  public:
    static constexpr const char* INTERFACE_NAME = "interface";
    static constexpr const char* INTERFACE_MODULE = "INTERFACE.so";
    static constexpr const char* BATTLE_LOGIC_NAME = "logic";
    /// The message that answers the hidden code.
    static constexpr int TEXT_SECRET = 117;

    /// Reads the text table, the play lists and the player's profile.
    CLogic(CWorld& world, CSound& sound);

    /// Makes the front end's entity and gives it its first event. False when the entity can't be made.
    bool Start(const ItfEvent& first);
    /// The event reaches the front end with the next frame's messages.
    void PostEvent(const ItfEvent& event);
    /// Event 33 with its four words: second text, first text, style, id. The texts are given by number.
    void PostMessageBox(int secondText, int firstText, Word style, Word id);
    /// Called each frame before the posted messages are delivered. What was posted before the frame's
    /// delivery stays until the next frame's.
    void Update();

    Word OnMessage(const MessageRecord* record) override;

  private:
    /// An event and what its `object` points to, kept until the front end has had it.
    struct Sent {
        ItfEvent event;
        Word words[4] = {};
    };
    void Post(std::unique_ptr<Sent> sent);
    void OnCommand(const ItfCommand& command);
    IProfileStore* Profile(Word number);
    void OnDisplayMode(Word width, Word height);
    static std::uint32_t VersionWord();

    CWorld& m_World;
    CTextTable m_Texts;
    CPlayList m_PlayList;
    CProfileStore m_PlayerProfile;
    CProfileStore m_ProgramProfile;
    CNoNetwork m_Network;
    int m_nInterface = -1;
    std::vector<std::unique_ptr<Sent>> m_Waiting;
    std::vector<std::unique_ptr<Sent>> m_Delivered;
};
