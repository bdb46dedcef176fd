#pragma once
// Programming errors end the program, in every build, with a line that the host's tools know.

/// Writes "Assertion failed: TEXT, file NAME, line N" to stderr and aborts. NAME is `file` without folder and
/// extension.
[[noreturn]] void AssertFailed(const char* text, const char* file, int line);

/// Ends the program unless `holds`. The place is the caller's.
inline void Assert(bool holds, const char* text, const char* file = __builtin_FILE(),
                   int line = __builtin_LINE())
{
    if (!holds)
        AssertFailed(text, file, line);
}
