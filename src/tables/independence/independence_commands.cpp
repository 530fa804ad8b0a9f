#include "tables/independence/independence_commands.h"

#include <fmt/format.h>

#include <algorithm>

#include "shell/parsed_line.h"
#include "shell/prompts.h"
#include "shell/report.h"
#include "shell/test_options.h"
#include "shell/user.h"
#include "shell/variable_lists.h"
#include "tables/draws/bootstrap.h"
#include "tables/draws/bootstrap_commands.h"
#include "tables/independence/fisher.h"
#include "tables/independence/fisher_report.h"
#include "tables/independence/hypotheses_report.h"
#include "tables/independence/hypothesis_workspace.h"
#include "tables/independence/multiple_testing.h"
#include "tables/independence/summary_report.h"
#include "tables/independence/tested_table_report.h"
#include "tables/numbers/stream_workspace.h"
#include "tables/table/contingency_table.h"
#include "tables/table/print_table.h"
#include "tables/table/table_workspace.h"
#include "tables/table/tabulate.h"

namespace tarven {

namespace {

// ---- TEST

SummaryRow Summary_row(const ContingencyTable& table, std::size_t k) {
    const Hypothesis& h = The_hypotheses.list[k];
    return {.label = Hypothesis_label(h, table.labels()),
            .result = The_hypotheses.results[k],
            .has_gamma = h.Kind == kind::with_gamma,
            .cases = table.NTOTAL};
}

std::vector<SummaryRow> Summary_rows(const ContingencyTable& table) {
    std::vector<SummaryRow> rows;
    for (std::size_t k = 0; k < The_hypotheses.list.size(); ++k)
        rows.push_back(Summary_row(table, k));
    return rows;
}

RejectionLimits Limits_of_results() {
    return Rejection_limits(
        Collect_p_values(The_hypotheses.list, The_hypotheses.results, The_settings).p);
}

void Store(std::size_t k, const TestResult& row, bool has_gamma) {
    The_hypotheses.list[k].Kind = has_gamma ? kind::with_gamma : kind::without_gamma;
    The_hypotheses.results[k] = row;
}

void Run_global_tests(const ContingencyTable& table) {
    const std::vector<GlobalOutcome> outcomes = Test_globally(
        table, The_hypotheses.list, The_settings, The_stream, Progress_of(The_settings));
    for (std::size_t k = 0; k < outcomes.size(); ++k) {
        Store(k, outcomes[k].row, outcomes[k].has_gamma);
        Write_lines(Remarks(outcomes[k], Hypothesis_label(The_hypotheses.list[k], table.labels())));
    }
    const std::vector<SummaryRow> rows = Summary_rows(table);
    Write_lines(exa_summary1(rows, Limits_of_results(), The_settings));
}

void Analyse(const TestAnalysis& analysis, const char* name, const LocalHypothesis& hypothesis,
             const LocalResult& result) {
    if (analysis)
        Write_lines(analysis(hypothesis, result));
    else
        Write_report(fmt::format("{} is not available yet", name));
}

/// The analyses that the letters ask for beside the tests.
void Run_analyses(const TestOptions& options, const LocalHypothesis& hypothesis,
                  const LocalResult& result, bool big) {
    const TestAnalyses& to = The_test_analyses;
    if (options.LocalGammas)
        Analyse(to.local_gammas, "Analysis of local CPRs and gamma coefficients", hypothesis,
                result);
    if (options.Homogeneity && hypothesis.Z.empty())
        Write_report("No conditioning variables: no homogeneity of Gamma coefficients to analyse");
    else if (options.Homogeneity)
        Analyse(to.homogeneity, "Analysis of homogeneity of Gamma coefficients", hypothesis,
                result);
    if (options.CollapseAnalysis) {
        if (big)
            ShowMessage("Analysis of category collapse in BT_exanalyse is not ready");
        else
            Analyse(to.collapse, "Analysis of category collapsibility", hypothesis, result);
    }
    if (options.PseudoGamma)
        Analyse(to.pseudo_gamma, "Calculation of pseudogamma coefficient", hypothesis, result);
    if (options.PowerSeries)
        Analyse(to.power_series, "Power series regression", hypothesis, result);
}

/// What the letters print of each cell.
TableOptions Printed(const TestOptions& options) {
    return {.Observed = !options.NoObservedCounts,
            .PrintMarginals = options.PrintMarginals,
            .RowPercentages = options.RowPercentages,
            .ColumnPercentages = options.ColumnPercentages,
            .JointProbabilities = options.JointProbabilities,
            .ExpectedCounts = options.ExpectedCounts,
            .FittedCounts = options.FittedCounts};
}

/// The boxes of all strata, each with its result line.
void Print_strata(std::size_t number, const LocalHypothesis& hypothesis, const LocalResult& result,
                  const TestOptions& options) {
    Write_report("");
    Write_report(Distribution_line(static_cast<int>(number), hypothesis));
    Write_lines(
        Tested_table_lines(hypothesis, result, Printed(options), Statistic_symbol(The_settings)));
}

LocalResult Run_local_test(const ContingencyTable& table, std::size_t k,
                           const TestOptions& options) {
    const bool big = table.big();
    const Hypothesis& h = The_hypotheses.list[k];
    const LocalHypothesis hypothesis =
        Form_xyz_table(table, h, options.PrintMarginals || options.FittedCounts);
    TestSettings settings = The_settings;
    if (big) settings.PartialTests = false;
    const RunControl control = Progress_of(settings);
    const bool simulates = settings.ExactTests && settings.Nsim > 0;
    if (simulates) control.begin();
    DrawMemory memory;
    const LocalResult result = EXANALYSE(hypothesis, settings, The_hypotheses.PartialTestsOff,
                                         The_stream, memory, control.stop);
    if (simulates) control.end();
    Store(k, Row_of(result.test), result.has_gamma);
    const bool two_way = hypothesis.Z.empty();
    if (options.PrintTable) Print_strata(k + 1, hypothesis, result, options);
    // The line under the box of a single table has said it all already.
    if (simulates || !two_way || !options.PrintTable) {
        if (!options.PrintTable) Write_report("");
        Write_lines(single_exa_summary(Summary_row(table, k), settings));
    }
    if (big && The_settings.PartialTests && !two_way) Write_report("Partial test not ready (3)");
    Write_lines(Partial_test_lines(result));
    if (!two_way) Write_lines(Local_result_lines(hypothesis, result, settings));
    Run_analyses(options, hypothesis, result, big);
    return result;
}

void Run_local_tests(const ContingencyTable& table, const TestOptions& options) {
    if (table.big() && The_settings.PartialTests)
        ShowMessage("BT_exatest: Partial test not ready yet (2)");
    if (The_settings.ExactTests) Set_seed(The_stream, The_settings.Seed);
    const std::size_t count = The_hypotheses.list.size();
    for (std::size_t k = 0; k < count; ++k) Run_local_test(table, k, options);
    if (count > 1) {
        Write_report("");
        Write_lines(exa_summary(Summary_rows(table), The_settings));
    }
}

/// Beside the global tests only two analyses are offered; each wants the strata.
void Run_global_analyses(const ContingencyTable& table, const TestOptions& options) {
    if (options.Homogeneity)
        Write_report("The analysis of homogeneity (D) belongs to local tests: LOCAL turns them on");
    if (!options.CollapseAnalysis && !options.PseudoGamma) return;
    TestOptions wanted;
    wanted.CollapseAnalysis = options.CollapseAnalysis;
    wanted.PseudoGamma = options.PseudoGamma;
    TestSettings asymptotic = The_settings;
    asymptotic.ExactTests = false;
    for (const Hypothesis& h : The_hypotheses.list) {
        const LocalHypothesis hypothesis = Form_xyz_table(table, h, false);
        DrawMemory memory;
        const LocalResult result = EXANALYSE(hypothesis, asymptotic, true, The_stream, memory);
        Run_analyses(wanted, hypothesis, result, table.big());
    }
}

Outcome TEST() {
    if (!Valid_test_parameters(The_line)) {
        if (The_test_analyses.graph_tests) return The_test_analyses.graph_tests();
        ShowMessage(
            fmt::format("\"{}\" does not define a test: no hypotheses relating to the graph",
                        The_line.CommandLine));
        return Outcome::refused;
    }
    return Run_tests();
}

// ---- CHOOSE

/// The hypothesis of a row of the list over the variables of `table`, which are those of the row.
Hypothesis In_table(char x, char y, const std::string& table_labels) {
    const auto position = [&](char label) {
        return static_cast<int>(table_labels.find(label)) + 1;
    };
    const int one = position(x), other = position(y);
    std::vector<int> z;
    for (int k = 1; k <= static_cast<int>(table_labels.size()); ++k)
        if (k != one && k != other) z.push_back(k);
    return Make_hypothesis(static_cast<int>(table_labels.size()), one, other, z);
}

/// The table of the variables of a row: of the current table, or of the project's variables.
TableRequest Request_of(const Hypothesis& chosen, HypothesisScope scope) {
    const bool of_table = scope == HypothesisScope::table;
    const HypothesisVariables table = Variables_of_table(The_table.table);
    TableRequest request;
    int block = -1;
    for (int v = 1; v <= MaxVariables; ++v) {
        if (chosen.Role(v) != role::tested && chosen.Role(v) != role::conditioning) continue;
        const std::size_t at = static_cast<std::size_t>(v);
        const int its_block = of_table ? table.block[at] : The_project.variables[at].Levnr;
        const int so_far = static_cast<int>(request.variables.size());
        if (its_block > block && block >= 0) request.LevelEnd.push_back(so_far);
        block = std::max(block, its_block);
        request.variables.push_back(of_table ? The_table.table.variables[at - 1]
                                             : Table_variable(The_project, v));
    }
    request.LevelEnd.push_back(static_cast<int>(request.variables.size()));
    return request;
}

Outcome CHOOSE() {
    if (The_hypotheses.list.empty()) {
        ShowMessage("Hypotheses not ready.");
        return Outcome::refused;
    }
    if (The_line.NumericCount == 0) {
        ShowMessage("Select one of the hypotheses on the list");
        return Outcome::refused;
    }
    const std::int64_t number = The_line.NumericParameters[0];
    if (number < 1 || number > static_cast<std::int64_t>(The_hypotheses.list.size())) {
        ShowMessage("You must choose one of the hypotheses.");
        return Outcome::refused;
    }
    const HypothesisWorkspace before = The_hypotheses;
    const Hypothesis chosen = before.list[static_cast<std::size_t>(number - 1)];
    const TestedPair pair = Tested_pair(chosen);
    const auto label = [&](int v) { return before.labels[static_cast<std::size_t>(v - 1)]; };
    const TableRequest request = Request_of(chosen, before.scope);
    const auto of_no_project = [](const TableVariable& v) { return v.number == 0; };
    Clear_hypotheses();  // the table of the row takes the place of theirs without a word
    if (std::any_of(request.variables.begin(), request.variables.end(), of_no_project) ||
        !Tabulate_current_table(request)) {
        ShowMessage("The table has not been created");
        return Outcome::refused;
    }
    const std::string labels = The_table.table.labels();
    Set_hypotheses({In_table(label(pair.X), label(pair.Y), labels)}, HypothesisScope::table,
                   labels);
    The_line.ParameterCount = 0;  // the number is no option letter
    const Outcome outcome = Run_tests();
    if (before.scope == HypothesisScope::graph) {  // the list does not rest on the table
        const TestResult row = The_hypotheses.results[0];
        const std::uint8_t kind = The_hypotheses.list[0].Kind;
        The_hypotheses = before;
        The_hypotheses.results[static_cast<std::size_t>(number - 1)] = row;
        The_hypotheses.list[static_cast<std::size_t>(number - 1)].Kind = kind;
    }
    return outcome;
}

constexpr const char* TestHelp =
    "TEST\n"
    "TEST letters\n"
    "\n"
    "Tests the hypotheses made by HYPOTHESES, THREEWAY or ELABORATE on the current table: a\n"
    "chi-square-type statistic summed over the strata (CHI, DEV, POW) and, unless a variable is\n"
    "nominal with more than two categories, the partial gamma coefficient with one- or two-sided\n"
    "p-values (ONE, TWO). EXA, REP and SEQ add Monte Carlo exact p-values.\n"
    "\n"
    "Without letters and with GLOBAL there is one line a hypothesis, with marks by the\n"
    "Benjamini-Hochberg limits. The interval is that of the exact p of the statistic. With LOCAL,\n"
    "or when a letter prints tables, each hypothesis also has its strata; LOCAL then stays on. A\n"
    "two-way table is always printed.\n"
    "\n"
    "  O  the tables             T  with row percentages      R  row percentages\n"
    "  C  column percentages     J  joint percentages         E  expected counts\n"
    "  Z  row percentages only   M  marginal strata too       F  fitted counts of the model\n"
    "  L  local gammas           D  homogeneity of gammas     G  pseudo gamma\n"
    "  K  collapsing categories  Q  power series              P  reserved\n"
    "\n"
    "L, for a two-way table: every 2 by 2 table of two rows and two columns with its gamma and "
    "its\n"
    "CPR, the association of one step in both variables if the association is uniform; means of\n"
    "CPRs weight by the square of the cases.\n"
    "\n"
    "D, in local tests with conditioning variables: is gamma the same in all strata of each\n"
    "conditioning variable, given the others, and of all of them jointly? Least squares with "
    "weights\n"
    "1/variance, standardized residuals, and a chi-square for homogeneity; it needs a variance in\n"
    "every stratum and at most 40 strata. Gammas are cumulated from the first stratum down and "
    "from\n"
    "the last up; u compares the first strata with the rest where they differ most, so it is not "
    "a\n"
    "standard normal. Three and more strata that differ are compared in pairs. Fitted gammas are\n"
    "those of two-factor association.\n"
    "\n"
    "G: HELP PGA tells more.\n"
    "\n"
    "A p of gamma beyond z = 4 is shown as 0.000. Ctrl-C ends the simulation under way with the\n"
    "tables done; the rest of the list then has asymptotic p-values.\n"
    "\n"
    "Example: TAB SCAG, HYP S*, EXA 1000, TES\n"
    "\n"
    "Refuses: no table (\"No table\"), no hypotheses (\"No hypotheses\"), letters that are none "
    "of\n"
    "these and no variables of a hypothesis of the graph.";

constexpr const char* ChooseHelp =
    "CHOOSE n\n"
    "\n"
    "Takes hypothesis n of the list: makes the table of its variables and tests it.\n"
    "\n"
    "Example: CHO 3\n"
    "\n"
    "Refuses: an empty list (\"Hypotheses not ready.\"), no number (\"Select one of the "
    "hypotheses\n"
    "on the list\"), a number that is not on the list.";

}  // namespace

RunControl Progress_of(const TestSettings& settings) {
    return {
        [settings] { ShowProgress(0, settings.Nsim, 1, "Exact test", Monte_carlo_name(settings)); },
        [] { return StepProgress(); }, [] { HideProgress(); }};
}

Outcome Run_tests() {
    const ContingencyTable& table = The_table.table;
    if (The_line.ParameterCount > 0 && (!The_table.table_ready || The_hypotheses.list.empty())) {
        ShowMessage(fmt::format("\"{}\" does not define a proper test: no table hypotheses",
                                The_line.CommandLine));
        return Outcome::refused;
    }
    if (!The_table.table_ready) {
        ShowMessage("No table");
        return Outcome::refused;
    }
    if (The_hypotheses.list.empty()) {
        ShowMessage("No hypotheses");
        return Outcome::refused;
    }
    TestOptions options = Test_parameters(The_line, false);
    const bool two_way = table.Nvar() == 2;
    if (options.PowerSeries && !two_way) {
        ShowMessage("Power series regression only possible for two-way tables");
        ShowMessage("test equating only possible for two-way tables");
        options.PowerSeries = false;
    }
    if (two_way)
        options.PrintTable = true;
    else
        options.LocalGammas = false;
    if (!two_way && options.PrintTable) The_settings.LocalTests = true;
    if (The_settings.LocalTests || two_way) {
        Run_local_tests(table, options);
    } else {
        Run_global_tests(table);
        Run_global_analyses(table, options);
    }
    The_hypotheses.tested = true;
    return Outcome::done;
}

void Register_independence_commands() {
    Register_command({.keyword = "TES",
                      .run = TEST,
                      .activity = "Testing",
                      .shows_kind_of_test = true,
                      .report = Report::opened,
                      .spelling = "TEST",
                      .summary = "tests the hypotheses",
                      .help = TestHelp});
    Register_command({.keyword = "CHO",
                      .run = CHOOSE,
                      .activity = "Testing",
                      .shows_kind_of_test = true,
                      .report = Report::opened,
                      .spelling = "CHOOSE",
                      .summary = "makes the table of a hypothesis and tests it",
                      .help = ChooseHelp});
}

}  // namespace tarven
