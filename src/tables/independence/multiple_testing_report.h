#pragma once

#include <span>
#include <string>
#include <vector>

#include "tables/independence/multiple_testing.h"

namespace tarven {

/// "Benjamini-Hochberg rejects all p-values less than ..." for a rate, or that all are accepted.
std::string Plain_rejection_line(std::span<const double> p, double q);

/// The limits at rates 0.05, 0.01 and 0.001 as a table.
std::vector<std::string> Critical_level_lines(std::span<const double> p);

/// What FDR prints.
std::vector<std::string> False_discovery_lines(const CollectedPValues& collected,
                                               const std::vector<std::string>& labels);

/// `numbers` are what the groups are called; 1, 2, .. when empty.
std::vector<std::string> Pairwise_comparison_lines(const PairwiseComparison& comparison,
                                                   std::vector<int> numbers = {});

/// The Bonferroni-adjusted p of the least significant of n hypotheses.
std::string Bonferroni_line(std::size_t n, double p);

}  // namespace tarven
