// Scaling by the means of blocks.
//
// Sums of bytes are whole numbers, which a float holds exactly below 2^24, whatever the order of the
// additions. So they are added as integers, four fields in one word, as long as a block's sums can't grow
// beyond what is exact. Blocks that are larger go pixel by pixel.

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

#include "lib/teximage.h"
#include "lib/texpixel.h"

namespace
{

constexpr std::size_t CHANNELS = 4;
constexpr std::int64_t MOST_VALUE = 255;
constexpr std::int64_t EXACT_IN_FLOAT = std::int64_t{1} << 24;
/// The largest shift whose sums are added as 32-bit integers.
constexpr int MOST_WORD_SHIFT = 11;
/// A shift that leaves nothing of any side.
constexpr int MOST_SHIFT = 31;

constexpr std::uint64_t EVEN_BYTES = 0x00ff00ff00ff00ff;
/// Bytes whose sum a field of 16 bits holds.
constexpr int MOST_HELD = 257;
/// Pixels of a block's row that are added in one go, two for each field.
constexpr int MOST_PIXELS = 2 * (MOST_HELD - 1);

/// Sums of a row of blocks of a picture.
class BlockRow
{
  public:
    /// `blocks` blocks of `width` by `height` pixels side by side, which lie within `image`.
    BlockRow(const CTexImage& image, int blocks, int width, int height)
        : m_Image(image), m_nWidth(width), m_nHeight(height),
          m_Row(static_cast<std::size_t>(blocks) * static_cast<std::size_t>(width)),
          m_Blocks(static_cast<std::size_t>(blocks)), m_Means(m_Blocks.size())
    {
    }

    /// Row `y` of the blocks, each sum put through `mean`, which gives a float below 256.
    template <class Mean>
    const std::uint32_t* MeansOf(int y, Mean mean)
    {
        Add(y);
        for (std::size_t i = 0; i < m_Blocks.size(); ++i) {
            std::int32_t bytes[CHANNELS];
            for (std::size_t c = 0; c < CHANNELS; ++c)
                bytes[c] = static_cast<std::int32_t>(mean(m_Blocks[i].sums[c]));
            m_Means[i] = static_cast<std::uint32_t>(bytes[0] | bytes[1] << 8 | bytes[2] << 16) |
                         static_cast<std::uint32_t>(bytes[3]) << 24;
        }
        return m_Means.data();
    }

  private:
    /// Fields of 16 bits hold blue and red, and green and alpha, of two pixels each until they are full.
    struct Block {
        std::uint64_t blueRed = 0;
        std::uint64_t greenAlpha = 0;
        std::int32_t sums[CHANNELS] = {};

        void Add(const std::uint32_t* in, int count)
        {
            std::uint64_t first = blueRed;
            std::uint64_t second = greenAlpha;
            for (; count >= 2; count -= 2, in += 2) {
                std::uint64_t pair = 0;
                std::memcpy(&pair, in, sizeof pair);
                first += pair & EVEN_BYTES;
                second += pair >> 8 & EVEN_BYTES;
            }
            if (count > 0) {
                first += *in & EVEN_BYTES;
                second += *in >> 8 & EVEN_BYTES;
            }
            blueRed = first;
            greenAlpha = second;
        }
        void Empty()
        {
            const auto both = [](std::uint64_t fields, unsigned shift) {
                return static_cast<std::int32_t>((fields >> shift & 0xffff) +
                                                 (fields >> (shift + 32) & 0xffff));
            };
            sums[0] += both(blueRed, 0);
            sums[1] += both(greenAlpha, 0);
            sums[2] += both(blueRed, 16);
            sums[3] += both(greenAlpha, 16);
            blueRed = 0;
            greenAlpha = 0;
        }
    };

    void Add(int y)
    {
        const std::size_t rowBytes =
            BytesOfPixel(m_Image.GetBits()) * static_cast<std::size_t>(m_Image.GetWidth());
        const std::uint8_t* in = m_Image.GetPixelData() +
                                 rowBytes * static_cast<std::size_t>(y) * static_cast<std::size_t>(m_nHeight);
        std::fill(m_Blocks.begin(), m_Blocks.end(), Block());
        int held = 0;
        for (int i = 0; i < m_nHeight; ++i, in += rowBytes) {
            DecodePixels(m_Image, in, m_Row.size(), m_Row.data());
            for (int x = 0; x < m_nWidth; x += MOST_PIXELS) {
                const int count = std::min(m_nWidth - x, MOST_PIXELS);
                if (held + (count + 1) / 2 > MOST_HELD) {
                    EmptyBlocks();
                    held = 0;
                }
                AddColumns(x, count);
                held += (count + 1) / 2;
            }
        }
        EmptyBlocks();
    }

    /// `count` pixels from column `x` of each block on.
    void AddColumns(int x, int count)
    {
        const std::uint32_t* pixels = m_Row.data() + x;
        for (Block& block : m_Blocks) {
            block.Add(pixels, count);
            pixels += m_nWidth;
        }
    }

    void EmptyBlocks()
    {
        for (Block& block : m_Blocks)
            block.Empty();
    }

    const CTexImage& m_Image;
    int m_nWidth;
    int m_nHeight;
    std::vector<std::uint32_t> m_Row;
    std::vector<Block> m_Blocks;
    std::vector<std::uint32_t> m_Means;
};

/// Blocks one by one, row by row: sums that are rounded at each addition depend on the order. What is outside
/// `src` counts as 0.
template <class Number, class Mean>
void MakeOneByOne(CTexImage& out, const CTexImage& src, int blockWidth, int blockHeight, Mean mean)
{
    for (int y = 0; y < out.GetHeight(); ++y) {
        for (int x = 0; x < out.GetWidth(); ++x) {
            Number sums[CHANNELS] = {};
            for (int row = 0; row < blockHeight; ++row) {
                for (int column = 0; column < blockWidth; ++column) {
                    TexPixel pixel;
                    src.GetPixel(pixel, x * blockWidth + column, y * blockHeight + row);
                    sums[0] += static_cast<Number>(pixel.blue);
                    sums[1] += static_cast<Number>(pixel.green);
                    sums[2] += static_cast<Number>(pixel.red);
                    sums[3] += static_cast<Number>(pixel.alpha);
                }
            }
            // The fraction is dropped, and then all but the low byte.
            const auto byte = [&](std::size_t c) {
                return static_cast<std::uint8_t>(static_cast<int>(mean(sums[c])));
            };
            out.SetPixel(x, y, {byte(0), byte(1), byte(2), byte(3)});
        }
    }
}

} // namespace

void CTexImage::StoreRow(int y, const std::uint32_t* words)
{
    if (GetBits() == TEX_PALETTE8) {
        for (int x = 0; x < m_nWidth; ++x)
            SetPixel(x, y, PixelOf(words[x]));
        return;
    }
    EncodePixels(GetBits(), words, static_cast<std::size_t>(m_nWidth), At(0, y));
}

bool CTexImage::StretchFrom(int w, int h, const CTexImage& src)
{
    if (&src == this || src.IsEmpty() || !AllocUnlessLike(w, h, src.m_nFormat))
        return false;
    const float ratioX = static_cast<float>(src.m_nWidth) / static_cast<float>(w);
    const float ratioY = static_cast<float>(src.m_nHeight) / static_cast<float>(h);
    const int blockWidth = static_cast<int>(ratioX);
    const int blockHeight = static_cast<int>(ratioY);
    const float area = ratioX * ratioY;
    const auto mean = [area](auto sum) { return static_cast<float>(sum) / area; };
    // A ratio just below a whole number may have been rounded up to it.
    const bool inside =
        std::int64_t{blockWidth} * w <= src.m_nWidth && std::int64_t{blockHeight} * h <= src.m_nHeight;
    const bool exact = std::int64_t{blockWidth} * blockHeight * MOST_VALUE < EXACT_IN_FLOAT;
    try {
        if (inside && exact) {
            BlockRow blocks(src, w, blockWidth, blockHeight);
            for (int y = 0; y < h; ++y)
                StoreRow(y, blocks.MeansOf(y, mean));
        } else {
            MakeOneByOne<float>(*this, src, blockWidth, blockHeight, mean);
        }
    } catch (const std::bad_alloc&) {
        return false;
    }
    SetValid();
    return true;
}

bool CTexImage::ShrinkFrom(const CTexImage& src, int shift)
{
    if (&src == this || shift < 0)
        return false;
    const int w = shift < MOST_SHIFT ? src.m_nWidth >> shift : 0;
    const int h = shift < MOST_SHIFT ? src.m_nHeight >> shift : 0;
    if (w == 0 || h == 0) {
        Free();
        return true;
    }
    if (!Alloc(w, h, src.m_nFormat))
        return false;
    const int side = 1 << shift;
    const std::int64_t pixels = std::int64_t{side} * side;
    const float part = 1.0F / static_cast<float>(pixels);
    // The sum and the half are whole numbers of the same type.
    const auto mean = [=](auto sum) {
        return static_cast<float>(sum + static_cast<decltype(sum)>(pixels / 2)) * part;
    };
    try {
        if (shift <= MOST_WORD_SHIFT) {
            BlockRow blocks(src, w, side, side);
            for (int y = 0; y < h; ++y)
                StoreRow(y, blocks.MeansOf(y, mean));
        } else {
            MakeOneByOne<std::int64_t>(*this, src, side, side, mean);
        }
    } catch (const std::bad_alloc&) {
        return false;
    }
    SetValid();
    return true;
}
