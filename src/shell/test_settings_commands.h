#pragma once

#include "shell/parsed_line.h"
#include "shell/settings.h"

namespace tarven {

// What the setting commands make of the numbers of a line. Values in, settings out; the commands
// themselves only store the result.

TestSettings Exact_settings(TestSettings settings, const ParsedLine& line);
TestSettings Repeated_settings(TestSettings settings, const ParsedLine& line);
TestSettings Sequential_settings(TestSettings settings, const ParsedLine& line);
TestSettings Asymptotic_settings(TestSettings settings);

void Register_test_settings_commands();

}  // namespace tarven
