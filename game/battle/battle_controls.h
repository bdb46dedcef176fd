#pragma once
// What the player does to a battle with mouse and keys.

#include <cstdint>
#include <memory>
#include <vector>

#include "battle/battle.h"
#include "battle/chart_projection.h"

/// An order that was given just now, for the chart to show.
struct OrderSign {
    enum class Kind { NONE, MOVE, ATTACK, REFUSED };
    static constexpr std::int64_t LIFETIME = 900; ///< milliseconds

    Kind kind = Kind::NONE;
    SeaPoint place;
    std::int64_t age = LIFETIME; ///< milliseconds

    bool IsShown() const { return kind != Kind::NONE && age < LIFETIME; }
};

/// The view, the selection, and the orders that come of them.
///
/// A click or a box with the left button chooses, with Shift besides what is chosen already; the right button
/// orders, or scrolls when it is dragged; the wheel zooms. Only units that the player's side sees can be
/// chosen, those of another side one at a time.
class CBattleControls
{
  public:
    /// Pixels of the display above and below the chart.
    static constexpr int TOP_STRIP = 28;
    static constexpr int BOTTOM_STRIP = 60;

    explicit CBattleControls(std::shared_ptr<CBattle> battle);

    /// `display` is its size in pixels now; mouse positions are display pixels. True when the message was
    /// used.
    bool OnWindowMessage(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam, SIZE display);
    /// The player's time passes. Whatever is gone or out of sight isn't chosen any more.
    void OnFrame(std::int64_t milliseconds, SIZE display);

    const CBattle& Battle() const { return *m_pBattle; }
    const CChartProjection& View() const { return m_View; }
    /// Indexes of units, in the order in which they were chosen.
    const std::vector<int>& Selected() const { return m_Selected; }
    bool IsSelected(int unit) const;
    /// The unit under the pointer, -1 for none.
    int Hovered() const { return m_nHovered; }
    /// False while no box is being drawn.
    bool GetBox(RECT& out) const;
    const OrderSign& Sign() const { return m_Sign; }
    /// True for all when the player only watches and when the battle is over; else for his own units, those
    /// that his side sees now, and wrecks of those that it has ever seen.
    bool IsSeen(const BattleUnit& unit) const;
    /// How long a unit's symbol is, in pixels.
    static double SymbolLength(const BattleUnit& unit, double metresPerPixel);

  private:
    enum class Drag { NONE, BOX, SCROLL };

    void SetDisplay(SIZE display);
    void FitAll();
    void Release();
    const BattleUnit& Unit(int index) const;
    bool IsOwn(int unit) const;
    int UnitAt(ChartPoint at) const;

    bool OnMove(ChartPoint at);
    bool OnPress(Drag drag, ChartPoint at);
    bool OnRelease(Drag drag, bool add);
    bool OnKey(std::uint32_t key, bool repeated, bool back);
    bool OnKeyUp(std::uint32_t key);
    bool OnCharacter(std::uint32_t character);

    void Choose(int unit, bool add);
    void ChooseInBox(bool add);
    void ChooseNext(int step);
    void OrderTo(ChartPoint at);
    int MoveAll(SeaPoint to);
    void Dive();
    /// Gives each chosen unit an order; a sign when none took it.
    template <class Order>
    void OrderAll(Order order);
    void Show(OrderSign::Kind kind, SeaPoint place) { m_Sign = {kind, place, 0}; }

    std::shared_ptr<CBattle> m_pBattle;
    CChartProjection m_View;
    SIZE m_Display = {0, 0};
    std::vector<int> m_Selected;
    int m_nHovered = -1;
    ChartPoint m_Pointer = {-1, -1};
    Drag m_Pressed = Drag::NONE; ///< which button is down on the chart
    bool m_bDragged = false;     ///< far enough to be no click
    ChartPoint m_PressedAt;
    unsigned m_nArrows = 0; ///< arrow keys that are down, a bit each
    int m_nSpeedBefore = 1; ///< when the time was stopped
    OrderSign m_Sign;
};
