#include "tables/ordinal/gamma_commands.h"

#include <fmt/format.h>

#include "project/listed_variables.h"
#include "shell/commands.h"
#include "shell/fields.h"
#include "shell/lifecycle.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/user.h"
#include "tables/independence/hypothesis_workspace.h"
#include "tables/independence/independence_commands.h"
#include "tables/ordinal/gamma_homogeneity_report.h"
#include "tables/ordinal/gamma_matrix_report.h"
#include "tables/ordinal/gammas_workspace.h"
#include "tables/ordinal/kappa_report.h"
#include "tables/ordinal/local_cpr_report.h"
#include "tables/ordinal/mantel_haenszel_report.h"
#include "tables/table/table_workspace.h"
#include "tables/table/tabulate.h"

namespace tarven {

namespace {

const Need NeedsProject{[] { return The_project.N >= 2; }, "No project"};
const Need NeedsTable{[] { return The_table.table_ready; }, "No table"};
const Need NeedsHypotheses{[] { return !The_hypotheses.list.empty(); }, "No hypotheses"};

const Variable& Project_variable(int number) {
    return The_project.variables[static_cast<std::size_t>(number)];
}

/// Every pair of the variables, in their order.
std::vector<VariablePair> All_pairs(const std::vector<int>& variables) {
    std::vector<VariablePair> pairs;
    for (std::size_t a = 0; a < variables.size(); ++a)
        for (std::size_t b = a + 1; b < variables.size(); ++b)
            pairs.push_back({variables[a], variables[b]});
    return pairs;
}

std::vector<TwoWayTable> Strata_of(const LocalHypothesis& hypothesis) {
    std::vector<TwoWayTable> strata;
    for (const LocalSlice& slice : hypothesis.slices) strata.push_back(slice.counts);
    return strata;
}

Outcome MANTEL() {
    const ContingencyTable& table = The_table.table;
    std::vector<std::string> lines;
    for (const Hypothesis& h : The_hypotheses.list) {
        const LocalHypothesis hypothesis = Form_xyz_table(table, h, false);
        if (hypothesis.X.DIM != 2 || hypothesis.Y.DIM != 2) continue;
        const std::vector<TwoWayTable> strata = Strata_of(hypothesis);
        const PartialGamma gamma = Partial_gamma(strata);
        Append_lines(lines, Mantel_lines(Hypothesis_label(h, table.labels()),
                                         Mantel_haenszel(strata), gamma.gamma, gamma.se));
    }
    if (lines.empty()) {
        ShowMessage("MANTEL requires a hypothesis on two binary variables");
        return Outcome::refused;
    }
    Write_lines(Mantel_heading());
    Write_lines(lines);
    return Outcome::done;
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
    const auto tables =
        Tables_of_pairs(Cases_of_project(), All_pairs(variables), [] { return Stop_asked(); });
    if (!tables) return Refuse(tables.failure());
    Write_lines(Kappa_heading());
    auto table = tables->begin();
    for (std::size_t a = 0; a < variables.size(); ++a)
        for (std::size_t b = a + 1; b < variables.size(); ++b)
            Write_report(
                Kappa_line(fmt::format("{}&{}", labels[a], labels[b]), Kappa_of_table(*table++)));
    return Outcome::done;
}

/// Keeps the gammas of the project variables with these numbers, those of the matrix.
void Keep_gammas(const GammaMatrix& matrix, const std::vector<int>& numbers) {
    const std::size_t N = static_cast<std::size_t>(The_project.N);
    ProjectGammas& kept = The_project_gammas;
    kept.IJXgamma.assign(N * N, ProjectGammas::None);
    kept.ready = kept.marginal = true;
    for (std::size_t i = 0; i < numbers.size(); ++i)
        for (std::size_t j = i + 1; j < numbers.size(); ++j) {
            const std::size_t v = static_cast<std::size_t>(numbers[i] - 1);
            const std::size_t w = static_cast<std::size_t>(numbers[j] - 1);
            const double gamma = matrix.At(i, j).gamma;
            kept.IJXgamma[v * N + w] = kept.IJXgamma[w * N + v] = gamma;
        }
}

/// The matrix of the variables for which gamma is defined; the others are named.
Outcome Write_gammas(const std::vector<int>& variables, bool odds_ratios, bool keep) {
    std::vector<int> ordered;
    std::string labels, nominal;
    for (const int v : variables) {
        const Variable& variable = Project_variable(v);
        const bool has_order = variable.dim == 2 || variable.vtype == Ordinal;
        (has_order ? labels : nominal) += variable.label;
        if (has_order) ordered.push_back(v);
    }
    const auto name_nominal = [&] {
        if (!nominal.empty())
            Write_report("Nominal variables have no gamma coefficients: " + nominal);
    };
    if (ordered.size() < 2) {
        name_nominal();
        ShowMessage("Select variables: Not enough variables");
        return Outcome::refused;
    }
    const auto tables =
        Tables_of_pairs(Cases_of_project(), All_pairs(ordered), [] { return Stop_asked(); });
    if (!tables) return Refuse(tables.failure());
    name_nominal();
    const GammaMatrix matrix = Gammas_of_pairs(labels, *tables);
    if (keep) Keep_gammas(matrix, ordered);
    Write_lines(Gamma_matrix_lines(matrix, odds_ratios));
    return Outcome::done;
}

Outcome CORRELATIONS() {
    std::vector<int> variables;
    if (!At_least_two_variables(variables)) return Outcome::refused;
    return Write_gammas(variables, false, false);
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

}  // namespace

bool At_least_two_variables(std::vector<int>& variables) {
    if (!Listed_variables(The_line.CommandLine, The_project, variables)) {
        ShowMessage("Failure: " + The_line.CommandLine);
        return false;
    }
    if (variables.size() >= 2) return true;
    ShowMessage("Select variables: Not enough variables");
    return false;
}

Outcome Marginal_gammas(bool odds_ratios) {
    std::vector<int> variables;
    for (int v = 1; v <= The_project.N; ++v) variables.push_back(v);
    return Write_gammas(variables, odds_ratios, true);
}

void Register_gamma_commands() {
    for (const Moment moment : {Moment::workspace_reset, Moment::project_about_to_close,
                                Moment::variables_changed, Moment::data_replaced})
        At_moment(moment, "gammas of the project", [] { The_project_gammas = {}; });
    The_test_analyses.local_gammas = Local_gammas;
    The_test_analyses.homogeneity = Homogeneity;
    Register_command(
        {.keyword = "MAN",
         .run = MANTEL,
         .needs = {NeedsTable, NeedsHypotheses, NeedsTableHypotheses},
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
             "Refused without a table, without hypotheses about it (those of the graph are\n"
             "none), and when no hypothesis is on two binary variables."});
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
}

}  // namespace tarven
