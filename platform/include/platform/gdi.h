#pragma once
// The few GDI fills that the toolkit makes, on a device context over 16-bit 5-6-5 pixels in memory.

#include "platform/types.h"

struct PlatformDC;
struct PlatformGdiObject;
using HDC = PlatformDC*;
using HGDIOBJ = PlatformGdiObject*;
using HBRUSH = PlatformGdiObject*;
using HPEN = PlatformGdiObject*;

constexpr int PS_SOLID = 0;

HBRUSH CreateSolidBrush(COLORREF colour);
/// width below 1 counts as 1; only PS_SOLID is drawn.
HPEN CreatePen(int style, int width, COLORREF colour);
/// FALSE, and nothing freed, for null and while a context has it selected.
BOOL DeleteObject(HGDIOBJ object);
/// Gives the object of the same kind that was selected before (a new context holds a white brush and a black
/// pen of width 1); the context doesn't own what is selected. Null when an argument is null.
HGDIOBJ SelectObject(HDC dc, HGDIOBJ object);
/// Fills without right and bottom edge; clipped to the context. 0 on failure.
int FillRect(HDC dc, const RECT* rect, HBRUSH brush);
/// The inside with the selected brush, the edge with the selected pen, right and bottom exclusive. A wide pen
/// is centred on the edge and has square corners. FALSE for a null context.
BOOL Rectangle(HDC dc, int left, int top, int right, int bottom);

/// A context over the caller's pixels (row length equal to width), which must outlive it. For the host's
/// 2-D layer. Null when an argument is null or not positive.
HDC PlatformCreateMemoryDC(std::uint16_t* pixels, int width, int height);
void PlatformDeleteMemoryDC(HDC dc);
