#include "commands.h"

#include <png.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <vector>

#include "file_faults.h"
#include "lib/bmpfile.h"
#include "lib/textures.h"
#include "lib/tffile.h"
#include "lib/tgafile.h"
#include "output_file.h"

namespace
{

constexpr int PORTRAIT_WIDTH = 100;
constexpr int PORTRAIT_HEIGHT = 150;
constexpr const char* FORMATS[] = {"5-6-5", "1-5-5-5 with alpha", "4-4-4-4 with alpha"};

CTfFile LoadHeader(const std::string& path, std::uint8_t& format)
{
    CheckTexture(path);
    CTfFile file;
    file.m_sName = FullPath(path);
    if (!file.LoadHeader(&format))
        throw file_fault(path, "is no texture file");
    return file;
}

/// Prints the levels of a chain. False when the file ends within one or one has no pixels.
bool PrintChain(const CTfFile& file, int count, unsigned pixelBytes, std::uint64_t length,
                std::uint64_t& offset)
{
    for (int level = 0; level < count; ++level) {
        const int width = level < 31 ? file.m_nWidth >> level : 0;
        const int height = level < 31 ? file.m_nHeight >> level : 0;
        const std::uint64_t bytes =
            std::uint64_t{pixelBytes} * static_cast<unsigned>(width) * static_cast<unsigned>(height);
        if (bytes == 0) {
            std::printf("  %d: no pixels\n", level);
            return false;
        }
        std::printf("  %d: %d by %d, %ju bytes at %ju\n", level, width, height, std::uintmax_t{bytes},
                    std::uintmax_t{offset});
        offset += bytes;
        if (offset > length)
            return false;
    }
    return true;
}

void WritePng(const CTexImage& image, const COutputFile& out)
{
    std::vector<std::uint8_t> pixels;
    for (int y = 0; y < image.GetHeight(); ++y) {
        for (int x = 0; x < image.GetWidth(); ++x) {
            TexPixel pixel;
            image.GetPixel(pixel, x, y);
            pixels.insert(pixels.end(), {pixel.red, pixel.green, pixel.blue});
            if (image.HasAlpha())
                pixels.push_back(pixel.alpha);
        }
    }
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(image.GetWidth());
    png.height = static_cast<png_uint_32>(image.GetHeight());
    png.format = image.HasAlpha() ? PNG_FORMAT_RGBA : PNG_FORMAT_RGB;
    errno = 0;
    if (!png_image_write_to_file(&png, out.GetPath().c_str(), 0, pixels.data(), 0, nullptr))
        throw out.Fault();
}

/// A stretch divides by the area that a block should have: what it lacks to whole pixels is black.
void TellDarkening(const std::string& in, const CTexImage& picture, int width, int height)
{
    constexpr double PERCENT = 100.0;
    const auto part = [](int from, int to) {
        const int used = from - from % to;
        return static_cast<double>(used) / from;
    };
    const double kept = part(picture.GetWidth(), width) * part(picture.GetHeight(), height);
    if (kept < 1.0)
        std::fprintf(
            stderr,
            "%s: note: %d by %d isn't a whole multiple of %d by %d, and the texture has %d %% of the "
            "brightness\n",
            in.c_str(), picture.GetWidth(), picture.GetHeight(), width, height,
            static_cast<int>(kept * PERCENT));
}

} // namespace

void Info(const std::string& path)
{
    std::uint8_t format = 0;
    const CTfFile file = LoadHeader(path, format);
    const std::uint64_t length = std::filesystem::file_size(path);
    std::uint64_t offset = CTfFile::HEADER_BYTES;
    std::printf("%s: %d by %d pixels, %ju bytes\n", path.c_str(), file.m_nWidth, file.m_nHeight,
                std::uintmax_t{length});
    std::printf("16-bit levels, %s: %d\n", FORMATS[format], file.m_nCount16);
    bool whole = PrintChain(file, file.m_nCount16, 2, length, offset);
    if (whole) {
        std::printf("8-bit levels%s: %d\n", format != 0 ? ", index 0 transparent" : "", file.m_nCount8);
        if (file.m_nCount8 > 0) {
            std::printf("  palette: %zu bytes at %ju\n", CTfFile::PALETTE_BYTES, std::uintmax_t{offset});
            offset += CTfFile::PALETTE_BYTES;
        }
        whole = PrintChain(file, file.m_nCount8, 1, length, offset);
    }
    std::fflush(stdout);
    if (offset > length)
        throw file_fault(path, "ends within that level");
    if (!whole)
        throw file_fault(path, "tells more levels than its size has");
    if (offset < length)
        throw file_fault(path, std::to_string(length - offset) + " bytes follow the last level");
}

void Convert(const std::string& in, const std::string& out, int width, int height)
{
    CheckTextureBmp(in);
    CTexImage picture;
    if (!picture.LoadBmp(FullPath(in).c_str()))
        throw file_fault(in, "can't be read");
    if (width > picture.GetWidth() || height > picture.GetHeight())
        throw file_fault(in, "is " + std::to_string(picture.GetWidth()) + " by " +
                                 std::to_string(picture.GetHeight()) +
                                 " pixels, and can only be made smaller");
    if (width != 0 && height != 0) {
        TellDarkening(in, picture, width, height);
    }
    COutputFile file(out);
    errno = 0;
    if (!ConvertToTexture(FullPath(in).c_str(), file.GetPath().c_str(), width, height))
        throw file.Fault();
    file.Keep();
}

void Export(const std::string& in, int level, const std::string& out, bool eightBit)
{
    std::uint8_t format = 0;
    CTfFile file = LoadHeader(in, format);
    file.m_b16Bit = !eightBit && file.m_nCount16 > 0;
    file.m_nLevel = level;
    const int count = file.m_b16Bit ? file.m_nCount16 : file.m_nCount8;
    if (level < 0 || level >= count)
        throw file_fault(in, "has no level " + std::to_string(level) + " of " + (file.m_b16Bit ? "16" : "8") +
                                 " bits, but " + (count == 0 ? "none" : "0 to " + std::to_string(count - 1)));
    if (!file.Load())
        throw file_fault(in, "ends before or within level " + std::to_string(level));
    COutputFile png(out);
    WritePng(file.m_Image, png);
    png.Keep();
}

void BmpToTga(const std::string& in, const std::string& out, bool portrait)
{
    if (portrait)
        CheckPortrait(in, PORTRAIT_WIDTH, PORTRAIT_HEIGHT);
    else
        CheckTgaBmp(in);
    const std::string source = FullPath(in);
    COutputFile file(out);
    try {
        errno = 0;
        if (portrait) {
            if (!CTgaFile::ImportPicture(source.c_str(), file.GetPath().c_str(), PORTRAIT_WIDTH,
                                         PORTRAIT_HEIGHT))
                throw file.Fault();
        } else {
            CBmpFile bmp;
            if (!bmp.Load(source.c_str()))
                throw file_fault(in, "can't be read");
            if (!CTgaFile().FromBmp(bmp, file.GetPath().c_str()))
                throw file.Fault();
        }
    } catch (const CFileIO::FileException& error) {
        if (std::string(error.what()) == "CFileIO::Read")
            throw file_fault(in, "ends within its pixels");
        throw file.Fault();
    }
    file.Keep();
}
