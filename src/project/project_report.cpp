#include "project/project_report.h"

#include <fmt/format.h>

#include <algorithm>

#include "shell/fields.h"
#include "shell/files.h"

namespace tarven {

namespace {

constexpr std::size_t NameWidth = 12;

std::string Number(double value) {
    return fmt::format("{}", value);
}

std::string Condition_text(const RangeCondition& condition) {
    if (condition.lower == condition.upper)
        return fmt::format("VAR{} = {}", condition.column, Number(condition.lower));
    return fmt::format("{} <= VAR{} <= {}", Number(condition.lower), condition.column,
                       Number(condition.upper));
}

std::string Padded_name(const Variable& variable) {
    std::string name = variable.name;
    if (name.size() < NameWidth) name.append(NameWidth - name.size(), '.');
    return name;
}

/// "30 <= x <= 64" of the first category, "64 < x <= 72" of the others.
std::string Interval_text(const Variable& variable, int category) {
    const auto c = static_cast<std::size_t>(category);
    if (category == 1)
        return fmt::format("{} <= x <= {}", Number(variable.vfra), Number(variable.vtil[1]));
    return fmt::format("{} < x <= {}", Number(variable.vtil[c - 1]), Number(variable.vtil[c]));
}

void Append_comments(const ProjectDefinition& project, std::vector<std::string>& lines) {
    if (project.comments.empty()) {
        lines.push_back("There are no comments");
        return;
    }
    for (const std::string& comment : project.comments) lines.push_back("  " + comment);
    if (project.Ncomments > static_cast<int>(project.comments.size()))
        lines.push_back("  (further comments stand in the VAR file)");
}

std::string Labels_of_block(const ProjectDefinition& project, int block) {
    std::string labels;
    for (int i = 1; i <= project.N; ++i)
        if (project.variables[static_cast<std::size_t>(i)].Levnr == block)
            labels += project.variables[static_cast<std::size_t>(i)].label;
    return labels;
}

void Append_relationships(const ProjectDefinition& project, std::vector<std::string>& lines) {
    lines.push_back("Relationships");
    lines.push_back("  " + Block_line(project));
    std::string later;
    const int blocks =
        project.N > 0 ? project.variables[static_cast<std::size_t>(project.N)].Levnr : 0;
    for (int b = blocks; b >= 1; --b) {
        const std::string labels = Labels_of_block(project, b);
        std::string line = fmt::format("  {}: {} may depend on each other", b, labels);
        if (labels.size() == 1) line = fmt::format("  {}: {}", b, labels);
        if (!later.empty()) line += (labels.size() == 1 ? " may depend on " : " and on ") + later;
        lines.push_back(line);
        later.insert(0, labels);
    }
}

}  // namespace

std::string Type_text(const Variable& variable) {
    if (variable.dim == 2) return " binary";
    return fmt::format(" {} {} categories", variable.dim,
                       variable.vtype == Ordinal ? "ordinal" : "nominal");
}

std::string Block_line(const ProjectDefinition& project) {
    std::string line;
    for (int i = 1; i <= project.N; ++i) {
        const Variable& variable = project.variables[static_cast<std::size_t>(i)];
        if (i > 1 && variable.Levnr != project.variables[static_cast<std::size_t>(i - 1)].Levnr)
            line += " <- ";
        line += variable.label;
    }
    return line;
}

std::vector<std::string> Project_summary(const Project& project, std::int64_t cells) {
    std::vector<std::string> lines = {
        "Project:   " + project.Projectname,
        "Path:      " + Path_text(project.ProjectPath),
        "Data file: " + Path_text(project.files.DAT.path.filename()),
    };
    if (!project.title.empty()) {
        lines.push_back("");
        lines.push_back(project.title);
    }
    lines.push_back("");
    lines.push_back(fmt::format("{} variables in the dataset", project.NTAL));
    if (project.conditions.empty() && project.selections.empty())
        lines.push_back("All cases will be used");
    if (!project.conditions.empty())
        lines.push_back("Cases satisfying the following conditions will be included");
    for (const RangeCondition& condition : project.conditions)
        lines.push_back("  " + Condition_text(condition));
    if (!project.selections.empty())
        lines.push_back("Cases with one of the following values will be included");
    for (const ValueSelection& selection : project.selections) {
        std::string line = fmt::format("  VAR{} =", selection.column);
        for (const std::int32_t value : selection.values) line += fmt::format(" {}", value);
        lines.push_back(line);
    }
    lines.push_back("");
    lines.push_back(fmt::format("{} project variables:", project.N));
    for (int i = 1; i <= project.N; ++i) {
        const Variable& variable = project.variables[static_cast<std::size_t>(i)];
        lines.push_back(
            fmt::format("{} {}{}", variable.label, Padded_name(variable), Type_text(variable)));
    }
    lines.push_back("");
    lines.push_back(fmt::format("{} recursive blocks:", project.Nlevels));
    lines.push_back(Block_line(project));
    lines.push_back("");
    lines.push_back(fmt::format("{} cases in data set", project.Nused));
    lines.push_back(fmt::format("{} cells in TAB data", cells));
    if (!project.files.DAT.exists)
        lines.push_back(fmt::format("The DAT file, {} was not found",
                                    Path_text(project.files.DAT.path.filename())));
    return lines;
}

std::vector<std::string> Variables_report(const ProjectDefinition& project) {
    std::vector<std::string> lines = {"Variables and categories", ""};
    for (int i = 1; i <= project.N; ++i) {
        const Variable& variable = project.variables[static_cast<std::size_t>(i)];
        lines.push_back(fmt::format("{} {}{}, column {}, block {}", variable.label,
                                    Padded_name(variable), Type_text(variable), variable.VARNO,
                                    variable.Levnr));
        for (int c = 1; c <= variable.dim; ++c)
            lines.push_back(
                fmt::format("  {} {}  {}", Field(c, 3),
                            Left(variable.categoryname[static_cast<std::size_t>(c)], MaxNameLength),
                            Interval_text(variable, c)));
    }
    lines.push_back("");
    lines.push_back("Comments");
    Append_comments(project, lines);
    lines.push_back("");
    Append_relationships(project, lines);
    return lines;
}

std::vector<std::string> Comments_report(const ProjectDefinition& project) {
    std::vector<std::string> lines = {"Project comments", ""};
    Append_comments(project, lines);
    return lines;
}

std::vector<std::string> Global_variables_report(const Project& project, bool data_ready,
                                                 bool tabdata_ready, std::int64_t cells) {
    const auto truth = [](bool value) { return value ? "true" : "false"; };
    std::vector<std::string> lines = {
        fmt::format("NTAL       = {}", project.NTAL),
        fmt::format("NBET       = {}", project.conditions.size()),
        fmt::format("Nselectvar = {}", project.selections.size()),
        "DAT file (datname) = " + Path_text(project.files.DAT.path),
        "SYS file (sysname) = " + Path_text(project.files.SYS.path),
        fmt::format("  data_ready    = {}", truth(data_ready)),
        "TAB file (tabfile) = " + Path_text(project.files.TAB.path),
        fmt::format("  tabdata_ready = {}", truth(tabdata_ready)),
        fmt::format("Number of persons (Nused) = {}", project.Nused),
        fmt::format("Ntabcells                 = {}", cells),
    };
    for (int i = 1; i <= project.N; ++i) {
        const Variable& variable = project.variables[static_cast<std::size_t>(i)];
        lines.push_back("");
        lines.push_back(fmt::format("{} {}", variable.label, variable.name));
        lines.push_back(fmt::format("VARNO(.i.)            = {}", variable.VARNO));
        lines.push_back(fmt::format("dim(.i.)              = {}", variable.dim));
        lines.push_back(fmt::format("vtype(.i.)            = {}", variable.vtype));
        lines.push_back(fmt::format("vfra(.i.)             = {}", Number(variable.vfra)));
        lines.push_back(fmt::format("vtil(.i,1.)           = {}", Number(variable.vtil[1])));
        lines.push_back(
            fmt::format("vtil(.i,dim(.i.).)    = {}", Number(variable.vtil[variable.dim])));
        lines.push_back(fmt::format("Levnr(.i.)            = {}", variable.Levnr));
        lines.push_back(fmt::format("projectvarcolor(.i.)  = {}", variable.projectvarcolor));
    }
    lines.push_back("");
    lines.push_back("recursive levels defined by");
    for (int b = 1; b <= project.Nlevels; ++b)
        lines.push_back(fmt::format("Level = {} {}", Field(b, 2),
                                    Field(project.LevelEnd[static_cast<std::size_t>(b)], 4)));
    return lines;
}

}  // namespace tarven
