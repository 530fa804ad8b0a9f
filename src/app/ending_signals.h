#pragma once

#include <spawn.h>

#include <atomic>
#include <thread>

namespace tarven {

/// A write to a pipe that nobody reads, or past the largest size of a file, fails with an error
/// that is told, and does not end the program by a signal.
void Ignore_signals_of_writes();

/// A program that is started from here gets the signals as this one got them.
void Set_signals_of_child(posix_spawnattr_t& attributes);

/// While it lives, a signal that ends the program from outside (SIGTERM, and SIGHUP unless the
/// program was started to outlive its terminal) saves the report under a name of its own first.
/// The signals are blocked everywhere and awaited by one thread, which, unlike a handler, may take
/// locks, allocate and write whatever the command at work is doing.
class EndingSignals {
  public:
    EndingSignals();
    ~EndingSignals();
    EndingSignals(const EndingSignals&) = delete;
    EndingSignals& operator=(const EndingSignals&) = delete;

  private:
    std::atomic<bool> over_{false};
    std::thread waiting_;
};

/// From the handler of Ctrl-C: ends the program as a signal from outside does. False when nothing
/// awaits such signals.
bool End_by_interrupt();

/// The terminal is gone. Ends as SIGHUP does, whether or not that comes.
[[noreturn]] void End_without_terminal();

}  // namespace tarven
