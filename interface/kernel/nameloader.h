#pragma once
// Reading of itfnames.ini, the file that maps logical sprite and font names to files.

#include <vector>

#include "kernel/toolkit.h"

class ds_file;

inline constexpr char NAME_RESOURCE[] = "resource\\txt_res\\itfnames.ini";

struct NameMaps {
    std::vector<NameRow> sprites;
    std::vector<NameRow> fonts;
};

/// Reads both sections, in file order. Throws 1 for a token that can't be read, after a line with file and
/// line number has gone to the debug output.
NameMaps ReadNameMaps(ds_file* file);
