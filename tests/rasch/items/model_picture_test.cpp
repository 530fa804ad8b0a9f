#include "rasch/items/model_picture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "rasch/items/model_text.h"
#include "support/item_models.h"

namespace tarven {

namespace {

/// The dependences that the rails of a picture show: from every corner "." down its column to the
/// next corner "'", each item met by "+" or "'" depends on the item of the corner.
std::vector<ModelTerm> Dependences_drawn(const std::vector<std::string>& picture, int NITEMS) {
    std::vector<ModelTerm> found;
    const auto row = [&](int i) -> const std::string& {
        return picture[static_cast<std::size_t>(i + 1)];
    };
    for (int i = 1; i <= NITEMS; ++i)
        for (std::size_t column = 0; column < row(i).size(); ++column) {
            if (row(i)[column] != '.') continue;
            for (int j = i + 1; j <= NITEMS; ++j) {
                const char mark = column < row(j).size() ? row(j)[column] : ' ';
                EXPECT_NE(mark, ' ') << "a rail breaks off";
                if (mark != '|') found.push_back({.item = i, .other_item = j});
                if (mark == '\'' || mark == ' ') break;
            }
        }
    return found;
}

}  // namespace

TEST(ModelPicture, RailsShowTheDependencesAndNoOthers) {
    std::mt19937 random(4);
    for (int n = 0; n < 300; ++n) {
        GLLRM model = Model_of_dims(std::vector<int>(12, 3), {2});
        for (int i = 1; i <= 12; ++i) model.items[static_cast<std::size_t>(i)].name = "item";
        for (int t = 0; t < n % 20; ++t) {
            const int i = 1 + static_cast<int>(random() % 12),
                      j = 1 + static_cast<int>(random() % 12);
            if (i != j)
                Set_term(model, {.item = std::min(i, j), .other_item = std::max(i, j)}, true);
        }
        auto drawn = Dependences_drawn(Model_picture(model, {}), 12);
        const auto before = [](const ModelTerm& a, const ModelTerm& b) {
            return std::pair(a.item, a.other_item) < std::pair(b.item, b.other_item);
        };
        std::sort(drawn.begin(), drawn.end(), before);
        EXPECT_EQ(drawn, Terms_of(model)) << Model_text(model);
    }
}

TEST(ModelPicture, IsReadAtAGlance) {
    GLLRM model = Model_of_dims({3, 3, 2, 3}, {3, 2});
    model.items[1].name = "want";
    model.items[2].name = "do";
    model.items[3].name = "shout";
    model.items[3].FlippedItem = true;
    model.Exogene[1].name = "age";
    model.Exogene[2].name = "sex";
    model = *With_terms(model, "AB AD CD BF DE DF C#", Labels_of(model));
    const std::vector<std::string> expected = {"T Theta",
                                               "|",
                                               "+-- A want   0 - 2 --.",
                                               "+-- B do     0 - 2 --+     <== F",
                                               "+---C shout  0 - 1 --|--.  <== #",
                                               "+-- D        0 - 2 --'--'  <== EF",
                                               "|",
                                               "S Score  0 - 7, score groups #: 0-3 | 4-7",
                                               "",
                                               "E age  3 categories",
                                               "F sex  2 categories",
                                               ""};
    std::vector<std::string> picture = Model_picture(model, {});
    ASSERT_GT(picture.size(), expected.size());
    picture.resize(expected.size());
    EXPECT_EQ(picture, expected);
}

TEST(ModelPicture, TooManyRailsAreNamed) {
    GLLRM model = Model_of_dims(std::vector<int>(20, 2));
    for (int i = 1; i <= 20; ++i)
        for (int j = i + 1; j <= 20; ++j) Set_term(model, {.item = i, .other_item = j}, true);
    const std::vector<std::string> picture = Model_picture(model, {});
    EXPECT_NE(picture[2].find("depends on BCDEFGHIJKLMNOPQRST"), std::string::npos) << picture[2];
    for (const std::string& line : picture) EXPECT_LE(line.size(), 1000U);
}

}  // namespace tarven
