#include "controls/itfprogress.h"

#include <utility>

#include "kernel/own_names.h"

namespace
{

constexpr char WINDOW_NAME[] = "Progress";
constexpr int PERCENT_MAX = 100;

} // namespace

CItfProgress::~CItfProgress()
{
    ReleaseResources();
}

void CItfProgress::ReleaseResources()
{
    ReleaseSprite(std::exchange(m_nFull, -1));
    ReplaceFont(m_nFont, -1);
}

bool CItfProgress::Create(const RECT* rect, CItfWnd* parent, int ctrlId, std::uint32_t style, IEngine* core)
{
    if (!CItfWnd::Create(WINDOW_NAME, SPRITE_PROGRESS_EMPTY, rect, parent, ctrlId, style, core))
        return false;
    ReleaseResources();
    m_nFull = AcquireSprite(SPRITE_PROGRESS_FULL);
    if (m_nFull < 0) {
        Destroy();
        return false;
    }
    m_nFont = AcquireFont(FONT_BUTTON);
    return true;
}

void CItfProgress::SetPercent(int percent)
{
    if (percent >= 0 && percent <= PERCENT_MAX)
        m_nPercent = percent;
    Invalidate(nullptr);
}

void CItfProgress::Draw()
{
    CItfWnd::Draw();
    RECT done = m_rcClient;
    done.right = static_cast<LONG>(m_rcClient.right / static_cast<double>(PERCENT_MAX) * m_nPercent);
    DrawSpritePart(m_nFull, &done, &done, false);
}
