#include "controls/itffont.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <limits>
#include <string>

#include "controls/glyphtint.h"
#include "irender2d.h"
#include "keelworks/ds_file.h"
#include "keelworks/text_parser.h"
#include "platform/files.h"
#include "platform/rect.h"
#include "platform/system.h"

namespace
{

constexpr char FONT_FOLDER[] = "resource\\txt_res\\";
/// Line height of a font that has glyphs but none for the blank.
constexpr int DEFAULT_HEIGHT = 25;
/// Glyph lines that count; what follows is left unread.
constexpr int MAX_GLYPHS = 256;
/// A number of a glyph line beyond this, in either direction, is a mistake in the file.
constexpr int MAX_GLYPH_NUMBER = 32767;
/// A glyph of more pixels isn't searched for its empty edges.
constexpr std::int64_t MAX_LETTER_PIXELS = std::int64_t{256} * 256;

void ReportError(const std::string& text)
{
    OutputDebugStringA((text + "\r\n").c_str());
}

/// For what the parser itself finds nothing wrong with. Gives false.
bool ReportAt(const ds_file& file, int line, const std::string& text)
{
    ReportError(std::string(file.get_name()) + "(" + std::to_string(line) + "): " + text);
    return false;
}

/// The last call of the parser failed. Gives false.
bool ReportParser(const CTextParser& parser)
{
    ReportError(parser.DescribeError());
    return false;
}

std::int64_t Width(const RECT& rect)
{
    return std::int64_t{rect.right} - rect.left;
}

std::int64_t Height(const RECT& rect)
{
    return std::int64_t{rect.bottom} - rect.top;
}

/// A surface that is locked as long as this lives.
class SurfaceLock
{
  public:
    SurfaceLock(IRender2D& render, int surface)
        : m_Render(render), m_nSurface(surface), m_pPixels(render.LockSurface(surface))
    {
    }
    ~SurfaceLock()
    {
        if (m_pPixels != nullptr)
            m_Render.UnlockSurface(m_nSurface, 0);
    }
    SurfaceLock(const SurfaceLock&) = delete;
    SurfaceLock& operator=(const SurfaceLock&) = delete;

    std::uint16_t* Pixels() const { return m_pPixels; }

  private:
    IRender2D& m_Render;
    int m_nSurface;
    std::uint16_t* m_pPixels;
};

/// The part of `rect` that lies in the texture and holds all its texels above 0; empty when there is none.
/// Null texels count as all above 0, and so does what is too large for a letter: a file may claim the whole
/// of a large texture for each of its glyphs.
RECT InkOf(RECT rect, const RECT& texture, const std::uint16_t* texels)
{
    if (!IntersectRect(&rect, &rect, &texture) || texels == nullptr ||
        Width(rect) * Height(rect) > MAX_LETTER_PIXELS)
        return rect;
    RECT ink{rect.right, rect.bottom, rect.left, rect.top};
    for (int y = rect.top; y < rect.bottom; ++y) {
        const std::uint16_t* row = texels + y * Width(texture);
        for (int x = rect.left; x < rect.right; ++x)
            if (row[x] != 0)
                ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1), y + 1};
    }
    return ink.left < ink.right ? ink : RECT();
}

} // namespace

/// The pixels of a locked target and of the locked texture.
struct CItfFont::Canvas {
    std::uint16_t* target;
    std::int64_t width;
    std::int64_t height;
    const std::uint16_t* texels;
    std::int64_t texelPitch;

    /// The glyph's rectangle has its left top corner at x, y; nothing right of `right` is drawn.
    void Draw(const CGlyphTint& tint, const Glyph& glyph, std::int64_t x, std::int64_t y,
              std::int64_t right) const
    {
        const RECT& ink = glyph.rcInk;
        // From texture to target.
        const std::int64_t dx = x - glyph.rc.left;
        const std::int64_t dy = y - glyph.rc.top;
        const std::int64_t x0 = std::max<std::int64_t>(ink.left + dx, 0);
        const std::int64_t y0 = std::max<std::int64_t>(ink.top + dy, 0);
        const std::int64_t x1 = std::min({ink.right + dx, right, width});
        const std::int64_t y1 = std::min(ink.bottom + dy, height);
        if (x0 < x1 && y0 < y1)
            tint.Copy(target + y0 * width + x0, width, texels + (y0 - dy) * texelPitch + (x0 - dx),
                      texelPitch, static_cast<int>(x1 - x0), static_cast<int>(y1 - y0));
    }
};

/// Breaks a text into lines, reading one word ahead. A line is a piece of the text: its words follow each
/// other without a gap, and only the CR LF behind the last isn't part of it.
class CItfFont::LineBreaker
{
  public:
    /// marks may be null.
    LineBreaker(const CItfFont& font, std::int64_t width, const char* text, std::uint32_t colour,
                const std::vector<ColourMark>* marks)
        : m_Font(font), m_nWidth(width), m_pCursor(text), m_pWord(text), m_pWordEnd(text), m_pLine(text),
          m_pLineEnd(text), m_nColour(colour), m_nNextColour(colour)
    {
        if (marks != nullptr) {
            m_pMark = marks->data();
            m_pMarksEnd = marks->data() + marks->size();
        }
        if (m_nWidth >= 0)
            ReadWord();
    }

    /// False, with the line as it was, at the end of the text.
    bool NextLine()
    {
        if (!HasWord())
            return false;
        m_pLine = m_pWord;
        if (m_nWordWidth > m_nWidth) {
            m_pLineEnd = m_pWordEnd;
            ReadWord();
            m_nWordWidth = 0; // what follows an over-wide word isn't measured
            return true;
        }
        std::int64_t left = m_nWidth;
        bool full = false;
        while (!full && HasWord() && m_nWordWidth <= left) {
            m_pLineEnd = m_pWordEnd;
            full = m_bBreak;
            left -= m_nWordWidth;
            ReadWord();
            if (!full)
                m_nColour = m_nNextColour;
        }
        return true;
    }

    std::string_view Line() const
    {
        return std::string_view(m_pLine, static_cast<std::size_t>(m_pLineEnd - m_pLine));
    }
    std::uint32_t Colour() const { return m_nColour; }
    /// Whether a further line follows, and where it begins.
    bool HasWord() const { return m_pWord != m_pWordEnd || m_bBreak; }
    const char* NextBegin() const { return m_pWord; }

  private:
    static bool IsBlank(char c) { return c == ' ' || c == '\t'; }
    int Step(char c) const { return m_Font.m_Steps[static_cast<unsigned char>(c)]; }

    /// The word at the cursor: empty without a line break at the end of the text.
    void ReadWord()
    {
        const char* p = m_pCursor;
        std::int64_t width = 0;
        m_pWord = p;
        m_bBreak = false;
        for (;; ++p) {
            const char c = *p;
            if (static_cast<unsigned char>(c) <= ' ') {
                if (c == '\0' || IsBlank(c))
                    break;
                if (c == '\r' && p[1] == '\n') {
                    m_bBreak = true;
                    break;
                }
            }
            width += Step(c);
        }
        for (; IsBlank(*p); ++p)
            width += Step(*p);
        if (p != m_pWord)
            width += m_Font.m_Glyphs[static_cast<unsigned char>(*m_pWord)].overlap;
        m_pWordEnd = p;
        m_nWordWidth = width;
        m_pCursor = m_bBreak ? p + 2 : p;
        while (m_pMark != m_pMarksEnd && std::less<const char*>()(m_pMark->place, m_pCursor))
            m_nNextColour = m_pMark++->colour;
    }

    const CItfFont& m_Font;
    std::int64_t m_nWidth;
    const char* m_pCursor; ///< behind the word read ahead and its line break
    const char* m_pWord;
    const char* m_pWordEnd;
    std::int64_t m_nWordWidth = 0;
    bool m_bBreak = false; ///< the word ended in CR LF
    const char* m_pLine;
    const char* m_pLineEnd;
    std::uint32_t m_nColour;
    std::uint32_t m_nNextColour; ///< of the last mark passed
    const ColourMark* m_pMark = nullptr;
    const ColourMark* m_pMarksEnd = nullptr;
};

CItfFont::CItfFont() = default;

CItfFont::~CItfFont()
{
    Reset();
}

void CItfFont::Abandon()
{
    m_pRender2D = nullptr;
    m_nTexture = -1;
}

void CItfFont::Reset()
{
    if (m_pRender2D != nullptr && m_nTexture >= 0)
        m_pRender2D->FreeSurface(m_nTexture);
    Abandon();
    m_nGlyphs = 0;
    m_nHeight = 0;
    m_rcTexture = RECT();
    m_Glyphs.fill(Glyph());
    m_Steps.fill(0);
}

bool CItfFont::Load(const char* file, IRender2D* render)
{
    Reset();
    if (file == nullptr || render == nullptr)
        return false;
    try {
        ds_file_buffered source((std::string(FONT_FOLDER) + file).c_str(), false);
        return LoadFrom(source, render);
    } catch (const std::exception& error) {
        ReportError(error.what());
        return false;
    }
}

bool CItfFont::LoadFrom(ds_file& file, IRender2D* render)
{
    Reset();
    if (render == nullptr)
        return false;
    m_pRender2D = render;
    bool loaded = false;
    try {
        CTextParser parser(&file, false);
        loaded = ReadFile(parser, file);
    } catch (const std::exception& error) {
        ReportError(std::string(file.get_name()) + ": " + error.what());
    }
    if (!loaded)
        Reset();
    return loaded;
}

bool CItfFont::ReadFile(CTextParser& parser, ds_file& file)
{
    char texture[MAX_PATH];
    if (!parser.ReadNamedVal("texture", texture, sizeof texture, true))
        return ReportParser(parser);
    const int textureLine = parser.GetLine();
    if (!parser.SeekToToken("symbols") || !parser.SkipTillChar('{'))
        return ReportParser(parser);
    if (!ReadGlyphs(parser, file))
        return false;
    m_nTexture = m_pRender2D->LoadSurface(texture);
    if (m_nTexture < 0)
        return ReportAt(file, textureLine, std::string("the texture \"") + texture + "\" can't be loaded");
    m_pRender2D->GetSurfaceRect(m_nTexture, &m_rcTexture);
    if (m_nHeight == 0 && m_nGlyphs > 0)
        m_nHeight = DEFAULT_HEIGHT;
    FindInk();
    return true;
}

/// Most of a glyph's rectangle is empty; the drawing loop needn't look at it.
void CItfFont::FindInk()
{
    const SurfaceLock texture(*m_pRender2D, m_nTexture);
    for (Glyph& glyph : m_Glyphs)
        glyph.rcInk = InkOf(glyph.rc, m_rcTexture, texture.Pixels());
}

bool CItfFont::ReadGlyphs(CTextParser& parser, ds_file& file)
{
    bool last = parser.SkipSpace(false) == '}';
    while (!last && m_nGlyphs < MAX_GLYPHS)
        if (!ReadGlyph(parser, file, last))
            return false;
    return true;
}

bool CItfFont::ReadGlyph(CTextParser& parser, ds_file& file, bool& last)
{
    if (parser.SkipSpace(true) != '"')
        return ReportAt(file, parser.GetLine(), "a character in quotes expected");
    unsigned char character = 0;
    if (file.read(&character, 1) != 1)
        return ReportAt(file, parser.GetLine(), "a character expected before the end of the file");
    if (!parser.SkipTillChar('"'))
        return ReportParser(parser);
    if (parser.SkipSpace(true) != ',')
        return ReportAt(file, parser.GetLine(), "a comma expected behind the character");
    std::array<int, 6> numbers = {};
    for (std::size_t i = 0; i < numbers.size() - 1; ++i)
        if (!parser.ReadIntElem(',', numbers[i]))
            return ReportParser(parser);
    if (!parser.ReadIntElem(',', '}', numbers.back(), last))
        return ReportParser(parser);
    if (!StoreGlyph(character, numbers))
        return ReportAt(file, parser.GetLine(),
                        "a number is beyond " + std::to_string(MAX_GLYPH_NUMBER) + " pixels");
    return true;
}

bool CItfFont::StoreGlyph(unsigned char character, const std::array<int, 6>& numbers)
{
    for (const int number : numbers)
        if (number > MAX_GLYPH_NUMBER || number < -MAX_GLYPH_NUMBER)
            return false;
    Glyph& glyph = m_Glyphs[character];
    glyph = {{numbers[0], numbers[1], numbers[2], numbers[3]}, RECT(), numbers[4], numbers[5]};
    if (glyph.overlap < 0 || glyph.advance < 0) {
        glyph.overlap = 0;
        glyph.advance = std::max(0, glyph.rc.right - glyph.rc.left);
    }
    m_Steps[character] = glyph.advance - glyph.overlap;
    // Of a rectangle that is upside down, no height can be had: the default stands in.
    if (character == ' ')
        m_nHeight = std::max(0, glyph.rc.bottom - glyph.rc.top);
    ++m_nGlyphs;
    return true;
}

std::int64_t CItfFont::Measure(std::string_view text) const
{
    if (text.empty())
        return 0;
    std::int64_t width = m_Glyphs[static_cast<unsigned char>(text.front())].overlap;
    for (const char c : text)
        width += m_Steps[static_cast<unsigned char>(c)];
    return width;
}

int CItfFont::GetWidth(const char* text) const
{
    if (text == nullptr)
        return 0;
    constexpr std::int64_t LIMIT = MAX_TEXT_WIDTH;
    return static_cast<int>(std::clamp(Measure(text), -LIMIT, LIMIT));
}

void CItfFont::DrawLine(int surface, int left, int top, int right, const char* text, std::uint32_t flags,
                        std::uint32_t colour) const
{
    if (text != nullptr)
        DrawText(surface, left, top, right, text, flags, colour);
}

void CItfFont::DrawText(int surface, int left, std::int64_t top, int right, std::string_view text,
                        std::uint32_t flags, std::uint32_t colour) const
{
    if (m_pRender2D == nullptr)
        return;
    std::int64_t pen = left;
    if ((flags & FONT_CENTER_HOR) != 0)
        pen += (std::int64_t{right} - left - Measure(text)) / 2;
    else if ((flags & FONT_RIGHT) != 0)
        pen = right - Measure(text);
    pen = std::max<std::int64_t>(pen, left);

    const SurfaceLock texture(*m_pRender2D, m_nTexture);
    const SurfaceLock target(*m_pRender2D, surface);
    if (texture.Pixels() == nullptr || target.Pixels() == nullptr)
        return;
    RECT rect;
    m_pRender2D->GetSurfaceRect(surface, &rect);
    const Canvas canvas = {target.Pixels(), Width(rect), Height(rect), texture.Pixels(), Width(m_rcTexture)};
    DrawGlyphs(canvas, pen, top, right, text, colour);
}

void CItfFont::DrawGlyphs(const Canvas& canvas, std::int64_t pen, std::int64_t top, std::int64_t right,
                          std::string_view text, std::uint32_t colour) const
{
    const CGlyphTint tint(colour);
    bool first = true;
    for (const char c : text) {
        const Glyph& glyph = m_Glyphs[static_cast<unsigned char>(c)];
        if (!first)
            pen -= glyph.overlap;
        first = false;
        if (pen > right)
            return;
        canvas.Draw(tint, glyph, pen, top, right);
        if (pen + Width(glyph.rc) > right)
            return;
        pen += glyph.advance;
    }
}

void CItfFont::DrawBox(int surface, const RECT* rect, const char* text, std::uint32_t flags,
                       std::uint32_t colour, const std::vector<ColourMark>* marks) const
{
    if (rect == nullptr || text == nullptr || m_nHeight <= 0)
        return;
    const std::int64_t boxHeight = Height(*rect);
    std::int64_t left = (flags & FONT_MULTILINE) != 0 ? boxHeight : m_nHeight;
    std::int64_t y = rect->top;
    if ((flags & FONT_CENTER_VERT) != 0) {
        // One line more than fits puts the block at the top already; the rest needn't be counted.
        const std::int64_t limit = std::max<std::int64_t>(0, boxHeight / m_nHeight) + 1;
        const std::int64_t lines = CountLinesUpTo(Width(*rect), text, limit);
        y += std::max<std::int64_t>(0, (boxHeight - m_nHeight * lines) / 2);
    }
    LineBreaker breaker(*this, Width(*rect), text, colour, marks);
    while (left >= m_nHeight && breaker.NextLine()) {
        DrawText(surface, rect->left, y, rect->right, breaker.Line(), flags, breaker.Colour());
        y += m_nHeight;
        left -= m_nHeight;
    }
}

std::int64_t CItfFont::CountLinesUpTo(std::int64_t width, const char* text, std::int64_t limit) const
{
    LineBreaker breaker(*this, width, text, 0, nullptr);
    std::int64_t lines = 0;
    while (lines < limit && breaker.NextLine())
        ++lines;
    return lines;
}

int CItfFont::CountLines(const RECT* rect, const char* text) const
{
    if (rect == nullptr || text == nullptr)
        return 0;
    return static_cast<int>(CountLinesUpTo(Width(*rect), text, std::numeric_limits<int>::max()));
}

const char* CItfFont::FindLine(const RECT* rect, const char* text, int first, int offset) const
{
    const std::int64_t wanted = std::int64_t{first} + offset;
    if (rect == nullptr || text == nullptr || wanted < 0)
        return nullptr;
    if (wanted == 0)
        return text;
    LineBreaker breaker(*this, Width(*rect), text, 0, nullptr);
    for (std::int64_t line = 0; line < wanted; ++line)
        if (!breaker.NextLine())
            return nullptr;
    return breaker.HasWord() ? breaker.NextBegin() : nullptr;
}
