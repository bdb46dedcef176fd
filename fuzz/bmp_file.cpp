// A BMP from unknown hands: every row read, and TGAs made of it. Each input is read as it is, then with the
// length in its header made right, so that the rest of the reader is reached.

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "frame.h"
#include "lib/bmpfile.h"
#include "lib/tgafile.h"

namespace
{

constexpr std::size_t LENGTH_AT = 2; ///< in the file header
constexpr char IN[] = "in.bmp";
constexpr char OUT[] = "out.tga";
constexpr int TGA_HEADER_BYTES = 18;
/// Larger pictures are read by their rows alone.
constexpr int MOST_PIXELS = 1 << 16;

/// Bytes in a TGA row for each pixel; 0 for a depth that none is made of.
int TgaPixelBytes(int bits)
{
    return bits == 4 || bits == 8 ? 1 : bits == 24 ? 3 : 0;
}

void ReadRow(CBmpFile& bmp, int y, std::vector<std::uint8_t>& row)
{
    bmp.GetBits() == 4   ? bmp.ReadRow4(y, row.data())
    : bmp.GetBits() == 8 ? bmp.ReadRow8(y, row.data())
                         : bmp.ReadRow24(y, row.data());
}

void ReadRows(CBmpFile& bmp)
{
    const int bytes = TgaPixelBytes(bmp.GetBits());
    const int height = bmp.GetHeight();
    std::vector<std::uint8_t> row(static_cast<std::size_t>(bmp.GetWidth()) * 3);
    for (int y = height - 1; y >= 0; y -= 1 + height / 64) {
        ReadRow(bmp, y, row);
        Require(bmp.GetBits() != 4 || std::all_of(row.begin(), row.begin() + bmp.GetWidth(),
                                                  [](std::uint8_t pixel) { return pixel < 16; }),
                "a pixel of 4 bits");
    }
    if (bytes == 0 || bmp.GetWidth() * height > MOST_PIXELS || bmp.GetBits() == 4 || height == 0)
        return;
    std::vector<std::uint8_t> all(static_cast<std::size_t>(bmp.GetWidth() * height * bytes));
    bytes == 1 ? bmp.ReadAll8(all.data()) : bmp.ReadAll24(all.data());
    ReadRow(bmp, height - 1, row);
    Require(std::equal(all.end() - bmp.GetWidth() * bytes, all.end(), row.begin()),
            "all rows at once are the rows one by one");
}

/// The TGA that a writer says it made: with the BMP's palette, unless it has 32 bits.
void CheckTga(const CBmpFile& bmp, int pixelBytes)
{
    CTgaFile tga;
    Require(tga.Load(OUT), "the TGA is read");
    Require(tga.GetWidth() == bmp.GetWidth() && tga.GetHeight() == bmp.GetHeight(), "its size");
    const int start = TGA_HEADER_BYTES + (pixelBytes != 4 ? bmp.GetColorCount() * 3 : 0);
    Require(static_cast<int>(tga.GetPosition()) == start, "the place of its pixels");
    Require(static_cast<int>(tga.GetLength()) == start + bmp.GetWidth() * bmp.GetHeight() * pixelBytes,
            "its length");
}

void Try(const std::vector<std::uint8_t>& bytes)
{
    PutFile(IN, bytes.data(), bytes.size());
    CBmpFile bmp;
    if (!bmp.Load(IN)) {
        Require(!bmp.IsOpen() && !bmp.IsLoaded(), "a refused file is closed");
        return;
    }
    constexpr int MOST = static_cast<int>(CBmpFile::MAX_SIDE);
    Require(bmp.GetWidth() >= 0 && bmp.GetWidth() <= MOST && bmp.GetHeight() >= 0 && bmp.GetHeight() <= MOST,
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
    const auto length = static_cast<std::uint32_t>(size);
    if (size < LENGTH_AT + sizeof length)
        return 0;
    std::memcpy(bytes.data() + LENGTH_AT, &length, sizeof length);
    Try(bytes);
    return 0;
}
