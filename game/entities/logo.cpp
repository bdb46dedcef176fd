#include "entities/logo.h"

#include "iengine.h"
#include "ilogic.h"
#include "irender2d.h"
#include "itfrecords.h"
#include "ivideo.h"

Word CLogoEntity::Init(IEngine* core)
{
    m_pCore = core;
    return 1;
}

void CLogoEntity::Play(const char* path)
{
    IVideo* video = GetVideo(m_pCore);
    const int clip = video == nullptr ? -1 : video->OpenVideo(path, VIDEO_FULLSCREEN);
    if (clip < 0)
        return;
    auto* music =
        reinterpret_cast<IPlayList*>(m_pCore->SendMessage(MSG_GET_PLAYLIST, DEST_LOGIC, 0, nullptr));
    if (music != nullptr)
        music->Stop(0);
    m_pCore->SetInputMode(INPUT_FULLSCREEN_PICTURE);
    SIZE size;
    m_pCore->GetScreenSize(&size);
    const RECT whole = {0, 0, size.cx, size.cy};
    video->SetVideoTarget(clip, DISPLAY_NOW, &whole);
    video->PlayVideo(clip, 0);
    video->CloseVideo(clip);
    m_pCore->SetInputMode(INPUT_NORMAL);
    if (music != nullptr)
        music->Play(-1);
}

Word CLogoEntity::OnMessage(const MessageRecord* record)
{
    if (record->message != MSG_ENTITY_START)
        return 0;
    const auto* path = reinterpret_cast<const char*>(record->Data()[0]);
    if (path != nullptr)
        Play(path);
    m_pCore->DestroyEntity(GetEntityId());
    return 1;
}
