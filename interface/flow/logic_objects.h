#pragma once
// What several dialogs ask the logic and the battle's scene for. Nothing here is owned by the caller.

#include "ientities.h"
#include "ilogic.h"

class IEngine;

/// Null when no game runs.
IGameState* GetGameState(IEngine* core);
/// Null when there is no game, or none with a scenario.
ScenarioInfo* ScenarioOf(IGameState* state);
/// Whether the game is part of a campaign. False for null.
bool IsCampaign(IGameState* state);
/// Null when the logic has no network.
INetCore* GetNetCore(IEngine* core);
/// False without a network.
bool IsNetworkGame(IEngine* core);
/// Null when the logic plays no music.
IPlayList* GetPlayList(IEngine* core);

/// The entity "game" of the current scene; null when there is no scene, or none in it.
IGameEntity* FindGameEntity(IEngine* core);
/// Tells the current scene's logic to stop. False when there is no scene, or no logic in it.
bool StopBattleLogic(IEngine* core);
