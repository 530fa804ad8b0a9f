#include "app/ending_signals.h"

#include <fmt/format.h>
#include <poll.h>
#include <pthread.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <exception>
#include <optional>
#include <string>

#include "shell/files.h"
#include "shell/text.h"
#include "shell/unsaved_report.h"

namespace tarven {

namespace {

/// The handler of Ctrl-C sends it to the thread that waits.
constexpr int InterruptPassedOn = SIGUSR1;

std::atomic<bool> Awaited{false};

bool Is_ignored(int signal) {
    struct sigaction action {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

sigset_t Signals_awaited() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    if (!Is_ignored(SIGHUP)) sigaddset(&signals, SIGHUP);
    sigaddset(&signals, InterruptPassedOn);
    return signals;
}

/// Standard error may be a terminal or a pipe that takes nothing; the end does not wait for it.
void Say(const std::string& text) {
    pollfd ready{.fd = STDERR_FILENO, .events = POLLOUT, .revents = 0};
    if (poll(&ready, 1, 0) == 1 && (ready.revents & POLLOUT) != 0) Write_bytes(2, text);
}

void Save_and_tell(int signal) {
    const SavedReport saved = Save_report_if_unsaved();
    std::string text = fmt::format("\ntarven ends: {}\n", strsignal(signal));
    if (!saved.file.empty())
        text += fmt::format("The report was saved on {}\n", To_utf8(Path_text(saved.file)));
    if (!saved.failure.empty()) text += To_utf8(saved.failure) + "\n";
    Say(text);
}

/// Whoever waits for the program learns which signal ended it.
[[noreturn]] void End_by(int signal) {
    std::signal(signal, SIG_DFL);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, signal);
    pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
    raise(signal);
    _exit(128 + signal);
}

void Await(const sigset_t& signals, const std::optional<termios>& terminal,
           const std::atomic<bool>& over) {
    int signal = 0;
    while (sigwait(&signals, &signal) != 0) {
    }
    if (signal == InterruptPassedOn && over) {
        // A signal that came while the program was ending counts as well.
        constexpr timespec AtOnce{};
        signal = sigtimedwait(&signals, nullptr, &AtOnce);
        if (signal < 0) return;
    }
    if (signal == InterruptPassedOn) signal = SIGINT;
    try {
        Save_and_tell(signal);
    } catch (const std::exception&) {
        Say("\ntarven ends, and the report could not be saved: no memory\n");
    }
    // The line editor may have it in its hands.
    if (terminal) tcsetattr(STDIN_FILENO, TCSANOW, &*terminal);
    End_by(signal);
}

}  // namespace

void Ignore_signals_of_writes() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

void Set_signals_of_child(posix_spawnattr_t& attributes) {
    sigset_t by_default;
    sigemptyset(&by_default);
    sigaddset(&by_default, SIGPIPE);
    sigaddset(&by_default, SIGXFSZ);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigdefault(&attributes, &by_default);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
}

EndingSignals::EndingSignals() {
    termios state{};
    std::optional<termios> terminal;
    if (tcgetattr(STDIN_FILENO, &state) == 0) terminal = state;
    const sigset_t signals = Signals_awaited();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    waiting_ = std::thread([this, signals, terminal] {
        // Also what a terminal sends to those who change it from the background.
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, nullptr);
        Await(signals, terminal, over_);
    });
    Awaited = true;
}

EndingSignals::~EndingSignals() {
    Awaited = false;
    over_ = true;
    pthread_kill(waiting_.native_handle(), InterruptPassedOn);
    // When a signal came before, this waits until it has ended the program.
    waiting_.join();
    const sigset_t signals = Signals_awaited();
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

bool End_by_interrupt() {
    return Awaited && kill(getpid(), InterruptPassedOn) == 0;
}

void End_without_terminal() {
    if (!Awaited) _exit(1);
    kill(getpid(), Is_ignored(SIGHUP) ? SIGTERM : SIGHUP);
    for (;;) pause();
}

}  // namespace tarven
