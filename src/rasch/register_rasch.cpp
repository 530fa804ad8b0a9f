#include "rasch/register_rasch.h"

#include "rasch/items/rasch_commands.h"

namespace tarven {

void Register_rasch() {
    Register_rasch_commands();
}

}  // namespace tarven
