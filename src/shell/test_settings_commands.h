#pragma once

namespace tarven {

/// EXACT, REPEATED, SEQUENTIAL, ASYMPTOTIC and the commands that set one flag of the tests.
void Register_test_settings_commands();

}  // namespace tarven
