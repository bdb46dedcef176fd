#include "glyphpainter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <ft2build.h>
#include <stdexcept>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

namespace
{
constexpr double UNITS = 64.0; ///< FreeType's positions are 64ths of a pixel
constexpr int FIRST_HIGH = 0x80;
constexpr int LAST_HIGH = 0x9f;
/// Texels darker than this would become the key value in 16-bit colour.
constexpr SColour DARKEST = {8, 8, 8};

/// Unicode of the bytes 0x80 to 0x9f of code page 1252; 0 where the page has no letter.
constexpr std::array<int, LAST_HIGH - FIRST_HIGH + 1> HIGH_LETTERS = {
    0x20ac, 0,      0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017d, 0,      0,      0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0,      0x017e, 0x0178};

FT_ULong ToUnicode(int code)
{
    constexpr int NO_BREAK_SPACE = 0xa0;
    constexpr int SOFT_HYPHEN = 0xad;
    if (code >= FIRST_HIGH && code <= LAST_HIGH) {
        return static_cast<FT_ULong>(HIGH_LETTERS[static_cast<std::size_t>(code - FIRST_HIGH)]);
    }
    if (code == NO_BREAK_SPACE) {
        return ' ';
    }
    return static_cast<FT_ULong>(code == SOFT_HYPHEN ? '-' : code);
}

bool IsBlank(int code)
{
    return ToUnicode(code) == ' ';
}
} // namespace

class CGlyphPainter::CFace
{
  public:
    CFace(const std::string& file, double size)
    {
        if (FT_Init_FreeType(&m_pLibrary) != 0 || FT_New_Face(m_pLibrary, file.c_str(), 0, &m_pFace) != 0 ||
            FT_Set_Char_Size(m_pFace, 0, std::lround(size * UNITS), 72, 72) != 0) {
            FT_Done_FreeType(m_pLibrary);
            throw std::runtime_error(file + ": not a usable outline font");
        }
    }

    CFace(const CFace&) = delete;
    CFace& operator=(const CFace&) = delete;

    ~CFace() { FT_Done_FreeType(m_pLibrary); }

    bool Has(int code) const
    {
        const FT_ULong letter = ToUnicode(code);
        return letter != 0 && FT_Get_Char_Index(m_pFace, letter) != 0;
    }

    /// The slot holds the letter until the next call.
    FT_GlyphSlot Load(int code, double embolden) const
    {
        const FT_UInt index = FT_Get_Char_Index(m_pFace, ToUnicode(code));
        if (FT_Load_Glyph(m_pFace, index, FT_LOAD_NO_BITMAP | FT_LOAD_TARGET_LIGHT) != 0) {
            throw std::runtime_error("letter " + std::to_string(code) + " can't be loaded");
        }
        if (embolden != 0) {
            FT_Outline_Embolden(&m_pFace->glyph->outline, std::lround(embolden * UNITS));
        }
        return m_pFace->glyph;
    }

    int GetAscent() const { return static_cast<int>(std::ceil(GetMetrics().ascender / UNITS)); }
    int GetDescent() const { return static_cast<int>(std::ceil(-GetMetrics().descender / UNITS)); }

    int GetAdvance(int code) const
    {
        constexpr double FIXED_ONE = 65536.0;
        return static_cast<int>(
            std::lround(static_cast<double>(Load(code, 0)->linearHoriAdvance) / FIXED_ONE));
    }

  private:
    struct SMetrics {
        double ascender;
        double descender;
    };

    SMetrics GetMetrics() const
    {
        const FT_Size_Metrics& metrics = m_pFace->size->metrics;
        return {static_cast<double>(metrics.ascender), static_cast<double>(metrics.descender)};
    }

    FT_Library m_pLibrary = nullptr; ///< frees its faces too
    FT_Face m_pFace = nullptr;
};

/// How much of each pixel a letter covers, 0 to 1, with room around it for outline and shadow.
class CGlyphPainter::CCoverage
{
  public:
    CCoverage(int width, int height)
        : m_nWidth(width), m_nHeight(height),
          m_Values(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
    {
    }

    double Get(int x, int y) const
    {
        return x < 0 || y < 0 || x >= m_nWidth || y >= m_nHeight ? 0.0 : m_Values[Place(x, y)];
    }

    void Set(int x, int y, double value)
    {
        if (x >= 0 && y >= 0 && x < m_nWidth && y < m_nHeight) {
            m_Values[Place(x, y)] = value;
        }
    }

    /// The coverage of the letter grown by `radius` pixels, at one place.
    double GetGrown(int x, int y, double radius) const
    {
        const int reach = static_cast<int>(std::ceil(radius));
        double best = 0;
        for (int dy = -reach; dy <= reach; ++dy) {
            for (int dx = -reach; dx <= reach; ++dx) {
                const double weight = std::clamp(radius + 0.5 - std::hypot(dx, dy), 0.0, 1.0);
                best = std::max(best, weight * Get(x + dx, y + dy));
            }
        }
        return best;
    }

  private:
    std::size_t Place(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_nWidth) + static_cast<std::size_t>(x);
    }

    int m_nWidth;
    int m_nHeight;
    std::vector<double> m_Values;
};

CGlyphPainter::CGlyphPainter(const SFontStyle& style) : m_Style(style)
{
    m_Faces.push_back(std::make_unique<CFace>(style.face, style.size));
    if (!style.fallback.empty()) {
        m_Faces.push_back(std::make_unique<CFace>(style.fallback, style.size));
    }
    const CFace& face = *m_Faces.front();
    m_nBaseline = style.baseline > 0 ? style.baseline : face.GetAscent();
    m_nHeight = style.height > 0 ? style.height : face.GetAscent() + face.GetDescent();
    FT_BBox box{};
    FT_Outline_Get_CBox(&face.Load('H', style.embolden)->outline, &box);
    m_nCapTop = m_nBaseline - static_cast<int>(std::lround(static_cast<double>(box.yMax) / UNITS));
}

CGlyphPainter::~CGlyphPainter() = default;

const CGlyphPainter::CFace* CGlyphPainter::FindFace(int code) const
{
    for (const std::unique_ptr<CFace>& face : m_Faces) {
        if (face->Has(code)) {
            return face.get();
        }
    }
    return nullptr;
}

int CGlyphPainter::GetDigitAdvance() const
{
    int widest = 0;
    for (int digit = '0'; digit <= '9'; ++digit) {
        widest = std::max(widest, m_Faces.front()->GetAdvance(digit));
    }
    return widest;
}

std::vector<SGlyph> CGlyphPainter::PaintAll() const
{
    const int digitAdvance = GetDigitAdvance();
    std::vector<SGlyph> glyphs;
    for (const auto& [first, last] : m_Style.ranges) {
        for (int code = first; code <= last; ++code) {
            if (const CFace* face = FindFace(code)) {
                glyphs.push_back(Paint(*face, code, digitAdvance));
            }
        }
    }
    return glyphs;
}

SColour CGlyphPainter::FillAt(int y) const
{
    const double span = std::max(1, m_nBaseline - 1 - m_nCapTop);
    const double place =
        std::clamp((y - m_nCapTop) / span, 0.0, 1.0) * static_cast<double>(m_Style.fill.size() - 1);
    const std::size_t lower = static_cast<std::size_t>(place);
    const std::size_t upper = std::min(lower + 1, m_Style.fill.size() - 1);
    return Mix(m_Style.fill[lower], m_Style.fill[upper], place - static_cast<double>(lower));
}

SGlyph CGlyphPainter::Paint(const CFace& face, int code, int digitAdvance) const
{
    const bool digit = code >= '0' && code <= '9' && m_Style.tabular;
    const int ownAdvance = face.GetAdvance(code);
    const int advance = (digit ? digitAdvance : ownAdvance) + m_Style.tracking;
    const FT_GlyphSlot slot = face.Load(code, m_Style.embolden);
    if (FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL) != 0) {
        throw std::runtime_error("letter " + std::to_string(code) + " can't be drawn");
    }
    const FT_Bitmap& bitmap = slot->bitmap;
    const int bearing = slot->bitmap_left + (digit ? (digitAdvance - ownAdvance) / 2 : 0);
    const int grow = static_cast<int>(std::ceil(m_Style.outline));
    const int width = static_cast<int>(bitmap.width);
    const int inkLeft = bearing - std::max(grow, -m_Style.shadowX);
    const int inkRight = bearing + width + std::max(grow, m_Style.shadowX);

    SGlyph glyph;
    glyph.code = code;
    glyph.overlap = IsBlank(code) ? 0 : std::max(0, -inkLeft);
    glyph.advance = advance + glyph.overlap;
    const int cellWidth = IsBlank(code) ? advance : std::max(1, glyph.overlap + inkRight);
    CCoverage letter(cellWidth, m_nHeight);
    for (int y = 0; y < static_cast<int>(bitmap.rows); ++y) {
        for (int x = 0; x < width; ++x) {
            letter.Set(glyph.overlap + bearing + x, m_nBaseline - slot->bitmap_top + y,
                       bitmap.buffer[y * bitmap.pitch + x] / 255.0);
        }
    }
    glyph.cell = PaintCell(letter, cellWidth);
    return glyph;
}

CPicture CGlyphPainter::PaintCell(const CCoverage& letter, int width) const
{
    CPicture cell(width, m_nHeight);
    for (int y = 0; y < m_nHeight; ++y) {
        for (int x = 0; x < width; ++x) {
            const double body = letter.Get(x, y);
            const double rim = m_Style.outline > 0 ? letter.GetGrown(x, y, m_Style.outline) : 0.0;
            const double shade =
                m_Style.shadow > 0
                    ? m_Style.shadow * std::max(letter.Get(x - m_Style.shadowX, y - m_Style.shadowY), rim)
                    : 0.0;
            // Which texels are opaque depends on the shape alone, so that a hot or disabled form of the font,
            // which differs in colour, covers exactly the same pixels.
            if (1.0 - (1.0 - body) * (1.0 - rim) * (1.0 - shade) < m_Style.threshold) {
                continue;
            }
            SColour colour = Mix(m_Style.edge, m_Style.shadowColour, shade);
            colour = Mix(colour, m_Style.outlineColour, rim);
            colour = Mix(colour, FillAt(y), body);
            cell.Set(x, y,
                     {std::max(colour.r, DARKEST.r), std::max(colour.g, DARKEST.g),
                      std::max(colour.b, DARKEST.b)});
        }
    }
    return cell;
}
