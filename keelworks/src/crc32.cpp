#include "keelworks/crc32.h"

#include <array>

namespace
{

constexpr std::uint32_t POLYNOMIAL = 0xedb88320U; // its bits reversed

constexpr std::array<std::uint32_t, 256> MakeTable()
{
    std::array<std::uint32_t, 256> table = {};
    for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
        std::uint32_t value = byte;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value & 1U) != 0 ? value >> 1 ^ POLYNOMIAL : value >> 1;
        }
        table[byte] = value;
    }
    return table;
}

constexpr std::array<std::uint32_t, 256> TABLE = MakeTable();

} // namespace

std::uint32_t Crc32(const void* data, std::size_t size, std::uint32_t previous)
{
    const auto* bytes = static_cast<const unsigned char*>(data);
    std::uint32_t value = ~previous;
    for (std::size_t i = 0; i < size; ++i) {
        value = value >> 8 ^ TABLE[(value ^ bytes[i]) & 0xffU];
    }
    return ~value;
}
