// The bitmap font: its file, its measures, its lines and its pixels. Pixels are checked against a drawing
// that looks at one pixel at a time and tints it in double precision.

#include "controls/itffont.h"

#include <climits>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "controls/glyphtint.h"
#include "keelworks/ds_file.h"
#include "render/render2d.h"
#include "support/fakes.h"
#include "support/picture_compare.h"
#include "support/rows.h"

using seawarden_test::FakeHost;
using seawarden_test::SamePicture;
using seawarden_test::TakePicture;

namespace
{

constexpr std::uint32_t WHITE = 0xffffff;
constexpr std::uint32_t AMBER = 0x20a0f0;
constexpr int HEIGHT = 10;
constexpr int TEXTURE_WIDTH = 64;
constexpr int TEXTURE_HEIGHT = 32;

/// The game's 2-D layer with one texture in place of picture files.
class FontRender : public CRender2D
{
  public:
    int LoadSurface(const char* file) override
    {
        if (std::string(file) != "glyphs.png")
            return -1;
        const RECT rect{0, 0, TEXTURE_WIDTH, TEXTURE_HEIGHT};
        texture = CreateSurface(&rect);
        std::uint16_t* texels = CRender2D::LockSurface(texture);
        std::mt19937 random(7);
        for (int i = 0; i < TEXTURE_WIDTH * TEXTURE_HEIGHT; ++i)
            texels[i] = random() % 3 == 0 ? std::uint16_t{0} : static_cast<std::uint16_t>(random());
        // The first glyph, of which only a corner and a texel that tints to 0 are there.
        for (int i = 0; i < 10; ++i)
            std::fill_n(texels + i * TEXTURE_WIDTH, 8, std::uint16_t{0});
        texels[3 * TEXTURE_WIDTH + 1] = 0x0001;
        texels[9 * TEXTURE_WIDTH + 7] = 0xffff;
        CRender2D::UnlockSurface(texture, 0);
        return texture;
    }
    void FreeSurface(int surface) override
    {
        freed.push_back(surface);
        CRender2D::FreeSurface(surface);
    }
    int texture = -1;
    std::vector<int> freed;
};

struct TestGlyph {
    RECT rc;
    int overlap = 0;
    int advance = 0;
};

// Letters of 8 pixels, of which `j` reaches 3 back and `W` is wider; a blank of 6. `#` lies partly, `@`
// wholly outside of the texture, `!` is inside out.
const std::map<char, TestGlyph> GLYPHS = {
    {'a', {{0, 0, 8, 10}, 0, 8}},    {'b', {{8, 0, 16, 10}, 0, 8}},
    {'c', {{16, 0, 23, 10}, 1, 8}},  {'d', {{24, 1, 27, 10}, 0, 8}},
    {'j', {{30, 0, 38, 12}, 3, 8}},  {'W', {{3, 12, 33, 24}, 0, 30}},
    {' ', {{60, 0, 61, 10}, 0, 6}},  {'"', {{40, 5, 45, 15}, 0, 6}},
    {'#', {{-5, -4, 9, 40}, 0, 10}}, {'@', {{30000, 30000, 32000, 32000}, 0, 8}},
    {'!', {{20, 20, 10, 10}, 0, 4}},
};

std::string FontFile()
{
    std::string lines;
    for (const auto& [c, glyph] : GLYPHS) {
        lines += lines.empty() ? "" : ",\r\n";
        lines += std::string("\"") + c + "\"";
        for (const int number :
             {glyph.rc.left, glyph.rc.top, glyph.rc.right, glyph.rc.bottom, glyph.overlap, glyph.advance})
            lines.append(", ").append(std::to_string(number));
    }
    return "; a font\r\ntexture = \"glyphs.png\"\r\nsymbols\r\n{\r\n" + lines + "\r\n}\r\n";
}

class FontTest : public ::testing::Test
{
  protected:
    bool Load(const std::string& content)
    {
        ds_file_buffered file;
        file.open_memory("main.fnt", std::vector<char>(content.begin(), content.end()));
        return font.LoadFrom(file, &render);
    }

    void SetUp() override
    {
        ASSERT_TRUE(Load(FontFile()));
        glyphPixels = TakePicture(render, render.texture);
    }

    int MakeTarget()
    {
        const RECT rect{0, 0, 120, 60};
        const int surface = render.CreateSurface(&rect);
        render.FillSurface(surface, RGB(64, 128, 192));
        return surface;
    }

    static int Naive(std::uint32_t level, std::uint32_t colour, int shift)
    {
        return static_cast<int>(level * ((colour >> shift) & 0xff) / 255.0);
    }
    static std::uint16_t NaiveTint(std::uint16_t texel, std::uint32_t colour)
    {
        return static_cast<std::uint16_t>((Naive(texel >> 11, colour, 0) << 11) |
                                          (Naive((texel >> 5) & 63u, colour, 8) << 5) |
                                          Naive(texel & 31u, colour, 16));
    }

    /// `text` with the pen starting at x, nothing right of `right`.
    void NaiveLine(Picture& out, int x, int top, int right, const std::string& text,
                   std::uint32_t colour) const
    {
        bool first = true;
        for (const char c : text) {
            const auto found = GLYPHS.find(c);
            const TestGlyph glyph = found != GLYPHS.end() ? found->second : TestGlyph();
            x -= first ? 0 : glyph.overlap;
            first = false;
            if (x > right)
                return;
            for (int v = std::max(0, glyph.rc.top); v < std::min(TEXTURE_HEIGHT, glyph.rc.bottom); ++v)
                for (int u = std::max(0, glyph.rc.left); u < std::min(TEXTURE_WIDTH, glyph.rc.right); ++u)
                    NaivePixel(out, x + u - glyph.rc.left, top + v - glyph.rc.top, right,
                               glyphPixels.m_aPixels[static_cast<std::size_t>(v * TEXTURE_WIDTH + u)],
                               colour);
            if (x + glyph.rc.right - glyph.rc.left > right)
                return;
            x += glyph.advance;
        }
    }
    static void NaivePixel(Picture& out, int x, int y, int right, std::uint16_t texel, std::uint32_t colour)
    {
        if (texel != 0 && x >= 0 && x < std::min(right, out.m_nWidth) && y >= 0 && y < out.m_nHeight)
            out.m_aPixels[static_cast<std::size_t>(y * out.m_nWidth + x)] = NaiveTint(texel, colour);
    }

    struct Line {
        int x, y;
        std::string text;
        std::uint32_t colour = WHITE;
    };
    /// Checks that just these lines were drawn on a target, none of them right of `right`.
    void ExpectLines(const std::vector<Line>& lines, int right, int surface)
    {
        const int plain = MakeTarget();
        Picture expected = TakePicture(render, plain);
        for (const Line& line : lines)
            NaiveLine(expected, line.x, line.y, right, line.text, line.colour);
        ASSERT_TRUE(SamePicture("font", TakePicture(render, surface), expected));
        render.FreeSurface(plain);
        render.FreeSurface(surface);
    }
    void ExpectBox(const std::vector<Line>& lines, const RECT& rect, const char* text, std::uint32_t flags,
                   const std::vector<ColourMark>* marks = nullptr)
    {
        const int surface = MakeTarget();
        font.DrawBox(surface, &rect, text, flags, WHITE, marks);
        ExpectLines(lines, rect.right, surface);
    }

    FakeHost host;
    FontRender render;
    CItfFont font;
    Picture glyphPixels;
};

TEST_F(FontTest, TintOfEveryLevelByEveryColourAndOfEveryWidth)
{
    constexpr int LEVELS = 64;
    constexpr int ROWS = 3;
    std::uint16_t texels[LEVELS * ROWS];
    for (unsigned i = 0; i < LEVELS * ROWS; ++i)
        texels[i] = i % 3 == 2 ? std::uint16_t{0}
                               : static_cast<std::uint16_t>(((i % 32) << 11) | (i % 64 << 5) | (31 - i % 32));
    for (std::uint32_t c = 0; c < 256; ++c) {
        const std::uint32_t colour = c | ((c * 7 & 0xff) << 8) | ((255 - c) << 16);
        const CGlyphTint tint(colour);
        const int width = static_cast<int>(c) % (LEVELS - 1);
        std::vector<std::uint16_t> wide(LEVELS * ROWS, 0x1234);
        std::vector<std::uint16_t> plain = wide;
        std::vector<std::uint16_t> expected = wide;
        tint.Copy(wide.data() + 1, LEVELS, texels + 1, LEVELS, width, ROWS);
        tint.CopyPlain(plain.data() + 1, LEVELS, texels + 1, LEVELS, width, ROWS);
        for (std::size_t i = 0; i < expected.size(); ++i) {
            const int column = static_cast<int>(i) % LEVELS;
            ASSERT_EQ(tint.Tint(texels[i]), NaiveTint(texels[i], colour)) << colour << ", " << texels[i];
            if (column > 0 && column <= width && texels[i] != 0)
                expected[i] = NaiveTint(texels[i], colour);
        }
        ASSERT_EQ(wide, expected) << "width " << width;
        ASSERT_EQ(plain, expected) << "width " << width;
    }
}

TEST_F(FontTest, LinesOfABox)
{
    using Begins =
        std::vector<std::pair<std::ptrdiff_t, const char*>>; // places in the text, and what is drawn
    const Rows<const char*, int, Begins> cases = {
        {"", 100, {}},
        {"ab cd", 22, {{0, "ab "}, {3, "cd"}}},
        // Trailing blanks count: "ab " is wider than 21, and what follows it counts as width 0.
        {"abaaba ab aa", 20, {{0, "abaaba "}, {7, "ab aa"}}},
        {"a\r\n\r\nb", 100, {{0, "a"}, {3, ""}, {5, "b"}}},
        {"a\r\n", 100, {{0, "a"}}},
        {"a\nb\rc\r", 100, {{0, "a\nb\rc\r"}}},
        {"a \t b", 20, {{0, "a \t "}, {4, "b"}}},
        // Blanks in front of the line break leave it to an empty word of its own.
        {"a \r\nb", 13, {{0, "a "}, {2, ""}, {4, "b"}}},
        // A word's first character counts without its overlap.
        {"jj jj", 32, {{0, "jj jj"}}},
        {"jj jj", 31, {{0, "jj "}, {3, "jj"}}},
        {"a b a", 0, {{0, "a "}, {2, "b "}, {4, "a"}}},
        {"a b", -1, {}},
    };
    for (const auto& [text, width, begins] : cases) {
        SCOPED_TRACE(testing::Message() << '"' << text << "\" in " << width);
        const RECT rect{10, 0, 10 + width, 60};
        EXPECT_EQ(font.CountLines(&rect, text), static_cast<int>(begins.size()));
        std::vector<Line> lines;
        for (const auto& [offset, drawn] : begins) {
            const int i = static_cast<int>(lines.size());
            EXPECT_EQ(font.FindLine(&rect, text, 3, i - 3) - text, offset);
            lines.push_back({10, i * HEIGHT, drawn});
        }
        const int past = std::max(static_cast<int>(begins.size()), 1);
        for (const auto& [from, by] : Rows<int, int>{{-1, 0}, {past, 0}, {INT_MAX, INT_MAX}})
            EXPECT_EQ(font.FindLine(&rect, text, from, by), nullptr);
        ExpectBox(lines, rect, text, FONT_MULTILINE);
    }
}

TEST_F(FontTest, PlacesOfLinesInABox)
{
    const Rows<RECT, std::uint32_t, const char*, std::vector<Line>> cases = {
        {{5, 5, 60, 34}, FONT_MULTILINE, "a\r\nb\r\nc\r\nd", {{5, 5, "a"}, {5, 15, "b"}}},
        {{5, 5, 60, 14}, FONT_MULTILINE, "a", {}},
        {{5, 5, 60, 5}, 0, "a\r\nb", {{5, 5, "a"}}},
        {{5, 0, 66, 30}, FONT_CENTER_HOR, "ab", {{5 + (61 - 16) / 2, 0, "ab"}}},
        {{5, 0, 65, 30}, FONT_RIGHT | FONT_CENTER_HOR, "ab", {{27, 0, "ab"}}},
        {{5, 0, 17, 30}, FONT_RIGHT, "aba", {{5, 0, "aba"}}},
        {{5, 2, 60, 33}, FONT_MULTILINE | FONT_CENTER_VERT, "a\r\nb", {{5, 7, "a"}, {5, 17, "b"}}},
        {{5, 2, 60, 33}, FONT_MULTILINE | FONT_CENTER_VERT, "a\r\n\r\n\r\nb", {{5, 2, "a"}}},
        // One line is drawn, but all are counted.
        {{5, 2, 60, 42}, FONT_CENTER_VERT, "a\r\nb", {{5, 12, "a"}}},
        {{60, 5, 5, 40}, FONT_MULTILINE, "a", {}},
    };
    for (const auto& [rect, flags, text, lines] : cases) {
        SCOPED_TRACE(testing::Message() << '"' << text << "\" flags " << flags << " to " << rect.right);
        ExpectBox(lines, rect, text, flags);
    }
}

TEST_F(FontTest, PixelsOfALineAndNothingOutsideTheSurfaceOrTheTexture)
{
    const char* const text = "ajW\"cd#b@!Wjj";
    const Rows<int, int, int> cases = {
        {3, 20, 1000},     {3, 20, 40},           {3, 20, 11},           {-60, 10, 120}, {-60, 10, -7},
        {60, -7, 200},     {60, -50, 90},         {100, 55, 2000},       {3, 60, 90},    {0, INT_MAX, 120},
        {0, INT_MIN, 120}, {INT_MIN, 0, INT_MAX}, {INT_MAX, 0, INT_MAX}, {50, 0, 20}};
    for (const std::uint32_t colour : {WHITE, AMBER, 0x010101u}) {
        for (const auto& [left, top, right] : cases) {
            SCOPED_TRACE(testing::Message() << left << ", " << top << " to " << right);
            // At the ends of the number range nothing can be seen, and the naive sums would overflow.
            std::vector<Line> lines;
            if (std::abs(top / 2) < 10000 && std::abs(left / 2) < 10000)
                lines.push_back({left, top, text, colour});
            const int surface = MakeTarget();
            font.DrawLine(surface, left, top, right, text, 0, colour);
            ExpectLines(lines, right, surface);
        }
    }
}

TEST_F(FontTest, MarksColourWholeLines)
{
    constexpr std::uint32_t ONE = 0x0000ff;
    constexpr std::uint32_t TWO = 0x00ff00;
    const Rows<const char*, std::size_t, std::vector<std::pair<int, std::uint32_t>>, std::vector<Line>>
        cases = {
            {"a b\r\nc d\r\n", 0, {{0, ONE}, {5, TWO}}, {{0, 0, "a b", ONE}, {0, 10, "c d", TWO}}},
            // A line's last word doesn't change its colour when it ends in a line break.
            {"a\r\nb", 0, {{0, ONE}, {3, TWO}}, {{0, 0, "a"}, {0, 10, "b", TWO}}},
            {"a\r\nb\r\n", 0, {{0, ONE}, {3, TWO}}, {{0, 0, "a"}, {0, 10, "b"}}},
            {"a b c", 0, {{2, ONE}, {4, TWO}}, {{0, 0, "a b c", TWO}}},
            {"a b", 0, {{3, ONE}}, {{0, 0, "a b"}}},
            // Marks in front of the part that is drawn have been passed with its first word.
            {"a b\r\nc d", 5, {{0, ONE}, {2, TWO}}, {{0, 0, "c d", TWO}}},
        };
    for (const auto& [text, drawnFrom, marked, lines] : cases) {
        SCOPED_TRACE(text);
        std::vector<ColourMark> marks;
        for (const auto& [offset, colour] : marked)
            marks.push_back({text + offset, colour});
        ExpectBox(lines, {0, 0, 100, 60}, text + drawnFrom, FONT_MULTILINE, &marks);
    }
}

TEST_F(FontTest, LongTexts)
{
    constexpr int LINES = 175'000;
    std::string words;
    for (int i = 0; i < LINES; ++i)
        words += "ab ab ";
    const RECT rect{0, 0, 44, 60};
    const char* const text = words.c_str();
    EXPECT_EQ(font.CountLines(&rect, text), LINES);
    EXPECT_EQ(font.FindLine(&rect, text, LINES - 1, 0) - text, static_cast<std::ptrdiff_t>(words.size() - 6));
    const int surface = MakeTarget();
    font.DrawBox(surface, &rect, text, FONT_MULTILINE | FONT_CENTER_VERT, WHITE, nullptr);
    EXPECT_EQ(font.CountLines(&rect, std::string(1'000'000, 'W').c_str()), 1);
}

TEST_F(FontTest, Files)
{
    const std::string head = "texture glyphs.png symbols {";
    std::string many = head;
    for (int i = 0; i < 256; ++i)
        many += "\"a\",0,0,5,5,0,5,";
    // The font's height and the width of a.
    const Rows<std::string, int, int> good = {
        {head + "\"a\",0,0,5,5,-1,7,\" \",0,0,5,12,0,5}", 12, 5},
        {head + "\"a\",0,0,5,5,0,7, \"a\",0,0,5,5,0,9}", 25, 9},
        {head + "\" \",0,9,5,5,0,7}", 25, 0},
        {many + "\"a\",0,0,5,5,0,99} this isn't read", 25, 5}, // beyond the most symbols
    };
    for (const auto& [content, height, widthOfA] : good) {
        SCOPED_TRACE(content.substr(0, 80));
        EXPECT_TRUE(Load(content));
        EXPECT_EQ(font.GetHeight(), height);
        EXPECT_EQ(font.GetWidth("a"), widthOfA);
        EXPECT_TRUE(host.debug.empty());
    }
    const std::string line2 = head + "\r\n";
    const Rows<std::string, const char*> bad = {
        {"", "main.fnt(1)"},
        {"texture " + std::string(300, 'x') + " symbols { }", "main.fnt(1)"},
        {"texture glyphs.png\r\nsymbols\r\n", "main.fnt(3)"},
        {"texture\r\nmissing.png\r\nsymbols {\r\n}", "main.fnt(2): the texture \"missing.png\""},
        {line2 + "\"a", "main.fnt(2)"},
        {line2 + "\"a\",0,0,5,5,0}", "main.fnt(2)"},
        {line2 + "\"a\",0,0,5,5,0,99999}", "main.fnt(2): a number"},
    };
    const int surface = MakeTarget();
    const RECT rect{0, 0, 20, 60};
    for (const auto& [content, told] : bad) {
        SCOPED_TRACE(content.substr(0, 80));
        host.debug.clear();
        EXPECT_FALSE(Load(content));
        EXPECT_EQ(font.GetHeight() + font.GetWidth("a"), 0);
        ASSERT_EQ(host.debug.size(), 1u);
        EXPECT_NE(host.debug[0].find(told), std::string::npos) << host.debug[0];
        font.DrawBox(surface, &rect, "a a\r\na", FONT_MULTILINE | FONT_CENTER_VERT, WHITE, nullptr);
    }
    host.debug.clear();
    EXPECT_FALSE(font.Load("none.fnt", &render));
    ASSERT_EQ(host.debug.size(), 1u);
    EXPECT_NE(host.debug[0].find("none.fnt"), std::string::npos);
}

TEST_F(FontTest, TextureIsGivenBackOnceOrAbandoned)
{
    for (const bool abandoned : {false, true}) {
        render.freed.clear();
        {
            CItfFont other;
            ds_file_buffered file;
            const std::string content = FontFile();
            file.open_memory("main.fnt", std::vector<char>(content.begin(), content.end()));
            ASSERT_TRUE(other.LoadFrom(file, &render));
            if (abandoned)
                other.Abandon();
        }
        EXPECT_EQ(render.freed, abandoned ? std::vector<int>{} : std::vector<int>{render.texture});
    }
}

} // namespace
