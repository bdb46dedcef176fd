#include "shell/options.h"

#include <charconv>
#include <functional>

#include "engine/display_limits.h"

namespace
{

bool ParseNumber(const std::string& text, unsigned& out)
{
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, out);
    return result.ec == std::errc() && result.ptr == end;
}

bool ParseSize(const std::string& text, SIZE& out)
{
    const std::size_t x = text.find('x');
    unsigned width = 0;
    unsigned height = 0;
    if (x == std::string::npos || !ParseNumber(text.substr(0, x), width) ||
        !ParseNumber(text.substr(x + 1), height))
        return false;
    if (width < DISPLAY_MIN_WIDTH || height < DISPLAY_MIN_HEIGHT || width > DISPLAY_MAX_SIDE ||
        height > DISPLAY_MAX_SIDE)
        return false;
    out = {static_cast<LONG>(width), static_cast<LONG>(height)};
    return true;
}

bool ParseScale(const std::string& text, ViewScale& out)
{
    out = text == "whole" ? ViewScale::Whole : ViewScale::Smooth;
    return text == "whole" || text == "smooth";
}

/// An option without a value has a flag, one with a value a reader that says whether it takes it.
struct OptionRow {
    const char* name;
    bool Options::*flag;
    std::function<bool(Options&, const std::string&)> read;
    const char* expected;
};

OptionRow Path(const char* name, std::string Options::*field, const char* expected)
{
    return {name, nullptr,
            [field](Options& options, const std::string& value) {
                options.*field = value;
                return !value.empty();
            },
            expected};
}

const std::vector<OptionRow>& Rows()
{
    static const std::vector<OptionRow> rows = {
        {"--fullscreen", &Options::fullscreen, nullptr, nullptr},
        {"--mute", &Options::mute, nullptr, nullptr},
        {"--headless", &Options::headless, nullptr, nullptr},
        {"--help", &Options::help, nullptr, nullptr},
        {"--version", &Options::version, nullptr, nullptr},
        Path("--data", &Options::dataFolder, "a folder"),
        Path("--user", &Options::userFolder, "a folder"),
        Path("--script", &Options::script, "a file"),
        Path("--shots", &Options::shots, "a folder"),
        Path("--trace", &Options::trace, "a file"),
        Path("--record", &Options::record, "a file"),
        {"--size", nullptr,
         [](Options& options, const std::string& value) { return ParseSize(value, options.size); },
         "a size from 320x200 to 4096x4096, such as 1024x768"},
        {"--scale", nullptr,
         [](Options& options, const std::string& value) { return ParseScale(value, options.scale); },
         "smooth or whole"},
        {"--seed", nullptr,
         [](Options& options, const std::string& value) { return ParseNumber(value, options.seed); },
         "a number of at least 0"},
    };
    return rows;
}

} // namespace

const char* HelpText()
{
    return "Usage: seawarden [OPTION]...\n"
           "  --data DIR      the game's folder\n"
           "  --user DIR      the player's folder: settings, saves, and files that hide the game's\n"
           "  --size WxH      size of the display in pixels (800x600)\n"
           "  --scale MODE    how the display fills the window: smooth or whole (Alt+S switches)\n"
           "  --fullscreen    begin on the full screen (Alt+Enter switches)\n"
           "  --mute          no sound\n"
           "  --headless      no window, no sound, a clock of 20 ms a frame; needs --script\n"
           "  --script FILE   play a script; the exit status is 1 when it fails\n"
           "  --shots DIR     where a script's pictures go\n"
           "  --trace FILE    write what crosses the front end's edge\n"
           "  --record FILE   write the player's input as a script\n"
           "  --seed N        choose a battle's dice, and the time of day of a headless or recorded run (0)\n"
           "  --version       tell the version\n"
           "  --help          tell this\n";
}

const char* ProgramVersion()
{
    return SEAWARDEN_VERSION;
}

bool ParseOptions(const std::vector<std::string>& arguments, Options& out, std::string& error)
{
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string name = arguments[i];
        const std::size_t equals = name.starts_with("--") ? name.find('=') : std::string::npos;
        std::string value;
        if (equals != std::string::npos) {
            value = name.substr(equals + 1);
            name.resize(equals);
        }
        const OptionRow* row = nullptr;
        for (const OptionRow& known : Rows()) {
            if (name == known.name)
                row = &known;
        }
        if (row == nullptr || (row->flag != nullptr && equals != std::string::npos)) {
            error = "unknown option " + arguments[i] + "; --help lists the options";
            return false;
        }
        if (row->flag != nullptr) {
            out.*(row->flag) = true;
            continue;
        }
        if (equals == std::string::npos && i + 1 < arguments.size())
            value = arguments[++i];
        if (!row->read(out, value)) {
            error = name + " needs " + row->expected;
            return false;
        }
    }
    if (out.headless && out.script.empty() && !out.help && !out.version) {
        error = "--headless needs a --script, since nobody else can act";
        return false;
    }
    return true;
}
