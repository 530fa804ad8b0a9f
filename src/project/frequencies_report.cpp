#include "project/frequencies_report.h"

#include <fmt/format.h>

#include "shell/fields.h"

namespace tarven {

namespace {

constexpr int ValueWidth = 24;

double Percent(std::int64_t part, std::int64_t whole) {
    return whole > 0 ? 100.0 * static_cast<double>(part) / static_cast<double>(whole) : 0;
}

std::string Count_line(const std::string& value, std::int64_t count, std::int64_t cumulated,
                       std::int64_t total) {
    return Left(value, ValueWidth) + Field(count, 6) + Field(Percent(count, total), 8, 1) +
           Field(Percent(cumulated, total), 8, 1);
}

std::string Total_line(std::int64_t total) {
    return Left("TOTAL", ValueWidth) + Field(total, 6);
}

std::string Count_heading(const std::string& first) {
    return Left(first, ValueWidth) + " Count     Pct  CumPct";
}

void Add_values(const ColumnFrequencies& column, std::vector<std::string>& lines) {
    if (column.too_many_values) {
        lines.push_back(fmt::format("More than {} different values", column.MostValues));
        return;
    }
    lines.push_back(Count_heading(""));
    std::int64_t cumulated = 0;
    for (const auto& [value, count] : column.values) {
        cumulated += count;
        lines.push_back(Count_line(Raw_value(value), count, cumulated, column.total));
    }
    lines.push_back(Total_line(column.total));
}

std::string Range_of(const Variable& variable, std::size_t category) {
    const std::string lower =
        Raw_value(category == 1 ? variable.vfra : variable.vtil[category - 1]);
    const std::string upper = Raw_value(variable.vtil[category]);
    std::string text =
        fmt::format("  {} {}", Field(category, 2), lower == upper ? upper : lower + " - " + upper);
    const std::string& name = variable.categoryname[category];
    return name.empty() ? text : text + " " + name;
}

void Add_categories(const Variable& variable, const ColumnFrequencies& column,
                    std::vector<std::string>& lines) {
    const std::int64_t valid = column.total - column.missing();
    lines.insert(lines.end(), {"", "This variable was categorized", Count_heading("  Values")});
    std::int64_t cumulated = 0;
    for (std::size_t c = 1; c <= column.categories.size(); ++c) {
        cumulated += column.categories[c - 1];
        lines.push_back(
            Count_line(Range_of(variable, c), column.categories[c - 1], cumulated, valid));
    }
    lines.push_back(Total_line(valid));
    lines.push_back(Left("Missing:", ValueWidth) + Field(column.missing(), 6));
    lines.push_back(Left("  BELOW " + Raw_value(variable.vfra), ValueWidth) +
                    Field(column.below, 6));
    lines.push_back(
        Left("  ABOVE " + Raw_value(variable.vtil[column.categories.size()]), ValueWidth) +
        Field(column.above, 6));
}

}  // namespace

std::string Raw_value(double value) {
    return fmt::format("{}", value == 0 ? 0.0 : value);
}

std::vector<std::string> Case_selection_lines(const ProjectDefinition& definition) {
    if (definition.conditions.empty() && definition.selections.empty())
        return {"All cases will be used"};
    std::vector<std::string> lines;
    if (!definition.conditions.empty())
        lines.emplace_back("Cases satisfying the following conditions will be included");
    for (const RangeCondition& c : definition.conditions)
        lines.push_back(c.lower == c.upper ? fmt::format("VAR{} = {}", c.column, Raw_value(c.lower))
                                           : fmt::format("{} <= VAR{} <= {}", Raw_value(c.lower),
                                                         c.column, Raw_value(c.upper)));
    if (!definition.selections.empty())
        lines.emplace_back("Cases with the following rounded values will be included");
    for (const ValueSelection& s : definition.selections)
        lines.push_back(fmt::format("VAR{} = {}", s.column, fmt::join(s.values, ", ")));
    return lines;
}

std::vector<std::string> Frequencies_lines(const ProjectDefinition& definition,
                                           const FrequenciesResult& result) {
    std::vector<std::string> lines = {
        fmt::format("{} variables in dataset", definition.NTAL),
        fmt::format("{} of {} cases included", result.accepted, result.read)};
    if (!definition.conditions.empty()) {
        lines.insert(lines.end(), {"", "Cases included according to the following conditions:", "",
                                   "Var   min   max", "---------------"});
        for (const RangeCondition& c : definition.conditions)
            lines.push_back(Field(c.column, 3) + Right(Raw_value(c.lower), 6) +
                            Right(Raw_value(c.upper), 6));
    }
    for (const ValueSelection& s : definition.selections)
        lines.push_back(fmt::format("Var {} = {}", s.column, fmt::join(s.values, ", ")));
    for (const ColumnFrequencies& column : result.columns) {
        lines.emplace_back("");
        lines.push_back(std::string(46, '='));
        if (column.variable > 0) {
            const Variable& variable =
                definition.variables[static_cast<std::size_t>(column.variable)];
            lines.push_back(fmt::format("Variable no. {}   {} {}", column.column, variable.label,
                                        variable.name));
            lines.emplace_back("");
            Add_values(column, lines);
            Add_categories(variable, column, lines);
        } else {
            lines.push_back(fmt::format("Reference no. {}", column.column));
            lines.emplace_back("");
            Add_values(column, lines);
        }
    }
    return lines;
}

}  // namespace tarven
