#include "shell/line_ends.h"

std::string WithCrLf(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    char before = '\0';
    for (const char c : text) {
        if (c == '\n' && before != '\r')
            out += '\r';
        out += c;
        before = c;
    }
    return out;
}

std::string WithLf(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!text.substr(i).starts_with("\r\n"))
            out += text[i];
    }
    return out;
}
