#include "battle/battle_controls.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "platform/input.h"

namespace
{

constexpr std::uint32_t MK_SHIFT = 0x04;
constexpr std::int32_t KEY_REPEATED = 1 << 30;
constexpr double CLICK_REACH = 4;   // pixels that the pointer may move in a click
constexpr double PICK_REACH = 9;    // pixels from a unit's middle, for the smallest
constexpr double NOTCH_ZOOM = 1.25; // of one notch of the wheel
constexpr double ARROW_STEP = 40;   // pixels at the press of an arrow key
constexpr double ARROW_SPEED = 0.7; // pixels in a millisecond while it is down
constexpr double LEAST_SYMBOL = 13; // pixels, of a unit without length
constexpr double SYMBOL_PER_METRE = 0.11;
constexpr double BALLOON_SYMBOL = 28;
constexpr double FIT_MARGIN = 0.12;   // of the units' extent, on each side
constexpr double LEAST_EXTENT = 4000; // metres that a view of all units shows at least
constexpr double TWICE = 2;

struct Arrow {
    int key;
    double right;
    double down;
};
constexpr Arrow ARROWS[] = {{VK_LEFT, -1, 0}, {VK_RIGHT, 1, 0}, {VK_UP, 0, -1}, {VK_DOWN, 0, 1}};

int Low(std::int32_t word)
{
    return static_cast<std::int16_t>(static_cast<std::uint32_t>(word) & 0xffffU);
}
int High(std::uint32_t word)
{
    return static_cast<std::int16_t>(word >> 16);
}
ChartPoint PointOf(std::int32_t lParam)
{
    return {static_cast<double>(Low(lParam)), static_cast<double>(High(static_cast<std::uint32_t>(lParam)))};
}

double Distance(ChartPoint a, ChartPoint b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

} // namespace

CBattleControls::CBattleControls(std::shared_ptr<CBattle> battle)
    : m_pBattle(std::move(battle)), m_View(m_pBattle->Sim().Bounds())
{
}

// The view

void CBattleControls::SetDisplay(SIZE display)
{
    if (display.cx == m_Display.cx && display.cy == m_Display.cy)
        return;
    const bool first = m_Display.cx == 0;
    m_Display = display;
    m_View.SetArea({0, TOP_STRIP, display.cx, display.cy - BOTTOM_STRIP});
    if (first)
        FitAll();
}

void CBattleControls::FitAll()
{
    SeaRect all;
    bool any = false;
    for (const BattleUnit& unit : m_pBattle->Sim().Units()) {
        if (!IsSeen(unit))
            continue;
        const SeaPoint p = unit.place;
        all = any ? SeaRect{std::min(all.west, p.x), std::min(all.south, p.y), std::max(all.east, p.x),
                            std::max(all.north, p.y)}
                  : SeaRect{p.x, p.y, p.x, p.y};
        any = true;
    }
    if (!any) {
        m_View.Fit(m_pBattle->Sim().Bounds());
        return;
    }
    const auto widen = [](double& low, double& high) {
        const double extent = high - low;
        const double more = std::max(extent * FIT_MARGIN, (LEAST_EXTENT - extent) / TWICE);
        low -= more;
        high += more;
    };
    widen(all.west, all.east);
    widen(all.south, all.north);
    m_View.Fit(all);
}

double CBattleControls::SymbolLength(const BattleUnit& unit, double metresPerPixel)
{
    const double least =
        unit.type == UnitType::BALLOON ? BALLOON_SYMBOL : LEAST_SYMBOL + unit.length * SYMBOL_PER_METRE;
    return std::max(least, unit.length / metresPerPixel);
}

const BattleUnit& CBattleControls::Unit(int index) const
{
    return Battle().Sim().Units()[static_cast<std::size_t>(index)];
}

bool CBattleControls::IsSeen(const BattleUnit& unit) const
{
    const int side = Battle().OrderingSide();
    if (side < 0 || unit.side == side || Battle().Sim().IsOver())
        return true;
    const auto index = static_cast<std::size_t>(side);
    return unit.gone ? unit.known[index] : unit.seen[index];
}

bool CBattleControls::IsOwn(int unit) const
{
    return Unit(unit).side == Battle().OrderingSide();
}

int CBattleControls::UnitAt(ChartPoint at) const
{
    if (!m_View.IsInArea(at))
        return -1;
    int nearest = -1;
    double least = 0;
    for (int i = 0; i < std::ssize(Battle().Sim().Units()); ++i) {
        const BattleUnit& unit = Unit(i);
        const double distance = Distance(m_View.ToChart(Battle().Sim().ShownPlace(unit)), at);
        const double reach = std::max(PICK_REACH, SymbolLength(unit, m_View.MetresPerPixel()) / TWICE);
        if (unit.gone || !IsSeen(unit) || distance > reach || (nearest >= 0 && distance >= least))
            continue;
        nearest = i;
        least = distance;
    }
    return nearest;
}

bool CBattleControls::IsSelected(int unit) const
{
    return std::ranges::find(m_Selected, unit) != m_Selected.end();
}

bool CBattleControls::GetBox(RECT& out) const
{
    if (m_Pressed != Drag::BOX || !m_bDragged)
        return false;
    const auto [left, right] = std::minmax(m_PressedAt.x, m_Pointer.x);
    const auto [top, bottom] = std::minmax(m_PressedAt.y, m_Pointer.y);
    out = {static_cast<LONG>(left), static_cast<LONG>(top), static_cast<LONG>(right),
           static_cast<LONG>(bottom)};
    return true;
}

// The player's input

bool CBattleControls::OnWindowMessage(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam,
                                      SIZE display)
{
    SetDisplay(display);
    const bool shift = (wParam & MK_SHIFT) != 0;
    switch (msg) {
    case WM_MOUSEMOVE:
        return OnMove(PointOf(lParam));
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
        return OnPress(Drag::BOX, PointOf(lParam));
    case WM_RBUTTONDOWN:
        return OnPress(Drag::SCROLL, PointOf(lParam));
    case WM_LBUTTONUP:
        OnMove(PointOf(lParam));
        return OnRelease(Drag::BOX, shift);
    case WM_RBUTTONUP:
        OnMove(PointOf(lParam));
        return OnRelease(Drag::SCROLL, shift);
    case WM_MOUSEWHEEL:
        m_View.Zoom(std::pow(NOTCH_ZOOM, static_cast<double>(High(wParam)) / WHEEL_DELTA), PointOf(lParam));
        return true;
    case WM_KEYDOWN:
        return OnKey(wParam, (lParam & KEY_REPEATED) != 0, GetKeyState(VK_SHIFT) < 0);
    case WM_KEYUP:
        return OnKeyUp(wParam);
    case WM_CHAR:
        return OnCharacter(wParam);
    default:
        return false;
    }
}

bool CBattleControls::OnMove(ChartPoint at)
{
    const ChartPoint before = std::exchange(m_Pointer, at);
    if (m_Pressed != Drag::NONE && !m_bDragged && Distance(at, m_PressedAt) > CLICK_REACH) {
        m_bDragged = true;
        if (m_Pressed == Drag::SCROLL)
            m_View.Scroll(before.x - at.x, before.y - at.y);
    } else if (m_Pressed == Drag::SCROLL && m_bDragged) {
        m_View.Scroll(before.x - at.x, before.y - at.y);
    }
    return true;
}

bool CBattleControls::OnPress(Drag drag, ChartPoint at)
{
    OnMove(at);
    if (m_Pressed != Drag::NONE || !m_View.IsInArea(at))
        return false;
    m_Pressed = drag;
    m_PressedAt = at;
    m_bDragged = false;
    return true;
}

bool CBattleControls::OnRelease(Drag drag, bool add)
{
    if (m_Pressed != drag)
        return false;
    if (drag == Drag::SCROLL) {
        if (!m_bDragged)
            OrderTo(m_PressedAt);
    } else if (m_bDragged) {
        ChooseInBox(add);
    } else {
        Choose(UnitAt(m_PressedAt), add);
    }
    Release();
    return true;
}

void CBattleControls::Release()
{
    m_Pressed = Drag::NONE;
    m_bDragged = false;
}

bool CBattleControls::OnKey(std::uint32_t key, bool repeated, bool back)
{
    for (std::size_t i = 0; i < std::size(ARROWS); ++i) {
        if (key != static_cast<std::uint32_t>(ARROWS[i].key))
            continue;
        if (!repeated)
            m_View.Scroll(ARROWS[i].right * ARROW_STEP, ARROWS[i].down * ARROW_STEP);
        m_nArrows |= 1U << i;
        return true;
    }
    if (repeated)
        return false;
    CBattleSim& sim = m_pBattle->Sim();
    const int side = m_pBattle->OrderingSide();
    switch (key) {
    case VK_SPACE:
        if (m_pBattle->Speed() == CBattle::SPEED_STOPPED)
            m_pBattle->SetSpeed(m_nSpeedBefore);
        else
            m_nSpeedBefore = m_pBattle->Speed(), m_pBattle->SetSpeed(CBattle::SPEED_STOPPED);
        return true;
    case VK_TAB:
        ChooseNext(back ? -1 : 1);
        return true;
    case VK_HOME:
    case 'F':
        FitAll();
        return true;
    case 'D':
        Dive();
        return true;
    case 'S':
        OrderAll([&sim, side](int unit) { return sim.OrderStop(side, unit); });
        return true;
    case 'O':
        OrderAll([&sim, side](int unit) { return sim.OrderFree(side, unit); });
        return true;
    default:
        return false;
    }
}

bool CBattleControls::OnKeyUp(std::uint32_t key)
{
    for (std::size_t i = 0; i < std::size(ARROWS); ++i) {
        if (key == static_cast<std::uint32_t>(ARROWS[i].key))
            m_nArrows &= ~(1U << i);
    }
    return false;
}

// Where a sign stands on the keyboard differs from layout to layout, so these come as characters.
bool CBattleControls::OnCharacter(std::uint32_t character)
{
    const int speed = m_pBattle->Speed();
    if (character == '+' || character == '=')
        m_pBattle->SetSpeed(speed == CBattle::SPEED_STOPPED ? m_nSpeedBefore
                                                            : std::min(speed * 2, CBattle::SPEED_MAX));
    else if (character == '-' && speed > 1)
        m_pBattle->SetSpeed(speed / 2);
    else
        return character == '-';
    return true;
}

void CBattleControls::OnFrame(std::int64_t milliseconds, SIZE display)
{
    SetDisplay(display);
    m_Sign.age = std::min(m_Sign.age + milliseconds, OrderSign::LIFETIME);
    if (m_pBattle->IsHeld()) {
        // Whoever covers the battle gets the releases.
        Release();
        m_nArrows = 0;
    }
    for (std::size_t i = 0; i < std::size(ARROWS); ++i) {
        const double way = (m_nArrows >> i & 1U) * ARROW_SPEED * static_cast<double>(milliseconds);
        m_View.Scroll(ARROWS[i].right * way, ARROWS[i].down * way);
    }
    std::erase_if(m_Selected, [this](int unit) { return Unit(unit).gone || !IsSeen(Unit(unit)); });
    m_nHovered = UnitAt(m_Pointer);
}

// The selection

void CBattleControls::Choose(int unit, bool add)
{
    const bool together = add && unit >= 0 && IsOwn(unit) && (m_Selected.empty() || IsOwn(m_Selected[0]));
    if (together && std::erase(m_Selected, unit) > 0)
        return;
    if (!together && !(add && unit < 0))
        m_Selected.clear();
    if (unit >= 0)
        m_Selected.push_back(unit);
}

void CBattleControls::ChooseInBox(bool add)
{
    RECT box;
    if (!GetBox(box))
        return;
    if (!add || (!m_Selected.empty() && !IsOwn(m_Selected[0])))
        m_Selected.clear();
    for (int i = 0; i < std::ssize(Battle().Sim().Units()); ++i) {
        const ChartPoint at = m_View.ToChart(Unit(i).place);
        const bool inside = at.x >= box.left && at.x <= box.right && at.y >= box.top && at.y <= box.bottom;
        if (inside && !Unit(i).gone && IsOwn(i) && !IsSelected(i))
            m_Selected.push_back(i);
    }
}

void CBattleControls::ChooseNext(int step)
{
    const int count = static_cast<int>(Battle().Sim().Units().size());
    const int start = !m_Selected.empty() ? m_Selected.back() : step > 0 ? -1 : count;
    for (int tried = 1; tried <= count; ++tried) {
        const int unit = ((start + step * tried) % count + count) % count;
        if (Unit(unit).gone || !(IsOwn(unit) || (Battle().OrderingSide() < 0 && IsSeen(Unit(unit)))))
            continue;
        m_Selected = {unit};
        if (!m_View.IsInArea(m_View.ToChart(Unit(unit).place)))
            m_View.CentreOn(Unit(unit).place);
        return;
    }
}

// Orders

template <class Order>
void CBattleControls::OrderAll(Order order)
{
    const auto taken = std::ranges::count_if(m_Selected, order);
    if (taken == 0 && !m_Selected.empty())
        Show(OrderSign::Kind::REFUSED, Unit(m_Selected[0]).place);
}

void CBattleControls::OrderTo(ChartPoint at)
{
    if (m_Selected.empty())
        return;
    CBattleSim& sim = m_pBattle->Sim();
    const int side = m_pBattle->OrderingSide();
    const int target = UnitAt(at);
    const bool attack = target >= 0 && side >= 0 && Unit(target).side == 1 - side;
    const SeaPoint place = attack ? Unit(target).place : sim.Bounds().Nearest(m_View.ToSea(at));
    const auto taken = attack
                           ? static_cast<int>(std::ranges::count_if(
                                 m_Selected, [&](int unit) { return sim.OrderAttack(side, unit, target); }))
                           : MoveAll(place);
    Show(taken == 0 ? OrderSign::Kind::REFUSED
         : attack   ? OrderSign::Kind::ATTACK
                    : OrderSign::Kind::MOVE,
         place);
}

// Several units keep their places to each other.
int CBattleControls::MoveAll(SeaPoint to)
{
    CBattleSim& sim = m_pBattle->Sim();
    SeaPoint middle;
    for (const int unit : m_Selected) {
        middle.x += Unit(unit).place.x / static_cast<double>(m_Selected.size());
        middle.y += Unit(unit).place.y / static_cast<double>(m_Selected.size());
    }
    return static_cast<int>(std::ranges::count_if(m_Selected, [&](int unit) {
        const SeaPoint own = sim.Bounds().Nearest(
            {to.x + Unit(unit).place.x - middle.x, to.y + Unit(unit).place.y - middle.y});
        const int side = m_pBattle->OrderingSide();
        return sim.OrderMove(side, unit, own) || sim.OrderMove(side, unit, to);
    }));
}

// All of them go the same way: below, unless they are there already.
void CBattleControls::Dive()
{
    const bool below = std::ranges::any_of(m_Selected, [this](int unit) {
        return Unit(unit).type == UnitType::SUBMARINE && !Unit(unit).submerged;
    });
    CBattleSim& sim = m_pBattle->Sim();
    OrderAll([&](int unit) { return sim.OrderDive(m_pBattle->OrderingSide(), unit, below); });
}
