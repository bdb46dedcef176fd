#include "controls/itfglyphwidths.h"

#include "controls/itffont.h"

void CItfGlyphWidths::Measure(const CItfFont* font)
{
    m_Advance.fill(0);
    m_Overlap.fill(0);
    if (font == nullptr)
        return;
    // Byte 0 ends a text and has no width.
    for (std::size_t i = 1; i < m_Advance.size(); ++i) {
        const char character = static_cast<char>(static_cast<unsigned char>(i));
        const char once[] = {character, '\0'};
        const char twice[] = {character, character, '\0'};
        m_Advance[i] = font->GetWidth(once);
        m_Overlap[i] = 2 * m_Advance[i] - font->GetWidth(twice);
    }
}

std::int64_t CItfGlyphWidths::Width(std::string_view text) const
{
    if (text.empty())
        return 0;
    std::int64_t width = Overlap(text.front());
    for (const char character : text)
        width += Advance(character) - Overlap(character);
    return width;
}
