// Text: drawing beside a loop that tints pixel by pixel in double precision, wrapping beside a loop that
// fills lines word by word and knows nothing else.

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "controls/itffont.h"
#include "keelworks/ds_file.h"
#include "ratio.h"
#include "render/render2d.h"

namespace
{

constexpr int SCREEN_WIDTH = 800;
constexpr int SCREEN_HEIGHT = 600;
constexpr int TEXTURE_WIDTH = 320;
constexpr int TEXTURE_HEIGHT = 160;
constexpr int CELL_WIDTH = 20;
constexpr int CELL_HEIGHT = 20;
constexpr int LINE_HEIGHT = 18;
constexpr int FIRST_CHARACTER = ' ';
constexpr int LAST_CHARACTER = '~';
constexpr std::size_t GLYPHS_ON_SCREEN = 2000;
constexpr std::size_t LONG_TEXT = 100 * 1024;
constexpr int WRAP_WIDTH = 600;

constexpr double AIM_DRAW = 0.2;
constexpr double AIM_WRAP = 1.5;
constexpr double AIM_TWICE_THE_TEXT = 1.1;

constexpr std::uint32_t WHITE = 0xffffff;
constexpr std::uint32_t AMBER = 0x20a0f0;

struct Cell {
    int left = 0;
    int top = 0;
    int width = 0;
};

/// Widths like those of a proportional face, 4 to 12 pixels.
Cell CellOf(unsigned char c)
{
    if (c < FIRST_CHARACTER || c > LAST_CHARACTER)
        return {};
    const int n = c - FIRST_CHARACTER;
    constexpr int COLUMNS = TEXTURE_WIDTH / CELL_WIDTH;
    return {n % COLUMNS * CELL_WIDTH, n / COLUMNS * CELL_HEIGHT, c == ' ' ? 5 : 4 + n * 7 % 9};
}

void PaintGlyph(std::uint16_t* texels, int c, std::mt19937& random)
{
    constexpr int ASCENDER = 1;
    constexpr int X_HEIGHT = 5;
    constexpr int BASE_LINE = 14;
    constexpr int DESCENDER = 18;
    const Cell cell = CellOf(static_cast<unsigned char>(c));
    const int bottom = cell.top + (c % 5 == 0 ? DESCENDER : BASE_LINE);
    for (int y = cell.top + (c % 3 == 0 ? ASCENDER : X_HEIGHT); y < bottom; ++y) {
        for (int x = 0; x < cell.width - 1;) {
            const bool stroke = random() % 2 == 0;
            const int end = std::min(cell.width - 1, x + 1 + static_cast<int>(random() % 4));
            for (; x < end; ++x)
                texels[y * TEXTURE_WIDTH + cell.left + x] =
                    stroke ? static_cast<std::uint16_t>(1 + random() % 0xffff) : std::uint16_t{0};
        }
    }
}

/// A font whose texture holds strokes. Like letters, most glyphs leave the upper and the lower part of the
/// line empty; of what is left, about a half is covered, in runs.
class BenchFont
{
  public:
    BenchFont()
    {
        std::string content = "texture glyphs symbols {\n";
        for (int c = FIRST_CHARACTER; c <= LAST_CHARACTER; ++c) {
            const Cell cell = CellOf(static_cast<unsigned char>(c));
            content += c == FIRST_CHARACTER ? "\"" : ",\n\"";
            content += static_cast<char>(c);
            content += "\"";
            for (const int number :
                 {cell.left, cell.top, cell.left + cell.width, cell.top + LINE_HEIGHT, 0, cell.width})
                content.append(",").append(std::to_string(number));
        }
        content += "}\n";
        ds_file_buffered file;
        file.open_memory("bench.fnt", std::vector<char>(content.begin(), content.end()));
        m_bLoaded = font.LoadFrom(file, &render);
        for (int c = 0; c < 256; ++c)
            widths[c] = CellOf(static_cast<unsigned char>(c)).width;
    }
    bool IsLoaded() const { return m_bLoaded; }

    class Render : public CRender2D
    {
      public:
        int LoadSurface(const char*) override
        {
            const RECT rect{0, 0, TEXTURE_WIDTH, TEXTURE_HEIGHT};
            texture = CreateSurface(&rect);
            std::mt19937 random(5);
            std::uint16_t* texels = LockSurface(texture);
            for (int c = FIRST_CHARACTER + 1; c <= LAST_CHARACTER; ++c)
                PaintGlyph(texels, c, random);
            UnlockSurface(texture, 0);
            return texture;
        }
        int texture = -1;
    };

    Render render;
    CItfFont font;
    int widths[256] = {};

  private:
    bool m_bLoaded = false;
};

std::string MakeText(std::size_t size)
{
    std::mt19937 random(9);
    std::string text;
    while (text.size() < size) {
        for (std::size_t letters = 1 + random() % 10; letters > 0; --letters)
            text += static_cast<char>('a' + random() % 26);
        text += ' ';
    }
    text.resize(size);
    return text;
}

std::uint16_t TintInDouble(std::uint16_t texel, std::uint32_t colour)
{
    const int red = static_cast<int>((texel >> 11) * (colour & 0xff) / 255.0);
    const int green = static_cast<int>(((texel >> 5) & 63u) * ((colour >> 8) & 0xff) / 255.0);
    const int blue = static_cast<int>((texel & 31u) * ((colour >> 16) & 0xff) / 255.0);
    return static_cast<std::uint16_t>((red << 11) | (green << 5) | blue);
}

/// The same glyphs in rows as wide as the screen.
void DrawPlainly(const BenchFont& bench, const std::uint16_t* texels, std::uint16_t* target,
                 const std::string& text, std::uint32_t colour)
{
    int x = 0;
    int y = 0;
    for (const char c : text) {
        const Cell cell = CellOf(static_cast<unsigned char>(c));
        if (x + cell.width > SCREEN_WIDTH) {
            x = 0;
            y += LINE_HEIGHT;
        }
        for (int v = 0; v < LINE_HEIGHT; ++v)
            for (int u = 0; u < cell.width; ++u) {
                const std::uint16_t texel = texels[(cell.top + v) * TEXTURE_WIDTH + cell.left + u];
                if (texel != 0)
                    target[(y + v) * SCREEN_WIDTH + x + u] = TintInDouble(texel, colour);
            }
        x += bench.widths[static_cast<unsigned char>(c)];
    }
}

void ScreenOfGlyphs(benchmark::State& state)
{
    BenchFont bench;
    if (!bench.IsLoaded()) {
        state.SkipWithError("the font can't be loaded");
        return;
    }
    const auto colour = static_cast<std::uint32_t>(state.range(0));
    state.SetLabel(colour == WHITE ? "white" : "coloured");
    const RECT rect{0, 0, SCREEN_WIDTH, SCREEN_HEIGHT};
    const int target = bench.render.CreateSurface(&rect);
    const std::string text = MakeText(GLYPHS_ON_SCREEN);
    ratio::Measure(
        state, AIM_DRAW,
        [&] { bench.font.DrawBox(target, &rect, text.c_str(), FONT_MULTILINE, colour, nullptr); },
        [&] {
            DrawPlainly(bench, bench.render.LockSurface(bench.render.texture),
                        bench.render.LockSurface(target), text, colour);
            bench.render.UnlockSurface(target, 0);
            bench.render.UnlockSurface(bench.render.texture, 0);
        });
}

/// Words up to a blank go onto the line as long as they fit.
int CountPlainly(const char* text, const int* widths, int width)
{
    int lines = 1;
    int x = 0;
    int word = 0;
    for (; *text != '\0'; ++text) {
        word += widths[static_cast<unsigned char>(*text)];
        if (*text == ' ') {
            if (x + word > width) {
                ++lines;
                x = 0;
            }
            x += word;
            word = 0;
        }
    }
    return lines;
}

void WrapLongText(benchmark::State& state)
{
    const BenchFont bench;
    const std::string text = MakeText(LONG_TEXT);
    const RECT rect{0, 0, WRAP_WIDTH, SCREEN_HEIGHT};
    ratio::Measure(
        state, AIM_WRAP, [&] { benchmark::DoNotOptimize(bench.font.CountLines(&rect, text.c_str())); },
        [&] { benchmark::DoNotOptimize(CountPlainly(text.c_str(), bench.widths, WRAP_WIDTH)); });
}

/// A long text should take as long as its halves: the cost is linear. Both touch the same bytes, so that
/// cache and branch prediction are no part of the figure.
void WrapTwiceTheText(benchmark::State& state)
{
    const BenchFont bench;
    const std::string text = MakeText(2 * LONG_TEXT);
    const std::string halves[] = {text.substr(0, LONG_TEXT), text.substr(LONG_TEXT)};
    const RECT rect{0, 0, WRAP_WIDTH, SCREEN_HEIGHT};
    ratio::Measure(
        state, AIM_TWICE_THE_TEXT,
        [&] { benchmark::DoNotOptimize(bench.font.CountLines(&rect, text.c_str())); },
        [&] {
            for (const std::string& half : halves)
                benchmark::DoNotOptimize(bench.font.CountLines(&rect, half.c_str()));
        });
}

} // namespace

BENCHMARK(ScreenOfGlyphs)->Arg(WHITE)->Arg(AMBER)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(WrapLongText)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(WrapTwiceTheText)->UseManualTime()->Unit(benchmark::kMicrosecond);
