#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace tarven {

/// The bytes of a file, as they are, or why they could not be read.
struct FileBytes {
    std::string bytes;
    std::string error;
};
FileBytes Read_bytes(const std::filesystem::path& file);
/// Replaces a file by bytes. The text of the failure, or empty.
std::string Write_whole(const std::filesystem::path& file, const std::string& bytes);

/// Copies that were edited and not taken, by their originals.
struct KeptCopies {
    std::map<std::filesystem::path, std::filesystem::path> copy_of;
};

inline KeptCopies The_kept_copies;

/// A copy of a project file that the user edits, in the folder for temporary files under a name
/// that nobody can foresee, readable by its owner alone. What was edited and not taken stays there,
/// so that no typing is lost, and is offered when the same file is edited next.
class EditedCopy {
  public:
    explicit EditedCopy(std::filesystem::path original);

    /// Hands the copy to the user's editor; true when the user accepts it and it differs from the
    /// original. What went wrong is told.
    bool Edit();
    /// What stood in the copy after Edit, Latin-1 lines.
    const std::vector<std::string>& Lines() const { return lines_; }
    /// Replaces the original by the copy, byte for byte; after a failure, which is told, the copy
    /// stays.
    bool Take();
    /// "Revisions abandoned", and where they are when there are any.
    void Abandon();

  private:
    bool Make_copy();

    std::filesystem::path original_, copy_;
    std::string before_, after_;
    std::vector<std::string> lines_;
    bool ready_ = false;
};

}  // namespace tarven
