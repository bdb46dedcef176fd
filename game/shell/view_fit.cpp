#include "shell/view_fit.h"

#include <algorithm>
#include <cstdint>

RECT FitView(SIZE display, SIZE window, ViewScale scale)
{
    SIZE size;
    const LONG steps = std::min(window.cx / display.cx, window.cy / display.cy);
    if (scale == ViewScale::Whole && steps > 0) {
        size = {display.cx * steps, display.cy * steps};
    } else if (std::int64_t{window.cx} * display.cy <= std::int64_t{window.cy} * display.cx) {
        size = {window.cx, static_cast<LONG>(std::int64_t{window.cx} * display.cy / display.cx)};
    } else {
        size = {static_cast<LONG>(std::int64_t{window.cy} * display.cx / display.cy), window.cy};
    }
    size.cx = std::max<LONG>(size.cx, 1);
    size.cy = std::max<LONG>(size.cy, 1);
    const LONG left = (window.cx - size.cx) / 2;
    const LONG top = (window.cy - size.cy) / 2;
    return {left, top, left + size.cx, top + size.cy};
}

POINT WindowToDisplay(POINT window, const RECT& view, SIZE display)
{
    const auto map = [](LONG at, LONG begin, LONG end, LONG size) {
        const LONG inside = std::clamp(at, begin, end - 1) - begin;
        return static_cast<LONG>((2 * std::int64_t{inside} + 1) * size / (2 * std::int64_t{end - begin}));
    };
    return {map(window.x, view.left, view.right, display.cx),
            map(window.y, view.top, view.bottom, display.cy)};
}
