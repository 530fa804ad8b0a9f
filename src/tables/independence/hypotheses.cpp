#include "tables/independence/hypotheses.h"

#include <algorithm>

namespace tarven {

HypothesisVariables Variables_of_table(const ContingencyTable& t) {
    HypothesisVariables variables;
    variables.Nvar = std::min(t.Nvar(), MaxVariables);
    for (int k = 1; k <= variables.Nvar; ++k) {
        const std::size_t at = static_cast<std::size_t>(k);
        variables.vlabel += t.variable(k).label;
        variables.DIM[at] = t.DIM(k);
        variables.TYPE[at] = t.variable(k).VTYPE;
        variables.block[at] = t.block(k);
    }
    return variables;
}

TestedPair Tested_pair(const Hypothesis& hypothesis) {
    TestedPair pair;
    for (int v = 1; v <= MaxVariables; ++v) {
        if (hypothesis.Role(v) != role::tested) continue;
        if (pair.X == 0) {
            pair.X = v;
        } else {
            pair.Y = v;
            break;
        }
    }
    return pair;
}

std::vector<int> Conditioning_variables(const Hypothesis& hypothesis) {
    std::vector<int> z;
    for (int v = 1; v <= MaxVariables; ++v)
        if (hypothesis.Role(v) == role::conditioning) z.push_back(v);
    return z;
}

Hypothesis Make_hypothesis(int Nvar, int x, int y, std::span<const int> z) {
    Hypothesis h;
    for (int v = 1; v <= Nvar; ++v) h.Role(v) = role::collapsed;
    for (const int v : z) h.Role(v) = role::conditioning;
    h.Role(x) = role::tested;
    h.Role(y) = role::tested;
    return h;
}

bool Gamma_is_defined(int dim_x, int type_x, int dim_y, int type_y) {
    const auto unordered = [](int dim, int type) { return dim > 2 && type < 3; };
    return !unordered(dim_x, type_x) && !unordered(dim_y, type_y);
}

std::string Hypothesis_label(const Hypothesis& hypothesis, const std::string& vlabel) {
    const auto label_of = [&](int v) {
        return v >= 1 && v <= static_cast<int>(vlabel.size())
                   ? vlabel[static_cast<std::size_t>(v - 1)]
                   : '?';
    };
    const TestedPair pair = Tested_pair(hypothesis);
    std::string label{label_of(pair.X), '&', label_of(pair.Y)};
    const std::vector<int> z = Conditioning_variables(hypothesis);
    if (!z.empty()) label += '|';
    for (const int v : z) label += label_of(v);
    return label;
}

namespace {

/// Appends a row; false when the list is full.
bool Append(HypothesisList& list, const Hypothesis& row) {
    if (list.rows.size() >= MaxHypotheses) {
        list.over_limit = true;
        return false;
    }
    list.rows.push_back(row);
    return true;
}

/// All variables of block `first` and later that stand in the table.
std::vector<int> From_block(const HypothesisVariables& variables, int first) {
    std::vector<int> members;
    for (int v = 1; v <= variables.Nvar; ++v)
        if (!variables.collapsed[v] && variables.block[v] >= first) members.push_back(v);
    return members;
}

}  // namespace

bool Remove_untestable(HypothesisList& list, const HypothesisVariables& variables) {
    const auto untestable = [&](const Hypothesis& row) {
        const TestedPair pair = Tested_pair(row);
        return std::max(variables.DIM[static_cast<std::size_t>(pair.X)],
                        variables.DIM[static_cast<std::size_t>(pair.Y)]) > MaxCategories;
    };
    return std::erase_if(list.rows, untestable) > 0;
}

HypothesisList Define_hypotheses(const HypothesisVariables& variables,
                                 std::span<const std::pair<int, int>> pairs) {
    const int n = variables.Nvar;
    std::vector<std::vector<bool>> wanted(static_cast<std::size_t>(n + 1),
                                          std::vector<bool>(static_cast<std::size_t>(n + 1)));
    for (const auto& [first, second] : pairs) {
        const bool one_i = first >= 1 && first <= n;
        const bool one_j = second >= 1 && second <= n;
        for (int i = one_i ? first : 1; i <= (one_i ? first : n); ++i)
            for (int j = one_j ? second : 1; j <= (one_j ? second : n); ++j)
                wanted[static_cast<std::size_t>(std::min(i, j))]
                      [static_cast<std::size_t>(std::max(i, j))] = true;
    }
    HypothesisList list;
    std::vector<bool> told(static_cast<std::size_t>(n + 1));
    const auto is_out = [&](int v) {
        if (!variables.collapsed[v]) return false;
        if (!told[static_cast<std::size_t>(v)]) list.collapsed_over.push_back(v);
        told[static_cast<std::size_t>(v)] = true;
        return true;
    };
    for (int i = 1; i <= n; ++i)
        for (int j = i + 1; j <= n; ++j) {
            if (!wanted[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)]) continue;
            if (is_out(i) || is_out(j)) continue;
            // Make_hypothesis gives i and j their own role afterwards.
            const std::vector<int> z = From_block(variables, variables.block[i]);
            if (!Append(list, Make_hypothesis(n, i, j, z))) return list;
        }
    return list;
}

HypothesisList Three_way_hypotheses(const HypothesisVariables& variables) {
    HypothesisList list;
    const std::vector<int> in = From_block(variables, 0);
    for (const int i : in) {
        if (variables.block[i] > 1) continue;
        for (const int j : in) {
            if (j <= i) continue;
            for (const int k : in) {
                if (k == i || k == j || variables.block[k] < variables.block[i]) continue;
                if (!Append(list, Make_hypothesis(variables.Nvar, i, j, {&k, 1}))) return list;
            }
        }
    }
    return list;
}

HypothesisList Elaborate_hypotheses(const HypothesisVariables& variables, int v1, int v2, int n) {
    std::vector<int> candidates = From_block(variables, variables.block[v1]);
    std::erase_if(candidates, [&](int v) { return v == v1 || v == v2; });
    const int largest = std::min({n, variables.Nvar - 2, static_cast<int>(candidates.size())});
    HypothesisList list;
    for (int size = 1; size <= largest; ++size) {
        std::vector<int> at(static_cast<std::size_t>(size));  // positions in candidates, from 0
        for (int k = 0; k < size; ++k) at[static_cast<std::size_t>(k)] = k;
        while (true) {
            std::vector<int> z;
            z.reserve(at.size());
            for (const int k : at) z.push_back(candidates[static_cast<std::size_t>(k)]);
            if (!Append(list, Make_hypothesis(variables.Nvar, v1, v2, z))) return list;
            int moved = size - 1;  // the last position that can still move up
            const int slack = static_cast<int>(candidates.size()) - size;
            while (moved >= 0 && at[static_cast<std::size_t>(moved)] == moved + slack) --moved;
            if (moved < 0) break;
            ++at[static_cast<std::size_t>(moved)];
            for (int k = moved + 1; k < size; ++k)
                at[static_cast<std::size_t>(k)] = at[static_cast<std::size_t>(k - 1)] + 1;
        }
    }
    return list;
}

}  // namespace tarven
