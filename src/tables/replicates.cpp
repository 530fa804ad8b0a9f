#include "tables/replicates.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "tables/gamma.h"

namespace tarven {

namespace {

constexpr double most_tables_of_a_tree = 4096;

/// About how many values a cell takes among a few thousand tables.
double Likely_values(double r, double c, double N) {
    if (N < 2) return 1;
    const double range = std::min(r, c) - std::max(0.0, r + c - N) + 1;
    const double variance = r * c * (N - r) * (N - c) / (N * N * (N - 1));
    return std::min(range, 6 * std::sqrt(variance) + 2);
}

/// Whether so few tables have these margins that keeping those that are met pays.
bool Few_tables(const Margins& margins) {
    double tables = 1;
    const auto N = static_cast<double>(margins.total);
    for (std::size_t i = 0; i + 1 < margins.row.size(); ++i)
        for (std::size_t j = 0; j + 1 < margins.column.size(); ++j) {
            tables *= Likely_values(static_cast<double>(margins.row[i]),
                                    static_cast<double>(margins.column[j]), N);
            if (tables > most_tables_of_a_tree) return false;
        }
    return margins.total <= FactorTableTop;
}

/// Concordance of cells[0..R*C-1] in the given integers, which must hold the square of the total.
template <class Integer>
Concordance Pairs_of_cells(const std::int32_t* cells, std::size_t R, std::size_t C,
                           Integer* column) {
    std::fill(column, column + C, Integer{0});
    Integer above = 0, P = 0, Q = 0;
    for (std::size_t i = 0; i < R; ++i, cells += C) {
        Integer left = 0, added = 0;
        for (std::size_t j = 0; j < C; ++j) {
            const auto n = static_cast<Integer>(cells[j]);
            const Integer here = column[j];
            const Integer right = above - left - here;
            P += n * (left + right);
            Q += n * (left - right);
            left += here;
            column[j] = here + n;
            added += n;
        }
        above += added;
    }
    return {2 * static_cast<std::int64_t>(P), 2 * static_cast<std::int64_t>(Q)};
}

Concordance Pairs(const std::vector<std::int32_t>& cells, std::size_t R, std::size_t C,
                  std::int64_t total) {
    constexpr std::int64_t small_total = 32767;
    constexpr std::size_t small_width = 64;
    if (total <= small_total && C <= small_width) {
        std::array<std::int32_t, small_width> column;
        return Pairs_of_cells(cells.data(), R, C, column.data());
    }
    std::vector<std::int64_t> column(C);
    return Pairs_of_cells(cells.data(), R, C, column.data());
}

}  // namespace

StratumSampler::StratumSampler(const ExpectedTable& expected, const StatisticRule& rule,
                               bool with_gamma, DrawMemory& memory, std::int64_t most_outcomes)
    : expected_(&expected),
      memory_(&memory),
      rule_(rule),
      with_gamma_(with_gamma),
      margins_(Margins_of_expected(expected)),
      outcomes_left_(most_outcomes),
      cells_(margins_.row.size() * margins_.column.size()) {
    agree_ = Margins_agree(margins_);
    tree_ = agree_ && Few_tables(margins_);
    if (!agree_) return;
    memory.Cover(margins_.total);
    if (!tree_) Prepare_terms();
}

/// A window of the likely counts of each cell.
void StratumSampler::Prepare_terms() {
    const auto N = static_cast<double>(margins_.total);
    std::size_t first = 0;
    for (const std::int64_t row : margins_.row)
        for (const std::int64_t column : margins_.column) {
            const auto r = static_cast<double>(row), c = static_cast<double>(column);
            const double mean = N > 0 ? r * c / N : 0;
            const double reach = 6 * std::sqrt(mean) + 6;
            const double low = std::max(0.0, std::floor(mean - reach));
            const double high = std::min({r, c, std::ceil(mean + reach)});
            Terms terms;
            terms.low = static_cast<std::int32_t>(low);
            terms.length = static_cast<std::int32_t>(high) - terms.low + 1;
            terms.first = first;
            first += static_cast<std::size_t>(terms.length);
            terms_.push_back(terms);
        }
    term_.assign(first, std::numeric_limits<Extended>::quiet_NaN());
}

Extended StratumSampler::Statistic() {
    const std::size_t C = margins_.column.size();
    Extended sum = 0;
    std::size_t k = 0;
    const auto term_of = [&](std::size_t cell) {
        return Statistic_term(
            cells_[cell],
            (*expected_)(static_cast<int>(cell / C) + 1, static_cast<int>(cell % C) + 1), rule_);
    };
    if (terms_.empty())
        for (; k < cells_.size(); ++k) sum += term_of(k);
    for (; k < cells_.size(); ++k) {
        const Terms& terms = terms_[k];
        const auto place = static_cast<std::uint32_t>(cells_[k] - terms.low);
        if (place >= static_cast<std::uint32_t>(terms.length)) {
            sum += term_of(k);
            continue;
        }
        Extended& term = term_[terms.first + place];
        if (std::isnan(term)) term = term_of(k);
        sum += term;
    }
    return sum * Statistic_factor(rule_);
}

StratumReplicate StratumSampler::Evaluate() {
    StratumReplicate result;
    result.statistic = Statistic();
    if (with_gamma_) {
        const Concordance pairs =
            Pairs(cells_, margins_.row.size(), margins_.column.size(), margins_.total);
        result.P = pairs.P;
        result.Q = pairs.Q;
    }
    return result;
}

StratumReplicate StratumSampler::Draw_apart(RandomStream& stream) {
    stream = Draw_cells(margins_, stream, *memory_, cells_.data());
    return Evaluate();
}

bool StratumSampler::Make_node(std::int32_t& link, const StreamJump& jump, std::int64_t r,
                               std::int64_t c, std::int64_t N) {
    constexpr std::size_t longest = 2048;
    const CellDraw cell = Cell_draw(r, c, N);
    CellRow row;
    if (!memory_->Row(cell, longest, row)) return false;
    const auto size = static_cast<std::int64_t>(row.groups.size()) / 2;
    if (outcomes_left_ < size) return false;
    outcomes_left_ -= size;
    nodes_.push_back({jump, rows_.size()});
    link = static_cast<std::int32_t>(nodes_.size());
    rows_.insert(rows_.end(), row.groups.begin(), row.groups.end());
    child_.resize(rows_.size());
    return true;
}

/// Walks the tree once, making what is missing. Where the tree may not grow, nothing of this draw
/// is kept beyond the nodes that it has made.
StratumReplicate StratumSampler::Grow(RandomStream& stream) {
    const std::size_t R = margins_.row.size(), C = margins_.column.size();
    std::int32_t* left = cells_.data() + (R - 1) * C;
    for (std::size_t j = 0; j < C; ++j) left[j] = static_cast<std::int32_t>(margins_.column[j]);
    constexpr std::size_t at_root = std::numeric_limits<std::size_t>::max();
    std::size_t place = at_root;  // of the link that leads on
    StreamJump jump;
    std::uint32_t word = stream.word;
    std::int64_t below = margins_.total;
    for (std::size_t i = 0; i + 1 < R; ++i) {
        std::int32_t* row = cells_.data() + i * C;
        std::int64_t r = margins_.row[i];
        std::int64_t N = below;
        const bool empty_row = r == 0;
        below -= r;
        for (std::size_t j = 0; j + 1 < C; ++j) {
            const std::int64_t c = left[j];
            std::int64_t x = 0;
            if (!empty_row && c > 0) {
                jump.Add_draw();
                if (r == N) {
                    x = c;
                } else if (c == N) {
                    x = r;
                } else if (r > 0) {
                    std::int32_t link = place == at_root ? root_ : child_[place];
                    if (link == 0) {
                        if (!Make_node(link, jump, r, c, N)) return Draw_apart(stream);
                        (place == at_root ? root_ : child_[place]) = link;
                    }
                    const Node& node = nodes_[static_cast<std::size_t>(link - 1)];
                    word = node.jump(word);
                    place = node.first + Place_in_row(rows_.data() + node.first, word);
                    x = rows_[place];
                    jump = {};
                }
            }
            row[j] = static_cast<std::int32_t>(x);
            r -= x;
            N -= c;
            left[j] -= static_cast<std::int32_t>(x);
        }
        row[C - 1] = static_cast<std::int32_t>(r);
        left[C - 1] -= static_cast<std::int32_t>(r);
    }
    const StratumReplicate replicate = Evaluate();
    stream.word = jump(word);
    if (outcomes_left_ > 0) {
        --outcomes_left_;
        outcomes_.push_back({jump, replicate});
        (place == at_root ? root_ : child_[place]) = -static_cast<std::int32_t>(outcomes_.size());
    }
    return replicate;
}

StratumReplicate StratumSampler::Draw(RandomStream& stream) {
    if (!agree_) {
        TwoWayTable table(expected_->rows, expected_->columns);
        return Draw(stream, table);
    }
    if (!tree_) return Draw_apart(stream);
    std::uint32_t word = stream.word;
    std::int32_t link = root_;
    while (link > 0) {
        const Node& node = nodes_[static_cast<std::size_t>(link - 1)];
        word = node.jump(word);
        link = child_[node.first + Place_in_row(rows_.data() + node.first, word)];
    }
    if (link == 0) return Grow(stream);
    const Outcome& outcome = outcomes_[static_cast<std::size_t>(-link - 1)];
    stream.word = outcome.jump(word);
    return outcome.replicate;
}

StratumReplicate StratumSampler::Draw(RandomStream& stream, TwoWayTable& table) {
    if (agree_) {
        const StratumReplicate result = Draw_apart(stream);
        const int C = table.columns;
        for (int i = 1; i <= table.rows; ++i)
            std::copy_n(cells_.data() + static_cast<std::ptrdiff_t>(i - 1) * C, C, table.Row(i));
        Fill_margins(table);
        return result;
    }
    Random_table(margins_, stream, table);
    StratumReplicate result;
    result.statistic = Sum_of_statistic(table, *expected_, rule_);
    if (with_gamma_) {
        const Concordance pairs = Concordance_of(table);
        result.P = pairs.P;
        result.Q = pairs.Q;
    }
    return result;
}

}  // namespace tarven
