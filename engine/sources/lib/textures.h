#pragma once
// From pictures to texture files.

#include "lib/teximage.h"

/// Levels of the chain that a picture of this size gets, 1 to 15. The last one is at least two pixels on a
/// side where the picture is.
int LevelCount(const CTexImage& image);

/// Writes `image` as a texture file with its chain of 16-bit levels: with alpha in 12 bits, without in 5-6-5.
/// False without a file when it is empty, larger than CTexImage::MAX_FILE_SIDE on a side, or memory runs out;
/// false when writing fails, and a partly written file stays.
bool SaveAsTexture(const CTexImage& image, const char* tfPath);

/// Reads a 24-bit bitmap file, stretches it to `width` by `height` pixels unless either is 0, and saves it as
/// a texture. False when it can't be read, a size is negative, or as SaveAsTexture.
bool ConvertToTexture(const char* bmpPath, const char* tfPath, int width, int height);
