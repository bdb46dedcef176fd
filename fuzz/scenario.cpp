// A scenario file from unknown hands. What the parser takes must be the very file that the writer makes of
// it, and that the compiler makes of its readable form. Every input is read as it is, then with its checksum
// made right, so that the rest of the parser is reached.

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include "frame.h"
#include "keelworks/crc32.h"
#include "keelworks/scenario_parser.h"
#include "keelworks/scenario_writer.h"
#include "scenario_text.h"

namespace
{

constexpr std::size_t CHECKSUM_OFFSET = 4;
constexpr int ALL_TYPES = 0xff;

/// Looks at each item as a dialog would.
class CItemReader : public CScenarioParser
{
  public:
    int OnScenarioItem(int category, int type, const void* item) override
    {
        Require(category == SCENARIO_UNITS, "the category");
        ++items;
        if (type == SCENARIO_SHIP)
            return Look(*static_cast<const ScenarioShip*>(item), SCENARIO_NEUTRAL);
        if (type == SCENARIO_BALLOON)
            return Look(*static_cast<const ScenarioBalloon*>(item), SCENARIO_SIDE_B);
        Require(type == SCENARIO_SUBMARINE, "the type");
        return Look(*static_cast<const ScenarioSubmarine*>(item), SCENARIO_SIDE_B);
    }

    std::size_t items = 0;

  private:
    template <class Item>
    static int Look(const Item& item, int mostSide)
    {
        const auto ends = [](const auto& text) { return std::memchr(text, 0, sizeof text) != nullptr; };
        Require(ends(item.unit.szFullName) && ends(item.unit.szName) && ends(item.unit.szModel) &&
                    ends(item.unit.szCode),
                "a text of an item ends");
        Require(item.nSide >= 0 && item.nSide <= mostSide, "the side of an item");
        return 1;
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
    std::uint32_t sum = 0;
    if (size < CHECKSUM_OFFSET + sizeof sum)
        return 0;
    std::memcpy(bytes.data() + CHECKSUM_OFFSET, &sum, sizeof sum);
    sum = Crc32(bytes.data(), bytes.size());
    std::memcpy(bytes.data() + CHECKSUM_OFFSET, &sum, sizeof sum);
    Read(bytes);
    return 0;
}
