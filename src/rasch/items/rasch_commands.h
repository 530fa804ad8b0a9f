#pragma once

namespace tarven {

/// The commands of items and their graphical loglinear Rasch model: definition, estimation,
/// persons, item fit, differential item functioning, exact Rasch inference.
void Register_rasch_commands();

}  // namespace tarven
