#include "project/exit.h"

#include <optional>
#include <system_error>

#include "project/data.h"
#include "project/project.h"
#include "project/report_target.h"
#include "shell/files.h"
#include "shell/lifecycle.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/unsaved_report.h"
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

constexpr const char* ExitQuestion = "Output will be erased. Do you want to save it?";

/// The answer to the exit question; nothing when the person at the terminal leaves it. Without a
/// user a line that is no answer is No.
std::optional<bool> Saving_wanted() {
    if (The_user.user.ask_yes_no) return AskYesNo_or_nobody(ExitQuestion);
    return AskYesNo(ExitQuestion);
}

bool Save_under_own_name() {
    const SavedReport saved = Save_unsaved_report();
    if (!saved.failure.empty()) {
        Show_machine_failure(saved.failure);
        return false;
    }
    ShowMessage("Output was saved on " + Path_text(saved.file));
    Report_is_saved();
    return true;
}

}  // namespace

bool Write_report_to(const fs::path& file) {
    if (const std::string refusal = Refusal_of_target(file); !refusal.empty()) {
        ShowMessage(refusal);
        return false;
    }
    const std::string failure = Write_text_file(file, The_report.OutputField);
    if (!failure.empty()) Show_machine_failure(failure);
    return failure.empty();
}

bool Save_report() {
    const bool person_chooses = The_user.user.choose_target && !The_session.AUTOMATIC;
    fs::path file = The_project.files.REP.path;
    if (person_chooses) {
        const auto chosen = The_user.user.choose_target(
            "Save the report", Path_text(file.parent_path()), Path_text(file.filename()));
        if (!chosen) return false;
        file = Existing_or(Text_path(*chosen));
    }
    std::error_code ignored;
    if (fs::is_regular_file(file, ignored) && Refusal_of_target(file).empty()) {
        const auto goes_on = AskYesNo_or_nobody(Path_text(file) + " already exists. Continue?");
        if (person_chooses && !goes_on.value_or(false)) return false;
        if (goes_on == false) return Save_under_own_name();
    }
    if (!Write_report_to(file)) return !person_chooses && Save_under_own_name();
    Report_is_saved();
    return true;
}

bool ExitFromTarven(bool dispose) {
    if (The_project.ProjectOpen) {
        if (!May_end_by_questions()) return false;
        if (!The_report.OutputField.empty() && The_report.OutputChanged) {
            const std::optional<bool> wanted = Saving_wanted();
            const bool person = static_cast<bool>(The_user.user.ask_yes_no);
            if (person && !wanted) return false;
            const bool settled = !wanted.value_or(false) || Save_report();
            if (person && !settled) return false;
            if (!settled) The_session.machine_failed = true;
            if (dispose && settled) Clear_report_field();
        }
        if (dispose) Dispose_project();
    }
    Delete_report_files("ExitFromTarven");
    return true;
}

void AutomaticExitFromTarven(bool dispose) {
    if (The_project.ProjectOpen && dispose) Dispose_project();
    Delete_report_files("AutomaticExitFromTarven");
}

}  // namespace tarven
