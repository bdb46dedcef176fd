#include "entities/battle_logic.h"

#include "platform/input.h"

namespace
{

constexpr std::uint32_t KEY_DECIDE = VK_F9; // for whoever tests what comes behind a battle

struct ScreenKey {
    std::uint32_t key;
    ItfEventCode event;
};

constexpr ScreenKey SCREENS[] = {
    {VK_ESCAPE, EVENT_LEAVE_BATTLE},
    {VK_F1, EVENT_HELP},
    {VK_F4, EVENT_SCENARIO_STATUS},
};

} // namespace

Word CBattleLogicEntity::Init(IEngine* core)
{
    m_pCore = core;
    core->RegisterInput(1, GetEntityId(), 1);
    return 1;
}

SIZE CBattleLogicEntity::DisplaySize() const
{
    SIZE size;
    m_pCore->GetScreenSize(&size);
    return size;
}

Word CBattleLogicEntity::OnFrame(Word elapsed, Word)
{
    if (m_bStopped || m_pBattle->IsHeld())
        return 0;
    m_pBattle->Advance(elapsed);
    return 0;
}

bool CBattleLogicEntity::OnKey(std::uint32_t key)
{
    for (const ScreenKey& screen : SCREENS) {
        if (screen.key == key) {
            m_pCore->GetScene(-1)->PostMessage(MSG_ASK_SCREEN, DEST_LOGIC, 0, "l", screen.event);
            return true;
        }
    }
    if (key != KEY_DECIDE)
        return false;
    m_pBattle->DecideForPlayer(true);
    return true;
}

// A key that went down before something covered the battle may come up meanwhile.
Word CBattleLogicEntity::OnWindowMessage(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam)
{
    if (m_bStopped || (m_pBattle->IsHeld() && msg != WM_KEYUP))
        return 0;
    if (msg == WM_KEYDOWN && OnKey(wParam))
        return 1;
    return m_pControls->OnWindowMessage(msg, wParam, lParam, DisplaySize()) ? 1 : 0;
}

Word CBattleLogicEntity::OnMessage(const MessageRecord* record)
{
    if (record->message != MSG_LOGIC_STOP)
        return 0;
    m_bStopped = true;
    return 1;
}
