// seawarden-check: reads the dialogs, names, texts, fonts, flags and scenarios of a data folder and tells
// everything that is wrong with them.

#include <cstdio>
#include <string_view>
#include <vector>

#include "dialog_check.h"
#include "faults.h"
#include "name_check.h"
#include "platform/files.h"
#include "text_check.h"

namespace
{

enum ExitCode : int {
    EXIT_NO_FAULT = 0,
    EXIT_FAULTS = 1,
    EXIT_USAGE = 2,
};

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string_view> args(argv + 1, argv + argc);
    const bool hasUser = args.size() == 4 && args[2] == "--user";
    if ((args.size() != 2 && !hasUser) || args[0] != "--data") {
        std::fputs(
            "usage: seawarden-check --data FOLDER [--user FOLDER]\n"
            "Tells every fault of the dialogs, names, texts, fonts, flags and scenarios in the game's\n"
            "FOLDER, with the files of a player's over it, as file(line): fault.\n"
            "The exit code is 1 when there is any.\n",
            stderr);
        return EXIT_USAGE;
    }
    PlatformSetRoots(std::string(hasUser ? args[3] : ""), std::string(args[1]));
    CFaults faults;
    CNameCheck names(faults);
    names.Run();
    CDialogCheck(names, faults).Run();
    CFlagCheck flags(faults);
    flags.Run();
    CheckTexts(faults, flags);
    const std::vector<std::string> lines = faults.Sorted();
    for (const std::string& line : lines)
        std::puts(line.c_str());
    return lines.empty() ? EXIT_NO_FAULT : EXIT_FAULTS;
}
