#pragma once

namespace tarven {

/// LLR, GLLRM, ICOMPONENTS, COMPONENTS; SHOW R, the components in SHOW C; SAVE R.
void Register_model_commands();

}  // namespace tarven
