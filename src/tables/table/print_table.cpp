#include "tables/table/print_table.h"

#include <fmt/format.h>

#include "shell/fields.h"

namespace tarven {

namespace {

constexpr int LabelWidth = 6;

/// "   word |   x |   x |": a label and as many cells as there are columns, the total last.
std::string Row_of(const std::string& label, int columns, const char* bar,
                   const std::function<std::string(int)>& cell) {
    std::string line = Right(label, LabelWidth) + " |";
    for (int j = 1; j <= columns + 1; ++j) line += cell(j) + bar;
    return line;
}

std::string Rule(int columns) {
    std::string line = "-------+";
    for (int j = 0; j <= columns; ++j) line += "-------+";
    return line;
}

/// The lines of row i, or of the totals when i is behind the last row: the first bears the label.
void Add_row(std::vector<std::string>& lines, const std::string& label, int i,
             const PrintedStratum& stratum, const ExpectedTable& expected,
             const TableOptions& options) {
    const TwoWayTable& counts = stratum.counts;
    bool labelled = false;
    const auto add = [&](const char* word, const char* bar, auto&& value) {
        lines.push_back(Row_of(labelled ? word : label, counts.columns, bar, value));
        labelled = true;
    };
    const auto share = [&](auto&& percentage) {
        return [&counts, i, percentage](int j) { return Field(percentage(counts, i, j), 6, 1); };
    };
    const auto real = [i](const ExpectedTable& values) {
        return [&values, i](int j) { return Field(values(i, j), 6, 1); };
    };
    if (options.Observed) add("", " |", [&](int j) { return Field(counts(i, j), 6); });
    if (options.RowPercentages) add("row%", "%|", share(Row_percentage));
    if (options.ColumnPercentages) add("col%", "%|", share(Column_percentage));
    if (options.JointProbabilities) add("tot%", "%|", share(Total_percentage));
    if (options.ExpectedCounts) add("exp", " |", real(expected));
    if (options.FittedCounts && stratum.fitted != nullptr) add("fit", " |", real(*stratum.fitted));
}

/// The stack of labels over a box: the conditioning variables with the last one on top, then the
/// rows and the columns. A bar stands for each conditioning variable still to come.
void Add_head(std::vector<std::string>& lines, const TableVariable& rows,
              const TableVariable& columns, const std::vector<TableVariable>& conditioning,
              const std::vector<int>& category) {
    if (!conditioning.empty()) lines.emplace_back("Conditioning variables:");
    for (std::size_t k = conditioning.size(); k >= 1; --k) {
        const TableVariable& z = conditioning[k - 1];
        std::string line = Blanks(5);
        for (std::size_t still = 1; still < k; ++still) line += "| ";
        line += fmt::format("+ {}", z.label);
        if (!z.name.empty()) line += fmt::format(" {}", z.name);
        const int c = category[k - 1];
        const bool margin = c > z.DIM;
        const auto at = static_cast<std::size_t>(c - 1);
        line += margin ? " = TOTAL" : fmt::format(" = {}", c);
        if (!margin && at < z.categories.size() && !z.categories[at].empty())
            line += fmt::format(" {}", z.categories[at]);
        lines.push_back(line);
    }
    lines.push_back(fmt::format("     + {}:", rows.label));
    lines.push_back(fmt::format("     | | {}:", columns.label));
}

}  // namespace

std::string Category_label(const TableVariable& variable, int c) {
    if (c > variable.DIM) return "TOTAL";
    const auto at = static_cast<std::size_t>(c - 1);
    if (at < variable.categories.size() && !variable.categories[at].empty())
        return variable.categories[at].substr(0, LabelWidth);
    return fmt::format("{}", c);
}

std::vector<std::string> Stratum_lines(const TableVariable& rows, const TableVariable& columns,
                                       const std::vector<TableVariable>& conditioning,
                                       const PrintedStratum& stratum, const TableOptions& options) {
    const TwoWayTable& counts = stratum.counts;
    std::vector<std::string> lines;
    Add_head(lines, rows, columns, conditioning, stratum.category);
    lines.push_back(Row_of("", counts.columns, " |",
                           [&](int j) { return Right(Category_label(columns, j), 6); }));
    lines.push_back(Rule(counts.columns));
    if (counts.Total() < 1) {
        const std::string text = "       | empty table";
        lines.push_back(Left(text, 8 * (counts.columns + 1) - 1) + "|     0 |");
    } else {
        const ExpectedTable expected =
            options.ExpectedCounts ? Expected_under_independence(counts) : ExpectedTable();
        for (int i = 1; i <= counts.rows + 1; ++i) {
            if (i > counts.rows) lines.push_back(Rule(counts.columns));
            Add_row(lines, Category_label(rows, i), i, stratum, expected, options);
        }
    }
    lines.push_back(Rule(counts.columns));
    if (!stratum.result.empty()) lines.push_back(stratum.result);
    lines.emplace_back();
    return lines;
}

void Print_table(const ContingencyTable& table, const TableOptions& options,
                 const std::vector<double>& fitted,
                 const std::function<void(const std::string&)>& write) {
    if (table.Nvar() < 2) return;
    const std::vector<TableVariable>& variables = table.variables;
    const std::vector<TableVariable> conditioning(variables.begin() + 2, variables.end());
    const bool has_fitted = fitted.size() == table.cells.size();
    PrintedStratum stratum;
    stratum.category.assign(conditioning.size(), 1);
    while (true) {
        stratum.counts = Extract_two_way(table, stratum.category);
        ExpectedTable fit;
        if (options.FittedCounts && has_fitted) {
            fit.Shape(table.DIM(1), table.DIM(2));
            std::vector<int> c = {1, 1};
            c.insert(c.end(), stratum.category.begin(), stratum.category.end());
            for (c[1] = 1; c[1] <= table.TDIM(2); ++c[1])
                for (c[0] = 1; c[0] <= table.TDIM(1); ++c[0])
                    fit(c[0], c[1]) = fitted[static_cast<std::size_t>(Cell_number(table, c) - 1)];
            stratum.fitted = &fit;
        }
        for (const std::string& line :
             Stratum_lines(variables[0], variables[1], conditioning, stratum, options))
            write(line);
        std::size_t k = 0;
        for (; k < conditioning.size(); ++k) {
            const int last = conditioning[k].DIM + (options.PrintMarginals ? 1 : 0);
            if (++stratum.category[k] <= last) break;
            stratum.category[k] = 1;
        }
        if (k == conditioning.size()) return;
    }
}

std::vector<std::string> Table_variables_lines(const ContingencyTable& table) {
    std::vector<std::string> lines = {"Variables included in the current table", ""};
    int block = 1;
    for (int k = 1; k <= table.Nvar(); ++k) {
        const TableVariable& v = table.variables[static_cast<std::size_t>(k - 1)];
        if (block < table.Nlevels && k > table.LevelEnd[static_cast<std::size_t>(block)]) ++block;
        const char* type = v.DIM == 2 ? "binary" : v.VTYPE < 3 ? "nominal" : "ordinal";
        lines.push_back(fmt::format("{}  {}{}  categories  {}block{}", v.label, Left(v.name, 20),
                                    Field(v.DIM, 3), Left(type, 9), Field(block, 3)));
    }
    lines.emplace_back();
    lines.push_back(fmt::format("Number of cases = {}", table.NTOTAL));
    return lines;
}

}  // namespace tarven
