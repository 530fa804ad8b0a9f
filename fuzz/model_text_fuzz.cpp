// Any bytes as terms of a model, as changes of it, as parameters of CUT and as a list of items. The
// first byte chooses the score groups. What was read must be written and read back as it is.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "rasch/items/item_selection.h"
#include "rasch/items/model_file.h"
#include "rasch/items/model_picture.h"
#include "rasch/items/model_text.h"
#include "rasch/items/score_groups.h"

namespace {

using namespace tarven;

void Require(bool holds) {
    if (!holds) std::abort();
}

ProjectDefinition Project_of_dims(const std::vector<int>& dims) {
    ProjectDefinition project;
    for (const int dim : dims) {
        Variable& variable = project.variables[static_cast<std::size_t>(++project.N)];
        variable.label = static_cast<char>('A' + project.N - 1);
        variable.dim = static_cast<std::uint8_t>(dim);
        variable.vtype = Ordinal;
        variable.Levnr = 1;
    }
    return project;
}

/// The invariants of a model, and that its text is read back.
void Check_model(const GLLRM& model, const GLLRM& empty, const std::string& labels) {
    for (int i = 1; i <= model.NITEMS; ++i) {
        Require(!model.Dependent(i, i));
        for (int j = 1; j <= model.NITEMS; ++j)
            Require(model.Dependent(i, j) == model.Dependent(j, i));
    }
    const Result<GLLRM> again = With_terms(empty, Model_text(model), labels);
    Require(again && Terms_of(*again) == Terms_of(model));
    Require(BiasDim(model) >= 1);
    Require(!Model_picture(model, {}).empty());
    for (const std::string& line : Model_file_lines(model))
        Require(line.size() <= 120 || line.starts_with("CUT"));
}

void Check_cut(std::string_view text, const ScoreDistribution& scores, int highest) {
    const Result<CutRequest> request = Read_cut(text);
    if (!request) return;
    const Result<CutGroups> made = Make_groups(*request, scores, highest);
    if (!made) return;
    const ScoreGrouping& groups = made->groups;
    Require(groups.ScoreDim >= 1 && groups.ScoreDim <= MaxScoreGroups);
    for (std::size_t g = 2; g <= static_cast<std::size_t>(groups.ScoreDim); ++g)
        Require(groups.ScoreCuts[g - 1] < groups.ScoreCuts[g]);
    Require(groups.MinScore >= 0 && groups.MinScore <= groups.MaxScore);
    Require(groups.MaxScore <= highest);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ProjectDefinition project = Project_of_dims({3, 3, 2, 4, 8, 2, 3, 2, 57});
    GLLRM empty =
        With_exogenous(*With_items({}, {1, 2, 3, 4, 5, 6}, project, {}), {7, 8, 9}, project);
    const std::string labels = Item_labels(empty) + Exo_labels(empty);
    const int dims[] = {0, 2, 59, 60};
    empty.groups.ScoreDim = size > 0 ? dims[data[0] % 4] : 2;
    for (std::size_t g = 1; g <= static_cast<std::size_t>(empty.groups.ScoreDim); ++g)
        empty.groups.ScoreCuts[g] = static_cast<int>(g);
    const std::string_view text(
        reinterpret_cast<const char*>(data) + std::min<std::size_t>(size, 1),
        size - std::min<std::size_t>(size, 1));
    if (const Result<GLLRM> model = With_terms(empty, text, labels))
        Check_model(*model, empty, labels);
    if (const Result<AmendedModel> amended = Amended(empty, text, labels))
        Check_model(amended->model, empty, labels);

    ScoreDistribution scores;
    scores.ready = true;
    for (int s = 0; s <= 16; ++s) {
        scores.SCOREDISTRIBUTION[static_cast<std::size_t>(s)] = s * 5 % 13;
        scores.complete += s * 5 % 13;
    }
    scores.highest_score = 16;
    Check_cut(text, scores, Largest_possible_score(empty));

    const TypedVariables typed = Read_variables_of_line(text, project);
    Require(typed.variables.size() == typed.flipped.size());
    for (const int v : typed.variables) Require(v >= 1 && v <= project.N);
    if (const Result<GLLRM> model = With_items({}, typed.variables, project, {}))
        Require(model->NITEMS >= 2 && model->NITEMS <= MaxItems);
    return 0;
}
