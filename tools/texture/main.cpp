// seawarden-tf: makes texture files from pictures and pictures from texture files, and TGAs from BMPs.

#include <charconv>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "commands.h"
#include "lib/teximage.h"

namespace
{

using Arguments = std::vector<std::string>;

/// The arguments can't be understood; what() tells which.
class usage_fault : public std::runtime_error
{
    using runtime_error::runtime_error;
};

int ReadNumber(const std::string& text, int most)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < 0 || value > most)
        throw usage_fault("\"" + text + "\" isn't a whole number from 0 to " + std::to_string(most));
    return value;
}

/// Takes an option out of the arguments; false when it isn't among them.
bool Take(Arguments& args, const char* option)
{
    const auto erased = std::erase(args, option);
    return erased != 0;
}

/// The plain arguments, of which there must be just so many.
void Require(const Arguments& args, std::size_t count)
{
    for (const std::string& arg : args) {
        if (arg.size() > 1 && arg[0] == '-')
            throw usage_fault("there is no option \"" + arg + "\"");
    }
    if (args.size() != count)
        throw usage_fault(std::to_string(count) + " arguments are needed, not " +
                          std::to_string(args.size()));
}

void RunInfo(Arguments& args)
{
    Require(args, 1);
    Info(args[0]);
}

void RunConvert(Arguments& args)
{
    int width = 0;
    int height = 0;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] != "--size")
            continue;
        const std::string size = i + 1 < args.size() ? args[i + 1] : "";
        const std::size_t x = size.find('x');
        if (x == std::string::npos)
            throw usage_fault("--size wants WIDTHxHEIGHT, like 256x128");
        width = ReadNumber(size.substr(0, x), CTexImage::MAX_FILE_SIDE);
        height = ReadNumber(size.substr(x + 1), CTexImage::MAX_FILE_SIDE);
        if (width == 0 || height == 0)
            throw usage_fault("--size: neither side can be 0");
        const auto at = args.begin() + static_cast<std::ptrdiff_t>(i);
        args.erase(at, at + 2);
        break;
    }
    Require(args, 2);
    Convert(args[0], args[1], width, height);
}

void RunExport(Arguments& args)
{
    constexpr int MOST_LEVEL = 255;
    const bool eightBit = Take(args, "--8bit");
    Require(args, 3);
    Export(args[0], ReadNumber(args[1], MOST_LEVEL), args[2], eightBit);
}

void RunBmpToTga(Arguments& args)
{
    const bool portrait = Take(args, "--portrait");
    Require(args, 2);
    BmpToTga(args[0], args[1], portrait);
}

struct Command {
    const char* name;
    void (*run)(Arguments& args);
    const char* usage;
    const char* help;
};

constexpr Command COMMANDS[] = {
    {"info", &RunInfo, "info FILE.tf",
     "Prints the size of a texture file, the formats of its levels and where they lie.\n"
     "Exit status 1 when the file is damaged.\n"},
    {"convert", &RunConvert, "convert IN.bmp OUT.tf [--size WIDTHxHEIGHT]",
     "Makes a texture file with all its levels of an uncompressed BMP with 24 bits per pixel and the plain\n"
     "header of 54 bytes (\"BMP 3\").\n\n"
     "  --size WIDTHxHEIGHT  makes the picture smaller first. Each side of the picture should be a whole\n"
     "                       multiple of the new one; what is over makes the texture darker.\n"},
    {"export", &RunExport, "export FILE.tf LEVEL OUT.png [--8bit]",
     "Writes a level of a texture file as a PNG, with its alpha if it has any. Level 0 is the largest.\n\n"
     "  --8bit  takes the 8-bit levels, where the file has both kinds.\n"},
    {"bmp2tga", &RunBmpToTga, "bmp2tga IN OUT.tga [--portrait]",
     "Makes a TGA of an uncompressed BMP: with a palette of one with 4 or 8 bits per pixel, in 24 bits of\n"
     "one with 24.\n\n"
     "  --portrait  makes a portrait: IN is a BMP or TGA of 100 by 150 pixels, and one of 24 bits becomes\n"
     "              one of 32.\n"},
};

void PrintUsage(std::FILE* to)
{
    std::fputs("Makes texture files from pictures and pictures from texture files.\n\n", to);
    for (const Command& command : COMMANDS)
        std::fprintf(to, "%s seawarden-tf %s\n", &command == COMMANDS ? "usage:" : "      ", command.usage);
    std::fputs(
        "\nseawarden-tf COMMAND --help tells more. A file that is written is either whole or not there; "
        "one that was\nthere is replaced.\n",
        to);
}

/// The exit status of a run without a fault, unless what it printed got lost.
int Finish()
{
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return 0;
    std::fputs("seawarden-tf: what was to be printed can't be written\n", stderr);
    return 1;
}

int Run(const Command& command, Arguments args)
{
    try {
        if (Take(args, "--help"))
            std::printf("usage: seawarden-tf %s\n\n%s", command.usage, command.help);
        else
            command.run(args);
        return Finish();
    } catch (const usage_fault& fault) {
        std::fprintf(stderr, "seawarden-tf %s: %s\nusage: seawarden-tf %s\n", command.name, fault.what(),
                     command.usage);
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "seawarden-tf: %s\n", error.what());
        return 1;
    }
}

} // namespace

int main(int argc, char** argv)
{
    Arguments args(argv + 1, argv + argc);
    if (!args.empty()) {
        for (const Command& command : COMMANDS) {
            if (args[0] == command.name)
                return Run(command, {args.begin() + 1, args.end()});
        }
    }
    const bool help = !args.empty() && args[0] == "--help";
    if (!help && !args.empty())
        std::fprintf(stderr, "seawarden-tf: there is no command \"%s\"\n", args[0].c_str());
    PrintUsage(help ? stdout : stderr);
    return help ? Finish() : 2;
}
