#pragma once
// The seam between the platform functions and the program that runs: a program installs its own
// PlatformHost (window, clock, clipboard), a test installs a fake one.

#include <optional>
#include <string>
#include <vector>

#include "platform/types.h"

/// Every operation has a default that works without a window: no cursor, no keys, a clipboard in memory, the
/// system's clock and locale, debug output on stderr.
class PlatformHost
{
  public:
    virtual ~PlatformHost();

    /// False when there is no cursor.
    virtual bool CursorPos(POINT& out);
    /// Told whenever the display counter of ShowCursor crosses 0.
    virtual void SetCursorVisible(bool visible);
    /// The state that goes with the message being handled, and the state now.
    virtual bool IsKeyDown(int key);
    virtual bool IsKeyDownNow(int key);
    /// Clipboard text in code page 1252; nothing when it holds no text.
    virtual std::optional<std::string> ClipboardText();
    virtual void SetClipboardText(const std::string& text);
    /// Leaves the clipboard without a text. The default sets an empty text and forgets its own.
    virtual void ClearClipboard();
    virtual DWORD Milliseconds();
    virtual SYSTEMTIME LocalTime();
    /// The text of a LOCALE_ item in code page 1252, nothing for an unknown item.
    virtual std::optional<std::string> LocaleText(DWORD item);
    virtual void DebugOutput(const char* text);
    virtual bool StartProcess(const std::string& commandLine, const std::string& directory);
    /// Absolute paths of the disk: where what the player knows as drives is mounted, and his own folder
    /// (empty for none).
    virtual std::vector<std::string> MountPoints();
    virtual std::string HomeFolder();

    /// Changes ShowCursor's display counter, which begins at 0, and gives its new value.
    int ChangeCursorCounter(int by);

  private:
    std::optional<std::string> m_Clipboard;
    int m_nCursorCounter = 0;
};

/// Installs a host, which the caller owns and which must stay until it is replaced; null brings the default
/// back. Gives the host that was installed before, null for the default.
PlatformHost* SetPlatformHost(PlatformHost* host);
PlatformHost& GetPlatformHost();
