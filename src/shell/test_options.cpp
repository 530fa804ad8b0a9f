#include "shell/test_options.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace tarven {

bool Valid_test_parameters(const ParsedLine& line) {
    const std::string_view parameters(line.ParameterField.data(), line.ParameterCount);
    return std::all_of(parameters.begin(), parameters.end(), [](char parameter) {
        return std::any_of(std::begin(Test_letters), std::end(Test_letters),
                           [&](const TestLetter& option) { return option.letter == parameter; });
    });
}

TestOptions Test_parameters(const ParsedLine& line, bool fitted_table_ready) {
    const auto has = [&](char letter) { return Has_parameter(line, letter); };
    TestOptions options;
    options.PrintTable = has('O');
    options.PrintMarginals = has('M');
    options.RowPercentages = has('R');
    options.ColumnPercentages = has('C');
    options.JointProbabilities = has('J');
    options.ExpectedCounts = has('E');
    options.FittedCounts = has('F') && fitted_table_ready;
    options.CollapseAnalysis = has('K');
    options.PseudoGamma = has('G');
    options.PowerSeries = has('Q');
    options.NoObservedCounts = has('Z');
    options.PartialOutput = has('P');
    options.LocalGammas = has('L');
    options.Homogeneity = has('D');
    if (options.RowPercentages || options.ColumnPercentages || options.JointProbabilities ||
        options.ExpectedCounts || options.FittedCounts || options.NoObservedCounts)
        options.PrintTable = true;
    if (has('T')) options.PrintTable = options.RowPercentages = true;
    if (options.NoObservedCounts) options.RowPercentages = true;
    return options;
}

}  // namespace tarven
