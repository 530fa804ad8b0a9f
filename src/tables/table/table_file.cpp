#include "tables/table/table_file.h"

#include <fmt/format.h>

#include <charconv>

#include "project/project.h"
#include "shell/text.h"

namespace tarven {

namespace {

std::vector<std::string> Words(const std::string& line) {
    std::vector<std::string> words;
    std::size_t at = 0;
    while ((at = line.find_first_not_of(" \t", at)) != std::string::npos) {
        const std::size_t end = std::min(line.find_first_of(" \t", at), line.size());
        words.push_back(line.substr(at, end - at));
        at = end;
    }
    return words;
}

/// Whether the word is a whole number within lowest..highest.
bool Number(const std::string& word, std::int64_t lowest, std::int64_t highest,
            std::int64_t& value) {
    const char* end = word.data() + word.size();
    const auto read = std::from_chars(word.data(), end, value);
    return read.ec == std::errc() && read.ptr == end && value >= lowest && value <= highest;
}

/// A line for a message: harmless and not long.
std::string Shown(const std::string& text) {
    return Printable(text).substr(0, MaxTextLength);
}

/// A variable from its line; the message of what is wrong, or empty.
std::string Read_variable(const std::string& line, const std::vector<TableVariable>& before,
                          TableVariable& variable) {
    const std::vector<std::string> words = Words(line);
    std::int64_t number = 0;
    if (words.size() < 3 || words[0].size() != 1 || !Number(words[1], 2, MaxCategories, number))
        return "This is not a variable: " + Shown(line);
    variable.label = words[0][0];
    variable.DIM = static_cast<int>(number);
    for (const TableVariable& other : before)
        if (other.label == variable.label) return "This is not a variable: " + Shown(line);
    if (!Number(words[2], Nominal, Ordinal, number))
        return "This is not a variable type: " + Shown(words[2]);
    variable.VTYPE = static_cast<int>(number);
    for (std::size_t w = 3; w < words.size(); ++w)
        variable.name += (w > 3 ? " " : "") + Shown(words[w]);
    return {};
}

/// The last variable of each block from the line of the blocks.
std::string Read_levels(const std::string& line, std::size_t Nvar, std::vector<int>& ends) {
    const std::vector<std::string> words = Words(line);
    const auto last = static_cast<std::int64_t>(Nvar);
    std::int64_t levels = 0;
    if (!Number(words[0], 1, last, levels))
        return "This can not be the number of recursive levels: " + Shown(words[0]);
    if (static_cast<std::int64_t>(words.size()) != levels + 1)
        return "Improper recursive levels : " + Shown(line);
    for (std::size_t w = 1; w < words.size(); ++w) {
        std::int64_t end = 0;
        const int lowest = ends.empty() ? 1 : ends.back() + 1;
        if (!Number(words[w], lowest, last, end))
            return "improper definition of recursive levels: " + Shown(line);
        ends.push_back(static_cast<int>(end));
    }
    if (ends.back() != last) return "improper definition of recursive levels: " + Shown(line);
    return {};
}

/// Fills the cells without margins in their order; the messages of what is wrong.
std::vector<std::string> Read_counts(const std::vector<std::string>& lines, std::size_t first,
                                     ContingencyTable& table) {
    std::vector<std::int64_t> counts;
    for (std::size_t l = first; l < lines.size(); ++l)
        for (const std::string& word : Words(lines[l])) {
            std::int64_t count = 0;
            if (!Number(word, 0, INT32_MAX, count)) return {"This is not a count: " + Shown(word)};
            counts.push_back(count);
        }
    std::int64_t needed = 1;
    for (const TableVariable& v : table.variables) needed *= v.DIM;
    if (static_cast<std::int64_t>(counts.size()) != needed)
        return {"improper number of cells in table",
                fmt::format("{} found. {} needed.", counts.size(), needed)};
    std::vector<int> c(static_cast<std::size_t>(table.Nvar()), 1);
    for (const std::int64_t count : counts) {
        table.NTOTAL += count;
        table.cells[static_cast<std::size_t>(Cell_number(table, c) - 1)] =
            static_cast<std::int32_t>(count);
        for (std::size_t k = 0; k < c.size() && ++c[k] > table.DIM(k + 1); ++k) c[k] = 1;
    }
    if (table.NTOTAL > INT32_MAX) return {"The table has more cases than can be counted"};
    if (table.NTOTAL < 2) return {"THE TABLE SEEMS TO BE EMPTY? FAILURE ASSUMED"};
    return {};
}

std::vector<std::string> Without_blank_lines(const std::vector<std::string>& lines) {
    std::vector<std::string> kept;
    for (const std::string& line : lines)
        if (line.find_first_not_of(" \t") != std::string::npos) kept.push_back(line);
    return kept;
}

}  // namespace

TableFile Read_table_file(const std::vector<std::string>& all_lines) {
    TableFile result;
    const auto fail = [&](std::vector<std::string> messages) {
        result.table = ContingencyTable();
        result.messages = std::move(messages);
        return result;
    };
    const std::vector<std::string> lines = Without_blank_lines(all_lines);
    if (lines.empty()) return fail({"Too few lines to define a table"});
    std::int64_t Nvar = 0;
    const std::vector<std::string> head = Words(lines[0]);
    if (head.size() != 1 || !Number(head[0], 2, MaxTableVariables, Nvar))
        return fail({"Improper definition of table: " + Shown(lines[0])});
    if (static_cast<std::int64_t>(lines.size()) < Nvar + 3)
        return fail({"Too few lines to define a table"});
    std::vector<TableVariable> variables;
    std::vector<int> DIM = {0};
    for (std::size_t k = 1; k <= static_cast<std::size_t>(Nvar); ++k) {
        TableVariable variable;
        const std::string wrong = Read_variable(lines[k], variables, variable);
        if (!wrong.empty()) return fail({wrong});
        DIM.push_back(variable.DIM);
        variables.push_back(std::move(variable));
    }
    std::vector<int> ends;
    const std::string wrong = Read_levels(lines[variables.size() + 1], variables.size(), ends);
    if (!wrong.empty()) return fail({wrong});
    if (!Check_table_dimensions(static_cast<int>(Nvar), DIM)) {
        std::vector<std::string> messages = Too_large_lines(static_cast<int>(Nvar), DIM);
        messages.insert(messages.begin(),
                        "Improper definition of table: " + messages[0].substr(17));
        return fail(std::move(messages));
    }
    result.table = Make_table(std::move(variables), true, ends);
    const auto first = static_cast<std::size_t>(Nvar) + 2;
    std::vector<std::string> messages = Read_counts(lines, first, result.table);
    if (!messages.empty()) return fail(std::move(messages));
    Add_margins(result.table);
    result.ok = true;
    return result;
}

std::vector<std::string> Table_file_lines(const ContingencyTable& table) {
    return {fmt::format("Table from {} variables", table.Nvar()),
            "Variable labels: " + table.labels()};
}

std::vector<std::string> Lines_of_table_file(const ContingencyTable& table) {
    std::vector<std::string> lines = {fmt::format("{}", table.Nvar())};
    for (const TableVariable& v : table.variables)
        lines.push_back(fmt::format("{} {} {}{}{}", v.label, v.DIM, v.VTYPE,
                                    v.name.empty() ? "" : " ", v.name));
    std::string levels = fmt::format("{}", table.Nlevels);
    for (int l = 1; l <= table.Nlevels; ++l)
        levels += fmt::format(" {}", table.LevelEnd[static_cast<std::size_t>(l)]);
    lines.push_back(levels);
    std::vector<int> c(static_cast<std::size_t>(table.Nvar()), 1);
    std::string row;
    while (true) {
        row += fmt::format(" {}", Read_cell(table, c));
        std::size_t k = 0;
        for (; k < c.size(); ++k) {
            if (++c[k] <= table.DIM(k + 1)) break;
            c[k] = 1;
        }
        if (k > 0) {
            lines.push_back(row.substr(1));
            row.clear();
        }
        if (k == c.size()) return lines;
    }
}

}  // namespace tarven
