#include "project/project_files.h"

#include "shell/files.h"

namespace tarven {

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

}  // namespace tarven
