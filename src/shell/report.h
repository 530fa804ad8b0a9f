#pragma once

#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace tarven {

/// The report has two stages. Between Open_report and Close_report lines go to a text file, each
/// at once, so that they survive a crash of a long analysis; Close_report moves them, in order,
/// into OutputField, which is what the user reads. The pairs nest, so a procedure opens the report
/// without asking who has opened it before. Lines are Latin-1; control characters in them are made
/// harmless on the way in.
struct ReportSink {
    std::filesystem::path ReportFile;      ///< first stage, project.TMP
    int ReportOpen = 0;                    ///< Open_report without its Close_report, how deep
    std::vector<std::string> OutputField;  ///< second stage
    bool OutputChanged = false;            ///< it has lines not saved or appended
    bool LogOn = false;                    ///< each command is echoed into the report

    /// Called with each line that reaches OutputField; the program prints it.
    std::function<void(const std::string&)> on_line;

    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file{nullptr, std::fclose};
    std::vector<std::string> first_stage;  ///< the lines of ReportFile not yet moved
    bool failure_told = false;             ///< one message says that ReportFile is not writable
};

inline ReportSink The_report;

/// Held while the lines of the report or the name of ReportFile change, so that the report can be
/// saved from another thread when a signal ends the program. Never held while a line is printed,
/// for that may wait for ever.
inline std::mutex Report_lock;

/// The outermost call creates ReportFile anew; one within it goes on behind the lines that stand
/// there. Without a project the file is TARVEN.TMP in the start folder. A file that cannot be
/// written is told once, and the lines are kept in memory alone.
void Open_report();

/// The outermost call moves the lines of the first stage into OutputField; one within it leaves
/// them to the command that opened the report. The file stays; the next Open_report overwrites it.
void Close_report();

/// Moves the lines that stand there now into OutputField and begins the file anew, between the
/// steps of a long analysis, however deep the report is open.
void Flush_report();

/// Closes the report however deep it is open, for a program that ends in the middle of a command.
void End_report();

/// Before an analysis that may end the process: TMPcopy.txt beside ReportFile gets the title "Copy
/// of TMPfile" and the lines of the first stage. The text of a failure, or empty.
std::string Backup_report();

/// A line into the first stage when the report is open, else straight into OutputField. A text
/// with line ends in it is as many lines.
void Write_report(std::string_view line);

/// Each of the lines.
void Write_lines(const std::vector<std::string>& lines);

/// A line straight into OutputField.
void ShowReportLine(std::string_view line);

/// A title in a frame.
void Write_header(std::string_view text);
/// One line with its underline.
void Write_underlined(std::string_view text);
/// Date, time and a text straight into OutputField.
void Write_heading_line(std::string_view text);

/// "2026-11-21 09:30:00", local time.
std::string Date_and_time();

void Clear_report_field();

/// The lines of OutputField stand in a file of the user's.
void Report_is_saved();

/// Names the first stage's file, which the next Open_report creates.
void Set_report_file(const std::filesystem::path& file);

/// Closes and forgets the first stage's file, before it is deleted or replaced by another
/// project's. Its lines move into OutputField. A report that is open stays so: what follows is kept
/// in memory until the next Open_report finds a ReportFile to write.
void Release_report_file();

}  // namespace tarven
