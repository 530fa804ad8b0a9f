#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

namespace tarven {

/// What a run of the program gave.
struct ProgramRun {
    int status = -1;  ///< exit status; -1 when a signal ended it
    int signal = 0;
    std::string out;  ///< standard output, or what a terminal showed
    std::string err;
};

/// Runs the real program in `folder` with standard input from a pipe that holds `input`.
ProgramRun Run_tarven(const std::filesystem::path& folder,
                      const std::vector<std::string>& arguments, const std::string& input = "");

/// The real program at the end of a pipe that stays open, so that it can be met in the middle.
class LivingProgram {
  public:
    /// `program` stands in for TARVEN where a test begins with a shell.
    LivingProgram(const std::filesystem::path& folder, const std::vector<std::string>& arguments,
                  bool at_terminal, const char* program = TARVEN_PROGRAM);
    ~LivingProgram();
    LivingProgram(const LivingProgram&) = delete;
    LivingProgram& operator=(const LivingProgram&) = delete;

    void Type(const std::string& bytes);
    /// Waits until standard output has shown `text` behind what was awaited before; false after
    /// ten seconds.
    bool Await(const std::string& text);
    void Kill(int signal);
    /// What it has shown so far.
    const std::string& Shown() const { return run_.out; }
    /// Closes the terminal, as its window does, and waits for the end.
    ProgramRun Hang_up();
    /// Waits for its end and returns all it showed.
    ProgramRun Await_end();
    /// Closes its input and waits for its end.
    ProgramRun Finish();

  private:
    void Read_some();

    pid_t child_ = 0;
    int input_ = -1;
    int output_ = -1;
    std::size_t awaited_ = 0;
    ProgramRun run_;
};

}  // namespace tarven
