#pragma once

#include <string>

namespace tarven {

/// Makes the start-up memory (TARVEN.cmd, empty) and the project log in the start folder when they
/// are missing; a log that is made gives the message "Project log created". A folder that cannot
/// be written is left alone: nothing rests on these files.
void Make_start_files();

/// Rewrites the start-up memory with folder and name of the open project.
void Remember_project();

/// Adds the open project to the log unless its last line names it already.
void Update_project_log();

/// SHOW P: the log without repetitions, then how many of its records to keep.
void Show_project_log();

/// What the start-up memory holds.
struct RememberedProject {
    bool found = false;  ///< both lines are there
    std::string folder, name;
};
RememberedProject Remembered_project();

}  // namespace tarven
