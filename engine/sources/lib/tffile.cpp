#include "lib/tffile.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <utility>

#include "keelworks/ds_file.h"
#include "lib/bytes.h"

namespace
{

// Places in the header.
constexpr std::size_t AT_FORMAT = 5;
constexpr std::size_t AT_COUNT16 = 6;
constexpr std::size_t AT_COUNT8 = 7;
constexpr std::size_t AT_WIDTH = 8;
constexpr std::size_t AT_HEIGHT = 12;

constexpr std::size_t BYTES_OF_16 = 2;
constexpr std::size_t BYTES_OF_8 = 1;
constexpr int MOST_LEVELS = std::numeric_limits<std::uint8_t>::max();
/// A level from which on nothing is left of the largest side.
constexpr int NO_LEVEL = 15;
static_assert(CTexImage::MAX_FILE_SIDE >> NO_LEVEL == 0);

using Header = std::array<std::uint8_t, CTfFile::HEADER_BYTES>;
using FilePalette = std::array<std::uint8_t, CTfFile::PALETTE_BYTES>;

bool IsSide(std::int64_t side)
{
    return side > 0 && side <= CTexImage::MAX_FILE_SIDE;
}

bool ReadHeader(ds_file& file, Header& header)
{
    return file.read(header.data(), header.size()) == header.size() &&
           header[AT_FORMAT] <= CTfFile::TF_ARGB4444;
}

/// Bytes of the first `count` levels of a chain.
std::size_t ChainBytes(int width, int height, int count, std::size_t pixelBytes)
{
    std::size_t pixels = 0;
    for (int level = 0; level < std::min(count, NO_LEVEL); ++level)
        pixels += static_cast<std::size_t>(width >> level) * static_cast<std::size_t>(height >> level);
    return pixels * pixelBytes;
}

std::uint32_t FormatOf(std::uint8_t fileFormat, bool b16Bit)
{
    if (!b16Bit)
        return fileFormat == CTfFile::TF_RGB565 ? std::uint32_t{TEX_PALETTE8} : TEX_PALETTE8 | TEX_ALPHA;
    switch (fileFormat) {
    case CTfFile::TF_ARGB1555:
        return TEX_ARGB1555 | TEX_ALPHA;
    case CTfFile::TF_ARGB4444:
        return TEX_ARGB4444 | TEX_ALPHA;
    default:
        return TEX_RGB565;
    }
}

/// Nothing for a format that no 16-bit level has.
std::optional<std::uint8_t> FileFormatOf(unsigned bits)
{
    switch (bits) {
    case TEX_RGB565:
        return CTfFile::TF_RGB565;
    case TEX_ARGB1555:
        return CTfFile::TF_ARGB1555;
    case TEX_ARGB4444:
        return CTfFile::TF_ARGB4444;
    default:
        return std::nullopt;
    }
}

/// False unless there are `count` levels whose bits are `isTaken`.
template <class IsTaken>
bool AreLevels(const CTexImage* levels, int count, IsTaken isTaken)
{
    return count >= 0 && count <= MOST_LEVELS && (count == 0 || levels) &&
           std::all_of(levels, levels + count,
                       [&](const CTexImage& level) { return isTaken(level.GetBits()); });
}

bool WriteAll(ds_file& file, const std::uint8_t* bytes, std::size_t size)
{
    return file.write(bytes, size) == size;
}

bool WriteImage(ds_file& file, const CTexImage& image)
{
    return WriteAll(file, image.GetPixelData(), image.GetDataSize());
}

/// Blue, green, red in memory; red, green, blue, 0 in the file.
bool WritePalette(ds_file& file, const CTexImage& image)
{
    FilePalette palette = {};
    for (std::size_t i = 0; i < CTexImage::PALETTE_ENTRIES; ++i)
        std::reverse_copy(image.GetPaletteData() + 3 * i, image.GetPaletteData() + 3 * i + 3,
                          &palette[4 * i]);
    return WriteAll(file, palette.data(), palette.size());
}

bool ReadPalette(ds_file& file, CTexImage& image)
{
    FilePalette palette;
    if (file.read(palette.data(), palette.size()) != palette.size())
        return false;
    for (std::size_t i = 0; i < CTexImage::PALETTE_ENTRIES; ++i)
        std::reverse_copy(&palette[4 * i], &palette[4 * i] + 3, image.GetPaletteData() + 3 * i);
    return true;
}

Header MakeHeader(const CTexImage* levels16, const CTexImage* levels8, int count16, int count8)
{
    const CTexImage& first = count16 > 0 ? levels16[0] : levels8[0];
    Header header = {};
    header[AT_FORMAT] = FileFormatOf(first.GetBits()).value_or(CTfFile::TF_RGB565);
    header[AT_COUNT16] = static_cast<std::uint8_t>(count16);
    header[AT_COUNT8] = static_cast<std::uint8_t>(count8);
    Put32(&header[AT_WIDTH], static_cast<std::uint32_t>(first.GetWidth()));
    Put32(&header[AT_HEIGHT], static_cast<std::uint32_t>(first.GetHeight()));
    return header;
}

} // namespace

bool CTfFile::LoadHeader(std::uint8_t* format)
{
    try {
        ds_file file(m_sName.c_str(), ds_file::MODE_READ);
        Header header;
        if (!ReadHeader(file, header))
            return false;
        const std::uint32_t width = Get32(&header[AT_WIDTH]);
        const std::uint32_t height = Get32(&header[AT_HEIGHT]);
        if (!IsSide(width) || !IsSide(height))
            return false;
        m_nWidth = static_cast<int>(width);
        m_nHeight = static_cast<int>(height);
        m_nCount16 = header[AT_COUNT16];
        m_nCount8 = header[AT_COUNT8];
        if (format)
            *format = header[AT_FORMAT];
        return true;
    } catch (const fopen_exception&) {
        return false;
    }
}

bool CTfFile::Load()
{
    const int count = m_b16Bit ? m_nCount16 : m_nCount8;
    if (m_nLevel < 0 || m_nLevel >= std::min(count, NO_LEVEL) || m_nCount16 < 0 || !IsSide(m_nWidth) ||
        !IsSide(m_nHeight))
        return false;
    try {
        ds_file file(m_sName.c_str(), ds_file::MODE_READ);
        Header header;
        if (!ReadHeader(file, header) || m_nLevel >= header[m_b16Bit ? AT_COUNT16 : AT_COUNT8])
            return false;
        // The palette of what was loaded before stays with a 16-bit level.
        CTexImage level;
        level.SetPalette(m_Image.GetPaletteData());
        std::size_t place = HEADER_BYTES;
        if (!m_b16Bit) {
            place += ChainBytes(m_nWidth, m_nHeight, m_nCount16, BYTES_OF_16);
            if (!file.set_pos(place) || !ReadPalette(file, level))
                return false;
            place += PALETTE_BYTES;
        }
        place += ChainBytes(m_nWidth, m_nHeight, m_nLevel, m_b16Bit ? BYTES_OF_16 : BYTES_OF_8);
        const int w = m_nWidth >> m_nLevel;
        const int h = m_nHeight >> m_nLevel;
        const std::size_t size = ChainBytes(w, h, 1, m_b16Bit ? BYTES_OF_16 : BYTES_OF_8);
        // What the file can't hold isn't made room for.
        if (!file.set_pos(place) || file.get_size() - place < size ||
            !level.Alloc(w, h, FormatOf(header[AT_FORMAT], m_b16Bit)) ||
            file.read(level.GetPixelData(), size) != size)
            return false;
        level.ToggleAlpha();
        level.SetValid();
        m_Image = std::move(level);
        return true;
    } catch (const fopen_exception&) {
        return false;
    }
}

std::unique_ptr<CTexFile> CTfFile::Clone() const
{
    return std::unique_ptr<CTexFile>(new CTfFile(*this));
}

bool CTfFile::Write(CTexImage* levels16, const CTexImage* levels8, int count16, int count8)
{
    if (!AreLevels(levels16, count16, [](unsigned bits) { return FileFormatOf(bits).has_value(); }) ||
        !AreLevels(levels8, count8, [](unsigned bits) { return bits == TEX_PALETTE8; }) ||
        count16 + count8 == 0)
        return false;
    try {
        ds_file file(m_sName.c_str(), ds_file::MODE_WRITE);
        const Header header = MakeHeader(levels16, levels8, count16, count8);
        if (!WriteAll(file, header.data(), header.size()))
            return false;
        for (int i = 0; i < count16; ++i) {
            levels16[i].ToggleAlpha();
            if (!WriteImage(file, levels16[i]))
                return false;
        }
        if (count8 > 0 && !WritePalette(file, levels8[0]))
            return false;
        for (int i = 0; i < count8; ++i)
            if (!WriteImage(file, levels8[i]))
                return false;
        return file.close();
    } catch (const fopen_exception&) {
        return false;
    }
}
