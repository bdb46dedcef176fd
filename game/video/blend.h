#pragma once

#include <cstddef>
#include <cstdint>

/// Mixes 5-6-5 pixels into `target`: weight 0 leaves it, 256 gives the source.
void BlendPixels(std::uint16_t* target, const std::uint16_t* source, std::size_t count, int weight);
