#include "picture.h"

#include <cmath>
#include <png.h>
#include <stdexcept>

namespace
{
constexpr png_uint_32 MAX_SIDE = 8192; ///< no picture of the game comes near it

std::uint8_t MixChannel(std::uint8_t under, std::uint8_t over, double amount)
{
    return static_cast<std::uint8_t>(std::lround(under + (over - under) * amount));
}
} // namespace

SColour Mix(SColour under, SColour over, double amount)
{
    return {MixChannel(under.r, over.r, amount), MixChannel(under.g, over.g, amount),
            MixChannel(under.b, over.b, amount)};
}

CPicture::CPicture(int width, int height) : m_nWidth(width), m_nHeight(height), m_Pixels(Place(0, height)) {}

CPicture CPicture::Read(const std::string& file)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, file.c_str())) {
        throw std::runtime_error(file + ": " + image.message);
    }
    if (image.width > MAX_SIDE || image.height > MAX_SIDE) {
        png_image_free(&image);
        throw std::runtime_error(file + ": the picture is too large");
    }
    image.format = PNG_FORMAT_RGBA;
    CPicture picture(static_cast<int>(image.width), static_cast<int>(image.height));
    if (!png_image_finish_read(&image, nullptr, picture.m_Pixels.data(), 0, nullptr)) {
        throw std::runtime_error(file + ": " + image.message);
    }
    return picture;
}

void CPicture::Write(const std::string& file) const
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(m_nWidth);
    image.height = static_cast<png_uint_32>(m_nHeight);
    image.format = PNG_FORMAT_RGBA;
    if (!png_image_write_to_file(&image, file.c_str(), 0, m_Pixels.data(), 0, nullptr)) {
        throw std::runtime_error(file + ": " + image.message);
    }
}

SColour CPicture::Get(int x, int y) const
{
    const std::uint8_t* pixel = &m_Pixels[Place(x, y)];
    return {pixel[0], pixel[1], pixel[2]};
}

void CPicture::Set(int x, int y, SColour colour)
{
    if (!Contains(x, y)) {
        return;
    }
    std::uint8_t* pixel = &m_Pixels[Place(x, y)];
    pixel[0] = colour.r;
    pixel[1] = colour.g;
    pixel[2] = colour.b;
    pixel[ALPHA] = 255;
}
