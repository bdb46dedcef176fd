#pragma once
// BMP files for tests, from headers that may lie.

#include <cstdint>
#include <string>

/// A little-endian number of so many bytes.
inline std::string Le(std::uint32_t value, int bytes)
{
    std::string out;
    for (int i = 0; i < bytes; ++i)
        out += static_cast<char>(value >> (8 * i) & 0xff);
    return out;
}

/// The file's header fields; `Bytes` gives the file. Each byte of the pixels is its place among them plus 1.
struct BmpBuilder {
    std::uint32_t width = 2;
    std::uint32_t height = 2;
    std::uint32_t bits = 24;
    std::uint32_t colours = 0;   ///< entry i is blue i, green i + 1, red i + 2, and 0xee
    std::uint32_t infoSize = 40; ///< room taken up to the palette, less the file header; 12 is the short form
    std::uint32_t lengthMore = 0; ///< what the header tells above the real length
    std::uint32_t offsetMore = 0; ///< and above the real place of the pixels
    std::uint32_t planes = 1;
    std::uint32_t compression = 0;
    std::string magic = "BM";

    std::uint32_t Stride() const { return (width * bits + 31) / 32 * 4; }
    std::uint32_t Offset() const { return 14 + infoSize + colours * 4; }
    std::uint8_t PixelByte(std::uint32_t row, std::uint32_t byte) const
    {
        return static_cast<std::uint8_t>(row * Stride() + byte + 1);
    }
    /// Of a picture that no file could hold the pixels are left out.
    std::string Bytes() const
    {
        constexpr std::uint64_t MOST_PIXELS = 1 << 20;
        const int side = infoSize == 12 ? 2 : 4;
        std::string info = Le(infoSize, 4) + Le(width, side) + Le(height, side) + Le(planes, 2) + Le(bits, 2);
        info += Le(compression, 4) + std::string(20, '\0');
        info.resize(infoSize, '\x55');
        for (std::uint32_t i = 0; i < colours; ++i)
            info += Le(i, 1) + Le(i + 1, 1) + Le(i + 2, 1) + '\xee';
        const std::uint32_t rows = std::uint64_t{width} * height <= MOST_PIXELS ? height : 0;
        for (std::uint32_t y = 0; y < rows; ++y)
            for (std::uint32_t x = 0; x < Stride(); ++x)
                info += static_cast<char>(PixelByte(y, x));
        const auto length = static_cast<std::uint32_t>(14 + info.size());
        return magic + Le(length + lengthMore, 4) + Le(0, 4) + Le(Offset() + offsetMore, 4) + info;
    }
};
