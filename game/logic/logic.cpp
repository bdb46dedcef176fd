#include "logic/logic.h"

#include <cstdio>
#include <cstring>
#include <utility>

#include "engine/display_limits.h"
#include "entities/battle_logic.h"
#include "logic/scenario_import.h"
#include "platform/files.h"
#include "platform/system.h"

namespace
{

constexpr const char* TEXTS_FILE = "resource\\txt_res\\texts.ini";
constexpr const char* PLAYLIST_FILE = "resource\\txt_res\\playlist.ini";
constexpr const char* PROFILE_FILE = "profile.ini";
constexpr const char* CUSTOM_NATIONS_FOLDER = "resource\\custom\\";

} // namespace

CLogic::CLogic(CWorld& world, CSound& sound, std::uint64_t seed)
    : m_World(world), m_PlayList(sound), m_PlayerProfile(PROFILE_FILE), m_FrontEnd(world),
      m_Battle(world, m_FrontEnd, m_Names, seed)
{
    world.onFailure = [this](int entity, const std::string& what, const std::string& error) {
        return OnFailure(entity, what, error);
    };
    m_Texts.Load(TEXTS_FILE);
    m_PlayList.Load(PLAYLIST_FILE);
    m_CustomResources.Load(CUSTOM_NATIONS_FOLDER);
    m_ProgramProfile.Preset("VERSION", "Version", VersionWord());
}

// Major and minor number in the two upper bytes, the build in the low half.
std::uint32_t CLogic::VersionWord()
{
    unsigned major = 0;
    unsigned minor = 0;
    unsigned build = 0;
    std::sscanf(SEAWARDEN_VERSION, "%u.%u.%u", &major, &minor, &build);
    return (major & 0xffU) << 24 | (minor & 0xffU) << 16 | (build & 0xffffU);
}

bool CLogic::Start(const ItfEvent& first)
{
    const DisplayInfo& display = m_World.GetDisplayInfo();
    m_Battle.SetDisplay({display.nWidth, display.nHeight});
    return m_FrontEnd.Start(first);
}

void CLogic::PostMessageBox(int secondText, int firstText, Word style, Word id)
{
    m_Battle.PostMessageBox(m_Texts.GetText(secondText), m_Texts.GetText(firstText), style, id);
}

// Nobody hears of the answer to a plain message, so over a battle it comes as a box.
void CLogic::PostEvent(const ItfEvent& event)
{
    if (event.code == EVENT_MESSAGE && m_Battle.IsBattleOn())
        PostMessageBox(TEXT_ATTENTION, event.value1, 0, BOX_NET_LOST);
    else
        m_Battle.PostEvent(event);
}

bool CLogic::OnFailure(int entity, const std::string& what, const std::string& error)
{
    const bool comesBack = m_Battle.GetGameState() != nullptr || m_FrontEnd.IsProven();
    if (entity != m_FrontEnd.Id() || !comesBack)
        return false;
    OutputDebugStringA(("Front end: " + what + " failed: " + error + "\r\n").c_str());
    m_bFrontEndFailed = true;
    return true;
}

void CLogic::Update()
{
    if (std::exchange(m_bFrontEndFailed, false) && !m_Battle.Resume())
        PostEvent(ItfEvent());
    m_FrontEnd.Update();
    m_Battle.Update();
    m_PlayList.Update();
}

IProfileStore* CLogic::Profile(Word number)
{
    switch (number) {
    case PROFILE_PLAYER:
        return &m_PlayerProfile;
    case PROFILE_PROGRAM:
        return &m_ProgramProfile;
    default:
        return nullptr;
    }
}

void CLogic::OnDisplayMode(Word width, Word height)
{
    if (width >= DISPLAY_MIN_WIDTH && height >= DISPLAY_MIN_HEIGHT && width <= DISPLAY_MAX_SIDE &&
        height <= DISPLAY_MAX_SIDE)
        m_World.SetDisplaySize(static_cast<int>(width), static_cast<int>(height));
}

bool CLogic::OnImport(char* path)
{
    const std::string name = ImportScenario(std::string(path, strnlen(path, MAX_PATH)));
    if (name.empty())
        return false;
    std::snprintf(path, MAX_PATH, "%s", name.c_str());
    return true;
}

void CLogic::OnCommand(const ItfCommand& command)
{
    if (command.code == CMD_START_SCENARIO) {
        m_Battle.Begin(command);
        return;
    }
    // What follows a clip, or a mission's brief, is the battle as well.
    const bool back =
        command.code == CMD_RESUME || command.code == CMD_STORY_DONE || command.code == CMD_MISSION_GO;
    if (back && m_Battle.Resume())
        return;
    ItfEvent answer;
    if (command.code == CMD_SECRET) {
        answer.code = EVENT_MESSAGE;
        answer.value1 = TEXT_SECRET;
    } else {
        answer.code = EVENT_MAIN_MENU;
    }
    PostEvent(answer);
}

Word CLogic::OnMessage(const MessageRecord* record)
{
    const Word* data = record->Data();
    switch (record->message) {
    case MSG_GET_TEXT_TABLE:
        return reinterpret_cast<Word>(static_cast<ITextTable*>(&m_Texts));
    case MSG_GET_PLAYLIST:
        return reinterpret_cast<Word>(static_cast<IPlayList*>(&m_PlayList));
    case MSG_GET_NET:
        return reinterpret_cast<Word>(static_cast<INetCore*>(&m_Network));
    case MSG_GET_PROFILE:
        return reinterpret_cast<Word>(Profile(data[0]));
    case MSG_GET_CUSTOM_RESOURCES:
        return reinterpret_cast<Word>(static_cast<ICustomResources*>(&m_CustomResources));
    case MSG_IMPORT_SCENARIO:
        return data[0] != 0 && OnImport(reinterpret_cast<char*>(data[0])) ? 1 : 0;
    case MSG_SET_DISPLAY_MODE:
        OnDisplayMode(data[0], data[1]);
        return 1;
    case MSG_ITF_COMMAND:
        if (data[0] != 0)
            OnCommand(*reinterpret_cast<const ItfCommand*>(data[0]));
        return 1;
    case MSG_NO_LOGIC:
    case MSG_LOGIC_STOPPED:
        m_Battle.End();
        return 1;
    case MSG_ASK_SCREEN:
        m_Battle.Ask(static_cast<int>(data[0]));
        return 1;
    case MSG_GET_GAME_STATE:
        return reinterpret_cast<Word>(m_Battle.GetGameState());
    case MSG_REFRESH:
    case MSG_NET_DROP:
        return 1; // nothing of the settings is kept here, and there is no network game to leave
    default:
        return 0;
    }
}
