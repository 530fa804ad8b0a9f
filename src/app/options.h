#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tarven {

/// What the program was asked to do. Commands and the project are text as typed lines are;
/// paths are bytes of the file system.
struct Options {
    std::vector<std::string> commands;         ///< run before the files
    std::vector<std::filesystem::path> files;  ///< command files, each exists
    std::string project;                       ///< opened first; empty: none
    std::filesystem::path start;               ///< the start folder, absolute
    bool automatic = false;
    bool log = false;              ///< each command is echoed into the report
    int jobs = 0;                  ///< threads for lists of tests; 0: as many as processors
    std::filesystem::path report;  ///< gets every report line too; empty: none
    bool commands_reference = false;

    bool Runs_and_exits() const { return !commands.empty() || !files.empty(); }
};

/// Options, or the exit status with which the program ends at once. `text` is for standard output
/// when the status is 0 (help, version) and for standard error otherwise.
struct ReadOptions {
    Options options;
    bool ends = false;
    int status = 0;
    std::string text;
};

/// Exit statuses of the program.
inline constexpr int Status_of_success = 0;
inline constexpr int Status_of_failure = 1;  ///< no memory, no disk
inline constexpr int Status_of_usage = 2;    ///< a bad option, a command file that is not there

/// Reads the arguments of the program. A command file or a start folder that does not exist is
/// found here, before anything runs.
ReadOptions Read_options(int argc, const char* const* argv);

}  // namespace tarven
