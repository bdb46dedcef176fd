#pragma once
// The picture library's operations in their plainest form, pixel by pixel: what the fast ones must equal to
// the last bit, and what they are measured against.

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include "lib/teximage.h"

namespace plain
{

using Bytes = std::array<std::uint8_t, 4>;

inline TexPixel PixelAt(const CTexImage& image, int x, int y)
{
    TexPixel pixel;
    image.GetPixel(pixel, x, y);
    return pixel;
}

inline Bytes BytesAt(const CTexImage& image, int x, int y)
{
    const TexPixel pixel = PixelAt(image, x, y);
    return {pixel.blue, pixel.green, pixel.red, pixel.alpha};
}

template <class Number, class Mean>
void Boxes(CTexImage& out, const CTexImage& src, int boxWidth, int boxHeight, Mean mean)
{
    for (int y = 0; y < out.GetHeight(); ++y) {
        for (int x = 0; x < out.GetWidth(); ++x) {
            Number sums[4] = {};
            for (int row = y * boxHeight; row < (y + 1) * boxHeight; ++row) {
                for (int column = x * boxWidth; column < (x + 1) * boxWidth; ++column) {
                    const Bytes bytes = BytesAt(src, column, row);
                    for (std::size_t c = 0; c < 4; ++c)
                        sums[c] += static_cast<Number>(bytes[c]);
                }
            }
            const auto byte = [&](int c) {
                return static_cast<std::uint8_t>(static_cast<int>(mean(sums[c])));
            };
            out.SetPixel(x, y, {byte(0), byte(1), byte(2), byte(3)});
        }
    }
}

/// `out` has its size and format already.
inline void Stretch(CTexImage& out, const CTexImage& src)
{
    const float fx = static_cast<float>(src.GetWidth()) / static_cast<float>(out.GetWidth());
    const float fy = static_cast<float>(src.GetHeight()) / static_cast<float>(out.GetHeight());
    const float area = fx * fy;
    Boxes<float>(out, src, static_cast<int>(fx), static_cast<int>(fy), [=](float sum) { return sum / area; });
}

/// `out` has its size and format already.
inline void Shrink(CTexImage& out, const CTexImage& src, int shift)
{
    const int side = 1 << shift;
    const float part = 1.0F / static_cast<float>(side * side);
    Boxes<int>(out, src, side, side,
               [=](int sum) { return static_cast<float>(sum + side * side / 2) * part; });
}

/// Diffusion with signed bytes that wrap. `out` has its size and format already.
inline void Diffuse(CTexImage& out, const CTexImage& src)
{
    const int width = src.GetWidth();
    std::vector<std::array<std::array<std::int8_t, 3>, 2>> cells(static_cast<std::size_t>(width));
    for (int y = 0; y < src.GetHeight(); ++y) {
        const std::size_t cur = y & 1;
        const std::size_t next = (y + 1) & 1;
        for (int x = 0; x < width; ++x) {
            const auto at = static_cast<std::size_t>(x);
            Bytes p = BytesAt(src, x, y);
            for (std::size_t c = 0; c < 3; ++c)
                p[c] = static_cast<std::uint8_t>(std::clamp(p[c] + cells[at][cur][c], 0, 255));
            out.SetPixel(x, y, {p[0], p[1], p[2], p[3]});
            const Bytes q = BytesAt(out, x, y);
            for (std::size_t c = 0; c < 3; ++c) {
                const int d = p[c] - q[c];
                const auto add = [c](std::array<std::int8_t, 3>& cell, int share) {
                    cell[c] = static_cast<std::int8_t>(cell[c] + share);
                };
                cells[at][cur][c] = 0;
                add(cells[at][next], (5 * d + 8) >> 4);
                if (x > 0)
                    add(cells[at - 1][next], (3 * d + 8) >> 4);
                if (x + 1 < width) {
                    add(cells[at + 1][cur], (7 * d + 8) >> 4);
                    add(cells[at + 1][next], (d + 8) >> 4);
                }
            }
        }
    }
}

/// The reducer as a tree in which each new node goes through all pixels.
class Reducer
{
  public:
    Reducer(const std::uint32_t* pixels, int count) : m_pPixels(pixels), m_nPixels(count) {}

    int Reduce(std::uint8_t* palette, int maxColours)
    {
        Node root(0, 0, 0, 255, 255, 255);
        for (;;) {
            const int before = m_nNodes;
            Pass(root);
            if (m_nNodes != before && m_nNodes <= maxColours)
                continue;
            m_nUsed = 0;
            Collect(root, palette, maxColours);
            if (m_nNodes == before || m_nUsed >= maxColours)
                return m_nUsed;
        }
    }

  private:
    struct Node {
        Node(std::uint32_t r0, std::uint32_t g0, std::uint32_t b0, std::uint32_t r1, std::uint32_t g1,
             std::uint32_t b1)
            : rMin(r0), gMin(g0), bMin(b0), rMax(r1), gMax(g1), bMax(b1),
              dead(r1 <= r0 || g1 <= g0 || b1 <= b0)
        {
        }
        std::uint32_t rMin, gMin, bMin, rMax, gMax, bMax;
        bool dead;
        bool counted = false;
        bool split = false;
        std::uint32_t rMean = 0, gMean = 0, bMean = 0;
        int count = 0;
        std::vector<std::unique_ptr<Node>> children;
    };

    void Pass(Node& node)
    {
        if (node.dead)
            return;
        if (!node.counted)
            return Count(node);
        if (!node.split)
            Split(node);
        for (const std::unique_ptr<Node>& child : node.children)
            Pass(*child);
    }

    void Count(Node& node)
    {
        const std::uint32_t low = node.rMin << 16 | node.gMin << 8 | node.bMin;
        const std::uint32_t high = node.rMax << 16 | node.gMax << 8 | node.bMax;
        std::uint64_t r = 0;
        std::uint64_t g = 0;
        std::uint64_t b = 0;
        for (int i = 0; i < m_nPixels; ++i) {
            const std::uint32_t pixel = m_pPixels[i];
            const std::uint32_t blue = pixel & 0xff;
            const std::uint32_t green = pixel >> 8 & 0xff;
            const std::uint32_t red = (pixel & 0xff0000) | 0xffff;
            if (blue < node.bMin || blue > node.bMax || green < node.gMin || green > node.gMax || red < low ||
                red > high)
                continue;
            ++node.count;
            r += red >> 16;
            g += green;
            b += blue;
        }
        node.dead = node.count == 0;
        if (node.dead)
            return;
        const auto count = static_cast<std::uint64_t>(node.count);
        node.rMean = static_cast<std::uint32_t>(r / count);
        node.gMean = static_cast<std::uint32_t>(g / count);
        node.bMean = static_cast<std::uint32_t>(b / count);
        node.counted = true;
        ++m_nNodes;
    }

    void Split(Node& n)
    {
        n.split = true;
        if (n.count <= 1 || n.rMean == n.rMin || n.rMean == n.rMax || n.gMean == n.gMin ||
            n.gMean == n.gMax || n.bMean == n.bMin || n.bMean == n.bMax)
            return;
        for (const bool b : {false, true})
            for (const bool g : {false, true})
                for (const bool r : {false, true})
                    n.children.push_back(std::make_unique<Node>(
                        r ? n.rMean : n.rMin, g ? n.gMean : n.gMin, b ? n.bMean : n.bMin,
                        r ? n.rMax : n.rMean - 1, g ? n.gMax : n.gMean - 1, b ? n.bMax : n.bMean - 1));
    }

    void Collect(const Node& node, std::uint8_t* palette, int maxColours)
    {
        if (node.counted)
            Enter(node, palette, maxColours);
        for (const std::unique_ptr<Node>& child : node.children)
            Collect(*child, palette, maxColours);
    }

    void Enter(const Node& node, std::uint8_t* palette, int maxColours)
    {
        const float part = 1.0F / static_cast<float>(m_nPixels);
        const int weight = static_cast<int>(static_cast<float>(node.count) * part * 255.0F);
        for (int i = 0; i < m_nUsed; ++i) {
            std::uint8_t* entry = palette + 4 * i;
            if (entry[0] == node.bMean && entry[1] == node.gMean && entry[2] == node.rMean) {
                entry[3] = static_cast<std::uint8_t>(std::min(entry[3] + weight, 255));
                return;
            }
        }
        int place = 0;
        if (m_nUsed < maxColours) {
            place = m_nUsed++;
        } else {
            while (place < maxColours && palette[4 * place + 3] >= weight)
                ++place;
            if (place == maxColours)
                return;
        }
        palette[4 * place] = static_cast<std::uint8_t>(node.bMean);
        palette[4 * place + 1] = static_cast<std::uint8_t>(node.gMean);
        palette[4 * place + 2] = static_cast<std::uint8_t>(node.rMean);
        palette[4 * place + 3] = static_cast<std::uint8_t>(weight);
    }

    const std::uint32_t* m_pPixels;
    int m_nPixels;
    int m_nNodes = 0;
    int m_nUsed = 0;
};

/// Every byte at random, the palette too. Empty when the format isn't one.
inline CTexImage RandomImage(int w, int h, std::uint32_t format, std::mt19937& random)
{
    CTexImage image;
    image.Alloc(w, h, format);
    std::generate_n(image.GetPixelData(), image.GetDataSize(),
                    [&] { return static_cast<std::uint8_t>(random()); });
    std::generate_n(image.GetPaletteData(), CTexImage::PALETTE_BYTES,
                    [&] { return static_cast<std::uint8_t>(random()); });
    return image;
}

} // namespace plain
