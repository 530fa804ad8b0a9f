#include "support/item_samples.h"

#include <cmath>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "rasch/items/model_text.h"
#include "support/item_models.h"

namespace tarven {

namespace {

std::size_t Index(int i) {
    return static_cast<std::size_t>(i);
}

/// The DAT file of verbal: number, items, anger (17, 22 and 39 are its cut points), gender.
std::vector<int> Verbal_person(const std::vector<int>& record) {
    std::vector<int> person(record.begin(), record.begin() + 24);
    const int anger = record.at(25), gender = record.at(24);
    person.push_back(anger <= 17 ? 1 : anger <= 22 ? 2 : 3);
    person.push_back(gender);
    return person;
}

}  // namespace

ItemSample Example_items(const std::string& project) {
    ItemSample sample;
    const bool verbal = project == "verbal";
    sample.model = verbal ? Model_of_dims(std::vector<int>(24, 3), {3, 2})
                          : Model_of_dims(std::vector<int>(30, 2));
    if (verbal) {
        sample.model.Exogene[1].label = 'Z';
        sample.model.Exogene[2].label = 'Y';
    }
    std::ifstream in(std::string(TARVEN_EXAMPLES) + "/" + project + "/" + project + ".DAT");
    if (!in) throw std::runtime_error("no example " + project);
    std::vector<std::vector<int>> persons;
    for (std::string line; std::getline(in, line);) {
        std::istringstream words(line);
        std::vector<int> record;
        for (int value = 0; words >> value;) record.push_back(value);
        if (record.empty()) continue;
        if (verbal) record.erase(record.begin());
        persons.push_back(verbal ? Verbal_person(record) : record);
    }
    sample.table = Table_of_persons(sample.model, persons);
    return sample;
}

GLLRM With_terms_of(const GLLRM& model, const std::string& terms) {
    const auto with = With_terms(model, terms, Labels_of(model));
    if (!with) throw std::runtime_error("no model " + terms);
    return *with;
}

ResponseTable Table_of_persons(const GLLRM& model, const std::vector<std::vector<int>>& persons) {
    ResponseTable table;
    table.NITEMS = model.NITEMS;
    table.NEXOGENE = model.NEXOGENE;
    for (const std::vector<int>& person : persons) {
        for (int k = 0; k < model.NITEMS + model.NEXOGENE; ++k) {
            const int code = person.at(Index(k));
            const std::uint8_t missing = k < model.NITEMS ? NoResponse : 0;
            table.codes.push_back(code < 0 ? missing : static_cast<std::uint8_t>(code));
        }
        table.counts.push_back(1);
    }
    return table;
}

GLLRMParameters Random_parameters(std::mt19937& random, const GLLRM& model) {
    std::uniform_real_distribution<double> effect(-1, 1);
    const ModelStructure structure = Structure_of(model);
    GLLRMParameters parameters;
    for (int i = 1; i <= model.NITEMS; ++i) {
        parameters.high[Index(i)] = model.ItemNo(i).Item_maxscore();
        for (int x = 0; x < model.ItemNo(i).item_dim; ++x)
            parameters.eps[Index(i)][Index(x)] = x == 0 ? 1 : std::exp(effect(random));
    }
    const auto table = [&](int rows, int columns, int width) {
        ScoreTable<Extended> made(width);
        for (int r = 0; r < rows; ++r)
            for (int c = 0; c < columns; ++c)
                made(r, c) = r == 0 || c == 0 ? 1 : std::exp(effect(random));
        return made;
    };
    for (const ItemPair& pair : structure.pairs)
        parameters.lambda.push_back(
            table(model.ItemNo(pair.item).item_dim, model.ItemNo(pair.other).item_dim, ItemScores));
    for (const DifTerm& term : structure.terms) {
        const int categories = structure.sources[Index(term.source)].categories;
        parameters.delta.push_back(table(model.ItemNo(term.item).item_dim, categories, categories));
    }
    return parameters;
}

std::vector<std::vector<int>> All_response_vectors(const GLLRM& model) {
    std::vector<std::vector<int>> vectors;
    std::vector<int> scores(Index(model.NITEMS), 0);
    for (;;) {
        vectors.push_back(scores);
        int i = 1;
        while (i <= model.NITEMS && scores[Index(i - 1)] == model.ItemNo(i).Item_maxscore())
            scores[Index(i++ - 1)] = 0;
        if (i > model.NITEMS) return vectors;
        ++scores[Index(i - 1)];
    }
}

Extended Weight_of(const ModelStructure& structure, const GLLRMParameters& parameters,
                   const std::vector<int>& scores, const std::vector<std::uint8_t>& categories,
                   NumberSet items) {
    Extended weight = 1;
    for (int i = 1; i <= structure.NITEMS; ++i)
        if (Has_number(items, i)) weight *= parameters.eps[Index(i)][Index(scores[Index(i - 1)])];
    for (std::size_t k = 0; k < structure.pairs.size(); ++k) {
        const ItemPair& pair = structure.pairs[k];
        if (Has_number(items, pair.item) && Has_number(items, pair.other))
            weight *=
                parameters.lambda[k](scores[Index(pair.item - 1)], scores[Index(pair.other - 1)]);
    }
    for (std::size_t k = 0; k < structure.terms.size(); ++k) {
        const DifTerm& term = structure.terms[k];
        if (Has_number(items, term.item))
            weight *= parameters.delta[k](scores[Index(term.item - 1)],
                                          categories[Index(term.source)] - 1);
    }
    return weight;
}

ResponseTable Simulated_persons(std::mt19937& random, const GLLRM& model,
                                const GLLRMParameters& parameters, int persons,
                                double sd_of_theta) {
    const ModelStructure structure = Structure_of(model);
    const auto vectors = All_response_vectors(model);
    std::normal_distribution<double> theta(0, sd_of_theta);
    std::vector<std::vector<int>> sample;
    for (int p = 0; p < persons; ++p) {
        const double ability = theta(random);
        std::vector<int> exo;
        for (int x = 1; x <= model.NEXOGENE; ++x)
            exo.push_back(
                1 + static_cast<int>(random() % static_cast<unsigned>(model.ExoNo(x).exo_dim)));
        std::vector<std::uint8_t> categories;
        for (const DifSource& source : structure.sources)
            categories.push_back(static_cast<std::uint8_t>(exo[Index(source.variable - 1)]));
        std::vector<double> weights;
        for (const auto& scores : vectors) {
            int total = 0;
            for (const int x : scores) total += x;
            weights.push_back(static_cast<double>(Weight_of(structure, parameters, scores,
                                                            categories, ~NumberSet{0})) *
                              std::exp(ability * total));
        }
        std::discrete_distribution<std::size_t> draw(weights.begin(), weights.end());
        std::vector<int> person = vectors[draw(random)];
        person.insert(person.end(), exo.begin(), exo.end());
        sample.push_back(std::move(person));
    }
    return Table_of_persons(model, sample);
}

}  // namespace tarven
