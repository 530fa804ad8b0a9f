#include "graph/model/placement.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace tarven {

namespace {

struct Box {
    double cx = 0, cy = 0;  ///< the centre
    double rx = 0, ry = 0;  ///< 0.4 of width and height
};

NodePlace Rounded_place(double x, double y) {
    return {static_cast<int>(std::lrint(x)), static_cast<int>(std::lrint(y))};
}

/// Places of m variables in their box, in order.
std::vector<NodePlace> Places_in_box(const Box& box, int m) {
    const auto& [cx, cy, rx, ry] = box;
    if (m == 1) return {Rounded_place(cx, cy)};
    if (m == 2) return {Rounded_place(cx, cy - ry), Rounded_place(cx, cy + ry)};
    if (m == 3)
        return {Rounded_place(cx - rx, cy), Rounded_place(cx + rx, cy - ry),
                Rounded_place(cx + rx, cy + ry)};
    std::vector<NodePlace> places;
    for (int k = 1; k <= m; ++k) {
        const double angle = std::numbers::pi * (0.5 + 2.0 * k / m);
        places.push_back(Rounded_place(cx + rx * std::cos(angle), cy + ry * std::sin(angle)));
    }
    return places;
}

}  // namespace

void Place_nodes(ChainGraph& graph) {
    if (graph.nvar < 1) return;
    const auto last_index = static_cast<std::size_t>(graph.nvar);
    const bool mirrored =
        graph.coordinates_ready && graph.coordinates[1].x > graph.coordinates[last_index].x;
    int first = 1;
    while (first <= graph.nvar) {
        int last = first;
        while (last < graph.nvar && graph.BlockOf(last + 1) == graph.BlockOf(first)) ++last;
        const int m = last - first + 1;
        const double width = static_cast<double>(DrawingWidth) * m / graph.nvar;
        const double left = static_cast<double>(DrawingWidth) * (first - 1) / graph.nvar;
        const double centre = left + width / 2;
        const Box box{mirrored ? DrawingWidth - centre : centre, DrawingHeight / 2.0, 0.4 * width,
                      0.4 * DrawingHeight};
        const std::vector<NodePlace> places = Places_in_box(box, m);
        std::copy(places.begin(), places.end(), graph.coordinates.entries.begin() + first);
        first = last + 1;
    }
    graph.coordinates_ready = true;
}

}  // namespace tarven
