// A font file from unknown hands: read, then used to measure, find and draw.

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "controls/itffont.h"
#include "fake_host.h"
#include "keelworks/ds_file.h"

namespace
{

using fuzz::Require;

constexpr int SIDE = 64;

void UseFont(const CItfFont& font, int target, const std::string& text)
{
    constexpr std::uint32_t FLAGS[] = {0, FONT_MULTILINE, FONT_MULTILINE | FONT_CENTER_HOR | FONT_CENTER_VERT,
                                       FONT_RIGHT | FONT_CENTER_VERT};
    const std::vector<ColourMark> marks = {{text.c_str(), 0x123456},
                                           {text.c_str() + text.size() / 2, 0xffffff}};
    for (const RECT rect :
         {RECT{0, 0, SIDE, SIDE}, RECT{-9, -30, 20, 300}, RECT{5, 5, 5, 5}, RECT{9, 0, 2, 9}}) {
        for (const std::uint32_t flags : FLAGS)
            font.DrawBox(target, &rect, text.c_str(), flags, 0x80ff40, &marks);
        const int lines = font.CountLines(&rect, text.c_str());
        Require(lines <= 0 || font.FindLine(&rect, text.c_str(), lines, -1) != nullptr,
                "the last line that was counted is found");
        Require(lines <= 0 || font.FindLine(&rect, text.c_str(), lines, 0) == nullptr,
                "there is no line behind the last");
    }
    font.DrawLine(target, -5, -5, SIDE + 5, text.c_str(), FONT_CENTER_HOR, 0xffffff);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static fuzz::FakeHost host;
    host.debug.clear();
    fuzz::FakeRender render(SIDE);
    const RECT square = {0, 0, SIDE, SIDE};
    const int target = render.CreateSurface(&square);
    {
        ds_file_buffered file;
        file.open_memory("fuzz.fnt", std::vector<char>(data, data + size));
        CItfFont font;
        const bool loaded = font.LoadFrom(file, &render);
        Require(loaded == host.debug.empty(), "what is wrong with a font is told");
        Require(loaded || (font.GetHeight() == 0 && render.Count() == 1),
                "a font that isn't loaded is empty");
        std::string text;
        for (int c = 1; c < 256; ++c)
            text += static_cast<char>(c);
        UseFont(font, target, text + "\r\n");
        // The file's own bytes use its own characters most.
        std::string own(data, data + std::min<std::size_t>(size, 500));
        std::replace(own.begin(), own.end(), '\0', ' ');
        UseFont(font, target, own);
    }
    Require(render.Count() == 1, "the texture is given back");
    return 0;
}
