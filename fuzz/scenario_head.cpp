// A scenario file from unknown hands, read for its head alone as the scenario list does, beside a plain
// reader of the same bytes.

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "frame.h"
#include "scenario/scenhead.h"

namespace
{

/// Up to the next zero byte or the end, behind which `at` stands then.
std::string Text(const std::string& bytes, std::size_t& at, std::size_t most)
{
    const std::size_t end = std::min(bytes.find('\0', at), bytes.size());
    const std::string text = bytes.substr(at, std::min(end - at, most));
    at = std::min(end + 1, bytes.size());
    return text;
}

/// What the head of these bytes is; false when there is none.
bool PlainHead(const std::string& bytes, ScenarioHead& out)
{
    if (bytes.empty())
        return false;
    std::size_t at = std::min(bytes.size(), sizeof out.header);
    std::memcpy(&out.header, bytes.data(), at);
    if (out.header.nVersion >= SCENARIO_VERSION_CUSTOM) {
        if (bytes.size() - at < sizeof out.custom)
            return false;
        std::memcpy(&out.custom, bytes.data() + at, sizeof out.custom);
        at += sizeof out.custom;
    }
    out.title = Text(bytes, at, SCENARIO_MAX_TITLE);
    out.description = Text(bytes, at, SCENARIO_MAX_DESCRIPTION);
    return true;
}

bool Same(const ScenarioHead& a, const ScenarioHead& b)
{
    return std::memcmp(&a.header, &b.header, sizeof a.header) == 0 &&
           std::memcmp(&a.custom, &b.custom, sizeof a.custom) == 0 && a.title == b.title &&
           a.description == b.description;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    PutFile("head.sc", data, size);
    ScenarioHead plain;
    ScenarioHead read;
    const bool has = PlainHead(std::string(data, data + size), plain);
    Require(ReadScenarioHead("head.sc", true, read) == has, "whether there is a head");
    Require(!has || Same(read, plain), "the head");
    Require(HasWholeScenarioHead("head.sc") == (size >= sizeof(SCENARIO_HEADER)), "a whole head");
    plain.description.clear();
    Require(ReadScenarioHead("head.sc", false, read) == has && (!has || Same(read, plain)),
            "the head without its description");
    return 0;
}
