// Calls, mouse and keys in any order on a report box and on a plain model of it, which must agree after each
// step. The input's form stands with the player.

#include <cstdint>
#include <string>
#include <vector>

#include "fake_host.h"
#include "support/report_player.h"

namespace
{

// The platform, the engine, fonts and sprites: made once.
struct World {
    World()
    {
        Toolkit() = ToolkitState();
        fuzz::KeepFont(engine, {"itfListFont", "itfBtnFont"});
        for (const char* name :
             {"itfTrans137", "itfScBar", "itfScArrUp", "itfScArrUpA", "itfScArrDown", "itfScArrDownA"})
            Toolkit().spriteMap.push_back({name, "fuzz.png"});
    }
    fuzz::FakeHost host;
    fuzz::FakeEngine engine;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static World world;
    {
        report_test::ReportPlayer player(world.engine, std::vector<std::uint8_t>(data, data + size));
        const std::string fault = player.Run();
        fuzz::Require(fault.empty(), fault.c_str());
    }
    fuzz::Require(Toolkit().windows.empty(), "no column outlives its box");
    for (const SpriteEntry& sprite : Toolkit().sprites)
        fuzz::Require(sprite.refs == 0, "every sprite is given back");
    world.host.debug.clear();
    return 0;
}
