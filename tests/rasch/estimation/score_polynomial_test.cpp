// Score polynomials and expected margins against the sum over all response vectors.

#include "rasch/estimation/score_polynomial.h"

#include <gtest/gtest.h>

#include <random>

#include "support/item_models.h"
#include "support/item_samples.h"

namespace tarven {
namespace {

std::size_t At(int i) {
    return static_cast<std::size_t>(i);
}

/// Small models with dependences and DIF of every kind: chains and blocks of items, items with
/// several sources, sources that only items in components have.
const std::vector<std::string>& Terms_to_try() {
    static const std::vector<std::string> terms = {"",
                                                   "AB",
                                                   "AB BC",
                                                   "AB BC AC DE",
                                                   "AF BG",
                                                   "AB CD AG BF",
                                                   "AB BC CD AF AG DG EF",
                                                   "AB AC AD AE BC BD BE CD CE DE AF"};
    return terms;
}

NumberSet Random_items(std::mt19937& random, int n) {
    return random() & All_items(n);
}

TEST(ScorePolynomial, IsTheSumOverAllResponseVectors) {
    std::mt19937 random(1);
    for (const std::string& terms : Terms_to_try()) {
        const GLLRM model = With_terms_of(Model_of_dims({2, 3, 2, 4, 3}, {2, 3}), terms);
        const ModelStructure structure = Structure_of(model);
        const GLLRMParameters parameters = Random_parameters(random, model);
        const auto vectors = All_response_vectors(model);
        std::vector<NumberSet> sets = {All_items(5), Random_items(random, 5), 0};
        for (int i = 1; i <= 5; ++i) sets.push_back(All_items(5) & ~Number(i));
        for (const NumberSet items : sets) {
            std::vector<std::uint8_t> categories;
            for (const DifSource& source : structure.sources)
                categories.push_back(static_cast<std::uint8_t>(
                    1 + random() % static_cast<unsigned>(source.categories)));
            std::vector<Extended> plain(20, 0);
            for (const auto& scores : vectors) {
                int total = 0;
                bool counted = true;  // items outside the set at 0, so that each vector counts once
                for (int i = 1; i <= 5; ++i) {
                    if (Has_number(items, i)) total += scores[At(i - 1)];
                    counted = counted && (Has_number(items, i) || scores[At(i - 1)] == 0);
                }
                if (counted)
                    plain[At(total)] += Weight_of(structure, parameters, scores, categories, items);
            }
            const ScorePolynomial gamma =
                Score_polynomial(structure, parameters, categories, items);
            for (int s = -1; s < 20; ++s) {
                const double expected = s < 0 ? 0 : static_cast<double>(plain[At(s)]);
                EXPECT_NEAR(static_cast<double>(gamma(s)), expected, 1e-14 * expected)
                    << terms << " score " << s << " of items " << items;
            }
        }
    }
}

TEST(ScorePolynomial, BeginsAtTheLowestScoresThatWereSeen) {
    const GLLRM model = Model_of_dims({3, 3});
    std::mt19937 random(2);
    GLLRMParameters parameters = Random_parameters(random, model);
    parameters.low[1] = 1;
    parameters.low[2] = parameters.high[2] = 2;
    const ScorePolynomial gamma = Score_polynomial(Structure_of(model), parameters, {}, 3);
    EXPECT_EQ(gamma.low, 3);
    EXPECT_EQ(gamma.high(), 4);
    EXPECT_EQ(gamma(4), parameters.eps[1][2] * parameters.eps[2][2]);
}

/// Margins expected of one person at a time, from the probabilities of all response vectors.
ExpectedMargins Expected_by_vectors(const GLLRM& model, const GLLRMParameters& parameters,
                                    const std::vector<Stratum>& strata) {
    const ModelStructure structure = Structure_of(model);
    ExpectedMargins expected;
    expected.pairs.assign(structure.pairs.size(), ScoreTable<Extended>(ItemScores));
    for (const DifTerm& term : structure.terms)
        expected.terms.emplace_back(structure.sources[At(term.source)].categories);
    for (const Stratum& stratum : strata) {
        NumberSet items = 0;
        for (const int c : stratum.components)
            for (const int i : structure.components[At(c)].items) items |= Number(i);
        for (const CellScores& cell : stratum.cells) {
            std::vector<std::uint8_t> categories(structure.sources.size(), 1);
            for (std::size_t k = 0; k < stratum.sources.size(); ++k)
                categories[At(stratum.sources[k])] = cell.categories[k];
            const ScorePolynomial gamma =
                Score_polynomial(structure, parameters, categories, items);
            for (const auto& v : All_response_vectors(model)) {
                int total = 0;
                bool counted = true;
                for (int i = 1; i <= model.NITEMS; ++i) {
                    if (Has_number(items, i)) total += v[At(i - 1)];
                    counted = counted && (Has_number(items, i) || v[At(i - 1)] == 0);
                }
                Extended persons = 0;
                for (const ScoreCount& count : cell.scores)
                    if (count.score == total) persons += static_cast<Extended>(count.persons);
                if (!counted || persons == 0) continue;
                const Extended e =
                    persons * Weight_of(structure, parameters, v, categories, items) / gamma(total);
                for (int i = 1; i <= model.NITEMS; ++i)
                    if (Has_number(items, i)) expected.items[At(i)][At(v[At(i - 1)])] += e;
                for (std::size_t k = 0; k < structure.pairs.size(); ++k)
                    if (Has_number(items, structure.pairs[k].item))
                        expected.pairs[k](v[At(structure.pairs[k].item - 1)],
                                          v[At(structure.pairs[k].other - 1)]) += e;
                for (std::size_t k = 0; k < structure.terms.size(); ++k)
                    if (Has_number(items, structure.terms[k].item))
                        expected.terms[k](v[At(structure.terms[k].item - 1)],
                                          categories[At(structure.terms[k].source)] - 1) += e;
            }
        }
    }
    return expected;
}

void Expect_same(const std::vector<ScoreTable<Extended>>& fast,
                 const std::vector<ScoreTable<Extended>>& plain, const std::string& terms) {
    ASSERT_EQ(fast.size(), plain.size());
    for (std::size_t k = 0; k < fast.size(); ++k)
        for (std::size_t cell = 0; cell < plain[k].cells.size(); ++cell)
            EXPECT_NEAR(static_cast<double>(fast[k].cells[cell]),
                        static_cast<double>(plain[k].cells[cell]), 1e-11)
                << terms << " table " << k << " cell " << cell;
}

TEST(ExpectedMargins, AreTheSumsOverAllResponseVectors) {
    std::mt19937 random(3);
    PolynomialMemory memory;  // one for all, so that what one model leaves there harms no other
    std::size_t incomplete_strata = 0;
    for (const std::string& terms : Terms_to_try()) {
        const GLLRM model = With_terms_of(Model_of_dims({2, 3, 2, 4, 3}, {2, 3}), terms);
        const ModelStructure structure = Structure_of(model);
        const ResponseTable table = Random_responses(random, model, 60, 4);
        const SufficientMargins complete = Complete_margins(model, structure, table, {});
        const SufficientMargins incomplete =
            Incomplete_margins(model, structure, table, {}, complete.high);
        std::vector<Stratum> strata = complete.strata;
        strata.insert(strata.end(), incomplete.strata.begin(), incomplete.strata.end());
        incomplete_strata += incomplete.strata.size();
        const GLLRMParameters parameters = Random_parameters(random, model);
        const ExpectedMargins plain = Expected_by_vectors(model, parameters, strata);
        ExpectedMargins fast;
        Expect_margins(structure, parameters, strata, memory, fast);
        for (int i = 1; i <= 5; ++i)
            for (int x = 0; x < ItemScores; ++x)
                EXPECT_NEAR(static_cast<double>(fast.items[At(i)][At(x)]),
                            static_cast<double>(plain.items[At(i)][At(x)]), 1e-11)
                    << terms << " item " << i << " score " << x;
        Expect_same(fast.pairs, plain.pairs, terms);
        Expect_same(fast.terms, plain.terms, terms);
    }
    EXPECT_GT(incomplete_strata, 20u) << "persons with missing items belong to the test";
}

}  // namespace
}  // namespace tarven
