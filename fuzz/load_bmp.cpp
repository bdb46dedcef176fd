// A bitmap file from unknown hands. What is read must be what the bytes of the file say.

#include "frame.h"
#include "lib/teximage.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    PutFile("in.bmp", data, size);
    CTexImage image;
    if (!image.LoadBmp("in.bmp")) {
        Require(image.IsEmpty(), "a refused file leaves nothing");
        return 0;
    }
    Require(image.GetFormat() == (TEX_RGB888 | TEX_VALID), "the format");
    Require(image.GetWidth() > 0 && image.GetWidth() <= CTexImage::MAX_FILE_SIDE, "the width");
    Require(image.GetHeight() > 0 && image.GetHeight() <= CTexImage::MAX_FILE_SIDE, "the height");
    Require(image.GetDataSize() <= size, "every pixel stands in the file");
    // The last row comes first in the file, behind one of four lengths of headers.
    TexPixel pixel;
    image.GetPixel(pixel, 0, image.GetHeight() - 1);
    bool found = false;
    for (const std::size_t place : {54U, 40U, 26U, 12U})
        found = found || (place + 3 <= size && data[place] == pixel.blue && data[place + 1] == pixel.green &&
                          data[place + 2] == pixel.red);
    Require(found, "the first pixel");
    return 0;
}
