#include "file_faults.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <limits>
#include <stdexcept>

#include "lib/bmpfile.h"
#include "lib/bytes.h"
#include "lib/tffile.h"
#include "lib/tgafile.h"
#include "output_file.h"

namespace
{

constexpr std::uint32_t BMP_HEAD_BYTES = 54;
constexpr std::uint32_t BMP_FILE_HEADER_BYTES = 14;
constexpr std::uint32_t BMP_INFO_BYTES = 40;
constexpr std::uint32_t MOST_COLOURS = CBmpFile::PALETTE_SIZE;
constexpr std::int64_t MAX_SIDE = CBmpFile::MAX_SIDE;
constexpr int TRUE_COLOUR_BITS = 24;
constexpr int ALPHA_BITS = 32;

constexpr const char* CUT = "ends within its pixels";
constexpr std::size_t TGA_HEAD_BYTES = 18;
constexpr std::uint64_t TGA_COLOUR_BYTES = 3;
constexpr std::uint8_t TGA_PACKED = 8;         ///< this bit is set in each type with packed runs
constexpr std::uint64_t TGA_LONGEST_RUN = 128; ///< pixels

using Head = std::array<std::uint8_t, BMP_HEAD_BYTES>;

/// The first bytes of a file, zero behind its end.
struct Start {
    Head head = {};
    std::uint32_t length = 0; ///< of the whole file
};

std::string Sides(std::int64_t width, std::int64_t height)
{
    return std::to_string(width) + " by " + std::to_string(height) + " pixels";
}

Start ReadStart(const std::string& path)
{
    CheckReadable(path);
    CFileIO file(FullPath(path).c_str(), CFileIO::READ_EXISTING);
    if (!file.IsOpen())
        throw file_fault(path, "is being written by another program");
    try {
        Start start;
        start.length = file.GetLength();
        file.Read(start.head.data(), static_cast<std::uint32_t>(start.head.size()));
        return start;
    } catch (const CFileIO::FileException&) {
        throw file_fault(path, "can't be read");
    }
}

bool IsBmp(const Head& head)
{
    return head[0] == 'B' && head[1] == 'M';
}

std::string BmpFault(const Start& start)
{
    const auto& [head, length] = start;
    const std::uint32_t told = Get32(&head[2]);
    const std::uint32_t offset = Get32(&head[10]);
    const std::uint32_t info = Get32(&head[14]);
    const std::int64_t width = static_cast<std::int32_t>(Get32(&head[18]));
    const std::int64_t height = static_cast<std::int32_t>(Get32(&head[22]));
    if (!IsBmp(head))
        return "is no BMP file";
    if (length < BMP_HEAD_BYTES)
        return "ends within its header";
    if (told != length)
        return "has " + std::to_string(length) + " bytes, but its header tells " + std::to_string(told);
    if (info < BMP_INFO_BYTES)
        return "has an info header of " + std::to_string(info) + " bytes; save it as a Windows BMP";
    if (Get16(&head[26]) != 1)
        return "has " + std::to_string(Get16(&head[26])) + " planes; there must be one";
    if (Get32(&head[30]) != 0)
        return "is compressed or has colour masks; save it uncompressed";
    if (height < 0)
        return "is stored from the top down; save it from the bottom up";
    if (width < 1 || height < 1 || width > MAX_SIDE || height > MAX_SIDE)
        return "is " + Sides(width, height) + "; a side has 1 to " + std::to_string(MAX_SIDE);
    const std::uint64_t palette = std::uint64_t{BMP_FILE_HEADER_BYTES} + info;
    if (offset < palette || offset > length)
        return "tells that its pixels begin at byte " + std::to_string(offset) + ", where they can't";
    if ((offset - palette) / 4 > MOST_COLOURS)
        return "has a palette of more than 256 colours";
    // The padding of the last row may be missing.
    const std::uint64_t bits = static_cast<std::uint64_t>(width) * Get16(&head[28]);
    if ((bits + 31) / 32 * 4 * static_cast<std::uint64_t>(height - 1) + (bits + 7) / 8 > length - offset)
        return CUT;
    return {};
}

/// What lies between a BMP's headers and its pixels, in colours.
std::uint32_t ColoursOf(const Head& head)
{
    return (Get32(&head[10]) - BMP_FILE_HEADER_BYTES - Get32(&head[14])) / 4;
}

/// Why no TGA with rows of `bits` bits can be made of a BMP of 4, 8 or 24.
std::string TgaFault(const Head& head, int bits)
{
    const bool palette = ColoursOf(head) != 0;
    if (Get16(&head[28]) != TRUE_COLOUR_BITS && !palette)
        return "has no palette";
    if (bits == TRUE_COLOUR_BITS && palette)
        return "has a palette that its 24 bits per pixel don't use; save it without";
    return {};
}

void LoadTga(const std::string& path, const Head& head, CTgaFile& tga)
{
    try {
        if (!tga.Load(FullPath(path).c_str()))
            throw file_fault(path, "is neither a BMP nor a TGA file");
    } catch (const CFileIO::FileException&) {
        throw file_fault(path, "can't be read");
    } catch (const file_fault&) {
        throw;
    } catch (const std::runtime_error&) {
        throw file_fault(path, "has a palette of " + std::to_string(head[7]) +
                                   " bits per colour; there must be 24");
    }
}

/// What the game would take as a portrait, and yet make or copy none that can be seen.
std::string PortraitFault(const Start& start, const CTgaFile& tga)
{
    const auto& [head, length] = start;
    const bool packed = (head[2] & TGA_PACKED) != 0;
    const auto pixels = static_cast<std::uint64_t>(tga.GetWidth()) * static_cast<unsigned>(tga.GetHeight());
    const auto bytes = static_cast<unsigned>(tga.GetPixelDepth()) / 8;
    if (head[2] == 0)
        return "is a TGA file without a picture";
    if (tga.GetPixelDepth() == TRUE_COLOUR_BITS) {
        if (packed)
            return "is packed; save it uncompressed";
        if (head[0] != 0)
            return "has an ID field; save it without";
        if (head[1] != 0)
            return "has a palette that its 24 bits per pixel don't use; save it without";
    }
    const std::uint64_t map = head[1] != 0 ? Get16(&head[5]) * TGA_COLOUR_BYTES : 0;
    const std::uint64_t least =
        packed ? (pixels + TGA_LONGEST_RUN - 1) / TGA_LONGEST_RUN * (1 + bytes) : pixels * bytes;
    return TGA_HEAD_BYTES + head[0] + map + least > length ? CUT : "";
}

} // namespace

std::string FullPath(const std::string& path)
{
    std::error_code error;
    const std::filesystem::path full = std::filesystem::absolute(path, error);
    const std::filesystem::path real = std::filesystem::weakly_canonical(full, error);
    // What can't be followed can't be opened either, which is told then.
    return error ? full.string() : real.string();
}

void CheckName(const std::string& path)
{
    if (FullPath(path).find('\\') != std::string::npos)
        throw file_fault(path, "has a backslash in its full path, which would be taken for a slash");
}

void CheckReadable(const std::string& path)
{
    struct stat info {
    };
    const bool there = stat(path.c_str(), &info) == 0;
    if (there && !S_ISREG(info.st_mode))
        throw file_fault(path, S_ISDIR(info.st_mode) ? "is a folder" : "isn't a file");
    const int fd = there ? open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK) : -1;
    if (fd < 0)
        throw file_fault(path, std::string("can't be opened: ") + std::strerror(errno));
    close(fd);
    CheckName(path);
    if (info.st_size >= std::numeric_limits<std::uint32_t>::max())
        throw file_fault(path, "has " + std::to_string(info.st_size) + " bytes, which are too many");
}

void CheckBmp(const std::string& path)
{
    const std::string fault = BmpFault(ReadStart(path));
    if (!fault.empty())
        throw file_fault(path, fault);
}

void CheckTgaBmp(const std::string& path)
{
    CheckBmp(path);
    const Head head = ReadStart(path).head;
    const int bits = Get16(&head[28]);
    if (bits != 4 && bits != 8 && bits != TRUE_COLOUR_BITS)
        throw file_fault(path, "has " + std::to_string(bits) + " bits per pixel; 4, 8 or 24 can be taken");
    const std::string fault = TgaFault(head, bits);
    if (!fault.empty())
        throw file_fault(path, fault);
}

void CheckTextureBmp(const std::string& path)
{
    CheckBmp(path);
    const Head head = ReadStart(path).head;
    if (Get16(&head[28]) != TRUE_COLOUR_BITS)
        throw file_fault(path, "has " + std::to_string(Get16(&head[28])) + " bits per pixel; 24 are needed");
    // The reader of textures' pictures takes the pixels to follow the plain header.
    if (Get32(&head[14]) != BMP_INFO_BYTES || Get32(&head[10]) != BMP_HEAD_BYTES)
        throw file_fault(path, "has more than the plain header of 54 bytes before its pixels; save it as a "
                               "BMP of version 3, without colour space and palette");
}

void CheckPortrait(const std::string& path, int width, int height)
{
    const Start start = ReadStart(path);
    const bool bmp = IsBmp(start.head);
    CTgaFile tga;
    if (bmp)
        CheckBmp(path);
    else
        LoadTga(path, start.head, tga);
    const int realWidth = bmp ? static_cast<int>(Get32(&start.head[18])) : tga.GetWidth();
    const int realHeight = bmp ? static_cast<int>(Get32(&start.head[22])) : tga.GetHeight();
    const int bits = bmp ? Get16(&start.head[28]) : tga.GetPixelDepth();
    if (realWidth != width || realHeight != height)
        throw file_fault(path,
                         "is " + Sides(realWidth, realHeight) + "; a portrait has " + Sides(width, height));
    if (bits != 8 && bits != TRUE_COLOUR_BITS && bits != (bmp ? 4 : ALPHA_BITS))
        throw file_fault(path,
                         "has " + std::to_string(bits) + " bits per pixel, which a portrait can't have");
    const std::string fault =
        bmp ? TgaFault(start.head, bits == TRUE_COLOUR_BITS ? ALPHA_BITS : bits) : PortraitFault(start, tga);
    if (!fault.empty())
        throw file_fault(path, fault);
}

void CheckTexture(const std::string& path)
{
    const auto [head, length] = ReadStart(path);
    const std::int64_t width = Get32(&head[8]);
    const std::int64_t height = Get32(&head[12]);
    if (length < CTfFile::HEADER_BYTES)
        throw file_fault(path, "ends within its header");
    if (head[5] > CTfFile::TF_ARGB4444)
        throw file_fault(path, "is no texture file: its pixel format is " + std::to_string(head[5]));
    if (width < 1 || height < 1 || width > MAX_SIDE || height > MAX_SIDE)
        throw file_fault(path, "is no texture file: it tells " + Sides(width, height));
}
