#include "shell/clock.h"

#include <SDL.h>
#include <algorithm>

namespace
{

constexpr unsigned MILLISECONDS_A_DAY = 24U * 60 * 60 * 1000;
// Neighbouring seeds begin far apart, and seed 0 begins at noon.
constexpr unsigned SEED_STEP = 12347891U;
constexpr unsigned NOON = MILLISECONDS_A_DAY / 2;

} // namespace

DWORD CClock::Milliseconds() const
{
    return m_bFixed ? m_nNow : SDL_GetTicks();
}

int CClock::NextFrame()
{
    if (m_bFixed) {
        m_nNow += FIXED_FRAME;
        return FIXED_FRAME;
    }
    const DWORD now = SDL_GetTicks();
    const DWORD elapsed = m_nLast == 0 ? 0 : now - m_nLast;
    m_nLast = now;
    return static_cast<int>(std::min<DWORD>(elapsed, LONGEST_FRAME));
}

SYSTEMTIME CClock::SeededTime() const
{
    const unsigned time =
        static_cast<unsigned>((NOON + std::uint64_t{m_nSeed} * SEED_STEP) % MILLISECONDS_A_DAY);
    SYSTEMTIME out;
    out.wYear = 1912;
    out.wMonth = 4;
    out.wDayOfWeek = 1;
    out.wDay = 1;
    out.wHour = static_cast<WORD>(time / 3600000);
    out.wMinute = static_cast<WORD>(time / 60000 % 60);
    out.wSecond = static_cast<WORD>(time / 1000 % 60);
    out.wMilliseconds = static_cast<WORD>(time % 1000);
    return out;
}
