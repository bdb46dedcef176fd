#include "controls/itfanimationbox.h"

#include <utility>

#include "iengine.h"
#include "ivideo.h"

CItfAnimationBox::~CItfAnimationBox()
{
    Close();
}

void CItfAnimationBox::Close()
{
    const int animation = std::exchange(m_nAnim, -1);
    if (animation >= 0)
        m_pVideo->CloseAnimation(animation);
}

bool CItfAnimationBox::Create(const char* caption, const RECT* rect, CItfWnd* parent, int ctrlId,
                              std::uint32_t style, IEngine* core, const char* clip)
{
    if (!CItfWnd::Create(caption, nullptr, rect, parent, ctrlId, style, core))
        return false;
    Close();
    m_pVideo = ::GetVideo(core);
    if (m_pVideo == nullptr)
        return true; // a host without clips: the box stays empty
    const int animation = m_pVideo->OpenAnimation(clip);
    if (animation < 0)
        return false;
    m_nAnim = animation;
    const RECT place = {m_ptPos.x, m_ptPos.y, m_ptPos.x + m_rcClient.right, m_ptPos.y + m_rcClient.bottom};
    m_pVideo->SetAnimationTarget(m_nAnim, Toolkit().screenSurface, &place);
    m_pVideo->StartAnimation(m_nAnim);
    return true;
}

void CItfAnimationBox::OnTick(int elapsed)
{
    if (m_nAnim >= 0)
        m_pVideo->TickAnimation(m_nAnim, elapsed);
}
