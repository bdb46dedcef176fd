#include "controls/itfvideobox.h"

#include <utility>

#include "iengine.h"
#include "ivideo.h"
#include "platform/rect.h"

CItfVideoBox::~CItfVideoBox()
{
    Close();
}

void CItfVideoBox::Close()
{
    const int video = std::exchange(m_nVideo, -1);
    if (video >= 0)
        m_pVideo->CloseVideo(video);
}

bool CItfVideoBox::Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent,
                          int ctrlId, std::uint32_t style, IEngine* core)
{
    if (!CItfWnd::Create(caption, sprite, rect, parent, ctrlId, style, core))
        return false;
    Close(); // of an earlier life
    m_bStarted = false;
    m_pVideo = ::GetVideo(core);
    return true;
}

bool CItfVideoBox::OpenFile(const char* file)
{
    Close();
    if (m_pVideo == nullptr)
        return false;
    const int loop = (m_dwStyle & VSTYLE_LOOP) != 0 ? VIDEO_LOOP : 0;
    const int video = m_pVideo->OpenVideo(file, VIDEO_IN_DIALOG | loop);
    if (video < 0)
        return false;
    m_nVideo = video;
    m_bStarted = false;
    POINT origin;
    GetScreenOrigin(&origin);
    RECT place = m_rcInner;
    OffsetRect(&place, origin.x, origin.y);
    m_pVideo->SetVideoTarget(m_nVideo, Toolkit().screenSurface, &place);
    return true;
}

void CItfVideoBox::OnTick(int)
{
    if (!IsDrawing() || m_nVideo < 0)
        return;
    if (!m_bStarted) {
        m_pVideo->PlayVideo(m_nVideo, 1);
        m_bStarted = true;
    }
    // Asked in every frame: the host lets a clip of a dialog wait while nobody does.
    if (m_pVideo->IsVideoRunning(m_nVideo))
        return;
    m_pVideo->StopVideo(m_nVideo);
    m_pVideo->RewindVideo(m_nVideo, 0);
}
