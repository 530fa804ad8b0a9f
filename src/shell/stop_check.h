#pragma once

#include <functional>

namespace tarven {

/// Asked between the steps of a long computation: true ends it at once with what it has. An empty
/// one never stops. It may be asked from several threads at a time.
using StopCheck = std::function<bool()>;

}  // namespace tarven
