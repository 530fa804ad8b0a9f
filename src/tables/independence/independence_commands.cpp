#include "tables/independence/independence_commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <new>
#include <optional>
#include <utility>

#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/test_options.h"
#include "shell/user.h"
#include "shell/variable_lists.h"
#include "shell/words.h"
#include "tables/independence/hypothesis_workspace.h"
#include "tables/independence/multiple_testing.h"
#include "tables/independence/own_table.h"
#include "tables/independence/summary_report.h"
#include "tables/independence/tested_table_report.h"
#include "tables/numbers/stream_workspace.h"
#include "tables/table/print_table.h"
#include "tables/table/table_workspace.h"

namespace tarven {

namespace {

// ---- TEST

/// A list on its table: that of the workspace, or the one row of CHOOSE.
struct TestedList {
    const ContingencyTable& table;
    HypothesisWorkspace& hypotheses;

    std::vector<std::string> Labels() const {
        std::vector<std::string> labels;
        for (const Hypothesis& h : hypotheses.list)
            labels.push_back(Hypothesis_label(h, hypotheses.labels));
        return labels;
    }
    SummaryRow Row(std::size_t k) const {
        const Hypothesis& h = hypotheses.list[k];
        return {.label = Hypothesis_label(h, hypotheses.labels),
                .result = hypotheses.results[k],
                .has_gamma = h.Kind == kind::with_gamma,
                .cases = table.NTOTAL};
    }
    std::vector<SummaryRow> Rows() const {
        std::vector<SummaryRow> rows;
        for (std::size_t k = 0; k < hypotheses.list.size(); ++k) rows.push_back(Row(k));
        return rows;
    }
};

void Store(HypothesisWorkspace& hypotheses, std::size_t k, const TestedHypothesis& outcome) {
    hypotheses.list[k].Kind = outcome.has_gamma ? kind::with_gamma : kind::without_gamma;
    hypotheses.results[k] = outcome.row;
}

/// False when the user stopped the run.
bool Run_global_tests(const TestedList& list) {
    HypothesisWorkspace& h = list.hypotheses;
    const std::vector<TestedHypothesis> outcomes =
        Test_globally(list.table, h.list, h.settings, The_stream, Progress_of(h.settings));
    const std::vector<std::string> labels = list.Labels();
    for (std::size_t k = 0; k < outcomes.size(); ++k) {
        Store(h, k, outcomes[k]);
        Write_lines(Remarks(outcomes[k], labels[k]));
    }
    const RejectionLimits limits =
        Rejection_limits(Collect_p_values(h.list, h.results, h.settings).p);
    Write_lines(exa_summary1(list.Rows(), limits, h.settings));
    const std::vector<std::string> stopped = Stopped_lines(outcomes, labels, h.settings);
    Write_lines(stopped);
    return stopped.empty();
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
                  const TestOptions& options, const TestSettings& settings) {
    Write_report("");
    Write_report(Distribution_line(static_cast<int>(number), hypothesis));
    Write_lines(
        Tested_table_lines(hypothesis, result, Printed(options), Statistic_symbol(settings)));
}

void Report_local_test(const TestedList& list, std::size_t k, const LocallyTested& one,
                       const TestOptions& options) {
    const TestSettings& settings = list.hypotheses.settings;
    const bool big = list.table.big();
    const bool two_way = one.hypothesis.Z.empty();
    const bool simulates = settings.ExactTests && settings.Nsim > 0;
    if (options.PrintTable) Print_strata(k + 1, one.hypothesis, one.result, options, settings);
    // The line under the box of a single table has said it all already.
    if (simulates || !two_way || !options.PrintTable) {
        if (!options.PrintTable) Write_report("");
        Write_lines(single_exa_summary(list.Row(k), settings));
    }
    if (big && settings.PartialTests && !two_way) Write_report("Partial test not ready (3)");
    Write_lines(Partial_test_lines(one.result));
    if (!two_way) Write_lines(Local_result_lines(one.hypothesis, one.result, settings));
    if (one.outcome.reached == Reached::end) Run_analyses(options, one.hypothesis, one.result, big);
}

void Run_local_tests(const TestedList& list, const TestOptions& options) {
    HypothesisWorkspace& h = list.hypotheses;
    if (list.table.big() && h.settings.PartialTests)
        ShowMessage("BT_exatest: Partial test not ready yet (2)");
    const LocalWishes wishes{.with_margins = options.PrintMarginals || options.FittedCounts,
                             .partial_off = h.PartialTestsOff};
    for (std::size_t k = 0; k < h.list.size(); ++k) Store(h, k, {});
    const std::vector<TestedHypothesis> outcomes =
        Test_locally(list.table, h.list, wishes, h.settings, The_stream, Progress_of(h.settings),
                     [&](std::size_t k, const LocallyTested& one) {
                         Store(h, k, one.outcome);
                         Report_local_test(list, k, one, options);
                     });
    if (h.list.size() > 1) {
        Write_report("");
        Write_lines(exa_summary(list.Rows(), h.settings));
    }
    Write_lines(Stopped_lines(outcomes, list.Labels(), h.settings));
}

/// Beside the global tests only two analyses are offered; each wants the strata.
void Run_global_analyses(const TestedList& list, const TestOptions& options) {
    if (options.Homogeneity)
        Write_report("The analysis of homogeneity (D) belongs to local tests: LOCAL turns them on");
    if (!options.CollapseAnalysis && !options.PseudoGamma) return;
    TestOptions wanted;
    wanted.CollapseAnalysis = options.CollapseAnalysis;
    wanted.PseudoGamma = options.PseudoGamma;
    TestSettings asymptotic = list.hypotheses.settings;
    asymptotic.ExactTests = false;
    RandomStream unused;
    const std::vector<TestedHypothesis> outcomes =
        Test_locally(list.table, list.hypotheses.list, {.partial_off = true}, asymptotic, unused,
                     Progress_of(asymptotic), [&](std::size_t, const LocallyTested& one) {
                         Run_analyses(wanted, one.hypothesis, one.result, list.table.big());
                     });
    Write_lines(Stopped_lines(outcomes, list.Labels(), asymptotic));
}

/// Runs the tests of a list by the letters, stores its rows and reports them.
void Test_list(const TestedList& list, TestOptions options) {
    const bool two_way = list.table.Nvar() == 2;
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
    list.hypotheses.settings = The_settings;
    list.hypotheses.tested = true;
    if (The_settings.LocalTests || two_way)
        Run_local_tests(list, options);
    else if (Run_global_tests(list))
        Run_global_analyses(list, options);
}

/// Letters are options of table hypotheses where there are any; everything else names pairs of the
/// project graph.
Outcome TEST() {
    const bool letters = Valid_test_parameters(The_line);
    if (The_table.table_ready && Table_hypotheses() && letters) return Run_tests();
    if (The_line.ParameterCount > 0) {
        if (The_test_analyses.graph_tests)
            if (const std::optional<Outcome> made = The_test_analyses.graph_tests()) return *made;
        ShowMessage("\"" + The_line.CommandLine +
                    (letters ? "\" does not define a proper test: no table hypotheses"
                             : "\" does not define a test: no hypotheses relating to the graph"));
        return Outcome::refused;
    }
    if (!The_hypotheses.list.empty() && The_hypotheses.scope == HypothesisScope::graph)
        return Test_project_hypotheses(The_hypotheses);
    return Run_tests();
}

// ---- CHOOSE

Outcome CHOOSE() {
    if (The_hypotheses.list.empty()) {
        ShowMessage("Hypotheses not ready.");
        return Outcome::refused;
    }
    const std::string typed = Get_word(1, Behind_keyword(The_line.CommandLine));
    if (typed.empty() && The_line.NumericCount == 0) {
        ShowMessage("Select one of the hypotheses on the list");
        return Outcome::refused;
    }
    // A number may stand close to the keyword. The numbers of a line have no signs and no points.
    std::int32_t number = The_line.NumericParameters[0];
    if (!typed.empty() && !To_integer(typed, number)) {
        ShowMessage(
            "Failure choosing variables. Use \"test <variables> to test all separation "
            "hypotheses\"");
        return Outcome::refused;
    }
    if (number < 1 || std::cmp_greater(number, The_hypotheses.list.size())) {
        ShowMessage("You must choose one of the hypotheses.");
        return Outcome::refused;
    }
    const std::size_t k = static_cast<std::size_t>(number - 1);
    const bool of_table = The_hypotheses.scope == HypothesisScope::table;
    if (const std::string why = of_table ? "" : Incompatibility_of_list(The_hypotheses);
        !why.empty()) {
        ShowMessage(why);
        return Outcome::refused;
    }
    const OwnTable own = of_table ? Own_table(The_hypotheses.list[k], The_table.table)
                                  : Own_table(The_hypotheses.list[k], The_project);
    const auto of_no_project = [](const TableVariable& v) { return v.number == 0; };
    if (std::any_of(own.request.variables.begin(), own.request.variables.end(), of_no_project))
        return Refuse(Failed{.messages = {"The table has not been created"}});
    Result<Tabulation> made =
        Tabulate(Cases_of_project(), own.request, [] { return Stop_asked(); });
    if (!made) {
        Refuse(made.failure());
        return Refuse(Failed{.messages = {"The table has not been created"}});
    }
    Set_current_table(std::move(made->table));  // a list over the former table is lost with it
    HypothesisWorkspace one;
    Fill_hypotheses(one, {own.row}, HypothesisScope::table, The_table.table.labels());
    Test_list({The_table.table, one}, {});
    // A list of the graph does not rest on the table and keeps its rows, all of one run.
    if (of_table) The_hypotheses = std::move(one);
    return Outcome::done;
}

constexpr const char* TestHelp =
    "TEST\n"
    "TEST letters\n"
    "TEST pairs of variables\n"
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
    "A list made from the project graph (SEPARATE, GMP, REDUCE, RELEVANCE) is tested globally, "
    "each\n"
    "hypothesis on the cases that have its variables, whatever their number; the current table\n"
    "takes no part. Without hypotheses about the table labels name pairs of the graph, also where\n"
    "they are letters of tests: TEST AB is then GTEST AB.\n"
    "\n"
    "A p of gamma beyond z = 4 is shown as 0.000. Ctrl-C ends the simulation under way with the\n"
    "tables done; the rest of the list is not tested, and the report says so.\n"
    "\n"
    "Example: TAB SCAG, HYP S*, EXA 1000, TES\n"
    "\n"
    "Refuses: no table (\"No table\"), no hypotheses (\"No hypotheses\"), letters that are none "
    "of\n"
    "these and no variables of a hypothesis of the graph.";

constexpr const char* ChooseHelp =
    "CHOOSE n\n"
    "\n"
    "Takes hypothesis n of the list: makes the table of its variables and tests it. A list made\n"
    "from the project graph stays, with the results of its last TEST.\n"
    "\n"
    "Example: CHO 3\n"
    "\n"
    "Refuses: an empty list (\"Hypotheses not ready.\"), no number (\"Select one of the "
    "hypotheses\n"
    "on the list\"), what is no whole number (\"Failure choosing variables.\" and how they are\n"
    "tested), a number that is not on the list, a list of the graph when labels have changed\n"
    "since (\"Graphs are not compatible.\").";

}  // namespace

RunControl Progress_of(const TestSettings& settings) {
    return {[settings](std::int64_t steps) {
                const bool simulates = settings.ExactTests && settings.Nsim > 0;
                ShowProgress(0, steps, 1, simulates ? "Exact test" : "Tests",
                             simulates ? Monte_carlo_name(settings) : "");
            },
            [] { return StepProgress(); }, [] { HideProgress(); }, The_session.jobs};
}

std::string Incompatibility_of_list(const HypothesisWorkspace& hypotheses) {
    std::string labels;
    for (int v = 1; v <= The_project.N; ++v)
        labels += The_project.variables[static_cast<std::size_t>(v)].label;
    return labels == hypotheses.labels ? "" : "Graphs are not compatible.";
}

bool Cases_to_test() {
    const DataSource source = Table_source(Data_at_hand(Cases_of_project()), MaxTableVariables);
    if (source == DataSource::none) ShowMessage("Data is not available");
    return source != DataSource::none;
}

Outcome Test_project_hypotheses(HypothesisWorkspace& h) {
    if (const std::string why = Incompatibility_of_list(h); !why.empty()) {
        ShowMessage(why);
        return Outcome::refused;
    }
    if (!Cases_to_test()) return Outcome::refused;
    Write_report(fmt::format("Testing {} {}", h.list.size(),
                             h.list.size() == 1 ? "hypothesis" : "hypotheses"));
    std::vector<TestedInOwnTable> tested;
    RunControl control = Progress_of(The_settings);
    control.within = [] { return Stop_asked(); };
    try {
        tested = Test_in_own_tables(Cases_of_project(), h.list, The_settings, The_stream, control);
    } catch (const std::bad_alloc&) {
        ShowMessage("Cheap_BigTest failure");
        return Outcome::refused;
    }
    h.settings = The_settings;
    h.tested = true;
    std::vector<TestedHypothesis> outcomes;
    std::vector<std::string> labels;
    std::vector<SummaryRow> rows;
    for (std::size_t k = 0; k < tested.size(); ++k) {
        outcomes.push_back(tested[k].outcome);
        labels.push_back(Hypothesis_label(h.list[k], h.labels));
        Store(h, k, outcomes[k]);
        rows.push_back({.label = labels[k],
                        .result = outcomes[k].row,
                        .has_gamma = outcomes[k].has_gamma,
                        .cases = outcomes[k].cases});
        Write_lines(tested[k].messages.empty()
                        ? Remarks(outcomes[k], labels[k])
                        : Test_failure_lines(k + 1, labels[k], tested[k].messages));
    }
    const RejectionLimits limits =
        Rejection_limits(Collect_p_values(h.list, h.results, h.settings).p);
    Write_lines(exa_summary1(rows, limits, h.settings));
    Write_lines(Stopped_lines(outcomes, labels, h.settings));
    return Outcome::done;
}

Outcome Run_tests() {
    if (!The_table.table_ready) {
        ShowMessage("No table");
        return Outcome::refused;
    }
    if (The_hypotheses.list.empty()) {
        ShowMessage("No hypotheses");
        return Outcome::refused;
    }
    Test_list({The_table.table, The_hypotheses}, Test_parameters(The_line, false));
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
