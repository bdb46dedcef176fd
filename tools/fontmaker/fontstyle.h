#pragma once
// What a bitmap font is to look like, as a description file says it.

#include <string>
#include <utility>
#include <vector>

#include "picture.h"

/// The settings of one font. A description file has one setting a line, `#` at the start of a word begins a
/// comment; art/README.md lists the settings.
struct SFontStyle {
    std::string face;          ///< outline font file
    std::string fallback;      ///< outline font for letters that the face lacks, or empty
    std::string texture;       ///< the picture's name as the game looks it up, with backslashes
    double size = 16;          ///< pixels of the em square, 4 to 200
    double embolden = 0;       ///< strokes grow by so many pixels, -2 to 4
    int tracking = 0;          ///< pixels added to every advance, -8 to 32
    int height = 0;            ///< line height in pixels, 0: the face's own
    int baseline = 0;          ///< pixels from the line's top to the baseline, 0: the face's own
    bool tabular = true;       ///< all digits take the same room
    std::vector<SColour> fill; ///< colours from the capitals' top to the baseline, at least one
    SColour edge;              ///< what the letters stand on: their edges blend into it
    double outline = 0;        ///< width of the outline in pixels, 0 to 4
    SColour outlineColour;
    int shadowX = 0; ///< the shadow's place, -8 to 8 pixels
    int shadowY = 0;
    double shadow = 0; ///< how dark it is, 0 (none) to 1
    SColour shadowColour;
    double threshold = 0.2;                  ///< texels covered less than this stay transparent, 0.01 to 1
    std::vector<std::pair<int, int>> ranges; ///< bytes of code page 1252, both ends included

    /// Reads a description. File names in it are relative to its folder. Throws std::runtime_error with file
    /// and line when a setting is unknown or out of range.
    static SFontStyle Read(const std::string& file);
};
