#include "lib/texpixel.h"

namespace
{

template <unsigned Bits>
void DecodeAs(const CTexImage& image, const std::uint8_t* in, std::size_t count, std::uint32_t* out)
{
    const bool alpha = image.HasAlpha();
    const std::uint8_t* palette = image.GetPaletteData();
    for (std::size_t i = 0; i < count; ++i)
        out[i] = TexCodec<Bits>::Decode(in + i * BytesOfPixel(Bits), alpha, palette);
}

template <unsigned Bits>
void EncodeAs(const std::uint32_t* in, std::size_t count, std::uint8_t* out)
{
    for (std::size_t i = 0; i < count; ++i)
        TexCodec<Bits>::Encode(in[i], out + i * BytesOfPixel(Bits));
}

} // namespace

void DecodePixels(const CTexImage& image, const std::uint8_t* in, std::size_t count, std::uint32_t* out)
{
    switch (image.GetBits()) {
    case TEX_PALETTE8:
        return DecodeAs<TEX_PALETTE8>(image, in, count, out);
    case TEX_ARGB4444:
        return DecodeAs<TEX_ARGB4444>(image, in, count, out);
    case TEX_ARGB1555:
        return DecodeAs<TEX_ARGB1555>(image, in, count, out);
    case TEX_RGB565:
        return DecodeAs<TEX_RGB565>(image, in, count, out);
    case TEX_RGB888:
        return DecodeAs<TEX_RGB888>(image, in, count, out);
    case TEX_ARGB8888:
        return DecodeAs<TEX_ARGB8888>(image, in, count, out);
    default:
        return;
    }
}

void EncodePixels(unsigned bits, const std::uint32_t* in, std::size_t count, std::uint8_t* out)
{
    switch (bits) {
    case TEX_ARGB4444:
        return EncodeAs<TEX_ARGB4444>(in, count, out);
    case TEX_ARGB1555:
        return EncodeAs<TEX_ARGB1555>(in, count, out);
    case TEX_RGB565:
        return EncodeAs<TEX_RGB565>(in, count, out);
    case TEX_RGB888:
        return EncodeAs<TEX_RGB888>(in, count, out);
    case TEX_ARGB8888:
        return EncodeAs<TEX_ARGB8888>(in, count, out);
    default:
        return;
    }
}
