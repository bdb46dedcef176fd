#pragma once
// Small text files of the player's folder, written so that a crash or a full disk leaves the old one whole.

#include <cstddef>
#include <optional>
#include <string>

constexpr std::size_t TEXT_FILE_MAX_BYTES = std::size_t{1024} * 1024;

/// Nothing when there is no such file, or when it can't be read or is larger than TEXT_FILE_MAX_BYTES.
std::optional<std::string> ReadTextFile(const char* path);
/// Writes a temporary file beside it, flushes it to the disk and renames it. False when a step failed; then
/// the old file is as it was.
bool WriteTextFile(const char* path, const std::string& text);
