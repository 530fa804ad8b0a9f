#pragma once

namespace tarven {

/// ITEMS, EXOGENOUS, FLIP, THETA, TLABELS, SLABELS; SHOW I; DISPOSE I and E.
void Register_item_commands();

}  // namespace tarven
