#pragma once
// The readable form of a scenario. docs/formats.md tells it.

#include <string>

#include "keelworks/ds_file.h"
#include "keelworks/scenario.h"

/// Throws scenario_exception with file, line and what was expected.
Scenario ReadScenarioText(ds_file_buffered& file);

/// A text that ReadScenarioText makes the same scenario of.
std::string WriteScenarioText(const Scenario& scenario);
