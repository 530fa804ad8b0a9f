#pragma once

#include "shell/parsed_line.h"

namespace tarven {

/// What the option letters of TEST ask for.
struct TestOptions {
    bool PrintTable = false;          ///< O
    bool PrintMarginals = false;      ///< M
    bool RowPercentages = false;      ///< R
    bool ColumnPercentages = false;   ///< C
    bool JointProbabilities = false;  ///< J
    bool ExpectedCounts = false;      ///< E
    bool FittedCounts = false;        ///< F
    bool CollapseAnalysis = false;    ///< K
    bool PseudoGamma = false;         ///< G
    bool PowerSeries = false;         ///< Q
    bool NoObservedCounts = false;    ///< Z
    bool PartialOutput = false;       ///< P
    bool LocalGammas = false;         ///< L
    bool Homogeneity = false;         ///< D

    bool operator==(const TestOptions&) const = default;
};

/// One option letter of TEST and what it asks for, for the completion of a typed line.
struct TestLetter {
    char letter;
    const char* summary;
};

/// The option letters, in the order of the help text.
inline constexpr TestLetter Test_letters[] = {{'O', "the tables"},
                                              {'T', "tables with row percentages"},
                                              {'R', "row percentages"},
                                              {'C', "column percentages"},
                                              {'J', "joint percentages"},
                                              {'E', "expected counts"},
                                              {'Z', "row percentages only"},
                                              {'M', "marginal strata too"},
                                              {'F', "fitted counts of the model"},
                                              {'L', "local gammas"},
                                              {'D', "homogeneity of gammas"},
                                              {'G', "pseudo gamma"},
                                              {'K', "collapsing categories"},
                                              {'Q', "power series"},
                                              {'P', "reserved"}};

/// Every parameter is one of the option letters; true without parameters.
bool Valid_test_parameters(const ParsedLine& line);

/// The letters as flags. F counts only with a fitted table at hand; R, C, J, E, F and Z print the
/// table, T prints it with row percentages, and Z brings row percentages.
TestOptions Test_parameters(const ParsedLine& line, bool fitted_table_ready);

}  // namespace tarven
