#include "project/start_commands.h"

#include <fmt/format.h>

#include <system_error>

#include "project/exit.h"
#include "project/open_project.h"
#include "project/project.h"
#include "project/project_log.h"
#include "shell/command_files.h"
#include "shell/commands.h"
#include "shell/dispatcher.h"
#include "shell/files.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/user.h"
#include "shell/variable_lists.h"

namespace tarven {

namespace {

namespace fs = std::filesystem;

/// True when no project is in the way: none is open, or the user will give it up.
bool May_replace_project() {
    return !The_project.ProjectOpen || AskYesNo("Project already exists. Continue?");
}

/// Opens the project that a DEF file names, with the environment as OPE and S69 show it. A project
/// that is open is given up only here, once there is one to take its place.
bool Open_found_project(const fs::path& DEF, const std::string& name) {
    if (!Give_up_project()) return false;
    Set_project(DEF.parent_path(), name);
    if (!Open_project_files()) return false;
    Run_from_code("Show E");
    return true;
}

std::string Stem(const std::string& name) {
    const auto separator = name.find_last_of("/\\");
    return separator == std::string::npos ? name : name.substr(separator + 1);
}

/// Separators of either kind.
fs::path Path_of(std::string text) {
    for (char& c : text)
        if (c == '\\') c = '/';
    return Text_path(text);
}

Outcome OPEN() {
    const std::string name = Get_name(2, The_line.CommandLine);
    if (!May_replace_project()) return Outcome::refused;
    const auto DEF = name.empty() ? std::nullopt : Find_file(Path_of(name + ".DEF"));
    if (DEF) {
        if (!Open_found_project(*DEF, Stem(name))) return Outcome::done;
        Run_ini_file();
        return Outcome::done;
    }
    ShowMessage("Project was not found");
    OpenTarvenProjectClick();
    return Outcome::done;
}

Outcome S69() {
    const std::string path(Behind_keyword(The_line.CommandLine));
    if (!May_replace_project()) return Outcome::refused;
    const auto DEF = path.empty() ? std::nullopt : Find_file(Path_of(path + ".DEF"));
    if (!DEF) {
        ShowMessage(path + ".DEF not found");
        return Outcome::refused;
    }
    const fs::path folder = fs::absolute(*DEF).parent_path();
    if (!Change_folder(folder)) ShowMessage("Directory not changed");
    if (!Open_found_project(folder / DEF->filename(), Stem(path))) return Outcome::done;
    Run_ini_file();
    Remember_project();
    return Outcome::done;
}

Outcome BATCH() {
    const std::string name = Get_name(2, The_line.CommandLine);
    const std::string word = Get_name(3, The_line.CommandLine);
    const std::string definition = name + ".def";
    const std::string commands = word.empty() ? name + ".cmd" : word;
    const auto DEF = Find_file(Path_of(definition));
    if (!DEF) {
        ShowMessage(definition + " is not in the current directory");
        return Outcome::done;
    }
    const auto file = Find_file(Path_of(commands));
    if (!file) {
        ShowMessage(fmt::format("{} was found, but {} is not in the current directory", definition,
                                commands));
        return Outcome::done;
    }
    AutomaticExitFromTarven(true);
    Set_project(DEF->parent_path(), Stem(name));
    if (Open_project_files()) RunBatchfile(*file);
    return Outcome::done;
}

Outcome RUN() {
    const std::string word = Get_name(2, The_line.CommandLine);
    const std::string name = word.empty() ? The_project.Projectname + ".cmd" : word;
    const auto file = Find_file(Path_of(name));
    if (!file) {
        ShowMessage(name + " is not in the current directory");
        return Outcome::refused;
    }
    RunBatchfile(*file);
    return Outcome::done;
}

Outcome CMD() {
    fs::path file = Path_of(Get_name(2, The_line.CommandLine));
    if (!Find_file(file)) {
        const std::string chosen =
            Choose_file("Run a command file", "Command files (*.cmd)|*.cmd", "");
        if (chosen.empty()) {
            ShowMessage(file.empty() ? "No command file" : Path_text(file) + " not found");
            return Outcome::refused;
        }
        file = Text_path(chosen);
    }
    RunBatchfile(file);
    return Outcome::done;
}

Outcome CHDIR() {
    const fs::path folder = Path_of(Get_name(2, The_line.CommandLine));
    if (folder.empty() || !Change_folder(folder)) {
        ShowMessage("Directory not changed");
        return Outcome::refused;
    }
    ShowReportLine("The current directory is " + Path_text(fs::current_path()));
    return Outcome::done;
}

/// An import was asked for by another program. Its files are told, and the request stays until
/// imports can be made.
void Show_import_request(const fs::path& request) {
    const TextFile file = Read_text_file(request, Letters::kept);
    if (!file.ok) return ShowMessage(file.error);
    const auto line = [&](std::size_t n) {
        return n <= file.lines.size() ? file.lines[n - 1] : std::string();
    };
    Write_report("Files found for import");
    Write_report("Path         = " + line(1));
    Write_report("Project name = " + line(2));
    const std::string commands = file.lines.size() >= 4 ? line(4) : line(3);
    Write_report(commands.empty() ? "No command file" : "Command file = " + commands);
    ShowMessage("Importing data is not available yet. The request stays in " + Path_text(request));
}

Outcome REOPEN() {
    if (const auto request = Find_file(The_session.StartPath / "TARVEN.imp")) {
        Show_import_request(*request);
        return Outcome::done;
    }
    if (!Find_file(The_session.StartPath / "TARVEN.cmd")) {
        ShowMessage("No information on previous project in PLX startpath " +
                    Path_text(The_session.StartPath));
        return Outcome::done;
    }
    const RememberedProject project = Remembered_project();
    const fs::path folder = Text_path(project.folder);
    const auto DEF =
        project.found ? Find_file(folder / Text_path(project.name + ".def")) : std::nullopt;
    if (!DEF) {
        std::error_code ignored;
        if (project.found && !fs::is_directory(folder, ignored))
            ShowMessage("Cannot find directory of previous project");
        else
            ShowMessage("No information on previous project in projectpath " + project.folder);
        return Outcome::done;
    }
    if (!Change_folder(folder)) ShowMessage("Directory not changed");
    Set_project(folder, project.name);
    if (!Open_project_files()) return Outcome::done;
    Write_heading_line(The_project.Projectname + " opened at " +
                       Path_text(The_project.ProjectPath));
    Run_from_code("Show L");
    Run_ini_file();
    return Outcome::done;
}

/// Deletes project.tmp, a leftover of an earlier run, unless the report is being written there.
Outcome S70() {
    if (The_report.ReportOpen > 0) return Outcome::done;
    const auto file = The_project.files.TMP.path;
    const auto found = file.empty() ? std::nullopt : Find_file(file);
    std::error_code error;
    if (found) fs::remove(*found, error);
    if (error) ShowMessage(Path_text(*found) + " was not deleted");
    return Outcome::done;
}

Outcome EXIT() {
    if (!ExitFromTarven(false)) return Outcome::refused;
    The_session.QuitRequested = true;
    return Outcome::done;
}

constexpr const char* ExitHelp =
    "EXIT\nQUIT\n\n"
    "Ends the program. When the project graph was changed since it was read or saved it asks\n"
    "\"Save Graph\": Y writes project.GRF, and C, or Ctrl-C at a terminal, leads back to the\n"
    "prompt; so does a file that cannot be written. When the report holds lines that were\n"
    "neither saved nor appended it asks whether to save them. At a terminal you name the file,\n"
    "project.REP when you name none; Ctrl-C,\n"
    "Ctrl-D or a file that cannot be written lead back to the prompt. From a file or a pipe it is\n"
    "project.REP, and exit status 1 tells of a failure. The temporary files of the report are\n"
    "deleted. The end of a command file given to the program, or of standard input, means the\n"
    "same.\n\n"
    "The same questions come before another project is opened (OPE, not BAT); then the report is\n"
    "erased.";

}  // namespace

void Register_start_commands() {
    Register_command(
        {.keyword = "OPE",
         .run = OPEN,
         .spelling = "OPEN",
         .summary = "opens a project",
         .help = "OPEN project\n\n"
                 "Opens the project whose file project.DEF stands in the current\n"
                 "folder (a path may stand before the name), shows the environment and\n"
                 "runs project.INI. A project that is open is given up, after a\n"
                 "question. When there is no such project you may choose one. A name with\n"
                 "blanks stands in quotes.\n\n"
                 "Examples: OPE titanic\n"
                 "          OPE \"my studies/titanic\""});
    Register_command({.keyword = "S69",
                      .run = S69,
                      .summary = "opens a project by its full path",
                      .help = "S69 path\n\nOpens the project of that path, which may hold blanks;\n"
                              "its folder becomes the current one, and REO will find it again.\n\n"
                              "Example: S69 /home/me/my studies/titanic",
                      .hidden = true});
    Register_command({.keyword = "BAT",
                      .run = BATCH,
                      .spelling = "BATCH",
                      .summary = "opens a project and runs a command file",
                      .help = "BATCH project\nBATCH project file\n\n"
                              "Opens a project of the current folder without a question and runs\n"
                              "its command file, project.CMD or the one named. Lines of BAT in a\n"
                              "command file process project after project unattended; one that is\n"
                              "missing gives its message and the next one follows. A graph that\n"
                              "was changed is not saved: end with SAVE.\n\n"
                              "Example: BAT titanic night.cmd\n\n"
                              "Refused when project.DEF or the command file is missing; the open\n"
                              "project then stays."});
    Register_command({.keyword = "RUN",
                      .run = RUN,
                      .spelling = "RUN",
                      .summary = "runs a command file of the project",
                      .help =
                          "RUN\nRUN file\n\n"
                          "Runs the lines of a file of the current folder, project.CMD without\n"
                          "a name. A name with blanks stands in quotes. Command files may run "
                          "others, 50 deep at most. A line that\n"
                          "fails gives its message, and the next one follows.\n\n"
                          "Example: RUN tables.cmd"});
    Register_command({.keyword = "CMD",
                      .run = CMD,
                      .spelling = "CMD",
                      .summary = "runs a command file",
                      .help =
                          "CMD\nCMD file\n\nAs RUN. At a terminal the file is asked for when none\n"
                          "is named or found."});
    Register_command({.keyword = "CHD",
                      .run = CHDIR,
                      .spelling = "CHDIR",
                      .summary = "changes the current folder to the folder in word 2",
                      .help =
                          "CHDIR folder\n\nA name with blanks stands in quotes.\n\n"
                          "Example: CHD \"my studies\"\n\nRefused when there is no such folder."});
    Register_command({.keyword = "REO",
                      .run = REOPEN,
                      .needs = {{[] { return !The_project.ProjectOpen; }, "Project already open"}},
                      .spelling = "REOPEN",
                      .summary = "opens the last project again",
                      .help = "REOPEN\n\nOpens the project that was opened last from this start\n"
                              "folder, as the file TARVEN.cmd remembers it.\n\n"
                              "Refused when a project is open."});
    Register_command({.keyword = "S70",
                      .run = S70,
                      .summary = "deletes project.tmp",
                      .help = "S70\n\nDeletes project.tmp, the buffer of the report.",
                      .hidden = true});
    Register_command({.keyword = "EXI",
                      .run = EXIT,
                      .spelling = "EXIT",
                      .summary = "ends the program",
                      .help = ExitHelp});
    Register_command({.keyword = "QUI",
                      .run = EXIT,
                      .spelling = "QUIT",
                      .summary = "ends the program",
                      .help = ExitHelp});
}

}  // namespace tarven
