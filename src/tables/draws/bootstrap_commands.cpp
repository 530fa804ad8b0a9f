#include "tables/draws/bootstrap_commands.h"

#include <fmt/format.h>

#include <limits>

#include "shell/commands.h"
#include "shell/lifecycle.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/settings.h"
#include "shell/user.h"
#include "tables/draws/bootstrap.h"
#include "tables/numbers/stream_workspace.h"

namespace tarven {

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
    Run_moment(Moment::data_replaced);
    Write_report(fmt::format("Bootstrap sample {}: {} cells", ++b.samples, The_data.Ntabcells));
    return Outcome::done;
}

Outcome End() {
    if (!The_bootstrap.active) return Refuse("Bootstrap samples have not been initialised");
    The_data = std::move(The_bootstrap.original);
    Run_moment(Moment::data_replaced);
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
