#include "project/data_commands.h"

#include <fmt/format.h>

#include "project/data.h"
#include "project/data_listing.h"
#include "project/frequencies_report.h"
#include "project/listed_variables.h"
#include "project/make.h"
#include "project/missing_report.h"
#include "shell/commands.h"
#include "shell/environment.h"
#include "shell/files.h"
#include "shell/lifecycle.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/text.h"
#include "shell/user.h"

namespace tarven {

namespace {

const Need NeedsProject = {[] { return The_project.N > 0; }, "No project"};

void Show_each_line(const std::string& text) {
    for (const std::string& line : Split_lines(text)) ShowMessage(line);
}

/// The variables that the command names; false, with a message, when it names none.
bool Variables_of_command(std::vector<int>& variables) {
    if (Listed_variables(The_line.CommandLine, The_project, variables)) return true;
    ShowMessage("Failure: " + The_line.CommandLine);
    return false;
}

Outcome MAKE() {
    if (Make().SYS) Run_moment(Moment::data_replaced);
    return Outcome::done;
}

Outcome FREQUENCIES() {
    std::vector<int> variables;
    if (!Variables_of_command(variables)) return Outcome::refused;
    LineReader DAT(The_project.files.DAT.path);
    const FrequenciesResult result =
        Count_frequencies(The_project, DAT, variables, Has_parameter('+'));
    if (!result.failure.empty()) {
        SetStatus(5, "Frequency failure");
        ShowMessage(result.failure);
        return Outcome::done;
    }
    SetStatus(5, "");
    Write_header("Frequencies - values refer to values in the original data set");
    Write_lines(Frequencies_lines(The_project, result));
    return Outcome::done;
}

Outcome MISSING() {
    std::vector<int> variables;
    if (!Variables_of_command(variables)) return Outcome::refused;
    MissingResult result;
    const std::string failure =
        Read_cases(Cases_of_project(), Data_source(), Count_missing(variables, result));
    if (!failure.empty()) {
        ShowMessage(failure);
        return Outcome::done;
    }
    std::vector<std::string> labels;
    labels.reserve(variables.size());
    for (const int v : variables)
        labels.emplace_back(1, The_project.variables[static_cast<std::size_t>(v)].label);
    Write_lines(Missing_report_lines(labels, result));
    return Outcome::done;
}

ListingFormat Ask_format() {
    const ListingFormat format =
        Listing_format(AskUser("Print data", "Enter number of cases and formats (a:b)", "10 8:2"));
    if (!format.ok) ShowMessage("A number of records, a width of 1 to 40 and decimals to 15");
    return format;
}

void Write_listing(const Listing& listing) {
    Write_lines(listing.lines);
    if (!listing.failure.empty()) ShowMessage(listing.failure);
    Write_report("");
}

Outcome DATA() {
    std::vector<int> variables;
    if (!Variables_of_command(variables)) return Outcome::refused;
    const ListingFormat format = Ask_format();
    if (!format.ok) return Outcome::refused;
    Write_listing(List_DAT(The_project, variables, format));
    return Outcome::done;
}

Outcome SYS() {
    std::vector<int> variables;
    if (!Variables_of_command(variables)) return Outcome::refused;
    const ListingFormat format = Ask_format();
    if (!format.ok) return Outcome::refused;
    Write_listing(List_SYS(The_project, variables, format));
    Write_listing(List_TAB(The_project, variables, format));
    return Outcome::done;
}

std::vector<std::string> Case_count_lines() {
    return {fmt::format("{} cases in data set", The_project.Nused),
            fmt::format("{} cells in TAB data", The_data.Ntabcells)};
}

Outcome SELECT() {
    Write_underlined("Selection of cases");
    Write_lines(Case_selection_lines(The_project));
    Write_report(fmt::format("{} cases in data set", The_project.Nused));
    return Outcome::done;
}

void SHOW_D() {
    // Files of a project whose definitions could not be read hold no data that can be used.
    if (The_project.N < 1) return ShowMessage(Data_source_text(DataSource::none));
    const DataSource source = Data_source();
    ShowMessage(Data_source_text(source));
    // Nobody has counted the cases of raw data that are read anew for each table.
    if (source != DataSource::datfile) Write_lines(Case_count_lines());
    if (The_data.data_ready) Write_report(fmt::format("DATA in {} arrays", The_data.Ndata_arrays));
    if (The_data.tabdata_ready)
        Write_report(fmt::format("TABdata in {} arrays of cells and {} arrays of counts",
                                 The_data.TABdata.Ntabdata_arrays, The_data.Ntabcount_arrays()));
}

Outcome INPUT() {
    return Run_letters(LetterCommand::input);
}

void INPUT_D() {
    if (The_data.data_ready && !AskYesNo("Erase existing data ?")) return;
    const std::string failure = Read_data();
    if (!failure.empty()) return Show_each_line(failure);
    ShowMessage(fmt::format("{} cases in data set", The_project.Nused));
    Give_up_TABdata_of_other_cases();
    Run_moment(Moment::data_replaced);
}

void INPUT_T() {
    const std::string failure = Read_TAB_file();
    if (!failure.empty()) {
        ShowMessage(failure);
        return;
    }
    const bool given_up = Give_up_TABdata_of_other_cases();
    Run_moment(Moment::data_replaced);
    if (given_up) return;
    ShowMessage(fmt::format("{} cells in TAB data", The_data.Ntabcells));
}

std::vector<std::string> Environment_of_data() {
    std::vector<std::string> lines = {fmt::format(" In memory :     DATA     -  {}",
                                                  The_data.data_ready ? "  ready" : "  not ready")};
    if (!The_project.files.TAB.exists) return lines;
    if (!The_data.tabdata_ready) {
        lines.emplace_back("                 TABDATA  -    not ready");
        return lines;
    }
    lines.push_back(
        fmt::format("                 TABDATA  -    ready {} cells", The_data.Ntabcells));
    lines.push_back(
        fmt::format("    Number of TABdata arrays  = {}", The_data.TABdata.Ntabdata_arrays));
    lines.push_back(fmt::format("    Number of TABcount arrays = {}", The_data.Ntabcount_arrays()));
    return lines;
}

void Register_data_lifecycle() {
    At_moment(Moment::workspace_reset, "project", [] { The_project = Project(); });
    At_moment(Moment::workspace_reset, "data", Dispose_data);
    At_moment(Moment::project_about_to_close, "data", Dispose_data);
    At_moment(Moment::variables_changed, "data", Dispose_data_of_other_variables);
    Register_environment(EnvironmentPart::in_memory, Environment_of_data);
}

}  // namespace

void Register_data_commands() {
    Register_data_lifecycle();
    Register_command({.keyword = "MAK",
                      .run = MAKE,
                      .needs = {NeedsProject},
                      .spelling = "MAKE",
                      .summary = "makes SYS and TAB files from the raw data",
                      .help =
                          "MAKE\n\n"
                          "Reads the DAT file, recodes every case that satisfies the\n"
                          "conditions and selections of the DEF file, and writes the SYS file\n"
                          "(a line for each case) and the TAB file (a line for each response\n"
                          "pattern and its count, in ascending order). Asks before existing\n"
                          "files are overwritten; if anything goes wrong before both new files\n"
                          "are complete the old ones stay as they were. A record that cannot\n"
                          "be read ends the SYS file there, and no TAB file is made. Words that\n"
                          "are no numbers are told with line and column, and so are variables\n"
                          "without an observed case. Opening a project tells when DEF, VAR or\n"
                          "DAT is newer than SYS or TAB: then use MAKE.\n"
                          "Refused without a project and without a DAT file."});
    Register_command({.keyword = "FRE",
                      .run = FREQUENCIES,
                      .needs = {NeedsProject},
                      .report = Report::opened,
                      .spelling = "FREQUENCIES",
                      .summary = "frequencies of raw values and of categories",
                      .help = "FREQUENCIES [variables] [+]\n\n"
                              "Counts the raw values of the DAT file for the variables listed, or\n"
                              "for all, among the cases in use: count, percent and cumulated\n"
                              "percent of each value, then of each category with its range, and\n"
                              "the values below and above all categories, which are missing.\n"
                              "With + the columns of the DAT file that no variable is in follow.\n"
                              "Example: FRE AB +\n"
                              "Refused when a label is unknown or the DAT file cannot be read."});
    Register_command({.keyword = "MIS",
                      .run = MISSING,
                      .needs = {NeedsProject},
                      .report = Report::opened,
                      .spelling = "MISSING",
                      .summary = "missing responses of each variable",
                      .help = "MISSING [variables | *]\n\n"
                              "Counts the observed and missing responses of each variable listed,\n"
                              "or of all, the cases with responses on all of them, and the cases\n"
                              "by their number of missing responses.\n"
                              "Example: MIS ABC\n"
                              "Refused when a label is unknown or there are no data."});
    Register_command({.keyword = "DAT",
                      .run = DATA,
                      .needs = {NeedsProject},
                      .report = Report::opened,
                      .spelling = "DATA",
                      .summary = "lists raw data",
                      .help =
                          "DATA [variables]\n\n"
                          "Asks for a number of records and a format and lists the values of\n"
                          "the first records of the DAT file for the variables listed, or for\n"
                          "all. The answer \"20 6:1\" lists 20 records, each value in 6 columns\n"
                          "with 1 decimal. A word that is no number stands as -999999.\n"
                          "Example: DAT AB\n"
                          "Refused when a label or the format is not understood."});
    Register_command({.keyword = "SYS",
                      .run = SYS,
                      .needs = {NeedsProject},
                      .report = Report::opened,
                      .spelling = "SYS",
                      .summary = "lists recoded data",
                      .help = "SYS [variables]\n\n"
                              "Asks for a number of records and a format, as DATA does, and lists\n"
                              "the codes of the first cases of the SYS file, then of the first\n"
                              "response patterns of the TAB file with their counts. Code 0 is\n"
                              "missing. Decimals are not used.\n"
                              "Example: SYS AB\n"
                              "Refused when a label or the format is not understood."});
    Register_command({.keyword = "SEL",
                      .run = SELECT,
                      .needs = {NeedsProject},
                      .report = Report::opened,
                      .spelling = "SELECT",
                      .summary = "shows the selection of cases",
                      .help = "SELECT\n\n"
                              "Shows the conditions and selections that a case must satisfy, as\n"
                              "the DEF file gives them, and the number of cases in use. They are\n"
                              "changed in the DEF file, followed by INPUT V and MAKE.\n"
                              "Refused without a project."});
    Register_command({.keyword = "INP",
                      .run = INPUT,
                      .needs = {NeedsProject},
                      .spelling = "INPUT",
                      .summary = "reads files of the project again",
                      .help =
                          "Reads files of the project again, in the order of this list. D asks\n"
                          "before cases in memory are given up; T refuses patterns that are not\n"
                          "those of the cases at hand. V also takes the files that DEF names, and\n"
                          "makes names of categories that came from cut points anew.\n\n"
                          "Example: INPUT DT\n\n"
                          "Refused without a letter or a project; a file that does not fit\n"
                          "the variables is not used.",
                      .letters = LetterCommand::input});
    Register_letter(LetterCommand::input,
                    {.letter = 'D',
                     .run = INPUT_D,
                     .needs = {NeedsProject},
                     .report = Report::none,
                     .summary = "the cases, from the SYS file or without one from the DAT file"});
    Register_letter(LetterCommand::input, {.letter = 'T',
                                           .run = INPUT_T,
                                           .needs = {NeedsProject},
                                           .report = Report::none,
                                           .summary = "the response patterns of the TAB file"});
    Register_letter(LetterCommand::show,
                    {.letter = 'D', .run = SHOW_D, .summary = "where the data come from"});
}

}  // namespace tarven
