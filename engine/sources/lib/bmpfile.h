#pragma once
// A reader of uncompressed BMP files that holds the file open and takes each row from it when it is asked
// for. It is for pictures that the player brings in, so nothing in the file is trusted.

#include <array>
#include <cstdint>
#include <vector>

#include "lib/fileio.h"

class CBmpFile : public CFileIO
{
  public:
    static constexpr std::uint32_t MAX_SIDE = 16384; ///< pixels; a larger picture is refused
    static constexpr int PALETTE_SIZE = 256;

    struct Colour {
        std::uint8_t blue = 0;
        std::uint8_t green = 0;
        std::uint8_t red = 0;
        friend bool operator==(const Colour&, const Colour&) = default;
    };

    CBmpFile() = default;
    virtual ~CBmpFile() = default;

    /// Reads headers and palette; the file stays open. False, and closed, for a file that is no such BMP: a
    /// wrong magic or length, a file that ends within the headers, other than one plane, compressed, a
    /// palette above 256 entries or past the file's end, a side above MAX_SIDE (a negative height is one).
    /// Throws FileException, closed as well. The depth isn't checked: of any other than 4, 8 and 24 bits no
    /// row can be read.
    bool Load(const char* path);
    bool IsLoaded() const { return m_IsLoad; } ///< stays true behind Close

    int GetWidth() const { return static_cast<int>(m_InfoHeader.dwWidth); }
    int GetHeight() const { return static_cast<int>(m_InfoHeader.dwHeight); }
    int GetBits() const { return m_InfoHeader.wBitCount; }
    /// Palette entries in the file, 0 to 256.
    int GetColorCount() const { return m_nColors; }
    /// Black for an entry that the file doesn't have.
    Colour GetPaletteEntry(int index) const;

    // Rows lie in the file from the bottom up: 0 is the picture's last. A read before Load, and one past the
    // picture, is a programming error. A file that ends within a row, and a depth that has no rows, throws
    // FileException.

    /// GetWidth() * 3 bytes: blue, green, red.
    void ReadRow24(int index, void* out);
    /// GetWidth() bytes.
    void ReadRow8(int index, void* out);
    /// GetWidth() bytes, one for each pixel.
    void ReadRow4(int index, void* out);
    /// All rows in the file's order without gaps.
    void ReadAll24(void* out);
    void ReadAll8(void* out);

  private:
    struct FileHeader {
        std::uint8_t magic[2] = {};
        std::uint32_t dwFileSize = 0;
        std::uint32_t dwPixelOffset = 0;
    };
    struct InfoHeader {
        std::uint32_t dwSize = 0;
        std::uint32_t dwWidth = 0;
        std::uint32_t dwHeight = 0;
        std::uint16_t wPlanes = 0;
        std::uint16_t wBitCount = 0;
        std::uint32_t dwCompression = 0;
    };

    bool ReadHeaders();
    bool ReadPalette();
    /// Leaves the file at the row; checks what a caller must keep to.
    void SeekRow(int index);
    void ReadWhole(void* out, std::uint32_t bytes);
    void ReadRows(std::uint8_t* out, std::uint32_t rowBytes);

    FileHeader m_FileHeader;
    InfoHeader m_InfoHeader;
    std::array<Colour, PALETTE_SIZE> m_Palette;
    int m_nColors = 0;
    std::uint32_t m_nStride = 0; ///< bytes of a row in the file; 0 for a depth without rows
    bool m_IsLoad = false;
};
