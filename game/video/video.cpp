#include "video/video.h"

#include <algorithm>
#include <utility>

#include "engine/game_files.h"
#include "irender2d.h"
#include "isound.h"
#include "platform/rect.h"
#include "platform/system.h"
#include "video/blend.h"

namespace
{

constexpr int INTERRUPTED_SOUND_FADE = 200; // milliseconds
// What began the clip may not have gone up yet, so input of its first moment doesn't end it.
constexpr int UNINTERRUPTED_TIME = 300; // milliseconds

} // namespace

CVideo::CVideo(IRender2D& render, ISound& sound, IFramePump& pump)
    : m_Render(render), m_Sound(sound), m_Pump(pump)
{
}

CVideo::~CVideo()
{
    while (!m_Players.empty())
        Close(m_Players.begin()->first);
}

CVideo::Player* CVideo::Find(int handle)
{
    const auto found = m_Players.find(handle);
    return found == m_Players.end() ? nullptr : &found->second;
}

int CVideo::Open(const char* file, bool loop, bool inDialog)
{
    const std::string path = FindGameFile(file == nullptr ? "" : file);
    Player player;
    std::string error;
    if (path.empty())
        error = std::string("there is no clip ") + (file == nullptr ? "" : file);
    else if (m_Players.size() >= MAX_OPEN)
        error = "too many clips are open";
    else
        player.clip.Load(path, error);
    if (!error.empty()) {
        OutputDebugStringA(("Video: " + error + "\r\n").c_str());
        return -1;
    }
    for (const ClipStill& still : player.clip.Stills()) {
        player.surfaces.push_back(m_Render.LoadSurface(still.file.c_str()));
        if (player.surfaces.back() < 0)
            OutputDebugStringA(("Video: " + path + ": there is no picture " + still.file + "\r\n").c_str());
    }
    const RECT size = {0, 0, player.clip.Width(), player.clip.Height()};
    player.frame = m_Render.CreateSurface(&size);
    player.loop = loop;
    player.inDialog = inDialog;
    player.rect = size;
    m_Players[m_nNext] = std::move(player);
    return m_nNext++;
}

void CVideo::Close(int handle)
{
    const Player* player = Find(handle);
    if (player == nullptr)
        return;
    for (const int surface : player->surfaces) {
        if (surface >= 0)
            m_Render.FreeSurface(surface);
    }
    if (player->frame >= 0)
        m_Render.FreeSurface(player->frame);
    m_Players.erase(handle);
}

void CVideo::SetTarget(int handle, int surface, const RECT* rect)
{
    Player* player = Find(handle);
    if (player == nullptr || rect == nullptr)
        return;
    player->target = surface;
    player->rect = *rect;
}

void CVideo::PlaySounds(const Player& player, int from, int to)
{
    for (const ClipSound& sound : player.clip.Sounds()) {
        if (sound.nTime >= from && sound.nTime < to)
            m_Sound.Play(sound.name.c_str(), 0, 0);
    }
}

void CVideo::Advance(Player& player, int elapsed)
{
    const int duration = player.clip.Duration();
    const int end = player.time + std::clamp(elapsed, 0, CClip::MAX_TIME);
    PlaySounds(player, player.time, std::min(end, duration));
    if (end < duration) {
        player.time = end;
    } else if (player.loop) {
        player.time = end % duration;
        PlaySounds(player, 0, player.time);
    } else {
        player.time = duration;
        player.running = false;
    }
}

bool CVideo::Blend(const Player& player, const ClipMoment& moment)
{
    const int first = player.surfaces[static_cast<std::size_t>(moment.nStill)];
    const int second = moment.nNext < 0 ? -1 : player.surfaces[static_cast<std::size_t>(moment.nNext)];
    m_Render.FillSurface(player.frame, 0);
    if (first >= 0)
        m_Render.Blit(0, player.frame, first, nullptr, nullptr, false);
    if (moment.nWeight == 0)
        return true;
    // The incoming still is scaled to the clip's size on a surface of its own, so that the two match.
    const RECT size = {0, 0, player.clip.Width(), player.clip.Height()};
    const int incoming = m_Render.CreateSurface(&size);
    if (incoming < 0)
        return false;
    m_Render.FillSurface(incoming, 0);
    if (second >= 0)
        m_Render.Blit(0, incoming, second, nullptr, nullptr, false);
    std::uint16_t* target = m_Render.LockSurface(player.frame);
    const std::uint16_t* source = m_Render.LockSurface(incoming);
    if (target != nullptr && source != nullptr)
        BlendPixels(target, source,
                    static_cast<std::size_t>(size.right) * static_cast<std::size_t>(size.bottom),
                    moment.nWeight);
    m_Render.UnlockSurface(incoming, 0);
    m_Render.UnlockSurface(player.frame, 0);
    m_Render.FreeSurface(incoming);
    return true;
}

void CVideo::Draw(const Player& player)
{
    if (player.frame >= 0 && Blend(player, player.clip.At(player.time, player.loop)))
        m_Render.Blit(0, player.target, player.frame, &player.rect, nullptr, false);
}

void CVideo::Update(int elapsed)
{
    for (auto& [handle, player] : m_Players) {
        if (!player.running || (player.inDialog && !player.wanted))
            continue;
        player.wanted = false;
        Advance(player, elapsed);
        if (player.inDialog)
            player.due = true;
        else
            Draw(player);
    }
}

int CVideo::OpenVideo(const char* file, int flags)
{
    return Open(file, (flags & VIDEO_LOOP) != 0, (flags & VIDEO_IN_DIALOG) == VIDEO_IN_DIALOG);
}
void CVideo::SetVideoTarget(int video, int surface, const RECT* rect)
{
    SetTarget(video, surface, rect);
}

void CVideo::PlayVideo(int video, int background)
{
    Player* player = Find(video);
    if (player == nullptr)
        return;
    player->running = background != 0;
    PlaySounds(*player, player->time, player->time + 1);
    ++player->time; // the sounds of the first moment have been started
    Draw(*player);
    if (background != 0)
        return;
    int played = 0;
    for (bool running = true; running;) {
        IFramePump::Frame frame = m_Pump.PumpFrame();
        frame.interrupted = frame.interrupted && played >= UNINTERRUPTED_TIME;
        played = std::min(played + frame.elapsed, UNINTERRUPTED_TIME);
        player->running = true;
        Advance(*player, frame.elapsed);
        running = player->running && !frame.interrupted && !frame.ended;
        player->running = false;
        if (frame.interrupted && !player->clip.Sounds().empty())
            m_Sound.Stop(INTERRUPTED_SOUND_FADE);
        if (!frame.ended)
            Draw(*player);
    }
}

bool CVideo::IsVideoRunning(int video)
{
    Player* player = Find(video);
    if (player == nullptr)
        return false;
    player->wanted = true;
    if (std::exchange(player->due, false))
        Draw(*player);
    return player->running;
}

void CVideo::StopVideo(int video)
{
    if (Player* player = Find(video))
        player->running = false;
}

void CVideo::RewindVideo(int video, int position)
{
    if (Player* player = Find(video))
        player->time = std::clamp(position, 0, player->clip.Duration());
}

void CVideo::CloseVideo(int video)
{
    Close(video);
}

int CVideo::OpenAnimation(const char* clip)
{
    return Open(clip, true, false);
}

void CVideo::SetAnimationTarget(int animation, int surface, const RECT* rect)
{
    SetTarget(animation, surface, rect);
}

// An animation advances and is drawn by its own ticks: when it is started, its dialog isn't on the screen
// yet.
void CVideo::StartAnimation(int animation)
{
    RewindVideo(animation, 0);
}

void CVideo::TickAnimation(int animation, int elapsed)
{
    Player* player = Find(animation);
    if (player == nullptr)
        return;
    Advance(*player, elapsed);
    Draw(*player);
}

void CVideo::CloseAnimation(int animation)
{
    Close(animation);
}
