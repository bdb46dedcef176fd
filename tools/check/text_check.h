#pragma once
// The numbered texts against everything that asks for one.

#include "faults.h"

/// Reads texts, flags and scenarios of the data folder.
void CheckTexts(CFaults& faults);
