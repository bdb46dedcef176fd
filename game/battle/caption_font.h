#pragma once
// Letters for what the game itself writes on the display.

#include <array>
#include <string>
#include <vector>

#include "platform/types.h"
#include "render/blit.h"
#include "render/picture.h"

class CTextParser;
class ds_file;

/// Reads the same font files as the front end. A byte of a text is a character of code page 1252.
class CCaptionFont
{
  public:
    /// `file` is a path. What is wrong goes to the debug output; the font then has no letters.
    void Load(const char* file);
    /// Pixels; 0 without letters.
    int Height() const { return m_nHeight; }
    int Width(const std::string& text) const;
    /// One line with its left top corner there, clipped to the target.
    void Draw(const PixelView& target, int left, int top, const std::string& text) const;
    /// The same in one colour, with the letters' brightness as its cover; `cover` 0 to 255 thins it further.
    void DrawInk(const PixelView& target, int left, int top, const std::string& text, std::uint16_t colour,
                 int cover = FULL_COVER) const;

  private:
    static constexpr int MAX_NUMBER = 32767;
    static constexpr int FULL_COVER = 255;
    struct Letter {
        RECT rc;
        int overlap = 0;
        int advance = 0;
    };
    void Read(CTextParser& parser, ds_file& file);
    void MeasureCovers();
    void DrawLetterInk(const PixelView& target, int left, int top, const RECT& letter, std::uint16_t colour,
                       int cover) const;
    bool ReadLetter(CTextParser& parser, ds_file& file, bool& last);
    const Letter& Of(char character) const { return m_Letters[static_cast<unsigned char>(character)]; }

    std::array<Letter, 256> m_Letters = {};
    Picture m_Picture;
    std::vector<std::uint8_t> m_Covers; ///< of the picture's pixels
    int m_nHeight = 0;
};
