#include "graph/model/show_graph_commands.h"

#include <algorithm>
#include <span>
#include <string>

#include "graph/model/edge_revision.h"
#include "graph/model/graph_comparison_report.h"
#include "graph/model/graph_report.h"
#include "graph/model/graph_workspace.h"
#include "graph/model/marginal_model_report.h"
#include "graph/model/named_graph_workspace.h"
#include "graph/model/revision_commands.h"
#include "project/project.h"
#include "shell/commands.h"
#include "shell/files.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/text.h"
#include "shell/user.h"
#include "shell/variable_lists.h"
#include "shell/words.h"
#include "tables/ordinal/gammas_workspace.h"

namespace tarven {

namespace {

void SHOW_G() {
    const ChainGraph& graph = The_graph.model;
    std::span<const double> gammas;
    if (The_project_gammas.ready && !The_project_gammas.marginal)
        gammas = The_project_gammas.IJXgamma;
    Write_underlined("Project graph: " + Source_line(graph));
    Write_lines(Variables_of_graph_lines(graph, Names_of_variables()));
    Write_lines(Model_lines(graph, Summarize_graph(graph, gammas)));
    Write_lines(History_lines(The_graph.history));
}

void Write_comparison(const NamedGraph& one, const NamedGraph& other) {
    Write_lines(Comparison_lines(one, other, Compare_graphs(one.graph, other.graph)));
}

/// A graph file that a line names; not ok, with the message, when it cannot be read.
NamedGraphFile Graph_named(const std::string& name) {
    const auto found = Find_file(Text_path(name));
    if (found) return Read_graph_strictly(*found);
    const std::string why = Why_no_file(Text_path(name));
    ShowMessage(why.empty() ? Printable(name) + " does not exist" : why);
    return {};
}

void Compare_with_saved() {
    const auto found = Find_file(The_project.files.GRF.path);
    const std::string why = found ? "" : Why_no_file(The_project.files.GRF.path);
    if (!found) return ShowMessage(why.empty() ? "No GRF file" : why);
    const NamedGraphFile saved = Read_graph_of_project(*found);
    if (!saved.ok) return;
    Write_underlined("Comparison of the current model and the model saved on the GRF file");
    Write_comparison({"The current model", The_graph.model},
                     {"The model on the GRF file", saved.graph});
}

/// SHOW G COMPARE, with no file, one or two.
void SHOW_G_COMPARE() {
    const std::string first = Get_name(4, The_line.CommandLine);
    const std::string second = Get_name(5, The_line.CommandLine);
    if (first.empty()) return Compare_with_saved();
    const NamedGraphFile one = Graph_named(first);
    if (!one.ok) return;
    if (second.empty()) {
        Write_underlined("Comparison of two graphs");
        return Write_comparison({"The current model", The_graph.model}, {first, one.graph});
    }
    const NamedGraphFile other = Graph_named(second);
    if (!other.ok) return;
    Write_underlined("Comparison of two graphs");
    Write_comparison({first, one.graph}, {second, other.graph});
}

/// SHOW G MARGINAL and a list of variables.
void SHOW_G_MARGINAL() {
    const std::string_view word = Behind_keyword(Behind_keyword(The_line.CommandLine));
    const std::string_view list = Behind_keyword(word);
    const std::vector<int> variables = Typed_places(list, The_graph.model.Labels);
    const bool known = std::all_of(variables.begin(), variables.end(),
                                   [](int v) { return v >= 1 && v <= The_graph.model.nvar; });
    if (variables.empty() || !known) return ShowMessage("Failure: " + The_line.CommandLine);
    Tell_unread_places(list);
    Write_lines(Marginal_model_lines(The_graph.model, MarginalModel(The_graph.model, variables)));
}

}  // namespace

void Register_show_graph() {
    const Need defined = {Graph_defined, "Graph is not defined."};
    Register_letter(LetterCommand::show, {.letter = 'G',
                                          .run = SHOW_G,
                                          .needs = {defined},
                                          .summary = "the project graph: edges, cliques, history"});
    Register_letter_word(LetterCommand::show,
                         {.letter = 'G',
                          .beginning = "COM",
                          .spelling = "COMPARE [file [file]]",
                          .run = SHOW_G_COMPARE,
                          .needs = {defined},
                          .summary = "the graph and the one saved, or graph files (.GRF)"});
    Register_letter_word(LetterCommand::show,
                         {.letter = 'G',
                          .beginning = "MAR",
                          .spelling = "MARGINAL variables",
                          .run = SHOW_G_MARGINAL,
                          .needs = {defined},
                          .summary = "the marginal model; asks about the first two variables"});
}

}  // namespace tarven
