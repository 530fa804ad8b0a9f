#include "tables/register_tables.h"

#include "tables/draws/bootstrap_commands.h"
#include "tables/independence/fisher_commands.h"
#include "tables/independence/hypothesis_commands.h"
#include "tables/independence/independence_commands.h"
#include "tables/independence/later_table_commands.h"
#include "tables/independence/multiple_testing_commands.h"
#include "tables/numbers/pvalues_command.h"
#include "tables/ordinal/gamma_commands.h"
#include "tables/ordinal/pseudo_gamma_commands.h"
#include "tables/table/table_commands.h"

namespace tarven {

void Register_tables() {
    Register_table_commands();
    Register_bootstrap_commands();
    Register_hypothesis_commands();
    Register_independence_commands();
    Register_fisher_commands();
    Register_multiple_testing_commands();
    Register_gamma_commands();
    Register_pseudo_gamma_commands();
    Register_pvalues_command();
    Register_later_table_commands();
}

}  // namespace tarven
