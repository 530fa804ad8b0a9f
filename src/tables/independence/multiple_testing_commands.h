#pragma once

namespace tarven {

/// FDR.
void Register_multiple_testing_commands();

}  // namespace tarven
