#include "rasch/items/model_picture.h"

#include <fmt/format.h>

#include <algorithm>

#include "rasch/items/model_text.h"
#include "rasch/items/score_groups.h"
#include "shell/fields.h"

namespace tarven {

namespace {

constexpr std::size_t RailWidth = 3;

/// A vertical line in one column, from an item down to the last of the later items it depends on.
struct Rail {
    int first = 0, last = 0;
    NumberSet ends = 0;  ///< items that it joins
    int column = 0;      ///< from 0
};

/// A rail for each item with later items; each in the lowest column that is free over its length.
std::vector<Rail> Rails_of(const GLLRM& model) {
    std::vector<Rail> rails;
    std::vector<int> used_to;  // the last item of the rails in each column
    for (int i = 1; i <= model.NITEMS; ++i) {
        Rail rail{.first = i, .last = i, .ends = Number(i), .column = 0};
        for (int j = i + 1; j <= model.NITEMS; ++j)
            if (model.Dependent(i, j)) {
                rail.last = j;
                rail.ends |= Number(j);
            }
        if (rail.last == i) continue;
        const auto free =
            std::find_if(used_to.begin(), used_to.end(), [&](int last) { return last < i; });
        rail.column = static_cast<int>(free - used_to.begin());
        if (free == used_to.end())
            used_to.push_back(rail.last);
        else
            *free = rail.last;
        rails.push_back(rail);
    }
    return rails;
}

int Columns_of(const std::vector<Rail>& rails) {
    int columns = 0;
    for (const Rail& rail : rails) columns = std::max(columns, rail.column + 1);
    return columns;
}

/// The rails beside item i: a corner or a crossing where a rail joins the item, and a line from the
/// item to it.
std::string Rails_beside(const std::vector<Rail>& rails, int i) {
    std::string line(static_cast<std::size_t>(Columns_of(rails)) * RailWidth, ' ');
    std::size_t reach = 0;
    const auto at = [](const Rail& rail) {
        return static_cast<std::size_t>(rail.column) * RailWidth + RailWidth - 1;
    };
    for (const Rail& rail : rails)
        if (Has_number(rail.ends, i)) reach = std::max(reach, at(rail));
    std::fill_n(line.begin(), reach, '-');
    for (const Rail& rail : rails) {
        if (i < rail.first || i > rail.last) continue;
        const bool joins = Has_number(rail.ends, i);
        line[at(rail)] = !joins ? '|' : i == rail.first ? '.' : i == rail.last ? '\'' : '+';
    }
    return line;
}

/// "depends on BCD" in place of rails.
std::string Named_dependences(const GLLRM& model, int i) {
    std::string labels;
    for (int j = 1; j <= model.NITEMS; ++j)
        if (model.Dependent(i, j)) labels += model.ItemNo(j).label;
    return labels.empty() ? std::string() : " depends on " + labels;
}

/// Labels of the sources of DIF of item i, "#" for the score groups.
std::string Sources_of(const GLLRM& model, int i) {
    std::string labels;
    for (int x = 1; x <= model.NEXOGENE; ++x)
        if (model.Biased(i, x)) labels += model.ExoNo(x).label;
    if (Has_number(model.ItemScoreInteractions, i)) labels += '#';
    return labels;
}

std::string Groups_line(const GLLRM& model, const ScaleNames& names) {
    std::string line = fmt::format("{} {}  0 - {}", names.ScoreLabel, names.Scorename,
                                   Largest_possible_score(model));
    const ScoreGrouping& groups = model.groups;
    if (groups.ScoreDim < 2) return line + ", no score groups";
    if (groups.ScoreDim == groups.MaxScore - groups.MinScore + 1)
        return line + fmt::format(", score groups #: raw scores {} - {}", groups.MinScore,
                                  groups.MaxScore);
    line += ", score groups #:";
    for (int g = 1; g <= groups.ScoreDim; ++g)
        line += fmt::format("{} {}", g == 1 ? "" : " |", Group_name(groups, g));
    return line;
}

std::vector<std::string> Legend(const GLLRM& model, bool rails) {
    std::vector<std::string> lines;
    std::string dependent, biased, flipped;
    for (int i = 1; i <= model.NITEMS; ++i)
        if (model.ItemNo(i).FlippedItem) flipped += fmt::format(" {}", model.ItemNo(i).label);
    for (const ModelTerm& term : Terms_of(model))
        (term.other_item != 0 ? dependent : biased) += " " + Term_text(model, term);
    if (dependent.empty() && biased.empty())
        lines.push_back("Rasch model: the items depend on the latent variable alone");
    if (!dependent.empty())
        lines.push_back((rails ? "--. --'  locally dependent items:" : "Locally dependent items:") +
                        dependent);
    if (!biased.empty()) lines.push_back("<==      differential item functioning:" + biased);
    if (!flipped.empty()) lines.push_back("---      flipped items:" + flipped);
    return lines;
}

std::string Exogenous_line(const GLLRM& model, int x) {
    const ExogenousVariable& exo = model.ExoNo(x);
    return fmt::format("{} {}  {} categories{}", exo.label, exo.name, exo.exo_dim,
                       Has_number(DIFsources(model), x) ? "" : ", no DIF");
}

}  // namespace

std::vector<std::string> Model_picture(const GLLRM& model, const ScaleNames& names) {
    std::vector<Rail> rails = Rails_of(model);
    const bool drawn = Columns_of(rails) <= MostRails;
    std::size_t longest_name = 0, widest = 0;
    for (int i = 1; i <= model.NITEMS; ++i) {
        longest_name = std::max(longest_name, model.ItemNo(i).name.size());
        if (!drawn) widest = std::max(widest, Named_dependences(model, i).size());
    }
    if (drawn) widest = static_cast<std::size_t>(Columns_of(rails)) * RailWidth;

    std::vector<std::string> lines = {fmt::format("{} {}", names.ThetaLabel, names.Thetaname), "|"};
    for (int i = 1; i <= model.NITEMS; ++i) {
        const Item& item = model.ItemNo(i);
        std::string line =
            fmt::format("+--{}{} {}  0 - {} ", item.FlippedItem ? '-' : ' ', item.label,
                        Left(item.name, static_cast<int>(longest_name)), item.Item_maxscore());
        const std::string beside = drawn ? Rails_beside(rails, i) : Named_dependences(model, i);
        line += Left(beside, static_cast<int>(widest));
        const std::string sources = Sources_of(model, i);
        if (!sources.empty()) line += "  <== " + sources;
        line.erase(line.find_last_not_of(' ') + 1);
        lines.push_back(std::move(line));
    }
    lines.insert(lines.end(), {"|", Groups_line(model, names), ""});
    for (int x = 1; x <= model.NEXOGENE; ++x) lines.push_back(Exogenous_line(model, x));
    if (model.NEXOGENE > 0) lines.push_back("");
    Append_lines(lines, Legend(model, drawn));
    return lines;
}

}  // namespace tarven
