#pragma once
// What a picture file says of itself, read before a decoder sees it.

#include <cstdint>
#include <span>
#include <string>

enum class PictureKind { Png, Bmp, Tga };

struct PictureHeader {
    PictureKind m_eKind = PictureKind::Png;
    std::int64_t m_nWidth = 0; ///< as the file has it, not yet checked
    std::int64_t m_nHeight = 0;
};

/// Throws std::runtime_error with the reason when the file is none of the three kinds or its header is cut
/// off or nonsense.
PictureHeader ReadPictureHeader(std::span<const std::uint8_t> file, const std::string& name);
