#include "app/program.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <new>
#include <thread>

#include "app/ending_signals.h"
#include "app/options.h"
#include "app/output.h"
#include "app/register.h"
#include "app/start.h"
#include "app/terminal_user.h"
#include "project/open_project.h"
#include "project/project.h"
#include "project/project_log.h"
#include "project/report_target.h"
#include "shell/command_files.h"
#include "shell/command_stream.h"
#include "shell/command_table.h"
#include "shell/commands.h"
#include "shell/dispatcher.h"
#include "shell/files.h"
#include "shell/help.h"
#include "shell/mode.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/text.h"
#include "shell/unsaved_report.h"
#include "shell/user.h"

namespace tarven {

namespace {

void Remember_arguments(int argc, const char* const* argv) {
    for (int k = 1; k < argc; ++k) {
        if (k > 1) The_session.arguments += ' ';
        The_session.arguments += To_line(argv[k]);
    }
}

void Run_lines_of_stream() {
    while (!The_session.QuitRequested) {
        const std::optional<std::string> line = Next_line();
        if (!line) break;
        Command_begins();
        Run_line(*line);
        Command_ended();
    }
}

std::vector<LabelAndName> Labels_of_project() {
    std::vector<LabelAndName> labels;
    for (int i = 1; i <= The_project.N; ++i)
        labels.push_back({The_project.variables[i].label, The_project.variables[i].name});
    return labels;
}

/// The lines of -c, then the files; false when a file could not be run.
bool Run_commands_and_files(const Options& options) {
    Push_lines(options.commands);
    Run_lines_of_stream();
    Pop_line_source();
    bool all_run = true;
    for (const auto& file : options.files) {
        if (The_session.QuitRequested) break;
        Command_begins();
        all_run = RunBatchfile(file) && all_run;
        Command_ended();
    }
    return all_run;
}

void Run_standard_input() {
    Push_line_source([]() -> std::optional<std::string> {
        std::string line;
        if (!std::getline(std::cin, line)) return {};
        if (!line.empty() && line.back() == '\r') line.pop_back();
        return To_line(line);
    });
    Run_lines_of_stream();
}

/// Lines typed at the prompt. They stand in no stream, for questions are asked of the person. The
/// end of what is typed is EXI, from which the person may come back.
void Run_typed_lines() {
    while (!The_session.QuitRequested) {
        const std::optional<std::string> line = Type_line();
        if (!line && Terminal_is_gone()) End_without_terminal();
        if (!line) Leave_all_modes();
        Command_begins();
        Run_line(line.value_or("EXI"));
        Command_ended();
    }
}

/// The end of input is EXI, from whatever mode it is met in.
void Exit_session() {
    if (!The_session.QuitRequested) Leave_all_modes();
    const Command* exit = Find_command(Command_number("EXI"));
    if (exit && exit->run && exit->available) {
        The_report.LogOn = false;  // nobody gave it as a command
        if (!The_session.QuitRequested) Run_line("EXI");
        return;
    }
    const std::filesystem::path first_stage = The_report.ReportFile;
    Release_report_file();
    std::error_code ignored;
    if (!first_stage.empty()) std::filesystem::remove(first_stage, ignored);
}

int Run_session(const Options& options) {
    const EndingSignals ending;
    const bool interactive = !options.Runs_and_exits() && Person_at_terminal();
    if (interactive) Install_terminal_user();
    if (isatty(STDIN_FILENO)) Install_interrupt();
    Install_banners();
    Labels_to_complete = Labels_of_project;
    The_report.LogOn = options.log;
    Make_start_files();
    Tell_unsaved_reports(The_session.StartPath / "TARVEN.TMP");
    if (options.automatic) Run_from_code("AUT");
    if (interactive && options.project.empty()) Offer_a_project();
    bool all_run = options.project.empty() || Open_project_at_start(options.project);
    if (options.Runs_and_exits()) {
        if (all_run) all_run = Run_commands_and_files(options);
    } else if (interactive) {
        Run_typed_lines();
        all_run = true;  // a project that was not opened can be opened at the prompt
    } else if (all_run) {
        Run_standard_input();
    }
    Exit_session();
    if (The_output.failed || The_session.machine_failed) return Status_of_failure;
    return all_run ? Status_of_success : Status_of_usage;
}

int Failure(const std::string& cause) {
    Print_error(fmt::format("tarven ends: {}\n", cause));
    try {
        End_report();
        const SavedReport saved = Save_report_if_unsaved();
        if (!saved.file.empty())
            Print_error(
                fmt::format("The report was saved on {}\n", To_utf8(Path_text(saved.file))));
    } catch (const std::exception&) {
        // What could not be shown stands in the file of the first stage, written line by line.
    }
    return Status_of_failure;
}

/// Why the copy of the report cannot be made, in UTF-8; empty when it is there.
std::string Make_report_copy(const Options& options) {
    const auto DEF =
        options.project.empty() ? std::nullopt : Find_file(Definition_named(options.project));
    const std::string refusal = Refusal_of_target(options.report, DEF.value_or(""));
    if (!refusal.empty()) return To_utf8(refusal);
    The_session.report_copy = options.report;
    return Open_report_copy(options.report);
}

}  // namespace

int Run_guarded(const std::function<int()>& session) {
    try {
        return session();
    } catch (const std::bad_alloc&) {
        return Failure("no memory");
    } catch (const std::length_error&) {
        return Failure("no memory");
    } catch (const std::exception& error) {
        return Failure(error.what());
    }
}

int Run_program(int argc, const char* const* argv) {
    Hold_closed_streams();
    Ignore_signals_of_writes();
    return Run_guarded([&] {
        const ReadOptions read = Read_options(argc, argv);
        if (read.ends) {
            fmt::print(read.status == Status_of_success ? stdout : stderr, "{}", read.text);
            return read.status;
        }
        Register_all();
        if (read.options.commands_reference) {
            fmt::print("{}", Command_reference());
            return Status_of_success;
        }
        Remember_arguments(argc, argv);
        The_session.StartPath = read.options.start;
        The_session.jobs =
            read.options.jobs > 0
                ? read.options.jobs
                : static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
        if (!read.options.report.empty()) {
            const std::string failure = Make_report_copy(read.options);
            if (!failure.empty()) {
                Print_error(failure + "\n");
                return Status_of_usage;
            }
        }
        The_report.on_line = Print_report_line;
        The_user.user.show_message = Print_message;
        return Run_session(read.options);
    });
}

}  // namespace tarven
