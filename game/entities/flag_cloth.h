#pragma once
// A piece of cloth in the wind, drawn on 5-6-5 pixels.

#include <cstdint>
#include <vector>

#include "platform/types.h"
#include "render/blit.h"
#include "render/picture.h"

/// Owns its picture. All of it, waves included, stays within the rectangle that it is drawn to.
class CFlagCloth
{
  public:
    /// Plain white until then.
    CFlagCloth();
    /// Copies the picture, whose left edge is at the pole; it must have pixels.
    void SetPicture(const Picture& picture);

    struct Placing {
        RECT rc;             ///< not empty, may lie partly outside the view
        RECT rcCovered;      ///< where nothing is drawn
        bool bRight = false; ///< the pole is at the right edge, and the cloth's back is seen
        float fTurns = 0.0F; ///< how far the wave has run; goes round at 1
    };
    void Draw(const PixelView& view, const Placing& placing);

  private:
    struct Colour {
        float red = 0.0F; ///< each 0 to 255
        float green = 0.0F;
        float blue = 0.0F;
    };
    struct Angle;
    struct Column;
    struct Spot;

    void FitTo(int width, int height);
    /// Of a part of the picture, in its pixels.
    Colour Average(float left, float top, float width, float height) const;
    Colour Sample(float u, float v) const;
    static Column ColumnAt(float across, float width, float turns);
    static Spot SpotAt(const Column& column, float v, const Angle& lean, float height);
    void DrawPixel(std::uint16_t& pixel, const Column& column, const Spot& spot, POINT at) const;

    std::vector<Colour> m_Picture; ///< rows of the picture as it was given
    int m_nPictureWidth = 1;
    int m_nPictureHeight = 1;
    std::vector<Colour> m_Texels; ///< the same, no larger than the cloth is drawn
    int m_nWidth = 0;
    int m_nHeight = 0;
};
