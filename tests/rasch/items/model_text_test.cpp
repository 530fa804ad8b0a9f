#include "rasch/items/model_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <random>

#include "support/item_models.h"

namespace tarven {

namespace {

/// Four items A to D, exogenous variables E (3 categories) and F (2).
GLLRM Small_model() {
    return Model_of_dims({3, 3, 2, 4}, {3, 2});
}

std::string Text_after(const std::string& typed) {
    const GLLRM model = Small_model();
    const Result<GLLRM> read = With_terms(model, typed, Labels_of(model));
    return read ? Model_text(*read) : "failed: " + read.failure().messages.at(0);
}

GLLRM Random_terms(std::mt19937& random, GLLRM model) {
    for (int n = 0; n < 12; ++n) {
        const int i = 1 + static_cast<int>(random() % static_cast<unsigned>(model.NITEMS));
        const int j = 1 + static_cast<int>(random() % static_cast<unsigned>(model.NITEMS));
        const int x = 1 + static_cast<int>(random() % static_cast<unsigned>(model.NEXOGENE));
        if (random() % 3 == 0)
            Set_term(model, {.item = i, .exogenous = x}, true);
        else if (random() % 8 == 0)
            Set_term(model, {.item = i, .with_score = true}, true);
        else if (i != j)
            Set_term(model, {.item = std::min(i, j), .other_item = std::max(i, j)}, true);
    }
    return model;
}

}  // namespace

TEST(ModelText, IsReadLabelByLabel) {
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"", ""},
        {"AB CD AE", "AB CD AE"},
        {"ABCDAE", "AB CD AE"},
        {" A  BC DA   E", "AB CD AE"},
        {"BA EA A#", "AB AE A#"},
        {"#D", "D#"},
        {"ab cf", "AB CF"},
        {"AE AB A# AF", "AB AE AF A#"},  // dependences first, "#" behind the exogenous variables
        {"ABC", "AB"},                   // a label left over
        {"AA AB", "AB"},                 // an item with itself
        {"EF AB", "AB"},                 // two exogenous variables
        {"AX XB AB", "AB"},              // an unknown label
        {"A. AB", "AB"},
        {"AB AB BA", "AB"},
        {"##", ""}};
    for (const auto& [typed, text] : rows) EXPECT_EQ(Text_after(typed), text) << typed;
}

TEST(ModelText, LabelsThatDifferInCaseAreTwoLabels) {
    GLLRM model = Model_of_dims(std::vector<int>(30, 2));
    const std::string labels = Labels_of(model);
    const Result<GLLRM> read = With_terms(model, "aB Ab Zd", labels);
    ASSERT_TRUE(read);
    EXPECT_EQ(Model_text(*read), "Ab Ba Zd");
}

TEST(ModelText, IsReadBackAsItWasWritten) {
    std::mt19937 random(1);
    for (int n = 0; n < 300; ++n) {
        const GLLRM empty = Model_of_dims({3, 3, 2, 4, 2, 2, 3}, {3, 2, 5});
        const GLLRM model = Random_terms(random, empty);
        const Result<GLLRM> read = With_terms(empty, Model_text(model), Labels_of(model));
        ASSERT_TRUE(read);
        EXPECT_EQ(Terms_of(*read), Terms_of(model)) << Model_text(model);
        for (std::size_t i = 1; i <= 7; ++i)
            EXPECT_EQ(read->LocalDependence[i], model.LocalDependence[i]);
    }
}

TEST(ModelText, AnAmendmentGoesEntryByEntry) {
    const std::vector<std::tuple<std::string, std::string, std::vector<std::string>>> rows = {
        {"+AC", "AB AC CF", {"AC included"}},
        {"-AB +FC", "CF", {"AB removed"}},
        {"-BA -AC", "CF", {"AB removed"}},
        {"+A C-CF", "AB AC", {"AC included", "CF removed"}},
        {"+AC BD -AB",
         "AC CF",
         {"AC included", "Warning: B should be either + or -", "AB removed"}},
        {"+AX +EF +AA +A", "AB CF", {}},
        {"+D# -D#", "AB CF", {"D# included", "D# removed"}}};
    for (const auto& [typed, text, lines] : rows) {
        const GLLRM before = *With_terms(Small_model(), "AB CF", Labels_of(Small_model()));
        ASSERT_TRUE(Is_amendment(typed)) << typed;
        const Result<AmendedModel> amended = Amended(before, typed, Labels_of(before));
        ASSERT_TRUE(amended) << typed;
        EXPECT_EQ(Model_text(amended->model), text) << typed;
        EXPECT_EQ(amended->lines, lines) << typed;
    }
    EXPECT_FALSE(Is_amendment("AB C-D"));
}

TEST(ModelText, AnInteractionWithTheScoreNeedsGroupsAndNotTooMany) {
    GLLRM model = Small_model();
    for (const auto& [groups, reason] : std::vector<std::pair<int, std::string>>{
             {0, "Scoregroups have not been defined: the term A# needs two (CUT makes them)"},
             {59, ""},
             {60, "60 score groups are too many for the term A# (at most 59)"}}) {
        model.groups.ScoreDim = groups;
        for (const char* typed : {"AB #A", "+A#"}) {
            const std::string labels = Labels_of(model);
            const Failed none;
            const auto read = With_terms(model, typed, labels);
            const auto amended = Amended(model, typed, labels);
            const bool amends = Is_amendment(typed);
            ASSERT_EQ(amends ? bool(amended) : bool(read), reason.empty()) << typed << groups;
            if (!reason.empty()) {
                EXPECT_EQ((amends ? amended.failure() : read.failure()).messages.at(0), reason);
            }
        }
    }
}

// Components by merging lists of pairs, the plain way.
TEST(ItemComponents, AreThoseOfTheGraphOfDependences) {
    std::mt19937 random(2);
    for (int n = 0; n < 300; ++n) {
        const GLLRM model = Random_terms(random, Model_of_dims({2, 2, 3, 2, 4, 2, 2, 3}, {2}));
        std::vector<int> leader = {0, 1, 2, 3, 4, 5, 6, 7, 8};
        for (int pass = 0; pass < 8; ++pass)
            for (const ModelTerm& term : Terms_of(model)) {
                if (term.other_item == 0) continue;
                int &a = leader[static_cast<std::size_t>(term.item)],
                    &b = leader[static_cast<std::size_t>(term.other_item)];
                a = b = std::min(a, b);
            }
        const ItemComponentList list = Item_components(model);
        int first = 0;
        for (int c = 1; c <= list.NitemComponents; ++c) {
            EXPECT_GE(std::popcount(list.Items(c)), 2);
            EXPECT_GT(std::countr_zero(list.Items(c)) + 1, first) << "in the order of first items";
            first = std::countr_zero(list.Items(c)) + 1;
        }
        for (int i = 1; i <= 8; ++i)
            for (int j = 1; j <= 8; ++j) {
                const int c = list.component[static_cast<std::size_t>(i)];
                const bool together =
                    i != j && c != 0 && c == list.component[static_cast<std::size_t>(j)];
                EXPECT_EQ(together, i != j && leader[static_cast<std::size_t>(i)] ==
                                                  leader[static_cast<std::size_t>(j)]);
                EXPECT_TRUE(!together || Has_number(list.Items(c), j));
            }
    }
}

TEST(BiasDim, IsTheProductOverTheSourcesAndTheScoreGroups) {
    const std::vector<std::pair<std::string, std::int64_t>> rows = {
        {"AB", 1}, {"AE", 3}, {"AE BE", 3}, {"AE CF", 6}, {"A#", 2}, {"AE CF D#", 12}};
    for (const auto& [typed, cells] : rows)
        EXPECT_EQ(BiasDim(*With_terms(Small_model(), typed, Labels_of(Small_model()))), cells);
    GLLRM large = Model_of_dims({2, 2}, std::vector<int>(40, 57));
    large.ItemBias[1] = Number(41) - 1;
    EXPECT_EQ(BiasDim(large), std::int64_t{1} << 62) << "stops where it would leave 64 bits";
}

}  // namespace tarven
