#include "graph/hypotheses/graph_gammas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "graph/hypotheses/graph_gammas_report.h"
#include "graph/hypotheses/max_edges.h"
#include "graph/hypotheses/max_edges_report.h"
#include "graph/hypotheses/separation.h"
#include "graph/model/graph_workspace.h"
#include "project/project.h"
#include "support/graphs.h"
#include "support/reference_figures.h"
#include "support/session.h"
#include "tables/independence/own_table.h"
#include "tables/ordinal/gammas_workspace.h"

namespace tarven {
namespace {

using Lines = std::vector<std::string>;

struct GraphGammaSession : SessionTest {
    void Open(const std::string& project) {
        Copy_example(project);
        Run({"OPE " + project});
        ASSERT_TRUE(The_project.ProjectOpen);
    }
    static PackedCases Cases() { return *Pack_cases(Cases_of_project()); }
    static double Kept(char one, char other) {
        const auto& labels = The_graph.model.Labels;
        return The_project_gammas.IJXgamma[labels.find(one) * labels.size() + labels.find(other)];
    }
};

// Gammas of the hypotheses of each pair, computed apart from this program.
TEST_F(GraphGammaSession, AreTheMeansOfFiguresFoundElsewhere) {
    for (const auto& one : Reference_figures("graphs.json", "graphs")) {
        const std::string name = one.at("name"), labels = one.at("labels");
        if (name != "titanic" && name != "survey" && name != "vision") continue;
        Copy_example(name);
        Run({"OPE " + name, "Y"});
        const ChainGraph graph = Chain_graph_of_rows(labels, one.at("blocks"), one.at("status"));
        const GraphGammas gammas = Gammas_of_graph(Cases(), graph, All_pairs_of(graph));
        std::size_t k = 0;
        for (const auto& pair : one.at("separate")) {
            SCOPED_TRACE(name + " " + pair.at("pair").get<std::string>());
            double sum = 0;
            int tested = 0;
            for (const auto& test : pair.at("tests")) {
                if (!test.contains("gamma")) continue;
                sum += test.at("gamma").get<double>();
                ++tested;
            }
            EXPECT_EQ(gammas.pairs[k].tested, tested);
            EXPECT_NEAR(gammas.pairs[k].gamma, tested > 0 ? sum / tested : NoGamma, 1e-11);
            ++k;
        }
        EXPECT_EQ(k, gammas.pairs.size());
    }
}

TEST_F(GraphGammaSession, DoNotDependOnTheNumberOfThreads) {
    Open("verbal");
    const PackedCases cases = Cases();
    std::mt19937 random(8);
    const ChainGraph graph = Random_chain_graph(random, {24, 25, 26}, 0.15);
    const auto pairs = All_pairs_of(graph);
    const GraphGammas one = Gammas_of_graph(cases, graph, pairs, {.jobs = 1});
    const GraphGammas three = Gammas_of_graph(cases, graph, pairs, {.jobs = 3});
    EXPECT_EQ(Matrix_of_gammas(one.pairs, 26), Matrix_of_gammas(three.pairs, 26));
    int asked = 0;
    const GraphGammas cut =
        Gammas_of_graph(cases, graph, pairs, {.stop = [&] { return ++asked > 40; }, .jobs = 1});
    EXPECT_TRUE(cut.stopped);
    EXPECT_EQ(cut.pairs[0].gamma, one.pairs[0].gamma);
    EXPECT_FALSE(cut.pairs.back().defined());
    // The progress display counts the pairs, each of which may have many hypotheses.
    std::int64_t steps = 0, asked_to_step = 0;
    int parts = 0;
    Gammas_of_graph(cases, graph, pairs,
                    {.begin = [&](std::int64_t count) { steps = count; },
                     .stop = [&] { return ++asked_to_step < 0; },
                     .within = [&] { return ++parts < 0; }});
    EXPECT_EQ(asked_to_step, steps);
    EXPECT_GT(parts, steps);
}

TEST_F(GraphGammaSession, OfUntestedHypothesesDoNotEnterTheMean) {
    // B and C separate A and D in two ways. Given C, D is constant in each stratum.
    PackedCases packed =
        Packed_cases_of(std::vector<int>{2, 2, 2, 2}, std::vector<int>{3, 3, 3, 3});
    for (const std::vector<std::uint8_t>& one : std::vector<std::vector<std::uint8_t>>{
             {1, 1, 1, 1}, {2, 1, 1, 1}, {2, 2, 2, 2}, {1, 2, 2, 2}, {2, 1, 2, 2}})
        Add_cases(packed, one.data(), 1);
    const ChainGraph graph = Chain_graph_of_pairs("ABCD", {4}, {"AB", "BC", "CD"});
    const PairGamma gamma = Gammas_of_graph(packed, graph, {{{1, 4}}}).pairs[0];
    EXPECT_EQ(gamma.hypotheses, 2);
    EXPECT_EQ(gamma.tested, 1);
    StrataMemory memory;
    EXPECT_EQ(gamma.gamma,
              Gamma_from_cases(packed, Separation_hypothesis(1, 4, Only(2)), memory).gamma.gamma);
}

TEST_F(GraphGammaSession, CommandKeepsThemUntilTheModelChanges) {
    EXPECT_TRUE(Has_line_with(Run({"GAM"}), "No project"));
    Open("titanic");
    const Lines report = Run({"GAM"});
    EXPECT_TRUE(Has_line_with(report, "S       .         -0.38   0.80")) << Joined(report);
    ASSERT_TRUE(The_project_gammas.ready);
    EXPECT_FALSE(The_project_gammas.marginal);
    EXPECT_EQ(Kept('S', 'C'), NoGamma);
    EXPECT_NEAR(Kept('G', 'S'), 0.803009097271, 1e-11);
    EXPECT_TRUE(Has_line_with(Run({"SHO G"}), "Average absolute gamma coefficients"));
    Run({"DEL SG"});
    EXPECT_FALSE(The_project_gammas.ready);
    EXPECT_EQ(The_graph.model.StatusOf(1, 4), Absent);
    Run({"GAM M"});
    EXPECT_TRUE(The_project_gammas.marginal);
    EXPECT_FALSE(Has_line_with(Run({"SHO G"}), "Average absolute gamma coefficients"))
        << "marginal gammas say nothing of the model";
    const Lines odds = Run({"GAM OR"});
    EXPECT_TRUE(Has_line_with(odds, "Generalized odds ratios")) << Joined(odds);
}

/// Five ordinal variables in which 1 depends on the others less and less.
PackedCases Cases_of_a_star() {
    PackedCases packed = Packed_cases_of(std::vector<int>(5, 2), std::vector<int>(5, 3));
    std::mt19937 random(9);
    for (int c = 0; c < 4000; ++c) {
        std::vector<std::uint8_t> one(5);
        one[0] = static_cast<std::uint8_t>(1 + random() % 2);
        for (std::size_t v = 1; v < 5; ++v) {
            const bool copies = random() % 10 < 9 - 2 * v;
            one[v] = copies ? one[0] : static_cast<std::uint8_t>(1 + random() % 2);
        }
        Add_cases(packed, one.data(), 1);
    }
    return packed;
}

TEST_F(GraphGammaSession, MaxEdgesTakesTheWeakestEdgeOfTheVariableWithMost) {
    const PackedCases packed = Cases_of_a_star();
    ChainGraph star = Chain_graph_of_pairs("ABCDE", {5}, {"AB", "AC", "AD", "AE"});
    const Simplification found = Simplify_graph(packed, star, 2);
    ASSERT_EQ(found.steps.size(), 3u);
    EXPECT_EQ(found.steps[0].variables[0].neighbours, 4);
    EXPECT_EQ(found.steps[0].j, 5);
    EXPECT_EQ(found.steps[1].j, 4);
    EXPECT_FALSE(found.steps[2].found());
    EXPECT_FALSE(found.stuck);
    EXPECT_TRUE(found.graph.revised);
    EXPECT_EQ(found.graph.StatusOf(1, 5), Absent);
    EXPECT_TRUE(found.graph.Adjacent(1, 3));
    // Every step's gammas are those of the whole graph at that step.
    ChainGraph then = star;
    Set_status(then, 1, 5, Absent);
    EXPECT_EQ(found.steps[1].gamma, Gammas_of_graph(packed, then, {{{1, 4}}}).pairs[0].gamma);

    // A fixed edge counts and stays; when only such are left it says so.
    Set_status(star, 1, 5, Fixed);
    EXPECT_EQ(Simplify_graph(packed, star, 2).steps[0].j, 4);
    for (int v = 2; v <= 5; ++v) Set_status(star, 1, v, Fixed);
    const Simplification fixed = Simplify_graph(packed, star, 2);
    EXPECT_EQ(fixed.eliminated(), 0u);
    EXPECT_TRUE(fixed.stuck);
    EXPECT_TRUE(Has_line_with(Simplification_lines(fixed, "ABCDE"), "are fixed or have no gamma"));
}

TEST_F(GraphGammaSession, MaxEdgesStepsEqualThoseWithAllGammasAnew) {
    Open("survey");
    const PackedCases packed = Cases();
    std::mt19937 random(10);
    const ChainGraph graph = Random_chain_graph(random, {3, 6, 7, 9}, 0.8);
    const Simplification found = Simplify_graph(packed, graph, 2);
    EXPECT_GT(found.eliminated(), 4u);
    ChainGraph now = graph;
    for (const SimplificationStep& step : found.steps) {
        const auto matrix =
            Matrix_of_gammas(Gammas_of_graph(packed, now, All_pairs_of(now)).pairs, now.nvar);
        for (int v = 1; v <= now.nvar; ++v) {
            const VariableEdges& edges = step.variables[static_cast<std::size_t>(v - 1)];
            double smallest = NoGamma;
            for (const int w : Members(now.GRF[static_cast<std::size_t>(v)]))
                smallest = std::min(
                    smallest,
                    std::fabs(matrix[static_cast<std::size_t>((v - 1) * now.nvar + w - 1)]));
            EXPECT_EQ(edges.neighbours, Size(now.GRF[static_cast<std::size_t>(v)]));
            EXPECT_EQ(std::fabs(edges.gamma), smallest);
        }
        if (step.found()) Set_status(now, step.i, step.j, Absent);
    }
    EXPECT_EQ(now.GRF, found.graph.GRF);
}

TEST_F(GraphGammaSession, MaxEdgesAsksBeforeItChangesTheModel) {
    Open("survey");
    const ChainGraph before = The_graph.model;
    const Lines refused = Run({"DEL MAXEDGES 6", "N"});
    EXPECT_TRUE(Has_line_with(refused, "Summary of interactions"));
    EXPECT_TRUE(Has_line_with(refused, "Overview of eliminated interactions"));
    EXPECT_EQ(The_graph.model, before);
    const Lines taken = Run({"DEL MAXEDGES 6", "Y"});
    EXPECT_TRUE(
        Has_line_with(taken, "Partial Gamma coefficients calculated under the current model"));
    EXPECT_TRUE(The_project_gammas.ready);
    EXPECT_TRUE(The_graph.model.revised);
    EXPECT_EQ(The_graph.history.back(), "The model was revised: MAXEDGES 6 (DELETE)");
    for (const std::string line :
         {"DEL MAXEDGES", "DEL MAXEDGES 60", "DEL MAXEDGES 1 2", "DEL MAXEDGES 4294967298",
          "DEL MAXEDGES -1", "DEL MAXEDGES-1", "DEL MAXEDGES 2.5", "DEL maxe x", "DEL MAXED"})
        EXPECT_TRUE(Has_line_with(Run({line}), "needs a number")) << line;
    for (const std::string line : {"DEL MAXEDGES 8", "DEL MAXEDGES8", "DEL maxe 8", "DEL MAXEDG8"})
        EXPECT_TRUE(Has_line_with(Run({line}), "Simplificationn stops after 0 steps")) << line;
}

TEST_F(GraphGammaSession, MaxWithANumberMeansVariablesAndSaysSo) {
    Open("verbal");  // M, A and X are labels
    const int X = static_cast<int>(The_graph.model.Labels.find('X')) + 1, M = 13;
    for (const std::string line : {"DEL MAX 4", "DEL MAX4"}) {
        Run({"NEW 2"});
        const Lines said = Run({line});
        EXPECT_EQ(said[0], "MAX is read as variables. The option is MAXEDGES, or MAXE") << line;
        EXPECT_EQ(The_graph.model.StatusOf(1, M), Absent);
        EXPECT_EQ(The_graph.model.StatusOf(4, X), Absent);
    }
    EXPECT_FALSE(Has_line_with(Run({"DEL MAXB"}), "The option"));
}

}  // namespace
}  // namespace tarven
