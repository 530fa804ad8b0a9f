#pragma once

#include "graph/model/chain_graph.h"

namespace tarven {

/// The drawing in which the default placement lays out a graph, in pixels: room for one block of 59
/// variables on an ellipse, and half as wide as a usual screen once it is scaled down.
inline constexpr int DrawingWidth = 1200;
inline constexpr int DrawingHeight = 800;

/// Gives every variable its default place. Each block has a box as high as the drawing, as wide as
/// its share of the variables: block 1 at the left, or at the right when the graph has coordinates
/// and its first variable stands right of its last. In a box one variable stands in the centre, two
/// above each other, three in a triangle, more on an ellipse that leaves a tenth of the box free at
/// each side; it begins a step behind the right angle. y grows downwards.
void Place_nodes(ChainGraph& graph);

}  // namespace tarven
