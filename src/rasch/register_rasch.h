#pragma once

namespace tarven {

/// All that the rasch floor has to register, room by room, lowest first.
void Register_rasch();

}  // namespace tarven
