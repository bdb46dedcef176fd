#pragma once
// Cursor and keys, as the installed PlatformHost tells them.

#include "platform/types.h"

/// The cursor in display coordinates. FALSE (and 0, 0) when there is none.
BOOL GetCursorPos(POINT* out);
/// Raises or lowers the display counter and gives its new value; the cursor shows while it isn't negative.
int ShowCursor(BOOL show);
/// The state as of the message being handled: the top bit is set while the key is down.
SHORT GetKeyState(int key);
/// The state now: the top bit is set while the key is down.
SHORT GetAsyncKeyState(int key);
