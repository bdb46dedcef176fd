// A report box of 10,000 rows: sorting it beside a sort of as many 64-bit keys, filling its columns beside a
// copy of its items.

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "controls/itfreportbox.h"
#include "kernel/toolkit.h"
#include "platform/files.h"
#include "ratio.h"
#include "support/fakes.h"

namespace
{

constexpr int ROWS = 10000;
/// Two of texts, then two of numbers.
constexpr int COLUMNS = 4;

constexpr double AIM_SORT = 3.5;
constexpr double AIM_REFRESH = 1.5;
/// Linear, but for what no longer fits the cache.
constexpr double AIM_TWICE_THE_ROWS = 1.4;

/// Titles as players write them: words that come again and again, and many alike at the beginning.
std::string MakeTitle(std::mt19937& random)
{
    static const char* const words[] = {"Battle of ",   "The ",      "Convoy ",   "Straits ", "Night of ",
                                        "Bombardment ", "Squadron ", "Blockade ", "Raid on ", "Action off "};
    std::string title = words[random() % std::size(words)];
    title += words[random() % std::size(words)];
    for (std::size_t letters = 3 + random() % 6; letters > 0; --letters)
        title += static_cast<char>('a' + random() % 26);
    return title;
}

/// The toolkit that tables stand in.
class World
{
  public:
    World()
    {
        Toolkit() = ToolkitState();
        PlatformSetRoots(std::string(SEAWARDEN_SOURCE_DIR) + "/data", "");
    }
    seawarden_test::FakeHost host;
    seawarden_test::FakeEngine engine;
};

class Table
{
  public:
    explicit Table(World& world, int rows = ROWS)
    {
        const RECT rect = {0, 0, SCREEN_WIDTH, SCREEN_HEIGHT};
        m_bCreated = box.Create(nullptr, nullptr, &rect, nullptr, 1, 0, &world.engine);
        for (int column = 0; column < COLUMNS; ++column)
            m_bCreated = m_bCreated && box.AddColumn(SCREEN_WIDTH / COLUMNS, 0);
        std::mt19937 random(3);
        for (int row = 0; row < rows; ++row) {
            box.AddRow({row, MakeTitle(random)});
            box.SetItem(row, 1, {row, MakeTitle(random)});
            for (int column = 2; column < COLUMNS; ++column)
                box.SetItem(row, column, {row, std::to_string(random() % 1000000)});
        }
    }
    bool IsCreated() const { return m_bCreated; }

    CItfReportBox box;

  private:
    bool m_bCreated = false;
};

/// Sorts by one column, then by the other one, whose order is nothing to the first: never what is sorted
/// already.
void SortRows(benchmark::State& state)
{
    World world;
    Table table(world);
    if (!table.IsCreated()) {
        state.SkipWithError("the table can't be created");
        return;
    }
    const auto type = static_cast<int>(state.range(0));
    const int first = type == SORT_NUMBER ? 2 : 0;
    state.SetLabel(type == SORT_NUMBER ? "by number" : "by text");
    std::vector<std::uint64_t> keys(ROWS);
    std::mt19937_64 random(4);
    std::generate(keys.begin(), keys.end(), random);
    std::vector<std::uint64_t> sorted;
    bool other = false;
    ratio::Measure(
        state, AIM_SORT,
        [&] {
            table.box.Sort(first + (other ? 1 : 0), type);
            other = !other;
        },
        [&] {
            sorted = keys;
            std::sort(sorted.begin(), sorted.end());
            benchmark::DoNotOptimize(sorted.data());
        });
}

void RefreshRows(benchmark::State& state)
{
    World world;
    Table table(world);
    if (!table.IsCreated()) {
        state.SkipWithError("the table can't be created");
        return;
    }
    std::vector<std::vector<ItfListItem>> copies(COLUMNS);
    ratio::Measure(
        state, AIM_REFRESH, [&] { table.box.Refresh(false); },
        [&] {
            for (int column = 0; column < COLUMNS; ++column) {
                std::vector<ItfListItem>& copy = copies[static_cast<std::size_t>(column)];
                copy.clear();
                for (int row = 0; row < ROWS; ++row)
                    copy.push_back(table.box.GetItem(row, column));
            }
            benchmark::DoNotOptimize(copies.data());
        });
}

/// A list of twice the rows should take as long as two lists: the cost is linear.
void RefreshTwiceTheRows(benchmark::State& state)
{
    World world;
    Table half(world);
    Table table(world, 2 * ROWS);
    if (!half.IsCreated() || !table.IsCreated()) {
        state.SkipWithError("the table can't be created");
        return;
    }
    ratio::Measure(
        state, AIM_TWICE_THE_ROWS, [&] { table.box.Refresh(false); },
        [&] {
            half.box.Refresh(false);
            half.box.Refresh(false);
        });
}

} // namespace

BENCHMARK(SortRows)->Arg(SORT_TEXT)->Arg(SORT_NUMBER)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(RefreshRows)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(RefreshTwiceTheRows)->UseManualTime()->Unit(benchmark::kMicrosecond);
