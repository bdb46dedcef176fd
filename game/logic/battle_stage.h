#pragma once
// The way of a battle: loading, the sea, what the front end shows over it, and the end.

#include <deque>
#include <memory>
#include <optional>

#include "battle/battle_controls.h"
#include "battle/battle_loader.h"
#include "logic/front_end.h"
#include "logic/player_names.h"

/// Messages and commands only note what is to happen; Update does it, when no entity's code runs.
///
/// While a battle runs, the current scene has the entities "game", "logic" and "sea", and the front end is
/// there only when something has to be shown over the battle, which stands still meanwhile. The battle has
/// the display size that the stage is given; the front end may have changed it. Once the entity "logic" is
/// stopped the battle ends with the next Update.
///
/// Over a battle, and while one loads, only what leads back to it or to the menu is posted to the front end:
/// the rest would leave the player before a battle that stands still. It is told on the debug output.
class CBattleStage
{
  public:
    static constexpr const char* GAME_NAME = "game";
    static constexpr const char* LOGIC_NAME = "logic";
    static constexpr const char* SEA_NAME = "sea";
    /// What the player reads when a scenario can't be read.
    static constexpr int TEXT_BROKEN_SCENARIO = 70;
    static constexpr int TEXT_NO_FIGHTER = 71; ///< the scenario is whole, but there is no battle in it

    /// All but the seed must outlive the stage. Each battle has dice of its own, the first those of `seed`.
    CBattleStage(CWorld& world, CFrontEnd& frontEnd, const CPlayerNames& names, std::uint64_t seed)
        : m_World(world), m_FrontEnd(frontEnd), m_Names(names), m_nSeed(seed)
    {
    }

    /// The size for the battles to come, in pixels.
    void SetDisplay(SIZE display) { m_Display = display; }
    /// Loads the command's scenario and begins the battle; ends the one that runs. A scenario that can't be
    /// read leads back to the main menu, with a box.
    void Begin(const ItfCommand& command);
    /// The battle is over: its entities go. The front end stays.
    void End();
    /// The front end has nothing more to show. False, and nothing happens, when no battle runs or loads.
    bool Resume();
    /// The player asks for the screen of that event, unless the front end has something else up. Whoever
    /// wants to leave a battle that is over gets its end again.
    void Ask(int code);
    /// Posts an event to the front end with what the battle knows of it. The end of a game that isn't over
    /// decides it first, for the player's side unless `value2` is 0; one that loads still is decided as it
    /// begins. The main menu ends the battle, or the loading.
    void PostEvent(const ItfEvent& event);
    /// Event 33 with its four words; the texts must stay. Over a battle every answer leads back to it, and
    /// the box waits until nothing else is shown.
    void PostMessageBox(const char* second, const char* first, Word style, Word id);
    bool IsBattleOn() const { return m_pBattle != nullptr; }
    /// Null while no battle runs.
    IGameState* GetGameState() { return m_pBattle.get(); }
    /// Called each frame.
    void Update();

  private:
    /// Event 33 for later.
    struct Box {
        const char* second;
        const char* first;
        Word style;
        Word id;
    };

    void LoadOn();
    void FailLoading(const std::exception& error, int text);
    void PostBox(const Box& box);
    void Show();
    void Watch();
    void PostWhileLoading(const ItfEvent& event);
    void PostOverBattle(const ItfEvent& event);
    void PostEnd(const ItfEvent& event);
    static void Drop(int code);
    void CallOff();
    ItfScenarioStatus Status(const ItfEvent& event) const;
    bool IsStopped() const;
    bool IsWon() const;
    void RestoreDisplay();
    void DestroyEntities();

    CWorld& m_World;
    CFrontEnd& m_FrontEnd;
    const CPlayerNames& m_Names;
    std::uint64_t m_nSeed;
    SIZE m_Display;
    std::unique_ptr<CBattleLoader> m_pLoader;
    std::shared_ptr<CBattle> m_pBattle;
    std::optional<bool> m_Decided;       ///< while it loads: who is to win at once, true the player
    std::optional<ItfEvent> m_CalledOff; ///< while it loads: the menu that is to come instead
    std::deque<Box> m_Boxes;             ///< over a battle: those that wait
    int m_nGame = -1;
    int m_nLogic = -1;
    int m_nSea = -1;
    bool m_bBarOpen = false;
    bool m_bResume = false;
    bool m_bEndTold = false; ///< the front end has been told how the battle ended
};
