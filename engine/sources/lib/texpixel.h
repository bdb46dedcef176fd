#pragma once
// Pixels of the six formats as words 0xAARRGGBB, one at a time and by the row. For the picture's own code.

#include <cstddef>
#include <cstdint>

#include "lib/teximage.h"

constexpr std::uint32_t WORD_ALPHA = 0xff000000;
constexpr unsigned BITS_PER_BYTE = 8;

constexpr std::uint32_t WordOf(const TexPixel& pixel)
{
    return pixel.blue | static_cast<std::uint32_t>(pixel.green) << 8 |
           static_cast<std::uint32_t>(pixel.red) << 16 | static_cast<std::uint32_t>(pixel.alpha) << 24;
}

constexpr TexPixel PixelOf(std::uint32_t word)
{
    return {static_cast<std::uint8_t>(word), static_cast<std::uint8_t>(word >> 8),
            static_cast<std::uint8_t>(word >> 16), static_cast<std::uint8_t>(word >> 24)};
}

/// 0 for bits that aren't a format's.
constexpr std::size_t BytesOfPixel(unsigned bits)
{
    switch (bits) {
    case TEX_PALETTE8:
    case TEX_ARGB4444:
    case TEX_ARGB1555:
    case TEX_RGB565:
    case TEX_RGB888:
    case TEX_ARGB8888:
        return (bits + BITS_PER_BYTE - 1) / BITS_PER_BYTE;
    default:
        return 0;
    }
}

/// How the format of `Bits` lies in memory. `bAlpha` says that the picture has alpha.
template <unsigned Bits>
struct TexCodec;

template <>
struct TexCodec<TEX_PALETTE8> {
    static std::uint32_t Decode(const std::uint8_t* p, bool bAlpha, const std::uint8_t* palette)
    {
        const std::uint8_t* entry = palette + std::size_t{3} * *p;
        const std::uint32_t alpha = bAlpha && *p == 0 ? 0 : WORD_ALPHA;
        return alpha | WordOf({entry[0], entry[1], entry[2], 0});
    }
};

/// A format of two bytes, the low one first.
template <class Fields>
struct TexCodec16 {
    static std::uint32_t Decode(const std::uint8_t* p, bool bAlpha, const std::uint8_t*)
    {
        return Fields::ToWord(p[0] | static_cast<std::uint32_t>(p[1]) << 8, bAlpha);
    }
    static void Encode(std::uint32_t word, std::uint8_t* p)
    {
        const std::uint32_t value = Fields::FromWord(word);
        p[0] = static_cast<std::uint8_t>(value);
        p[1] = static_cast<std::uint8_t>(value >> 8);
    }
};

struct Fields4444 {
    static std::uint32_t ToWord(std::uint32_t v, bool bAlpha)
    {
        return (v & 0xf) << 4 | (v & 0xf0) << 8 | (v & 0xf00) << 12 |
               (bAlpha ? (v & 0xf000) << 16 : WORD_ALPHA);
    }
    static std::uint32_t FromWord(std::uint32_t w)
    {
        return (w >> 4 & 0xf) | (w >> 8 & 0xf0) | (w >> 12 & 0xf00) | (w >> 16 & 0xf000);
    }
};

struct Fields1555 {
    static constexpr std::uint32_t FIRST_OPAQUE = 0x41;
    static std::uint32_t ToWord(std::uint32_t v, bool bAlpha)
    {
        return (v & 0x1f) << 3 | (v & 0x3e0) << 6 | (v & 0x7c00) << 9 |
               ((v & 0x8000) != 0 || !bAlpha ? WORD_ALPHA : 0);
    }
    static std::uint32_t FromWord(std::uint32_t w)
    {
        return (w >> 3 & 0x1f) | (w >> 6 & 0x3e0) | (w >> 9 & 0x7c00) |
               (w >> 24 >= FIRST_OPAQUE ? 0x8000U : 0U);
    }
};

struct Fields565 {
    static std::uint32_t ToWord(std::uint32_t v, bool)
    {
        return (v & 0x1f) << 3 | (v & 0x7e0) << 5 | (v & 0xf800) << 8 | WORD_ALPHA;
    }
    static std::uint32_t FromWord(std::uint32_t w)
    {
        return (w >> 3 & 0x1f) | (w >> 5 & 0x7e0) | (w >> 8 & 0xf800);
    }
};

template <>
struct TexCodec<TEX_ARGB4444> : TexCodec16<Fields4444> {
};
template <>
struct TexCodec<TEX_ARGB1555> : TexCodec16<Fields1555> {
};
template <>
struct TexCodec<TEX_RGB565> : TexCodec16<Fields565> {
};

template <>
struct TexCodec<TEX_RGB888> {
    static std::uint32_t Decode(const std::uint8_t* p, bool, const std::uint8_t*)
    {
        return WORD_ALPHA | WordOf({p[0], p[1], p[2], 0});
    }
    static void Encode(std::uint32_t word, std::uint8_t* p)
    {
        p[0] = static_cast<std::uint8_t>(word);
        p[1] = static_cast<std::uint8_t>(word >> 8);
        p[2] = static_cast<std::uint8_t>(word >> 16);
    }
};

template <>
struct TexCodec<TEX_ARGB8888> {
    static std::uint32_t Decode(const std::uint8_t* p, bool, const std::uint8_t*)
    {
        return WordOf({p[0], p[1], p[2], p[3]});
    }
    static void Encode(std::uint32_t word, std::uint8_t* p)
    {
        p[0] = static_cast<std::uint8_t>(word);
        p[1] = static_cast<std::uint8_t>(word >> 8);
        p[2] = static_cast<std::uint8_t>(word >> 16);
        p[3] = static_cast<std::uint8_t>(word >> 24);
    }
};

/// `count` pixels from `in`, which lie as in `image`, as words.
void DecodePixels(const CTexImage& image, const std::uint8_t* in, std::size_t count, std::uint32_t* out);
/// Words as pixels of `bits`, which is not a palette's.
void EncodePixels(unsigned bits, const std::uint32_t* in, std::size_t count, std::uint8_t* out);
