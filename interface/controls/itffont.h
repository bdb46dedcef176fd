#pragma once
// A bitmap font: a texture of glyphs, and where each glyph lies and how far it advances.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/types.h"

class CTextParser;
class IRender2D;
class ds_file;

/// From `place`, a pointer into the text that is drawn, words have this colour. Marks come in ascending
/// order.
struct ColourMark {
    const char* place;
    std::uint32_t colour; ///< 0x00BBGGRR
};

/// Flags of DrawLine (the middle two) and DrawBox.
enum ItfFontFlags : std::uint32_t {
    FONT_MULTILINE = 0x4, ///< the box's height is the limit; without it one line is drawn
    FONT_CENTER_HOR = 0x8,
    FONT_CENTER_VERT = 0x10,
    FONT_RIGHT = 0x20,
};

/// Text is copied pixel by pixel into a locked 16-bit surface, tinted on the way. A byte is a character, in
/// code page 1252. Measuring, counting and drawing share one word-wrapping engine:
///
/// A word carries the blanks and tabs behind it, and they count in its width. CR LF ends a line; either alone
/// is a character. A word wider than the box stands alone on its line, and the word behind it counts as
/// width 0 on the next. A line has one colour. A mark is passed with the word it lies in or before, one word
/// ahead of the line being built; the line takes the colour of the last mark passed, except behind a word
/// that ends in CR LF.
///
/// Owns its texture. Invariant: no overlap or advance is negative; a font that isn't loaded has no glyphs,
/// height 0, and draws nothing. Null texts and rectangles count as empty.
class CItfFont
{
  public:
    CItfFont();
    virtual ~CItfFont();
    CItfFont(const CItfFont&) = delete;
    CItfFont& operator=(const CItfFont&) = delete;

    /// `file` lies in resource\txt_res\. False when the file or its texture can't be read; null render gives
    /// false. What is wrong with a file goes to the debug output. What was loaded before is given back first.
    bool Load(const char* file, IRender2D* render);
    /// The same from a file that is open, from its first byte on.
    bool LoadFrom(ds_file& file, IRender2D* render);
    /// Line height in pixels; 0 until a font is loaded.
    int GetHeight() const { return m_nHeight; }
    /// Advances minus the overlaps of all characters but the first, in pixels, held within MAX_TEXT_WIDTH.
    int GetWidth(const char* text) const;
    /// One line without wrapping, from `left` on, cut at `right`. Clipped to the surface.
    void DrawLine(int surface, int left, int top, int right, const char* text, std::uint32_t flags,
                  std::uint32_t colour) const;
    /// Wrapped text. marks may be null.
    void DrawBox(int surface, const RECT* rect, const char* text, std::uint32_t flags, std::uint32_t colour,
                 const std::vector<ColourMark>* marks) const;
    /// The lines of DrawBox without a limit in height; only the rectangle's width counts.
    int CountLines(const RECT* rect, const char* text) const;
    /// Where in the text the line `first + offset` begins, counted from 0; null past the end or below 0.
    const char* FindLine(const RECT* rect, const char* text, int first, int offset) const;
    /// Forgets the 2-D layer, so that the destructor doesn't give the texture back: for the module's
    /// unloading, when the host's layer may be gone.
    void Abandon();

    /// GetWidth goes no further in either direction, so that callers can add to it.
    static constexpr int MAX_TEXT_WIDTH = 1 << 30;

  private:
    static constexpr std::size_t SLOTS = 256;

    struct Glyph {
        RECT rc;         ///< in the texture as the file gives it; may reach beyond it
        RECT rcInk;      ///< the part of rc that lies in the texture and isn't all transparent; may be empty
        int overlap = 0; ///< drawn this far to the left of the pen, unless it is the first of the text
        int advance = 0; ///< the pen moves on by this
    };
    class LineBreaker;
    struct Canvas;

    void Reset();
    bool ReadFile(CTextParser& parser, ds_file& file);
    bool ReadGlyphs(CTextParser& parser, ds_file& file);
    bool ReadGlyph(CTextParser& parser, ds_file& file, bool& last);
    bool StoreGlyph(unsigned char character, const std::array<int, 6>& numbers);
    void FindInk();
    std::int64_t Measure(std::string_view text) const;
    std::int64_t CountLinesUpTo(std::int64_t width, const char* text, std::int64_t limit) const;
    void DrawText(int surface, int left, std::int64_t top, int right, std::string_view text,
                  std::uint32_t flags, std::uint32_t colour) const;
    void DrawGlyphs(const Canvas& canvas, std::int64_t pen, std::int64_t top, std::int64_t right,
                    std::string_view text, std::uint32_t colour) const;

    int m_nGlyphs = 0; ///< lines read, of which several may have been for the same character
    int m_nHeight = 0;
    int m_nTexture = -1;
    RECT m_rcTexture;
    std::array<Glyph, SLOTS> m_Glyphs;   ///< a character that the file doesn't give stays all zero
    std::array<int, SLOTS> m_Steps = {}; ///< advance less overlap: what a character adds to a width
    IRender2D* m_pRender2D = nullptr;
};
