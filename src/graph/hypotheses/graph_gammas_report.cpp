#include "graph/hypotheses/graph_gammas_report.h"

#include <fmt/format.h>

#include <algorithm>

#include "graph/model/graph_report.h"
#include "shell/fields.h"
#include "tables/ordinal/mantel_haenszel.h"

namespace tarven {

namespace {

constexpr int Width = 7;

std::string Value(const PairGamma& pair, bool odds_ratios) {
    if (!pair.defined() || (odds_ratios && pair.gamma >= 1)) return Blanks(Width);
    return Field(odds_ratios ? Generalized_odds_ratio(pair.gamma) : pair.gamma, Width, 2);
}

}  // namespace

std::vector<std::string> Graph_gamma_lines(const GraphGammas& gammas, const std::string& labels,
                                           bool odds_ratios) {
    std::vector<const PairGamma*> at(labels.size() * labels.size());
    for (const PairGamma& pair : gammas.pairs)
        at[static_cast<std::size_t>(pair.i - 1) * labels.size() +
           static_cast<std::size_t>(pair.j - 1)] = &pair;
    std::vector<std::string> lines = {
        odds_ratios
            ? "Generalized odds ratios of the partial gamma coefficients above the diagonal,"
            : "Partial gamma coefficients under the current model above the diagonal,",
        "below it the number of separation hypotheses that each is the mean of", ""};
    std::string head = "  ";
    for (const char label : labels) head += Right(std::string(1, label), Width);
    lines.push_back(head);
    for (std::size_t i = 0; i < labels.size(); ++i) {
        std::string line = std::string(1, labels[i]) + " ";
        for (std::size_t j = 0; j < labels.size(); ++j) {
            const PairGamma* pair = at[std::min(i, j) * labels.size() + std::max(i, j)];
            if (i == j || !pair)
                line += Right(i == j ? "." : "", Width);
            else if (i < j)
                line = Beside(line, Value(*pair, odds_ratios));
            else
                line += Field(pair->tested, Width);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        lines.push_back(line);
    }
    const auto any = [&](auto holds) {
        return std::any_of(gammas.pairs.begin(), gammas.pairs.end(), holds);
    };
    if (any([](const PairGamma& pair) { return !pair.defined(); }))
        lines.emplace_back(
            "0 hypotheses: a nominal variable of more than two categories, or none can be tested");
    if (odds_ratios && any([](const PairGamma& pair) { return pair.defined() && pair.gamma >= 1; }))
        lines.emplace_back("Blank: no discordant pair of cases, so the odds ratio is unbounded");
    std::vector<std::pair<int, int>> by_neighbours;
    for (const PairGamma& pair : gammas.pairs)
        if (!pair.smallest) by_neighbours.push_back({pair.i, pair.j});
    Append_lines(lines, Local_markov_lines(by_neighbours, labels));
    return lines;
}

std::vector<std::string> Local_markov_lines(std::span<const std::pair<int, int>> pairs,
                                            const std::string& labels) {
    if (pairs.empty()) return {};
    std::vector<std::string> items;
    for (const auto& [i, j] : pairs)
        items.push_back(
            {labels[static_cast<std::size_t>(i - 1)], labels[static_cast<std::size_t>(j - 1)]});
    const std::string title =
        fmt::format("Separation by Local Markov properties in {} {}:", pairs.size(),
                    pairs.size() == 1 ? "case" : "cases");
    std::vector<std::string> lines = {std::string(title.size(), '-'), title};
    Append_lines(lines, Wrapped_lines("  ", items, " "));
    return lines;
}

}  // namespace tarven
