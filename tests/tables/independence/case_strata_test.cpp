#include "tables/independence/case_strata.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

#include "project/project.h"
#include "support/block_of_cases.h"
#include "support/session.h"
#include "tables/independence/own_table.h"
#include "tables/independence/slices.h"

namespace tarven {
namespace {

/// The codes of some cases as patterns of one case each; 0 is missing.
PackedCases Pack(const std::vector<int>& dims, const std::vector<std::vector<int>>& cases) {
    PackedCases packed = Packed_cases_of(dims, std::vector<int>(dims.size(), 3));
    for (const std::vector<int>& one : cases) {
        const std::vector<std::uint8_t> codes(one.begin(), one.end());
        Add_cases(packed, codes.data(), 1);
    }
    return packed;
}

void Expect_the_slices_of_a_table(const PackedCases& packed, const Hypothesis& row,
                                  const ContingencyTable& table, const Hypothesis& in_table) {
    StrataMemory memory;
    std::vector<TwoWayTable> strata;
    const StrataFound found = For_each_stratum(
        packed, row, memory, [&](const TwoWayTable& counts) { strata.push_back(counts); });
    const InformativeSlices slices = XYZ1(View_of(table, in_table));
    EXPECT_EQ(strata, slices.counts);
    EXPECT_EQ(found.cases, table.NTOTAL);
    EXPECT_EQ(found.missing_slices, slices.missing > 0);
    if (!Has_gamma(table, in_table)) return;
    const SlicesSummed sums = Sum_over_slices(View_of(table, in_table), true, {});
    const GammaFromCases gamma = Gamma_from_cases(packed, row, memory);
    EXPECT_EQ(gamma.tested, sums.sums.df > 0);
    EXPECT_EQ(gamma.gamma.gamma, Partial_gamma(sums.sums.P, sums.sums.Q, sums.sums.V).gamma);
    EXPECT_EQ(gamma.gamma.p, Partial_gamma(sums.sums.P, sums.sums.Q, sums.sums.V).p);
}

TEST(CaseStrata, AreTheSlicesOfATableInTheirOrderDigitByDigit) {
    const std::vector<int> dims = {3, 2, 4, 2, 5, 3};
    for (const int n : {4, 60, 900}) {
        const BlockOfCases block = Random_block(dims, n, static_cast<unsigned>(n));
        const ContingencyTable table = block.table();
        const PackedCases packed = Pack(dims, block.cases);
        for (const Hypothesis& row : All_hypotheses(6)) {
            SCOPED_TRACE(Hypothesis_label(row, "ABCDEF"));
            Expect_the_slices_of_a_table(packed, row, table, row);
        }
    }
}

struct CaseStrataOfProjects : SessionTest {};

TEST_F(CaseStrataOfProjects, LeaveOutCasesThatLackAVariable) {
    Copy_example("survey");
    Run({"OPE survey"});
    std::mt19937 random(6);
    for (const char* source : {"cells in memory", "files"}) {
        const Result<PackedCases> packed = Pack_cases(Cases_of_project());
        ASSERT_TRUE(packed) << source;
        for (int k = 0; k < 60; ++k) {
            Hypothesis row = Make_hypothesis(9, 1 + k % 4, 5 + k % 5, {});
            for (int v = 1; v <= 9; ++v)
                if (row.Role(v) != role::tested && random() % 3 == 0)
                    row.Role(v) = role::conditioning;
            const OwnTable own = Own_table(row, The_project);
            const auto made = Tabulate(Cases_of_project(), own.request);
            if (!made) continue;
            SCOPED_TRACE(source + Hypothesis_label(row, "PEKCFWHAS"));
            Expect_the_slices_of_a_table(*packed, row, made->table, own.row);
        }
        Dispose_data();
    }
}

TEST(CaseStrata, CountEqualCasesOfAnySourceAsOnePattern) {
    ProjectDefinition definition;
    definition.N = 2;
    for (std::size_t v = 1; v <= 2; ++v) definition.variables[v].dim = 3;
    Data data;
    data.data_ready = true;
    data.DATA = {2, 1, 1, 3, 2, 1, 0, 1, 2, 1, 1, 3};
    const ProjectFiles no_files;
    const Result<PackedCases> packed = Pack_cases({definition, data, no_files, 6});
    ASSERT_TRUE(packed);
    std::map<std::pair<std::uint64_t, std::uint64_t>, int> counts;
    for (std::size_t k = 0; k < packed->patterns(); ++k)
        counts[{packed->missing[k], packed->keys[k]}] += packed->counts[k];
    EXPECT_EQ(packed->patterns(), 3u);
    // Two bits a variable, the second one higher; the case without the first is missing it.
    EXPECT_EQ(counts, (std::map<std::pair<std::uint64_t, std::uint64_t>, int>{
                          {{0, 0b0110}, 3}, {{0, 0b1101}, 2}, {{1, 0b0100}, 1}}));
}

TEST(CaseStrata, TakeMoreVariablesThanAnyTable) {
    // 59 variables of 57 categories, six words a pattern, against plain counting. Any two
    // conditions differ in one or two variables, by the higher bits of a category.
    const std::vector<int> dims(MaxVariables, MaxCategories);
    std::mt19937 random(7);
    std::vector<std::vector<int>> cases;
    for (int c = 0; c < 3000; ++c) {
        std::vector<int> one(MaxVariables, 1);
        one[random() % MaxVariables] = 33;
        one[1] = 1 + static_cast<int>(random() % 3);   // variable 2
        one[43] = 1 + static_cast<int>(random() % 3);  // variable 44
        if (random() % 9 == 0) one[20] = 0;
        cases.push_back(one);
    }
    Hypothesis row;
    for (int v = 1; v <= MaxVariables; ++v) row.Role(v) = role::conditioning;
    row.Role(2) = row.Role(44) = role::tested;
    std::map<std::vector<int>, TwoWayTable> expected;  // by Z, the last variable first
    std::int64_t complete = 0;
    for (const std::vector<int>& one : cases) {
        if (one[20] == 0) continue;
        ++complete;
        std::vector<int> z;
        for (std::size_t v = 59; v-- > 0;)
            if (v != 1 && v != 43) z.push_back(one[v]);
        TwoWayTable& counts = expected.try_emplace(z, dims[1], dims[43]).first->second;
        ++counts(one[1], one[43]);
    }
    std::vector<TwoWayTable> strata;
    StrataMemory memory;
    const StrataFound found =
        For_each_stratum(Pack(dims, cases), row, memory,
                         [&](const TwoWayTable& counts) { strata.push_back(counts); });
    ASSERT_EQ(strata.size(), expected.size());
    auto next = strata.begin();
    for (auto& [z, counts] : expected) {
        Fill_margins(counts);
        EXPECT_EQ(*next++, counts);
    }
    EXPECT_EQ(found.cases, complete);
    EXPECT_TRUE(found.missing_slices);
}

}  // namespace
}  // namespace tarven
