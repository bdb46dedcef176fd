#include "lib/teximage.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "lib/texpixel.h"

namespace
{

/// Of a picture with alpha, this alpha and less is index 0.
constexpr int MOST_TRANSPARENT = 0x3f;
constexpr int WEIGHT_RED = 2;
constexpr int WEIGHT_GREEN = 3;

/// Where a pixel keeps its alpha; a mask of 0 for a format without any.
struct AlphaPlace {
    std::size_t offset;
    std::uint8_t mask;
};

AlphaPlace AlphaPlaceOf(unsigned bits)
{
    switch (bits) {
    case TEX_ARGB4444:
        return {1, 0xf0};
    case TEX_ARGB1555:
        return {1, 0x80};
    case TEX_ARGB8888:
        return {3, 0xff};
    default:
        return {0, 0};
    }
}

constexpr int Square(int value)
{
    return value * value;
}

} // namespace

CTexImage::~CTexImage() = default;

CTexImage::CTexImage(CTexImage&& other) noexcept
{
    *this = std::move(other);
}

CTexImage& CTexImage::operator=(CTexImage&& other) noexcept
{
    if (&other != this) {
        *this = std::as_const(other);
        other.Free();
    }
    return *this;
}

bool CTexImage::Alloc(int w, int h, std::uint32_t format)
{
    Free();
    const std::size_t bytes = BytesOfPixel(format & TEX_BITS);
    if (w <= 0 || h <= 0 || bytes == 0)
        return false;
    const std::size_t most = MAX_DATA_SIZE / bytes;
    if (static_cast<std::size_t>(w) > most ||
        static_cast<std::size_t>(h) > most / static_cast<std::size_t>(w))
        return false;
    const std::size_t size = bytes * static_cast<std::size_t>(w) * static_cast<std::size_t>(h);
    try {
        m_pPixels = std::shared_ptr<std::uint8_t[]>(new std::uint8_t[size]);
    } catch (const std::bad_alloc&) {
        return false;
    }
    m_nFormat = format & ~std::uint32_t{TEX_VALID};
    m_nWidth = w;
    m_nHeight = h;
    return true;
}

bool CTexImage::AllocUnlessLike(int w, int h, std::uint32_t format)
{
    const bool alike = !IsEmpty() && m_nWidth == w && m_nHeight == h &&
                       ((m_nFormat ^ format) & ~std::uint32_t{TEX_VALID}) == 0;
    return alike || Alloc(w, h, format);
}

void CTexImage::Free()
{
    m_pPixels.reset();
    m_nFormat = 0;
    m_nWidth = 0;
    m_nHeight = 0;
}

std::size_t CTexImage::GetDataSize() const
{
    return BytesOfPixel(GetBits()) * static_cast<std::size_t>(m_nWidth) * static_cast<std::size_t>(m_nHeight);
}

/// Null outside the picture.
std::uint8_t* CTexImage::At(int x, int y) const
{
    if (x < 0 || y < 0 || x >= m_nWidth || y >= m_nHeight)
        return nullptr;
    const std::size_t index =
        static_cast<std::size_t>(y) * static_cast<std::size_t>(m_nWidth) + static_cast<std::size_t>(x);
    return m_pPixels.get() + BytesOfPixel(GetBits()) * index;
}

void CTexImage::GetPixel(TexPixel& colour, int x, int y) const
{
    std::uint32_t word = 0;
    if (const std::uint8_t* p = At(x, y)) {
        switch (GetBits()) {
        case TEX_PALETTE8:
            word = TexCodec<TEX_PALETTE8>::Decode(p, HasAlpha(), m_Palette);
            break;
        case TEX_ARGB4444:
            word = TexCodec<TEX_ARGB4444>::Decode(p, HasAlpha(), m_Palette);
            break;
        case TEX_ARGB1555:
            word = TexCodec<TEX_ARGB1555>::Decode(p, HasAlpha(), m_Palette);
            break;
        case TEX_RGB565:
            word = TexCodec<TEX_RGB565>::Decode(p, HasAlpha(), m_Palette);
            break;
        case TEX_RGB888:
            word = TexCodec<TEX_RGB888>::Decode(p, HasAlpha(), m_Palette);
            break;
        default:
            word = TexCodec<TEX_ARGB8888>::Decode(p, HasAlpha(), m_Palette);
            break;
        }
    }
    colour = PixelOf(word);
}

void CTexImage::SetPixel(int x, int y, const TexPixel& colour)
{
    std::uint8_t* p = At(x, y);
    if (!p)
        return;
    if (GetBits() == TEX_PALETTE8) {
        *p = NearestEntry(colour);
        return;
    }
    const std::uint32_t word = WordOf(colour);
    EncodePixels(GetBits(), &word, 1, p);
}

/// The eye sees differences of green best, those of blue least. Of entries as near the first is taken.
std::uint8_t CTexImage::NearestEntry(const TexPixel& colour) const
{
    if (HasAlpha() && colour.alpha <= MOST_TRANSPARENT)
        return 0;
    int nearest = 0;
    int least = std::numeric_limits<int>::max();
    for (int i = HasAlpha() ? 1 : 0; i < PALETTE_ENTRIES; ++i) {
        const std::uint8_t* entry = m_Palette + 3 * i;
        const int distance = Square(colour.blue - entry[0]) + WEIGHT_GREEN * Square(colour.green - entry[1]) +
                             WEIGHT_RED * Square(colour.red - entry[2]);
        if (distance < least) {
            least = distance;
            nearest = i;
        }
    }
    return static_cast<std::uint8_t>(nearest);
}

void CTexImage::GetPixels(std::uint32_t* out) const
{
    if (!IsEmpty() && out)
        DecodePixels(*this, m_pPixels.get(),
                     static_cast<std::size_t>(m_nWidth) * static_cast<std::size_t>(m_nHeight), out);
}

void CTexImage::SetPalette(const std::uint8_t* data)
{
    if (data)
        std::memmove(m_Palette, data, PALETTE_BYTES);
}

void CTexImage::ToggleAlpha()
{
    const AlphaPlace alpha = AlphaPlaceOf(GetBits());
    if (!HasAlpha() || alpha.mask == 0)
        return;
    const std::size_t size = GetDataSize();
    for (std::size_t i = alpha.offset; i < size; i += BytesOfPixel(GetBits()))
        m_pPixels[i] = static_cast<std::uint8_t>(m_pPixels[i] ^ alpha.mask);
}

void CTexImage::CopyEdges(std::uint32_t mask)
{
    if (IsEmpty())
        return;
    const std::size_t pixel = BytesOfPixel(GetBits());
    const std::size_t row = pixel * static_cast<std::size_t>(m_nWidth);
    std::uint8_t* first = m_pPixels.get();
    std::uint8_t* last = first + row * static_cast<std::size_t>(m_nHeight - 1);
    if (mask & EDGE_FIRST_ROW_TO_LAST)
        std::memmove(last, first, row);
    if (mask & EDGE_LAST_ROW_TO_FIRST)
        std::memmove(first, last, row);
    if (mask & EDGE_FIRST_COLUMN_TO_LAST)
        for (std::uint8_t* p = first; p <= last; p += row)
            std::memmove(p + row - pixel, p, pixel);
    if (mask & EDGE_LAST_COLUMN_TO_FIRST)
        for (std::uint8_t* p = first; p <= last; p += row)
            std::memmove(p, p + row - pixel, pixel);
}

/// Of a picture of the same size and bits.
void CTexImage::CopyPixelsOf(const CTexImage& src)
{
    const std::size_t size = GetDataSize();
    std::memmove(m_pPixels.get(), src.m_pPixels.get(), size);
    const AlphaPlace alpha = AlphaPlaceOf(GetBits());
    if (!HasAlpha() || src.HasAlpha() || alpha.mask == 0)
        return;
    for (std::size_t i = alpha.offset; i < size; i += BytesOfPixel(GetBits()))
        m_pPixels[i] = static_cast<std::uint8_t>(m_pPixels[i] | alpha.mask);
}
