#pragma once
// Pictures of the game's folder (PNG, TGA, BMP) as 5-6-5 pixels.

#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// A picture file may hold this many bytes; a larger one is refused unread.
constexpr std::size_t PICTURE_MAX_BYTES = std::size_t{128} << 20;

struct Picture {
    int m_nWidth = 0;
    int m_nHeight = 0;
    std::vector<std::uint16_t> m_aPixels; ///< rows without padding
};

/// Decodes a picture by its content; a TGA, which has no mark of its own, is known by the ".tga" of `name`.
/// Sides are 1 to SURFACE_MAX_SIDE, and are checked in the file's header before anything is decoded.
///
/// A picture with an alpha channel (or transparent palette entries): alpha below 128 becomes the key, all
/// else the nearest pixel, and never the key: black becomes SOLID_BLACK. It isn't dithered. A picture
/// without: black is the key, and colours between two levels are dithered in a fixed 8 by 8 pattern. A colour
/// that 5-6-5 can hold comes out exactly.
///
/// Throws std::runtime_error with the reason, in words for whoever made the picture.
Picture DecodePicture(std::span<const std::uint8_t> file, const std::string& name);

/// Reads and decodes `name` through the file layer, as given or else below resource\images. Throws as
/// DecodePicture does.
Picture LoadPicture(const std::string& name);

/// Writes pixels as a PNG to a real path, every channel widened to 8 bits; LoadPicture gives the same pixels
/// back. False on failure.
bool SavePng(const std::string& path, const std::uint16_t* pixels, int width, int height);
