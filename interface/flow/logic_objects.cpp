#include "flow/logic_objects.h"

#include "iengine.h"
#include "itfrecords.h"

namespace
{

template <class T>
T* Ask(IEngine* core, int message)
{
    return reinterpret_cast<T*>(core->GetScene(-1)->SendMessage(message, DEST_LOGIC, 0, nullptr));
}

} // namespace

IGameState* GetGameState(IEngine* core)
{
    return Ask<IGameState>(core, MSG_GET_GAME_STATE);
}

ScenarioInfo* ScenarioOf(IGameState* state)
{
    return state != nullptr ? state->GetScenarioInfo() : nullptr;
}

bool IsCampaign(IGameState* state)
{
    const GameHeader* header = state != nullptr ? state->GetHeader() : nullptr;
    return header != nullptr && header->bCampaign != 0;
}

INetCore* GetNetCore(IEngine* core)
{
    return Ask<INetCore>(core, MSG_GET_NET);
}

bool IsNetworkGame(IEngine* core)
{
    INetCore* net = GetNetCore(core);
    return net != nullptr && net->IsNetworkGame();
}

IPlayList* GetPlayList(IEngine* core)
{
    return Ask<IPlayList>(core, MSG_GET_PLAYLIST);
}

IGameEntity* FindGameEntity(IEngine* core)
{
    IEngine* scene = GetCurrentScene(core);
    const int id = scene != nullptr ? scene->FindEntity("game", nullptr) : -1;
    return id >= 0 ? dynamic_cast<IGameEntity*>(scene->GetEntity(id)) : nullptr;
}

bool StopBattleLogic(IEngine* core)
{
    IEngine* scene = GetCurrentScene(core);
    const int logic = scene != nullptr ? scene->FindEntity("logic", "logic") : -1;
    if (logic < 1)
        return false;
    scene->SendMessage(MSG_LOGIC_STOP, logic, -1, nullptr);
    return true;
}
