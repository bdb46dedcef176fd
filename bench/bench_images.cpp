// The picture library beside its plainest forms: scaling and diffusion through GetPixel, diffusion with plain
// integers, a colour tree that goes through all pixels for each node, and plain reads of the same bytes.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "keelworks/ds_file.h"
#include "lib/bmpfile.h"
#include "lib/reducecolours.h"
#include "lib/teximage.h"
#include "lib/textures.h"
#include "platform/files.h"
#include "ratio.h"
#include "support/plain_image.h"

namespace
{

constexpr int WIDTH = 256;
constexpr int HEIGHT = 128;
constexpr int SMALL_WIDTH = 64;
constexpr int SMALL_HEIGHT = 32;
constexpr int SMALL_SHIFT = 2;
constexpr int MOST_COLOURS = 256;

constexpr double AIM_REDUCE = 0.05;
constexpr double AIM_SCALE = 0.3;
constexpr double AIM_DIFFUSE = 0.65;
/// Of a whole conversion beside its plain forms.
constexpr double AIM_CONVERT = 0.3;
/// Times the plain read of the same bytes.
constexpr double AIM_READ = 2.0;

/// Like a photograph: soft slopes in every channel, some edges, and noise.
CTexImage MakePhotograph(int width, int height, std::uint32_t format)
{
    std::mt19937 random(5);
    CTexImage image;
    image.Alloc(width, height, format);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const double u = 6.3 * x / width;
            const double v = 6.3 * y / height;
            const double ship = std::hypot(u - 3, v - 4) < 1.5 ? -60 : 0;
            const auto channel = [&](double level) {
                return static_cast<std::uint8_t>(
                    std::clamp(level + ship + static_cast<double>(random() % 17), 0.0, 255.0));
            };
            image.SetPixel(x, y,
                           {channel(140 + 70 * std::sin(v)), channel(120 + 50 * std::sin(u + v)),
                            channel(100 + 60 * std::cos(1.7 * u) * std::sin(v)), 255});
        }
    }
    return image;
}

CTexImage MakeEmpty(int width, int height, std::uint32_t format)
{
    CTexImage image;
    image.Alloc(width, height, format);
    return image;
}

void Stretch(benchmark::State& state)
{
    const CTexImage src = MakePhotograph(WIDTH, HEIGHT, static_cast<std::uint32_t>(state.range(0)));
    CTexImage out;
    CTexImage reference = MakeEmpty(SMALL_WIDTH, SMALL_HEIGHT, src.GetFormat());
    ratio::Measure(
        state, AIM_SCALE, [&] { out.StretchFrom(SMALL_WIDTH, SMALL_HEIGHT, src); },
        [&] { plain::Stretch(reference, src); });
}

void Shrink(benchmark::State& state)
{
    const CTexImage src = MakePhotograph(WIDTH, HEIGHT, static_cast<std::uint32_t>(state.range(0)));
    CTexImage out;
    CTexImage reference = MakeEmpty(SMALL_WIDTH, SMALL_HEIGHT, src.GetFormat());
    ratio::Measure(
        state, AIM_SCALE, [&] { out.ShrinkFrom(src, SMALL_SHIFT); },
        [&] { plain::Shrink(reference, src, SMALL_SHIFT); });
}

/// All levels behind the first.
void MipChain(benchmark::State& state)
{
    const CTexImage src = MakePhotograph(WIDTH, HEIGHT, TEX_ARGB8888);
    const int levels = LevelCount(src);
    ratio::Measure(
        state, AIM_SCALE,
        [&] {
            for (int level = 1; level < levels; ++level) {
                CTexImage out;
                out.ShrinkFrom(src, level);
            }
        },
        [&] {
            for (int level = 1; level < levels; ++level) {
                CTexImage out = MakeEmpty(WIDTH >> level, HEIGHT >> level, TEX_ARGB8888);
                plain::Shrink(out, src, level);
            }
        });
}

/// What one would write first for 32 bits to 5-6-5: three channels one after the other, in integers.
void DiffuseWithIntegers(const std::uint8_t* in, int width, int height, std::uint8_t* out)
{
    constexpr int kept[3] = {0xf8, 0xfc, 0xf8};
    std::vector<int> rows[2];
    rows[0].resize(3 * static_cast<std::size_t>(width + 2));
    rows[1].resize(rows[0].size());
    for (int y = 0; y < height; ++y) {
        // A column stands before the first one and another behind the last.
        int* cur = rows[y & 1].data() + 3;
        int* next = rows[(y + 1) & 1].data() + 3;
        for (int x = 0; x < width; ++x, in += 4, out += 2, cur += 3, next += 3) {
            int stored[3];
            for (int c = 0; c < 3; ++c) {
                const int value = std::clamp(in[c] + cur[c], 0, 255);
                stored[c] = value & kept[c];
                const int d = value - stored[c];
                cur[c] = 0;
                cur[c + 3] += (7 * d + 8) >> 4;
                next[c] += (5 * d + 8) >> 4;
                next[c - 3] += (3 * d + 8) >> 4;
                next[c + 3] += (d + 8) >> 4;
            }
            const int word = stored[2] << 8 | stored[1] << 3 | stored[0] >> 3;
            out[0] = static_cast<std::uint8_t>(word);
            out[1] = static_cast<std::uint8_t>(word >> 8);
        }
        // What went beyond the edges is lost.
        std::fill_n(cur, 3, 0);
        std::fill_n(next, 3, 0);
        std::fill_n(rows[(y + 1) & 1].data(), 3, 0);
    }
}

void Diffuse(benchmark::State& state)
{
    const CTexImage src = MakePhotograph(WIDTH, HEIGHT, TEX_ARGB8888);
    CTexImage out = MakeEmpty(WIDTH, HEIGHT, TEX_RGB565);
    std::vector<std::uint8_t> reference(out.GetDataSize());
    ratio::Measure(
        state, AIM_DIFFUSE, [&] { out.ConvertFrom(src); },
        [&] { DiffuseWithIntegers(src.GetPixelData(), WIDTH, HEIGHT, reference.data()); });
    if (!std::equal(reference.begin(), reference.end(), out.GetPixelData()))
        state.SkipWithError("the two forms differ");
}

void Reduce(benchmark::State& state)
{
    const CTexImage src = MakePhotograph(WIDTH, HEIGHT, TEX_RGB888);
    constexpr int count = WIDTH * HEIGHT;
    std::vector<std::uint32_t> pixels(count);
    src.GetPixels(pixels.data());
    std::vector<std::uint8_t> palette(4 * MOST_COLOURS);
    std::vector<std::uint8_t> reference(palette.size());
    ratio::Measure(
        state, AIM_REDUCE, [&] { ReduceColours(pixels.data(), count, palette.data(), MOST_COLOURS); },
        [&] { plain::Reducer(pixels.data(), count).Reduce(reference.data(), MOST_COLOURS); });
    if (palette != reference)
        state.SkipWithError("the two forms differ");
}

/// A folder of its own for the files of a benchmark, in memory where there is such a place: the wait for a
/// disk is the same for all forms.
class Folder
{
  public:
    Folder()
    {
        const std::filesystem::path memory = "/dev/shm";
        path = (std::filesystem::exists(memory) ? memory : std::filesystem::temp_directory_path()) /
               "bench_images";
        std::filesystem::create_directories(path);
        PlatformSetRoots(path.string(), "");
    }
    ~Folder() { std::filesystem::remove_all(path); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::filesystem::path path;
};

void Append(std::vector<std::uint8_t>& bytes, std::uint32_t value, int size)
{
    for (int i = 0; i < size; ++i)
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

/// A bitmap file of 24 bits; gives its size in bytes. The width is a multiple of 4.
std::size_t WriteBmp(const char* name, int width, int height)
{
    const CTexImage image = MakePhotograph(width, height, TEX_RGB888);
    constexpr std::uint32_t headers = 14 + 40;
    const auto size = static_cast<std::uint32_t>(image.GetDataSize());
    std::vector<std::uint8_t> bytes = {'B', 'M'};
    for (const std::uint32_t value : {headers + size, 0U, headers, 40U, static_cast<std::uint32_t>(width),
                                      static_cast<std::uint32_t>(height), 1U | 24U << 16})
        Append(bytes, value, 4);
    bytes.resize(headers);
    bytes.insert(bytes.end(), image.GetPixelData(), image.GetPixelData() + size);
    ds_file file(name, ds_file::MODE_WRITE);
    file.write(bytes.data(), bytes.size());
    return bytes.size();
}

/// As a whole, disk and all, beside the same steps in their plain forms and a plain write.
void ConvertWhole(benchmark::State& state)
{
    const Folder folder;
    WriteBmp("a.bmp", WIDTH, HEIGHT);
    ratio::Measure(
        state, AIM_CONVERT, [] { ConvertToTexture("a.bmp", "a.tf", 0, 0); },
        [] {
            CTexImage picture;
            picture.LoadBmp("a.bmp");
            CTexImage full = MakeEmpty(WIDTH, HEIGHT, TEX_ARGB8888);
            plain::Diffuse(full, picture);
            ds_file file("b.tf", ds_file::MODE_WRITE);
            for (int level = 0; level < LevelCount(picture); ++level) {
                CTexImage work = MakeEmpty(WIDTH >> level, HEIGHT >> level, TEX_ARGB8888);
                CTexImage out = MakeEmpty(WIDTH >> level, HEIGHT >> level, TEX_RGB565);
                if (level > 0)
                    plain::Shrink(work, full, level);
                plain::Diffuse(out, level > 0 ? work : full);
                file.write(out.GetPixelData(), out.GetDataSize());
            }
            file.close();
        });
}

/// Reads the bytes of a file in one piece.
template <class Read>
void ReadBeside(benchmark::State& state, Read read)
{
    const Folder folder;
    const auto width = static_cast<int>(state.range(0));
    const std::size_t size = WriteBmp("a.bmp", width, width / 2);
    std::vector<std::uint8_t> bytes(size);
    ratio::Measure(
        state, AIM_READ, [&] { read(bytes); },
        [&] {
            ds_file file("a.bmp", ds_file::MODE_READ);
            benchmark::DoNotOptimize(file.read(bytes.data(), bytes.size()));
        });
    state.SetBytesProcessed(static_cast<std::int64_t>(size) * state.iterations());
}

void ReadWithLoadBmp(benchmark::State& state)
{
    CTexImage image;
    ReadBeside(state, [&](std::vector<std::uint8_t>&) { image.LoadBmp("a.bmp"); });
}

void ReadWithBmpFile(benchmark::State& state)
{
    ReadBeside(state, [](std::vector<std::uint8_t>& bytes) {
        CBmpFile file;
        if (file.Load("a.bmp"))
            file.ReadAll24(bytes.data());
    });
}

} // namespace

BENCHMARK(Stretch)
    ->Arg(TEX_RGB888)
    ->Arg(TEX_ARGB8888)
    ->Arg(TEX_RGB565)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(Shrink)
    ->Arg(TEX_RGB888)
    ->Arg(TEX_ARGB8888)
    ->Arg(TEX_RGB565)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(MipChain)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(Diffuse)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(Reduce)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(ConvertWhole)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadWithLoadBmp)->Arg(256)->Arg(2048)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadWithBmpFile)->Arg(256)->Arg(2048)->UseManualTime()->Unit(benchmark::kMicrosecond);
