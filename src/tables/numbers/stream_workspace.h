#pragma once

#include "tables/numbers/random_stream.h"

namespace tarven {

/// The one stream of the workspace.
inline RandomStream The_stream;

}  // namespace tarven
