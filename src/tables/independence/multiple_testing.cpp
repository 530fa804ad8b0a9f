#include "tables/independence/multiple_testing.h"

#include <algorithm>
#include <cassert>

#include "tables/independence/shown_p_values.h"

namespace tarven {

bool At_most_limit(double p, double limit) {
    return static_cast<float>(p) <= static_cast<float>(limit);
}

void Benjamini_Hochberg(std::span<const double> p, double& level) {
    if (p.empty()) return;
    std::vector<double> s(p.begin(), p.end());
    for (double& value : s)
        if (!(value <= 1)) value = 1;
    std::sort(s.begin(), s.end());
    const double q = level, n = static_cast<double>(s.size());
    for (std::size_t k = s.size(); k >= 1; --k) {
        level = static_cast<double>(k) / n * q;
        if (At_most_limit(s[k - 1], level)) return;
    }
}

double Benjamini_Hochberg_limit(std::span<const double> p, double q) {
    Benjamini_Hochberg(p, q);
    return q;
}

double Bonferroni(std::size_t n, double p) {
    return std::min(1.0, static_cast<double>(n) * p);
}

RejectionLimits Rejection_limits(std::span<const double> p) {
    return {Benjamini_Hochberg_limit(p, 0.05), Benjamini_Hochberg_limit(p, 0.01)};
}

CollectedPValues Collect_p_values(std::span<const Hypothesis> list,
                                  std::span<const TestResult> results,
                                  const TestSettings& settings) {
    assert(list.size() == results.size() && "every hypothesis has a row");
    CollectedPValues collected;
    double smallest = 0, largest = 0;
    const auto take = [&](double p, std::size_t k) {
        const int row = static_cast<int>(k) + 1;
        if (collected.p.empty() || p < smallest) smallest = p, collected.smallest_row = row;
        if (collected.p.empty() || p > largest) largest = p, collected.largest_row = row;
        collected.p.push_back(p);
    };
    for (std::size_t k = 0; k < results.size(); ++k) {
        const TestResult& row = results[k];
        if (!(row.Df > 0)) continue;
        const bool exact = Shows_exact(row, settings);
        take(exact ? row.PExact : row.PAsymp, k);
        if (list[k].Kind != kind::with_gamma) continue;
        const ShownGamma gamma = Shown_gamma(row, settings);
        take(exact ? gamma.PExact : gamma.PAsymp, k);
    }
    return collected;
}

namespace {

using Classes = std::vector<std::vector<int>>;

/// The least p between two classes, -1 when one of their pairs is rejected.
double Linkage(const PairwiseComparison& c, const std::vector<int>& a, const std::vector<int>& b) {
    double least = 2;
    for (const ComparedPair& pair : c.pairs) {
        const auto in = [](const std::vector<int>& one, int g) {
            return std::find(one.begin(), one.end(), g) != one.end();
        };
        if (!(in(a, pair.i) && in(b, pair.j)) && !(in(b, pair.i) && in(a, pair.j))) continue;
        if (At_most_limit(pair.p, c.limit)) return -1;
        least = std::min(least, pair.p);
    }
    return least;
}

/// Joins the two closest classes; false when none may be joined.
bool Join_closest(const PairwiseComparison& c, Classes& classes) {
    double best = -1;
    std::size_t first = 0, second = 0;
    for (std::size_t a = 0; a < classes.size(); ++a)
        for (std::size_t b = a + 1; b < classes.size(); ++b) {
            const double linkage = Linkage(c, classes[a], classes[b]);
            if (linkage > best) best = linkage, first = a, second = b;
        }
    if (best < 0) return false;
    classes[first].insert(classes[first].end(), classes[second].begin(), classes[second].end());
    std::sort(classes[first].begin(), classes[first].end());
    classes.erase(classes.begin() + static_cast<std::ptrdiff_t>(second));
    return true;
}

}  // namespace

PairwiseComparison Compare_groups(int groups, std::span<const double> p, double q) {
    assert(static_cast<std::int64_t>(p.size()) ==
               static_cast<std::int64_t>(groups) * (groups - 1) / 2 &&
           "one p-value a pair");
    PairwiseComparison c;
    c.groups = groups;
    c.limit = Benjamini_Hochberg_limit(p, q);
    std::size_t next = 0;
    for (int i = 1; i <= groups; ++i) {
        c.classes.push_back({i});
        for (int j = i + 1; j <= groups; ++j) c.pairs.push_back({i, j, p[next++]});
    }
    while (Join_closest(c, c.classes)) {
    }
    std::vector<std::size_t> class_of(static_cast<std::size_t>(groups) + 1);
    for (std::size_t k = 0; k < c.classes.size(); ++k)
        for (const int g : c.classes[k]) class_of[static_cast<std::size_t>(g)] = k;
    for (const ComparedPair& pair : c.pairs) {
        if (At_most_limit(pair.p, c.limit))
            c.rejected.push_back(pair);
        else if (class_of[static_cast<std::size_t>(pair.i)] !=
                 class_of[static_cast<std::size_t>(pair.j)])
            c.rejected_for_coherence.push_back(pair);
    }
    return c;
}

}  // namespace tarven
