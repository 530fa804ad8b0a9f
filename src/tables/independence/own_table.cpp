#include "tables/independence/own_table.h"

#include <algorithm>

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
    const auto test = [&](std::size_t k, RandomStream& own, DrawMemory& memory,
                          const StopCheck& stop) -> TestedHypothesis {
        const OwnTable wanted = Own_table(list[k], cases.definition);
        const Result<Tabulation> made = Tabulate(cases, wanted.request, stop);
        if (!made) {
            results[k].messages = made.failure().messages;
            return {.reached = made.failure().stopped ? Reached::not_reached : Reached::end};
        }
        if (settings.ExactTests) Set_seed(own, settings.Seed);
        return Test_globally(made->table, wanted.row, settings, own, memory, stop);
    };
    const std::vector<TestedHypothesis> outcomes =
        Run_list(list.size(), settings, stream, control, test);
    for (std::size_t k = 0; k < list.size(); ++k) results[k].outcome = outcomes[k];
    return results;
}

}  // namespace tarven
