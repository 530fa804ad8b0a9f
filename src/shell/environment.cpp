#include "shell/environment.h"

#include <fmt/format.h>

#include "shell/fields.h"
#include "shell/session.h"
#include "shell/settings.h"

namespace tarven {

namespace {

void Append(std::vector<std::string>& lines, const std::function<std::vector<std::string>()>& more,
            const std::vector<std::string>& otherwise) {
    Append_lines(lines, more ? more() : otherwise);
}

std::string Kind_of_tests() {
    if (!The_settings.ExactTests) return " - Asymptotic p-values";
    if (The_settings.SequentialTests)
        return fmt::format(" - Repeated Monte Carlo tests ({})", The_settings.Nsim);
    return fmt::format(" - Monte Carlo tests ({})", The_settings.Nsim);
}

}  // namespace

std::vector<std::string> Environment_lines() {
    const EnvironmentSources& sources = The_environment_sources;
    const std::string rule(60, '-');
    std::vector<std::string> lines = {rule, "ENVIRONMENT:"};
    Append(lines, sources.data, {" In memory :     DATA     -    not ready"});
    Append(lines, sources.table, {"                 Table    -    not ready"});
    lines.push_back("          SCREEN-RESULTS  -    not ready");
    lines.push_back("Command line: " + The_session.arguments);
    lines.push_back(rule);
    if (sources.hypotheses_exist && sources.hypotheses_exist()) lines.push_back("Hypotheses exist");
    lines.push_back("Statistical tests:");
    lines.push_back(Kind_of_tests());
    if (The_settings.LocalTests) lines.push_back(" - Local test results will be reported");
    if (The_settings.PartialTests)
        lines.push_back(" - Tests against partial association will be reported");
    Append(lines, sources.screening, {});
    return lines;
}

}  // namespace tarven
