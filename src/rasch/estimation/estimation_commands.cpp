#include "rasch/estimation/estimation_commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>
#include <new>

#include "project/data.h"
#include "project/project.h"
#include "rasch/estimation/estimation_report.h"
#include "rasch/estimation/estimation_workspace.h"
#include "rasch/items/item_workspace.h"
#include "rasch/items/model_text.h"
#include "rasch/items/read_responses.h"
#include "shell/commands.h"
#include "shell/lifecycle.h"
#include "shell/mode.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/user.h"
#include "shell/variable_lists.h"
#include "shell/words.h"

namespace tarven {

namespace {

constexpr const char* DialogueName = "GRM";
constexpr int NstepWithoutNumber = 10;

// ---- The analysis menu

/// An entry of the menu: its number in ITA, and whether there is an analysis behind it.
struct MenuEntry {
    int number = 0;
    const char* text = "";
    bool available = false;
};

constexpr std::array<MenuEntry, 22> Menu{{
    {0, "Reduce model"},
    {1, "Check local independence"},
    {2, "Check missing DIF"},
    {3, "Test of Global homogeneity"},
    {4, "Test of Local homogeneity"},
    {5, "Test of Global Invariance"},
    {6, "Test of Local Invariance"},
    {7, "Test Unidimensionality"},
    {8, "Item correlations"},
    {9, "Item fits"},
    {10, "Estimate person parameters"},
    {11, "Show margins of main model", true},
    {12, "Show margins of all models"},
    {13, "Show estimates for all models"},
    {14, "Output for latent regression"},
    {15, "Output for ICC curves"},
    {16, "Include incomplete item responses", true},
    {17, "Analysis of targeting"},
    {100, "Output on files"},
    {101, "Extended output", true},
    {102, "Save person estimates"},
    {999, "Save the output on ItemAnalysis.txt and exit"},
}};

const MenuEntry* Find_entry(int number) {
    for (const MenuEntry& entry : Menu)
        if (entry.number == number) return &entry;
    return nullptr;
}

void Apply_option(int number, EstimationChoices& choices) {
    if (number == 11) choices.show_margins = true;
    if (number == 16) choices.incomplete_responses = true;
    if (number == 101) choices.extended_output = true;
}

void Tell_missing_options(const std::vector<int>& options) {
    for (const int number : options) {
        const MenuEntry* entry = Find_entry(number);
        if (!entry)
            ShowMessage(fmt::format("{} is no option of ITA", number));
        else if (!entry->available)
            ShowMessage(fmt::format("{}: {} is not available yet", number, entry->text));
    }
}

// ---- Defining the model

/// What stands behind the keyword: terms, and for ITA the numbers of the menu.
struct ModelLine {
    std::string terms;
    std::vector<int> options;
};

/// Whether a word is terms of the current items, pair by pair: items may be labelled by digits.
bool Is_made_of_terms(const std::string& word) {
    const std::string labels = Project_labels();
    for (std::size_t k = 0; k + 1 < word.size(); k += 2)
        if (Term_of(The_items.model, word[k], word[k + 1], labels).item == 0) return false;
    return word.size() % 2 == 0;
}

/// The words of a line in one walk: it may be as long as a file.
std::vector<std::string> Words_of(std::string_view text) {
    std::vector<std::string> words;
    for (std::size_t at = text.find_first_not_of(' '); at < text.size();) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        words.emplace_back(text.substr(at, end - at));
        at = std::min(text.find_first_not_of(' ', end), text.size());
    }
    return words;
}

/// A word of digits is a number of the menu; another one may be terms.
ModelLine Read_model_line(bool with_options) {
    ModelLine line;
    const std::string_view text = Behind_keyword(The_line.CommandLine);
    for (const std::string& word : Words_of(text)) {
        std::int32_t number = 0;
        if (with_options && Is_digit(word[0]) && To_integer(word, number) &&
            (Find_entry(number) || !Is_made_of_terms(word)))
            line.options.push_back(number);
        else
            line.terms += (line.terms.empty() ? "" : " ") + word;
    }
    return line;
}

/// The model that the terms ask for: changes of the current one, which the lines tell, or a new
/// one.
Result<AmendedModel> Asked_model(const std::string& terms) {
    if (terms.empty()) return AmendedModel{The_items.model, {}};
    if (Is_amendment(terms)) return Amended(The_items.model, terms, Project_labels());
    const Result<GLLRM> model = With_terms(The_items.model, terms, Project_labels());
    if (!model) return model.failure();
    return AmendedModel{*model, {}};
}

/// The same, the changes told; nothing, with its message, when the model cannot be had.
std::optional<GLLRM> Defined_model(const std::string& terms) {
    const Result<AmendedModel> asked = Asked_model(terms);
    if (!asked) {
        Refuse(asked.failure());
        return {};
    }
    const GLLRM& model = asked->model;
    if (const auto oversized = Find_oversized_component(model, Structure_of(model))) {
        ShowMessage(Oversized_component_message(model, *oversized));
        return {};
    }
    if (!asked->lines.empty()) {
        Write_report("Changes to the current GLLRM:");
        Write_lines(asked->lines);
        Write_report("");
    }
    return model;
}

bool Is_current(const GLLRM& model) {
    return Model_text(model) == The_current_GLLRM();
}

// ---- Estimating

EstimationSettings Settings_of(const EstimationChoices& choices) {
    EstimationSettings settings;
    settings.stops.critical_Delta = choices.critical_Delta;
    settings.stops.Nstep = choices.Nstep;
    settings.ordered_thresholds = choices.ordered_thresholds;
    settings.incomplete_responses = choices.incomplete_responses;
    settings.with_score_groups = true;
    return settings;
}

/// Nincomplete of the report, when there are persons with responses to some of the items, two at
/// least; else 0.
std::int64_t Incomplete_persons(const GLLRM& model, const ResponseTable& table) {
    bool useful = false;
    for (std::size_t p = 0; p < table.size() && !useful; ++p) {
        const std::uint8_t* scores = table.Scores(p);
        const auto missing = std::count(scores, scores + table.NITEMS, NoResponse);
        useful = missing > 0 && table.NITEMS - missing >= 2;
    }
    return useful ? Complete_margins(model, Structure_of(model), table, {}).counts.Nincomplete : 0;
}

/// The one reason for which a model is estimated; empty when it stands as it is.
std::string Reason_to_estimate(const GLLRM& model, const EstimationChoices& wanted) {
    const EstimationChoices& made = The_estimates.current_choices;
    if (!Is_current(model)) return "It is a new model";
    if (!The_items.CurrentIRTparameters_ready || !The_estimates.current) return "It is a new model";
    if (wanted.incomplete_responses && !made.incomplete_responses)
        return "To include missing responses";
    if (!wanted.incomplete_responses && made.incomplete_responses)
        return "For estimates without incomplete responses";
    if (!wanted.ordered_thresholds && made.ordered_thresholds)
        return "Estimates without ordered thresholds";
    if (wanted.ordered_thresholds && !made.ordered_thresholds)
        return "Estimates with ordered thresholds";
    if (wanted.critical_Delta != made.critical_Delta || wanted.Nstep != made.Nstep)
        return "Estimates with other stop criteria";
    if ((wanted.extended_output && !made.extended_output) ||
        (wanted.show_margins && !made.show_margins))
        return "Estimates with extended output";
    return "";
}

/// A person who leaves the question wants no more steps.
ContinueAnswer Ask_to_continue(const UnfinishedIteration& unfinished) {
    if (The_session.AUTOMATIC) return ContinueAnswer::nobody;
    const std::vector<std::string> shown = Unfinished_lines(unfinished);
    if (The_user.user.ask_yes_no) {
        Write_lines(shown);
        Flush_report();
    }
    const std::optional<bool> answer =
        AskYesNo_or_nobody("Do you want the estimation procedure to continue?");
    if (!answer)
        return The_user.user.ask_yes_no ? ContinueAnswer::cancelled : ContinueAnswer::nobody;
    if (!The_user.user.ask_yes_no) Write_lines(shown);
    return *answer ? ContinueAnswer::yes : ContinueAnswer::no;
}

/// The category names of the exogenous variables of a model.
NamesOfCategories Names_of_sources(const GLLRM& model) {
    NamesOfCategories names;
    for (int x = 1; x <= model.NEXOGENE; ++x)
        names.push_back(Category_names(model.ExoNo(x).variable));
    return names;
}

void Write_block(EstimationBlock block, const EstimatedGLLRM& estimate) {
    Write_lines(Estimation_lines(block, estimate, Names_of_sources(estimate.model)));
    Write_report("");
}

void Write_estimate(const EstimatedGLLRM& estimate, bool with_margins) {
    Write_block(EstimationBlock::assumptions, estimate);
    Write_block(EstimationBlock::counts, estimate);
    Write_block(EstimationBlock::stop_criteria, estimate);
    Write_block(EstimationBlock::result, estimate);
    if (with_margins && estimate.likelihood_ready) Write_block(EstimationBlock::margins, estimate);
}

void Write_comparison() {
    const EstimationWorkspace& estimates = The_estimates;
    if (!estimates.previous) return;
    if (const auto nested = Compare_nested(*estimates.current, *estimates.previous))
        Write_lines(Nested_model_lines(*estimates.current, *estimates.previous, *nested));
}

/// The estimate of another model becomes the previous one.
void Keep_estimate(EstimatedGLLRM estimate, const EstimationChoices& choices) {
    EstimationWorkspace& estimates = The_estimates;
    const bool other =
        estimates.current && Model_text(estimates.current->model) != Model_text(estimate.model);
    if (other) estimates.previous = std::move(estimates.current);
    estimates.current = std::move(estimate);
    estimates.current_choices = choices;
    The_items.CurrentIRTparameters_ready =
        estimates.current->converged && estimates.current->likelihood_ready;
    The_items.CurrentPersons_ready = false;
}

/// The steps and their Delta for who waits for them.
class StepDisplay {
  public:
    explicit StepDisplay(int most) { ShowProgress(0, most, 1, "Iterating", ""); }
    ~StepDisplay() { HideProgress(); }
    StepDisplay(const StepDisplay&) = delete;
    StepDisplay& operator=(const StepDisplay&) = delete;

    /// Redrawn a few times a second, not for each of thousands of steps.
    void Tell(int step, Extended Delta) {
        using namespace std::chrono;
        const auto now = steady_clock::now();
        if (step > 1 && now - drawn_ < milliseconds(200)) return;
        drawn_ = now;
        RetitleProgress("Iterating, Delta = " + Delta_text(Delta), step);
    }

  private:
    std::chrono::steady_clock::time_point drawn_;
};

/// Lack of memory stops the estimate, not the program.
Result<EstimatedGLLRM> Estimate_model(const GLLRM& model, const ResponseTable& responses,
                                      const EstimationChoices& choices) {
    try {
        EstimationMemory memory;
        const EstimationSettings settings = Settings_of(choices);
        StepDisplay display(settings.stops.maximum_steps);
        return Estimate_GLLRM(
            model, responses, settings, memory, [] { return Stop_asked(); }, Ask_to_continue,
            nullptr, [&](int step, Extended Delta) { display.Tell(step, Delta); });
    } catch (const std::bad_alloc&) {
        return Failed{{"Biasedgammavalues not allocated"}};
    }
}

/// A model that cannot be estimated does not become the current one.
Outcome Refuse_model(const GLLRM& model, const Failed& failed) {
    Refuse(failed);
    if (!Is_current(model))
        ShowMessage("The current GLLRM stays as it was: " + Text_or_Rasch_model(The_items.model));
    return Outcome::refused;
}

Outcome Try_to_estimate(const GLLRM& model, EstimationChoices choices) {
    const Result<ResponseTable> responses =
        Read_responses(Cases_of_project(), model, [] { return Stop_asked(); });
    if (!responses) return Refuse_model(model, responses.failure());
    const std::int64_t incomplete = Incomplete_persons(model, *responses);
    if (!choices.incomplete_responses && incomplete > 0)
        choices.incomplete_responses = AskYesNo(fmt::format(
            "{} persons have incomplete item responses. Include incomplete item responses?",
            incomplete));
    const std::string reason = Reason_to_estimate(model, choices);
    if (reason.empty()) {
        Write_report("The same model as before");
        return Outcome::done;
    }
    Write_report("The model will be estimated for the following reasons");
    Write_report("  " + reason);
    Write_report("");
    SetStatus(4, "Estimating item parameters");
    SetStatus(5, "Iterating");
    Result<EstimatedGLLRM> estimate = Estimate_model(model, *responses, choices);
    if (!estimate) return Refuse_model(model, estimate.failure());
    if (!Is_current(model)) Set_current_model(model);
    Write_estimate(*estimate, choices.extended_output || choices.show_margins);
    if (choices.extended_output && !estimate->nothing_to_estimate) {
        Write_lines(Step_lines(*estimate));
        Write_report("");
    }
    if (estimate->nothing_to_estimate) {
        The_items.CurrentIRTparameters_ready = false;
        return Outcome::done;
    }
    Keep_estimate(std::move(*estimate), choices);
    Write_comparison();
    return Outcome::done;
}

/// Estimates a model of the current items, which becomes the current GLLRM. A report that finds no
/// memory leaves the model defined and not estimated, or estimated and not compared.
Outcome Estimate_with(const GLLRM& model, const EstimationChoices& choices) {
    try {
        return Try_to_estimate(model, choices);
    } catch (const std::bad_alloc&) {
        return Refuse(Failed{.messages = {"There is not enough memory for the estimates"}});
    }
}

// ---- The dialogue

void Enter_dialogue();

Outcome Analyse(const ModelLine& line) {
    const std::optional<GLLRM> model = Defined_model(line.terms);
    if (!model) return Outcome::refused;
    Enter_dialogue();
    EstimationChoices choices = The_estimates.choices;
    for (const int number : line.options) Apply_option(number, choices);
    const Outcome outcome = Estimate_with(*model, choices);
    Tell_missing_options(line.options);
    return outcome;
}

/// GRM and ITA, typed in the main mode or in the dialogue.
Outcome Analyse_items(bool with_options) {
    return Analyse(Read_model_line(with_options));
}

Outcome GRM() {
    return Analyse_items(false);
}

Outcome ITA() {
    return Analyse_items(true);
}

Outcome ESTIMATE() {
    return Estimate_with(The_items.model, The_estimates.choices);
}

const char* On_or_off(bool on) {
    return on ? "on" : "off";
}

Outcome CURRENT() {
    const EstimationChoices& choices = The_estimates.choices;
    Write_lines({
        "The_current_GLLRM      =   " + Text_or_Rasch_model(The_items.model),
        "Convergence:                            " +
            Delta_text(static_cast<Extended>(choices.critical_Delta)),
        fmt::format("Minimum number of iterative  steps:     {}", choices.Nstep),
        fmt::format("Ordering of thresholds:                 {}",
                    On_or_off(choices.ordered_thresholds)),
        fmt::format("Include incomplete item responses:      {}",
                    On_or_off(choices.incomplete_responses)),
        fmt::format("Extended output:                        {}",
                    On_or_off(choices.extended_output)),
        fmt::format("Show margins of main model:             {}", On_or_off(choices.show_margins)),
    });
    if (The_estimates.previous) {
        Write_report("Copy of GLLRM ready:                    " +
                     Text_or_Rasch_model(The_estimates.previous->model));
    }
    return Outcome::done;
}

std::string First_word_behind_keyword() {
    return Get_word(1, Behind_keyword(The_line.CommandLine));
}

/// A positive number as CURRENT writes it, with an exponent or without; nothing for anything else.
std::optional<double> Positive_number(std::string_view word) {
    if (word.starts_with('+')) word.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || end != word.data() + word.size()) return {};
    return std::isfinite(value) && value > 0 ? std::optional(value) : std::nullopt;
}

void Tell_default(const std::string& word, const char* wanted, const std::string& taken) {
    ShowMessage(word.empty() ? fmt::format("Without a number {} is taken", taken)
                             : fmt::format("{} is no {}: {} is taken", word, wanted, taken));
}

Outcome CONVERGENCE() {
    const std::string word = First_word_behind_keyword();
    const std::optional<double> typed = Positive_number(word);
    const double value = typed.value_or(EstimationChoices{}.critical_Delta);
    The_estimates.choices.critical_Delta = value;
    if (!typed) Tell_default(word, "positive number", Delta_text(static_cast<Extended>(value)));
    return CURRENT();
}

Outcome MINIMUM() {
    const std::string word = First_word_behind_keyword();
    const double typed = Positive_number(word).value_or(0);
    const bool is_count =
        typed >= 1 && typed <= std::numeric_limits<int>::max() && typed == std::floor(typed);
    The_estimates.choices.Nstep = is_count ? static_cast<int>(typed) : NstepWithoutNumber;
    if (!is_count) Tell_default(word, "positive whole number", std::to_string(NstepWithoutNumber));
    return CURRENT();
}

/// A choice that is turned on and off, by ON and OFF or by its name alone.
Outcome Turn(const char* spelling, bool EstimationChoices::*choice) {
    bool& value = The_estimates.choices.*choice;
    const std::string word = Upper(First_word_behind_keyword());
    if (!word.empty() && word != "ON" && word != "OFF") {
        ShowMessage(fmt::format("{} takes ON or OFF, or nothing to change it", spelling));
        return Outcome::refused;
    }
    value = word.empty() ? !value : word == "ON";
    return CURRENT();
}

Outcome AGAIN() {
    if (!The_items.CurrentIRTparameters_ready || !The_estimates.current) {
        ShowMessage("The parameters of the current GLLRM are not ready");
        return Outcome::refused;
    }
    Write_estimate(*The_estimates.current, true);
    Write_comparison();
    return Outcome::done;
}

Outcome ANALYSES() {
    const std::string_view text = Behind_keyword(The_line.CommandLine);
    ModelLine line;
    for (const std::string& word : Words_of(text)) {
        std::int32_t number = 0;
        if (!Is_digit(word[0]) || !To_integer(word, number)) {
            ShowMessage(fmt::format("ANALYSES takes the numbers of analyses only: {}", word));
            return Outcome::refused;
        }
        line.options.push_back(number);
    }
    if (!line.options.empty()) return Analyse(line);
    Write_report("The analyses that ITA and ANALYSES take by number:");
    for (const MenuEntry& entry : Menu)
        Write_report(fmt::format("{:>5}  {}{}", entry.number, entry.text,
                                 entry.available ? "" : " (not available yet)"));
    return Outcome::done;
}

Command Later(const char* keyword, const char* spelling, const char* summary) {
    return {.keyword = keyword,
            .run =
                [spelling] {
                    ShowMessage(fmt::format("The operation {} is not available yet", spelling));
                    return Outcome::refused;
                },
            .spelling = spelling,
            .summary = summary,
            .available = false};
}

Command Operation(const char* keyword, const char* spelling, Outcome (*run)(), const char* summary,
                  const char* help) {
    return {.keyword = keyword,
            .run = run,
            .report = Report::opened,
            .spelling = spelling,
            .summary = summary,
            .help = help};
}

constexpr const char* GrmHelp =
    "GRM          estimates the current GLLRM\n"
    "GRM terms    defines it first: GRM AB CD BY (see LLR); GRM +AB -CY changes it\n"
    "\n"
    "Estimates the parameters of the items, of local dependence and of DIF by conditional maximum\n"
    "likelihood given the score, and enters the dialogue of item analysis. The report tells the\n"
    "model, the persons, the steps, -ln(likelihood), AIC and BIC, and the parameters, each as a\n"
    "factor and as its logarithm. A model with the terms of the one before, or less, is compared\n"
    "with it (CLR). A model that has not changed is not estimated again unless something asked "
    "for\n"
    "needs it. With incomplete item responses in the data it asks whether to include them.\n"
    "\n"
    "In the dialogue these operations are known; any other line leaves it and runs as usual, so a\n"
    "command file needs no EXIT:\n"
    "\n"
    "ESTIMATE         estimates the current GLLRM by what was chosen\n"
    "CONVERGENCE x    stops at a largest gap of x persons (0.0001)\n"
    "MINIMUM n        steps before a large gap or cycling stops the iteration (50)\n"
    "ORDERED          ordering of thresholds, on or off\n"
    "INCOMPLETE       incomplete item responses, on or off\n"
    "EXTENDED         extended output, on or off: margins, and the gap at each step\n"
    "SUFFICIENT       observed and expected margins, on or off\n"
    "AGAIN            the report of the current estimates with their margins\n"
    "CURRENT          what is chosen\n"
    "ANALYSES n       what ITA does by number; without a number the list\n"
    "GRM, ITA, HELP, EXIT\n"
    "\n"
    "The steps end at the convergence criterion. Other stops (1000 steps, a gap that does not\n"
    "change, grows, is large or comes back) put the question whether to go on; in automatic mode\n"
    "and without a user the steps go on as long as the smallest gap improves, 5000 at most. When\n"
    "they do not converge, a model with terms is fitted by sweeps of one table at a time. Leaving\n"
    "the question (Ctrl-C, Ctrl-D) ends the iteration with what it has. Other data (MAKE, INPUT D\n"
    "or T) give the estimates up; the model stays.\n"
    "\n"
    "Example: GRM AB CD BY\n"
    "\n"
    "Refused: no items; a component of more than 1048576 response vectors; more than 1962000\n"
    "scores times cells of the sources of DIF; a term with # without score groups or with more\n"
    "than 59; nobody with responses to all items. The model and its estimates stay as they were.";

constexpr const char* ItaHelp =
    "ITA terms numbers\n"
    "\n"
    "GRM, and then the analyses of these numbers. Available: 11 shows the margins of the model, "
    "16\n"
    "includes incomplete item responses, 101 gives extended output. The others answer that they\n"
    "are not available yet; ANALYSES in the dialogue lists them. Where items are labelled by\n"
    "digits a word that is no number of that list is read as terms: ITA 23. Terms that look like\n"
    "such a number are put in with a sign, ITA +12 11, or by GRM.\n"
    "\n"
    "Example: ITA AB BY 11\n"
    "\n"
    "Refused as GRM is.";

Mode Dialogue() {
    return {
        .name = DialogueName,
        .commands =
            {Operation("GRM", "GRM", GRM, "defines and estimates a GLLRM", GrmHelp),
             Operation("ITA", "ITANALYSIS", ITA, "the same with analyses by number", ItaHelp),
             Operation("EST", "ESTIMATE", ESTIMATE, "estimates the current GLLRM",
                       "ESTIMATE\n\nEstimates the current GLLRM, if there is a reason to."),
             Operation("CON", "CONVERGENCE", CONVERGENCE, "the convergence criterion",
                       "CONVERGENCE x\n\nThe steps end when the largest gap between an observed "
                       "and an\nexpected margin is below x persons: CON 0.001, CON 1e-7. For "
                       "anything that\nis no positive number 0.0001 is taken, with a message."),
             Operation(
                 "MIN", "MINIMUM", MINIMUM, "the minimum number of iterative steps",
                 "MINIMUM n\n\nA gap above 10 stops the iteration at every n-th step, "
                 "cycling after n\nsteps. For anything that is no positive whole number 10 is "
                 "taken, with a\nmessage."),
             Operation(
                 "ORD", "ORDERED",
                 [] { return Turn("ORDERED", &EstimationChoices::ordered_thresholds); },
                 "ordering of thresholds on or off",
                 "ORDERED [ON | OFF]\n\nRaises parameters after the estimation until the "
                 "thresholds of each\nitem are ordered."),
             Operation(
                 "INC", "INCOMPLETE",
                 [] { return Turn("INCOMPLETE", &EstimationChoices::incomplete_responses); },
                 "incomplete item responses on or off",
                 "INCOMPLETE [ON | OFF]\n\nIncludes persons with responses to some of the items, "
                 "two at least,\nafter an estimate from the complete ones. A missing source of DIF "
                 "takes its\nitems, a missing item its whole component."),
             Operation(
                 "EXT", "EXTENDED",
                 [] { return Turn("EXTENDED", &EstimationChoices::extended_output); },
                 "extended output on or off",
                 "EXTENDED [ON | OFF]\n\nThe report has the observed and the expected margins, and "
                 "the gap (Delta)\nof each step, of many steps the first and the last 20."),
             Operation(
                 "SUF", "SUFFICIENT",
                 [] { return Turn("SUFFICIENT", &EstimationChoices::show_margins); },
                 "sufficient margins on or off",
                 "SUFFICIENT [ON | OFF]\n\nThe report has the observed and the expected margins."),
             Operation("AGA", "AGAIN", AGAIN, "the report of the current estimates",
                       "AGAIN\n\nThe report of the current estimates with their margins.\n\n"
                       "Refused when the parameters are not ready."),
             Operation("CUR", "CURRENT", CURRENT, "what is chosen",
                       "CURRENT\n\nThe current GLLRM and what is chosen for its estimation."),
             Operation("ANA", "ANALYSES", ANALYSES, "analyses by number, or their list",
                       "ANALYSES\nANALYSES numbers\n\nThe list of the analyses, or ITA with the "
                       "current model.\n\nRefused with anything but numbers."),
             Later("MEA", "MEASUREMENT", "estimates for persons with incomplete responses"),
             Later("FIL", "FILEOUTPUT", "output on text files"),
             Later("KEE", "KEEP", "saves person estimates")},
        .falls_through = true};
}

void Enter_dialogue() {
    const auto& modes = The_modes.modes;
    if (modes.empty() || modes.back().name != DialogueName) Enter_mode(Dialogue());
}

void Forget_estimates() {
    The_estimates.current.reset();
    The_estimates.previous.reset();
}

Need Items_for(const char* message) {
    return {[] { return The_items.model.NITEMS > 0; }, message};
}

}  // namespace

void Register_estimation_commands() {
    At_moment(Moment::workspace_reset, "estimates", [] { The_estimates = EstimationWorkspace{}; });
    At_moment(Moment::project_about_to_close, "estimates",
              [] { The_estimates = EstimationWorkspace{}; });
    At_moment(Moment::variables_changed, "estimates", Forget_estimates);
    At_moment(Moment::data_replaced, "estimates", Forget_estimates);
    Register_command({.keyword = "GRM",
                      .run = GRM,
                      .needs = {Items_for("The GRM command requires items")},
                      .report = Report::opened,
                      .spelling = "GRM",
                      .summary = "analysis of items by graphical Rasch models",
                      .help = GrmHelp});
    Register_command({.keyword = "ITA",
                      .run = ITA,
                      .needs = {Items_for("The ITA command requires items")},
                      .report = Report::opened,
                      .spelling = "ITANALYSIS",
                      .summary = "item analysis",
                      .help = ItaHelp});
}

}  // namespace tarven
