#include "controls/itfprogress.h"

#include <utility>

namespace
{

constexpr char WINDOW_NAME[] = "Progress";
constexpr char EMPTY_SPRITE[] = "ItfProgressEmpty";
constexpr char FULL_SPRITE[] = "ItfProgressFull";
constexpr char FONT[] = "itfBtnFont";
constexpr int PERCENT_MAX = 100;

} // namespace

CItfProgress::~CItfProgress()
{
    ReleaseResources();
}

void CItfProgress::ReleaseResources()
{
    ReleaseSprite(std::exchange(m_nFull, -1));
    ReleaseFont(std::exchange(m_nFont, -1));
}

bool CItfProgress::Create(const RECT* rect, CItfWnd* parent, int ctrlId, std::uint32_t style, IEngine* core)
{
    if (!CItfWnd::Create(WINDOW_NAME, EMPTY_SPRITE, rect, parent, ctrlId, style, core))
        return false;
    ReleaseResources();
    m_nFull = AcquireSprite(FULL_SPRITE);
    if (m_nFull < 0) {
        Destroy();
        return false;
    }
    m_nFont = AcquireFont(FONT);
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
