#pragma once
// The command line.

#include <string>
#include <vector>

#include "platform/types.h"
#include "shell/view_fit.h"

struct Options {
    std::string dataFolder; ///< empty: look for it
    std::string userFolder; ///< empty: the system's place for the player's files
    SIZE size = {800, 600};
    ViewScale scale = ViewScale::Smooth;
    bool fullscreen = false;
    bool mute = false;
    bool headless = false;
    bool help = false;
    bool version = false;
    std::string script;
    std::string shots;
    std::string trace;
    std::string record;
    unsigned seed = 0;
};

/// Arguments without the program's name. False, with one line for the user in `error`, for a wrong one.
bool ParseOptions(const std::vector<std::string>& arguments, Options& out, std::string& error);
const char* HelpText();
/// "major.minor.build"
const char* ProgramVersion();
