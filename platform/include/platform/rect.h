#pragma once
// Rectangle helpers with Win32's meaning: a rectangle without width or height is empty, an intersection
// that is empty gives 0, 0, 0, 0. None of them accepts a null pointer.

#include "platform/types.h"

BOOL SetRect(RECT* rect, int left, int top, int right, int bottom);
BOOL SetRectEmpty(RECT* rect);
BOOL IsRectEmpty(const RECT* rect);
BOOL PtInRect(const RECT* rect, POINT point);
/// Moves the rectangle by dx, dy; saturates at the limits of 32 bits.
BOOL OffsetRect(RECT* rect, int dx, int dy);
BOOL InflateRect(RECT* rect, int dx, int dy);
/// out may be one of the two sources. FALSE when they don't meet.
BOOL IntersectRect(RECT* out, const RECT* a, const RECT* b);
/// The smallest rectangle around both; an empty one counts for nothing.
BOOL UnionRect(RECT* out, const RECT* a, const RECT* b);
BOOL EqualRect(const RECT* a, const RECT* b);
