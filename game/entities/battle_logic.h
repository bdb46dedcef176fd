#pragma once
// The entity "logic" of a scene, which is there while a battle is: the battle's part of the game logic.

#include <memory>

#include "battle/battle.h"
#include "battle/battle_controls.h"
#include "entity.h"
#include "iengine.h"
#include "itfrecords.h"

/// To DEST_LOGIC, "l" ItfEventCode: the player asks for a screen over the battle.
inline constexpr int MSG_ASK_SCREEN = 0x6001;

/// Lets the battle's time pass, and has the player's input while nothing covers the battle: keys that ask for
/// a screen are posted to the logic, the rest goes to the controls. MSG_LOGIC_STOP stops it for good.
class CBattleLogicEntity : public Entity
{
  public:
    CBattleLogicEntity(std::shared_ptr<CBattle> battle, std::shared_ptr<CBattleControls> controls)
        : m_pBattle(std::move(battle)), m_pControls(std::move(controls))
    {
    }

    bool IsStopped() const { return m_bStopped; }

    Word Init(IEngine* core) override;
    Word OnFrame(Word elapsed, Word second) override;
    Word OnWindowMessage(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam) override;
    Word OnMessage(const MessageRecord* record) override;

  private:
    bool OnKey(std::uint32_t key);
    SIZE DisplaySize() const;

    IEngine* m_pCore = nullptr;
    std::shared_ptr<CBattle> m_pBattle;
    std::shared_ptr<CBattleControls> m_pControls;
    bool m_bStopped = false;
};
