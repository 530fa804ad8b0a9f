#include "tables/ordinal/local_cpr_report.h"

#include <fmt/format.h>

#include "shell/fields.h"

namespace tarven {

namespace {

/// A coefficient, or a point where there is none.
std::string Coefficient(bool defined, double value, int width) {
    return defined ? Field(value, width, 3) : Right(".", width);
}

std::string Summary_line(const LocalSummary& s) {
    return fmt::format("Concordance = {}   Discordance = {}   Gamma = {}  CPR = {}", s.C, s.D,
                       Coefficient(s.defined, s.gamma, 6), Coefficient(s.defined, s.cpr, 6));
}

constexpr int TableLabelWidth = 24;  ///< before the heads of the list of tables

/// Wide counts take room from the blanks before gamma, so the columns stay in line.
std::string Table_line(const LocalTable& t) {
    std::string line = Left(fmt::format("rows {}-{} cols {}-{}", t.i, t.k, t.j, t.l), 18);
    line = Beside(Beside(line, Field(t.C, TableLabelWidth + 7 - 18)), Field(t.D, 7));
    const int gamma_width = TableLabelWidth + 26 - static_cast<int>(line.size());
    line = Beside(line, Coefficient(t.defined, t.gamma, gamma_width));
    line += Coefficient(t.defined, t.cpr, 7) + Coefficient(t.defined, t.p, 7);
    return t.adjacent() ? line + "  Adjacent" : line;
}

std::vector<std::string> Parallel_lines(const std::vector<LocalAnalysis::Parallel>& pairs) {
    std::vector<std::string> lines;
    for (const LocalAnalysis::Parallel& pair : pairs) {
        const LocalSummary& s = pair.summary;
        const std::string rows = Left(fmt::format("{}-{}", pair.first, pair.second), 6);
        const std::string counts = Beside(Beside(rows, Field(s.C, 11)), Field(s.D, 12));
        lines.push_back(Beside(counts, Coefficient(s.defined, s.gamma, 6)) +
                        Coefficient(s.defined, s.cpr, 7));
    }
    return lines;
}

/// A line for each pair of rows, a column for each pair of neighbouring columns: the distance of
/// the rows is taken out of every value, so uniform association shows as equal values down a
/// column.
std::vector<std::string> Row_adjusted_lines(const LocalAnalysis& analysis) {
    std::string head = Left("Rows", 6);
    for (int j = 1; j < analysis.C; ++j) head += Right(fmt::format("{}-{}", j, j + 1), 7);
    std::vector<std::string> lines{head};
    for (const LocalTable& table : analysis.tables) {
        if (table.l != table.j + 1) continue;
        if (table.j == 1) lines.push_back(Left(fmt::format("{}-{}", table.i, table.k), 6));
        lines.back() += Coefficient(table.defined, table.cpr, 7);
    }
    return lines;
}

}  // namespace

std::vector<std::string> Local_analysis_lines(const LocalAnalysis& analysis) {
    std::vector<std::string> lines{"", "Analysis of local CPRs and gamma coefficients", ""};
    Append_lines(lines, {"Local 2-by-2 tables",
                         Blanks(TableLabelWidth) + "      C      D       gamma    cpr    p"});
    for (const LocalTable& table : analysis.tables) lines.push_back(Table_line(table));
    Append_lines(lines, {Summary_line(analysis.all), "", "Adjacent relationships",
                         Summary_line(analysis.adjacent), "", "Parallel rows",
                         "Rows  Concordance Discordance  Gamma   CPR"});
    Append_lines(lines, Parallel_lines(analysis.rows));
    Append_lines(lines, {"", "Row adjusted CPR table"});
    Append_lines(lines, Row_adjusted_lines(analysis));
    Append_lines(lines, {"", "Parallel collumns", "Cols  Concordance Discordance  Gamma   CPR"});
    Append_lines(lines, Parallel_lines(analysis.columns));
    return lines;
}

}  // namespace tarven
