#pragma once
// The sky: its colours, sun or moon, stars and clouds, painted once for a display size.

#include <cstdint>
#include <vector>

#include "battle/sea_scene.h"

class CSky
{
  public:
    /// Black until its rows are painted. Both sides are at least 1.
    CSky(const SeaLight& light, int width, int height);
    void PaintRows(int first, int end);
    int Height() const { return m_nHeight; }
    const std::uint16_t* Row(int y) const
    {
        return m_Pixels.data() + static_cast<std::ptrdiff_t>(y) * m_nWidth;
    }

  private:
    Colour ColourAt(int x, int y) const;

    SeaLight m_Light;
    int m_nWidth;
    int m_nHeight;
    std::vector<std::uint16_t> m_Pixels;
};
