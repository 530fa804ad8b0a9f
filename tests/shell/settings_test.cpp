// The settings of tests as their commands leave them, and the status fields that show them.

#include "shell/settings.h"

#include <gtest/gtest.h>

#include "shell/session.h"
#include "shell/stop_rule.h"
#include "support/session.h"

namespace tarven {
namespace {

struct Settings : SessionTest {};

struct Expected {
    const char* line;
    std::int32_t Nsim;
    int Seed;
    bool sequential;
    double level, risk, limit, boundary;
    const char* status;
};

// Each line starts from a REP whose every field differs from all defaults, so that what a command
// leaves alone shows.
TEST_F(Settings, TakeTheNumbersOfMonteCarloCommands) {
    const double standard = Repeat_boundary(0.05, 500, 0.001);
    const double wide = Repeat_boundary(0.1, 700, 0.01);
    const Expected rows[] = {
        {"EXA 1000 300", 1000, 44, false, 0.1, 0.01, 1000, wide,
         "Exact tests NSIM = 1000  SEED = 44"},
        {"EXA", 1000, 9, false, 0.1, 0.01, 1000, wide, "Exact tests NSIM = 1000  SEED = 9"},
        {"EXACT 250", 250, 9, false, 0.1, 0.01, 250, wide, "Exact tests NSIM = 250  SEED = 9"},
        {"REP 500 9 50 1", 500, 9, true, 0.05, 0.001, 20, standard,
         "Rep. MC tests NSIM = 500  SEED = 9"},
        {"REP 500 12 250", 500, 12, true, 0.05, 0.001, 20, standard,
         "Rep. MC tests NSIM = 500  SEED = 12"},
        {"REP", 1000, 9, true, 0.05, 0.001, 20, Repeat_boundary(0.05, 1000, 0.001),
         "Rep. MC tests NSIM = 1000  SEED = 9"},
        {"SEQ 1000 9 30", 1000, 9, true, 0.03, 0, 30, 1000, "Seq. MC tests NSIM = 1000  SEED = 9"},
        {"SEQ 800 256", 800, 0, true, 0.05, 0, 20, 1000, "Seq. MC tests NSIM = 800  SEED = 0"},
    };
    for (const Expected& row : rows) {
        Run({"REP 700 77 100 10", row.line});
        EXPECT_EQ(The_settings.Nsim, row.Nsim) << row.line;
        EXPECT_EQ(The_settings.Seed, row.Seed) << row.line;
        EXPECT_TRUE(The_settings.ExactTests) << row.line;
        EXPECT_EQ(The_settings.SequentialTests, row.sequential) << row.line;
        EXPECT_DOUBLE_EQ(The_settings.RepeatedLevel1, row.level) << row.line;
        EXPECT_DOUBLE_EQ(The_settings.RepeatedLevel2, row.risk) << row.line;
        EXPECT_EQ(The_settings.SequentialLimit, row.limit) << row.line;
        EXPECT_EQ(The_settings.SimBoundary, row.boundary) << row.line;
        EXPECT_EQ(The_settings.SimulatedTablesCriterion, row.Nsim) << row.line;
        EXPECT_EQ(The_session.test_status, row.status);
    }
}

TEST_F(Settings, SurviveNumbersThatOverflow) {
    Run({"EXA 99999999999999999999 4294967295"});
    EXPECT_GE(The_settings.Nsim, 0);
    EXPECT_EQ(The_settings.Seed, 255) << "all ones in 32 bits, reduced modulo 256";
    Run({"EXA 2147483648"});
    EXPECT_EQ(The_settings.Nsim, 0) << "a number that wraps to a negative one means no tables";
}

TEST_F(Settings, ReturnToAsymptoticTestsKeepingTheNumbers) {
    Run({"SEQ 300 17 40", "ASY"});
    EXPECT_FALSE(The_settings.ExactTests);
    EXPECT_FALSE(The_settings.SequentialTests);
    EXPECT_EQ(The_settings.Nsim, 300);
    EXPECT_EQ(The_settings.Seed, 17);
    EXPECT_EQ(The_session.test_status, "                Asymptotic tests");
}

TEST_F(Settings, TurnFlagsOnAndOffAndSaySo) {
    struct Row {
        const char* line;
        bool TestSettings::*flag;
        bool value;
        const char* says;
    };
    const Row rows[] = {
        {"LOC", &TestSettings::LocalTests, true, "Local test results will be reported"},
        {"GLO", &TestSettings::LocalTests, false, "Global test results will be reported"},
        {"PAR", &TestSettings::PartialTests, true,
         "Tests against partial association will be reported"},
        {"NPA", &TestSettings::PartialTests, false,
         "Tests against partial association will not be reported"},
        {"TWO", &TestSettings::TwoSided, true, "2-sided p-values for Gamma coefficients"},
        {"ONE", &TestSettings::TwoSided, false, "1-sided p-values for Gamma coefficients"},
    };
    for (const Row& row : rows) {
        TestSettings expected = The_settings;
        expected.*row.flag = row.value;
        EXPECT_EQ(Run({row.line}), std::vector<std::string>{row.says});
        EXPECT_EQ(The_settings, expected) << row.line << " changes one flag and nothing else";
        EXPECT_EQ(The_session.sides_status.substr(17, 1), The_settings.TwoSided ? "2" : "1");
    }
}

TEST_F(Settings, NameOneStatistic) {
    const std::pair<const char*, const char*> rows[] = {
        {"DEV", "G\xB2"}, {"POW", "D\xB2"}, {"DEV", "G\xB2"}, {"POW", "D\xB2"}, {"CHI", "X\xB2"}};
    EXPECT_EQ(Statistic_symbol(The_settings), "X\xB2") << "at the start";
    for (const auto& [line, symbol] : rows) {
        Run({line});
        EXPECT_EQ(Statistic_symbol(The_settings), symbol) << line;
    }
}

}  // namespace
}  // namespace tarven
