#include "project/raw_record.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <string_view>
#include <utility>

#include "shell/limits.h"
#include "shell/numbers.h"
#include "shell/words.h"

namespace tarven {

namespace {

enum class WordKind : std::uint8_t { number, no_number, unreadable };

RecordReading Failed_reading(std::string error) {
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

/// Bit k: byte k of the eight is neither a blank nor a tab.
std::uint64_t Nonblank_bytes(const char* at) {
    static_assert(std::endian::native == std::endian::little);
    constexpr std::uint64_t ones = 0x0101010101010101, sevens = 0x7F7F7F7F7F7F7F7F;
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, at, 8);
    // The top bit of each byte of x that is not 0, without a carry between bytes.
    const auto nonzero = [](std::uint64_t x) { return ((x & sevens) + sevens) | x; };
    const std::uint64_t marks = nonzero(bytes ^ ones * ' ') & nonzero(bytes ^ ones * '\t');
    return ((marks >> 7 & ones) * 0x0102040810204080) >> 56;
}

/// Marks the characters of words; false when a word is longer than 15 characters.
bool Mark_words(std::string_view line, std::vector<std::uint64_t>& nonblank) {
    nonblank.resize(line.size() / 64 + 1);
    const char* at = line.data();
    for (std::size_t part = 0; part < nonblank.size(); ++part) {
        const std::size_t size = std::min<std::size_t>(64, line.size() - 64 * part);
        std::uint64_t marks = 0;
        std::size_t k = 0;
        for (; k + 8 <= size; k += 8, at += 8) marks |= Nonblank_bytes(at) << k;
        for (; k < size; ++k, ++at) marks |= std::uint64_t{!Is_blank(*at)} << k;
        nonblank[part] = marks;
    }
    int before = 0;  // characters of the word at the end of the part before
    for (const std::uint64_t part : nonblank) {
        std::uint64_t runs = part & part >> 1;
        runs &= runs >> 2;
        runs &= runs >> 4;
        runs &= runs >> 8;
        if (runs != 0 || before + std::countr_one(part) > 15) return false;
        before = std::countl_one(part);
    }
    return true;
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

/// Most raw values are small whole numbers, whose codes were looked up once.
std::uint8_t Looked_up_code(const Recoding::Column& variable, double x) {
    if (x >= 0 && x < Recoding::LookedUp) {
        const auto whole = static_cast<std::size_t>(x);
        if (static_cast<double>(whole) == x) return variable.code_of_whole[whole];
    }
    return Code_of(variable, x);
}

bool Passes(const Recoding& recoding, const std::vector<double>& values) {
    for (const ValueSelection& selection : recoding.selections)
        if (!Selected(selection, values[static_cast<std::size_t>(selection.column)])) return false;
    for (const RangeCondition& condition : recoding.conditions) {
        const double value = values[static_cast<std::size_t>(condition.column)];
        if (!(condition.lower <= value && value <= condition.upper)) return false;
    }
    return true;
}

/// Fills `use` and `valued`.
void Set_uses(Recoding& recoding) {
    recoding.use.assign(static_cast<std::size_t>(recoding.NTAL) + 1, Recoding::Unused);
    const auto use = [&](int column) -> std::int16_t& {
        return recoding.use[static_cast<std::size_t>(column)];
    };
    for (const ValueSelection& s : recoding.selections) use(s.column) = Recoding::Valued;
    for (const RangeCondition& c : recoding.conditions) use(c.column) = Recoding::Valued;
    for (std::size_t v = 0; v < recoding.variables.size(); ++v) {
        std::int16_t& one = use(recoding.variables[v].number);
        one = one == Recoding::Unused ? static_cast<std::int16_t>(v + 1) : Recoding::Valued;
    }
    for (std::size_t v = 0; v < recoding.variables.size(); ++v)
        if (use(recoding.variables[v].number) == Recoding::Valued) recoding.valued.push_back(v);
}

/// Why records of NTAL values cannot be read; empty when they can.
std::string Failure_of_length(int NTAL) {
    if (NTAL < 1) return fmt::format("Error reading data: {} variables in a record", NTAL);
    if (NTAL > MaxRecordLength)
        return fmt::format("Error reading data: {} variables > {}", NTAL, MaxRecordLength);
    return {};
}

}  // namespace

RecordReading Read_record(LineReader& file, int NTAL, std::vector<double>& values,
                          const std::string_view* first_line,
                          std::vector<WordOfNoNumber>* no_numbers) {
    if (const std::string failure = Failure_of_length(NTAL); !failure.empty())
        return Failed_reading(failure);
    values.resize(static_cast<std::size_t>(NTAL) + 1);
    std::int64_t count = 0;
    std::string_view line;
    std::string_view unreadable;
    if (no_numbers) no_numbers->clear();
    while (count < NTAL) {
        if (first_line) {
            line = *std::exchange(first_line, nullptr);
        } else if (!file.Next(line)) {
            if (!file.failure().empty())
                return Failed_reading("Error reading data: " + file.failure());
            if (count == 0) return {.ok = false, .at_end = true, .error = {}};
            return Failed_reading(
                fmt::format("Error reading data: Missing records ({})", file.Place()));
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
            const std::string_view text(word, static_cast<std::size_t>(at - word));
            if (kind == WordKind::unreadable && unreadable.empty()) unreadable = text;
            if (kind == WordKind::no_number && no_numbers)
                no_numbers->push_back(
                    {Line_for_message(text), file.line_number(), static_cast<int>(count)});
            values[static_cast<std::size_t>(count)] = kind == WordKind::number ? value : NotANumber;
        }
        if (count > NTAL)
            return Failed_reading(
                fmt::format("Error reading data: Too many variables ({}) in {} ({})", count,
                            Line_for_message(line), file.Place()));
        if (!unreadable.empty())
            return Failed_reading(fmt::format("Error reading data: Non-numerical data: \"{}\" ({})",
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
    if (recoding.failure.empty()) Set_uses(recoding);
    return recoding;
}

bool Recode_record(const Recoding& recoding, const std::vector<double>& values,
                   std::uint8_t* codes) {
    std::fill_n(codes, recoding.variables.size(), std::uint8_t{0});
    if (!Passes(recoding, values)) return false;
    for (const Recoding::Column& variable : recoding.variables)
        *codes++ = Looked_up_code(variable, values[static_cast<std::size_t>(variable.number)]);
    return true;
}

CaseReading Read_case(std::string_view line, const Recoding& recoding, CaseScratch& scratch,
                      std::uint8_t* codes) {
    // A number of up to 15 characters can be converted, so a word that is not used means nothing.
    if (!Mark_words(line, scratch.nonblank)) return CaseReading::unusual;
    scratch.values.resize(recoding.use.size());
    scratch.no_numbers.clear();
    const char* const end = line.data() + line.size();
    const std::size_t most = recoding.use.size() - 1;
    // Codes are bytes, which may lie anywhere; what does not change is not fetched anew for each.
    const std::int16_t* const use_of = recoding.use.data();
    const Recoding::Column* const variables = recoding.variables.data();
    const std::uint64_t* const marks = scratch.nonblank.data();
    const std::size_t parts = scratch.nonblank.size();
    std::size_t count = 0;
    std::uint64_t before = 0;  // whether a word runs on from the part before
    for (std::size_t part = 0; part < parts; ++part) {
        const std::uint64_t nonblank = marks[part];
        const std::uint64_t after = part + 1 < parts ? marks[part + 1] << 63 : 0;
        const char* const first = line.data() + 64 * part;
        std::uint64_t starts = nonblank & ~(nonblank << 1 | before);
        const std::uint64_t single = ~(nonblank >> 1 | after);  // no word runs on from here
        before = nonblank >> 63;
        for (; starts != 0; starts &= starts - 1) {
            if (count == most) return CaseReading::unusual;
            const std::int16_t use = use_of[++count];
            if (use == Recoding::Unused) continue;
            const int place = std::countr_zero(starts);
            const char* at = first + place;
            // Most words of categorical data are one digit.
            const unsigned digit = static_cast<unsigned char>(*at) - unsigned{'0'};
            if (use > 0 && digit <= 9 && (single >> place & 1) != 0) {
                const auto v = static_cast<std::size_t>(use - 1);
                codes[v] = variables[v].code_of_whole[digit];
                continue;
            }
            double value = NotANumber;
            const char* const word = at;
            const WordKind kind = Read_word(at, end, value);
            if (kind == WordKind::unreadable) return CaseReading::unusual;
            if (kind == WordKind::no_number)
                scratch.no_numbers.push_back(
                    {Line_for_message({word, static_cast<std::size_t>(at - word)}), 0,
                     static_cast<int>(count)});
            if (use > 0) {
                const auto v = static_cast<std::size_t>(use - 1);
                codes[v] = Looked_up_code(recoding.variables[v], value);
            } else {
                scratch.values[count] = value;
            }
        }
    }
    if (count < most) return CaseReading::unusual;
    if (!Passes(recoding, scratch.values)) return CaseReading::left_out;
    for (const std::size_t v : recoding.valued) {
        const Recoding::Column& variable = recoding.variables[v];
        codes[v] =
            Looked_up_code(variable, scratch.values[static_cast<std::size_t>(variable.number)]);
    }
    return CaseReading::taken;
}

}  // namespace tarven
