// Whatever a graph file holds, a graph that is made of it can be computed with, writes and reads
// back as it is, and the strict reader takes nothing that the tolerant one refuses.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "graph/model/graph_file.h"
#include "shell/text.h"

namespace {

using namespace tarven;

void Require(bool holds) {
    if (!holds) std::abort();
}

void Check(const ChainGraph& graph) {
    Require(graph.nvar >= 1 && graph.nvar <= MaxVariables);
    Require(graph.Labels.size() == static_cast<std::size_t>(graph.nvar));
    Require(graph.Nblocks >= 1 && graph.Nblocks <= graph.nvar);
    for (std::size_t b = 1; b <= static_cast<std::size_t>(graph.Nblocks); ++b)
        Require(graph.Cutpoints[b] > graph.Cutpoints[b - 1] && graph.Cutpoints[b] <= graph.nvar);
    for (int i = 1; i <= graph.nvar; ++i) {
        Require(i == 1 || graph.BlockOf(i) >= graph.BlockOf(i - 1));
        Require(!graph.Adjacent(i, i) && graph.StatusOf(i, i) == Fixed);
        for (int j = i + 1; j <= graph.nvar; ++j)
            Require(graph.Adjacent(i, j) == graph.Adjacent(j, i) &&
                    graph.Adjacent(i, j) == (graph.StatusOf(i, j) >= Free));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> lines =
        Split_lines(To_latin1({reinterpret_cast<const char*>(data), size}));
    const GraphFile tolerant = Read_graph_file(lines, "x.GRF");
    Require(tolerant.ok == tolerant.error.empty());
    if (tolerant.ok) {
        Check(tolerant.graph);
        const std::vector<std::string> names(tolerant.graph.Labels.size());
        const std::vector<std::string> written = GRF_lines(tolerant.graph, names);
        const GraphFile again = Read_graph_file(written, "x.GRF");
        Require(again.ok && again.graph == tolerant.graph);
        Require(GRF_lines(again.graph, names) == written);
    }
    const GraphFile strict = Read_graph_file_strictly(lines, "x.GRF");
    Require(strict.ok == strict.error.empty());
    if (!strict.ok) return 0;
    Check(strict.graph);
    Require(tolerant.ok && tolerant.graph.GRF == strict.graph.GRF);
    return 0;
}
