#include "support/item_models.h"

#include <map>

namespace tarven {

GLLRM Model_of_dims(const std::vector<int>& item_dims, const std::vector<int>& exo_dims) {
    GLLRM model;
    const auto label = [](int variable) {
        return static_cast<char>(variable <= 26 ? 'A' + variable - 1 : 'a' + variable - 27);
    };
    int variable = 0;
    for (const int dim : item_dims) {
        Item& item = model.items[static_cast<std::size_t>(++model.NITEMS)];
        item.variable = ++variable;
        item.label = label(variable);
        item.item_dim = dim;
    }
    for (const int dim : exo_dims) {
        ExogenousVariable& exo = model.Exogene[static_cast<std::size_t>(++model.NEXOGENE)];
        exo.variable = ++variable;
        exo.label = label(variable);
        exo.exo_dim = dim;
    }
    model.groups.ScoreDim = 2;
    model.groups.MaxScore = Largest_possible_score(model);
    model.groups.ScoreCuts[1] = model.groups.MaxScore / 2;
    model.groups.ScoreCuts[2] = model.groups.MaxScore;
    return model;
}

std::string Labels_of(const GLLRM& model) {
    return Item_labels(model) + Exo_labels(model);
}

ResponseTable Random_responses(std::mt19937& random, const GLLRM& model, int persons,
                               unsigned missing) {
    std::map<std::vector<std::uint8_t>, std::int32_t> counted;
    for (int p = 0; p < persons; ++p) {
        std::vector<std::uint8_t> row;
        for (int i = 1; i <= model.NITEMS; ++i) {
            const auto score = random() % static_cast<unsigned>(model.ItemNo(i).item_dim);
            row.push_back(random() % 100 < missing ? NoResponse : static_cast<std::uint8_t>(score));
        }
        for (int x = 1; x <= model.NEXOGENE; ++x) {
            const auto category = 1 + random() % static_cast<unsigned>(model.ExoNo(x).exo_dim);
            row.push_back(random() % 100 < missing ? std::uint8_t{0}
                                                   : static_cast<std::uint8_t>(category));
        }
        ++counted[row];
    }
    ResponseTable table;
    table.NITEMS = model.NITEMS;
    table.NEXOGENE = model.NEXOGENE;
    for (const auto& [row, count] : counted) {
        table.codes.insert(table.codes.end(), row.begin(), row.end());
        table.counts.push_back(count);
    }
    return table;
}

}  // namespace tarven
