#pragma once
// A writer of uncompressed TGA files, made from BMPs and from other TGAs, and a reader of their headers. All
// results are false on failure, without a message; the writers leave no file then.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "lib/fileio.h"

class CBmpFile;

class CTgaFile : public CFileIO
{
  public:
    static constexpr int MAX_SIDE = 16384; ///< pixels; a larger picture is refused
    static constexpr int PALETTE_SIZE = 256;

    CTgaFile() = default;
    virtual ~CTgaFile() = default;

    /// Reads header and palette; the file stays open at the pixels, unless there is an ID field, which isn't
    /// skipped. False, and closed, for a short file, a colour map of another type than 0 and 1 or with more
    /// than 256 entries, a side above MAX_SIDE. Throws std::runtime_error for a colour map that hasn't 24
    /// bits, and FileException, closed as well.
    bool Load(const char* path);
    int GetWidth() const { return m_Header.width; }
    int GetHeight() const { return m_Header.height; }
    int GetPixelDepth() const { return m_Header.pixelDepth; } ///< bits

    // The writers replace what is at `outPath`, which is closed again when they return. With an empty path
    // they write beside the BMP, under its name with the extension ".tga"; this object then tells the new
    // picture's sizes. A failure while reading or writing throws FileException.

    // A BMP that was closed behind its Load is a programming error.

    /// An 8-bit TGA of a BMP with a palette, a 24-bit one without: the header goes by the palette alone. The
    /// rows go by the BMP's depth, one byte a pixel for 4 and 8 bits, three for 24, so that 24 bits with a
    /// palette, and 8 without, give a file that doesn't fit its header. False for a BMP that isn't loaded.
    /// Throws std::runtime_error for another depth.
    bool FromBmp(CBmpFile& bmp, const char* outPath);
    /// A 32-bit TGA, opaque. False for another BMP than a loaded one of 24 bits.
    bool FromBmp32(CBmpFile& bmp, const char* outPath);
    /// A 32-bit TGA with alpha 0 throughout and else the source's header; a colour map that it tells of isn't
    /// written. False for another source than a loaded one of 24 bits that is neither packed nor has an ID
    /// field. Reads on where the source stands.
    bool From24To32(CTgaFile& source, const char* outPath);

    /// Makes the TGA `target` of a BMP or TGA of just that size in pixels. What is at `target` is replaced
    /// when the new file is whole. False for any other file or size, and when both are one file. Throws as
    /// the operations above.
    static bool ImportPicture(const char* source, const char* target, int width, int height);

  private:
    static constexpr std::uint32_t HEADER_BYTES = 18;
    static constexpr std::uint32_t COLOUR_BYTES = 3;
    static constexpr std::size_t PALETTE_BYTES = std::size_t{PALETTE_SIZE} * COLOUR_BYTES;

    /// The format's fields in the format's order.
    struct Header {
        std::uint8_t idLength = 0;
        std::uint8_t mapType = 0;
        std::uint8_t imageType = 0;
        std::uint16_t mapFirst = 0;
        std::uint16_t mapLength = 0;
        std::uint8_t mapDepth = 0;
        std::uint16_t originX = 0;
        std::uint16_t originY = 0;
        std::uint16_t width = 0;
        std::uint16_t height = 0;
        std::uint8_t pixelDepth = 0;
        std::uint8_t descriptor = 0;
    };

    bool ReadHeader();
    bool ReadPalette();
    void WriteHeader();
    void SetBmpHeader(const CBmpFile& bmp, bool palette);
    /// Opens the file to write, and leaves none behind when `content` throws.
    template <class Content>
    bool WriteFileOf(const std::string& path, Content content);
    static bool Import(const char* source, const char* target, int width, int height);

    Header m_Header;
    std::array<std::uint8_t, PALETTE_BYTES> m_Palette = {}; ///< as it lies in the file
    int m_nColors = 0;
};
