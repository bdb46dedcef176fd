#include "lib/bmpfile.h"

#include <algorithm>

#include "assertion.h"
#include "lib/bytes.h"

namespace
{

constexpr std::uint32_t FILE_HEADER_BYTES = 14;
constexpr std::uint32_t INFO_HEADER_BYTES = 40;
constexpr std::uint32_t ENTRY_BYTES = 4; ///< of the palette; the fourth isn't used
constexpr std::uint32_t PIXEL_BYTES = 3; ///< of 24 bits
/// Rows with gaps between them are read in blocks of about this size.
constexpr std::uint32_t BLOCK_BYTES = 65536;

/// Bytes of a row without padding; a last single pixel of 4 bits has a byte of its own. Widths are up to
/// MAX_SIDE. 0 for a depth without rows.
std::uint32_t RowBytes(std::uint32_t width, int bits)
{
    switch (bits) {
    case 4:
        return (width + 1) / 2;
    case 8:
        return width;
    case 24:
        return width * PIXEL_BYTES;
    default:
        return 0;
    }
}

} // namespace

bool CBmpFile::Load(const char* path)
{
    m_FileHeader = {};
    m_InfoHeader = {};
    m_Palette = {};
    m_nColors = 0;
    m_nStride = 0;
    m_IsLoad = false;
    if (!Open(path, READ_EXISTING))
        return false;
    try {
        m_IsLoad = ReadHeaders() && ReadPalette();
    } catch (...) {
        Close();
        throw;
    }
    if (!m_IsLoad) {
        Close();
        return false;
    }
    const std::uint32_t row = RowBytes(m_InfoHeader.dwWidth, m_InfoHeader.wBitCount);
    m_nStride = (row + 3) / 4 * 4;
    return true;
}

bool CBmpFile::ReadHeaders()
{
    std::uint8_t bytes[INFO_HEADER_BYTES];
    if (Read(bytes, FILE_HEADER_BYTES) != FILE_HEADER_BYTES)
        return false;
    m_FileHeader = {{bytes[0], bytes[1]}, Get32(bytes + 2), Get32(bytes + 10)};
    if (bytes[0] != 'B' || bytes[1] != 'M' || GetLength() != m_FileHeader.dwFileSize)
        return false;
    if (Read(bytes, INFO_HEADER_BYTES) != INFO_HEADER_BYTES)
        return false;
    m_InfoHeader.dwSize = Get32(bytes);
    m_InfoHeader.dwWidth = Get32(bytes + 4);
    m_InfoHeader.dwHeight = Get32(bytes + 8);
    m_InfoHeader.wPlanes = Get16(bytes + 12);
    m_InfoHeader.wBitCount = Get16(bytes + 14);
    m_InfoHeader.dwCompression = Get32(bytes + 16);
    return m_InfoHeader.wPlanes == 1 && m_InfoHeader.dwCompression == 0 && m_InfoHeader.dwWidth <= MAX_SIDE &&
           m_InfoHeader.dwHeight <= MAX_SIDE;
}

bool CBmpFile::ReadPalette()
{
    // No sum here goes past 32 bits: the offset is checked against the header's size first.
    const std::uint32_t offset = m_FileHeader.dwPixelOffset;
    if (offset < FILE_HEADER_BYTES || offset - FILE_HEADER_BYTES < m_InfoHeader.dwSize ||
        offset > m_FileHeader.dwFileSize)
        return false;
    const std::uint32_t count = (offset - FILE_HEADER_BYTES - m_InfoHeader.dwSize) / ENTRY_BYTES;
    if (count > PALETTE_SIZE)
        return false;
    SeekTo(FILE_HEADER_BYTES + m_InfoHeader.dwSize);
    std::array<std::uint8_t, std::size_t{PALETTE_SIZE} * ENTRY_BYTES> bytes;
    if (Read(bytes.data(), count * ENTRY_BYTES) != count * ENTRY_BYTES)
        return false;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint8_t* entry = &bytes[i * ENTRY_BYTES];
        m_Palette[i] = {entry[0], entry[1], entry[2]};
    }
    m_nColors = static_cast<int>(count);
    return true;
}

CBmpFile::Colour CBmpFile::GetPaletteEntry(int index) const
{
    return index >= 0 && index < PALETTE_SIZE ? m_Palette[static_cast<std::size_t>(index)] : Colour();
}

void CBmpFile::SeekRow(int index)
{
    Assert(m_IsLoad, "m_IsLoad");
    const auto row = static_cast<std::uint32_t>(index);
    Assert(row < m_InfoHeader.dwHeight, "index < m_InfoHeader.dwHeight");
    const std::uint64_t place = m_FileHeader.dwPixelOffset + std::uint64_t{m_nStride} * row;
    // Rows that a 32-bit position can't reach aren't in the file either.
    if ((m_nStride == 0 && m_InfoHeader.dwWidth != 0) || place > m_FileHeader.dwFileSize)
        throw FileException("CFileIO::Read");
    SeekTo(static_cast<std::uint32_t>(place));
}

void CBmpFile::ReadWhole(void* out, std::uint32_t bytes)
{
    if (Read(out, bytes) != bytes)
        throw FileException("CFileIO::Read");
}

void CBmpFile::ReadRow24(int index, void* out)
{
    SeekRow(index);
    ReadWhole(out, m_InfoHeader.dwWidth * PIXEL_BYTES);
}

void CBmpFile::ReadRow8(int index, void* out)
{
    SeekRow(index);
    ReadWhole(out, m_InfoHeader.dwWidth);
}

void CBmpFile::ReadRow4(int index, void* out)
{
    SeekRow(index);
    const std::uint32_t width = m_InfoHeader.dwWidth;
    ReadWhole(out, (width + 1) / 2);
    // From the back, so that no packed pair is written over before it is spread.
    auto* pixels = static_cast<std::uint8_t*>(out);
    for (std::uint32_t x = width; x-- > 0;) {
        const unsigned pair = pixels[x / 2];
        pixels[x] = static_cast<std::uint8_t>(x % 2 == 0 ? pair >> 4 : pair & 0x0fU);
    }
}

void CBmpFile::ReadAll24(void* out)
{
    ReadRows(static_cast<std::uint8_t*>(out), m_InfoHeader.dwWidth * PIXEL_BYTES);
}

void CBmpFile::ReadAll8(void* out)
{
    ReadRows(static_cast<std::uint8_t*>(out), m_InfoHeader.dwWidth);
}

void CBmpFile::ReadRows(std::uint8_t* out, std::uint32_t rowBytes)
{
    Assert(m_IsLoad, "m_IsLoad");
    const std::uint32_t height = m_InfoHeader.dwHeight;
    if (height == 0)
        return;
    SeekRow(0);
    if (rowBytes == m_nStride) {
        ReadWhole(out, rowBytes * height);
        return;
    }
    if (rowBytes > m_nStride)
        throw FileException("CFileIO::Read");
    const std::uint32_t most = std::clamp(BLOCK_BYTES / m_nStride, 1U, height);
    std::vector<std::uint8_t> block(std::size_t{most} * m_nStride);
    for (std::uint32_t row = 0; row < height;) {
        const std::uint32_t rows = std::min(most, height - row);
        // The padding of the last row may be missing.
        const bool last = row + rows == height;
        ReadWhole(block.data(), rows * m_nStride - (last ? m_nStride - rowBytes : 0));
        for (std::uint32_t i = 0; i < rows; ++i, out += rowBytes)
            std::copy_n(&block[std::size_t{i} * m_nStride], rowBytes, out);
        row += rows;
    }
}
