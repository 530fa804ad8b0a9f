#pragma once

namespace tarven {

/// CUT, and SHOW S.
void Register_score_commands();

}  // namespace tarven
