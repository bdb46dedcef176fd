#pragma once
// The numbered texts against everything that asks for one.

#include "faults.h"
#include "flag_check.h"

inline constexpr char TEXT_RESOURCE[] = "resource\\txt_res\\texts.ini";

/// Reads texts and scenarios of the data folder. flags: behind its Run.
void CheckTexts(CFaults& faults, CFlagCheck& flags);
