// A tree over colour space. A node is a box of colours; it is cut at the means of its pixels into eight
// children, until there are enough of them. The pixels of a child are always among those of its parent, so
// the pixels are handed down from node to node, and each pass over them makes a whole layer of the tree.

#include "lib/reducecolours.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <new>
#include <vector>

namespace
{

constexpr std::size_t ENTRY_BYTES = 4;
constexpr int MOST_WEIGHT = 255;
constexpr std::size_t CHILDREN = 8;

/// Channels in the order of a child's number: bit 0 is red.
enum Channel : std::size_t { RED, GREEN, BLUE, CHANNELS };
using Channels = std::array<int, CHANNELS>;

Channels ChannelsOf(std::uint32_t pixel)
{
    return {static_cast<int>(pixel >> 16 & 0xff), static_cast<int>(pixel >> 8 & 0xff),
            static_cast<int>(pixel & 0xff)};
}

struct ColourBox {
    Channels least = {0, 0, 0};
    Channels most = {255, 255, 255};

    /// A box without extent in some channel takes no pixels.
    bool IsDead() const
    {
        return least[RED] >= most[RED] || least[GREEN] >= most[GREEN] || least[BLUE] >= most[BLUE];
    }
    /// The first red that is beyond the box. Its largest red belongs to it only where green and blue go up to
    /// the end: colours are compared as whole words, red in front.
    int EndOfRed() const { return most[RED] + (most[GREEN] == 255 && most[BLUE] == 255 ? 1 : 0); }
    bool IsInside(const Channels& mean) const
    {
        for (std::size_t i = 0; i < CHANNELS; ++i)
            if (mean[i] == least[i] || mean[i] == most[i])
                return false;
        return true;
    }
    /// The corner `number` of the box cut at `mean`, which is inside.
    ColourBox Corner(std::size_t number, const Channels& mean) const
    {
        ColourBox corner = *this;
        for (std::size_t i = 0; i < CHANNELS; ++i) {
            if (number >> i & 1)
                corner.least[i] = mean[i];
            else
                corner.most[i] = mean[i] - 1;
        }
        return corner;
    }
};

/// A node that holds pixels: `count` of them, from `first` on in the order of its layer.
struct Node {
    ColourBox box;
    Channels mean = {};
    std::size_t first = 0;
    std::size_t count = 0;
    std::size_t firstChild = 0;
    std::size_t childCount = 0;
};

/// The pixels of a child while they are gathered.
struct Share {
    std::size_t count = 0;
    std::array<std::uint64_t, CHANNELS> sums = {};
    std::size_t next = 0;

    void Add(const Channels& colour)
    {
        ++count;
        for (std::size_t i = 0; i < CHANNELS; ++i)
            sums[i] += static_cast<std::uint64_t>(colour[i]);
    }
    /// Of a share with pixels.
    Node MakeNode(const ColourBox& box) const
    {
        Node node;
        node.box = box;
        node.count = count;
        for (std::size_t i = 0; i < CHANNELS; ++i)
            node.mean[i] = static_cast<int>(sums[i] / std::max<std::size_t>(count, 1));
        return node;
    }
};

class ColourTree
{
  public:
    ColourTree(const std::uint32_t* pixels, std::size_t count)
        : m_Pixels(pixels, pixels + count), m_Sorted(count), m_nTotal(count)
    {
        Share all;
        for (const std::uint32_t pixel : m_Pixels)
            all.Add(ChannelsOf(pixel));
        m_Nodes.push_back(all.MakeNode(ColourBox()));
    }

    std::size_t GetNodeCount() const { return m_Nodes.size(); }

    /// Splits every node of the newest layer. False when no new node came of it.
    bool Grow()
    {
        const std::size_t layer = m_Nodes.size();
        for (std::size_t i = m_nLayer; i < layer; ++i)
            Split(i);
        m_nLayer = layer;
        m_Pixels.swap(m_Sorted);
        return m_Nodes.size() > layer;
    }

    /// Fills the palette; gives the number of its entries.
    int Collect(std::uint8_t* palette, int maxColours) const
    {
        int used = 0;
        CollectFrom(0, palette, maxColours, used);
        return used;
    }

  private:
    void Split(std::size_t index)
    {
        const Node node = m_Nodes[index];
        if (node.count <= 1 || !node.box.IsInside(node.mean))
            return;
        std::array<ColourBox, CHILDREN> boxes;
        std::array<int, CHILDREN> endOfRed = {};
        for (std::size_t i = 0; i < CHILDREN; ++i) {
            boxes[i] = node.box.Corner(i, node.mean);
            endOfRed[i] = boxes[i].IsDead() ? 0 : boxes[i].EndOfRed();
        }
        const auto childOf = [&](const Channels& colour) {
            const std::size_t child = static_cast<std::size_t>(colour[RED] >= node.mean[RED]) |
                                      static_cast<std::size_t>(colour[GREEN] >= node.mean[GREEN]) << GREEN |
                                      static_cast<std::size_t>(colour[BLUE] >= node.mean[BLUE]) << BLUE;
            return colour[RED] < endOfRed[child] ? child : CHILDREN;
        };
        const std::uint32_t* pixels = m_Pixels.data() + node.first;
        // The last share is of those that no child takes.
        std::array<Share, CHILDREN + 1> shares;
        for (std::size_t i = 0; i < node.count; ++i) {
            const Channels colour = ChannelsOf(pixels[i]);
            shares[childOf(colour)].Add(colour);
        }
        AddChildren(index, boxes, shares);
        for (std::size_t i = 0; i < node.count; ++i)
            m_Sorted[shares[childOf(ChannelsOf(pixels[i]))].next++] = pixels[i];
    }

    /// Gives each child its place in the order of the next layer.
    void AddChildren(std::size_t parent, const std::array<ColourBox, CHILDREN>& boxes,
                     std::array<Share, CHILDREN + 1>& shares)
    {
        std::size_t place = m_Nodes[parent].first;
        m_Nodes[parent].firstChild = m_Nodes.size();
        for (std::size_t i = 0; i < shares.size(); ++i) {
            shares[i].next = place;
            if (i < CHILDREN && shares[i].count > 0) {
                m_Nodes.push_back(shares[i].MakeNode(boxes[i]));
                m_Nodes.back().first = place;
            }
            place += shares[i].count;
        }
        m_Nodes[parent].childCount = m_Nodes.size() - m_Nodes[parent].firstChild;
    }

    /// A parent goes before its children. There are at most 255 layers, since each cut narrows the box.
    void CollectFrom(std::size_t index, std::uint8_t* palette, int maxColours, int& used) const
    {
        const Node& node = m_Nodes[index];
        AddEntry(node, palette, maxColours, used);
        for (std::size_t i = 0; i < node.childCount; ++i)
            CollectFrom(node.firstChild + i, palette, maxColours, used);
    }

    void AddEntry(const Node& node, std::uint8_t* palette, int maxColours, int& used) const
    {
        const float part = 1.0F / static_cast<float>(m_nTotal);
        const int weight = static_cast<int>(static_cast<float>(node.count) * part * MOST_WEIGHT);
        const auto blue = static_cast<std::uint8_t>(node.mean[BLUE]);
        const auto green = static_cast<std::uint8_t>(node.mean[GREEN]);
        const auto red = static_cast<std::uint8_t>(node.mean[RED]);
        std::uint8_t* const end = palette + ENTRY_BYTES * static_cast<std::size_t>(used);
        std::uint8_t* lighter = nullptr;
        for (std::uint8_t* entry = palette; entry != end; entry += ENTRY_BYTES) {
            if (entry[0] == blue && entry[1] == green && entry[2] == red) {
                entry[3] = static_cast<std::uint8_t>(std::min(entry[3] + weight, MOST_WEIGHT));
                return;
            }
            if (!lighter && entry[3] < weight)
                lighter = entry;
        }
        std::uint8_t* const place = used < maxColours ? end : lighter;
        if (!place)
            return;
        place[0] = blue;
        place[1] = green;
        place[2] = red;
        place[3] = static_cast<std::uint8_t>(weight);
        if (place == end)
            ++used;
    }

    std::vector<std::uint32_t> m_Pixels; ///< in the order of the newest layer
    std::vector<std::uint32_t> m_Sorted; ///< in the order of the next one
    std::vector<Node> m_Nodes;           ///< layer after layer
    std::size_t m_nLayer = 0;            ///< where the newest layer begins
    std::size_t m_nTotal;
};

} // namespace

int ReduceColours(const std::uint32_t* pixels, int count, std::uint8_t* palette, int maxColours)
{
    if (!pixels || !palette || count <= 0 || maxColours <= 0)
        return 0;
    try {
        ColourTree tree(pixels, static_cast<std::size_t>(count));
        bool growing = true;
        while (growing) {
            growing = tree.Grow();
            if (growing && tree.GetNodeCount() <= static_cast<std::size_t>(maxColours))
                continue;
            const int used = tree.Collect(palette, maxColours);
            if (!growing || used >= maxColours)
                return used;
        }
    } catch (const std::bad_alloc&) {
    }
    return 0;
}
