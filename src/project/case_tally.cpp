#include "project/case_tally.h"

#include <fmt/format.h>

#include <cstring>

namespace tarven {

namespace {

/// Codes eight at a time through the finaliser of splitmix64 (Steele, Lea & Flood 2014, OOPSLA,
/// 453-472), in which every bit of the number depends on every bit of the codes.
std::uint64_t Number_of(const std::uint8_t* codes, int N) {
    std::uint64_t number = 0;
    for (int v = 0; v < N; v += 8) {
        std::uint64_t part = 0;
        std::memcpy(&part, codes + v, static_cast<std::size_t>(N - v < 8 ? N - v : 8));
        number += part + 0x9E3779B97F4A7C15;
        number = (number ^ number >> 30) * 0xBF58476D1CE4E5B9;
        number = (number ^ number >> 27) * 0x94D049BB133111EB;
        number ^= number >> 31;
    }
    return number;
}

}  // namespace

void CaseTally::Add(const std::uint8_t* codes, int N, std::int64_t count) {
    cases += count;
    sum += Number_of(codes, N) * static_cast<std::uint64_t>(count);
    for (int v = 0; v < N; ++v) seen[static_cast<std::size_t>(v)] |= codes[v];
}

CaseTally Tally_of(const CellStore& store) {
    CaseTally tally;
    for (std::int64_t cell = 1; cell <= store.Ncells(); ++cell)
        tally.Add(store.Cell(cell), store.N, store.counts[static_cast<std::size_t>(cell - 1)]);
    return tally;
}

std::vector<std::string> Lines_on_missing_variables(const ProjectDefinition& definition,
                                                    const CaseTally& tally,
                                                    const std::string& DAT_name,
                                                    std::int64_t first_line) {
    std::vector<std::string> lines;
    for (int v = 1; v <= definition.N && tally.cases > 0; ++v) {
        const auto k = static_cast<std::size_t>(v);
        if (tally.seen[k - 1] != 0) continue;
        const Variable& variable = definition.variables[k];
        lines.push_back(fmt::format(
            "Variable {}: all {} cases are missing. Column {} of {}{} has no value from {} to {}",
            variable.label, tally.cases, variable.VARNO, DAT_name,
            first_line > 0 ? fmt::format(", from line {} on,", first_line) : std::string(),
            variable.vfra, variable.vtil[variable.dim]));
    }
    return lines;
}

}  // namespace tarven
