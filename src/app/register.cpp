#include "app/register.h"

#include "shell/workspace.h"

namespace tarven {

void Register_all() {
    Register_shell_lifecycle();
    Init_workspace();
}

}  // namespace tarven
