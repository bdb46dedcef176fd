#pragma once
// Time, locale, debug output, and starting an outside program.

#include "platform/types.h"

/// Milliseconds since some start; wraps after 49 days.
DWORD timeGetTime();
/// The local time of day, to the millisecond.
void GetLocalTime(SYSTEMTIME* out);
/// A time in seconds since 1970 as local time. FALSE, and nothing written, when it has no date.
BOOL PlatformLocalTimeOf(std::int64_t seconds, SYSTEMTIME* out);

constexpr DWORD LOCALE_USER_DEFAULT = 0x0400;
constexpr DWORD LOCALE_SYSTEM_DEFAULT = 0x0800;
constexpr DWORD LOCALE_STHOUSAND = 0x000f;
constexpr DWORD LOCALE_SDECIMAL = 0x000e;
constexpr DWORD LOCALE_SDATE = 0x001d;
constexpr DWORD LOCALE_STIME = 0x001e;
constexpr DWORD LOCALE_SSHORTDATE = 0x001f;
constexpr DWORD LOCALE_STIMEFORMAT = 0x1003;
constexpr DWORD LOCALE_S1159 = 0x0028;
constexpr DWORD LOCALE_S2359 = 0x0029;
constexpr DWORD LOCALE_ITIME = 0x0023;
constexpr DWORD LOCALE_IDATE = 0x0021;
/// Writes the locale's text for the item with its terminating zero and gives its size with that zero; with
/// size 0 gives the size alone. 0 for an unknown item or a buffer that is too small. LOCALE_IDATE gives "0"
/// for month, day, year, "1" for day, month, year, "2" for year, month, day; LOCALE_ITIME "0" for 12 hours,
/// "1" for
/// 24. Both locales are that of the installed PlatformHost.
int GetLocaleInfoA(DWORD locale, DWORD item, char* buffer, int size);

/// One line for whoever watches the program's debug output; the text ends in CR LF.
void OutputDebugStringA(const char* text);

/// Starts `commandLine` without waiting for it: program and arguments parted by blanks, quotes and
/// backslashes as in a shell, but nothing is expanded. `directory` null or empty keeps the current one. FALSE
/// when the program or the directory doesn't exist or can't be started.
BOOL PlatformStartProcess(const char* commandLine, const char* directory);
