// A font file from unknown hands: read, then used to measure, find and draw.

#include <algorithm>
#include <string>
#include <vector>

#include "controls/itffont.h"
#include "keelworks/ds_file.h"
#include "toolkit_frame.h"

namespace
{

constexpr int SIDE = 64;

void UseFont(const CItfFont& font, int target, const std::string& text)
{
    const char* const start = text.c_str();
    const std::vector<ColourMark> marks = {{start, 0x123456}, {start + text.size() / 2, 0xffffff}};
    for (const RECT rect :
         {RECT{0, 0, SIDE, SIDE}, RECT{-9, -30, 20, 300}, RECT{5, 5, 5, 5}, RECT{9, 0, 2, 9}}) {
        for (const std::uint32_t flags : {std::uint32_t{0}, std::uint32_t{FONT_MULTILINE},
                                          std::uint32_t{FONT_MULTILINE | FONT_CENTER_HOR | FONT_CENTER_VERT},
                                          std::uint32_t{FONT_RIGHT | FONT_CENTER_VERT}})
            font.DrawBox(target, &rect, start, flags, 0x80ff40, &marks);
        const int lines = font.CountLines(&rect, start);
        Require(lines <= 0 || font.FindLine(&rect, start, lines, -1) != nullptr,
                "the last line that was counted is found");
        Require(lines <= 0 || font.FindLine(&rect, start, lines, 0) == nullptr,
                "there is no line behind the last");
    }
    font.DrawLine(target, -5, -5, SIDE + 5, start, FONT_CENTER_HOR, 0xffffff);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static seawarden_test::FakeHost host;
    host.debug.clear();
    FuzzRender render(SIDE);
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
