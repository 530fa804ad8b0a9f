#include "support/graphs.h"

#include <fmt/format.h>

#include <stdexcept>

namespace tarven {

namespace {

ChainGraph Empty_chain_graph(const std::string& labels, const std::vector<int>& blocks) {
    One_based<int, MaxVariables> LevelEnd;
    for (std::size_t b = 0; b < blocks.size(); ++b) LevelEnd[b + 1] = blocks[b];
    return New_chain_graph(labels, static_cast<int>(blocks.size()), LevelEnd, Absent);
}

}  // namespace

UndirectedGraph Random_graph(std::mt19937& random, int nvar, double density) {
    UndirectedGraph graph{nvar, Variables_between(1, nvar), {}};
    std::bernoulli_distribution edge(density);
    for (int v = 1; v <= nvar; ++v)
        for (int w = v + 1; w <= nvar; ++w)
            if (edge(random)) Join(graph, v, w);
    return graph;
}

UndirectedGraph Graph_of_edges(int nvar, const std::vector<std::pair<int, int>>& edges) {
    UndirectedGraph graph{nvar, Variables_between(1, nvar), {}};
    for (const auto& [v, w] : edges) Join(graph, v, w);
    return graph;
}

ChainGraph Random_chain_graph(std::mt19937& random, const std::vector<int>& blocks,
                              double density) {
    std::string labels;
    for (int v = 0; v < blocks.back(); ++v) labels += static_cast<char>('A' + v);
    ChainGraph graph = Empty_chain_graph(labels, blocks);
    std::bernoulli_distribution edge(density);
    for (int i = 1; i <= graph.nvar; ++i)
        for (int j = i + 1; j <= graph.nvar; ++j)
            if (edge(random)) Set_status(graph, i, j, Free);
    return graph;
}

ChainGraph Chain_graph_of_rows(const std::string& labels, const std::vector<int>& blocks,
                               const std::vector<std::string>& rows) {
    ChainGraph graph = Empty_chain_graph(labels, blocks);
    for (std::size_t i = 1; i <= rows.size(); ++i)
        for (std::size_t j = 1; j <= rows.size(); ++j)
            graph.Status[i][j] = static_cast<std::uint8_t>(rows[i - 1].at(j - 1) - '0');
    Derive_adjacency(graph);
    return graph;
}

ChainGraph Chain_graph_of_pairs(const std::string& labels, const std::vector<int>& blocks,
                                const std::vector<std::string>& pairs) {
    ChainGraph graph = Empty_chain_graph(labels, blocks);
    for (const std::string& pair : pairs) {
        const std::vector<int> ends = Numbers_of(labels, pair);
        Set_status(graph, ends.at(0), ends.at(1), Free);
    }
    return graph;
}

std::vector<int> Numbers_of(const std::string& labels, const std::string& members) {
    std::vector<int> numbers;
    for (const char label : members) {
        const std::size_t at = labels.find(label);
        if (at == std::string::npos) throw std::runtime_error("no such label");
        numbers.push_back(static_cast<int>(at) + 1);
    }
    return numbers;
}

VariableSet Set_of(const std::string& labels, const std::string& members) {
    VariableSet set = 0;
    for (const int v : Numbers_of(labels, members)) set |= Only(v);
    return set;
}

SetList Sets_of(const std::string& labels, const std::vector<std::string>& sets) {
    SetList list;
    for (const std::string& set : sets) list.push_back(Set_of(labels, set));
    return list;
}

std::string Show(const UndirectedGraph& graph) {
    std::string text = fmt::format("{} variables:", graph.nvar);
    for (const int v : Members(graph.vertices))
        for (const int w : Members(graph.Neighbours(v)))
            if (v < w) text += fmt::format(" {}-{}", v, w);
    return text;
}

}  // namespace tarven
