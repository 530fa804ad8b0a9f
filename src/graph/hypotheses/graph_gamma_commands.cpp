#include "graph/hypotheses/graph_gamma_commands.h"

#include <fmt/format.h>

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
#include "shell/words.h"
#include "tables/independence/case_strata.h"
#include "tables/ordinal/gamma_commands.h"
#include "tables/ordinal/gammas_workspace.h"

namespace tarven {

namespace {

RunControl Progress_of_gammas() {
    return {[](std::int64_t steps) { ShowProgress(0, steps, 1, "Partial gamma coefficients", ""); },
            [] { return StepProgress(); }, [] { HideProgress(); }, The_session.jobs};
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

bool Asks_for_max_edges() {
    return Upper(Get_word(2, The_line.CommandLine)) == "MAXEDGES";
}

Outcome DELETE_MAXEDGES() {
    if (The_line.NumericCount != 1 || The_line.NumericParameters[0] < 0 ||
        The_line.NumericParameters[0] > MaxVariables) {
        ShowMessage("DELETE MAXEDGES needs a number: the most neighbours that a variable may keep");
        return Outcome::refused;
    }
    const Result<PackedCases> packed = Pack_cases(Cases_of_project(), [] { return Stop_asked(); });
    if (!packed) return Refuse(packed.failure());
    const int m = The_line.NumericParameters[0];
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
    return Asks_for_max_edges() ? DELETE_MAXEDGES() : Revise_pairs_of_line(Absent);
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
             "with yes.\n\nExample: DEL AB CD, DEL A*, DEL MAXEDGES 4",
             PairsHelp)});
}

}  // namespace tarven
