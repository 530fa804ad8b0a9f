#pragma once

namespace tarven {

/// GRM and ITA, which define and estimate the model and enter the dialogue of item analysis.
void Register_estimation_commands();

}  // namespace tarven
