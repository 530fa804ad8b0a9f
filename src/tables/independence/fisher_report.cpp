#include "tables/independence/fisher_report.h"

#include <fmt/format.h>

#include "shell/fields.h"

namespace tarven {

namespace {

std::string Row_line(int number, const TwoWayTable& counts, int i) {
    std::string line = Field(number, 4) + " ";
    for (int j = 1; j <= counts.columns; ++j) line = Beside(line, Field(counts(i, j), 4));
    return line;
}

}  // namespace

std::vector<std::string> Fisher_report(const TwoWayTable& counts, char row_label, char column_label,
                                       const FisherRecord& record) {
    std::vector<std::string> lines{"Exact tests by enumeration of all tables", "",
                                   "Observed table:"};
    lines.push_back(fmt::format("     {} {}", row_label, column_label));
    std::string head = Blanks(5);
    for (int j = 1; j <= counts.columns; ++j) head += Field(j, 4);
    lines.push_back(head);
    for (int i = 1; i <= counts.rows; ++i) lines.push_back(Row_line(i, counts, i));
    lines.push_back("");
    lines.push_back(fmt::format("{} tables fitting the margins", record.tables));
    if (record.stopped)
        lines.push_back("The enumeration was stopped: the exact p-values are not complete");
    lines.push_back("Chi-squared:" + Field(static_cast<double>(record.statistic.statistic), 9, 2));
    lines.push_back("         df:" + Field(record.statistic.df, 9));
    lines.push_back("   P(asymp):" + Field(record.statistic.p, 9, 6));
    lines.push_back("   P(exact):" + Field(record.p_exact, 9, 6));
    if (record.has_gamma) {
        lines.push_back("      Gamma:" + Field(record.gamma.gamma, 9, 3));
        lines.push_back("   P(asymp):" + Field(record.gamma.p, 9, 6));
        lines.push_back("   P(exact):" + Field(record.p_gamma_exact, 9, 6));
    }
    return lines;
}

std::vector<std::string> Fisher_table_lines(const FisherTable& table) {
    std::vector<std::string> lines{fmt::format("Table no. {}", table.number)};
    for (int i = 1; i <= table.table.rows; ++i) lines.push_back(Row_line(i, table.table, i));
    lines.push_back("CHI**2 = " + Field(static_cast<double>(table.statistic), 9, 2) +
                    "   GAMMA = " + Field(table.gamma, 6, 3) +
                    "   Cond. prob. = " + Field(table.probability, 9, 6));
    return lines;
}

}  // namespace tarven
