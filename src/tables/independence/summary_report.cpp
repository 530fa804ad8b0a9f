#include "tables/independence/summary_report.h"

#include <fmt/format.h>

#include <algorithm>

#include "shell/fields.h"
#include "tables/independence/shown_p_values.h"
#include "tables/numbers/score_interval.h"

namespace tarven {

namespace {

constexpr int LabelWidth = 11;

std::string Sided(const TestSettings& settings) {
    return settings.TwoSided ? "p-values (2-sided)" : "p-values (1-sided)";
}

std::string Symbol(const TestSettings& settings) {
    return Statistic_symbol(settings);
}

/// Label, statistic, df and its two p-values: 33 characters.
std::string Statistic_columns(const SummaryRow& row, bool exact) {
    const TestResult& r = row.result;
    std::string line = Beside(Left(row.label, LabelWidth), Field(r.Statistic, 6, 1));
    line = Beside(line, Field(static_cast<std::int64_t>(r.Df), 4));
    return line + Field(r.PAsymp, 6, 3) + (exact ? Field(r.PExact, 6, 3) : Blanks(6));
}

/// Gamma and its p-values in fields of these widths.
std::string Gamma_columns(const SummaryRow& row, const TestSettings& settings, int gamma_width,
                          int asymp_width) {
    if (!row.has_gamma) return Blanks(gamma_width + asymp_width + 6);
    const ShownGamma p = Shown_gamma(row.result, settings);
    return Field(row.result.Gamma, gamma_width, 2) + Field(p.PAsymp, asymp_width, 3) +
           (Shows_exact(row.result, settings) ? Field(p.PExact, 6, 3) : Blanks(6));
}

/// The line with the replicates and the cases behind it.
std::string With_counts(const std::string& line, const SummaryRow& row) {
    return Beside(Beside(line, Field(static_cast<std::int64_t>(row.result.Nsim), 5)),
                  Field(row.cases, 6));
}

/// 2 below the strong level, 1 up to the weak one, else 0. Levels are compared in the precision of
/// the rows, so that 10 of 1000 is 0.01.
enum class Levels : std::uint8_t { fixed, limits };
int Strength(float p, Levels levels, const RejectionLimits& limits) {
    const bool strong = levels == Levels::fixed ? p < static_cast<float>(limits.fdr01)
                                                : At_most_limit(p, limits.fdr01);
    if (strong) return 2;
    return At_most_limit(p, limits.fdr05) ? 1 : 0;
}

constexpr RejectionLimits FixedLevels{0.05, 0.01};

std::string Marks(const SummaryRow& row, const TestSettings& settings, Levels levels,
                  const RejectionLimits& limits) {
    static constexpr const char* statistic_marks[] = {"    ", " x  ", " xx "};
    const bool exact = Shows_exact(row.result, settings);
    std::string marks =
        statistic_marks[Strength(exact ? row.result.PExact : row.result.PAsymp, levels, limits)];
    if (!row.has_gamma) return marks + "  ";
    const ShownGamma p = Shown_gamma(row.result, settings);
    const int strength = Strength(exact ? p.PExact : p.PAsymp, levels, limits);
    const char sign = row.result.Gamma < 0 ? '-' : '+';
    return marks + std::string(static_cast<std::size_t>(strength), sign) + Blanks(2 - strength);
}

std::string Untested_line(const SummaryRow& row) {
    return Left(row.label, LabelWidth) + "  No tests ";
}

std::vector<std::string> Legend(const TestSettings& settings, const char* statistic_marks,
                                const char* gamma_marks) {
    return {"Significance of " + Symbol(settings) + "     " + statistic_marks,
            Blanks(16) + "Gamma  " + gamma_marks};
}

std::string Interval_columns(double p, float nsim) {
    const Interval i = Score_interval(p, nsim, Z99);
    return " " + Field(i.lower, 5, 3) + " - " + Field(i.upper, 5, 3);
}

bool Tested(const SummaryRow& row) {
    return row.result.Df > 0;
}

}  // namespace

std::vector<std::string> exa_summary(const std::vector<SummaryRow>& rows,
                                     const TestSettings& settings) {
    std::vector<std::string> lines{
        Blanks(25) + "p-values" + Blanks(3) + Sided(settings),
        "Hypothesis         df asymp exact Gamma asymp exact nsim     n"};
    for (const SummaryRow& row : rows)
        lines.push_back(
            !Tested(row) ? Untested_line(row)
                         : With_counts(Statistic_columns(row, Shows_exact(row.result, settings)) +
                                           Gamma_columns(row, settings, 6, 6),
                                       row) +
                               Marks(row, settings, Levels::fixed, FixedLevels));
    Append_lines(lines, Legend(settings, "   xx : p < 0.01    x : 0.01 <= P <= 0.05",
                               "++/-- : p < 0.01  +/- : 0.01 <= p <= 0.05"));
    return lines;
}

std::vector<std::string> exa_summary1(const std::vector<SummaryRow>& rows,
                                      const RejectionLimits& limits, const TestSettings& settings) {
    std::vector<std::string> lines{
        Blanks(25) + "p-values" + Blanks(3) + Sided(settings) + "    95% confidence",
        "Hypothesis         df asymp exact  Gamma  asymp exact      interval   nsim     n"};
    for (const SummaryRow& row : rows) {
        if (!Tested(row)) {
            lines.push_back(Untested_line(row));
            continue;
        }
        const bool exact = Shows_exact(row.result, settings);
        std::string interval = Blanks(16);
        if (exact) {
            const Interval i = Score_interval(row.result.PExact, row.result.Nsim, Z95);
            interval = " [" + Field(i.lower, 5, 3) + " - " + Field(i.upper, 5, 3) + "]";
        }
        lines.push_back(With_counts(Statistic_columns(row, exact) +
                                        Gamma_columns(row, settings, 7, 7) + interval,
                                    row) +
                        Marks(row, settings, Levels::limits, limits));
    }
    if (std::any_of(rows.begin(), rows.end(), Tested))
        Append_lines(
            lines,
            {"Benjamini Hochberg rejects if p < " + Field(limits.fdr05, 6, 4) + " for FDR = 0.05",
             "                          and p < " + Field(limits.fdr01, 6, 4) + " for FDR = 0.01"});
    Append_lines(lines, Legend(settings, "   xx : FDR = 0.01    x : FDR = 0.05",
                               "++/-- : FDR = 0.01  +/- : FDR = 0.05"));
    return lines;
}

std::string brief_single_exa_summary(const SummaryRow& row, const TestSettings& settings) {
    if (!Tested(row)) return Untested_line(row);
    const bool exact = Shows_exact(row.result, settings);
    const TestResult& r = row.result;
    std::string line = Statistic_columns(row, exact);
    if (exact) line += Interval_columns(r.PExact, r.Nsim);
    line += Gamma_columns(row, settings, 6, 6);
    if (exact)
        line +=
            row.has_gamma ? Interval_columns(Shown_gamma(r, settings).PExact, r.Nsim) : Blanks(14);
    return With_counts(line, row) + Marks(row, settings, Levels::fixed, FixedLevels);
}

std::vector<std::string> single_exa_summary(const SummaryRow& row, const TestSettings& settings) {
    const bool exact = Shows_exact(row.result, settings);
    std::vector<std::string> lines{"****  Summary of results  ****"};
    if (exact)
        lines.push_back(fmt::format("NSIM = {} tables generated for exact p-values",
                                    static_cast<std::int64_t>(row.result.Nsim)));
    const std::string interval = exact ? " 99% conf.int." : "";
    const int extra = static_cast<int>(interval.size());
    lines.push_back(Blanks(25) + "p-values" + Blanks(3 + extra) + Sided(settings));
    lines.push_back("Hypothesis         df asymp exact" + interval + " Gamma asymp exact" +
                    interval + " nsim     n");
    lines.push_back(brief_single_exa_summary(row, settings));
    return lines;
}

std::vector<std::string> Remarks(const TestedHypothesis& outcome, const std::string& label) {
    if (outcome.reached == Reached::not_reached) return {};
    if (outcome.too_many_slices) return {"XYZ1: Failure creating 3-way table - too many slices "};
    std::vector<std::string> lines;
    if (outcome.missing_slices)
        lines.push_back("Warning - missing slices in XYZ-table of " + label);
    if (!(outcome.row.Df > 0)) lines.push_back(label + "   No degrees of freedom");
    return lines;
}

std::vector<std::string> Test_failure_lines(std::size_t number, const std::string& label,
                                            const std::vector<std::string>& why) {
    std::vector<std::string> lines{
        fmt::format("Hypothesis no. {}  {}: test failure", number, label)};
    for (const std::string& line : why) lines.push_back("  " + line);
    return lines;
}

namespace {

/// "4, 7-9": the numbers, from 1, of the hypotheses not reached.
std::string Not_reached_numbers(std::span<const TestedHypothesis> outcomes) {
    std::string text;
    const auto missing = [&](std::size_t k) {
        return k < outcomes.size() && outcomes[k].reached == Reached::not_reached;
    };
    for (std::size_t k = 0; k < outcomes.size(); ++k) {
        if (!missing(k)) continue;
        const std::size_t first = k;
        while (missing(k + 1)) ++k;
        text += fmt::format("{}{}", text.empty() ? "" : ", ", first + 1);
        if (k > first) text += fmt::format("-{}", k + 1);
    }
    return text;
}

}  // namespace

std::vector<std::string> Stopped_lines(std::span<const TestedHypothesis> outcomes,
                                       std::span<const std::string> labels,
                                       const TestSettings& settings) {
    const auto count = [&](Reached reached) {
        return std::count_if(outcomes.begin(), outcomes.end(),
                             [&](const TestedHypothesis& one) { return one.reached == reached; });
    };
    if (count(Reached::cut_short) + count(Reached::not_reached) == 0) return {};
    std::vector<std::string> lines{
        "", fmt::format("The tests were stopped: {} of {} hypotheses were tested to the end",
                        count(Reached::end), outcomes.size())};
    for (std::size_t k = 0; k < outcomes.size(); ++k)
        if (outcomes[k].reached == Reached::cut_short)
            lines.push_back(fmt::format("  {} rests on {} of {} random tables", labels[k],
                                        static_cast<std::int64_t>(outcomes[k].row.Nsim),
                                        settings.Nsim));
    if (count(Reached::not_reached) > 0)
        lines.push_back("  Not tested: hypotheses " + Not_reached_numbers(outcomes));
    return lines;
}

std::vector<std::string> Partial_test_lines(const LocalResult& result) {
    if (!result.partial) return {};
    const PartialTest& test = *result.partial;
    std::vector<std::string> lines{
        "Test against two-factor association",
        "             lr = " + Field(static_cast<double>(test.lr), 8, 2),
        "             df = " + Field(test.df, 8),
        "  asymptotic p  = " + Field(test.p, 8, 4),
    };
    if (result.test.counts.n > 0)
        lines.push_back("       exact p  = " + Field(result.PPartialExact(), 8, 4));
    if (!test.converged)
        lines.push_back(
            fmt::format("  the fit has not converged in {} iterations", test.iterations));
    return lines;
}

namespace {

std::string Category_line(int number, const TableVariable& variable, const CategoryResult& r,
                          bool has_gamma, const TestSettings& settings) {
    const std::size_t index = static_cast<std::size_t>(number - 1);
    const std::string name =
        index < variable.categories.size() ? variable.categories[index] : std::string{};
    const bool exact = settings.ExactTests && r.counts.n > 0;
    std::string line = Beside(Field(number, 2) + ":" + Left(name, 8), Field(r.Statistic, 7, 2)) +
                       Field(static_cast<std::int64_t>(r.Df), 5) + Field(r.PAsymp, 7, 4) +
                       (exact ? Field(r.counts.PExact(), 7, 4) : Blanks(7));
    if (has_gamma) {
        const bool two = settings.TwoSided;
        line += Field(r.Gamma, 7, 2);
        line += Field(two ? std::min(1.0F, 2 * r.PGammaAsymp) : r.PGammaAsymp, 7, 4);
        line +=
            exact ? Field(two ? r.counts.PGammaExact2() : r.counts.PGammaExact(), 7, 4) : Blanks(7);
    } else {
        line += Blanks(21);
    }
    return line + Field(r.cases, 12);
}

std::string Six_way_line(const char* sign, const int (&counts)[3]) {
    std::string line = sign;
    for (const int count : counts) line += Field(count, 8) + Blanks(7);
    return line;
}

}  // namespace

std::vector<std::string> Local_result_lines(const LocalHypothesis& hypothesis,
                                            const LocalResult& result,
                                            const TestSettings& settings) {
    std::vector<std::string> lines;
    for (std::size_t k = 0; k < hypothesis.Z.size(); ++k) {
        const TableVariable& z = hypothesis.Z[k];
        lines.push_back("");
        lines.push_back(
            fmt::format("** Local testresults for strata defined by {} ({}) **", z.name, z.label));
        lines.push_back(Blanks(11) + Right(Symbol(settings), 7) + "   df" +
                        "  asymp  exact  Gamma  asymp  exact           n");
        for (int c = 1; c <= z.DIM; ++c)
            lines.push_back(Category_line(c, z,
                                          result.categories[k][static_cast<std::size_t>(c - 1)],
                                          result.has_gamma, settings));
    }
    if (result.has_gamma && !hypothesis.Z.empty()) {
        lines.push_back("");
        lines.push_back("  gamma    p >0.05      0.01<p<=0.05      p<0.01     ");
        lines.push_back(std::string(62, '-'));
        lines.push_back(Six_way_line("Negative", result.six_way.negative));
        lines.push_back(Six_way_line("Positive", result.six_way.positive));
    }
    return lines;
}

std::string Hypothesis_label(const LocalHypothesis& hypothesis) {
    std::string label{hypothesis.X.label, '&', hypothesis.Y.label};
    if (!hypothesis.Z.empty()) label += '|';
    for (const TableVariable& z : hypothesis.Z) label += z.label;
    return label;
}

std::string Titled(const TableVariable& variable) {
    return variable.name.empty() ? std::string(1, variable.label)
                                 : fmt::format("{} {}", variable.label, variable.name);
}

std::string Titled_category(const TableVariable& variable, int category) {
    const std::size_t index = static_cast<std::size_t>(category - 1);
    const bool named = index < variable.categories.size() && !variable.categories[index].empty();
    return named ? fmt::format("{} {}", category, variable.categories[index])
                 : fmt::format("{}", category);
}

std::string Distribution_line(int number, const LocalHypothesis& hypothesis) {
    std::string label{hypothesis.X.label, hypothesis.Y.label};
    if (!hypothesis.Z.empty()) label += '|';
    for (const TableVariable& z : hypothesis.Z) label += z.label;
    return fmt::format("Table {}. The {} distribution.", number, label);
}

}  // namespace tarven
