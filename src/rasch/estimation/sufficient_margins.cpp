#include "rasch/estimation/sufficient_margins.h"

#include <algorithm>
#include <cassert>
#include <map>

#include "rasch/items/score_distribution.h"

namespace tarven {

namespace {

std::size_t Slot(int i) {
    return static_cast<std::size_t>(i);
}

int Category(const std::uint8_t* exo, int variable) {
    return exo[variable - 1];
}

bool Passes(const PersonFilter& filter, const std::uint8_t* exo) {
    for (const CategoryFilter& wanted : filter.categories) {
        const int c = Category(exo, wanted.variable);
        if (c < wanted.low || c > wanted.high) return false;
    }
    if (!filter.values) return true;
    const int c = Category(exo, filter.values->variable);
    return c > 0 && Has_number(filter.values->admissible, c);
}

/// Categories of the sources, 0 where missing; the score group from the total score.
void Read_source_categories(const GLLRM& model, const ModelStructure& structure,
                            const std::uint8_t* exo, int score,
                            std::vector<std::uint8_t>& categories) {
    categories.clear();
    for (const DifSource& source : structure.sources)
        categories.push_back(static_cast<std::uint8_t>(
            source.variable <= model.NEXOGENE ? Category(exo, source.variable)
            : score >= 0                      ? model.groups.ScoreGruppe(score)
                                              : 0));
}

/// Whether the score bounds and the score groups let a person in: who has no total score cannot be
/// told to be outside.
bool Within_scores(const GLLRM& model, const ModelStructure& structure, const PersonFilter& filter,
                   int score) {
    if (score < 0) return true;
    if (score < filter.lowest_score || score > filter.highest_score) return false;
    return !structure.by_score_groups || model.groups.ScoreGruppe(score) > 0;
}

bool All_present(const std::vector<std::uint8_t>& categories) {
    return std::find(categories.begin(), categories.end(), 0) == categories.end();
}

SufficientMargins Empty_margins(const ModelStructure& structure) {
    SufficientMargins margins;
    margins.scores.assign(MaxTotalScore + 1, 0);
    margins.pairs.assign(structure.pairs.size(), ScoreTable<std::int64_t>(ItemScores));
    for (const DifTerm& term : structure.terms)
        margins.terms.emplace_back(structure.sources[Slot(term.source)].categories);
    return margins;
}

/// Adds a person's responses to the items of `members`, which hold whole components.
void Add_responses(const ModelStructure& structure, NumberSet members, const std::uint8_t* scores,
                   const std::vector<std::uint8_t>& categories, std::int64_t persons,
                   SufficientMargins& margins) {
    for (int i = 1; i <= structure.NITEMS; ++i)
        if (Has_number(members, i)) margins.Catmarg[Slot(i)][scores[i - 1]] += persons;
    for (std::size_t k = 0; k < structure.pairs.size(); ++k) {
        const ItemPair& pair = structure.pairs[k];
        if (Has_number(members, pair.item))
            margins.pairs[k](scores[pair.item - 1], scores[pair.other - 1]) += persons;
    }
    for (std::size_t k = 0; k < structure.terms.size(); ++k) {
        const DifTerm& term = structure.terms[k];
        if (Has_number(members, term.item))
            margins.terms[k](scores[term.item - 1], categories[Slot(term.source)] - 1) += persons;
    }
}

void Add_to_group(const ModelStructure& structure, int group, const std::uint8_t* scores,
                  const std::vector<std::uint8_t>& categories, std::int64_t persons,
                  SufficientMargins& margins) {
    const std::size_t g = Slot(group - 1);
    for (std::size_t k = 0; k < structure.pairs.size(); ++k)
        margins.pairs_by_group[k][g](scores[structure.pairs[k].item - 1],
                                     scores[structure.pairs[k].other - 1]) += persons;
    for (std::size_t k = 0; k < structure.terms.size(); ++k)
        margins.terms_by_group[k][g](scores[structure.terms[k].item - 1],
                                     categories[Slot(structure.terms[k].source)] - 1) += persons;
}

/// Persons by cell and score as they are read, before they are laid out as the cells of a stratum.
class CellCounts {
  public:
    /// The cells of these sources; `categories` below are those of all sources of the structure.
    CellCounts(const ModelStructure& structure, std::vector<int> sources)
        : structure_(&structure), sources_(std::move(sources)) {}

    void Add(const std::vector<std::uint8_t>& categories, int score, std::int64_t persons) {
        std::int64_t cell = 0;
        for (const int k : sources_)
            cell = cell * structure_->sources[Slot(k)].categories + categories[Slot(k)] - 1;
        entries_.push_back({cell, score, persons});
    }

    std::vector<CellScores> Cells() {
        std::sort(entries_.begin(), entries_.end(), [](const Entry& one, const Entry& other) {
            return one.cell != other.cell ? one.cell < other.cell : one.score < other.score;
        });
        std::vector<CellScores> list;
        std::int64_t last = -1;
        for (const Entry& entry : entries_) {
            if (entry.cell != last)
                list.push_back({.categories = Categories(entry.cell), .scores = {}});
            last = entry.cell;
            auto& scores = list.back().scores;
            if (scores.empty() || scores.back().score != entry.score)
                scores.push_back({entry.score, 0});
            scores.back().persons += entry.persons;
        }
        return list;
    }

    const std::vector<int>& sources() const { return sources_; }

  private:
    struct Entry {
        std::int64_t cell;  ///< from 0, the last source fastest
        int score;
        std::int64_t persons;
    };
    const ModelStructure* structure_;
    std::vector<int> sources_;
    std::vector<Entry> entries_;

    std::vector<std::uint8_t> Categories(std::int64_t cell) const {
        std::vector<std::uint8_t> categories(sources_.size());
        for (std::size_t k = sources_.size(); k-- > 0;) {
            const int count = structure_->sources[Slot(sources_[k])].categories;
            categories[k] = static_cast<std::uint8_t>(cell % count + 1);
            cell /= count;
        }
        return categories;
    }
};

/// The lowest and the highest category with a count, and the items with a single one.
void Find_ranges(const ModelStructure& structure, SufficientMargins& margins) {
    margins.degenerate = 0;
    for (int i = 1; i <= structure.NITEMS; ++i) {
        int low = -1, high = -1;
        for (int x = 0; x < ItemScores; ++x) {
            if (margins.Catmarg[Slot(i)][Slot(x)] == 0) continue;
            if (low < 0) low = x;
            high = x;
        }
        margins.low[Slot(i)] = std::max(low, 0);
        margins.high[Slot(i)] = std::max(high, 0);
        if (low == high) margins.degenerate |= Number(i);
    }
}

/// The items that a person still has: those of complete components whose sources are there.
NumberSet Members_left(const ModelStructure& structure, const std::uint8_t* scores,
                       const std::vector<std::uint8_t>& categories, std::vector<int>& components) {
    NumberSet members = 0;
    components.clear();
    for (std::size_t c = 0; c < structure.components.size(); ++c) {
        const ItemComponent& component = structure.components[c];
        bool whole = true;
        NumberSet items = 0;
        for (const int i : component.items) {
            whole = whole && scores[i - 1] != NoResponse;
            items |= Number(i);
        }
        for (std::size_t k = 0; k < categories.size(); ++k)
            if (Has_number(component.sources, static_cast<int>(k) + 1))
                whole = whole && categories[k] != 0;
        if (!whole) continue;
        members |= items;
        components.push_back(static_cast<int>(c));
    }
    return members;
}

std::vector<int> Sources_of(const ModelStructure& structure, const std::vector<int>& components) {
    NumberSet sources = 0;
    for (const int c : components) sources |= structure.components[Slot(c)].sources;
    std::vector<int> list;
    for (int k = 0; k < static_cast<int>(structure.sources.size()); ++k)
        if (Has_number(sources, k + 1)) list.push_back(k);
    return list;
}

}  // namespace

int Highest_complete_score(const ResponseTable& table) {
    int highest = -1;
    for (std::size_t p = 0; p < table.size(); ++p)
        highest = std::max(highest, Score_of(table.Scores(p), table.NITEMS));
    return highest;
}

SufficientMargins Complete_margins(const GLLRM& model, const ModelStructure& structure,
                                   const ResponseTable& table, const PersonFilter& filter,
                                   bool with_score_groups) {
    SufficientMargins margins = Empty_margins(structure);
    const int groups = with_score_groups ? model.groups.ScoreDim : 0;
    if (groups > 0) {
        for (const auto& one : margins.pairs)
            margins.pairs_by_group.emplace_back(Slot(groups), one);
        for (const auto& one : margins.terms)
            margins.terms_by_group.emplace_back(Slot(groups), one);
    }
    const NumberSet everyone = ~NumberSet{0};
    Stratum stratum;
    for (std::size_t c = 0; c < structure.components.size(); ++c)
        stratum.components.push_back(static_cast<int>(c));
    stratum.sources = Sources_of(structure, stratum.components);
    assert(stratum.sources.size() == structure.sources.size() && "a source without a term");
    CellCounts cells(structure, stratum.sources);
    std::vector<std::uint8_t> categories;
    for (std::size_t p = 0; p < table.size(); ++p) {
        if (!Passes(filter, table.Exo(p))) continue;
        const int score = Score_of(table.Scores(p), table.NITEMS);
        if (!Within_scores(model, structure, filter, score)) continue;
        const std::int64_t persons = table.counts[p];
        Read_source_categories(model, structure, table.Exo(p), score, categories);
        if (score < 0 || !All_present(categories)) {
            margins.counts.Nincomplete += persons;
            continue;
        }
        margins.counts.Nvalid += persons;
        margins.scores[Slot(score)] += persons;
        Add_responses(structure, everyone, table.Scores(p), categories, persons, margins);
        const int group = groups > 0 ? model.groups.ScoreGruppe(score) : 0;
        if (group > 0)
            Add_to_group(structure, group, table.Scores(p), categories, persons, margins);
        if (!structure.sources.empty()) cells.Add(categories, score, persons);
    }
    margins.persons = margins.counts.Nvalid;
    if (structure.sources.empty())
        for (int s = 0; s <= MaxTotalScore; ++s)
            if (margins.scores[Slot(s)] > 0) cells.Add({}, s, margins.scores[Slot(s)]);
    stratum.cells = cells.Cells();
    margins.strata.push_back(std::move(stratum));
    Find_ranges(structure, margins);
    return margins;
}

SufficientMargins Incomplete_margins(const GLLRM& model, const ModelStructure& structure,
                                     const ResponseTable& table, const PersonFilter& filter,
                                     const One_based<int, MaxItems>& highest) {
    SufficientMargins margins = Empty_margins(structure);
    std::map<std::vector<int>, CellCounts> strata;
    std::vector<int> components;
    std::vector<std::uint8_t> categories;
    for (std::size_t p = 0; p < table.size(); ++p) {
        if (!Passes(filter, table.Exo(p))) continue;
        const std::uint8_t* scores = table.Scores(p);
        const int total = Score_of(table.Scores(p), table.NITEMS);
        if (!Within_scores(model, structure, filter, total)) continue;
        Read_source_categories(model, structure, table.Exo(p), total, categories);
        if (total >= 0 && All_present(categories)) continue;
        const std::int64_t persons = table.counts[p];
        margins.counts.Nincomplete += persons;
        const NumberSet members = Members_left(structure, scores, categories, components);
        if (members != 0) margins.counts.Nresponses += persons;
        int items = 0, score = 0, top = 0;
        for (int i = 1; i <= structure.NITEMS; ++i) {
            if (!Has_number(members, i)) continue;
            ++items;
            score += scores[i - 1];
            top += highest[Slot(i)];
        }
        if (items < 2 || score == 0 || score >= top) {
            margins.counts.Nuseless += persons;
            (items == 0   ? margins.counts.no_item_left
             : items == 1 ? margins.counts.one_item_left
             : score == 0 ? margins.counts.score_zero
                          : margins.counts.score_highest) += persons;
            continue;
        }
        margins.counts.Nuseful += persons;
        Add_responses(structure, members, scores, categories, persons, margins);
        const auto place =
            strata.try_emplace(components, structure, Sources_of(structure, components));
        place.first->second.Add(categories, score, persons);
    }
    margins.persons = margins.counts.Nuseful;
    for (auto& [list, cells] : strata)
        margins.strata.push_back({list, cells.sources(), cells.Cells()});
    Find_ranges(structure, margins);
    return margins;
}

SufficientMargins Joined_margins(const SufficientMargins& complete,
                                 const SufficientMargins& incomplete) {
    SufficientMargins joined = complete;
    const auto add = [](auto& to, const auto& from) {
        for (std::size_t k = 0; k < to.size(); ++k)
            for (std::size_t cell = 0; cell < to[k].cells.size(); ++cell)
                to[k].cells[cell] += from[k].cells[cell];
    };
    add(joined.pairs, incomplete.pairs);
    add(joined.terms, incomplete.terms);
    joined.degenerate = 0;
    for (int i = 1; i <= MaxItems; ++i) {
        int categories = 0;
        for (int x = 0; x < ItemScores; ++x) {
            auto& count = joined.Catmarg[Slot(i)][Slot(x)];
            count += incomplete.Catmarg[Slot(i)][Slot(x)];
            if (count == 0) continue;
            if (categories++ == 0) joined.low[Slot(i)] = x;
            joined.high[Slot(i)] = x;
        }
        if (categories == 1) joined.degenerate |= Number(i);
    }
    joined.strata.insert(joined.strata.end(), incomplete.strata.begin(), incomplete.strata.end());
    joined.persons += incomplete.persons;
    joined.counts = incomplete.counts;
    joined.counts.Nvalid = complete.counts.Nvalid;
    return joined;
}

}  // namespace tarven
