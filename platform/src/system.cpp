#include "platform/system.h"

#include <cstring>
#include <ctime>

#include "platform/host.h"

DWORD timeGetTime()
{
    return GetPlatformHost().Milliseconds();
}

void GetLocalTime(SYSTEMTIME* out)
{
    *out = GetPlatformHost().LocalTime();
}

BOOL PlatformLocalTimeOf(std::int64_t seconds, SYSTEMTIME* out)
{
    const std::time_t time = seconds;
    tm local{};
    if (!localtime_r(&time, &local)) {
        return FALSE;
    }
    out->wYear = static_cast<WORD>(local.tm_year + 1900);
    out->wMonth = static_cast<WORD>(local.tm_mon + 1);
    out->wDayOfWeek = static_cast<WORD>(local.tm_wday);
    out->wDay = static_cast<WORD>(local.tm_mday);
    out->wHour = static_cast<WORD>(local.tm_hour);
    out->wMinute = static_cast<WORD>(local.tm_min);
    out->wSecond = static_cast<WORD>(local.tm_sec);
    out->wMilliseconds = 0;
    return TRUE;
}

int GetLocaleInfoA(DWORD, DWORD item, char* buffer, int size)
{
    const auto text = GetPlatformHost().LocaleText(item);
    if (!text || size < 0) {
        return 0;
    }
    const int needed = static_cast<int>(text->size()) + 1;
    if (size == 0) {
        return needed;
    }
    if (!buffer || size < needed) {
        return 0;
    }
    std::memcpy(buffer, text->c_str(), static_cast<std::size_t>(needed));
    return needed;
}

void OutputDebugStringA(const char* text)
{
    if (text) {
        GetPlatformHost().DebugOutput(text);
    }
}

BOOL PlatformStartProcess(const char* commandLine, const char* directory)
{
    if (!commandLine) {
        return FALSE;
    }
    return GetPlatformHost().StartProcess(commandLine, directory ? directory : "");
}
