#pragma once

#include <cstddef>
#include <cstdint>

/// The usual CRC-32 (polynomial 0xedb88320, first and last inverted) of `size` bytes. To take a row of blocks
/// as one, give each call the result of the one before; the first gets 0.
std::uint32_t Crc32(const void* data, std::size_t size, std::uint32_t previous = 0);
