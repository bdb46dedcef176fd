// Pictures from unknown hands through every conversion. The first three bytes of the input choose sizes and
// format; the rest is a bitmap file.

#include <vector>

#include "frame.h"
#include "lib/reducecolours.h"
#include "lib/textures.h"
#include "lib/tffile.h"

namespace
{

constexpr std::uint32_t FORMATS[] = {
    TEX_PALETTE8, TEX_PALETTE8 | TEX_ALPHA, TEX_ARGB4444, TEX_ARGB4444 | TEX_ALPHA,
    TEX_ARGB1555, TEX_ARGB1555 | TEX_ALPHA, TEX_RGB565,   TEX_RGB888,
    TEX_ARGB8888, TEX_ARGB8888 | TEX_ALPHA};
constexpr std::size_t CHOICES = 3;
constexpr std::uint8_t MOST_COLOURS = 32;

std::vector<std::uint8_t> Reduce(const CTexImage& picture)
{
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(picture.GetWidth()) *
                                      static_cast<std::size_t>(picture.GetHeight()));
    picture.GetPixels(pixels.data());
    std::vector<std::uint8_t> palette(std::size_t{4} * MOST_COLOURS);
    const int used =
        ReduceColours(pixels.data(), static_cast<int>(pixels.size()), palette.data(), MOST_COLOURS);
    Require(used > 0 && used <= MOST_COLOURS, "the number of colours");
    palette.resize(CTexImage::PALETTE_BYTES);
    return palette;
}

void Save(const CTexImage& image)
{
    Require(SaveAsTexture(image, "out.tf"), "saving");
    CTfFile file;
    file.m_sName = "out.tf";
    Require(file.LoadHeader() && file.m_nCount16 == LevelCount(image) && file.m_nCount8 == 0, "the header");
    for (file.m_nLevel = 0; file.m_nLevel < file.m_nCount16; ++file.m_nLevel)
        Require(file.Load(), "each level");
}

void Convert(const CTexImage& picture, int w, int h, std::uint32_t format)
{
    CTexImage other;
    Require(other.Alloc(w, h, format), "room");
    other.SetPalette(Reduce(picture).data());
    Require(other.ConvertFrom(picture) && other.GetWidth() == w && other.GetHeight() == h &&
                (other.GetFormat() & TEX_BITS) == (format & TEX_BITS),
            "the conversion");
    CTexImage back;
    Require(back.Alloc(w, h, TEX_ARGB8888 | TEX_ALPHA) && back.ConvertFrom(other), "the way back");
    for (int shift = 0; shift < 4; ++shift) {
        CTexImage shrunk;
        Require(shrunk.ShrinkFrom(other, shift) && shrunk.GetWidth() == (h >> shift ? w >> shift : 0),
                "shrinking");
        shrunk.CopyEdges(static_cast<std::uint32_t>(w));
        shrunk.ToggleAlpha();
    }
    Save(picture);
    Save(back); // with alpha
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < CHOICES)
        return 0;
    PutFile("in.bmp", data + CHOICES, size - CHOICES);
    CTexImage picture;
    const bool loaded = picture.LoadBmp("in.bmp");
    Require(ConvertToTexture("in.bmp", "out.tf", data[0], data[1]) == loaded, "the conversion as a whole");
    if (loaded)
        Convert(picture, data[0] + 1, data[1] + 1, FORMATS[data[2] % std::size(FORMATS)]);
    return 0;
}
