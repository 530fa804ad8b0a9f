#pragma once

#include <random>
#include <string>
#include <vector>

#include "tables/independence/hypothesis_run.h"

namespace tarven {

/// A table with all its margins, filled case by case: every case adds one to its cell and to each
/// of its margins.
struct BlockOfCases {
    std::vector<int> DIM;  ///< of variable k at k, slot 0 is 0
    std::vector<std::int64_t> Cfactor;
    std::vector<std::int32_t> cells;
    std::vector<std::vector<int>> cases;  ///< categories of variable k at k-1

    ContingencyTable table(int VTYPE = 3) const {
        std::vector<TableVariable> variables;
        for (std::size_t k = 1; k < DIM.size(); ++k)
            variables.push_back({.label = static_cast<char>('A' + k - 1),
                                 .DIM = DIM[k],
                                 .VTYPE = VTYPE,
                                 .name = std::string(1, static_cast<char>('A' + k - 1))});
        ContingencyTable t = Make_table(std::move(variables));
        t.cells = cells;
        t.NTOTAL = static_cast<std::int64_t>(cases.size());
        return t;
    }
};

inline BlockOfCases Random_block(const std::vector<int>& dims, int n, unsigned seed) {
    BlockOfCases block;
    block.DIM = {0};
    block.Cfactor = {0};
    std::int64_t size = 1;
    for (const int dim : dims) {
        block.DIM.push_back(dim);
        block.Cfactor.push_back(size);
        size *= dim + 1;
    }
    block.cells.resize(static_cast<std::size_t>(size));
    std::mt19937 random(seed);
    for (int c = 0; c < n; ++c) {
        std::vector<int> one;
        const int lean = static_cast<int>(random() % 2);  // ties the variables together
        for (const int dim : dims)
            one.push_back(1 + static_cast<int>(random() % static_cast<unsigned>(dim)) * lean);
        for (unsigned margins = 0; margins < 1U << dims.size(); ++margins) {
            std::int64_t at = 0;
            for (std::size_t k = 0; k < dims.size(); ++k)
                at += ((margins >> k & 1) ? dims[k] : one[k] - 1) * block.Cfactor[k + 1];
            ++block.cells[static_cast<std::size_t>(at)];
        }
        block.cases.push_back(std::move(one));
    }
    return block;
}

/// Every hypothesis over variables 1..n: all pairs, all sets of the others.
inline std::vector<Hypothesis> All_hypotheses(int n) {
    std::vector<Hypothesis> list;
    for (int i = 1; i <= n; ++i)
        for (int j = i + 1; j <= n; ++j)
            for (unsigned set = 0; set < 1U << n; ++set) {
                if ((set >> (i - 1) & 1) || (set >> (j - 1) & 1)) continue;
                std::vector<int> z;
                for (int k = 1; k <= n; ++k)
                    if (set >> (k - 1) & 1) z.push_back(k);
                list.push_back(Make_hypothesis(n, i, j, z));
            }
    return list;
}

}  // namespace tarven
