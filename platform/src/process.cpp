// Starting an outside program.

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "internal.h"

namespace
{

constexpr int START_FAILED = 127;

/// The words of a command line. Single quotes keep everything, double quotes and bare words know the
/// backslash. Nothing for an open quote.
std::optional<std::vector<std::string>> SplitWords(const std::string& line)
{
    std::vector<std::string> words;
    std::string word;
    bool inWord = false;
    char quote = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (c == '\\' && quote != '\'' && i + 1 < line.size()) {
            word += line[++i];
            inWord = true;
        } else if (quote ? c == quote : (c == '"' || c == '\'')) {
            quote = quote ? '\0' : c;
            inWord = true;
        } else if (!quote && (c == ' ' || c == '\t')) {
            if (inWord) {
                words.push_back(std::move(word));
                word.clear();
            }
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (quote) {
        return std::nullopt;
    }
    if (inWord) {
        words.push_back(std::move(word));
    }
    return words;
}

/// In the child: a grandchild becomes the program, so that nobody has to wait for it. What fails is written
/// to `report`, which closes by itself when the program starts.
[[noreturn]] void BecomeProgram(char* const* arguments, const char* directory, int report)
{
    setsid();
    const pid_t grandchild = fork();
    if (grandchild > 0) {
        _exit(0);
    }
    if (grandchild == 0 && (!*directory || chdir(directory) == 0)) {
        execvp(arguments[0], arguments);
    }
    const int error = errno;
    // If even this can't be told, the parent takes the program as started.
    [[maybe_unused]] const ssize_t written = write(report, &error, sizeof error);
    _exit(START_FAILED);
}

} // namespace

bool PlatformSystemStartProcess(const std::string& commandLine, const std::string& directory)
{
    auto words = SplitWords(commandLine);
    if (!words || words->empty()) {
        return false;
    }
    std::vector<char*> arguments;
    for (std::string& word : *words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);

    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return false;
    }
    const pid_t child = fork();
    if (child == 0) {
        BecomeProgram(arguments.data(), directory.c_str(), ends[1]);
    }
    close(ends[1]);
    int error = 0;
    ssize_t got = -1;
    if (child > 0) {
        while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
        }
        do {
            got = read(ends[0], &error, sizeof error);
        } while (got < 0 && errno == EINTR);
    }
    close(ends[0]);
    return got == 0;
}
