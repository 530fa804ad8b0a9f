#include "project/listed_variables.h"

#include <algorithm>
#include <string>

#include "shell/variable_lists.h"

namespace tarven {

bool Listed_variables(std::string_view line, const ProjectDefinition& definition,
                      std::vector<int>& variables) {
    variables.clear();
    std::string labels;
    for (int v = 1; v <= definition.N; ++v)
        labels += definition.variables[static_cast<std::size_t>(v)].label;
    const VariableList list = Select_list_to_variables(line, labels, true);
    if (!list.ok) return false;
    bool all = list.list.empty();
    for (const int v : list.list) {
        all = all || v == definition.N + 1;
        if (v >= 1 && v <= definition.N &&
            std::find(variables.begin(), variables.end(), v) == variables.end())
            variables.push_back(v);
    }
    if (all) {
        variables.clear();
        for (int v = 1; v <= definition.N; ++v) variables.push_back(v);
    }
    return !variables.empty();
}

}  // namespace tarven
