#include "rasch/items/item_commands.h"

#include <fmt/format.h>

#include <algorithm>

#include "project/project.h"
#include "rasch/items/item_report.h"
#include "rasch/items/item_selection.h"
#include "rasch/items/item_workspace.h"
#include "rasch/items/score_report.h"
#include "shell/commands.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/user.h"
#include "shell/variable_lists.h"

namespace tarven {

namespace {

constexpr const char* UnequalItems =
    "All items must have the same number of response categories. Do you want to change the items?";

bool Has_items() {
    return The_items.model.NITEMS > 0;
}

bool Has_project() {
    return The_project.N > 0;
}

/// With fewer parameters than `enough` the variables are chosen from a list, as if typed.
void Choose_variables(int enough, const char* title) {
    if (The_line.ParameterCount >= enough) return;
    std::vector<std::string> labels;
    for (const char label : Project_labels()) labels.emplace_back(1, label);
    const std::string chosen = SelectVariables(title, labels);
    if (!chosen.empty()) Read_command_line(The_line.CommandLine + " " + chosen);
}

/// The variables of the line, with a message when it is too long to be read whole.
TypedVariables Typed_variables() {
    TypedVariables typed = Read_variables_of_line(The_line.CommandLine, The_project);
    if (typed.cut)
        ShowMessage(
            fmt::format("Only the first {} characters of the line were read", MaxTextLength));
    return typed;
}

// ---- ITEMS

Outcome Refuse_items(const std::vector<std::string>& messages) {
    Give_up_items();
    return Refuse(Failed{.messages = messages});
}

/// Whether the user takes items of unequal numbers of categories as they are.
bool Unequal_items_are_accepted() {
    const std::optional<bool> change =
        The_session.AUTOMATIC ? std::nullopt : AskYesNo_or_nobody(UnequalItems);
    if (!change) Write_report("All items must have the same number of response categories.");
    if (change == true) ShowMessage("not ready yet");
    return change != true;
}

void Report_scores(const ScoredModel& scored) {
    if (scored.responses_read) Write_lines(Remarks_on_items(scored.model, scored.counts));
    if (scored.counts.persons > 0) Write_report(Complete_persons_line(scored.scores));
    for (const std::string& message : scored.messages) ShowMessage(message);
    if (!scored.score_groups.ready) return;
    Write_report("");
    Write_report(Cut_line(scored.request, scored.made));
    if (scored.request.form != CutForm::median) {  // as CUT tells them
        if (scored.made.adjusted) Write_report("*** adjusted");
        Write_lines(Observed_range_lines(scored.made.groups, highest_possible_score(scored.model)));
    }
    Write_lines(Group_distribution_lines(scored.model.groups, scored.score_groups));
}

Outcome ITEMS() {
    Choose_variables(2, "Select items");
    const TypedVariables typed = Typed_variables();
    if (!typed.ok)
        return Refuse_items({fmt::format("\"{}\" is no variable", typed.not_understood),
                             "Items were not selected"});
    const Separated separated =
        Leave_out(typed.variables, Variables_of_exogenous(The_items.model), The_project);
    if (!separated.dropped.empty())
        ShowMessage(
            fmt::format("These variables are exogenous: {}. They are not included among items.",
                        separated.dropped));
    One_based<bool, MaxVariables> flipped = The_items.FlippedVariable;
    for (std::size_t k = 0; typed.sets_flips && k < typed.variables.size(); ++k)
        flipped[static_cast<std::size_t>(typed.variables[k])] = typed.flipped[k];
    const Result<GLLRM> model = With_items(The_items.model, separated.kept, The_project, flipped);
    if (!model) return Refuse_items(model.failure().messages);
    if (Has_unequal_items(*model) && !Unequal_items_are_accepted()) {
        Give_up_items();
        return Outcome::refused;
    }
    const ScoredModel scored = Scored(Cases_of_project(), *model, {}, [] { return Stop_asked(); });
    The_items.FlippedVariable = flipped;
    Set_scored_model(scored);
    Write_lines(Selected_items_lines(The_items.model, The_items.item_block, The_project.Nlevels));
    Report_scores(scored);
    return Outcome::done;
}

// ---- EXOGENOUS

void Report_exogenous(const GLLRM& model) {
    Write_report(fmt::format("{} exogenous variable{}: {}", model.NEXOGENE,
                             model.NEXOGENE == 1 ? "" : "s", Exo_labels(model)));
    const Result<ResponseTable> responses = Current_responses();
    if (!responses) {
        for (const std::string& message : responses.failure().messages) ShowMessage(message);
        return;
    }
    for (int x = 1; x <= model.NEXOGENE; ++x)
        Write_lines(Exogenous_lines(model, x, Item_counts_by(*responses, model, x),
                                    Category_names(model.ExoNo(x).variable)));
}

Outcome EXOGENOUS() {
    Choose_variables(1, "Select exogenous variables");
    const TypedVariables typed = Typed_variables();
    const auto refuse = [](const std::string& message) {
        Set_current_model(With_exogenous(The_items.model, {}, The_project));
        ShowMessage(message);
        return Outcome::refused;
    };
    if (!typed.ok)
        return refuse("Error defining exogenous variables: " +
                      std::string(Behind_keyword(The_line.CommandLine)));
    const Separated separated =
        Leave_out(typed.variables, Variables_of_items(The_items.model), The_project);
    if (!separated.dropped.empty())
        ShowMessage(fmt::format(
            "These variables are items: {}. They are therefore not included among items",
            separated.dropped));
    if (separated.kept.empty()) return refuse("Failure defining exogenous variables.");
    Set_current_model(With_exogenous(The_items.model, separated.kept, The_project));
    Report_exogenous(The_items.model);
    return Outcome::done;
}

// ---- FLIP

Outcome FLIP() {
    const TypedVariables typed = Typed_variables();
    const std::vector<int> items = Variables_of_items(The_items.model);
    const bool all = The_line.ParameterCount == 0;
    const bool all_are_items =
        std::all_of(typed.variables.begin(), typed.variables.end(),
                    [&](int v) { return std::find(items.begin(), items.end(), v) != items.end(); });
    if (!all && (!typed.ok || !all_are_items || typed.variables.empty())) {
        ShowMessage("Only items can be flipped: " +
                    std::string(Behind_keyword(The_line.CommandLine)));
        return Outcome::refused;
    }
    for (const int v : all ? items : typed.variables)
        The_items.FlippedVariable[static_cast<std::size_t>(v)] ^= true;
    GLLRM model = The_items.model;
    for (std::size_t i = 1; i <= static_cast<std::size_t>(model.NITEMS); ++i)
        model.items[i].FlippedItem =
            The_items.FlippedVariable[static_cast<std::size_t>(model.items[i].variable)];
    const ScoredModel scored =
        Scored(Cases_of_project(), std::move(model), The_items.cut, [] { return Stop_asked(); });
    Set_scored_model(scored);
    if (scored.responses_read) {
        Write_lines(Item_list_lines(scored.model, scored.counts));
        Write_report("");
    }
    Report_scores(scored);
    return Outcome::done;
}

// ---- names

/// The text behind the keyword without blanks at its ends.
std::string Text_of_line() {
    const std::string_view text = Behind_keyword(The_line.CommandLine);
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

Outcome THETA() {
    const std::string name = Text_of_line();
    if (name.empty()) {
        ShowMessage("THETA needs a name for the latent variable");
        return Outcome::refused;
    }
    The_items.Thetaname = name;
    Write_report("Name of the latent variable: " + name);
    return Outcome::done;
}

/// A label of one character, and a name behind it where one is given.
Outcome Set_label(char& label, std::string& name, const char* what) {
    const std::string text = Text_of_line();
    if (text.empty() || (text.size() > 1 && text[1] != ' ')) {
        ShowMessage(fmt::format("The label of {} is one character", what));
        return Outcome::refused;
    }
    label = text[0];
    if (text.size() > 1) name = text.substr(text.find_first_not_of(' ', 1));
    Write_report(fmt::format("Label and name of {}: {} {}", what, label, name));
    return Outcome::done;
}

Outcome TLABELS() {
    return Set_label(The_items.ThetaLabel, The_items.Thetaname, "the latent variable");
}

Outcome SLABELS() {
    return Set_label(The_items.ScoreLabel, The_items.Scorename, "the score");
}

// ---- SHOW I, DISPOSE

void Show_items() {
    const Result<ResponseTable> responses = Current_responses();
    if (!responses) {
        Refuse(responses.failure());
        return;
    }
    const GLLRM& model = The_items.model;
    Write_lines(Selected_items_lines(model, The_items.item_block, The_project.Nlevels));
    Write_report("");
    const ItemCounts counts = Item_counts(*responses);
    Write_lines(Item_list_lines(model, counts));
    Write_lines(Remarks_on_items(model, counts));
    if (model.NEXOGENE == 0 ||
        !AskYesNo("Do you want information on items broken down by exogenous variables?"))
        return;
    for (int x = 1; x <= model.NEXOGENE; ++x) {
        Write_report("");
        Write_lines(Item_means_lines(model, x, Item_counts_by(*responses, model, x),
                                     Category_names(model.ExoNo(x).variable)));
    }
}

void Dispose_exogenous() {
    Set_current_model(With_exogenous(The_items.model, {}, The_project));
}

constexpr const char* ItemsHelp =
    "ITEMS variables\n"
    "\n"
    "Selects the items: labels or numbers in any order, * for all variables. Without variables\n"
    "they are chosen from a list. An item that counts downwards is flipped: ITEMS AB-C sets the\n"
    "flags of all three, C up and A and B down (a - behind the last item: none is flipped);\n"
    "-* flips all, *-C but C none, since the sign of the last mention counts;\n"
    "without any - flags stay as they were. The items before, their score, the score groups and\n"
    "the terms of the model are given up, and so is a table that holds the score #.\n"
    "\n"
    "The score of a person is the sum of the item scores, each category counting from 0; who\n"
    "has not responded to all items has none. Where the responses cannot be read the items are\n"
    "selected all the same, and their scores are not ready. Two score groups are cut at the\n"
    "median; CUT makes others.\n"
    "\n"
    "Example: ITE ABCDEF\n"
    "\n"
    "Exogenous variables are left out, with a message. Refused, and no items are left: fewer than\n"
    "two items, a label that is no variable, nominal variables of more than two categories, more\n"
    "than 54 items, more than 8 categories, a maximum score above 253. Unequal numbers of\n"
    "categories are asked about; without an answer the selection goes on. Of a line the first 120\n"
    "characters are read; a message tells when there is more.";

constexpr const char* ExogenousHelp =
    "EXOGENOUS variables\n"
    "EXOGENOUS *   all variables of the project but the items\n"
    "\n"
    "Selects the exogenous variables: what the items may be biased by. The terms of DIF of the\n"
    "model are given up. The report tells the persons of each category.\n"
    "\n"
    "Example: EXO ZY\n"
    "\n"
    "Items are left out, with a message. Refused, and no exogenous variables are left: a label\n"
    "that is no variable, an empty list.";

constexpr const char* FlipHelp =
    "FLIP items\n"
    "FLIP   all items\n"
    "\n"
    "Reverses the scores of items that count downwards; a second FLIP takes it back. Scores and\n"
    "score groups are counted anew, by the same form of CUT, and a table that holds the score #\n"
    "is given up. The flags belong to the variables and stay when other items are selected.\n"
    "\n"
    "Example: FLI BD\n"
    "\n"
    "Refused without items (\"Items must be defined before they can be flipped\"), and when one "
    "of\n"
    "the list is no item.";

}  // namespace

void Register_item_commands() {
    Register_items_lifecycle();
    Register_command({.keyword = "ITE",
                      .run = ITEMS,
                      .needs = {{Has_project, "No project"}},
                      .activity = "Selecting items",
                      .report = Report::opened,
                      .spelling = "ITEMS",
                      .summary = "selects items",
                      .help = ItemsHelp});
    Register_command(
        {.keyword = "EXO",
         .run = EXOGENOUS,
         .needs = {{Has_project, "No project"}, {Has_items, "Items have not been selected", true}},
         .report = Report::opened,
         .spelling = "EXOGENOUS",
         .summary = "selects exogenous variables",
         .help = ExogenousHelp});
    Register_command({.keyword = "FLI",
                      .run = FLIP,
                      .needs = {{Has_items, "Items must be defined before they can be flipped"}},
                      .report = Report::opened,
                      .spelling = "FLIP",
                      .summary = "reverses item scores",
                      .help = FlipHelp});
    Register_command({.keyword = "THE",
                      .run = THETA,
                      .report = Report::opened,
                      .spelling = "THETA",
                      .summary = "names the latent variable",
                      .help = "THETA name\n\nNames the latent variable in reports and pictures; "
                              "without it the name is Theta.\n\nExample: THE Verbal aggression\n\n"
                              "Refused without a name."});
    Register_command({.keyword = "TLA",
                      .run = TLABELS,
                      .report = Report::opened,
                      .spelling = "TLABELS",
                      .summary = "label of the latent variable",
                      .help = "TLABELS label\nTLABELS label name\n\nThe one-character label of the "
                              "latent variable, and its name.\n\nExample: TLA T Ability\n\n"
                              "Refused when the label is not one character."});
    Register_command({.keyword = "SLA",
                      .run = SLABELS,
                      .report = Report::opened,
                      .spelling = "SLABELS",
                      .summary = "label of the score",
                      .help =
                          "SLABELS label\nSLABELS label name\n\nThe one-character label of the "
                          "score, and its name. In tables and terms the score groups are always "
                          "#.\n\nExample: SLA S Sum\n\n"
                          "Refused when the label is not one character."});
    Register_letter(LetterCommand::show, {.letter = 'I',
                                          .run = Show_items,
                                          .needs = {{Has_items, "Items have not been defined"}},
                                          .summary = "the items, also by exogenous variables"});
    Register_letter(LetterCommand::dispose, {.letter = 'I',
                                             .run = Give_up_items,
                                             .needs = {},
                                             .summary = "the items, their score and their model"});
    Register_letter(LetterCommand::dispose, {.letter = 'E',
                                             .run = Dispose_exogenous,
                                             .needs = {},
                                             .summary = "the exogenous variables"});
}

}  // namespace tarven
