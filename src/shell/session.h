#pragma once

#include <deque>
#include <filesystem>
#include <string>
#include <vector>

namespace tarven {

inline constexpr std::size_t MaxHistory = 20;

/// The run of the program and the state of the command field.
struct Session {
    std::filesystem::path StartPath = ".";  ///< where start-up memory and project log live
    std::string arguments;                  ///< of the program, as typed
    std::filesystem::path report_copy;      ///< gets each line of the report too; empty: none
    bool machine_failed = false;            ///< a file could not be written: the exit status tells
    int jobs = 1;                           ///< threads for lists of tests; decides no digit
    bool AUTOMATIC = false;                 ///< yes-or-no questions answer themselves
    bool QuitRequested = false;             ///< EXI or QUI has run: read no further line
    bool Append_results = false;            ///< item screening found neither DIF nor LD

    std::string command_field;        ///< the line typed, kept after a refusal for correction
    std::deque<std::string> queue;    ///< lines waiting under the command field
    std::deque<std::string> history;  ///< the last 20 lines, oldest first
    std::string test_status;          ///< which tests run, as the first test status field shows
    std::string sides_status;         ///< one- or two-sided, the second field
    int command_depth = 0;            ///< command files running within each other
};

inline Session The_session;

}  // namespace tarven
