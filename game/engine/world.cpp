#include "engine/world.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <utility>

#include "engine/message_text.h"
#include "engine/names.h"
#include "itfrecords.h"
#include "platform/system.h"

namespace
{

// Ids of the subsystems, apart from every scene id.
constexpr int SUBSYSTEM_ID_BASE = 1000;
constexpr int HOST_SENDER = -1;
constexpr int SCENE_COLOUR_BITS = 16;

void DebugLine(const std::string& text)
{
    OutputDebugStringA((text + "\r\n").c_str());
}

} // namespace

CWorld::CWorld(CTrace& trace, const CEntityFactory& factory)
    : m_Trace(trace), m_Factory(factory), m_Root(*this, CScene::ROOT)
{
    m_DisplayInfo.nBits = SCENE_COLOUR_BITS;
    m_DisplayInfo.fLevelA = 1.0F;
    m_DisplayInfo.fLevelB = 1.0F;
    m_DisplayInfo.fBrightness = 1.0F;
    m_nCurrentScene = CreateScene();
    m_Viewports[0].record.nScene = m_nCurrentScene;
}

CWorld::~CWorld()
{
    Clear();
}

void CWorld::SetTargets(IMessageTarget* host, IMessageTarget* logic)
{
    m_pHost = host;
    m_pLogic = logic;
}

void CWorld::Clear()
{
    while (!m_Entities.empty())
        DestroyEntity(m_Entities.begin()->first);
    m_Posted.clear();
    m_Modules.clear();
}

// Scenes

CScene* CWorld::Scene0(int id)
{
    const auto found = m_Scenes.find(id);
    return found == m_Scenes.end() ? nullptr : found->second.get();
}

CScene* CWorld::Scene(int id)
{
    return id == CScene::ROOT ? &m_Root : Scene0(id);
}

int CWorld::CreateScene()
{
    if (m_Scenes.size() >= MAX_SCENES)
        return -1;
    const int id = m_nNextScene++;
    m_Scenes[id] = std::make_unique<CScene>(*this, id);
    return id;
}

void CWorld::DestroyScene(int id)
{
    if (Scene0(id) == nullptr)
        return;
    std::vector<int> members;
    for (const auto& [entity, instance] : m_Entities) {
        if (instance->scene == id)
            members.push_back(entity);
    }
    for (const int entity : members)
        DestroyEntity(entity);
    m_Scenes.erase(id);
    if (m_nCurrentScene == id)
        m_nCurrentScene = CScene::ROOT;
}

void CWorld::ActivateScene(int id, bool on)
{
    if (on && Scene0(id) != nullptr)
        m_nCurrentScene = id;
    else if (!on && id == m_nCurrentScene)
        m_nCurrentScene = CScene::ROOT;
}

// Entities

int CWorld::CreateEntity(CScene& scene, const char* name)
{
    auto entity = m_Factory.Make(name, scene);
    if (entity == nullptr) {
        DebugLine(std::string("Engine: there is no entity class \"") + name + "\"");
        return -1;
    }
    return AddEntity(scene, name, name, std::move(entity));
}

const CModule* CWorld::LoadModule(const std::string& name)
{
    auto& module = m_Modules[name];
    if (module == nullptr) {
        std::string error;
        module = CModule::Load(name, error);
        if (module == nullptr)
            DebugLine("Engine: module \"" + name + "\" can't be used: " + error);
    }
    return module.get();
}

int CWorld::CreateModuleEntity(CScene& scene, const char* name, const char* module)
{
    const CModule* library = LoadModule(module);
    if (library == nullptr)
        return -1;
    std::unique_ptr<Entity> entity;
    Fail(name, Guard(name, [&] { entity = library->CreateEntity(name); }));
    return entity == nullptr ? -1 : AddEntity(scene, name, name, std::move(entity));
}

int CWorld::AddEntity(CScene& scene, const std::string& name, const std::string& className,
                      std::unique_ptr<Entity> entity)
{
    const int id = m_nNextEntity++;
    std::memset(entity->m_HostWords, 0, sizeof(entity->m_HostWords));
    entity->m_HostWords[Entity::HOSTWORD_ID] = id;
    auto& slot = m_Entities[id];
    slot = std::make_unique<Instance>(Instance{id, scene.Id(), name, className, std::move(entity)});
    const bool good = Call(*slot, [&scene](Entity& made) { return made.Init(&scene); }) != 0;
    if (!good) {
        DestroyEntity(id);
        return -1;
    }
    return id;
}

void CWorld::DestroyEntity(int id)
{
    const auto found = m_Entities.find(id);
    if (found == m_Entities.end())
        return;
    std::unique_ptr<Instance> instance = std::move(found->second);
    m_Entities.erase(found);
    std::erase(m_InputEntities, id);
    if (IsRunning(id))
        m_Dying.push_back(std::move(instance));
    else
        DeleteNow(std::move(instance));
}

void CWorld::DeleteNow(std::unique_ptr<Instance> instance)
{
    m_Running.push_back(instance->id);
    Fail(instance->name, Guard(instance->name, [&] { instance->entity.reset(); }));
    m_Running.pop_back();
}

bool CWorld::IsRunning(int id) const
{
    return std::ranges::find(m_Running, id) != m_Running.end();
}

void CWorld::Reap()
{
    for (std::size_t i = 0; i < m_Dying.size();) {
        if (IsRunning(m_Dying[i]->id)) {
            ++i;
            continue;
        }
        std::unique_ptr<Instance> instance = std::move(m_Dying[i]);
        m_Dying.erase(m_Dying.begin() + static_cast<std::ptrdiff_t>(i));
        DeleteNow(std::move(instance));
        i = 0; // the destructor may have destroyed others
    }
}

Entity* CWorld::GetEntity(int id)
{
    const auto found = m_Entities.find(id);
    return found == m_Entities.end() ? nullptr : found->second->entity.get();
}

int CWorld::FindEntity(int scene, const std::string& name, const std::string* className, int from) const
{
    for (auto it = m_Entities.lower_bound(from); it != m_Entities.end(); ++it) {
        const Instance& instance = *it->second;
        if (instance.scene == scene && SameName(instance.name, name) &&
            (className == nullptr || SameName(instance.className, *className)))
            return instance.id;
    }
    return -1;
}

std::string CWorld::EntityName(int id) const
{
    const auto found = m_Entities.find(id);
    return found == m_Entities.end() ? "none" : found->second->name;
}

// Calls into entities

std::string CWorld::Guard(const std::string& name, const std::function<void()>& code)
{
    std::string error;
    try {
        code();
        return error;
    } catch (int number) {
        error = "error code " + std::to_string(number);
    } catch (const std::exception& exception) {
        error = exception.what();
    } catch (...) {
        error = "unknown error";
    }
    m_Trace.Add("failure " + name + ": " + error);
    return error.empty() ? "unknown error" : error;
}

void CWorld::Fail(const std::string& name, const std::string& error)
{
    if (!error.empty() && m_strFailure.empty())
        m_strFailure = "\"" + name + "\" failed: " + error;
}

Word CWorld::Call(const Instance& instance, const std::function<Word(Entity&)>& code, const CMessage* message)
{
    if (Failed())
        return 0;
    // The instance may leave the table during the call, but it and its entity stay until the call is over.
    Entity& entity = *instance.entity;
    Word result = 0;
    const int id = instance.id;
    m_Running.push_back(id);
    const std::string error = Guard(instance.name, [&] { result = code(entity); });
    if (!error.empty()) {
        const std::string what = message != nullptr ? DescribeMessage(false, *message, instance.name)
                                                    : "the frame or the player's input";
        if (onFailure && onFailure(id, what, error)) {
            DropPostedBy(id);
            DestroyEntity(id);
        } else {
            Fail(instance.name, error);
        }
    }
    m_Running.pop_back();
    Reap();
    return result;
}

// Messages

std::string CWorld::ReceiverName(int destination) const
{
    switch (destination) {
    case DEST_HOST:
        return "host";
    case DEST_LOGIC:
        return "logic";
    default:
        return EntityName(destination);
    }
}

Word CWorld::Message(bool post, int number, int destination, int extra, const char* format,
                     std::span<const Word> values)
{
    const int sender = m_Running.empty() ? HOST_SENDER : m_Running.back();
    auto message = std::make_unique<CMessage>(sender, number, destination, extra, format, values);
    if (!message->Good()) {
        DebugLine("Engine: message " + std::to_string(number) + " doesn't fit its format \"" +
                  message->Format() + "\"");
        return 0;
    }
    if (destination != DEST_HOST || number != MSG_QUIT)
        m_Trace.Add(DescribeMessage(post, *message, ReceiverName(destination)));
    if (!post)
        return Deliver(*message);
    if (m_Posted.size() < MAX_POSTED)
        m_Posted.push_back(std::move(message));
    else
        DebugLine("Engine: too many messages wait, one is lost");
    return 0;
}

Word CWorld::Deliver(const CMessage& message)
{
    const MessageRecord* record = message.Record();
    IMessageTarget* target = record->destination == DEST_HOST    ? m_pHost
                             : record->destination == DEST_LOGIC ? m_pLogic
                                                                 : nullptr;
    if (target != nullptr)
        return target->OnMessage(record);
    const auto found = m_Entities.find(record->destination);
    if (found == m_Entities.end())
        return 0;
    return Call(
        *found->second, [record](Entity& entity) { return entity.OnMessage(record); }, &message);
}

void CWorld::DeliverPosted()
{
    m_Batch = std::exchange(m_Posted, {});
    for (auto& next : m_Batch) {
        const std::unique_ptr<CMessage> message = std::move(next);
        if (message != nullptr)
            Deliver(*message);
    }
}

void CWorld::DropPostedBy(int sender)
{
    const auto isHis = [sender](const std::unique_ptr<CMessage>& message) {
        return message != nullptr && message->Record()->sender == sender;
    };
    std::erase_if(m_Posted, isHis);
    for (auto& message : m_Batch) {
        if (isHis(message))
            message.reset();
    }
}

// The frame

void CWorld::RegisterInput(int entity)
{
    if (GetEntity(entity) != nullptr && std::ranges::find(m_InputEntities, entity) == m_InputEntities.end())
        m_InputEntities.push_back(entity);
}

void CWorld::SendInput(UINT message, DWORD wParam, LONG lParam)
{
    const std::vector<int> receivers = m_InputEntities;
    for (const int id : receivers) {
        const auto found = m_Entities.find(id);
        if (found != m_Entities.end())
            Call(*found->second,
                 [=](Entity& entity) { return entity.OnWindowMessage(message, wParam, lParam); });
    }
}

void CWorld::RunFrame(int elapsed)
{
    std::vector<int> ids;
    for (const auto& [id, instance] : m_Entities)
        ids.push_back(id);
    for (const int id : ids) {
        const auto found = m_Entities.find(id);
        if (found != m_Entities.end())
            Call(*found->second, [elapsed](Entity& entity) { return entity.OnFrame(elapsed, 0); });
    }
}

// Display

int CWorld::SubsystemId(int number) const
{
    switch (number) {
    case SUBSYSTEM_RENDER2D:
    case SUBSYSTEM_SOUND:
    case SUBSYSTEM_VIDEO:
        return SUBSYSTEM_ID_BASE + number;
    default:
        return -2; // apart from -1, which is the root
    }
}

void* CWorld::Subsystem(int id, int kind)
{
    if (kind != 0)
        return nullptr; // no scene has a render object of its own
    switch (id) {
    case 0:
        return static_cast<IEngine*>(CurrentScene());
    case CScene::ROOT:
        return static_cast<IEngine*>(&m_Root);
    case SUBSYSTEM_ID_BASE + SUBSYSTEM_RENDER2D:
        return m_Subsystems.render;
    case SUBSYSTEM_ID_BASE + SUBSYSTEM_SOUND:
        return m_Subsystems.sound;
    case SUBSYSTEM_ID_BASE + SUBSYSTEM_VIDEO:
        return m_Subsystems.video;
    default:
        return nullptr;
    }
}

void CWorld::ApplyDisplayInfo(const DisplayInfo& record)
{
    if (&record != &m_DisplayInfo)
        m_DisplayInfo = record;
    if (onDisplayInfo)
        onDisplayInfo(m_DisplayInfo);
}

void CWorld::SetDisplaySize(int width, int height)
{
    m_DisplayInfo.nWidth = width;
    m_DisplayInfo.nHeight = height;
    m_Viewports[0].record.rc = {0, 0, width, height};
    if (onDisplaySize)
        onDisplaySize(width, height);
}

void CWorld::SetInputMode(int mode)
{
    m_nInputMode = mode;
    if (onInputMode)
        onInputMode(mode);
}

int CWorld::AddViewport(const ViewportRecord& descriptor)
{
    if (m_Viewports.size() >= MAX_VIEWPORTS)
        return -1;
    const int id = m_Viewports.rbegin()->first + 1;
    m_Viewports[id].record = descriptor;
    return id;
}

ViewportRecord* CWorld::GetViewport(int id)
{
    const auto found = m_Viewports.find(id);
    return found == m_Viewports.end() ? nullptr : &found->second.record;
}

void CWorld::SetCamera(int viewport, const float* position, const float* rotation)
{
    const auto found = m_Viewports.find(viewport);
    if (found == m_Viewports.end())
        return;
    std::copy_n(position, 3, found->second.position);
    std::copy_n(rotation, 3, found->second.rotation);
}
