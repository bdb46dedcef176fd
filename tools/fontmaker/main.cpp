// seawarden-fontmaker: makes a bitmap font of the game from an outline font, and tries one on a picture.

#include <charconv>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "fontfile.h"

namespace
{
constexpr const char* USAGE =
    "usage: seawarden-fontmaker DESCRIPTION OUT.fnt IMAGES\n"
    "       seawarden-fontmaker --preview FONT.fnt IMAGES TEXT X Y WIDTH HEIGHT FLAGS RRGGBB IN.png OUT.png\n"
    "\n"
    "The first form writes the font file and, below the folder IMAGES, its texture.\n"
    "The second draws TEXT (code page 1252, \\n breaks the line) into a box of the picture IN.png by the\n"
    "game's rules. FLAGS is a sum: 4 several lines, 8 centred, 16 centred vertically, 32 right.\n";

constexpr std::size_t MAKE_ARGUMENTS = 3;
constexpr std::size_t PREVIEW_ARGUMENTS = 12;

std::string BreakLines(const std::string& text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.compare(i, 2, "\\n") == 0) {
            result += "\r\n";
            ++i;
        } else {
            result += text[i];
        }
    }
    return result;
}

int ReadNumber(const std::string& text)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        throw std::runtime_error("\"" + text + "\" isn't a whole number");
    }
    return value;
}

SColour ReadColour(const std::string& text)
{
    constexpr std::size_t DIGITS = 6;
    unsigned value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (text.size() != DIGITS || error != std::errc() || end != text.data() + text.size()) {
        throw std::runtime_error("\"" + text + "\" isn't a colour like c0a050");
    }
    return {static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 8 & 0xff),
            static_cast<std::uint8_t>(value & 0xff)};
}

void Preview(const std::vector<std::string>& args)
{
    const CFontFile font(args[1], args[2]);
    const SBox box = {ReadNumber(args[4]), ReadNumber(args[5]), ReadNumber(args[6]), ReadNumber(args[7])};
    CPicture picture = CPicture::Read(args[10]);
    font.Draw(picture, box, BreakLines(args[3]), static_cast<unsigned>(ReadNumber(args[8])),
              ReadColour(args[9]));
    picture.Write(args[11]);
}

void Make(const std::vector<std::string>& args)
{
    const SFontStyle style = SFontStyle::Read(args[0]);
    const CGlyphPainter painter(style);
    const CFontFile font(painter.PaintAll(), painter.GetHeight());
    font.Write(args[1], style.texture, args[2]);
}
} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> args(argv + 1, argv + argc);
    try {
        const bool preview = !args.empty() && args[0] == "--preview";
        if (preview && args.size() == PREVIEW_ARGUMENTS) {
            Preview(args);
        } else if (!preview && args.size() == MAKE_ARGUMENTS) {
            Make(args);
        } else {
            std::fputs(USAGE, stderr);
            return 2;
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "seawarden-fontmaker: %s\n", error.what());
        return 1;
    }
    return 0;
}
