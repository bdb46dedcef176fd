#pragma once
// What the operating-system layer asks of the running program.

#include <functional>

#include "platform/host.h"

class CClock;
class CInput;
class CTrace;

/// Installs itself and puts the old host back at the end. With a fixed clock the clipboard is one in memory,
/// so that a run doesn't depend on what other programs left there. The desktop's clipboard has lines that end
/// with LF, the game's with CR LF.
class CGameHost : public PlatformHost
{
  public:
    /// All must outlive the host.
    CGameHost(CInput& input, const CClock& clock, CTrace& trace);
    ~CGameHost() override;
    CGameHost(const CGameHost&) = delete;
    CGameHost& operator=(const CGameHost&) = delete;

    bool CursorPos(POINT& out) override;
    void SetCursorVisible(bool visible) override;
    bool IsKeyDown(int key) override;
    bool IsKeyDownNow(int key) override;
    std::optional<std::string> ClipboardText() override;
    void SetClipboardText(const std::string& text) override;
    DWORD Milliseconds() override;
    SYSTEMTIME LocalTime() override;
    /// To the trace and to stderr.
    void DebugOutput(const char* text) override;

    std::function<void(bool visible)> onCursorVisible;

  private:
    CInput& m_Input;
    const CClock& m_Clock;
    CTrace& m_Trace;
    PlatformHost* m_pOld;
};
