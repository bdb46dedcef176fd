#include "support/fakes.h"

#include <strings.h>

namespace seawarden_test
{

namespace
{

bool SameName(const std::string& a, const std::string& b)
{
    return strcasecmp(a.c_str(), b.c_str()) == 0;
}

template <class Stats>
Stats FigureTimes(int factor)
{
    Stats stats = {};
    stats.nUnits = factor;
    stats.nLost = 2 * factor;
    stats.nSunk = 3 * factor;
    stats.nRounds = 4 * factor;
    stats.nHits = 5 * factor;
    stats.nPoints = 6 * factor;
    return stats;
}

} // namespace

const char* FakeTextTable::GetText(int number)
{
    return texts.try_emplace(number, "text " + std::to_string(number)).first->second.c_str();
}

void FakePlayList::Play(int track)
{
    calls.push_back(Call("Play", {track}));
    current = track < 0 ? 0 : track;
}

void FakePlayList::Stop(int fade)
{
    calls.push_back(Call("Stop", {fade}));
    current = -1;
}

int FakeVideo::Open(const char* call, const char* file, const std::string& rest)
{
    calls.push_back(std::string(call) + " " + file + rest);
    if (missing.count(file) != 0)
        return -1;
    open.insert(m_nNext);
    return m_nNext++;
}

void FakeVideo::PlayVideo(int video, int background)
{
    calls.push_back(Call("PlayVideo", {video, background}));
    if (background != 0)
        running.insert(video);
}

void FakeVideo::StopVideo(int video)
{
    calls.push_back(Call("StopVideo", {video}));
    running.erase(video);
}

void FakeVideo::CloseVideo(int video)
{
    calls.push_back(Call("CloseVideo", {video}));
    open.erase(video);
    running.erase(video);
}

void FakeVideo::CloseAnimation(int animation)
{
    calls.push_back(Call("CloseAnimation", {animation}));
    open.erase(animation);
}

void FakeEngine::SetDisplaySize(int width, int height)
{
    render.SetDisplaySize(width, height);
    displayInfo.nWidth = width;
    displayInfo.nHeight = height;
    viewport.rc = {0, 0, width, height};
}

void FakeGame::GetSideStats(int side, ItfSideStats* out)
{
    *out = FigureTimes<ItfSideStats>(10 * (side + 1));
}

int FakeGame::GetPlayerCount(int side)
{
    return static_cast<int>(players.at(static_cast<std::size_t>(side)).size());
}

ItfPlayerStats* FakeGame::GetPlayer(int side, int index)
{
    if (static_cast<std::size_t>(side) >= players.size() || index >= GetPlayerCount(side))
        return nullptr;
    const char* name = players[static_cast<std::size_t>(side)][static_cast<std::size_t>(index)];
    m_Player = FigureTimes<ItfPlayerStats>(index + 1);
    m_Player.szName = name;
    return name != nullptr ? &m_Player : nullptr;
}

void* FakeEngine::GetSubsystem(int id, int kind)
{
    if (kind != 0)
        return nullptr;
    switch (id) {
    case 0:
        return currentScene;
    case -1:
        return this;
    case SUBSYSTEM_ID_BASE + SUBSYSTEM_RENDER2D:
        return hasRender ? static_cast<IRender2D*>(&render) : nullptr;
    case SUBSYSTEM_ID_BASE + SUBSYSTEM_SOUND:
        return static_cast<ISound*>(&sound);
    case SUBSYSTEM_ID_BASE + SUBSYSTEM_VIDEO:
        return hasVideo ? static_cast<IVideo*>(&video) : nullptr;
    default:
        return nullptr;
    }
}

int FakeEngine::CreateScene(int flags)
{
    calls.push_back(Call("CreateScene", {flags}));
    return m_nNextScene++;
}

int FakeEngine::CreateEntity(const char* name, int kind, int flags)
{
    calls.push_back(std::string("CreateEntity ") + Call(name, {kind, flags}));
    return refused.count(name) != 0 ? -1 : AddEntity(name, name);
}

int FakeEngine::CreateEntityFromModule(const char* name, const char* module, int a, int b, int c, int d)
{
    calls.push_back(std::string("CreateEntityFromModule ") + name + " " + Call(module, {a, b, c, d}));
    return refused.count(name) != 0 ? -1 : AddEntity(name, name);
}

int FakeEngine::AddEntity(const char* name, const char* className, Entity* entity)
{
    const int id = m_nNextId++;
    m_Entities[id] = {name, className, entity};
    if (entity != nullptr)
        entity->m_HostWords[Entity::HOSTWORD_ID] = id;
    return id;
}

void FakeEngine::DestroyEntity(int id)
{
    calls.push_back(Call("DestroyEntity", {id}));
    destroyed.push_back(id);
    m_Entities.erase(id);
}

Entity* FakeEngine::GetEntity(int id)
{
    const auto found = m_Entities.find(id);
    return found == m_Entities.end() ? nullptr : found->second.entity;
}

int FakeEngine::SearchFrom(int id)
{
    for (auto it = m_Entities.lower_bound(id); it != m_Entities.end(); ++it) {
        if (SameName(it->second.name, m_strSearchName) &&
            (!m_SearchClass || SameName(it->second.className, *m_SearchClass))) {
            m_nLastFound = it->first;
            return it->first;
        }
    }
    return -1;
}

int FakeEngine::FindEntity(const char* name, const char* className)
{
    m_strSearchName = name;
    m_SearchClass.reset();
    if (className != nullptr)
        m_SearchClass = className;
    return SearchFrom(0);
}

std::vector<Sent> FakeEngine::SentWith(int number) const
{
    std::vector<Sent> found;
    for (const Sent& sent : messages) {
        if (sent.number == number)
            found.push_back(sent);
    }
    return found;
}

Word FakeEngine::DoMessage(bool post, int number, int destination, int extra, const char* format,
                           std::span<const Word> values)
{
    Sent sent{post, number, destination, extra, format == nullptr ? "" : format, {}, {}};
    sent.words.assign(values.begin(), values.end());
    std::size_t word = 0;
    for (const char letter : sent.format) {
        if (letter == 's' && word + 1 < values.size())
            sent.texts.emplace_back(reinterpret_cast<const char*>(values[word + 1]));
        word += letter == 's' ? 2 : 1;
    }
    messages.push_back(sent);
    calls.push_back(Call(post ? "post" : "send", {number, destination}));
    if (onMessage) {
        if (const Word answer = onMessage(sent); answer != 0)
            return answer;
    }
    if (!post && GetEntity(destination) != nullptr)
        return Deliver(sent, values);
    return DefaultAnswer(sent);
}

Word FakeEngine::Deliver(const Sent& sent, std::span<const Word> values)
{
    std::vector<Word> block(sizeof(MessageRecord) / sizeof(Word) + values.size() + 1);
    auto* record = reinterpret_cast<MessageRecord*>(block.data());
    *record = {-1, sent.number, sent.destination, sent.extra};
    std::copy(values.begin(), values.end(), block.begin() + sizeof(MessageRecord) / sizeof(Word));
    return GetEntity(sent.destination)->OnMessage(record);
}

Word FakeEngine::DefaultAnswer(const Sent& sent)
{
    if (sent.destination != DEST_LOGIC)
        return 0;
    switch (sent.number) {
    case MSG_GET_TEXT_TABLE:
        return reinterpret_cast<Word>(static_cast<ITextTable*>(&textTable));
    case MSG_GET_PLAYLIST:
        return reinterpret_cast<Word>(static_cast<IPlayList*>(&playList));
    case MSG_GET_PROFILE:
        return reinterpret_cast<Word>(static_cast<IProfileStore*>(&profile));
    case MSG_GET_NET:
        return hasNet ? reinterpret_cast<Word>(static_cast<INetCore*>(&net)) : 0;
    case MSG_GET_GAME_STATE:
        return reinterpret_cast<Word>(gameState);
    default:
        return 0;
    }
}

} // namespace seawarden_test
