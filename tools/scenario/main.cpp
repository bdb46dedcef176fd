// seawarden-scenario: makes a scenario file from its readable form, or the readable form from a scenario
// file.

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "keelworks/scenario_parser.h"
#include "keelworks/scenario_writer.h"
#include "platform/codepage.h"
#include "platform/files.h"
#include "scenario_text.h"

namespace
{

namespace fs = std::filesystem;

constexpr const char* USAGE = "usage: seawarden-scenario compile IN.scn.txt OUT.sc\n"
                              "       seawarden-scenario dump IN.sc OUT.txt\n";

// Paths are the system's own, where case and backslashes are part of a name; the file layer sees them
// otherwise.

std::vector<char> ReadAll(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in || fs::is_directory(path))
        throw fopen_exception(path);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// A file appears when it is whole; what isn't a file, a pipe for instance, is written to as it is.
void WriteAll(const std::string& path, std::string_view content)
{
    bool whole = false;
    if (fs::exists(path) && !fs::is_regular_file(path)) {
        std::ofstream out(path, std::ios::binary);
        whole = out.write(content.data(), static_cast<std::streamsize>(content.size())) && out.flush();
    } else {
        const std::string real = fs::exists(path) ? fs::canonical(path).string() : path;
        whole = PlatformPutFile(real, content, true) == PlatformPut::Done;
    }
    if (!whole)
        throw scenario_exception(path + ": can't be written");
}

/// A text in code page 1252 with an accent in it is hardly ever valid UTF-8.
bool LooksLikeUtf8(std::string_view text)
{
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    return !std::ranges::all_of(text, isAscii) && PlatformIsUtf8(text);
}

void Compile(const std::string& in, const std::string& out)
{
    std::vector<char> text = ReadAll(in);
    if (LooksLikeUtf8({text.data(), text.size()}))
        throw scenario_exception(in + ": is in UTF-8; save it in code page 1252");
    if (fs::exists(out) && fs::equivalent(in, out))
        throw scenario_exception(out + ": would replace its own source");
    ds_file_buffered file;
    file.open_memory(in, std::move(text));
    const CScenarioWriter writer(ReadScenarioText(file));
    WriteAll(out, {writer.GetBytes().data(), writer.GetBytes().size()});
}

void Dump(const std::string& in, const std::string& out)
{
    CScenarioParser parser;
    parser.OpenScenario(in, ReadAll(in));
    WriteAll(out, WriteScenarioText(parser.GetScenario()));
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> args(argv + 1, argv + argc);
    if (args.size() != 3 || (args[0] != "compile" && args[0] != "dump")) {
        std::fputs(USAGE, stderr);
        return 2;
    }
    try {
        (args[0] == "compile" ? Compile : Dump)(args[1], args[2]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "seawarden-scenario: %s\n", error.what());
        return 1;
    }
    return 0;
}
