#pragma once

namespace tarven {

/// All that the graph floor has to register, room by room, lowest first.
void Register_graph();

}  // namespace tarven
