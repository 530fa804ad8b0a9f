#include "tables/independence/hypothesis_run.h"

#include <algorithm>

namespace tarven {

bool Has_gamma(const ContingencyTable& table, const Hypothesis& hypothesis) {
    const TestedPair pair = Tested_pair(hypothesis);
    const TableVariable& x = table.variable(pair.X);
    const TableVariable& y = table.variable(pair.Y);
    return Gamma_is_defined(x.DIM, x.VTYPE, y.DIM, y.VTYPE);
}

GlobalOutcome Test_globally(const ContingencyTable& table, const Hypothesis& hypothesis,
                            const TestSettings& settings, RandomStream& stream, DrawMemory& memory,
                            const RunControl& control) {
    GlobalOutcome outcome;
    outcome.cases = table.NTOTAL;
    outcome.row = Untested_result();
    const TestedPair pair = Tested_pair(hypothesis);
    if (!pair.proper() || pair.Y > table.Nvar()) return outcome;
    outcome.has_gamma = Has_gamma(table, hypothesis);
    const bool simulates = settings.ExactTests && settings.Nsim > 0;
    if (!simulates) {
        const SlicesSummed summed = Sum_over_slices(View_of(table, hypothesis), outcome.has_gamma,
                                                    Statistic_rule(settings));
        outcome.missing_slices = summed.missing > 0;
        outcome.too_many_slices = summed.too_many;
        if (!summed.too_many) outcome.row = Row_of(Asymptotic_test(summed.sums, outcome.has_gamma));
        return outcome;
    }
    const InformativeSlices slices = XYZ1(View_of(table, hypothesis));
    outcome.missing_slices = slices.missing > 0;
    outcome.too_many_slices = slices.too_many;
    if (slices.too_many) return outcome;
    if (control.begin) control.begin();
    outcome.row = Row_of(Test_strata(slices.counts, slices.expected, outcome.has_gamma, settings,
                                     stream, memory, control.stop));
    if (control.end) control.end();
    return outcome;
}

std::vector<GlobalOutcome> Test_globally(const ContingencyTable& table,
                                         std::span<const Hypothesis> list,
                                         const TestSettings& settings, RandomStream& stream,
                                         const RunControl& control) {
    TestSettings now = settings;
    bool stopped = false;
    RunControl watched = control;
    if (control.stop)
        watched.stop = [&] {
            stopped = stopped || control.stop();
            return stopped;
        };
    DrawMemory memory;
    std::vector<GlobalOutcome> outcomes;
    for (const Hypothesis& hypothesis : list) {
        if (now.ExactTests) Set_seed(stream, now.Seed);
        outcomes.push_back(Test_globally(table, hypothesis, now, stream, memory, watched));
        if (stopped) now.ExactTests = false;
    }
    return outcomes;
}

LocalHypothesis Form_xyz_table(const ContingencyTable& table, const Hypothesis& hypothesis,
                               bool with_margins) {
    LocalHypothesis local;
    const TestedPair pair = Tested_pair(hypothesis);
    local.X = table.variable(pair.X);
    local.Y = table.variable(pair.Y);
    for (const int k : Conditioning_variables(hypothesis)) local.Z.push_back(table.variable(k));
    const SliceView view = View_of(table, hypothesis);
    For_each_slice(view, with_margins, [&](std::span<const int> category, std::int64_t offset) {
        LocalSlice& slice = local.slices.emplace_back();
        slice.category.assign(category.begin(), category.end());
        Read_slice(view, offset, slice.counts);
    });
    return local;
}

std::vector<std::string> Remarks(const GlobalOutcome& outcome, const std::string& label) {
    if (outcome.too_many_slices) return {"XYZ1: Failure creating 3-way table - too many slices "};
    std::vector<std::string> lines;
    if (outcome.missing_slices) lines.push_back("Warning - missing slices in XYZ-table");
    if (!(outcome.row.Df > 0)) lines.push_back(label + "   No degrees of freedom");
    return lines;
}

}  // namespace tarven
