#include "keelworks/scenario_parser.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

#include "keelworks/crc32.h"
#include "keelworks/ds_file.h"
#include "scenario_fields.h"

namespace
{

/// Takes a file's bytes from the front; a visitor of the fields. Throws scenario_exception.
class CReader
{
  public:
    CReader(const std::string& name, const std::vector<char>& bytes)
        : m_strName(name), m_Bytes(bytes.data(), bytes.size())
    {
    }

    [[noreturn]] void Fail(const std::string& why) const
    {
        throw scenario_exception(m_strName + ": " + why + ", at byte " + std::to_string(m_nPos));
    }

    std::size_t Left() const { return m_Bytes.size() - m_nPos; }

    std::string_view Take(std::size_t size)
    {
        if (size > Left()) {
            Fail("the file ends early");
        }
        m_nPos += size;
        return m_Bytes.substr(m_nPos - size, size);
    }

    std::uint32_t TakeWord()
    {
        std::uint32_t value = 0;
        int shift = 0;
        for (const char byte : Take(sizeof value)) {
            value |= std::uint32_t{static_cast<unsigned char>(byte)} << shift;
            shift += 8;
        }
        return value;
    }

    /// A text of at most `limit` characters and its zero.
    std::string TakeText(std::size_t limit)
    {
        const std::size_t end = m_Bytes.substr(m_nPos, limit + 1).find('\0');
        if (end == std::string_view::npos) {
            Fail("a text of more than " + std::to_string(limit) + " characters");
        }
        const std::string text(Take(end));
        Take(1);
        return text;
    }

    template <std::size_t N>
    void Text(char (&out)[N])
    {
        const std::string_view text = Take(N);
        const std::size_t end = std::min(text.find('\0'), N);
        if (end == N || text.find_first_not_of('\0', end) != std::string_view::npos) {
            Fail("a text that doesn't end within its field");
        }
        text.copy(out, N);
    }

    template <std::size_t N>
    void Reserved(std::uint8_t (&)[N])
    {
        if (Take(N).find_first_not_of('\0') != std::string_view::npos) {
            Fail("something where nothing is known to stand");
        }
    }

    void Flag(std::uint8_t& out)
    {
        out = static_cast<std::uint8_t>(Take(1)[0]);
        if (out > 1) {
            Fail("a flag that is neither 0 nor 1");
        }
    }

    template <class... Ints>
    void Words(Ints&... out)
    {
        ((out = static_cast<Ints>(TakeWord())), ...);
    }

    template <class... Ints>
    void Range(std::int32_t low, std::int32_t high, Ints&... out)
    {
        Words(out...);
        if (!((std::cmp_greater_equal(out, low) && std::cmp_less_equal(out, high)) && ...)) {
            Fail("a number that isn't from " + std::to_string(low) + " to " + std::to_string(high));
        }
    }

  private:
    const std::string& m_strName;
    std::string_view m_Bytes;
    std::size_t m_nPos = 0;
};

std::uint32_t ChecksumOf(const std::vector<char>& bytes)
{
    constexpr std::uint32_t NOTHING = 0;
    constexpr std::size_t BEHIND = SCENARIO_CHECKSUM_OFFSET + sizeof NOTHING;
    const std::uint32_t front = Crc32(bytes.data(), SCENARIO_CHECKSUM_OFFSET);
    return Crc32(bytes.data() + BEHIND, bytes.size() - BEHIND, Crc32(&NOTHING, sizeof NOTHING, front));
}

template <class Item>
ScenarioItem ReadRecord(CReader& reader, std::uint32_t size)
{
    Item item;
    if (size != sizeof item) {
        reader.Fail("an item of " + std::to_string(size) + " bytes");
    }
    VisitItem(reader, item);
    return item;
}

ScenarioItem ReadItem(CReader& reader)
{
    const std::uint32_t category = reader.TakeWord();
    const std::uint32_t type = reader.TakeWord();
    const std::uint32_t size = reader.TakeWord();
    if (category != SCENARIO_UNITS) {
        reader.Fail("an item of category " + std::to_string(category));
    }
    switch (type) {
    case SCENARIO_SHIP:
        return ReadRecord<ScenarioShip>(reader, size);
    case SCENARIO_BALLOON:
        return ReadRecord<ScenarioBalloon>(reader, size);
    case SCENARIO_SUBMARINE:
        return ReadRecord<ScenarioSubmarine>(reader, size);
    default:
        reader.Fail("an item of type " + std::to_string(type));
    }
}

void ReadHeader(CReader& reader, const std::vector<char>& bytes, SCENARIO_HEADER& header)
{
    const std::string_view signature = reader.Take(sizeof header.szSignature);
    if (signature != std::string_view(SCENARIO_SIGNATURE, sizeof SCENARIO_SIGNATURE)) {
        reader.Fail("not a scenario");
    }
    signature.copy(header.szSignature, sizeof header.szSignature);
    VisitHeader(reader, header);
    if (header.nVersion < SCENARIO_VERSION_OLDEST || header.nVersion > SCENARIO_VERSION_CURRENT) {
        reader.Fail("version " + std::to_string(header.nVersion) + ", which this program doesn't know");
    }
    if (header.dwChecksum != ChecksumOf(bytes)) {
        reader.Fail("the checksum is another");
    }
    if ((header.nTimeFlags & ~SCENARIO_TIME_AM) != 0) {
        reader.Fail("unknown flags of the time");
    }
}

void ReadItems(CReader& reader, std::vector<ScenarioItem>& items)
{
    constexpr std::size_t LEAST = SCENARIO_ITEM_HEAD + sizeof(ScenarioBalloon);
    const std::uint32_t count = reader.TakeWord();
    if (count > SCENARIO_MAX_ITEMS || count > reader.Left() / LEAST) {
        reader.Fail(std::to_string(count) + " items");
    }
    items.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        items.push_back(ReadItem(reader));
    }
    if (reader.Left() != 0) {
        reader.Fail("something behind the last item");
    }
}

Scenario ReadScenario(const std::string& name, const std::vector<char>& bytes)
{
    CReader reader(name, bytes);
    if (bytes.size() < sizeof(SCENARIO_HEADER) || bytes.size() > CScenarioParser::MAX_FILE_SIZE) {
        reader.Fail("a file of " + std::to_string(bytes.size()) + " bytes");
    }
    Scenario scenario;
    ReadHeader(reader, bytes, scenario.header);
    if (scenario.header.nVersion >= SCENARIO_VERSION_CUSTOM) {
        VisitCustom(reader, scenario.custom);
        const CUSTOM_RESOURCE_DATA& custom = scenario.custom;
        if ((custom.bCustomA == 0 && custom.guidA != CObjGUID()) ||
            (custom.bCustomB == 0 && custom.guidB != CObjGUID())) {
            reader.Fail("the guid of a nation that isn't custom");
        }
        if ((custom.bCustomA != 0 && custom.guidA == CObjGUID()) ||
            (custom.bCustomB != 0 && custom.guidB == CObjGUID())) {
            reader.Fail("a custom nation without a guid");
        }
    }
    scenario.title = reader.TakeText(SCENARIO_MAX_TITLE);
    scenario.description = reader.TakeText(SCENARIO_MAX_DESCRIPTION);
    ReadItems(reader, scenario.items);
    const ScenarioStrength strength(scenario.items);
    const SCENARIO_HEADER& header = scenario.header;
    if (header.settings.nSideACount != strength.units[0] ||
        header.settings.nSideBCount != strength.units[1] || header.nSideAExtra != strength.weapons[0] ||
        header.nSideBExtra != strength.weapons[1]) {
        reader.Fail("the head tells of other forces than the items");
    }
    return scenario;
}

} // namespace

CScenarioParser::~CScenarioParser() = default;

void CScenarioParser::OpenScenario(const char* path)
{
    CloseScenario();
    ds_file file(path, ds_file::MODE_READ);
    const std::size_t size = file.get_size();
    if (size > MAX_FILE_SIZE) {
        throw scenario_exception(std::string(path) + ": a file of " + std::to_string(size) + " bytes");
    }
    std::vector<char> bytes(size);
    if (file.read(bytes.data(), size) != size) {
        throw scenario_exception(std::string(path) + ": can't be read to its end");
    }
    OpenScenario(path, bytes);
}

void CScenarioParser::OpenScenario(const std::string& name, const std::vector<char>& bytes)
{
    CloseScenario();
    m_Scenario = ReadScenario(name, bytes);
    m_dwCRC32 = Crc32(bytes.data(), bytes.size());
    m_bOpen = true;
}

void CScenarioParser::CloseScenario()
{
    ++m_nGeneration;
    m_bOpen = false;
    m_dwCRC32 = 0;
    m_Scenario = Scenario();
}

void CScenarioParser::EnumScenarioItems(int mask)
{
    const unsigned generation = m_nGeneration;
    for (std::size_t i = 0; generation == m_nGeneration && i < m_Scenario.items.size(); ++i) {
        const bool more = std::visit(
            [this, mask](const auto& item) {
                return (item.TYPE & mask) == 0 || OnScenarioItem(SCENARIO_UNITS, item.TYPE, &item) != 0;
            },
            m_Scenario.items[i]);
        if (!more) {
            return;
        }
    }
}

int CScenarioParser::OnScenarioItem(int, int, const void*)
{
    return 1;
}
