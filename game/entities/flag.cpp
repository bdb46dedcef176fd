#include "entities/flag.h"

#include <algorithm>
#include <cmath>

#include "platform/files.h"
#include "platform/rect.h"
#include "platform/system.h"
#include "render/render2d.h"

namespace
{

// Size of the screen that the block's numbers count on.
constexpr float SCREEN_WIDTH = 800.0F;
constexpr float SCREEN_HEIGHT = 600.0F;
constexpr float FURTHEST = 16383.0F; // where a flag may stand, on both sides of 0
constexpr float MILLISECONDS = 1000.0F;
// Turns between the waves of two flags that stand a pixel apart, so that they don't wave in step.
constexpr float TURNS_A_PIXEL = 0.0137F;

enum FurtherFloat { FURTHER_WIDTH, FURTHER_HEIGHT, FURTHER_SPEED };

float Valid(float value, float most, float otherwise)
{
    return value > 0.0F && value <= most ? value : otherwise;
}

float Held(float value)
{
    return std::isfinite(value) ? std::clamp(value, -FURTHEST, FURTHEST) : 0.0F;
}

} // namespace

CFlagEntity::CFlagEntity(CPresenter& presenter, const CRender2D& render, CFlagTable& flags)
    : m_Presenter(presenter), m_Render(render), m_Flags(flags)
{
}

CFlagEntity::~CFlagEntity()
{
    m_Presenter.ClearOverlay(GetEntityId());
}

Word CFlagEntity::OnMessage(const MessageRecord* record)
{
    const Word* words = record->Data();
    switch (record->message) {
    case MSG_FLAG_ATTACH:
        if (words[0] == 0)
            return 0;
        Attach(*reinterpret_cast<const ItfFlagBlock*>(words[0]));
        return 1;
    case MSG_FLAG_HIDE:
    case MSG_FLAG_SHOW:
        Show(record->message == MSG_FLAG_SHOW);
        return 1;
    case MSG_FLAG_CHANGE:
        SetNation(static_cast<int>(words[0]));
        return 1;
    case MSG_FLAG_TEXTURE:
        if (words[1] == 0)
            return 0;
        SetTexture(reinterpret_cast<const char*>(words[1]));
        return 1;
    default:
        return 0;
    }
}

void CFlagEntity::Attach(const ItfFlagBlock& block)
{
    m_Block = block;
    m_Block.fX = Held(block.fX);
    m_Block.fY = Held(block.fY);
    float* further = m_Block.fFurther;
    further[FURTHER_WIDTH] = Valid(further[FURTHER_WIDTH], MAX_SIZE, DEFAULT_WIDTH);
    further[FURTHER_HEIGHT] = Valid(further[FURTHER_HEIGHT], MAX_SIZE, DEFAULT_HEIGHT);
    further[FURTHER_SPEED] = Valid(further[FURTHER_SPEED], MAX_SPEED, DEFAULT_SPEED);
    const float turns = m_Block.fX * TURNS_A_PIXEL;
    m_fTurns = turns - std::floor(turns);
    if (m_Block.nFlag != 0)
        SetNation(m_Block.nFlag);
}

void CFlagEntity::SetNation(int flag)
{
    m_Block.nFlag = flag;
    const std::string texture = m_Flags.FindTexture(flag, m_Block.nExtra);
    if (!texture.empty()) {
        SetTexture(texture);
        return;
    }
    OutputDebugStringA(("Flags: there is no flag " + std::to_string(flag) + "\r\n").c_str());
    m_Cloth = CFlagCloth();
}

void CFlagEntity::SetTexture(const std::string& name)
{
    m_Cloth = CFlagCloth();
    const std::string path = CFlagTable::FindFile(name);
    std::string error = "there is no such texture";
    try {
        if (!path.empty()) {
            m_Cloth.SetPicture(LoadPicture(path));
            return;
        }
    } catch (const std::exception& exception) {
        error = exception.what();
    }
    OutputDebugStringA(("Flags: " + name.substr(0, MAX_PATH) + ": " + error + "\r\n").c_str());
}

void CFlagEntity::Show(bool on)
{
    if (on == m_bShown)
        return;
    m_bShown = on;
    m_rcBehind = RECT();
    if (on)
        m_Presenter.SetOverlay(GetEntityId(), *this);
    else
        m_Presenter.ClearOverlay(GetEntityId());
}

// On the display, where the front end's screen may stand anywhere and be stretched.
RECT CFlagEntity::Place() const
{
    const RECT screen = m_Render.FrameRect();
    const float scaleX = static_cast<float>(screen.right - screen.left) / SCREEN_WIDTH;
    const float scaleY = static_cast<float>(screen.bottom - screen.top) / SCREEN_HEIGHT;
    const auto left = screen.left + static_cast<LONG>(std::lround(m_Block.fX * scaleX));
    const auto top = screen.top + static_cast<LONG>(std::lround(m_Block.fY * scaleY));
    return {left, top, left + static_cast<LONG>(std::lround(m_Block.fFurther[FURTHER_WIDTH] * scaleX)),
            top + static_cast<LONG>(std::lround(m_Block.fFurther[FURTHER_HEIGHT] * scaleY))};
}

void CFlagEntity::KeepBackground()
{
    m_rcPlace = Place();
    const RECT display = {0, 0, m_Render.DisplayWidth(), m_Render.DisplayHeight()};
    if (!IntersectRect(&m_rcBehind, &m_rcPlace, &display))
        return;
    m_Behind.clear();
    for (LONG y = m_rcBehind.top; y < m_rcBehind.bottom; ++y) {
        const std::uint16_t* row = m_Render.DisplayPixels() + static_cast<std::ptrdiff_t>(y) * display.right;
        m_Behind.insert(m_Behind.end(), row + m_rcBehind.left, row + m_rcBehind.right);
    }
}

Word CFlagEntity::OnFrame(Word elapsed, Word)
{
    const auto passed = static_cast<float>(std::clamp(elapsed, Word{0}, Word{1000})) / MILLISECONDS;
    m_fTurns += passed * m_Block.fFurther[FURTHER_SPEED];
    m_fTurns -= std::floor(m_fTurns);
    const RECT place = Place();
    if (m_bShown && (IsRectEmpty(&m_rcBehind) || !EqualRect(&place, &m_rcPlace)))
        KeepBackground();
    return 0;
}

// The smallest rectangle around all that isn't as it was when the flag was first shown. Boxes that the front
// end opens are rectangles with an edge of their own colour, so this is the part that one covers.
RECT CFlagEntity::FindCovered(const PixelView& picture, const std::uint16_t* display) const
{
    const LONG width = m_rcBehind.right - m_rcBehind.left;
    RECT covered;
    for (LONG y = m_rcBehind.top; y < m_rcBehind.bottom; ++y) {
        const std::uint16_t* now =
            display + static_cast<std::ptrdiff_t>(y) * picture.m_nWidth + m_rcBehind.left;
        const std::uint16_t* then = m_Behind.data() + static_cast<std::ptrdiff_t>(y - m_rcBehind.top) * width;
        const auto first = static_cast<LONG>(std::mismatch(now, now + width, then).first - now);
        if (first == width)
            continue;
        LONG end = width;
        while (now[end - 1] == then[end - 1])
            --end;
        const RECT changed = {m_rcBehind.left + first, y, m_rcBehind.left + end, y + 1};
        UnionRect(&covered, &covered, &changed);
    }
    return covered;
}

void CFlagEntity::DrawOver(const PixelView& picture, const std::uint16_t* display)
{
    const RECT whole = {0, 0, picture.m_nWidth, picture.m_nHeight};
    RECT inside;
    if (!IntersectRect(&inside, &m_rcBehind, &whole) || !EqualRect(&inside, &m_rcBehind))
        return; // not shown for a frame yet, or the display has become smaller
    CFlagCloth::Placing placing;
    placing.rc = m_rcPlace;
    placing.rcCovered = FindCovered(picture, display);
    placing.bRight = m_Block.bRight != 0;
    placing.fTurns = m_fTurns;
    m_Cloth.Draw(picture, placing);
}
