#include "project/report_commands.h"

#include <fmt/format.h>

#include "project/exit.h"
#include "project/project.h"
#include "project/report_target.h"
#include "shell/commands.h"
#include "shell/files.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/text.h"
#include "shell/user.h"

namespace tarven {

namespace {

namespace fs = std::filesystem;

fs::path Named_file(const std::string& otherwise) {
    const std::string word = Get_name(2, The_line.CommandLine);
    return Existing_or(Text_path(word.empty() ? otherwise : word));
}

Outcome OUTPUT() {
    fs::path file = Named_file("");
    if (file.empty()) file = The_project.files.REP.path;
    if (file.empty()) {
        ShowMessage("No project");
        return Outcome::refused;
    }
    if (!Write_report_to(file)) return Outcome::refused;
    ShowMessage("Output was saved on " + Path_text(file));
    Report_is_saved();
    return Outcome::done;
}

Outcome Append_to(const fs::path& file) {
    if (const std::string refusal = Refusal_of_target(file); !refusal.empty()) {
        ShowMessage(refusal);
        return Outcome::refused;
    }
    const std::string failure = Append_text_file(file, The_report.OutputField);
    if (!failure.empty()) {
        Show_machine_failure(failure);
        return Outcome::refused;
    }
    Report_is_saved();
    if (The_session.AUTOMATIC) Clear_report_field();
    return Outcome::done;
}

Outcome APPEND() {
    return Append_to(Named_file("Append.rep"));
}

Outcome S34() {
    if (The_session.Append_results) return APPEND();
    Clear_report_field();
    return Outcome::done;
}

Outcome ERASE() {
    Clear_report_field();
    return Outcome::done;
}

Outcome PRINT() {
    const std::string header =
        fmt::format("Printed at {} by PLX {}", Date_and_time(), The_project.Projectname);
    if (!The_report.on_line) return Outcome::done;
    The_report.on_line(header);
    for (const std::string& line : The_report.OutputField) The_report.on_line(line);
    return Outcome::done;
}

}  // namespace

Outcome Read_report_file(std::string word) {
    if (word.empty())
        word = Choose_file("Read a report", "Report files (*.rep;*.txt)|*.txt;*.rep", "");
    if (word.empty()) {
        ShowMessage("READ needs the name of a report file");
        return Outcome::refused;
    }
    const auto found = Find_file(Text_path(word));
    if (!found) {
        ShowMessage(Printable(word) + " does not exist");
        return Outcome::refused;
    }
    const TextFile file = Read_text_file(*found, Letters::kept);
    if (!file.ok) {
        ShowMessage(file.error);
        return Outcome::refused;
    }
    ShowReportLine("");
    ShowReportLine("Output from " + Path_text(*found));
    ShowReportLine("");
    for (const std::string& line : file.lines) ShowReportLine(line);
    return Outcome::done;
}

void Register_report_commands() {
    Register_command({.keyword = "OUT",
                      .run = OUTPUT,
                      .spelling = "OUTPUT",
                      .summary = "saves the report",
                      .help = "OUTPUT\nOUTPUT file\n\n"
                              "Saves the whole report, replacing the file; without a name it is\n"
                              "project.REP. A name with blanks stands in quotes. A link is\n"
                              "followed, a device or a pipe that somebody reads is written to.\n\n"
                              "Example: OUT titanic.rep\n\n"
                              "Refused without a name when no project is open, and for every file\n"
                              "of a project but its REP and TMP. A file that cannot be written\n"
                              "stays as it was; the program then ends with exit status 1."});
    Register_command({.keyword = "APP",
                      .run = APPEND,
                      .spelling = "APPEND",
                      .summary = "appends the report to a file",
                      .help = "APPEND\nAPPEND file\n\n"
                              "Appends the whole report to a file, by default Append.rep, which\n"
                              "is created when missing. In automatic mode the report is cleared\n"
                              "afterwards, so that repeated lines APP add only what is new.\n\n"
                              "Example: APP all.rep\n\n"
                              "Refused as OUT is. A file that cannot take all lines stays as it\n"
                              "was; the program then ends with exit status 1."});
    Register_command({.keyword = "S34",
                      .run = S34,
                      .summary = "appends the report when item screening found nothing",
                      .help =
                          "S34\nS34 file\n\nAs APPEND when item screening found neither DIF nor\n"
                          "local dependence; else clears the report.",
                      .hidden = true});
    Register_command({.keyword = "ERA",
                      .run = ERASE,
                      .spelling = "ERASE",
                      .summary = "clears the report",
                      .help =
                          "ERASE\n\nClears the report. What has been printed on the screen stays\n"
                          "there, but OUT and APP begin anew."});
    Register_command({.keyword = "PRI",
                      .run = PRINT,
                      .spelling = "PRINT",
                      .summary = "prints the report",
                      .help =
                          "PRINT\n\nWrites the whole report once more to standard output, under a\n"
                          "line with date, time and project."});
}

}  // namespace tarven
