#include "tables/ordinal/pseudo_gamma_report.h"

#include <fmt/format.h>

#include <cmath>

#include "shell/fields.h"
#include "tables/independence/multiple_testing_report.h"
#include "tables/independence/summary_report.h"

namespace tarven {

namespace {

using Lines = std::vector<std::string>;

std::string Variable_line(const char* side, const TableVariable& variable, Permutability state) {
    std::string line = side + Titled(variable) + (variable.VTYPE < 3 ? " - nominal" : " - ordinal");
    switch (state) {
        case Permutability::fixed:
            return line + "   Not permutable";
        case Permutability::restricted:
            return line + "   Restricted: its two orders are mirror images";
        case Permutability::permutable:
            break;
    }
    return line + "   Permutable";
}

std::string Test_line(const TestSettings& settings) {
    if (!settings.ExactTests || settings.Nsim <= 0) return "Asymptotic p-values.";
    return fmt::format(
        "{} NSIM = {}",
        settings.SequentialTests ? "Repeated Monte Carlo tests." : "Monte Carlo tests.",
        settings.Nsim);
}

std::string Category_list(const TableVariable& variable, const std::vector<int>& categories) {
    std::string list;
    for (const int c : categories)
        list += (list.empty() ? "" : ", ") + Titled_category(variable, c);
    return list;
}

std::string Count_of_orders(double orders) {
    return Field(orders, 9, 0);
}

Lines Search_lines(const OrderProblem& problem) {
    Lines lines;
    if (problem.permute_columns) lines.push_back("Columns will be permuted");
    if (problem.permute_rows) lines.push_back("Rows will be permuted");
    const double columns = problem.column_permutations(), rows = problem.row_permutations();
    lines.push_back(Count_of_orders(columns) + "  column permutations");
    lines.push_back(Count_of_orders(rows) + "  row permutations");
    lines.push_back(Count_of_orders(rows * columns) + "  combinations");
    return lines;
}

std::string Consistency_line(const char* side, int against, std::size_t categories) {
    if (against == 0) return fmt::format("   {} : Consistent", side);
    return fmt::format(
        "   {} : Inconsistent, {} of {} pairs of categories are ordered the other way", side,
        against, categories * (categories - 1) / 2);
}

Lines Order_lines(const LocalHypothesis& hypothesis, const PseudoGammaAnalysis& analysis) {
    const BestOrder& best = analysis.best;
    const bool searched = analysis.outcome == PseudoGammaOutcome::searched;
    const bool partial = !hypothesis.Z.empty();
    const char* name = searched ? (partial ? "Partial pseudo gamma" : "Pseudo gamma")
                                : (partial ? "Partial gamma" : "Gamma");
    Lines lines{searched ? "Optimal order:" : "Order:",
                "   rows : " + Category_list(hypothesis.X, best.rows),
                "   cols : " + Category_list(hypothesis.Y, best.columns)};
    lines.push_back(fmt::format("   {} = {}", name, Field(best.gamma(), 7, 3)));
    Append_lines(lines,
                 {"Setup check:", Consistency_line("rows", analysis.rows_against, best.rows.size()),
                  Consistency_line("cols", analysis.columns_against, best.columns.size())});
    if (analysis.columns_against > 0) lines.push_back("Columns are not consistent");
    if (analysis.rows_against > 0) lines.push_back("Rows are not consistent");
    return lines;
}

Lines Significance_lines(const PseudoGammaAnalysis& analysis) {
    const PseudoGammaSimulation& simulation = analysis.simulation;
    Lines lines;
    if (simulation.counts.n > 0) {
        lines = {"Evaluation of significance by Monte Carlo tests",
                 "   Median gamma under independence = " + Field(simulation.median, 7, 3),
                 "    p = " + Field(simulation.counts.PExact(), 6, 4),
                 fmt::format("   nsim = {}", simulation.counts.n)};
        if (analysis.stopped)
            lines.push_back(
                fmt::format("   Stopped: p rests on {} of {} random tables, and what was not "
                            "simulated is asymptotic",
                            simulation.counts.n, simulation.wanted));
    } else if (analysis.outcome == PseudoGammaOutcome::searched) {
        lines = {"    p = " + Field(analysis.asymptotic.p, 6, 4) +
                 " as if the order had not been chosen by the data; EXACT gives a valid p"};
    } else {
        lines = {"    p = " + Field(analysis.asymptotic.p, 6, 4) + " (asymptotic)"};
    }
    if (analysis.two_factor)
        lines.push_back("    Test against two-factor alternative:  LR = " +
                        Field(static_cast<double>(analysis.two_factor->lr), 7, 2) +
                        "   p = " + Field(analysis.two_factor->p, 6, 4));
    return lines;
}

/// A triangle of gammas above the diagonal.
Lines Gamma_triangle(const Lines& names, const std::vector<double>& gammas) {
    std::string head = Blanks(4);
    for (const std::string& name : names) head += Right(name, 7);
    Lines lines{head};
    const std::size_t k = names.size();
    for (std::size_t i = 0; i + 1 < k; ++i) {
        std::string line = Right(names[i], 4) + Blanks(static_cast<int>(7 * (i + 1)));
        for (std::size_t j = i + 1; j < k; ++j) line += Field(gammas[i * k + j], 7, 3);
        lines.push_back(line);
    }
    return lines;
}

Lines Number_names(const std::vector<int>& numbers) {
    Lines names;
    for (const int n : numbers) names.push_back(fmt::format("{}", n));
    return names;
}

Lines Comparison_lines(const LocalHypothesis& hypothesis, const CategoryComparison& comparison) {
    const TableVariable& variable = comparison.columns ? hypothesis.Y : hypothesis.X;
    const TableVariable& other = comparison.columns ? hypothesis.X : hypothesis.Y;
    Lines lines{"", fmt::format("Gamma coefficients of {} for pairs of categories of {}",
                                Titled(other), Titled(variable))};
    Append_lines(lines, Gamma_triangle(Number_names(comparison.categories), comparison.gamma));
    Append_lines(lines, Pairwise_comparison_lines(comparison.pairwise, comparison.categories));
    return lines;
}

Lines Class_names(const std::vector<std::vector<int>>& classes) {
    Lines names;
    for (const std::vector<int>& one : classes) {
        std::string name;
        for (const int c : one) name += fmt::format("{}{}", name.empty() ? "" : "+", c);
        names.push_back(name);
    }
    return names;
}

Lines Class_lines(const TableVariable& variable, const TableVariable& other,
                  const std::vector<std::vector<int>>& classes) {
    Lines lines{fmt::format("Optimal order of categories for {} relative to {}: {} categories",
                            Titled(variable), Titled(other), classes.size())};
    for (std::size_t k = 0; k < classes.size(); ++k)
        lines.push_back(Field(k + 1, 4) + ": " + Category_list(variable, classes[k]));
    return lines;
}

Lines Collapsed_lines(const LocalHypothesis& hypothesis, const PseudoGammaAnalysis& analysis) {
    const CollapsedOrder& collapsed = analysis.collapsed;
    Lines lines{""};
    for (const CategoryComparison& comparison : analysis.comparisons) {
        const bool columns = comparison.columns;
        const auto& classes = columns ? collapsed.columns : collapsed.rows;
        const bool associated = collapsed.rows.size() > 1 && collapsed.columns.size() > 1;
        if (!comparison.pairwise.all_different() && associated) {
            lines.push_back(
                fmt::format("Pairwise Gamma coefficients relating to collapsed {} categories",
                            columns ? "column" : "row"));
            Append_lines(lines,
                         Gamma_triangle(Class_names(classes),
                                        columns ? collapsed.column_gamma : collapsed.row_gamma));
        }
        Append_lines(lines, columns ? Class_lines(hypothesis.Y, hypothesis.X, classes)
                                    : Class_lines(hypothesis.X, hypothesis.Y, classes));
    }
    if (collapsed.collapsed)
        lines.push_back("Pseudo gamma after collaps: " + Field(collapsed.gamma, 7, 3));
    return lines;
}

}  // namespace

Lines Pseudo_gamma_lines(const LocalHypothesis& hypothesis, const PseudoGammaAnalysis& analysis,
                         const TestSettings& settings) {
    Lines lines{"", "Calculation of pseudogamma coefficient", Test_line(settings),
                Variable_line("   rows : ", hypothesis.X, analysis.rows),
                Variable_line("   cols : ", hypothesis.Y, analysis.columns)};
    if (analysis.rows == Permutability::fixed && analysis.columns == Permutability::fixed)
        lines.push_back("Both variables are ordinal");
    switch (analysis.outcome) {
        case PseudoGammaOutcome::no_pairs:
            lines.push_back("Pseudo gamma: no untied pairs of cases");
            return lines;
        case PseudoGammaOutcome::too_many:
            lines.push_back(
                fmt::format("too many categories for this procedure: {} rows, {} columns",
                            analysis.problem.rows.size(), analysis.problem.columns.size()));
            return lines;
        case PseudoGammaOutcome::no_permutations:
            lines.push_back("Pseudo gamma: no permutations");
            break;
        case PseudoGammaOutcome::searched:
            Append_lines(lines, Search_lines(analysis.problem));
    }
    Append_lines(lines, Order_lines(hypothesis, analysis));
    Append_lines(lines, Significance_lines(analysis));
    if (analysis.comparisons.empty()) return lines;
    Append_lines(lines, {"", "****  Analysis by pairwise comparisons of categories ****"});
    for (const CategoryComparison& comparison : analysis.comparisons)
        Append_lines(lines, Comparison_lines(hypothesis, comparison));
    Append_lines(lines, Collapsed_lines(hypothesis, analysis));
    return lines;
}

}  // namespace tarven
