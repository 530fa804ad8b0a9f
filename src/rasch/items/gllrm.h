#pragma once

#include <cstdint>
#include <string>

#include "shell/limits.h"
#include "shell/one_based.h"

namespace tarven {

/// The graphical loglinear Rasch model: items, exogenous variables, score groups and terms. Given
/// the score it is the loglinear model of Kelderman (1984), Psychometrika 49, 223-245, with
/// interactions between items and between items and exogenous variables.

inline constexpr int MaxScoreGroups = 85;

/// A set of items or of exogenous variables: number k is a member when bit k-1 is set.
using NumberSet = std::uint64_t;

constexpr bool Has_number(NumberSet set, int k) {
    return (set >> (k - 1) & 1) != 0;
}
constexpr NumberSet Number(int k) {
    return NumberSet{1} << (k - 1);
}

struct Item {
    int variable = 0;  ///< project variable number
    char label = '?';
    std::string name;
    int item_dim = 0;            ///< response categories, at most 8
    bool FlippedItem = false;    ///< scored Item_maxscore() minus the recoded value
    int highest_Item_score = 0;  ///< observed; 0 until the scores are computed
    int Item_maxscore() const { return item_dim - 1; }
};

struct ExogenousVariable {
    int variable = 0;  ///< project variable number
    char label = '?';
    std::string name;
    int exo_dim = 0;
    int block = 0;  ///< recursive block
};

/// Groups of neighbouring scores. ScoreDim 0: none are defined.
struct ScoreGrouping {
    int ScoreDim = 0;
    One_based<int, MaxScoreGroups> ScoreCuts;  ///< [1..ScoreDim] highest score of each, ascending
    int MinScore = 0;
    int MaxScore = 0;

    /// The group of a score, 0 when it is below MinScore or above the last cut.
    int ScoreGruppe(int score) const {
        if (score < MinScore) return 0;
        for (int g = 1; g <= ScoreDim; ++g)
            if (score <= ScoreCuts[static_cast<std::size_t>(g)]) return g;
        return 0;
    }
};

struct GLLRM {
    int NITEMS = 0;                   ///< 0: no items, and all else is void
    One_based<Item, MaxItems> items;  ///< [1..NITEMS]
    int NEXOGENE = 0;
    One_based<ExogenousVariable, MaxVariables> Exogene;  ///< [1..NEXOGENE]
    One_based<NumberSet, MaxItems> LocalDependence;      ///< [i]: items that depend on i; symmetric
    One_based<NumberSet, MaxItems> ItemBias;             ///< [i]: exogenous variables i has DIF by
    NumberSet ItemScoreInteractions = 0;  ///< items with a term with the score groups
    ScoreGrouping groups;

    const Item& ItemNo(int i) const { return items[static_cast<std::size_t>(i)]; }
    const ExogenousVariable& ExoNo(int x) const { return Exogene[static_cast<std::size_t>(x)]; }
    bool Dependent(int i, int j) const {
        return Has_number(LocalDependence[static_cast<std::size_t>(i)], j);
    }
    bool Biased(int i, int x) const { return Has_number(ItemBias[static_cast<std::size_t>(i)], x); }
};

/// Sum of Item_maxscore() over the items.
int Largest_possible_score(const GLLRM& model);
/// Sum of the highest scores seen of each item: 0 until the scores are computed.
int highest_possible_score(const GLLRM& model);

/// The highest Item_maxscore() of all items.
int Highest_item_maxscore(const GLLRM& model);

/// The labels of a set of items, in their order.
std::string Labels_of_set(const GLLRM& model, NumberSet items);
/// The labels of the items, of the exogenous variables, in their order.
std::string Item_labels(const GLLRM& model);
std::string Exo_labels(const GLLRM& model);

/// Exogenous variables in at least one term of DIF.
NumberSet DIFsources(const GLLRM& model);
/// Cells of the cross-classification of the sources of DIF; the score groups are one more source
/// when items interact with the score. 1 without sources; at most 2^62, where it stops growing.
std::int64_t BiasDim(const GLLRM& model);

/// The connected components of the graph of local dependence: of two items at least, in the order
/// of their first items. An item without dependence is in none.
struct ItemComponentList {
    int NitemComponents = 0;
    One_based<NumberSet, MaxItems / 2> ItemComponents;  ///< [1..NitemComponents]
    One_based<int, MaxItems> component;                 ///< [i]: of item i, 0 without dependence

    NumberSet Items(int c) const { return ItemComponents[static_cast<std::size_t>(c)]; }
};
ItemComponentList Item_components(const GLLRM& model);

/// Response vectors of a set of items, the product of their categories; at most 2^62, where it
/// stops growing.
std::int64_t Response_vectors(const GLLRM& model, NumberSet items);

}  // namespace tarven
