// A texture file from unknown hands, every level of both chains. What can be read can be written, and is then
// read as the same.

#include <algorithm>

#include "frame.h"
#include "lib/tffile.h"

namespace
{

bool HasSamePixels(const CTexImage& a, const CTexImage& b)
{
    return a.GetBits() == b.GetBits() && a.GetWidth() == b.GetWidth() && a.GetHeight() == b.GetHeight() &&
           std::equal(a.GetPixelData(), a.GetPixelData() + a.GetDataSize(), b.GetPixelData()) &&
           std::equal(a.GetPaletteData(), a.GetPaletteData() + CTexImage::PALETTE_BYTES, b.GetPaletteData());
}

/// `level` as the only one of its chain.
void WriteAlone(const CTexImage& level, bool b16Bit)
{
    CTexImage written;
    Require(written.ConvertFrom(level), "a copy");
    written.SetPalette(level.GetPaletteData());
    CTfFile file;
    file.m_sName = "out.tf";
    file.m_b16Bit = b16Bit;
    file.m_Image.SetPalette(level.GetPaletteData());
    Require(b16Bit ? file.Write(&written, nullptr, 1, 0) : file.Write(nullptr, &written, 0, 1), "writing");
    Require(file.LoadHeader() && file.Load(), "reading what was written");
    Require(HasSamePixels(file.m_Image, level), "the level that was written");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    PutFile("in.tf", data, size);
    CTfFile file;
    file.m_sName = "in.tf";
    if (!file.LoadHeader()) {
        // By a caller who has its numbers from somewhere else.
        file.m_nWidth = file.m_nHeight = 4;
        file.m_nCount16 = file.m_nCount8 = 2;
        file.Load();
        return 0;
    }
    for (const bool b16Bit : {true, false}) {
        file.m_b16Bit = b16Bit;
        const int count = b16Bit ? file.m_nCount16 : file.m_nCount8;
        for (file.m_nLevel = -1; file.m_nLevel <= count; ++file.m_nLevel) {
            file.m_Image.Free();
            const bool loaded = file.Load();
            Require(loaded == !file.m_Image.IsEmpty(), "what isn't read leaves nothing");
            if (!loaded)
                continue;
            Require(file.m_nLevel >= 0 && file.m_nLevel < count, "the level");
            Require(file.m_Image.GetWidth() == file.m_nWidth >> file.m_nLevel, "the width of the level");
            Require(file.m_Image.GetDataSize() <= size, "every pixel stands in the file");
            WriteAlone(file.m_Image, b16Bit);
        }
    }
    return 0;
}
