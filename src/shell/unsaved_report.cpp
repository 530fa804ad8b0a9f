#include "shell/unsaved_report.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <system_error>

#include "shell/files.h"
#include "shell/report.h"
#include "shell/session.h"
#include "shell/text.h"
#include "shell/user.h"
#include "shell/words.h"

namespace tarven {

namespace {

namespace fs = std::filesystem;

constexpr int MostUnsavedReports = 9999;  ///< of one project in one folder
constexpr const char* Middle = "_unsaved_";
constexpr const char* Extension = ".REP";

/// The report and the name of its first stage as they stand at one moment.
struct ReportAtHand {
    fs::path first_stage;
    std::string bytes;
    bool unsaved = false;
};

ReportAtHand Report_at_hand() {
    const std::scoped_lock lock(Report_lock);
    ReportAtHand report;
    report.first_stage = The_report.ReportFile;
    for (const auto* lines : {&The_report.OutputField, &The_report.first_stage})
        for (const std::string& line : *lines) report.bytes += To_utf8(line) + "\n";
    report.unsaved =
        !report.bytes.empty() && (The_report.OutputChanged || !The_report.first_stage.empty());
    return report;
}

/// A new file of the first free number; its number is -1 with the reason in `error`.
OpenedFile Open_numbered(const fs::path& folder, const std::string& name, fs::path& file) {
    for (int n = 1; n <= MostUnsavedReports; ++n) {
        file = folder / (name + Middle + std::to_string(n) + Extension);
        const int number =
            ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
        if (number >= 0) return {number, ""};
        if (errno != EEXIST) return {-1, std::strerror(errno)};
    }
    return {-1, "there are too many of them"};
}

SavedReport Save_in(const fs::path& folder, const std::string& name, const std::string& bytes) {
    SavedReport saved;
    fs::path file;
    OpenedFile opened = Open_numbered(folder, name, file);
    if (opened.number >= 0) {
        const int error_number = Write_bytes(opened.number, bytes);
        if (error_number != 0) opened.error = std::strerror(error_number);
        if (::close(opened.number) != 0 && error_number == 0) opened.error = std::strerror(errno);
        if (!opened.error.empty()) ::unlink(file.c_str());
    }
    if (opened.error.empty())
        saved.file = file;
    else
        saved.failure = fmt::format("{} could not be written: {}", Path_text(file), opened.error);
    return saved;
}

SavedReport Save_somewhere(const ReportAtHand& report) {
    const bool has_project = !report.first_stage.empty();
    const std::string name = has_project ? report.first_stage.stem().string() : "TARVEN";
    std::error_code ignored;
    std::vector<fs::path> folders = {The_session.StartPath, fs::temp_directory_path(ignored)};
    if (has_project) folders.insert(folders.begin(), report.first_stage.parent_path());
    SavedReport first;
    for (const fs::path& folder : folders) {
        SavedReport saved = Save_in(folder, name, report.bytes);
        if (saved.failure.empty()) return saved;
        if (first.failure.empty()) first = saved;
    }
    return first;
}

/// NAME_unsaved_NUMBER.REP, in any case.
bool Is_unsaved_report(const std::string& file, const std::string& name) {
    const std::string before = Upper(name + Middle);
    const std::string text = Upper(file);
    if (!text.starts_with(before) || !text.ends_with(Extension)) return false;
    const std::string_view number = std::string_view(text).substr(
        before.size(), text.size() - before.size() - std::strlen(Extension));
    return !number.empty() && number.find_first_not_of("0123456789") == std::string_view::npos;
}

/// In a folder that everybody writes to, the files of others are not named.
bool Is_ours(const fs::path& file) {
    struct stat status {};
    return ::stat(file.c_str(), &status) == 0 && status.st_uid == ::geteuid();
}

}  // namespace

SavedReport Save_unsaved_report() {
    return Save_somewhere(Report_at_hand());
}

SavedReport Save_report_if_unsaved() {
    const ReportAtHand report = Report_at_hand();
    return report.unsaved ? Save_somewhere(report) : SavedReport();
}

void Tell_unsaved_reports(const fs::path& first_stage) {
    std::vector<fs::path> files;
    std::error_code error;
    const fs::path shared = fs::temp_directory_path(error);
    for (const fs::path& folder : {first_stage.parent_path(), The_session.StartPath, shared}) {
        for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
             entry.increment(error))
            if (Is_unsaved_report(entry->path().filename().string(), first_stage.stem().string()) &&
                (folder != shared || Is_ours(entry->path())))
                files.push_back(fs::weakly_canonical(entry->path(), error));
    }
    std::sort(files.begin(), files.end());
    files.erase(std::unique(files.begin(), files.end()), files.end());
    for (const fs::path& file : files)
        ShowMessage(
            fmt::format("The report of a session that was cut off is in {}. Rename or "
                        "delete it when you have read it",
                        Path_text(file)));
}

}  // namespace tarven
