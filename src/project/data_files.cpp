#include "project/data_files.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <cstring>
#include <limits>
#include <new>

#include "project/code_line.h"

namespace tarven {

namespace {

std::string At_line(const LineReader& file, const std::string& what) {
    return fmt::format("{}: {}", file.Place(), what);
}

/// A count of 1 or more that ends the line; 0 for anything else.
std::int32_t Count_of(std::string_view rest) {
    while (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
    while (!rest.empty() && rest.back() == ' ') rest.remove_suffix(1);
    std::int32_t count = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), count);
    return error == std::errc() && end == rest.data() + rest.size() && count > 0 ? count : 0;
}

}  // namespace

void WordsOfNoNumber::Add(const WordOfNoNumber& word) {
    for (Kind& kind : kinds)
        if (kind.first.text == word.text) {
            ++kind.count;
            return;
        }
    if (kinds.size() < MostKinds)
        kinds.push_back({word, 1});
    else
        ++others;
}

std::vector<std::string> Lines_on_words(const WordsOfNoNumber& words,
                                        const std::string& file_name) {
    std::vector<std::string> lines;
    for (const auto& [first, count] : words.kinds)
        lines.push_back(
            count == 1 ? fmt::format("{}: \"{}\" in line {}, column {}, is no number and counts as "
                                     "missing",
                                     file_name, first.text, first.line, first.column)
                       : fmt::format("{}: \"{}\" is no number and counts as missing, {} times, "
                                     "first in line {}, column {}",
                                     file_name, first.text, count, first.line, first.column));
    if (words.others > 0)
        lines.push_back(fmt::format("{}: {} more words of other kinds are no numbers", file_name,
                                    words.others));
    return lines;
}

std::string Read_DAT_cases(LineReader& file, const Recoding& recoding, RecordCounts& counts,
                           const TakeCase& take) {
    if (!file.opened()) return file.failure();
    if (!recoding.failure.empty()) return recoding.failure;
    std::vector<double> values;
    std::vector<WordOfNoNumber> no_numbers;
    CaseScratch scratch;
    std::array<std::uint8_t, 256> codes{};
    std::string_view line;
    while (true) {
        if (!file.Next(line))
            return file.failure().empty() ? std::string() : "Error reading data: " + file.failure();
        const std::int64_t line_number = file.line_number();
        CaseReading one = Read_case(line, recoding, scratch, codes.data());
        if (one == CaseReading::unusual) {
            const RecordReading reading =
                Read_record(file, recoding.NTAL, values, &line, &no_numbers);
            if (!reading.ok) return reading.error;
            one = Recode_record(recoding, values, codes.data()) ? CaseReading::taken
                                                                : CaseReading::left_out;
            for (const WordOfNoNumber& word : no_numbers)
                if (recoding.use[static_cast<std::size_t>(word.column)] != Recoding::Unused)
                    counts.no_numbers.Add(word);
        } else {
            for (WordOfNoNumber& word : scratch.no_numbers) {
                word.line = line_number;
                counts.no_numbers.Add(word);
            }
        }
        ++counts.read;
        if (one == CaseReading::left_out) continue;
        if (counts.accepted == std::numeric_limits<std::int32_t>::max())
            return At_line(file, "more cases than can be counted");
        if (counts.accepted++ == 0) counts.first_line = line_number;
        if (!take(codes.data(), 1)) return {};
    }
}

std::string Read_SYS_cases(LineReader& file, const std::vector<int>& dims, const TakeCase& take) {
    if (!file.opened()) return file.failure();
    std::array<std::uint8_t, 256> codes{};
    std::string_view line;
    std::string_view rest;
    while (file.Next(line)) {
        const std::string error = Read_codes(line, dims, codes.data(), rest);
        if (!error.empty()) return At_line(file, error);
        if (rest.find_first_not_of(' ') != std::string_view::npos)
            return At_line(file, fmt::format("more than {} codes", dims.size()));
        if (file.line_number() > std::numeric_limits<std::int32_t>::max())
            return At_line(file, "more cases than can be counted");
        if (!take(codes.data(), 1)) return {};
    }
    return file.failure();
}

std::string Read_TAB_cells(LineReader& file, const std::vector<int>& dims, const TakeCase& take) {
    if (!file.opened()) return file.failure();
    std::array<std::uint8_t, 256> codes{};
    std::array<std::uint8_t, 256> before{};
    std::int64_t total = 0;
    std::string_view line;
    std::string_view rest;
    while (file.Next(line)) {
        const std::string error = Read_codes(line, dims, codes.data(), rest);
        if (!error.empty()) return At_line(file, error);
        const std::int32_t count = Count_of(rest);
        if (count == 0)
            return At_line(
                file, fmt::format("\"{}\" is not a count of 1 or more", Line_for_message(rest)));
        if (file.line_number() > 1 && std::memcmp(before.data(), codes.data(), dims.size()) >= 0)
            return At_line(file, "not in ascending order");
        total += count;
        if (total > std::numeric_limits<std::int32_t>::max())
            return At_line(file, "more cases than can be counted");
        if (!take(codes.data(), count)) return {};
        before = codes;
    }
    return file.failure();
}

std::string Read_TAB_store(LineReader& file, const std::vector<int>& dims, CellStore& store,
                           std::int64_t& cases) {
    const int N = static_cast<int>(dims.size());
    cases = 0;
    std::string failure = Init_TABdata(store, 0, N);
    if (!failure.empty()) return failure;
    std::string overflow;
    try {
        failure = Read_TAB_cells(file, dims, [&](const std::uint8_t* codes, std::int32_t count) {
            if (!Cells_fit(store.Ncells() + 1, N)) {
                overflow = At_line(file, Failure_of_overflow(N));
                return false;
            }
            store.codes.insert(store.codes.end(), codes, codes + N);
            store.counts.push_back(count);
            cases += count;
            return true;
        });
    } catch (const std::bad_alloc&) {
        failure = "Not enough memory for TABdata";
    }
    if (failure.empty()) failure = overflow;
    if (!failure.empty()) {
        Dispose_TABdata(store);
        cases = 0;
        return failure;
    }
    store.Ntabdata_arrays = static_cast<int>(Arrays_for(store.Ncells() * N, DataArraySize));
    store.Ntabcount_arrays = static_cast<int>(Arrays_for(store.Ncells(), CountArraySize));
    return {};
}

}  // namespace tarven
