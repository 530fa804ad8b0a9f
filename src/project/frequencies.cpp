#include "project/frequencies.h"

#include <algorithm>
#include <array>

namespace tarven {

namespace {

/// Counts whole numbers from 0 to 999 in place, since most raw values are codes, and the rest in a
/// map.
struct Tally {
    std::array<std::int64_t, 1000> small{};
    std::map<double, std::int64_t> rest;
    bool too_many = false;

    void Add(double value) {
        if (value >= 0 && value < 1000) {
            const auto whole = static_cast<std::size_t>(value);
            if (static_cast<double>(whole) == value) {
                ++small[whole];
                return;
            }
        }
        if (too_many) return;
        ++rest[value];
        too_many = rest.size() > ColumnFrequencies::MostValues;
    }
};

void Add_category(const Variable& variable, double x, std::uint8_t code,
                  ColumnFrequencies& column) {
    if (code > 0)
        ++column.categories[code - 1u];
    else if (x < variable.vfra)
        ++column.below;
    else
        ++column.above;
}

std::vector<ColumnFrequencies> Columns_to_count(const ProjectDefinition& definition,
                                                const std::vector<int>& variables, bool extended) {
    std::vector<ColumnFrequencies> columns;
    for (const int v : variables) {
        ColumnFrequencies column;
        column.variable = v;
        column.column = definition.variables[static_cast<std::size_t>(v)].VARNO;
        column.categories.resize(definition.variables[static_cast<std::size_t>(v)].dim);
        columns.push_back(std::move(column));
    }
    if (!extended) return columns;
    std::vector<bool> of_a_variable(static_cast<std::size_t>(definition.NTAL) + 1);
    for (int v = 1; v <= definition.N; ++v)
        of_a_variable[static_cast<std::size_t>(
            definition.variables[static_cast<std::size_t>(v)].VARNO)] = true;
    for (int number = 1; number <= definition.NTAL; ++number) {
        if (of_a_variable[static_cast<std::size_t>(number)]) continue;
        ColumnFrequencies column;
        column.column = number;
        columns.push_back(std::move(column));
    }
    return columns;
}

void Store_values(const Tally& tally, ColumnFrequencies& column) {
    column.values = tally.rest;
    for (std::size_t value = 0; value < tally.small.size(); ++value)
        if (tally.small[value] > 0) column.values[static_cast<double>(value)] = tally.small[value];
    column.too_many_values = tally.too_many || column.values.size() > ColumnFrequencies::MostValues;
    if (column.too_many_values) column.values.clear();
}

}  // namespace

FrequenciesResult Count_frequencies(const ProjectDefinition& definition, LineReader& DAT,
                                    const std::vector<int>& variables, bool extended) {
    FrequenciesResult result;
    const Recoding recoding = Make_recoding(definition);
    result.failure = DAT.opened() ? recoding.failure : DAT.failure();
    if (!result.failure.empty()) return result;
    result.columns = Columns_to_count(definition, variables, extended);
    std::vector<Tally> tallies(result.columns.size());
    std::array<std::uint8_t, 256> codes{};
    std::vector<double> values;
    while (true) {
        const RecordReading reading = Read_record(DAT, definition.NTAL, values);
        if (!reading.ok) {
            result.failure = reading.error;
            break;
        }
        ++result.read;
        if (!Recode_record(recoding, values, codes.data())) continue;
        ++result.accepted;
        for (std::size_t k = 0; k < tallies.size(); ++k) {
            ColumnFrequencies& column = result.columns[k];
            const double x = values[static_cast<std::size_t>(column.column)];
            tallies[k].Add(x);
            if (column.variable > 0)
                Add_category(definition.variables[static_cast<std::size_t>(column.variable)], x,
                             codes[static_cast<std::size_t>(column.variable) - 1], column);
        }
    }
    for (std::size_t k = 0; k < tallies.size(); ++k) {
        result.columns[k].total = result.accepted;
        Store_values(tallies[k], result.columns[k]);
    }
    return result;
}

}  // namespace tarven
