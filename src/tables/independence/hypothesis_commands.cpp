#include "tables/independence/hypothesis_commands.h"

#include <fmt/format.h>

#include "shell/commands.h"
#include "shell/environment.h"
#include "shell/parsed_line.h"
#include "shell/prompts.h"
#include "shell/report.h"
#include "shell/user.h"
#include "shell/variable_lists.h"
#include "tables/independence/hypotheses_report.h"
#include "tables/independence/hypothesis_workspace.h"
#include "tables/table/table_workspace.h"

namespace tarven {

namespace {

/// Stores a list and reports it; an empty one is the command's failure.
Outcome Take(HypothesisList made, const HypothesisVariables& variables) {
    if (Remove_untestable(made, variables))
        ShowMessage(fmt::format(
            "A variable of more than {} categories is not tested: it can only condition",
            MaxCategories));
    for (const int v : made.collapsed_over)
        Write_report(fmt::format("Collaps over: {} {}", v,
                                 variables.vlabel[static_cast<std::size_t>(v - 1)]));
    if (made.over_limit)
        ShowMessage(fmt::format("MAXIMAL NUMBER OF HYPOTHESES PERMITTED IS {}", MaxHypotheses));
    if (made.rows.empty()) return Refuse_line();
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
    const HypothesisVariables variables = Variables_of_table(The_table.table);
    const RequiredParameters required = Require_parameters();
    if (!required.ok) return Refuse_line();
    const VariableList list = Dimensions_of_line(variables);
    const int all = variables.Nvar + 1;
    std::vector<std::pair<int, int>> pairs;
    if (required.wildcard == Wildcard::all) pairs.emplace_back(all, all);
    for (std::size_t k = 0; k + 1 < list.list.size(); k += 2)
        pairs.emplace_back(list.list[k], list.list[k + 1]);
    if (!list.ok || pairs.empty()) return Refuse_line();
    return Take(Define_hypotheses(variables, pairs), variables);
}

Outcome THREEWAY() {
    const HypothesisVariables variables = Variables_of_table(The_table.table);
    return Take(Three_way_hypotheses(variables), variables);
}

Outcome ELABORATE() {
    const HypothesisVariables variables = Variables_of_table(The_table.table);
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

}  // namespace

void Register_hypothesis_commands() {
    Register_hypotheses_lifecycle();
    const Need table_defined{[] { return The_table.table_ready; }, "Table has not been defined"};
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
    Register_letter(LetterCommand::show,
                    {.letter = 'H',
                     .run =
                         [] {
                             Write_lines(Show_hypotheses_lines(
                                 The_hypotheses.list, The_hypotheses.labels, The_hypotheses.scope));
                         },
                     .needs = {},
                     .summary = "the hypotheses"});
    Register_environment(EnvironmentPart::above_tests, [] {
        return The_hypotheses.hypotheses_ready ? std::vector<std::string>{"Hypotheses exist"}
                                               : std::vector<std::string>{};
    });
}

}  // namespace tarven
