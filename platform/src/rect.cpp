#include "platform/rect.h"

#include <algorithm>
#include <limits>

namespace
{

LONG Saturate(std::int64_t value)
{
    constexpr std::int64_t lowest = std::numeric_limits<LONG>::min();
    constexpr std::int64_t highest = std::numeric_limits<LONG>::max();
    return static_cast<LONG>(std::clamp(value, lowest, highest));
}

LONG Add(LONG a, int b)
{
    return Saturate(std::int64_t{a} + b);
}

LONG Subtract(LONG a, int b)
{
    return Saturate(std::int64_t{a} - b);
}

} // namespace

BOOL SetRect(RECT* rect, int left, int top, int right, int bottom)
{
    *rect = {left, top, right, bottom};
    return TRUE;
}

BOOL SetRectEmpty(RECT* rect)
{
    *rect = {};
    return TRUE;
}

BOOL IsRectEmpty(const RECT* rect)
{
    return rect->right <= rect->left || rect->bottom <= rect->top;
}

BOOL PtInRect(const RECT* rect, POINT point)
{
    return point.x >= rect->left && point.x < rect->right && point.y >= rect->top && point.y < rect->bottom;
}

BOOL OffsetRect(RECT* rect, int dx, int dy)
{
    *rect = {Add(rect->left, dx), Add(rect->top, dy), Add(rect->right, dx), Add(rect->bottom, dy)};
    return TRUE;
}

BOOL InflateRect(RECT* rect, int dx, int dy)
{
    *rect = {Subtract(rect->left, dx), Subtract(rect->top, dy), Add(rect->right, dx), Add(rect->bottom, dy)};
    return TRUE;
}

BOOL IntersectRect(RECT* out, const RECT* a, const RECT* b)
{
    const RECT both = {std::max(a->left, b->left), std::max(a->top, b->top), std::min(a->right, b->right),
                       std::min(a->bottom, b->bottom)};
    if (IsRectEmpty(a) || IsRectEmpty(b) || IsRectEmpty(&both)) {
        *out = {};
        return FALSE;
    }
    *out = both;
    return TRUE;
}

BOOL UnionRect(RECT* out, const RECT* a, const RECT* b)
{
    const bool noA = IsRectEmpty(a);
    const bool noB = IsRectEmpty(b);
    if (noA || noB) {
        *out = !noA ? *a : !noB ? *b : RECT{};
        return !noA || !noB;
    }
    *out = {std::min(a->left, b->left), std::min(a->top, b->top), std::max(a->right, b->right),
            std::max(a->bottom, b->bottom)};
    return TRUE;
}

BOOL EqualRect(const RECT* a, const RECT* b)
{
    return *a == *b;
}
