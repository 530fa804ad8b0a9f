#include "tables/draws/replicates.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>

#include "tables/table/gamma.h"

namespace tarven {

namespace {

constexpr double most_tables_of_a_tree = 4096;

// Tables up to here are scored side by side: every count has its term kept, and sums of pairs, at
// most the square of the total, are exact in 32-bit reals.
constexpr std::int64_t largest_total_ahead = 1024;
constexpr std::size_t largest_width_ahead = 64;

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

std::int64_t Sum_of_squares(const std::vector<std::int64_t>& margin) {
    std::int64_t sum = 0;
    for (const std::int64_t n : margin) sum += n * n;
    return sum;
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
    Prepare();
}

SumError::SumError(std::span<const ExpectedTable> strata, const StatisticRule& rule) {
    double cells = 0, cases = 0;
    for (const ExpectedTable& e : strata) {
        cells += static_cast<double>(e.cells.size());
        cases += e.Total();
    }
    relative = 0x1p-50 * (cells + 16);
    absolute = relative * static_cast<double>(Statistic_factor(rule)) * 2 * cases;
}

/// The constants of the table, and a window of the likely counts of each cell.
void StratumSampler::Prepare() {
    tied_ = margins_.total * margins_.total - Sum_of_squares(margins_.row) -
            Sum_of_squares(margins_.column);
    factor_ = static_cast<double>(Statistic_factor(rule_));
    const auto with_cases = [](const std::vector<std::int64_t>& margin) {
        return std::count_if(margin.begin(), margin.end() - 1, [](auto n) { return n > 0; });
    };
    draws_are_constant_ = with_cases(margins_.row) == 1;
    for (auto k = with_cases(margins_.row) * with_cases(margins_.column); k > 0; --k)
        usual_draws_.Add_draw();
    ahead_ = usual_draws_;
    const bool ahead = !tree_ && margins_.total <= largest_total_ahead &&
                       margins_.column.size() <= largest_width_ahead;
    if (ahead) cells_ahead_.resize(cells_.size());
    const auto N = static_cast<double>(margins_.total);
    std::size_t first = 0;
    for (const std::int64_t row : margins_.row)
        for (const std::int64_t column : margins_.column) {
            const auto r = static_cast<double>(row), c = static_cast<double>(column);
            const double mean = N > 0 ? r * c / N : 0;
            const double reach = 6 * std::sqrt(mean) + 6;
            const double low = ahead ? 0 : std::max(0.0, std::floor(mean - reach));
            const double high = std::min({r, c, ahead ? r : std::ceil(mean + reach)});
            Terms terms;
            terms.low = static_cast<std::int32_t>(low);
            terms.length = static_cast<std::uint32_t>(high - low) + 1;
            terms.first = first;
            first += terms.length;
            terms_.push_back(terms);
        }
    term_.assign(first, std::numeric_limits<double>::quiet_NaN());
}

Extended StratumSampler::Sum_of_cells(const std::int32_t* cells, std::size_t stride) const {
    Extended sum = 0;
    for (int i = 1; i <= expected_->rows; ++i)
        for (int j = 1; j <= expected_->columns; ++j, cells += stride)
            sum += Statistic_term(*cells, (*expected_)(i, j), rule_);
    return sum * Statistic_factor(rule_);
}

Extended StratumSampler::Exact_statistic() const {
    if (last_outcome_ > 0) return outcomes_[static_cast<std::size_t>(last_outcome_ - 1)].statistic;
    if (last_was_ahead_) return Sum_of_cells(&cells_ahead_[0][next_ahead_ - 1], SideBySide);
    return Sum_of_cells(cells_.data(), 1);
}

/// Fills in the terms that a table needs and are not there; without the factor.
double StratumSampler::Statistic_with_new_terms(const std::int32_t* cells, std::size_t stride) {
    const auto C = static_cast<int>(margins_.column.size());
    double sum = 0;
    for (std::size_t k = 0; k < cells_.size(); ++k) {
        const auto i = static_cast<int>(k) / C + 1, j = static_cast<int>(k) % C + 1;
        const std::int32_t n = cells[k * stride];
        const auto term = static_cast<double>(Statistic_term(n, (*expected_)(i, j), rule_));
        const auto place = static_cast<std::uint32_t>(n - terms_[k].low);
        if (place < terms_[k].length) term_[terms_[k].first + place] = term;
        sum += term;
    }
    return sum;
}

/// One pass over the cells. `above` holds the cases of the rows above in columns 1..j, so with what
/// stands left and right of a column above, Q grows by n (left - right). Untied pairs are all pairs
/// but those in a row or in a column, where a cell's own pairs are taken off twice. The integers
/// must hold the square of the total.
template <class Integer>
StratumReplicate StratumSampler::Evaluate_with(Integer* above) {
    const std::size_t R = margins_.row.size(), C = margins_.column.size();
    std::fill(above, above + C, Integer{0});
    const std::int32_t* cell = cells_.data();
    const Terms* terms = terms_.data();
    const double* term = term_.data();
    double sum = 0;
    Integer squares = 0, Q = 0;
    bool known = true;
    for (std::size_t i = 0; i < R; ++i) {
        const Integer all_above = above[C - 1];
        Integer in_row = 0, left = 0;
        for (std::size_t j = 0; j < C; ++j, ++cell, ++terms) {
            const auto n = static_cast<Integer>(*cell);
            const auto place = static_cast<std::uint32_t>(*cell - terms->low);
            if (place >= terms->length) {
                known = false;
            } else {
                sum += term[terms->first + place];
            }
            const Integer up_to_here = above[j];
            squares += n * n;
            Q += n * (left + up_to_here - all_above);
            in_row += n;
            left = up_to_here;
            above[j] = up_to_here + in_row;
        }
    }
    if (!known || std::isnan(sum)) sum = Statistic_with_new_terms(cells_.data(), 1);
    StratumReplicate result;
    result.statistic = sum * factor_;
    if (with_gamma_) {
        result.P = tied_ + static_cast<std::int64_t>(squares);
        result.Q = 2 * static_cast<std::int64_t>(Q);
    }
    return result;
}

StratumReplicate StratumSampler::Evaluate() {
    last_outcome_ = 0;
    last_was_ahead_ = false;
    constexpr std::int64_t small_total = 32767;
    constexpr std::size_t small_width = 64;
    if (margins_.total <= small_total && margins_.column.size() <= small_width) {
        std::array<std::int32_t, small_width> above;
        return Evaluate_with(above.data());
    }
    std::vector<std::int64_t> above(margins_.column.size());
    return Evaluate_with(above.data());
}

StratumReplicate StratumSampler::Draw_apart(RandomStream& stream) {
    stream = Draw_cells(margins_, stream, *memory_, cells_.data());
    return Evaluate();
}

void StratumSampler::Statistics_side_by_side() {
    std::array<double, SideBySide> sum = {};
    const double* term = term_.data();
    const CellsSideBySide* cell = cells_ahead_.data();
    for (const Terms& terms : terms_) {
        const double* of_cell = term + terms.first;
        for (std::size_t t = 0; t < SideBySide; ++t) sum[t] += of_cell[(*cell)[t]];
        ++cell;
    }
    for (std::size_t t = 0; t < SideBySide; ++t) {
        if (std::isnan(sum[t])) sum[t] = Statistic_with_new_terms(&cells_ahead_[0][t], SideBySide);
        replicates_ahead_[t].statistic = sum[t] * factor_;
    }
}

/// As in Evaluate_with, four tables at a time.
void StratumSampler::Pairs_side_by_side() {
    using Four = float __attribute__((vector_size(4 * SideBySide)));
    using FourCounts = std::int32_t __attribute__((vector_size(4 * SideBySide)));
    const std::size_t R = margins_.row.size(), C = margins_.column.size();
    std::array<Four, largest_width_ahead> above;
    std::fill_n(above.begin(), C, Four{});
    const CellsSideBySide* cell = cells_ahead_.data();
    Four squares = {}, Q = {};
    for (std::size_t i = 0; i < R; ++i) {
        const Four all_above = above[C - 1];
        Four in_row = {}, left = {};
        for (std::size_t j = 0; j < C; ++j, ++cell) {
            FourCounts counts;
            std::memcpy(&counts, cell, sizeof counts);
            const Four n = __builtin_convertvector(counts, Four);
            const Four up_to_here = above[j];
            squares += n * n;
            Q += n * (left + up_to_here - all_above);
            in_row += n;
            left = up_to_here;
            above[j] = up_to_here + in_row;
        }
    }
    for (std::size_t t = 0; t < SideBySide; ++t) {
        replicates_ahead_[t].P = tied_ + static_cast<std::int64_t>(squares[t]);
        replicates_ahead_[t].Q = 2 * static_cast<std::int64_t>(Q[t]);
    }
}

void StratumSampler::Fill_ahead(std::uint32_t word) {
    for (std::size_t t = 0; t < SideBySide; ++t, word = ahead_(word))
        start_ahead_[t] = end_ahead_[t].word = word;
    Draw_cells_side_by_side(margins_, end_ahead_, *memory_, cells_ahead_.data());
    Statistics_side_by_side();
    if (with_gamma_) Pairs_side_by_side();
    next_ahead_ = 0;
}

StratumReplicate StratumSampler::Draw_ahead(RandomStream& stream) {
    if (next_ahead_ == SideBySide || start_ahead_[next_ahead_] != stream.word)
        Fill_ahead(stream.word);
    stream = end_ahead_[next_ahead_];
    last_was_ahead_ = true;
    return replicates_ahead_[next_ahead_++];
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
        outcomes_.push_back({jump, replicate, Sum_of_cells(cells_.data(), 1)});
        (place == at_root ? root_ : child_[place]) = -static_cast<std::int32_t>(outcomes_.size());
    }
    return replicate;
}

StratumReplicate StratumSampler::Draw(RandomStream& stream) {
    if (!agree_) {
        TwoWayTable table(expected_->rows, expected_->columns);
        return Draw(stream, table);
    }
    if (!cells_ahead_.empty()) return Draw_ahead(stream);
    if (!tree_) return Draw_apart(stream);
    std::uint32_t word = stream.word;
    std::int32_t link = root_;
    while (link > 0) {
        const Node& node = nodes_[static_cast<std::size_t>(link - 1)];
        word = node.jump(word);
        link = child_[node.first + Place_in_row(rows_.data() + node.first, word)];
    }
    if (link == 0) return Grow(stream);
    const LeafTable& outcome = outcomes_[static_cast<std::size_t>(-link - 1)];
    last_outcome_ = -link;
    // Where the end of the walk is known before, the next stratum need not wait for this one.
    stream.word = draws_are_constant_ ? usual_draws_(stream.word) : outcome.jump(word);
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
    last_outcome_ = 0;
    last_was_ahead_ = false;
    for (std::size_t k = 0; k < cells_.size(); ++k)
        cells_[k] =
            table(static_cast<int>(k) / table.columns + 1, static_cast<int>(k) % table.columns + 1);
    StratumReplicate result;
    result.statistic = static_cast<double>(Sum_of_cells(cells_.data(), 1));
    if (with_gamma_) {
        const Concordance pairs = Concordance_of(table);
        result.P = pairs.P;
        result.Q = pairs.Q;
    }
    return result;
}

}  // namespace tarven
