#include "project/revise.h"

#include <fmt/format.h>

#include <system_error>

#include "project/cat_file.h"
#include "project/data.h"
#include "project/def_file.h"
#include "project/edited_copy.h"
#include "project/make.h"
#include "project/open_project.h"
#include "project/project_files.h"
#include "project/project_report.h"
#include "project/var_file.h"
#include "shell/commands.h"
#include "shell/dispatcher.h"
#include "shell/files.h"
#include "shell/lifecycle.h"
#include "shell/report.h"
#include "shell/user.h"

namespace tarven {

namespace {

namespace fs = std::filesystem;

const Need VariablesNeeded{[] { return The_project.N > 0; }, "Variables have not been defined"};
const Need ProjectNeeded{[] { return The_project.ProjectOpen; }, "No project"};

std::string Columns_and_cuts(const ProjectDefinition& project) {
    std::string text;
    for (int i = 1; i <= project.N; ++i) {
        const Variable& v = project.variables[static_cast<std::size_t>(i)];
        text += fmt::format("{} {} {} {} {}", v.label, v.VARNO, v.dim, v.vtype, v.vfra);
        for (std::size_t c = 1; c <= v.dim; ++c) text += fmt::format(" {}", v.vtil[c]);
        text += '\n';
    }
    return text;
}

ProjectDefinition Definition_of(const VarFile& file) {
    ProjectDefinition definition = The_project;
    Take_variables(file, definition);
    return definition;
}

/// The findings in the report; true when the file may be used.
bool Write_check(const std::vector<std::string>& lines) {
    bool good = true;
    for (const VarFinding& finding :
         Check_VAR_file(lines, Path_text(The_project.files.VAR.path.filename()))) {
        Write_report(Finding_line(finding));
        good = good && !finding.error;
    }
    if (good) ShowMessage("The VAR file seems to be in order");
    return good;
}

bool User_agrees(const DefinitionComparison& comparison) {
    if (comparison.variables_differ && comparison.structure_differs)
        return AskYesNo("Both variables and structure will be changed! Do you want to continue?");
    if (comparison.variables_differ)
        return AskYesNo("Variables will be changed! Do you want to continue?");
    if (comparison.structure_differs)
        return AskYesNo("Structure will be changed! Do you want to continue?");
    return true;
}

/// Category names that the program had given are given anew in the CAT file.
void Renew_category_names(const ProjectDefinition& before, const ProjectDefinition& now) {
    const fs::path& CAT = The_project.files.CAT.path;
    const FileBytes file = Read_bytes(CAT);
    int changed = 0;
    const std::string renewed = Renewed_CAT(file.bytes, before, now, changed);
    if (!file.error.empty() || changed == 0) return;
    const std::string failure = Write_whole(CAT, renewed);
    ShowMessage(!failure.empty()
                    ? failure
                    : fmt::format("{}: {} made anew from the cut points", Path_text(CAT.filename()),
                                  changed == 1 ? "1 category name was"
                                               : fmt::format("{} category names were", changed)));
}

/// Takes a definition into the project; what rested on the old one is given up.
void Adopt_revision(const ProjectDefinition& revised, const DefinitionComparison& comparison) {
    if (comparison.variables_differ) Renew_category_names(The_project, revised);
    static_cast<ProjectDefinition&>(The_project) = revised;
    Set_default_category_names(The_project);
    const TextFile CAT = Read_text_file(The_project.files.CAT.path);
    if (CAT.ok) Read_CAT_file(CAT.lines, The_project);
    if (comparison.variables_differ || comparison.structure_differs)
        Run_moment(Moment::variables_changed);
}

/// Edits a copy of the VAR file until it is in order or given up; the comparison stands in the
/// report then.
bool Revised_in_order(EditedCopy& copy, VarFile& file, DefinitionComparison& comparison) {
    const std::string name = Path_text(The_project.files.VAR.path.filename());
    while (copy.Edit()) {
        Open_report();
        const bool good = Write_check(copy.Lines());
        file = Read_VAR_file(copy.Lines(), name);
        if (good && file.ok) {
            comparison = Compare_definitions(The_project, Definition_of(file));
            for (const std::string& line : comparison.lines) Write_report(line);
        }
        Close_report();
        if (good && file.ok) return true;
        if (good) ShowMessage(name + ": " + file.error);
        if (!AskYesNo_always("The revised file is in error. Do you want to edit it again?"))
            return false;
    }
    return false;
}

/// SYS and TAB stay the data of the project when only names, comments or blocks were revised.
void Keep_data_up_to_date() {
    for (const ProjectFile* file : {&The_project.files.SYS, &The_project.files.TAB}) {
        std::error_code ignored;
        if (file->exists)
            fs::last_write_time(file->path, fs::file_time_type::clock::now(), ignored);
    }
}

Outcome Revise_variables() {
    EditedCopy copy(The_project.files.VAR.path);
    VarFile file;
    DefinitionComparison comparison;
    if (!Revised_in_order(copy, file, comparison) || !User_agrees(comparison)) {
        copy.Abandon();
        return Outcome::done;
    }
    const ProjectDefinition revised = Definition_of(file);
    const bool up_to_date = Message_on_old_data(The_project.files).empty();
    if (!copy.Take()) return Outcome::refused;
    ShowMessage(comparison.variables_differ ? "VAR, SYS and TAB files will be created."
                                            : "VAR file will be overwritten.");
    if (!comparison.variables_differ && up_to_date) Keep_data_up_to_date();
    Adopt_revision(revised, comparison);
    if (comparison.variables_differ) Run_from_code("MAK");
    return Outcome::done;
}

Outcome VARIABLES() {
    if (The_user.user.edit_file) return Revise_variables();
    const TextFile file = Read_text_file(The_project.files.VAR.path);
    if (!file.ok) {
        ShowMessage(file.error);
        return Outcome::refused;
    }
    Open_report();
    Write_check(file.lines);
    Close_report();
    return Outcome::done;
}

/// Reads category names anew from lines; the number of lines that name nothing is told.
void Take_category_names(const std::vector<std::string>& lines) {
    Set_default_category_names(The_project);
    const int passed_over = Read_CAT_file(lines, The_project);
    if (passed_over > 0)
        ShowMessage(fmt::format("{}: {} lines name no category of the project",
                                Path_text(The_project.files.CAT.path), passed_over));
    else
        ShowMessage("The CAT file seems to be in order");
}

Outcome CATEGORIES() {
    if (!The_user.user.edit_file) {
        const TextFile file = Read_text_file(The_project.files.CAT.path);
        if (!file.ok) {
            ShowMessage(file.error);
            return Outcome::refused;
        }
        Take_category_names(file.lines);
        return Outcome::done;
    }
    EditedCopy copy(The_project.files.CAT.path);
    if (!copy.Edit()) {
        copy.Abandon();
        return Outcome::done;
    }
    if (!copy.Take()) return Outcome::refused;
    Take_category_names(copy.Lines());
    return Outcome::done;
}

/// Whether other cases or codes come out of the same data file.
bool Recoding_differs(const ProjectDefinition& a, const ProjectDefinition& b) {
    return a.NTAL != b.NTAL || a.conditions != b.conditions || a.selections != b.selections;
}

bool Is_same_file(const ProjectFile& a, const ProjectFile& b) {
    return a.path == b.path && a.exists == b.exists;
}

/// The files that a DEF file as it stands now names; SYS and TAB keep their state.
ProjectFiles Files_of(const DefFile& definition) {
    ProjectFiles files = Set_project_files(The_project.ProjectPath, The_project.Projectname);
    files.SYS = The_project.files.SYS;
    files.TAB = The_project.files.TAB;
    Replace_files(definition, files);
    return files;
}

void INPUT_V() {
    const fs::path& DEF_path = The_project.files.DEF.path;
    const TextFile DEF = Read_text_file(DEF_path);
    if (!DEF.ok) return ShowMessage(DEF.error);
    const DefFile definition = Read_DEF_file(DEF.lines, Path_text(DEF_path.filename()));
    const ProjectFiles files = Files_of(definition);
    for (const std::string& message : definition.messages) ShowMessage(message);
    if (!files.VAR.exists) return ShowMessage("Missing VARfile");
    const TextFile VAR = Read_text_file(files.VAR.path);
    const VarFile file = VAR.ok ? Read_VAR_file(VAR.lines, Path_text(files.VAR.path.filename()))
                                : VarFile{.error = VAR.error};
    if (!file.ok) return ShowMessage(Path_text(files.VAR.path) + ": " + file.error);
    for (const std::string& warning : file.warnings) ShowMessage(warning);

    ProjectDefinition revised = Definition_of(file);
    revised.NTAL = definition.NTAL;
    revised.conditions = definition.conditions;
    revised.selections = definition.selections;
    revised.title = definition.title;
    const DefinitionComparison comparison = Compare_definitions(The_project, revised);
    const bool other_data = !Is_same_file(files.DAT, The_project.files.DAT);
    const bool recoded = Recoding_differs(The_project, revised);
    const bool changed =
        comparison.variables_differ || comparison.structure_differs || other_data || recoded;
    for (const std::string& line : comparison.lines) Write_report(line);
    if (other_data)
        ShowMessage(files.DAT.exists
                        ? fmt::format("The DAT file is {}", Path_text(files.DAT.path.filename()))
                        : fmt::format("Warning: The DAT file, {} was not found",
                                      Path_text(files.DAT.path)));
    The_project.files = files;
    Adopt_revision(revised, comparison);
    if (!changed) return;
    if (other_data || recoded) Run_moment(Moment::data_replaced);
    ShowMessage("Use FREQUENCIES to check the new variable definitions");
    ShowMessage("You may have to use MAKE to create new SYS and TAB files");
    ShowMessage("Data may have to be DISPOSED!");
}

}  // namespace

DefinitionComparison Compare_definitions(const ProjectDefinition& current,
                                         const ProjectDefinition& revised) {
    DefinitionComparison result;
    // By place, so that a variable with a new label is where it was.
    const auto blocks_of = [](const ProjectDefinition& project) {
        std::vector<int> blocks;
        for (int i = 1; i <= project.N; ++i)
            blocks.push_back(project.variables[static_cast<std::size_t>(i)].Levnr);
        return blocks;
    };
    result.lines = {"Comparison of new and old variable definitions:"};
    const auto differ = [&](const char* what, const std::string& is, const std::string& was) {
        result.lines.push_back(what);
        result.lines.push_back("New : " + is);
        result.lines.push_back("Old : " + was);
    };
    const std::string labels = Labels_of(revised.variables, revised.N);
    const std::string old_labels = Labels_of(current.variables, current.N);
    if (revised.N != current.N)
        differ("Different number of variables", std::to_string(revised.N),
               std::to_string(current.N));
    if (labels != old_labels) differ("Different variable labels", labels, old_labels);
    if (revised.Nlevels != current.Nlevels)
        differ("Different number of recursive blocks", std::to_string(revised.Nlevels),
               std::to_string(current.Nlevels));
    const bool blocks_differ = blocks_of(revised) != blocks_of(current);
    if (blocks_differ)
        differ("Different recursive blocks", Block_line(revised), Block_line(current));
    result.variables_differ =
        labels != old_labels || Columns_and_cuts(revised) != Columns_and_cuts(current);
    result.structure_differs = blocks_differ || revised.Nlevels != current.Nlevels;
    return result;
}

void Register_revise_commands() {
    At_moment(Moment::workspace_reset, "kept copies", [] { The_kept_copies = {}; });
    Register_command(
        {.keyword = "VAR",
         .run = VARIABLES,
         .needs = {ProjectNeeded, VariablesNeeded},
         .spelling = "VARIABLES",
         .summary = "revises the definition of variables",
         .help = "VARIABLES\n\n"
                 "At a terminal a copy of the VAR file is edited with $EDITOR. What was\n"
                 "revised is checked and compared with what stood there; after a question\n"
                 "the file is replaced, and MAKE makes new data files when the variables\n"
                 "have changed. Names of categories in the CAT file that were made from\n"
                 "cut points are made anew. A copy in error can be edited again; one that\n"
                 "is not taken stays where a message says, and the next VAR offers it.\n"
                 "Without a terminal the file is checked as it stands.\n\n"
                 "Refused without a project; a file in error is not taken."});
    Register_command({.keyword = "CAT",
                      .run = CATEGORIES,
                      .needs = {ProjectNeeded, VariablesNeeded},
                      .spelling = "CATEGORIES",
                      .summary = "revises the names of categories",
                      .help =
                          "CATEGORIES\n\n"
                          "At a terminal the CAT file is edited with $EDITOR. Then, or without a\n"
                          "terminal at once, the names are read anew.\n\n"
                          "Refused without a project."});
    Register_letter(LetterCommand::input, {.letter = 'V',
                                           .run = INPUT_V,
                                           .needs = {ProjectNeeded},
                                           .summary = "the definitions: DEF, VAR and CAT files"});
}

}  // namespace tarven
