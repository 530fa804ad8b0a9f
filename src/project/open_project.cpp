#include "project/open_project.h"

#include <fmt/format.h>

#include <system_error>

#include "project/cat_file.h"
#include "project/data.h"
#include "project/def_file.h"
#include "project/exit.h"
#include "project/make.h"
#include "project/project_files.h"
#include "project/project_log.h"
#include "project/project_report.h"
#include "project/var_file.h"
#include "shell/command_files.h"
#include "shell/dispatcher.h"
#include "shell/files.h"
#include "shell/lifecycle.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/unsaved_report.h"
#include "shell/user.h"

namespace tarven {

namespace {

namespace fs = std::filesystem;

void Show_panels_of_new_project() {
    SetStatus(0, The_project.Projectname);
    for (int panel = 4; panel <= 6; ++panel) SetStatus(panel, "");
}

/// A leftover report buffer may hold what a crash left; the report starts with a new one.
void Start_report_file() {
    std::error_code ignored;
    Release_report_file();
    fs::remove(The_project.files.TMP.path, ignored);
    Set_report_file(The_project.files.TMP.path);
    if (The_report.OutputField.empty())
        ShowReportLine(fmt::format("Output from {} initialized at {}", The_project.Projectname,
                                   Date_and_time()));
}

ProjectFile Replaced(const std::string& name) {
    const fs::path wanted = The_project.ProjectPath / name;
    const auto found = Find_file(wanted);
    return {found.value_or(wanted), found.has_value()};
}

void Take_definition(const DefFile& def) {
    for (const std::string& message : def.messages) ShowMessage(message);
    The_project.NTAL = def.NTAL;
    The_project.conditions = def.conditions;
    The_project.selections = def.selections;
    The_project.title = def.title;
    Replace_files(def, The_project.files);
}

bool Read_definition_file() {
    if (!The_project.files.DEF.exists) {
        ShowMessage(Path_text(The_project.files.DEF.path) + " not found");
        return false;
    }
    const TextFile file = Read_text_file(The_project.files.DEF.path, Letters::kept);
    if (!file.ok) {
        ShowMessage(file.error);
        return false;
    }
    Take_definition(Read_DEF_file(file.lines, Path_text(The_project.files.DEF.path.filename())));
    if (!The_project.files.DAT.exists)
        ShowMessage(fmt::format("Warning: The DAT file, {} was not found",
                                Path_text(The_project.files.DAT.path)));
    return true;
}

bool Read_variables() {
    if (!The_project.files.VAR.exists) {
        ShowMessage("Missing VARfile");
        return false;
    }
    const TextFile text = Read_text_file(The_project.files.VAR.path);
    const std::string name = Path_text(The_project.files.VAR.path.filename());
    const VarFile file = text.ok ? Read_VAR_file(text.lines, name) : VarFile{.error = text.error};
    if (!file.ok) {
        ShowMessage(Path_text(The_project.files.VAR.path) + ": " + file.error);
        return false;
    }
    for (const std::string& warning : file.warnings) ShowMessage(warning);
    Take_variables(file, The_project);
    return true;
}

void Read_category_names() {
    Set_default_category_names(The_project);
    ProjectFile& CAT = The_project.files.CAT;
    if (!CAT.exists) {
        const std::string failure = Write_text_file(CAT.path, CAT_lines(The_project));
        if (!failure.empty()) ShowMessage(failure);
        return;
    }
    const TextFile file = Read_text_file(CAT.path);
    if (!file.ok) return ShowMessage(file.error);
    const int passed_over = Read_CAT_file(file.lines, The_project);
    if (passed_over > 0)
        ShowMessage(fmt::format("{}: {} lines name no category of the project", Path_text(CAT.path),
                                passed_over));
    const std::string stale = Message_on_stale_names(The_project, Path_text(CAT.path.filename()));
    if (!stale.empty()) ShowMessage(stale);
}

void Write_summary() {
    for (const std::string& line : Project_summary(The_project, The_data.Ntabcells))
        Write_report(line);
}

/// A path that does not exist in this spelling stays relative in weakly_canonical alone, and would
/// then follow the current folder.
fs::path Absolute(const fs::path& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(path);
    const fs::path canonical = fs::weakly_canonical(absolute, error);
    return error ? absolute : canonical;
}

std::string Name_up_to_first_point(const fs::path& file) {
    const std::string name = Path_text(file.filename());
    return name.substr(0, name.find('.'));
}

}  // namespace

void Replace_files(const DefFile& def, ProjectFiles& files) {
    if (!def.var_name.empty()) files.VAR = Replaced(def.var_name);
    if (!def.grf_name.empty()) files.GRF = Replaced(def.grf_name);
    if (!def.dat_name.empty()) files.DAT = Replaced(def.dat_name);
}

void Set_project(const fs::path& folder, const std::string& name) {
    The_project = {};
    The_project.ProjectPath = Absolute(folder.empty() ? fs::path(".") : folder);
    The_project.Projectname = name;
}

bool Give_up_project() {
    if (!The_project.ProjectOpen) return true;
    if (!ExitFromTarven(true)) return false;
    // Its folder is where the next one is looked for; no definition without its data stays.
    const fs::path folder = The_project.ProjectPath;
    The_project = {};
    The_project.ProjectPath = folder;
    SetStatus(0, "");
    return true;
}

bool Change_folder(const fs::path& folder) {
    std::error_code error;
    fs::current_path(folder, error);
    return !error;
}

bool Open_project_files() {
    Remove_leftovers(The_project.ProjectPath, The_project.Projectname);
    for (const char* memory : {"TARVEN", "TARVENprojectLog"})
        Remove_leftovers(The_session.StartPath, memory);
    The_project.files = Set_project_files(The_project.ProjectPath, The_project.Projectname);
    Start_report_file();
    Show_panels_of_new_project();
    Open_report();
    Tell_unsaved_reports(The_project.files.TMP.path);
    const bool opened = Read_definition_file() && Read_variables();
    if (opened) {
        Read_category_names();
        Run_moment(Moment::variables_changed);
        Run_moment(Moment::project_read);
        Load_data_at_opening();
        The_project.ProjectOpen = true;
        Write_summary();
    }
    Close_report();
    return opened;
}

void Run_ini_file() {
    const ProjectFile ini = Project_file(The_project.ProjectPath, The_project.Projectname, "INI");
    if (ini.exists) RunBatchfile(ini.path);
}

bool OpenTarvenProjectClick(const fs::path& chosen) {
    const fs::path named = chosen.empty() ? fs::path() : Absolute(chosen);
    bool report_was_kept = false;
    if (The_project.ProjectOpen) {
        if (!AskYesNo("A TARVEN project already exists. Do you want to continue?")) return false;
        if (!Give_up_project()) return false;
        report_was_kept = The_report.OutputChanged;
    } else {
        Change_folder(The_session.StartPath);
    }
    fs::path file = named;
    if (file.empty()) {
        const std::string answer =
            Choose_file("Open a project", "Project definition (*.def)|*.def",
                        Path_text(The_project.ProjectPath.empty() ? The_session.StartPath
                                                                  : The_project.ProjectPath));
        if (answer.empty()) return false;
        file = Absolute(Text_path(answer));
    }
    const auto found = Find_file(file);
    if (!found) {
        ShowMessage(Path_text(file) + " not found");
        return false;
    }
    Set_project(found->parent_path(), Name_up_to_first_point(*found));
    if (!Change_folder(The_project.ProjectPath)) ShowMessage("Directory not changed");
    if (!Open_project_files()) return false;

    Open_report();
    Run_moment(Moment::project_opened_by_hand);
    Close_report();
    Remember_project();
    Update_project_log();
    for (int panel = 4; panel <= 6; ++panel) SetStatus(panel, "");
    Write_heading_line(The_project.Projectname + " opened at " +
                       Path_text(The_project.ProjectPath));
    Run_from_code("Show L");
    ShowReportLine("The current directory is " + Path_text(fs::current_path()));
    if (!report_was_kept) Report_is_saved();
    Run_ini_file();
    return true;
}

fs::path Definition_named(const std::string& name) {
    fs::path file = Text_path(name);
    if (!Find_file(file) || fs::is_directory(file)) file += ".DEF";
    return file;
}

bool Open_project_at_start(const std::string& name) {
    return OpenTarvenProjectClick(Definition_named(name));
}

}  // namespace tarven
