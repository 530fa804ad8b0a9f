#pragma once

#include <cstdint>
#include <string>

#include "shell/numbers.h"

namespace tarven {

/// The chi-square-type statistic that all tests use.
enum class Statistic : std::uint8_t { pearson, deviance, power_divergence };

/// The settings of all tests. They survive a change of project; the commands that set them are in
/// test_settings_commands.cpp.
struct TestSettings {
    bool ExactTests = false;       ///< Monte Carlo p-values are wanted
    bool SequentialTests = false;  ///< a stop rule is active (REPEATED or SEQUENTIAL)
    bool LocalTests = false;       ///< results by strata are wanted
    bool PartialTests = false;     ///< tests against the two-factor model
    bool TwoSided = false;         ///< two-sided p-values of gamma
    bool ChiSquare = true;         ///< Pearson's statistic
    bool PowerDivergence = false;  ///< power divergence; neither flag means the deviance

    /// Lambda of the power divergence. Cressie & Read (1984), JRSS B 46, 440-464.
    double PowerLambda = 2.0 / 3.0;
    /// 2 / (lambda (lambda + 1)) at lambda = 2/3.
    Extended PowerFactor = 1.8L;

    std::int32_t Nsim = 0;  ///< random tables for a Monte Carlo p-value
    std::uint8_t Seed = 9;  ///< start of the random stream, one byte

    double RepeatedLevel1 = 0.05;         ///< critical level of the stop rule
    double RepeatedLevel2 = 0.001;        ///< risk of the repeated test; 0 under SEQUENTIAL
    double SimBoundary = 1000;            ///< bound of the stop statistic; 1000 never stops a run
    double SequentialLimit = 20;          ///< a run stops at this count of exceedances
    double SimulatedTablesCriterion = 0;  ///< Nsim as a real, the stop count of EXACT

    bool operator==(const TestSettings&) const = default;
};

inline TestSettings The_settings;

/// Which statistic the two flags name.
inline Statistic Statistic_of(const TestSettings& settings) {
    if (settings.ChiSquare) return Statistic::pearson;
    return settings.PowerDivergence ? Statistic::power_divergence : Statistic::deviance;
}

/// "X", "G" or "D" and a superscript two (Latin-1, code 178), as headings and result lines use it.
inline std::string Statistic_symbol(const TestSettings& settings) {
    switch (Statistic_of(settings)) {
        case Statistic::pearson:
            return "X\xB2";
        case Statistic::deviance:
            return "G\xB2";
        default:
            return "D\xB2";
    }
}

}  // namespace tarven
