#pragma once
// IEngine for one set of entities: the root, or a scene.

#include <string>

#include "iengine.h"

class CWorld;

/// A view of the world that looks names up among its own entities. Ids are unique over all scenes, so calls
/// with an id reach any entity.
class CScene : public IEngine
{
  public:
    static constexpr int ROOT = -1;

    CScene(CWorld& world, int id) : m_World(world), m_nId(id) {}
    int Id() const { return m_nId; }

    int GetSubsystemId(int number) override;
    void* GetSubsystem(int id, int kind = 0) override;
    IEngine* GetScene(int id) override;
    int CreateScene(int flags) override;
    void DestroyScene(int id) override;
    void SetSceneActive(int id, int a, int b, int c) override;
    int CreateEntity(const char* name, int kind, int flags) override;
    int CreateEntityFromModule(const char* name, const char* module, int a, int b, int c, int d) override;
    void DestroyEntity(int id) override;
    Entity* GetEntity(int id) override;
    int FindEntity(const char* name, const char* className) override;
    int FindNextEntity() override;
    void GetScreenSize(SIZE* out) override;
    DisplayInfo* GetDisplayInfo() override;
    void SetDisplayInfo(DisplayInfo* record, int flags) override;
    void RegisterInput(int kind, int entity, int flags) override;
    void SetTimerRate(int rate) override;
    void SetInputMode(int mode) override;
    int AddViewport(const ViewportRecord* descriptor) override;
    void SetCamera(int viewport, const float* position, const float* rotation) override;
    ViewportRecord* GetViewport(int id) override;
    Word DoMessage(bool post, int number, int destination, int extra, const char* format,
                   std::span<const Word> values) override;

  private:
    int SearchFrom(int id);

    CWorld& m_World;
    int m_nId;
    std::string m_strSearchName;
    std::string m_strSearchClass;
    bool m_bSearchClass = false;
    int m_nLastFound = -1;
};
