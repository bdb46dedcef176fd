#pragma once

#include "entity.h"
#include "itfrecords.h"

/// The entity "logic" of a scene: the battle's part of the game logic. MSG_LOGIC_STOP ends the battle.
class CBattleLogicEntity : public Entity
{
  public:
    bool IsStopped() const { return m_bStopped; }
    Word OnMessage(const MessageRecord* record) override
    {
        if (record->message != MSG_LOGIC_STOP)
            return 0;
        m_bStopped = true;
        return 1;
    }

  private:
    bool m_bStopped = false;
};
