#include "shell/report.h"

#include <fmt/format.h>

#include <cassert>
#include <cerrno>
#include <cstring>
#include <ctime>

#include "shell/files.h"
#include "shell/session.h"
#include "shell/text.h"
#include "shell/user.h"

namespace tarven {

namespace {

void Tell_failure(int error_number) {
    if (The_report.failure_told) return;
    The_report.failure_told = true;
    ShowMessage(fmt::format("{} could not be written: {}. The report is kept in memory",
                            Path_text(The_report.ReportFile), std::strerror(error_number)));
}

/// Opens the first stage. Lines are kept in memory as well, so an unwritable file loses nothing
/// but the safety against a crash.
void Open_first_stage(const char* mode) {
    if (The_report.ReportFile.empty()) Set_report_file(The_session.StartPath / "TARVEN.TMP");
    The_report.file.reset(std::fopen(The_report.ReportFile.c_str(), mode));
    if (The_report.file)
        std::setvbuf(The_report.file.get(), nullptr, _IOLBF, 4096);
    else
        Tell_failure(errno);
}

void Write_to_file(const std::string& line) {
    if (!The_report.file) return;
    const std::string bytes = To_utf8(line) + "\n";
    if (std::fwrite(bytes.data(), 1, bytes.size(), The_report.file.get()) == bytes.size()) return;
    const int error_number = errno;
    The_report.file.reset();
    Tell_failure(error_number);
}

void Write_to_field(const std::string& line) {
    {
        const std::scoped_lock lock(Report_lock);
        The_report.OutputField.push_back(line);
        The_report.OutputChanged = true;
    }
    if (The_report.on_line) The_report.on_line(line);
}

void Write_line(const std::string& line) {
    if (The_report.ReportOpen == 0) return Write_to_field(line);
    {
        const std::scoped_lock lock(Report_lock);
        The_report.first_stage.push_back(line);
    }
    Write_to_file(line);
}

void Move_first_stage() {
    The_report.file.reset();
    // All at once, so that no line stands in neither stage while another is printed.
    const std::size_t before = The_report.OutputField.size();
    {
        const std::scoped_lock lock(Report_lock);
        for (std::string& line : The_report.first_stage)
            The_report.OutputField.push_back(std::move(line));
        The_report.first_stage.clear();
        if (The_report.OutputField.size() > before) The_report.OutputChanged = true;
    }
    if (!The_report.on_line) return;
    for (std::size_t line_index = before; line_index < The_report.OutputField.size(); ++line_index)
        The_report.on_line(The_report.OutputField[line_index]);
}

template <class Sink>
void Each_line(std::string_view text, Sink sink) {
    for (;;) {
        const auto end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        sink(Printable(line));
        if (end == std::string_view::npos) return;
        text.remove_prefix(end + 1);
    }
}

}  // namespace

void Open_report() {
    const bool within = The_report.ReportOpen++ > 0;
    // A file that failed holds what it could be given; creating it anew would take that away.
    if (within && (The_report.file || The_report.failure_told)) return;
    Open_first_stage("wb");
    const std::vector<std::string> held = The_report.first_stage;
    for (const std::string& line : held) Write_to_file(line);
}

void Close_report() {
    assert(The_report.ReportOpen > 0 && "a report is closed that nobody opened");
    if (--The_report.ReportOpen == 0) Move_first_stage();
}

void Flush_report() {
    assert(The_report.ReportOpen > 0 && "a report is flushed that nobody opened");
    Move_first_stage();
    Open_first_stage("wb");
}

void End_report() {
    The_report.ReportOpen = 0;
    Move_first_stage();
}

std::string Backup_report() {
    std::vector<std::string> lines = {"Copy of TMPfile"};
    lines.insert(lines.end(), The_report.first_stage.begin(), The_report.first_stage.end());
    const std::filesystem::path copy = The_report.ReportFile.parent_path() / "TMPcopy.txt";
    return Write_text_file(copy, lines);
}

void Write_report(std::string_view line) {
    Each_line(line, Write_line);
}

void Write_lines(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) Write_report(line);
}

void ShowReportLine(std::string_view line) {
    Each_line(line, Write_to_field);
}

void Write_header(std::string_view text) {
    const std::string rule = "+" + std::string(text.size() + 2, '-') + "+";
    Write_report("");
    Write_report(rule);
    Write_report(fmt::format("| {} |", text));
    Write_report(rule);
    Write_report("");
}

void Write_underlined(std::string_view text) {
    Write_report(text);
    Write_report(std::string(text.size(), '-'));
}

std::string Date_and_time() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    return text;
}

void Write_heading_line(std::string_view text) {
    ShowReportLine(fmt::format("{} {}", Date_and_time(), text));
}

void Clear_report_field() {
    const std::scoped_lock lock(Report_lock);
    The_report.OutputField.clear();
    The_report.OutputChanged = false;
}

void Report_is_saved() {
    const std::scoped_lock lock(Report_lock);
    The_report.OutputChanged = false;
}

void Set_report_file(const std::filesystem::path& file) {
    const std::scoped_lock lock(Report_lock);
    The_report.ReportFile = file;
}

void Release_report_file() {
    Move_first_stage();
    Set_report_file({});
    The_report.failure_told = false;
}

}  // namespace tarven
