// DEF, VAR and CAT readers and the strict check on arbitrary bytes. What is read stays in range.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "project/cat_file.h"
#include "project/def_file.h"
#include "project/project_report.h"
#include "project/var_file.h"
#include "shell/text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarven;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto lines = Split_lines(To_latin1(bytes));
    const DefFile def = Read_DEF_file(lines);
    if (def.selections.size() > static_cast<std::size_t>(MaxSelections)) std::abort();
    Check_VAR_file(lines);
    const VarFile file = Read_VAR_file(lines);
    if (!file.ok) return 0;
    if (file.N < 2 || file.N > MaxVariables || file.Nlevels < 1 || file.Nlevels > file.N)
        std::abort();
    ProjectDefinition project;
    project.N = file.N;
    project.variables = file.variables;
    project.Nlevels = file.Nlevels;
    project.LevelEnd = file.LevelEnd;
    Set_default_category_names(project);
    Read_CAT_file(lines, project);
    Variables_report(project);
    return 0;
}
