#pragma once
// The outline of a unit as a mask of how much of each pixel it covers.

#include <cstdint>
#include <span>
#include <vector>

#include "battle/sea_scene.h"
#include "platform/types.h"

/// Invariant: m_Cover has m_nWidth times m_nHeight values.
struct Silhouette {
    int m_nWidth = 0;
    int m_nHeight = 0;
    POINT m_ptOrigin; ///< of the mask: the middle of the waterline, of a balloon the middle of its envelope
    std::vector<std::uint8_t> m_Cover; ///< 0 to 255, rows without padding
    std::vector<POINT> m_aFunnels;     ///< their mouths, from the origin
    POINT m_ptFlag;                    ///< where its ensign is hoisted, from the origin
    bool m_bFlag = false;
};

/// The unit drawn so that its whole length would have `length` pixels if it were seen from the side.
Silhouette MakeSilhouette(const SeaUnit& unit, float length);
