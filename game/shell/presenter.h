#pragma once
// What is shown of the display picture: with what lies over it, darkened by shades that run and by the
// brightness setting.

#include <cstdint>
#include <map>
#include <vector>

#include "render/blit.h"

/// Something that is seen over the display picture without being in it.
class IOverlay
{
  public:
    virtual ~IOverlay() = default;
    /// Draws on `picture`, a copy of `display` that may hold other overlays already. Both are of one size.
    virtual void DrawOver(const PixelView& picture, const std::uint16_t* display) = 0;
};

class CPresenter
{
  public:
    /// How dark the picture is on account of `owner`: 0 as it is, 1 black. The darkest owner counts.
    void SetFade(int owner, float level);
    void ClearFade(int owner) { m_Fades.erase(owner); }
    /// `overlay`, which must last until it is cleared, is drawn from now on; those of lower owners first.
    void SetOverlay(int owner, IOverlay& overlay) { m_Overlays[owner] = &overlay; }
    void ClearOverlay(int owner) { m_Overlays.erase(owner); }
    void ClearFades() { m_Fades.clear(); }
    /// 0 black, 1 as it is, up to 2.
    void SetBrightness(float brightness);
    /// Whether the same display would look different than at the last call; overlays always may.
    bool TakeChanged();
    /// The picture to show for the display's pixels: either these or a changed copy, valid until the next
    /// call.
    const std::uint16_t* Compose(const std::uint16_t* display, int width, int height);

  private:
    int Gain() const;

    std::map<int, float> m_Fades;
    std::map<int, IOverlay*> m_Overlays;
    float m_fBrightness = 1.0F;
    int m_nTakenGain = -1;
    std::vector<std::uint16_t> m_Picture;
};
