#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tarven {

/// What became of a report that had to be saved where nobody names a file.
struct SavedReport {
    std::filesystem::path file;  ///< empty when there was nothing to save, or after a failure
    std::string failure;         ///< why it could not be saved, Latin-1
};

/// Saves the whole report, the lines of the command that runs included, under a name of its own:
/// NAME_unsaved_1.REP, or the next number that is free, beside NAME.TMP; when that folder cannot be
/// written, in the start folder or the folder of temporary files. Any thread may call it at any
/// time.
SavedReport Save_unsaved_report();

/// The same when the report has lines that were neither saved nor appended.
SavedReport Save_report_if_unsaved();

/// Says which reports of sessions that were cut off wait for a reader beside the first stage
/// NAME.TMP, or in the start folder.
void Tell_unsaved_reports(const std::filesystem::path& first_stage);

}  // namespace tarven
