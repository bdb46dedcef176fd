#include "battle/caption_font.h"

#include <algorithm>
#include <exception>
#include <stdexcept>

#include "battle/colour.h"
#include "keelworks/ds_file.h"
#include "keelworks/text_parser.h"
#include "platform/files.h"
#include "platform/system.h"

void CCaptionFont::Load(const char* file)
{
    *this = CCaptionFont();
    try {
        ds_file_buffered source(file, false);
        CTextParser parser(&source, false);
        Read(parser, source);
    } catch (const std::exception& error) {
        *this = CCaptionFont();
        OutputDebugStringA((std::string("Caption: ") + file + ": " + error.what() + "\r\n").c_str());
    }
}

void CCaptionFont::Read(CTextParser& parser, ds_file& file)
{
    char texture[MAX_PATH];
    bool last = false;
    bool good = parser.ReadNamedVal("texture", texture, sizeof(texture), true) &&
                parser.SeekToToken("symbols") && parser.SkipTillChar('{');
    while (good && !last)
        good = ReadLetter(parser, file, last);
    if (!good)
        throw std::runtime_error("wrong letter in line " + std::to_string(parser.GetLine()));
    m_Picture = LoadPicture(texture);
    MeasureCovers();
    const RECT& blank = Of(' ').rc;
    m_nHeight = blank.bottom - blank.top;
}

// A letter's own pixels are its brightest, those of its edge the darkest.
void CCaptionFont::MeasureCovers()
{
    constexpr int GREEN_SHIFT = 5;
    const auto green = [](std::uint16_t pixel) { return (pixel >> GREEN_SHIFT) & GREEN_MAX; };
    int darkest = GREEN_MAX;
    int brightest = 0;
    for (const std::uint16_t pixel : m_Picture.m_aPixels) {
        if (pixel == KEY_PIXEL)
            continue;
        darkest = std::min(darkest, green(pixel));
        brightest = std::max(brightest, green(pixel));
    }
    const int range = std::max(1, brightest - darkest);
    for (const std::uint16_t pixel : m_Picture.m_aPixels)
        m_Covers.push_back(static_cast<std::uint8_t>(
            pixel == KEY_PIXEL ? 0 : std::max(0, green(pixel) - darkest) * FULL_COVER / range));
}

bool CCaptionFont::ReadLetter(CTextParser& parser, ds_file& file, bool& last)
{
    unsigned char character = 0;
    if (parser.SkipSpace(true) != '"' || file.read(&character, 1) != 1 || !parser.SkipTillChar('"') ||
        parser.SkipSpace(true) != ',')
        return false;
    std::array<int, 6> numbers = {};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const bool read = i + 1 < numbers.size() ? parser.ReadIntElem(',', numbers[i])
                                                 : parser.ReadIntElem(',', '}', numbers[i], last);
        if (!read || numbers[i] < -MAX_NUMBER || numbers[i] > MAX_NUMBER)
            return false;
    }
    Letter& letter = m_Letters[character];
    letter.rc = {numbers[0], numbers[1], numbers[2], numbers[3]};
    letter.overlap = std::max(0, numbers[4]);
    letter.advance = std::max(0, numbers[5]);
    return true;
}

int CCaptionFont::Width(const std::string& text) const
{
    int width = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        width += Of(text[i]).advance - (i == 0 ? 0 : Of(text[i]).overlap);
    return width;
}

void CCaptionFont::Draw(const PixelView& target, int left, int top, const std::string& text) const
{
    if (m_nHeight <= 0)
        return;
    // The blit reads its source alone.
    const PixelView source = {const_cast<std::uint16_t*>(m_Picture.m_aPixels.data()), m_Picture.m_nWidth,
                              m_Picture.m_nHeight};
    BlitScratch scratch;
    int pen = left;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const Letter& letter = Of(text[i]);
        pen -= i == 0 ? 0 : letter.overlap;
        const RECT place = {pen, top, pen + (letter.rc.right - letter.rc.left),
                            top + (letter.rc.bottom - letter.rc.top)};
        BlitPixels(target, place, source, letter.rc, true, scratch);
        pen += letter.advance;
    }
}

void CCaptionFont::DrawInk(const PixelView& target, int left, int top, const std::string& text,
                           std::uint16_t colour, int cover) const
{
    int pen = left;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const Letter& letter = Of(text[i]);
        pen -= i == 0 ? 0 : letter.overlap;
        DrawLetterInk(target, pen, top, letter.rc, colour, cover);
        pen += letter.advance;
    }
}

void CCaptionFont::DrawLetterInk(const PixelView& target, int left, int top, const RECT& letter,
                                 std::uint16_t colour, int cover) const
{
    const RECT within = {std::max<LONG>(letter.left, 0), std::max<LONG>(letter.top, 0),
                         std::min<LONG>(letter.right, m_Picture.m_nWidth),
                         std::min<LONG>(letter.bottom, m_Picture.m_nHeight)};
    for (LONG row = within.top; row < within.bottom; ++row) {
        const LONG y = top + row - letter.top;
        if (y < 0 || y >= target.m_nHeight)
            continue;
        for (LONG column = within.left; column < within.right; ++column) {
            const LONG x = left + column - letter.left;
            const int own = m_Covers[static_cast<std::size_t>(row * m_Picture.m_nWidth + column)];
            if (own == 0 || x < 0 || x >= target.m_nWidth)
                continue;
            std::uint16_t& pixel =
                target.m_pPixels[static_cast<std::ptrdiff_t>(y) * target.m_nWidth + static_cast<int>(x)];
            pixel = BlendPixel(pixel, colour, own * cover / FULL_COVER);
        }
    }
}
