#include "rasch/items/scored_model.h"

#include "rasch/items/model_text.h"
#include "rasch/items/read_responses.h"
#include "shell/fields.h"

namespace tarven {

namespace {

/// The groups of the request, else those of the median.
void Make_groups_of(ScoredModel& scored, const CutRequest& request) {
    const int highest = highest_possible_score(scored.model);
    Result<CutGroups> made = Make_groups(request, scored.scores, highest);
    scored.request = request;
    if (!made) {
        Append_lines(scored.messages, made.failure().messages);
        scored.request = {};
        made = Make_groups({}, scored.scores, highest);
    }
    scored.made = *made;
    if (scored.made.groups.ScoreDim < 2)
        scored.messages.push_back("Only one score group was defined");
    else
        scored.model.groups = scored.made.groups;
    scored.score_groups = Score_group_distribution(scored.model.groups, scored.scores);
}

void Drop_terms_without_groups(ScoredModel& scored) {
    for (const ModelTerm& term : Terms_of(scored.model)) {
        if (!term.with_score || Reason_against(scored.model, term).empty()) continue;
        Set_term(scored.model, term, false);
        scored.messages.push_back(Term_text(scored.model, term) + " removed");
    }
}

}  // namespace

ScoredModel Scored(const CasesAtHand& cases, GLLRM model, const CutRequest& request,
                   const StopCheck& stop) {
    ScoredModel scored;
    scored.model = std::move(model);
    scored.model.groups = {};
    const Result<ResponseTable> responses = Read_responses(cases, scored.model, stop);
    scored.responses_read = static_cast<bool>(responses);
    if (responses) {
        scored.counts = Item_counts(*responses);
        scored.scores = Score_distribution(*responses);
        Set_highest_item_scores(scored.model, scored.scores);
        scored.scores.ready = scored.scores.complete > 0;
        if (scored.scores.ready)
            Make_groups_of(scored, request);
        else
            scored.messages.push_back("No person has responded to all items");
    } else {
        scored.messages = responses.failure().messages;
        scored.messages.push_back("Scores are not ready");
    }
    Drop_terms_without_groups(scored);
    return scored;
}

}  // namespace tarven
