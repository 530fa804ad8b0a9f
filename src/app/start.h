#pragma once

namespace tarven {

/// What a person who starts the program without a project is offered: the last project again,
/// another one, or to go on without.
void Offer_a_project();

}  // namespace tarven
