#include "controls/itfscrollbar.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "kernel/own_names.h"
#include "platform/rect.h"
#include "platform/system.h"

namespace
{

constexpr std::uint32_t FIRST_REPEAT_MS = 250;
constexpr std::uint32_t REPEAT_MS = 60;

struct SpriteNames {
    const char* thumb;
    const char* arrowUp;
    const char* arrowUpActive;
    const char* arrowDown;
    const char* arrowDownActive;
};

constexpr SpriteNames VERTICAL_SPRITES = {SPRITE_BAR, SPRITE_BAR_UP, SPRITE_BAR_UP_ACTIVE, SPRITE_BAR_DOWN,
                                          SPRITE_BAR_DOWN_ACTIVE};
constexpr SpriteNames HORIZONTAL_SPRITES = {SPRITE_HOR_BAR, SPRITE_HOR_BAR_UP, SPRITE_HOR_BAR_UP_ACTIVE,
                                            SPRITE_HOR_BAR_DOWN, SPRITE_HOR_BAR_DOWN_ACTIVE};

SIZE SizeOf(const RECT& rect)
{
    return {rect.right - rect.left, rect.bottom - rect.top};
}

/// Saturates, so that what comes out can be added to any coordinate.
std::int64_t FloorToPlace(double value)
{
    constexpr double LIMIT = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int64_t>(std::clamp(std::floor(value), -LIMIT, LIMIT));
}

LONG ToCoordinate(std::int64_t value)
{
    return static_cast<LONG>(
        std::clamp<std::int64_t>(value, std::numeric_limits<LONG>::min(), std::numeric_limits<LONG>::max()));
}

} // namespace

CItfScrollBar::~CItfScrollBar()
{
    ReleaseSprites();
}

void CItfScrollBar::ReleaseSprites()
{
    for (int* sprite : {&m_nArrowUp, &m_nArrowDown, &m_nArrowUpActive, &m_nArrowDownActive, &m_nThumb})
        ReleaseSprite(std::exchange(*sprite, -1));
}

bool CItfScrollBar::Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent,
                           int ctrlId, std::uint32_t style, IEngine* core)
{
    if (!CItfWnd::Create(caption, sprite, rect, parent, ctrlId, style, core))
        return false;
    ReleaseSprites();
    LoadSprites();
    if (m_nThumb < 0) {
        Destroy();
        return false;
    }
    return true;
}

void CItfScrollBar::LoadSprites()
{
    const SpriteNames& names = IsHorizontal() ? HORIZONTAL_SPRITES : VERTICAL_SPRITES;
    m_nThumb = AcquireSprite(names.thumb);
    if (HasArrows()) {
        m_nArrowUp = AcquireSprite(names.arrowUp);
        m_nArrowUpActive = AcquireSprite(names.arrowUpActive);
        m_nArrowDown = AcquireSprite(names.arrowDown);
        m_nArrowDownActive = AcquireSprite(names.arrowDownActive);
    }
    RECT arrow; // stays 0 by 0 without arrows
    RECT thumb;
    GetSpriteRect(m_nArrowUp, &arrow);
    GetSpriteRect(m_nThumb, &thumb);
    m_nArrowW = SizeOf(arrow).cx;
    m_nArrowH = SizeOf(arrow).cy;
    if (IsHorizontal()) {
        m_nThumbSize = SizeOf(thumb).cx;
        m_nArrowH = SizeOf(thumb).cy;
    } else {
        m_nThumbSize = SizeOf(thumb).cy;
    }
}

void CItfScrollBar::SetRange(int min, int max, int page)
{
    m_nMin = min;
    m_nMax = max;
    m_nPage = page;
}

void CItfScrollBar::SetPos(int pos)
{
    m_nPos = pos;
    Repaint(nullptr);
}

CItfScrollBar::Place CItfScrollBar::Track() const
{
    const Place length =
        IsHorizontal() ? Place{m_rcInner.right} - m_rcInner.left : Place{m_rcInner.bottom} - m_rcInner.top;
    return length - 2 * ArrowLength() - m_nThumbSize;
}

CItfScrollBar::Place CItfScrollBar::PlaceOf(const POINT& point) const
{
    return IsHorizontal() ? Place{point.x} - m_rcInner.left : Place{point.y} - m_rcInner.top;
}

CItfScrollBar::Place CItfScrollBar::ThumbPlace() const
{
    const Place arrow = ArrowLength();
    if (m_nMin == m_nMax)
        return arrow;
    const double range = static_cast<double>(m_nMax) - m_nMin;
    Place place = FloorToPlace(m_nPos * static_cast<double>(Track()) / range) + arrow;
    place = std::min(place, FarEnd() - m_nThumbSize - arrow);
    return IsHorizontal() ? std::max(place, arrow) : place;
}

CItfScrollBar::Side CItfScrollBar::ArrowAt(Place place) const
{
    if (!HasArrows())
        return SIDE_NONE;
    if (place < ArrowLength())
        return SIDE_MIN;
    return place > FarEnd() - ArrowLength() ? SIDE_MAX : SIDE_NONE;
}

CItfScrollBar::Side CItfScrollBar::SideOfThumb(Place place) const
{
    const Place thumb = ThumbPlace();
    if (place < thumb)
        return SIDE_MIN;
    return place >= thumb + m_nThumbSize ? SIDE_MAX : SIDE_NONE;
}

int CItfScrollBar::HoldInRange(std::int64_t pos) const
{
    // The minimum comes last: it wins where the range is upside down.
    return static_cast<int>(std::max<std::int64_t>(std::min<std::int64_t>(pos, m_nMax), m_nMin));
}

void CItfScrollBar::ChangePos(std::int64_t pos)
{
    m_nPos = HoldInRange(pos);
    ShowChange();
}

// Last in every handler: both what is painted and the parent may delete the bar.
void CItfScrollBar::ShowChange()
{
    const int self = m_nId;
    Repaint(nullptr);
    if (IsStill(this, self))
        Notify(SB_CHANGED);
}

void CItfScrollBar::ArrowStep(Side side)
{
    m_nArrowPressed = side;
    ChangePos(m_nPos + (side == SIDE_MIN ? std::int64_t{-1} : std::int64_t{1}));
}

void CItfScrollBar::PageStep(Side side)
{
    const std::int64_t page = m_nPage;
    ChangePos(m_nPos + (side == SIDE_MIN ? -page : page));
}

void CItfScrollBar::MoveThumb(Place place)
{
    const Place track = Track();
    // A thumb that fills its track has nowhere to go, and a range without a width nothing to choose from.
    if (track <= 0 || m_nMax <= m_nMin) {
        ChangePos(m_nPos);
        return;
    }
    const Place arrow = ArrowLength();
    place = std::max(std::min(place - m_nGrab, FarEnd() - arrow), arrow);
    const double range = static_cast<double>(m_nMax) - m_nMin;
    const Place pos =
        FloorToPlace(static_cast<double>(place - arrow) * range / static_cast<double>(track) + 0.5);
    m_nPos = static_cast<int>(std::min<Place>(pos, m_nMax));
    ShowChange();
}

void CItfScrollBar::StampTime()
{
    m_nLastTime = timeGetTime();
}

void CItfScrollBar::DrawPart(int sprite, Place left, Place top, int width, int height)
{
    POINT origin;
    GetScreenOrigin(&origin);
    const RECT screen = {ToCoordinate(origin.x + left), ToCoordinate(origin.y + top),
                         ToCoordinate(origin.x + left + width), ToCoordinate(origin.y + top + height)};
    DrawSpriteStretched(sprite, &screen, true);
}

void CItfScrollBar::Draw()
{
    CItfWnd::Draw();
    if (HasArrows()) {
        DrawPart(m_nArrowPressed == SIDE_MIN ? m_nArrowUpActive : m_nArrowUp, 0, 0, m_nArrowW, m_nArrowH);
        const int down = m_nArrowPressed == SIDE_MAX ? m_nArrowDownActive : m_nArrowDown;
        const Place place = FarEnd() - ArrowLength();
        DrawPart(down, IsHorizontal() ? place : 0, IsHorizontal() ? 0 : place, m_nArrowW, m_nArrowH);
    }
    if (IsHorizontal())
        DrawPart(m_nThumb, ThumbPlace(), 0, m_nThumbSize, m_nArrowH);
    else
        DrawPart(m_nThumb, 0, ThumbPlace(), m_nArrowW, m_nThumbSize);
}

const CItfWnd::Row* CItfScrollBar::GetMessageTable() const
{
    static const Row rows[] = {
        On(WM_MOUSEMOVE, &CItfScrollBar::OnMouseMove),
        On(WM_MOUSEWHEEL, &CItfScrollBar::OnMouseWheel),
        On(WM_LBUTTONDOWN, &CItfScrollBar::OnLButtonDown),
        On(WM_LBUTTONUP, &CItfScrollBar::OnLButtonUp),
        EndOfTable(),
    };
    return rows;
}

Word CItfScrollBar::OnLButtonDown(std::uint32_t, std::int32_t lParam)
{
    if (!IsEnabled())
        return 0;
    m_bButtonDown = true;
    SetCapture();
    const Place place = PlaceOf(MousePoint(lParam));
    if (const Side arrow = ArrowAt(place); arrow != SIDE_NONE) {
        StampTime();
        if (arrow == SIDE_MAX)
            m_bFirstDelay = true;
        ArrowStep(arrow);
    } else if (const Side side = SideOfThumb(place); side != SIDE_NONE) {
        PressTrough(place, side);
    } else if (IsJumping()) {
        EndPress();
    } else {
        m_nGrab = place - ThumbPlace();
        m_bThumbDrag = true;
        MoveThumb(place);
    }
    return 0;
}

void CItfScrollBar::PressTrough(Place place, Side side)
{
    if (IsJumping()) {
        m_nGrab = m_nThumbSize > 0 ? place % m_nThumbSize : 0;
        EndPress();
        MoveThumb(place);
        return;
    }
    m_bPageUp = side == SIDE_MIN;
    m_bPageRepeat = true;
    m_bPageArmed = true;
    m_bFirstDelay = true;
    m_nTrackPoint = place;
    StampTime();
    PageStep(side);
}

void CItfScrollBar::EndPress()
{
    m_bButtonDown = false;
    ReleaseCapture();
}

Word CItfScrollBar::OnMouseMove(std::uint32_t, std::int32_t lParam)
{
    if (!m_bButtonDown || !IsEnabled())
        return 0;
    const POINT point = MousePoint(lParam);
    const Place place = PlaceOf(point);
    if (m_bThumbDrag) {
        MoveThumb(place);
    } else if (m_bPageRepeat) {
        m_bPageArmed = true;
        m_nTrackPoint = place;
        StampTime();
    } else if (const Side arrow = ArrowAt(place); arrow != SIDE_NONE) {
        if (m_nArrowPressed == SIDE_NONE)
            StampTime();
        ArrowStep(arrow);
    } else if (!PtInRect(&m_rcInner, point)) {
        m_bPageArmed = false;
        if (m_nArrowPressed != SIDE_NONE) {
            m_nArrowPressed = SIDE_NONE;
            Repaint(nullptr);
        }
    }
    return 0;
}

Word CItfScrollBar::OnMouseWheel(std::uint32_t wParam, std::int32_t)
{
    if (IsEnabled())
        ChangePos(std::int64_t{m_nPos} - static_cast<SHORT>(HIWORD(wParam)) / WHEEL_DELTA);
    return 0;
}

Word CItfScrollBar::OnLButtonUp(std::uint32_t, std::int32_t)
{
    EndPress();
    m_bThumbDrag = false;
    m_bPageRepeat = false;
    m_bPageArmed = false;
    m_bFirstDelay = true;
    m_nArrowPressed = SIDE_NONE;
    Repaint(nullptr);
    return 0;
}

void CItfScrollBar::OnTick(int)
{
    if (!m_bButtonDown)
        return;
    const std::uint32_t waited = timeGetTime() - m_nLastTime;
    if (m_bFirstDelay && waited < FIRST_REPEAT_MS)
        return;
    m_bFirstDelay = false;
    if (waited < REPEAT_MS)
        return;
    StampTime();
    if (m_nArrowPressed != SIDE_NONE) {
        ArrowStep(m_nArrowPressed);
    } else if (m_bPageArmed) {
        // On the thumb, or past it, the paging waits for the pointer to move on.
        const Side towards = m_bPageUp ? SIDE_MIN : SIDE_MAX;
        if (SideOfThumb(m_nTrackPoint) == towards)
            PageStep(towards);
    }
}
