#pragma once

namespace tarven {

/// OUT, APP, S34, ERA, PRI, REA and SAV.
void Register_report_commands();

}  // namespace tarven
