#include "render/picture.h"

#include <filesystem>
#include <limits>
#include <memory>
#include <stdexcept>

#include <SDL.h>
#include <SDL_image.h>

#include "platform/files.h"
#include "render/dither.h"
#include "render/picture_header.h"
#include "render/pixel565.h"
#include "render/surface.h"

namespace
{

constexpr const char* PICTURE_FOLDER = "resource\\images\\";
constexpr int ALPHA_SOLID = 128; // from here on a pixel counts as opaque
constexpr int BYTES_PER_PIXEL = 4;

struct FreeSdlSurface {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};
using SdlSurface = std::unique_ptr<SDL_Surface, FreeSdlSurface>;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

std::string SizeText(std::int64_t width, std::int64_t height)
{
    return std::to_string(width) + " by " + std::to_string(height);
}

void CheckSize(std::int64_t width, std::int64_t height)
{
    if (width < 1 || height < 1 || width > SURFACE_MAX_SIDE || height > SURFACE_MAX_SIDE)
        throw std::runtime_error("a size of " + SizeText(width, height) + ", allowed is 1 to " +
                                 std::to_string(SURFACE_MAX_SIDE));
}

SdlSurface Decode(std::span<const std::uint8_t> file, PictureKind kind)
{
    SDL_RWops* const reader = SDL_RWFromConstMem(file.data(), static_cast<int>(file.size()));
    if (reader == nullptr)
        throw std::runtime_error(SDL_GetError());
    SdlSurface decoded;
    switch (kind) {
    case PictureKind::Png:
        decoded.reset(IMG_LoadPNG_RW(reader));
        break;
    case PictureKind::Bmp:
        decoded.reset(SDL_LoadBMP_RW(reader, 0));
        break;
    case PictureKind::Tga:
        decoded.reset(IMG_LoadTGA_RW(reader));
        break;
    }
    SDL_RWclose(reader);
    if (!decoded)
        throw std::runtime_error(SDL_GetError());
    CheckSize(decoded->w, decoded->h);
    return decoded;
}

bool HasAlpha(SDL_Surface* surface)
{
    if (surface->format->Amask != 0 || SDL_HasColorKey(surface))
        return true;
    const SDL_Palette* const palette = surface->format->palette;
    for (int i = 0; palette != nullptr && i < palette->ncolors; ++i)
        if (palette->colors[i].a != SDL_ALPHA_OPAQUE)
            return true;
    return false;
}

std::uint16_t CutOutPixel(const std::uint8_t* rgba)
{
    if (rgba[3] < ALPHA_SOLID)
        return KEY_PIXEL;
    const std::uint16_t pixel = NearestPixel(rgba[0], rgba[1], rgba[2]);
    return pixel == KEY_PIXEL ? SOLID_BLACK : pixel;
}

Picture Convert(const SDL_Surface& rgba, bool hasAlpha)
{
    Picture picture{rgba.w, rgba.h, {}};
    picture.m_aPixels.reserve(static_cast<std::size_t>(rgba.w) * static_cast<std::size_t>(rgba.h));
    for (int y = 0; y < rgba.h; ++y) {
        const std::uint8_t* from =
            static_cast<const std::uint8_t*>(rgba.pixels) + std::ptrdiff_t{y} * rgba.pitch;
        for (int x = 0; x < rgba.w; ++x, from += BYTES_PER_PIXEL)
            picture.m_aPixels.push_back(hasAlpha ? CutOutPixel(from)
                                                 : DitheredPixel(from[0], from[1], from[2], x, y));
    }
    return picture;
}

std::vector<std::uint8_t> ReadWhole(const char* path)
{
    const std::unique_ptr<std::FILE, CloseFile> file(PlatformOpenFile(path, "rb"));
    if (!file)
        throw std::runtime_error("the file can't be opened");
    if (std::fseek(file.get(), 0, SEEK_END) != 0)
        throw std::runtime_error("the file can't be read");
    const long size = std::ftell(file.get());
    if (size < 0 || std::fseek(file.get(), 0, SEEK_SET) != 0)
        throw std::runtime_error("the file can't be read");
    if (static_cast<unsigned long>(size) > PICTURE_MAX_BYTES)
        throw std::runtime_error("the file is larger than " + std::to_string(PICTURE_MAX_BYTES >> 20) +
                                 " MiB");
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    if (std::fread(bytes.data(), 1, bytes.size(), file.get()) != bytes.size())
        throw std::runtime_error("the file can't be read");
    return bytes;
}

bool IsFile(const std::string& path)
{
    const std::string real = PlatformResolveRead(path.c_str());
    std::error_code error;
    return !real.empty() && std::filesystem::is_regular_file(real, error);
}

} // namespace

Picture DecodePicture(std::span<const std::uint8_t> file, const std::string& name)
{
    if (file.size() > PICTURE_MAX_BYTES)
        throw std::runtime_error("the file is too large");
    const PictureHeader header = ReadPictureHeader(file, name);
    CheckSize(header.m_nWidth, header.m_nHeight);
    const SdlSurface decoded = Decode(file, header.m_eKind);
    const bool hasAlpha = HasAlpha(decoded.get());
    const SdlSurface rgba(SDL_ConvertSurfaceFormat(decoded.get(), SDL_PIXELFORMAT_RGBA32, 0));
    if (!rgba)
        throw std::runtime_error(SDL_GetError());
    return Convert(*rgba, hasAlpha);
}

Picture LoadPicture(const std::string& name)
{
    if (name.empty())
        throw std::runtime_error("no name is given");
    for (const std::string& path : {name, PICTURE_FOLDER + name})
        if (IsFile(path))
            return DecodePicture(ReadWhole(path.c_str()), name);
    throw std::runtime_error("there is no such file");
}

bool SavePng(const std::string& path, const std::uint16_t* pixels, int width, int height)
{
    if (pixels == nullptr || width < 1 || height < 1)
        return false;
    const SdlSurface picture(SDL_CreateRGBSurfaceWithFormat(0, width, height, 24, SDL_PIXELFORMAT_RGB24));
    if (!picture)
        return false;
    for (int y = 0; y < height; ++y) {
        std::uint8_t* out = static_cast<std::uint8_t*>(picture->pixels) + std::ptrdiff_t{y} * picture->pitch;
        for (int x = 0; x < width; ++x) {
            const COLORREF colour = ColourFromPixel(*pixels++);
            *out++ = static_cast<std::uint8_t>(colour);
            *out++ = static_cast<std::uint8_t>(colour >> 8);
            *out++ = static_cast<std::uint8_t>(colour >> 16);
        }
    }
    return IMG_SavePNG(picture.get(), path.c_str()) == 0;
}
