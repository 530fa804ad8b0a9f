#include "shell/environment.h"

#include <fmt/format.h>

#include "shell/fields.h"
#include "shell/session.h"
#include "shell/settings.h"

namespace tarven {

namespace {

struct Contribution {
    EnvironmentPart part;
    std::function<std::vector<std::string>()> lines;
};

std::vector<Contribution>& Contributions() {
    static std::vector<Contribution> contributions;
    return contributions;
}

void Append_part(std::vector<std::string>& lines, EnvironmentPart part) {
    for (const Contribution& contribution : Contributions())
        if (contribution.part == part) Append_lines(lines, contribution.lines());
}

std::string Kind_of_tests() {
    if (!The_settings.ExactTests) return " - Asymptotic p-values";
    if (The_settings.SequentialTests)
        return fmt::format(" - Repeated Monte Carlo tests ({})", The_settings.Nsim);
    return fmt::format(" - Monte Carlo tests ({})", The_settings.Nsim);
}

}  // namespace

void Register_environment(EnvironmentPart part, std::function<std::vector<std::string>()> lines) {
    Contributions().push_back({part, std::move(lines)});
}

std::vector<std::string> Environment_lines() {
    const std::string rule(60, '-');
    std::vector<std::string> lines = {rule, "ENVIRONMENT:"};
    Append_part(lines, EnvironmentPart::in_memory);
    lines.push_back("Command line: " + The_session.arguments);
    lines.push_back(rule);
    Append_part(lines, EnvironmentPart::above_tests);
    lines.push_back("Statistical tests:");
    lines.push_back(Kind_of_tests());
    if (The_settings.LocalTests) lines.push_back(" - Local test results will be reported");
    if (The_settings.PartialTests)
        lines.push_back(" - Tests against partial association will be reported");
    return lines;
}

}  // namespace tarven
