#include "kernel/textformat.h"

std::string FormatNumbers(const char* format, std::initializer_list<int> numbers)
{
    std::string text;
    const int* next = numbers.begin();
    for (const char* p = format; p != nullptr && *p != '\0'; ++p) {
        if (p[0] == '%' && p[1] == 'd' && next != numbers.end()) {
            text += std::to_string(*next++);
            ++p;
        } else {
            text += *p;
            if (p[0] == '%' && p[1] == '%')
                ++p;
        }
    }
    return text;
}
