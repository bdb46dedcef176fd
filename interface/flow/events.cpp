// CInterface: what each event of the logic opens.

#include <cstring>
#include <string>

#include "flow/valuebox.h"
#include "iengine.h"
#include "ilogic.h"
#include "irender2d.h"
#include "ivideo.h"
#include "kernel/interface_entity.h"
#include "platform/input.h"

const CInterface::EventRow CInterface::s_Events[] = {
    {EVENT_MAIN_MENU, &CInterface::EventMainMenu},
    {EVENT_VIDEO, &CInterface::EventVideo},
    {EVENT_SCENARIO_STATUS, &CInterface::EventScenarioStatus},
    {EVENT_HELP, &CInterface::EventHelp},
    {EVENT_MESSAGE, &CInterface::EventMessage},
    {EVENT_MISSION_BRIEF, &CInterface::EventMissionBrief},
    {EVENT_LEAVE_BATTLE, &CInterface::EventLeaveBattle},
    {EVENT_MENU_WITH_MESSAGE, &CInterface::EventMenuWithMessage},
    {EVENT_END_GAME, &CInterface::EventEndGame},
    {EVENT_MESSAGE_BOX, &CInterface::EventMessageBox},
    {EVENT_FULL_DISPLAY, &CInterface::EventFullDisplay},
};

namespace
{

// The event's text argument, which need not end in a zero.
std::string TextOf(const ItfEvent& event)
{
    return {event.text, strnlen(event.text, sizeof event.text)};
}

} // namespace

// Codes without a row do nothing.
Word CInterface::RunEvent(const ItfEvent& event)
{
    if (m_mainWnd.GetId() == -1 && !OpenMainWnd(false))
        return 0;
    for (const EventRow& row : s_Events) {
        if (row.code == event.code)
            return (this->*row.action)(event);
    }
    return 0;
}

Word CInterface::EventMainMenu(const ItfEvent&)
{
    m_mainWnd.CloseAllDialogs();
    m_mainWnd.ShowMainDlg(true);
    return 0;
}

Word CInterface::EventVideo(const ItfEvent& event)
{
    // Read by the logic later, and always the same.
    static const ItfCommand done = [] {
        ItfCommand command;
        command.code = CMD_STORY_DONE;
        return command;
    }();

    ShowCursor(FALSE);
    m_pCore->SetInputMode(INPUT_FULLSCREEN_PICTURE);
    if (IVideo* video = ::GetVideo(m_pCore)) {
        const int handle = video->OpenVideo(TextOf(event).c_str(), VIDEO_FULLSCREEN);
        if (handle >= 0) {
            if (m_pPlayList != nullptr)
                m_pPlayList->Stop(0);
            SIZE size;
            m_pCore->GetScreenSize(&size);
            const RECT screen = {0, 0, size.cx, size.cy};
            video->SetVideoTarget(handle, DISPLAY_NOW, &screen);
            video->PlayVideo(handle, 0);
            video->StopVideo(handle);
            video->CloseVideo(handle);
            if (m_pPlayList != nullptr)
                m_pPlayList->Play(-1);
        }
    }
    ShowCursor(TRUE);
    m_pCore->SetInputMode(INPUT_NORMAL);
    m_pCore->GetScene(-1)->PostMessage(MSG_ITF_COMMAND, DEST_LOGIC, 0, "l", &done);
    return 0;
}

Word CInterface::EventScenarioStatus(const ItfEvent& event)
{
    m_mainWnd.ShowScStatusDlg(static_cast<const ItfScenarioStatus*>(event.object));
    return 0;
}

Word CInterface::EventHelp(const ItfEvent&)
{
    m_mainWnd.ShowHelpDlg();
    return 0;
}

// A box has to be seen and answered, whatever turned drawing off.
Word CInterface::EventMessage(const ItfEvent& event)
{
    CItfWnd::SetDrawing(true);
    m_mainWnd.ShowMessage(event.value1);
    return 0;
}

Word CInterface::EventMissionBrief(const ItfEvent& event)
{
    m_mainWnd.ShowMissionBrief(TextOf(event).c_str(), event.value2 == 0);
    return 0;
}

Word CInterface::EventLeaveBattle(const ItfEvent&)
{
    m_mainWnd.AskLeaveBattle();
    return 0;
}

// The message has to reach the player also when the menu can't, and the host hears of the menu's failure.
Word CInterface::EventMenuWithMessage(const ItfEvent& event)
{
    try {
        EventMainMenu(event);
    } catch (...) {
        try {
            m_mainWnd.ShowMessage(event.value2);
        } catch (...) {
            // Neither can be shown: of the two failures the first counts.
        }
        throw;
    }
    m_mainWnd.ShowMessage(event.value2);
    return 0;
}

Word CInterface::EventEndGame(const ItfEvent& event)
{
    m_mainWnd.ShowEndGame(event.value2 != 0);
    return 0;
}

// The one event with a result: the box, which deletes itself at the answer.
Word CInterface::EventMessageBox(const ItfEvent& event)
{
    enum BoxWord { BOX_SECOND, BOX_FIRST, BOX_STYLE, BOX_ID };
    const Word* words = static_cast<const Word*>(event.object);
    if (words == nullptr)
        return 0;
    const auto* first = reinterpret_cast<const char*>(words[BOX_FIRST]);
    const auto* second = reinterpret_cast<const char*>(words[BOX_SECOND]);
    const auto style = static_cast<std::uint32_t>(words[BOX_STYLE]);
    const int id = static_cast<int>(words[BOX_ID]);
    // Either answer to this one lets the battle go on, so its absence must do that too.
    if (id == BOX_NET_LOST || id == BOX_LEAVE_BATTLE)
        return reinterpret_cast<Word>(m_mainWnd.AskOverBattle(first, second, id, style));
    CItfWnd::SetDrawing(true);
    return reinterpret_cast<Word>(m_mainWnd.MessageBox(first, second, &m_mainWnd, id, style));
}

Word CInterface::EventFullDisplay(const ItfEvent&)
{
    m_mainWnd.SetFullDisplay();
    return 0;
}
