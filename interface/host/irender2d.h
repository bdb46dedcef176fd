#pragma once
// The host's 2-D layer: numbered surfaces of 16-bit 5-6-5 pixels, and the display.

#include <cstdint>

#include "platform/gdi.h"
#include "platform/types.h"

/// Surface numbers that name the display in Blit.
enum DisplaySurface : int {
    DISPLAY_NOW = -1,   ///< as a target: shown at once; as a source: what the display shows
    DISPLAY_FRAME = -2, ///< as a target: shown with the frame
};

class IRender2D
{
  public:
    virtual ~IRender2D() = default;

    /// A blank surface of the rectangle's size; negative on failure.
    virtual int CreateSurface(const RECT* rect) = 0;
    /// A surface with a picture (PNG, TGA, BMP) of the game's folder; negative on failure.
    virtual int LoadSurface(const char* file) = 0;
    virtual void FreeSurface(int surface) = 0;
    /// 0, 0, width, height; empty for a number that isn't in use.
    virtual void GetSurfaceRect(int surface, RECT* out) = 0;
    /// The whole surface in one colour.
    virtual void FillSurface(int surface, COLORREF colour) = 0;

    /// Copies with clipping on both sides; scales (nearest pixel) when the rectangles differ in size. A null
    /// rectangle is the whole surface. `keyed` leaves out source pixels of value 0. `flags` is 0.
    virtual void Blit(int flags, int destination, int source, const RECT* destinationRect,
                      const RECT* sourceRect, bool keyed) = 0;

    /// The pixels, row length equal to the width, valid until UnlockSurface; null on failure.
    virtual std::uint16_t* LockSurface(int surface) = 0;
    virtual void UnlockSurface(int surface, int flags) = 0;
    /// A device context on the pixels, null on failure; given back with ReleaseSurfaceDC.
    virtual HDC GetSurfaceDC(int surface) = 0;
    virtual void ReleaseSurfaceDC(int surface, HDC dc) = 0;
};
