#include "app/options.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "shell/files.h"
#include "shell/text.h"

namespace tarven {

namespace {

/// The first thing wrong with paths that must exist; empty when nothing is.
std::string Missing_path(const Options& options) {
    std::error_code ignored;
    for (const auto& file : options.files)
        if (!Find_file(file) && !std::filesystem::exists(file, ignored))
            return fmt::format("{} not found", file.string());
    if (!std::filesystem::is_directory(options.start, ignored))
        return fmt::format("{} is not a folder", options.start.string());
    return "";
}

}  // namespace

ReadOptions Read_options(int argc, const char* const* argv) {
    CLI::App app{
        "A workbench for multivariate categorical data: contingency tables, graphical\n"
        "models and Rasch models.",
        "tarven"};
    std::vector<std::string> commands;
    std::vector<std::string> files;
    std::string project;
    std::string start;
    std::string report;
    ReadOptions read;
    app.add_option("files", files, "Command files, run in turn")->type_name("COMMANDFILE");
    app.add_option("-c,--command", commands, "Run a line, before the files (repeatable)")
        ->type_name("LINE")
        ->allow_extra_args(false);
    app.add_option("-p,--project", project,
                   "Open a project first: a name in the current folder, or a path")
        ->type_name("NAME");
    app.add_option("--start", start, "The start folder (default: the current folder)")
        ->type_name("DIR");
    app.add_flag("--automatic", read.options.automatic, "As if AUT had been given");
    app.add_flag("--log", read.options.log, "Echo each command into the report");
    app.add_option("--jobs", read.options.jobs,
                   "Threads for lists of tests; the results are the same (default: the processors)")
        ->type_name("N")
        ->check(CLI::Range(1, 1024));
    app.add_option("--report", report, "Write every report line to FILE too, as it appears")
        ->type_name("FILE");
    app.add_flag("--commands-reference", read.options.commands_reference,
                 "Print the reference of all commands as Markdown");
    app.set_version_flag("--version", "TARVEN " TARVEN_VERSION);
    app.footer(
        "With files or -c the lines are run and the program ends. With neither it reads\n"
        "lines from standard input, at a terminal with editing, history and completion.");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        std::ostringstream out;
        std::ostringstream err;
        const int status = app.exit(error, out, err);
        read.ends = true;
        read.status = status == 0 ? Status_of_success : Status_of_usage;
        read.text = status == 0 ? out.str() : err.str();
        return read;
    }
    for (const std::string& command : commands) read.options.commands.push_back(To_line(command));
    // A project that is opened first changes the current folder.
    for (const std::string& file : files)
        read.options.files.push_back(std::filesystem::absolute(file));
    read.options.project = To_line(project);
    read.options.start = std::filesystem::absolute(start.empty() ? "." : start).lexically_normal();
    if (!report.empty()) read.options.report = std::filesystem::absolute(report);
    if (const std::string missing = Missing_path(read.options); !missing.empty()) {
        read.ends = true;
        read.status = Status_of_usage;
        read.text = missing + "\n";
    }
    return read;
}

}  // namespace tarven
