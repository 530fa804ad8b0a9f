// Revision of edges, as ADD, DELETE, FIX, PREVENT and XPLANATORY make it, and what it tells.

#include "graph/model/edge_revision.h"

#include <gtest/gtest.h>

#include "graph/model/edge_revision_report.h"
#include "support/graphs.h"

namespace tarven {
namespace {

using Lines = std::vector<std::string>;

TEST(EdgeRevision, ReadsPairsTwoByTwo) {
    using Pairs = std::vector<TypedPair>;
    const struct {
        const char* line;
        Pairs pairs;
    } rows[] = {
        {"ADD AB", {{1, 2}}},
        {"add   a B c ", {{1, 2}}},
        {"ADD 1 2 C4", {{1, 2}, {3, 4}}},
        {"ADD A*", {{1, EveryOther}}},
        {"ADD *A", {{EveryOther, 1}}},
        {"ADD A 5", {{1, 5}}},  // the number that the converters use for "*"
        {"ADD A 6", {{1, 6}}},
        {"ADD A 260", {{1, 260}}},  // no byte: not variable 4
        {"ADD A 99999999999", {{1, 999}}},
        {"ADD A-B + C?D", {{1, 2}, {3, 4}}},
        {"ADD A#", {}},
        {"ADD AA", {{1, 1}}},
        {"ADD A", {}},
        {"ADD", {}},
        {"ADD AX", {}},
    };
    for (const auto& row : rows) EXPECT_EQ(Typed_pairs(row.line, "ABCD"), row.pairs) << row.line;
}

TEST(EdgeRevision, ChangesThePairsNamedAndNoOther) {
    std::mt19937 random(7);
    for (int k = 0; k < 200; ++k) {
        const ChainGraph graph = Random_chain_graph(random, {2, 5, 8}, 0.4);
        const auto status = static_cast<EdgeStatus>(random() % 4);
        std::vector<TypedPair> pairs;
        for (int p = 0; p < 3; ++p)
            pairs.push_back(
                {static_cast<int>(random() % 11) - 1, static_cast<int>(random() % 11) - 1});
        const EdgeRevision revision = Revise_edges(graph, pairs, status);
        bool changed = false;
        for (int i = 1; i <= 8; ++i)
            for (int j = 1; j <= 8; ++j) {
                if (i == j) continue;
                bool named = false;
                for (const TypedPair& pair : pairs)
                    named = named || pair == TypedPair{i, j} || pair == TypedPair{j, i} ||
                            (pair.second == EveryOther && (pair.first == i || pair.first == j));
                const std::uint8_t expected = named ? std::uint8_t{status} : graph.StatusOf(i, j);
                EXPECT_EQ(revision.graph.StatusOf(i, j), expected);
                changed = changed || revision.graph.StatusOf(i, j) != graph.StatusOf(i, j);
            }
        ChainGraph derived = revision.graph;
        Derive_adjacency(derived);
        EXPECT_EQ(derived.GRF, revision.graph.GRF);
        EXPECT_EQ(revision.changed, changed);
        EXPECT_EQ(revision.graph.revised, changed);
        if (changed) continue;
        EXPECT_EQ(revision.graph, graph) << "what is refused changes nothing";
    }
}

TEST(EdgeRevision, TellsWhatBecameOfEachPair) {
    const ChainGraph graph = Chain_graph_of_pairs("ABCD", {2, 4}, {"AB", "AC"});
    const EdgeRevision revision =
        Revise_edges(graph, Typed_pairs("ADD A* BB C 9 *C DB", graph.Labels), Free);
    EXPECT_EQ(Edge_revision_messages(revision),
              (Lines{"No change: New status is the same as the old status (AB)",
                     "No change: New status is the same as the old status (AC)",
                     "Failure: The graph was not revised (BB)",
                     "Failure: The graph was not revised (C 9)",
                     "Failure: The graph was not revised (*C)"}));
    EXPECT_EQ(Edge_revision_lines(revision, Free), Lines{"Dependent: AD DB"});
}

// A graph read with two statuses for a pair: the command settles it.
TEST(EdgeRevision, GivesAnAsymmetricPairOneStatus) {
    const ChainGraph graph = Chain_graph_of_rows("AB", {2}, {"32", "13"});
    const EdgeRevision revision = Revise_edges(graph, {{1, 2}}, Free);
    EXPECT_TRUE(revision.changed);
    EXPECT_EQ(revision.graph.StatusOf(2, 1), Free);
}

TEST(EdgeRevision, FixesTheLastBlock) {
    EXPECT_EQ(Fix_explanatory(Chain_graph_of_pairs("ABC", {3}, {})).reason, NotFixed::one_block);
    EXPECT_EQ(Fix_explanatory(Chain_graph_of_pairs("ABC", {2, 3}, {})).reason,
              NotFixed::one_variable);
    const ExplanatoryRevision revision =
        Fix_explanatory(Chain_graph_of_pairs("ABCD", {1, 4}, {"AB"}));
    EXPECT_EQ(revision.reason, NotFixed::fixed);
    EXPECT_EQ(revision.graph, [] {
        ChainGraph graph = Chain_graph_of_rows("ABCD", {1, 4}, {"3211", "2333", "1333", "1333"});
        graph.revised = true;
        return graph;
    }());
}

}  // namespace
}  // namespace tarven
