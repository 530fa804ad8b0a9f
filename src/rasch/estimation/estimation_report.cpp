#include "rasch/estimation/estimation_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "rasch/items/model_text.h"
#include "rasch/items/score_groups.h"
#include "shell/fields.h"
#include "tables/numbers/distributions.h"

namespace tarven {

namespace {

using Lines = std::vector<std::string>;

constexpr int LabelWidth = 16;
constexpr std::size_t DeltasShown = 20;

std::size_t Entry(int i) {
    return static_cast<std::size_t>(i);
}

std::string Label(char label) {
    return std::string(1, label);
}

/// The label of a variable of a term: an exogenous one, or "#" behind the last of them.
std::string Source_label(const GLLRM& model, int variable) {
    return variable <= model.NEXOGENE ? Label(model.ExoNo(variable).label) : "#";
}

std::string Item_title(const GLLRM& model, int i) {
    return fmt::format("{}: {}", model.ItemNo(i).label, model.ItemNo(i).name);
}

bool Is_dichotomous(const GLLRM& model) {
    for (int i = 1; i <= model.NITEMS; ++i)
        if (model.ItemNo(i).item_dim != 2) return false;
    return true;
}

// ---- Assumptions

std::string Category_list(NumberSet categories) {
    std::string list;
    for (int c = 1; c <= MaxCategories; ++c)
        if (Has_number(categories, c)) list += (list.empty() ? "" : ",") + fmt::format("{}", c);
    return list;
}

Lines Filter_lines(const EstimatedGLLRM& e) {
    const PersonFilter& filter = e.settings.filter;
    int lowest = std::max(filter.lowest_score, 0);
    int highest = std::min(filter.highest_score, Largest_possible_score(e.model));
    if (e.structure.by_score_groups) {
        const ScoreGrouping& groups = e.model.groups;
        lowest = std::max(lowest, groups.MinScore);
        highest = std::min(highest, groups.ScoreCuts[Entry(groups.ScoreDim)]);
    }
    Lines lines = {fmt::format("{} <= raw score <= {}", lowest, highest)};
    std::string used;
    for (const CategoryFilter& one : filter.categories) {
        used += fmt::format(" {} = {}", Source_label(e.model, one.variable), one.low);
        if (one.high > one.low) used += fmt::format(" - {}", one.high);
    }
    if (filter.values)
        used += fmt::format(" {} = {}", Source_label(e.model, filter.values->variable),
                            Category_list(filter.values->admissible));
    if (!used.empty()) lines.push_back("EXO filter used:" + used);
    return lines;
}

Lines DIF_lines(const GLLRM& model) {
    Lines lines;
    NumberSet of_all = ~NumberSet{0};
    for (int i = 1; i <= model.NITEMS; ++i) of_all &= model.ItemBias[Entry(i)];
    std::string labels_of_all;
    for (int x = 1; x <= model.NEXOGENE; ++x)
        if (Has_number(of_all, x)) labels_of_all += " " + Source_label(model, x);
    if (!labels_of_all.empty()) lines.push_back("All items are biased relative to" + labels_of_all);
    bool headed = false;
    for (int i = 1; i <= model.NITEMS; ++i) {
        std::string sources;
        for (int x = 1; x <= model.NEXOGENE; ++x)
            if (model.Biased(i, x) && !Has_number(of_all, x))
                sources += " " + Source_label(model, x);
        if (sources.empty()) continue;
        if (!headed) lines.push_back("The following items are assumed to have DIF:");
        headed = true;
        lines.push_back(fmt::format("  {} - DIF relative to{}", Item_title(model, i), sources));
    }
    if (lines.empty()) lines.push_back("No DIF");
    return lines;
}

Lines Assumption_lines(const EstimatedGLLRM& e) {
    Lines lines = {"Analysis by graphical loglinear Rasch models", "",
                   "The model is estimated under the following assumptions:", ""};
    Append_lines(lines, Filter_lines(e));
    lines.push_back("");
    Append_lines(lines, Assumed_model_lines(e.model));
    return lines;
}

// ---- Counts

Lines Useless_lines(const PersonCounts& counts) {
    Lines lines = {"Summary of useless cases:"};
    const auto add = [&](std::int64_t cases, const char* why) {
        if (cases > 0) lines.push_back(fmt::format("{}  {}", Field(cases, 8), why));
    };
    add(counts.no_item_left, "no responses left");
    add(counts.one_item_left, "a response to one item only");
    add(counts.score_zero, "score 0 on the items left");
    add(counts.score_highest, "the highest score on the items left");
    return lines;
}

Lines Count_lines(const EstimatedGLLRM& e) {
    const PersonCounts& counts = e.margins.counts;
    Lines lines = {fmt::format("{} valid cases included", counts.Nvalid),
                   fmt::format("Nvalid      = {}", Field(counts.Nvalid, 8)),
                   fmt::format("Nincomplete = {}", Field(counts.Nincomplete, 8))};
    if (e.settings.incomplete_responses) {
        lines.push_back(fmt::format("Nresponses  = {}", Field(counts.Nresponses, 8)));
        lines.push_back(fmt::format("Nuseful     = {}", Field(counts.Nuseful, 8)));
        lines.push_back(fmt::format("Nuseless    = {}", Field(counts.Nuseless, 8)));
        if (counts.Nuseless > 0) Append_lines(lines, Useless_lines(counts));
    }
    if (e.margins.degenerate != 0) {
        lines.push_back("Warning: Some items are degenerate");
        for (int i = 1; i <= e.model.NITEMS; ++i)
            if (Has_number(e.margins.degenerate, i))
                lines.push_back(fmt::format("  {} - all scores are {}", Item_title(e.model, i),
                                            e.margins.low[Entry(i)]));
    }
    lines.push_back(fmt::format("Observed score range: {} - {}", e.observed_low, e.observed_high));
    return lines;
}

// ---- The course of an iteration

Lines Stop_criteria_lines(const EstimatedGLLRM& e) {
    return {"Stop criteria:",
            fmt::format("MaxDelta = {}",
                        Delta_text(static_cast<Extended>(e.settings.stops.critical_Delta))),
            fmt::format("Nstep    = {}", e.settings.stops.Nstep)};
}

std::string Reason_text(IterationStop reason) {
    switch (reason) {
        case IterationStop::converged:
            return "converged";
        case IterationStop::cycling:
            return "cycling";
        case IterationStop::maximum_steps:
            return "maximum number of steps";
        case IterationStop::thousand_steps:
            return "1000 steps";
        case IterationStop::same_delta:
            return "Delta is that of the step before";
        case IterationStop::delta_two_back:
            return "Delta is that of two steps before";
        case IterationStop::large_delta:
            return "Delta is large";
        case IterationStop::cancelled:
            return "cancelled by the user";
        case IterationStop::worsening:
            return "Delta grows";
        case IterationStop::none:
            break;
    }
    return "";
}

Lines Recurrence_lines(const Iteration& course) {
    Lines lines = {"Recurring deltavalues: "};
    const std::size_t first =
        course.recurrences.size() > DeltasShown ? course.recurrences.size() - DeltasShown : 0;
    for (std::size_t k = first; k < course.recurrences.size(); ++k) {
        const Recurrence& r = course.recurrences[k];
        lines.push_back(fmt::format("step {}  current = {}  prev = {} and {}", Field(r.step, 4),
                                    Delta_text(r.current), Delta_text(r.two_back),
                                    Delta_text(r.four_back)));
    }
    return lines;
}

Lines Stop_lines(const Iteration& course) {
    Lines lines;
    if (!course.passed.empty()) {
        lines.push_back("Stops that were passed:");
        for (const StopEvent& stop : course.passed)
            lines.push_back(fmt::format("  step {}  Delta = {}  {}", Field(stop.step, 5),
                                        Delta_text(stop.Delta), Reason_text(stop.reason)));
    }
    if (course.sweeps > 0)
        lines.push_back(fmt::format(
            "The steps did not converge. {} sweeps of one table at a time, from {}, "
            "followed {} steps",
            course.sweeps, course.sweeps_go_on ? "what they had reached" : "the start values",
            course.steps - course.sweeps));
    if (course.end.reason == IterationStop::cycling) {
        lines.push_back(
            fmt::format("Iteration was cancelled at step {} due to cycling", course.end.step));
        Append_lines(lines, Recurrence_lines(course));
    }
    if (course.end.reason == IterationStop::worsening) {
        const std::size_t n = course.history.size();
        lines.push_back(fmt::format(" local maximum at step {}", course.end.step));
        lines.push_back(fmt::format(
            " Initial, previous and current Delta = {} {} {}", Delta_text(course.history.front()),
            Delta_text(n > 1 ? course.history[n - 2] : 9999), Delta_text(course.Delta)));
    }
    return lines;
}

Lines Unconverged_lines(const Iteration& course) {
    Lines lines = {
        fmt::format("Estimation did not converge. ({})", Reason_text(course.end.reason))};
    if (course.history.empty()) return lines;
    lines.push_back("Last 20 delta values:");
    const std::size_t n = course.history.size();
    for (std::size_t k = n > DeltasShown ? n - DeltasShown : 0; k < n; ++k)
        lines.push_back(
            fmt::format("{}  {}", Field(k + 1, 6), Right(Delta_text(course.history[k]), 14)));
    lines.push_back(fmt::format("Smallest Delta = {} at step no. {}",
                                Delta_text(course.smallest_Delta), course.smallest_step));
    return lines;
}

// ---- Margins

/// A line of eight columns at most, those that some item of the model has.
std::string Column_heading(int columns) {
    std::string line = Blanks(LabelWidth);
    for (int x = 0; x < columns; ++x) line += Field(x, 10);
    return line;
}

void Append_item_margins(const GLLRM& model, const ItemTable<std::int64_t>& observed,
                         const ItemTable<Extended>* expected, Lines& lines) {
    const int columns = Highest_item_maxscore(model) + 1;
    lines.push_back(Column_heading(columns));
    for (int i = 1; i <= model.NITEMS; ++i) {
        std::string line = Left(Item_title(model, i), LabelWidth);
        std::string below = Right(expected ? "expected" : "", LabelWidth);
        for (int x = 0; x <= model.ItemNo(i).Item_maxscore(); ++x) {
            line = Beside(line, Field(observed[Entry(i)][Entry(x)], 10));
            if (expected)
                below = Beside(below,
                               Field(static_cast<double>((*expected)[Entry(i)][Entry(x)]), 10, 3));
        }
        lines.push_back(line);
        if (expected) lines.push_back(below);
    }
}

std::string Interaction_title(const EstimatedGLLRM& e, const FittedInteraction& table, bool pair) {
    const std::string item = Item_title(e.model, table.item);
    if (pair) return fmt::format("{} & {}", item, Item_title(e.model, table.other));
    if (table.other > e.model.NEXOGENE) return item + " & #: score groups";
    const ExogenousVariable& exo = e.model.ExoNo(table.other);
    return fmt::format("{} & {}: {}", item, exo.label, exo.name);
}

int Columns_of(const EstimatedGLLRM& e, const FittedInteraction& table, bool pair) {
    return pair ? e.model.ItemNo(table.other).item_dim : table.observed.columns;
}

/// What stands above column c, from 0: the score of the other item, the score group, the name of
/// the category where it has one.
std::string Heading_of_column(const EstimatedGLLRM& e, const FittedInteraction& table, bool pair,
                              const NamesOfCategories& names, int c) {
    constexpr std::size_t Longest = 9;
    if (pair) return fmt::format("{} = {}", e.model.ItemNo(table.other).label, c);
    const std::size_t x = Entry(table.other - 1), category = Entry(c);
    if (table.other > e.model.NEXOGENE) return Group_name(e.model.groups, c + 1);
    if (x >= names.size() || category >= names[x].size() || names[x][category].empty())
        return fmt::format("{}", c + 1);
    return names[x][category].substr(0, Longest);
}

/// The rows of a table, a cell by `text`.
template <class CellText>
void Append_table(const EstimatedGLLRM& e, const FittedInteraction& table, bool pair,
                  const NamesOfCategories& names, const CellText& text, Lines& lines) {
    const int columns = Columns_of(e, table, pair);
    std::string heading = Blanks(LabelWidth);
    for (int c = 0; c < columns; ++c)
        heading = Beside(heading, Right(Heading_of_column(e, table, pair, names, c), 10));
    lines.push_back(heading);
    for (int r = 0; r < e.model.ItemNo(table.item).item_dim; ++r) {
        std::string line =
            Left(fmt::format("  {} = {}", e.model.ItemNo(table.item).label, r), LabelWidth);
        for (int c = 0; c < columns; ++c) line = Beside(line, text(r, c));
        lines.push_back(line);
    }
}

void Append_interaction_margins(const EstimatedGLLRM& e, const FittedInteraction& table, bool pair,
                                const NamesOfCategories& names, Lines& lines) {
    lines.push_back("");
    lines.push_back(Interaction_title(e, table, pair));
    Append_table(
        e, table, pair, names, [&](int r, int c) { return Field(table.observed(r, c), 10); },
        lines);
    lines.push_back("  expected");
    Append_table(
        e, table, pair, names,
        [&](int r, int c) { return Field(static_cast<double>(table.expected(r, c)), 10, 3); },
        lines);
}

void Append_fitted_margins(const EstimatedGLLRM& e, const NamesOfCategories& names, Lines& lines) {
    const SufficientMargins& used = e.joined_margins ? *e.joined_margins : e.margins;
    Append_item_margins(e.model, used.Catmarg, &e.expected.items, lines);
    for (const IJinfo& table : e.IJ) Append_interaction_margins(e, table, true, names, lines);
    for (const IXinfo& table : e.IX) Append_interaction_margins(e, table, false, names, lines);
}

Lines Margin_lines(const EstimatedGLLRM& e, const NamesOfCategories& names) {
    Lines lines;
    if (e.joined_margins) {
        lines.push_back("Complete margins");
        Append_item_margins(e.model, e.margins.Catmarg, nullptr, lines);
        lines.push_back("");
        lines.push_back("Complete and incomplete margins");
    } else {
        lines.push_back("Sufficient margins, observed and expected");
    }
    Append_fitted_margins(e, names, lines);
    return lines;
}

// ---- Parameters

std::string Multiplicative(Extended parameter) {
    return Field(static_cast<double>(parameter), 10, 3);
}

std::string Loglinear(Extended parameter) {
    return parameter > 0 ? Field(static_cast<double>(std::log(parameter)), 10, 3)
                         : Right(".   ", 10);
}

template <class CellText>
void Append_item_table(const GLLRM& model, const ItemTable<Extended>& eps, const CellText& text,
                       Lines& lines) {
    lines.push_back(Column_heading(Highest_item_maxscore(model) + 1));
    for (int i = 1; i <= model.NITEMS; ++i) {
        std::string line = Left(Item_title(model, i), LabelWidth);
        for (int x = 0; x <= model.ItemNo(i).Item_maxscore(); ++x)
            line = Beside(line, text(eps[Entry(i)][Entry(x)]));
        lines.push_back(line);
    }
}

Lines Item_parameter_lines(const GLLRM& model, const ItemTable<Extended>& eps) {
    Lines lines;
    if (Is_dichotomous(model)) lines.push_back("OBS: Dichotomous items");
    lines.push_back("Multiplicative item score parameters");
    Append_item_table(model, eps, Multiplicative, lines);
    lines.push_back("");
    lines.push_back("Loglinear main effects");
    Append_item_table(model, eps, Loglinear, lines);
    return lines;
}

void Append_interaction(const EstimatedGLLRM& e, const FittedInteraction& table, bool pair,
                        const NamesOfCategories& names, Lines& lines) {
    lines.push_back("");
    lines.push_back((pair ? "Local dependence: " : "DIF: ") + Interaction_title(e, table, pair));
    Append_table(
        e, table, pair, names, [&](int r, int c) { return Multiplicative(table.parameters(r, c)); },
        lines);
    lines.push_back(pair ? "Loglinear LD-parameters" : "Loglinear DIF-parameters");
    Append_table(
        e, table, pair, names, [&](int r, int c) { return Loglinear(table.parameters(r, c)); },
        lines);
}

Lines Parameter_lines(const EstimatedGLLRM& e, const NamesOfCategories& names) {
    Lines lines = Item_parameter_lines(e.model, e.parameters.eps);
    for (const IJinfo& table : e.IJ) Append_interaction(e, table, true, names, lines);
    for (const IXinfo& table : e.IX) Append_interaction(e, table, false, names, lines);
    return lines;
}

// ---- Result

/// Labels of figures end in "= " at one column, figures have width 10 and 3 decimals.
Lines Likelihood_lines(const EstimatedGLLRM& e) {
    const auto figure = [](Extended value) { return Field(static_cast<double>(value), 10, 3); };
    if (!e.likelihood_ready)
        return {fmt::format("{} estimated parameters", e.npar), "",
                "-ln(likelihood) and expected margins: cancelled by the user"};
    return {fmt::format("{} estimated parameters", e.npar),
            "",
            fmt::format("-ln(likelihood) = {}", figure(e.neg_loglik)),
            fmt::format("            AIC = {}", figure(e.AIC)),
            fmt::format("            BIC = {}", figure(e.BIC)),
            fmt::format("              n = {}", Field(e.persons_between, 10))};
}

std::string Step_line(const Iteration& course) {
    return fmt::format("Nstep = {}   Delta = {}", course.steps, Delta_text(course.Delta));
}

void Append_course(const EstimatedGLLRM& e, const Iteration& course, const NamesOfCategories& names,
                   Lines& lines) {
    Append_lines(lines, Stop_lines(course));
    lines.push_back(Step_line(course));
    if (course.reached_critical) return;
    Append_lines(lines, Unconverged_lines(course));
    if (&course != &e.last_iteration() || !e.likelihood_ready) return;
    lines.push_back("Fitted margins after last step:");
    Append_fitted_margins(e, names, lines);
}

Lines Result_lines(const EstimatedGLLRM& e, const NamesOfCategories& names) {
    Lines lines = {"Estimated item parameters: complete item responses", ""};
    if (e.nothing_to_estimate) {
        lines.push_back("All items are degenerate: nothing is estimated");
        return lines;
    }
    if (e.iteration.end.reason != IterationStop::none)
        Append_course(e, e.iteration, names, lines);
    else
        lines.push_back("All items are degenerate among complete responses");
    if (e.with_incomplete) {
        lines.push_back(
            fmt::format("-ln(likelihood) = {}",
                        Field(static_cast<double>(e.iteration.neg_loglik.value_or(0)), 10, 3)));
        lines.push_back("");
        lines.push_back("Initial parameters based on complete responses");
        Append_lines(lines, Item_parameter_lines(e.model, e.initial_parameters->eps));
        lines.push_back("");
        lines.push_back("Estimation of GLLRM parameters: complete and incomplete item responses");
        lines.push_back("");
        Append_course(e, *e.with_incomplete, names, lines);
    } else if (e.settings.incomplete_responses) {
        lines.push_back("No incomplete responses could be used");
    }
    Append_lines(lines, Likelihood_lines(e));
    lines.push_back("");
    Append_lines(lines, Parameter_lines(e, names));
    if (e.thresholds_raised) lines.push_back("Thresholds have been ordered");
    if (e.with_incomplete)
        lines.push_back("OBS: the sufficient item margins for complete records have been restored");
    return lines;
}

// ---- Nested models

/// Whether the terms of one model are all terms of the other.
bool Holds_terms_of(const GLLRM& larger, const GLLRM& smaller) {
    for (int i = 1; i <= smaller.NITEMS; ++i) {
        const std::size_t k = Entry(i);
        const NumberSet pairs = smaller.LocalDependence[k] & ~Number(i);
        if ((pairs & ~larger.LocalDependence[k]) != 0) return false;
        if ((smaller.ItemBias[k] & ~larger.ItemBias[k]) != 0) return false;
    }
    return (smaller.ItemScoreInteractions & ~larger.ItemScoreInteractions) == 0;
}

bool Same_groups(const ScoreGrouping& one, const ScoreGrouping& other) {
    return one.ScoreDim == other.ScoreDim && one.MinScore == other.MinScore &&
           one.ScoreCuts == other.ScoreCuts;
}

bool Same_variables(const GLLRM& one, const GLLRM& other) {
    if (one.NITEMS != other.NITEMS || one.NEXOGENE != other.NEXOGENE) return false;
    for (int i = 1; i <= one.NITEMS; ++i)
        if (one.ItemNo(i).variable != other.ItemNo(i).variable ||
            one.ItemNo(i).FlippedItem != other.ItemNo(i).FlippedItem)
            return false;
    for (int x = 1; x <= one.NEXOGENE; ++x)
        if (one.ExoNo(x).variable != other.ExoNo(x).variable) return false;
    const bool by_groups = one.ItemScoreInteractions != 0 || other.ItemScoreInteractions != 0;
    return !by_groups || Same_groups(one.groups, other.groups);
}

}  // namespace

std::string Delta_text(Extended Delta) {
    const double value = static_cast<double>(Delta);
    return value == 0 || value >= 0.00001 ? fmt::format("{:.6f}", value)
                                          : fmt::format("{:.2e}", value);
}

std::vector<std::string> Assumed_model_lines(const GLLRM& model) {
    Lines lines = {"The assumed model: " + Text_or_Rasch_model(model), ""};
    const ModelStructure structure = Structure_of(model);
    if (structure.pairs.empty()) {
        lines.push_back("All items are assumed to be locally independent");
    } else {
        lines.push_back("The following items are assumed to be locally dependent:");
        for (const ItemPair& pair : structure.pairs)
            lines.push_back(fmt::format("  {} & {}", Item_title(model, pair.item),
                                        Item_title(model, pair.other)));
        std::string components;
        for (const ItemComponent& component : structure.components) {
            if (component.items.size() < 2) continue;
            components += components.empty() ? "" : " ";
            for (const int i : component.items) components += model.ItemNo(i).label;
        }
        lines.push_back("Connected item components: " + components);
    }
    Append_lines(lines, DIF_lines(model));
    if (structure.by_score_groups)
        lines.push_back("OBS: item-score interactions for the following items: " +
                        Labels_of_set(model, model.ItemScoreInteractions));
    return lines;
}

std::vector<std::string> Estimation_lines(EstimationBlock block, const EstimatedGLLRM& estimate,
                                          const NamesOfCategories& names) {
    switch (block) {
        case EstimationBlock::assumptions:
            return Assumption_lines(estimate);
        case EstimationBlock::counts:
            return Count_lines(estimate);
        case EstimationBlock::stop_criteria:
            return Stop_criteria_lines(estimate);
        case EstimationBlock::result:
            return Result_lines(estimate, names);
        case EstimationBlock::margins:
            return Margin_lines(estimate, names);
    }
    return {};
}

std::vector<std::string> Estimation_lines_of_code(int code, const EstimatedGLLRM& estimate) {
    if (code < static_cast<int>(EstimationBlock::assumptions) ||
        code > static_cast<int>(EstimationBlock::margins))
        return {fmt::format("Improper output code in Estimate_GLLRM: {}", code)};
    return Estimation_lines(static_cast<EstimationBlock>(code), estimate);
}

std::vector<std::string> Step_lines(const EstimatedGLLRM& estimate) {
    Lines lines;
    const auto tell = [&](const Iteration& course, const char* whose) {
        lines.push_back(fmt::format("Delta of each step: {} item responses", whose));
        const std::size_t n = course.history.size();
        for (std::size_t k = 0; k < n; ++k) {
            if (n > 2 * DeltasShown && k == DeltasShown) {
                lines.push_back("   ...");
                k = n - DeltasShown;
            }
            lines.push_back(
                fmt::format("{}  {}", Field(k + 1, 6), Right(Delta_text(course.history[k]), 14)));
        }
    };
    tell(estimate.iteration, "complete");
    if (estimate.with_incomplete) tell(*estimate.with_incomplete, "complete and incomplete");
    return lines;
}

std::vector<std::string> Unfinished_lines(const UnfinishedIteration& unfinished) {
    Lines lines = {"Estimation did not converge", fmt::format("Step no. {}", unfinished.stop.step),
                   fmt::format("Initial delta  = {}", Delta_text(unfinished.initial_Delta)),
                   fmt::format("Smallest delta = {} at step no. {}",
                               Delta_text(unfinished.smallest_Delta), unfinished.smallest_step),
                   fmt::format("Current delta  = {}", Delta_text(unfinished.stop.Delta))};
    if (unfinished.as_the_one_before)
        lines.push_back("current delta is equal to the previous delta");
    return lines;
}

std::optional<NestedModels> Compare_nested(const EstimatedGLLRM& current,
                                           const EstimatedGLLRM& previous) {
    if (!Same_variables(current.model, previous.model)) return {};
    if (!current.likelihood_ready || !previous.likelihood_ready) return {};
    if (current.settings.incomplete_responses != previous.settings.incomplete_responses ||
        current.settings.ordered_thresholds != previous.settings.ordered_thresholds)
        return {};
    const bool extends = Holds_terms_of(current.model, previous.model);
    const bool reduces = Holds_terms_of(previous.model, current.model);
    if (extends == reduces) return {};
    NestedModels nested;
    nested.same_persons = current.margins.persons == previous.margins.persons &&
                          current.margins.counts.Nuseful == previous.margins.counts.Nuseful;
    const Extended difference = extends ? previous.neg_loglik - current.neg_loglik
                                        : current.neg_loglik - previous.neg_loglik;
    nested.CLR = static_cast<double>(2 * difference);
    nested.df = extends ? current.npar - previous.npar : previous.npar - current.npar;
    if (nested.df > 0) nested.p = Chi2_tail(nested.df, nested.CLR);
    return nested;
}

std::vector<std::string> Nested_model_lines(const EstimatedGLLRM& current,
                                            const EstimatedGLLRM& previous,
                                            const NestedModels& nested) {
    Lines lines = {"Nested models:", "The current model: " + Text_or_Rasch_model(current.model),
                   "The previous model: " + Text_or_Rasch_model(previous.model)};
    lines.push_back(fmt::format("Number of parameters in the current model:  {}", current.npar));
    lines.push_back(fmt::format("Number of parameters in the previous model: {}", previous.npar));
    if (!nested.same_persons) {
        lines.push_back(
            fmt::format("The models are estimated from {} and {} persons: they cannot be compared",
                        current.margins.persons + current.margins.counts.Nuseful,
                        previous.margins.persons + previous.margins.counts.Nuseful));
        return lines;
    }
    const EstimatedGLLRM& worse = current.converged ? previous : current;
    std::string line = fmt::format("CLR = {}   df = {}", Field(nested.CLR, 8, 2), nested.df);
    if (nested.df > 0) line += fmt::format("   p = {}", Field(nested.p, 5, 3));
    lines.push_back(line + No_convergence_note(worse));
    return lines;
}

std::string No_convergence_note(const EstimatedGLLRM& estimate) {
    return estimate.converged ? "" : " *** No convergence. Delta = " + Delta_text(estimate.Delta);
}

}  // namespace tarven
