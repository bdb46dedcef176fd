#pragma once
// The one entity of this module, and the only door between the host engine and the window toolkit.

#include <memory>

#include "entity.h"
#include "flow/mainwnd.h"
#include "itfrecords.h"

class CItfProgress;
class IEngine;
class IPlayList;
class IRender2D;

/// The module's export. `name` isn't read. Null when there is no memory. The caller owns the entity.
extern "C" __attribute__((visibility("default"))) Entity* CreateEntity(char* name);

/// Turns the host's input into window messages, drives each frame, and hands the logic's events on. The
/// tables of windows, sprites and fonts outlast it.
class CInterface : public Entity
{
  public:
    CInterface();
    ~CInterface() override;

    /// 0 for a null core or a host without a 2-D layer.
    Word Init(IEngine* core) override;
    /// Delivers posted messages, ticks the windows, presents the screen surface.
    Word OnFrame(Word elapsed, Word second) override;
    /// Mouse and keyboard with Windows' numbers; the handler's result, 0 when no window takes the message.
    Word OnWindowMessage(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam) override;
    const MessageMap* GetMessageMap() const override;

    bool IsLargeDisplay() const { return m_bLargeDisplay; }

  private:
    Word OnStart(const void* data, int extra, int sender);
    Word OnEvent(const void* data, int extra, int sender);
    Word OnShadeDone(const void* data, int extra, int sender);
    Word OnCloseAll(const void* data, int extra, int sender);
    Word OnProgressOpen(const void* data, int extra, int sender);
    Word OnProgressSet(const void* data, int extra, int sender);

    void ChooseDisplayMode(int code);
    bool OpenMainWnd(bool readNames);
    void TellScene(bool interfaceUp);
    void TellLeftWindows() const;
    Word OnMouse(std::uint32_t msg, std::uint32_t wParam, std::int32_t lParam);

    // The event switch: flow/events.cpp.
    using EventAction = Word (CInterface::*)(const ItfEvent& event);
    struct EventRow {
        int code;
        EventAction action;
    };
    static const EventRow s_Events[];
    Word RunEvent(const ItfEvent& event);
    Word EventMainMenu(const ItfEvent& event);
    Word EventVideo(const ItfEvent& event);
    Word EventScenarioStatus(const ItfEvent& event);
    Word EventHelp(const ItfEvent& event);
    Word EventMessage(const ItfEvent& event);
    Word EventMissionBrief(const ItfEvent& event);
    Word EventLeaveBattle(const ItfEvent& event);
    Word EventMenuWithMessage(const ItfEvent& event);
    Word EventEndGame(const ItfEvent& event);
    Word EventMessageBox(const ItfEvent& event);
    Word EventFullDisplay(const ItfEvent& event);

    IEngine* m_pCore = nullptr;
    IRender2D* m_pRender2D = nullptr;
    IPlayList* m_pPlayList = nullptr; ///< the logic's
    CMainWnd m_mainWnd;
    bool m_bLargeDisplay = false;
    std::unique_ptr<CItfProgress> m_pProgress;
};
