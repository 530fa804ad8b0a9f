#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "rasch/items/gllrm.h"
#include "shell/result.h"

namespace tarven {

/// The terms of a model as they are typed and reported. Each term is two one-character labels: two
/// items depend on each other, an item and an exogenous variable are DIF, an item and "#" interact
/// (the item with the score groups). Blanks mean nothing: "AB CD AY" and "ABCDAY" are one model.

/// An item has a term with the score groups only when they are no more than a table has categories.
inline constexpr int MostGroupsOfAnInteraction = 59;

/// A pair of labels as the model understands it. All zero: it is no term.
struct ModelTerm {
    int item = 0;
    int other_item = 0;  ///< of a dependence, above `item`
    int exogenous = 0;   ///< of a term of DIF
    bool with_score = false;

    bool operator==(const ModelTerm&) const = default;
};

/// What two labels mean, in either order. `labels` are those of the project's variables, [v-1] of
/// variable v; a label that is not there is looked for in the other case. No term: an unknown
/// label, an item with itself, two exogenous variables, a variable that is neither.
ModelTerm Term_of(const GLLRM& model, char first, char second, std::string_view labels);

/// The two labels of a term.
std::string Term_text(const GLLRM& model, const ModelTerm& term);

/// Puts a term in or takes it out. False when the model had, or had not, the term before.
bool Set_term(GLLRM& model, const ModelTerm& term, bool included);

/// Takes out all terms.
void Clear_terms(GLLRM& model);

/// All terms in their order: pairs of items by the first and the second item; then the items one
/// after the other, each with its exogenous variables and "#".
std::vector<ModelTerm> Terms_of(const GLLRM& model);

/// The terms with a blank between: The_current_GLLRM. Empty for a Rasch model. Read by
/// With_terms it gives the same terms.
std::string Model_text(const GLLRM& model);
/// The same as a reader is told it: "Rasch model" without terms.
std::string Text_or_Rasch_model(const GLLRM& model);

/// The model with the terms of a text instead of its own. Pairs that are no term are passed over, a
/// label left over is dropped. Fails where the model cannot have a term (Reason_against).
Result<GLLRM> With_terms(GLLRM model, std::string_view text, std::string_view labels);

/// Why the model cannot have this term; empty when it can. An interaction with the score needs
/// score groups, at most MostGroupsOfAnInteraction.
std::string Reason_against(const GLLRM& model, const ModelTerm& term);

/// Whether a text changes a model instead of defining one: a word of it begins with "+" or "-".
bool Is_amendment(std::string_view text);

/// A model after changes, and what is reported of them.
struct AmendedModel {
    GLLRM model;
    std::vector<std::string> lines;  ///< "AB included", "AB removed", warnings, in the order read
};

/// The model with the changes of a text, each an operator and two labels: "+AB" puts a term in,
/// "-AB" takes it out. A change that changes nothing, and one of a pair that is no term, is passed
/// over; what stands where an operator should is named in a warning, and reading goes on at the
/// next operator. Fails as With_terms does.
Result<AmendedModel> Amended(GLLRM model, std::string_view text, std::string_view labels);

}  // namespace tarven
