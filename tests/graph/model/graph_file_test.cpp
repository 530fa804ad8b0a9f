// Graph and gamma files: what is written reads back, and what damaged files give.

#include "graph/model/graph_file.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "graph/model/gamma_file.h"
#include "shell/text.h"
#include "support/graphs.h"
#include "support/session.h"

namespace tarven {
namespace {

using Lines = std::vector<std::string>;

std::string Labels_from(char first, int count) {
    std::string labels;
    for (int v = 0; v < count; ++v) labels += static_cast<char>(first + v);
    return labels;
}

/// Any graph that a project may have: sizes, blocks, statuses 0 to 255 in a matrix that need not be
/// symmetric, coordinates or none.
ChainGraph Any_graph(std::mt19937& random, bool proper) {
    const auto below = [&](unsigned n) { return static_cast<int>(random() % n); };
    const int nvar = 1 + below(MaxVariables);
    One_based<int, MaxVariables> ends;
    int Nlevels = 0;
    for (int v = 1; v <= nvar; ++v)
        if (below(4) == 0) ends[static_cast<std::size_t>(++Nlevels)] = v;
    ChainGraph graph = New_chain_graph(Labels_from('!', nvar), Nlevels, ends, Absent);
    for (int i = 1; i <= nvar; ++i)
        for (int j = i + 1; j <= nvar; ++j) {
            Set_status(graph, i, j, static_cast<std::uint8_t>(below(proper ? 5 : 256)));
            if (!proper && below(9) == 0)
                graph.Status[static_cast<std::size_t>(j)][static_cast<std::size_t>(i)] =
                    static_cast<std::uint8_t>(below(256));
        }
    graph.coordinates_ready = below(2) == 0;
    for (int v = 1; v <= nvar && graph.coordinates_ready; ++v)
        graph.coordinates[static_cast<std::size_t>(v)] = {below(4000) - 2000, below(900)};
    return graph;
}

TEST(GraphFile, WhatIsWrittenReadsBack) {
    std::mt19937 random(12);
    for (int k = 0; k < 300; ++k) {
        const bool proper = k % 2 == 0;
        const ChainGraph graph = Any_graph(random, proper);
        Lines names(static_cast<std::size_t>(graph.nvar));
        names[0] = "first";
        const Lines lines = GRF_lines(graph, names);
        const GraphFile read = Read_graph_file(lines, "x.GRF");
        ASSERT_TRUE(read.ok) << read.error;
        EXPECT_EQ(read.graph, graph) << Joined(lines);
        EXPECT_EQ(GRF_lines(read.graph, names), lines);
        if (!proper) continue;
        EXPECT_EQ(read.warnings, Lines{});
        const GraphFile strict = Read_graph_file_strictly(lines, "x.GRF");
        ASSERT_TRUE(strict.ok) << strict.error;
        EXPECT_EQ(strict.graph, graph);
        EXPECT_EQ(strict.warnings, Lines{});
        EXPECT_EQ(strict.names[0], "first");
        EXPECT_EQ(strict.names.back(),
                  graph.nvar == 1 ? "first" : "var" + std::to_string(graph.nvar));
    }
}

const Lines good = {"3 2",   "1 3",    "A B C ", "3 2 1",     "2 3 0", "1 0 3",   "COORDINATES",
                    "A 1 2", "B -3 4", "C 5 6",  "VARIABLES", "A Age", "B Bread", "C C"};

Lines With(std::size_t line_number, const std::string& text) {
    Lines lines = good;
    lines.at(line_number - 1) = text;
    return lines;
}

/// The file with a line put in, which becomes that number.
Lines With_line(std::size_t line_number, const std::string& text) {
    Lines lines = good;
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(line_number - 1), text);
    return lines;
}

Lines Without(std::size_t line_number) {
    Lines lines = good;
    lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(line_number - 1));
    return lines;
}

/// The sections in the other order.
Lines Names_first() {
    Lines lines = good;
    std::rotate(lines.begin() + 6, lines.begin() + 10, lines.end());
    return lines;
}

Lines First(std::size_t count) {
    return Lines(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(count));
}

TEST(GraphFile, TolerantReaderTakesWhatCanBeTaken) {
    const GraphFile whole = Read_graph_file(good, "x.GRF");
    ASSERT_TRUE(whole.ok) << whole.error;
    EXPECT_EQ(whole.warnings, Lines{});
    const struct {
        const char* what;
        Lines lines;
        Lines warnings;
    } rows[] = {
        {"labels without blanks", With(3, "ABC"), {}},
        {"the diagonal", With(4, "1 2 1"), {}},
        {"ends behind the matrix", First(6), {}},
        {"no names", First(10), {}},
        {"blank lines before coordinates", With(6, "1 0 3"), {}},
        {"too few labels", With(3, " A B"), {"Too few labels on GRF file:  A B   2 labels found"}},
        {"asymmetric", With(5, "2 3 1"), {"WARNING - Non-symmetrical status: BC"}},
        {"coordinates cut", First(9), {"Incomplete coordinates"}},
        {"a place that is no number", With(9, "B x 4"), {"error in coordinates: B x 4"}},
        {"a place beyond integers",
         With(9, "B 3000000000 4"),
         {"error in coordinates: B 3000000000 4"}},
        {"a place of no variable", With(9, "D 3 4"), {"error in coordinates: D 3 4"}},
        {"a section of names cut", First(12), {"Missing declaration of variable names: 1 of 3"}},
        {"a name of no variable", With(12, "D Bread"), {"error in variable names: D Bread"}},
    };
    for (const auto& row : rows) {
        const GraphFile read = Read_graph_file(row.lines, "x.GRF");
        ASSERT_TRUE(read.ok) << row.what << ": " << read.error;
        EXPECT_EQ(read.warnings, row.warnings) << row.what;
        EXPECT_EQ(read.graph.StatusOf(1, 1), Fixed) << row.what;
        EXPECT_EQ(read.graph.GRF, whole.graph.GRF)
            << row.what << ": adjacency follows the upper triangle";
    }
    EXPECT_FALSE(Read_graph_file(First(9), "x.GRF").graph.coordinates_ready);
    EXPECT_EQ(Read_graph_file(With(3, " A B"), "x.GRF").graph.Labels, "AB?");
    EXPECT_EQ(Read_graph_file(With(4, "3 7 1"), "x.GRF").graph.StatusOf(1, 2), 7)
        << "a status of 7 is read without a word";
    const GraphFile one_block = Read_graph_file({"2 0", "A B", "3 1", "1 3"}, "x.GRF");
    ASSERT_TRUE(one_block.ok) << one_block.error;
    EXPECT_EQ(one_block.graph.Nblocks, 1);
    EXPECT_EQ(one_block.graph.Cutpoints[1], 2);
    EXPECT_EQ(Read_graph_file(With(2, "1 2"), "x.GRF").graph.BlockOf(3), 3)
        << "behind the last cut point";
}

// The opening writes over a file without coordinates that was read without a warning.
TEST(GraphFile, TolerantReaderFindsSectionsAndTellsWhatItPassesOver) {
    const ChainGraph whole = Read_graph_file(good, "x.GRF").graph;
    const struct {
        Lines lines;
        std::string passed_over;  ///< empty: everything was read
    } rows[] = {
        {Names_first(), ""},
        {With_line(7, "  "), ""},
        {With_line(11, " "), ""},
        {With_line(7, "# drawn by hand"), "line 7: # drawn by hand"},
        {With_line(7, "1 0 3"), "line 7: 1 0 3"},
        {With_line(11, "D 7 8"), "line 11: D 7 8"},
        {With_line(11, "COORDINATES"), "line 11: COORDINATES"},
        {With_line(15, "D Dread"), "line 15: D Dread"},
        {With(1, "3 2 of May"), "line 1: 3 2 of May"},
        {With(2, "1 3 3"), "line 2: 1 3 3"},
        {With(3, "A B C D"), "line 3: A B C D"},
        {With(4, "3 2 1 1"), "line 4: 3 2 1 1"},
        {With(9, "B -3 4 red"), "line 9: B -3 4 red"},
    };
    for (const auto& row : rows) {
        const GraphFile read = Read_graph_file(row.lines, "x.GRF");
        ASSERT_TRUE(read.ok) << read.error;
        EXPECT_EQ(read.graph, whole) << Joined(row.lines);
        EXPECT_EQ(read.names, (Lines{"Age", "Bread", "C"})) << Joined(row.lines);
        const std::string told = "x.GRF holds what was passed over, " + row.passed_over;
        EXPECT_EQ(read.warnings, row.passed_over.empty() ? Lines{} : Lines{told});
    }
    EXPECT_EQ(Read_graph_file(With(7, "PICTURES"), "x.GRF").warnings,
              Lines{"x.GRF holds what was passed over, line 7: PICTURES (and 3 more)"});
}

TEST(GraphFile, NeitherReaderTakesADamagedFile) {
    const std::string values = ": 3 status values from 0 to 255 are needed, not: ";
    const struct {
        Lines lines;
        std::string tolerant;  ///< what the message holds; empty: read
        std::string strict;
    } rows[] = {
        {{}, "x.GRF is empty", "x.GRF is empty"},
        {With(1, "3"), "Invalid input of number of variables and levels: 3",
         "Invalid input of number of variables and levels - nsubstrings <>2: 3"},
        {With(1, "3x 2"), "Invalid input of number of variables and levels: 3x 2",
         "Invalid input of number of variables and levels - substring 1: 3x <> 3"},
        {With(1, "3 b"), "levels: 3 b",
         "Invalid input of number of variables and levels - substring 2: b <> 0"},
        {With(1, "60 2"), "levels: 60 2", "Invalid input of number of variables and levels: 60 2"},
        {With(1, "0 0"), "levels: 0 0", "Invalid input of number of variables and levels: 0 0"},
        {With(1, "-3 2"), "levels: -3 2", "Invalid input of number of variables and levels: -3 2"},
        {With(1, "3 4"), "levels: 3 4", "Invalid input of number of variables and levels: 3 4"},
        {With(1, "99999999999 2"), "levels: 99999999999 2",
         "substring 1: 99999999999 <> a number above 2147483647"},
        {With(2, "3 1"), "Incorrect specification of recursive levels: 3 1",
         "Incorrect specification of recursive levels: 3 1"},
        {With(2, "3 3"), "recursive levels: 3 3", "recursive levels: 3 3"},
        {With(2, "1 4"), "recursive levels: 1 4", "recursive levels: 1 4"},
        {With(2, "1"), "recursive levels: 1", "recursive levels: 1"},
        {With(2, "1 2 3"), "", "recursive levels: 1 2 3"},
        {With(2, "A B C"), "recursive levels: A B C", "recursive levels: A B C"},
        {First(1), "recursive levels: ", "recursive levels: "},
        {First(2), "x.GRF is incomplete", "Error in variable labels - too few labels: "},
        {With(3, "A B"), "", "Error in variable labels - too few labels: A B"},
        {With(3, "A B C D"), "", "Error in variable labels: A B C D"},
        {With(3, "A B A"), "", "Variable labels appear more than once: A B A"},
        {First(5), "x.GRF is incomplete: the status of C is missing", "the status of C is missing"},
        {With(5, "2 3"), "x.GRF, line 5" + values + "2 3", "line 5" + values + "2 3"},
        {With(5, "2 3 -1"), "line 5" + values + "2 3 -1", "line 5" + values + "2 3 -1"},
        {With(5, "2 3 256"), "line 5" + values + "2 3 256", "line 5" + values + "2 3 256"},
        {With(5, "2 3 99999999999"), "line 5" + values, "line 5" + values},
        {With(5, "2 3 0 0"), "", "line 5" + values + "2 3 0 0"},
        {With(5, "2 3 1"), "", "Asymmetrical status matrix: BC"},
        {With_line(7, "1 0 3"), "",
         "x.GRF, line 7: COORDINATES or VARIABLES may follow here, not: 1 0 3"},
        {With_line(15, "# by hand"), "", "may follow here, not: # by hand"},
    };
    for (const auto& row : rows) {
        const GraphFile tolerant = Read_graph_file(row.lines, "x.GRF");
        const GraphFile strict = Read_graph_file_strictly(row.lines, "x.GRF");
        EXPECT_EQ(tolerant.ok, row.tolerant.empty()) << Joined(row.lines);
        EXPECT_NE(tolerant.error.find(row.tolerant), std::string::npos) << tolerant.error;
        EXPECT_FALSE(strict.ok) << Joined(row.lines);
        EXPECT_NE(strict.error.find(row.strict), std::string::npos) << strict.error;
    }
}

TEST(GraphFile, StrictReaderTellsWhatItMended) {
    const std::string no_names = "Variable names are not included on the GRF file";
    const std::string missing = "coordinates missing for at least one variable";
    const struct {
        Lines lines;
        Lines warnings;
    } rows[] = {
        {First(6), {no_names}},
        {First(8), {"Incomplete set of coordinates", missing, no_names}},
        {With(9, "B 3"), {"error in coordinates: B 3", missing}},
        {With(9, "B 3 4 5"), {"error in coordinates: B 3 4 5", missing}},
        {Without(10), {"Incomplete set of coordinates", missing}},
        {Names_first(), {}},
        {First(12), {"Missing declaration of variable names: 1 of 3"}},
        {With(13, "Bread"), {"error in variable names: Bread"}},
    };
    for (const auto& row : rows) {
        const GraphFile read = Read_graph_file_strictly(row.lines, "x.GRF");
        ASSERT_TRUE(read.ok) << read.error;
        EXPECT_EQ(read.warnings, row.warnings) << Joined(row.lines);
    }
    Lines improper = With(4, "3 7 1");
    improper[4] = "7 3 0";
    const GraphFile read = Read_graph_file_strictly(improper, "x.GRF");
    ASSERT_TRUE(read.ok) << read.error;
    EXPECT_EQ(read.warnings, Lines{"Warning: improper status values have been converted"});
    EXPECT_EQ(read.graph.StatusOf(1, 2), Free);
    EXPECT_TRUE(read.graph.Adjacent(2, 1));
}

TEST(GammaFile, WhatIsWrittenReadsBack) {
    const std::vector<double> gammas = {999, 0.1234, -1, 0.1234, 999, 888, -1, 888, 1.5};
    const Lines lines = GAM_lines(gammas, 3);
    EXPECT_EQ(lines,
              (Lines{"    999  0.123 -1.000", "  0.123    999    999", " -1.000    999    999"}));
    auto read = Read_gamma_file(lines, 3, "x.GAM");
    ASSERT_TRUE(read);
    EXPECT_EQ(*read, (std::vector<double>{999, 0.123, -1, 0.123, 999, 999, -1, 999, 999}));
    EXPECT_EQ(GAM_lines(*read, 3), lines);
}

TEST(GammaFile, ThePairsWithTwoGammasAreNamed) {
    std::vector<double> gammas = {999, .1, .2, .1, 999, .3, 999, .4, 999};
    EXPECT_EQ(Make_symmetric(gammas, 3), (std::vector<std::pair<int, int>>{{1, 3}, {2, 3}}));
    EXPECT_EQ(gammas, (std::vector<double>{999, .1, .2, .1, 999, .3, .2, .3, 999}));
}

TEST(GammaFile, RefusesWhatIsNoMatrixOfTheProject) {
    const Lines damaged[] = {{},
                             {"999"},
                             {"999 0", "0 999", "0 0"},
                             {"999 0 0", "0 999"},
                             {"999 x", "x 999"},
                             {"999 2", "2 999"},
                             {"999 1e999", "0 999"},
                             {"999 99999999999999999999", "0 999"}};
    for (const Lines& lines : damaged) {
        const auto read = Read_gamma_file(lines, 2, "x.GAM");
        ASSERT_FALSE(read) << Joined(lines);
        EXPECT_EQ(read.failure().messages[0], "x.GAM is not compatible with the project graph");
    }
    EXPECT_TRUE(Read_gamma_file({"999 0.5", "0.5 999", "", " "}, 2, "x.GAM"));
}

}  // namespace
}  // namespace tarven
