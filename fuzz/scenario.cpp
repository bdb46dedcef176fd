// A scenario file from unknown hands. What the parser takes must be the very file that the writer makes of
// it, and that the compiler makes of its readable form. Every input is read as it is, then with its checksum
// made right, so that the rest of the parser is reached.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "keelworks/crc32.h"
#include "keelworks/scenario_parser.h"
#include "keelworks/scenario_writer.h"
#include "scenario_text.h"

namespace
{

constexpr std::size_t CHECKSUM_OFFSET = 4;
constexpr int ALL_TYPES = 0xff;

void Require(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}

/// Looks at each item as a dialog would.
class CItemReader : public CScenarioParser
{
  public:
    int OnScenarioItem(int category, int type, const void* item) override
    {
        Require(category == SCENARIO_UNITS, "the category");
        ++items;
        switch (type) {
        case SCENARIO_SHIP:
            Look(*static_cast<const ScenarioShip*>(item), SCENARIO_NEUTRAL);
            break;
        case SCENARIO_BALLOON:
            Look(*static_cast<const ScenarioBalloon*>(item), SCENARIO_SIDE_B);
            break;
        case SCENARIO_SUBMARINE:
            Look(*static_cast<const ScenarioSubmarine*>(item), SCENARIO_SIDE_B);
            break;
        default:
            Require(false, "the type");
        }
        return 1;
    }

    std::size_t items = 0;

  private:
    template <std::size_t N>
    static void Ends(const char (&text)[N])
    {
        Require(std::find(text, text + N, '\0') != text + N, "a text of an item ends");
    }

    template <class Item>
    static void Look(const Item& item, int mostSide)
    {
        Ends(item.unit.szFullName);
        Ends(item.unit.szName);
        Ends(item.unit.szModel);
        Ends(item.unit.szCode);
        Require(item.nSide >= 0 && item.nSide <= mostSide, "the side of an item");
    }
};

void Read(const std::vector<char>& bytes)
{
    CItemReader reader;
    try {
        reader.OpenScenario("fuzz.sc", bytes);
    } catch (const scenario_exception&) {
        Require(reader.GetHeader() == nullptr && reader.GetTitle() == nullptr, "nothing is open");
        return;
    }
    Require(std::string_view(reader.GetTitle()).size() <= SCENARIO_MAX_TITLE, "the title");
    Require(std::string_view(reader.GetDescription()).size() <= SCENARIO_MAX_DESCRIPTION, "the description");
    reader.EnumScenarioItems(ALL_TYPES);
    Require(reader.items == reader.GetScenario().items.size(), "every item is told");
    Require(CScenarioWriter(reader.GetScenario()).GetBytes() == bytes, "the file that the writer makes");
    const std::string text = WriteScenarioText(reader.GetScenario());
    ds_file_buffered file;
    file.open_memory("fuzz.txt", {text.begin(), text.end()});
    Require(CScenarioWriter(ReadScenarioText(file)).GetBytes() == bytes,
            "the file that its readable form makes");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::vector<char> bytes(data, data + size);
    Read(bytes);
    if (size < CHECKSUM_OFFSET + sizeof(std::uint32_t))
        return 0;
    const auto place = bytes.begin() + CHECKSUM_OFFSET;
    std::fill_n(place, sizeof(std::uint32_t), '\0');
    const std::uint32_t sum = Crc32(bytes.data(), bytes.size());
    for (unsigned i = 0; i < sizeof sum; ++i)
        place[i] = static_cast<char>(sum >> (8 * i) & 0xffU);
    Read(bytes);
    return 0;
}
