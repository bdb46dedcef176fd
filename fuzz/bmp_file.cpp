// A BMP from unknown hands: every row read, and TGAs made of it. Each input is read as it is, then with the
// length in its header made right, so that the rest of the reader is reached.

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "lib/bmpfile.h"
#include "lib/tgafile.h"
#include "picture_fuzz.h"

namespace
{

constexpr std::size_t LENGTH_AT = 2; ///< in the file header, four bytes
constexpr char IN[] = "in.bmp";
constexpr char OUT[] = "out.tga";
constexpr std::uint32_t TGA_HEADER_BYTES = 18;
/// Larger pictures are read by their rows alone.
constexpr int MOST_PIXELS = 1 << 16;

/// Bytes in a TGA row for each pixel; 0 for a depth that none is made of.
int TgaPixelBytes(int bits)
{
    return bits == 4 || bits == 8 ? 1 : bits == 24 ? 3 : 0;
}

void ReadRows(CBmpFile& bmp)
{
    const int bytes = TgaPixelBytes(bmp.GetBits());
    std::vector<std::uint8_t> row(static_cast<std::size_t>(bmp.GetWidth()) * 3);
    std::vector<std::uint8_t> rows;
    const int height = bmp.GetHeight();
    for (int y = height - 1; y >= 0; y -= 1 + height / 64) {
        bmp.GetBits() == 4   ? bmp.ReadRow4(y, row.data())
        : bmp.GetBits() == 8 ? bmp.ReadRow8(y, row.data())
                             : bmp.ReadRow24(y, row.data());
        if (bmp.GetBits() == 4) {
            for (int x = 0; x < bmp.GetWidth(); ++x)
                Require(row[static_cast<std::size_t>(x)] < 16, "a pixel of 4 bits");
        }
    }
    if (bytes == 0 || bmp.GetWidth() * height > MOST_PIXELS || bmp.GetBits() == 4)
        return;
    std::vector<std::uint8_t> all(static_cast<std::size_t>(bmp.GetWidth() * height * bytes));
    bytes == 1 ? bmp.ReadAll8(all.data()) : bmp.ReadAll24(all.data());
    const std::size_t rowBytes = height != 0 ? all.size() / static_cast<std::size_t>(height) : 0;
    if (height != 0)
        bytes == 1 ? bmp.ReadRow8(height - 1, row.data()) : bmp.ReadRow24(height - 1, row.data());
    Require(std::equal(all.end() - static_cast<std::ptrdiff_t>(rowBytes), all.end(), row.begin()),
            "all rows at once are the rows one by one");
}

/// The TGA that a writer says it made: with the BMP's palette, unless it has 32 bits.
void CheckTga(const CBmpFile& bmp, int pixelBytes)
{
    CTgaFile tga;
    Require(tga.Load(OUT), "the TGA is read");
    Require(tga.GetWidth() == bmp.GetWidth() && tga.GetHeight() == bmp.GetHeight(), "its size");
    const std::uint32_t map = pixelBytes != 4 ? static_cast<std::uint32_t>(bmp.GetColorCount()) * 3 : 0;
    Require(tga.GetPosition() == TGA_HEADER_BYTES + map, "the place of its pixels");
    Require(tga.GetLength() - tga.GetPosition() == static_cast<std::uint32_t>(bmp.GetWidth()) *
                                                       static_cast<std::uint32_t>(bmp.GetHeight()) *
                                                       static_cast<std::uint32_t>(pixelBytes),
            "its length");
}

void Try(const std::vector<std::uint8_t>& bytes)
{
    FuzzFolder::Get().Put(IN, bytes.data(), bytes.size());
    CBmpFile bmp;
    if (!bmp.Load(IN)) {
        Require(!bmp.IsOpen() && !bmp.IsLoaded(), "a refused file is closed");
        return;
    }
    Require(bmp.GetWidth() >= 0 && bmp.GetWidth() <= static_cast<int>(CBmpFile::MAX_SIDE) &&
                bmp.GetHeight() >= 0 && bmp.GetHeight() <= static_cast<int>(CBmpFile::MAX_SIDE),
            "the sides");
    Require(bmp.GetColorCount() >= 0 && bmp.GetColorCount() <= CBmpFile::PALETTE_SIZE, "the palette");
    try {
        ReadRows(bmp);
    } catch (const CFileIO::FileException&) {
    }
    try {
        if (CTgaFile().FromBmp(bmp, OUT))
            CheckTga(bmp, TgaPixelBytes(bmp.GetBits()));
        if (CTgaFile().FromBmp32(bmp, OUT))
            CheckTga(bmp, 4);
    } catch (const CFileIO::FileException&) {
        Require(PlatformResolveRead(OUT).empty(), "no half of a TGA is left");
    } catch (const std::runtime_error&) {
        Require(TgaPixelBytes(bmp.GetBits()) == 0, "the depth is right");
    }
    PlatformDeleteFile(OUT);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::vector<std::uint8_t> bytes(data, data + size);
    Try(bytes);
    if (size < LENGTH_AT + sizeof(std::uint32_t))
        return 0;
    for (std::size_t i = 0; i < sizeof(std::uint32_t); ++i)
        bytes[LENGTH_AT + i] = static_cast<std::uint8_t>(size >> (8 * i) & 0xffU);
    Try(bytes);
    return 0;
}
