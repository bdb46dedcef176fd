// seawarden-check: reads the dialogs, names, texts and fonts of a data folder and tells everything that is
// wrong with them.

#include <cstdio>
#include <string_view>

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
    if (argc != 3 || std::string_view(argv[1]) != "--data") {
        std::fputs(
            "usage: seawarden-check --data FOLDER\n"
            "Tells every fault of the dialogs, names, texts and fonts in FOLDER, as file(line): fault.\n"
            "The exit code is 1 when there is any.\n",
            stderr);
        return EXIT_USAGE;
    }
    PlatformSetRoots("", argv[2]);
    CFaults faults;
    CNameCheck names(faults);
    names.Run();
    CDialogCheck(names, faults).Run();
    CheckTexts(faults);
    const std::vector<std::string> lines = faults.Sorted();
    for (const std::string& line : lines)
        std::puts(line.c_str());
    return lines.empty() ? EXIT_NO_FAULT : EXIT_FAULTS;
}
