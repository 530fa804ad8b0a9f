#include "rasch/items/item_report.h"

#include <fmt/format.h>

#include <algorithm>

#include "rasch/items/item_selection.h"
#include "rasch/items/model_text.h"
#include "rasch/items/score_groups.h"
#include "shell/fields.h"

namespace tarven {

namespace {

constexpr int NameWidth = 10;
constexpr int CountWidth = 7;

std::string Item_text(const Item& item) {
    return fmt::format("{}{} {}", item.FlippedItem ? '-' : ' ', item.label,
                       Left(item.name, NameWidth));
}

std::string Flipped_labels(const GLLRM& model) {
    std::string labels;
    for (int i = 1; i <= model.NITEMS; ++i)
        if (model.ItemNo(i).FlippedItem) labels += model.ItemNo(i).label;
    return labels;
}

std::string Category_text(const std::vector<std::string>& names, std::size_t category) {
    const bool named = category <= names.size() && !names[category - 1].empty();
    return named ? names[category - 1] : std::to_string(category);
}

double Percent(std::int64_t part, std::int64_t whole) {
    return whole == 0 ? 0 : 100.0 * static_cast<double>(part) / static_cast<double>(whole);
}

}  // namespace

std::vector<std::string> Selected_items_lines(const GLLRM& model, int item_block, int blocks) {
    const int Item_max = Highest_item_maxscore(model);
    const int MaxScore = Largest_possible_score(model);
    std::vector<std::string> lines = {
        fmt::format("{} items: {}", model.NITEMS, Item_labels(model))};
    const std::string flipped = Flipped_labels(model);
    if (!flipped.empty()) lines.push_back("Flipped items: " + flipped);
    if (Has_unequal_items(model))
        lines.push_back("The items have unequal numbers of response categories");
    lines.insert(lines.end(),
                 {fmt::format("Maximum item score = {}", Item_max),
                  fmt::format("Max score = {}", MaxScore), "Min score = 0",
                  fmt::format("Scoregroups with complete item patterns = {} - {}", Item_max,
                              MaxScore - Item_max),
                  MaxScore - Item_max > Item_max ? "Test of internal homogeneity possible"
                                                 : "Test of internal homogeneity is NOT possible"});
    if (blocks > 1)
        lines.push_back(fmt::format("Items belong to recursive block no. {}", item_block));
    return lines;
}

std::vector<std::string> Remarks_on_items(const GLLRM& model, const ItemCounts& counts) {
    std::vector<std::string> lines;
    for (int i = 1; i <= model.NITEMS; ++i) {
        const Item& item = model.ItemNo(i);
        const auto& of = counts.counts[static_cast<std::size_t>(i)];
        const auto seen = std::count_if(of.begin(), of.end(), [](auto count) { return count > 0; });
        if (seen == 0)
            lines.push_back(fmt::format("OBS: all responses to item {} are missing", item.label));
        if (seen == 1)
            lines.push_back(
                fmt::format("OBS: all responses to item {} give the same score", item.label));
    }
    return lines;
}

std::vector<std::string> Item_list_lines(const GLLRM& model, const ItemCounts& counts) {
    const int highest = Highest_item_maxscore(model);
    std::string heading = Blanks(4 + NameWidth);
    for (int x = 0; x <= highest; ++x) heading += Field(x, CountWidth);
    heading += Right("Missing", CountWidth + 2) + Right("Mean", CountWidth);
    std::vector<std::string> lines = {
        "Items: persons with each score" +
            std::string(Flipped_labels(model).empty() ? "" : "; - marks a flipped item"),
        "", heading};
    for (int i = 1; i <= model.NITEMS; ++i) {
        const Item& item = model.ItemNo(i);
        std::string line = " " + Item_text(item);
        for (int x = 0; x <= highest; ++x)
            line = Beside(
                line,
                x <= item.Item_maxscore()
                    ? Field(counts.counts[static_cast<std::size_t>(i)][static_cast<std::size_t>(x)],
                            CountWidth)
                    : Blanks(CountWidth));
        const std::int64_t responses = counts.Responses(i);
        line = Beside(line, Field(counts.persons - responses, CountWidth + 2));
        line += responses > 0 ? Field(counts.Mean(i), CountWidth, 2) : Right(".", CountWidth);
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> Item_means_lines(const GLLRM& model, int x,
                                          const std::vector<ItemCounts>& counts,
                                          const std::vector<std::string>& names) {
    const ExogenousVariable& exo = model.ExoNo(x);
    constexpr int Width = 10;
    std::vector<std::string> lines = {fmt::format("Item means by {} {}", exo.label, exo.name), ""};
    std::string heading = Blanks(4 + NameWidth);
    std::string persons = Left(" Persons", 4 + NameWidth);
    for (std::size_t c = 1; c < counts.size(); ++c) {
        heading = Beside(heading, Right(Category_text(names, c), Width));
        persons = Beside(persons, Field(counts[c].persons, Width));
    }
    lines.insert(lines.end(), {heading, persons});
    for (int i = 1; i <= model.NITEMS; ++i) {
        std::string line = " " + Item_text(model.ItemNo(i));
        for (std::size_t c = 1; c < counts.size(); ++c)
            line +=
                counts[c].Responses(i) > 0 ? Field(counts[c].Mean(i), Width, 2) : Right(".", Width);
        lines.push_back(line);
    }
    if (counts[0].persons > 0)
        lines.push_back(fmt::format(" Without a category: {} persons", counts[0].persons));
    return lines;
}

std::vector<std::string> Exogenous_lines(const GLLRM& model, int x,
                                         const std::vector<ItemCounts>& counts,
                                         const std::vector<std::string>& names) {
    const ExogenousVariable& exo = model.ExoNo(x);
    std::string line = fmt::format(" {} {}", exo.label, Left(exo.name, NameWidth));
    std::string empty;
    for (std::size_t c = 1; c < counts.size(); ++c) {
        line += fmt::format("  {}: {}", Category_text(names, c), counts[c].persons);
        if (counts[c].persons == 0) empty += (empty.empty() ? "" : ", ") + Category_text(names, c);
    }
    if (counts[0].persons > 0) line += fmt::format("  missing: {}", counts[0].persons);
    std::vector<std::string> lines = {line};
    if (!empty.empty())
        lines.push_back(
            fmt::format("OBS: {} has categories without persons: {}", exo.label, empty));
    return lines;
}

std::vector<std::string> Component_lines(const GLLRM& model) {
    const ItemComponentList components = Item_components(model);
    if (components.NitemComponents == 0)
        return {"All items are assumed to be locally independent: no item components"};
    std::vector<std::string> lines = {"Item components"};
    NumberSet alone = 0;
    for (int i = 1; i <= model.NITEMS; ++i)
        if (components.component[static_cast<std::size_t>(i)] == 0) alone |= Number(i);
    for (int c = 1; c <= components.NitemComponents; ++c) {
        std::string line = fmt::format(" {}  {}  dependences:", Field(c, 2),
                                       Labels_of_set(model, components.Items(c)));
        for (const ModelTerm& term : Terms_of(model))
            if (term.other_item != 0 && Has_number(components.Items(c), term.item))
                line += " " + Term_text(model, term);
        lines.push_back(line);
    }
    if (alone != 0)
        lines.push_back(" Items without local dependence: " + Labels_of_set(model, alone));
    return lines;
}

std::vector<std::string> Component_score_lines(const GLLRM& model,
                                               const std::vector<ComponentScores>& scores) {
    std::vector<std::string> lines;
    constexpr int Width = 6;
    for (const ComponentScores& of : scores) {
        lines.insert(lines.end(), {"", fmt::format("Component {}: persons and percentages by "
                                                   "component score within score groups",
                                                   Labels_of_set(model, of.items))});
        std::string heading = Right("Score", 11) + " ";
        for (int t = 0; t <= of.highest; ++t) heading += Field(t, Width);
        lines.push_back(heading + Right("Persons", Width + 3) + Right("Mean", Width + 1));
        for (int g = 1; g <= model.groups.ScoreDim; ++g) {
            const std::vector<std::int64_t>& row = of.counts[static_cast<std::size_t>(g)];
            std::int64_t persons = 0, sum = 0;
            for (std::size_t t = 0; t < row.size(); ++t) {
                persons += row[t];
                sum += row[t] * static_cast<std::int64_t>(t);
            }
            std::string counts = Right(Group_name(model.groups, g), 11) + " ";
            std::string percentages = Blanks(12);
            for (const std::int64_t count : row) {
                counts = Beside(counts, Field(count, Width));
                percentages = Beside(percentages, Field(Percent(count, persons), Width, 1));
            }
            counts = Beside(counts, Field(persons, Width + 3));
            counts += persons > 0 ? Field(static_cast<double>(sum) / static_cast<double>(persons),
                                          Width + 1, 2)
                                  : Right(".", Width + 1);
            lines.push_back(counts);
            if (persons > 0) lines.push_back(percentages);
        }
    }
    return lines;
}

}  // namespace tarven
