#include "project/project_commands.h"

#include <string>
#include <vector>

#include "project/data.h"
#include "project/later_project_commands.h"
#include "project/project.h"
#include "project/project_log.h"
#include "project/project_report.h"
#include "project/report_commands.h"
#include "project/revise.h"
#include "project/start_commands.h"
#include "shell/commands.h"
#include "shell/report.h"

namespace tarven {

namespace {

Outcome QVM() {
    Write_lines(Global_variables_report(The_project, The_data.data_ready, The_data.tabdata_ready,
                                        The_data.Ntabcells));
    return Outcome::done;
}

}  // namespace

void Register_project_commands() {
    Register_start_commands();
    Register_report_commands();
    Register_revise_commands();
    Register_later_project_commands();
    Register_command({.keyword = "QVM",
                      .run = QVM,
                      .report = Report::opened,
                      .summary = "dumps the global variables",
                      .help = "QVM\n\nPrints the fields of the workspace by their names.",
                      .hidden = true});
    const Need variables{[] { return The_project.N > 0; }, "Variables have not been defined"};
    Register_letter(LetterCommand::show,
                    {.letter = 'V',
                     .run = [] { Write_lines(Variables_report(The_project)); },
                     .needs = {variables},
                     .summary = "variables and categories, comments, relationships"});
    Register_letter(LetterCommand::show, {.letter = 'C',
                                          .run = [] { Write_lines(Comments_report(The_project)); },
                                          .summary = "the comments of the project"});
    Register_letter(LetterCommand::show, {.letter = 'P',
                                          .run = Show_project_log,
                                          .report = Report::none,
                                          .summary = "the project log"});
}

}  // namespace tarven
