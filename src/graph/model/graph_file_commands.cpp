#include "graph/model/graph_file_commands.h"

#include <fmt/format.h>

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include "graph/model/gamma_file.h"
#include "graph/model/graph_workspace.h"
#include "graph/model/named_graph_workspace.h"
#include "graph/model/placement.h"
#include "project/project.h"
#include "project/project_files.h"
#include "project/report_commands.h"
#include "shell/command_table.h"
#include "shell/commands.h"
#include "shell/dispatcher.h"
#include "shell/files.h"
#include "shell/lifecycle.h"
#include "shell/parsed_line.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "shell/text.h"
#include "shell/user.h"
#include "shell/words.h"
#include "tables/ordinal/gammas_workspace.h"

namespace tarven {

namespace {

namespace fs = std::filesystem;

std::string GRF_name() {
    return Path_text(The_project.files.GRF.path.filename());
}

/// Looks again, since a graph may have been saved, or put there, after the opening.
bool GRF_is_there() {
    ProjectFile& GRF = The_project.files.GRF;
    const auto found = GRF.path.empty() ? std::nullopt : Find_file(GRF.path);
    GRF.exists = found.has_value();
    if (found) GRF.path = *found;
    return GRF.exists;
}

/// What stands in the place of the GRF file and is none; empty when a file or nothing does.
std::string What_stands_for_GRF() {
    return GRF_is_there() ? "" : Why_no_file(The_project.files.GRF.path);
}

fs::path GAM_of_project() {
    return Project_file(The_project.ProjectPath, The_project.Projectname, "GAM").path;
}

/// Whether two names lead to one file, which need not exist yet. Case makes no other file.
bool Is_same_path(const fs::path& one, const fs::path& other) {
    std::error_code error;
    const auto led_to = [&error](const fs::path& path) {
        return Upper(fs::absolute(Behind_links(path), error).lexically_normal().string());
    };
    return fs::equivalent(one, other, error) || led_to(one) == led_to(other);
}

/// Replaces a file of the graph, GRF or GAM; `beside` is the other one. Definitions and data are
/// never written over, nor the other file, also where the DEF file or a link gives the graph one of
/// their names. Why it failed, or empty.
std::string Write_graph_lines(const fs::path& path, const fs::path& beside,
                              const std::vector<std::string>& lines) {
    const ProjectFiles& files = The_project.files;
    bool taken = Is_same_path(path, beside);
    for (const ProjectFile* file : {&files.DEF, &files.VAR, &files.CAT, &files.DAT, &files.SYS,
                                    &files.TAB, &files.EXA, &files.BEL})
        taken = taken || Is_same_path(path, file->path);
    if (taken)
        return Path_text(path) + " holds other data of the project: no graph is written there";
    return Write_text_file(path, lines);
}

/// Writes the current model on the GRF file. Why that failed, or empty.
std::string Write_project_graph() {
    ProjectFile& GRF = The_project.files.GRF;
    GRF.path = Existing_or(GRF.path);
    std::string failure = Write_graph_lines(GRF.path, GAM_of_project(),
                                            GRF_lines(The_graph.model, Names_of_variables()));
    if (!failure.empty()) return failure;
    GRF.exists = true;
    The_graph.changed = false;
    The_graph.file_is_whole = true;
    return "";
}

// Gamma files.

fs::path GAM_beside(const fs::path& GRF) {
    fs::path GAM = GRF;
    return GAM.replace_extension(".GAM");
}

/// Names the pairs with two gammas, of which the first stays.
void Tell_asymmetric(std::vector<double>& gammas, const std::string& name) {
    const std::string& labels = The_graph.model.Labels;
    std::string pairs;
    for (const auto& [i, j] : Make_symmetric(gammas, The_graph.model.nvar))
        pairs += fmt::format(" {}{}", labels[At(i - 1)], labels[At(j - 1)]);
    if (!pairs.empty())
        ShowMessage("WARNING - Non-symmetrical gamma values on " + name + ":" + pairs);
}

/// Reads the gammas of the current model; false, with the message, when they are not its.
bool Read_gammas(const fs::path& path) {
    const std::string name = Path_text(path.filename());
    const TextFile file = Read_text_file(path);
    if (!file.ok) {
        ShowMessage(file.error);
        return false;
    }
    auto gammas = Read_gamma_file(file.lines, The_graph.model.nvar, name);
    if (!gammas) {
        Refuse(gammas.failure());
        return false;
    }
    Tell_asymmetric(*gammas, name);
    The_project_gammas = {.IJXgamma = std::move(*gammas), .ready = true, .from_file = true};
    ShowMessage("Gamma values from " + name +
                " .They may not be consistent with the current model.");
    return true;
}

void Read_gammas_found(const fs::path& GAM) {
    const auto found = Find_file(GAM);
    if (const std::string why = found ? "" : Why_no_file(GAM); !why.empty())
        ShowMessage(why + ": no gamma values are read");
    if (!found) return;
    ShowMessage("Gamma values have been found on " + Path_text(found->filename()) +
                ". They will be read.");
    Read_gammas(*found);
}

// Opening and exit.

/// Reads the GRF file into the workspace. False, with the message, when it gives no graph of the
/// project; the graph before it stays.
bool Read_project_graph() {
    const NamedGraphFile read = Read_graph_of_project(The_project.files.GRF.path);
    if (!read.ok) return false;
    Start_model(read.graph, read.whole);
    The_graph.model.source = GraphSource::GRF_file;
    return true;
}

void Read_graph_at_opening() {
    if (The_project.N < 1) return;
    const bool there = GRF_is_there();
    if (there && Read_project_graph()) return Read_gammas_found(GAM_of_project());
    Start_model(New_project_graph(Free), false);
    const std::string other = What_stands_for_GRF();
    if (!other.empty()) ShowMessage(other);
    if (there || !other.empty()) ShowMessage(GRF_name() + " is not used. The graph has all edges");
}

/// Coordinates for a graph that has none; true when they were made.
bool Complete_coordinates() {
    if (The_graph.model.coordinates_ready) return false;
    Write_report("project coordinates will be created");
    Place_nodes(The_graph.model);
    Write_report("Project coordinates were created");
    return true;
}

bool Screening_is_there() {
    const Command* screen = Find_command(Command_number("SCR"));
    return screen && screen->run && screen->available;
}

/// A first model of a project without a GRF file.
void Offer_screening() {
    if (The_session.AUTOMATIC) return;
    if (!Screening_is_there()) {
        Write_report("grf file not found. The graph has all edges");
        return;
    }
    if (!AskYesNo("grf file not found. Do you want to screen data before it is created "
                  "(recommended)?"))
        return;
    constexpr std::int32_t ScreeningTables = 200, UsualTables = 1000;
    The_settings.Nsim = ScreeningTables;
    Run_from_code("SCREEN");
    The_settings.Nsim = UsualTables;
}

void Tell_saved(const std::string& failure) {
    ShowMessage(failure.empty() ? "The graph was saved on " + GRF_name() : failure);
}

/// The opening by hand leaves a project with coordinates and a GRF file. A file that was not read
/// whole, or whatever else stands in its place, is the user's to mend.
void Complete_graph_at_opening() {
    if (!Graph_defined()) return;
    const bool created = Complete_coordinates();
    if (!What_stands_for_GRF().empty()) return;
    if (!GRF_is_there()) {
        Offer_screening();
        return Tell_saved(Write_project_graph());
    }
    if (created && The_graph.file_is_whole) Tell_saved(Write_project_graph());
}

/// The exit's question about a changed graph; false keeps the project open.
bool Ask_to_save_graph() {
    if (!The_graph.changed) return true;
    const Answer answer = AskYesNoCancel("Save Graph");
    if (answer == Answer::cancel) return false;
    if (answer == Answer::no) {
        Tell_unsaved_graph();  // nobody may have answered
        return true;
    }
    const std::string failure = Write_project_graph();
    if (failure.empty()) {
        Tell_saved(failure);
        return true;
    }
    Show_machine_failure(failure);
    return !The_user.user.ask_yes_no_cancel;  // a person can still save it elsewhere
}

// Commands.

Outcome Save_project_graph() {
    if (!Needs_hold({NeedsGraph})) return Outcome::refused;
    if (GRF_is_there() && !AskYesNo("Graph file will be overwritten.. OK?")) {
        ShowMessage("Graph was not saved");
        return Outcome::refused;
    }
    const std::string failure = Write_project_graph();
    if (!failure.empty()) {
        Show_machine_failure(failure);
        return Outcome::refused;
    }
    Tell_saved(failure);
    return Outcome::done;
}

/// SAV first.grf: the letters of a name mean nothing.
Outcome Refuse_name(const std::string& name) {
    const std::string files =
        The_project.N > 0 ? GRF_name() + ", SAVE G writes " + Path_text(GAM_of_project().filename())
                          : "project.GRF, SAVE G writes project.GAM";
    ShowMessage(fmt::format("SAVE takes no name of a file: {}. SAVE alone writes {}",
                            Printable(name), files));
    return Outcome::refused;
}

Outcome SAVE() {
    if (The_line.ParameterCount == 0) return Save_project_graph();
    const std::string word = Get_name(2, The_line.CommandLine);
    if (word.find_first_of("./") != std::string::npos) return Refuse_name(word);
    return Run_letters(LetterCommand::save);
}

/// The gammas of the current model on the GAM file, calculated first when there are none: those of
/// a file may be of another model.
void SAVE_G() {
    const auto known = [] {
        const ProjectGammas& gammas = The_project_gammas;
        return gammas.ready && !gammas.marginal && !gammas.from_file;
    };
    if (!known()) Run_from_code("GAM");
    if (!known()) return ShowMessage("Gamma coefficients are not ready");
    const fs::path GAM = GAM_of_project();
    const std::string failure =
        Write_graph_lines(GAM, The_project.files.GRF.path,
                          GAM_lines(The_project_gammas.IJXgamma, The_graph.model.nvar));
    if (!failure.empty()) return Show_machine_failure(failure);
    ShowMessage("Partial gamma coefficients were recalculated and saved on " +
                Path_text(GAM.filename()));
}

void INPUT_G() {
    if (const std::string other = What_stands_for_GRF(); !other.empty()) return ShowMessage(other);
    if (Read_project_graph()) ShowMessage("The graph was read from " + GRF_name());
}

Outcome READ_G() {
    if (!Needs_hold({NeedsGraph})) return Outcome::refused;
    const auto found = Find_file(GAM_of_project());
    if (!found) {
        const std::string why = Why_no_file(GAM_of_project());
        const std::string missing = Path_text(GAM_of_project().filename()) + " does not exist";
        ShowMessage(why.empty() ? missing : why);
        return Outcome::refused;
    }
    return Read_gammas(*found) ? Outcome::done : Outcome::refused;
}

/// A graph file by its name, for the project when the user wants it.
Outcome Read_graph_named(const fs::path& path) {
    const std::string name = Path_text(path.filename());
    const bool own = Is_same_path(path, The_project.files.GRF.path);
    if (own && !AskYesNo(name + " is the project graph. Continue?")) return Outcome::refused;
    const NamedGraphFile read = Read_graph_strictly(path);
    if (!read.ok) return Outcome::refused;
    const std::string why = Incompatibility_with_project(read.graph);
    if (!why.empty()) {
        ShowMessage("The graph is not compatible with the project: " + why);
        return Outcome::refused;
    }
    if (!own && !AskYesNo("The graph is compatible with the project. Do you want to use it as the "
                          "project graph?"))
        return Outcome::refused;
    ChainGraph graph = read.graph;
    graph.source = GraphSource::GRF_file;
    graph.revised = !own;
    if (own)
        Start_model(graph, read.whole);
    else
        Adopt_model(graph, "The model was read from " + name);
    ShowMessage("The graph was read from " + name);
    Read_gammas_found(GAM_beside(path));
    return Outcome::done;
}

Outcome READ() {
    const std::string word = Get_name(2, The_line.CommandLine);
    if (Upper(word) == "G") return READ_G();
    const bool graph = Upper(word).ends_with(".GRF");
    const auto found = graph ? Find_file(Text_path(word)) : std::nullopt;
    if (const std::string why = found ? "" : Why_no_file(Text_path(word)); graph && !why.empty()) {
        ShowMessage(why);
        return Outcome::refused;
    }
    if (!found) return Read_report_file(word);
    if (!Needs_hold({NeedsGraph})) return Outcome::refused;
    Open_report();
    const Outcome outcome = Read_graph_named(*found);
    Close_report();
    return outcome;
}

}  // namespace

void Register_graph_file_commands() {
    At_moment(Moment::project_read, "graph", Read_graph_at_opening);
    At_moment(Moment::project_opened_by_hand, "graph", Complete_graph_at_opening);
    Ask_before_exit("graph", Ask_to_save_graph);
    Register_letter(LetterCommand::input,
                    {.letter = 'G',
                     .run = INPUT_G,
                     .needs = {{[] { return GRF_is_there() || !What_stands_for_GRF().empty(); },
                                "No GRAPH file."}},
                     .summary = "the graph of the GRF file"});
    Register_letter(LetterCommand::save,
                    {.letter = 'G',
                     .run = SAVE_G,
                     .needs = {NeedsGraph},
                     .summary = "gamma coefficients, calculated first when there are none, or "
                                "none but those of a file"});
    Register_command(
        {.keyword = "SAV",
         .run = SAVE,
         .report = Report::opened,
         .spelling = "SAVE",
         .summary = "saves the project graph, gamma values, models and beliefs",
         .help = "SAVE alone saves the project graph on project.GRF, after a question when that\n"
                 "file exists; without an answer nothing is saved. G writes project.GAM. The\n"
                 "report is saved by OUT.\n\n"
                 "Refused without a graph, for the name of a file (a word with a point or a\n"
                 "slash; SAVE R file is another matter), and where project.GRF and project.GAM\n"
                 "lead to one file, or to definitions or data of the project.",
         .letters = LetterCommand::save});
    Register_command(
        {.keyword = "REA",
         .run = READ,
         .spelling = "READ",
         .summary = "adds a report file to the report, or reads a graph or gamma values",
         .help = "READ\nREAD file\nREAD file.GRF\nREAD G\n\n"
                 "Adds the lines of a file, an earlier report say, to this report. At a\n"
                 "terminal the file is asked for when none is named.\n\n"
                 "A file whose name ends in .GRF is read as a graph, strictly: a damaged one is\n"
                 "refused. A graph of the project's variables and blocks becomes the project\n"
                 "graph, after a question; a GAM file beside it is read too. G reads the gamma\n"
                 "coefficients of project.GAM.\n\n"
                 "Examples: REA titanic.rep\n          REA first.grf\n\n"
                 "Refused when the file does not exist, for a graph of another project and for\n"
                 "gamma values of another number of variables."});
}

}  // namespace tarven
