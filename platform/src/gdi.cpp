#include "platform/gdi.h"

#include <algorithm>
#include <utility>

#include "platform/rect.h"

struct PlatformGdiObject {
    enum class Kind { Brush, Pen };

    Kind kind;
    COLORREF colour;
    int width = 1;      ///< of a pen, in pixels
    bool stock = false; ///< a context's first brush and pen, which nobody frees
    int selected = 0;   ///< how many contexts hold it
};

struct PlatformDC {
    std::uint16_t* pixels;
    int width;
    int height;
    PlatformGdiObject* brush;
    PlatformGdiObject* pen;
};

namespace
{

constexpr COLORREF WHITE = RGB(255, 255, 255);
constexpr COLORREF BLACK = RGB(0, 0, 0);

PlatformGdiObject* WhiteBrush()
{
    static PlatformGdiObject brush{PlatformGdiObject::Kind::Brush, WHITE, 1, true, 0};
    return &brush;
}

PlatformGdiObject* BlackPen()
{
    static PlatformGdiObject pen{PlatformGdiObject::Kind::Pen, BLACK, 1, true, 0};
    return &pen;
}

std::uint16_t ToPixel(COLORREF colour)
{
    const unsigned red = colour & 0xffu;
    const unsigned green = (colour >> 8) & 0xffu;
    const unsigned blue = (colour >> 16) & 0xffu;
    return static_cast<std::uint16_t>(((red >> 3) << 11) | ((green >> 2) << 5) | (blue >> 3));
}

/// Coordinates are 64 bits, so that an edge with the pen's width added can't overflow.
void Fill(const PlatformDC& dc, std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom,
          COLORREF colour)
{
    left = std::max<std::int64_t>(left, 0);
    top = std::max<std::int64_t>(top, 0);
    right = std::min<std::int64_t>(right, dc.width);
    bottom = std::min<std::int64_t>(bottom, dc.height);
    if (left >= right) {
        return;
    }
    const std::uint16_t pixel = ToPixel(colour);
    for (std::int64_t y = top; y < bottom; ++y) {
        std::uint16_t* row = dc.pixels + y * dc.width;
        std::fill(row + left, row + right, pixel);
    }
}

} // namespace

HBRUSH CreateSolidBrush(COLORREF colour)
{
    return new PlatformGdiObject{PlatformGdiObject::Kind::Brush, colour};
}

HPEN CreatePen(int, int width, COLORREF colour)
{
    return new PlatformGdiObject{PlatformGdiObject::Kind::Pen, colour, std::max(width, 1)};
}

BOOL DeleteObject(HGDIOBJ object)
{
    if (!object || object->selected > 0) {
        return FALSE;
    }
    if (!object->stock) {
        delete object;
    }
    return TRUE;
}

HGDIOBJ SelectObject(HDC dc, HGDIOBJ object)
{
    if (!dc || !object) {
        return nullptr;
    }
    PlatformGdiObject*& slot = object->kind == PlatformGdiObject::Kind::Brush ? dc->brush : dc->pen;
    --slot->selected;
    ++object->selected;
    return std::exchange(slot, object);
}

int FillRect(HDC dc, const RECT* rect, HBRUSH brush)
{
    if (!dc || !rect || !brush || brush->kind != PlatformGdiObject::Kind::Brush) {
        return 0;
    }
    Fill(*dc, rect->left, rect->top, rect->right, rect->bottom, brush->colour);
    return 1;
}

BOOL Rectangle(HDC dc, int left, int top, int right, int bottom)
{
    if (!dc) {
        return FALSE;
    }
    if (left > right) {
        std::swap(left, right);
    }
    if (top > bottom) {
        std::swap(top, bottom);
    }
    if (left == right || top == bottom) {
        return TRUE;
    }
    Fill(*dc, left, top, right, bottom, dc->brush->colour);
    // The pen's middle runs along the outermost pixels of the rectangle; of an even width the larger half
    // lies above and to the left.
    const std::int64_t width = dc->pen->width;
    const std::int64_t outerLeft = left - width / 2;
    const std::int64_t outerTop = top - width / 2;
    const std::int64_t outerRight = std::int64_t{right} - 1 - width / 2 + width;
    const std::int64_t outerBottom = std::int64_t{bottom} - 1 - width / 2 + width;
    const COLORREF colour = dc->pen->colour;
    Fill(*dc, outerLeft, outerTop, outerRight, outerTop + width, colour);
    Fill(*dc, outerLeft, outerBottom - width, outerRight, outerBottom, colour);
    Fill(*dc, outerLeft, outerTop, outerLeft + width, outerBottom, colour);
    Fill(*dc, outerRight - width, outerTop, outerRight, outerBottom, colour);
    return TRUE;
}

HDC PlatformCreateMemoryDC(std::uint16_t* pixels, int width, int height)
{
    if (!pixels || width <= 0 || height <= 0) {
        return nullptr;
    }
    ++WhiteBrush()->selected;
    ++BlackPen()->selected;
    return new PlatformDC{pixels, width, height, WhiteBrush(), BlackPen()};
}

void PlatformDeleteMemoryDC(HDC dc)
{
    if (dc) {
        --dc->brush->selected;
        --dc->pen->selected;
        delete dc;
    }
}
