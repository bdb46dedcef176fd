#pragma once
// A bitmap font as the game has it: a texture and a table of letters.

#include <array>
#include <string>
#include <vector>

#include "glyphpainter.h"

/// How a text is laid out in a box; the game's own flag values.
enum BoxFlags : unsigned {
    BOX_LINES = 0x4,
    BOX_CENTRE = 0x8,
    BOX_MIDDLE = 0x10,
    BOX_RIGHT = 0x20,
};

struct SBox {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

/// Owns the texture. Made from painted letters to be written, or read back to try the font on a picture.
class CFontFile
{
  public:
    /// Packs the letters into a texture; all cells must have the height `lineHeight`.
    CFontFile(const std::vector<SGlyph>& glyphs, int lineHeight);
    /// Reads a font file and its texture; throws std::runtime_error when either is wrong.
    CFontFile(const std::string& fontFile, const std::string& imageRoot);

    /// Writes font file and texture; `texture` is the name in the font file, looked up below `imageRoot`.
    void Write(const std::string& fontFile, const std::string& texture, const std::string& imageRoot) const;

    /// Width in pixels by the game's rule.
    int GetWidth(const std::string& text) const;
    int GetHeight() const { return m_nHeight; }
    /// Draws as the game does: wrapped at blanks and CR LF, tinted, no blending.
    void Draw(CPicture& target, const SBox& box, const std::string& text, unsigned flags,
              SColour colour) const;

  private:
    struct SLetter {
        int left = 0;
        int top = 0;
        int right = 0;
        int bottom = 0;
        int overlap = 0;
        int advance = 0;
    };

    std::vector<std::string> Wrap(const std::string& text, int width) const;
    void DrawLine(CPicture& target, const SBox& box, int top, const std::string& text, unsigned flags,
                  SColour colour) const;

    CPicture m_Texture;
    std::array<SLetter, 256> m_Letters{};
    int m_nHeight = 0;
};
