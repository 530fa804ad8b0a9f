#include "support/program.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace tarven {

namespace {

[[noreturn]] void Become_program(const std::filesystem::path& folder, const char* program,
                                 const std::vector<std::string>& arguments) {
    std::vector<char*> argv = {const_cast<char*>(program)};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    setenv("TERM", "xterm", 1);
    setenv("XDG_STATE_HOME", (folder / "state").c_str(), 1);  // no history of who runs the tests
    if (chdir(folder.c_str()) == 0) execv(program, argv.data());
    _exit(127);
}

void Take_status(ProgramRun& run, int status) {
    if (WIFEXITED(status)) run.status = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) run.signal = WTERMSIG(status);
}

}  // namespace

ProgramRun Run_tarven(const std::filesystem::path& folder,
                      const std::vector<std::string>& arguments, const std::string& input) {
    // Files, not pipes: no order of reading and writing can block.
    std::FILE* in = std::tmpfile();
    std::FILE* out = std::tmpfile();
    std::FILE* err = std::tmpfile();
    std::fwrite(input.data(), 1, input.size(), in);
    std::rewind(in);
    const pid_t child = fork();
    if (child == 0) {
        dup2(fileno(in), 0);
        dup2(fileno(out), 1);
        dup2(fileno(err), 2);
        Become_program(folder, TARVEN_PROGRAM, arguments);
    }
    ProgramRun run;
    int status = 0;
    waitpid(child, &status, 0);
    Take_status(run, status);
    const auto take = [](std::FILE* file) {
        std::string text;
        std::rewind(file);
        char block[65536];
        while (const std::size_t got = std::fread(block, 1, sizeof block, file))
            text.append(block, got);
        std::fclose(file);
        return text;
    };
    run.out = take(out);
    run.err = take(err);
    std::fclose(in);
    return run;
}

LivingProgram::LivingProgram(const std::filesystem::path& folder,
                             const std::vector<std::string>& arguments, bool at_terminal,
                             const char* program) {
    if (at_terminal) {
        winsize size{.ws_row = 24, .ws_col = 80};
        child_ = forkpty(&output_, nullptr, nullptr, &size);
        if (child_ == 0) {
            // The line editor keeps the names of its added functions to the end of the process.
            setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
            Become_program(folder, program, arguments);
        }
        input_ = dup(output_);
        return;
    }
    int in[2];
    int out[2];
    if (pipe2(in, O_CLOEXEC) != 0 || pipe2(out, O_CLOEXEC) != 0) std::abort();
    child_ = fork();
    if (child_ == 0) {
        dup2(in[0], 0);
        dup2(out[1], 1);
        Become_program(folder, program, arguments);
    }
    close(in[0]);
    close(out[1]);
    input_ = in[1];
    output_ = out[0];
}

LivingProgram::~LivingProgram() {
    if (child_ > 0) {
        kill(child_, SIGKILL);
        Finish();
    }
}

void LivingProgram::Type(const std::string& bytes) {
    if (write(input_, bytes.data(), bytes.size()) < 0) ADD_FAILURE() << "nobody reads";
}

void LivingProgram::Read_some() {
    pollfd ready{.fd = output_, .events = POLLIN};
    if (poll(&ready, 1, 100) <= 0 || output_ < 0) return;
    char block[65536];
    const ssize_t got = read(output_, block, sizeof block);
    if (got > 0) run_.out.append(block, static_cast<std::size_t>(got));
}

bool LivingProgram::Await(const std::string& text) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    for (;;) {
        const auto at = run_.out.find(text, awaited_);
        if (at != std::string::npos) {
            awaited_ = at + text.size();
            return true;
        }
        if (std::chrono::steady_clock::now() > end) return false;
        Read_some();
    }
}

void LivingProgram::Kill(int signal) {
    kill(child_, signal);
}

ProgramRun LivingProgram::Hang_up() {
    close(output_);
    output_ = -1;
    return Finish();
}

ProgramRun LivingProgram::Finish() {
    close(input_);
    input_ = -1;
    return Await_end();
}

ProgramRun LivingProgram::Await_end() {
    int status = 0;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (waitpid(child_, &status, WNOHANG) == 0) {
        Read_some();
        if (std::chrono::steady_clock::now() > end) kill(child_, SIGKILL);
    }
    Read_some();
    child_ = 0;
    for (const int end_of_ours : {input_, output_})
        if (end_of_ours >= 0) close(end_of_ours);
    Take_status(run_, status);
    return run_;
}

}  // namespace tarven
