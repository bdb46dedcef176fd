#include "controls/itfflagbox.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "iengine.h"

CItfFlagBox::~CItfFlagBox()
{
    DestroyFlag();
}

bool CItfFlagBox::Create(const char* caption, const char* sprite, const RECT* rect, CItfWnd* parent,
                         int ctrlId, std::uint32_t style, IEngine* core)
{
    if (m_nId == -1) {
        DestroyFlag(); // of an earlier life of the window
        m_Block = ItfFlagBlock();
    }
    return CItfWnd::Create(caption, sprite, rect, parent, ctrlId, style, core);
}

void CItfFlagBox::SetParams(const float* floats, bool right)
{
    m_Block.fX = floats[0];
    m_Block.fY = floats[1];
    m_Block.fZ = floats[2];
    std::copy_n(floats + 3, 3, m_Block.fFurther);
    m_Block.nExtra = 0;
    m_Block.bRight = right ? 1 : 0;
}

void CItfFlagBox::DestroyFlag()
{
    m_bShown = false;
    const int entity = std::exchange(m_nEntity, -1);
    if (entity >= 0)
        m_pCore->DestroyEntity(entity);
}

bool CItfFlagBox::MakeEntity()
{
    if (m_pCore == nullptr)
        return false;
    m_nEntity = std::max(m_pCore->CreateEntity(FLAG_ENTITY, 1, 0), -1);
    return m_nEntity >= 0;
}

void CItfFlagBox::Tell(int message)
{
    if (m_nEntity >= 0)
        m_pCore->SendMessage(message, m_nEntity, 0, nullptr);
}

void CItfFlagBox::TellTexture(const char* file)
{
    if (m_nEntity < 0)
        return;
    const char* name = file != nullptr ? file : "";
    m_pCore->SendMessage(MSG_FLAG_TEXTURE, m_nEntity, 0, "s", std::strlen(name) + 1, name);
}

bool CItfFlagBox::SetFlag(int flag, int, int extra)
{
    DestroyFlag();
    m_Block.nFlag = flag;
    if (!MakeEntity())
        return false;
    if (extra != 0)
        m_Block.nExtra = extra;
    m_pCore->SendMessage(MSG_FLAG_ATTACH, m_nEntity, 0, "l", &m_Block);
    Tell(MSG_FLAG_HIDE);
    return true;
}

bool CItfFlagBox::SetFlagFile(const char* file)
{
    DestroyFlag();
    m_Block.nFlag = 0;
    m_Block.nExtra = 0;
    if (!MakeEntity())
        return false;
    m_pCore->SendMessage(MSG_FLAG_ATTACH, m_nEntity, 0, "l", &m_Block);
    TellTexture(file);
    Tell(MSG_FLAG_HIDE);
    return true;
}

void CItfFlagBox::ChangeFlag(int flag, int value)
{
    if (m_nEntity < 0)
        return;
    m_Block.nFlag = flag;
    m_pCore->SendMessage(MSG_FLAG_CHANGE, m_nEntity, 0, "ll", flag, value);
}

void CItfFlagBox::ChangeTexture(const char* file)
{
    TellTexture(file);
}

void CItfFlagBox::Show(bool on)
{
    CItfWnd::Show(on);
    if (!on || (m_bShown && IsDrawing()))
        Tell(on ? MSG_FLAG_SHOW : MSG_FLAG_HIDE);
    if (!on)
        m_bShown = false;
}

void CItfFlagBox::Draw()
{
    CItfWnd::Draw();
    if (IsDrawing() == m_bShown)
        return;
    m_bShown = !m_bShown;
    Tell(m_bShown ? MSG_FLAG_SHOW : MSG_FLAG_HIDE);
}
