#include <algorithm>
#include <cstdio>
#include <string_view>

#include "fields.h"
#include "scenario_text.h"

namespace
{

constexpr std::size_t LINE_WIDTH = 96;

std::string Escaped(std::string_view text, std::size_t& i)
{
    const auto c = static_cast<unsigned char>(text[i]);
    if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
        ++i;
        return "\\n";
    }
    switch (c) {
    case '\t':
        return "\\t";
    case '"':
        return "\\q";
    case '\\':
        return "\\\\";
    default:
        break;
    }
    if (c >= ' ')
        return {static_cast<char>(c)};
    char hex[8];
    std::snprintf(hex, sizeof hex, "\\x%02x", c);
    return hex;
}

/// The text in quotes, in several pieces when it is long: broken behind a new line or a blank.
std::string Quoted(std::string_view text, const std::string& indent)
{
    std::string out = "\"";
    std::size_t width = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string piece = Escaped(text, i);
        out += piece;
        width += piece.size();
        const bool breaks =
            piece == "\\n" || (piece == " " && width >= LINE_WIDTH) || width >= 2 * LINE_WIDTH;
        if (breaks && i + 1 < text.size()) {
            out += "\"\n" + indent + '"';
            width = 0;
        }
    }
    return out + '"';
}

void AppendHead(const Scenario& scenario, std::string& out)
{
    const SCENARIO_HEADER& header = scenario.header;
    const std::string indent = "        ";
    out += "scenario {\n    title " + Quoted(scenario.title, indent);
    out += "\n    description\n" + indent + Quoted(scenario.description, indent);
    out += "\n    scene " + Quoted(header.szScene, indent);
    out += "\n    time " + std::to_string(header.nHours) + ' ' + std::to_string(header.nMinutes) +
           ((header.nTimeFlags & SCENARIO_TIME_AM) != 0 ? " am\n" : " pm\n");
    out += "    year " + std::to_string(header.nFlagExtra) + '\n';
    if (header.nVersion != 0 && header.nVersion != SCENARIO_VERSION_CURRENT) {
        char version[32];
        std::snprintf(version, sizeof version, "    version 0x%x\n", header.nVersion);
        out += version;
    }
    out += "}\n";
}

void AppendSide(std::int32_t nation, bool custom, const CObjGUID& guid, std::string& out)
{
    out += "side { nation " + std::to_string(nation);
    if (custom) {
        char words[64];
        std::snprintf(words, sizeof words, " custom 0x%08x, 0x%08x, 0x%08x, 0x%08x", guid.words[0],
                      guid.words[1], guid.words[2], guid.words[3]);
        out += words;
    }
    out += " }\n";
}

void AppendField(const ScenarioItem& item, const ScenarioField& field, std::string& out)
{
    std::string values;
    bool shown = std::string_view(field.keyword) == "name" || std::string_view(field.keyword) == "side";
    if (field.textSize > 0) {
        const std::string_view text = ScenarioRecord(item) + field.offsets[0];
        values = ' ' + Quoted(text, "        ");
        shown = shown || !text.empty();
    }
    for (std::size_t i = 0; i < field.count; ++i) {
        const std::int32_t value = GetNumber(item, field.offsets[i]);
        values += (i == 0 ? " " : ", ") + std::to_string(value);
        shown = shown || value != 0;
    }
    if (shown)
        out += "    " + (field.keyword + values) + '\n';
}

} // namespace

std::string WriteScenarioText(const Scenario& scenario)
{
    std::string out;
    const SCSETT_STRUCT& settings = scenario.header.settings;
    AppendHead(scenario, out);
    AppendSide(settings.nSideANation, scenario.custom.bCustomA != 0, scenario.custom.guidA, out);
    AppendSide(settings.nSideBNation, scenario.custom.bCustomB != 0, scenario.custom.guidB, out);
    for (const ScenarioItem& item : scenario.items) {
        const ScenarioUnitKind& kind = ScenarioUnitKinds()[item.index()];
        out += std::string(kind.keyword) + " {\n";
        for (const ScenarioField& field : kind.fields)
            AppendField(item, field, out);
        out += "}\n";
    }
    return out;
}
