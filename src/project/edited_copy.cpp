#include "project/edited_copy.h"

#include <fmt/format.h>
#include <stdlib.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <system_error>

#include "shell/files.h"
#include "shell/text.h"
#include "shell/user.h"

namespace tarven {

namespace fs = std::filesystem;

namespace {

bool Is_own_plain_file(const fs::path& file) {
    std::error_code error;
    return fs::is_regular_file(fs::symlink_status(file, error));
}

}  // namespace

FileBytes Read_bytes(const fs::path& file) {
    FileBytes result;
    // The reader of text files knows what is none: a folder, one that is too large.
    const TextFile text = Read_text_file(file);
    if (!text.ok) {
        result.error = text.error;
        return result;
    }
    std::ostringstream bytes;
    bytes << std::ifstream(file, std::ios::binary).rdbuf();
    result.bytes = bytes.str();
    return result;
}

std::string Write_whole(const fs::path& file, const std::string& bytes) {
    ReplacementFile replacement(file);
    replacement.Write(bytes);
    replacement.Commit();
    return replacement.Failure();
}

EditedCopy::EditedCopy(fs::path original) : original_(std::move(original)) {
    const FileBytes file = Read_bytes(original_);
    before_ = after_ = file.bytes;
    if (!file.error.empty()) {
        ShowMessage(file.error);
        return;
    }
    const auto kept = The_kept_copies.copy_of.find(original_);
    if (kept != The_kept_copies.copy_of.end()) {
        const fs::path copy = kept->second;
        The_kept_copies.copy_of.erase(kept);
        if (Is_own_plain_file(copy) &&
            AskYesNo_always(fmt::format("{} was revised and not taken. Do you want to go on with "
                                        "that?",
                                        Path_text(original_.filename())))) {
            copy_ = copy;
            ready_ = true;
            return;
        }
    }
    ready_ = Make_copy();
}

bool EditedCopy::Make_copy() {
    const std::string name = original_.filename().string();
    std::error_code error;
    std::string path = (fs::temp_directory_path(error) / ("tarven-XXXXXX-" + name)).string();
    // Made anew and for this user alone, whatever stands in a folder that all may write to.
    const int file = error ? -1 : ::mkstemps(path.data(), static_cast<int>(name.size()) + 1);
    bool written = file >= 0;
    for (std::size_t at = 0; written && at < before_.size();) {
        const ssize_t count = ::write(file, before_.data() + at, before_.size() - at);
        written = count > 0;
        if (written) at += static_cast<std::size_t>(count);
    }
    if (file >= 0 && ::close(file) != 0) written = false;
    copy_ = path;
    if (written) return true;
    if (file >= 0) fs::remove(copy_, error);
    ShowMessage(
        fmt::format("{} could not be copied to {}", Path_text(original_), Path_text(copy_)));
    return false;
}

bool EditedCopy::Edit() {
    if (!ready_) return false;
    const bool accepted = The_user.user.edit_file(copy_.string());
    const FileBytes edited = Read_bytes(copy_);
    if (!edited.error.empty()) {
        ShowMessage(edited.error);
        return false;
    }
    after_ = edited.bytes;
    lines_ = Split_lines(To_latin1(after_));
    return accepted && after_ != before_;
}

bool EditedCopy::Take() {
    const std::string failure = Write_whole(original_, after_);
    if (!failure.empty()) {
        ShowMessage(failure);
        Abandon();
        return false;
    }
    std::error_code ignored;
    fs::remove(copy_, ignored);
    return true;
}

void EditedCopy::Abandon() {
    ShowMessage("Revisions abandoned");
    if (!ready_) return;
    if (after_ == before_) {
        std::error_code ignored;
        fs::remove(copy_, ignored);
        return;
    }
    The_kept_copies.copy_of[original_] = copy_;
    ShowMessage(fmt::format("What was revised stands in {}", Path_text(copy_)));
}

}  // namespace tarven
