#include "render/dither.h"

#include <array>

#include "render/pixel565.h"

namespace
{

constexpr int SIDE = 8;
constexpr int CELLS = SIDE * SIDE;
using Square = std::array<std::array<std::uint8_t, SIDE>, SIDE>; // rows, then columns

/// The order in which the cells of the square light up: bit by bit, the highest from the cell's finest
/// position, so that any number of lit cells is spread evenly.
constexpr int CellRank(int x, int y)
{
    int rank = 0;
    for (int bit = 0; bit < 3; ++bit) {
        const int xBit = (x >> bit) & 1;
        const int yBit = (y >> bit) & 1;
        rank = (rank << 2) | ((xBit ^ yBit) << 1) | yBit;
    }
    return rank;
}

/// For each 8-bit channel value the level at or below it, and in how many of the cells the next one stands.
struct LevelTable {
    std::array<std::uint8_t, 256> m_aLevel{};
    std::array<std::uint8_t, 256> m_aLitCells{};
};

template <int Max, auto Expand>
constexpr LevelTable MakeLevelTable()
{
    LevelTable table;
    int level = 0;
    for (int channel = 0; channel < 256; ++channel) {
        while (level < Max && Expand(level + 1) <= channel)
            ++level;
        const int above = channel - Expand(level);
        const int gap = level < Max ? Expand(level + 1) - Expand(level) : 1;
        table.m_aLevel[static_cast<std::size_t>(channel)] = static_cast<std::uint8_t>(level);
        table.m_aLitCells[static_cast<std::size_t>(channel)] =
            static_cast<std::uint8_t>((above * CELLS + gap / 2) / gap);
    }
    return table;
}

constexpr Square MakeRanks()
{
    Square ranks{};
    for (std::size_t y = 0; y < SIDE; ++y)
        for (std::size_t x = 0; x < SIDE; ++x)
            ranks[y][x] = static_cast<std::uint8_t>(CellRank(static_cast<int>(x), static_cast<int>(y)));
    return ranks;
}

constexpr LevelTable LEVELS_5 = MakeLevelTable<RED_MAX, Expand5>();
constexpr LevelTable LEVELS_6 = MakeLevelTable<GREEN_MAX, Expand6>();
constexpr Square RANKS = MakeRanks();

int DitheredLevel(const LevelTable& table, int channel, int rank)
{
    const auto index = static_cast<std::size_t>(channel & 0xff);
    return table.m_aLevel[index] + (rank < table.m_aLitCells[index] ? 1 : 0);
}

} // namespace

std::uint16_t DitheredPixel(int red, int green, int blue, int x, int y)
{
    const int rank = RANKS[static_cast<unsigned>(y) % SIDE][static_cast<unsigned>(x) % SIDE];
    return PackPixel(DitheredLevel(LEVELS_5, red, rank), DitheredLevel(LEVELS_6, green, rank),
                     DitheredLevel(LEVELS_5, blue, rank));
}
