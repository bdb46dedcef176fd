#include <SDL.h>
#include <cstdio>
#include <string>
#include <vector>

#include "platform/files.h"
#include "shell/folders.h"
#include "shell/options.h"
#include "shell/program.h"

namespace
{

int Complain(const std::string& line, int status)
{
    std::fprintf(stderr, "seawarden: %s\n", line.c_str());
    return status;
}

int RunGame(const Options& options)
{
    std::string error;
    const std::string data = FindDataFolder(options.dataFolder, error);
    if (data.empty())
        return Complain(error, CProgram::EXIT_FAILED);
    const std::string user = MakeUserFolder(options.userFolder, error);
    if (user.empty())
        return Complain(error, CProgram::EXIT_FAILED);
    if (!CanKeepFiles(user))
        Complain("the player's folder " + user + " can't be read and written; settings and saves may be lost",
                 CProgram::EXIT_GOOD);
    PlatformSetRoots(user, data);
    const int status = CProgram(options).Run();
    SDL_Quit();
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    Options options;
    std::string error;
    if (!ParseOptions(std::vector<std::string>(argv + 1, argv + argc), options, error))
        return Complain(error, CProgram::EXIT_USAGE);
    if (options.help) {
        std::fputs(HelpText(), stdout);
        return CProgram::EXIT_GOOD;
    }
    if (options.version) {
        std::printf("seawarden %s\n", ProgramVersion());
        return CProgram::EXIT_GOOD;
    }
    return RunGame(options);
}
