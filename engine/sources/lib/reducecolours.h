#pragma once
// Finds the colours that stand for a picture.

#include <cstdint>

/// Finds at most `maxColours` colours for `count` pixels 0xXXRRGGBB, and writes them to `palette`: four bytes
/// for each, blue, green, red, and its weight (the share of the pixels that it stands for, 0 to 255).
/// `palette` has room for `maxColours` entries. Gives the number of entries; 0 when a pointer is null, a
/// number isn't above 0 or memory runs out.
int ReduceColours(const std::uint32_t* pixels, int count, std::uint8_t* palette, int maxColours);
