#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "rasch/estimation/iteration_stops.h"
#include "rasch/estimation/ll_step.h"
#include "rasch/estimation/model_structure.h"
#include "rasch/estimation/score_polynomial.h"
#include "rasch/estimation/sufficient_margins.h"
#include "rasch/items/gllrm.h"
#include "rasch/items/response_table.h"
#include "shell/result.h"
#include "shell/stop_check.h"

namespace tarven {

/// Conditional maximum likelihood estimates of a GLLRM given the scores, by proportional fitting.
/// Andersen (1973), Conditional Inference and Models for Measuring; Kelderman (1984), Psychometrika
/// 49, 223-245.

inline constexpr std::int64_t MaxGammaEntries = 1962000;  ///< scores times cells of the sources
inline constexpr int MostStepsUnasked = 5000;             ///< that fit all tables at once
/// Sweeps of one table at a time may take the steps that are left of these, and as many at least.
inline constexpr int LeastBoundOfSweeps = 1000;
inline constexpr double DeltaOfConvergence = 0.1;  ///< below it callers take a fit as converged

struct EstimationSettings {
    PersonFilter filter;
    StopRules stops;  ///< maximum_steps counts all steps when nobody is asked
    StepOptions step;
    bool ordered_thresholds = false;
    bool incomplete_responses = false;
    bool with_score_groups = false;  ///< the tables of the terms in each score group, too
};

/// A stop that was passed, or the last one.
struct StopEvent {
    IterationStop reason = IterationStop::none;
    int step = 0;  ///< literal steps and sweeps together
    Extended Delta = 0;
};

/// Three Deltas of a recurrence.
struct Recurrence {
    int step = 0;
    Extended current = 0;
    Extended two_back = 0;
    Extended four_back = 0;
};

/// The course of one iteration.
struct Iteration {
    int steps = 0;   ///< in all, sweeps included
    int sweeps = 0;  ///< of one table at a time, behind the literal steps; 0: there were none
    std::vector<Extended> history;  ///< Delta of each step
    Extended Delta = 0;  ///< of the last step, before its update; 9999 when there was none
    Extended smallest_Delta = 0;
    int smallest_step = 0;
    StopEvent end;
    std::vector<StopEvent> passed;  ///< stops after which it went on
    std::vector<Recurrence> recurrences;
    /// -ln(likelihood) of the complete persons at its end, where incomplete ones follow.
    std::optional<Extended> neg_loglik;
    bool reached_critical = false;
    bool sweeps_go_on = false;  ///< from what the steps had reached, not from the start values
};

/// What a user is shown before the question whether to go on.
struct UnfinishedIteration {
    StopEvent stop;
    Extended initial_Delta = 0;
    Extended smallest_Delta = 0;
    int smallest_step = 0;
    bool as_the_one_before = false;  ///< Delta equals that of the step before
};

/// What came of the question whether to go on.
enum class ContinueAnswer : std::uint8_t {
    nobody,  ///< there is nobody to answer: as without a question
    yes,
    no,
    cancelled  ///< the user left the question: the iteration ends as cancelled
};

/// Without an answer, or without a question to put, the iteration goes on at each stop as long as
/// the smallest Delta has improved since the stop before.
using ContinueQuestion = std::function<ContinueAnswer(const UnfinishedIteration&)>;

/// Told of each step: its number and its Delta.
using StepNotice = std::function<void(int step, Extended Delta)>;

/// A pair or a DIF term after the fit. `other` is an item, or the number of an exogenous variable,
/// NEXOGENE + 1 for the score groups.
struct FittedInteraction {
    int item = 0;
    int other = 0;
    std::int64_t count = 0;             ///< persons in the table
    ScoreTable<std::int64_t> observed;  ///< rows: scores of `item`
    ScoreTable<Extended> expected;
    ScoreTable<Extended> parameters;
    std::vector<ScoreTable<std::int64_t>> observed_by_group;  ///< [g-1] when asked for
};
using IJinfo = FittedInteraction;
using IXinfo = FittedInteraction;

/// A fitted model. It keeps what it was fitted to, so that reports and later analyses need no more.
struct EstimatedGLLRM {
    GLLRM model;
    ModelStructure structure;
    EstimationSettings settings;
    /// Of the complete persons, also when incomplete ones took part.
    SufficientMargins margins;
    GLLRMParameters parameters;
    ExpectedMargins expected;  ///< at these parameters; of all persons that took part
    std::vector<IJinfo> IJ;
    std::vector<IXinfo> IX;

    Iteration iteration;  ///< of the complete persons
    std::optional<Iteration> with_incomplete;
    std::optional<SufficientMargins> joined_margins;    ///< of complete and useful persons
    std::optional<GLLRMParameters> initial_parameters;  ///< those of the complete persons alone

    Extended Delta = 0;
    Extended neg_loglik = 0;
    Extended AIC = 0;
    Extended BIC = 0;
    std::int64_t persons_between = 0;  ///< n of BIC: neither score 0 nor the highest possible
    int npar = 0;
    int observed_low = 0;  ///< lowest and highest score of the persons
    int observed_high = 0;
    /// False: the user stopped before the likelihood and the expected margins were computed.
    bool likelihood_ready = false;
    bool nothing_to_estimate = false;  ///< all items are degenerate
    bool thresholds_raised = false;
    bool converged = false;  ///< Delta below DeltaOfConvergence
    bool stopped = false;    ///< by the user

    const Iteration& last_iteration() const {
        return with_incomplete ? *with_incomplete : iteration;
    }
};

/// Working memory of estimations that follow each other: one for each thread.
struct EstimationMemory {
    PolynomialMemory polynomials;
};

/// Fits the model to the persons of the table. Parameters of another estimate of the same items,
/// variables and terms may be given to start from. `stop` is asked between and within steps; what
/// whole steps have reached then is the result, with `stopped`. Fails, before anything large is
/// allocated, when a component or the score polynomials are too large, when an item interacts with
/// more score groups than a table has columns, and when no person passes the filter.
/// Non-convergence is no failure.
///
/// The literal steps fit all tables at once. With several terms they can overshoot and stick; when
/// they stop for good and the model has terms, sweeps of one table at a time begin at the start.
/// When the steps still improve at their largest number, the sweeps go on from there instead,
/// unless Delta is below DeltaOfConvergence: then it falls as 1/steps towards estimates at infinity
/// (empty cells of DIF, say), where sweeps creep as well and the likelihood gains nothing.
///
/// Cost of a step: cells of the sources with persons times (scores times items), response vectors
/// of components with DIF in every such cell, of those without once.
Result<EstimatedGLLRM> Estimate_GLLRM(const GLLRM& model, const ResponseTable& table,
                                      const EstimationSettings& settings, EstimationMemory& memory,
                                      const StopCheck& stop = {}, const ContinueQuestion& ask = {},
                                      const GLLRMParameters* start = nullptr,
                                      const StepNotice& tell = {});

/// npar: one less than the categories of each item, the free cells of each interaction, less one
/// for the origin of theta; 0 when all items are degenerate.
int Count_parameters(const ModelStructure& structure, const SufficientMargins& margins);

/// -ln of the probability of the persons' responses given their scores; nothing when `stop` ended
/// its calculation.
std::optional<Extended> Negative_log_likelihood(const ModelStructure& structure,
                                                const SufficientMargins& margins,
                                                const GLLRMParameters& parameters,
                                                PolynomialMemory& memory, ExpectedMargins& expected,
                                                const StopCheck& stop = {});

/// The score polynomials of all cells of the sources that hold persons, scores from `low` on: the
/// values of gamma(s | y). `categories` as in Stratum.
struct CellPolynomial {
    std::vector<std::uint8_t> categories;
    ScorePolynomial gamma;
};
std::vector<CellPolynomial> Gamma_of_cells(const EstimatedGLLRM& estimate);

}  // namespace tarven
