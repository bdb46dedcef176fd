#include "platform/input.h"

#include "platform/host.h"

namespace
{

constexpr SHORT KEY_DOWN = static_cast<SHORT>(-0x8000);

} // namespace

BOOL GetCursorPos(POINT* out)
{
    *out = {};
    if (!GetPlatformHost().CursorPos(*out)) {
        *out = {};
        return FALSE;
    }
    return TRUE;
}

int ShowCursor(BOOL show)
{
    return GetPlatformHost().ChangeCursorCounter(show ? 1 : -1);
}

SHORT GetKeyState(int key)
{
    return GetPlatformHost().IsKeyDown(key) ? KEY_DOWN : SHORT{0};
}

SHORT GetAsyncKeyState(int key)
{
    return GetPlatformHost().IsKeyDownNow(key) ? KEY_DOWN : SHORT{0};
}
