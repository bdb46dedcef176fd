#pragma once
// Draws the letters of a font in their final colours.

#include <memory>

#include "fontstyle.h"

/// One letter, ready for the texture. The pen is the place at which the face wants the letter's origin.
struct SGlyph {
    int code = 0;    ///< byte of code page 1252
    int overlap = 0; ///< pixels from the cell's left edge to the pen
    int advance = 0; ///< pixels from the cell's left edge to the next pen
    CPicture cell;   ///< of the full line height
};

/// Owns the FreeType faces: the style's own, and the one that lends letters which that lacks. All cells have
/// the line's height and the same baseline.
class CGlyphPainter
{
  public:
    /// Opens the style's faces; throws std::runtime_error when FreeType refuses it. `style` must outlive
    /// this.
    explicit CGlyphPainter(const SFontStyle& style);
    ~CGlyphPainter();

    int GetHeight() const { return m_nHeight; }
    /// The letters of the style's ranges that the face has, in order of their codes.
    std::vector<SGlyph> PaintAll() const;

  private:
    class CFace;
    class CCoverage;

    const CFace* FindFace(int code) const;
    int GetDigitAdvance() const;
    SGlyph Paint(const CFace& face, int code, int digitAdvance) const;
    CPicture PaintCell(const CCoverage& letter, int width) const;
    SColour FillAt(int y) const;

    const SFontStyle& m_Style;
    std::vector<std::unique_ptr<CFace>> m_Faces;
    int m_nHeight = 0;
    int m_nBaseline = 0;
    int m_nCapTop = 0; ///< the first row of a capital letter
};
