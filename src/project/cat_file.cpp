#include "project/cat_file.h"

#include <fmt/format.h>

#include <algorithm>

#include "shell/words.h"

namespace tarven {

namespace {

/// The variable with exactly this label, the last of them; null if none.
Variable* Variable_with_label(ProjectDefinition& project, char label) {
    for (int i = project.N; i >= 1; --i)
        if (project.variables[static_cast<std::size_t>(i)].label == label)
            return &project.variables[static_cast<std::size_t>(i)];
    return nullptr;
}

bool Read_category_line(std::string line, ProjectDefinition& project) {
    std::replace(line.begin(), line.end(), '\t', ' ');
    const std::string label = Get_word(1, line);
    std::int32_t category = 0;
    if (label.size() != 1 || !To_integer(Get_word(2, line), category)) return false;
    Variable* variable = Variable_with_label(project, label[0]);
    if (!variable || category < 1 || category > variable->dim) return false;
    const auto label_at = line.find_first_not_of(' ');
    const auto number_at = line.find_first_not_of(' ', label_at + 1);
    const auto name_at = line.find_first_not_of(' ', line.find(' ', number_at));
    if (name_at == std::string::npos || name_at <= number_at) return false;
    std::string name = line.substr(name_at, MaxNameLength);
    while (name.ends_with(' ')) name.pop_back();
    variable->categoryname[static_cast<std::size_t>(category)] = name;
    return true;
}

}  // namespace

std::string Default_category_name(const Variable& variable, int category) {
    const auto c = static_cast<std::size_t>(category);
    if (variable.vtype != Ordinal) return fmt::format("Cat {}", category);
    const double lower = category == 1 ? variable.vfra : variable.vtil[c - 1];
    return fmt::format("{:g}-{:g}", lower, variable.vtil[c]);
}

void Set_default_category_names(ProjectDefinition& project) {
    for (int i = 1; i <= project.N; ++i) {
        Variable& variable = project.variables[static_cast<std::size_t>(i)];
        for (int c = 1; c <= variable.dim; ++c)
            variable.categoryname[static_cast<std::size_t>(c)] =
                Default_category_name(variable, c).substr(0, MaxNameLength);
    }
}

int Read_CAT_file(const std::vector<std::string>& lines, ProjectDefinition& project) {
    int passed_over = 0;
    for (const std::string& line : lines)
        if (!Read_category_line(line, project) && Word_count(line) > 0) ++passed_over;
    return passed_over;
}

std::vector<std::string> CAT_lines(const ProjectDefinition& project) {
    std::vector<std::string> lines;
    for (int i = 1; i <= project.N; ++i) {
        const Variable& variable = project.variables[static_cast<std::size_t>(i)];
        for (int c = 1; c <= variable.dim; ++c)
            lines.push_back(fmt::format("{} {} {}", variable.label, c,
                                        variable.categoryname[static_cast<std::size_t>(c)]));
    }
    return lines;
}

}  // namespace tarven
