#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

#include "project/cell_store.h"
#include "project/data_files.h"
#include "project/project.h"

namespace tarven {

/// What MAKE did with the files of a project.
struct MakeResult {
    bool SYS_written = false;
    bool TAB_written = false;
    bool stopped = false;         ///< the user asked to stop; nothing was written
    std::int64_t Nread = 0;       ///< records of the DAT file
    std::int64_t first_line = 0;  ///< of the DAT file with the first case of SYS
    WordsOfNoNumber no_numbers;   ///< of the DAT file
    std::int64_t Nused = 0;       ///< those accepted, one line of the SYS file each
    CellStore TABdata;            ///< the cells, when TAB_written
    std::string unreadable;  ///< why the DAT file was not read to its end; SYS has what came before
    std::string failure;     ///< why SYS or TAB was not written
    bool by_machine = false;  ///< the failure is one of the disk or of memory
};

/// Reads and recodes the DAT file, writes a line to SYS for each accepted case and a line to TAB
/// for each distinct pattern in ascending order. Both files are written beside the old ones, so
/// that a full disk or a kill leaves these whole, and replace them at the end; the old TAB file
/// goes before the new SYS file comes, so that no kill leaves two that are of different cases.
///
/// A record that cannot be read ends the reading: SYS keeps the cases before it, and a TAB file,
/// which could only disagree with it, is removed. The same holds for more patterns than TABdata may
/// hold. `step` is called now and then with the number of records read; false stops all.
/// Cost: linear in the cases, n log n in the patterns; memory follows the patterns.
MakeResult Make_files(const ProjectDefinition& definition, const std::filesystem::path& DAT,
                      const std::filesystem::path& SYS, const std::filesystem::path& TAB,
                      const std::function<bool(std::int64_t read)>& step);

/// TAB made anew from the cases of SYS, for data that did not come from the DAT file.
MakeResult Collect_records(const ProjectDefinition& definition, const std::filesystem::path& SYS,
                           const std::filesystem::path& TAB);

/// The first variable at which the product of dim+1 leaves 63 bits, so that a number cannot stand
/// for a pattern; 0 when it never does. product is the product before that variable.
struct KeyOverflow {
    int step = 0;
    std::int64_t product = 1;
    int dim = 0;
};
KeyOverflow Key_overflow(const ProjectDefinition& definition);

/// Which files MAKE has made anew.
struct FilesMade {
    bool SYS = false;
    bool TAB = false;  ///< and TABdata is in memory
};

/// The command MAK over the workspace: its questions, messages, panels and progress.
FilesMade Make();

/// Whether a SYS or TAB file that is there was written more than ten seconds before the DEF, VAR or
/// DAT file changed: the message that tells it, or empty.
std::string Message_on_old_data(const ProjectFiles& files);

/// Compares TABdata with DATA, or else with the SYS file, case by case. TABdata of other cases is
/// given up, with a message; true then.
bool Give_up_TABdata_of_other_cases();

/// Brings in the data of a project whose definitions are read: with a SYS and a TAB file these are
/// counted and read, and checked against the variables; else MAKE makes them. Without a DAT file
/// the project works from whichever of the two is there. A file that does not fit gives its message
/// and is not used; of two that hold different cases only SYS is used. Definitions or raw data that
/// are newer than the files, and variables without an observed case, are told.
void Load_data_at_opening();

}  // namespace tarven
