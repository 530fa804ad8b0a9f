// The default placement of a graph's variables.

#include "graph/model/placement.h"

#include <gtest/gtest.h>

#include "support/graphs.h"

namespace tarven {
namespace {

ChainGraph Placed(const std::string& labels, const std::vector<int>& blocks) {
    ChainGraph graph = Chain_graph_of_pairs(labels, blocks, {});
    Place_nodes(graph);
    return graph;
}

TEST(Placement, GivesBlocksTheirShareOfTheWidthAndVariablesTheirPlaceInIt) {
    // Ten variables in blocks of 1, 2, 3 and 4: boxes of 120, 240, 360 and 480 pixels.
    const ChainGraph graph = Placed("ABCDEFGHIJ", {1, 3, 6, 10});
    const NodePlace expected[] = {{60, 400},  // the centre
                                  {240, 80},
                                  {240, 720},  // above and below it
                                  {396, 400},
                                  {684, 80},
                                  {684, 720},  // a triangle
                                  // an ellipse from half a turn on: left, up, right, down
                                  {768, 400},
                                  {960, 80},
                                  {1152, 400},
                                  {960, 720}};
    ASSERT_TRUE(graph.coordinates_ready);
    for (std::size_t v = 1; v <= 10; ++v)
        EXPECT_EQ(graph.coordinates[v], expected[v - 1])
            << v << ": " << graph.coordinates[v].x << " " << graph.coordinates[v].y;
}

TEST(Placement, KeepsTheSideOfTheFirstVariable) {
    ChainGraph graph = Placed("ABCD", {1, 4});
    std::swap(graph.coordinates[1], graph.coordinates[4]);
    Place_nodes(graph);
    EXPECT_EQ(graph.coordinates[1], (NodePlace{1050, 400})) << "block 1 stays at the right";
    EXPECT_EQ(graph.coordinates[2].x, 450 - 360);
}

TEST(Placement, StaysInsideTheDrawingAndKeepsVariablesApart) {
    std::mt19937 random(3);
    for (int k = 0; k < 100; ++k) {
        const int nvar = 1 + static_cast<int>(random() % MaxVariables);
        std::string labels;
        std::vector<int> ends;
        for (int v = 1; v <= nvar; ++v) {
            labels += static_cast<char>('!' + v);
            if (random() % 6 == 0 || v == nvar) ends.push_back(v);
        }
        const ChainGraph graph = Placed(labels, ends);
        for (std::size_t v = 1; v <= labels.size(); ++v) {
            const NodePlace& place = graph.coordinates[v];
            EXPECT_TRUE(place.x >= 0 && place.x <= DrawingWidth && place.y >= 0 &&
                        place.y <= DrawingHeight);
            for (std::size_t w = 1; w < v; ++w) EXPECT_FALSE(place == graph.coordinates[w]);
        }
    }
}

}  // namespace
}  // namespace tarven
