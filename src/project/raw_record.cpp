#include "project/raw_record.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <string_view>

#include "shell/limits.h"
#include "shell/numbers.h"
#include "shell/words.h"

namespace tarven {

namespace {

enum class WordKind : std::uint8_t { number, no_number, unreadable };

RecordReading Failed(std::string error) {
    return {.ok = false, .at_end = false, .error = std::move(error)};
}

bool Is_blank(char c) {
    return c == ' ' || c == '\t';
}

WordKind Long_number(std::string_view word, double& value) {
    std::string text(word);
    std::replace(text.begin(), text.end(), ',', '.');
    const StringType type = String_type(text);
    if (type != StringType::integer && type != StringType::real) return WordKind::no_number;
    return To_real(text, value) ? WordKind::number : WordKind::unreadable;
}

/// Reads the word at `at`, which is no blank, and leaves `at` behind it. Up to 15 digits the digits
/// and the power of ten are exact doubles, so their quotient is the nearest double to the decimal
/// number (Clinger 1990, PLDI 25, 92-101).
WordKind Read_word(const char*& at, const char* const end, double& value) {
    static constexpr double power[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                       1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    const char* const word = at;
    const char sign = *at;
    if (sign == '-' || sign == '+') ++at;
    std::uint64_t digits = 0;
    std::ptrdiff_t count = 0;
    std::ptrdiff_t decimals = 0;
    const auto take_digits = [&] {
        const char* const first = at;
        for (; at != end; ++at) {
            const unsigned digit = static_cast<unsigned char>(*at) - unsigned{'0'};
            if (digit > 9) break;
            digits = digits * 10 + digit;
        }
        return at - first;
    };
    count = take_digits();
    if (at != end && (*at == '.' || *at == ',')) {
        ++at;
        decimals = take_digits();
        count += decimals;
    }
    const bool plain = (at == end || Is_blank(*at)) && count > 0 && count <= 15;
    if (!plain) {
        while (at != end && !Is_blank(*at)) ++at;
        return Long_number({word, static_cast<std::size_t>(at - word)}, value);
    }
    value = static_cast<double>(digits);
    if (decimals > 0) value /= power[decimals];
    if (sign == '-') value = -value;
    return WordKind::number;
}

std::uint8_t Code_of(const Recoding::Column& variable, double x) {
    if (variable.cuts.empty() || x < variable.lowest || x > variable.cuts.back()) return 0;
    std::size_t c = 0;
    while (x > variable.cuts[c]) ++c;
    return static_cast<std::uint8_t>(c + 1);
}

bool Selected(const ValueSelection& selection, double value) {
    if (!(value > -2147483649.0 && value < 2147483648.0)) return false;
    const std::int64_t rounded = Round_to_even(value);
    return std::any_of(selection.values.begin(), selection.values.end(),
                       [&](std::int32_t accepted) { return accepted == rounded; });
}

/// Why records of NTAL values cannot be read; empty when they can.
std::string Failure_of_length(int NTAL) {
    if (NTAL < 1) return fmt::format("Error reading data: {} variables in a record", NTAL);
    if (NTAL > MaxRecordLength)
        return fmt::format("Error reading data: {} variables > {}", NTAL, MaxRecordLength);
    return {};
}

}  // namespace

RecordReading Read_record(LineReader& file, int NTAL, std::vector<double>& values) {
    if (const std::string failure = Failure_of_length(NTAL); !failure.empty())
        return Failed(failure);
    values.resize(static_cast<std::size_t>(NTAL) + 1);
    std::int64_t count = 0;
    std::string_view line;
    std::string_view unreadable;
    while (count < NTAL) {
        if (!file.Next(line)) {
            if (!file.failure().empty()) return Failed("Error reading data: " + file.failure());
            if (count == 0) return {.ok = false, .at_end = true, .error = {}};
            return Failed(fmt::format("Error reading data: Missing records ({})", file.Place()));
        }
        const char* at = line.data();
        const char* const end = at + line.size();
        while (true) {
            while (at != end && Is_blank(*at)) ++at;
            if (at == end) break;
            // Most words of categorical data are one digit.
            const unsigned digit = static_cast<unsigned char>(*at) - unsigned{'0'};
            if (digit <= 9 && end - at > 1 && at[1] == ' ' && count < NTAL) {
                values[static_cast<std::size_t>(++count)] = digit;
                at += 2;
                continue;
            }
            double value = NotANumber;
            const char* const word = at;
            const WordKind kind = Read_word(at, end, value);
            if (++count > NTAL) continue;
            if (kind == WordKind::unreadable && unreadable.empty())
                unreadable = {word, static_cast<std::size_t>(at - word)};
            values[static_cast<std::size_t>(count)] = kind == WordKind::number ? value : NotANumber;
        }
        if (count > NTAL)
            return Failed(fmt::format("Error reading data: Too many variables ({}) in {} ({})",
                                      count, Line_for_message(line), file.Place()));
        if (!unreadable.empty())
            return Failed(fmt::format("Error reading data: Non-numerical data: \"{}\" ({})",
                                      Line_for_message(unreadable), file.Place()));
    }
    return {.ok = true, .at_end = false, .error = {}};
}

Recoding Make_recoding(const ProjectDefinition& definition) {
    Recoding recoding{.NTAL = definition.NTAL,
                      .variables = {},
                      .conditions = definition.conditions,
                      .selections = definition.selections,
                      .failure = {}};
    const auto check = [&](int column, const std::string& what) {
        if (recoding.failure.empty() && (column < 1 || column > definition.NTAL))
            recoding.failure = fmt::format("{} refers to column {} of records of {} values", what,
                                           column, definition.NTAL);
    };
    recoding.failure = Failure_of_length(definition.NTAL);
    for (const RangeCondition& c : definition.conditions) check(c.column, "A condition on cases");
    for (const ValueSelection& s : definition.selections) check(s.column, "A selection of cases");
    for (int v = 1; v <= definition.N; ++v) {
        const Variable& variable = definition.variables[static_cast<std::size_t>(v)];
        check(variable.VARNO, fmt::format("Variable {}", variable.label));
        Recoding::Column column;
        column.number = variable.VARNO;
        column.lowest = variable.vfra;
        if (variable.vtype == Nominal || variable.vtype == Ordinal)
            for (std::size_t c = 1; c <= std::min<std::size_t>(variable.dim, MaxCategories); ++c)
                column.cuts.push_back(variable.vtil[c]);
        for (std::size_t x = 0; x < Recoding::LookedUp; ++x)
            column.code_of_whole[x] = Code_of(column, static_cast<double>(x));
        recoding.variables.push_back(std::move(column));
    }
    return recoding;
}

bool Recode_record(const Recoding& recoding, const std::vector<double>& values,
                   std::uint8_t* codes) {
    std::fill_n(codes, recoding.variables.size(), std::uint8_t{0});
    for (const ValueSelection& selection : recoding.selections)
        if (!Selected(selection, values[static_cast<std::size_t>(selection.column)])) return false;
    for (const RangeCondition& condition : recoding.conditions) {
        const double value = values[static_cast<std::size_t>(condition.column)];
        if (!(condition.lower <= value && value <= condition.upper)) return false;
    }
    for (const Recoding::Column& variable : recoding.variables) {
        const double x = values[static_cast<std::size_t>(variable.number)];
        // Most raw values are small whole numbers, whose codes were looked up once.
        if (x >= 0 && x < Recoding::LookedUp) {
            const auto whole = static_cast<std::size_t>(x);
            if (static_cast<double>(whole) == x) {
                *codes++ = variable.code_of_whole[whole];
                continue;
            }
        }
        *codes++ = Code_of(variable, x);
    }
    return true;
}

}  // namespace tarven
