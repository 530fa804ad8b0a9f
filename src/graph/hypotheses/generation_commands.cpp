#include "graph/hypotheses/generation_commands.h"

#include <fmt/format.h>

#include <algorithm>

#include "graph/hypotheses/global_markov.h"
#include "graph/hypotheses/reduction.h"
#include "graph/hypotheses/relevance.h"
#include "graph/hypotheses/relevance_report.h"
#include "graph/hypotheses/separation_report.h"
#include "graph/model/edge_revision.h"
#include "graph/model/graph_workspace.h"
#include "shell/parsed_line.h"
#include "shell/prompts.h"
#include "shell/report.h"
#include "shell/user.h"
#include "shell/variable_lists.h"
#include "tables/independence/hypothesis_workspace.h"

namespace tarven {

namespace {

bool Ask_to_stop() {
    return StepProgress();
}

/// Makes rows over the project's variables the list of the workspace; the list before stays when
/// there are none.
Outcome Take(const std::vector<Hypothesis>& rows) {
    if (rows.empty()) return Outcome::refused;
    Set_hypotheses(rows, HypothesisScope::graph, The_graph.model.Labels);
    return Outcome::done;
}

/// "A+ BC", as typed.
std::string Parameter_text() {
    std::string text(Behind_keyword(The_line.CommandLine));
    const auto first = text.find_first_not_of(' ');
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

Outcome SEPARATE() {
    const std::optional<PairList> pairs = Pairs_of_line();
    if (!pairs) return Outcome::refused;
    SeparationList list;
    {
        const GenerationProgress progress(pairs->size(), "Separation");
        list = Separate(The_graph.model, *pairs, Ask_to_stop);
    }
    Write_lines(Separation_lines(The_graph.model, list));
    return Take(list.rows);
}

Outcome GMP() {
    const std::optional<PairList> pairs = Pairs_of_line();
    if (!pairs) return Outcome::refused;
    SeparationList list;
    {
        const GenerationProgress progress(pairs->size(), "Global Markov hypotheses");
        list = GlobalMarkov(The_graph.model, *pairs, GlobalMarkovVariant::edge_removed_first,
                            Ask_to_stop);
    }
    Write_lines(Global_markov_lines(The_graph.model, list));
    return Take(list.rows);
}

Outcome REDUCE() {
    const std::optional<PairList> pairs = Pairs_of_line();
    if (!pairs) return Outcome::refused;
    ReductionList list;
    {
        const GenerationProgress progress(pairs->size(), "Reduction");
        list = Reduce(The_graph.model, *pairs, Ask_to_stop);
    }
    Write_lines(Reduction_lines(The_graph.model, list, Parameter_text()));
    return Take(list.rows);
}

// ---- RELEVANCE

/// The four labels of a line and the letter behind them.
struct RelevanceParameters {
    bool ok = false;
    bool wildcard = false;  ///< at least one place stands for all variables
    PairList edges, pairs;
    RelevanceWishes wishes;
};

/// The pairs of two places, each a variable or, above nvar, all of them.
PairList Pairs_of_places(int first, int second, int nvar) {
    const auto fits = [nvar](int place, int v) { return place == v || place > nvar; };
    PairList pairs;
    for (int i = 1; i <= nvar; ++i)
        for (int j = i + 1; j <= nvar; ++j)
            if ((fits(first, i) && fits(second, j)) || (fits(first, j) && fits(second, i)))
                pairs.emplace_back(i, j);
    return pairs;
}

RelevanceParameters Parameters_of_relevance(const std::string& line, const ChainGraph& graph) {
    RelevanceParameters parameters;
    std::string text(Behind_keyword(std::string_view(line).substr(0, MaxTextLength)));
    text.erase(text.find_last_not_of(' ') + 1);
    const auto converted = [&](const std::string& of) { return Typed_places(of, graph.Labels); };
    // A last S or R is an option only behind four labels; else it is one of them.
    if (!text.empty() && std::string_view("SsRr").find(text.back()) != std::string_view::npos) {
        const std::string before = text.substr(0, text.size() - 1);
        if (converted(before).size() >= 4) {
            const bool separation = text.back() == 'S' || text.back() == 's';
            parameters.wishes = {.separation = separation, .reducibility = !separation};
            text = before;
        }
    }
    const std::vector<int> places = converted(text);
    if (places.size() < 4) return parameters;
    const auto place = [&](std::size_t k) {
        return places[k] == EveryOther ? graph.nvar + 1 : places[k];
    };
    parameters.edges = Pairs_of_places(place(0), place(1), graph.nvar);
    parameters.pairs = Pairs_of_places(place(2), place(3), graph.nvar);
    for (std::size_t k = 0; k < 4; ++k) parameters.wildcard |= place(k) > graph.nvar;
    parameters.ok = !parameters.edges.empty() && !parameters.pairs.empty();
    return parameters;
}

Outcome Report_one_edge(const ChainGraph& graph, const RelevanceParameters& parameters) {
    const auto edge = parameters.edges[0], pair = parameters.pairs[0];
    if (graph.BlockOf(edge.first) != graph.BlockOf(pair.first)) {
        Write_report(fmt::format(
            "{} has no influence on {}: the lowest blocks of the two pairs differ",
            Pair_text(graph, edge.first, edge.second), Pair_text(graph, pair.first, pair.second)));
        return Outcome::done;
    }
    Write_lines(Relevance_lines(graph, Relevance_of_edge(graph, edge, pair, parameters.wishes),
                                parameters.wishes));
    return Outcome::done;
}

Outcome RELEVANCE() {
    const ChainGraph& graph = The_graph.model;
    const RelevanceParameters parameters = Parameters_of_relevance(The_line.CommandLine, graph);
    if (!parameters.ok) {
        ShowMessage("Improper parameters for analysis of relevance");
        return Outcome::refused;
    }
    if (!parameters.wildcard) return Report_one_edge(graph, parameters);
    RelevanceList list;
    {
        const GenerationProgress progress(parameters.edges.size() * parameters.pairs.size(),
                                          "Relevance");
        list = Relevant_edges(graph, parameters.edges, parameters.pairs, parameters.wishes,
                              Ask_to_stop);
    }
    Write_lines(Relevance_heading(parameters.wishes));
    Write_lines(Relevant_edges_lines(graph, list));
    return Take(list.rows);
}

constexpr const char* SeparateHelp =
    "SEPARATE pairs\n"
    "\n"
    "Makes the smallest hypotheses that the project graph gives for each pair: the two variables\n"
    "are independent given a smallest set that separates them in the graphical regression model "
    "of\n"
    "the block of the first one: that block, the later variables that are parents of it (all of\n"
    "them joined), and the other variable of the pair. An edge between the two is ignored, so an\n"
    "edge of the model gets the hypothesis that would do without it. Every set of the smallest\n"
    "size makes a hypothesis. The report shows the common neighbours, which belong to every set.\n"
    "\n"
    "A search that meets a limit (500 paths, 400 candidates of one size, or the partial paths)\n"
    "takes the neighbours of the end that has fewer, and the report says of which pairs.\n";

constexpr const char* GmpHelp =
    "GMP pairs\n"
    "\n"
    "Makes the smallest hypotheses of the global Markov property: the two variables of each pair\n"
    "are independent given a smallest set that separates them in the moral graph of the model\n"
    "without their edge, from the block of the first variable on. There the parents of each chain\n"
    "component are joined. Limits are those of SEPARATE.\n";

constexpr const char* ReduceHelp =
    "REDUCE pairs\n"
    "\n"
    "Makes one hypothesis a pair: the two variables are independent given the rest of their core,\n"
    "the smallest margin that the regression model of the block of the first one collapses onto\n"
    "with the association of the pair unchanged. A part of the graph is left out when a complete\n"
    "set that does not hold both variables cuts it off. The report shows these sets. The core is\n"
    "exact whatever the size of the graph.\n";

constexpr const char* RelevanceHelp =
    "RELEVANCE v1 v2 v3 v4\n"
    "RELEVANCE v1 v2 v3 v4 S\n"
    "RELEVANCE v1 v2 v3 v4 R\n"
    "\n"
    "Tells whether the edge v1-v2 matters for the analysis of v3 and v4: whether with it and\n"
    "without it other smallest sets separate the pair (SEPARATE), or another core stays around it\n"
    "(REDUCE). S asks for separation only, R for reducibility only; behind four labels the last\n"
    "letter is the option, before that a label. An edge whose lowest block is another than that "
    "of\n"
    "the pair has no influence.\n"
    "\n"
    "A * in a place stands for all variables: then the edges that may be changed (status 1 and 2)\n"
    "and that matter are listed for each pair, as separation hypotheses: those of missing edges,\n"
    "which must be accepted, before those of existing ones, which need not be rejected. An edge\n"
    "that matters for several pairs has its hypotheses once in the list.\n"
    "\n"
    "Example: REL AB CD, REL ** CD S\n"
    "\n"
    "Refused without a graph and for fewer than four labels (\"Improper parameters for analysis "
    "of\n"
    "relevance\").";

}  // namespace

const char* const GraphPairsHelp =
    "\n"
    "Variables are named two by two, by label or by number: ABCD and 1 2 3 4 mean the pairs AB "
    "and\n"
    "CD; an odd last one is dropped. A* means A with every other variable, A+ those with a free\n"
    "edge (status 2), A- those without an edge (status 1); *, + and - alone are all such pairs. A\n"
    "pair named twice is taken once. At most 2500 hypotheses.\n"
    "\n"
    "The list takes the place of the list before. It is shown by SHOW H, tested by TEST, each\n"
    "hypothesis in a table of its own; CHOOSE n makes the table of one.\n";

GenerationProgress::GenerationProgress(std::size_t steps, const std::string& title) {
    ShowProgress(0, static_cast<std::int64_t>(steps), 1, title, "");
}

GenerationProgress::~GenerationProgress() {
    HideProgress();
}

std::optional<PairList> Pairs_of_line() {
    if (!Require_parameters().ok) {
        Refuse_line();
        return std::nullopt;
    }
    std::optional<PairList> pairs = Pairs_of_parameter(The_line.CommandLine, The_graph.model);
    if (!pairs) {
        Refuse_line();
    } else if (pairs->empty()) {
        ShowMessage("No hypotheses generated: no such pair (" + The_line.CommandLine + ")");
        pairs.reset();
    }
    return pairs;
}

void Register_generation_commands() {
    const auto generates = [](const char* keyword, const char* spelling, Outcome (*run)(),
                              const char* activity, const char* summary, const char* help,
                              const char* example) {
        Register_command(
            {.keyword = keyword,
             .run = run,
             .needs = {NeedsGraph},
             .activity = activity,
             .report = Report::opened,
             .spelling = spelling,
             .summary = summary,
             .help = fmt::format("{}{}\nExample: {}\n\nRefused without a graph, for an unknown "
                                 "label and where there is no such pair.",
                                 help, GraphPairsHelp, example)});
    };
    generates("SEP", "SEPARATE", SEPARATE, "Separation",
              "separation hypotheses of the project graph", SeparateHelp, "SEP AB, SEP A*, SEP +");
    generates("GMP", "GMP", GMP, "Separation", "hypotheses from the global Markov property",
              GmpHelp, "GMP AB CD, GMP -");
    generates("RED", "REDUCE", REDUCE, "Reduction", "hypotheses by the collapsibility of the model",
              ReduceHelp, "RED AB, RED A+");
    Register_command({.keyword = "REL",
                      .run = RELEVANCE,
                      .needs = {NeedsGraph},
                      .activity = "Relevance",
                      .report = Report::opened,
                      .spelling = "RELEVANCE",
                      .summary = "edges that matter for the analysis of a pair",
                      .help = RelevanceHelp});
}

}  // namespace tarven
