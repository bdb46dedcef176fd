// From one format to another, with error diffusion.
//
// The formats of 12, 15 and 16 bits drop low bits and read back as zeros there, so the error of a channel is
// just its low bits: 0 to 15 at most. Errors are never negative, their sums in a cell stay far below what a
// signed byte holds, and four channels fit into one word of 64 bits. The error of a palette entry has either
// sign; there the cells are bytes that wrap.

#include <algorithm>
#include <new>
#include <vector>

#include "lib/teximage.h"
#include "lib/texpixel.h"

namespace
{

// The four channels of a pixel in fields of 16 bits, blue lowest.
constexpr std::uint64_t FIELD_BYTES = 0x00ff00ff00ff00ff;
constexpr std::uint64_t FIELD_OVERFLOW = 0x0100010001000100;
/// Half of the weights' sum, which rounds, in the fields of the colours.
constexpr std::uint64_t ROUNDING = 0x0000000800080008;
constexpr std::uint64_t FIELD_NIBBLES = 0x0000000f000f000f;
constexpr unsigned WEIGHT_BITS = 4;

// Sixteenths of the error that go to the pixel below, below left, to the right, and below right.
constexpr int WEIGHT_BELOW = 5;
constexpr int WEIGHT_BELOW_LEFT = 3;
constexpr int WEIGHT_RIGHT = 7;
constexpr int WEIGHT_BELOW_RIGHT = 1;

constexpr std::uint64_t Spread(std::uint32_t word)
{
    const std::uint64_t halves = (word | static_cast<std::uint64_t>(word) << 16) & 0x0000ffff0000ffff;
    return (halves | halves << 8) & FIELD_BYTES;
}

constexpr std::uint32_t Pack(std::uint64_t fields)
{
    const std::uint64_t halves = (fields | fields >> 8) & 0x0000ffff0000ffff;
    return static_cast<std::uint32_t>(halves | halves >> 16);
}

/// The low bits that the format drops from each colour.
constexpr std::uint64_t DroppedBits(unsigned bits)
{
    switch (bits) {
    case TEX_ARGB4444:
        return 0x0000000f000f000f;
    case TEX_ARGB1555:
        return 0x0000000700070007;
    default:
        return 0x0000000700030007;
    }
}

constexpr std::uint64_t Share(std::uint64_t errors, int weight)
{
    return (errors * static_cast<std::uint64_t>(weight) + ROUNDING) >> WEIGHT_BITS & FIELD_NIBBLES;
}

/// One row of `width` pixels. `cells` holds what the row above left for each pixel, and then what this row
/// leaves for the next.
template <unsigned Bits>
void DiffuseRow(const std::uint32_t* in, std::size_t width, std::uint64_t* cells, std::uint8_t* out)
{
    std::uint64_t right = 0;
    std::uint64_t below = 0; // what the pixel below the last one has so far
    std::uint64_t belowRight = 0;
    for (std::size_t x = 0; x < width; ++x) {
        std::uint64_t pixel = Spread(in[x]) + cells[x] + right;
        const std::uint64_t overflow = pixel & FIELD_OVERFLOW;
        pixel = (pixel | (overflow - (overflow >> 8))) & FIELD_BYTES;
        TexCodec<Bits>::Encode(Pack(pixel), out + 2 * x);
        const std::uint64_t errors = pixel & DroppedBits(Bits);
        right = Share(errors, WEIGHT_RIGHT);
        if (x > 0)
            cells[x - 1] = below + Share(errors, WEIGHT_BELOW_LEFT);
        below = belowRight + Share(errors, WEIGHT_BELOW);
        belowRight = Share(errors, WEIGHT_BELOW_RIGHT);
    }
    cells[width - 1] = below;
}

/// The errors that wait for a pixel: blue, green, red.
struct ErrorCell {
    std::int8_t channels[3] = {};

    void Add(const int (&errors)[3], int weight)
    {
        for (std::size_t i = 0; i < 3; ++i) {
            const int share = (weight * errors[i] + (1 << (WEIGHT_BITS - 1))) >> WEIGHT_BITS;
            channels[i] = static_cast<std::int8_t>(channels[i] + share);
        }
    }
};

std::uint8_t Clamped(int value)
{
    return static_cast<std::uint8_t>(std::clamp(value, 0, 255));
}

} // namespace

bool CTexImage::ConvertFrom(const CTexImage& src)
{
    if (&src == this || src.IsEmpty())
        return false;
    if (IsEmpty() && !Alloc(src.m_nWidth, src.m_nHeight, src.m_nFormat))
        return false;
    try {
        if (m_nWidth == src.m_nWidth && m_nHeight == src.m_nHeight)
            ConvertSameSize(src);
        else if (!ConvertOtherSize(src))
            return false;
    } catch (const std::bad_alloc&) {
        return false;
    }
    SetValid();
    return true;
}

void CTexImage::ConvertSameSize(const CTexImage& src)
{
    if (GetBits() == src.GetBits()) {
        CopyPixelsOf(src);
        return;
    }
    if (GetBits() == TEX_PALETTE8) {
        DiffuseToPalette(src);
        return;
    }
    const auto width = static_cast<std::size_t>(m_nWidth);
    std::vector<std::uint32_t> words(width);
    std::vector<std::uint64_t> cells(width);
    for (int y = 0; y < m_nHeight; ++y) {
        DecodePixels(src, src.At(0, y), width, words.data());
        std::uint8_t* out = At(0, y);
        switch (GetBits()) {
        case TEX_ARGB4444:
            DiffuseRow<TEX_ARGB4444>(words.data(), width, cells.data(), out);
            break;
        case TEX_ARGB1555:
            DiffuseRow<TEX_ARGB1555>(words.data(), width, cells.data(), out);
            break;
        case TEX_RGB565:
            DiffuseRow<TEX_RGB565>(words.data(), width, cells.data(), out);
            break;
        default:
            // All bits of the colours are kept: there is no error.
            EncodePixels(GetBits(), words.data(), width, out);
            break;
        }
    }
}

void CTexImage::DiffuseToPalette(const CTexImage& src)
{
    // Two cells for each column: of the row at hand, and of the next one.
    std::vector<ErrorCell> cells(2 * static_cast<std::size_t>(m_nWidth));
    for (int y = 0; y < m_nHeight; ++y) {
        ErrorCell* cur = cells.data() + (y & 1);
        ErrorCell* next = cells.data() + ((y + 1) & 1);
        for (int x = 0; x < m_nWidth; ++x) {
            const std::ptrdiff_t place = std::ptrdiff_t{2} * x;
            TexPixel pixel;
            src.GetPixel(pixel, x, y);
            pixel.blue = Clamped(pixel.blue + cur[place].channels[0]);
            pixel.green = Clamped(pixel.green + cur[place].channels[1]);
            pixel.red = Clamped(pixel.red + cur[place].channels[2]);
            SetPixel(x, y, pixel);
            TexPixel stored;
            GetPixel(stored, x, y);
            const int errors[3] = {pixel.blue - stored.blue, pixel.green - stored.green,
                                   pixel.red - stored.red};
            cur[place] = ErrorCell();
            next[place].Add(errors, WEIGHT_BELOW);
            if (x > 0)
                next[place - 2].Add(errors, WEIGHT_BELOW_LEFT);
            if (x + 1 < m_nWidth) {
                cur[place + 2].Add(errors, WEIGHT_RIGHT);
                next[place + 2].Add(errors, WEIGHT_BELOW_RIGHT);
            }
        }
    }
}

/// A picture between the two takes the format from one of them and so its palette too.
bool CTexImage::ConvertOtherSize(const CTexImage& src)
{
    CTexImage between;
    if (GetBits() < src.GetBits()) {
        between.SetPalette(m_Palette);
        return between.Alloc(src.m_nWidth, src.m_nHeight, m_nFormat) && between.ConvertFrom(src) &&
               StretchFrom(m_nWidth, m_nHeight, between);
    }
    between.SetPalette(src.m_Palette);
    return between.Alloc(m_nWidth, m_nHeight, src.m_nFormat) &&
           between.StretchFrom(m_nWidth, m_nHeight, src) && ConvertFrom(between);
}
