#include "graph/model/revision_commands.h"

#include <fmt/format.h>

#include <string>

#include "graph/model/edge_revision_report.h"
#include "graph/model/graph_report.h"
#include "graph/model/graph_workspace.h"
#include "project/project.h"
#include "shell/command_table.h"
#include "shell/limits.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/text.h"
#include "shell/user.h"
#include "shell/variable_lists.h"

namespace tarven {

namespace {

/// "The model was revised: AB (ADD)".
std::string History_line() {
    const Command* command = Find_command(The_line.CommandNumber);
    const std::string parameters = Part_read(Behind_keyword(The_line.CommandLine));
    const std::string spelling = command ? command->spelling : The_line.Keyword;
    return "The model was revised: " +
           (parameters.empty() ? spelling : fmt::format("{} ({})", parameters, spelling));
}

Outcome NEWMODEL() {
    const std::int32_t number = The_line.NumericCount > 0 ? The_line.NumericParameters[0] : Free;
    const bool known = number == Absent || number == Free || number == Fixed;
    ChainGraph graph = New_project_graph(known ? static_cast<EdgeStatus>(number) : Free);
    graph.revised = true;
    graph.coordinates_ready = The_graph.model.coordinates_ready;
    graph.coordinates = The_graph.model.coordinates;
    Adopt_model(graph, History_line());
    Write_underlined("Project graph");
    Write_lines(Model_lines(graph, Summarize_graph(graph, {})));
    return Outcome::done;
}

Outcome XPLANATORY() {
    const ExplanatoryRevision revision = Fix_explanatory(The_graph.model);
    ShowMessage(Explanatory_message(revision.reason));
    if (revision.reason != NotFixed::fixed) return Outcome::done;
    Adopt_model(revision.graph, History_line());
    return Outcome::done;
}

}  // namespace

void Tell_unread_places(std::string_view text) {
    const std::string whole = One_byte_a_letter(text);
    const auto rest = whole.find_first_not_of(' ', Part_read(text).size());
    if (rest != std::string::npos)
        ShowMessage(fmt::format("A list of variables ends after {} characters. Not read: {}",
                                MaxTextLength, Printable(whole.substr(rest))));
}

Outcome Revise_pairs_of_line(EdgeStatus status) {
    const std::vector<TypedPair> pairs = Typed_pairs(The_line.CommandLine, The_graph.model.Labels);
    if (pairs.empty()) {
        ShowMessage("Failure: " + The_line.CommandLine);
        return Outcome::refused;
    }
    Tell_unread_places(Behind_keyword(The_line.CommandLine));
    const EdgeRevision revision = Revise_edges(The_graph.model, pairs, status);
    for (const std::string& message : Edge_revision_messages(revision)) ShowMessage(message);
    if (!revision.changed) return Outcome::done;
    Adopt_model(revision.graph, History_line());
    Write_lines(Edge_revision_lines(revision, status));
    return Outcome::done;
}

const char* const PairsHelp =
    "Variables are named two by two, by label or by number: ABCD and 1 2 3 4 mean the pairs AB\n"
    "and CD; an odd last one is dropped. A* means A with every other variable. A list ends after\n"
    "120 characters; what stands behind is told and not read. A pair that has the status already\n"
    "is told, and the next one follows; so is a variable with itself. The change lasts until the\n"
    "project closes: SAVE keeps it on the GRF file, and the end asks.\n"
    "Gamma coefficients of the model before are given up.\n\n"
    "Refused without a graph, for an unknown label and for fewer than two variables.";

void Register_revision_commands() {
    const auto revising = [](const char* keyword, const char* spelling, EdgeStatus status,
                             const char* summary, const char* what) {
        Register_command(
            {.keyword = keyword,
             .run = [status] { return Revise_pairs_of_line(status); },
             .needs = {NeedsGraph},
             .report = Report::opened,
             .spelling = spelling,
             .summary = summary,
             .help = fmt::format("{0} pairs\n\n{1}\n\n{2}\n\nExample: {3} AB CD, {3} A*", spelling,
                                 what, PairsHelp, keyword)});
    };
    revising("ADD", "ADD", Free, "adds edges to the project graph",
             "Gives pairs of variables an edge (status 2).");
    revising("FIX", "FIX", Fixed, "fixes edges of the project graph",
             "Gives pairs of variables a fixed edge (status 3), which no search removes.");
    revising("PRE", "PREVENT", Prevented, "prevents edges of the project graph",
             "Takes the edges of pairs away and keeps them out of the model (status 0).");
    Register_command(
        {.keyword = "NEW",
         .run = NEWMODEL,
         .needs = {{[] { return The_project.N > 2; }, "The graph has not been defined"}},
         .report = Report::opened,
         .spelling = "NEWMODEL",
         .summary = "starts a new project graph",
         .help = "NEWMODEL [status]\n\n"
                 "Replaces the project graph by one in which every pair has the same\n"
                 "status, and prints it: 1 no edges, 2 all edges, 3 all edges fixed.\n"
                 "Any other status, or none, is 2. Coordinates stay.\n\n"
                 "Example: NEW 1\n\n"
                 "Refused for a project of fewer than three variables."});
    Register_command({.keyword = "XPL",
                      .run = XPLANATORY,
                      .needs = {NeedsGraph},
                      .report = Report::opened,
                      .spelling = "XPLANATORY",
                      .summary = "fixes the edges of the last block",
                      .help = "XPLANATORY\n\n"
                              "Fixes the edges between all variables of the last block, which are\n"
                              "purely explanatory: the model is conditional on them.\n\n"
                              "Changes nothing when there is one block, or one variable in the\n"
                              "last, or when these edges are fixed already."});
}

}  // namespace tarven
