#include "tables/independence/own_table.h"

#include <algorithm>
#include <atomic>
#include <numeric>
#include <optional>

#include "tables/independence/case_tests.h"

namespace tarven {

namespace {

/// `variable(v)` gives variable v as a variable of a table, `block(v)` its recursive block.
template <class VariableOf, class BlockOf>
OwnTable Make_own_table(const Hypothesis& row, VariableOf variable, BlockOf block) {
    OwnTable own;
    std::vector<std::uint8_t> roles;
    int highest = 0;
    for (int v = 1; v <= MaxVariables; ++v) {
        if (row.Role(v) != role::tested && row.Role(v) != role::conditioning) continue;
        const int before = static_cast<int>(roles.size());
        if (before > 0 && block(v) > highest) own.request.LevelEnd.push_back(before);
        highest = std::max(highest, block(v));
        own.request.variables.push_back(variable(v));
        roles.push_back(row.Role(v));
    }
    own.request.LevelEnd.push_back(static_cast<int>(roles.size()));
    for (std::size_t k = 0; k < roles.size(); ++k) own.row.Role(static_cast<int>(k) + 1) = roles[k];
    return own;
}

/// Whether the strata come from the cases: of more variables or cells than a table may have, and
/// where a table has more cells than there are cases, since its margins would cost more than they.
bool Wants_cases(const OwnTable& own, std::int64_t cases) {
    std::vector<int> DIM{0};
    for (const TableVariable& variable : own.request.variables) DIM.push_back(variable.DIM);
    const TableDimensions sizes =
        Table_dimensions(static_cast<int>(DIM.size()) - 1, DIM, /*require8=*/true);
    return !sizes.ok || sizes.ncells_incl > cases;
}

/// A hypothesis that was stopped is not reached, which is all that is told of it.
TestedInOwnTable Failure_of(const Failed& failure) {
    if (failure.stopped) return {.outcome = {.reached = Reached::not_reached}, .messages = {}};
    return {.outcome = {}, .messages = failure.messages};
}

/// What a table of too few cases tells, about a hypothesis taken from the cases.
Failed Empty_row(const CasesAtHand& cases, const PackedCases& packed, const OwnTable& own,
                 std::int64_t found) {
    const DataSource source = Table_source(Data_at_hand(cases), MaxTableVariables);
    const auto all = std::accumulate(packed.counts.begin(), packed.counts.end(), std::int64_t{0});
    const int Nvar = static_cast<int>(own.request.variables.size());
    return {.messages = {Empty_table(source, cases, Nvar, found, all - found)}};
}

}  // namespace

OwnTable Own_table(const Hypothesis& row, const ProjectDefinition& definition) {
    return Make_own_table(
        row, [&](int v) { return Table_variable(definition, v); },
        [&](int v) { return int{definition.variables[static_cast<std::size_t>(v)].Levnr}; });
}

OwnTable Own_table(const Hypothesis& row, const ContingencyTable& table) {
    return Make_own_table(
        row, [&](int v) { return table.variable(v); }, [&](int v) { return table.block(v); });
}

std::vector<TestedInOwnTable> Test_in_own_tables(const CasesAtHand& cases,
                                                 std::span<const Hypothesis> list,
                                                 const TestSettings& settings, RandomStream& stream,
                                                 const RunControl& control) {
    std::vector<TestedInOwnTable> results(list.size());
    std::vector<OwnTable> tables;
    std::vector<bool> from_cases;
    for (const Hypothesis& row : list) {
        tables.push_back(Own_table(row, cases.definition));
        from_cases.push_back(Wants_cases(tables.back(), cases.Nused));
    }
    // A question within a hypothesis is no step of the run; its yes stays, for all that follows.
    std::atomic<bool> stopped = false;
    const StopCheck within = [&] {
        const StopCheck& question = control.within ? control.within : control.stop;
        if (!stopped && question && question()) stopped = true;
        return stopped.load();
    };
    RunControl steps = control;
    steps.stop = [&] { return stopped || (control.stop && control.stop()); };
    steps.within = {};
    std::optional<Result<PackedCases>> packed;
    if (std::find(from_cases.begin(), from_cases.end(), true) != from_cases.end())
        packed = Pack_cases(cases, within);
    const auto test = [&](std::size_t k, RandomStream& own, RunMemory& memory,
                          const StopCheck& stop) -> TestedHypothesis {
        if (settings.ExactTests) Set_seed(own, settings.Seed);
        const auto refused = [&](const Failed& failure) {
            results[k] = Failure_of(failure);
            return results[k].outcome;
        };
        if (from_cases[k]) {
            if (!*packed) return refused(packed->failure());
            const TestedHypothesis outcome = Test_from_cases(**packed, list[k], settings, own,
                                                             memory.draws, memory.strata, stop);
            if (outcome.cases >= FewestCases) return outcome;
            return refused(Empty_row(cases, **packed, tables[k], outcome.cases));
        }
        const Result<Tabulation> made = Tabulate(cases, tables[k].request, within);
        if (!made) return refused(made.failure());
        return Test_globally(made->table, tables[k].row, settings, own, memory.draws, stop);
    };
    const std::vector<TestedHypothesis> outcomes =
        Run_list(list.size(), settings, stream, steps, test);
    for (std::size_t k = 0; k < list.size(); ++k) results[k].outcome = outcomes[k];
    return results;
}

}  // namespace tarven
