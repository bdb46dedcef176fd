#pragma once
// How wide the characters of a font are, so that a long text is measured a character at a time.

#include <array>
#include <cstdint>
#include <string_view>

class CItfFont;

/// A copy of a font's widths: a width that grows or shrinks by a character costs one addition, where asking
/// the font means measuring the whole text again.
///
/// Invariant: Width gives what CItfFont::GetWidth gives for the same text, while the font stays loaded.
class CItfGlyphWidths
{
  public:
    /// Null makes every character 0 wide, as a missing font does.
    void Measure(const CItfFont* font);
    /// In pixels: the advances minus the overlaps of all characters but the first.
    std::int64_t Width(std::string_view text) const;
    /// How much further the pen is behind a character; the first of a text has no overlap.
    int Advance(char character) const { return m_Advance[static_cast<unsigned char>(character)]; }
    int Overlap(char character) const { return m_Overlap[static_cast<unsigned char>(character)]; }

  private:
    std::array<int, 256> m_Advance = {};
    std::array<int, 256> m_Overlap = {};
};
