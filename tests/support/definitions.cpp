#include "support/definitions.h"

#include <fstream>
#include <sstream>

namespace tarven {

ProjectDefinition Definition_of_dims(const std::vector<int>& dims) {
    ProjectDefinition definition;
    definition.NTAL = definition.N = static_cast<int>(dims.size());
    for (std::size_t v = 1; v <= dims.size(); ++v) {
        Variable& variable = definition.variables[v];
        variable.label = static_cast<char>('@' + v);
        variable.VARNO = static_cast<int>(v);
        variable.dim = static_cast<std::uint8_t>(dims[v - 1]);
        variable.vtype = Ordinal;
        variable.vfra = 1;
        for (std::size_t c = 1; c <= variable.dim; ++c) variable.vtil[c] = static_cast<double>(c);
    }
    return definition;
}

std::string Example_file(const std::string& name, const std::string& extension) {
    return std::string(TARVEN_EXAMPLES) + "/" + name + "/" + name + "." + extension;
}

ProjectDefinition Example_definition(const std::string& name) {
    ProjectDefinition definition;
    std::ifstream DEF(Example_file(name, "DEF"));
    std::string line;
    std::getline(DEF, line);
    definition.NTAL = std::stoi(line);
    RangeCondition condition;
    while (std::getline(DEF, line) &&
           std::istringstream(line) >> condition.column >> condition.lower >> condition.upper)
        definition.conditions.push_back(condition);
    std::ifstream VAR(Example_file(name, "VAR"));
    VAR >> definition.N;
    for (int v = 1; v <= definition.N; ++v) {
        Variable& variable = definition.variables[static_cast<std::size_t>(v)];
        int dim = 0;
        int type = 0;
        VAR >> variable.label >> variable.VARNO >> dim >> type >> variable.vfra;
        variable.dim = static_cast<std::uint8_t>(dim);
        variable.vtype = static_cast<std::uint8_t>(type);
        for (int c = 1; c <= dim; ++c) VAR >> variable.vtil[static_cast<std::size_t>(c)];
    }
    return definition;
}

}  // namespace tarven
