#include "tables/independence/fisher_commands.h"

#include "shell/commands.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/settings.h"
#include "shell/user.h"
#include "tables/independence/fisher.h"
#include "tables/independence/fisher_report.h"
#include "tables/independence/hypothesis_run.h"
#include "tables/table/table_workspace.h"

namespace tarven {

namespace {

Outcome FISHER() {
    const ContingencyTable& table = The_table.table;
    if (table.Nvar() != 2) {
        ShowMessage("Fisher\xB4s exact test requires a twoway table");
        return Outcome::refused;
    }
    const bool listing = Has_parameter('L');
    if (!AskYesNo("Are you sure you want to do this? It may take a long time to finish!"))
        return Outcome::done;
    const LocalHypothesis hypothesis = Form_xyz_table(table, Make_hypothesis(2, 1, 2, {}), false);
    const TwoWayTable& counts = hypothesis.slices.front().counts;
    const bool has_gamma = Gamma_is_defined(hypothesis.X.DIM, hypothesis.X.VTYPE, hypothesis.Y.DIM,
                                            hypothesis.Y.VTYPE);
    FisherListing list_table;
    if (listing) list_table = [](const FisherTable& one) { Write_lines(Fisher_table_lines(one)); };
    ShowWait("Enumeration of all tables");
    const FisherRecord record = Enumerate_tables(
        counts, Statistic_rule(The_settings), has_gamma, [] { return Stop_asked(); }, list_table);
    HideWait();
    Write_lines(Fisher_report(counts, hypothesis.X.label, hypothesis.Y.label, record));
    return Outcome::done;
}

constexpr const char* FisherHelp =
    "FISHER\n"
    "FISHER L\n"
    "\n"
    "Exact p-values of a two-way table by enumeration of all tables with its margins. The number\n"
    "of such tables grows fast with the number of cells and cases, so you are asked first. L "
    "lists\n"
    "every table. Tables are ordered by the statistic, so that P(exact) is the probability of a\n"
    "statistic at least the observed one; it is not the p of the test that orders tables by their\n"
    "probability. Gamma, with a one-sided p, is added when each variable is ordinal or binary.\n"
    "\n"
    "Example: TAB SA, then FIS, and the answer Y\n"
    "\n"
    "Refuses: no table (\"No table\"), a table with more than two variables.";

}  // namespace

void Register_fisher_commands() {
    Register_command({.keyword = "FIS",
                      .run = FISHER,
                      .needs = {{[] { return The_table.table_ready; }, "No table"}},
                      .activity = "Enumerating tables",
                      .report = Report::opened,
                      .spelling = "FISHER",
                      .summary = "exact test of a two-way table by enumeration",
                      .help = FisherHelp});
}

}  // namespace tarven
