#include "logic/battle_stage.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <string>
#include <utility>

#include "entities/battle_game.h"
#include "entities/battle_logic.h"
#include "entities/sea.h"
#include "platform/system.h"

namespace
{

bool IsMenu(int code)
{
    return code == EVENT_MAIN_MENU || code == EVENT_MENU_WITH_MESSAGE;
}

} // namespace

void CBattleStage::Begin(const ItfCommand& command)
{
    End();
    m_pLoader = std::make_unique<CBattleLoader>(command, m_nSeed++);
    m_bBarOpen = false;
}

void CBattleStage::End()
{
    m_Boxes.clear();
    if (m_pBattle != nullptr)
        m_pBattle->Hold(true); // its entities are there until the next Update
    m_pBattle.reset();
    m_pLoader.reset();
    m_Decided.reset();
    m_CalledOff.reset();
    m_bResume = false;
}

bool CBattleStage::Resume()
{
    m_bResume = m_pBattle != nullptr;
    return m_bResume || m_pLoader != nullptr;
}

void CBattleStage::Ask(int code)
{
    if (m_pBattle == nullptr || m_FrontEnd.IsWanted())
        return;
    ItfEvent event;
    event.code = code == EVENT_LEAVE_BATTLE && m_pBattle->Sim().IsOver() ? EVENT_END_GAME : code;
    PostEvent(event);
}

void CBattleStage::PostEvent(const ItfEvent& event)
{
    if (m_pLoader != nullptr) {
        PostWhileLoading(event);
        return;
    }
    if (IsMenu(event.code))
        End();
    if (m_pBattle != nullptr)
        PostOverBattle(event);
    else if (event.code == EVENT_SCENARIO_STATUS)
        m_FrontEnd.PostEvent(event, Status(event));
    else
        m_FrontEnd.PostEvent(event);
}

void CBattleStage::PostWhileLoading(const ItfEvent& event)
{
    if (IsMenu(event.code))
        m_CalledOff = event;
    else if (event.code == EVENT_END_GAME)
        m_Decided = event.value2 != 0;
    else
        Drop(event.code);
}

void CBattleStage::PostOverBattle(const ItfEvent& event)
{
    switch (event.code) {
    case EVENT_SCENARIO_STATUS:
        m_FrontEnd.PostEvent(event, Status(event));
        break;
    case EVENT_END_GAME:
        PostEnd(event);
        return; // Watch holds the battle, as soon as there is something to see
    case EVENT_LEAVE_BATTLE:
        // The question isn't put over another screen.
        if (m_FrontEnd.IsWanted())
            return;
        m_FrontEnd.PostEvent(event);
        break;
    case EVENT_VIDEO:
    case EVENT_HELP:
        m_FrontEnd.PostEvent(event);
        break;
    case EVENT_MISSION_BRIEF:
        if (event.value2 != 0) {
            Drop(event.code);
            return;
        }
        m_FrontEnd.PostEvent(event); // the command to set out comes at once
        break;
    default:
        Drop(event.code);
        return;
    }
    m_pBattle->Hold(true);
}

void CBattleStage::PostEnd(const ItfEvent& event)
{
    if (!m_pBattle->Sim().IsOver()) {
        m_pBattle->DecideForPlayer(event.value2 != 0);
        return; // Watch tells the front end
    }
    ItfEvent sent = event;
    sent.value2 = IsWon() ? 1 : 0;
    m_bEndTold = true;
    m_FrontEnd.PostEvent(sent);
}

void CBattleStage::PostMessageBox(const char* second, const char* first, Word style, Word id)
{
    if (m_pLoader != nullptr) {
        Drop(EVENT_MESSAGE_BOX);
        return;
    }
    if (m_pBattle == nullptr) {
        PostBox({second, first, style, id});
        return;
    }
    style &= ~static_cast<Word>(BOX_STYLE_NO_BUTTON);
    m_Boxes.push_back({second, first, style, id == BOX_LEAVE_BATTLE ? id : Word{BOX_NET_LOST}});
}

void CBattleStage::PostBox(const Box& box)
{
    ItfEvent event;
    event.code = EVENT_MESSAGE_BOX;
    m_FrontEnd.PostEvent(
        event, {reinterpret_cast<Word>(box.second), reinterpret_cast<Word>(box.first), box.style, box.id});
}

void CBattleStage::Drop(int code)
{
    OutputDebugStringA(("Battle: event " + std::to_string(code) + " has nothing to show\r\n").c_str());
}

bool CBattleStage::IsWon() const
{
    return m_pBattle->Sim().Winner() == m_pBattle->Sim().Setup().playerSide;
}

ItfScenarioStatus CBattleStage::Status(const ItfEvent& event) const
{
    ItfScenarioStatus status = {};
    std::string path(event.text, strnlen(event.text, sizeof(event.text)));
    if (m_pBattle != nullptr) {
        status.nPercentA = m_pBattle->Sim().Percent(0);
        status.nPercentB = m_pBattle->Sim().Percent(1);
        if (path.empty())
            path = m_pBattle->GetScenarioInfo()->szPath;
    }
    path.copy(status.szPath, sizeof(status.szPath) - 1);
    return status;
}

void CBattleStage::Update()
{
    if (IsStopped())
        End();
    if (m_pBattle == nullptr)
        DestroyEntities();
    if (m_CalledOff.has_value())
        CallOff();
    if (m_pLoader != nullptr)
        LoadOn();
    if (std::exchange(m_bResume, false)) {
        m_FrontEnd.Leave();
        m_World.SetInputMode(INPUT_NORMAL);
        RestoreDisplay();
    }
    if (m_pBattle != nullptr)
        Watch();
}

// The battle stands still under the front end, and its end is told when nothing else is shown.
void CBattleStage::Watch()
{
    if (m_pBattle->IsEndSeen() && !m_bEndTold && !m_FrontEnd.IsWanted()) {
        ItfEvent end;
        end.code = EVENT_END_GAME;
        PostEnd(end);
    }
    if (!m_Boxes.empty() && !m_FrontEnd.IsWanted()) {
        PostBox(m_Boxes.front());
        m_Boxes.pop_front();
    }
    m_pBattle->Hold(m_FrontEnd.IsWanted());
}

bool CBattleStage::IsStopped() const
{
    const auto* logic = dynamic_cast<const CBattleLogicEntity*>(m_World.GetEntity(m_nLogic));
    return logic != nullptr && logic->IsStopped();
}

// The loading screen goes with its bar, and the menu comes new.
void CBattleStage::CallOff()
{
    const ItfEvent menu = *m_CalledOff;
    End();
    m_FrontEnd.TakeAway();
    RestoreDisplay();
    m_FrontEnd.PostEvent(menu);
}

// The bar opens behind the first step: a scenario that can't be read gets none.
void CBattleStage::LoadOn()
{
    bool more = false;
    try {
        more = m_pLoader->Step();
    } catch (const no_fighter_exception& error) {
        FailLoading(error, TEXT_NO_FIGHTER);
        return;
    } catch (const std::exception& error) {
        FailLoading(error, TEXT_BROKEN_SCENARIO);
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

void CBattleStage::FailLoading(const std::exception& error, int text)
{
    OutputDebugStringA((std::string("Battle: ") + error.what() + "\r\n").c_str());
    End();
    ItfEvent event;
    event.code = EVENT_MENU_WITH_MESSAGE;
    event.value2 = text;
    m_FrontEnd.PostEvent(event);
}

void CBattleStage::Show()
{
    m_FrontEnd.TakeAway();
    m_pBattle = m_pLoader->TakeBattle();
    m_pLoader.reset();
    m_bEndTold = false;
    RestoreDisplay();
    if (CScene* scene = m_World.CurrentScene()) {
        const auto controls = std::make_shared<CBattleControls>(m_pBattle);
        auto game = std::make_unique<CBattleGameEntity>(
            m_pBattle,
            CBattleGameEntity::Names{m_Names.NameOf(*m_pBattle, 0), m_Names.NameOf(*m_pBattle, 1)});
        m_nGame = m_World.AddEntity(*scene, GAME_NAME, GAME_NAME, std::move(game));
        m_nLogic = m_World.AddEntity(*scene, LOGIC_NAME, LOGIC_NAME,
                                     std::make_unique<CBattleLogicEntity>(m_pBattle, controls));
        m_nSea = m_World.AddEntity(
            *scene, SEA_NAME, SEA_NAME,
            std::make_unique<CSeaEntity>(controls, CSeaEntity::SideNames{m_Names.NationOf(*m_pBattle, 0),
                                                                         m_Names.NationOf(*m_pBattle, 1)}));
    }
    if (m_Decided.has_value())
        m_pBattle->DecideForPlayer(*m_Decided);
    else if (m_pBattle->IsBriefAtStart())
        Ask(EVENT_SCENARIO_STATUS);
}

void CBattleStage::RestoreDisplay()
{
    const DisplayInfo& now = m_World.GetDisplayInfo();
    if (now.nWidth != m_Display.cx || now.nHeight != m_Display.cy)
        m_World.SetDisplaySize(static_cast<int>(m_Display.cx), static_cast<int>(m_Display.cy));
}

void CBattleStage::DestroyEntities()
{
    for (int* entity : {&m_nGame, &m_nLogic, &m_nSea}) {
        if (*entity >= 0)
            m_World.DestroyEntity(*entity);
        *entity = -1;
    }
}
