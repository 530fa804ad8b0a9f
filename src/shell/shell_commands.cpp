#include "shell/shell_commands.h"

#include <unistd.h>

#include <random>

#include "shell/commands.h"
#include "shell/environment.h"
#include "shell/help.h"
#include "shell/limits_report.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/test_settings_commands.h"
#include "shell/user.h"
#include "shell/variable_lists.h"

namespace tarven {

namespace {

/// A source of its own, so that the stream of the tests is not disturbed; without a person always
/// the first saying, so that two runs of a command file give the same report.
double Random_saying() {
    if (!The_user.user.ask_user) return 0;
    std::random_device device;
    return std::uniform_real_distribution<double>(0, 1)(device);
}

void Show_limits() {
    Limits_report();
    Write_lines(Quotation(Random_saying()));
}

void Show_news() {
    Write_header("Additions to TARVEN by version");
    Write_lines({"Version 0.1",
                 "  Projects of plain text files open with every check (OPE, REO, BAT, CMD, RUN).",
                 "  Tables of two to eight variables, conditional independence by chi-square-type",
                 "  statistics and partial gamma, asymptotic and Monte Carlo exact p-values.",
                 "  Local analysis, homogeneity of gammas, Mantel-Haenszel, pseudo gamma, kappa,",
                 "  Benjamini-Hochberg limits.",
                 "  The project graph: revised by hand, shown by cliques, saved on GRF files.",
                 "  Partial gammas of the graph, hypotheses from it, and their tests.",
                 "  Items, their scores and score groups; graphical loglinear Rasch models with",
                 "  local dependence and DIF by conditional maximum likelihood (ITE, CUT, GRM).",
                 "  Reports, project and data files are UTF-8; Latin-1 is read as well."});
}

Outcome SHOW() {
    return Run_letters(LetterCommand::show);
}

Outcome DISPOSE() {
    return Run_letters(LetterCommand::dispose);
}

Outcome AUTOMATIC() {
    The_session.AUTOMATIC = !The_session.AUTOMATIC;
    Write_report(The_session.AUTOMATIC ? "Automatic turned on" : "Automatic turned off");
    SetStatus(6, The_session.AUTOMATIC ? "Automatic" : "");
    return Outcome::done;
}

Outcome HELP() {
    if (The_line.ParameterCount > 0) {
        ShowMessage("Unrecognized command: " + std::string(Behind_keyword(The_line.CommandLine)));
        return Outcome::refused;
    }
    Write_header("Commands");
    Write_lines(Command_list());
    Write_report("");
    Write_report(
        "Three letters of a command are enough. \"HELP TAB\" or \"TAB ?\" tells what TAB takes.");
    Write_report("Ctrl-G at a terminal, or the option --log, echoes each command into the report.");
    return Outcome::done;
}

}  // namespace

void Toggle_log() {
    The_report.LogOn = !The_report.LogOn;
    ShowMessage(The_report.LogOn ? "Logon turned on" : "Logon turned off");
}

void Register_shell_commands() {
    Register_test_settings_commands();

    Register_command(
        {.keyword = "SHO",
         .run = SHOW,
         .spelling = "SHOW",
         .summary = "writes parts of the workspace into the report",
         .help =
             "Several letters may stand in one line; they are shown in the order of this list.\n"
             "\n"
             "Example: SHO VD",
         .letters = LetterCommand::show});
    Register_command({.keyword = "DIS",
                      .run = DISPOSE,
                      .spelling = "DISPOSE",
                      .summary = "gives up parts of the workspace",
                      .help = "Example: DIS T",
                      .letters = LetterCommand::dispose});
    Register_command({.keyword = "AUT",
                      .run = AUTOMATIC,
                      .report = Report::opened,
                      .spelling = "AUTOMATIC",
                      .summary = "turns automatic answers on or off",
                      .help =
                          "AUTOMATIC\n"
                          "\n"
                          "In automatic mode yes-or-no questions are answered by yes without\n"
                          "being asked, and APP clears the report after appending. Messages are\n"
                          "still shown. A second AUT turns it off."});
    Register_command({.keyword = "HEL",
                      .run = HELP,
                      .report = Report::opened,
                      .spelling = "HELP",
                      .summary = "lists all commands",
                      .help = "HELP\nHELP command\n\n"
                              "Lists all commands with one line each, first those that are there.\n"
                              "\"HELP TAB\" and \"TAB ?\" tell more of one command.\n\n"
                              "Refused for a word that is no command."});
    Register_command({.keyword = "S15",
                      .run = [] { return Outcome::done; },
                      .summary = "is accepted and does nothing",
                      .hidden = true});

    Register_command({.keyword = "PBO",
                      .run =
                          [] {
                              ShowMessage("Not ready yet");
                              return Outcome::done;
                          },
                      .summary = "is reserved: answers that it is not ready yet",
                      .available = false});

    Register_letter(LetterCommand::show,
                    {.letter = 'L', .run = Show_limits, .summary = "the limits of the system"});
    Register_letter(LetterCommand::show,
                    {.letter = 'N', .run = Show_news, .summary = "additions by version"});
    Register_letter(LetterCommand::show,
                    {.letter = 'E',
                     .run = [] { Write_lines(Environment_lines()); },
                     .summary = "the environment: what is in memory, how tests are made"});
    Register_letter(LetterCommand::dispose, {.letter = 'O',
                                             .run = Clear_report_field,
                                             .report = Report::none,
                                             .summary = "the report field"});
}

}  // namespace tarven
