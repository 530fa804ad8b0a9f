#include "rasch/estimation/ll_step.h"

#include <algorithm>
#include <cmath>

namespace tarven {

namespace {

std::size_t Place(int i) {
    return static_cast<std::size_t>(i);
}

void Note_gap(std::int64_t observed, Extended expected, Extended& Delta) {
    Delta = std::max(Delta, std::abs(static_cast<Extended>(observed) - expected));
}

void Update_interaction(const ScoreTable<std::int64_t>& observed,
                        const ScoreTable<Extended>& expected, ScoreTable<Extended>& parameters,
                        Extended& Delta) {
    for (std::size_t cell = 0; cell < observed.cells.size(); ++cell) {
        const std::int64_t n = observed.cells[cell];
        const Extended e = expected.cells[cell];
        if (n < 1 || !(e > 0)) {
            parameters.cells[cell] = 0;
            continue;
        }
        Note_gap(n, e, Delta);
        parameters.cells[cell] *= static_cast<Extended>(n) / e;
    }
}

void Update_items(const ModelStructure& structure, const SufficientMargins& margins,
                  const StepOptions& options, const ExpectedMargins& expected,
                  GLLRMParameters& parameters, Extended& Delta) {
    for (int i = 1; i <= structure.NITEMS; ++i) {
        if (Has_number(margins.degenerate, i)) continue;
        const int first = margins.low[Place(i)] + (options.lowest_categories_stay ? 1 : 0);
        for (int x = first; x <= margins.high[Place(i)]; ++x) {
            const std::int64_t n = margins.Catmarg[Place(i)][Place(x)];
            const Extended e = expected.items[Place(i)][Place(x)];
            Extended& eps = parameters.eps[Place(i)][Place(x)];
            if (n == 0) {
                eps = 0;
                continue;
            }
            Note_gap(n, e, Delta);
            if (e > 0) eps *= static_cast<Extended>(n) / e;
        }
    }
}

/// The parameter at the crossing with the reference, or that of the first non-empty cell of the
/// line (row, column + k) or (row + k, column).
Extended Reference_parameter(const ScoreTable<std::int64_t>& observed,
                             const ScoreTable<Extended>& parameters, int row, int column,
                             bool along_row) {
    const Extended there = parameters(row, column);
    if (there > 0) return there;
    const int length = along_row ? observed.columns : ItemScores;
    for (int k = 0; k < length; ++k) {
        const int r = along_row ? row : k;
        const int c = along_row ? k : column;
        if (observed(r, c) > 0) return parameters(r, c);
    }
    return 0;
}

/// What the rows and the columns of a table were divided by; 0 where there is nothing.
struct TableScale {
    std::vector<Extended> rows;
    std::vector<Extended> columns;
};

/// Makes the parameters of the reference row and column 1. Their crossing holds persons.
TableScale Divide_by_reference(const ScoreTable<std::int64_t>& observed,
                               const ReferenceCell& reference, ScoreTable<Extended>& parameters) {
    const Extended rf = parameters(reference.row, reference.column);
    TableScale scale;
    for (int r = 0; r < ItemScores; ++r)
        scale.rows.push_back(Reference_parameter(observed, parameters, r, reference.column, true));
    for (int c = 0; c < observed.columns; ++c)
        scale.columns.push_back(Reference_parameter(observed, parameters, reference.row, c, false));
    for (int c = 0; c < observed.columns; ++c)
        for (int r = 0; r < ItemScores; ++r) {
            const Extended divisor = scale.rows[Place(r)] * scale.columns[Place(c)];
            Extended& cell = parameters(r, c);
            cell = observed(r, c) > 0 && divisor > 0 ? rf * cell / divisor : 0;
        }
    return scale;
}

/// The reference row, and of the columns where it holds persons the one with the most cells.
ReferenceCell Crossed_reference(const ScoreTable<std::int64_t>& observed) {
    ReferenceCell reference = Reference_of(observed);
    if (observed(reference.row, reference.column) > 0) return reference;
    int most = 0;
    for (int c = 0; c < observed.columns; ++c) {
        if (observed(reference.row, c) == 0) continue;
        int cells = 0;
        for (int r = 0; r < ItemScores; ++r) cells += observed(r, c) > 0 ? 1 : 0;
        if (cells > most) {
            most = cells;
            reference.column = c;
        }
    }
    return reference;
}

/// A table of a single row or column says nothing that its margins do not.
bool Has_interaction(const ScoreTable<std::int64_t>& observed) {
    const ReferenceCell reference = Reference_of(observed);
    return reference.rows_used > 1 && reference.columns_used > 1;
}

bool Is_degenerate_pair(const SufficientMargins& margins, const ItemPair& pair) {
    return Has_number(margins.degenerate, pair.item) || Has_number(margins.degenerate, pair.other);
}

void Copy_observed(const ScoreTable<std::int64_t>& observed, ScoreTable<Extended>& expected) {
    for (std::size_t cell = 0; cell < observed.cells.size(); ++cell)
        expected.cells[cell] = static_cast<Extended>(observed.cells[cell]);
}

ScoreTable<Extended> Ones_where_persons(const ScoreTable<std::int64_t>& observed) {
    ScoreTable<Extended> table(observed.columns);
    for (std::size_t cell = 0; cell < observed.cells.size(); ++cell)
        table.cells[cell] = observed.cells[cell] > 0 ? 1 : 0;
    return table;
}

void Keep_positive(const ScoreTable<Extended>& from, ScoreTable<Extended>& to) {
    for (std::size_t cell = 0; cell < to.cells.size(); ++cell)
        if (to.cells[cell] > 0 && from.cells[cell] > 0) to.cells[cell] = from.cells[cell];
}

}  // namespace

ReferenceCell Reference_of(const ScoreTable<std::int64_t>& observed) {
    ReferenceCell reference;
    int most = 0;
    for (int r = 0; r < ItemScores; ++r) {
        int cells = 0;
        for (int c = 0; c < observed.columns; ++c) cells += observed(r, c) > 0 ? 1 : 0;
        if (cells > 0) ++reference.rows_used;
        if (cells > most) {
            most = cells;
            reference.row = r;
        }
    }
    most = 0;
    for (int c = 0; c < observed.columns; ++c) {
        int cells = 0;
        for (int r = 0; r < ItemScores; ++r) cells += observed(r, c) > 0 ? 1 : 0;
        if (cells > 0) ++reference.columns_used;
        if (cells > most) {
            most = cells;
            reference.column = c;
        }
    }
    return reference;
}

int Free_cells(const ScoreTable<std::int64_t>& observed) {
    const ReferenceCell reference = Reference_of(observed);
    int cells = 0;
    for (int r = 0; r < ItemScores; ++r)
        for (int c = 0; c < observed.columns; ++c)
            if (r != reference.row && c != reference.column && observed(r, c) > 0) ++cells;
    return cells;
}

void Normalise_interaction(const ScoreTable<std::int64_t>& observed,
                           ScoreTable<Extended>& parameters) {
    const ReferenceCell reference = Reference_of(observed);
    const bool crossed = parameters(reference.row, reference.column) > 0;
    if (reference.rows_used < 2 || reference.columns_used < 2 || !crossed)
        parameters = Ones_where_persons(observed);
    else
        Divide_by_reference(observed, reference, parameters);
}

void Normalise_whole_model(const ModelStructure& structure, const SufficientMargins& margins,
                           GLLRMParameters& parameters) {
    const auto into_item = [&](int item, const std::vector<Extended>& factors) {
        for (int x = 0; x < ItemScores; ++x)
            if (factors[Place(x)] > 0) parameters.eps[Place(item)][Place(x)] *= factors[Place(x)];
    };
    for (std::size_t k = 0; k < margins.pairs.size(); ++k) {
        const auto& observed = margins.pairs[k];
        const TableScale scale =
            Divide_by_reference(observed, Crossed_reference(observed), parameters.lambda[k]);
        into_item(structure.pairs[k].item, scale.rows);
        into_item(structure.pairs[k].other, scale.columns);
    }
    // A factor of a category is the same for all response vectors of a cell.
    for (std::size_t k = 0; k < margins.terms.size(); ++k) {
        const auto& observed = margins.terms[k];
        const TableScale scale =
            Divide_by_reference(observed, Crossed_reference(observed), parameters.delta[k]);
        into_item(structure.terms[k].item, scale.rows);
    }
    Normalise_items(structure, margins, parameters);
}

void Normalise_items(const ModelStructure& structure, const SufficientMargins& margins,
                     GLLRMParameters& parameters) {
    Extended log_product = 0;
    int span = 0;
    for (int i = 1; i <= structure.NITEMS; ++i) {
        auto& eps = parameters.eps[Place(i)];
        const int low = margins.low[Place(i)], high = margins.high[Place(i)];
        const Extended lowest = eps[Place(low)];
        if (lowest > 0)
            for (int x = low; x <= high; ++x) eps[Place(x)] /= lowest;
        // A degenerate item adds nothing: its only category is 1 by now.
        if (!(eps[Place(high)] > 0)) continue;
        log_product += std::log(eps[Place(high)]);
        span += high - low;
    }
    if (span <= 0) return;
    const Extended c = -log_product / span;
    std::array<Extended, ItemScores> shift{};
    for (int k = 0; k < ItemScores; ++k) shift[Place(k)] = std::exp(c * k);
    for (int i = 1; i <= structure.NITEMS; ++i) {
        if (Has_number(margins.degenerate, i)) continue;
        const int low = margins.low[Place(i)];
        for (int x = low; x <= margins.high[Place(i)]; ++x)
            parameters.eps[Place(i)][Place(x)] *= shift[Place(x - low)];
    }
}

GLLRMParameters Start_parameters(const ModelStructure& structure,
                                 const SufficientMargins& margins) {
    GLLRMParameters parameters;
    parameters.low = margins.low;
    parameters.high = margins.high;
    for (int i = 1; i <= structure.NITEMS; ++i)
        for (int x = 0; x < ItemScores; ++x)
            parameters.eps[Place(i)][Place(x)] = margins.Catmarg[Place(i)][Place(x)] > 0 ? 1 : 0;
    for (const auto& table : margins.pairs) parameters.lambda.push_back(Ones_where_persons(table));
    for (const auto& table : margins.terms) parameters.delta.push_back(Ones_where_persons(table));
    return parameters;
}

GLLRMParameters Start_from(const ModelStructure& structure, const SufficientMargins& margins,
                           const GLLRMParameters& parameters) {
    GLLRMParameters start = Start_parameters(structure, margins);
    for (int i = 1; i <= structure.NITEMS; ++i)
        for (int x = 0; x < ItemScores; ++x) {
            const Extended before = parameters.eps[Place(i)][Place(x)];
            Extended& eps = start.eps[Place(i)][Place(x)];
            if (eps > 0 && before > 0) eps = before;
        }
    for (std::size_t k = 0; k < start.lambda.size(); ++k)
        Keep_positive(parameters.lambda[k], start.lambda[k]);
    for (std::size_t k = 0; k < start.delta.size(); ++k)
        Keep_positive(parameters.delta[k], start.delta[k]);
    return start;
}

void Take_observed_of_degenerate(const ModelStructure& structure, const SufficientMargins& margins,
                                 ExpectedMargins& expected) {
    if (margins.degenerate == 0) return;
    for (int i = 1; i <= structure.NITEMS; ++i) {
        if (!Has_number(margins.degenerate, i)) continue;
        for (int x = 0; x < ItemScores; ++x)
            expected.items[Place(i)][Place(x)] =
                static_cast<Extended>(margins.Catmarg[Place(i)][Place(x)]);
    }
    for (std::size_t k = 0; k < structure.pairs.size(); ++k)
        if (Is_degenerate_pair(margins, structure.pairs[k]))
            Copy_observed(margins.pairs[k], expected.pairs[k]);
    for (std::size_t k = 0; k < structure.terms.size(); ++k)
        if (Has_number(margins.degenerate, structure.terms[k].item))
            Copy_observed(margins.terms[k], expected.terms[k]);
}

std::optional<Extended> Take_a_LL_step(const ModelStructure& structure,
                                       const SufficientMargins& margins, const StepOptions& options,
                                       PolynomialMemory& memory, ExpectedMargins& expected,
                                       GLLRMParameters& parameters, const StopCheck& stop) {
    Extended Delta = 0;
    if (!Expect_margins(structure, parameters, margins.strata, memory, expected, nullptr, stop))
        return {};
    Take_observed_of_degenerate(structure, margins, expected);
    for (std::size_t k = 0; k < margins.pairs.size(); ++k)
        Update_interaction(margins.pairs[k], expected.pairs[k], parameters.lambda[k], Delta);
    for (std::size_t k = 0; k < margins.terms.size(); ++k)
        Update_interaction(margins.terms[k], expected.terms[k], parameters.delta[k], Delta);
    Update_items(structure, margins, options, expected, parameters, Delta);
    for (std::size_t k = 0; k < margins.pairs.size(); ++k)
        Normalise_interaction(margins.pairs[k], parameters.lambda[k]);
    for (std::size_t k = 0; k < margins.terms.size(); ++k)
        Normalise_interaction(margins.terms[k], parameters.delta[k]);
    Normalise_items(structure, margins, parameters);
    return Delta;
}

std::optional<Extended> Take_a_sweep(const ModelStructure& structure,
                                     const SufficientMargins& margins, const StepOptions& options,
                                     PolynomialMemory& memory, ExpectedMargins& expected,
                                     GLLRMParameters& parameters, const StopCheck& stop) {
    const GLLRMParameters before = parameters;
    Extended Delta = 0;
    const auto renew = [&] {
        if (!Expect_margins(structure, parameters, margins.strata, memory, expected, nullptr,
                            stop)) {
            parameters = before;
            return false;
        }
        Take_observed_of_degenerate(structure, margins, expected);
        return true;
    };
    if (!renew()) return {};
    Update_items(structure, margins, options, expected, parameters, Delta);
    for (std::size_t k = 0; k < margins.pairs.size(); ++k) {
        if (!Has_interaction(margins.pairs[k])) continue;
        if (!renew()) return {};
        Update_interaction(margins.pairs[k], expected.pairs[k], parameters.lambda[k], Delta);
    }
    for (std::size_t k = 0; k < margins.terms.size(); ++k) {
        if (!Has_interaction(margins.terms[k])) continue;
        if (!renew()) return {};
        Update_interaction(margins.terms[k], expected.terms[k], parameters.delta[k], Delta);
    }
    return Delta;
}

bool Order_thresholds(const ModelStructure& structure, const SufficientMargins& margins, int passes,
                      GLLRMParameters& parameters) {
    bool raised_any = false;
    for (int pass = 0; pass < passes; ++pass) {
        bool raised = false;
        for (int i = 1; i <= structure.NITEMS; ++i) {
            auto& eps = parameters.eps[Place(i)];
            for (int x = margins.low[Place(i)] + 1; x < margins.high[Place(i)]; ++x) {
                const Extended m = std::sqrt(eps[Place(x - 1)] * eps[Place(x + 1)]);
                // A category that nobody chose stays at 0.
                if (margins.Catmarg[Place(i)][Place(x)] == 0 || !(eps[Place(x)] < m)) continue;
                eps[Place(x)] = m;
                raised = true;
            }
        }
        if (!raised) break;
        raised_any = true;
    }
    // The lowest and the top categories, by which items are normalised, were left as they were.
    return raised_any;
}

}  // namespace tarven
