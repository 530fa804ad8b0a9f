#include "tables/independence/multiple_testing_report.h"

#include <fmt/format.h>

#include <algorithm>

#include "shell/fields.h"

namespace tarven {

std::string Plain_rejection_line(std::span<const double> p, double q) {
    const double limit = Benjamini_Hochberg_limit(p, q);
    if (std::any_of(p.begin(), p.end(), [&](double one) { return At_most_limit(one, limit); }))
        return fmt::format(
            "Benjamini-Hochberg rejects all p-values less than {} to control the FDR at {}",
            Field(limit, 8, 6), q);
    return fmt::format("Benjamini-Hochberg accepts all p-values when FDR is controlled at {}", q);
}

std::vector<std::string> Critical_level_lines(std::span<const double> p) {
    return {"Critical levels adjusted by the Benjamini-Hochberg procedure:",
            " FDR = 0.05         reject if p<= " + Field(Benjamini_Hochberg_limit(p, 0.05), 8, 6),
            " FDR = 0.01         reject if p<= " + Field(Benjamini_Hochberg_limit(p, 0.01), 8, 6),
            " FDR = 0.001        reject if p<= " + Field(Benjamini_Hochberg_limit(p, 0.001), 8, 6)};
}

std::vector<std::string> False_discovery_lines(const CollectedPValues& collected,
                                               const std::vector<std::string>& labels) {
    const RejectionLimits limits = Rejection_limits(collected.p);
    std::vector<std::string> lines{
        fmt::format("Benjamini-Hochberg adjustment of {} p-values", collected.p.size())};
    if (collected.p.empty()) return lines;
    Append_lines(lines, {" 5 %:" + Field(limits.fdr05, 8, 4), " 1 %:" + Field(limits.fdr01, 8, 4)});
    const auto label = [&](int row) { return labels.at(static_cast<std::size_t>(row - 1)); };
    const auto [least, most] = std::minmax_element(collected.p.begin(), collected.p.end());
    lines.push_back("Smallest p-value:" + Field(*least, 8, 4) + "  " +
                    label(collected.smallest_row));
    lines.push_back(" Largest p-value:" + Field(*most, 8, 4) + "  " + label(collected.largest_row));
    return lines;
}

std::string Bonferroni_line(std::size_t n, double p) {
    return " Bonferoni adjusted p-value of the least significant hypothesis is equal to " +
           Field(Bonferroni(n, p), 6, 4);
}

namespace {

void Matrix_lines(const PairwiseComparison& c, const std::vector<int>& numbers,
                  std::vector<std::string>& lines) {
    lines.push_back("p-values for pairwise comparisons");
    std::string head = Blanks(4);
    for (const int number : numbers) head += Field(number, 6);
    lines.push_back(head);
    const auto pair_of = [&](int i, int j) {
        return *std::find_if(c.pairs.begin(), c.pairs.end(), [&](const ComparedPair& pair) {
            return pair.i == std::min(i, j) && pair.j == std::max(i, j);
        });
    };
    // The p-values stand above the diagonal, the decisions below.
    for (int i = 1; i <= c.groups; ++i) {
        std::string line = Field(numbers[static_cast<std::size_t>(i - 1)], 4);
        for (int j = 1; j <= c.groups; ++j) {
            if (i == j)
                line += Blanks(6);
            else if (j > i)
                line += Field(pair_of(i, j).p, 6, 3);
            else
                line += At_most_limit(pair_of(i, j).p, c.limit) ? "   ** " : "  .   ";
        }
        lines.push_back(line);
    }
    lines.push_back(
        fmt::format("{} p-values. The Benjamini Hochnerg procedure accepts if p greater than {}",
                    c.pairs.size(), Field(c.limit, 6, 4)));
}

}  // namespace

std::vector<std::string> Pairwise_comparison_lines(const PairwiseComparison& c,
                                                   std::vector<int> numbers) {
    if (numbers.empty())
        for (int g = 1; g <= c.groups; ++g) numbers.push_back(g);
    const auto number = [&](int group) { return numbers[static_cast<std::size_t>(group - 1)]; };
    std::vector<std::string> lines;
    Matrix_lines(c, numbers, lines);
    if (!c.rejected.empty()) lines.push_back("Equivalence rejected for the following groups:");
    for (const ComparedPair& pair : c.rejected)
        lines.push_back(
            fmt::format("  {} and {} p = {}", number(pair.i), number(pair.j), Field(pair.p, 6, 4)));
    lines.push_back("Summary of coherence adjusted Benjamini Hochberg analysis");
    if (c.all_different()) {
        lines.push_back("No collaps after adjustment for coherence");
        lines.push_back("All groups are different");
    } else {
        lines.push_back("Collapsed groups:");
        for (const std::vector<int>& one : c.classes) {
            std::string line = " ";
            for (const int g : one) line += fmt::format(" {}", number(g));
            lines.push_back(line);
        }
    }
    for (int g = 1; g <= c.groups; ++g)  // a guard: every group has a class
        if (std::none_of(c.classes.begin(), c.classes.end(), [&](const std::vector<int>& one) {
                return std::count(one.begin(), one.end(), g) > 0;
            }))
            lines.push_back(
                fmt::format("Collapsed group was not identified for grp no. {}", number(g)));
    if (!c.rejected_for_coherence.empty())
        lines.push_back("The following equivalence hypotheses were rejected due to coherence:");
    for (const ComparedPair& pair : c.rejected_for_coherence)
        lines.push_back(
            fmt::format("  {} & {}  p = {}", number(pair.i), number(pair.j), Field(pair.p, 6, 4)));
    lines.push_back("Final p-values");
    lines.push_back("grp1 grp2    p");
    lines.push_back("----------------");
    for (const ComparedPair& pair : c.pairs)
        lines.push_back(Field(number(pair.i), 4) + Field(number(pair.j), 5) + Field(pair.p, 7, 4));
    return lines;
}

}  // namespace tarven
