#pragma once

namespace tarven {

/// PVA: p-values of test statistics that the user types.
void Register_pvalues_command();

}  // namespace tarven
