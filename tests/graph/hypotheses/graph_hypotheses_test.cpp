#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

#include "graph/hypotheses/check_hypotheses.h"
#include "graph/hypotheses/core_and_separation.h"
#include "graph/hypotheses/global_markov.h"
#include "graph/hypotheses/moral_graph.h"
#include "graph/hypotheses/reduction.h"
#include "graph/hypotheses/relevance.h"
#include "graph/hypotheses/relevance_report.h"
#include "graph/hypotheses/separation_report.h"
#include "support/graphs.h"
#include "support/reference_figures.h"
#include "support/session.h"

namespace tarven {
namespace {

/// The models of graphs.json, by name, beside what was found for them elsewhere.
struct ReferenceModel {
    ChainGraph graph;
    nlohmann::json found;
};

std::map<std::string, ReferenceModel> Reference_models() {
    std::map<std::string, ReferenceModel> models;
    for (const auto& one : Reference_figures("graph_hypotheses.json", "graphs"))
        models[one.at("name")].found = one;
    for (const auto& one : Reference_figures("graphs.json", "graphs"))
        if (const auto at = models.find(one.at("name")); at != models.end())
            at->second.graph =
                Chain_graph_of_rows(one.at("labels"), one.at("blocks"), one.at("status"));
    return models;
}

std::pair<int, int> Pair_of(const ChainGraph& graph, const std::string& labels) {
    const std::vector<int> ends = Numbers_of(graph.Labels, labels);
    return {std::min(ends.at(0), ends.at(1)), std::max(ends.at(0), ends.at(1))};
}

PairList All_pairs(const ChainGraph& graph) {
    return Pairs_of_parameter("SEP *", graph).value_or(PairList{});
}

SetList Sets_of_rows(const std::vector<Hypothesis>& rows) {
    SetList sets;
    for (const Hypothesis& row : rows) {
        sets.push_back(0);
        for (const int v : Conditioning_variables(row)) sets.back() |= Only(v);
    }
    return sets;
}

TEST(GraphHypotheses, AgreeWithThoseFoundElsewhere) {
    const auto models = Reference_models();
    ASSERT_EQ(models.size(), 6u);
    for (const auto& [name, model] : models) {
        const auto& [graph, found] = model;
        const std::string& labels = graph.Labels;
        for (const auto& one : found.value("moral", nlohmann::json::array())) {
            const UndirectedGraph moral = MoralGraph(graph, one.at("level"));
            std::vector<std::string> added;
            for (const int v : Members(moral.vertices))
                for (const int w : Members(moral.Neighbours(v) & ~graph.GRF[std::size_t(v)]))
                    if (v < w)
                        added.push_back({labels[std::size_t(v - 1)], labels[std::size_t(w - 1)]});
            std::set<std::string> expected = one.at("added");
            EXPECT_EQ(std::set<std::string>(added.begin(), added.end()), expected)
                << name << " level " << one.at("level");
        }
        for (const auto& one : found.value("gmp_cuts", nlohmann::json::array())) {
            if (one.at("search_limits_hit") != false) continue;
            const std::pair<int, int> pair = Pair_of(graph, one.at("pair"));
            const auto variant = GlobalMarkovVariant::edge_removed_first;
            SetList sets = Sets_of_rows(GlobalMarkov(graph, {&pair, 1}, variant).rows);
            SetList expected = Sets_of(labels, one.at("separators"));
            std::sort(expected.begin(), expected.end(), Lexicographically_before);
            EXPECT_EQ(sets, expected) << name << " " << one.at("pair");
        }
        for (const auto& one : found.at("gmp"))
            for (const int variant : {1, 2}) {
                const std::pair<int, int> pair = Pair_of(graph, one.at("pair"));
                const SeparationList list =
                    GlobalMarkov(graph, {&pair, 1}, static_cast<GlobalMarkovVariant>(variant));
                EXPECT_EQ(Sets_of_rows(list.rows),
                          Sets_of(labels, one.at(variant == 1 ? "variant_1" : "variant_2")))
                    << name << " " << one.at("pair") << " variant " << variant;
            }
        for (const auto& one : found.at("reduce")) {
            const std::pair<int, int> pair = Pair_of(graph, one.at("pair"));
            const ReductionList list = Reduce(graph, {&pair, 1});
            EXPECT_EQ(list.pairs.at(0).core, Set_of(labels, one.at("core")))
                << name << " " << one.at("pair");
        }
        for (const auto& one : found.at("relevance")) {
            const Relevance relevance = Relevance_of_edge(graph, Pair_of(graph, one.at("edge")),
                                                          Pair_of(graph, one.at("pair")), {});
            const std::string what = name + " " + one.dump();
            EXPECT_EQ(relevance.included, one.at("currently") == "included") << what;
            if (one.contains("excluded")) {
                const auto &out = one.at("excluded"), &in = one.at("included");
                EXPECT_EQ(relevance.separators_excluded.sets, Sets_of(labels, out.at("separators")))
                    << what;
                EXPECT_EQ(relevance.separators_included.sets, Sets_of(labels, in.at("separators")))
                    << what;
                EXPECT_EQ(relevance.core_excluded, Set_of(labels, out.at("core"))) << what;
                EXPECT_EQ(relevance.core_included, Set_of(labels, in.at("core"))) << what;
            }
            EXPECT_EQ(relevance.on_separation(), one.value("influences_separation", false)) << what;
            EXPECT_EQ(relevance.on_reducibility(), one.value("influences_reducibility", false))
                << what;
        }
    }
}

/// Whether x and y are m-separated by z in a chain graph: no walk between them in the moral graph
/// of the smallest ancestral set. Lauritzen (1996), 3.2.3.
bool Separated_in_chain_graph(const ChainGraph& graph, int x, int y, VariableSet z) {
    VariableSet ancestral = Only(x) | Only(y) | z;
    for (VariableSet before = 0; before != ancestral;) {
        before = ancestral;
        for (const int v : Members(before))
            for (const int w : Members(graph.GRF[std::size_t(v)]))
                if (graph.BlockOf(w) >= graph.BlockOf(v)) ancestral |= Only(w);
    }
    ChainGraph part = graph;
    for (int i = 1; i <= graph.nvar; ++i)
        for (int j = i + 1; j <= graph.nvar; ++j)
            if (!Contains(ancestral, i) || !Contains(ancestral, j)) Set_status(part, i, j, Absent);
    const UndirectedGraph moral = MoralGraph(part, 1);
    const UndirectedGraph rest = InducedSubgraph(moral, ancestral & ~z);
    return !Contains(ReachableInSteps(rest, graph.nvar)[std::size_t(x)], y);
}

TEST(GraphHypotheses, FollowFromTheModelWithoutTheEdge) {
    std::mt19937 random(17);
    for (int k = 0; k < 60; ++k) {
        const ChainGraph graph = Random_chain_graph(random, {3, 5, 9}, 0.1 * (2 + k % 5));
        for (const auto& [i, j] : All_pairs(graph)) {
            ChainGraph without = graph;
            Set_status(without, i, j, Absent);
            const std::pair<int, int> pair{i, j};
            for (const auto variant : {GlobalMarkovVariant::edge_removed_first,
                                       GlobalMarkovVariant::edge_removed_last}) {
                const SeparationList list = GlobalMarkov(graph, {&pair, 1}, variant);
                for (const VariableSet z : Sets_of_rows(list.rows))
                    EXPECT_TRUE(Separated_in_chain_graph(without, i, j, z));
            }
            const VariableSet core = Reduce(graph, {&pair, 1}).pairs[0].core;
            EXPECT_TRUE(Separated_in_chain_graph(without, i, j, core & ~Only(i) & ~Only(j)));
        }
    }
}

TEST(GraphHypotheses, MoralGraphKeepsTheBlocksFromItsLevelOn) {
    // A and B are joined, so that their parents C and D are; E is a parent of C, and alone.
    const ChainGraph graph =
        Chain_graph_of_pairs("ABCDEF", {2, 4, 6}, {"AB", "AC", "BD", "CE", "CF", "AF"});
    const auto edges = [&](int level) {
        const UndirectedGraph moral = MoralGraph(graph, level);
        std::string text;
        for (const int v : Members(moral.vertices))
            for (const int w : Members(moral.Neighbours(v)))
                if (v < w) text += Labels_of_set(graph, Only(v) | Only(w)) + " ";
        return text;
    };
    EXPECT_EQ(edges(1), "AB AC AF BD CD CE CF DF EF ");
    EXPECT_EQ(edges(2), "CE CF EF ");
    EXPECT_EQ(edges(3), "");
    EXPECT_EQ(edges(4), "");
}

TEST(PairsOfParameter, MarksChooseByStatus) {
    ChainGraph graph = Chain_graph_of_pairs("ABCD", {4}, {"AB", "CD"});
    Set_status(graph, 1, 3, Fixed);
    Set_status(graph, 2, 4, Prevented);  // AD and BC are absent
    struct Row {
        const char* line;
        const char* pairs;
    };
    for (const Row& row : std::vector<Row>{{"SEP AB", "AB"},
                                           {"SEP a b cd", "AB CD"},
                                           {"SEP 4 2 A", "BD"},
                                           {"SEP DCBA", "AB CD"},
                                           {"SEP ABBA", "AB"},
                                           {"SEP A*", "AB AC AD"},
                                           {"SEP *C", "AC BC CD"},
                                           {"SEP **", "AB AC AD BC BD CD"},
                                           {"SEP *", "AB AC AD BC BD CD"},
                                           {"SEP A+", "AB"},
                                           {"SEP A?", "AB"},
                                           {"SEP A-", "AD"},
                                           {"SEP +", "AB CD"},
                                           {"SEP -", "AD BC"},
                                           {"SEP A-C+", "AD CD"},
                                           {"SEP A+B*", "AB BC BD"},
                                           {"SEP *-", "AD BC"},
                                           {"SEP +-", ""},
                                           {"SEP A 9", "AB AC AD"},
                                           {"SEP A 5 B+", "AB AC AD"},
                                           {"SEP A 258", "AB AC AD"},
                                           {"SEP AA", ""},
                                           {"SEP A 0", ""},
                                           {"SEP A", ""}}) {
        const std::optional<PairList> pairs = Pairs_of_parameter(row.line, graph);
        ASSERT_TRUE(pairs) << row.line;
        std::string text;
        for (const auto& [i, j] : *pairs)
            text += (text.empty() ? "" : " ") + Labels_of_set(graph, Only(i) | Only(j));
        EXPECT_EQ(text, row.pairs) << row.line;
    }
    EXPECT_FALSE(Pairs_of_parameter("SEP AX", graph));
    EXPECT_FALSE(Pairs_of_parameter("SEP A#", graph));
}

TEST(CheckHypotheses, StandByStatusAndCountWhatTheListDoesNotHold) {
    ChainGraph graph = Chain_graph_of_pairs("ABCDE", {5}, {"AB", "BC", "CD"});
    Set_status(graph, 1, 5, Prevented);
    Set_status(graph, 3, 4, Fixed);
    const CheckHypotheses made = Generate_check_hypotheses(graph);
    std::string edges, counts;
    for (const CheckedStatus& of : made.statuses) {
        EXPECT_EQ(of.whole, of.edges);
        edges += std::to_string(of.edges) + " ";
        counts += std::to_string(of.first) + "+" + std::to_string(of.count) + " ";
    }
    EXPECT_EQ(edges, "1 6 2 1 ");
    // A&D is separated by B and by C, each of the other pairs by one set.
    EXPECT_EQ(counts, "0+1 1+7 8+2 10+1 ");
    EXPECT_EQ(made.generated, 11u);
    EXPECT_EQ(Hypothesis_label(made.rows.at(10), graph.Labels), "C&D");

    // Pairs of a cycle are separated by any two variables on the two ways between them.
    std::mt19937 random(23);
    std::vector<std::pair<int, int>> cycle = {{1, 30}};
    for (int v = 1; v < 30; ++v) cycle.push_back({v, v + 1});
    ChainGraph large = Random_chain_graph(random, {30}, 0);
    for (const auto& [v, w] : cycle) Set_status(large, v, w, Free);
    const CheckHypotheses many = Generate_check_hypotheses(large);
    EXPECT_EQ(many.rows.size(), std::size_t{MaxHypotheses});
    std::size_t sets = 0;
    for (int between = 1; between < 29; ++between)
        sets += std::size_t(between) * std::size_t(28 - between);
    EXPECT_EQ(many.statuses[1].count, sets * 30 / 2);
    EXPECT_EQ(many.statuses[2].count, 30u * 28u);
    EXPECT_EQ(many.statuses[1].edges, 30u * 27u / 2u);
    EXPECT_LT(many.statuses[1].whole, many.statuses[1].edges);
    EXPECT_EQ(many.statuses[2].whole, 0u);
    EXPECT_EQ(many.generated, many.statuses[1].count + many.statuses[2].count);
}

std::string Labels_of_rows(const RelevanceList& list) {
    std::string rows;
    for (const Hypothesis& row : list.rows) rows += Hypothesis_label(row, "ABCD") + " ";
    return rows;
}

TEST(Relevance, ListsMissingEdgesBeforeExistingOnes) {
    // Between A and D: the paths A-B-D and A-C-D. Without B-D one set less is needed, B-C joins the
    // ways; AD itself is not asked.
    const ChainGraph graph = Chain_graph_of_pairs("ABCD", {4}, {"AB", "BD", "AC", "CD"});
    const RelevanceList list = Relevant_edges(graph, All_pairs(graph), {{1, 4}}, {true, false});
    ASSERT_EQ(list.pairs.size(), 1u);
    EXPECT_TRUE(list.pairs[0].missing.empty());
    EXPECT_EQ(Labels_of_rows(list), "A&B|C A&B|D A&C|B A&C|D B&D|A B&D|C C&D|A C&D|B ");
    EXPECT_EQ(list.pairs[0].existing.size(), 8u);

    int asked = 0;
    const RelevanceList cut =
        Relevant_edges(graph, All_pairs(graph), {{1, 4}}, {}, [&] { return ++asked > 2; });
    EXPECT_TRUE(cut.stopped);
    EXPECT_EQ(cut.rows.size(), 4u);
}

TEST(Relevance, ListsNoEdgeThatMayNotBeChanged) {
    // Each edge between A and D matters for that pair, and so do the short cuts A-C and B-D.
    ChainGraph graph = Chain_graph_of_pairs("ABCD", {4}, {"AB", "BC", "CD"});
    const auto rows = [&] {
        return Labels_of_rows(Relevant_edges(graph, All_pairs(graph), {{1, 4}}, {true, false}));
    };
    EXPECT_EQ(rows(), "A&C|B B&D|C A&B B&C C&D ");
    Set_status(graph, 1, 3, Prevented);
    Set_status(graph, 3, 4, Fixed);
    EXPECT_EQ(rows(), "B&D|C A&B B&C ");
}

TEST(Relevance, HoldsTheRowsOfAnEdgeOnceWhateverItsPairs) {
    const ChainGraph graph = Chain_graph_of_pairs("ABCD", {4}, {"AB", "BC", "CD"});
    const RelevanceList list =
        Relevant_edges(graph, All_pairs(graph), {{1, 3}, {1, 4}}, {true, false});
    EXPECT_EQ(Labels_of_rows(list), "A&D|B A&D|C A&B B&C A&C|B B&D|C C&D ");
    ASSERT_EQ(list.pairs.size(), 2u);
    EXPECT_EQ(list.pairs[0].missing, (std::vector<std::size_t>{1, 2}));
    EXPECT_EQ(list.pairs[0].existing, (std::vector<std::size_t>{3, 4}));
    EXPECT_EQ(list.pairs[1].missing, (std::vector<std::size_t>{5, 6}));
    EXPECT_EQ(list.pairs[1].existing, (std::vector<std::size_t>{3, 4, 7}));
    EXPECT_TRUE(Has_line_with(Relevant_edges_lines(graph, list),
                              "Hypotheses 3 to 4 and 7 relate to existing edges."));
}

TEST(Relevance, ListsAsManyRowsAsThereIsRoomFor) {
    // A cycle: the missing edges of 30 variables have more than 2500 separators.
    std::mt19937 random(23);
    ChainGraph cycle = Random_chain_graph(random, {30}, 0);
    for (int v = 1; v <= 30; ++v)
        Set_status(cycle, std::min(v, v % 30 + 1), std::max(v, v % 30 + 1), Free);
    const RelevanceList list =
        Relevant_edges(cycle, All_pairs(cycle), {{1, 15}, {2, 16}}, {true, false});
    EXPECT_TRUE(list.incomplete);
    EXPECT_EQ(list.rows.size(), std::size_t{MaxHypotheses});
    ASSERT_EQ(list.pairs.size(), 1u);
    EXPECT_EQ(list.pairs[0].missing.size(), std::size_t{MaxHypotheses});
}

TEST(Relevance, NamesThePairsThatALimitSeparatesByNeighbours) {
    // Between A and V ten paths of two inner variables, with 2^10 smallest cuts; a chord makes no
    // difference to that.
    const std::string labels = "ABCDEFGHIJKLMNOPQRSTUV";
    std::vector<std::string> pairs;
    for (std::size_t k = 1; k <= 10; ++k) {
        pairs.push_back({'A', labels[k]});
        pairs.push_back({labels[k], labels[k + 10]});
        pairs.push_back({labels[k + 10], 'V'});
    }
    const ChainGraph graph = Chain_graph_of_pairs(labels, {22}, pairs);
    const Relevance one = Relevance_of_edge(graph, {2, 3}, {1, 22}, {true, false});
    EXPECT_TRUE(Has_line_with(Relevance_lines(graph, one, {true, false}), "  A & V"));
    const Relevance core = Relevance_of_edge(graph, {2, 3}, {1, 22}, {false, true});
    EXPECT_FALSE(Has_line_with(Relevance_lines(graph, core, {false, true}), "Local Markov"));
    const RelevanceList list = Relevant_edges(graph, {{1, 2}}, {{1, 22}}, {true, false});
    ASSERT_EQ(list.by_neighbours.size(), 1u);
    EXPECT_EQ(list.by_neighbours[0].j, 22);
    EXPECT_TRUE(Has_line_with(Relevant_edges_lines(graph, list), "  A & V"));
}

TEST(CoreAndSeparation, TakesRepeatedRowsOnceAndSaysWhatTheListCannotHold) {
    // A path and a cycle: A&C has the row of separation for its core, D&F has not.
    const ChainGraph graph =
        Chain_graph_of_pairs("ABCDEFGH", {8}, {"AB", "BC", "DE", "EF", "FG", "GH", "DH"});
    const CoreAndSeparation made = Core_and_separation(graph, PairList{{1, 3}, {4, 6}});
    EXPECT_EQ(made.rows.size(), made.separation.rows.size() + 1);
    EXPECT_FALSE(made.incomplete);
    const std::vector<std::string> lines = Core_and_separation_lines(graph, made);
    EXPECT_TRUE(Has_line_with(lines, "Removed: A & C"));
    EXPECT_FALSE(Has_line_with(lines, "Removed: D & F"));
    EXPECT_TRUE(Has_line_with(lines, "1 hypoteses were removed"));

    // 39 times the 64 sets of six paths, and two pairs of two sets: the list is full, and the cores
    // have no room.
    std::vector<std::string> edges;
    const std::string labels = "ABCDEFGHIJKLMN";
    for (std::size_t k = 0; k < 6; ++k) {
        edges.push_back({'A', labels[1 + k]});
        edges.push_back({labels[1 + k], labels[7 + k]});
        edges.push_back({labels[7 + k], 'N'});
    }
    PairList pairs(39, {1, 14});
    pairs.insert(pairs.end(), {{1, 2}, {1, 3}});
    const CoreAndSeparation full =
        Core_and_separation(Chain_graph_of_pairs(labels, {14}, edges), pairs);
    EXPECT_FALSE(full.separation.incomplete);
    EXPECT_EQ(full.rows.size(), std::size_t{MaxHypotheses});
    EXPECT_TRUE(full.incomplete);
}

}  // namespace
}  // namespace tarven
