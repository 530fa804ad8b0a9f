#pragma once

namespace tarven {

/// Ends the work on a project: asks whether an unsaved report shall be saved, gives up data, table
/// and what rests on them when `dispose`, and deletes the temporary report files.
void ExitFromTarven(bool dispose);

/// The same without questions, between two projects of a command file.
void AutomaticExitFromTarven(bool dispose);

/// Saves the report to a file that the user chooses, or, where nobody can choose, to the REP file
/// of the project. False when nothing was saved.
bool Save_report();

}  // namespace tarven
