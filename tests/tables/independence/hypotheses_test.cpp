#include "tables/independence/hypotheses.h"

#include <gtest/gtest.h>

#include "shell/lifecycle.h"
#include "tables/independence/hypothesis_workspace.h"

namespace tarven {
namespace {

/// Binary ordinal variables labelled by `labels`; blocks as digits, '3' in `out` collapses.
HypothesisVariables Variables(const std::string& labels, const std::string& blocks,
                              const std::string& out = "") {
    HypothesisVariables v;
    v.Nvar = static_cast<int>(labels.size());
    v.vlabel = labels;
    for (int k = 1; k <= v.Nvar; ++k) {
        v.DIM[k] = 2;
        v.TYPE[k] = 3;
        v.block[k] = blocks[k - 1] - '0';
        v.collapsed[k] = out.find(labels[k - 1]) != std::string::npos;
    }
    return v;
}

std::string Labels(const HypothesisList& list, const HypothesisVariables& v) {
    std::string text;
    for (const Hypothesis& h : list.rows) text += Hypothesis_label(h, v.vlabel) + " ";
    return text;
}

std::string Defined(const HypothesisVariables& v, std::vector<std::pair<int, int>> pairs) {
    return Labels(Define_hypotheses(v, pairs), v);
}

TEST(Hypotheses, ConditionOnTheBlockOfTheFirstVariableAndLaterOnes) {
    const HypothesisVariables v = Variables("SCAG", "1233");
    EXPECT_EQ(Defined(v, {{1, 2}}), "S&C|AG ");
    EXPECT_EQ(Defined(v, {{4, 3}}), "A&G ");
    EXPECT_EQ(Defined(v, {{5, 2}}), "S&C|AG C&A|G C&G|A ");
    EXPECT_EQ(Defined(v, {{5, 5}}), "S&C|AG S&A|CG S&G|CA C&A|G C&G|A A&G ");
    EXPECT_EQ(Defined(v, {{2, 2}}), "");
    EXPECT_EQ(Defined(v, {{2, 3}, {3, 2}, {1, 4}}), "S&G|CA C&A|G ");
}

TEST(Hypotheses, LeaveCollapsedVariablesOut) {
    const HypothesisVariables v = Variables("SCAG", "1111", "A");
    const std::pair<int, int> all{9, 9};
    const HypothesisList list = Define_hypotheses(v, {&all, 1});
    EXPECT_EQ(Labels(list, v), "S&C|G S&G|C C&G|S ");
    EXPECT_EQ(list.collapsed_over, std::vector<int>{3});
    EXPECT_EQ(Labels(Three_way_hypotheses(v), v), "S&C|G S&G|C C&G|S ");
    EXPECT_EQ(Labels(Elaborate_hypotheses(v, 1, 2, 2), v), "S&C|G ");
}

TEST(Hypotheses, ThreeWayTakesThePairsOfTheFirstBlock) {
    const HypothesisVariables v = Variables("ABCD", "1122");
    EXPECT_EQ(Labels(Three_way_hypotheses(v), v),
              "A&B|C A&B|D A&C|B A&C|D A&D|B A&D|C B&C|A B&C|D B&D|A B&D|C ");
}

TEST(Hypotheses, ElaborateTakesSmallerSetsFirst) {
    const HypothesisVariables v = Variables("ABCDE", "11122");
    EXPECT_EQ(Labels(Elaborate_hypotheses(v, 2, 1, 2), v),
              "A&B|C A&B|D A&B|E A&B|CD A&B|CE A&B|DE ");
    EXPECT_EQ(Labels(Elaborate_hypotheses(v, 1, 2, 99), v),
              "A&B|C A&B|D A&B|E A&B|CD A&B|CE A&B|DE A&B|CDE ");
    EXPECT_EQ(Labels(Elaborate_hypotheses(v, 4, 5, 1), v), "");
}

TEST(Hypotheses, StopAtTheLimit) {
    const std::string labels(MaxVariables, 'x');
    const HypothesisVariables v = Variables(labels, std::string(MaxVariables, '1'));
    const std::pair<int, int> all{99, 99};
    EXPECT_EQ(Define_hypotheses(v, {&all, 1}).rows.size(), 59U * 58 / 2);
    EXPECT_FALSE(Define_hypotheses(v, {&all, 1}).over_limit);
    for (const HypothesisList& list :
         {Three_way_hypotheses(v), Elaborate_hypotheses(v, 1, 2, 30)}) {
        EXPECT_EQ(list.rows.size(), 2500U);
        EXPECT_TRUE(list.over_limit);
    }
}

TEST(Hypotheses, GiveARoleToEachNumber) {
    const int z[] = {2, 5};
    const Hypothesis h = Make_hypothesis(6, 4, 1, z);
    EXPECT_EQ(std::string(h.HypothesisRole, h.HypothesisRole + 8),
              (std::string{1, 2, 0, 1, 2, 0, 3, 3}));
    EXPECT_EQ(Tested_pair(h).X, 1);
    EXPECT_EQ(Tested_pair(h).Y, 4);
    EXPECT_EQ(Conditioning_variables(h), (std::vector<int>{2, 5}));
    EXPECT_FALSE(Tested_pair(Hypothesis{}).proper());
}

}  // namespace
}  // namespace tarven
