// A scenario file from unknown hands, read for its head alone as the scenario list does, beside a plain
// reader of the same bytes.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>

#include <unistd.h>

#include "fake_host.h"
#include "scenario/scenhead.h"

namespace
{

/// One file, overwritten for each input.
class File
{
  public:
    File()
        : m_strPath(
              (std::filesystem::temp_directory_path() / ("head" + std::to_string(getpid()) + ".sc")).string())
    {
    }
    ~File() { std::remove(m_strPath.c_str()); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    const char* Path() const { return m_strPath.c_str(); }
    void Write(const std::string& bytes) const
    {
        std::FILE* file = std::fopen(Path(), "wb");
        fuzz::Require(file != nullptr && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() &&
                          std::fclose(file) == 0,
                      "the file is written");
    }

  private:
    std::string m_strPath;
};

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
    const std::size_t titleEnd = std::min(bytes.find('\0', at), bytes.size());
    out.title = bytes.substr(at, std::min(titleEnd - at, std::size_t{SCENARIO_MAX_TITLE}));
    at = std::min(titleEnd + 1, bytes.size());
    const std::size_t end = std::min(bytes.find('\0', at), bytes.size());
    out.description = bytes.substr(at, std::min(end - at, std::size_t{SCENARIO_MAX_DESCRIPTION}));
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
    static fuzz::FakeHost host;
    static const File file;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    file.Write(bytes);
    ScenarioHead plain;
    ScenarioHead read;
    const bool has = PlainHead(bytes, plain);
    fuzz::Require(ReadScenarioHead(file.Path(), true, read) == has, "whether there is a head");
    fuzz::Require(!has || Same(read, plain), "the head");
    fuzz::Require(HasWholeScenarioHead(file.Path()) == (size >= sizeof(SCENARIO_HEADER)), "a whole head");
    plain.description.clear();
    fuzz::Require(ReadScenarioHead(file.Path(), false, read) == has && (!has || Same(read, plain)),
                  "the head without its description");
    return 0;
}
