#pragma once
// Names that are compared without regard to case.

#include <string>

#include "platform/codepage.h"

inline bool SameName(const std::string& a, const std::string& b)
{
    return PlatformEqualNoCase(a, b);
}

/// For maps whose keys are such names.
inline std::string LowerCase(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(PlatformLower(static_cast<unsigned char>(c)));
    return text;
}
