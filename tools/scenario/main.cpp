// seawarden-scenario: makes a scenario file from its readable form, or the readable form from a scenario
// file.

#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include "keelworks/scenario_parser.h"
#include "keelworks/scenario_writer.h"
#include "scenario_text.h"

namespace
{

constexpr const char* USAGE = "usage: seawarden-scenario compile IN.scn.txt OUT.sc\n"
                              "       seawarden-scenario dump IN.sc OUT.txt\n";

/// The file layer knows a program's own folders alone; a tool is given paths from where it is called.
std::string FullPath(const std::string& path)
{
    return std::filesystem::absolute(path).lexically_normal().string();
}

std::vector<char> ReadAll(const std::string& path)
{
    const ds_file_buffered file(FullPath(path).c_str(), false);
    return {file.data(), file.data() + file.get_size()};
}

void Compile(const std::string& in, const std::string& out)
{
    ds_file_buffered file;
    file.open_memory(in, ReadAll(in));
    const Scenario scenario = ReadScenarioText(file);
    CScenarioWriter(scenario).Write(FullPath(out).c_str());
}

void Dump(const std::string& in, const std::string& out)
{
    CScenarioParser parser;
    parser.OpenScenario(in, ReadAll(in));
    const std::string text = WriteScenarioText(parser.GetScenario());
    ds_file file(FullPath(out).c_str(), ds_file::MODE_WRITE);
    const bool whole = file.write(text.data(), text.size()) == text.size();
    if (!file.close() || !whole) {
        throw scenario_exception(out + ": can't be written to its end");
    }
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
