#include "rasch/items/model_text.h"

#include <fmt/format.h>

#include <algorithm>

#include "shell/text.h"
#include "shell/variable_lists.h"

namespace tarven {

namespace {

/// One label as an item, an exogenous variable or the score; all zero for anything else.
struct Labelled {
    int item = 0;
    int exogenous = 0;
    bool score = false;
};

Labelled Meaning_of(const GLLRM& model, char label, std::string_view labels) {
    Labelled meaning;
    if (label == '#') {
        meaning.score = true;
        return meaning;
    }
    const int variable = Find_label(label, labels);
    if (variable == 0) return meaning;
    for (int i = 1; i <= model.NITEMS && meaning.item == 0; ++i)
        if (model.ItemNo(i).variable == variable) meaning.item = i;
    for (int x = 1; x <= model.NEXOGENE && meaning.item == 0 && meaning.exogenous == 0; ++x)
        if (model.ExoNo(x).variable == variable) meaning.exogenous = x;
    return meaning;
}

bool Is_no_term(const ModelTerm& term) {
    return term.item == 0;
}

bool Is_operator(char c) {
    return c == '+' || c == '-';
}

/// The labels of a text, one byte each, blanks left out.
std::string Labels_in(std::string_view text) {
    std::string labels = One_byte_a_letter(text);
    std::erase(labels, ' ');
    return labels;
}

NumberSet Changed(NumberSet set, int k, bool included) {
    return included ? set | Number(k) : set & ~Number(k);
}

}  // namespace

ModelTerm Term_of(const GLLRM& model, char first, char second, std::string_view labels) {
    Labelled a = Meaning_of(model, first, labels), b = Meaning_of(model, second, labels);
    if (a.item == 0 || (b.item != 0 && b.item < a.item)) std::swap(a, b);
    ModelTerm term;
    if (a.item == 0 || a.item == b.item) return term;
    if (b.item == 0 && b.exogenous == 0 && !b.score) return term;
    return {.item = a.item, .other_item = b.item, .exogenous = b.exogenous, .with_score = b.score};
}

std::string Term_text(const GLLRM& model, const ModelTerm& term) {
    const char second = term.other_item != 0  ? model.ItemNo(term.other_item).label
                        : term.exogenous != 0 ? model.ExoNo(term.exogenous).label
                                              : '#';
    return {model.ItemNo(term.item).label, second};
}

bool Set_term(GLLRM& model, const ModelTerm& term, bool included) {
    if (Is_no_term(term)) return false;
    const auto i = static_cast<std::size_t>(term.item);
    const auto j = static_cast<std::size_t>(term.other_item);
    NumberSet& set = term.other_item != 0  ? model.LocalDependence[i]
                     : term.exogenous != 0 ? model.ItemBias[i]
                                           : model.ItemScoreInteractions;
    const int member = std::max({term.other_item, term.exogenous, term.with_score ? term.item : 0});
    if (Has_number(set, member) == included) return false;
    set = Changed(set, member, included);
    if (term.other_item != 0)
        model.LocalDependence[j] = Changed(model.LocalDependence[j], term.item, included);
    return true;
}

void Clear_terms(GLLRM& model) {
    model.LocalDependence = {};
    model.ItemBias = {};
    model.ItemScoreInteractions = 0;
}

std::vector<ModelTerm> Terms_of(const GLLRM& model) {
    std::vector<ModelTerm> terms;
    for (int i = 1; i <= model.NITEMS; ++i)
        for (int j = i + 1; j <= model.NITEMS; ++j)
            if (model.Dependent(i, j)) terms.push_back({.item = i, .other_item = j});
    for (int i = 1; i <= model.NITEMS; ++i) {
        for (int x = 1; x <= model.NEXOGENE; ++x)
            if (model.Biased(i, x)) terms.push_back({.item = i, .exogenous = x});
        if (Has_number(model.ItemScoreInteractions, i))
            terms.push_back({.item = i, .with_score = true});
    }
    return terms;
}

std::string Model_text(const GLLRM& model) {
    std::string text;
    for (const ModelTerm& term : Terms_of(model))
        text += (text.empty() ? "" : " ") + Term_text(model, term);
    return text;
}

std::string Text_or_Rasch_model(const GLLRM& model) {
    const std::string text = Model_text(model);
    return text.empty() ? "Rasch model" : text;
}

std::string Reason_against(const GLLRM& model, const ModelTerm& term) {
    if (!term.with_score) return {};
    if (model.groups.ScoreDim < 2)
        return fmt::format(
            "Scoregroups have not been defined: the term {} needs two (CUT makes them)",
            Term_text(model, term));
    if (model.groups.ScoreDim <= MostGroupsOfAnInteraction) return {};
    return fmt::format("{} score groups are too many for the term {} (at most {})",
                       model.groups.ScoreDim, Term_text(model, term), MostGroupsOfAnInteraction);
}

Result<GLLRM> With_terms(GLLRM model, std::string_view text, std::string_view labels) {
    Clear_terms(model);
    const std::string read = Labels_in(text);
    for (std::size_t k = 0; k + 1 < read.size(); k += 2) {
        const ModelTerm term = Term_of(model, read[k], read[k + 1], labels);
        const std::string reason = Reason_against(model, term);
        if (!reason.empty()) return Failed{.messages = {reason}};
        Set_term(model, term, true);
    }
    return model;
}

bool Is_amendment(std::string_view text) {
    for (std::size_t k = 0; k < text.size(); ++k)
        if (Is_operator(text[k]) && (k == 0 || text[k - 1] == ' ')) return true;
    return false;
}

Result<AmendedModel> Amended(GLLRM model, std::string_view text, std::string_view labels) {
    AmendedModel amended{.model = std::move(model), .lines = {}};
    const std::string read = Labels_in(text);
    for (std::size_t k = 0; k < read.size();) {
        const char sign = read[k];
        const std::size_t next = std::min(read.find_first_of("+-", k + 1), read.size());
        if (!Is_operator(sign)) {
            amended.lines.push_back(fmt::format("Warning: {} should be either + or -", sign));
            k = next;
            continue;
        }
        if (next - k < 3) {  // a label is missing
            k = next;
            continue;
        }
        const ModelTerm term = Term_of(amended.model, read[k + 1], read[k + 2], labels);
        const std::string reason =
            sign == '+' ? Reason_against(amended.model, term) : std::string();
        if (!reason.empty()) return Failed{.messages = {reason}};
        if (Set_term(amended.model, term, sign == '+'))
            amended.lines.push_back(Term_text(amended.model, term) +
                                    (sign == '+' ? " included" : " removed"));
        k += 3;
    }
    return amended;
}

}  // namespace tarven
