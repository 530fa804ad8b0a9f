#include "tables/ordinal/pseudo_gamma_commands.h"

#include <fmt/format.h>

#include <algorithm>

#include "shell/commands.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/user.h"
#include "shell/variable_lists.h"
#include "tables/independence/independence_commands.h"
#include "tables/ordinal/gamma_commands.h"
#include "tables/ordinal/pseudo_gamma_report.h"
#include "tables/table/table_workspace.h"
#include "tables/table/tabulate.h"

namespace tarven {

namespace {

PseudoGammaAnalysis Pseudo_gamma_with_progress(const LocalHypothesis& hypothesis) {
    const RunControl control = Progress_of(The_settings);
    const bool simulates = The_settings.ExactTests && The_settings.Nsim > 0;
    if (simulates) control.begin(The_settings.Nsim);
    PseudoGammaAnalysis analysis = Analyse_pseudo_gamma(hypothesis, The_settings, control.stop);
    if (simulates) control.end();
    return analysis;
}

std::vector<std::string> Pseudo_gamma(const LocalHypothesis& hypothesis, const LocalResult&) {
    return Pseudo_gamma_lines(hypothesis, Pseudo_gamma_with_progress(hypothesis), The_settings);
}

/// A variable of the recoded table: one category a class, ordinal, as an order has been found. It
/// is no longer the project variable.
TableVariable Recoded_variable(const TableVariable& variable,
                               const std::vector<std::vector<int>>& classes) {
    TableVariable recoded{.label = variable.label,
                          .DIM = static_cast<int>(classes.size()),
                          .VTYPE = 3,
                          .name = variable.name};
    for (const std::vector<int>& one : classes) {
        std::string name;
        for (const int c : one) {
            const std::size_t index = static_cast<std::size_t>(c - 1);
            const bool named =
                index < variable.categories.size() && !variable.categories[index].empty();
            name += (name.empty() ? "" : "+") +
                    (named ? variable.categories[index] : fmt::format("{}", c));
        }
        recoded.categories.push_back(name);
    }
    return recoded;
}

/// Makes the collapsed and ordered table the current one.
void Recode_table(const LocalHypothesis& hypothesis, const CollapsedOrder& order) {
    const TwoWayTable counts =
        Regrouped(hypothesis.slices.front().counts, order.rows, order.columns);
    ContingencyTable table = Make_table({Recoded_variable(hypothesis.X, order.rows),
                                         Recoded_variable(hypothesis.Y, order.columns)});
    for (int i = 1; i <= counts.rows; ++i)
        for (int j = 1; j <= counts.columns; ++j) {
            const int cell[] = {i, j};
            table.cells[static_cast<std::size_t>(Cell_number(table, cell) - 1)] = counts(i, j);
        }
    table.NTOTAL = counts.Total();
    Add_margins(table);
    Set_current_table(std::move(table));
    Write_report(fmt::format("Table {}{} with {} cases, recoded", hypothesis.X.label,
                             hypothesis.Y.label, counts.Total()));
}

bool Names_the_score() {
    return The_line.CommandLine.find('#') != std::string::npos;
}

/// The variables of the line, ScoreCode for "#"; false, with a message, when there are none.
bool Variables_of_line(std::vector<int>& variables) {
    if (!Names_the_score()) return At_least_two_variables(variables);
    std::string labels;
    for (int v = 1; v <= The_project.N; ++v)
        labels += The_project.variables[static_cast<std::size_t>(v)].label;
    const VariableList list = Select_list_to_variables(The_line.CommandLine, labels, true);
    for (const int v : list.list)
        if ((v == ScoreCode || (v >= 1 && v <= The_project.N)) &&
            std::find(variables.begin(), variables.end(), v) == variables.end())
            variables.push_back(v);
    if (list.ok && variables.size() >= 2) return true;
    ShowMessage(list.ok ? "Select variables: Not enough variables"
                        : "Failure: " + The_line.CommandLine);
    return false;
}

/// The two-way table of two of them, the first in the rows.
Result<TwoWayTable> Table_of_two(const CasesAtHand& cases, int first, int second) {
    const auto stop = [] { return Stop_asked(); };
    if (Names_the_score()) {
        const Result<Tabulation> made = Tabulate(
            cases, {{Table_variable(cases, first), Table_variable(cases, second)}, {}}, stop);
        if (!made) return made.failure();
        return Extract_two_way(made->table, {});
    }
    const VariablePair pair{first, second};
    Result<std::vector<TwoWayTable>> tables = Tables_of_pairs(cases, {&pair, 1}, stop);
    if (!tables) return tables.failure();
    return tables->front();
}

Outcome PGAMMA() {
    std::vector<int> variables;
    if (!Variables_of_line(variables)) return Outcome::refused;
    if (variables.size() > 2) {
        ShowMessage("PGAMMA takes two variables: TEST G has strata as well");
        return Outcome::refused;
    }
    const CasesAtHand cases = Cases_of_project();
    LocalHypothesis hypothesis{.X = Table_variable(cases, variables[0]),
                               .Y = Table_variable(cases, variables[1])};
    if (std::max(hypothesis.X.DIM, hypothesis.Y.DIM) > MaxCategories)
        return Refuse(Failed{.messages = {"too many categories for this procedure"}});
    const Result<TwoWayTable> table = Table_of_two(cases, variables[0], variables[1]);
    if (!table) return Refuse(table.failure());
    hypothesis.slices.push_back({{}, *table});
    const PseudoGammaAnalysis analysis = Pseudo_gamma_with_progress(hypothesis);
    Write_lines(Pseudo_gamma_lines(hypothesis, analysis, The_settings));
    if (analysis.comparisons.empty() || analysis.stopped) return Outcome::done;
    const CollapsedOrder& order = analysis.collapsed;
    if (order.rows.size() < 2 || order.columns.size() < 2) return Outcome::done;
    if (AskYesNo("Recode categories after collaps and analysis of order"))
        Recode_table(hypothesis, order);
    return Outcome::done;
}

/// The score takes part unless two variables are named, and it needs items.
bool Names_what_is_there() {
    return (The_line.ParameterCount > 0 && !Names_the_score()) || The_score.groups() > 0;
}

constexpr const char* PseudoGammaHelp =
    "PGAMMA v1 v2\n"
    "\n"
    "Looks for the order of the categories of a nominal variable in which its association with "
    "the\n"
    "other variable is as ordinal as it can be. The pseudo gamma is the largest absolute gamma "
    "over\n"
    "all orders of the categories with cases, mirror images alike; v1 gives the rows, v2 the\n"
    "columns, and only nominal variables with three or more categories are permuted. At most 16\n"
    "categories of one variable, or 8 of each when both are nominal; more are refused with \"too\n"
    "many categories for this procedure\". The setup check counts pairs of categories whose own\n"
    "gamma contradicts the order.\n"
    "\n"
    "After EXA, REP or SEQ, random tables are searched in the same way: p is the share whose "
    "pseudo\n"
    "gamma is at least the observed one, from the seed of the settings. Searching every random\n"
    "table takes time, above all when both variables are permuted: ASYMPTOTIC tests are quick, "
    "but\n"
    "their p takes the order as given and is too small.\n"
    "\n"
    "Then pairs of categories are compared by gamma, two-sided, with Benjamini-Hochberg limits\n"
    "(5 %). Categories that are not told apart are collapsed, as far as no class holds a rejected\n"
    "pair, and the classes are ordered again. You are asked whether to recode: Y makes the\n"
    "collapsed and ordered table the current one, with ordinal variables. The project stays.\n"
    "\n"
    "TEST G does the same, without recoding, for the hypotheses of a table, with strata.\n"
    "\n"
    "Example: PGA CS\n"
    "\n"
    "Refuses: no variables, or # for the score, without items (\"Items have not been defined\");\n"
    "an unknown label, or other than two variables.";

}  // namespace

void Register_pseudo_gamma_commands() {
    The_test_analyses.pseudo_gamma = Pseudo_gamma;
    Register_command(
        {.keyword = "PGA",
         .run = PGAMMA,
         .needs = {{[] { return The_project.N >= 2; }, "No project"},
                   {Names_what_is_there, "Items have not been defined"}},
         .activity = "Pseudo gamma",
         .shows_kind_of_test = true,
         .report = Report::opened,
         .spelling = "PGAMMA",
         .summary = "pseudo gamma: the order of nominal categories with the largest gamma",
         .help = PseudoGammaHelp});
}

}  // namespace tarven
