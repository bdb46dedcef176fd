// Calls, mouse and keys in any order on a report box, whose rows are kept beside it: both must agree after
// each step. The input's form stands with the player.

#include <cstdint>
#include <string>
#include <vector>

#include "support/report_player.h"
#include "toolkit_frame.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static ToolkitWorld world;
    {
        report_test::ReportPlayer player(world.engine, std::vector<std::uint8_t>(data, data + size));
        const std::string fault = player.Run();
        Require(fault.empty(), fault.c_str());
    }
    Require(Toolkit().windows.empty(), "no column outlives its box");
    for (const SpriteEntry& sprite : Toolkit().sprites)
        Require(sprite.refs == 0, "every sprite is given back");
    world.Forget();
    return 0;
}
