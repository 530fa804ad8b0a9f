#include "project/report_target.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "project/def_file.h"
#include "project/project.h"
#include "project/project_files.h"
#include "shell/files.h"
#include "shell/session.h"
#include "shell/words.h"

namespace tarven {

namespace {

namespace fs = std::filesystem;

/// The files of project NAME are NAME with one of these; REP and TMP hold reports.
constexpr std::array<std::string_view, 14> Extensions = {"DEF", "VAR", "CAT", "DAT", "SYS",
                                                         "TAB", "GRF", "GAM", "EXA", "BEL",
                                                         "AUT", "AUV", "INI", "CMD"};

/// Which file a path leads to, on which device.
using FileIdentity = std::pair<dev_t, ino_t>;

std::optional<FileIdentity> Identity(const fs::path& path) {
    struct stat status {};
    if (path.empty() || ::stat(path.c_str(), &status) != 0) return {};
    return FileIdentity(status.st_dev, status.st_ino);
}

/// The folder of a path that may have no parent in it.
fs::path Folder_of(const fs::path& path) {
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

std::string Extension_in_capitals(const fs::path& path) {
    const std::string extension = path.extension().string();
    return extension.empty() ? "" : Upper(extension.substr(1));
}

bool Has_extension_of_project(const fs::path& path) {
    return std::find(Extensions.begin(), Extensions.end(), Extension_in_capitals(path)) !=
           Extensions.end();
}

bool Same_name(const fs::path& a, const fs::path& b) {
    return Upper(a.filename().string()) == Upper(b.filename().string());
}

/// The same file, or the same name in the same folder, in any case, there or not.
bool Same_place(const fs::path& a, const fs::path& b) {
    const auto first = Identity(a);
    if (first && first == Identity(b)) return true;
    const auto folder = Identity(Folder_of(a));
    return Same_name(a, b) && folder && folder == Identity(Folder_of(b));
}

/// The other names that a definition gives to files of its folder.
std::vector<fs::path> Files_named_in(const fs::path& DEF) {
    const TextFile text = Read_text_file(DEF);
    if (!text.ok) return {};
    const DefFile def = Read_DEF_file(text.lines);
    std::vector<fs::path> files;
    for (const std::string& name : {def.var_name, def.grf_name, def.dat_name})
        if (!name.empty()) files.push_back(Existing_or(Folder_of(DEF) / name));
    return files;
}

/// The files of a project, there or not.
std::vector<fs::path> Files_of_project(const fs::path& DEF) {
    std::vector<fs::path> files = Files_named_in(DEF);
    for (const std::string_view extension : Extensions)
        files.push_back(
            Project_file(Folder_of(DEF), Path_text(DEF.stem()), std::string(extension)).path);
    return files;
}

std::vector<fs::path> Files_of_open_project() {
    const ProjectFiles& own = The_project.files;
    std::vector<fs::path> files = Files_of_project(own.DEF.path);
    for (const ProjectFile* file :
         {&own.DEF, &own.VAR, &own.CAT, &own.DAT, &own.GRF, &own.EXA, &own.SYS, &own.TAB, &own.BEL})
        files.push_back(file->path);
    return files;
}

std::string Refused(const fs::path& path, const std::string& project) {
    return fmt::format("{} is a file of the project {}: no report is written there",
                       Path_text(path), project);
}

bool Belongs_to(const fs::path& path, const fs::path& DEF, bool has_other_names) {
    const auto is_path = [&](const fs::path& file) { return Same_place(path, file); };
    if (has_other_names) {
        const std::vector<fs::path> files = Files_of_project(DEF);
        return std::any_of(files.begin(), files.end(), is_path);
    }
    if (Has_extension_of_project(path) && Same_name(path.stem(), DEF.stem())) return true;
    const std::vector<fs::path> named = Files_named_in(DEF);
    return std::any_of(named.begin(), named.end(), is_path);
}

/// The project in the folder of `path` to which it belongs; empty when it is of none.
std::string Owner_in_folder(const fs::path& path) {
    std::error_code error;
    const bool has_other_names = fs::hard_link_count(path, error) > 1 && !error;
    for (fs::directory_iterator entry(Folder_of(path), error), end; !error && entry != end;
         entry.increment(error)) {
        const fs::path& DEF = entry->path();
        if (Extension_in_capitals(DEF) == "DEF" && Belongs_to(path, DEF, has_other_names))
            return Path_text(DEF.stem());
    }
    return "";
}

/// Files that have each line already.
bool Has_the_lines(const fs::path& path) {
    const auto target = Identity(path);
    struct stat status {};
    if (!target || !fs::is_regular_file(path)) return false;
    if (target == Identity(The_session.report_copy)) return true;
    return ::fstat(STDOUT_FILENO, &status) == 0 &&
           target == FileIdentity(status.st_dev, status.st_ino);
}

}  // namespace

std::string Refusal_of_target(const fs::path& path, const fs::path& DEF) {
    if (Has_the_lines(path))
        return Path_text(path) + " gets every line of the report as it appears already";
    const fs::path target = Behind_links(path);
    const auto is_target = [&](const fs::path& file) { return Same_place(target, file); };
    const auto among = [&](const std::vector<fs::path>& files) {
        return std::any_of(files.begin(), files.end(), is_target);
    };
    if (The_project.ProjectOpen && among(Files_of_open_project()))
        return Refused(path, The_project.Projectname);
    if (!DEF.empty() && among(Files_of_project(DEF))) return Refused(path, Path_text(DEF.stem()));
    if (among({The_session.StartPath / "TARVEN.cmd", The_session.StartPath / "TARVEN.imp",
               The_session.StartPath / "TARVENprojectLog.txt"}))
        return Path_text(path) + " is kept by the program: no report is written there";
    const std::string owner = Owner_in_folder(target);
    return owner.empty() ? "" : Refused(path, owner);
}

}  // namespace tarven
