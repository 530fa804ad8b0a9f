#include "rasch/items/score_commands.h"

#include <fmt/format.h>

#include "rasch/items/item_workspace.h"
#include "rasch/items/model_text.h"
#include "rasch/items/score_report.h"
#include "shell/commands.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/user.h"
#include "shell/variable_lists.h"

namespace tarven {

namespace {

const Need Items_defined{[] { return The_items.model.NITEMS > 0; }, "Items have not been defined"};

ModelTerm First_term_of_score(const GLLRM& model) {
    int item = 1;
    while (!Has_number(model.ItemScoreInteractions, item)) ++item;
    return {.item = item, .with_score = true};
}

/// Why the terms of the model do not go with these groups; empty when they do.
std::string Reason_of_terms(const ScoreGrouping& groups) {
    GLLRM model = The_items.model;
    if (groups.ScoreDim < 2 && model.ItemScoreInteractions != 0)
        return fmt::format("Only one score group was defined: {} needs two",
                           Term_text(model, First_term_of_score(model)));
    model.groups = groups;
    for (const ModelTerm& term : Terms_of(model)) {
        std::string reason = Reason_against(model, term);
        if (!reason.empty()) return reason;
    }
    return {};
}

Outcome CUT() {
    const Result<CutRequest> request = Read_cut(Behind_keyword(The_line.CommandLine));
    // The data may have been read, or made, since the items were selected.
    Count_scores_anew();
    if (!The_items.scores.ready)
        return Refuse(Failed{.messages = {"Scores are not ready", "SCORES_READY=false"}});
    if (!request) return Refuse(request.failure());
    const int highest = highest_possible_score(The_items.model);
    const Result<CutGroups> made = Make_groups(*request, The_items.scores, highest);
    if (!made) return Refuse(made.failure());
    const std::string reason = Reason_of_terms(made->groups);
    if (!reason.empty()) return Refuse(Failed{.messages = {reason}});
    Write_report(Cut_line(*request, *made));
    if (made->adjusted) Write_report("*** adjusted");
    Set_score_groups(*request, *made);
    if (!The_items.score_groups.ready) {
        ShowMessage("Only one score group was defined");
        return Outcome::done;
    }
    Write_lines(Observed_range_lines(made->groups, highest));
    Write_lines(Group_distribution_lines(made->groups, The_items.score_groups));
    return Outcome::done;
}

void Show_scores() {
    Count_scores_anew();
    const Result<ResponseTable> responses = Current_responses();
    if (!responses || !The_items.scores.ready) {
        Refuse(responses ? Failed{.messages = {"Scores are not ready"}} : responses.failure());
        return;
    }
    const GLLRM& model = The_items.model;
    Write_report(Complete_persons_line(The_items.scores));
    Write_lines(Score_distribution_lines(The_items.scores, Scores_of_all(*responses, model),
                                         The_items.Scorename));
    if (The_items.score_groups.ready) {
        Write_report("");
        Write_lines(Group_distribution_lines(model.groups, The_items.score_groups));
    }
    if (model.NEXOGENE == 0 ||
        !AskYesNo("Do you want information on scores broken down by exogenous variables?"))
        return;
    for (int x = 1; x <= model.NEXOGENE; ++x) {
        Write_report("");
        Write_lines(Scores_by_lines(model, x, Scores_by(*responses, model, x),
                                    Category_names(model.ExoNo(x).variable)));
    }
}

constexpr const char* CutHelp =
    "CUT                  raw scores, 0 to the highest observed\n"
    "CUT c                two groups: 0..c, and what is above\n"
    "CUT a b              one group for each score a..b\n"
    "CUT min cuts max     groups from min on, up to each cut, up to max\n"
    "CUT #n               groups of some n persons\n"
    "CUT /k               k groups of about the same size, 2 to 10\n"
    "\n"
    "Makes the score groups, which tests of fit condition on and which are the variable # of\n"
    "tables: TAB #AY. CUT #n and CUT /k leave out the extreme scores: they walk the scores up\n"
    "and down, close a group when it is full, and take the better of the two partitions (\"***\n"
    "adjusted\": the downward one). /k aims at groups of 1/(k+1) of the persons, at least 10, so\n"
    "fewer than k may come out. A table that holds # is given up.\n"
    "\n"
    "Example: CUT 0 5 10 15 48\n"
    "\n"
    "Refused, the groups staying as they were: no items, nobody with responses to all items,\n"
    "words, limits that are not ascending, a cut at or above the highest possible score, a\n"
    "maximum above it, more than 85 groups (# of more than 57 may condition but not be tested,\n"
    "and of more than 59 is no term of a model), a single group when the model has a term with #.";

}  // namespace

void Register_score_commands() {
    Register_command({.keyword = "CUT",
                      .run = CUT,
                      .needs = {Items_defined},
                      .report = Report::opened,
                      .spelling = "CUT",
                      .summary = "defines score groups",
                      .help = CutHelp});
    Register_letter(LetterCommand::show, {.letter = 'S',
                                          .run = Show_scores,
                                          .needs = {Items_defined},
                                          .summary = "the scores, also by exogenous variables"});
}

}  // namespace tarven
