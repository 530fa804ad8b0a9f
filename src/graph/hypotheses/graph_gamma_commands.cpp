#include "graph/hypotheses/graph_gamma_commands.h"

#include <fmt/format.h>

#include <optional>
#include <string>
#include <string_view>

#include "graph/hypotheses/graph_gammas.h"
#include "graph/hypotheses/graph_gammas_report.h"
#include "graph/hypotheses/max_edges.h"
#include "graph/hypotheses/max_edges_report.h"
#include "graph/model/graph_workspace.h"
#include "graph/model/revision_commands.h"
#include "project/data.h"
#include "project/project.h"
#include "shell/commands.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/user.h"
#include "shell/variable_lists.h"
#include "shell/words.h"
#include "tables/independence/case_strata.h"
#include "tables/ordinal/gamma_commands.h"
#include "tables/ordinal/gammas_workspace.h"

namespace tarven {

namespace {

RunControl Progress_of_gammas() {
    return {[](std::int64_t steps) { ShowProgress(0, steps, 1, "Partial gamma coefficients", ""); },
            [] { return StepProgress(); }, [] { HideProgress(); }, The_session.jobs,
            [] { return Stop_asked(); }};
}

Outcome Stopped() {
    ShowMessage("Stopped: the gamma coefficients have not been calculated");
    return Outcome::refused;
}

/// Calculates the gammas of the current model, writes them and keeps them.
Outcome Partial_gammas(const PackedCases& packed, bool odds_ratios) {
    const ChainGraph& graph = The_graph.model;
    const GraphGammas gammas =
        Gammas_of_graph(packed, graph, All_pairs_of(graph), Progress_of_gammas());
    if (gammas.stopped) return Stopped();
    Write_lines(Graph_gamma_lines(gammas, graph.Labels, odds_ratios));
    The_project_gammas = {.IJXgamma = Matrix_of_gammas(gammas.pairs, graph.nvar), .ready = true};
    return Outcome::done;
}

Outcome GAMMA() {
    const bool odds_ratios = Has_parameter('O');
    if (Has_parameter('M')) return Marginal_gammas(odds_ratios);
    if (!Needs_hold({NeedsGraph})) return Outcome::refused;
    const Result<PackedCases> packed = Pack_cases(Cases_of_project(), [] { return Stop_asked(); });
    if (!packed) return Refuse(packed.failure());
    return Partial_gammas(*packed, odds_ratios);
}

/// What stands behind MAXEDGES, or its beginning of four letters and more, a number written close
/// to it included; nothing when the line names pairs.
std::optional<std::string> Max_edges_typed(const std::string& line) {
    const std::string typed(Behind_keyword(line));
    const std::string word = Get_word(1, typed);
    constexpr std::string_view Option = "MAXEDGES", Shortest = "MAXE";
    const std::string letters = Upper(word.substr(0, word.find_first_of("0123456789+-.")));
    if (letters.size() < Shortest.size() || !Option.starts_with(letters)) return std::nullopt;
    return typed.substr(typed.find(word) + letters.size());
}

/// MAX 4 can be the pairs MA and X4: they are taken, and the option is named.
void Tell_option_meant() {
    const std::string& line = The_line.CommandLine;
    const std::string word = Upper(Get_word(2, line));
    const bool number = String_type(Get_word(3, line)) == StringType::integer;
    const bool alone = word == "MAX" && number && Word_count(line) == 3;
    const bool close =
        word.starts_with("MAX") && String_type(word.substr(3)) == StringType::integer;
    if (alone || (close && Word_count(line) == 2))
        ShowMessage("MAX is read as variables. The option is MAXEDGES, or MAXE");
}

Outcome DELETE_MAXEDGES(const std::string& behind) {
    std::int32_t m = 0;
    if (!To_integer(behind, m) || m < 0 || m > MaxVariables) {
        ShowMessage(
            fmt::format("DELETE MAXEDGES needs a number, 0 to {}: the most neighbours that a "
                        "variable may keep",
                        MaxVariables));
        return Outcome::refused;
    }
    const Result<PackedCases> packed = Pack_cases(Cases_of_project(), [] { return Stop_asked(); });
    if (!packed) return Refuse(packed.failure());
    const Simplification found = Simplify_graph(*packed, The_graph.model, m, Progress_of_gammas());
    Write_lines(Simplification_lines(found, The_graph.model.Labels));
    if (found.stopped) return Stopped();
    if (found.eliminated() == 0) return Outcome::done;
    if (!AskYesNo("Do you really want to remove these interactions?")) return Outcome::done;
    Adopt_model(found.graph, fmt::format("The model was revised: MAXEDGES {} (DELETE)", m));
    Write_report("");
    Write_report("Partial Gamma coefficients calculated under the current model");
    return Partial_gammas(*packed, false);
}

Outcome DELETE() {
    if (const auto behind = Max_edges_typed(The_line.CommandLine)) return DELETE_MAXEDGES(*behind);
    Tell_option_meant();
    return Revise_pairs_of_line(Absent);
}

}  // namespace

void Register_graph_gamma_commands() {
    Register_command(
        {.keyword = "GAM",
         .run = GAMMA,
         .needs = {{[] { return The_project.N >= 2; }, "No project"}},
         .report = Report::opened,
         .spelling = "GAMMA",
         .summary = "gamma coefficients of all pairs of variables",
         .help =
             "GAMMA\nGAMMA OR\nGAMMA M\nGAMMA M OR\n\n"
             "Partial gammas of all pairs of variables, with an edge or without, under the\n"
             "current model: the mean over the separation hypotheses of the pair (the smallest\n"
             "sets that separate it in the graph) that can be tested. Nominal variables of more\n"
             "than two categories have none. The matrix is kept until the model changes: SHOW G\n"
             "then lists the average of its absolute values in each clique, SAVE G writes it.\n\n"
             "M gives marginal gammas of all pairs of binary and ordinal variables. OR converts\n"
             "to generalized odds ratios, (1 + gamma) / (1 - gamma).\n\n"
             "Example: GAM, GAM M OR\n\n"
             "Refused without a project; without M also without a graph."});
    Register_command(
        {.keyword = "DEL",
         .run = DELETE,
         .needs = {NeedsGraph},
         .report = Report::opened,
         .spelling = "DELETE",
         .summary = "deletes edges of the project graph",
         .help = fmt::format(
             "DELETE pairs\nDELETE MAXEDGES m\n\n"
             "Takes the edges of pairs of variables away (status 1).\n\n{}\n\n"
             "MAXEDGES removes edges until no variable has more than m neighbours, one at a\n"
             "time: of the variable with the most neighbours the edge with the smallest absolute\n"
             "partial gamma under the model that is left. Fixed edges and edges without a gamma\n"
             "stay. Every step is shown, and nothing is removed before a question is answered\n"
             "with yes. A first word of four to eight letters of MAXEDGES is this option, with a\n"
             "number behind it or close to it; the variables M, A, X and E are written M AXE. MAX "
             "4\n"
             "means the pairs MA and X4.\n\nExample: DEL AB CD, DEL A*, DEL MAXEDGES 4",
             PairsHelp)});
}

}  // namespace tarven
