#pragma once
// One block of 5-6-5 pixels, and who holds it at the moment.

#include <cstdint>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "platform/gdi.h"
#include "platform/types.h"
#include "render/blit.h"

/// The longest side of a surface or of a picture, in pixels.
constexpr int SURFACE_MAX_SIDE = 4096;

/// Owns its pixels, which start at a multiple of 16 bytes and never move, and the device contexts on them.
/// Invariant: both sides are 1 to SURFACE_MAX_SIDE.
class CSurface
{
  public:
    /// All pixels 0. Null when a side is out of range or the memory can't be had.
    static std::unique_ptr<CSurface> Create(int width, int height);
    ~CSurface();
    CSurface(const CSurface&) = delete;
    CSurface& operator=(const CSurface&) = delete;

    int Width() const { return m_nWidth; }
    int Height() const { return m_nHeight; }
    RECT Rect() const { return {0, 0, m_nWidth, m_nHeight}; }
    std::size_t PixelCount() const;
    std::uint16_t* Pixels() { return m_pPixels.get(); }
    const std::uint16_t* Pixels() const { return m_pPixels.get(); }
    PixelView View() { return {m_pPixels.get(), m_nWidth, m_nHeight}; }
    void Fill(std::uint16_t pixel);

    /// Locks nest; an Unlock without a lock does nothing.
    void Lock() { ++m_nLocks; }
    void Unlock();
    /// A new context on the pixels, which the surface owns; null on failure.
    HDC OpenDC();
    /// Does nothing for a context that isn't one of this surface's.
    void CloseDC(HDC dc);
    /// True while a lock or a device context is out.
    bool IsHeld() const { return m_nLocks > 0 || !m_aDCs.empty(); }

    /// The number has been freed while the surface was held: it goes when it is given back.
    bool m_bFreed = false;

  private:
    static constexpr std::align_val_t ALIGNMENT{16};
    struct FreePixels {
        void operator()(std::uint16_t* pixels) const { ::operator delete[](pixels, ALIGNMENT); }
    };
    using PixelBlock = std::unique_ptr<std::uint16_t[], FreePixels>;

    CSurface(PixelBlock pixels, int width, int height);

    PixelBlock m_pPixels;
    int m_nWidth;
    int m_nHeight;
    int m_nLocks = 0;
    std::vector<HDC> m_aDCs;
};
