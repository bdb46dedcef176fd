#include "assertion.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

void AssertFailed(const char* text, const char* file, int line)
{
    std::string_view name = file;
    name = name.substr(name.find_last_of('/') + 1);
    name = name.substr(0, name.find('.'));
    std::fprintf(stderr, "Assertion failed: %s, file %.*s, line %d\n", text, static_cast<int>(name.size()),
                 name.data(), line);
    std::abort();
}
