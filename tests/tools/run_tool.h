#pragma once

#include <cstdio>
#include <string>
#include <sys/wait.h>
#include <utility>

/// Runs a tool as its user does. Gives its exit status, and all that it said.
inline std::pair<int, std::string> RunTool(const std::string& command)
{
    std::FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    std::string told;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe))
        told += static_cast<char>(c);
    const int status = pclose(pipe);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, told};
}
