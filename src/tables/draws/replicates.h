#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "shell/numbers.h"
#include "tables/draws/cell_draws.h"
#include "tables/draws/random_table.h"
#include "tables/numbers/random_stream.h"
#include "tables/table/two_way.h"

namespace tarven {

/// The random tables of one stratum with what a Monte Carlo test reads of them.

/// Of one table, or summed over strata.
struct StratumReplicate {
    /// The statistic in 64-bit reals, with its terms summed in any order: good enough to tell most
    /// replicates from the observed tables. `Exact_statistic` decides the others.
    double statistic = 0;
    std::int64_t P = 0, Q = 0;  ///< untied pairs, as in Concordance; 0 when gamma is not wanted

    void Add(const StratumReplicate& other) {
        statistic += other.statistic;
        P += other.P;
        Q += other.Q;
    }
};

/// By how much the sum of StratumReplicate::statistic over strata may differ from the sum of
/// Sum_of_statistic. Each term is rounded once and each of the m additions errs by 2^-53 of the sum
/// of absolute terms, which exceeds the statistic by twice its negative terms. Those sum to no less
/// than -N: n ln(n/e) >= -e/exp(1), and n ((n/e)^lambda - 1) >= -n.
struct SumError {
    double absolute = 0, relative = 0;

    SumError(std::span<const ExpectedTable> strata, const StatisticRule& rule);
    double of(double statistic) const { return absolute + relative * statistic; }
};

/// A run of `m` draws whose values do not matter: word := multiplier word + increment.
struct StreamJump {
    std::uint32_t multiplier = 1, increment = 0;

    void Add_draw() {
        multiplier *= 134775813u;
        increment = increment * 134775813u + 1u;
    }
    void Add(const StreamJump& other) {
        multiplier *= other.multiplier;
        increment = increment * other.multiplier + other.increment;
    }
    std::uint32_t operator()(std::uint32_t word) const { return multiplier * word + increment; }
};

/// Draws the tables of one stratum, exactly those of `Random_table`, and gives for each what
/// `Sum_of_statistic` and `Concordance_of` give. It refers to the expected table and the memory,
/// which must outlive it.
///
/// Where few tables are possible the draws are kept as a tree: a node is a cell whose value is
/// open, with its row of thresholds, and a leaf a table with its statistic and pairs. A table is
/// then a walk down the tree; a branch is made when it is first met. Elsewhere the terms of the
/// statistic are kept by cell and count, and the next few tables are drawn and scored side by side:
/// a table takes one number a cell, unless a column is full before the last row, so where the next
/// tables will start is guessed. A table is used only if the stream stands where it was started.
class StratumSampler {
  public:
    /// `most_outcomes` bounds the nodes and tables that are kept.
    StratumSampler(const ExpectedTable& expected, const StatisticRule& rule, bool with_gamma,
                   DrawMemory& memory, std::int64_t most_outcomes = 1 << 14);

    /// The numbers that a table takes when no column is full before the last row.
    const StreamJump& Usual_draws() const { return usual_draws_; }

    /// Guesses that from table to table the stream advances by so much: by `Usual_draws` unless
    /// told otherwise. A wrong guess costs time only.
    void Look_ahead(const StreamJump& from_table_to_table) { ahead_ = from_table_to_table; }

    /// One table.
    StratumReplicate Draw(RandomStream& stream);

    /// The same, with the table and its margins.
    StratumReplicate Draw(RandomStream& stream, TwoWayTable& table);

    /// `Sum_of_statistic` of the last table, bit for bit.
    Extended Exact_statistic() const;

  private:
    struct Node {
        StreamJump jump;    ///< up to and with the draw of this cell
        std::size_t first;  ///< of its row in rows_ and child_
    };
    struct LeafTable {
        StreamJump jump;  ///< over the draws that are left
        StratumReplicate replicate;
        Extended statistic;
    };
    struct Terms {
        std::int32_t low = 0;
        std::uint32_t length = 0;
        std::size_t first = 0;  ///< of its terms in term_
    };

    StratumReplicate Grow(RandomStream& stream);
    StratumReplicate Draw_apart(RandomStream& stream);
    StratumReplicate Draw_ahead(RandomStream& stream);
    void Fill_ahead(std::uint32_t word);
    void Statistics_side_by_side();
    void Pairs_side_by_side();
    StratumReplicate Evaluate();
    template <class Integer>
    StratumReplicate Evaluate_with(Integer* above);
    double Statistic_with_new_terms(const std::int32_t* cells, std::size_t stride);
    Extended Sum_of_cells(const std::int32_t* cells, std::size_t stride) const;
    void Prepare();
    bool Make_node(std::int32_t& link, const StreamJump& jump, std::int64_t r, std::int64_t c,
                   std::int64_t N);

    const ExpectedTable* expected_;
    DrawMemory* memory_;
    StatisticRule rule_;
    bool with_gamma_, agree_, tree_;
    Margins margins_;
    std::int64_t outcomes_left_;

    std::vector<std::int32_t> cells_;  ///< the last table, without margins

    std::int32_t root_ = 0;  ///< a link as those of child_
    std::vector<Node> nodes_;
    std::vector<LeafTable> outcomes_;
    std::vector<std::int32_t> rows_;  ///< of the nodes
    std::vector<std::int32_t>
        child_;  ///< at the place of a value: 0 not met, n node n-1, -n outcome n-1

    std::int32_t last_outcome_ = 0;  ///< n: the last table was outcome n-1; 0: it stands in cells_

    /// With one random row every column with cases takes a number, whatever was drawn before.
    bool draws_are_constant_ = false;
    StreamJump usual_draws_;

    /// Tables drawn ahead, none where the table is too large for it.
    std::vector<CellsSideBySide> cells_ahead_;
    std::array<StratumReplicate, SideBySide> replicates_ahead_;
    std::array<std::uint32_t, SideBySide> start_ahead_ = {};
    std::array<RandomStream, SideBySide> end_ahead_;
    StreamJump ahead_;
    std::size_t next_ahead_ = SideBySide;  ///< the table to be used next
    bool last_was_ahead_ = false;          ///< the last table is the one before next_ahead_

    std::int64_t tied_ = 0;     ///< P without the part of the cells, in pairs counted twice
    double factor_ = 1;         ///< of the statistic
    std::vector<Terms> terms_;  ///< by cell
    std::vector<double> term_;  ///< nan where not yet needed
};

}  // namespace tarven
