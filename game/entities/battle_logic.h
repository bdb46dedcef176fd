#pragma once

#include "entity.h"
#include "iengine.h"
#include "itfrecords.h"
#include "platform/input.h"

/// To DEST_LOGIC, from the battle: the player wants to leave it.
inline constexpr int MSG_ASK_LEAVE_BATTLE = 0x6001;

/// The entity "logic" of a scene, which is there while a battle is: the battle's part of the game logic.
/// MSG_LOGIC_STOP stops it. Until then it has the player's input: Escape asks to leave, and no other key
/// does anything.
class CBattleLogicEntity : public Entity
{
  public:
    bool IsStopped() const { return m_bStopped; }

    Word Init(IEngine* core) override
    {
        m_pCore = core;
        core->RegisterInput(1, GetEntityId(), 1);
        return 1;
    }

    Word OnWindowMessage(std::uint32_t msg, std::uint32_t wParam, std::int32_t) override
    {
        if (msg != WM_KEYDOWN || wParam != VK_ESCAPE || m_bStopped)
            return 0;
        m_pCore->GetScene(-1)->PostMessage(MSG_ASK_LEAVE_BATTLE, DEST_LOGIC, 0, nullptr);
        return 1;
    }

    Word OnMessage(const MessageRecord* record) override
    {
        if (record->message != MSG_LOGIC_STOP)
            return 0;
        m_bStopped = true;
        return 1;
    }

  private:
    IEngine* m_pCore = nullptr;
    bool m_bStopped = false;
};
