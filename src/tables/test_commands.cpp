#include "tables/test_commands.h"

#include <fmt/format.h>

#include <algorithm>

#include "shell/environment.h"
#include "shell/parsed_line.h"
#include "shell/prompts.h"
#include "shell/report.h"
#include "shell/test_options.h"
#include "shell/user.h"
#include "shell/variable_lists.h"
#include "tables/bootstrap.h"
#include "tables/contingency_table.h"
#include "tables/fisher.h"
#include "tables/fisher_report.h"
#include "tables/hypotheses_report.h"
#include "tables/multiple_testing.h"
#include "tables/print_table.h"
#include "tables/tabulate.h"
#include "tables/test_reports.h"

namespace tarven {

namespace {

bool Has_table() {
    return The_table.table_ready;
}

// ---- lists of hypotheses

Outcome Failure() {
    ShowMessage("Failure: " + The_line.CommandLine);
    return Outcome::refused;
}

/// Stores a list and reports it; an empty one is the command's failure.
Outcome Take(const HypothesisList& made, const HypothesisVariables& variables) {
    for (const int v : made.collapsed_over)
        Write_report(fmt::format("Collaps over: {} {}", v,
                                 variables.vlabel[static_cast<std::size_t>(v - 1)]));
    if (made.over_limit)
        ShowMessage(fmt::format("MAXIMAL NUMBER OF HYPOTHESES PERMITTED IS {}", MaxHypotheses));
    if (made.rows.empty()) return Failure();
    Set_hypotheses(made.rows, HypothesisScope::table, variables.vlabel);
    Write_lines(Hypothesis_list_lines(The_hypotheses.list, variables.vlabel));
    return Outcome::done;
}

/// The dimensions that the parameters name. A "#" is the dimension of the score.
VariableList Dimensions_of_line(const HypothesisVariables& variables) {
    VariableList list = Select_list_to_variables(The_line.CommandLine, variables.vlabel, true);
    const std::size_t score = variables.vlabel.find('#');
    for (std::uint8_t& entry : list.list) {
        if (entry != ScoreCode) continue;
        if (score == std::string::npos)
            list.ok = false;
        else
            entry = static_cast<std::uint8_t>(score + 1);
    }
    return list;
}

Outcome HYPOTHESES() {
    const HypothesisVariables variables = Current_hypothesis_variables();
    const RequiredParameters required = Require_parameters();
    if (!required.ok) return Failure();
    const VariableList list = Dimensions_of_line(variables);
    const int all = variables.Nvar + 1;
    std::vector<std::pair<int, int>> pairs;
    if (required.wildcard == Wildcard::all) pairs.emplace_back(all, all);
    for (std::size_t k = 0; k + 1 < list.list.size(); k += 2)
        pairs.emplace_back(list.list[k], list.list[k + 1]);
    if (!list.ok || pairs.empty()) return Failure();
    return Take(Define_hypotheses(variables, pairs), variables);
}

Outcome THREEWAY() {
    const HypothesisVariables variables = Current_hypothesis_variables();
    return Take(Three_way_hypotheses(variables), variables);
}

Outcome ELABORATE() {
    const HypothesisVariables variables = Current_hypothesis_variables();
    const VariableList list = Dimensions_of_line(variables);
    if (!list.ok || list.list.size() < 2) {
        ShowMessage("Failure converting labels for elaboration hypotheses");
        return Outcome::refused;
    }
    const int v1 = list.list[0], v2 = list.list[1];
    const auto valid = [&](int v) { return v >= 1 && v <= variables.Nvar; };
    if (!valid(v1) || !valid(v2) || v1 == v2) {
        ShowMessage("Improper variables: " + The_line.CommandLine);
        return Outcome::refused;
    }
    if (variables.collapsed[static_cast<std::size_t>(v1)] ||
        variables.collapsed[static_cast<std::size_t>(v2)]) {
        ShowMessage("At least one of the two variables is collapsed");
        return Outcome::refused;
    }
    const int n = list.list.size() > 2 ? list.list[2] : 1;
    return Take(Elaborate_hypotheses(variables, v1, v2, n), variables);
}

// ---- TEST

SummaryRow Summary_row(const TestedTable& table, std::size_t k) {
    const Hypothesis& h = The_hypotheses.list[k];
    return {.label = Hypothesis_label(h, table.vlabel()),
            .result = The_hypotheses.results[k],
            .has_gamma = h.Kind == kind::with_gamma,
            .cases = table.NTOTAL};
}

std::vector<SummaryRow> Summary_rows(const TestedTable& table) {
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

void Run_global_tests(const TestedTable& table) {
    const std::vector<GlobalOutcome> outcomes = Test_globally(
        table, The_hypotheses.list, The_settings, The_stream, Progress_of(The_settings));
    for (std::size_t k = 0; k < outcomes.size(); ++k) {
        Store(k, outcomes[k].row, outcomes[k].has_gamma);
        Write_lines(Remarks(outcomes[k], Hypothesis_label(The_hypotheses.list[k], table.vlabel())));
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

LocalResult Run_local_test(const TestedTable& table, std::size_t k, const TestOptions& options) {
    const bool big = table.big;
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

void Run_local_tests(const TestedTable& table, const TestOptions& options) {
    if (table.big && The_settings.PartialTests)
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
void Run_global_analyses(const TestedTable& table, const TestOptions& options) {
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
        Run_analyses(wanted, hypothesis, result, table.big);
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

// ---- CHOOSE and FISHER

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
    const HypothesisVariables table = Current_hypothesis_variables();
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
    const std::optional<TestedTable> table = Current_tested_table();
    Set_hypotheses({In_table(label(pair.X), label(pair.Y), table->vlabel())},
                   HypothesisScope::table, table->vlabel());
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

Outcome FISHER() {
    const std::optional<TestedTable> table = Current_tested_table();
    if (table->Nvar() != 2) {
        ShowMessage("Fisher\xB4s exact test requires a twoway table");
        return Outcome::refused;
    }
    const bool listing = Has_parameter('L');
    if (!AskYesNo("Are you sure you want to do this? It may take a long time to finish!"))
        return Outcome::done;
    const LocalHypothesis hypothesis = Form_xyz_table(*table, Make_hypothesis(2, 1, 2, {}), false);
    const TwoWayTable& counts = hypothesis.slices.front().counts;
    const bool has_gamma = Gamma_is_defined(hypothesis.X.DIM, hypothesis.X.VTYPE, hypothesis.Y.DIM,
                                            hypothesis.Y.VTYPE);
    FisherListing list_table;
    if (listing) list_table = [](const FisherTable& one) { Write_lines(Fisher_table_lines(one)); };
    ShowWait("Enumeration of all tables");
    const FisherRecord record = Enumerate_tables(
        counts, Statistic_rule(The_settings), has_gamma, [] { return StepProgress(); }, list_table);
    HideWait();
    Write_lines(Fisher_report(counts, hypothesis.X.label, hypothesis.Y.label, record));
    return Outcome::done;
}

constexpr const char* HypothesesHelp =
    "HYPOTHESES pairs of variables\n"
    "HYPOTHESES A*   all pairs with A\n"
    "HYPOTHESES **   all pairs\n"
    "\n"
    "Makes the list of hypotheses about the current table: the two variables of each pair are\n"
    "independent given all other variables of the first one's recursive block and of the blocks\n"
    "after it. Variables of earlier blocks are collapsed over. Labels may be written together,\n"
    "and numbers are those of the table's variables. At most 2500 hypotheses.\n"
    "\n"
    "Example: TAB SCAG, then HYP SA SG\n"
    "\n"
    "Refuses: no table (\"Table has not been defined\"); no pair, or a label that is no variable\n"
    "of the table (\"Failure: \" and the line).";

constexpr const char* ThreewayHelp =
    "THREEWAY\n"
    "\n"
    "Makes the hypotheses of all three-way margins of the current table: every pair with its\n"
    "first variable in the first block, given each other variable alone.\n"
    "\n"
    "Example: TAB SCAG, then THR\n"
    "\n"
    "Refuses: no table (\"Table has not been defined\"); fewer than three variables.";

constexpr const char* ElaborateHelp =
    "ELABORATE v1 v2\n"
    "ELABORATE v1 v2 n\n"
    "\n"
    "Makes every hypothesis of v1 and v2 given 1, 2, ... up to n variables (default 1) of v1's\n"
    "recursive block and the blocks after it.\n"
    "\n"
    "Example: TAB SCAG, then ELA SG 2\n"
    "\n"
    "Refuses: no table (\"Table has not been defined\"); a label that is no variable of the "
    "table;\n"
    "the same variable twice (\"Improper variables: \").";

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

constexpr const char* FisherHelp =
    "FISHER\n"
    "FISHER L\n"
    "\n"
    "Exact p-values of a two-way table by enumeration of all tables with its margins. The number\n"
    "of such tables grows fast with the number of cells and cases, so you are asked first. L "
    "lists\n"
    "every table. Tables are ordered by the statistic, so that P(exact) is the probability of a\n"
    "statistic at least the observed one; it is not the p of the test that orders tables by their\n"
    "probability. Gamma, with a one-sided p, is added when each variable is ordinal or binary.\n"
    "\n"
    "Example: TAB SA, then FIS, and the answer Y\n"
    "\n"
    "Refuses: no table (\"No table\"), a table with more than two variables.";

}  // namespace

RunControl Progress_of(const TestSettings& settings) {
    return {
        [settings] { ShowProgress(0, settings.Nsim, 1, "Exact test", Monte_carlo_name(settings)); },
        [] { return StepProgress(); }, [] { HideProgress(); }};
}

std::optional<TestedTable> Current_tested_table() {
    if (!The_table.table_ready) return std::nullopt;
    const ContingencyTable& t = The_table.table;
    TestedTable table;
    table.variables = Test_variables(t);
    table.Cfactor.assign(t.Cfactor.entries.begin(), t.Cfactor.entries.begin() + t.Nvar + 1);
    table.cells = t.cells.data();
    table.NTOTAL = t.NTOTAL;
    table.big = t.Nvar > MaxTableVariables;
    return table;
}

HypothesisVariables Current_hypothesis_variables() {
    const ContingencyTable& t = The_table.table;
    HypothesisVariables variables;
    variables.Nvar = std::min(t.Nvar, MaxVariables);
    int block = 1;
    for (int k = 1; k <= variables.Nvar; ++k) {
        const std::size_t at = static_cast<std::size_t>(k);
        while (block < t.Nlevels && k > t.LevelEnd[static_cast<std::size_t>(block)]) ++block;
        variables.vlabel += t.vlabel[at];
        variables.DIM[at] = t.DIM[at];
        variables.TYPE[at] = t.VTYPE[at];
        variables.block[at] = block;
    }
    return variables;
}

Outcome Run_tests() {
    const std::optional<TestedTable> table = Current_tested_table();
    if (The_line.ParameterCount > 0 && (!table || The_hypotheses.list.empty())) {
        ShowMessage(fmt::format("\"{}\" does not define a proper test: no table hypotheses",
                                The_line.CommandLine));
        return Outcome::refused;
    }
    if (!table) {
        ShowMessage("No table");
        return Outcome::refused;
    }
    if (The_hypotheses.list.empty()) {
        ShowMessage("No hypotheses");
        return Outcome::refused;
    }
    TestOptions options = Test_parameters(The_line, false);
    const bool two_way = table->Nvar() == 2;
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
        Run_local_tests(*table, options);
    } else {
        Run_global_tests(*table);
        Run_global_analyses(*table, options);
    }
    The_hypotheses.tested = true;
    return Outcome::done;
}

void Register_test_commands() {
    Register_hypotheses_lifecycle();
    const Need table_defined{Has_table, "Table has not been defined"};
    const auto defines = [&](const char* keyword, const char* spelling, Outcome (*run)(),
                             const char* summary, const char* help) {
        Register_command({.keyword = keyword,
                          .run = run,
                          .needs = {table_defined},
                          .report = Report::opened,
                          .spelling = spelling,
                          .summary = summary,
                          .help = help});
    };
    defines("HYP", "HYPOTHESES", HYPOTHESES, "hypotheses about the current table", HypothesesHelp);
    defines("THR", "THREEWAY", THREEWAY, "hypotheses of all three-way margins", ThreewayHelp);
    defines("ELA", "ELABORATE", ELABORATE, "hypotheses about two variables given others",
            ElaborateHelp);
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
    Register_command({.keyword = "FIS",
                      .run = FISHER,
                      .needs = {{Has_table, "No table"}},
                      .activity = "Enumerating tables",
                      .report = Report::opened,
                      .spelling = "FISHER",
                      .summary = "exact test of a two-way table by enumeration",
                      .help = FisherHelp});
    Register_letter(LetterCommand::show,
                    {.letter = 'H',
                     .run = [] { Write_lines(Show_hypotheses_lines(The_hypotheses)); },
                     .needs = {},
                     .summary = "the hypotheses"});
    Register_environment(EnvironmentPart::above_tests, [] {
        return The_hypotheses.hypotheses_ready ? std::vector<std::string>{"Hypotheses exist"}
                                               : std::vector<std::string>{};
    });
    Register_bootstrap_commands();
}

}  // namespace tarven
