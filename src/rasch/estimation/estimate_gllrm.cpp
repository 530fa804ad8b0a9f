#include "rasch/estimation/estimate_gllrm.h"

#include <fmt/format.h>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>
#include <span>

#include "rasch/items/model_text.h"

namespace tarven {

namespace {

std::size_t Nr(int i) {
    return static_cast<std::size_t>(i);
}

/// What an iteration fits: everything but the parameters and its own course.
struct FitTask {
    const ModelStructure& structure;
    const SufficientMargins& margins;
    const EstimationSettings& settings;
    PolynomialMemory& memory;
    ExpectedMargins& expected;
    const StopCheck& stop;
    const ContinueQuestion& ask;
    const StepNotice& tell;

    bool has_terms() const { return !structure.pairs.empty() || !structure.terms.empty(); }
};

/// The iteration with its stop rules.
class Iterator {
  public:
    Iterator(const FitTask& task, GLLRMParameters& parameters)
        : task_(task), parameters_(parameters), start_(parameters) {}

    Iteration Run() {
        course_.smallest_Delta = std::numeric_limits<Extended>::max();
        course_.Delta = Delta_back({}, 0);
        // The first stop is always an improvement.
        smallest_at_last_stop_ = std::numeric_limits<Extended>::max();
        for (;;) {
            const bool whole = Take_step();
            if (whole && Delta_recurs(Phase(), number_))
                course_.recurrences.push_back(
                    {course_.steps, course_.Delta, Delta_back(Phase(), 2), Delta_back(Phase(), 4)});
            const IterationStop reason =
                whole ? Stop_after(Phase(), number_, task_.settings.stops, task_.stop)
                      : IterationStop::cancelled;
            if (reason == IterationStop::none) continue;
            course_.end = {reason, course_.steps, course_.Delta};
            if (!Goes_on(reason)) break;
            course_.passed.push_back(course_.end);
            if (number_ >= task_.settings.stops.maximum_steps) number_ = 0;
        }
        if (sweeping_) Normalise_whole_model(task_.structure, task_.margins, parameters_);
        if (course_.history.empty()) course_.smallest_Delta = course_.Delta;
        course_.reached_critical = course_.end.reason == IterationStop::converged;
        return std::move(course_);
    }

  private:
    const FitTask& task_;
    GLLRMParameters& parameters_;
    GLLRMParameters start_;  ///< where sweeps begin: what has stuck is no place to begin from
    Iteration course_;
    int number_ = 0;  ///< of the step, as the rules count it
    bool sweeping_ = false;
    Extended smallest_at_last_stop_ = 0;

    /// The Deltas of the literal steps, or of the sweeps.
    std::span<const Extended> Phase() const {
        return std::span(course_.history)
            .subspan(sweeping_ ? course_.history.size() - Nr(course_.sweeps) : 0);
    }

    /// False when the user stopped it: the parameters are those of the steps before.
    bool Take_step() {
        const auto take = sweeping_ ? Take_a_sweep : Take_a_LL_step;
        const std::optional<Extended> Delta =
            take(task_.structure, task_.margins, task_.settings.step, task_.memory, task_.expected,
                 parameters_, task_.stop);
        if (!Delta) return false;
        course_.Delta = *Delta;
        ++number_;
        ++course_.steps;
        if (sweeping_) ++course_.sweeps;
        course_.history.push_back(course_.Delta);
        if (course_.Delta < course_.smallest_Delta) {
            course_.smallest_Delta = course_.Delta;
            course_.smallest_step = course_.steps;
        }
        if (task_.tell) task_.tell(course_.steps, course_.Delta);
        return true;
    }

    /// What the question whether to go on shows.
    UnfinishedIteration Unfinished() const {
        if (course_.history.empty())
            return {.stop = course_.end,
                    .initial_Delta = course_.Delta,
                    .smallest_Delta = course_.Delta};
        return {course_.end, course_.history.front(), course_.smallest_Delta, course_.smallest_step,
                course_.Delta == Delta_back(Phase(), 1)};
    }

    /// After a stop: whether there is more to do, and by which kind of step.
    bool Goes_on(IterationStop reason) {
        if (reason == IterationStop::converged) return false;
        const bool improved = course_.smallest_Delta < smallest_at_last_stop_;
        smallest_at_last_stop_ = course_.smallest_Delta;
        const ContinueAnswer answer = task_.ask ? task_.ask(Unfinished()) : ContinueAnswer::nobody;
        if (answer == ContinueAnswer::cancelled) course_.end.reason = IterationStop::cancelled;
        if (answer == ContinueAnswer::yes && !improved && reason != IterationStop::cancelled)
            Turn_to_sweeps(true);
        if (answer != ContinueAnswer::nobody) return answer == ContinueAnswer::yes;
        if (reason == IterationStop::cancelled) return false;
        const int most = std::min(task_.settings.stops.maximum_steps, MostStepsUnasked);
        const int literal = course_.steps - course_.sweeps;
        if (sweeping_)
            return improved && course_.sweeps < std::max(most - literal, LeastBoundOfSweeps);
        if (literal >= most)
            return course_.Delta >= static_cast<Extended>(DeltaOfConvergence) &&
                   Turn_to_sweeps(!improved);
        return improved || Turn_to_sweeps(true);
    }

    /// Sweeps, from the start values or from where the steps are. False when they are under way
    /// already, or would be nothing else than steps.
    bool Turn_to_sweeps(bool from_start) {
        if (sweeping_ || !task_.has_terms()) return false;
        sweeping_ = true;
        course_.sweeps_go_on = !from_start;
        if (from_start) parameters_ = start_;
        number_ = 0;
        smallest_at_last_stop_ = std::numeric_limits<Extended>::max();
        return true;
    }
};

Extended Sum_of_logs(const ScoreTable<std::int64_t>& observed,
                     const ScoreTable<Extended>& parameters) {
    Extended sum = 0;
    for (std::size_t cell = 0; cell < observed.cells.size(); ++cell)
        if (observed.cells[cell] > 0 && parameters.cells[cell] > 0)
            sum += static_cast<Extended>(observed.cells[cell]) * std::log(parameters.cells[cell]);
    return sum;
}

/// The messages of what cannot be estimated; none when it can.
std::vector<std::string> Reasons_against(const GLLRM& model, const ModelStructure& structure,
                                         const ResponseTable& table) {
    if (const auto oversized = Find_oversized_component(model, structure))
        return {Oversized_component_message(model, *oversized)};
    if (structure.by_score_groups && model.groups.ScoreDim > MostGroupsOfAnInteraction)
        return {fmt::format("Too many score groups for item-score interactions: {} > {}",
                            model.groups.ScoreDim, MostGroupsOfAnInteraction)};
    const std::int64_t cells = BiasDim(model);
    const std::int64_t scores = std::max(Highest_complete_score(table), 0) + 1;
    if (cells > MaxGammaEntries / scores)
        return {fmt::format("Too many Gamma parameters. {} > {}",
                            cells > (std::int64_t{1} << 54) ? cells : cells * scores,
                            MaxGammaEntries)};
    return {};
}

/// Why nobody takes part: what is missing in every record.
Failed No_valid_cases(const GLLRM& model, const ModelStructure& structure,
                      const ResponseTable& table, bool incomplete_responses) {
    const auto nobody_has = [&](auto is_there) {
        for (std::size_t p = 0; p < table.size(); ++p)
            if (is_there(p)) return false;
        return table.size() > 0;
    };
    std::string missing;
    for (int i = 1; i <= model.NITEMS; ++i)
        if (nobody_has([&](std::size_t p) { return table.Scores(p)[i - 1] != NoResponse; }))
            missing += model.ItemNo(i).label;
    for (const DifSource& source : structure.sources)
        if (source.variable <= model.NEXOGENE &&
            nobody_has([&](std::size_t p) { return table.Exo(p)[source.variable - 1] != 0; }))
            missing += model.ExoNo(source.variable).label;
    Failed failed{{"No valid cases"}};
    if (!missing.empty()) failed.messages.push_back("Missing in every record: " + missing);
    if (incomplete_responses)
        failed.messages.emplace_back("Incomplete responses join complete ones, and there are none");
    return failed;
}

bool All_degenerate(const ModelStructure& structure, const SufficientMargins& margins) {
    for (int i = 1; i <= structure.NITEMS; ++i)
        if (!Has_number(margins.degenerate, i)) return false;
    return true;
}

void Find_score_range(EstimatedGLLRM& estimate) {
    const auto& scores = estimate.margins.scores;
    for (int s = 0; s <= MaxTotalScore; ++s) {
        if (scores[Nr(s)] == 0) continue;
        estimate.observed_high = s;
    }
    for (int s = MaxTotalScore; s >= 0; --s)
        if (scores[Nr(s)] > 0) estimate.observed_low = s;
}

/// Persons whose score is neither 0 nor the highest possible one.
std::int64_t Persons_between(const GLLRM& model, const SufficientMargins& margins) {
    int top = 0;
    for (int i = 1; i <= model.NITEMS; ++i)
        top += std::max(model.ItemNo(i).highest_Item_score, margins.high[Nr(i)]);
    std::int64_t persons = 0;
    for (int s = 1; s <= MaxTotalScore && s < top; ++s) persons += margins.scores[Nr(s)];
    return persons;
}

std::vector<FittedInteraction> Fitted(
    const std::vector<FittedInteraction>& names,
    const std::vector<ScoreTable<std::int64_t>>& observed,
    const std::vector<ScoreTable<Extended>>& expected,
    const std::vector<ScoreTable<Extended>>& parameters,
    const std::vector<std::vector<ScoreTable<std::int64_t>>>& groups) {
    std::vector<FittedInteraction> fitted = names;
    for (std::size_t k = 0; k < fitted.size(); ++k) {
        fitted[k].observed = observed[k];
        for (const std::int64_t n : observed[k].cells) fitted[k].count += n;
        fitted[k].expected = expected[k];
        fitted[k].parameters = parameters[k];
        if (!groups.empty()) fitted[k].observed_by_group = groups[k];
    }
    return fitted;
}

void Store_interactions(const SufficientMargins& used, EstimatedGLLRM& estimate) {
    std::vector<FittedInteraction> pairs, terms;
    for (const ItemPair& pair : estimate.structure.pairs)
        pairs.push_back({.item = pair.item, .other = pair.other});
    for (const DifTerm& term : estimate.structure.terms)
        terms.push_back(
            {.item = term.item, .other = estimate.structure.sources[Nr(term.source)].variable});
    estimate.IJ = Fitted(pairs, used.pairs, estimate.expected.pairs, estimate.parameters.lambda,
                         used.pairs_by_group);
    estimate.IX = Fitted(terms, used.terms, estimate.expected.terms, estimate.parameters.delta,
                         used.terms_by_group);
}

/// What is computed at the final parameters.
void Finish(const SufficientMargins& used, EstimationMemory& memory, const StopCheck& stop,
            EstimatedGLLRM& estimate) {
    if (!estimate.nothing_to_estimate && estimate.settings.ordered_thresholds) {
        int Item_max = 0;
        for (int i = 1; i <= estimate.model.NITEMS; ++i)
            Item_max = std::max(Item_max, estimate.model.ItemNo(i).Item_maxscore());
        estimate.thresholds_raised =
            Order_thresholds(estimate.structure, used, Item_max * 5 + 1, estimate.parameters);
    }
    const std::optional<Extended> neg_loglik = Negative_log_likelihood(
        estimate.structure, used, estimate.parameters, memory.polynomials, estimate.expected, stop);
    estimate.likelihood_ready = neg_loglik.has_value();
    estimate.neg_loglik = neg_loglik.value_or(0);
    Take_observed_of_degenerate(estimate.structure, used, estimate.expected);
    Store_interactions(used, estimate);
    const Extended n = static_cast<Extended>(estimate.persons_between);
    estimate.AIC = 2 * (estimate.neg_loglik + estimate.npar);
    estimate.BIC = 2 * estimate.neg_loglik + (n > 0 ? estimate.npar * std::log(n) : 0);
    const Iteration& last = estimate.last_iteration();
    estimate.Delta = last.Delta;
    estimate.converged = estimate.nothing_to_estimate || last.reached_critical ||
                         last.Delta < static_cast<Extended>(DeltaOfConvergence);
    estimate.stopped = last.end.reason == IterationStop::cancelled || !estimate.likelihood_ready;
}

}  // namespace

int Count_parameters(const ModelStructure& structure, const SufficientMargins& margins) {
    if (All_degenerate(structure, margins)) return 0;
    int npar = -1;
    for (int i = 1; i <= structure.NITEMS; ++i) {
        int categories = 0;
        for (const std::int64_t n : margins.Catmarg[Nr(i)]) categories += n > 0 ? 1 : 0;
        npar += std::max(categories - 1, 0);
    }
    for (const auto& table : margins.pairs) npar += Free_cells(table);
    for (const auto& table : margins.terms) npar += Free_cells(table);
    return npar;
}

std::optional<Extended> Negative_log_likelihood(const ModelStructure& structure,
                                                const SufficientMargins& margins,
                                                const GLLRMParameters& parameters,
                                                PolynomialMemory& memory, ExpectedMargins& expected,
                                                const StopCheck& stop) {
    Extended log_gamma = 0;
    if (!Expect_margins(structure, parameters, margins.strata, memory, expected, &log_gamma, stop))
        return {};
    Extended logs = 0;
    for (int i = 1; i <= structure.NITEMS; ++i)
        for (int x = 0; x < ItemScores; ++x) {
            const std::int64_t n = margins.Catmarg[Nr(i)][Nr(x)];
            const Extended eps = parameters.eps[Nr(i)][Nr(x)];
            if (n > 0 && eps > 0) logs += static_cast<Extended>(n) * std::log(eps);
        }
    for (std::size_t k = 0; k < margins.pairs.size(); ++k)
        logs += Sum_of_logs(margins.pairs[k], parameters.lambda[k]);
    for (std::size_t k = 0; k < margins.terms.size(); ++k)
        logs += Sum_of_logs(margins.terms[k], parameters.delta[k]);
    return log_gamma - logs;
}

Result<EstimatedGLLRM> Estimate_GLLRM(const GLLRM& model, const ResponseTable& table,
                                      const EstimationSettings& settings, EstimationMemory& memory,
                                      const StopCheck& stop, const ContinueQuestion& ask,
                                      const GLLRMParameters* start, const StepNotice& tell) {
    EstimatedGLLRM estimate;
    estimate.model = model;
    estimate.settings = settings;
    estimate.structure = Structure_of(model);
    const ModelStructure& structure = estimate.structure;
    if (auto reasons = Reasons_against(model, structure, table); !reasons.empty())
        return Failed{std::move(reasons)};
    estimate.margins =
        Complete_margins(model, structure, table, settings.filter, settings.with_score_groups);
    if (estimate.margins.persons == 0)
        return No_valid_cases(model, structure, table, settings.incomplete_responses);
    Find_score_range(estimate);
    estimate.persons_between = Persons_between(model, estimate.margins);
    estimate.npar = Count_parameters(structure, estimate.margins);
    estimate.parameters = start ? Start_from(structure, estimate.margins, *start)
                                : Start_parameters(structure, estimate.margins);
    estimate.nothing_to_estimate = All_degenerate(structure, estimate.margins);
    if (!estimate.nothing_to_estimate) {
        estimate.iteration = Iterator({structure, estimate.margins, settings, memory.polynomials,
                                       estimate.expected, stop, ask, tell},
                                      estimate.parameters)
                                 .Run();
    }
    if (!settings.incomplete_responses ||
        estimate.iteration.end.reason == IterationStop::cancelled) {
        Finish(estimate.margins, memory, stop, estimate);
        return estimate;
    }
    if (!estimate.nothing_to_estimate) {
        estimate.iteration.neg_loglik =
            Negative_log_likelihood(structure, estimate.margins, estimate.parameters,
                                    memory.polynomials, estimate.expected, stop);
        if (!estimate.iteration.neg_loglik) {
            estimate.iteration.end.reason = IterationStop::cancelled;
            Finish(estimate.margins, memory, stop, estimate);
            return estimate;
        }
    }

    One_based<int, MaxItems> highest;
    for (int i = 1; i <= model.NITEMS; ++i)
        highest[Nr(i)] = std::max(model.ItemNo(i).highest_Item_score, estimate.margins.high[Nr(i)]);
    const SufficientMargins incomplete =
        Incomplete_margins(model, structure, table, settings.filter, highest);
    estimate.joined_margins = Joined_margins(estimate.margins, incomplete);
    estimate.margins.counts = estimate.joined_margins->counts;
    const SufficientMargins& used = *estimate.joined_margins;
    if (incomplete.persons > 0) {
        estimate.initial_parameters = estimate.parameters;
        estimate.npar = Count_parameters(structure, used);
        estimate.persons_between += incomplete.persons;
        estimate.nothing_to_estimate = All_degenerate(structure, used);
        estimate.parameters = Start_from(structure, used, estimate.parameters);
        if (!estimate.nothing_to_estimate)
            estimate.with_incomplete = Iterator({structure, used, settings, memory.polynomials,
                                                 estimate.expected, stop, ask, tell},
                                                estimate.parameters)
                                           .Run();
    }
    Finish(used, memory, stop, estimate);
    return estimate;
}

std::vector<CellPolynomial> Gamma_of_cells(const EstimatedGLLRM& estimate) {
    std::vector<CellPolynomial> list;
    for (const CellScores& cell : estimate.margins.strata.front().cells)
        list.push_back({cell.categories,
                        Score_polynomial(estimate.structure, estimate.parameters, cell.categories,
                                         All_items(estimate.structure.NITEMS))});
    return list;
}

}  // namespace tarven
