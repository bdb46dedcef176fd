#include "engine/scene.h"

#include "engine/world.h"

int CScene::GetSubsystemId(int number)
{
    return m_World.SubsystemId(number);
}
void* CScene::GetSubsystem(int id, int kind)
{
    return m_World.Subsystem(id, kind);
}
IEngine* CScene::GetScene(int id)
{
    return m_World.Scene(id);
}
int CScene::CreateScene(int)
{
    return m_World.CreateScene();
}
void CScene::DestroyScene(int id)
{
    m_World.DestroyScene(id);
}
void CScene::SetSceneActive(int id, int a, int, int)
{
    m_World.ActivateScene(id, a != 0);
}

int CScene::CreateEntity(const char* name, int, int)
{
    return m_World.CreateEntity(*this, name);
}

int CScene::CreateEntityFromModule(const char* name, const char* module, int, int, int, int)
{
    return m_World.CreateModuleEntity(*this, name, module);
}

void CScene::DestroyEntity(int id)
{
    m_World.DestroyEntity(id);
}
Entity* CScene::GetEntity(int id)
{
    return m_World.GetEntity(id);
}

int CScene::SearchFrom(int id)
{
    const int found =
        m_World.FindEntity(m_nId, m_strSearchName, m_bSearchClass ? &m_strSearchClass : nullptr, id);
    if (found >= 0)
        m_nLastFound = found;
    return found;
}

int CScene::FindEntity(const char* name, const char* className)
{
    m_strSearchName = name == nullptr ? "" : name;
    m_bSearchClass = className != nullptr;
    m_strSearchClass = m_bSearchClass ? className : "";
    m_nLastFound = -1;
    return SearchFrom(0);
}

int CScene::FindNextEntity()
{
    return SearchFrom(m_nLastFound + 1);
}

void CScene::GetScreenSize(SIZE* out)
{
    *out = {m_World.GetDisplayInfo().nWidth, m_World.GetDisplayInfo().nHeight};
}

DisplayInfo* CScene::GetDisplayInfo()
{
    return &m_World.GetDisplayInfo();
}
void CScene::SetDisplayInfo(DisplayInfo* record, int)
{
    m_World.ApplyDisplayInfo(*record);
}
void CScene::RegisterInput(int, int entity, int)
{
    m_World.RegisterInput(entity);
}
void CScene::SetTimerRate(int rate)
{
    m_World.SetTimerRate(rate);
}
void CScene::SetInputMode(int mode)
{
    m_World.SetInputMode(mode);
}
int CScene::AddViewport(const ViewportRecord* descriptor)
{
    return m_World.AddViewport(*descriptor);
}

void CScene::SetCamera(int viewport, const float* position, const float* rotation)
{
    m_World.SetCamera(viewport, position, rotation);
}

ViewportRecord* CScene::GetViewport(int id)
{
    return m_World.GetViewport(id);
}

Word CScene::DoMessage(bool post, int number, int destination, int extra, const char* format,
                       std::span<const Word> values)
{
    return m_World.Message(post, number, destination, extra, format, values);
}
