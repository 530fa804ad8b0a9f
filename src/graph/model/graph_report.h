#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "graph/model/graph_summary.h"

namespace tarven {

/// "Dependent", and so on, of a status; "Local dep." of everything above 3.
const char* Status_name(std::uint8_t status);
/// "From GRF file", and so on.
const char* Source_text(GraphSource source);

/// Items behind a heading, as many a line as stand in 78 columns, the lines behind the first
/// indented to the end of the heading.
std::vector<std::string> Wrapped_lines(const std::string& heading,
                                       const std::vector<std::string>& items,
                                       std::string_view between);

/// The matrix of statuses with its legend. The diagonal shows the labels; blocks stand apart when
/// they have two variables or more on the average and the width allows it; more than 36 variables
/// stand without a blank between their columns, so that 59 fit a line.
std::vector<std::string> Status_matrix_lines(const ChainGraph& graph);

/// The whole model: matrix, cliques by level, log-linear generators, average gammas where there are
/// any.
std::vector<std::string> Model_lines(const ChainGraph& graph, const GraphSummary& summary);

/// "From GRF file  - revised."
std::string Source_line(const ChainGraph& graph);

/// The variables by block, with the names that there are (by variable, from index 0; empty where
/// there is none).
std::vector<std::string> Variables_of_graph_lines(const ChainGraph& graph,
                                                  const std::vector<std::string>& names);

/// "Model history:" and its lines; none without history.
std::vector<std::string> History_lines(const std::vector<std::string>& history);

}  // namespace tarven
