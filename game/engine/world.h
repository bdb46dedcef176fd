#pragma once
// All that the engine holds: scenes, entities, the messages that wait, viewports and the display record.

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "engine/entity_factory.h"
#include "engine/message.h"
#include "engine/module.h"
#include "engine/scene.h"
#include "engine/trace.h"
#include "iengine.h"

/// What a destination below the first entity id stands for.
class IMessageTarget
{
  public:
    virtual ~IMessageTarget() = default;
    virtual Word OnMessage(const MessageRecord* record) = 0;
};

/// One world runs one program; all on one thread. Every call into an entity goes through here: it makes that
/// entity the sender of what its code sends, keeps the entity alive while its code runs, and when an
/// exception comes out of it goes on without it or ends the program in order.
class CWorld
{
  public:
    static constexpr int FIRST_ENTITY_ID = 16;
    static constexpr int MAX_SCENES = 64;
    static constexpr std::size_t MAX_POSTED = 65536;
    static constexpr std::size_t MAX_VIEWPORTS = 64;

    /// What the engine hands out; any may be null. Not owned.
    struct Subsystems {
        IRender2D* render = nullptr;
        ISound* sound = nullptr;
        IVideo* video = nullptr;
    };

    /// Both must outlive the world. The root and scene 0, which is the current one, exist from the start.
    CWorld(CTrace& trace, const CEntityFactory& factory);
    ~CWorld();
    CWorld(const CWorld&) = delete;
    CWorld& operator=(const CWorld&) = delete;

    void SetSubsystems(const Subsystems& subsystems) { m_Subsystems = subsystems; }
    void SetTargets(IMessageTarget* host, IMessageTarget* logic);
    /// Deletes every entity, in the order of their ids, then unloads the modules.
    void Clear();

    // Scenes
    CScene& Root() { return m_Root; }
    /// -1 is the root; null when there is none.
    CScene* Scene(int id);
    CScene* CurrentScene() { return Scene0(m_nCurrentScene); }
    /// The new scene's id; -1 when there are MAX_SCENES.
    int CreateScene();
    /// With all its entities; the root can't be destroyed.
    void DestroyScene(int id);
    /// Makes the scene the current one, or, when it is the current one and `on` is false, leaves none.
    void ActivateScene(int id, bool on);

    // Entities
    int CreateEntity(CScene& scene, const char* name);
    int CreateModuleEntity(CScene& scene, const char* name, const char* module);
    /// Puts an entity in. Runs its Init; -1 when that fails, and then it is gone.
    int AddEntity(CScene& scene, const std::string& name, const std::string& className,
                  std::unique_ptr<Entity> entity);
    void DestroyEntity(int id);
    Entity* GetEntity(int id);
    /// The first entity of the scene with an id of at least `from`; className may be null.
    int FindEntity(int scene, const std::string& name, const std::string* className, int from) const;
    std::string EntityName(int id) const;

    // Messages
    Word Message(bool post, int number, int destination, int extra, const char* format,
                 std::span<const Word> values);
    /// Delivers what was posted up to now; what is posted meanwhile waits for the next call.
    void DeliverPosted();
    /// Drops what waits from that entity.
    void DropPostedBy(int sender);

    // The frame
    void SendInput(UINT message, DWORD wParam, LONG lParam);
    void RunFrame(int elapsed);
    void RegisterInput(int entity);

    // Display
    int SubsystemId(int number) const;
    void* Subsystem(int id, int kind);
    DisplayInfo& GetDisplayInfo() { return m_DisplayInfo; }
    void ApplyDisplayInfo(const DisplayInfo& record);
    /// Also resets viewport 0 to the whole display.
    void SetDisplaySize(int width, int height);
    void SetTimerRate(int rate) { m_nTimerRate = rate; }
    int TimerRate() const { return m_nTimerRate; }
    void SetInputMode(int mode);
    int InputModeNow() const { return m_nInputMode; }
    int AddViewport(const ViewportRecord& descriptor);
    ViewportRecord* GetViewport(int id);
    void SetCamera(int viewport, const float* position, const float* rotation);

    /// Called after the size, the record or the input mode has changed.
    std::function<void(int width, int height)> onDisplaySize;
    std::function<void(const DisplayInfo&)> onDisplayInfo;
    std::function<void(int mode)> onInputMode;
    /// An exception has come out of code of the entity: `what` ran, and `error` tells why it failed. With
    /// true the entity goes, with all that it has posted, as soon as none of its code runs. Otherwise, or
    /// when this is empty, the world has failed.
    std::function<bool(int entity, const std::string& what, const std::string& error)> onFailure;

    /// True after an exception that ends the program; no entity is run from then on.
    bool Failed() const { return !m_strFailure.empty(); }
    const std::string& Failure() const { return m_strFailure; }
    CTrace& Trace() { return m_Trace; }

  private:
    struct Instance {
        int id = 0;
        int scene = 0;
        std::string name;
        std::string className;
        std::unique_ptr<Entity> entity;
    };
    struct Viewport {
        ViewportRecord record = {};
        float position[3] = {};
        float rotation[3] = {};
    };

    CScene* Scene0(int id);
    /// Runs code of an entity; 0 when an exception came out of it or the world has failed already. `message`
    /// is what it was called with, if it was a message.
    Word Call(const Instance& instance, const std::function<Word(Entity&)>& code,
              const CMessage* message = nullptr);
    /// Empty when nothing came out of the code, else what.
    std::string Guard(const std::string& name, const std::function<void()>& code);
    void Fail(const std::string& name, const std::string& error);
    Word Deliver(const CMessage& message);
    std::string ReceiverName(int destination) const;
    bool IsRunning(int id) const;
    void DeleteNow(std::unique_ptr<Instance> instance);
    /// Deletes the destroyed entities whose code isn't on the stack any more.
    void Reap();
    const CModule* LoadModule(const std::string& name);

    CTrace& m_Trace;
    const CEntityFactory& m_Factory;
    Subsystems m_Subsystems;
    IMessageTarget* m_pHost = nullptr;
    IMessageTarget* m_pLogic = nullptr;

    CScene m_Root;
    std::map<int, std::unique_ptr<CScene>> m_Scenes;
    int m_nNextScene = 0;
    int m_nCurrentScene = 0;

    // Modules stand above the entities: they are unloaded after the last entity is gone.
    std::map<std::string, std::unique_ptr<CModule>> m_Modules;
    std::map<int, std::unique_ptr<Instance>> m_Entities;
    std::vector<std::unique_ptr<Instance>> m_Dying;
    int m_nNextEntity = FIRST_ENTITY_ID;
    std::vector<int> m_Running; // ids of the entities whose code is on the stack, the innermost last
    std::vector<int> m_InputEntities;
    std::deque<std::unique_ptr<CMessage>> m_Posted;
    /// What is being delivered; null what is done or was dropped.
    std::deque<std::unique_ptr<CMessage>> m_Batch;

    DisplayInfo m_DisplayInfo = {};
    std::map<int, Viewport> m_Viewports;
    int m_nTimerRate = 100;
    int m_nInputMode = INPUT_NORMAL;
    std::string m_strFailure;
};
