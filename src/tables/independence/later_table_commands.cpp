#include "tables/independence/later_table_commands.h"

#include "shell/later_commands.h"
#include "tables/independence/hypothesis_workspace.h"
#include "tables/table/table_workspace.h"

namespace tarven {

namespace {

bool Has_table() {
    return The_table.table_ready;
}

bool Has_hypotheses() {
    return The_hypotheses.hypotheses_ready;
}

}  // namespace

void Register_later_table_commands() {
    Register_later_commands({
        {"CLA", "CLASSIFY", "collapses categories by classes"},
        {"CMH",
         "CMH",
         "tests of marginal and conditional homogeneity",
         {{Has_table, "This command requires a table with at least two variables"}}},
        {"COL", "COLLAPSE", "analysis of category collapsibility"},
        {"FIT", "FIT", "fits the model associated with the current table"},
        {"HOM",
         "HOMOGENEITY",
         "tests of homogeneity",
         {{Has_hypotheses, "No hypotheses"}, NeedsTableHypotheses}},
        {"LOG", "LOGLINEAR", "loglinear analysis of the current table"},
        {"MAR", "MARKOV", "defines Markov chains"},
        {"MCA", "MCA", "multivariate category collapsibility"},
        {"MTA",
         "MTABLE",
         "tables of Markov chains",
         {Never("Markov chains have not been defined")}},
        {"MTE", "MTEST", "tests of Markov chains", {Never("Markov chains have not been defined")}},
    });
}

}  // namespace tarven
