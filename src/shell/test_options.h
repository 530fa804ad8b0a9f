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

/// Every parameter is one of O M T R C E F K G Q D Z J L P; true without parameters.
bool Valid_test_parameters(const ParsedLine& line);

/// The letters as flags. F counts only with a fitted table at hand; R, C, J, E, F and Z print the
/// table, T prints it with row percentages, and Z brings row percentages.
TestOptions Test_parameters(const ParsedLine& line, bool fitted_table_ready);

}  // namespace tarven
