#include "entities/sea.h"

#include "iengine.h"
#include "irender2d.h"
#include "itfrecords.h"

CSeaEntity::~CSeaEntity()
{
    FreeSurface();
}

Word CSeaEntity::Init(IEngine* core)
{
    m_pCore = core;
    m_pRender2D = GetRender2D(core);
    if (m_pRender2D == nullptr)
        return 0;
    ChartWords words;
    words.table =
        reinterpret_cast<ITextTable*>(core->SendMessage(MSG_GET_TEXT_TABLE, DEST_LOGIC, 0, nullptr));
    words.sides = m_Names;
    m_pView = std::make_unique<CChartView>(m_pControls, words);
    return 1;
}

void CSeaEntity::FreeSurface()
{
    if (m_nSurface >= 0)
        m_pRender2D->FreeSurface(m_nSurface);
    m_nSurface = -1;
}

bool CSeaEntity::FitToDisplay(SIZE size)
{
    if (size.cx != m_Size.cx || size.cy != m_Size.cy)
        FreeSurface();
    m_Size = size;
    if (m_nSurface < 0) {
        const RECT whole = {0, 0, size.cx, size.cy};
        m_nSurface = m_pRender2D->CreateSurface(&whole);
    }
    return m_nSurface >= 0;
}

Word CSeaEntity::OnFrame(Word elapsed, Word)
{
    SIZE size;
    m_pCore->GetScreenSize(&size);
    m_pControls->OnFrame(elapsed, size);
    if (!FitToDisplay(size))
        return 0;
    std::uint16_t* pixels = m_pRender2D->LockSurface(m_nSurface);
    if (pixels == nullptr)
        return 0;
    m_pView->Draw({pixels, static_cast<int>(size.cx), static_cast<int>(size.cy)});
    m_pRender2D->UnlockSurface(m_nSurface, 0);
    m_pRender2D->Blit(0, DISPLAY_FRAME, m_nSurface, nullptr, nullptr, false);
    return 0;
}
