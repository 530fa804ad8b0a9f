#include "project/project_log.h"

#include <fmt/format.h>

#include <algorithm>

#include "project/project.h"
#include "shell/files.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/user.h"
#include "shell/words.h"

namespace tarven {

namespace {

namespace fs = std::filesystem;

fs::path Log_file() {
    return Existing_or(The_session.StartPath / "TARVENprojectLog.txt");
}
fs::path Memory_file() {
    return Existing_or(The_session.StartPath / "TARVEN.cmd");
}

std::string Log_record() {
    return Path_text(The_project.ProjectPath / The_project.Projectname);
}

void Say(const std::string& failure) {
    if (!failure.empty()) ShowMessage(failure);
}

}  // namespace

void Make_start_files() {
    if (!fs::exists(Memory_file())) Write_text_file(Memory_file(), {});
    if (fs::exists(Log_file())) return;
    if (Write_text_file(Log_file(), {"Project log"}).empty()) ShowMessage("Project log created");
}

void Remember_project() {
    Say(Write_text_file(Memory_file(),
                        {Path_text(The_project.ProjectPath), The_project.Projectname}));
}

void Update_project_log() {
    const fs::path file = Log_file();
    if (!fs::exists(file)) return Say(Write_text_file(file, {"Project log:", Log_record()}));
    const TextFile log = Read_text_file(file, Letters::kept);
    if (!log.ok) return Say(log.error);
    if (!log.lines.empty() && log.lines.back() == Log_record()) return;
    Say(Append_text_file(file, {Log_record()}));
}

void Show_project_log() {
    const TextFile log = Read_text_file(Log_file(), Letters::kept);
    if (!log.ok) return Say(log.error);
    for (std::size_t line_index = 0; line_index < log.lines.size(); ++line_index)
        if (line_index == 0 || log.lines[line_index] != log.lines[line_index - 1])
            Write_report(log.lines[line_index]);
    const std::size_t n = log.lines.empty() ? 0 : log.lines.size() - 1;
    Write_report(fmt::format("{} records on logfile   ", n));
    const std::string answer = AskUser(
        fmt::format("{} records on logfile", n),
        fmt::format("How many record do you want to keep? Default = {}", n), std::to_string(n));
    std::int32_t keep = 0;
    if (!To_integer(answer, keep) || keep < 0 || static_cast<std::size_t>(keep) >= n) return;
    std::vector<std::string> kept = {"Project log file"};
    kept.insert(kept.end(), log.lines.end() - keep, log.lines.end());
    const std::string failure = Write_text_file(Log_file(), kept);
    if (!failure.empty()) return Say(failure);
    Write_report(fmt::format("{} records was saved", keep));
}

RememberedProject Remembered_project() {
    const TextFile memory = Read_text_file(Memory_file(), Letters::kept);
    RememberedProject project;
    if (!memory.ok || memory.lines.size() < 2) return project;
    project = {true, memory.lines[0], memory.lines[1]};
    project.found = Word_count(project.folder) > 0 && Word_count(project.name) > 0;
    return project;
}

}  // namespace tarven
