#include "logic/playlist.h"

#include "keelworks/text_parser.h"
#include "platform/files.h"
#include "platform/system.h"
#include "sound/sound.h"

void CPlayList::Load(const char* path)
{
    ds_file_buffered file;
    try {
        file.open(path, false);
    } catch (const fopen_exception& exception) {
        OutputDebugStringA((std::string("Play list: ") + exception.what() + "\r\n").c_str());
        return;
    }
    CTextParser parser(&file, false);
    std::size_t tracks = 0;
    while (parser.SeekToToken("PlayList")) {
        auto& list = m_Lists.emplace_back();
        bool good = parser.SkipTillChar('{');
        while (good && parser.SkipSpace(false) != '}') {
            char name[MAX_PATH];
            if (++tracks > MAX_TRACKS) {
                OutputDebugStringA((std::string(path) + "(" + std::to_string(parser.GetLine()) +
                                    "): more than " + std::to_string(MAX_TRACKS) + " tracks\r\n")
                                       .c_str());
                return;
            }
            good = parser.ReadFileName(name, sizeof(name));
            if (good)
                list.emplace_back(name);
            if (good && parser.SkipSpace(false) == ',')
                parser.SkipSpace(true);
        }
        if (!good) {
            OutputDebugStringA((parser.DescribeError() + "\r\n").c_str());
            return;
        }
    }
}

const std::vector<std::string>* CPlayList::Tracks() const
{
    const bool valid = m_nList >= 0 && static_cast<std::size_t>(m_nList) < m_Lists.size();
    return valid ? &m_Lists[static_cast<std::size_t>(m_nList)] : nullptr;
}

void CPlayList::Start(int track, std::size_t position)
{
    const auto* tracks = Tracks();
    if (tracks == nullptr || track < 0 || static_cast<std::size_t>(track) >= tracks->size())
        return;
    m_nCurrent = -1;
    m_nStopped = track; // for a later try when none can be played
    m_nStoppedAt = 0;
    const auto first = static_cast<std::size_t>(track);
    for (std::size_t i = 0; i < tracks->size() && m_nCurrent < 0; ++i) {
        const std::size_t tried = (first + i) % tracks->size();
        if (m_Sound.PlayMusic((*tracks)[tried], tracks->size() == 1, i == 0 ? position : 0)) {
            m_nCurrent = static_cast<int>(tried);
            m_nStopped = -1;
        }
    }
}

void CPlayList::Play(int track)
{
    if (track >= 0)
        Start(track);
    else if (m_nCurrent < 0)
        Start(m_nStopped, m_nStoppedAt);
}

void CPlayList::Stop(int fade)
{
    if (m_nCurrent < 0)
        return;
    m_nStopped = m_nCurrent;
    m_nCurrent = -1;
    m_nStoppedAt = m_Sound.StopMusic(fade);
}

void CPlayList::Skip()
{
    const auto* tracks = Tracks();
    if (tracks != nullptr && m_nCurrent >= 0)
        Start((m_nCurrent + 1) % static_cast<int>(tracks->size()));
}

void CPlayList::Select(int list, int on)
{
    if (on != 0) {
        if (list != m_nList)
            Stop(0);
        m_nList = list;
    } else if (list == m_nList) {
        Stop(0);
        m_nStopped = -1;
        m_nList = -1;
    }
}

void CPlayList::Update()
{
    if (m_nCurrent >= 0 && m_Sound.HasMusicEnded())
        Skip();
}
