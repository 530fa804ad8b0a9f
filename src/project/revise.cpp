#include "project/revise.h"

#include <fmt/format.h>

#include <system_error>

#include "project/cat_file.h"
#include "project/data.h"
#include "project/def_file.h"
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
    for (const VarFinding& finding : Check_VAR_file(lines)) {
        Write_report(Finding_line(finding));
        good = good && !finding.error;
    }
    if (good) ShowMessage("The VAR file seems to be in order");
    return good;
}

/// A copy of a file for the user to edit; the revised lines when they were accepted.
std::optional<std::vector<std::string>> Edited(const fs::path& file) {
    const fs::path copy =
        fs::temp_directory_path() / fmt::format("tarven-{}", file.filename().string());
    const TextFile before = Read_text_file(file);
    if (!before.ok || !Write_text_file(copy, before.lines).empty()) {
        ShowMessage(before.ok ? Path_text(copy) + " could not be written" : before.error);
        return {};
    }
    const bool accepted = The_user.user.edit_file(copy.string());
    const TextFile after = Read_text_file(copy);
    std::error_code ignored;
    fs::remove(copy, ignored);
    if (!accepted || !after.ok || after.lines == before.lines) {
        ShowMessage("Revisions abandoned");
        return {};
    }
    return after.lines;
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

/// Takes a definition into the project; what rested on the old one is given up.
void Take_variables(const ProjectDefinition& revised, const DefinitionComparison& comparison) {
    static_cast<ProjectDefinition&>(The_project) = revised;
    Set_default_category_names(The_project);
    const TextFile CAT = Read_text_file(The_project.files.CAT.path);
    if (CAT.ok) Read_CAT_file(CAT.lines, The_project);
    if (comparison.variables_differ || comparison.structure_differs)
        Run_moment(Moment::variables_changed);
}

Outcome Revise_variables() {
    const auto lines = Edited(The_project.files.VAR.path);
    if (!lines) return Outcome::done;
    Open_report();
    const bool good = Write_check(*lines);
    const VarFile file = Read_VAR_file(*lines);
    if (!good || !file.ok) {
        Close_report();
        ShowMessage("Revisions abandoned");
        return Outcome::done;
    }
    const ProjectDefinition revised = Definition_of(file);
    const DefinitionComparison comparison = Compare_definitions(The_project, revised);
    for (const std::string& line : comparison.lines) Write_report(line);
    Close_report();
    if (!User_agrees(comparison)) {
        ShowMessage("Revisions abandoned");
        return Outcome::done;
    }
    const std::string failure = Write_text_file(The_project.files.VAR.path, *lines);
    if (!failure.empty()) {
        ShowMessage(failure);
        return Outcome::refused;
    }
    ShowMessage(comparison.variables_differ ? "VAR, SYS and TAB files will be created."
                                            : "VAR file will be overwritten.");
    Take_variables(revised, comparison);
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
    const auto lines = Edited(The_project.files.CAT.path);
    if (!lines) return Outcome::done;
    const std::string failure = Write_text_file(The_project.files.CAT.path, *lines);
    if (!failure.empty()) {
        ShowMessage(failure);
        return Outcome::refused;
    }
    Take_category_names(*lines);
    return Outcome::done;
}

void INPUT_V() {
    const TextFile DEF = Read_text_file(The_project.files.DEF.path);
    const TextFile VAR = Read_text_file(The_project.files.VAR.path);
    const VarFile file = VAR.ok ? Read_VAR_file(VAR.lines) : VarFile{.error = VAR.error};
    if (!DEF.ok || !file.ok) {
        ShowMessage(!DEF.ok ? DEF.error
                            : Path_text(The_project.files.VAR.path) + ": " + file.error);
        return;
    }
    const DefFile definition = Read_DEF_file(DEF.lines);
    for (const std::string& message : definition.messages) ShowMessage(message);
    for (const std::string& warning : file.warnings) ShowMessage(warning);
    ProjectDefinition revised = Definition_of(file);
    revised.NTAL = definition.NTAL;
    revised.conditions = definition.conditions;
    revised.selections = definition.selections;
    revised.title = definition.title;
    const DefinitionComparison comparison = Compare_definitions(The_project, revised);
    for (const std::string& line : comparison.lines) Write_report(line);
    Take_variables(revised, comparison);
    ShowMessage("Use FREQUENCIES to check the new variable definitions");
    ShowMessage("You may have to use MAKE to create new SYS and TAB files");
    ShowMessage("Data may have to be DISPOSED!");
}

}  // namespace

DefinitionComparison Compare_definitions(const ProjectDefinition& current,
                                         const ProjectDefinition& revised) {
    DefinitionComparison result;
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
    const std::string blocks = Block_line(revised);
    const std::string old_blocks = Block_line(current);
    if (blocks != old_blocks) differ("Different recursive blocks", blocks, old_blocks);
    result.variables_differ =
        labels != old_labels || Columns_and_cuts(revised) != Columns_and_cuts(current);
    result.structure_differs = blocks != old_blocks || revised.Nlevels != current.Nlevels;
    return result;
}

void Register_revise_commands() {
    Register_command({.keyword = "VAR",
                      .run = VARIABLES,
                      .needs = {ProjectNeeded, VariablesNeeded},
                      .spelling = "VARIABLES",
                      .summary = "revises the definition of variables",
                      .help =
                          "VARIABLES\n\n"
                          "At a terminal the VAR file is edited with $EDITOR. What was revised is\n"
                          "checked and compared with what stood there; after a question the\n"
                          "file is replaced, and MAKE makes new data files when the variables\n"
                          "have changed. Without a terminal the file is checked as it stands.\n\n"
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
