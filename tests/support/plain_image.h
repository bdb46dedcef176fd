#pragma once
// The picture library's operations in their plainest form, pixel by pixel: what the fast ones must equal to
// the last bit, and what they are measured against.

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <tuple>
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
        Node root = {{0, 0, 0}, {255, 255, 255}};
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
    using Colour = std::array<std::uint32_t, 3>; // blue, green, red
    struct Node {
        Colour min, max;
        Colour mean = {};
        int count = -1; // of its pixels, once they are counted
        std::vector<Node> children = {};
    };

    void Pass(Node& node)
    {
        if (node.count < 0)
            return Count(node);
        if (node.children.empty())
            Split(node);
        for (Node& child : node.children)
            Pass(child);
    }

    void Count(Node& node)
    {
        const auto& [min, max] = std::tie(node.min, node.max);
        const std::uint32_t low = min[2] << 16 | min[1] << 8 | min[0];
        const std::uint32_t high = max[2] << 16 | max[1] << 8 | max[0];
        node.count = 0;
        if (max[0] <= min[0] || max[1] <= min[1] || max[2] <= min[2])
            return;
        std::array<std::uint64_t, 3> sums = {};
        for (int i = 0; i < m_nPixels; ++i) {
            const std::uint32_t pixel = m_pPixels[i];
            const std::uint32_t blue = pixel & 0xff;
            const std::uint32_t green = pixel >> 8 & 0xff;
            const std::uint32_t red = (pixel & 0xff0000) | 0xffff;
            if (blue < min[0] || blue > max[0] || green < min[1] || green > max[1] || red < low || red > high)
                continue;
            ++node.count;
            sums[0] += blue;
            sums[1] += green;
            sums[2] += red >> 16;
        }
        if (node.count == 0)
            return;
        for (std::size_t c = 0; c < 3; ++c)
            node.mean[c] = static_cast<std::uint32_t>(sums[c] / static_cast<std::uint64_t>(node.count));
        ++m_nNodes;
    }

    void Split(Node& node)
    {
        for (std::size_t c = 0; c < 3; ++c)
            if (node.count <= 1 || node.mean[c] == node.min[c] || node.mean[c] == node.max[c])
                return;
        for (std::size_t corner = 0; corner < 8; ++corner) {
            Node child = {node.min, node.max};
            for (std::size_t c = 0; c < 3; ++c) {
                // Red is the corner's lowest bit.
                if (corner >> (2 - c) & 1)
                    child.min[c] = node.mean[c];
                else
                    child.max[c] = node.mean[c] - 1;
            }
            node.children.push_back(child);
        }
    }

    void Collect(const Node& node, std::uint8_t* palette, int maxColours)
    {
        if (node.count > 0)
            Enter(node, palette, maxColours);
        for (const Node& child : node.children)
            Collect(child, palette, maxColours);
    }

    void Enter(const Node& node, std::uint8_t* palette, int maxColours)
    {
        const float part = 1.0F / static_cast<float>(m_nPixels);
        const int weight = static_cast<int>(static_cast<float>(node.count) * part * 255.0F);
        for (int i = 0; i < m_nUsed; ++i) {
            std::uint8_t* entry = palette + 4 * i;
            if (std::equal(entry, entry + 3, node.mean.begin())) {
                entry[3] = static_cast<std::uint8_t>(std::min(entry[3] + weight, 255));
                return;
            }
        }
        int place = 0;
        if (m_nUsed < maxColours)
            place = m_nUsed++;
        else
            while (place < maxColours && palette[4 * place + 3] >= weight)
                ++place;
        if (place == maxColours)
            return;
        for (std::size_t c = 0; c < 3; ++c)
            palette[4 * static_cast<std::size_t>(place) + c] = static_cast<std::uint8_t>(node.mean[c]);
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
