#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tarven {

/// Which files a name that is being typed may mean. Folders may always stand on the way.
struct FilesMeant {
    std::vector<std::string> extensions;  ///< in capitals with the point, as ".CMD"
    bool without_extension = false;       ///< the name is typed without it
    bool folders_only = false;
};

/// The names in `folder` that begin as typed, in either case, with the folders that were typed
/// before them; a folder ends in "/". When no file has one of the extensions, all files are meant.
/// Hidden files are only found by a typed point.
std::vector<std::string> Names_beginning(std::string_view typed,
                                         const std::filesystem::path& folder,
                                         const FilesMeant& meant);

}  // namespace tarven
