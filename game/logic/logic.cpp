#include "logic/logic.h"

#include <cstdio>
#include <utility>

#include "engine/display_limits.h"

namespace
{

constexpr const char* TEXTS_FILE = "resource\\txt_res\\texts.ini";
constexpr const char* PLAYLIST_FILE = "resource\\txt_res\\playlist.ini";
constexpr const char* PROFILE_FILE = "profile.ini";

} // namespace

CLogic::CLogic(CWorld& world, CSound& sound)
    : m_World(world), m_PlayList(sound), m_PlayerProfile(PROFILE_FILE)
{
    m_Texts.Load(TEXTS_FILE);
    m_PlayList.Load(PLAYLIST_FILE);
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
    m_World.CurrentScene()->CreateEntity(BATTLE_LOGIC_NAME, 0, 0);
    m_nInterface = m_World.Root().CreateEntityFromModule(INTERFACE_NAME, INTERFACE_MODULE, 0, -1, 1, 0);
    if (m_nInterface < 0)
        return false;
    m_World.Root().SendMessage(MSG_ITF_START, m_nInterface, 0, "l", &first);
    return true;
}

void CLogic::Post(std::unique_ptr<Sent> sent)
{
    m_Waiting.push_back(std::move(sent));
    m_World.Root().PostMessage(MSG_ITF_EVENT, m_nInterface, 0, "l", &m_Waiting.back()->event);
}

void CLogic::PostEvent(const ItfEvent& event)
{
    auto sent = std::make_unique<Sent>();
    sent->event = event;
    Post(std::move(sent));
}

void CLogic::PostMessageBox(int secondText, int firstText, Word style, Word id)
{
    auto sent = std::make_unique<Sent>();
    sent->event.code = EVENT_MESSAGE_BOX;
    sent->words[0] = reinterpret_cast<Word>(m_Texts.GetText(secondText));
    sent->words[1] = reinterpret_cast<Word>(m_Texts.GetText(firstText));
    sent->words[2] = style;
    sent->words[3] = id;
    sent->event.object = sent->words;
    Post(std::move(sent));
}

void CLogic::Update()
{
    m_Delivered.clear();
    m_Delivered.swap(m_Waiting);
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

void CLogic::OnCommand(const ItfCommand& command)
{
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
    case MSG_SET_DISPLAY_MODE:
        OnDisplayMode(data[0], data[1]);
        return 1;
    case MSG_ITF_COMMAND:
        if (data[0] != 0)
            OnCommand(*reinterpret_cast<const ItfCommand*>(data[0]));
        return 1;
    case MSG_NO_LOGIC:
    case MSG_LOGIC_STOPPED:
    case MSG_REFRESH:
    case MSG_NET_DROP:
        return 1; // no game runs: nothing to stop, to go on with or to leave
    case MSG_GET_GAME_STATE:
    default:
        return 0;
    }
}
