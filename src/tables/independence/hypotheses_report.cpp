#include "tables/independence/hypotheses_report.h"

#include <fmt/format.h>

#include <algorithm>

#include "shell/fields.h"

namespace tarven {

namespace {

char Label_of(const std::string& vlabel, int v) {
    return v <= static_cast<int>(vlabel.size()) ? vlabel[static_cast<std::size_t>(v - 1)] : '?';
}

bool Proper(const Hypothesis& hypothesis) {
    return std::count(std::begin(hypothesis.HypothesisRole), std::end(hypothesis.HypothesisRole),
                      role::tested) == 2;
}

std::string Line_of(std::size_t number, const Hypothesis& hypothesis, const std::string& vlabel) {
    std::string line = fmt::format("HYPOTHESIS {}: ", number);
    bool first = true;
    for (int v = 1; v <= MaxVariables; ++v) {
        if (hypothesis.Role(v) != role::tested) continue;
        if (!first) line += " & ";
        line += Label_of(vlabel, v);
        first = false;
    }
    const std::vector<int> z = Conditioning_variables(hypothesis);
    if (!z.empty()) line += "  ";
    for (const int v : z) line += Label_of(vlabel, v);
    return line;
}

}  // namespace

std::vector<std::string> Hypothesis_list_lines(std::span<const Hypothesis> list,
                                               const std::string& vlabel) {
    std::vector<std::string> lines{list.size() == 1 ? "1 Hypothesis:"
                                                    : fmt::format("{} Hypotheses:", list.size())};
    std::vector<std::string> improper;
    for (std::size_t k = 0; k < list.size(); ++k)
        (Proper(list[k]) ? lines : improper).push_back(Line_of(k + 1, list[k], vlabel));
    if (!improper.empty()) lines.push_back("improper hypotheses:");
    Append_lines(lines, improper);
    return lines;
}

std::vector<std::string> Show_hypotheses_lines(std::span<const Hypothesis> list,
                                               const std::string& vlabel, HypothesisScope scope) {
    if (list.empty()) return {"No hypotheses"};
    std::vector<std::string> lines{scope == HypothesisScope::graph
                                       ? "Hypotheses defined relative to the project model"
                                       : "Hypotheses defined relative to the current table"};
    Append_lines(lines, Hypothesis_list_lines(list, vlabel));
    return lines;
}

}  // namespace tarven
