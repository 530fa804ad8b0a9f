#pragma once

#include <filesystem>

namespace tarven {

/// Ends the work on a project: asks what other floors ask before the end (Ask_before_exit), and
/// whether an unsaved report shall be saved, gives up data, table
/// and what rests on them when `dispose`, and deletes the temporary report files. A report that was
/// asked about is erased when another project follows (`dispose`). False, and nothing is done, when
/// the person at the terminal leaves the question or the report could not be saved: it is kept.
/// Without a user the end goes on, the report is kept, and the exit status tells.
bool ExitFromTarven(bool dispose);

/// The same without questions, between two projects of a command file. The report stays.
void AutomaticExitFromTarven(bool dispose);

/// Writes the report to a file, unless that is no target for one; false, with a message, when it
/// was not written.
bool Write_report_to(const std::filesystem::path& file);

/// Saves the report to a file that the person at the terminal names, by default the REP file of the
/// project, which without a user and in automatic mode is taken at once. A report that is there is
/// overwritten unless somebody answers No; the command stream's No gives the report a name of its
/// own. False when nothing was saved.
bool Save_report();

}  // namespace tarven
