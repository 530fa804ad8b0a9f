#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "rasch/estimation/model_structure.h"
#include "rasch/estimation/sufficient_margins.h"
#include "shell/stop_check.h"

namespace tarven {

/// Score polynomials ("gamma"): the coefficient of a score is the sum, over all response vectors
/// with this score, of the products of their parameters. They are the elementary symmetric
/// functions of the Rasch model when nothing depends on anything. Items and components are
/// convolved in one at a time, a component by its response vectors. Andersen (1972), J. R. Statist.
/// Soc. B 34, 42-54; Gustafsson (1980), Br. J. Math. Stat. Psychol. 33, 205-233, whose sum
/// algorithm, without a difference, loses no digits.

/// The coefficients of the scores low, low + 1, ...; all others are 0.
struct ScorePolynomial {
    int low = 0;
    std::vector<Extended> g{1};
    bool stopped = false;  ///< by the user: the coefficients lack response vectors

    int high() const { return low + static_cast<int>(g.size()) - 1; }
    Extended operator()(int score) const {
        return score < low || score > high() ? 0 : g[static_cast<std::size_t>(score - low)];
    }
};

/// Items 1..n as a set.
NumberSet All_items(int n);

/// The polynomial of the items of a set in one cell of the sources: of all items, of all but one,
/// of a component, of a subset. Of a component with dependent items the pairs within the set count.
/// categories[k] is the category of source k, from 1; it is not read where no item of the set has
/// DIF by it. Items with no observed category make it 0.
/// `stop` is asked every some thousand response vectors.
/// Cost: items times scores, and the response vectors of the components.
ScorePolynomial Score_polynomial(const ModelStructure& structure, const GLLRMParameters& parameters,
                                 std::span<const std::uint8_t> categories, NumberSet items,
                                 const StopCheck& stop = {});

/// The product of two polynomials.
ScorePolynomial Product(const ScorePolynomial& one, const ScorePolynomial& other);

/// Expected margins given the scores of the persons.
struct ExpectedMargins {
    ItemTable<Extended> items;                ///< E(i,x)
    std::vector<ScoreTable<Extended>> pairs;  ///< parallel to the pairs of the structure
    std::vector<ScoreTable<Extended>> terms;  ///< parallel to its terms
};

/// What the calculation of expected margins keeps between calls: one for each thread.
struct PolynomialMemory {
    std::vector<Extended> numbers;
    std::vector<int> positions;
};

/// The margins expected of the persons of the strata: each person's response vector has the
/// probability of the model given its score, its cell and its components. `expected` is made
/// anew; with log_gamma the sum of ln gamma(s | y) over the persons goes there.
///
/// The polynomial of a cell is a chain of convolutions. Its derivatives by the polynomial of each
/// component are the rest polynomials already weighted with n(s,y)/gamma(s | y), so one walk back
/// along the chain gives the expected margins of all components, with products and sums of positive
/// numbers alone, at twice the cost of the polynomial itself. Cells are walked as a tree of the
/// categories of the sources, in which what a component shares with other cells is done once.
///
/// `stop` is asked at each cell and every some thousand response vectors. False when it ended the
/// calculation: the margins are not those of all persons then.
bool Expect_margins(const ModelStructure& structure, const GLLRMParameters& parameters,
                    std::span<const Stratum> strata, PolynomialMemory& memory,
                    ExpectedMargins& expected, Extended* log_gamma = nullptr,
                    const StopCheck& stop = {});

}  // namespace tarven
