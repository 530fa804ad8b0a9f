#include "graph/model/gamma_file.h"

#include <fmt/format.h>

#include <cmath>

#include "graph/sets/variable_set.h"
#include "shell/fields.h"
#include "shell/words.h"

namespace tarven {

namespace {

constexpr double NoGamma = 999;
constexpr double NominalPair = 888;

bool Is_gamma(double value) {
    return std::abs(value) <= 1;
}

/// The value of a word; false when it is neither a gamma nor a mark that there is none.
bool Gamma_of_word(const std::string& word, double& value) {
    if (!To_real(word, value)) return false;
    if (Is_gamma(value)) return true;
    if (value != NoGamma && value != NominalPair) return false;
    value = NoGamma;
    return true;
}

}  // namespace

std::vector<std::string> GAM_lines(std::span<const double> gammas, int nvar) {
    std::vector<std::string> lines;
    const auto n = static_cast<std::size_t>(nvar);
    for (std::size_t i = 0; i < n; ++i) {
        std::string line;
        for (std::size_t j = 0; j < n; ++j) {
            const double gamma = gammas[i * n + j];
            line += Is_gamma(gamma) ? Field(gamma, 7, 3) : "    999";
        }
        lines.push_back(line);
    }
    return lines;
}

Result<std::vector<double>> Read_gamma_file(const std::vector<std::string>& lines, int nvar,
                                            const std::string& name) {
    const auto refused = [&] {
        return Failed{{name + " is not compatible with the project graph"}};
    };
    std::size_t last = lines.size();
    while (last > 0 && Word_count(lines[last - 1]) == 0) --last;
    if (last != static_cast<std::size_t>(nvar)) return refused();
    std::vector<double> gammas;
    for (std::size_t i = 0; i < last; ++i) {
        if (Word_count(lines[i]) != nvar) return refused();
        for (int j = 1; j <= nvar; ++j) {
            double value = 0;
            const std::string word = Get_word(j, lines[i]);
            if (!Gamma_of_word(word, value)) {
                Failed failed = refused();
                failed.messages.push_back(fmt::format("{}, line {}: {} is no gamma coefficient",
                                                      name, i + 1, word.substr(0, 40)));
                return failed;
            }
            gammas.push_back(value);
        }
    }
    return gammas;
}

std::vector<std::pair<int, int>> Make_symmetric(std::span<double> gammas, int nvar) {
    std::vector<std::pair<int, int>> pairs;
    const auto n = static_cast<std::size_t>(nvar);
    for (int i = 1; i <= nvar; ++i)
        for (int j = i + 1; j <= nvar; ++j) {
            const double gamma = gammas[At(i - 1) * n + At(j - 1)];
            double& mirrored = gammas[At(j - 1) * n + At(i - 1)];
            if (mirrored != gamma) pairs.emplace_back(i, j);
            mirrored = gamma;
        }
    return pairs;
}

}  // namespace tarven
