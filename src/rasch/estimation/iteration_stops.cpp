#include "rasch/estimation/iteration_stops.h"

namespace tarven {

namespace {

constexpr Extended DeltaBeforeTheFirst = 9999;
constexpr Extended LargeDelta = 10.0L;
constexpr Extended CyclingDelta = 2.0L;
constexpr Extended CyclingGain = 0.00001L;
constexpr int StepsBeforeRecurrence = 5;
constexpr int MostWorseningSteps = 11;
constexpr int StepsBetweenStops = 1000;

}  // namespace

Extended Delta_back(std::span<const Extended> history, int steps) {
    const std::size_t back = static_cast<std::size_t>(steps) + 1;
    return history.size() >= back ? history[history.size() - back] : DeltaBeforeTheFirst;
}

bool Delta_recurs(std::span<const Extended> history, int number) {
    const Extended Delta = Delta_back(history, 0);
    return number > StepsBeforeRecurrence && Delta >= CyclingDelta &&
           !(Delta_back(history, 2) - Delta >= CyclingGain) &&
           !(Delta_back(history, 4) - Delta >= CyclingGain);
}

int Worsening_steps(std::span<const Extended> history) {
    int steps = 0;
    for (std::size_t k = history.size(); k-- > 1 && history[k] >= history[k - 1];)
        if (history[k] > history[k - 1]) ++steps;
    return steps;
}

IterationStop Stop_after(std::span<const Extended> history, int number, const StopRules& rules,
                         const StopCheck& cancelled) {
    const Extended Delta = Delta_back(history, 0);
    const Extended before = Delta_back(history, 1);
    if (Delta < static_cast<Extended>(rules.critical_Delta)) return IterationStop::converged;
    if (number > rules.Nstep && Delta_recurs(history, number)) return IterationStop::cycling;
    if (number == rules.maximum_steps) return IterationStop::maximum_steps;
    if (number % StepsBetweenStops == 0) return IterationStop::thousand_steps;
    if (Delta == before) return IterationStop::same_delta;
    if (number > StepsBeforeRecurrence && Delta == Delta_back(history, 2))
        return IterationStop::delta_two_back;
    if (rules.Nstep > 0 && number % rules.Nstep == 0 && Delta > LargeDelta)
        return IterationStop::large_delta;
    if (cancelled && cancelled()) return IterationStop::cancelled;
    if (Delta > before && Worsening_steps(history) >= MostWorseningSteps)
        return IterationStop::worsening;
    return IterationStop::none;
}

}  // namespace tarven
