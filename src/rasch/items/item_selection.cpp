#include "rasch/items/item_selection.h"

#include <fmt/format.h>

#include <algorithm>

#include "shell/limits_report.h"
#include "shell/text.h"
#include "shell/variable_lists.h"
#include "shell/words.h"

namespace tarven {

namespace {

const Variable& Variable_no(const ProjectDefinition& project, int v) {
    return project.variables[static_cast<std::size_t>(v)];
}

std::string Labels_of_project(const ProjectDefinition& project) {
    std::string labels;
    for (int v = 1; v <= project.N; ++v) labels += Variable_no(project, v).label;
    return labels;
}

bool Contains(const std::vector<int>& list, int v) {
    return std::find(list.begin(), list.end(), v) != list.end();
}

/// The labels of the variables for which `holds`.
template <class Holds>
std::string Labels_where(const std::vector<int>& variables, const ProjectDefinition& project,
                         Holds holds) {
    std::string labels;
    for (const int v : variables)
        if (holds(Variable_no(project, v))) labels += Variable_no(project, v).label;
    return labels;
}

/// Why these variables cannot be items; none when they can.
std::vector<std::string> Reasons_against(const std::vector<int>& variables,
                                         const ProjectDefinition& project) {
    if (variables.empty()) return {"No items"};
    if (variables.size() == 1) return {"Items were not selected"};
    if (variables.size() > MaxItems)
        return {Line_on_items(), fmt::format("{} items: too many items", variables.size())};
    const std::string nominal = Labels_where(
        variables, project, [](const Variable& v) { return v.vtype < Ordinal && v.dim > 2; });
    if (!nominal.empty())
        return {fmt::format("Items have to be ordinal. These variables are nominal: {}", nominal)};
    const std::string high = Labels_where(
        variables, project, [](const Variable& v) { return v.dim > MaxItemScore + 1; });
    if (!high.empty())
        return {fmt::format("Item scores have to be less than or equal to {}", MaxItemScore),
                fmt::format("These variables have more than {} categories: {}", MaxItemScore + 1,
                            high)};
    int largest = 0;
    for (const int v : variables) largest += Variable_no(project, v).dim - 1;
    if (largest > MaxTotalScore)
        return {Line_on_summary_score(),
                fmt::format("A maximum score of {} is too large", largest)};
    return {};
}

}  // namespace

TypedVariables Read_variables_of_line(std::string_view line, const ProjectDefinition& project) {
    TypedVariables typed;
    const std::string labels = Labels_of_project(project);
    const std::string whole = One_byte_a_letter(line);
    std::string letters = whole.substr(0, MaxTextLength);
    typed.cut = whole.find_first_not_of(' ', letters.size()) != std::string::npos;
    if (typed.cut && Is_digit(whole[letters.size()]))
        while (!letters.empty() && Is_digit(letters.back())) letters.pop_back();
    const std::string_view text = Behind_keyword(letters);
    const auto take = [&](int v, bool flipped) {
        const auto there = std::find(typed.variables.begin(), typed.variables.end(), v);
        const auto at = static_cast<std::size_t>(there - typed.variables.begin());
        if (there == typed.variables.end()) {
            typed.variables.push_back(v);
            typed.flipped.push_back(false);
        }
        typed.flipped[at] = flipped;
    };
    bool minus = false;
    for (std::size_t k = 0; k < text.size();) {
        // A run of digits is one number; anything else is one character.
        std::size_t length = 1;
        if (Is_digit(text[k]))
            while (k + length < text.size() && Is_digit(text[k + length])) ++length;
        const std::string word(text.substr(k, length));
        k += length;
        if (word == " ") continue;
        if (word == "-") {
            minus = typed.sets_flips = true;
            continue;
        }
        const VariableList list = Select_list_to_variables(word, labels, false);
        const int v = list.ok && list.list.size() == 1 ? list.list[0] : 0;
        if (word == "*") {
            for (int all = 1; all <= project.N; ++all) take(all, minus);
        } else if (v >= 1 && v <= project.N) {
            take(v, minus);
        } else if (!list.ok && typed.ok) {
            typed.ok = false;
            typed.not_understood = word;
        }
        minus = false;
    }
    return typed;
}

Separated Leave_out(const std::vector<int>& variables, const std::vector<int>& others,
                    const ProjectDefinition& project) {
    Separated separated;
    for (const int v : variables)
        if (Contains(others, v))
            separated.dropped += Variable_no(project, v).label;
        else
            separated.kept.push_back(v);
    return separated;
}

std::vector<int> Variables_of_items(const GLLRM& model) {
    std::vector<int> variables;
    for (int i = 1; i <= model.NITEMS; ++i) variables.push_back(model.ItemNo(i).variable);
    return variables;
}

std::vector<int> Variables_of_exogenous(const GLLRM& model) {
    std::vector<int> variables;
    for (int x = 1; x <= model.NEXOGENE; ++x) variables.push_back(model.ExoNo(x).variable);
    return variables;
}

Result<GLLRM> With_items(const GLLRM& model, const std::vector<int>& variables,
                         const ProjectDefinition& project,
                         const One_based<bool, MaxVariables>& flipped) {
    std::vector<std::string> reasons = Reasons_against(variables, project);
    if (!reasons.empty()) return Failed{.messages = std::move(reasons)};
    GLLRM with;
    with.NEXOGENE = model.NEXOGENE;
    with.Exogene = model.Exogene;
    for (const int v : variables) {
        const Variable& variable = Variable_no(project, v);
        Item& item = with.items[static_cast<std::size_t>(++with.NITEMS)];
        item.variable = v;
        item.label = variable.label;
        item.name = variable.name;
        item.item_dim = variable.dim;
        item.FlippedItem = flipped[static_cast<std::size_t>(v)];
    }
    return with;
}

GLLRM With_exogenous(GLLRM model, const std::vector<int>& variables,
                     const ProjectDefinition& project) {
    model.NEXOGENE = 0;
    model.Exogene = {};
    model.ItemBias = {};
    for (const int v : variables) {
        const Variable& variable = Variable_no(project, v);
        ExogenousVariable& exo = model.Exogene[static_cast<std::size_t>(++model.NEXOGENE)];
        exo.variable = v;
        exo.label = variable.label;
        exo.name = variable.name;
        exo.exo_dim = variable.dim;
        exo.block = variable.Levnr;
    }
    return model;
}

bool Has_unequal_items(const GLLRM& model) {
    for (int i = 2; i <= model.NITEMS; ++i)
        if (model.ItemNo(i).item_dim != model.ItemNo(1).item_dim) return true;
    return false;
}

int Item_block(const GLLRM& model, const ProjectDefinition& project) {
    int block = 0;
    for (const int v : Variables_of_items(model)) {
        const int own = Variable_no(project, v).Levnr;
        block = block == 0 ? own : std::min(block, own);
    }
    return block;
}

}  // namespace tarven
