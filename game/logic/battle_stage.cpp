#include "logic/battle_stage.h"

#include <exception>
#include <string>
#include <utility>

#include "entities/battle_logic.h"
#include "entities/sea.h"
#include "platform/system.h"

void CBattleStage::Begin(const ItfCommand& command)
{
    End();
    m_pLoader = std::make_unique<CBattleLoader>(command, m_Display);
    m_bBarOpen = false;
}

void CBattleStage::End()
{
    m_pBattle.reset();
    m_pLoader.reset();
    m_bResume = false;
}

bool CBattleStage::Resume()
{
    m_bResume = m_pBattle != nullptr;
    return m_bResume;
}

void CBattleStage::AskLeave()
{
    if (m_pBattle == nullptr || m_FrontEnd.IsWanted())
        return;
    ItfEvent event;
    event.code = EVENT_LEAVE_BATTLE;
    m_FrontEnd.PostEvent(event);
}

void CBattleStage::Update()
{
    if (m_pBattle == nullptr)
        DestroyEntities();
    if (m_pLoader != nullptr)
        LoadOn();
    if (std::exchange(m_bResume, false)) {
        m_FrontEnd.TakeAway();
        RestoreDisplay();
    }
}

// The bar opens behind the first step: a scenario that can't be read gets none.
void CBattleStage::LoadOn()
{
    bool more = false;
    try {
        more = m_pLoader->Step();
    } catch (const std::exception& error) {
        OutputDebugStringA((std::string("Battle: ") + error.what() + "\r\n").c_str());
        End();
        ItfEvent event;
        event.code = EVENT_MENU_WITH_MESSAGE;
        event.value2 = TEXT_BROKEN_SCENARIO;
        m_FrontEnd.PostEvent(event);
        return;
    }
    if (!more) {
        Show();
        return;
    }
    const int frontEnd = m_FrontEnd.Id();
    if (!std::exchange(m_bBarOpen, true))
        m_World.Root().SendMessage(MSG_ITF_PROGRESS_OPEN, frontEnd, 0, nullptr);
    m_World.Root().SendMessage(MSG_ITF_PROGRESS_SET, frontEnd, 0, "ll", m_pLoader->Percent(), 0);
}

void CBattleStage::Show()
{
    m_FrontEnd.TakeAway();
    m_pBattle = m_pLoader->TakeBattle();
    auto sea = std::make_unique<CSeaEntity>(m_pLoader->TakeSea());
    m_pLoader.reset();
    RestoreDisplay();
    if (CScene* scene = m_World.CurrentScene()) {
        m_nLogic = m_World.AddEntity(*scene, LOGIC_NAME, LOGIC_NAME, std::make_unique<CBattleLogicEntity>());
        m_nSea = m_World.AddEntity(*scene, SEA_NAME, SEA_NAME, std::move(sea));
    }
}

void CBattleStage::RestoreDisplay()
{
    const DisplayInfo& now = m_World.GetDisplayInfo();
    if (now.nWidth != m_Display.cx || now.nHeight != m_Display.cy)
        m_World.SetDisplaySize(static_cast<int>(m_Display.cx), static_cast<int>(m_Display.cy));
}

void CBattleStage::DestroyEntities()
{
    for (int* entity : {&m_nLogic, &m_nSea}) {
        if (*entity >= 0)
            m_World.DestroyEntity(*entity);
        *entity = -1;
    }
}
