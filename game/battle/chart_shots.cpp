#include "battle/chart_shots.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "battle/battle_math.h"
#include "battle/chart_colours.h"

namespace
{

constexpr Colour FOAM = {252, 254, 252};
constexpr Colour SPRAY = {92, 128, 146};
constexpr Colour FLASH = {255, 206, 70};
constexpr Colour FIRE = {236, 104, 24};
constexpr Colour SMOKE = {46, 42, 42};
constexpr Colour SHELL = {24, 20, 20};
constexpr Colour ATTACK = {176, 28, 24};

constexpr double LEAST_BURST = 3;        // pixels
constexpr double BURST_PER_CALIBRE = 70; // millimetres for a pixel more
constexpr double TORPEDO_BURST = 11;
constexpr double TRACK_LENGTH = 34; // pixels
constexpr int TRACK_PARTS = 5;
constexpr double SHELL_TAIL = 8; // pixels
constexpr double REACH = 40;     // pixels around a mark that may be drawn on

/// Full at the beginning, nothing at the end.
int Fading(double part, int cover)
{
    return static_cast<int>(std::clamp(1 - part, 0.0, 1.0) * cover);
}

} // namespace

CChartShots::CChartShots(CChartPen& pen, const CBattleControls& controls)
    : m_Pen(pen), m_Controls(controls), m_Sim(controls.Battle().Sim())
{
}

void CChartShots::DrawBelow()
{
    for (const SeaMark& mark : m_Sim.Marks())
        DrawMark(mark, false);
    for (const Torpedo& torpedo : m_Sim.Torpedoes()) {
        if (IsFromSeen(torpedo.from) || IsNearOwn(torpedo.place))
            DrawTorpedo(torpedo);
    }
}

void CChartShots::DrawAbove()
{
    for (const SeaMark& mark : m_Sim.Marks())
        DrawMark(mark, true);
    for (const Shell& shell : m_Sim.Shells())
        DrawShell(shell);
    if (m_Controls.Sign().IsShown())
        DrawSign(m_Controls.Sign());
}

bool CChartShots::IsFromSeen(int unit) const
{
    return m_Controls.IsSeen(m_Sim.Units()[static_cast<std::size_t>(unit)]);
}

// Lookouts find the track.
bool CChartShots::IsNearOwn(SeaPoint place) const
{
    constexpr double FOUND_AT = 2000; // metres
    return std::ranges::any_of(m_Sim.Units(), [&](const BattleUnit& unit) {
        return !unit.gone && unit.side == m_Controls.Battle().OrderingSide() &&
               SquareOf(unit.place, place) < FOUND_AT * FOUND_AT;
    });
}

void CChartShots::DrawTorpedo(const Torpedo& torpedo)
{
    const ChartPoint at = At(m_Sim.ShownPlace(torpedo));
    if (!m_Pen.IsNear(at, TRACK_LENGTH))
        return;
    const double angle = torpedo.heading * std::numbers::pi / 180;
    const double right = -std::sin(angle) * TRACK_LENGTH / TRACK_PARTS;
    const double down = std::cos(angle) * TRACK_LENGTH / TRACK_PARTS;
    for (int i = 0; i < TRACK_PARTS; ++i)
        m_Pen.Line({at.x + right * i, at.y + down * i}, {at.x + right * (i + 1), at.y + down * (i + 1)}, 2.4,
                   ToPixel(FOAM), Fading(static_cast<double>(i) / TRACK_PARTS, CChartPen::FULL));
    m_Pen.Disc(at, 2.2, ToPixel(SHELL));
}

void CChartShots::DrawShell(const Shell& shell)
{
    constexpr double COMES_IN_SIGHT = 1500; // metres before its fall, of a shell whose gun isn't seen
    const SeaPoint place = shell.Place(m_Sim.ShownTime());
    const bool seen = IsFromSeen(shell.from);
    if (!seen && SquareOf(place, shell.end) > COMES_IN_SIGHT * COMES_IN_SIGHT)
        return;
    const ChartPoint at = At(place);
    const ChartPoint start = At(shell.start);
    const ChartPoint end = At(shell.end);
    const double way = std::hypot(end.x - start.x, end.y - start.y);
    if (!m_Pen.IsNear(at, SHELL_TAIL) || way <= 0)
        return;
    const double tail = SHELL_TAIL / way;
    m_Pen.Line({at.x - (end.x - start.x) * tail, at.y - (end.y - start.y) * tail}, at, 1.4, ToPixel(SHELL),
               90);
    constexpr double THICK = 250; // millimetres of calibre for a pixel of radius
    m_Pen.Disc(at, 1 + shell.calibre / THICK, ToPixel(SHELL));
    // A flash at the muzzles as long as the shell is near them.
    constexpr std::int64_t FLASH_TIME = 1500; // milliseconds of battle time
    if (seen && m_Sim.ShownTime() - shell.firedAt < FLASH_TIME)
        m_Pen.Disc(start, LEAST_BURST + shell.calibre / BURST_PER_CALIBRE, ToPixel(FLASH), 220);
}

void CChartShots::DrawMark(const SeaMark& mark, bool above)
{
    const ChartPoint at = At(mark.place);
    if (!m_Pen.IsNear(at, REACH))
        return;
    const double part = static_cast<double>(m_Sim.ShownTime() - mark.at) / SeaMark::LIFETIME;
    const double burst = LEAST_BURST + mark.calibre / BURST_PER_CALIBRE;
    const bool hit = mark.kind == MarkKind::HIT || mark.kind == MarkKind::TORPEDO_HIT;
    if (hit != above)
        return;
    switch (mark.kind) {
    case MarkKind::SPLASH:
        m_Pen.Disc(at, burst * (0.6 + part * 0.5), ToPixel(FOAM), Fading(part, 255));
        m_Pen.Ring(at, burst * (0.8 + part), 1.2, ToPixel(SPRAY), Fading(part, 220));
        break;
    case MarkKind::DEPTH_CHARGE:
        m_Pen.Disc(at, TORPEDO_BURST * 0.5, ToPixel(FOAM), Fading(part, 230));
        for (const double ring : {0.5, 1.0})
            m_Pen.Ring(at, TORPEDO_BURST * (ring + part), 1.6, ToPixel(SPRAY), Fading(part, 200));
        break;
    case MarkKind::SINKING:
        for (const double ring : {0.3, 0.8, 1.3})
            m_Pen.Ring(at, TORPEDO_BURST * (ring + part), 2, ToPixel(FOAM), Fading(part, 240));
        break;
    case MarkKind::HIT:
    case MarkKind::TORPEDO_HIT: {
        const double size = mark.kind == MarkKind::TORPEDO_HIT ? TORPEDO_BURST : burst * 1.4;
        constexpr double FLAME = 0.4; // of a hit's time, the rest is smoke
        m_Pen.Disc({at.x + part * 6, at.y - part * 5}, size * (0.7 + part * 0.6), ToPixel(SMOKE),
                   Fading(part, 170));
        if (part < FLAME) {
            m_Pen.Disc(at, size * (1 - part), ToPixel(FIRE), Fading(part / FLAME, 255));
            m_Pen.Disc(at, size * 0.55 * (1 - part), ToPixel(FLASH), Fading(part / FLAME, 255));
        }
        break;
    }
    }
}

void CChartShots::DrawSign(const OrderSign& sign)
{
    constexpr double RADIUS = 22;
    constexpr double ARM = 7;
    const ChartPoint at = At(sign.place);
    const double part = static_cast<double>(sign.age) / OrderSign::LIFETIME;
    const int cover = Fading(part, CChartPen::FULL);
    if (sign.kind == OrderSign::Kind::MOVE) {
        m_Pen.Ring(at, RADIUS * (1 - part) + 2, 2, ToPixel(CHART_INK), cover);
    } else if (sign.kind == OrderSign::Kind::ATTACK) {
        m_Pen.Ring(at, RADIUS * (1 - part / 2), 2.5, ToPixel(ATTACK), cover);
        for (const double way : {-1.0, 1.0}) {
            m_Pen.Line({at.x + way * ARM, at.y}, {at.x + way * RADIUS, at.y}, 2, ToPixel(ATTACK), cover);
            m_Pen.Line({at.x, at.y + way * ARM}, {at.x, at.y + way * RADIUS}, 2, ToPixel(ATTACK), cover);
        }
    } else {
        m_Pen.Line({at.x - ARM, at.y - ARM}, {at.x + ARM, at.y + ARM}, 3, ToPixel(ATTACK), cover);
        m_Pen.Line({at.x - ARM, at.y + ARM}, {at.x + ARM, at.y - ARM}, 3, ToPixel(ATTACK), cover);
    }
}
