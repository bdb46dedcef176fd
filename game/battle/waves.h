#pragma once
// The sea's surface: rows of waves that run one before the other from the horizon to the viewer.

#include <cstdint>
#include <vector>

#include "battle/sea_scene.h"
#include "render/blit.h"

class CWaves
{
  public:
    static constexpr int ROWS = 30;

    /// For a picture of that size whose horizon is at line `horizon`.
    CWaves(const SeaLight& light, int width, int height, int horizon);

    /// Row 0 is the furthest; each covers what the rows behind it left below its crests. `seconds` is the
    /// time since the sea began to move. `picture` has the size given to the constructor.
    void DrawRow(int row, const PixelView& picture, double seconds);
    /// The line at which a row's still water stands.
    float LineOf(int row) const;

  private:
    static constexpr int LEVELS = 32; // from the crest's colour to the trough's
    static constexpr int SIDE = 8;    // of the square that colours are dithered in

    void MakeColours(const SeaLight& light);
    void MakeCrests(int row, double seconds);
    void DrawGlitter(int row, const PixelView& picture, double seconds) const;
    float Nearness(int row) const;
    float Amplitude(int row) const;

    int m_nWidth;
    int m_nHeight;
    int m_nHorizon;
    float m_fScale; // of lengths made for a width of 800
    float m_fSunX;  // pixels
    std::uint16_t m_nGlow;
    std::uint16_t m_nFoam;
    std::vector<std::uint16_t> m_Colours; // [row][level][y][x]
    std::vector<int> m_Crests;            // the line of each column of the row being drawn
    std::vector<int> m_Tilts;             // levels by which a column is lighter or darker
};
