#include "rasch/items/item_workspace.h"

#include <algorithm>

#include "project/project.h"
#include "project/score_variable.h"
#include "rasch/items/item_selection.h"
#include "rasch/items/model_text.h"
#include "rasch/items/read_responses.h"
#include "shell/lifecycle.h"
#include "shell/user.h"
#include "shell/variable_lists.h"
#include "tables/table/table_workspace.h"

namespace tarven {

namespace {

void Show_items_status() {
    const GLLRM& model = The_items.model;
    SetStatus(2, model.NITEMS == 0 ? "No items" : "Items: " + Item_labels(model));
    SetStatus(3, model.NEXOGENE == 0 ? "No exogenous" : "Exogeneous: " + Exo_labels(model));
}

void Give_up_table_of_score() {
    const std::vector<TableVariable>& variables = The_table.table.variables;
    const bool holds_score =
        std::any_of(variables.begin(), variables.end(),
                    [](const TableVariable& v) { return v.number == ScoreCode; });
    if (!holds_score) return;
    ShowMessage("TABLE HAS BEEN LOST");
    Dispose_current_table();
}

/// The score of the current items and groups, as tables count it.
ScoreVariable Score_of_tables() {
    ScoreVariable score;
    if (!The_items.score_groups.ready) return score;
    const GLLRM& model = The_items.model;
    for (int i = 1; i <= model.NITEMS; ++i) {
        const Item& item = model.ItemNo(i);
        score.items.push_back({item.variable, item.item_dim, item.FlippedItem});
    }
    for (int s = 0; s <= MaxTotalScore; ++s)
        score.group_of.push_back(static_cast<std::uint8_t>(model.groups.ScoreGruppe(s)));
    for (int g = 1; g <= model.groups.ScoreDim; ++g)
        score.group_names.push_back(Group_name(model.groups, g));
    score.block = The_items.item_block;
    return score;
}

void Renew_score_of_tables() {
    Give_up_table_of_score();
    The_score = Score_of_tables();
}

void Start_anew() {
    The_items = {};
    The_score = {};
    Show_items_status();
    Run_moment(Moment::items_changed);
}

}  // namespace

std::string The_current_GLLRM() {
    return Model_text(The_items.model);
}

std::string Project_labels() {
    std::string labels;
    for (int v = 1; v <= The_project.N; ++v)
        labels += The_project.variables[static_cast<std::size_t>(v)].label;
    return labels;
}

std::vector<std::string> Category_names(int variable) {
    const Variable& of = The_project.variables[static_cast<std::size_t>(variable)];
    std::vector<std::string> names;
    for (std::size_t c = 1; c <= of.dim; ++c) names.push_back(of.categoryname[c]);
    return names;
}

Result<ResponseTable> Current_responses() {
    return Read_responses(Cases_of_project(), The_items.model, [] { return Stop_asked(); });
}

void Set_current_model(GLLRM model) {
    The_items.model = std::move(model);
    The_items.CurrentIRTparameters_ready = false;
    The_items.CurrentPersons_ready = false;
    Show_items_status();
    Run_moment(Moment::items_changed);
}

void Set_scored_model(const ScoredModel& scored) {
    The_items.item_block = Item_block(scored.model, The_project);
    The_items.scores = scored.scores;
    The_items.score_groups = scored.score_groups;
    The_items.cut = scored.request;
    Set_current_model(scored.model);
    Renew_score_of_tables();
}

/// The items, their terms and the groups that stand stay; scores that were never counted make the
/// first groups.
void Follow_the_data() {
    if (The_items.model.NITEMS == 0) return;
    if (The_items.model.groups.ScoreDim == 0) {
        Set_scored_model(Scored(Cases_of_project(), The_items.model, The_items.cut));
        return;
    }
    Count_scores_anew();
    Set_current_model(The_items.model);
    if (!The_items.score_groups.ready) Give_up_table_of_score();
    The_score = Score_of_tables();
}

void Count_scores_anew() {
    const Result<ResponseTable> responses = Current_responses();
    The_items.scores = responses ? Score_distribution(*responses) : ScoreDistribution();
    The_items.scores.ready = The_items.scores.complete > 0;
    Set_highest_item_scores(The_items.model, The_items.scores);
    The_items.score_groups = Score_group_distribution(The_items.model.groups, The_items.scores);
}

void Set_score_groups(const CutRequest& request, const CutGroups& made) {
    GLLRM model = The_items.model;
    model.groups = made.groups.ScoreDim < 2 ? ScoreGrouping() : made.groups;
    The_items.cut = request;
    The_items.score_groups = Score_group_distribution(model.groups, The_items.scores);
    if (model.ItemScoreInteractions != 0)
        Set_current_model(std::move(model));
    else
        The_items.model = std::move(model);
    Renew_score_of_tables();
}

void Give_up_items() {
    ScoredModel none;
    none.model.NEXOGENE = The_items.model.NEXOGENE;
    none.model.Exogene = The_items.model.Exogene;
    Set_scored_model(none);
}

void Register_items_lifecycle() {
    At_moment(Moment::workspace_reset, "items", [] {
        The_items = {};
        The_score = {};
    });
    At_moment(Moment::project_read, "items", Show_items_status);
    At_moment(Moment::project_about_to_close, "items", Start_anew);
    At_moment(Moment::variables_changed, "items", Start_anew);
    At_moment(Moment::data_replaced, "items", Follow_the_data);
}

}  // namespace tarven
