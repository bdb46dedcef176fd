#include "engine/game_files.h"

#include "platform/files.h"

std::string FindGameFile(const std::string& path)
{
    for (const std::string& name : {path, "resource\\" + path}) {
        if (!path.empty() && !PlatformResolveRead(name.c_str()).empty())
            return name;
    }
    return {};
}
