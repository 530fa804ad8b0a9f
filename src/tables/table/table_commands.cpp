#include "tables/table/table_commands.h"

#include <fmt/format.h>

#include "project/project.h"
#include "project/select_variables.h"
#include "shell/commands.h"
#include "shell/environment.h"
#include "shell/files.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/user.h"
#include "tables/table/contingency_table.h"
#include "tables/table/print_table.h"
#include "tables/table/table_file.h"
#include "tables/table/table_workspace.h"
#include "tables/table/tabulate.h"

namespace tarven {

namespace {

/// SHOW T prints the strata of a table that has no more than this.
constexpr std::int64_t MostStrataShown = 100;

bool Is_lone_parameter(char character) {
    return The_line.ParameterCount == 1 && The_line.ParameterField[0] == character;
}

/// With fewer than two parameters the variables are chosen from a list, as if they had been typed.
void Complete_parameters() {
    if (The_line.ParameterCount >= 2 || Is_lone_parameter('*')) return;
    std::vector<std::string> labels;
    for (int i = 1; i <= The_project.N; ++i)
        labels.emplace_back(1, The_project.variables[static_cast<std::size_t>(i)].label);
    const std::string chosen = SelectVariables("Select variables", labels);
    if (!chosen.empty()) Read_command_line(The_line.CommandLine + " " + chosen);
}

Outcome Refuse(const char* message) {
    ShowMessage(message);
    Dispose_current_table();
    return Outcome::refused;
}

Outcome Read_table_of_project() {
    const TextFile file = Read_text_file(Existing_or(The_project.files.EXA.path));
    if (!file.ok) {
        ShowMessage("Failure reading table.");
        return Refuse(file.error.c_str());
    }
    TableFile read = Read_table_file(file.lines);
    if (!read.ok) {
        for (const std::string& message : read.messages) ShowMessage(message);
        return Refuse("Failure reading table.");
    }
    Write_lines(Table_file_lines(read.table));
    Set_current_table(std::move(read.table), "EXA table");
    return Outcome::done;
}

Outcome TABULATE() {
    if (Is_lone_parameter('+')) return Read_table_of_project();
    Complete_parameters();
    const CasesAtHand cases = Cases_of_project();
    const ScoreGroups score{The_score.groups(), The_score.block};
    const SelectedVariables selected = Select_variables(The_line, The_project, score, true);
    if (!selected.ok) {
        for (const std::string& message : selected.messages) ShowMessage(message);
        return Refuse(("Variables are not ready" + selected.not_understood).c_str());
    }
    TableRequest request{.variables = {}, .LevelEnd = selected.LevelEnd};
    std::vector<int> DIM = {0};
    for (const int number : selected.numbers) {
        request.variables.push_back(Table_variable(cases, number));
        DIM.push_back(request.variables.back().DIM);
    }
    const auto Nvar = static_cast<int>(selected.numbers.size());
    if (!Check_table_dimensions(Nvar, DIM)) {
        Write_lines(Too_large_lines(Nvar, DIM));
        return Refuse("Table dimensions: failure");
    }
    if (!Tabulate_current_table(request)) return Outcome::done;
    Write_report(
        fmt::format("Table {} with {} cases", The_table.table.labels(), The_table.table.NTOTAL));
    return Outcome::done;
}

void Show_table() {
    if (!The_table.table_ready) {
        ShowMessage("Table is not ready");
        return;
    }
    const ContingencyTable& table = The_table.table;
    Write_lines(Table_variables_lines(table));
    Write_report("");
    std::int64_t strata = 1;
    for (int k = 3; k <= table.Nvar(); ++k) strata *= table.DIM(k);
    if (strata <= MostStrataShown)
        Print_table(table, {.RowPercentages = true}, {}, Write_report);
    else
        Write_report(fmt::format("{} strata", strata));
}

std::vector<std::string> Environment_of_table() {
    const char* state = The_table.table_ready       ? "ready"
                        : The_table.table_allocated ? "ALLOCATED"
                                                    : "not ready";
    return {fmt::format("                 Table    -    {}", state)};
}

}  // namespace

void Register_table_commands() {
    Register_table_lifecycle();
    Register_environment(EnvironmentPart::in_memory, Environment_of_table);
    Register_command(
        {.keyword = "TAB",
         .run = TABULATE,
         .needs = {{[] { return The_project.N > 0; }, "No project"}},
         .activity = "Tabulating",
         .report = Report::opened,
         .spelling = "TABULATE",
         .summary = "makes the current table",
         .help = "TABULATE variables: makes the current table of two to eight variables\n\n"
                 "Variables are labels or numbers in any order; the table has them in the order\n"
                 "of the project. * alone is all variables of a project with at most eight. Cases\n"
                 "with a missing response to one of the variables do not count. Without variables\n"
                 "they are chosen from a list. SHOW T prints the table, TEST tests it.\n\n"
                 "TABULATE +: reads the table from the file PROJECT.EXA, which holds\n"
                 "  the number of variables,\n"
                 "  a line for each variable: label, number of categories, type (2 nominal,\n"
                 "  3 ordinal) and, if wanted, a name,\n"
                 "  the number of recursive blocks and the last variable of each block,\n"
                 "  the counts, the category of the first variable changing fastest.\n\n"
                 "Example: TAB ABC\n\n"
                 "Refused when a label is unknown, with fewer than two or more than eight\n"
                 "variables, when the table has more than 4866900 cells with or without margins,\n"
                 "and when fewer than two cases are left. The former table is gone then."});
    Register_letter(LetterCommand::show, {.letter = 'T',
                                          .run = Show_table,
                                          .needs = {},
                                          .summary = "the current table with row percentages"});
    Register_letter(LetterCommand::dispose, {.letter = 'T',
                                             .run = Dispose_current_table,
                                             .needs = {},
                                             .report = Report::none,
                                             .summary = "the current table and its hypotheses"});
}

}  // namespace tarven
