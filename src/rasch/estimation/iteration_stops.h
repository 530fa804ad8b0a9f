#pragma once

#include <cstdint>
#include <span>

#include "shell/numbers.h"
#include "shell/stop_check.h"

namespace tarven {

/// When an iterative fit ends, by the Deltas of its steps so far: history[0] is that of the first.
/// A Delta before the first counts as 9999.

/// Why an iteration stopped, in the order of the tests.
enum class IterationStop : std::uint8_t {
    none,
    converged,       ///< Delta below the critical one
    cycling,         ///< Delta comes back and is large
    maximum_steps,   ///< the step number is the maximum
    thousand_steps,  ///< it is a multiple of 1000
    same_delta,      ///< Delta is the one before
    delta_two_back,  ///< Delta is that of two steps back
    large_delta,     ///< Delta above 10 at a multiple of Nstep
    cancelled,       ///< by the user
    worsening        ///< Delta has grown in 11 steps or more
};

struct StopRules {
    double critical_Delta = 0.0001;
    int Nstep = 50;            ///< rules on large gaps and cycling wait for it
    int maximum_steps = 5000;  ///< of one stretch
};

/// The Delta of so many steps before the last one.
Extended Delta_back(std::span<const Extended> history, int steps);

/// A Delta of 2 persons or more, above step 5, that is not smaller by 0.00001 than two steps back
/// nor than four steps back. It ends an iteration above step Nstep.
bool Delta_recurs(std::span<const Extended> history, int number);

/// The worsening steps since the last one that was better.
int Worsening_steps(std::span<const Extended> history);

/// Why the iteration stops after the last step of the history, whose number is `number` (a count
/// that begins anew when a stretch of maximum_steps is continued); none when it goes on.
IterationStop Stop_after(std::span<const Extended> history, int number, const StopRules& rules,
                         const StopCheck& cancelled = {});

}  // namespace tarven
