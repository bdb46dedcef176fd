#include "lib/textures.h"

#include <algorithm>
#include <array>
#include <bit>

#include "lib/tffile.h"

namespace
{

constexpr int MOST_LEVELS = 16;

/// The reader of textures takes no larger ones.
bool CanBeRead(int width, int height)
{
    return width <= CTexImage::MAX_FILE_SIDE && height <= CTexImage::MAX_FILE_SIDE;
}

} // namespace

int LevelCount(const CTexImage& image)
{
    const auto side = static_cast<unsigned>(std::min(image.GetWidth(), image.GetHeight()));
    const int bits = std::min(static_cast<int>(std::bit_width(side)), MOST_LEVELS);
    return std::clamp(bits - 1, 1, MOST_LEVELS);
}

bool SaveAsTexture(const CTexImage& image, const char* tfPath)
{
    if (!tfPath || !CanBeRead(image.GetWidth(), image.GetHeight()))
        return false;
    CTexImage full;
    if (!full.Alloc(image.GetWidth(), image.GetHeight(), TEX_ARGB8888 | (image.GetFormat() & TEX_ALPHA)) ||
        !full.ConvertFrom(image))
        return false;
    const std::uint32_t format = image.HasAlpha() ? TEX_ARGB4444 | TEX_ALPHA : std::uint32_t{TEX_RGB565};
    std::array<CTexImage, MOST_LEVELS> levels;
    int count = 0;
    for (; count < LevelCount(image); ++count) {
        // Each level comes straight from the full picture, so that no rounding adds up along the chain.
        CTexImage shrunk;
        if (count > 0 && !shrunk.ShrinkFrom(full, count))
            return false;
        const CTexImage& work = count > 0 ? shrunk : full;
        if (work.IsEmpty())
            break;
        CTexImage& level = levels[static_cast<std::size_t>(count)];
        if (!level.Alloc(work.GetWidth(), work.GetHeight(), format) || !level.ConvertFrom(work))
            return false;
    }
    CTfFile file;
    file.m_sName = tfPath;
    return file.Write(levels.data(), nullptr, count, 0);
}

bool ConvertToTexture(const char* bmpPath, const char* tfPath, int width, int height)
{
    CTexImage picture;
    if (!picture.LoadBmp(bmpPath))
        return false;
    if (width == 0 || height == 0 || (width == picture.GetWidth() && height == picture.GetHeight()))
        return SaveAsTexture(picture, tfPath);
    CTexImage stretched;
    return CanBeRead(width, height) && stretched.StretchFrom(width, height, picture) &&
           SaveAsTexture(stretched, tfPath);
}
