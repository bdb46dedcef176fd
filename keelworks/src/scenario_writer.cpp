#include "keelworks/scenario_writer.h"

#include <algorithm>
#include <limits>

#include "keelworks/crc32.h"
#include "keelworks/ds_file.h"
#include "keelworks/scenario_parser.h"
#include "scenario_fields.h"

namespace
{

/// Appends fields to the file; a visitor of them. What the parser wouldn't take it writes all the same: the
/// writer reads the whole file back before it gives it out.
class CAppender
{
  public:
    explicit CAppender(std::vector<char>& bytes) : m_Bytes(bytes) {}

    void Raw(const void* data, std::size_t size)
    {
        const char* begin = static_cast<const char*>(data);
        m_Bytes.insert(m_Bytes.end(), begin, begin + size);
    }

    void Word(std::uint32_t value)
    {
        for (unsigned shift = 0; shift < 32; shift += 8) {
            m_Bytes.push_back(static_cast<char>(value >> shift & 0xffU));
        }
    }

    template <std::size_t N>
    void Text(const char (&text)[N])
    {
        Raw(text, N);
    }
    template <std::size_t N>
    void Reserved(const std::uint8_t (&bytes)[N])
    {
        Raw(bytes, N);
    }
    void Flag(std::uint8_t value) { Raw(&value, 1); }
    template <class... Ints>
    void Words(Ints... values)
    {
        (Word(static_cast<std::uint32_t>(values)), ...);
    }
    template <class... Ints>
    void Range(std::int32_t, std::int32_t, Ints... values)
    {
        Words(values...);
    }

  private:
    std::vector<char>& m_Bytes;
};

std::int32_t Fitting(std::int64_t number)
{
    if (number > std::numeric_limits<std::int32_t>::max()) {
        throw scenario_exception("the scenario: too many weapons");
    }
    return static_cast<std::int32_t>(number);
}

SCENARIO_HEADER CompletedHeader(const Scenario& scenario)
{
    SCENARIO_HEADER header = scenario.header;
    std::copy(std::begin(SCENARIO_SIGNATURE), std::end(SCENARIO_SIGNATURE), header.szSignature);
    header.dwChecksum = 0;
    header.nVersion = header.nVersion == 0 ? SCENARIO_VERSION_CURRENT : header.nVersion;
    const ScenarioStrength strength(scenario.items);
    header.settings.nSideACount = Fitting(strength.units[SCENARIO_SIDE_A]);
    header.settings.nSideBCount = Fitting(strength.units[SCENARIO_SIDE_B]);
    header.nSideAExtra = Fitting(strength.weapons[SCENARIO_SIDE_A]);
    header.nSideBExtra = Fitting(strength.weapons[SCENARIO_SIDE_B]);
    return header;
}

} // namespace

CScenarioWriter::CScenarioWriter(const Scenario& scenario)
{
    const SCENARIO_HEADER header = CompletedHeader(scenario);
    CAppender out(m_Bytes);
    out.Text(header.szSignature);
    VisitHeader(out, header);
    if (header.nVersion >= SCENARIO_VERSION_CUSTOM) {
        VisitCustom(out, scenario.custom);
    } else if (scenario.custom.bCustomA != 0 || scenario.custom.bCustomB != 0) {
        throw scenario_exception("the scenario: its version has no custom nations");
    }
    for (const std::string* text : {&scenario.title, &scenario.description}) {
        if (text->find('\0') != std::string::npos) {
            throw scenario_exception("the scenario: a text with a zero in it");
        }
        out.Raw(text->c_str(), text->size() + 1);
    }
    out.Word(static_cast<std::uint32_t>(scenario.items.size()));
    for (const ScenarioItem& item : scenario.items) {
        std::visit(
            [&out](const auto& record) {
                out.Words(SCENARIO_UNITS, record.TYPE, sizeof record);
                VisitItem(out, record);
            },
            item);
    }
    const std::uint32_t checksum = Crc32(m_Bytes.data(), m_Bytes.size());
    for (unsigned i = 0; i < sizeof checksum; ++i) {
        m_Bytes[SCENARIO_CHECKSUM_OFFSET + i] = static_cast<char>(checksum >> (8 * i) & 0xffU);
    }
    CScenarioParser().OpenScenario("the scenario", m_Bytes);
}

void CScenarioWriter::Write(const char* path) const
{
    ds_file file(path, ds_file::MODE_WRITE);
    const bool whole = file.write(m_Bytes.data(), m_Bytes.size()) == m_Bytes.size();
    if (!file.close() || !whole) {
        throw scenario_exception(std::string(path) + ": can't be written to its end");
    }
}
