// The file of logical names from unknown hands: read, then every name is used.

#include <algorithm>
#include <strings.h>
#include <vector>

#include "keelworks/ds_file.h"
#include "kernel/itfdialog.h"
#include "kernel/nameloader.h"
#include "toolkit_frame.h"

namespace
{

/// A font is looked for on the disk.
constexpr std::size_t MOST_FONTS = 16;

std::size_t CheckRows(const std::vector<NameRow>& rows)
{
    Require(!rows.empty(), "a section has a row");
    std::size_t bytes = 0;
    for (const NameRow& row : rows) {
        Require(row.name.size() <= MAX_LOGICAL_NAME, "the length of a name");
        bytes += row.name.size() + row.file.size();
    }
    return bytes;
}

void UseNames(CItfWnd& wnd)
{
    const std::vector<NameRow>& rows = Toolkit().spriteMap;
    for (const NameRow& row : rows) {
        const auto first = std::find_if(rows.begin(), rows.end(), [&row](const NameRow& other) {
            return strcasecmp(other.name.c_str(), row.name.c_str()) == 0;
        });
        const int sprite = wnd.AcquireSprite(row.name.c_str());
        Require((sprite >= 0) == !first->file.empty(), "the first row of a name gives the file");
        Require(sprite < 0 || wnd.AcquireSprite(row.name.c_str()) == sprite, "a sprite is loaded once");
        wnd.ReleaseSprite(sprite);
        wnd.ReleaseSprite(sprite);
    }
    const std::vector<NameRow>& fonts = Toolkit().fontMap;
    for (std::size_t i = 0; i < std::min(fonts.size(), MOST_FONTS); ++i)
        Require(wnd.AcquireFont(fonts[i].name.c_str()) < 0, "there is no font in an empty folder");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static seawarden_test::FakeHost host;
    static FuzzEngine engine;
    Roots();
    host.debug.clear();
    ds_file_buffered file;
    file.open_memory("fuzz.ini", std::vector<char>(data, data + size));
    try {
        NameMaps maps = ReadNameMaps(&file);
        Require(CheckRows(maps.sprites) + CheckRows(maps.fonts) <= size, "the rows are the file's");
        Toolkit().spriteMap = std::move(maps.sprites);
        Toolkit().fontMap = std::move(maps.fonts);
    } catch (int code) {
        Require(code == RESERR_SYNTAX, "the code of a mistake");
        Require(host.debug.size() == 1 && host.debug[0].rfind("fuzz.ini(", 0) == 0, "a mistake is told");
        return 0;
    }
    CItfWnd wnd;
    const RECT rect = {0, 0, 1, 1};
    Require(wnd.Create("", "", &rect, nullptr, 0, 0, &engine), "a window");
    const int surfaces = engine.surfaces.Count();
    UseNames(wnd);
    Require(engine.surfaces.Count() == surfaces, "every sprite is given back");
    return 0;
}
