#include "shell/game_host.h"

#include <SDL.h>
#include <cstdio>

#include "engine/trace.h"
#include "platform/codepage.h"
#include "shell/clock.h"
#include "shell/input.h"
#include "shell/line_ends.h"

CGameHost::CGameHost(CInput& input, const CClock& clock, CTrace& trace)
    : m_Input(input), m_Clock(clock), m_Trace(trace), m_pOld(SetPlatformHost(this))
{
}

CGameHost::~CGameHost()
{
    SetPlatformHost(m_pOld);
}

bool CGameHost::CursorPos(POINT& out)
{
    out = m_Input.Cursor();
    return true;
}

void CGameHost::SetCursorVisible(bool visible)
{
    if (onCursorVisible)
        onCursorVisible(visible);
}

bool CGameHost::IsKeyDown(int key)
{
    return m_Input.IsDown(key);
}
bool CGameHost::IsKeyDownNow(int key)
{
    return m_Input.IsDownNow(key);
}

std::optional<std::string> CGameHost::ClipboardText()
{
    if (m_Clock.IsFixed())
        return PlatformHost::ClipboardText();
    if (SDL_HasClipboardText() == SDL_FALSE)
        return std::nullopt;
    char* text = SDL_GetClipboardText();
    if (text == nullptr)
        return std::nullopt;
    std::string converted = WithCrLf(PlatformFromUtf8(text));
    SDL_free(text);
    return converted;
}

void CGameHost::SetClipboardText(const std::string& text)
{
    if (m_Clock.IsFixed())
        PlatformHost::SetClipboardText(text);
    else
        SDL_SetClipboardText(PlatformToUtf8(WithLf(text)).c_str());
}

DWORD CGameHost::Milliseconds()
{
    return m_Clock.Milliseconds();
}

SYSTEMTIME CGameHost::LocalTime()
{
    return m_Clock.IsFixed() ? m_Clock.SeededTime() : PlatformHost::LocalTime();
}

void CGameHost::DebugOutput(const char* text)
{
    std::string line = text;
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
        line.pop_back();
    std::fprintf(stderr, "%s\n", PlatformToUtf8(line).c_str());
    m_Trace.Add("debug \"" + line + "\"");
}
