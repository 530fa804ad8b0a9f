#include "tables/independence/multiple_testing_commands.h"

#include "shell/commands.h"
#include "shell/report.h"
#include "tables/independence/hypotheses.h"
#include "tables/independence/hypothesis_workspace.h"
#include "tables/independence/multiple_testing_report.h"

namespace tarven {

namespace {

Outcome FDR() {
    const CollectedPValues collected =
        Collect_p_values(The_hypotheses.list, The_hypotheses.results, The_hypotheses.settings);
    std::vector<std::string> labels;
    for (const Hypothesis& hypothesis : The_hypotheses.list)
        labels.push_back(Hypothesis_label(hypothesis, The_hypotheses.labels));
    for (const std::string& line : False_discovery_lines(collected, labels)) Write_report(line);
    return Outcome::done;
}

}  // namespace

void Register_multiple_testing_commands() {
    Register_command(
        {.keyword = "FDR",
         .run = FDR,
         .needs = {{[] { return !The_hypotheses.list.empty(); }, "No hypotheses"},
                   {[] { return The_hypotheses.tested; }, "The hypotheses have not been tested"}},
         .report = Report::opened,
         .spelling = "FDR",
         .summary = "Benjamini-Hochberg limits of the current test results",
         .help = "FDR\n\n"
                 "Takes the p-values of the last TEST (that of the statistic and, where it is\n"
                 "defined, that of gamma; Monte Carlo values where they were made) and gives the\n"
                 "limits at or below which the Benjamini-Hochberg procedure rejects when the\n"
                 "false discovery rate is held at 5 % and at 1 %.\n\n"
                 "Example: TAB SCAG, HYP **, TES, FDR\n\n"
                 "Refused without hypotheses (\"No hypotheses\"), and before they are tested."});
}

}  // namespace tarven
