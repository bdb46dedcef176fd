#include "entities/sea.h"

#include "iengine.h"
#include "irender2d.h"

CSeaEntity::~CSeaEntity()
{
    FreeSurface();
}

Word CSeaEntity::Init(IEngine* core)
{
    m_pCore = core;
    m_pRender2D = GetRender2D(core);
    return m_pRender2D != nullptr ? 1 : 0;
}

void CSeaEntity::FreeSurface()
{
    if (m_nSurface >= 0)
        m_pRender2D->FreeSurface(m_nSurface);
    m_nSurface = -1;
}

bool CSeaEntity::FitToDisplay()
{
    SIZE size;
    m_pCore->GetScreenSize(&size);
    const SIZE now = m_pPicture->Size();
    if (size.cx != now.cx || size.cy != now.cy) {
        FreeSurface();
        m_pPicture = std::make_unique<CSeaPicture>(m_pPicture->Scene(), size);
    }
    while (m_pPicture->PrepareStep())
        ;
    if (m_nSurface < 0) {
        const RECT whole = {0, 0, size.cx, size.cy};
        m_nSurface = m_pRender2D->CreateSurface(&whole);
    }
    return m_nSurface >= 0;
}

Word CSeaEntity::OnFrame(Word elapsed, Word)
{
    m_nTime += elapsed;
    if (!FitToDisplay())
        return 0;
    const SIZE size = m_pPicture->Size();
    std::uint16_t* pixels = m_pRender2D->LockSurface(m_nSurface);
    if (pixels == nullptr)
        return 0;
    m_pPicture->Draw({pixels, static_cast<int>(size.cx), static_cast<int>(size.cy)}, m_nTime);
    m_pRender2D->UnlockSurface(m_nSurface, 0);
    m_pRender2D->Blit(0, DISPLAY_FRAME, m_nSurface, nullptr, nullptr, false);
    return 0;
}
