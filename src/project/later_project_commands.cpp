#include "project/later_project_commands.h"

#include "shell/later_commands.h"

namespace tarven {

void Register_later_project_commands() {
    Register_later_commands({
        {"CRE", "CREATE", "creates a new project"},
        {"CSV", "CSV", "exports data as separated text"},
        {"EXP", "EXPAND", "expands or exports a project"},
        {"IMP", "IMPORT", "imports data as a new project"},
        {"REC", "RECODE", "recodes data into a new project"},
        {"SPL", "SPLIT", "splits a project"},
    });
}

}  // namespace tarven
