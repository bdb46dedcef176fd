#pragma once
// The way of a battle: loading, the sea, what the front end shows over it, and the end.

#include <memory>

#include "battle/battle_loader.h"
#include "logic/front_end.h"

/// Messages and commands only note what is to happen; Update does it, when no entity's code runs.
///
/// While a battle runs, the current scene has the entities "logic" and "sea", and the front end is there
/// only when something has to be shown over the battle. The battle has the display size that the stage is
/// given; the front end may have changed it.
class CBattleStage
{
  public:
    static constexpr const char* LOGIC_NAME = "logic";
    static constexpr const char* SEA_NAME = "sea";
    /// What the player reads when a scenario can't be read.
    static constexpr int TEXT_BROKEN_SCENARIO = 70;

    /// Both must outlive the stage.
    CBattleStage(CWorld& world, CFrontEnd& frontEnd) : m_World(world), m_FrontEnd(frontEnd) {}

    /// The size for the battles to come, in pixels.
    void SetDisplay(SIZE display) { m_Display = display; }
    /// Loads the command's scenario and begins the battle; ends the one that runs. A scenario that can't be
    /// read leads back to the main menu, with a box.
    void Begin(const ItfCommand& command);
    /// The battle is over: its entities go. The front end stays.
    void End();
    /// The front end has nothing more to show. False, and nothing happens, when no battle runs.
    bool Resume();
    /// Asks the player whether to leave, unless the front end has something else up.
    void AskLeave();
    /// Null while no battle runs.
    IGameState* GetGameState() { return m_pBattle.get(); }
    /// Called each frame.
    void Update();

  private:
    void LoadOn();
    void Show();
    void RestoreDisplay();
    void DestroyEntities();

    CWorld& m_World;
    CFrontEnd& m_FrontEnd;
    SIZE m_Display;
    std::unique_ptr<CBattleLoader> m_pLoader;
    std::unique_ptr<CBattle> m_pBattle;
    int m_nLogic = -1;
    int m_nSea = -1;
    bool m_bBarOpen = false;
    bool m_bResume = false;
};
