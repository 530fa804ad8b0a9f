#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "rasch/estimation/model_structure.h"
#include "rasch/items/response_table.h"

namespace tarven {

/// The sufficient margins of a GLLRM: what estimation needs of the persons.

/// Categories of an exogenous variable that take part, both ends inclusive.
struct CategoryFilter {
    int variable = 0;
    int low = 1;
    int high = MaxCategories;
};

/// Which persons are read. Filters that are not set leave everybody in, missing categories too.
struct PersonFilter {
    int lowest_score = 0;
    int highest_score = MaxTotalScore;
    std::vector<CategoryFilter> categories;  ///< at most one a variable
    /// Single admissible categories of one exogenous variable.
    struct Values {
        int variable = 0;
        NumberSet admissible = 0;  ///< category c when bit c-1 is set
    };
    std::optional<Values> values;
};

/// How many persons had a total score.
struct ScoreCount {
    int score = 0;
    std::int64_t persons = 0;
};

/// The persons of one cell of the cross-classification of the sources.
struct CellScores {
    std::vector<std::uint8_t> categories;  ///< of each source of the stratum, from 1
    std::vector<ScoreCount> scores;        ///< ascending, counts above 0
};

/// Persons with responses to the same components. Cells with nobody are left out.
struct Stratum {
    std::vector<int> components;    ///< places in ModelStructure::components
    std::vector<int> sources;       ///< of these components, places in ModelStructure::sources
    std::vector<CellScores> cells;  ///< in the order of the categories, the last source fastest
};

/// The numbers of persons and records, as the report counts them.
struct PersonCounts {
    std::int64_t Nvalid = 0;       ///< complete on items and sources, within the filter
    std::int64_t Nincomplete = 0;  ///< within the filter, an item or a source of DIF missing
    std::int64_t Nresponses = 0;   ///< of these: a response is left when components are completed
    std::int64_t Nuseful = 0;      ///< of these: two items left, and no extreme score
    std::int64_t Nuseless = 0;     ///< incomplete and not useful:
    std::int64_t no_item_left = 0;
    std::int64_t one_item_left = 0;
    std::int64_t score_zero = 0;     ///< on two items or more
    std::int64_t score_highest = 0;  ///< the same
};

struct SufficientMargins {
    ItemTable<std::int64_t> Catmarg;              ///< n(i,x)
    std::vector<ScoreTable<std::int64_t>> pairs;  ///< parallel to the pairs of the structure
    std::vector<ScoreTable<std::int64_t>> terms;  ///< parallel to its terms
    /// The tables of the pairs and terms in each score group, [k][g-1]; empty unless asked for.
    std::vector<std::vector<ScoreTable<std::int64_t>>> pairs_by_group;
    std::vector<std::vector<ScoreTable<std::int64_t>>> terms_by_group;
    std::vector<std::int64_t> scores;  ///< n(s), s = 0..MaxTotalScore
    std::vector<Stratum> strata;
    PersonCounts counts;

    std::int64_t persons = 0;
    NumberSet degenerate = 0;  ///< items with one observed category; set by Find_ranges
    One_based<int, MaxItems> low;
    One_based<int, MaxItems> high;
};

/// The highest total score of a person with responses to all items; -1 without any.
int Highest_complete_score(const ResponseTable& table);

/// Margins of the persons within the filter that are complete on the items and the sources. When
/// the score groups are a source, a person whose score lies in none of them is not read at all.
/// Cost: patterns times (items + pairs + terms).
SufficientMargins Complete_margins(const GLLRM& model, const ModelStructure& structure,
                                   const ResponseTable& table, const PersonFilter& filter,
                                   bool with_score_groups = false);

/// Margins of the useful incomplete persons: a missing source takes the items that depend on it, a
/// missing item its whole component; two items or more must be left, with a score strictly between
/// 0 and the sum of highest[i], the highest observed scores, over them. Score groups are missing
/// where the total score is. Score bounds apply to persons with responses to all items, who may
/// lack a source; the others have no total score. One stratum for each set of components.
SufficientMargins Incomplete_margins(const GLLRM& model, const ModelStructure& structure,
                                     const ResponseTable& table, const PersonFilter& filter,
                                     const One_based<int, MaxItems>& highest);

/// The sums of both, with the strata of both.
SufficientMargins Joined_margins(const SufficientMargins& complete,
                                 const SufficientMargins& incomplete);

}  // namespace tarven
