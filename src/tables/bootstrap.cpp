#include "tables/bootstrap.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "shell/commands.h"
#include "shell/lifecycle.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/settings.h"
#include "shell/user.h"

namespace tarven {

std::int64_t Cases_of(const CellStore& store) {
    std::int64_t cases = 0;
    for (const std::int32_t count : store.counts) cases += count;
    return cases;
}

CellStore Bootstrap_sample(const CellStore& store, std::int32_t cases, RandomStream& stream) {
    std::vector<std::int64_t> up_to;  // cases of all cells up to this one
    std::int64_t total = 0;
    for (const std::int32_t count : store.counts) up_to.push_back(total += count);
    std::vector<std::int32_t> drawn(store.counts.size());
    if (total > 0)
        for (std::int32_t c = 0; c < cases; ++c) {
            const std::int64_t one = Random_int(stream, static_cast<std::uint32_t>(total));
            const auto cell = std::upper_bound(up_to.begin(), up_to.end(), one) - up_to.begin();
            ++drawn[static_cast<std::size_t>(cell)];
        }
    CellStore sample = store;
    sample.codes.clear();
    sample.counts.clear();
    for (std::size_t k = 0; k < drawn.size(); ++k) {
        if (drawn[k] == 0) continue;
        const std::uint8_t* codes = store.Cell(static_cast<std::int64_t>(k) + 1);
        sample.codes.insert(sample.codes.end(), codes, codes + store.N);
        sample.counts.push_back(drawn[k]);
    }
    return sample;
}

namespace {

Outcome Refuse(const std::string& text) {
    ShowMessage(text);
    return Outcome::refused;
}

/// QV7 or QV7 n: the first number of the line is the keyword's own digit.
Outcome Initialise() {
    if (The_bootstrap.active) return Refuse("Bootstrap samples are being drawn already");
    if (!The_data.tabdata_ready) return Refuse("Data is not available");
    const std::int64_t all = Cases_of(The_data.TABdata);
    const std::int64_t wanted = The_line.NumericCount > 1 ? The_line.NumericParameters[1] : all;
    if (all < 1 || all > std::numeric_limits<std::int32_t>::max())
        return Refuse("Data is not available");
    if (wanted < 1) return Refuse("A bootstrap sample needs a case at least");
    The_bootstrap = {};
    The_bootstrap.active = true;
    The_bootstrap.original = The_data;
    The_bootstrap.cases = static_cast<std::int32_t>(wanted);
    Set_seed(The_bootstrap.stream, The_settings.Seed);
    // The cases themselves would be read before the cells.
    The_data.data_ready = false;
    Write_report(fmt::format("Bootstrap samples of {} cases out of {}: seed {}", wanted, all,
                             The_settings.Seed));
    return Outcome::done;
}

Outcome Draw() {
    BootstrapWorkspace& b = The_bootstrap;
    if (!b.active) return Refuse("Bootstrap samples have not been initialised");
    The_stream = b.stream;
    The_data.TABdata = Bootstrap_sample(b.original.TABdata, b.cases, The_stream);
    b.stream = The_stream;
    The_data.Ntabcells = static_cast<std::int32_t>(The_data.TABdata.Ncells());
    Write_report(fmt::format("Bootstrap sample {}: {} cells", ++b.samples, The_data.Ntabcells));
    return Outcome::done;
}

Outcome End() {
    if (!The_bootstrap.active) return Refuse("Bootstrap samples have not been initialised");
    The_data = std::move(The_bootstrap.original);
    Write_report(fmt::format("{} bootstrap samples have been drawn", The_bootstrap.samples));
    The_bootstrap = {};
    return Outcome::done;
}

Command Hidden(const char* keyword, Outcome (*run)(), const char* summary, const char* help) {
    return {.keyword = keyword,
            .run = run,
            .report = Report::opened,
            .summary = summary,
            .help = help,
            .hidden = true};
}

}  // namespace

void Register_bootstrap_commands() {
    Register_command(Hidden("QV7", Initialise, "initialises bootstrap samples",
                            "QV7\nQV7 n\n\nFrom now on TABdata holds bootstrap samples of n cases "
                            "(default as many as there are).\nQV8 draws one, QV9 ends."));
    Register_command(
        Hidden("QV8", Draw, "draws a bootstrap sample",
               "QV8\n\nDraws the next bootstrap sample. TAB then makes tables of it."));
    Register_command(
        Hidden("QV9", End, "ends bootstrap samples", "QV9\n\nPuts the project's own data back."));
    const auto forget = [] { The_bootstrap = {}; };
    At_moment(Moment::workspace_reset, "bootstrap", forget);
    At_moment(Moment::project_about_to_close, "bootstrap", forget);
}

}  // namespace tarven
