#include "rasch/register_rasch.h"

#include "rasch/estimation/estimation_commands.h"
#include "rasch/items/rasch_commands.h"

namespace tarven {

void Register_rasch() {
    Register_rasch_commands();
    Register_estimation_commands();
}

}  // namespace tarven
