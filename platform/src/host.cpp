#include "platform/host.h"

#include <chrono>
#include <cstdio>
#include <ctime>

#include "internal.h"
#include "platform/codepage.h"
#include "platform/system.h"

namespace
{

PlatformHost*& InstalledHost()
{
    static PlatformHost* host = nullptr;
    return host;
}

} // namespace

PlatformHost::~PlatformHost() = default;

bool PlatformHost::CursorPos(POINT& out)
{
    out = {};
    return false;
}

void PlatformHost::SetCursorVisible(bool) {}

bool PlatformHost::IsKeyDown(int)
{
    return false;
}

bool PlatformHost::IsKeyDownNow(int)
{
    return false;
}

std::optional<std::string> PlatformHost::ClipboardText()
{
    return m_Clipboard;
}

void PlatformHost::SetClipboardText(const std::string& text)
{
    m_Clipboard = text;
}

void PlatformHost::ClearClipboard()
{
    SetClipboardText(std::string());
    m_Clipboard.reset();
}

DWORD PlatformHost::Milliseconds()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<DWORD>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

SYSTEMTIME PlatformHost::LocalTime()
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    SYSTEMTIME out;
    PlatformLocalTimeOf(now.tv_sec, &out);
    out.wMilliseconds = static_cast<WORD>(now.tv_nsec / 1'000'000);
    return out;
}

std::optional<std::string> PlatformHost::LocaleText(DWORD item)
{
    return PlatformSystemLocaleText(item);
}

void PlatformHost::DebugOutput(const char* text)
{
    std::string line = PlatformToUtf8(text);
    std::erase(line, '\r');
    std::fputs(line.c_str(), stderr);
}

bool PlatformHost::StartProcess(const std::string& commandLine, const std::string& directory)
{
    return PlatformSystemStartProcess(commandLine, directory);
}

std::vector<std::string> PlatformHost::MountPoints()
{
    return PlatformSystemMountPoints();
}

std::string PlatformHost::HomeFolder()
{
    return PlatformSystemHomeFolder();
}

int PlatformHost::ChangeCursorCounter(int by)
{
    const bool before = m_nCursorCounter >= 0;
    m_nCursorCounter += by;
    const bool after = m_nCursorCounter >= 0;
    if (before != after) {
        SetCursorVisible(after);
    }
    return m_nCursorCounter;
}

PlatformHost* SetPlatformHost(PlatformHost* host)
{
    PlatformHost* before = InstalledHost();
    InstalledHost() = host;
    return before;
}

PlatformHost& GetPlatformHost()
{
    static PlatformHost defaultHost;
    return InstalledHost() ? *InstalledHost() : defaultHost;
}
