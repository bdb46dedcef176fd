#include "kernel/toolkit.h"

namespace
{

// Fonts that are still held when the module is unloaded go without their host, which may be gone already.
struct ToolkitInstance : ToolkitState {
    ~ToolkitInstance()
    {
        for (FontEntry& entry : fonts) {
            if (entry.font != nullptr)
                entry.font->Abandon();
        }
    }
};

} // namespace

ToolkitState& Toolkit()
{
    static ToolkitInstance instance;
    return instance;
}

int ItfRand()
{
    std::uint32_t& seed = Toolkit().randomSeed;
    seed = seed * 1103515245u + 12345u;
    return static_cast<int>((seed >> 16) & ITF_RAND_MAX);
}
