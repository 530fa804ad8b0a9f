#include "project/exit.h"

#include <system_error>

#include "project/data.h"
#include "project/project.h"
#include "shell/files.h"
#include "shell/lifecycle.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/user.h"

namespace tarven {

namespace {

namespace fs = std::filesystem;

void Dispose_project() {
    Run_moment(Moment::project_about_to_close);
    Dispose_data();
}

/// Deletes the temporary files of the report; one that stays is told.
void Delete_report_files(const char* who) {
    std::vector<fs::path> files = {"TARVEN.tmp", The_session.StartPath / "TARVEN.tmp"};
    if (!The_project.Projectname.empty()) {
        files.push_back(Text_path(The_project.Projectname + ".tmp"));
        files.push_back(The_project.files.TMP.path);
    }
    Release_report_file();
    for (const fs::path& file : files) {
        const auto found = Find_file(file);
        if (!found) continue;
        std::error_code error;
        fs::remove(*found, error);
        if (error) ShowMessage(Path_text(*found) + " was not deleted by " + who);
    }
}

}  // namespace

bool Save_report() {
    const bool someone_chooses = static_cast<bool>(The_user.user.choose_file);
    const std::string chosen =
        someone_chooses
            ? Choose_file("Save the report", "Report file (" + The_project.Projectname + ")|*.rep",
                          Path_text(The_project.ProjectPath))
            : std::string();
    if (someone_chooses && chosen.empty()) return false;
    const fs::path file = someone_chooses ? Text_path(chosen) : The_project.files.REP.path;
    if (fs::exists(file) && !AskYesNo(Path_text(file) + " already exists. Continue?")) return false;
    const std::string failure = Write_text_file(file, The_report.OutputField);
    if (!failure.empty()) {
        ShowMessage(failure);
        return false;
    }
    The_report.OutputChanged = false;
    return true;
}

void ExitFromTarven(bool dispose) {
    if (The_project.ProjectOpen) {
        if (!The_report.OutputField.empty() && The_report.OutputChanged &&
            AskYesNo("Output will be erased. Do you want to save it?"))
            Save_report();
        if (dispose) Dispose_project();
    }
    Delete_report_files("ExitFromTarven");
}

void AutomaticExitFromTarven(bool dispose) {
    if (The_project.ProjectOpen && dispose) Dispose_project();
    Delete_report_files("AutomaticExitFromTarven");
}

}  // namespace tarven
