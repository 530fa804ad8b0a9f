#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tables/table/two_way.h"

namespace tarven {

/// A section of a JSON file of tests/data.
nlohmann::json Reference_figures(const std::string& file, const std::string& section);

/// A table from its rows, with margins.
TwoWayTable Table_of_rows(const std::vector<std::vector<int>>& rows);

/// A text number or a JSON number as a real.
double Real_of(const nlohmann::json& value);

/// One hypothesis X&Y|Z of independence_tests.json. Its figures were computed with R and scipy from
/// the projects of examples/.
struct ReferenceHypothesis {
    std::string name;  ///< "project X&Y|Z"
    bool gamma = false;
    std::vector<TwoWayTable> strata;
    std::vector<ExpectedTable> expected;
    nlohmann::json figures;
};
std::vector<ReferenceHypothesis> Reference_hypotheses();

}  // namespace tarven
