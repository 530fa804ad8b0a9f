#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "shell/limits.h"
#include "shell/one_based.h"
#include "tables/table/contingency_table.h"

namespace tarven {

/// Hypotheses of conditional independence, "X and Y are independent given Z", over the dimensions
/// of the current table or over the project's variables, and the results of their tests.

/// What a variable does in a hypothesis.
namespace role {
inline constexpr std::uint8_t collapsed = 0;     ///< the table is summed over it
inline constexpr std::uint8_t tested = 1;        ///< X or Y
inline constexpr std::uint8_t conditioning = 2;  ///< member of Z
inline constexpr std::uint8_t excluded = 3;      ///< no role; all numbers above the last variable
}  // namespace role

namespace kind {
inline constexpr std::uint8_t without_gamma = 2;  ///< X or Y is nominal with over two categories
inline constexpr std::uint8_t with_gamma = 3;
}  // namespace kind

/// One hypothesis: sixty bytes. The first variable with role 1 is X, the second Y.
struct Hypothesis {
    std::uint8_t Kind = 0;  ///< set by the engines: 3 with gamma, 2 without; 0 before a test
    std::uint8_t HypothesisRole[MaxVariables] = {};  ///< of variable v at v-1; see Role

    Hypothesis() {
        for (std::uint8_t& r : HypothesisRole) r = role::excluded;
    }
    /// Of variable v, 1..59.
    std::uint8_t& Role(int v) { return HypothesisRole[v - 1]; }
    std::uint8_t Role(int v) const { return HypothesisRole[v - 1]; }

    bool operator==(const Hypothesis&) const = default;
};
static_assert(sizeof(Hypothesis) == 60);

/// A p that marks a hypothesis that could not be tested.
inline constexpr float NotTested = 2;

/// The results of one hypothesis, in single precision. The values given here are those of a
/// hypothesis that has been defined and not tested yet.
struct TestResult {
    float Statistic = 1;     ///< sum over strata
    float Df = 1;            ///< sum over strata; 0 after a test that found none
    float PAsymp = 1;        ///< 2: not tested
    float PExact = 1;        ///< Monte Carlo; only with Nsim > 0
    float Gamma = 1;         ///< partial gamma
    float PGammaAsymp = 1;   ///< one-sided; the two-sided one is twice this
    float PGammaExact = 1;   ///< one-sided, Monte Carlo
    float Nsim = 0;          ///< random tables generated
    float PGammaExact2 = 0;  ///< two-sided, Monte Carlo

    bool operator==(const TestResult&) const = default;
};

/// The row of a hypothesis that could not be tested: no slices, or no degrees of freedom.
inline TestResult Untested_result() {
    return {.Statistic = 0,
            .Df = 0,
            .PAsymp = NotTested,
            .PExact = NotTested,
            .Gamma = 0,
            .PGammaAsymp = NotTested,
            .PGammaExact = NotTested,
            .Nsim = 0,
            .PGammaExact2 = 0};
}

/// Whose variables the roles of a list are numbered by.
enum class HypothesisScope : std::uint8_t { table, graph };

/// The variables that hypotheses are made over, numbered 1..Nvar, Nvar <= 59.
struct HypothesisVariables {
    int Nvar = 0;
    std::string vlabel;                       ///< Nvar characters, that of variable v at v-1
    One_based<int, MaxVariables> DIM;         ///< [1..Nvar]
    One_based<int, MaxVariables> TYPE;        ///< [1..Nvar]: below 3 nominal
    One_based<int, MaxVariables> block;       ///< [1..Nvar]: recursive block, 1 the responses
    One_based<bool, MaxVariables> collapsed;  ///< [1..Nvar]: out of all hypotheses
};

/// Those of a table, at most MaxVariables of them.
HypothesisVariables Variables_of_table(const ContingencyTable& table);

/// X and Y, in the order of the variables; 0 where there is none.
struct TestedPair {
    int X = 0;
    int Y = 0;
    bool proper() const { return Y > 0; }
};
TestedPair Tested_pair(const Hypothesis& hypothesis);

/// The members of Z in ascending order.
std::vector<int> Conditioning_variables(const Hypothesis& hypothesis);

/// The row (x, y | z) over variables 1..Nvar: the rest of them is collapsed over.
Hypothesis Make_hypothesis(int Nvar, int x, int y, std::span<const int> z);

/// Gamma is defined unless X or Y is nominal with more than two categories.
bool Gamma_is_defined(int dim_x, int type_x, int dim_y, int type_y);

/// "A&B" or "A&B|CD", without blanks. vlabel holds the label of variable v at v-1.
std::string Hypothesis_label(const Hypothesis& hypothesis, const std::string& vlabel);

struct HypothesisList {
    std::vector<Hypothesis> rows;
    std::vector<int> collapsed_over;  ///< variables that were asked for and are out
    bool over_limit = false;          ///< the list stopped at MaxHypotheses
};

/// Takes out the rows that test a variable of more than MaxCategories categories, which the score
/// may have; it can only condition. True when there were some.
bool Remove_untestable(HypothesisList& list, const HypothesisVariables& variables);

/// One row for each pair i < j that `pairs` names in either order, i ascending, then j: given all
/// other variables of i's recursive block and of the blocks after it. A number of a pair outside
/// 1..Nvar stands for all variables.
HypothesisList Define_hypotheses(const HypothesisVariables& variables,
                                 std::span<const std::pair<int, int>> pairs);

/// (i, j | k) for each i < j with i in the first block, and each other k.
HypothesisList Three_way_hypotheses(const HypothesisVariables& variables);

/// (v1, v2 | S) for every subset S of 1, 2, ... up to n variables of v1's block and later, smaller
/// sets first, then in lexicographic order. n is capped at Nvar - 2. v1 and v2 are different
/// variables in 1..Nvar that are not collapsed.
HypothesisList Elaborate_hypotheses(const HypothesisVariables& variables, int v1, int v2, int n);

}  // namespace tarven
