#include "support/reference_figures.h"

#include <fstream>
#include <stdexcept>

namespace tarven {

nlohmann::json Reference_figures(const std::string& file, const std::string& section) {
    std::ifstream in(std::string(TARVEN_TEST_DATA) + "/" + file);
    if (!in) throw std::runtime_error("no test data " + file);
    return nlohmann::json::parse(in).at(section);
}

TwoWayTable Table_of_rows(const std::vector<std::vector<int>>& rows) {
    const int R = static_cast<int>(rows.size()), C = static_cast<int>(rows.at(0).size());
    TwoWayTable table(R, C);
    for (int i = 1; i <= R; ++i)
        for (int j = 1; j <= C; ++j)
            table(i, j) = rows[static_cast<std::size_t>(i - 1)].at(static_cast<std::size_t>(j - 1));
    Fill_margins(table);
    return table;
}

double Real_of(const nlohmann::json& value) {
    return value.is_string() ? std::stod(value.get<std::string>()) : value.get<double>();
}

std::vector<ReferenceHypothesis> Reference_hypotheses() {
    std::vector<ReferenceHypothesis> result;
    for (const nlohmann::json& entry : Reference_figures("independence_tests.json", "hypotheses")) {
        ReferenceHypothesis h;
        h.name = entry.at("project").get<std::string>() + " " + entry.at("hyp").get<std::string>();
        h.gamma = entry.at("gamma").get<bool>();
        for (const nlohmann::json& rows : entry.at("strata")) {
            h.strata.push_back(Table_of_rows(rows.get<std::vector<std::vector<int>>>()));
            h.expected.push_back(Expected_of_slice(h.strata.back()));
        }
        h.figures = entry;
        result.push_back(std::move(h));
    }
    return result;
}

}  // namespace tarven
