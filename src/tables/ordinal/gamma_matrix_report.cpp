#include "tables/ordinal/gamma_matrix_report.h"

#include <algorithm>

#include "shell/fields.h"
#include "tables/ordinal/mantel_haenszel.h"

namespace tarven {

std::vector<std::string> Gamma_matrix_lines(const GammaMatrix& matrix, bool odds_ratios) {
    constexpr int Width = 7;
    const std::string& labels = matrix.labels;
    std::vector<std::string> lines = {
        odds_ratios
            ? "Generalized odds ratios above, one-sided p-values of gamma below the diagonal"
            : "Gamma coefficients above, one-sided p-values below the diagonal",
        ""};
    std::string head = "  ";
    for (const char label : labels) head += Right(std::string(1, label), Width);
    lines.push_back(head);
    for (std::size_t i = 0; i < labels.size(); ++i) {
        std::string line = std::string(1, labels[i]) + " ";
        for (std::size_t j = 0; j < labels.size(); ++j) {
            if (i == j) {
                line += Right(".", Width);
            } else if (i < j) {
                const double gamma = matrix.At(i, j).gamma;
                const std::string value = !odds_ratios ? Field(gamma, Width, 2)
                                          : gamma < 1
                                              ? Field(Generalized_odds_ratio(gamma), Width, 2)
                                              : Blanks(Width);
                line = Beside(line, value);
            } else {
                line += Field(matrix.At(j, i).p, Width, 3);
            }
        }
        lines.push_back(line);
    }
    const bool unbounded = std::any_of(matrix.gammas.begin(), matrix.gammas.end(),
                                       [](const GammaRecord& one) { return one.gamma >= 1; });
    if (odds_ratios && unbounded)
        lines.push_back("Blank: no discordant pair of cases, so the odds ratio is unbounded");
    return lines;
}

}  // namespace tarven
