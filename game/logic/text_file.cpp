#include "logic/text_file.h"

#include <cstdio>

#include "platform/files.h"

std::optional<std::string> ReadTextFile(const char* path)
{
    std::FILE* file = PlatformOpenFile(path, "rb");
    if (file == nullptr)
        return std::nullopt;
    std::string text;
    char block[4096];
    while (text.size() <= TEXT_FILE_MAX_BYTES) {
        const std::size_t count = std::fread(block, 1, sizeof(block), file);
        if (count == 0)
            break;
        text.append(block, count);
    }
    const bool good = std::ferror(file) == 0 && text.size() <= TEXT_FILE_MAX_BYTES;
    std::fclose(file);
    return good ? std::optional(text) : std::nullopt;
}

bool WriteTextFile(const char* path, const std::string& text)
{
    const std::string real = PlatformResolveWrite(path);
    return !real.empty() && PlatformPutFile(real, text, true) == PlatformPut::Done;
}
