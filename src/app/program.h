#pragma once

#include <functional>

namespace tarven {

/// The program: options, session, exit status.
int Run_program(int argc, const char* const* argv);

/// Runs a session and turns an exception that reaches the top (no memory, no disk) into the exit
/// status of a failure: the report is closed so that its lines are in sight, its first stage stays
/// on disk, and standard error names the cause.
int Run_guarded(const std::function<int()>& session);

}  // namespace tarven
