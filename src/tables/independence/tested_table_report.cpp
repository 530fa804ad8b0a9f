#include "tables/independence/tested_table_report.h"

#include <fmt/format.h>

#include "shell/fields.h"

namespace tarven {

std::string Stratum_result_line(const StratumResult& result, bool has_gamma,
                                const std::string& symbol) {
    std::string line = fmt::format("  {} = {}  df = {}   p = {}", symbol,
                                   Field(static_cast<double>(result.statistic.statistic), 5, 1),
                                   Field(result.statistic.df, 3), Field(result.statistic.p, 5, 3));
    if (has_gamma)
        line += fmt::format(" Gam = {}   p = {}", Field(result.gamma.gamma, 5, 2),
                            Field(result.gamma.p, 5, 3));
    return line;
}

std::vector<std::string> Tested_table_lines(const LocalHypothesis& hypothesis,
                                            const LocalResult& result, const TableOptions& options,
                                            const std::string& symbol) {
    std::vector<std::string> lines;
    for (std::size_t s = 0; s < hypothesis.slices.size() && s < result.strata.size(); ++s) {
        const StratumResult& tested = result.strata[s];
        if (tested.margin && !options.PrintMarginals) continue;
        PrintedStratum stratum{.category = hypothesis.slices[s].category,
                               .counts = hypothesis.slices[s].counts,
                               .result = {}};
        if (!tested.empty) stratum.result = Stratum_result_line(tested, result.has_gamma, symbol);
        Append_lines(lines,
                     Stratum_lines(hypothesis.X, hypothesis.Y, hypothesis.Z, stratum, options));
    }
    return lines;
}

}  // namespace tarven
