#pragma once
// Copying, keying and scaling of a rectangle of pixels, with clipping on both sides.

#include <cstdint>
#include <vector>

#include "platform/types.h"

/// Pixels that somebody else owns, rows without padding.
struct PixelView {
    std::uint16_t* m_pPixels = nullptr;
    int m_nWidth = 0;
    int m_nHeight = 0;
};

/// Memory that blits work in, kept from one to the next. Its contents mean nothing between two blits.
struct BlitScratch {
    std::vector<std::uint16_t> m_Source;   ///< a copy of the source where source and target overlap
    std::vector<std::uint16_t> m_Row;      ///< a scaled row
    std::vector<std::uint32_t> m_aColumns; ///< the source column of each target column, or the reverse
};

/// Copies `sourceRect` of `source` to `targetRect` of `target`. Where the rectangles differ in size, target
/// pixel x of the rectangle shows source pixel floor(x * source width / target width), and the same for y.
/// Clipping never moves a pixel: what lies outside either surface isn't drawn, the rest stays as it would
/// have been. A rectangle without width or height draws nothing. `keyed` leaves out source pixels of value 0.
/// The views may be of the same surface: the source counts as read before anything is drawn.
void BlitPixels(const PixelView& target, const RECT& targetRect, const PixelView& source,
                const RECT& sourceRect, bool keyed, BlitScratch& scratch);
