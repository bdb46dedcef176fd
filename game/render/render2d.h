#pragma once
// The game's 2-D layer: numbered surfaces and the display picture, all in memory. Whoever owns the window
// copies the display picture to it; without a window it is what screenshots are made of.

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "irender2d.h"
#include "render/surface.h"

/// Invariant: there is always a display picture. The display is reached by its two numbers in Blit,
/// GetSurfaceRect and FillSurface; it can't be locked, freed or drawn on with a device context.
///
/// A surface number is used again only after FreeSurface. A surface that is freed while it is locked or has a
/// device context out is out of use at once, but its pixels and its number last until it is given back.
class CRender2D : public IRender2D
{
  public:
    /// As many surfaces can be in use at once; more fail.
    static constexpr std::size_t MAX_SURFACES = 4096;
    /// The display's size in pixels until it is set.
    static constexpr int DEFAULT_WIDTH = 800;
    static constexpr int DEFAULT_HEIGHT = 600;

    /// Throws std::runtime_error when the size isn't one that SetDisplaySize takes.
    explicit CRender2D(int displayWidth = DEFAULT_WIDTH, int displayHeight = DEFAULT_HEIGHT);
    ~CRender2D() override;

    /// A new display picture with the middle of the old one, scaled to fill it; each side 1 to
    /// SURFACE_MAX_SIDE pixels. False, with the display as it was, for any other size. The same size again
    /// changes nothing.
    bool SetDisplaySize(int width, int height);
    int DisplayWidth() const { return m_pDisplay->Width(); }
    int DisplayHeight() const { return m_pDisplay->Height(); }
    /// Rows without padding, valid until the next SetDisplaySize that changes the size.
    const std::uint16_t* DisplayPixels() const { return m_pDisplay->Pixels(); }

    /// Where the last Blit to DISPLAY_FRAME put its source, as it was asked for and so perhaps beyond the
    /// display; empty before the first.
    RECT FrameRect() const { return m_rcFrame; }

    /// Called at the end of every draw to DISPLAY_NOW, when the display picture is to be shown at once. An
    /// empty function is allowed.
    void SetOnPresentNow(std::function<void()> show) { m_OnPresentNow = std::move(show); }
    /// Whether the display picture has changed since the last call.
    bool TakeDisplayChanged();

    int CreateSurface(const RECT* rect) override;
    int LoadSurface(const char* file) override;
    void FreeSurface(int surface) override;
    void GetSurfaceRect(int surface, RECT* out) override;
    void FillSurface(int surface, COLORREF colour) override;
    void Blit(int flags, int destination, int source, const RECT* destinationRect, const RECT* sourceRect,
              bool keyed) override;
    std::uint16_t* LockSurface(int surface) override;
    void UnlockSurface(int surface, int flags) override;
    HDC GetSurfaceDC(int surface) override;
    void ReleaseSurfaceDC(int surface, HDC dc) override;

  private:
    /// The surface or the display, null for a number that isn't in use.
    CSurface* Find(int surface);
    /// The same without the display; with it, one that is freed but still held.
    CSurface* FindOwn(int surface, bool alsoFreed);
    /// A number for the surface; -1, with the surface gone, when there is none left.
    int Add(std::unique_ptr<CSurface> surface);
    void RemoveIfGivenBack(int surface);
    void TellDrawn(int surface);

    std::vector<std::unique_ptr<CSurface>> m_apSurfaces; ///< null where a number is free
    std::unique_ptr<CSurface> m_pDisplay;
    BlitScratch m_Scratch;
    std::function<void()> m_OnPresentNow;
    bool m_bDisplayChanged = true;
    RECT m_rcFrame;
};
