#include "tables/gamma_commands.h"

#include <fmt/format.h>

#include "project/listed_variables.h"
#include "shell/commands.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/user.h"
#include "tables/gamma_homogeneity.h"
#include "tables/gamma_matrix.h"
#include "tables/kappa.h"
#include "tables/local_cpr.h"
#include "tables/mantel_haenszel.h"
#include "tables/pseudo_gamma.h"
#include "tables/tabulate.h"
#include "tables/test_commands.h"

namespace tarven {

namespace {

const Need NeedsProject{[] { return The_project.N >= 2; }, "No project"};
const Need NeedsTable{[] { return The_table.table_ready; }, "No table"};
const Need NeedsHypotheses{[] { return !The_hypotheses.list.empty(); }, "No hypotheses"};

const Variable& Project_variable(int number) {
    return The_project.variables[static_cast<std::size_t>(number)];
}

/// The table of two project variables over the cases that have both; zeros when there are fewer
/// than two such cases.
TwoWayTable Table_of_pair(int i, int j) {
    const std::vector<TableVariable> variables = {Table_variable(The_project, i),
                                                  Table_variable(The_project, j)};
    const Tabulation tabulation = Tabulate(variables, {}, Table_source(Data_at_hand(), 2));
    TwoWayTable counts(variables[0].DIM, variables[1].DIM);
    if (!tabulation.ok) return counts;
    for (int r = 1; r <= counts.rows; ++r)
        for (int c = 1; c <= counts.columns; ++c) {
            const int cell[] = {r, c};
            counts(r, c) = Read_cell(tabulation.table, cell);
        }
    Fill_margins(counts);
    return counts;
}

std::vector<TwoWayTable> Strata_of(const LocalHypothesis& hypothesis) {
    std::vector<TwoWayTable> strata;
    for (const LocalSlice& slice : hypothesis.slices) strata.push_back(slice.counts);
    return strata;
}

Outcome MANTEL() {
    const TestedTable table = *Current_tested_table();
    std::vector<std::string> lines;
    for (const Hypothesis& h : The_hypotheses.list) {
        const LocalHypothesis hypothesis = Form_xyz_table(table, h, false);
        if (hypothesis.X.DIM != 2 || hypothesis.Y.DIM != 2) continue;
        const std::vector<TwoWayTable> strata = Strata_of(hypothesis);
        const PartialGamma gamma = Partial_gamma(strata);
        for (std::string& line : Mantel_lines(Hypothesis_label(h, table.vlabel()),
                                              Mantel_haenszel(strata), gamma.gamma, gamma.se))
            lines.push_back(std::move(line));
    }
    if (lines.empty()) {
        ShowMessage("MANTEL requires a hypothesis on two binary variables");
        return Outcome::refused;
    }
    Write_lines(Mantel_heading());
    Write_lines(lines);
    return Outcome::done;
}

/// The listed variables; false, with a message, for an unknown label or fewer than two.
bool At_least_two_variables(std::vector<int>& variables) {
    if (!Listed_variables(The_line.CommandLine, The_project, variables)) {
        ShowMessage("Failure: " + The_line.CommandLine);
        return false;
    }
    if (variables.size() >= 2) return true;
    ShowMessage("Select variables: Not enough variables");
    return false;
}

Outcome KAPPA() {
    std::vector<int> variables;
    if (The_line.ParameterCount == 0 || !At_least_two_variables(variables)) {
        if (The_line.ParameterCount == 0) ShowMessage("Select variables: Not enough variables");
        return Outcome::refused;
    }
    std::string labels;
    bool equal = true;
    for (const int v : variables) {
        labels += Project_variable(v).label;
        equal = equal && Project_variable(v).dim == Project_variable(variables[0]).dim;
    }
    if (!equal) {
        ShowMessage("All variables must have the same number of categories: " + labels);
        return Outcome::refused;
    }
    Write_lines(Kappa_heading());
    for (std::size_t a = 0; a < variables.size(); ++a)
        for (std::size_t b = a + 1; b < variables.size(); ++b)
            Write_report(Kappa_line(fmt::format("{}&{}", labels[a], labels[b]),
                                    Kappa_of_table(Table_of_pair(variables[a], variables[b]))));
    return Outcome::done;
}

/// The matrix of the variables for which gamma is defined; the others are named.
Outcome Write_gammas(const std::vector<int>& variables, bool odds_ratios) {
    std::vector<int> ordered;
    std::string labels, nominal;
    for (const int v : variables) {
        const Variable& variable = Project_variable(v);
        const bool has_order = variable.dim == 2 || variable.vtype == Ordinal;
        (has_order ? labels : nominal) += variable.label;
        if (has_order) ordered.push_back(v);
    }
    if (!nominal.empty()) Write_report("Nominal variables have no gamma coefficients: " + nominal);
    if (ordered.size() < 2) {
        ShowMessage("Select variables: Not enough variables");
        return Outcome::refused;
    }
    const GammaMatrix matrix = Gammas_of_pairs(labels, [&](std::size_t i, std::size_t j) {
        return Table_of_pair(ordered[i], ordered[j]);
    });
    Write_lines(Gamma_matrix_lines(matrix, odds_ratios));
    return Outcome::done;
}

Outcome CORRELATIONS() {
    std::vector<int> variables;
    if (!At_least_two_variables(variables)) return Outcome::refused;
    return Write_gammas(variables, false);
}

Outcome GAMMA() {
    if (!Has_parameter('M')) {
        ShowMessage(
            "Partial gammas given the project graph are not available yet. GAMMA M gives "
            "marginal gammas");
        return Outcome::refused;
    }
    std::vector<int> variables;
    for (int v = 1; v <= The_project.N; ++v) variables.push_back(v);
    return Write_gammas(variables, Has_parameter('O'));
}

std::vector<std::string> Local_gammas(const LocalHypothesis& hypothesis,
                                      const LocalResult& result) {
    if (!result.has_gamma)
        return {"", "Analysis of local CPRs and gamma coefficients",
                "Gamma requires variables that are ordinal or binary"};
    return Local_analysis_lines(Analysis_of_local_tables(hypothesis.slices.front().counts));
}

std::vector<std::string> Homogeneity(const LocalHypothesis& hypothesis, const LocalResult& result) {
    return Homogeneity_lines(hypothesis, Analyse_homogeneity(hypothesis, result));
}

PseudoGammaAnalysis Pseudo_gamma_with_progress(const LocalHypothesis& hypothesis) {
    const RunControl control = Progress_of(The_settings);
    const bool simulates = The_settings.ExactTests && The_settings.Nsim > 0;
    if (simulates) control.begin();
    PseudoGammaAnalysis analysis = Analyse_pseudo_gamma(hypothesis, The_settings, control.stop);
    if (simulates) control.end();
    return analysis;
}

std::vector<std::string> Pseudo_gamma(const LocalHypothesis& hypothesis, const LocalResult&) {
    return Pseudo_gamma_lines(hypothesis, Pseudo_gamma_with_progress(hypothesis), The_settings);
}

/// A variable of the recoded table: one category a class, ordinal, as an order has been found. It
/// is no longer the project variable.
TableVariable Recoded_variable(const TestVariable& variable,
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

Outcome PGAMMA() {
    std::vector<int> variables;
    if (!At_least_two_variables(variables)) return Outcome::refused;
    if (variables.size() > 2) {
        ShowMessage("PGAMMA takes two variables: TEST G has strata as well");
        return Outcome::refused;
    }
    const auto tested = [](const TableVariable& v) {
        return TestVariable{v.label, v.name, v.DIM, v.VTYPE, v.categories};
    };
    LocalHypothesis hypothesis{.X = tested(Table_variable(The_project, variables[0])),
                               .Y = tested(Table_variable(The_project, variables[1]))};
    hypothesis.slices.push_back({{}, Table_of_pair(variables[0], variables[1])});
    const PseudoGammaAnalysis analysis = Pseudo_gamma_with_progress(hypothesis);
    Write_lines(Pseudo_gamma_lines(hypothesis, analysis, The_settings));
    if (analysis.comparisons.empty()) return Outcome::done;
    const CollapsedOrder& order = analysis.collapsed;
    if (order.rows.size() < 2 || order.columns.size() < 2) return Outcome::done;
    if (AskYesNo("Recode categories after collaps and analysis of order"))
        Recode_table(hypothesis, order);
    return Outcome::done;
}

/// The score takes part unless two variables are named, and it needs items.
bool Names_variables() {
    return The_line.ParameterCount > 0 && The_line.CommandLine.find('#') == std::string::npos;
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

void Register_gamma_commands() {
    The_test_analyses.local_gammas = Local_gammas;
    The_test_analyses.homogeneity = Homogeneity;
    The_test_analyses.pseudo_gamma = Pseudo_gamma;
    Register_command(
        {.keyword = "MAN",
         .run = MANTEL,
         .needs = {NeedsTable, NeedsHypotheses},
         .report = Report::opened,
         .spelling = "MANTEL",
         .summary = "Mantel-Haenszel estimates of odds ratios beside partial gammas",
         .help =
             "MANTEL\n\n"
             "For each hypothesis on two binary variables: the Mantel-Haenszel odds ratio over\n"
             "the strata with 95 % limits and the standard error of its logarithm (Robins,\n"
             "Breslow and Greenland), and the partial gamma with its standard error under\n"
             "independence, also as the odds ratio (1 + gamma) / (1 - gamma).\n\n"
             "Example: TAB SGC, HYP SG, MAN\n\n"
             "Refused without a table, without hypotheses, and when no hypothesis is on two\n"
             "binary variables."});
    Register_command(
        {.keyword = "PGA",
         .run = PGAMMA,
         .needs = {NeedsProject, {Names_variables, "Items have not been defined"}},
         .activity = "Pseudo gamma",
         .shows_kind_of_test = true,
         .report = Report::opened,
         .spelling = "PGAMMA",
         .summary = "pseudo gamma: the order of nominal categories with the largest gamma",
         .help = PseudoGammaHelp});
    Register_command(
        {.keyword = "KAP",
         .run = KAPPA,
         .needs = {NeedsProject},
         .report = Report::opened,
         .spelling = "KAPPA",
         .summary = "writes kappa coefficients for a list of variables",
         .help = "KAPPA variables\n\n"
                 "For each pair of the variables: the cases with both, the share that agrees, the\n"
                 "same under independence, Cohen's kappa, its standard error, and kappa over its\n"
                 "standard error under independence (Fleiss, Cohen and Everitt) with its\n"
                 "two-sided p.\n\n"
                 "Example: KAP RL\n\n"
                 "Refused for fewer than two variables, an unknown label, and variables with\n"
                 "different numbers of categories."});
    Register_command(
        {.keyword = "COR",
         .run = CORRELATIONS,
         .needs = {NeedsProject},
         .report = Report::opened,
         .spelling = "CORRELATIONS",
         .summary = "calculates Goodman and Kruskal's gamma for binary and ordinal variables",
         .help =
             "CORRELATIONS [variables]\n\n"
             "Goodman and Kruskal's gamma for each pair of the binary and ordinal variables\n"
             "listed, or of all, with one-sided p-values. Nominal variables are named and left\n"
             "out.\n\nExample: COR PEKA\n\n"
             "Refused for an unknown label and for fewer than two variables with an order."});
    Register_command(
        {.keyword = "GAM",
         .run = GAMMA,
         .needs = {NeedsProject},
         .report = Report::opened,
         .spelling = "GAMMA",
         .summary = "gamma coefficients of all pairs of variables",
         .help = "GAMMA M\nGAMMA M OR\n\n"
                 "Marginal gammas of all pairs of binary and ordinal variables; with OR converted\n"
                 "to generalized odds ratios, (1 + gamma) / (1 - gamma).\n\n"
                 "GAMMA without M needs the project graph and is not available yet."});
}

}  // namespace tarven
