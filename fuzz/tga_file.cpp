// A picture that the player brings in, from unknown hands: a TGA's head and pixels, and the import, which may
// as well find a BMP.

#include <stdexcept>

#include "frame.h"
#include "lib/bmpfile.h"
#include "lib/tgafile.h"

namespace
{

constexpr char IN[] = "in.tga";
constexpr char OUT[] = "out.tga";
constexpr std::size_t MAP_TYPE_AT = 1;
constexpr std::size_t MAP_DEPTH_AT = 7;

/// Whether the file at OUT is a TGA of that size.
void CheckTga(int width, int height, int depth)
{
    const std::string bytes = Roots().Get(std::string("user/") + OUT);
    Require(bytes.size() > MAP_DEPTH_AT, "the TGA is there");
    // A colour map that its header tells of may have got another depth, which no reader takes.
    const bool foreignMap = bytes[MAP_TYPE_AT] == 1 && bytes[MAP_DEPTH_AT] != 24;
    CTgaFile tga;
    try {
        Require(tga.Load(OUT) && !foreignMap, "the TGA is read");
    } catch (const std::runtime_error&) {
        Require(foreignMap && !tga.IsOpen(), "its colour map is refused");
    }
    Require(tga.GetWidth() == width && tga.GetHeight() == height, "its size");
    Require(tga.GetPixelDepth() == depth || (depth != 32 && tga.GetPixelDepth() == 32), "its depth");
    tga.Close();
    Require(PlatformDeleteFile(OUT), "the TGA is the player's");
}

void Import(int width, int height, int depth)
{
    try {
        if (CTgaFile::ImportPicture(IN, OUT, width, height))
            CheckTga(width, height, depth);
        Require(!CTgaFile::ImportPicture(IN, OUT, width + 1, height), "another width is refused");
        Require(!CTgaFile::ImportPicture(IN, OUT, width, height - 1), "another height is refused");
    } catch (const std::runtime_error&) {
    } catch (const CFileIO::FileException&) {
    }
    Require(PlatformResolveRead(OUT).empty() && PlatformResolveRead("out.tga.tmp").empty(),
            "nothing is left");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    PutFile(IN, data, size);
    CBmpFile bmp;
    if (bmp.Load(IN)) {
        // Without a palette the head tells of true colour, whatever the rows hold.
        const int mapped = bmp.GetColorCount() != 0 ? 8 : 24;
        Import(bmp.GetWidth(), bmp.GetHeight(), bmp.GetBits() == 24 ? 32 : mapped);
        return 0;
    }
    CTgaFile tga;
    try {
        if (!tga.Load(IN)) {
            Require(!tga.IsOpen(), "a refused file is closed");
            Import(1, 1, 0);
            return 0;
        }
        Require(tga.GetWidth() <= CTgaFile::MAX_SIDE && tga.GetHeight() <= CTgaFile::MAX_SIDE, "the sides");
        if (CTgaFile().From24To32(tga, OUT))
            CheckTga(tga.GetWidth(), tga.GetHeight(), 32);
    } catch (const std::runtime_error&) {
        Require(!tga.IsOpen(), "a refused file is closed");
        return 0;
    } catch (const CFileIO::FileException&) {
        Require(PlatformResolveRead(OUT).empty(), "no half of a TGA is left");
    }
    Import(tga.GetWidth(), tga.GetHeight(), tga.GetPixelDepth());
    return 0;
}
