#pragma once
// Ordered dithering of 8-bit channels to 5-6-5.

#include <cstdint>

/// The pixel for an 8-bit colour at x, y of its picture. Each channel becomes one of the two levels around
/// it, the upper one at as many places of an 8 by 8 square as the channel lies above the lower one; a channel
/// that is exactly a level's 8-bit form always becomes that level.
std::uint16_t DitheredPixel(int red, int green, int blue, int x, int y);
