#include "render/picture_header.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <stdexcept>

namespace
{

using Bytes = std::span<const std::uint8_t>;

std::int64_t Little16(Bytes file, std::size_t at)
{
    return file[at] | (file[at + 1] << 8);
}

std::int64_t Little32(Bytes file, std::size_t at)
{
    return Little16(file, at) | (Little16(file, at + 2) << 16);
}

std::int64_t Big32(Bytes file, std::size_t at)
{
    return (std::int64_t{file[at]} << 24) | (file[at + 1] << 16) | (file[at + 2] << 8) | file[at + 3];
}

template <std::size_t N>
bool HasBytesAt(Bytes file, std::size_t at, const std::array<std::uint8_t, N>& bytes)
{
    return file.size() >= at + N &&
           std::equal(bytes.begin(), bytes.end(), file.begin() + static_cast<std::ptrdiff_t>(at));
}

constexpr std::array<std::uint8_t, 8> PNG_MARK{0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
constexpr std::array<std::uint8_t, 4> PNG_HEADER_CHUNK{'I', 'H', 'D', 'R'};
constexpr std::array<std::uint8_t, 2> BMP_MARK{'B', 'M'};

PictureHeader ReadPng(Bytes file)
{
    constexpr std::size_t CHUNK_NAME_AT = 12;
    constexpr std::size_t WIDTH_AT = 16;
    constexpr std::size_t HEIGHT_AT = 20;
    if (file.size() < HEIGHT_AT + 4 || !HasBytesAt(file, CHUNK_NAME_AT, PNG_HEADER_CHUNK))
        throw std::runtime_error("the PNG header is damaged");
    return {PictureKind::Png, Big32(file, WIDTH_AT), Big32(file, HEIGHT_AT)};
}

PictureHeader ReadBmp(Bytes file)
{
    constexpr std::size_t HEADER_SIZE_AT = 14;
    constexpr std::size_t WIDTH_AT = 18;
    constexpr std::int64_t OLD_HEADER_SIZE = 12; // 16-bit sides
    constexpr std::int64_t HEADER_SIZE = 40;
    if (file.size() < HEADER_SIZE_AT + 4)
        throw std::runtime_error("the BMP header is cut off");
    const std::int64_t size = Little32(file, HEADER_SIZE_AT);
    if ((size != OLD_HEADER_SIZE && size < HEADER_SIZE) ||
        static_cast<std::int64_t>(file.size()) - static_cast<std::int64_t>(HEADER_SIZE_AT) < size)
        throw std::runtime_error("the BMP header is damaged");
    if (size == OLD_HEADER_SIZE)
        return {PictureKind::Bmp, Little16(file, WIDTH_AT), Little16(file, WIDTH_AT + 2)};
    // A negative height means rows from the top.
    const auto width = static_cast<std::int32_t>(Little32(file, WIDTH_AT));
    const auto height = static_cast<std::int32_t>(Little32(file, WIDTH_AT + 4));
    return {PictureKind::Bmp, width, std::abs(std::int64_t{height})};
}

bool IsKnownTga(std::int64_t type, std::int64_t depth, std::int64_t paletteLength, std::int64_t paletteDepth)
{
    constexpr std::int64_t PACKED = 8; // bit of the type: run lengths
    constexpr std::int64_t INDEXED = 1;
    constexpr std::int64_t COLOUR = 2;
    constexpr std::int64_t GREY = 3;
    switch (type & ~PACKED) {
    case INDEXED:
        return depth == 8 && paletteLength >= 1 && paletteLength <= 256 &&
               (paletteDepth == 16 || paletteDepth == 24 || paletteDepth == 32);
    case COLOUR:
        return depth == 15 || depth == 16 || depth == 24 || depth == 32;
    case GREY:
        return depth == 8;
    default:
        return false;
    }
}

PictureHeader ReadTga(Bytes file)
{
    constexpr std::size_t TYPE_AT = 2;
    constexpr std::size_t PALETTE_LENGTH_AT = 5;
    constexpr std::size_t PALETTE_DEPTH_AT = 7;
    constexpr std::size_t WIDTH_AT = 12;
    constexpr std::size_t DEPTH_AT = 16;
    constexpr std::size_t HEADER_SIZE = 18;
    if (file.size() < HEADER_SIZE)
        throw std::runtime_error("the TGA header is cut off");
    if (!IsKnownTga(file[TYPE_AT], file[DEPTH_AT], Little16(file, PALETTE_LENGTH_AT), file[PALETTE_DEPTH_AT]))
        throw std::runtime_error("this kind of TGA isn't known");
    return {PictureKind::Tga, Little16(file, WIDTH_AT), Little16(file, WIDTH_AT + 2)};
}

bool EndsInTga(const std::string& name)
{
    constexpr std::array<char, 4> ENDING{'.', 't', 'g', 'a'};
    return name.size() >= ENDING.size() &&
           std::equal(ENDING.rbegin(), ENDING.rend(), name.rbegin(), [](char wanted, char found) {
               return wanted == std::tolower(static_cast<unsigned char>(found));
           });
}

} // namespace

PictureHeader ReadPictureHeader(Bytes file, const std::string& name)
{
    if (file.empty())
        throw std::runtime_error("the file is empty");
    if (HasBytesAt(file, 0, PNG_MARK))
        return ReadPng(file);
    if (HasBytesAt(file, 0, BMP_MARK))
        return ReadBmp(file);
    if (EndsInTga(name))
        return ReadTga(file);
    throw std::runtime_error("neither PNG nor BMP nor TGA");
}
