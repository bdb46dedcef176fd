#pragma once
// Little-endian numbers in a block of bytes, as the picture formats hold them.

#include <cstdint>

constexpr std::uint16_t Get16(const std::uint8_t* at)
{
    return static_cast<std::uint16_t>(at[0] | at[1] << 8);
}

constexpr std::uint32_t Get32(const std::uint8_t* at)
{
    return Get16(at) | static_cast<std::uint32_t>(Get16(at + 2)) << 16;
}

constexpr void Put16(std::uint8_t* at, std::uint16_t value)
{
    at[0] = static_cast<std::uint8_t>(value);
    at[1] = static_cast<std::uint8_t>(value >> 8);
}

constexpr void Put32(std::uint8_t* at, std::uint32_t value)
{
    Put16(at, static_cast<std::uint16_t>(value));
    Put16(at + 2, static_cast<std::uint16_t>(value >> 16));
}
