#pragma once
// Letters for what the game itself writes on the display.

#include <array>
#include <string>

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

  private:
    static constexpr int MAX_NUMBER = 32767;
    struct Letter {
        RECT rc;
        int overlap = 0;
        int advance = 0;
    };
    void Read(CTextParser& parser, ds_file& file);
    bool ReadLetter(CTextParser& parser, ds_file& file, bool& last);
    const Letter& Of(char character) const { return m_Letters[static_cast<unsigned char>(character)]; }

    std::array<Letter, 256> m_Letters = {};
    Picture m_Picture;
    int m_nHeight = 0;
};
