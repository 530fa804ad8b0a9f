#pragma once

namespace tarven {

/// HYPOTHESES, THREEWAY and ELABORATE on the current table, and SHOW H.
void Register_hypothesis_commands();

}  // namespace tarven
