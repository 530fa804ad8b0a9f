#include "project/project_files.h"

#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <vector>

#include "shell/files.h"
#include "shell/words.h"

namespace tarven {

namespace {

namespace fs = std::filesystem;

bool Process_is_gone(std::int32_t process) {
    return process > 0 && process != ::getpid() && ::kill(process, 0) != 0 && errno == ESRCH;
}

/// Whether `name` is stem.EXTENSION.PROCESS.new of a process that is gone.
bool Is_leftover(const fs::path& name, const std::string& stem) {
    const fs::path with_process = name.stem();
    const fs::path replaced = with_process.stem();
    const std::string number = with_process.extension().string();
    std::int32_t process = 0;
    return name.extension() == ".new" && replaced.has_extension() &&
           Upper(Path_text(replaced.stem())) == Upper(stem) && number.size() > 1 &&
           To_integer(number.substr(1), process) && Process_is_gone(process);
}

}  // namespace

ProjectFile Project_file(const std::filesystem::path& folder, const std::string& name,
                         const std::string& extension) {
    const auto wanted = folder / Text_path(name + "." + extension);
    const auto found = Find_file(wanted);
    return {found.value_or(wanted), found.has_value()};
}

ProjectFiles Set_project_files(const std::filesystem::path& folder, const std::string& name) {
    const auto file = [&](const char* extension) { return Project_file(folder, name, extension); };
    ProjectFiles files{.DEF = file("DEF"),
                       .VAR = file("VAR"),
                       .CAT = file("CAT"),
                       .DAT = file("DAT"),
                       .GRF = file("GRF"),
                       .EXA = file("EXA"),
                       .SYS = file("SYS"),
                       .TAB = file("TAB"),
                       .REP = file("REP"),
                       .TMP = file("TMP"),
                       .BEL = file("BEL")};
    files.BEL.exists = false;
    return files;
}

void Remove_leftovers(const fs::path& folder, const std::string& stem) {
    std::vector<fs::path> leftovers;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code ignored;
        if (fs::is_regular_file(entry->symlink_status(ignored)) &&
            Is_leftover(entry->path().filename(), stem))
            leftovers.push_back(entry->path());
    }
    for (const fs::path& leftover : leftovers) fs::remove(leftover, error);
}

}  // namespace tarven
