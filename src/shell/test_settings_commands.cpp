#include "shell/test_settings_commands.h"

#include <fmt/format.h>

#include "shell/commands.h"
#include "shell/fields.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/test_settings.h"

namespace tarven {

namespace {

/// Number of random tables and seed of a line. A seed is one byte: what is larger is reduced modulo
/// 256. Digits that overflow 32 bits may read as a negative number of tables, which means none.
MonteCarloRun Run_of(const ParsedLine& line) {
    MonteCarloRun run;
    if (line.NumericCount >= 1) run.nsim = line.NumericParameters[0];
    if (line.NumericCount >= 2)
        run.seed = static_cast<std::uint8_t>(line.NumericParameters[1] & 0xFF);
    return run;
}

/// Level and risk in thousandths, only when all four numbers stand.
RepeatRule Repeat_rule_of(const ParsedLine& line) {
    if (line.NumericCount < 4) return {};
    return {.level = line.NumericParameters[2] / 1000.0,
            .risk = line.NumericParameters[3] / 1000.0};
}

/// The third number is the limit and, in thousandths, the level.
SequentialRule Sequential_rule_of(const ParsedLine& line) {
    if (line.NumericCount < 3) return {};
    const std::int32_t third = line.NumericParameters[2];
    return {.level = third / 1000.0, .limit = static_cast<double>(third)};
}

/// A command that stores settings and says one thing.
Command Setting(std::string keyword, std::string spelling, std::function<Outcome()> run,
                std::string summary, std::string help) {
    return {.keyword = std::move(keyword),
            .run = std::move(run),
            .report = Report::opened,
            .spelling = std::move(spelling),
            .summary = std::move(summary),
            .help = std::move(help)};
}

/// Sets one flag and reports what it means.
std::function<Outcome()> Flag(bool TestSettings::*flag, bool value, std::string says) {
    return [flag, value, says = std::move(says)] {
        The_settings.*flag = value;
        Write_report(says);
        return Outcome::done;
    };
}

std::function<Outcome()> Statistic_choice(bool chi_square, bool power, std::string says) {
    return [chi_square, power, says = std::move(says)] {
        The_settings.ChiSquare = chi_square;
        The_settings.PowerDivergence = power;
        Write_report(says);
        return Outcome::done;
    };
}

std::string Monte_carlo_line(std::string_view kind) {
    return fmt::format("{}: NSIM = {}  SEED = {}", kind, The_settings.Nsim, The_settings.Seed);
}

Outcome EXACT() {
    The_settings = Exact_settings(The_settings, Run_of(The_line));
    Write_report(Monte_carlo_line("Monte Carlo tests"));
    return Outcome::done;
}

Outcome REPEATED() {
    The_settings = Repeated_settings(The_settings, Run_of(The_line), Repeat_rule_of(The_line));
    Write_report(Monte_carlo_line("Repeated Monte Carlo tests"));
    Write_report(fmt::format("critical level = {}  risk = {}",
                             Field(The_settings.RepeatedLevel1, 5, 3),
                             Field(The_settings.RepeatedLevel2, 5, 3)));
    return Outcome::done;
}

Outcome SEQUENTIAL() {
    The_settings =
        Sequential_settings(The_settings, Run_of(The_line), Sequential_rule_of(The_line));
    Write_report(Monte_carlo_line("Sequential Monte Carlo tests"));
    Write_report("sequential test - limit = " + Field(The_settings.SequentialLimit, 5, 0));
    return Outcome::done;
}

Outcome ASYMPTOTIC() {
    The_settings = Asymptotic_settings(The_settings);
    Write_report("Asymptotic p-values");
    return Outcome::done;
}

constexpr const char* ExactHelp =
    "EXACT\n"
    "EXACT nsim\n"
    "EXACT nsim seed\n"
    "\n"
    "Tests from now on have Monte Carlo exact p-values besides the asymptotic ones, from nsim\n"
    "random tables with the margins of each stratum (default 1000). The seed, 0 to 255, starts\n"
    "the random numbers; it is 9 unless it is given, and a larger number is reduced modulo 256.\n"
    "The same seed gives the same p-values.\n"
    "\n"
    "Example: EXA 10000 17";

constexpr const char* RepeatedHelp =
    "REPEATED\n"
    "REPEATED nsim\n"
    "REPEATED nsim seed\n"
    "REPEATED nsim seed level risk\n"
    "\n"
    "As EXACT, but a hypothesis ends as soon as its p-value is surely above the level: after 20\n"
    "tables at least as extreme as the observed one, or when their number passes the bound of the\n"
    "repeated Monte Carlo test. level and risk are in thousandths (default 50 and 1, that is 0.05\n"
    "and 0.001) and are read only when all four numbers stand. The bound is tabulated for levels\n"
    "of 0.05, 0.1 and 0.25 and risks of 0.001, 0.005, 0.01, 0.02 and 0.05; others are taken to\n"
    "one of these.\n"
    "\n"
    "Example: REP 1000 9 50 1";

constexpr const char* SequentialHelp =
    "SEQUENTIAL\n"
    "SEQUENTIAL nsim seed\n"
    "SEQUENTIAL nsim seed limit\n"
    "\n"
    "As EXACT, but a hypothesis ends after as many tables at least as extreme as the observed one\n"
    "as the limit says (default 20).\n"
    "\n"
    "Example: SEQ 1000 9 30";

}  // namespace

void Register_test_settings_commands() {
    Register_command(Setting("EXA", "EXACT", EXACT, "Monte Carlo exact p-values", ExactHelp));
    Register_command(Setting("REP", "REPEATED", REPEATED,
                             "Monte Carlo exact p-values by repeated tests", RepeatedHelp));
    Register_command(Setting("SEQ", "SEQUENTIAL", SEQUENTIAL,
                             "Monte Carlo exact p-values by sequential tests", SequentialHelp));
    Register_command(Setting("ASY", "ASYMPTOTIC", ASYMPTOTIC, "asymptotic p-values alone",
                             "ASYMPTOTIC\n\nTests have asymptotic p-values alone. The number of\n"
                             "random tables and the seed are kept."));
    Register_command(Setting(
        "LOC", "LOCAL",
        Flag(&TestSettings::LocalTests, true, "Local test results will be reported"),
        "tests report the results of every stratum",
        "LOCAL\n\n"
        "From now on TES and CHO look into the strata of each hypothesis X & Y given Z.\n"
        "Behind its line follow, for each conditioning variable, the statistic, its degrees\n"
        "of freedom, gamma and their p-values within each category, and the number of\n"
        "strata by the sign and the p-value of gamma. With letters of TES that print\n"
        "tables (TES R) the table of every stratum stands before, with its own results;\n"
        "such a letter turns LOCAL on as well.\n"
        "\n"
        "GLOBAL turns it off.\n"
        "\n"
        "Example: LOC, then TAB SCG, HYP SG and TES"));
    Register_command(Setting(
        "GLO", "GLOBAL",
        Flag(&TestSettings::LocalTests, false, "Global test results will be reported"),
        "tests report one line per hypothesis", "GLOBAL\n\nTests report one line per hypothesis."));
    Register_command(
        Setting("PAR", "PARTIAL",
                Flag(&TestSettings::PartialTests, true,
                     "Tests against partial association will be reported"),
                "adds tests against the two-factor model",
                "PARTIAL\n\nLocal tests of a hypothesis X&Y|Z are followed by the test against\n"
                "the model with all two-factor interactions (XY, XZ, YZ)."));
    Register_command(Setting("NPA", "NPARTIAL",
                             Flag(&TestSettings::PartialTests, false,
                                  "Tests against partial association will not be reported"),
                             "no tests against the two-factor model",
                             "NPARTIAL\n\nTurns PARTIAL off."));
    Register_command(
        Setting("ONE", "ONESIDED",
                Flag(&TestSettings::TwoSided, false, "1-sided p-values for Gamma coefficients"),
                "one-sided p-values of gamma",
                "ONESIDED\n\nP-values of gamma coefficients are one-sided."));
    Register_command(
        Setting("TWO", "TWOSIDED",
                Flag(&TestSettings::TwoSided, true, "2-sided p-values for Gamma coefficients"),
                "two-sided p-values of gamma",
                "TWOSIDED\n\nP-values of gamma coefficients are two-sided."));
    Register_command(Setting("CHI", "CHISQUARE",
                             Statistic_choice(true, false, "Pearson's chi square will be used"),
                             "tests use Pearson's chi square",
                             "CHISQUARE\n\nTests use the Pearson statistic, the sum of\n"
                             "(n - e)^2 / e."));
    Register_command(Setting("DEV", "DEVIANCE",
                             Statistic_choice(false, false, "The deviance will be used"),
                             "tests use the deviance",
                             "DEVIANCE\n\nTests use the deviance (likelihood ratio),\n"
                             "2 times the sum of n ln(n / e)."));
    Register_command(Setting("POW", "POWER",
                             Statistic_choice(false, true, "The power divergence will be used"),
                             "tests use the power divergence",
                             "POWER\n\nTests use the power divergence of Cressie and Read with\n"
                             "lambda = 2/3: 1.8 times the sum of n ((n / e)^(2/3) - 1)."));
}

}  // namespace tarven
